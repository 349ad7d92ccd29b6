// The macro language within $(...) that menucmd evaluates: text with calls such as $(edtime,0,YYYY-MO-DD).
#pragma once

#include "host/lisp/core/environment.h"

namespace lisp {

Text evaluateMacro(TextView text, const Environment& environment);

}  // namespace lisp
