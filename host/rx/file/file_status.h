// The outcome of a file operation: a kind to act on and a message for people.
#pragma once

#include <string>
#include <utility>

namespace gc {

enum class FileError { None, NotFound, Denied, Exists, NoSpace, TooLarge, Other };

class [[nodiscard]] FileStatus {
 public:
  FileStatus() = default;
  FileStatus(FileError error, std::string message) : m_error(error), m_message(std::move(message)) {}

  bool ok() const { return m_error == FileError::None; }
  FileError error() const { return m_error; }

  // What was tried, the path and the system's reason: "cannot open /a/b.dxf: No such file or directory".
  const std::string& message() const { return m_message; }

 private:
  FileError m_error = FileError::None;
  std::string m_message;
};

}  // namespace gc
