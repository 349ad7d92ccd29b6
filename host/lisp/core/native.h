// Builtins that call functions given to them (mapcar, vl-sort, apply ...) without recursion in C++.
//
// Such a builtin is a step function. Its arguments and `extraSlots` further slots, nil at first, lie on the value
// stack and are its memory between steps. Each step ends with a result or with the call of a function; after that call
// the step function runs again, with result() as what the function returned and state() as the step left it.
#pragma once

#include "host/lisp/core/objects.h"

namespace lisp {

class Vm;
struct Frame;

struct StepResult {
  enum Kind : uint8_t { Return, Call, TailCall } kind;
  LispValue value;    // the result, or the function to call
  uint32_t argCount;  // arguments pushed
};

class Native {
 public:
  Native(Vm& vm, Frame& frame, LispValue result) : m_vm(vm), m_frame(frame), m_result(result) {}

  Vm& vm() const { return m_vm; }
  uint32_t argCount() const;
  LispValue& slot(uint32_t i) const;  // arguments first, then the extra slots
  LispValue& extra(uint32_t i) const { return slot(argCount() + i); }
  uint32_t& state() const;  // 0 in the first step
  LispValue result() const { return m_result; }

  // Arguments of the call to come.
  void push(LispValue argument) const;
  StepResult call(LispValue function, uint32_t argCount) const { return {StepResult::Call, function, argCount}; }
  // The called function's result becomes the builtin's.
  StepResult tailCall(LispValue function, uint32_t argCount) const {
    return {StepResult::TailCall, function, argCount};
  }
  StepResult done(LispValue value) const { return {StepResult::Return, value, 0}; }

 private:
  Vm& m_vm;
  Frame& m_frame;
  LispValue m_result;
};

}  // namespace lisp
