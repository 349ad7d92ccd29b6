// Extended data of marked applications as a LISP list.
#pragma once

#include "module/app/rbchain.h"

// Takes over a chain of extended data (groups that each begin with a 1001 application name) and gives back what
// belongs to marked applications, one bracketed sublist per group, headed by the name as a string. Null when nothing
// is left. The caller releases the result.
[[nodiscard]] resbuf* markedXData(resbuf* data);
