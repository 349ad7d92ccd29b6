// Tables in macros, which the formatter does not settle on.
// clang-format off
// The instructions of compiled functions.
//
// Code is an array of 64-bit words. An instruction is a head word, op | a << 8 (24 bits) | b << 32 (signed), and up to
// two operand words: symbols (as pointers) and constants (as values). Jumps add b to the address of their head word.
// The machine has a value stack. Variables are the cells of symbols (dynamic scope by shallow binding), so reading one
// is a load. Suffixes tell where operands come from: S the stack, V a variable, C a constant; two of them, left, right.
#pragma once

#include <cstdint>

#include "host/lisp/core/value.h"

namespace lisp {

// Binary operations and comparisons exist for five places of their operands.
#define LISP_PLACES(X, name) X(name##SS) X(name##SV) X(name##SC) X(name##VC) X(name##VV)

#define LISP_OPCODES(X)                                                                                             \
  X(Const)     /* constant             push it */                                                                   \
  X(Nil)       /*                      push nil */                                                                  \
  X(Var)       /* symbol               push its value */                                                            \
  X(Var2)      /* symbol, symbol       push both values */                                                          \
  X(Pop)       /*                                          */                                                       \
  X(SetVar)    /* symbol               store the top, keep it */                                                    \
  X(SetVarPop) /* symbol               store the top, drop it */                                                    \
  X(AddToVar)  /* symbol; a core, b n  variable += n (1+, 1- and the like) */                                       \
  X(Jump)                                                                                                           \
  X(Loop)       /* jump backwards, a safe point */                                                                  \
  X(JumpIf)     /* a sense              drop the top; jump when its truth equals sense */                           \
  X(JumpIfVar)  /* a sense; symbol      the same for a variable */                                                  \
  X(JumpIfNull) /* a core | sense << 8  the same for (null x), (not x) */                                           \
  X(JumpIfNullVar)                                                                                                  \
  X(JumpKeep)  /*                      jump when the top is true and keep it, else drop */                          \
  X(Call)      /* a count; symbol      call what the symbol holds */                                                \
  X(Call1Var)  /* symbol, symbol       call the first with the value of the second */                               \
  X(CallValue) /* a count              call the value below the arguments */                                        \
  X(Return)                                                                                                         \
  X(Car)                                                                                                            \
  X(Cdr) X(CarVar) X(CdrVar) X(Cxr) /* a core | path << 8   compositions of car and cdr */                          \
      X(CxrVar) X(Cons) X(List)     /* a count */                                                                   \
      X(Eq) X(Not)                  /* a core */                                                                    \
      X(Atom) X(Listp) LISP_PLACES(X, Add) LISP_PLACES(X, Subtract) LISP_PLACES(X, Multiply) LISP_PLACES(X, Divide) \
          LISP_PLACES(X, JumpLess) LISP_PLACES(X, JumpGreater) LISP_PLACES(X, JumpLessEqual)                        \
              LISP_PLACES(X, JumpGreaterEqual) LISP_PLACES(X, JumpEqual) LISP_PLACES(X, JumpNotEqual) /* a sense */ \
      X(Less) X(Greater) X(LessEqual) X(GreaterEqual) X(Equal) X(NotEqual)                                          \
          X(Increment) /* a core, b n          top += n */                                                          \
      X(IncrementVar)  /* a core, b n; symbol  push variable + n */                                                 \
      X(StoreBelow)    /* a depth              drop the top into the slot `a` below it */                           \
      X(CheckList)     /*                      the top must be a list */                                            \
      X(CheckCount)    /*                      the top must be an integer */                                        \
      X(ForeachNext)   /* symbol; b exit       next element into the variable */                                    \
      X(RepeatNext)    /* b exit               count down */                                                        \
      X(Bind)          /* symbol               save the value */                                                    \
      X(Unbind)        /*                      undo one Bind */                                                     \
      X(Defun)         /* symbol, value        store, push the symbol */                                            \
      X(Fail)          /* constant             raise the error with that message */                                 \
      X(NativeResume)  /* where native frames go on */                                                              \
      X(ExitRun)       /* where the outermost frame goes on */

enum class Op : uint8_t {
#define LISP_OPCODE(name) name,
  LISP_OPCODES(LISP_OPCODE)
#undef LISP_OPCODE
};

inline constexpr uint64_t packHead(Op op, uint32_t a, int32_t b) {
  return static_cast<uint64_t>(op) | static_cast<uint64_t>(a & 0xFFFFFF) << 8 |
         static_cast<uint64_t>(static_cast<uint32_t>(b)) << 32;
}
inline constexpr uint32_t headA(uint64_t head) { return static_cast<uint32_t>(head >> 8) & 0xFFFFFF; }
inline constexpr int32_t headB(uint64_t head) { return static_cast<int32_t>(head >> 32); }

}  // namespace lisp
