#include "host/lisp/core/interpreter.h"

#include <exception>

#include "host/lisp/core/reader.h"

namespace lisp {

namespace {

EvalStatus statusOf(ErrorKind kind) {
  switch (kind) {
    case ErrorKind::Exit: return EvalStatus::Exit;
    case ErrorKind::ExitValue: return EvalStatus::Done;
    case ErrorKind::Cancelled: return EvalStatus::Cancelled;
    case ErrorKind::TimeLimit: return EvalStatus::TimeLimit;
    case ErrorKind::MemoryLimit: return EvalStatus::MemoryLimit;
    case ErrorKind::Error: break;
  }
  return EvalStatus::Error;
}

std::shared_ptr<SharedSpace> orOwn(std::shared_ptr<SharedSpace> shared) {
  return shared ? std::move(shared) : std::make_shared<SharedSpace>();
}

}  // namespace

Interpreter::Interpreter(HostCalls& host, Environment& environment, InterpreterOptions options)
    : m_vm(host, environment, options.limits, orOwn(std::move(options.shared))) {}

Interpreter::~Interpreter() { m_vm.flush(); }

template <class Work>
EvalResult Interpreter::guarded(OnError onError, Work work) {
  EvalResult result;
  const bool before = m_vm.setReporting(onError == OnError::Report);
  const auto failed = [&](LispError& error) {
    if (onError == OnError::Report && !error.reported) m_vm.report(error);
    result.status = statusOf(error.kind);
    result.message = error.message;
    result.exitCode = error.exitCode;
    result.endsAll = error.endsAll;
    if (error.kind == ErrorKind::ExitValue)
      result.value = m_vm.exitValue;
    else if (error.reported)
      result.trace = m_vm.lastTrace();
  };
  try {
    result.value = work();
    m_vm.checkEnd();  // work of C++ code that was told to stop has come back, and no safe point followed
  } catch (LispError& error) {
    failed(error);
  } catch (const std::exception&) {
    LispError error(ErrorKind::MemoryLimit, fromUtf8("out of memory"));
    failed(error);
  }
  m_vm.setReporting(before);
  m_vm.flush();
  return result;
}

EvalResult Interpreter::evalFormsFrom(TextView text, TextView name, FormObserver* observer, OnError onError) {
  FormPositions positions;
  CompileSource source{std::make_shared<const Text>(name), &positions};
  Reader reader(text, m_vm.heap(), m_vm.symbols(), &positions);
  EvalResult last;
  for (bool more = true; more;) {
    bool reading = true;
    EvalResult result = guarded(onError, [&] {
      LispValue form;
      more = reader.next(form);
      reading = false;
      return more ? m_vm.eval(form, source) : LispValue::nil();
    });
    if (result.status != EvalStatus::Done) {
      if (reading) result.trace = {TraceLine{{}, Text(name), reader.position().line, reader.position().column}};
      return result;
    }
    if (!more) break;
    last = std::move(result);
    Root kept(m_vm, last.value);
    if (observer && !observer->formDone(last.value)) break;
  }
  return last;
}

EvalResult Interpreter::evalFile(std::string_view bytes, TextView name, FormObserver* observer) {
  const bool utf8 = isValidUtf8(bytes);
  const Text text = utf8 ? decodeSource(bytes) : m_vm.environment().decodeLegacy(bytes);
  return evalFormsFrom(text, name, observer);
}

EvalResult Interpreter::eval(LispValue form, OnError onError) {
  return guarded(onError, [&] { return m_vm.eval(form, {}); });
}

EvalResult Interpreter::call(LispValue function, std::span<const LispValue> arguments, OnError onError) {
  return guarded(onError,
                 [&] { return m_vm.call(function, arguments.data(), static_cast<uint32_t>(arguments.size())); });
}

void Interpreter::endAround(const EvalResult& inner) {
  if (!m_vm.isRunning()) return;
  if (inner.status == EvalStatus::TimeLimit) m_vm.requestTimeLimit();
  if (inner.status == EvalStatus::Cancelled) m_vm.requestInterrupt();
  if (inner.status == EvalStatus::MemoryLimit && inner.endsAll) m_vm.requestMemoryLimit();
}

void Interpreter::define(TextView name, int code) {
  auto* external = m_vm.heap().create<External>(ObjectType::External);
  external->code = code;
  external->name = m_vm.symbols().intern(name);
  external->name->value = LispValue::of(static_cast<Object*>(external));
}

void Interpreter::undefine(TextView name) {
  Symbol* symbol = m_vm.symbols().find(name);
  if (symbol && objectOf<External>(symbol->value, ObjectType::External)) symbol->value = symbol->builtin;
}

LispValue Interpreter::symbol(TextView name) { return tokenValue(name, m_vm.symbols()); }

LispValue Interpreter::entityName(uint64_t id) {
  auto* object = m_vm.heap().create<EntityName>(ObjectType::EntityName);
  object->id = id;
  return LispValue::of(static_cast<Object*>(object));
}

LispValue Interpreter::selectionSet(uint64_t handle) {
  auto* object = m_vm.heap().create<SelectionSet>(ObjectType::SelectionSet);
  object->handle = handle;
  return LispValue::of(static_cast<Object*>(object));
}

LispValue Interpreter::opaque(const OpaqueType& type, uint64_t payload) {
  auto* object = m_vm.heap().create<Opaque>(ObjectType::Opaque);
  object->kind = &type;
  object->payload = payload;
  return LispValue::of(static_cast<Object*>(object));
}

LispValue Interpreter::variable(TextView name) {
  const Symbol* symbol = m_vm.symbols().find(name);
  return symbol ? symbol->value : LispValue::nil();
}

void Interpreter::setVariable(TextView name, LispValue value) { m_vm.symbols().intern(name)->value = value; }

}  // namespace lisp
