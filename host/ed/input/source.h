// Where typed lines come from: a terminal, a file, a page, a test.
#pragma once

#include "ge/point.h"
#include "host/rx/view.h"

namespace ed {

// What the next line is to answer, for sources that offer more than typing.
struct InputWish {
  enum class What : uint8_t {
    Text,     // whatever is typed
    Point,    // also a number that two points can give
    Entity,   // one, by a point on it
    Objects,  // several, until Enter
    Drag,     // the lines of ed/drag/draginput.h
  };
  What what = What::Text;
  GcText prompt;
  GcText keywords;
  GcGePoint3d base;  // user coordinates
  bool hasBase = false;
};

class InputSource {
 public:
  virtual ~InputSource() = default;
  // A line without its end; false at the end of input.
  virtual bool readLine(GcText& line) = 0;
  // Told before a line is read.
  virtual void expect(const InputWish&) {}
  // Whether there is no line because Ctrl-C broke it off; the next one can be asked for then.
  [[nodiscard]] virtual bool interrupted() const { return false; }
};

}  // namespace ed
