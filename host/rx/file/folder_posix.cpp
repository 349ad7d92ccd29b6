// By the standard library.
#ifndef _WIN32

#include <unistd.h>

#include <chrono>

#include "host/rx/file/folder.h"

namespace gc {

namespace fs = std::filesystem;

namespace {

PathFacts::Kind kindOf(const fs::file_status& status) {
  switch (status.type()) {
    case fs::file_type::none:
    case fs::file_type::not_found: return PathFacts::Kind::None;
    case fs::file_type::regular: return PathFacts::Kind::File;
    case fs::file_type::directory: return PathFacts::Kind::Folder;
    default: return PathFacts::Kind::Other;
  }
}

}  // namespace

fs::path systemPath(const fs::path& path) { return path; }

PathFacts pathFacts(const fs::path& path) {
  PathFacts facts;
  std::error_code error;
  facts.kind = kindOf(fs::status(path, error));
  if (facts.kind == PathFacts::Kind::File) facts.size = static_cast<int64_t>(fs::file_size(path, error));
  if (facts.kind == PathFacts::Kind::None) return facts;
  const auto written = std::chrono::file_clock::to_sys(fs::last_write_time(path, error)).time_since_epoch();
  facts.modifiedNs = error ? 0 : std::chrono::duration_cast<std::chrono::nanoseconds>(written).count();
  return facts;
}

bool listFolder(const fs::path& folder, std::vector<FolderEntry>& entries) {
  std::error_code error;
  for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
    std::error_code ignored;
    entries.push_back(
        {at->path().filename(), at->is_directory(ignored), at->is_regular_file(ignored), at->is_symlink(ignored)});
  }
  return !error;
}

bool makeFolder(const fs::path& folder) {
  std::error_code error;
  return fs::create_directory(folder, error);
}

bool removeFile(const fs::path& path) { return unlink(path.c_str()) == 0; }

bool removeEmptyFolder(const fs::path& folder) { return rmdir(folder.c_str()) == 0; }

bool renamePath(const fs::path& from, const fs::path& to) {
  std::error_code error;
  if (pathFacts(to).kind != PathFacts::Kind::None) return false;
  fs::rename(from, to, error);
  return !error;
}

bool isSameFile(const fs::path& first, const fs::path& second) {
  std::error_code error;
  return fs::equivalent(first, second, error);
}

}  // namespace gc

#endif
