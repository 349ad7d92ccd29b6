#include "host/ap/profile.h"

#include <map>

#include "host/ap/paths.h"
#include "host/rx/environment.h"

namespace ap {

namespace {

std::map<GcText, GcText>& entries() {
  static auto* const all = new std::map<GcText, GcText>;
  return *all;
}

// The file of the name, full path; empty when there is none. Names come from every system: where the backslash is
// no separator it is taken for one when there is no file with it in its name.
GcText existing(const GcText& name) {
  if (fileExists(name)) return absolutePath(name);
#ifndef _WIN32
  GcText other = name;
  for (GCHAR& unit : other)
    if (unit == GC_T('\\')) unit = GC_T('/');
  if (other != name && fileExists(other)) return absolutePath(other);
#endif
  return {};
}

}  // namespace

bool profileEntry(GcView name, GcText& value) {
  const auto known = entries().find(upperText(name));
  if (known != entries().end()) {
    value = known->second;
    return true;
  }
  return gc::environmentVariable(name, value);
}

void setProfileEntry(GcView name, GcView value) { entries()[upperText(name)] = value; }

std::vector<GcText> supportPath() {
  std::vector<GcText> folders;
  GcText path;
  if (!profileEntry(GC_T("ACAD"), path)) return folders;
  for (size_t at = 0; at <= path.size();) {
    const size_t end = std::min(path.find(GC_T(';'), at), path.size());
    if (end > at) folders.push_back(path.substr(at, end - at));
    at = end + 1;
  }
  return folders;
}

GcText findSupportFile(GcView name, GcView beside) {
  if (name.empty()) return {};
  if (GcText whole = existing(GcText(name)); !whole.empty()) return whole;
  if (isAbsolutePath(name)) return {};
  std::vector<GcText> folders = supportPath();
  if (!beside.empty()) folders.emplace(folders.begin(), beside);
  for (const GcText& folder : folders) {
    if (GcText whole = existing(folder + GC_T("/") + GcText(name)); !whole.empty()) return whole;
  }
  return {};
}

}  // namespace ap
