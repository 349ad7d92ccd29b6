// A whole file as bytes in memory, for reading. Regular files of some size are mapped, anything else (pipes, small
// files) is read. A mapped file should not be shortened by others while it is looked at.
// Paths are UTF-8 everywhere in this folder, on Windows too.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/rx/file/file_status.h"

namespace gc {

class FileView {
 public:
  FileView() = default;
  ~FileView() { close(); }
  FileView(FileView&& other) noexcept;
  FileView& operator=(FileView&& other) noexcept;
  FileView(const FileView&) = delete;
  FileView& operator=(const FileView&) = delete;

  // Replaces what is looked at. On failure nothing is open.
  FileStatus open(const std::string& path);
  void close();

  // Valid until close; empty when nothing is open.
  [[nodiscard]] std::string_view bytes() const { return m_mapped ? std::string_view(m_mapped, m_size) : m_read; }

 private:
  const char* m_mapped = nullptr;
  std::size_t m_size = 0;
  std::string m_read;
};

}  // namespace gc
