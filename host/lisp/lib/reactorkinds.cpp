#include "host/lisp/lib/reactorkinds.h"

#include "host/lisp/lib/reactors.h"

namespace lisplib {

namespace {

using E = ReactorEvent;

constexpr ReactorEventName kObjectEvents[] = {
    {E::ObjectCancelled, GC_T(":VLR-CANCELLED")},
    {E::ObjectCopied, GC_T(":VLR-COPIED")},
    {E::ObjectErased, GC_T(":VLR-ERASED")},
    {E::ObjectUnerased, GC_T(":VLR-UNERASED")},
    {E::ObjectGoodbye, GC_T(":VLR-GOODBYE")},
    {E::ObjectOpenedForModify, GC_T(":VLR-OPENEDFORMODIFY")},
    {E::ObjectModified, GC_T(":VLR-MODIFIED")},
    {E::ObjectSubModified, GC_T(":VLR-SUBOBJMODIFIED")},
    {E::ObjectModifyUndone, GC_T(":VLR-MODIFYUNDONE")},
    {E::ObjectModifiedXData, GC_T(":VLR-MODIFIEDXDATA")},
    {E::ObjectUnappended, GC_T(":VLR-UNAPPENDED")},
    {E::ObjectReappended, GC_T(":VLR-REAPPENDED")},
    {E::ObjectClosed, GC_T(":VLR-OBJECTCLOSED")},
};

constexpr ReactorEventName kDatabaseEvents[] = {
    {E::ObjectAppended, GC_T(":VLR-OBJECTAPPENDED")},
    {E::ObjectUnappended, GC_T(":VLR-OBJECTUNAPPENDED")},
    {E::ObjectReappended, GC_T(":VLR-OBJECTREAPPENDED")},
    {E::ObjectOpenedForModify, GC_T(":VLR-OBJECTOPENEDFORMODIFY")},
    {E::ObjectModified, GC_T(":VLR-OBJECTMODIFIED")},
    {E::ObjectErased, GC_T(":VLR-OBJECTERASED")},
    {E::ObjectUnerased, GC_T(":VLR-OBJECTUNERASED")},
};

#define GC_COMMAND_EVENTS                                                                                     \
  {E::CommandWillStart, GC_T(":VLR-COMMANDWILLSTART")}, {E::CommandEnded, GC_T(":VLR-COMMANDENDED")},         \
      {E::CommandCancelled, GC_T(":VLR-COMMANDCANCELLED")}, {E::CommandFailed, GC_T(":VLR-COMMANDFAILED")}, { \
    E::UnknownCommand, GC_T(":VLR-UNKNOWNCOMMAND")                                                            \
  }
#define GC_VARIABLE_EVENTS \
  {E::SysVarWillChange, GC_T(":VLR-SYSVARWILLCHANGE")}, { E::SysVarChanged, GC_T(":VLR-SYSVARCHANGED") }
#define GC_LISP_EVENTS                                                                      \
  {E::LispWillStart, GC_T(":VLR-LISPWILLSTART")}, {E::LispEnded, GC_T(":VLR-LISPENDED")}, { \
    E::LispCancelled, GC_T(":VLR-LISPCANCELLED")                                            \
  }
#define GC_DRAWING_EVENTS                                                             \
  {E::BeginClose, GC_T(":VLR-BEGINCLOSE")}, {E::BeginSave, GC_T(":VLR-BEGINSAVE")}, { \
    E::SaveComplete, GC_T(":VLR-SAVECOMPLETE")                                        \
  }

constexpr ReactorEventName kEditorEvents[] = {GC_COMMAND_EVENTS, GC_VARIABLE_EVENTS, GC_LISP_EVENTS, GC_DRAWING_EVENTS};
constexpr ReactorEventName kCommandEvents[] = {GC_COMMAND_EVENTS};
constexpr ReactorEventName kVariableEvents[] = {GC_VARIABLE_EVENTS};
constexpr ReactorEventName kLispEvents[] = {GC_LISP_EVENTS};
constexpr ReactorEventName kDrawingEvents[] = {GC_DRAWING_EVENTS};
constexpr ReactorEventName kMouseEvents[] = {
    {E::BeginDoubleClick, GC_T(":VLR-BEGINDOUBLECLICK")},
    {E::BeginRightClick, GC_T(":VLR-BEGINRIGHTCLICK")},
};

#undef GC_COMMAND_EVENTS
#undef GC_VARIABLE_EVENTS
#undef GC_LISP_EVENTS
#undef GC_DRAWING_EVENTS

template <class Row, class Wanted, class Member>
const Row* findRow(std::span<const Row> rows, Wanted wanted, Member Row::*member) {
  for (const Row& row : rows)
    if (row.*member == wanted) return &row;
  return nullptr;
}

constexpr lisp::OpaqueType typeNamed(const char* name) { return {name, printReactor, releaseReactor}; }

// In the order of ReactorKindNumber.
const ReactorKind kKinds[] = {
    {GC_T(":VLR-OBJECT-REACTOR"), typeNamed("VLR-Object-Reactor"), kObjectEvents},
    {GC_T(":VLR-ACDB-REACTOR"), typeNamed("VLR-AcDb-Reactor"), kDatabaseEvents},
    {GC_T(":VLR-EDITOR-REACTOR"), typeNamed("VLR-Editor-Reactor"), kEditorEvents},
    {GC_T(":VLR-COMMAND-REACTOR"), typeNamed("VLR-Command-Reactor"), kCommandEvents},
    {GC_T(":VLR-SYSVAR-REACTOR"), typeNamed("VLR-SysVar-Reactor"), kVariableEvents},
    {GC_T(":VLR-LISP-REACTOR"), typeNamed("VLR-Lisp-Reactor"), kLispEvents},
    {GC_T(":VLR-DWG-REACTOR"), typeNamed("VLR-DWG-Reactor"), kDrawingEvents},
    {GC_T(":VLR-MOUSE-REACTOR"), typeNamed("VLR-Mouse-Reactor"), kMouseEvents},
};

}  // namespace

const ReactorEventName* ReactorKind::find(ReactorEvent event) const {
  return findRow(events, event, &ReactorEventName::event);
}
const ReactorEventName* ReactorKind::find(lisp::TextView wanted) const {
  return findRow(events, wanted, &ReactorEventName::name);
}

std::span<const ReactorKind> reactorKinds() { return kKinds; }

}  // namespace lisplib
