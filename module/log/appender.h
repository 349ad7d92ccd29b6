// Where log lines go.
#pragma once

#include "module/app/host.h"

class Appender {
 public:
  Appender() = default;
  Appender(const Appender&) = delete;
  Appender& operator=(const Appender&) = delete;
  virtual ~Appender() = default;
  virtual void writeLine(const GcString& line) = 0;
  virtual void writeLine(const GCHAR* line) = 0;  // nothing for null
  virtual void open() = 0;
  virtual void close() = 0;
};
