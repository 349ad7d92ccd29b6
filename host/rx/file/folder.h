// Paths, files and folders by name, as the system's calls want them. Nothing here throws; paths may be of any length.
// On Windows the standard library's calls end at 260 characters, which is why this is used instead of them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace gc {

// The path to hand to a call of the system. On Windows one whose absolute form is longer than the calls take by
// themselves (260 characters, 248 for folders) becomes absolute with the prefix that lifts this limit; every other
// path, and every path elsewhere, is as it was. Not for showing to people or for taking apart.
[[nodiscard]] std::filesystem::path systemPath(const std::filesystem::path& path);
[[nodiscard]] std::filesystem::path pathOfUtf8(const std::string& utf8);

struct PathFacts {
  enum class Kind { None, File, Folder, Other };  // links followed
  Kind kind = Kind::None;
  int64_t size = 0;        // bytes, of a file
  int64_t modifiedNs = 0;  // since 1970-01-01 UTC
};
[[nodiscard]] PathFacts pathFacts(const std::filesystem::path& path);

struct FolderEntry {
  std::filesystem::path name;  // without the folder's
  bool isFolder = false;       // links followed
  bool isFile = false;         // a regular one, links followed
  bool isLink = false;
};

// What is in a folder, without itself and its parent, in the order the system tells. False when it cannot be read.
bool listFolder(const std::filesystem::path& folder, std::vector<FolderEntry>& entries);

// Each false when it could not be done. A folder is made with those above it by makeFolders only, which is content
// with one that is there; a rename does not replace what is there.
bool makeFolder(const std::filesystem::path& folder);
bool makeFolders(const std::filesystem::path& folder);
bool removeFile(const std::filesystem::path& path);
bool removeEmptyFolder(const std::filesystem::path& folder);
bool renamePath(const std::filesystem::path& from, const std::filesystem::path& to);
[[nodiscard]] bool isSameFile(const std::filesystem::path& first, const std::filesystem::path& second);

// A folder with all that is in it. What a link in it leads to stays. False when something could not be removed.
bool removeTree(const std::filesystem::path& folder);

}  // namespace gc
