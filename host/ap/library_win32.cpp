#ifdef _WIN32

#include <windows.h>

#include "host/ap/library.h"

namespace ap {

namespace {

GcText reasonOf(DWORD error) {
  GCHAR text[512];
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text,
                                static_cast<DWORD>(std::size(text)), nullptr);
  while (length > 0 && text[length - 1] <= L' ') --length;
  return {text, length};
}

}  // namespace

bool Library::open(GcView path, GcText& reason) {
  close();
  m_handle = LoadLibraryExW(GcText(path).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (m_handle != nullptr) return true;
  reason = reasonOf(GetLastError());
  return false;
}

void Library::close() {
  if (m_handle != nullptr) FreeLibrary(static_cast<HMODULE>(m_handle));
  m_handle = nullptr;
}

void* Library::symbol(const char* name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(m_handle), name));
}

GcText programDirectory() {
  GCHAR path[4096];
  const DWORD length = GetModuleFileNameW(nullptr, path, static_cast<DWORD>(std::size(path)));
  const GcView whole(path, length);
  return GcText(whole.substr(0, whole.find_last_of(L"\\/")));
}

}  // namespace ap

#endif
