// Files by Windows calls.
#ifdef _WIN32

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <utility>

#include "host/rx/file/atomic_file.h"
#include "host/rx/file/file_view.h"
#include "host/rx/file/folder.h"
#include "host/rx/text/utf.h"

namespace gc {
namespace {

constexpr std::uint64_t kMapFrom = std::uint64_t{1} << 20;  // smaller files are read
constexpr DWORD kStep = DWORD{1} << 16;
// A drawing that another program has open for writing can be read as long as that program allows it.
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kWriteStep = DWORD{1} << 24;

FileError kindOf(DWORD error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME: return FileError::NotFound;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
    case ERROR_UNABLE_TO_REMOVE_REPLACED:
    case ERROR_WRITE_PROTECT: return FileError::Denied;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS: return FileError::Exists;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL: return FileError::NoSpace;
    case ERROR_FILE_TOO_LARGE:
    case ERROR_NOT_ENOUGH_MEMORY: return FileError::TooLarge;
    default: return FileError::Other;
  }
}

// Another program has the file open in a way that forbids what was tried.
bool isHeld(DWORD error) {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_USER_MAPPED_FILE ||
         error == ERROR_UNABLE_TO_REMOVE_REPLACED;
}

std::string reasonOf(DWORD error) {
  if (isHeld(error)) return "it is open in another program";
  wchar_t text[512];
  const DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  DWORD count = FormatMessageW(flags, nullptr, error, 0, text, 512, nullptr);
  while (count > 0 && (text[count - 1] == L'\n' || text[count - 1] == L'\r' || text[count - 1] == L'.')) --count;
  return count ? toUtf8({text, count}) : "error " + std::to_string(error);
}

std::filesystem::path longPath(const std::string& utf8) { return systemPath(pathOfUtf8(utf8)); }

// For the error that just happened.
FileStatus failed(const char* what, const std::string& path) {
  const DWORD error = GetLastError();
  return {kindOf(error), std::string("cannot ") + what + " " + path + ": " + reasonOf(error)};
}

class Handle {
 public:
  explicit Handle(HANDLE handle) : m_handle(handle) {}
  ~Handle() {
    if (isOpen()) CloseHandle(m_handle);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  bool isOpen() const { return m_handle != INVALID_HANDLE_VALUE && m_handle != nullptr; }
  HANDLE get() const { return m_handle; }

 private:
  HANDLE m_handle;
};

std::string folderPrefix(const std::string& path) { return path.substr(0, path.find_last_of("/\\") + 1); }

HANDLE openTemporary(const std::string& target, std::string& path) {
  static std::atomic<unsigned> count{0};
  for (int attempt = 0; attempt < 100; ++attempt) {
    char name[64];
    std::snprintf(name, sizeof name, "gcad-%lx-%x.tmp", GetCurrentProcessId(), ++count);
    path = folderPrefix(target) + name;
    const HANDLE file =
        CreateFileW(longPath(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE || GetLastError() != ERROR_FILE_EXISTS) return file;
  }
  return INVALID_HANDLE_VALUE;
}

HANDLE asHandle(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

// One try; `backup` empty: the old file is not kept. On failure the error is the system's last one.
bool replaceOnce(const std::wstring& temporary, const std::wstring& target, const std::wstring& backup) {
  // ReplaceFile keeps the attributes and access rights of the file it replaces, but needs one. Some file systems cannot
  // do it.
  if (GetFileAttributesW(target.c_str()) != INVALID_FILE_ATTRIBUTES) {
    const wchar_t* keep = backup.empty() ? nullptr : backup.c_str();
    if (ReplaceFileW(target.c_str(), temporary.c_str(), keep, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr))
      return true;
    if (isHeld(GetLastError())) return false;
    const bool isThere = GetFileAttributesW(target.c_str()) != INVALID_FILE_ATTRIBUTES;
    if (keep && isThere && !CopyFileW(target.c_str(), keep, FALSE)) return false;
  }
  return MoveFileExW(temporary.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

// Search services and virus scanners look into a new file for some moments: a held one is tried again for a second.
bool putInPlace(const std::wstring& temporary, const std::wstring& target, const std::wstring& backup) {
  constexpr int kTries = 20;
  constexpr DWORD kPauseMs = 50;
  for (int attempt = 1;; ++attempt) {
    if (replaceOnce(temporary, target, backup)) return true;
    const DWORD error = GetLastError();
    if (!isHeld(error) || attempt == kTries) return false;
    Sleep(kPauseMs);
  }
}

FileStatus readAll(HANDLE file, const std::string& path, std::string& out) {
  for (;;) {
    const std::size_t before = out.size();
    out.resize(before + kStep);
    DWORD count = 0;
    const bool done = ReadFile(file, out.data() + before, kStep, &count, nullptr) != 0;
    const bool atEnd = !done && GetLastError() == ERROR_BROKEN_PIPE;
    if (!done && !atEnd) return failed("read", path);
    out.resize(before + count);
    if (count == 0) return {};
  }
}

}  // namespace

FileView::FileView(FileView&& other) noexcept { *this = std::move(other); }

FileView& FileView::operator=(FileView&& other) noexcept {
  if (this != &other) {
    close();
    m_mapped = std::exchange(other.m_mapped, nullptr);
    m_size = std::exchange(other.m_size, 0);
    m_read = std::exchange(other.m_read, {});
  }
  return *this;
}

FileStatus FileView::open(const std::string& path) {
  close();
  const Handle file(CreateFileW(longPath(path).c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                                FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!file.isOpen()) return failed("open", path);
  LARGE_INTEGER size;
  if (GetFileSizeEx(file.get(), &size) && static_cast<std::uint64_t>(size.QuadPart) >= kMapFrom) {
    const Handle mapping(CreateFileMappingW(file.get(), nullptr, PAGE_READONLY, 0, 0, nullptr));
    if (!mapping.isOpen()) return failed("map", path);
    m_mapped = static_cast<const char*>(MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, 0));
    if (!m_mapped) return failed("map", path);
    m_size = static_cast<std::size_t>(size.QuadPart);
    return {};
  }
  FileStatus status = readAll(file.get(), path, m_read);
  if (!status.ok()) close();
  return status;
}

void FileView::close() {
  if (m_mapped) UnmapViewOfFile(m_mapped);
  m_mapped = nullptr;
  m_size = 0;
  m_read.clear();
}

FileStatus AtomicFile::open(const std::string& target, Backup backup) {
  discard();
  m_target = target;
  m_backup = backup;
  const HANDLE file = openTemporary(m_target, m_temporary);
  if (file == INVALID_HANDLE_VALUE) {
    m_temporary.clear();
    return failed("create a file beside", target);
  }
  m_handle = reinterpret_cast<std::intptr_t>(file);
  return {};
}

FileStatus AtomicFile::write(const char* bytes, std::size_t count) {
  if (!isOpen()) return {FileError::Other, "no file is being written"};
  while (count > 0) {
    const DWORD step = count < kWriteStep ? static_cast<DWORD>(count) : kWriteStep;
    DWORD written = 0;
    if (!WriteFile(asHandle(m_handle), bytes, step, &written, nullptr)) return failed("write", m_temporary);
    bytes += written;
    count -= written;
  }
  return {};
}

FileStatus AtomicFile::closeHandle() {
  const HANDLE file = asHandle(std::exchange(m_handle, kNoHandle));
  return CloseHandle(file) ? FileStatus() : failed("close", m_temporary);
}

FileStatus AtomicFile::finish() {
  if (!FlushFileBuffers(asHandle(m_handle))) return failed("save", m_temporary);
  const FileStatus status = closeHandle();
  if (!status.ok()) return status;
  const std::wstring target = longPath(m_target).native(), temporary = longPath(m_temporary).native();
  const std::wstring backup = m_backup == Backup::Keep ? longPath(backupPath(m_target)).native() : std::wstring();
  return putInPlace(temporary, target, backup) ? FileStatus() : failed("replace", m_target);
}

void AtomicFile::discard() {
  if (isOpen()) (void)closeHandle();
  if (!m_temporary.empty()) DeleteFileW(longPath(m_temporary).c_str());
  m_temporary.clear();
}

}  // namespace gc

#endif
