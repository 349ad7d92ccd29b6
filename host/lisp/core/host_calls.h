// What the interpreter asks of the program it is embedded in. Every member has a default, so that a test or a tool
// implements what it needs.
#pragma once

#include "host/lisp/core/args.h"

namespace lisp {

class HostCalls {
 public:
  virtual ~HostCalls();

  // Text for the command line; the default writes UTF-8 to the standard output.
  virtual void write(TextView text);
  // A typed line, without its end; false at the end of input. The default has none.
  virtual bool readLine(Text& line);
  // Runs the function defined under `code`. The arguments are read in place; the result is made with their helpers.
  virtual LispValue callExternal(int code, Args& args);
  // The digits within <Entity name: ...>; the default writes the id in hexadecimal.
  virtual void formatEntityName(uint64_t id, Text& out);
  // The number within <Selection set: ...>, and the end of the last reference to it.
  virtual uint64_t selectionSetNumber(uint64_t handle);
  virtual void releaseSelectionSet(uint64_t handle);
  // Why a function of this name (upper case) cannot be had; the default knows no reason and gives an empty text.
  virtual const char* reasonUnavailable(TextView name);
  // (alert text); the default writes the text and a newline.
  virtual void alert(TextView text);
  // Diagnostics that are no command line output; the default writes UTF-8 to the standard error.
  virtual void diagnose(TextView text);
};

}  // namespace lisp
