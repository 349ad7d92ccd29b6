// Parts of a document that higher layers own: the editor's state, the LISP name space. A document keeps and destroys
// them without knowing what they are.
#pragma once

#include <cstdint>

#include "host/rx/view.h"

namespace ap {

class DocumentPart {
 public:
  DocumentPart() = default;
  DocumentPart(const DocumentPart&) = delete;
  DocumentPart& operator=(const DocumentPart&) = delete;
  virtual ~DocumentPart() = default;
};

// A LISP value as far as calculations take it.
struct LispNumber {
  enum class Kind : uint8_t { None, Integer, Real, Point };
  Kind kind = Kind::None;
  double x = 0, y = 0, z = 0;  // a number is in x
};

// What lower layers ask of a document's LISP.
class LispSpace : public DocumentPart {
 public:
  // Functions of the plug-in that is being sent a message now. Errors: false for an empty name.
  virtual bool define(GcView name, int code) = 0;
  virtual bool undefine(GcView name, int code) = 0;
  // A function to be called directly for a code instead of an invoke message.
  virtual bool registerFunction(int (*function)(), int code) = 0;
  // Forgets every function of a plug-in that goes away.
  virtual void forgetPlugIn(const void* plugIn) = 0;
  // Evaluates text as if typed at the command line.
  virtual void evaluate(GcView text) = 0;
  // Runs the program's own command of this name (its function C:NAME). False when there is none.
  virtual bool runCommand(GcView name) = 0;
  // Whether the program at work shall end: Ctrl-C, a limit. Long work asks now and then, stops and returns.
  [[nodiscard]] virtual bool endWanted() const = 0;
  // The number or point a variable holds; None for anything else. And back; None sets nil.
  virtual LispNumber numberIn(GcView variable) = 0;
  virtual void putNumber(GcView variable, const LispNumber& number) = 0;
  // Between units by name ("inch", "cm"). False when one is unknown or they measure different things.
  virtual bool convertUnits(double& value, GcView from, GcView to) = 0;
  // A length and an angle in one of the drawing's unit formats (LUNITS 1 to 5, AUNITS 0 to 4); zeros as DIMZIN says.
  virtual GcText lengthText(double value, int unit, int precision, int zeros) = 0;
  virtual GcText angleText(double radians, int unit, int precision) = 0;
  // What a text of the macro language comes to: $(+,1,2) and the like.
  virtual GcText macroText(GcView text) = 0;
  // The value of a variable as it prints; false when it has none.
  virtual bool variableText(GcView variable, GcText& text) = 0;
  // Hands on what has been printed but lies in a buffer.
  virtual void flush() = 0;
};

}  // namespace ap
