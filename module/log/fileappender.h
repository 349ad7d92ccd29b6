// Appends log lines to a file, each behind the local time it was written at.
//
// A line is "yy.mm.dd hh:mm.ss ", the low byte of each UTF-16 unit of the text, then line feed and carriage return.
#pragma once

#include <cstdio>

#include "module/log/appender.h"

class FileAppender : public Appender {
 public:
  explicit FileAppender(const GcString& fileName) : m_fileName(fileName) {}
  ~FileAppender() override { closeFile(); }

  void writeLine(const GcString& line) override;
  void writeLine(const GCHAR* line) override;
  void open() override;  // a file that cannot be opened leaves the appender without output
  void close() override { closeFile(); }

 private:
  void closeFile();
  void writeText(const GCHAR* text, std::size_t length);

  GcString m_fileName;
  std::FILE* m_file = nullptr;
};
