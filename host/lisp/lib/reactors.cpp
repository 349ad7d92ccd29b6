#include "host/lisp/lib/reactors.h"

#include <algorithm>

#include "host/ap/docmanager.h"
#include "host/lisp/lib/names.h"

namespace lisplib {

using lisp::LispValue;

Reactor* reactorOf(LispValue value) {
  const auto* opaque = lisp::objectOf<lisp::Opaque>(value, lisp::ObjectType::Opaque);
  if (opaque == nullptr || opaque->kind->release != releaseReactor) return nullptr;
  return reinterpret_cast<Reactor*>(static_cast<uintptr_t>(opaque->payload));
}

void printReactor(uint64_t payload, lisp::Text& out) {
  const auto* reactor = reinterpret_cast<const Reactor*>(static_cast<uintptr_t>(payload));
  lisp::appendAscii(out, "#<");
  lisp::appendAscii(out, reactor->kind->type.typeName);
  out.push_back(GC_T('>'));
}

void releaseReactor(uint64_t payload) {
  auto* reactor = reinterpret_cast<Reactor*>(static_cast<uintptr_t>(payload));
  if (reactor->table != nullptr) reactor->table->forget(*reactor);
  delete reactor;
}

LispReactors::LispReactors(ap::Document& document, ed::Editor& editor, lisp::Interpreter& interpreter)
    : m_document(document), m_editor(editor), m_lisp(interpreter) {}

// The values die with the heap, a little later.
LispReactors::~LispReactors() {
  if (m_watching) {
    m_document.database()->removeReactor(&m_objects);
    m_editor.watchers().remove(this);
    if (ap::DocumentManager* documents = ap::documents()) documents->removeReactor(&m_closing);
  }
  for (Reactor* reactor : m_all) {
    reactor->table = nullptr;
    reactor->data.reset();
    reactor->reactions.reset();
    reactor->self.reset();
  }
}

LispValue LispReactors::make(const ReactorKind& kind, LispValue data, LispValue reactions) {
  auto* reactor = new Reactor;
  reactor->kind = &kind;
  reactor->table = this;
  reactor->serial = ++m_lastSerial;
  reactor->data.emplace(m_lisp.vm(), data);
  reactor->reactions.emplace(m_lisp.vm(), reactions);
  m_all.push_back(reactor);
  return m_lisp.opaque(kind.type, reinterpret_cast<uintptr_t>(reactor));
}

void LispReactors::add(Reactor& reactor, LispValue value) {
  if (reactor.isAdded()) return;
  reactor.self.emplace(m_lisp.vm(), value);
  m_added.push_back(&reactor);
  watch();
}

void LispReactors::remove(Reactor& reactor) {
  std::erase(m_added, &reactor);
  reactor.self.reset();
}

void LispReactors::forget(Reactor& reactor) { std::erase(m_all, &reactor); }

// Nothing is listened to before the first reactor.
void LispReactors::watch() {
  if (m_watching) return;
  m_watching = true;
  m_document.database()->addReactor(&m_objects);
  m_editor.watchers().add(this);
  if (ap::DocumentManager* documents = ap::documents()) documents->addReactor(&m_closing);
}

Reactor* LispReactors::find(uint32_t serial) const {
  for (Reactor* reactor : m_added)
    if (reactor->serial == serial) return reactor;
  return nullptr;
}

bool LispReactors::isBecauseOf(const Reactor& reactor) const {
  return std::find(m_because.begin(), m_because.end(), reactor.serial) != m_because.end();
}

LispValue LispReactors::functionFor(const Reactor& reactor, const ReactorEventName& event) const {
  for (LispValue rest = reactor.reactions->value; rest.isPair(); rest = rest.tail()) {
    const LispValue pair = rest.head();
    if (pair.isPair() && pair.head().isCellSymbol() && pair.head().asSymbol()->text() == event.name) return pair.tail();
  }
  return LispValue::nil();
}

// ---- what happens

void LispReactors::Objects::objectAppended(const GcDbDatabase*, const GcDbObject* object) {
  m_table.objectHappened(ReactorEvent::ObjectAppended, object->objectId());
}
void LispReactors::Objects::objectUnAppended(const GcDbDatabase*, const GcDbObject* object) {
  m_table.objectHappened(ReactorEvent::ObjectUnappended, object->objectId());
}
void LispReactors::Objects::objectReAppended(const GcDbDatabase*, const GcDbObject* object) {
  m_table.objectHappened(ReactorEvent::ObjectReappended, object->objectId());
}
void LispReactors::Objects::objectModified(const GcDbDatabase*, const GcDbObject* object) {
  m_table.objectHappened(ReactorEvent::ObjectModified, object->objectId());
}
void LispReactors::Objects::objectErased(const GcDbDatabase*, const GcDbObject* object, bool erased) {
  m_table.objectHappened(erased ? ReactorEvent::ObjectErased : ReactorEvent::ObjectUnerased, object->objectId());
}

void LispReactors::Closing::documentToBeDestroyed(GcApDocument* document) {
  if (document != &m_table.m_document) return;
  m_table.settle();
  m_table.tellAll(ReactorEvent::BeginClose, view(document->fileName()), {});
}

void LispReactors::objectHappened(ReactorEvent event, GcDbObjectId object) {
  for (const Reactor* reactor : m_added) {
    const bool watched = reactor->kind != &reactorKind(ReactorKindNumber::Object) ||
                         std::find(reactor->owners.begin(), reactor->owners.end(), object) != reactor->owners.end();
    const ReactorEventName* name = watched ? reactor->kind->find(event) : nullptr;
    if (name == nullptr || isBecauseOf(*reactor) || !functionFor(*reactor, *name)) continue;
    m_waiting.push_back({reactor->serial, event, object, m_because});
  }
}

void LispReactors::happened(ed::Happening what, GcView subject) {
  settle();
  switch (what) {
    case ed::Happening::CommandStarts: return tellAll(ReactorEvent::CommandWillStart, subject, {});
    case ed::Happening::CommandEnded: return tellAll(ReactorEvent::CommandEnded, subject, {});
    case ed::Happening::CommandCancelled: return tellAll(ReactorEvent::CommandCancelled, subject, {});
    case ed::Happening::CommandFailed: return tellAll(ReactorEvent::CommandFailed, subject, {});
    case ed::Happening::CommandUnknown: return tellAll(ReactorEvent::UnknownCommand, subject, {});
    case ed::Happening::VariableChanges: return tellAll(ReactorEvent::SysVarWillChange, subject, {});
    case ed::Happening::VariableChanged: return tellAll(ReactorEvent::SysVarChanged, subject, true);
    case ed::Happening::VariableRefused: return tellAll(ReactorEvent::SysVarChanged, subject, false);
    case ed::Happening::SaveBegins: return tellAll(ReactorEvent::BeginSave, subject, {});
    case ed::Happening::SaveEnded: return tellAll(ReactorEvent::SaveComplete, subject, {});
  }
}

void LispReactors::lispHappened(ReactorEvent event, GcView text) {
  if (!m_watching) return;
  settle();
  tellAll(event, text, {});
}

// ---- calls

// Every reactor that knows the event: (function reactor (subject [success])).
void LispReactors::tellAll(ReactorEvent event, GcView subject, std::optional<bool> success) {
  std::vector<uint32_t> told;
  for (const Reactor* reactor : m_added) told.push_back(reactor->serial);
  for (const uint32_t serial : told) {
    Reactor* reactor = find(serial);
    const ReactorEventName* name = reactor == nullptr ? nullptr : reactor->kind->find(event);
    if (name == nullptr || isBecauseOf(*reactor)) continue;
    LispValue details;
    if (success.has_value()) details = m_lisp.cons(LispValue::boolean(*success), details);
    details = m_lisp.cons(m_lisp.string(subject), details);
    const LispValue arguments[] = {reactor->self->value, details};
    callFor(*reactor, *name, arguments);
  }
}

// An object reactor: (function object reactor nil); one of the database: (function reactor (nil object)).
void LispReactors::tellOfObject(const Waiting& waiting) {
  Reactor* reactor = find(waiting.serial);
  if (reactor == nullptr) return;
  const LispValue object = makeName(m_lisp.vm(), waiting.object);
  const LispValue self = reactor->self->value;
  const ReactorEventName& event = *reactor->kind->find(waiting.event);
  if (reactor->kind == &reactorKind(ReactorKindNumber::Object)) {
    const LispValue arguments[] = {object, self, LispValue::nil()};
    return callFor(*reactor, event, arguments);
  }
  const LispValue details = m_lisp.cons(LispValue::nil(), m_lisp.cons(object, LispValue::nil()));
  const LispValue arguments[] = {self, details};
  callFor(*reactor, event, arguments);
}

// An error in the function is reported and ends only it; what ends the program ends the one around it too.
void LispReactors::callFor(Reactor& reactor, const ReactorEventName& event, std::span<const LispValue> arguments) {
  const LispValue function = functionFor(reactor, event);
  if (!function) return;
  const ReactorEventName* const eventBefore = std::exchange(m_event, &event);
  m_because.push_back(reactor.serial);
  m_lisp.endAround(m_lisp.call(function, arguments, lisp::OnError::Report));
  m_because.pop_back();
  m_event = eventBefore;
}

void LispReactors::settle() {
  if (m_settling) return;
  m_settling = true;
  while (!m_waiting.empty()) {
    const Waiting waiting = std::move(m_waiting.front());
    m_waiting.pop_front();
    std::vector<uint32_t> before = waiting.because;
    std::swap(m_because, before);
    tellOfObject(waiting);
    std::swap(m_because, before);
  }
  m_settling = false;
}

}  // namespace lisplib
