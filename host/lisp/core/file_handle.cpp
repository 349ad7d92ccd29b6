#include "host/lisp/core/file_handle.h"

#include <filesystem>

#include "host/lisp/core/objects.h"
#include "host/rx/file/folder.h"

namespace lisp {

namespace fs = std::filesystem;

namespace {

// Programs write both separators; where only one is known, the other is turned into it.
fs::path pathOf(TextView name) {
  Text text(name);
#ifndef _WIN32
  for (GCHAR& c : text)
    if (c == GC_T('\\')) c = GC_T('/');
  return fs::path(toUtf8(text));
#else
  return fs::path(text);
#endif
}

Text textOf(const fs::path& path) {
#ifdef _WIN32
  return Text(path.native());
#else
  return fromUtf8(path.native());
#endif
}

std::FILE* openFile(const fs::path& name, FileHandle::Mode mode) {
  const fs::path path = gc::systemPath(name);
#ifdef _WIN32
  static constexpr const wchar_t* kModes[] = {L"rb", L"wb", L"ab"};
  return _wfopen(path.c_str(), kModes[static_cast<int>(mode)]);
#else
  static constexpr const char* kModes[] = {"rb", "wb", "ab"};
  return std::fopen(path.c_str(), kModes[static_cast<int>(mode)]);
#endif
}

}  // namespace

File::File() = default;
File::~File() = default;

FileHandle* FileHandle::open(TextView name, Mode mode) {
  if (files::isDirectory(name)) return nullptr;
  std::FILE* file = openFile(pathOf(name), mode);
  return file ? new FileHandle(file) : nullptr;
}

FileHandle::~FileHandle() { std::fclose(m_file); }

int FileHandle::readByte() {
  const int byte = std::fgetc(m_file);
  if (byte != '\r') return byte;
  const int next = std::fgetc(m_file);
  if (next != '\n' && next != EOF) std::ungetc(next, m_file);
  return '\n';
}

bool FileHandle::readLine(std::string& line) {
  line.clear();
  int byte = readByte();
  if (byte == EOF) return false;
  for (; byte != EOF && byte != '\n'; byte = readByte()) line.push_back(static_cast<char>(byte));
  return true;
}

void FileHandle::write(std::string_view bytes) { std::fwrite(bytes.data(), 1, bytes.size(), m_file); }

namespace files {

bool readWhole(TextView name, std::string& bytes) {
  if (isDirectory(name)) return false;
  std::FILE* file = openFile(pathOf(name), FileHandle::Mode::Read);
  if (!file) return false;
  char buffer[16384];
  size_t count = 0;
  while ((count = std::fread(buffer, 1, sizeof buffer, file)) > 0) bytes.append(buffer, count);
  std::fclose(file);
  return true;
}

bool exists(TextView name) { return gc::pathFacts(pathOf(name)).kind == gc::PathFacts::Kind::File; }

bool isDirectory(TextView name) { return gc::pathFacts(pathOf(name)).kind == gc::PathFacts::Kind::Folder; }

bool remove(TextView name) { return exists(name) && gc::removeFile(pathOf(name)); }

bool rename(TextView from, TextView to) { return exists(from) && gc::renamePath(pathOf(from), pathOf(to)); }

int64_t copy(TextView from, TextView to, bool append) {
  std::string bytes;
  if (!readWhole(from, bytes)) return -1;
  if (!append && gc::pathFacts(pathOf(to)).kind != gc::PathFacts::Kind::None) return -1;
  if (gc::isSameFile(pathOf(from), pathOf(to))) return -1;
  std::FILE* file = openFile(pathOf(to), append ? FileHandle::Mode::Append : FileHandle::Mode::Write);
  if (!file) return -1;
  const size_t written = std::fwrite(bytes.data(), 1, bytes.size(), file);
  const bool closed = std::fclose(file) == 0;
  return closed && written == bytes.size() ? static_cast<int64_t>(written) : -1;
}

int64_t size(TextView name) {
  const gc::PathFacts facts = gc::pathFacts(pathOf(name));
  return facts.kind == gc::PathFacts::Kind::None ? -1 : facts.size;
}

bool makeDirectory(TextView name) { return gc::makeFolder(pathOf(name)); }

bool modified(TextView name, Moment& local) {
  const gc::PathFacts facts = gc::pathFacts(pathOf(name));
  if (facts.kind == gc::PathFacts::Kind::None) return false;
  const int64_t ms = facts.modifiedNs / 1000000;
  local = localMoment(ms / 1000, static_cast<int>(ms % 1000));
  return true;
}

std::vector<Text> list(TextView directory, bool directories, bool plainFiles) {
  std::vector<Text> names;
  std::vector<gc::FolderEntry> entries;
  gc::listFolder(directory.empty() ? fs::path(".") : pathOf(directory), entries);
  for (const gc::FolderEntry& entry : entries)
    if (entry.isFolder ? directories : plainFiles) names.push_back(textOf(entry.name));
  if (directories && isDirectory(directory.empty() ? TextView(GC_T(".")) : directory)) {
    names.emplace_back(GC_T("."));
    names.emplace_back(GC_T(".."));
  }
  return names;
}

Text absolute(TextView name) {
  std::error_code error;
  const fs::path path = fs::absolute(pathOf(name), error);
  return error ? Text(name) : textOf(path.lexically_normal());
}

Text temporaryDirectory() {
  std::error_code error;
  const fs::path path = fs::temp_directory_path(error);
  return error ? Text(GC_T(".")) : textOf(path);
}

namespace {

size_t nameStart(TextView name) {
  const size_t at = name.find_last_of(GC_T("/\\:"));
  return at == TextView::npos ? 0 : at + 1;
}

size_t dotOf(TextView name) {
  const size_t at = name.rfind(GC_T('.'));
  return at == TextView::npos || at < nameStart(name) ? name.size() : at;
}

}  // namespace

Text directoryOf(TextView name) {
  size_t end = nameStart(name);
  if (end > 1 && name[end - 1] != GC_T(':') && name[end - 2] != GC_T(':')) --end;
  return Text(name.substr(0, end));
}

Text baseOf(TextView name) {
  const size_t start = nameStart(name), dot = dotOf(name);
  return Text(name.substr(start, dot - start));
}

Text extensionOf(TextView name) { return Text(name.substr(dotOf(name))); }

}  // namespace files

}  // namespace lisp
