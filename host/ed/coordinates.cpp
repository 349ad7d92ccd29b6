#include "host/ed/coordinates.h"

#include "db/database.h"
#include "host/db/core/header.h"
#include "host/db/core/viewspace.h"

namespace ed {

namespace {

struct UcsNames {
  const GCHAR *origin, *x, *y, *name;
};

const UcsNames& names(const Editor& editor) {
  static constexpr UcsNames kModel{GC_T("$UCSORG"), GC_T("$UCSXDIR"), GC_T("$UCSYDIR"), GC_T("$UCSNAME")};
  static constexpr UcsNames kPaper{GC_T("$PUCSORG"), GC_T("$PUCSXDIR"), GC_T("$PUCSYDIR"), GC_T("$PUCSNAME")};
  return editor.inPaperSpace() ? kPaper : kModel;
}

// A header direction; the axis when the drawing has none.
GcGeVector3d direction(const GcDbHeader& header, const GCHAR* name, const GcGeVector3d& otherwise) {
  const GcGeVector3d found = header.find(name) == nullptr ? GcGeVector3d() : header.point(name).asVector();
  return found.isZeroLength() ? otherwise : found.normal();
}

}  // namespace

GcGeMatrix3d ucsToWorld(const Editor& editor) {
  const GcDbHeader& header = editor.database().header();
  const UcsNames& setting = names(editor);
  const GcGeVector3d x = direction(header, setting.x, GcGeVector3d::kXAxis);
  const GcGeVector3d y = direction(header, setting.y, GcGeVector3d::kYAxis);
  GcGeMatrix3d matrix;
  return matrix.setCoordSystem(header.point(setting.origin), x, y, x.crossProduct(y));
}

bool setUcs(Editor& editor, const GcGePoint3d& origin, const GcGeVector3d& x, const GcGeVector3d& y, GcView name) {
  constexpr int kNameCode = 2;
  const GcGeVector3d right = x.normal();
  const GcGeVector3d up = (y - right * right.dotProduct(y)).normal();
  if (right.isZeroLength() || up.isZeroLength()) return false;
  GcDbHeader& header = editor.database().header();
  const UcsNames& setting = names(editor);
  const auto asPoint = [](const GcGeVector3d& v) { return GcGePoint3d(v.x, v.y, v.z); };
  header.setPoint(setting.origin, origin);
  header.setPoint(setting.x, asPoint(right));
  header.setPoint(setting.y, asPoint(up));
  header.setText(setting.name, name, kNameCode);
  return true;
}

bool ucsIsWorld(const Editor& editor) { return ucsToWorld(editor).isEqualTo(GcGeMatrix3d::kIdentity); }

GcGeMatrix3d displayToWorld(const Editor& editor) {
  const EditorView& view = editor.view();
  return gcdbDisplayToWorld(view.target, view.direction, view.twistRad);
}

GcGePoint3d transformed(const GcGePoint3d& point, const GcGeMatrix3d& from, const GcGeMatrix3d& to, bool displacement) {
  if (!displacement) return to.inverse() * (from * point);
  const GcGeVector3d moved = to.inverse() * (from * point.asVector());
  return {moved.x, moved.y, moved.z};
}

}  // namespace ed
