#include "host/ed/systems.h"

#include "host/ed/viewplace.h"

namespace ed {

namespace {

// The sheet as seen through the viewport that is worked in; elsewhere there is only the display.
GcGeMatrix3d paperToWorld(const Editor& editor) {
  GcDbViewport* viewport = nullptr;
  const bool inside = editor.inPaperLayout() && !editor.inPaperSpace();
  const GcDbObjectId id = inside ? viewportNumbered(editor, editor.viewportNumber()) : GcDbObjectId();
  GcGeMatrix3d toWorld = displayToWorld(editor);
  if (gcdbOpenObject(viewport, id, GcDb::kForRead) != Gcad::eOk) return toWorld;
  toWorld = toWorld * displayToPaper(*viewport).inverse();
  ignore(viewport->close());
  return toWorld;
}

}  // namespace

GcGeMatrix3d systemToWorld(const Editor& editor, System system) {
  switch (system) {
    case System::User: return ucsToWorld(editor);
    case System::Display: return displayToWorld(editor);
    case System::Paper: return paperToWorld(editor);
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
