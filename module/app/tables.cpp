#include "module/app/tables.h"

#include <array>
#include <iterator>

#include "module/app/functions.h"
#include "module/ldata/kelvl.h"
#include "module/reactor/objreactor.h"

namespace {

constexpr LispFunction kFunctions[] = {
#define LISP_FUNCTION(name, body, ...) {GC_T(name), body, 0, -1, 0},
#include "module/app/functions.inc"
#undef LISP_FUNCTION
};
constexpr int kFunctionCount = static_cast<int>(std::size(kFunctions));

struct PresentFunctions {
  std::array<const LispFunction*, kFunctionCount> entries{};
  int count = 0;
};

PresentFunctions countPresent() {
  PresentFunctions present;
  for (const LispFunction& entry : kFunctions)
    if (entry.function != nullptr) present.entries[static_cast<std::size_t>(present.count++)] = &entry;
  return present;
}
// Not a constant expression: with UndefinedBehaviorSanitizer, GCC cannot compare function addresses in one.
const PresentFunctions kPresent = countPresent();

CustomClass s_classes[] = {
    {CKel_VL::desc, CKel_VL::rxInit, false},
    {CObjReactor::desc, CObjReactor::rxInit, false},
};

}  // namespace

std::span<const LispFunction> lispFunctions() { return kFunctions; }

std::span<CustomClass> customClasses() { return s_classes; }

std::span<const CommandEntry> commands() { return {}; }

const LispFunction* lispFunctionAt(int code) {
  if (code < 0 || code >= kPresent.count) return nullptr;
  return kPresent.entries[static_cast<std::size_t>(code)];
}

int placeholder() {
  gcedGetArgs();
  return RTNORM;
}

int notBuilt() { return RTNORM; }
