// dxfdiff FIRST SECOND: what the first DXF file holds that the second does not, one difference a line.
//   --all            added and moved groups too, not losses and changes alone
//   --ignore $NAME   leaves a header variable out (may be repeated)
// Exit code: 0 nothing lost, 1 something lost or changed, 2 usage or a file that cannot be read.
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "host/rx/file/file_view.h"
#include "tools/dxfdiff/compare.h"

namespace {

int usage() {
  std::fputs("usage: dxfdiff [--all] [--ignore $NAME]... FIRST SECOND\n", stderr);
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  gc::dxfdiff::Options options;
  std::vector<std::string> paths;
  bool all = false;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--all") == 0) {
      all = true;
    } else if (std::strcmp(argv[i], "--ignore") == 0 && i + 1 < argc) {
      options.ignoredVariables.emplace_back(argv[++i]);
    } else {
      paths.emplace_back(argv[i]);
    }
  }
  if (paths.size() != 2) return usage();
  gc::FileView files[2];
  for (int i = 0; i < 2; ++i) {
    const gc::FileStatus status = files[i].open(paths[i]);
    if (!status.ok()) {
      std::fprintf(stderr, "%s\n", status.message().c_str());
      return 2;
    }
  }
  const auto differences = gc::dxfdiff::compare(files[0].bytes(), files[1].bytes(), options);
  for (const auto& difference : differences) {
    const bool isLoss = difference.what == gc::dxfdiff::What::Lost || difference.what == gc::dxfdiff::What::Changed;
    if (all || isLoss) std::printf("%s\n", gc::dxfdiff::describe(difference).c_str());
  }
  return gc::dxfdiff::hasLosses(differences) ? 1 : 0;
}
