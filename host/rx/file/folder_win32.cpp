// By Windows calls: those of the C and C++ libraries go no deeper than 260 characters, some of them (_wstat) refuse the
// prefix that lifts the limit.
#ifdef _WIN32

#include <windows.h>

#include "host/rx/file/folder.h"

namespace gc {

namespace fs = std::filesystem;

namespace {

// From this length on a path is given in its long form: below the limit for folders, with some room.
constexpr std::size_t kLongFrom = 240;

std::wstring absoluteOf(const std::wstring& path) {
  std::wstring whole(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
  if (whole.empty()) return path;
  whole.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(whole.size()), whole.data(), nullptr));
  return whole;
}

bool startsWith(const std::wstring& text, const wchar_t* start) { return text.rfind(start, 0) == 0; }

// Windows counts steps of 100 ns from 1601-01-01.
int64_t nanosecondsOf(const FILETIME& time) {
  constexpr int64_t kFrom1601To1970 = 116444736000000000;
  ULARGE_INTEGER ticks;
  ticks.LowPart = time.dwLowDateTime;
  ticks.HighPart = time.dwHighDateTime;
  return (static_cast<int64_t>(ticks.QuadPart) - kFrom1601To1970) * 100;
}

// What says which file a path leads to; false when it leads to none.
bool identify(const fs::path& path, BY_HANDLE_FILE_INFORMATION& identity) {
  const HANDLE file = CreateFileW(systemPath(path).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const bool known = GetFileInformationByHandle(file, &identity) != 0;
  CloseHandle(file);
  return known;
}

}  // namespace

fs::path systemPath(const fs::path& path) {
  const std::wstring& given = path.native();
  if (given.empty() || startsWith(given, L"\\\\?\\") || startsWith(given, L"\\\\.\\")) return path;
  const std::wstring whole = absoluteOf(given);
  if (whole.size() < kLongFrom) return path;
  if (startsWith(whole, L"\\\\")) return L"\\\\?\\UNC" + whole.substr(1);
  return L"\\\\?\\" + whole;
}

PathFacts pathFacts(const fs::path& path) {
  PathFacts facts;
  WIN32_FILE_ATTRIBUTE_DATA found;
  if (!GetFileAttributesExW(systemPath(path).c_str(), GetFileExInfoStandard, &found)) return facts;
  const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  const bool isDevice = (found.dwFileAttributes & FILE_ATTRIBUTE_DEVICE) != 0;
  facts.kind = isFolder ? PathFacts::Kind::Folder : isDevice ? PathFacts::Kind::Other : PathFacts::Kind::File;
  if (!isFolder) facts.size = (static_cast<int64_t>(found.nFileSizeHigh) << 32) | found.nFileSizeLow;
  facts.modifiedNs = nanosecondsOf(found.ftLastWriteTime);
  return facts;
}

bool listFolder(const fs::path& folder, std::vector<FolderEntry>& entries) {
  WIN32_FIND_DATAW found;
  // The pattern counts for the limit as well.
  const HANDLE search = FindFirstFileW(systemPath(folder / L"*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return GetLastError() == ERROR_FILE_NOT_FOUND;
  do {
    const std::wstring_view name = found.cFileName;
    if (name == L"." || name == L"..") continue;
    const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    const bool isLink = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    entries.push_back({fs::path(name), isFolder, !isFolder, isLink});
  } while (FindNextFileW(search, &found));
  FindClose(search);
  return true;
}

bool makeFolder(const fs::path& folder) { return CreateDirectoryW(systemPath(folder).c_str(), nullptr) != 0; }

bool removeEmptyFolder(const fs::path& folder) { return RemoveDirectoryW(systemPath(folder).c_str()) != 0; }

bool removeFile(const fs::path& path) { return DeleteFileW(systemPath(path).c_str()) != 0; }

bool renamePath(const fs::path& from, const fs::path& to) {
  return MoveFileExW(systemPath(from).c_str(), systemPath(to).c_str(), MOVEFILE_COPY_ALLOWED) != 0;
}

bool isSameFile(const fs::path& first, const fs::path& second) {
  BY_HANDLE_FILE_INFORMATION one, other;
  if (!identify(first, one) || !identify(second, other)) return false;
  return one.dwVolumeSerialNumber == other.dwVolumeSerialNumber && one.nFileIndexHigh == other.nFileIndexHigh &&
         one.nFileIndexLow == other.nFileIndexLow;
}

}  // namespace gc

#endif
