#include "cli/batchinputs.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include "cli/exitcode.h"

namespace cli {

namespace fs = std::filesystem;

namespace {

fs::path pathOf(const std::string& utf8) { return {std::u8string(utf8.begin(), utf8.end())}; }

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

void findBelow(const fs::path& folder, std::vector<Found>& found) {
  std::error_code ignored;
  for (fs::recursive_directory_iterator at(folder, fs::directory_options::skip_permission_denied, ignored), end;
       at != end; at.increment(ignored)) {
    if (at->is_regular_file(ignored) && isDrawing(at->path()))
      found.push_back({at->path(), at->path().lexically_relative(folder)});
  }
}

void findMatching(const fs::path& pattern, std::vector<Found>& found) {
  const fs::path folder = pattern.has_parent_path() ? pattern.parent_path() : fs::path(".");
  const std::string name = textOf(pattern.filename());
  std::error_code ignored;
  for (fs::directory_iterator at(folder, ignored), end; at != end; at.increment(ignored)) {
    if (!at->is_regular_file(ignored) || !matches(textOf(at->path().filename()), name)) continue;
    const fs::path path = pattern.has_parent_path() ? at->path() : at->path().filename();
    found.push_back({path, path.filename()});
  }
}

// False when there is nothing of this name.
bool find(const std::string& input, std::vector<Found>& found) {
  const fs::path path = pathOf(input);
  const size_t before = found.size();
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) {
    findBelow(path, found);
    return true;
  }
  if (fs::exists(path, ignored)) {
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
  fs::path output = pathOf(options.outDir) / found.kept;
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
  std::error_code missing, other;
  const auto made = fs::last_write_time(pathOf(item.output), missing);
  if (missing) return false;
  const auto drawn = fs::last_write_time(pathOf(item.input), other);
  const auto written = fs::last_write_time(pathOf(script), other);
  return !other && made >= drawn && made >= written;
}

}  // namespace cli
