// Where typed lines come from: a terminal, a file, a test.
#pragma once

#include "host/rx/view.h"

namespace ed {

class InputSource {
 public:
  virtual ~InputSource() = default;
  // A line without its end; false at the end of input.
  virtual bool readLine(GcText& line) = 0;
  // Whether there is no line because Ctrl-C broke it off; the next one can be asked for then.
  [[nodiscard]] virtual bool interrupted() const { return false; }
};

}  // namespace ed
