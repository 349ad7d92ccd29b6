#include "host/ap/paths.h"

#include <filesystem>

#include "host/rx/file/folder.h"

namespace ap {

namespace fs = std::filesystem;

bool fileExists(GcView path) { return gc::pathFacts(fs::path(GcText(path))).kind == gc::PathFacts::Kind::File; }

GcText absolutePath(GcView path) {
  std::error_code error;
  const fs::path whole = fs::absolute(fs::path(GcText(path)), error).lexically_normal();
#ifdef _WIN32
  return error ? GcText(path) : whole.wstring();
#else
  return error ? GcText(path) : whole.u16string();
#endif
}

GcView fileNameOf(GcView path) {
  const size_t separator = path.find_last_of(GC_T("/\\"));
  return separator == GcView::npos ? path : path.substr(separator + 1);
}

GcView directoryOf(GcView path) {
  const size_t separator = path.find_last_of(GC_T("/\\"));
  return separator == GcView::npos ? GcView() : path.substr(0, separator == 0 ? 1 : separator);
}

GcView extensionOf(GcView path) {
  const GcView name = fileNameOf(path);
  const size_t dot = name.rfind(GC_T('.'));
  return dot == GcView::npos || dot == 0 ? GcView() : name.substr(dot);
}

bool isAbsolutePath(GcView path) {
  return !path.empty() && (path[0] == GC_T('/') || path[0] == GC_T('\\') || (path.size() > 1 && path[1] == GC_T(':')));
}

}  // namespace ap
