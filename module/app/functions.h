// The bodies of all LISP functions, declared from their one list. A body takes its arguments with ArgReader, answers
// with ret::… and gives a status that goes nowhere.
#pragma once

#define LISP_FUNCTION(name, body, ...) int body();
#include "module/app/functions.inc"
#undef LISP_FUNCTION
