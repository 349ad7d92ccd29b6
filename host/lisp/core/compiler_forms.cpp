// The special forms.
#include "host/lisp/core/args.h"
#include "host/lisp/core/compiler.h"
#include "host/lisp/core/vm.h"

namespace lisp {

namespace {

uint32_t countOf(LispValue forms) {
  uint32_t n = 0;
  for (; forms.isPair(); forms = forms.tail()) ++n;
  return n;
}

}  // namespace

void Compiler::special(SpecialForm which, LispValue form, Want want) {
  switch (which) {
    case SpecialForm::Setq: return setq(form, want);
    case SpecialForm::If: return ifForm(form, want);
    case SpecialForm::Progn: return body(form.tail(), want);
    case SpecialForm::While: return whileForm(form, want);
    case SpecialForm::And:
    case SpecialForm::Or: return andOr(form, want);
    case SpecialForm::Cond: return condForm(form, want);
    case SpecialForm::Foreach: return foreachForm(form, want);
    case SpecialForm::Repeat: return repeatForm(form, want);
    case SpecialForm::Quote: quote(form); break;
    case SpecialForm::Lambda: lambdaForm(form); break;
    case SpecialForm::Function: functionForm(form); break;
    case SpecialForm::Defun: defunForm(form, false); break;
    case SpecialForm::DefunQ: defunForm(form, true); break;
  }
  if (want == Want::Effect) emit(Op::Pop), adjust(-1);
}

// The forms in turn; the last one's value is the value, nil when there is none.
void Compiler::body(LispValue forms, Want want) {
  if (!forms.isPair() && want == Want::Value) constant(LispValue::nil());
  for (; forms.isPair(); forms = forms.tail()) expression(forms.head(), forms.tail().isPair() ? Want::Effect : want);
}

void Compiler::quote(LispValue form) {
  if (!form.tail().isPair()) return failWith("too few arguments");
  if (form.tail().tail()) return failWith("too many arguments");
  const LispValue value = form.tail().head();
  // A quoted lambda will be called sooner or later: compiled now, its positions are still known.
  if (value.isPair() && value.head() == LispValue::of(m_vm.names().lambda) && value.tail().isPair() &&
      !m_vm.functionCache().find(value.asCons()))
    m_vm.functionCache().add(
        value.asCons(),
        Compiler(m_vm, m_source, m_nesting).function(nullptr, value.tail().head(), value.tail().tail()));
  constant(value);
}

void Compiler::setq(LispValue form, Want want) {
  LispValue rest = form.tail();
  if (rest.isNil() && want == Want::Value) constant(LispValue::nil());
  while (rest.isPair()) {
    if (!rest.tail().isPair()) {
      failWith("too few arguments");
      if (want == Want::Effect) emit(Op::Pop), adjust(-1);
      return;
    }
    const LispValue next = rest.tail().tail();
    assign(rest.head(), rest.tail().head(), next.isPair() ? Want::Effect : want);
    rest = next;
  }
}

void Compiler::assign(LispValue target, LispValue valueForm, Want want) {
  if (!target.isCellSymbol()) {
    failType(kSymbolp, target);
    if (want == Want::Effect) emit(Op::Pop), adjust(-1);
    return;
  }
  if (want == Want::Effect && addToVariable(target.asSymbol(), valueForm)) return;
  expression(valueForm, Want::Value);
  emit(want == Want::Value ? Op::SetVar : Op::SetVarPop);
  symbolWord(target.asSymbol());
  if (want == Want::Effect) adjust(-1);
}

// (setq x (1+ x)), (setq x (+ x 2)) and the like in one instruction.
bool Compiler::addToVariable(Symbol* target, LispValue valueForm) {
  uint32_t count = 0;
  const Core id = activeCore(valueForm, count);
  const bool unary = (id == Core::Increment || id == Core::Decrement) && count == 1;
  const bool sum = (id == Core::Add || id == Core::Subtract) && count == 2;
  if (!unary && !sum) return false;
  if (!(valueForm.tail().head() == LispValue::of(target))) return false;
  int32_t by = id == Core::Increment ? 1 : -1;
  if (sum) {
    const LispValue step = valueForm.tail().tail().head();
    if (!step.isInteger() || step.asInteger() == INT32_MIN) return false;
    by = id == Core::Add ? step.asInteger() : -step.asInteger();
  }
  const SourcePosition outer = m_at;
  mark(valueForm);
  emit(Op::AddToVar, static_cast<uint32_t>(id), by);
  symbolWord(target);
  m_at = outer;
  return true;
}

void Compiler::ifForm(LispValue form, Want want) {
  const uint32_t count = countOf(form.tail());
  if (count < 2 || count > 3) {
    failWith(count < 2 ? "too few arguments" : "too many arguments");
    if (want == Want::Effect) emit(Op::Pop), adjust(-1);
    return;
  }
  const LispValue then = form.tail().tail();
  const LispValue otherwise = then.tail();
  Label elseLabel, end;
  test(form.tail().head(), elseLabel, false);
  expression(then.head(), want);
  if (want == Want::Effect && !otherwise.isPair()) return place(elseLabel);
  jump(Op::Jump, 0, end);
  place(elseLabel);
  if (want == Want::Value) adjust(-1);
  body(otherwise, want);
  place(end);
}

void Compiler::whileForm(LispValue form, Want want) {
  if (!form.tail().isPair()) {
    failWith("too few arguments");
    if (want == Want::Effect) emit(Op::Pop), adjust(-1);
    return;
  }
  Label top, end;
  if (want == Want::Value) constant(LispValue::nil());
  place(top);
  test(form.tail().head(), end, false);
  body(form.tail().tail(), want);
  if (want == Want::Value) emit(Op::StoreBelow, 1), adjust(-1);
  jump(Op::Loop, 0, top);
  place(end);
}

void Compiler::andOr(LispValue form, Want want) {
  const bool isOr = static_cast<SpecialForm>(
                        objectOf<Subr>(form.head().asSymbol()->value, ObjectType::Subr)->special) == SpecialForm::Or;
  Label settled, end;
  for (LispValue rest = form.tail(); rest.isPair(); rest = rest.tail()) {
    if (want == Want::Effect && !rest.tail().isPair())
      expression(rest.head(), Want::Effect);
    else
      test(rest.head(), settled, isOr);
  }
  if (want == Want::Effect) return place(settled);
  constant(LispValue::boolean(!isOr));
  jump(Op::Jump, 0, end);
  place(settled);
  adjust(-1);
  constant(LispValue::boolean(isOr));
  place(end);
}

void Compiler::condForm(LispValue form, Want want) {
  Label end;
  for (LispValue rest = form.tail(); rest.isPair(); rest = rest.tail()) {
    const LispValue clause = rest.head();
    if (!clause.isPair()) {
      failType(kListp, clause);
      emit(Op::Pop), adjust(-1);
      continue;
    }
    if (clause.tail().isPair()) {
      Label next;
      test(clause.head(), next, false);
      body(clause.tail(), want);
      jump(Op::Jump, 0, end);
      place(next);
      if (want == Want::Value) adjust(-1);
    } else if (want == Want::Value) {
      expression(clause.head(), Want::Value);
      jump(Op::JumpKeep, 0, end);
      adjust(-1);
    } else {
      test(clause.head(), end, true);
    }
  }
  if (want == Want::Value) constant(LispValue::nil());
  place(end);
}

void Compiler::lambdaForm(LispValue form) {
  if (!form.tail().isPair()) return failWith("too few arguments");
  Function* f = Compiler(m_vm, m_source, m_nesting).function(nullptr, form.tail().head(), form.tail().tail());
  constant(LispValue::of(static_cast<Object*>(f)));
}

void Compiler::functionForm(LispValue form) {
  if (!form.tail().isPair()) return failWith("too few arguments");
  if (form.tail().tail()) return failWith("too many arguments");
  const LispValue value = form.tail().head();
  if (value.isPair() && value.head() == LispValue::of(m_vm.names().lambda)) return lambdaForm(value);
  constant(value);
}

void Compiler::defunForm(LispValue form, bool asList) {
  const LispValue rest = form.tail();
  if (!rest.isPair() || !rest.tail().isPair()) return failWith("too few arguments");
  const LispValue name = rest.head();
  if (!name.isCellSymbol()) return failType(kSymbolp, name);
  LispValue value = rest.tail();
  if (!asList) {
    Compiler nested(m_vm, m_source, m_nesting);
    nested.m_at = m_at;
    value = LispValue::of(static_cast<Object*>(nested.function(name.asSymbol(), value.head(), value.tail())));
  }
  emit(Op::Defun);
  symbolWord(name.asSymbol());
  valueWord(value);
  adjust(1);
}

void Compiler::foreachForm(LispValue form, Want want) {
  const LispValue rest = form.tail();
  if (!rest.isPair() || !rest.tail().isPair() || !rest.head().isCellSymbol()) {
    const bool few = !rest.isPair() || !rest.tail().isPair();
    few ? failWith("too few arguments") : failType(kSymbolp, rest.head());
    if (want == Want::Effect) emit(Op::Pop), adjust(-1);
    return;
  }
  Symbol* variable = rest.head().asSymbol();
  Label top, end;
  if (want == Want::Value) constant(LispValue::nil());
  expression(rest.tail().head(), Want::Value);
  emit(Op::CheckList);
  emit(Op::Bind);
  symbolWord(variable);
  place(top);
  emit(Op::ForeachNext);
  use(end);
  symbolWord(variable);
  body(rest.tail().tail(), want);
  if (want == Want::Value) emit(Op::StoreBelow, 2), adjust(-1);
  jump(Op::Loop, 0, top);
  place(end);
  emit(Op::Unbind);
  emit(Op::Pop);
  adjust(-1);
}

void Compiler::repeatForm(LispValue form, Want want) {
  if (!form.tail().isPair()) {
    failWith("too few arguments");
    if (want == Want::Effect) emit(Op::Pop), adjust(-1);
    return;
  }
  Label top, end;
  if (want == Want::Value) constant(LispValue::nil());
  expression(form.tail().head(), Want::Value);
  emit(Op::CheckCount);
  place(top);
  jump(Op::RepeatNext, 0, end);
  body(form.tail().tail(), want);
  if (want == Want::Value) emit(Op::StoreBelow, 2), adjust(-1);
  jump(Op::Loop, 0, top);
  place(end);
  emit(Op::Pop);
  adjust(-1);
}

}  // namespace lisp
