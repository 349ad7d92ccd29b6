// Wild-card matching as wcmatch, table searches and selection filters use it. Case counts; fold both sides to ignore it.
//   #  a digit     @  a letter     .  one that is neither     *  any run     ?  any one     ~  first: not
//   [...] one of   [~...] none of  -  a range within brackets  ,  alternatives  `  the next character as it is
#pragma once

#include "host/lisp/core/text.h"

namespace lisp {

bool wildcardMatch(TextView text, TextView pattern);

}  // namespace lisp
