// The viewports of the screen.
#include "db/viewport.h"
#include "ed/gced.h"
#include "host/ap/docmanager.h"
#include "host/ed/editor.h"
#include "host/ed/viewportrecords.h"

namespace {

ed::Editor* editor() {
  const ap::Document* document = ap::currentDocument();
  return document == nullptr ? nullptr : &ed::editorOf(*document);
}

}  // namespace

Gcad::ErrorStatus gcedVports2VportTableRecords() {
  ed::Editor* current = editor();
  return current == nullptr ? Gcad::eNoDatabase : ed::storeViewports(*current);
}

Gcad::ErrorStatus gcedVportTableRecords2Vports() {
  ed::Editor* current = editor();
  return current == nullptr ? Gcad::eNoDatabase : ed::loadViewports(*current);
}

Gcad::ErrorStatus gcedSetCurrentVPort(const GcDbViewport* viewport) {
  ed::Editor* current = editor();
  if (current == nullptr) return Gcad::eNoDatabase;
  if (viewport == nullptr) return Gcad::eNullObjectPointer;
  return current->workIn(viewport->objectId()) ? Gcad::eOk : Gcad::eInvalidInput;
}
