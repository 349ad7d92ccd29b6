// Entities by name.
#include "db/blockbegin.h"
#include "ed/gced.h"
#include "host/db/core/store.h"
#include "host/ed/entitylist.h"
#include "host/ed/entitywalk.h"
#include "host/ed/screen.h"

int gcdbEntNext(const gds_name name, gds_name result) {
  if (result == nullptr) return RTERROR;
  GcDbObjectId after;
  if (name != nullptr && name[0] != 0 && gcdbGetObjectId(after, name) != Gcad::eOk) return RTERROR;
  const GcDbObjectId next = ed::nextEntity(ed::currentEditor(), after);
  if (next.isNull()) return RTERROR;
  gds_name found;
  ignore(gcdbGetGdsName(found, next));
  result[0] = found[0];
  result[1] = found[1];
  return RTNORM;
}

resbuf* gcdbEntGet(const gds_name name) { return gcdbEntGetX(name, nullptr); }

resbuf* gcdbEntGetX(const gds_name name, const resbuf* applications) {
  GcDbObjectId id;
  if (name == nullptr || gcdbGetObjectId(id, name) != Gcad::eOk) return nullptr;
  return ed::entityList(id, applications);
}

int gcdbEntUpd(const gds_name name) {
  GcDbObjectId id;
  if (gcdbGetObjectId(id, name) != Gcad::eOk || !id.isValid() || id.isErased()) return RTERROR;
  ed::screen().entityChanged(id);
  return RTNORM;
}

int gcedUpdateDisplay() {
  ed::screen().update();
  return RTNORM;
}
