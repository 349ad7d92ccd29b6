// The version of host/include as a whole. It changes when a plug-in built before would no longer work.
#include "rx/rxapp.h"

extern "C" int gcrxGetApiVersion() { return 1; }
