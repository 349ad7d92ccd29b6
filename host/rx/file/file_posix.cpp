// Files by POSIX calls.
#ifndef _WIN32

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "host/rx/file/atomic_file.h"
#include "host/rx/file/file_view.h"

namespace gc {
namespace {

constexpr std::size_t kMapFrom = std::size_t{1} << 20;  // smaller files are read
constexpr std::size_t kReadStep = std::size_t{1} << 16;

FileError kindOf(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR: return FileError::NotFound;
    case EACCES:
    case EPERM:
    case EROFS: return FileError::Denied;
    case EEXIST: return FileError::Exists;
    case ENOSPC:
    case EDQUOT: return FileError::NoSpace;
    case EFBIG:
    case EOVERFLOW:
    case ENOMEM: return FileError::TooLarge;
    default: return FileError::Other;
  }
}

// For the error that just happened.
FileStatus failed(const char* what, const std::string& path) {
  const int error = errno;
  return {kindOf(error), std::string("cannot ") + what + " " + path + ": " + std::strerror(error)};
}

class Descriptor {
 public:
  explicit Descriptor(int fd) : m_fd(fd) {}
  ~Descriptor() {
    if (m_fd >= 0) ::close(m_fd);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return m_fd; }

 private:
  int m_fd;
};

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

// The file a chain of symbolic links ends at; `path` itself when there is none (or nothing there yet).
std::string followLinks(const std::string& path) {
  struct stat info;
  if (::lstat(path.c_str(), &info) != 0 || !S_ISLNK(info.st_mode)) return path;
  char* resolved = ::realpath(path.c_str(), nullptr);
  if (!resolved) return path;
  std::string target(resolved);
  std::free(resolved);
  return target;
}

// Opens a new file beside `target`; -1 and errno when that fails.
int openTemporary(const std::string& target, std::string& path) {
  static std::atomic<unsigned> count{0};
  for (int attempt = 0; attempt < 100; ++attempt) {
    char name[64];
    std::snprintf(name, sizeof name, "/.gcad-%lx-%x.tmp", static_cast<unsigned long>(::getpid()), ++count);
    path = folderOf(target) + name;
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd >= 0 || errno != EEXIST) return fd;
  }
  return -1;
}

// Makes a rename in `folder` durable. Not all file systems can; the rename itself has happened.
void syncFolder(const std::string& folder) {
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.get() >= 0) ::fsync(descriptor.get());
}

FileStatus writeAll(int fd, const char* bytes, std::size_t count, const std::string& path) {
  while (count > 0) {
    const ssize_t written = ::write(fd, bytes, count);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return failed("write", path);
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return {};
}

FileStatus copyFile(const std::string& from, const std::string& to) {
  FileView old;
  FileStatus status = old.open(from);
  return status.ok() ? writeFileAtomically(to, old.bytes().data(), old.bytes().size()) : status;
}

// Gives the old file a second name, so that the target is never missing; copies where links are unknown.
FileStatus keepBackup(const std::string& target, const std::string& temporary) {
  const std::string backup = backupPath(target), link = temporary + ".bak";
  if (::link(target.c_str(), link.c_str()) == 0) {
    if (::rename(link.c_str(), backup.c_str()) == 0) {
      ::unlink(link.c_str());  // still there when both names were the same file
      return {};
    }
    const FileStatus status = failed("rename to", backup);
    ::unlink(link.c_str());
    return status;
  }
  return errno == ENOENT ? FileStatus() : copyFile(target, backup);
}

void copyAttributes(const std::string& target, int fd) {
  struct stat old;
  if (::stat(target.c_str(), &old) != 0) return;
  // The owner first: a change of owner clears mode bits. An unprivileged process may not, and then keeps its own.
  if (::fchown(fd, old.st_uid, old.st_gid) != 0 && ::fchown(fd, static_cast<uid_t>(-1), old.st_gid) != 0) errno = 0;
  if (::fchmod(fd, old.st_mode & 07777) != 0) errno = 0;
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
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (file.get() < 0) return failed("open", path);
  struct stat info;
  if (::fstat(file.get(), &info) != 0) return failed("look at", path);
  if (S_ISDIR(info.st_mode)) return {FileError::Other, "cannot read " + path + ": it is a folder"};
  if (S_ISREG(info.st_mode) && static_cast<std::size_t>(info.st_size) >= kMapFrom) {
    void* mapped = ::mmap(nullptr, info.st_size, PROT_READ, MAP_PRIVATE, file.get(), 0);
    if (mapped == MAP_FAILED) return failed("map", path);
    ::madvise(mapped, info.st_size, MADV_SEQUENTIAL);
    m_mapped = static_cast<const char*>(mapped);
    m_size = info.st_size;
    return {};
  }
  for (;;) {
    const std::size_t before = m_read.size();
    m_read.resize(before + kReadStep);
    const ssize_t count = ::read(file.get(), m_read.data() + before, kReadStep);
    m_read.resize(before + (count > 0 ? static_cast<std::size_t>(count) : 0));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      const FileStatus status = failed("read", path);
      close();
      return status;
    }
    if (count == 0) return {};
  }
}

void FileView::close() {
  if (m_mapped) ::munmap(const_cast<char*>(m_mapped), m_size);
  m_mapped = nullptr;
  m_size = 0;
  m_read.clear();
}

FileStatus AtomicFile::open(const std::string& target, Backup backup) {
  discard();
  m_target = followLinks(target);
  m_backup = backup;
  const int fd = openTemporary(m_target, m_temporary);
  if (fd < 0) {
    m_temporary.clear();
    return failed("create a file beside", target);
  }
  m_handle = fd;
  return {};
}

FileStatus AtomicFile::write(const char* bytes, std::size_t count) {
  if (!isOpen()) return {FileError::Other, "no file is being written"};
  return writeAll(static_cast<int>(m_handle), bytes, count, m_temporary);
}

FileStatus AtomicFile::closeHandle() {
  const int fd = static_cast<int>(std::exchange(m_handle, kNoHandle));
  return ::close(fd) == 0 ? FileStatus() : failed("close", m_temporary);
}

FileStatus AtomicFile::finish() {
  copyAttributes(m_target, static_cast<int>(m_handle));
  if (::fsync(static_cast<int>(m_handle)) != 0) return failed("save", m_temporary);
  FileStatus status = closeHandle();
  if (status.ok() && m_backup == Backup::Keep) status = keepBackup(m_target, m_temporary);
  if (!status.ok()) return status;
  if (::rename(m_temporary.c_str(), m_target.c_str()) != 0) return failed("replace", m_target);
  syncFolder(folderOf(m_target));
  return {};
}

void AtomicFile::discard() {
  if (isOpen()) (void)closeHandle();
  if (!m_temporary.empty()) ::unlink(m_temporary.c_str());
  m_temporary.clear();
}

}  // namespace gc

#endif
