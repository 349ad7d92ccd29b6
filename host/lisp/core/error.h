// The errors of the dialect while they travel inside the interpreter. They never leave it: the embedding interface
// turns them into a status with a message.
#pragma once

#include "host/lisp/core/text.h"
#include "host/lisp/core/value.h"

namespace lisp {

enum class ErrorKind : uint8_t {
  Error,      // an ordinary error with a message
  Exit,       // exit, quit; may carry a code for the host
  ExitValue,  // vl-exit-with-value: ends the top-level form with a value
  Cancelled,  // interrupted by the user
  TimeLimit,  // not catchable by programs
  MemoryLimit,
};

struct LispError {
  ErrorKind kind = ErrorKind::Error;
  Text message;
  int exitCode = 0;
  bool silent = false;    // no message when nothing handles it: exit with a code
  bool endsAll = false;   // programs cannot catch it
  bool reported = false;  // *error* has run or the message has been printed

  // Where in a text that was being read; no file when the error has nothing to do with reading.
  Text file;
  uint32_t line = 0;
  uint32_t column = 0;

  explicit LispError(Text text) : message(std::move(text)) {}
  LispError(ErrorKind k, Text text) : kind(k), message(std::move(text)) {}
};

[[noreturn]] void fail(std::string_view asciiMessage);
[[noreturn]] void fail(ErrorKind kind, std::string_view asciiMessage);

}  // namespace lisp
