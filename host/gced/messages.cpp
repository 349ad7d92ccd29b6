// Messages to the person.
#include "ed/gced.h"
#include "host/ap/output.h"
#include "host/rx/text/format.h"

int gcutPrintf(const GCHAR* format, ...) {
  if (format == nullptr) return RTERROR;
  GcText text;
  va_list arguments;
  va_start(arguments, format);
  gc::appendFormatted(text, format, arguments);
  va_end(arguments);
  ap::print(text);
  return RTNORM;
}

int gcdbFail(const GCHAR* message) {
  if (message == nullptr) return RTERROR;
  ap::print(message);
  return RTNORM;
}
