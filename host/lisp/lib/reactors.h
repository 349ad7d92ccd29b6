// Reactors of LISP programs: functions that are called when something happens in a document.
//
// What the editor tells (commands, variables, saves) is passed on at once, so that a function can still set a layer
// before the command draws. What happens to objects waits until the builtin or command that did it has ended: no
// object is open then, and a function may change anything. Each happening is told once; a reactor is not told of what
// its own function does, nor of what others do because of that, so reactors that answer each other come to an end.
#pragma once

#include <deque>
#include <optional>

#include "ap/docman.h"
#include "db/database.h"
#include "host/ed/editor.h"
#include "host/lisp/core/interpreter.h"
#include "host/lisp/lib/reactorkinds.h"

namespace lisplib {

class LispReactors;

// One reactor. Lives as long as its LISP value, or as long as it is added.
struct Reactor {
  const ReactorKind* kind = nullptr;
  LispReactors* table = nullptr;  // null once the document's LISP has gone
  uint32_t serial = 0;
  std::vector<GcDbObjectId> owners;  // of an object reactor: whom it watches
  std::optional<lisp::Root> data;
  std::optional<lisp::Root> reactions;  // ((event . function) ...)
  std::optional<lisp::Root> self;       // its value, while it is added

  [[nodiscard]] bool isAdded() const { return self.has_value(); }
};

class LispReactors final : private ed::EditorWatcher {
 public:
  LispReactors(ap::Document& document, ed::Editor& editor, lisp::Interpreter& interpreter);
  LispReactors(const LispReactors&) = delete;
  LispReactors& operator=(const LispReactors&) = delete;
  ~LispReactors();

  // A new reactor as a LISP value; not added yet.
  lisp::LispValue make(const ReactorKind& kind, lisp::LispValue data, lisp::LispValue reactions);
  void add(Reactor& reactor, lisp::LispValue value);
  void remove(Reactor& reactor);
  // Those that are added, oldest first.
  [[nodiscard]] const std::vector<Reactor*>& added() const { return m_added; }
  // What the function at work was called for; null outside such functions.
  [[nodiscard]] const ReactorEventName* currentEvent() const { return m_event; }

  // Functions are waiting to be told of objects.
  [[nodiscard]] bool isDue() const { return !m_waiting.empty() && !m_settling; }
  void settle();

  // Of the document's LISP: a typed form or a program's command.
  void lispHappened(ReactorEvent event, GcView text);

  void forget(Reactor& reactor);  // its value has been collected

 private:
  // The database's side.
  class Objects final : public GcDbDatabaseReactor {
   public:
    explicit Objects(LispReactors& table) : m_table(table) {}
    void objectAppended(const GcDbDatabase* database, const GcDbObject* object) override;
    void objectUnAppended(const GcDbDatabase* database, const GcDbObject* object) override;
    void objectReAppended(const GcDbDatabase* database, const GcDbObject* object) override;
    void objectModified(const GcDbDatabase* database, const GcDbObject* object) override;
    void objectErased(const GcDbDatabase* database, const GcDbObject* object, bool erased) override;

   private:
    LispReactors& m_table;
  };
  // The document's end.
  class Closing final : public GcApDocManagerReactor {
   public:
    explicit Closing(LispReactors& table) : m_table(table) {}
    void documentToBeDestroyed(GcApDocument* document) override;

   private:
    LispReactors& m_table;
  };
  struct Waiting {
    uint32_t serial;
    ReactorEvent event;
    GcDbObjectId object;
    std::vector<uint32_t> because;  // reactors whose functions led to it
  };

  void happened(ed::Happening what, GcView subject) override;
  void objectHappened(ReactorEvent event, GcDbObjectId object);
  void tellAll(ReactorEvent event, GcView subject, std::optional<bool> success);
  void callFor(Reactor& reactor, const ReactorEventName& event, std::span<const lisp::LispValue> arguments);
  void tellOfObject(const Waiting& waiting);
  [[nodiscard]] Reactor* find(uint32_t serial) const;
  [[nodiscard]] bool isBecauseOf(const Reactor& reactor) const;
  [[nodiscard]] lisp::LispValue functionFor(const Reactor& reactor, const ReactorEventName& event) const;
  void watch();

  ap::Document& m_document;
  ed::Editor& m_editor;
  lisp::Interpreter& m_lisp;
  Objects m_objects{*this};
  Closing m_closing{*this};
  std::vector<Reactor*> m_all;
  std::vector<Reactor*> m_added;
  std::deque<Waiting> m_waiting;
  std::vector<uint32_t> m_because;
  const ReactorEventName* m_event = nullptr;
  uint32_t m_lastSerial = 0;
  bool m_watching = false;
  bool m_settling = false;
};

// The reactor of a value; null when it is none.
Reactor* reactorOf(lisp::LispValue value);

// Of the values' type.
void printReactor(uint64_t payload, lisp::Text& out);
void releaseReactor(uint64_t payload);

}  // namespace lisplib
