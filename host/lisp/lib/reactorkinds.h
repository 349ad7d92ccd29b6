// The kinds of reactors LISP programs can make, and the events each of them knows by name.
#pragma once

#include <span>

#include "host/lisp/core/objects.h"

namespace lisplib {

// What can be told of. Programs name it as :VLR- and the word of kEventNames.
enum class ReactorEvent : uint8_t {
  ObjectAppended,
  ObjectUnappended,
  ObjectReappended,
  ObjectModified,
  ObjectErased,
  ObjectUnerased,
  ObjectGoodbye,
  ObjectOpenedForModify,
  ObjectSubModified,
  ObjectCopied,
  ObjectCancelled,
  ObjectModifyUndone,
  ObjectModifiedXData,
  ObjectClosed,
  CommandWillStart,
  CommandEnded,
  CommandCancelled,
  CommandFailed,
  UnknownCommand,
  SysVarWillChange,
  SysVarChanged,
  LispWillStart,
  LispEnded,
  LispCancelled,
  BeginClose,
  BeginSave,
  SaveComplete,
  BeginDoubleClick,
  BeginRightClick,
};

struct ReactorEventName {
  ReactorEvent event;
  lisp::TextView name;  // as programs write it, in upper case
};

struct ReactorKind {
  lisp::TextView name;    // the symbol
  lisp::OpaqueType type;  // how its reactors print
  std::span<const ReactorEventName> events;

  [[nodiscard]] const ReactorEventName* find(ReactorEvent event) const;
  [[nodiscard]] const ReactorEventName* find(lisp::TextView name) const;
};

enum class ReactorKindNumber : uint8_t { Object, Database, Editor, Command, Variable, Lisp, Drawing, Mouse };
[[nodiscard]] std::span<const ReactorKind> reactorKinds();
inline const ReactorKind& reactorKind(ReactorKindNumber which) { return reactorKinds()[static_cast<size_t>(which)]; }

}  // namespace lisplib
