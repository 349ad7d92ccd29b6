#include "cli/batchinputs.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include "cli/exitcode.h"
#include "host/rx/file/folder.h"

namespace cli {

namespace fs = std::filesystem;

namespace {

std::string textOf(const fs::path& path) {
  const std::u8string text = path.generic_u8string();
  return {text.begin(), text.end()};
}

bool isDrawing(const fs::path& path) {
  std::string extension = textOf(path.extension());
  for (char& c : extension)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return extension == ".dxf" || extension == ".dwg";
}

// * any characters, ? one character.
bool matches(std::string_view name, std::string_view pattern) {
  size_t at = 0, next = 0, star = std::string_view::npos, from = 0;
  while (at < name.size()) {
    if (next < pattern.size() && (pattern[next] == '?' || pattern[next] == name[at])) {
      ++at;
      ++next;
    } else if (next < pattern.size() && pattern[next] == '*') {
      star = next++;
      from = at;
    } else if (star != std::string_view::npos) {
      next = star + 1;
      at = ++from;
    } else {
      return false;
    }
  }
  while (next < pattern.size() && pattern[next] == '*') ++next;
  return next == pattern.size();
}

// An input and the part of its path that is kept below the output folder.
struct Found {
  fs::path path, kept;
};

// `kept` is the folder's own path below the one that was given. Linked folders are not entered: they may lead back.
void findBelow(const fs::path& folder, const fs::path& kept, std::vector<Found>& found) {
  std::vector<gc::FolderEntry> entries;
  gc::listFolder(folder, entries);
  for (const gc::FolderEntry& entry : entries) {
    if (entry.isFolder && !entry.isLink)
      findBelow(folder / entry.name, kept / entry.name, found);
    else if (entry.isFile && isDrawing(entry.name))
      found.push_back({folder / entry.name, kept / entry.name});
  }
}

void findMatching(const fs::path& pattern, std::vector<Found>& found) {
  const fs::path folder = pattern.parent_path();
  const std::string name = textOf(pattern.filename());
  std::vector<gc::FolderEntry> entries;
  gc::listFolder(folder.empty() ? fs::path(".") : folder, entries);
  for (const gc::FolderEntry& entry : entries)
    if (entry.isFile && matches(textOf(entry.name), name)) found.push_back({folder / entry.name, entry.name});
}

// False when there is nothing of this name.
bool find(const std::string& input, std::vector<Found>& found) {
  const fs::path path = gc::pathOfUtf8(input);
  const size_t before = found.size();
  const gc::PathFacts::Kind kind = gc::pathFacts(path).kind;
  if (kind == gc::PathFacts::Kind::Folder) {
    findBelow(path, {}, found);
    return true;
  }
  if (kind != gc::PathFacts::Kind::None) {
    found.push_back({path, path.filename()});
  } else if (input.find_first_of("*?") != std::string::npos) {
    findMatching(path, found);
  }
  return found.size() > before;
}

void sortUnique(std::vector<Found>& found) {
  std::sort(found.begin(), found.end(), [](const Found& a, const Found& b) { return a.path < b.path; });
  found.erase(std::unique(found.begin(), found.end(), [](const Found& a, const Found& b) { return a.path == b.path; }),
              found.end());
}

std::string outputOf(const Found& found, const BatchOptions& options) {
  if (options.outDir.empty()) return {};
  fs::path output = gc::pathOfUtf8(options.outDir) / found.kept;
  if (!options.format.empty()) output.replace_extension(options.format);
  return textOf(output);
}

}  // namespace

bool collectBatch(const BatchOptions& options, std::vector<BatchItem>& items, std::string& message, int& exitCode) {
  std::vector<Found> found;
  for (const std::string& input : options.inputs) {
    if (find(input, found)) continue;
    message = "gcad: " + input + ": no such drawing\n";
    exitCode = kCannotRead;
    return false;
  }
  sortUnique(found);
  std::map<std::string, std::string> takenBy;
  for (size_t i = 0; i < found.size(); ++i) {
    const BatchItem item{textOf(found[i].path), outputOf(found[i], options)};
    if (!item.output.empty()) {
      const auto [at, isNew] = takenBy.emplace(item.output, item.input);
      if (!isNew) {
        message = "gcad: " + at->second + " and " + item.input + " would both be saved as " + item.output +
                  "; give their common folder as the input\n";
        exitCode = kUsage;
        return false;
      }
    }
    if (static_cast<int>(i % static_cast<size_t>(options.shards)) == options.shard - 1) items.push_back(item);
  }
  return true;
}

bool isUpToDate(const BatchItem& item, const std::string& script) {
  const gc::PathFacts made = gc::pathFacts(gc::pathOfUtf8(item.output));
  const gc::PathFacts drawn = gc::pathFacts(gc::pathOfUtf8(item.input));
  const gc::PathFacts written = gc::pathFacts(gc::pathOfUtf8(script));
  for (const gc::PathFacts& each : {made, drawn, written})
    if (each.kind == gc::PathFacts::Kind::None) return false;
  return made.modifiedNs >= drawn.modifiedNs && made.modifiedNs >= written.modifiedNs;
}

}  // namespace cli
