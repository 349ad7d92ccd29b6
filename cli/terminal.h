// The process's standard streams. gcad keeps the original standard output for its command line and gives everybody
// else in the process (plug-ins above all) one that leads to standard error. Bytes, never text mode.
#pragma once

#include <string>
#include <string_view>

#include "cli/console.h"

namespace cli {

class Terminal {
 public:
  Terminal();
  ~Terminal();  // flushes
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  void write(std::string_view bytes);  // to the original standard output, buffered
  void flush();
  // False after the output could not be written (a closed pipe, say).
  [[nodiscard]] bool good() const { return m_good; }

  [[nodiscard]] bool inputIsTerminal() const;
  [[nodiscard]] bool outputIsTerminal() const;

 private:
  Utf8Console m_console;
  int m_output;
  bool m_good = true;
  std::string m_buffer;
};

// To standard error, at once.
void complain(std::string_view text);

}  // namespace cli
