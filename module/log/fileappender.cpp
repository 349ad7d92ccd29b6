#include "module/log/fileappender.h"

#include <ctime>
#include <string>

#include "module/log/logplatform.h"

void FileAppender::open() {
  if (m_file == nullptr) m_file = logplatform::openToAppend(m_fileName);
}

void FileAppender::closeFile() {
  if (m_file == nullptr) return;
  std::fclose(m_file);
  m_file = nullptr;
}

void FileAppender::writeLine(const GcString& line) { writeText(line.c_str(), line.length()); }

void FileAppender::writeLine(const GCHAR* line) {
  if (line != nullptr) writeText(line, std::char_traits<GCHAR>::length(line));
}

void FileAppender::writeText(const GCHAR* text, std::size_t length) {
  if (m_file == nullptr) return;
  char stamp[32];
  const std::tm now = logplatform::localTime(std::time(nullptr));
  const std::size_t stampLength = std::strftime(stamp, sizeof stamp, "%y.%m.%d %H:%M.%S ", &now);
  std::fwrite(stamp, 1, stampLength, m_file);
  std::fflush(m_file);

  // Deliberate: the low byte of each unit, whatever letter that makes, and the line end's two bytes in this order.
  std::string bytes(length, '\0');
  for (std::size_t i = 0; i < length; ++i) bytes[i] = static_cast<char>(text[i] & 0xFF);
  bytes += "\n\r";
  std::fwrite(bytes.data(), 1, bytes.size(), m_file);
  std::fflush(m_file);
}
