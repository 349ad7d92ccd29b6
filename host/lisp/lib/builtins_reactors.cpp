// Reactors: functions of programs that are called when something happens.
#include <algorithm>

#include "host/lisp/core/builtin.h"
#include "host/lisp/core/printer.h"
#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/names.h"
#include "host/lisp/lib/reactors.h"

using lisp::LispValue;
using lisplib::hostOf;
using lisplib::Reactor;
using lisplib::ReactorKind;
using lisplib::ReactorKindNumber;

LISP_GROUP("Reactors")

namespace {

lisplib::LispReactors& reactorsOf(lisp::Args& args) { return *hostOf(args.vm()).reactors(); }

Reactor& reactorArgument(lisp::Args& args) {
  const LispValue value = args.any();
  Reactor* reactor = lisplib::reactorOf(value);
  if (reactor == nullptr) lisp::failType(args.vm(), "VLR-object-P", value);
  return *reactor;
}

[[noreturn]] void failValue(lisp::Args& args, std::string_view what, LispValue culprit) {
  lisp::Text message = lisp::fromUtf8("bad argument value: ");
  lisp::appendAscii(message, what);
  message.push_back(GC_T(' '));
  lisp::appendValue(message, culprit, lisp::PrintStyle::Quoted, args.vm());
  throw lisp::LispError(std::move(message));
}

const ReactorKind& kindArgument(lisp::Args& args) {
  const LispValue symbol = args.symbol();
  if (symbol.isCellSymbol())
    for (const ReactorKind& kind : lisplib::reactorKinds())
      if (kind.name == symbol.asSymbol()->text()) return kind;
  failValue(args, "reactor type", symbol);
}

void checkEvent(lisp::Args& args, const ReactorKind& kind, LispValue event) {
  if (!event.isCellSymbol() || kind.find(event.asSymbol()->text()) == nullptr) failValue(args, "reaction", event);
}

LispValue reactionsArgument(lisp::Args& args, const ReactorKind& kind) {
  const LispValue reactions = args.list();
  for (LispValue rest = reactions; rest.isPair(); rest = rest.tail()) {
    if (!rest.head().isPair()) lisp::failType(args.vm(), lisp::kConsp, rest.head());
    checkEvent(args, kind, rest.head().head());
  }
  return reactions;
}

std::vector<GcDbObjectId> ownersArgument(lisp::Args& args) {
  std::vector<GcDbObjectId> owners;
  for (LispValue rest = args.list(); rest.isPair(); rest = rest.tail()) {
    GcDbObjectId& id = owners.emplace_back();
    if (!lisplib::idOf(rest.head(), id)) lisp::failType(args.vm(), lisp::kLentityp, rest.head());
  }
  return owners;
}

LispValue makeReactor(lisp::Args& args, ReactorKindNumber which) {
  const ReactorKind& kind = lisplib::reactorKind(which);
  std::vector<GcDbObjectId> owners;
  if (which == ReactorKindNumber::Object) owners = ownersArgument(args);
  const LispValue data = args.any();
  const LispValue reactions = reactionsArgument(args, kind);
  const LispValue made = reactorsOf(args).make(kind, data, reactions);
  Reactor& reactor = *lisplib::reactorOf(made);
  reactor.owners = std::move(owners);
  reactorsOf(args).add(reactor, made);
  return made;
}

LispValue symbolOf(lisp::Args& args, lisp::TextView name) { return LispValue::of(args.vm().symbols().intern(name)); }

// ((type reactor...) ...) of those that are added, of one kind or of all.
LispValue listed(lisp::Args& args, const ReactorKind* wanted) {
  lisp::ListBuilder kinds(args.vm());
  for (const ReactorKind& kind : lisplib::reactorKinds()) {
    lisp::ListBuilder list(args.vm());
    list.add(symbolOf(args, kind.name));
    for (const Reactor* reactor : reactorsOf(args).added())
      if (reactor->kind == &kind) list.add(reactor->self->value);
    if (list.list().tail() && (wanted == nullptr || wanted == &kind)) kinds.add(list.list());
  }
  return kinds.list();
}

LispValue ownerNames(lisp::Args& args, const Reactor& reactor) {
  lisp::ListBuilder names(args.vm());
  for (const GcDbObjectId id : reactor.owners) names.add(lisplib::makeName(args.vm(), id));
  return names.list();
}

GcDbObjectId ownerArgument(lisp::Args& args, const Reactor& reactor, LispValue value) {
  if (reactor.kind != &lisplib::reactorKind(ReactorKindNumber::Object))
    lisp::failType(args.vm(), "VLR-object-reactor-P", value);
  return lisplib::idOfWord(args.entityName());
}

}  // namespace

LISP_BUILTIN("vlr-object-reactor", "(vlr-object-reactor owners data reactions) -> reactor",
             "Watches entities: reactions is a list of (event . function), and a function is called as (function "
             "entity reactor nil) once the builtin or command that changed the entity has ended.") {
  return makeReactor(args, ReactorKindNumber::Object);
}
LISP_BUILTIN("vlr-acdb-reactor", "(vlr-acdb-reactor data reactions) -> reactor",
             "Watches every object of the drawing; functions are called as (function reactor (nil entity)).") {
  return makeReactor(args, ReactorKindNumber::Database);
}
LISP_BUILTIN("vlr-editor-reactor", "(vlr-editor-reactor data reactions) -> reactor",
             "Watches commands, system variables, programs and saves; functions are called as (function reactor "
             "(name)).") {
  return makeReactor(args, ReactorKindNumber::Editor);
}
LISP_BUILTIN("vlr-command-reactor", "(vlr-command-reactor data reactions) -> reactor",
             "Watches commands; functions are called as (function reactor (name)), before and after each.") {
  return makeReactor(args, ReactorKindNumber::Command);
}
LISP_BUILTIN("vlr-sysvar-reactor", "(vlr-sysvar-reactor data reactions) -> reactor",
             "Watches system variables; functions are called as (function reactor (name [success])).") {
  return makeReactor(args, ReactorKindNumber::Variable);
}
LISP_BUILTIN("vlr-lisp-reactor", "(vlr-lisp-reactor data reactions) -> reactor",
             "Watches typed forms and commands that are LISP functions; functions are called as (function reactor "
             "(text)).") {
  return makeReactor(args, ReactorKindNumber::Lisp);
}
LISP_BUILTIN("vlr-dwg-reactor", "(vlr-dwg-reactor data reactions) -> reactor",
             "Watches saves and the drawing's end; functions are called as (function reactor (file)).") {
  return makeReactor(args, ReactorKindNumber::Drawing);
}
LISP_BUILTIN("vlr-mouse-reactor", "(vlr-mouse-reactor data reactions) -> reactor",
             "Would watch the mouse; there is none, so its functions are never called.") {
  return makeReactor(args, ReactorKindNumber::Mouse);
}

LISP_BUILTIN("vlr-add", "(vlr-add reactor) -> reactor", "Makes a removed reactor watch again.") {
  reactorsOf(args).add(reactorArgument(args), args[0]);
  return args[0];
}

LISP_BUILTIN("vlr-remove", "(vlr-remove reactor) -> reactor | nil",
             "Ends a reactor's watch; nil when it did not watch.") {
  Reactor& reactor = reactorArgument(args);
  if (!reactor.isAdded()) return LispValue::nil();
  reactorsOf(args).remove(reactor);
  return args[0];
}

LISP_BUILTIN("vlr-remove-all", "(vlr-remove-all [type]) -> list | nil",
             "Ends the watch of every reactor, or of those of a type; gives them as vlr-reactors does.") {
  const ReactorKind* wanted = args.moreNotNil() ? &kindArgument(args) : nullptr;
  const LispValue removed = listed(args, wanted);
  const std::vector<Reactor*> added = reactorsOf(args).added();
  for (Reactor* reactor : added)
    if (wanted == nullptr || reactor->kind == wanted) reactorsOf(args).remove(*reactor);
  return removed;
}

LISP_BUILTIN("vlr-added-p", "(vlr-added-p reactor) -> T | nil", "Whether a reactor watches.") {
  return LispValue::boolean(reactorArgument(args).isAdded());
}

LISP_BUILTIN("vlr-reactors", "(vlr-reactors [type]) -> list",
             "The reactors that watch: a list (type reactor...) for each type, or for the one asked for.") {
  return listed(args, args.moreNotNil() ? &kindArgument(args) : nullptr);
}

LISP_BUILTIN("vlr-type", "(vlr-type reactor) -> symbol", "The type of a reactor.") {
  return symbolOf(args, reactorArgument(args).kind->name);
}

LISP_BUILTIN("vlr-types", "(vlr-types) -> list", "The types of reactors there are.") {
  lisp::ListBuilder names(args.vm());
  for (const ReactorKind& kind : lisplib::reactorKinds()) names.add(symbolOf(args, kind.name));
  return names.list();
}

LISP_BUILTIN("vlr-data", "(vlr-data reactor) -> value", "What was given to the reactor as data.") {
  return reactorArgument(args).data->value;
}

LISP_BUILTIN("vlr-data-set", "(vlr-data-set reactor data) -> data", "Gives a reactor other data.") {
  Reactor& reactor = reactorArgument(args);
  reactor.data->value = args.any();
  return args[1];
}

LISP_BUILTIN("vlr-reactions", "(vlr-reactions reactor) -> list", "The list of (event . function) of a reactor.") {
  return reactorArgument(args).reactions->value;
}

LISP_BUILTIN("vlr-reaction-set", "(vlr-reaction-set reactor event function) -> function",
             "Gives an event of a reactor another function; nil takes it away.") {
  Reactor& reactor = reactorArgument(args);
  const LispValue event = args.any();
  checkEvent(args, *reactor.kind, event);
  lisp::ListBuilder reactions(args.vm());
  for (LispValue rest = reactor.reactions->value; rest.isPair(); rest = rest.tail())
    if (rest.head().head() != event) reactions.add(rest.head());
  if (args[2]) reactions.add(args.cons(event, args[2]));
  reactor.reactions->value = reactions.list();
  return args[2];
}

LISP_BUILTIN("vlr-reaction-names", "(vlr-reaction-names type) -> list", "The events reactors of a type know.") {
  lisp::ListBuilder names(args.vm());
  for (const lisplib::ReactorEventName& event : kindArgument(args).events) names.add(symbolOf(args, event.name));
  return names.list();
}

LISP_BUILTIN("vlr-current-reaction-name", "(vlr-current-reaction-name) -> symbol | nil",
             "The event the running function of a reactor was called for.") {
  const lisplib::ReactorEventName* event = reactorsOf(args).currentEvent();
  return event == nullptr ? LispValue::nil() : symbolOf(args, event->name);
}

LISP_BUILTIN("vlr-owners", "(vlr-owners reactor) -> list", "The entities an object reactor watches.") {
  return ownerNames(args, reactorArgument(args));
}

LISP_BUILTIN("vlr-owner-add", "(vlr-owner-add reactor entity) -> entity",
             "Lets an object reactor watch one more entity.") {
  Reactor& reactor = reactorArgument(args);
  const GcDbObjectId id = ownerArgument(args, reactor, args[0]);
  if (std::find(reactor.owners.begin(), reactor.owners.end(), id) == reactor.owners.end()) reactor.owners.push_back(id);
  return args[1];
}

LISP_BUILTIN("vlr-owner-remove", "(vlr-owner-remove reactor entity) -> entity | nil",
             "Ends the watch of one entity; nil when it was not watched.") {
  Reactor& reactor = reactorArgument(args);
  const GcDbObjectId id = ownerArgument(args, reactor, args[0]);
  return std::erase(reactor.owners, id) == 0 ? LispValue::nil() : args[1];
}

LISP_BUILTIN("vlr-trace-reaction", "(vlr-trace-reaction [x]...) -> nil",
             "A function for reactions: prints the event and what it was called with.") {
  const lisplib::ReactorEventName* event = reactorsOf(args).currentEvent();
  lisp::Text line = lisp::fromUtf8("\n; Reaction: [");
  if (event != nullptr) line += event->name;
  lisp::appendAscii(line, "]; argument list:");
  for (uint32_t i = 0; i < args.count(); ++i) {
    line.push_back(GC_T(' '));
    lisp::appendValue(line, args[i], lisp::PrintStyle::Quoted, args.vm());
  }
  line.push_back(GC_T('\n'));
  args.vm().write(line);
  return LispValue::nil();
}
