// Writing a file so that its place holds either the old content or the whole new one, whatever happens in between.
//
// The bytes go to a temporary file beside the target; commit() makes them durable, keeps the old file as a backup if
// wanted, and puts the new one in its place in one step. Without a commit the temporary file is removed and the target
// is as it was. An existing target keeps its permissions (and its owner, where the system lets us); a symbolic link is
// followed, so that the link stays and the file it names is replaced.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "host/rx/file/file_status.h"

namespace gc {

enum class Backup { None, Keep };  // Keep: the old file stays beside the new one, named by backupPath()

class AtomicFile {
 public:
  AtomicFile() = default;
  ~AtomicFile() { discard(); }
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  // Starts writing for `target`; what was begun before is discarded.
  FileStatus open(const std::string& target, Backup backup = Backup::None);

  // Appends. After a failure only discard() makes sense.
  FileStatus write(const char* bytes, std::size_t count);

  // Puts the file in place. On failure the target is as it was and the temporary file is gone.
  FileStatus commit();

  // Gives up; does nothing when nothing is open.
  void discard();

  [[nodiscard]] bool isOpen() const { return m_handle != kNoHandle; }
  [[nodiscard]] const std::string& temporaryPath() const { return m_temporary; }

 private:
  static constexpr std::intptr_t kNoHandle = -1;

  FileStatus finish();
  FileStatus closeHandle();

  std::intptr_t m_handle = kNoHandle;  // the system's handle of the temporary file
  std::string m_target;
  std::string m_temporary;
  Backup m_backup = Backup::None;
};

// Where Backup::Keep leaves the old file: the extension replaced by ".bak".
[[nodiscard]] std::string backupPath(const std::string& target);

// Writes a whole file in one go.
FileStatus writeFileAtomically(const std::string& target, const char* bytes, std::size_t count,
                               Backup backup = Backup::None);

}  // namespace gc
