// Settings of the host: the profile and the support search path.
#include <string>

#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/results.h"

namespace {

constexpr const GCHAR* kSupportPath = GC_T("ACAD");  // the host's environment entry
constexpr std::size_t kLongestPath = 2047;

}  // namespace

int getActiveProfile() {
  resbuf value{};
  if (gcedGetVar(GC_T("CPROFILE"), &value) != RTNORM || value.restype != RTSTR) return ret::nil();
  const int status = ret::string(value.resval.rstring);
  gcutDelBuffer(value.resval.rstring);
  return status;
}

int getSupportPath() {
  GcString path;
  if (gcedGetEnv(kSupportPath, path) != RTNORM) return RTERROR;
  if (path.length() > kLongestPath) return RTREJ;
  return ret::string(path.c_str());
}

int putSupportPath() {
  ArgReader args(rules::kTextFirst);
  const GCHAR* path = args.string();
  if (args.failed()) return args.status();
  return gcedSetEnv(kSupportPath, path) == RTNORM ? ret::nothing() : RTERROR;
}
