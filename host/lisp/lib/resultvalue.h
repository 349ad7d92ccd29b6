// Result buffers as LISP values.
//
//   RTNIL, RTT, RTREAL, RTANG, RTSTR, RTSHORT, RTLONG, RTENAME, RTPICKS   as one expects
//   RTPOINT, RT3DPOINT   (x y z), always three reals        RTLB, RTLE   lists; unmatched ones are tolerated
//   group code below 5000   (code . value), point groups (code x y z)
//   RTVOID   the symbol that prints as nothing              anything else   nil
#pragma once

#include "host/lisp/core/interpreter.h"
#include "rx/resbuf.h"

namespace lisplib {

// One node.
lisp::LispValue valueOfNode(lisp::Vm& vm, const resbuf& node);
// The list of a whole chain. One that is a single bracketed list is that list, not a list of it.
lisp::LispValue listOfChain(lisp::Vm& vm, const resbuf* chain);
// The chain of one object as entget gives it: pairs, with the extended data after the code -3 as one sublist per
// application.
lisp::LispValue entityListOfChain(lisp::Vm& vm, const resbuf* chain);

}  // namespace lisplib
