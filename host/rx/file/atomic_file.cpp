#include "host/rx/file/atomic_file.h"

namespace gc {

std::string backupPath(const std::string& target) {
  const std::size_t name = target.find_last_of("/\\") + 1;  // npos + 1 is 0
  const std::size_t dot = target.rfind('.');
  const bool hasExtension = dot != std::string::npos && dot > name;
  std::string path = (hasExtension ? target.substr(0, dot) : target) + ".bak";
  return path == target ? target + ".bak" : path;
}

FileStatus AtomicFile::commit() {
  if (!isOpen()) return {FileError::Other, "no file is being written"};
  FileStatus status = finish();
  if (status.ok()) {
    m_temporary.clear();
  } else {
    discard();
  }
  return status;
}

FileStatus writeFileAtomically(const std::string& target, const char* bytes, std::size_t count, Backup backup) {
  AtomicFile file;
  FileStatus status = file.open(target, backup);
  if (status.ok()) status = file.write(bytes, count);
  return status.ok() ? file.commit() : status;
}

}  // namespace gc
