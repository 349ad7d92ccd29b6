// The sample drawings, which live beside the source tree and are not part of it.
#pragma once

#include <string>
#include <vector>

namespace gc::test {

// The files with this extension (".dxf") in the folder named by GC_DRAWINGS, or in ../shared/drawings seen from the
// source tree; empty where there is no such folder.
std::vector<std::string> drawings(const std::string& extension);

}  // namespace gc::test
