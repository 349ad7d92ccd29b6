#include "host/rx/file/folder.h"

namespace gc {

namespace fs = std::filesystem;

fs::path pathOfUtf8(const std::string& utf8) { return {std::u8string(utf8.begin(), utf8.end())}; }

bool makeFolders(const fs::path& folder) {
  if (folder.empty() || pathFacts(folder).kind == PathFacts::Kind::Folder) return true;
  const fs::path parent = folder.parent_path();
  if (parent == folder || !makeFolders(parent)) return false;
  // Another process may have made it meanwhile.
  return makeFolder(folder) || pathFacts(folder).kind == PathFacts::Kind::Folder;
}

bool removeTree(const fs::path& folder) {
  std::vector<FolderEntry> entries;
  bool removed = listFolder(folder, entries);
  for (const FolderEntry& entry : entries) {
    const fs::path path = folder / entry.name;
    if (entry.isFolder && !entry.isLink)
      removed = removeTree(path) && removed;
    else
      removed = (removeFile(path) || removeEmptyFolder(path)) && removed;
  }
  return removeEmptyFolder(folder) && removed;
}

}  // namespace gc
