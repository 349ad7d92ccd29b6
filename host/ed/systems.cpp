#include "host/ed/systems.h"

namespace ed {

GcGeMatrix3d systemToWorld(const Editor& editor, System system) {
  switch (system) {
    case System::User: return ucsToWorld(editor);
    case System::Display:
    case System::Paper: return displayToWorld(editor);
    case System::World: break;
  }
  return {};
}

bool entitySystem(GcDbObjectId entity, GcGeMatrix3d& toWorld) {
  GcDbEntity* open = nullptr;
  if (gcdbOpenObject(open, entity, GcDb::kForRead) != Gcad::eOk) return false;
  toWorld.setToPlaneToWorld(open->normal());
  ignore(open->close());
  return true;
}

}  // namespace ed
