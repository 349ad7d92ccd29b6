#include "host/lisp/core/error.h"

namespace lisp {

void fail(std::string_view asciiMessage) { throw LispError(fromUtf8(asciiMessage)); }

void fail(ErrorKind kind, std::string_view asciiMessage) { throw LispError(kind, fromUtf8(asciiMessage)); }

}  // namespace lisp
