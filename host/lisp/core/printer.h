// Values as text. Nesting is bounded by memory alone.
#pragma once

#include "host/lisp/core/objects.h"

namespace lisp {

enum class PrintStyle : uint8_t {
  Raw,     // princ
  Quoted,  // prin1: strings in quotes, with escapes
};

// Prints what only the interpreter's owner can: functions, entity names, files and the like.
class ObjectPrinter {
 public:
  virtual void printObject(const Object& object, Text& out) = 0;
  // Asked now and then while a list prints, `length` units so far; throws to stop it.
  virtual void printing(size_t length) = 0;

 protected:
  ~ObjectPrinter() = default;
};

void appendValue(Text& out, LispValue value, PrintStyle style, ObjectPrinter& objects);

}  // namespace lisp
