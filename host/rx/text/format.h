// printf-like formatting over the host's 16-bit strings, the same on every platform and in every locale.
//   %d %i %u %x %X %o %c %s %S %f %e %E %g %G %p %%   with flags - + blank # 0, width, precision (also *)
//   lengths h hh l ll z t j; %s takes const GCHAR*, %S and %hs const char* (UTF-8), %c one unit. %ls is %s.
// A null string prints "(null)". An unknown conversion is copied as it stands.
#pragma once

#include <cstdarg>

#include "host/rx/view.h"

namespace gc {

void appendFormatted(GcText& out, const GCHAR* format, va_list arguments);

}  // namespace gc
