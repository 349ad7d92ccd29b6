#include "module/app/moduleplatform.h"

#ifdef _WIN32

#include <windows.h>

// gcrxGetApiVersion is forwarded to the host's library by exports.def.

void* moduleplatform::handle() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&moduleplatform::handle), &module);
  return module;
}

void moduleplatform::loadString(void* module, uint32_t resourceId, GCHAR* buffer, int size) {
  GCHAR text[256];
  const int length = LoadStringW(static_cast<HMODULE>(module), resourceId, text, 256);
  if (length <= 0) return;
  const int kept = length < size ? length : size - 1;
  for (int i = 0; i < kept; ++i) buffer[i] = text[i];
  buffer[kept] = 0;
}

#else

#include <dlfcn.h>

void* moduleplatform::handle() {
  Dl_info info{};
  return dladdr(reinterpret_cast<void*>(&moduleplatform::handle), &info) != 0 ? info.dli_fbase : nullptr;
}

// ELF libraries carry no string resources.
void moduleplatform::loadString(void*, uint32_t, GCHAR*, int) {}

// Forwards to the host's function of the same name: the next one in the order of loading, this one left out.
extern "C" int gcrxGetApiVersion() {
  using Function = int (*)();
  static const auto host = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "gcrxGetApiVersion"));
  return host != nullptr ? host() : 0;
}

#endif
