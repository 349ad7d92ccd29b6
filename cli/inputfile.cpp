#include "cli/inputfile.h"

#include "cli/console.h"
#include "host/rx/file/file_view.h"
#include "host/rx/text/utf.h"

namespace cli {

std::unique_ptr<InputFile> InputFile::open(const std::string& path, std::string& reason) {
  std::unique_ptr<InputFile> input(new InputFile);
  input->m_standard = path == "-";
  if (input->m_standard) return input;
  gc::FileView file;
  if (const gc::FileStatus status = file.open(path); !status.ok()) {
    reason = status.message();
    return nullptr;
  }
  input->m_bytes = file.bytes();
  return input;
}

bool InputFile::readLine(GcText& line) {
  std::string bytes;
  if (m_standard) {
    if (!readInputLine(bytes)) return false;
  } else {
    if (m_at >= m_bytes.size()) return false;
    const size_t end = std::min(m_bytes.find('\n', m_at), m_bytes.size());
    bytes = m_bytes.substr(m_at, end - m_at);
    m_at = end + 1;
    if (!bytes.empty() && bytes.back() == '\r') bytes.pop_back();
  }
  line = gc::fromUtf8(bytes);
  return true;
}

}  // namespace cli
