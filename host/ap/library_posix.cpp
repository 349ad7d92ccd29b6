#ifndef _WIN32

#include <dlfcn.h>
#include <unistd.h>

#include "host/ap/library.h"
#include "host/rx/text/utf.h"

namespace ap {

bool Library::open(GcView path, GcText& reason) {
  close();
  m_handle = dlopen(gc::toUtf8(path).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (m_handle != nullptr) return true;
  const char* text = dlerror();
  reason = gc::fromUtf8(text == nullptr ? "unknown reason" : text);
  return false;
}

void Library::close() {
  if (m_handle != nullptr) dlclose(m_handle);
  m_handle = nullptr;
}

void* Library::symbol(const char* name) const { return dlsym(m_handle, name); }

GcText programDirectory() {
  char path[4096];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  if (length <= 0) return GC_T(".");
  const std::string_view whole(path, static_cast<size_t>(length));
  return gc::fromUtf8(whole.substr(0, whole.rfind('/')));
}

}  // namespace ap

#endif
