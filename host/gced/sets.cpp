// Selection sets: their members by number.
#include "ed/gced.h"
#include "host/gced/setname.h"

int gcedSSLength(const gds_name set, int32_t* length) {
  const ed::SelectionSet* found = gcedSetOf(set);
  if (found == nullptr || length == nullptr) return RTERROR;
  *length = static_cast<int32_t>(found->size());
  return RTNORM;
}

int gcedSSName(const gds_name set, int index, gds_name entity) {
  const ed::SelectionSet* found = gcedSetOf(set);
  if (found == nullptr || index < 0 || static_cast<size_t>(index) >= found->size()) return RTERROR;
  gds_name name = {};
  if (gcdbGetGdsName(name, found->ids()[static_cast<size_t>(index)]) != Gcad::eOk) return RTERROR;
  entity[0] = name[0];
  entity[1] = name[1];
  return RTNORM;
}
