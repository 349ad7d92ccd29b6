#include "tests/dxf/tags/drawings.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace gc::test {

std::vector<std::string> drawings(const std::string& extension) {
  namespace fs = std::filesystem;
  const char* named = std::getenv("GC_DRAWINGS");
  const fs::path folder = named ? fs::path(named) : fs::path(GC_SOURCE_DIR) / ".." / "shared" / "drawings";
  std::vector<std::string> found;
  std::error_code none;
  for (const auto& entry : fs::directory_iterator(folder, none)) {
    if (entry.path().extension() == extension) found.push_back(entry.path().string());
  }
  std::sort(found.begin(), found.end());
  return found;
}

}  // namespace gc::test
