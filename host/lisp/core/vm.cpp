#include "host/lisp/core/vm.h"

#include <algorithm>

#include "host/lisp/core/builtin.h"
#include "host/lisp/core/numbers.h"

namespace lisp {

namespace {

// Beyond the limits, for what runs after they are reached: the *error* handler and the printing of its message.
constexpr uint32_t kReserveFrames = 2000;
constexpr size_t kReserveSlots = 20'000;
constexpr std::chrono::seconds kHandlerTime(2);

}  // namespace

// ---- roots

Root::Root(Vm& vm, LispValue v) : value(v), m_vm(vm), m_previous(nullptr) {
  m_next = vm.m_roots;
  if (m_next) m_next->m_previous = this;
  vm.m_roots = this;
}

Root::~Root() {
  if (m_next) m_next->m_previous = m_previous;
  (m_previous ? m_previous->m_next : m_vm.m_roots) = m_next;
}

void Vm::visitRoots(Marker& marker) {
  for (auto* v = static_cast<LispValue*>(m_values.data()); v < m_top; ++v) marker.mark(*v);
  for (auto* f = static_cast<Frame*>(m_frames.data()); f <= m_frame; ++f)
    if (f->function) marker.mark(LispValue::of(static_cast<Object*>(f->function)));
  for (auto* b = static_cast<Binding*>(m_saved.data()); b < m_bindingTop; ++b) marker.mark(b->saved);
  m_symbols.forEach([&](Symbol& s) {
    marker.mark(s.value);
    marker.mark(s.builtin);
    marker.mark(LispValue::of(s.name));
  });
  for (const Root* r = m_roots; r; r = r->m_next) marker.mark(r->value);
  marker.mark(m_callee);
  marker.mark(m_evalFunction);
  marker.mark(exitValue);
  if (m_traceSubr) marker.mark(LispValue::of(static_cast<Object*>(m_traceSubr)));
}

bool Vm::visitWeak(Marker& marker) {
  const bool functions = m_functionCache.markLiving(marker);
  return m_formCache.markLiving(marker) || functions;
}

void Vm::dropDeadWeak(const Marker& marker) {
  m_functionCache.dropDead(marker);
  m_formCache.dropDead(marker);
}

void Vm::release(SelectionSet& set) { m_host.releaseSelectionSet(set.handle); }

// ---- set-up

Vm::Vm(HostCalls& host, Environment& environment, const VmLimits& limits, std::shared_ptr<SharedSpace> shared)
    : m_host(host),
      m_environment(environment),
      m_shared(std::move(shared)),
      m_heap(*this),
      m_symbols(m_heap),
      m_names{m_symbols.intern("QUOTE"), m_symbols.intern("LAMBDA"), m_symbols.intern("*ERROR*"), nullptr, nullptr},
      m_values((limits.stackSlots + kReserveSlots) * sizeof(LispValue)),
      m_frames((limits.depth + kReserveFrames) * sizeof(Frame)),
      m_saved((limits.stackSlots / 2 + kReserveSlots) * sizeof(Binding)) {
  m_top = static_cast<LispValue*>(m_values.data());
  m_frame = static_cast<Frame*>(m_frames.data());
  m_bindingTop = static_cast<Binding*>(m_saved.data());
  m_valueLimit = m_top + limits.stackSlots;
  m_frameLimit = m_frame + limits.depth;
  m_bindingLimit = m_bindingTop + limits.stackSlots / 2;
  *m_frame = {nullptr, nullptr, m_top, m_bindingTop, nullptr, 0, 0};
  m_heap.setMemoryLimit(limits.memory);
  installBuiltins();
  m_shared->members.push_back(this);
}

Vm::~Vm() { std::erase(m_shared->members, this); }

void Vm::define(Symbol* symbol, LispValue builtin) {
  symbol->value = builtin;
  symbol->builtin = builtin;
}

Subr* Vm::makeSubr(const Builtin& row, Symbol* name) {
  const auto counts = row.counts();
  Subr* subr = m_heap.create<Subr>(ObjectType::Subr);
  subr->flags = static_cast<uint16_t>(row.kind);
  subr->body = row.body;
  subr->step = row.step;
  subr->minArgs = counts.min;
  subr->maxArgs = counts.max;
  subr->extraSlots = row.extraSlots;
  subr->special = row.special;
  subr->name = name;
  subr->row = &row;
  return subr;
}

void Vm::installBuiltins() {
  for (const Builtin* row = firstBuiltin(); row; row = row->next) {
    Symbol* symbol = m_symbols.intern(row->name);
    Subr* subr = makeSubr(*row, symbol);
    define(symbol, LispValue::of(static_cast<Object*>(subr)));
    const std::string_view name = row->name;
    if (name == "eval") m_evalFunction = symbol->value;
    if (name == "vl-catch-all-apply") m_catchSubr = subr;
    if (name == "%traced-call") {
      m_traceSubr = subr;
      define(symbol, LispValue::nil());
    }
  }
  m_symbols.intern("PI")->value = LispValue::real(3.14159265358979323846);
  m_symbols.intern("PAUSE")->value = m_heap.string(GC_T("\\"));
}

// ---- calls

Function* Vm::functionOf(LispValue list) {
  const Cons* key = list.asCons();
  if (Function* known = m_functionCache.find(key)) return known;
  Function* f = compileLambda(*this, list, {});
  m_functionCache.add(key, f);
  return f;
}

Function* Vm::functionOfForm(LispValue form) {
  const Cons* key = form.asCons();
  if (Function* known = m_formCache.find(key)) return known;
  Function* f = compileForm(*this, form, {});
  m_formCache.add(key, f);
  return f;
}

// A special form called like a function, by apply or mapcar: and, or take the arguments as they are; for the others
// they become the form's parts.
LispValue Vm::applySpecial(const Subr& subr, const LispValue* arguments, uint32_t count) {
  const auto which = static_cast<SpecialForm>(subr.special);
  if (subr.kind() == SubrKind::Special && (which == SpecialForm::And || which == SpecialForm::Or)) {
    bool all = true, any = false;
    for (uint32_t i = 0; i < count; ++i) (arguments[i] ? any : all) = static_cast<bool>(arguments[i]);
    return LispValue::boolean(which == SpecialForm::And ? all : any);
  }
  LispValue form;
  for (uint32_t i = count; i-- > 0;) form = m_heap.cons(arguments[i], form);
  return eval(m_heap.cons(LispValue::of(subr.name), form), {});
}

void Vm::failNoFunction(const Symbol* symbol) {
  Text message = fromUtf8("no function definition: ");
  message.append(symbol->text());
  if (const std::string_view reason = m_host.reasonUnavailable(symbol->text()); !reason.empty()) {
    appendAscii(message, " (");
    appendAscii(message, reason);
    message.push_back(GC_T(')'));
  }
  throw LispError(std::move(message));
}

// The function object that a symbol or list stands for.
LispValue Vm::resolveCallee(LispValue callee) {
  if (callee.isCellSymbol()) {
    const Symbol* symbol = callee.asSymbol();
    callee = symbol->value;
    if (callee.isNil()) failNoFunction(symbol);
  }
  if (callee.isPair()) {
    // (lambda (args) body...), or the ((args) body...) of defun-q.
    const LispValue head = callee.head();
    const bool parameters = head.isNil() || (head.isPair() && head.head().isCellSymbol());
    if (head == LispValue::of(m_names.lambda) || parameters)
      return LispValue::of(static_cast<Object*>(functionOf(callee)));
  }
  if (callee.isObject()) {
    const ObjectType type = callee.asObject()->type;
    if (type == ObjectType::Subr || type == ObjectType::Function || type == ObjectType::External) return callee;
  }
  Text message = fromUtf8("bad function: ");
  appendValue(message, callee, PrintStyle::Quoted, *this);
  throw LispError(std::move(message));
}

void Vm::failArity(uint32_t given, uint32_t wanted) {
  fail(given < wanted ? "too few arguments" : "too many arguments");
}

void Vm::checkSubrArity(const Subr& subr, uint32_t count) {
  if (count < subr.minArgs) fail("too few arguments");
  if (count > subr.maxArgs) fail("too many arguments");
}

void Vm::failDepth() { fail("stack limit reached"); }

LispValue Vm::eval(LispValue form, const CompileSource& source) {
  const LispValue function = LispValue::of(static_cast<Object*>(compileForm(*this, form, source)));
  return call(function, nullptr, 0);
}

// A builtin that has instructions of its own, but whose symbol holds something else by now.
LispValue Vm::coreCall(Core id, const LispValue* arguments, uint32_t count) {
  return call(LispValue::of(&m_symbols.core(id)), arguments, count);
}

LispValue Vm::coreBinary(Core id, LispValue left, LispValue right) {
  const LispValue arguments[] = {left, right};
  return isIntact(id) ? arithmetic(*this, id, left, right) : coreCall(id, arguments, 2);
}

bool Vm::coreTest(Core id, LispValue left, LispValue right) {
  const LispValue arguments[] = {left, right};
  return isIntact(id) ? compare(*this, id, left, right) : static_cast<bool>(coreCall(id, arguments, 2));
}

LispValue Vm::coreUnary(Core id, LispValue argument, uint32_t path) {
  if (!isIntact(id)) return coreCall(id, &argument, 1);
  if (path == 0) return LispValue::boolean(argument.isNil());
  for (bool first = true; path; path >>= 2, first = false) {
    if (argument.isNil()) return argument;
    if (!argument.isPair()) failType(*this, first && path > 2 ? kListp : first ? kListp : kConsp, argument);
    argument = path & 1 ? argument.head() : argument.tail();
  }
  return argument;
}

LispValue Vm::coreStep(Core id, LispValue argument, int32_t by) {
  const bool unary = id == Core::Increment || id == Core::Decrement;
  if (isIntact(id)) return arithmetic(*this, Core::Add, argument, LispValue::integer(by));
  const LispValue arguments[] = {argument, LispValue::integer(id == Core::Subtract ? -by : by)};
  return coreCall(id, arguments, unary ? 1 : 2);
}

// ---- safe points

void Vm::setStress(bool on) {
  m_heap.setStress(on);
  if (on) requestSafePoint();
}

void Vm::poll(LispValue callee) {
  const uint32_t wanted = m_poll.exchange(m_heap.stress() ? kPollHeap : 0, std::memory_order_relaxed);
  endIfWanted(wanted);
  m_callee = callee;
  wanted& kPollCollect ? m_heap.collect() : m_heap.safePoint();
  m_callee = LispValue::nil();
}

// The limits are asked for again and again; the *error* handler of a program that reached one has a little time.
void Vm::endIfWanted(uint32_t requests) {
  if (!(requests & kPollEnd)) return;
  const bool limit = !(requests & kPollInterrupt);
  if (limit && m_inHandler && std::chrono::steady_clock::now() < m_handlerEnd) return;
  if (requests & (kPollTimeLimit | kPollMemoryLimit)) {
    const bool time = requests & kPollTimeLimit;
    LispError error(time ? ErrorKind::TimeLimit : ErrorKind::MemoryLimit,
                    fromUtf8(time ? "time limit reached" : "memory limit reached"));
    error.endsAll = true;
    throw error;
  }
  fail(ErrorKind::Cancelled, "Function cancelled");
}

// ---- errors

void Vm::unbindTo(Binding* mark) {
  while (m_bindingTop > mark) {
    --m_bindingTop;
    m_bindingTop->symbol->value = m_bindingTop->saved;
  }
}

// Goes back to the innermost vl-catch-all-apply of this run and leaves its error object; false when there is none.
bool Vm::recover(const LispError& error, const Frame* entry) {
  if (error.endsAll || error.kind == ErrorKind::ExitValue) return false;
  for (Frame* f = m_frame; f > entry; --f) {
    if (f->function || f->subr != m_catchSubr || f->state == 0) continue;
    unbindTo(f->bindings);
    auto* object = m_heap.create<CatchError>(ObjectType::CatchError);
    object->message = error.message;
    m_top = f->base;
    m_frame = f - 1;
    *m_top++ = LispValue::of(static_cast<Object*>(object));
    return true;
  }
  return false;
}

bool Vm::insideCatch() const {
  for (const Frame* f = static_cast<const Frame*>(m_frames.data()) + 1; f <= m_frame; ++f)
    if (!f->function && f->subr && f->subr == m_catchSubr && f->state != 0) return true;
  return false;
}

bool Vm::setReporting(bool on) {
  const bool before = m_reporting;
  m_reporting = on;
  return before;
}

void Vm::report(LispError& error) {
  error.reported = true;
  m_lastTrace = backTrace(1000);
  if (error.line != 0) m_lastTrace.insert(m_lastTrace.begin(), TraceLine{{}, error.file, error.line, error.column});
  if (error.kind == ErrorKind::ExitValue || m_inHandler) return;
  if (const LispValue handler = m_names.errorHandler->value) return callHandler(handler, error);
  if (error.silent) return;
  Text line = fromUtf8(m_atLineStart ? "; error: " : "\n; error: ");
  line.append(error.message).push_back(GC_T('\n'));
  write(line);
}

void Vm::callHandler(LispValue handler, LispError& error) {
  m_valueLimit += kReserveSlots;
  m_frameLimit += kReserveFrames;
  m_inHandler = true;
  m_handlerEnd = std::chrono::steady_clock::now() + kHandlerTime;
  try {
    const LispValue message = m_heap.string(error.message);
    call(handler, &message, 1);
  } catch (LispError& second) {
    // An error of the handler itself ends it.
    if (second.endsAll) error.kind = second.kind;
  }
  m_inHandler = false;
  m_valueLimit -= kReserveSlots;
  m_frameLimit -= kReserveFrames;
}

void Vm::describeFrame(const Frame& frame, TraceLine& line) const {
  if (!frame.function) {
    if (frame.subr) line.function = Text(frame.subr->name->text());
    return;
  }
  const Function& f = *frame.function;
  if (f.name)
    line.function = Text(f.name->text());
  else if (!f.isForm())
    line.function = GC_T("-lambda-");
  else if (!f.file)
    line.function = GC_T("EVAL");
  if (f.file) line.file = *f.file;
  const auto offset = static_cast<uint32_t>(frame.pc - f.code);
  for (const CodePosition& p : f.positions) {
    if (p.offset >= offset) break;
    line.line = p.line;
    line.column = p.column;
  }
}

std::vector<TraceLine> Vm::backTrace(size_t limit) const {
  std::vector<TraceLine> lines;
  for (const Frame* f = m_frame; f > static_cast<const Frame*>(m_frames.data()) && lines.size() < limit; --f) {
    if (!f->function && !f->subr) continue;
    lines.emplace_back();
    describeFrame(*f, lines.back());
  }
  return lines;
}

TextView Vm::currentFunctionName() const {
  for (const Frame* f = m_frame; f > static_cast<const Frame*>(m_frames.data()); --f)
    if (f->function && f->function->name) return f->function->name->text();
  return {};
}

// ---- output

void Vm::write(TextView text) {
  if (text.empty()) return;
  m_output.append(text);
  m_atLineStart = text.back() == GC_T('\n');
  if (m_output.size() > 4096) flush();
}

void Vm::flush() {
  if (m_output.empty()) return;
  Text text;
  text.swap(m_output);
  m_host.write(text);
}

// A list that shares its parts can be short in memory and endless on paper.
void Vm::printing(size_t length) {
  checkEnd();
  m_heap.checkText(length);
}

Text Vm::print(LispValue value, PrintStyle style) {
  Text out;
  appendValue(out, value, style, *this);
  return out;
}

// ---- builtin frames

uint32_t Native::argCount() const { return m_frame.argCount; }
LispValue& Native::slot(uint32_t i) const { return m_frame.base[i]; }
uint32_t& Native::state() const { return m_frame.state; }
void Native::push(LispValue argument) const {
  if (m_vm.m_top + 64 >= m_vm.m_valueLimit) m_vm.failDepth();
  *m_vm.m_top++ = argument;
}

}  // namespace lisp
