// The instruction loop. Each handler reads its operands behind `pc`, works on the value stack at `sp` and goes on to
// the next instruction. Before anything that may raise an error, collect or call back, SYNC publishes the registers.
#include <exception>
#include <new>

#include "host/lisp/core/numbers.h"
#include "host/lisp/core/opcodes.h"
#include "host/lisp/core/vm.h"

// Computed goto: every handler ends in a jump of its own, which branch prediction rewards.
#pragma GCC diagnostic ignored "-Wpedantic"

namespace lisp {

namespace {

constexpr Word kResumeCode = packHead(Op::NativeResume, 0, 0);
constexpr Word kExitCode = packHead(Op::ExitRun, 0, 0);

inline Symbol* symbolAt(const Word* pc) { return reinterpret_cast<Symbol*>(*pc); }
inline LispValue valueAt(const Word* pc) { return LispValue::fromBits(*pc); }

inline bool bothIntegers(LispValue a, LispValue b) { return a.isInteger() && b.isInteger(); }
inline bool bothNumbers(LispValue a, LispValue b) { return a.isNumber() && b.isNumber(); }
inline bool bothReals(LispValue a, LispValue b) { return a.isReal() && b.isReal(); }

inline LispValue wrapped(uint32_t v) { return LispValue::integer(static_cast<int32_t>(v)); }
inline uint32_t unsignedOf(LispValue v) { return static_cast<uint32_t>(v.asInteger()); }

}  // namespace

// Publishes the registers; `n` words belong to the instruction at work.
#define SYNC(n)        \
  do {                 \
    fp->pc = pc + (n); \
    m_frame = fp;      \
    m_top = sp;        \
  } while (0)
#define DISPATCH() goto* kLabels[*pc & 0xFF]
#define NEXT(n) \
  do {          \
    pc += (n);  \
    DISPATCH(); \
  } while (0)
#define A headA(*pc)
#define B headB(*pc)
#define INTACT(id) (core[static_cast<size_t>(id)].value == core[static_cast<size_t>(id)].builtin)

// One binary operation in its five places. FAST computes `out` from `l` and `r` or leaves `ok` false.
#define BINARY_PLACE(label, id, n, left, right, place, FAST) \
  label : {                                                  \
    const LispValue l = left, r = right;                     \
    LispValue out;                                           \
    if (INTACT(id) && FAST(l, r, out)) [[likely]] {          \
      place;                                                 \
      NEXT(n);                                               \
    }                                                        \
    SYNC(n);                                                 \
    out = coreBinary(id, l, r);                              \
    place;                                                   \
    NEXT(n);                                                 \
  }
#define BINARY(name, id, FAST)                                                                 \
  BINARY_PLACE(name##SS, id, 1, sp[-2], sp[-1], (--sp, sp[-1] = out), FAST)                    \
  BINARY_PLACE(name##SV, id, 2, sp[-1], symbolAt(pc + 1)->value, (sp[-1] = out), FAST)         \
  BINARY_PLACE(name##SC, id, 2, sp[-1], valueAt(pc + 1), (sp[-1] = out), FAST)                 \
  BINARY_PLACE(name##VC, id, 3, symbolAt(pc + 1)->value, valueAt(pc + 2), (*sp++ = out), FAST) \
  BINARY_PLACE(name##VV, id, 3, symbolAt(pc + 1)->value, symbolAt(pc + 2)->value, (*sp++ = out), FAST)

// One comparison as a jump in its five places.
#define COMPARE_PLACE(label, id, n, left, right, drop, OPERATOR) \
  label : {                                                      \
    const LispValue l = left, r = right;                         \
    bool truth;                                                  \
    if (INTACT(id) && bothIntegers(l, r)) [[likely]] {           \
      truth = l.asInteger() OPERATOR r.asInteger();              \
    } else if (INTACT(id) && bothReals(l, r)) {                  \
      truth = l.asReal() OPERATOR r.asReal();                    \
    } else {                                                     \
      SYNC(n);                                                   \
      truth = coreTest(id, l, r);                                \
    }                                                            \
    sp -= drop;                                                  \
    if (truth == static_cast<bool>(A)) NEXT(B);                  \
    NEXT(n);                                                     \
  }
#define COMPARE(name, id, OPERATOR)                                                     \
  COMPARE_PLACE(name##SS, id, 1, sp[-2], sp[-1], 2, OPERATOR)                           \
  COMPARE_PLACE(name##SV, id, 2, sp[-1], symbolAt(pc + 1)->value, 1, OPERATOR)          \
  COMPARE_PLACE(name##SC, id, 2, sp[-1], valueAt(pc + 1), 1, OPERATOR)                  \
  COMPARE_PLACE(name##VC, id, 3, symbolAt(pc + 1)->value, valueAt(pc + 2), 0, OPERATOR) \
  COMPARE_PLACE(name##VV, id, 3, symbolAt(pc + 1)->value, symbolAt(pc + 2)->value, 0, OPERATOR)
#define COMPARE_VALUE(label, id, OPERATOR)             \
  label : {                                            \
    const LispValue l = sp[-2], r = sp[-1];            \
    bool truth;                                        \
    if (INTACT(id) && bothIntegers(l, r)) [[likely]] { \
      truth = l.asInteger() OPERATOR r.asInteger();    \
    } else if (INTACT(id) && bothReals(l, r)) {        \
      truth = l.asReal() OPERATOR r.asReal();          \
    } else {                                           \
      SYNC(1);                                         \
      truth = coreTest(id, l, r);                      \
    }                                                  \
    --sp;                                              \
    sp[-1] = LispValue::boolean(truth);                \
    NEXT(1);                                           \
  }

#define FAST_ADD(l, r, out)                                                             \
  (bothIntegers(l, r)  ? (out = wrapped(unsignedOf(l) + unsignedOf(r)), true)           \
   : bothNumbers(l, r) ? (out = LispValue::computed(l.asDouble() + r.asDouble()), true) \
                       : false)
#define FAST_SUBTRACT(l, r, out)                                                        \
  (bothIntegers(l, r)  ? (out = wrapped(unsignedOf(l) - unsignedOf(r)), true)           \
   : bothNumbers(l, r) ? (out = LispValue::computed(l.asDouble() - r.asDouble()), true) \
                       : false)
#define FAST_MULTIPLY(l, r, out)                                                        \
  (bothIntegers(l, r)  ? (out = wrapped(unsignedOf(l) * unsignedOf(r)), true)           \
   : bothNumbers(l, r) ? (out = LispValue::computed(l.asDouble() * r.asDouble()), true) \
                       : false)
#define FAST_DIVIDE(l, r, out) \
  (bothReals(l, r) && r.asReal() != 0 ? (out = LispValue::computed(l.asReal() / r.asReal()), true) : false)

LispValue Vm::execute(Entry entry) {
  static const void* const kLabels[] = {
#define LISP_LABEL(name) &&name,
      LISP_OPCODES(LISP_LABEL)
#undef LISP_LABEL
  };
  Symbol* const core = &m_symbols.core(Core::Add);
  Frame* fp = m_frame;
  LispValue* sp = m_top;
  const Word* pc = fp->pc;
  LispValue callee;
  LispValue result;
  uint32_t argCount = 0;

  if (entry.resume) DISPATCH();
  callee = entry.callee;
  argCount = entry.argCount;
  goto call_any;

  // ---- variables and constants

Const:
  *sp++ = valueAt(pc + 1);
  NEXT(2);
Nil:
  *sp++ = LispValue::nil();
  NEXT(1);
Var:
  *sp++ = symbolAt(pc + 1)->value;
  NEXT(2);
Var2:
  sp[0] = symbolAt(pc + 1)->value;
  sp[1] = symbolAt(pc + 2)->value;
  sp += 2;
  NEXT(3);
Pop:
  --sp;
  NEXT(1);
SetVar:
  symbolAt(pc + 1)->value = sp[-1];
  NEXT(2);
SetVarPop:
  symbolAt(pc + 1)->value = *--sp;
  NEXT(2);
AddToVar : {
  LispValue& v = symbolAt(pc + 1)->value;
  if (v.isInteger() && INTACT(A)) [[likely]] {
    v = wrapped(unsignedOf(v) + static_cast<uint32_t>(B));
    NEXT(2);
  }
  SYNC(2);
  v = coreStep(static_cast<Core>(A), v, B);
  NEXT(2);
}

  // ---- jumps

Jump:
  NEXT(B);
Loop:
  if (m_poll.load(std::memory_order_relaxed)) [[unlikely]] {
    SYNC(1);
    poll(LispValue::nil());
  }
  NEXT(B);
JumpIf:
  if (static_cast<bool>(*--sp) == static_cast<bool>(A)) NEXT(B);
  NEXT(1);
JumpIfVar:
  if (static_cast<bool>(symbolAt(pc + 1)->value) == static_cast<bool>(A)) NEXT(B);
  NEXT(2);
JumpIfNull : {
  LispValue v = sp[-1];
  const auto id = A & 0xFF;
  if (!INTACT(id)) [[unlikely]] {
    SYNC(1);
    v = LispValue::boolean(!coreUnary(static_cast<Core>(id), v, 0));
  }
  --sp;
  if (v.isNil() == static_cast<bool>(A >> 8)) NEXT(B);
  NEXT(1);
}
JumpIfNullVar : {
  LispValue v = symbolAt(pc + 1)->value;
  const auto id = A & 0xFF;
  if (!INTACT(id)) [[unlikely]] {
    SYNC(2);
    v = LispValue::boolean(!coreUnary(static_cast<Core>(id), v, 0));
  }
  if (v.isNil() == static_cast<bool>(A >> 8)) NEXT(B);
  NEXT(2);
}
JumpKeep:
  if (sp[-1]) NEXT(B);
  --sp;
  NEXT(1);

  // ---- calls

Call1Var:
  *sp++ = symbolAt(pc + 2)->value;
  argCount = 1;
  callee = symbolAt(pc + 1)->value;
  SYNC(3);
  if (callee.isObject()) [[likely]]
    goto call_object;
  callee = LispValue::of(symbolAt(pc + 1));
  goto call_any;
Call:
  argCount = A;
  callee = symbolAt(pc + 1)->value;
  SYNC(2);
  if (callee.isObject()) [[likely]]
    goto call_object;
  callee = LispValue::of(symbolAt(pc + 1));
  goto call_any;
CallValue:
  argCount = A;
  callee = sp[-1 - static_cast<ptrdiff_t>(argCount)];
  SYNC(1);
  // The function slot goes; a safe point keeps the callee alive by itself.
  for (LispValue* p = sp - argCount - 1; p < sp - 1; ++p) p[0] = p[1];
  --sp;
  goto call_any;

  // From here on fp->pc is where the caller goes on, and the arguments are the topmost values.
call_any:
  if (!callee.isObject()) {
    m_frame = fp;
    m_top = sp;
    callee = resolveCallee(callee);
  }
call_object : {
  Object* object = callee.asObject();
  if (m_poll.load(std::memory_order_relaxed)) [[unlikely]] {
    m_frame = fp;
    m_top = sp;
    poll(callee);
  }
  if (object->type == ObjectType::Function) [[likely]] {
    const auto* f = static_cast<const Function*>(object);
    if (argCount != f->paramCount) [[unlikely]] {
      if (f->paramCount == Function::kAnyCount) goto call_traced;
      m_frame = fp;
      m_top = sp;
      failArity(argCount, f->paramCount);
    }
    Binding* b = m_bindingTop;
    Symbol* const* variables = f->variables;
    LispValue* arguments = sp - argCount;
    const uint32_t total = argCount + f->localCount;
    if (fp + 1 >= m_frameLimit || sp + f->maxStack >= m_valueLimit || b + total >= m_bindingLimit) [[unlikely]] {
      m_frame = fp;
      m_top = sp;
      failDepth();
    }
    ++fp;
    fp->function = static_cast<Function*>(object);
    fp->base = arguments;
    fp->bindings = b;
    uint32_t i = 0;
    for (; i < argCount; ++i, ++b) {
      Symbol* s = variables[i];
      *b = {s, s->value};
      s->value = arguments[i];
    }
    for (; i < total; ++i, ++b) {
      Symbol* s = variables[i];
      *b = {s, s->value};
      s->value = LispValue::nil();
    }
    m_bindingTop = b;
    sp = arguments;
    pc = f->code;
    DISPATCH();
  }
  m_frame = fp;
  m_top = sp;
  if (object->type == ObjectType::Subr) {
    const auto* subr = static_cast<const Subr*>(object);
    if (argCount < subr->minArgs || argCount > subr->maxArgs) [[unlikely]]
      checkSubrArity(*subr, argCount);
    if (subr->kind() == SubrKind::Native) {
      if (fp + 1 >= m_frameLimit || sp + subr->extraSlots + 64 >= m_valueLimit) [[unlikely]]
        failDepth();
      ++fp;
      fp->subr = subr;
      goto enter_native;
    }
    if (subr->kind() == SubrKind::Plain) [[likely]] {
      Args args(*this, sp - argCount, argCount);
      result = subr->body(args);
    } else {
      result = applySpecial(*subr, sp - argCount, argCount);
    }
  } else if (object->type == ObjectType::External) {
    const auto* external = static_cast<const External*>(object);
    Args args(*this, sp - argCount, argCount);
    if (!m_output.empty()) flush();
    m_callee = callee;
    result = m_host.callExternal(external->code, args);
  } else {
    resolveCallee(callee);  // raises the error
  }
  sp -= argCount;
  *sp++ = result;
  pc = fp->pc;
  DISPATCH();
}

call_traced:
  if (fp + 1 >= m_frameLimit || sp + 64 >= m_valueLimit) [[unlikely]] {
    m_frame = fp;
    m_top = sp;
    failDepth();
  }
  ++fp;
  fp->subr = m_traceSubr;
  *sp++ = callee;  // the extra slot

enter_native : {
  const uint32_t extra = fp->subr == m_traceSubr ? 0 : fp->subr->extraSlots;
  fp->function = nullptr;
  fp->base = sp - argCount - (fp->subr == m_traceSubr ? 1 : 0);
  fp->bindings = m_bindingTop;
  fp->argCount = argCount;
  fp->state = 0;
  fp->pc = &kResumeCode;
  for (uint32_t i = 0; i < extra; ++i) *sp++ = LispValue::nil();
  result = LispValue::nil();
  goto step_native;
}
NativeResume:
  if (m_poll.load(std::memory_order_relaxed)) [[unlikely]] {
    m_frame = fp;
    m_top = sp;
    poll(LispValue::nil());
  }
  result = *--sp;
step_native : {
  m_frame = fp;
  m_top = sp;
  Native native(*this, *fp, result);
  const StepResult step = fp->subr->step(native);
  sp = m_top;
  if (step.kind == StepResult::Return) {
    sp = fp->base;
    --fp;
    *sp++ = step.value;
    pc = fp->pc;
    DISPATCH();
  }
  callee = step.value;
  argCount = step.argCount;
  if (step.kind == StepResult::TailCall) {
    LispValue* from = sp - argCount;
    sp = fp->base;
    for (uint32_t i = 0; i < argCount; ++i) *sp++ = *from++;
    --fp;
  }
  goto call_any;
}

Return:
  result = sp[-1];
  {
    Binding* b = m_bindingTop;
    Binding* const mark = fp->bindings;
    while (b > mark) {
      --b;
      b->symbol->value = b->saved;
    }
    m_bindingTop = b;
  }
  sp = fp->base;
  --fp;
  *sp++ = result;
  pc = fp->pc;
  DISPATCH();
ExitRun:
  result = *--sp;
  m_frame = fp;
  m_top = sp;
  return result;

  // ---- lists

Car : {
  const LispValue v = sp[-1];
  if (INTACT(Core::Car) && v.isPair()) [[likely]] {
    sp[-1] = v.head();
    NEXT(1);
  }
  SYNC(1);
  sp[-1] = coreUnary(Core::Car, v, 1);
  NEXT(1);
}
Cdr : {
  const LispValue v = sp[-1];
  if (INTACT(Core::Cdr) && v.isPair()) [[likely]] {
    sp[-1] = v.tail();
    NEXT(1);
  }
  SYNC(1);
  sp[-1] = coreUnary(Core::Cdr, v, 2);
  NEXT(1);
}
CarVar : {
  const LispValue v = symbolAt(pc + 1)->value;
  if (INTACT(Core::Car) && v.isPair()) [[likely]] {
    *sp++ = v.head();
    NEXT(2);
  }
  SYNC(2);
  const LispValue out = coreUnary(Core::Car, v, 1);
  *sp++ = out;
  NEXT(2);
}
CdrVar : {
  const LispValue v = symbolAt(pc + 1)->value;
  if (INTACT(Core::Cdr) && v.isPair()) [[likely]] {
    *sp++ = v.tail();
    NEXT(2);
  }
  SYNC(2);
  const LispValue out = coreUnary(Core::Cdr, v, 2);
  *sp++ = out;
  NEXT(2);
}
Cxr : {
  LispValue v = sp[-1];
  uint32_t path = INTACT(A & 0xFF) ? A >> 8 : 0;
  while (path && v.isPair()) {
    v = path & 1 ? v.head() : v.tail();
    path >>= 2;
  }
  if (path || !INTACT(A & 0xFF)) {
    SYNC(1);
    v = coreUnary(static_cast<Core>(A & 0xFF), sp[-1], A >> 8);
  }
  sp[-1] = v;
  NEXT(1);
}
CxrVar : {
  LispValue v = symbolAt(pc + 1)->value;
  uint32_t path = INTACT(A & 0xFF) ? A >> 8 : 0;
  while (path && v.isPair()) {
    v = path & 1 ? v.head() : v.tail();
    path >>= 2;
  }
  if (path || !INTACT(A & 0xFF)) {
    SYNC(2);
    v = coreUnary(static_cast<Core>(A & 0xFF), symbolAt(pc + 1)->value, A >> 8);
  }
  *sp++ = v;
  NEXT(2);
}
Cons : {
  SYNC(1);
  const LispValue out = INTACT(Core::Cons) ? m_heap.cons(sp[-2], sp[-1]) : coreCall(Core::Cons, sp - 2, 2);
  --sp;
  sp[-1] = out;
  NEXT(1);
}
List : {
  SYNC(1);
  const uint32_t count = A;
  LispValue out;
  if (INTACT(Core::List)) {
    for (uint32_t i = 1; i <= count; ++i) out = m_heap.cons(sp[-static_cast<ptrdiff_t>(i)], out);
  } else {
    out = coreCall(Core::List, sp - count, count);
  }
  sp -= count;
  *sp++ = out;
  NEXT(1);
}
Eq : {
  SYNC(1);
  const LispValue out = INTACT(Core::Eq) ? LispValue::boolean(isEq(sp[-2], sp[-1])) : coreCall(Core::Eq, sp - 2, 2);
  --sp;
  sp[-1] = out;
  NEXT(1);
}
Not : {
  if (INTACT(A)) [[likely]] {
    sp[-1] = LispValue::boolean(sp[-1].isNil());
    NEXT(1);
  }
  SYNC(1);
  sp[-1] = coreUnary(static_cast<Core>(A), sp[-1], 0);
  NEXT(1);
}
Atom:
  SYNC(1);
  sp[-1] = INTACT(Core::Atom) ? LispValue::boolean(!sp[-1].isPair()) : coreCall(Core::Atom, sp - 1, 1);
  NEXT(1);
Listp:
  SYNC(1);
  sp[-1] = INTACT(Core::Listp) ? LispValue::boolean(sp[-1].isList()) : coreCall(Core::Listp, sp - 1, 1);
  NEXT(1);

  // ---- numbers

  BINARY(Add, Core::Add, FAST_ADD)
  BINARY(Subtract, Core::Subtract, FAST_SUBTRACT)
  BINARY(Multiply, Core::Multiply, FAST_MULTIPLY)
  BINARY(Divide, Core::Divide, FAST_DIVIDE)
  COMPARE(JumpLess, Core::Less, <)
  COMPARE(JumpGreater, Core::Greater, >)
  COMPARE(JumpLessEqual, Core::LessEqual, <=)
  COMPARE(JumpGreaterEqual, Core::GreaterEqual, >=)
  COMPARE(JumpEqual, Core::Equal, ==)
  COMPARE(JumpNotEqual, Core::NotEqual, !=)
  COMPARE_VALUE(Less, Core::Less, <)
  COMPARE_VALUE(Greater, Core::Greater, >)
  COMPARE_VALUE(LessEqual, Core::LessEqual, <=)
  COMPARE_VALUE(GreaterEqual, Core::GreaterEqual, >=)
  COMPARE_VALUE(Equal, Core::Equal, ==)
  COMPARE_VALUE(NotEqual, Core::NotEqual, !=)
Increment : {
  const LispValue v = sp[-1];
  if (v.isInteger() && INTACT(A)) [[likely]] {
    sp[-1] = wrapped(unsignedOf(v) + static_cast<uint32_t>(B));
    NEXT(1);
  }
  SYNC(1);
  sp[-1] = coreStep(static_cast<Core>(A), v, B);
  NEXT(1);
}
IncrementVar : {
  const LispValue v = symbolAt(pc + 1)->value;
  if (v.isInteger() && INTACT(A)) [[likely]] {
    *sp++ = wrapped(unsignedOf(v) + static_cast<uint32_t>(B));
    NEXT(2);
  }
  SYNC(2);
  const LispValue out = coreStep(static_cast<Core>(A), v, B);
  *sp++ = out;
  NEXT(2);
}

  // ---- loops and definitions

StoreBelow:
  --sp;
  sp[-static_cast<ptrdiff_t>(A)] = *sp;
  NEXT(1);
CheckList:
  if (!sp[-1].isList()) [[unlikely]] {
    SYNC(1);
    failType(*this, kListp, sp[-1]);
  }
  NEXT(1);
CheckCount:
  if (!sp[-1].isInteger()) [[unlikely]] {
    SYNC(1);
    failType(*this, kFixnump, sp[-1]);
  }
  NEXT(1);
ForeachNext : {
  const LispValue rest = sp[-1];
  if (rest.isPair()) [[likely]] {
    symbolAt(pc + 1)->value = rest.head();
    sp[-1] = rest.tail();
    NEXT(2);
  }
  if (rest) {
    SYNC(2);
    failType(*this, kListp, rest);
  }
  NEXT(B);
}
RepeatNext : {
  const int32_t left = sp[-1].asInteger();
  if (left > 0) [[likely]] {
    sp[-1] = LispValue::integer(left - 1);
    NEXT(1);
  }
  NEXT(B);
}
Bind : {
  Symbol* s = symbolAt(pc + 1);
  if (m_bindingTop + 1 >= m_bindingLimit) [[unlikely]] {
    SYNC(2);
    failDepth();
  }
  *m_bindingTop++ = {s, s->value};
  NEXT(2);
}
Unbind:
  --m_bindingTop;
  m_bindingTop->symbol->value = m_bindingTop->saved;
  NEXT(1);
Defun : {
  Symbol* s = symbolAt(pc + 1);
  s->value = valueAt(pc + 2);
  *sp++ = LispValue::of(s);
  NEXT(3);
}
Fail:
  SYNC(2);
  throw LispError(Text(valueAt(pc + 1).asString()->view()));
}

// Failures of the C++ library, no memory above all, become errors of the language.
LispValue Vm::executeGuarded(Entry entry) {
  try {
    return execute(entry);
  } catch (const std::bad_alloc&) {
    fail(ErrorKind::MemoryLimit, "out of memory");
  } catch (const std::exception& failure) {
    fail(failure.what());
  }
}

LispValue Vm::call(LispValue function, const LispValue* arguments, uint32_t count) {
  constexpr int kMaxRuns = 200;
  if (m_runs >= kMaxRuns || m_frame + 2 >= m_frameLimit || m_top + count + 64 >= m_valueLimit) failDepth();
  ++m_runs;
  Frame* const before = m_frame;
  LispValue* const top = m_top;
  Frame* entry = ++m_frame;
  *entry = {&kExitCode, nullptr, m_top, m_bindingTop, nullptr, 0, 0};
  for (uint32_t i = 0; i < count; ++i) *m_top++ = arguments[i];
  Entry start{function, count, false};
  for (;;) {
    try {
      const LispValue result = executeGuarded(start);
      m_frame = before;
      m_top = top;
      --m_runs;
      return result;
    } catch (LispError& error) {
      if (recover(error, entry)) {
        start.resume = true;
        continue;
      }
      if (m_reporting && !error.reported && !insideCatch()) report(error);
      unbindTo(entry->bindings);
      m_frame = before;
      m_top = top;
      --m_runs;
      throw;
    }
  }
}

}  // namespace lisp
