// Characters of the terminal. Everything the program reads and writes is UTF-8; a Windows console is told so for the
// program's time, and read by its own calls, which alone give all characters.
#pragma once

#include <string>

namespace cli {

// While one lives, bytes written to the console are taken for UTF-8. Nothing to do elsewhere.
class Utf8Console {
 public:
  Utf8Console();
  ~Utf8Console();
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;

 private:
  unsigned m_former = 0;  // the code page to go back to; 0: none was set
};

// The next line of standard input, without its end (LF or CR LF). False at the end of the input. A line that Ctrl-C
// broke off is an empty one.
bool readInputLine(std::string& line);

}  // namespace cli
