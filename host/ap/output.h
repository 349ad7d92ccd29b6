// The command line's way out: what a person would read, as UTF-16 text. Whoever shows it (terminal, page, test)
// registers itself; without anybody the text is dropped.
#pragma once

#include "host/rx/view.h"

namespace ap {

class Output {
 public:
  virtual ~Output() = default;
  virtual void write(GcView text) = 0;
};

// Null for none. The output stays the caller's. Returns the former one.
Output* setOutput(Output* output);

// Text of LISP programs that is already on its way.
void writeRaw(GcView text);

// Prints a message; what the current document's LISP has printed but still holds back goes first.
void print(GcView text);
void print(const char* ascii);

}  // namespace ap
