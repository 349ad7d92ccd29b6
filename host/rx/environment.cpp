#include "host/rx/environment.h"

#include <cstdlib>

#include "host/rx/text/utf.h"

namespace gc {

bool environmentVariable(GcView name, GcText& value) {
#ifdef _WIN32
  // The narrow form knows the characters of one code page only.
  const wchar_t* found = _wgetenv(GcText(name).c_str());
  if (found == nullptr) return false;
  value = found;
#else
  const char* found = std::getenv(toUtf8(name).c_str());
  if (found == nullptr) return false;
  value = fromUtf8(found);
#endif
  return true;
}

}  // namespace gc
