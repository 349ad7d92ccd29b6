#include "host/lisp/core/compiler.h"

#include "host/lisp/core/args.h"
#include "host/lisp/core/vm.h"

namespace lisp {

namespace {

constexpr int kMaxNesting = 250;  // below it, eval takes over

Op placed(Op ss, int place) { return static_cast<Op>(static_cast<int>(ss) + place); }

}  // namespace

Function* compileForm(Vm& vm, LispValue form, const CompileSource& source) {
  return Compiler(vm, source, 0).form(form);
}

Function* compileLambda(Vm& vm, LispValue list, const CompileSource& source) {
  // (lambda (args) body...) or ((args) body...)
  const bool named = list.head().isCellSymbol();
  const LispValue rest = named ? list.tail() : list;
  if (!rest.isPair()) failType(vm, "functionp", list);
  return Compiler(vm, source, 0).function(nullptr, rest.head(), rest.tail());
}

Function* Compiler::form(LispValue form) {
  expression(form, Want::Value);
  Function* f = finish(nullptr);
  f->flags |= Function::kForm;
  return f;
}

Function* Compiler::function(Symbol* name, LispValue parameters, LispValue forms) {
  std::vector<Symbol*> variables;
  uint32_t paramCount = 0;
  if (parseParameters(parameters, variables, paramCount)) {
    body(forms, Want::Value);
  } else {
    failWith("bad argument list");
  }
  Function* f = finish(name);
  f->variableList = std::move(variables);
  f->variables = f->variableList.data();
  f->paramCount = paramCount;
  f->localCount = static_cast<uint32_t>(f->variableList.size()) - paramCount;
  return f;
}

// A name may be given again after the slash: it stays the parameter it is.
bool Compiler::parseParameters(LispValue parameters, std::vector<Symbol*>& variables, uint32_t& paramCount) {
  bool locals = false;
  for (; parameters.isPair(); parameters = parameters.tail()) {
    if (!parameters.head().isCellSymbol()) return false;
    Symbol* symbol = parameters.head().asSymbol();
    if (symbol->text() == GC_T("/")) {
      locals = true;
      continue;
    }
    bool known = false;
    if (locals)
      for (const Symbol* v : variables) known = known || v == symbol;
    if (known) continue;
    variables.push_back(symbol);
    if (!locals) ++paramCount;
  }
  return parameters.isNil();
}

Function* Compiler::finish(Symbol* name) {
  emit(Op::Return);
  Function* f = m_vm.heap().create<Function>(ObjectType::Function);
  f->words = std::move(m_words);
  f->code = f->words.data();
  f->constants = std::move(m_constants);
  f->positions = std::move(m_positions);
  f->maxStack = static_cast<uint32_t>(m_maxDepth) + 2;
  f->name = name;
  f->file = m_source.file;
  return f;
}

void Compiler::adjust(int by) {
  m_depth += by;
  if (m_depth > m_maxDepth) m_maxDepth = m_depth;
}

void Compiler::emit(Op op, uint32_t a, int32_t b) {
  m_head = m_words.size();
  if (m_positions.empty() || m_positions.back().line != m_at.line || m_positions.back().column != m_at.column)
    m_positions.push_back({static_cast<uint32_t>(m_head), m_at.line, m_at.column});
  m_words.push_back(packHead(op, a, b));
}

void Compiler::valueWord(LispValue v) {
  word(v.bits());
  if (v.isPair() || v.isString() || v.isObject()) m_constants.push_back(v);
}

// The target is set once it is known; the jump just emitted is remembered.
void Compiler::use(Label& target) {
  if (target.at >= 0) {
    const Word head = m_words[m_head];
    m_words[m_head] = packHead(static_cast<Op>(head & 0xFF), headA(head), target.at - static_cast<int32_t>(m_head));
  } else {
    target.uses.push_back(m_head);
  }
}

void Compiler::jump(Op op, uint32_t a, Label& target) {
  emit(op, a);
  use(target);
}

void Compiler::place(Label& label) {
  label.at = static_cast<int32_t>(m_words.size());
  for (const size_t at : label.uses) {
    const Word head = m_words[at];
    m_words[at] = packHead(static_cast<Op>(head & 0xFF), headA(head), label.at - static_cast<int32_t>(at));
  }
}

void Compiler::mark(LispValue form) {
  if (!m_source.positions) return;
  const SourcePosition at = m_source.positions->find(form.asCons());
  if (at.line) m_at = at;
}

void Compiler::failWith(std::string_view asciiMessage) {
  emit(Op::Fail);
  valueWord(m_vm.heap().string(fromUtf8(asciiMessage)));
  adjust(1);
}

void Compiler::failType(std::string_view predicate, LispValue culprit) {
  Text text = fromUtf8("bad argument type: ");
  appendAscii(text, predicate);
  text.push_back(GC_T(' '));
  appendValue(text, culprit, PrintStyle::Quoted, m_vm);
  emit(Op::Fail);
  valueWord(m_vm.heap().string(text));
  adjust(1);
}

void Compiler::constant(LispValue value) {
  if (value.isNil()) {
    emit(Op::Nil);
  } else {
    emit(Op::Const);
    valueWord(value);
  }
  adjust(1);
}

void Compiler::symbolValue(LispValue symbol) {
  if (!symbol.isCellSymbol()) return constant(symbol);
  emit(Op::Var);
  symbolWord(symbol.asSymbol());
  adjust(1);
}

Compiler::Simple Compiler::simple(LispValue form) const {
  if (form.isCellSymbol()) return {Simple::Variable, reinterpret_cast<Word>(form.asSymbol())};
  if (!form.isPair() && !form.isString() && !form.isObject()) return {Simple::Constant, form.bits()};
  return {};
}

void Compiler::expression(LispValue form, Want want) {
  if (!form.isPair()) {
    if (want == Want::Value) symbolValue(form);
    return;
  }
  const SourcePosition outer = m_at;
  if (++m_nesting > kMaxNesting) {
    evalLater(form);
    if (want == Want::Effect) emit(Op::Pop), adjust(-1);
  } else {
    list(form, want);
  }
  --m_nesting;
  m_at = outer;
}

// Emits a call of eval on the form as it stands.
void Compiler::evalLater(LispValue form) {
  constant(m_vm.evalFunction());
  constant(form);
  emit(Op::CallValue, 1);
  adjust(-1);
}

void Compiler::list(LispValue form, Want want) {
  mark(form);
  const LispValue head = form.head();
  if (head.isCellSymbol()) {
    Symbol* symbol = head.asSymbol();
    const Subr* subr = objectOf<Subr>(symbol->value, ObjectType::Subr);
    if (subr && subr->kind() == SubrKind::Special) return special(static_cast<SpecialForm>(subr->special), form, want);
    if (subr && subr->kind() == SubrKind::Macro) return macro(symbol, form, want);
    if (subr && m_vm.symbols().isCore(symbol) && symbol->value == symbol->builtin)
      if (core(m_vm.symbols().coreOf(symbol), form, want)) return;
    callSymbol(symbol, form.tail());
  } else {
    callHead(head, form.tail());
  }
  if (want == Want::Effect) emit(Op::Pop), adjust(-1);
}

void Compiler::arguments(LispValue forms, uint32_t& count) {
  for (; forms.isPair(); forms = forms.tail()) {
    const LispValue next = forms.tail();
    if (forms.head().isCellSymbol() && next.isPair() && next.head().isCellSymbol()) {
      emit(Op::Var2);
      symbolWord(forms.head().asSymbol());
      symbolWord(next.head().asSymbol());
      adjust(2);
      count += 2;
      forms = next;
    } else {
      expression(forms.head(), Want::Value);
      ++count;
    }
  }
  if (forms) {
    failWith("malformed list");
    ++count;
  }
}

void Compiler::callSymbol(Symbol* head, LispValue forms) {
  if (forms.isPair() && forms.tail().isNil() && forms.head().isCellSymbol()) {
    emit(Op::Call1Var, 1);
    symbolWord(head);
    symbolWord(forms.head().asSymbol());
    adjust(1);
    return;
  }
  uint32_t count = 0;
  arguments(forms, count);
  emit(Op::Call, count);
  symbolWord(head);
  adjust(1 - static_cast<int>(count));
}

void Compiler::callHead(LispValue head, LispValue forms) {
  expression(head, Want::Value);
  uint32_t count = 0;
  arguments(forms, count);
  emit(Op::CallValue, count);
  adjust(-static_cast<int>(count));
}

void Compiler::macro(Symbol* head, LispValue form, Want want) {
  const Subr* subr = objectOf<Subr>(head->value, ObjectType::Subr);
  Args args(m_vm, &form, 1);
  expression(subr->body(args), want);
}

// Which instruction-backed builtin a form calls, with the number of its arguments; Count when none.
Core Compiler::activeCore(LispValue form, uint32_t& count) const {
  if (!form.isPair() || !form.head().isCellSymbol()) return Core::Count;
  Symbol* symbol = form.head().asSymbol();
  if (!m_vm.symbols().isCore(symbol) || !(symbol->value == symbol->builtin)) return Core::Count;
  count = 0;
  LispValue rest = form.tail();
  for (; rest.isPair(); rest = rest.tail()) ++count;
  return rest.isNil() ? m_vm.symbols().coreOf(symbol) : Core::Count;
}

// Emits a binary instruction for the cheapest places of its operands.
void Compiler::binary(Op ss, LispValue left, LispValue right, uint32_t a) {
  Simple l = simple(left);
  Simple r = simple(right);
  const bool commutative = ss == Op::AddSS || ss == Op::MultiplySS;
  if (commutative && l.kind == Simple::Constant && r.kind == Simple::Variable) std::swap(l, r);
  if (l.kind == Simple::Variable && r.kind != Simple::None) {
    emit(placed(ss, r.kind == Simple::Constant ? 3 : 4), a);
    word(l.word);
    word(r.word);
    adjust(1);
    return;
  }
  expression(left, Want::Value);
  r = simple(right);
  if (r.kind != Simple::None) {
    emit(placed(ss, r.kind == Simple::Variable ? 1 : 2), a);
    word(r.word);
    return;
  }
  expression(right, Want::Value);
  emit(ss, a);
  adjust(-1);
}

namespace {

struct CoreOps {
  Op value;  // leaves its result on the stack
  Op jump;   // the comparison as a jump
};

CoreOps comparisonOps(Core id) {
  switch (id) {
    case Core::Less: return {Op::Less, Op::JumpLessSS};
    case Core::Greater: return {Op::Greater, Op::JumpGreaterSS};
    case Core::LessEqual: return {Op::LessEqual, Op::JumpLessEqualSS};
    case Core::GreaterEqual: return {Op::GreaterEqual, Op::JumpGreaterEqualSS};
    case Core::Equal: return {Op::Equal, Op::JumpEqualSS};
    case Core::NotEqual: return {Op::NotEqual, Op::JumpNotEqualSS};
    default: return {Op::Nil, Op::Nil};
  }
}

bool isComparison(Core id) { return id >= Core::Less && id <= Core::NotEqual; }

// The way of a composition of car and cdr: from the low end, 1 is car and 2 is cdr, two bits each.
uint32_t pathOf(Core id) {
  switch (id) {
    case Core::Car: return 1;
    case Core::Cdr: return 2;
    case Core::Caar: return 1 | 1 << 2;
    case Core::Cadr: return 2 | 1 << 2;
    case Core::Cdar: return 1 | 2 << 2;
    case Core::Cddr: return 2 | 2 << 2;
    case Core::Caddr: return 2 | 2 << 2 | 1 << 4;
    case Core::Cdddr: return 2 | 2 << 2 | 2 << 4;
    case Core::Cadddr: return 2 | 2 << 2 | 2 << 4 | 1 << 6;
    default: return 0;
  }
}

Op arithmeticOp(Core id) {
  switch (id) {
    case Core::Add: return Op::AddSS;
    case Core::Subtract: return Op::SubtractSS;
    case Core::Multiply: return Op::MultiplySS;
    default: return Op::DivideSS;
  }
}

}  // namespace

void Compiler::access(Core id, LispValue argument) {
  const uint32_t path = pathOf(id);
  const bool single = path <= 2;
  const Op onTop = single ? (path == 1 ? Op::Car : Op::Cdr) : Op::Cxr;
  const uint32_t a = static_cast<uint32_t>(id) | path << 8;
  if (argument.isCellSymbol()) {
    emit(single ? (path == 1 ? Op::CarVar : Op::CdrVar) : Op::CxrVar, a);
    symbolWord(argument.asSymbol());
    adjust(1);
  } else {
    expression(argument, Want::Value);
    emit(onTop, a);
  }
}

bool Compiler::coreUnary(Core id, LispValue argument) {
  switch (id) {
    case Core::Increment:
    case Core::Decrement: {
      const int32_t by = id == Core::Increment ? 1 : -1;
      if (argument.isCellSymbol()) {
        emit(Op::IncrementVar, static_cast<uint32_t>(id), by);
        symbolWord(argument.asSymbol());
        adjust(1);
      } else {
        expression(argument, Want::Value);
        emit(Op::Increment, static_cast<uint32_t>(id), by);
      }
      return true;
    }
    case Core::Not:
    case Core::Null:
      expression(argument, Want::Value);
      emit(Op::Not, static_cast<uint32_t>(id));
      return true;
    case Core::Atom:
    case Core::Listp:
      expression(argument, Want::Value);
      emit(id == Core::Atom ? Op::Atom : Op::Listp, static_cast<uint32_t>(id));
      return true;
    default:
      if (pathOf(id) == 0) return false;
      access(id, argument);
      return true;
  }
}

// A call of an instruction-backed builtin; false when the general call has to do it.
bool Compiler::core(Core id, LispValue form, Want want) {
  uint32_t count = 0;
  if (activeCore(form, count) == Core::Count) return false;
  const LispValue arguments = form.tail();
  bool done = false;
  if (id == Core::List && count > 0) {
    uint32_t pushed = 0;
    this->arguments(arguments, pushed);
    emit(Op::List, count);
    adjust(1 - static_cast<int>(count));
    done = true;
  } else if (count == 1) {
    done = coreUnary(id, arguments.head());
  } else if (count >= 2 && (id <= Core::Multiply || (id == Core::Divide && count == 2))) {
    const Op op = arithmeticOp(id);
    binary(op, arguments.head(), arguments.tail().head(), 0);
    for (LispValue rest = arguments.tail().tail(); rest.isPair(); rest = rest.tail()) {
      const Simple r = simple(rest.head());
      if (r.kind == Simple::None) {
        expression(rest.head(), Want::Value);
        emit(op);
        adjust(-1);
      } else {
        emit(placed(op, r.kind == Simple::Variable ? 1 : 2));
        word(r.word);
      }
    }
    done = true;
  } else if (count == 2 && (isComparison(id) || id == Core::Eq || id == Core::Cons)) {
    uint32_t pushed = 0;
    this->arguments(arguments, pushed);
    emit(id == Core::Eq ? Op::Eq : id == Core::Cons ? Op::Cons : comparisonOps(id).value);
    adjust(-1);
    done = true;
  }
  if (done && want == Want::Effect) emit(Op::Pop), adjust(-1);
  return done;
}

// Jumps on a comparison or a null test of two or one operands; false when the form is none.
bool Compiler::testCore(Core id, LispValue form, Label& target, bool sense) {
  const LispValue first = form.tail().head();
  if (isComparison(id)) {
    const int before = m_depth;
    binary(comparisonOps(id).jump, first, form.tail().tail().head(), sense);
    m_depth = before;
    use(target);
    return true;
  }
  const uint32_t a = static_cast<uint32_t>(id) | static_cast<uint32_t>(sense) << 8;
  if (first.isCellSymbol()) {
    emit(Op::JumpIfNullVar, a);
    use(target);
    symbolWord(first.asSymbol());
  } else {
    expression(first, Want::Value);
    jump(Op::JumpIfNull, a, target);
    adjust(-1);
  }
  return true;
}

// Jumps to the target when the form's truth equals `sense`; goes on otherwise.
void Compiler::test(LispValue form, Label& target, bool sense) {
  if (!form.isPair()) {
    if (form.isCellSymbol()) {
      emit(Op::JumpIfVar, sense);
      use(target);
      symbolWord(form.asSymbol());
    } else if (static_cast<bool>(form) == sense) {
      jump(Op::Jump, 0, target);
    }
    return;
  }
  const SourcePosition outer = m_at;
  mark(form);
  const Subr* subr =
      form.head().isCellSymbol() ? objectOf<Subr>(form.head().asSymbol()->value, ObjectType::Subr) : nullptr;
  const bool shallow = m_nesting < kMaxNesting;
  const bool special = subr && subr->kind() == SubrKind::Special && shallow;
  const auto which = special ? static_cast<SpecialForm>(subr->special) : SpecialForm::Quote;
  uint32_t count = 0;
  const Core id = shallow ? activeCore(form, count) : Core::Count;
  ++m_nesting;
  if (which == SpecialForm::And || which == SpecialForm::Or) {
    // `decisive`: the truth of one operand that settles the whole.
    const bool decisive = which == SpecialForm::Or;
    Label end;
    LispValue rest = form.tail();
    if (!rest.isPair() && sense != decisive) jump(Op::Jump, 0, target);
    for (; rest.isPair(); rest = rest.tail()) {
      if (decisive == sense) {
        test(rest.head(), target, sense);
      } else if (rest.tail().isPair()) {
        test(rest.head(), end, decisive);
      } else {
        test(rest.head(), target, sense);
      }
    }
    place(end);
  } else if ((count == 2 && isComparison(id)) || (count == 1 && (id == Core::Not || id == Core::Null))) {
    testCore(id, form, target, sense);
  } else {
    expression(form, Want::Value);
    jump(Op::JumpIf, sense, target);
    adjust(-1);
  }
  --m_nesting;
  m_at = outer;
}

}  // namespace lisp
