// How builtins are declared: name, signature, help and body in one place, in any folder that knows this one.
//
//   LISP_GROUP("Lists")
//   LISP_BUILTIN("assoc", "(assoc key alist) -> pair | nil", "First pair of alist whose head equals key.") {
//     const LispValue key = args.any();
//     ...
//   }
//
// The signature is also the check: plain words are required arguments, [bracketed] ones optional, and dots after a
// name mean that it may be repeated. Too few or too many arguments raise the dialect's errors before the body runs.
// Every interpreter made later has the builtin.
#pragma once

#include <string_view>

#include "host/lisp/core/args.h"
#include "host/lisp/core/native.h"

namespace lisp {

struct Builtin {
  const char* name;
  const char* signature;
  const char* help;
  const char* group;
  BuiltinBody body = nullptr;
  StepBody step = nullptr;
  SubrKind kind = SubrKind::Plain;
  uint32_t special = 0;
  uint32_t extraSlots = 0;
  const Builtin* next = nullptr;  // all builtins of the program

  struct Counts {
    uint32_t min, max;
  };
  // Argument counts as the signature tells.
  Counts counts() const;
};

// Puts a row on the list of all builtins when the program starts.
class BuiltinRegistration {
 public:
  explicit BuiltinRegistration(Builtin& row);
};
const Builtin* firstBuiltin();
// By name, case aside; null when there is none. Name, signature, help and group are for reference and completion.
const Builtin* findBuiltin(std::string_view name);

#define LISP_CAT_(a, b) a##b
#define LISP_CAT(a, b) LISP_CAT_(a, b)

#define LISP_GROUP(title)                      \
  namespace {                                  \
  constexpr const char* kBuiltinGroup = title; \
  }

#define LISP_BUILTIN_(id, name, signature, help)                                                                    \
  static ::lisp::LispValue LISP_CAT(builtinBody, id)(::lisp::Args & args);                                          \
  static ::lisp::Builtin LISP_CAT(builtinRow, id){name, signature, help, kBuiltinGroup, LISP_CAT(builtinBody, id)}; \
  static const ::lisp::BuiltinRegistration LISP_CAT(builtinEntry, id)(LISP_CAT(builtinRow, id));                    \
  static ::lisp::LispValue LISP_CAT(builtinBody, id)([[maybe_unused]] ::lisp::Args & args)
#define LISP_BUILTIN(name, signature, help) LISP_BUILTIN_(__COUNTER__, name, signature, help)

// A builtin that calls functions: see native.h. The body sees `native`.
#define LISP_NATIVE_(id, name, signature, help, extraSlots)                                               \
  static ::lisp::StepResult LISP_CAT(builtinStep, id)(::lisp::Native & native);                           \
  static ::lisp::Builtin LISP_CAT(builtinRow, id){                                                        \
      name, signature, help, kBuiltinGroup, nullptr, LISP_CAT(builtinStep, id), ::lisp::SubrKind::Native, \
      0,    extraSlots};                                                                                  \
  static const ::lisp::BuiltinRegistration LISP_CAT(builtinEntry, id)(LISP_CAT(builtinRow, id));          \
  static ::lisp::StepResult LISP_CAT(builtinStep, id)([[maybe_unused]] ::lisp::Native & native)
#define LISP_NATIVE(name, signature, help, extraSlots) LISP_NATIVE_(__COUNTER__, name, signature, help, extraSlots)

// A special form: the compiler knows what to do.
#define LISP_SPECIAL_(id, name, which, signature, help)                          \
  static ::lisp::Builtin LISP_CAT(builtinRow, id){name,                          \
                                                  signature,                     \
                                                  help,                          \
                                                  kBuiltinGroup,                 \
                                                  nullptr,                       \
                                                  nullptr,                       \
                                                  ::lisp::SubrKind::Special,     \
                                                  static_cast<uint32_t>(which)}; \
  static const ::lisp::BuiltinRegistration LISP_CAT(builtinEntry, id)(LISP_CAT(builtinRow, id));
#define LISP_SPECIAL(name, which, signature, help) LISP_SPECIAL_(__COUNTER__, name, which, signature, help)

// A form that is rewritten before it is compiled: args holds the whole form as its one argument, unevaluated; the
// body returns the form to compile instead.
#define LISP_MACRO_(id, name, signature, help)                                                            \
  static ::lisp::LispValue LISP_CAT(builtinBody, id)(::lisp::Args & args);                                \
  static ::lisp::Builtin LISP_CAT(builtinRow, id){                                                        \
      name, signature, help, kBuiltinGroup, LISP_CAT(builtinBody, id), nullptr, ::lisp::SubrKind::Macro}; \
  static const ::lisp::BuiltinRegistration LISP_CAT(builtinEntry, id)(LISP_CAT(builtinRow, id));          \
  static ::lisp::LispValue LISP_CAT(builtinBody, id)([[maybe_unused]] ::lisp::Args & args)
#define LISP_MACRO(name, signature, help) LISP_MACRO_(__COUNTER__, name, signature, help)

}  // namespace lisp
