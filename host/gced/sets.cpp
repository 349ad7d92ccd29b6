// Selection sets: their members by number.
#include "ed/gced.h"
#include "host/ap/docmanager.h"
#include "host/ed/editor.h"

namespace {

const ed::SelectionSet* setOf(const gds_name name) {
  const ap::Document* document = ap::currentDocument();
  if (document == nullptr) return nullptr;
  return ed::editorOf(*document).sets().find(static_cast<ed::SetNumber>(name[0]));
}

}  // namespace

int gcedSSLength(const gds_name set, int32_t* length) {
  const ed::SelectionSet* found = setOf(set);
  if (found == nullptr || length == nullptr) return RTERROR;
  *length = static_cast<int32_t>(found->size());
  return RTNORM;
}

int gcedSSName(const gds_name set, int index, gds_name entity) {
  const ed::SelectionSet* found = setOf(set);
  if (found == nullptr || index < 0 || static_cast<size_t>(index) >= found->size()) return RTERROR;
  gds_name name = {};
  if (gcdbGetGdsName(name, found->ids()[static_cast<size_t>(index)]) != Gcad::eOk) return RTERROR;
  entity[0] = name[0];
  entity[1] = name[1];
  return RTNORM;
}
