// printf-like formatting into a host string: %s takes const GCHAR*, %S const char*; %d %u %x %ld %lld %f %g %e %c %%,
// with flags, width and precision; never by the locale.
#pragma once

#include "rx/gcstring.h"

void gcutFormat(GcString& out, const GCHAR* format, ...);
