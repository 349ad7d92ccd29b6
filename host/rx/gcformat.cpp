#include "rx/gcformat.h"

#include "host/rx/text/format.h"

void gcutFormat(GcString& out, const GCHAR* format, ...) {
  GcText text;
  va_list arguments;
  va_start(arguments, format);
  gc::appendFormatted(text, format, arguments);
  va_end(arguments);
  out = toGcString(text);
}
