// An appender that keeps the lines it is given.
#pragma once

#include <vector>

#include "module/log/appender.h"

class ListAppender : public Appender {
 public:
  explicit ListAppender(std::vector<GcString>& lines, int* closed = nullptr) : m_lines(lines), m_closed(closed) {}
  void writeLine(const GcString& line) override { m_lines.push_back(line); }
  void writeLine(const GCHAR* line) override { m_lines.push_back(line); }
  void open() override {}
  void close() override {
    if (m_closed != nullptr) ++*m_closed;
  }

 private:
  std::vector<GcString>& m_lines;
  int* m_closed;
};
