// Variables that stand for something in the drawing or the editor: current records, views, coordinate systems,
// running commands.
#include "host/db/core/header.h"
#include "host/db/core/undo.h"
#include "host/ed/colors.h"
#include "host/ed/coordinates.h"
#include "host/ed/records.h"
#include "host/ed/variables/rows.h"

namespace ed {

namespace {

constexpr VariableKind kInt = VariableKind::Integer;
constexpr VariableKind kReal = VariableKind::Real;
constexpr VariableKind kText = VariableKind::Text;
constexpr VariableKind kPoint3d = VariableKind::Point3d;
constexpr Keep kComputed = Keep::Computed;

using Value = VariableValue;

void putPoint(Value& value, const GcGePoint3d& p) {
  value.point[0] = p.x;
  value.point[1] = p.y;
  value.point[2] = p.z;
}

// ---- current records

void layerGet(Editor& e, Value& v) { v.text = nameOfRecord(e.database().clayer()); }
bool layerSet(Editor& e, const Value& v) {
  return e.database().setClayer(recordNamed(e.database().layerTableId(), v.text)) == Gcad::eOk;
}
void linetypeGet(Editor& e, Value& v) { v.text = nameOfRecord(e.database().celtype()); }
bool linetypeSet(Editor& e, const Value& v) {
  return e.database().setCeltype(recordNamed(e.database().linetypeTableId(), v.text)) == Gcad::eOk;
}
void styleGet(Editor& e, Value& v) { v.text = nameOfRecord(e.database().textstyle()); }
bool styleSet(Editor& e, const Value& v) {
  return e.database().setTextstyle(recordNamed(e.database().textStyleTableId(), v.text)) == Gcad::eOk;
}
void dimStyleGet(Editor& e, Value& v) { v.text = nameOfRecord(e.database().dimstyle()); }
void colorGet(Editor& e, Value& v) { v.text = colorText(e.database().cecolor()); }
bool colorSet(Editor& e, const Value& v) {
  GcCmColor color;
  return parseColor(v.text, color) && e.database().setCecolor(color) == Gcad::eOk;
}
void scaleGet(Editor& e, Value& v) { v.real = e.database().celtscale(); }
bool scaleSet(Editor& e, const Value& v) { return e.database().setCeltscale(v.real) == Gcad::eOk; }
void weightGet(Editor& e, Value& v) { v.integer = e.database().celweight(); }
bool weightSet(Editor& e, const Value& v) {
  return e.database().setCelweight(static_cast<GcDb::LineWeight>(v.integer)) == Gcad::eOk;
}

// The decimal separator of dimensions: files have its code, programs the character.
void separatorGet(Editor& e, Value& v) {
  v.text = GcText(1, static_cast<GCHAR>(e.database().header().integer(GC_T("$DIMDSEP"), '.')));
}
bool separatorSet(Editor& e, const Value& v) {
  if (v.text.size() != 1) return false;
  e.database().header().setInteger(GC_T("$DIMDSEP"), v.text[0]);
  return true;
}

// ---- spaces

void tilemodeGet(Editor& e, Value& v) { v.integer = e.inPaperLayout() ? 0 : 1; }
bool tilemodeSet(Editor& e, const Value& v) {
  return e.setLayout(v.integer == 1 ? GcText(GC_T("Model")) : e.lastPaperLayout());
}
void ctabGet(Editor& e, Value& v) { v.text = e.layout(); }
bool ctabSet(Editor& e, const Value& v) { return e.setLayout(v.text); }
void cvportGet(Editor& e, Value& v) { v.integer = e.viewportNumber(); }
bool cvportSet(Editor& e, const Value& v) { return e.setViewportNumber(v.integer); }

// ---- coordinate systems and views

void ucsOrigin(Editor& e, Value& v) {
  const GcGeVector3d at = ucsToWorld(e).translation();
  putPoint(v, {at.x, at.y, at.z});
}
void ucsAxis(Editor& e, int axis, Value& v) {
  const GcGeVector3d direction = ucsToWorld(e).column(axis);
  putPoint(v, {direction.x, direction.y, direction.z});
}
void inUcs(Editor& e, const GcGePoint3d& display, Value& v) {
  putPoint(v, ucsToWorld(e).inverse() * (displayToWorld(e) * display));
}
void viewCenter(Editor& e, Value& v) { inUcs(e, {e.view().center.x, e.view().center.y, 0}, v); }
void viewDirection(Editor& e, Value& v) {
  const GcGeVector3d d = ucsToWorld(e).inverse() * e.view().direction;
  putPoint(v, {d.x, d.y, d.z});
}

// What all entities of the current space cover; the far corners of nothing when there are none.
void extentsGet(Editor& e, bool upper, Value& v) {
  const GcDbExtents extents = e.spaceExtents();
  if (extents.isEmpty())
    putPoint(v, upper ? GcGePoint3d(-1e20, -1e20, -1e20) : GcGePoint3d(1e20, 1e20, 1e20));
  else
    putPoint(v, upper ? extents.max : extents.min);
}

// ---- the editor's state

void undoControl(Editor& e, Value& v) { v.integer = e.database().undo().isOn() ? 5 : 0; }

const VariableRow kRows[] = {
    {"CECOLOR", kText, kComputed, "", 0, 0, false, colorGet, colorSet},
    {"CELTSCALE", kReal, kComputed, "1", 0, 0, false, scaleGet, scaleSet},
    {"CELTYPE", kText, kComputed, "", 0, 0, false, linetypeGet, linetypeSet},
    {"CELWEIGHT", kInt, kComputed, "-1", -3, 211, false, weightGet, weightSet},
    {"CLAYER", kText, kComputed, "", 0, 0, false, layerGet, layerSet},
    {"CMDACTIVE", kInt, kComputed, "0", 0, 0, true, [](Editor& e, Value& v) { v.integer = e.commandActive(); }},
    {"CMDNAMES", kText, kComputed, "", 0, 0, true, [](Editor& e, Value& v) { v.text = e.commandNames(); }},
    {"CTAB", kText, kComputed, "", 0, 0, false, ctabGet, ctabSet},
    {"CVPORT", kInt, kComputed, "2", 0, 0, false, cvportGet, cvportSet},
    {"DBMOD", kInt, kComputed, "0", 0, 0, true, [](Editor& e, Value& v) { v.integer = e.changedBits(); }},
    {"DIMDSEP", kText, kComputed, ".", 0, 0, false, separatorGet, separatorSet},
    {"DIMSTYLE", kText, kComputed, "", 0, 0, true, dimStyleGet},
    {"ERRNO", kInt, kComputed, "0", 0, 0, false, [](Editor& e, Value& v) { v.integer = e.errorNumber; },
     [](Editor& e, const Value& v) {
       e.errorNumber = v.integer;
       return true;
     }},
    {"EXTMAX", kPoint3d, kComputed, "", 0, 0, true, [](Editor& e, Value& v) { extentsGet(e, true, v); }},
    {"EXTMIN", kPoint3d, kComputed, "", 0, 0, true, [](Editor& e, Value& v) { extentsGet(e, false, v); }},
    {"TARGET", kPoint3d, kComputed, "0,0,0", 0, 0, true, [](Editor& e, Value& v) { putPoint(v, e.view().target); }},
    {"TEXTSTYLE", kText, kComputed, "", 0, 0, false, styleGet, styleSet},
    {"TILEMODE", kInt, kComputed, "1", 0, 1, false, tilemodeGet, tilemodeSet},
    {"UCSNAME", kText, kComputed, "", 0, 0, true,
     [](Editor& e, Value& v) {
       v.text = e.database().header().text(e.inPaperSpace() ? GC_T("$PUCSNAME") : GC_T("$UCSNAME"));
     }},
    {"UCSORG", kPoint3d, kComputed, "", 0, 0, true, ucsOrigin},
    {"UCSXDIR", kPoint3d, kComputed, "", 0, 0, true, [](Editor& e, Value& v) { ucsAxis(e, 0, v); }},
    {"UCSYDIR", kPoint3d, kComputed, "", 0, 0, true, [](Editor& e, Value& v) { ucsAxis(e, 1, v); }},
    {"UNDOCTL", kInt, kComputed, "0", 0, 0, true, undoControl},
    {"UNDOMARKS", kInt, kComputed, "0", 0, 0, true,
     [](Editor& e, Value& v) { v.integer = e.database().undo().marks(); }},
    {"VIEWCTR", kPoint3d, kComputed, "", 0, 0, true, viewCenter},
    {"VIEWDIR", kPoint3d, kComputed, "", 0, 0, true, viewDirection},
    {"VIEWSIZE", kReal, kComputed, "", 0, 0, true, [](Editor& e, Value& v) { v.real = e.view().height; }},
    {"VIEWTWIST", kReal, kComputed, "", 0, 0, true, [](Editor& e, Value& v) { v.real = e.view().twistRad; }},
    {"VSMAX", kPoint3d, kComputed, "", 0, 0, true,
     [](Editor& e, Value& v) {
       inUcs(e, {e.view().center.x + e.view().width() / 2, e.view().center.y + e.view().height / 2, 0}, v);
     }},
    {"VSMIN", kPoint3d, kComputed, "", 0, 0, true,
     [](Editor& e, Value& v) {
       inUcs(e, {e.view().center.x - e.view().width() / 2, e.view().center.y - e.view().height / 2, 0}, v);
     }},
    {"WORLDUCS", kInt, kComputed, "1", 0, 0, true, [](Editor& e, Value& v) { v.integer = ucsIsWorld(e); }},
};

}  // namespace

std::span<const VariableRow> drawingRows() { return kRows; }

}  // namespace ed
