#include "host/db/entities/shape.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "db/database.h"
#include "db/symboltable.h"
#include "db/textstyle.h"
#include "gi/drawable.h"
#include "host/db/describe/fieldio.h"
#include "host/db/entities/planar.h"
#include "host/gi/shapefile.h"
#include "host/rx/file/file_view.h"
#include "host/rx/math/elementary.h"
#include "host/rx/text/number.h"

GCDB_DEFINE_CLASS(GcDbShape, "AcDbShape")

namespace {

constexpr int kNameCode = 2;
constexpr GCHAR kByNumber = GC_T('*');

// Rows of the place: copies in memory have them, groups say them as the name.
constexpr GcDbField notInGroups(GcDbField row) {
  row.write = Write::Never;
  return row;
}

GcText fileOf(GcDbObjectId styleId) {
  GcText file;
  GcDbTextStyleTableRecord* style = nullptr;
  if (gcdbOpenObject(style, styleId, GcDb::kForRead) != Gcad::eOk) return file;
  if (style->isShapeFile()) file = view(style->fileName());
  ignore(style->close());
  return file;
}

std::optional<GcGiShapeFile> shapesOf(GcDbDatabase* database, GcDbObjectId styleId) {
  constexpr GcView kEnding = GC_T(".shx");
  GcText file = fileOf(styleId);
  if (file.empty()) return {};
  const bool isWhole =
      file.size() > kEnding.size() && equalNoCase(GcView(file).substr(file.size() - kEnding.size()), kEnding);
  if (!isWhole) file += kEnding;
  GcString found;
  gc::FileView bytes;
  if (gcdbHostApplicationServices()->findFile(found, file.c_str(), database) != Gcad::eOk) return {};
  if (!bytes.open(toUtf8(view(found))).ok()) return {};
  return GcGiShapeFile::parse(bytes.bytes());
}

// Every style of the drawing that stands for a file of shapes, until `each` answers true.
template <class F>
void forShapeStyles(GcDbDatabase* database, const F& each) {
  GcDbSymbolTable* table = nullptr;
  if (database == nullptr || gcdbOpenObject(table, database->textStyleTableId(), GcDb::kForRead) != Gcad::eOk) return;
  const GcDbObjectIdArray ids = table->records();
  ignore(table->close());
  for (const GcDbObjectId id : ids)
    if (!fileOf(id).empty() && each(id)) return;
}

}  // namespace

struct GcDbShapeFiling {
  static GcDbGroup getName(const void* record) {
    return GcDbGroup::ofText(kNameCode, view(static_cast<const GcDbShape*>(record)->nameInFiles()));
  }
  static bool setName(void* record, const GcDbGroup& group) {
    if (group.kind != GcDbGroupKind::Text) return false;
    auto& shape = *static_cast<GcDbShape*>(record);
    shape.m_name = toGcString(group.text);
    shape.m_styleId = {};
    shape.m_number = 0;
    return true;
  }
};

const GcDbField GcDbShape::kFields[] = {
    marker("AcDbShape"),
    field<&GcDbShape::m_thickness>(39, "thickness", Is::Length, Write::FilesUnlessDefault),
    field<&GcDbShape::m_position>(10, "position", Is::WcsPoint),
    field<&GcDbShape::m_size>(40, "size", Is::Length),
    field<&GcDbShape::m_name>(kNameCode, "name", Is::Plain).filedAs(GcDbShapeFiling::getName, GcDbShapeFiling::setName),
    notInGroups(field<&GcDbShape::m_styleId>(340, "style", Is::HardPointer)),
    notInGroups(field<&GcDbShape::m_number>(70, "number", Is::Plain)),
    field<&GcDbShape::m_rotationRad>(50, "rotation", Is::Angle, Write::FilesUnlessDefault),
    field<&GcDbShape::m_widthFactor>(41, "widthFactor", Is::Plain, Write::FilesUnlessDefault).orElse(1),
    field<&GcDbShape::m_obliqueRad>(51, "oblique", Is::Angle, Write::FilesUnlessDefault),
    field<&GcDbShape::m_normal>(210, "normal", Is::Normal, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDbShape);

GcDbShape::Place GcDbShape::place() const {
  Place found{m_styleId, m_number};
  if (m_name.isEmpty() || database() == nullptr) return found;
  forShapeStyles(database(), [&](GcDbObjectId id) {
    const auto shapes = shapesOf(database(), id);
    const int number = shapes ? shapes->numberOf(view(m_name)) : 0;
    if (number != 0) found = {id, static_cast<int16_t>(number)};
    return number != 0;
  });
  return found;
}

const GcString& GcDbShape::nameInFiles() const {
  if (!m_name.isEmpty() || m_styleId.isNull()) return m_name;
  const auto shapes = shapesOf(database(), m_styleId);
  GcText name = shapes ? shapes->nameOf(m_number) : GcText();
  if (name.empty()) name = kByNumber + fromUtf8(std::to_string(m_number)) + GC_T(",") + fileOf(m_styleId);
  m_shown = toGcString(name);
  return m_shown;
}

bool GcDbShape::isKnownByNumberOnly() const {
  const GcString& name = nameInFiles();
  return !name.isEmpty() && view(name)[0] == kByNumber;
}

// A name that stands for the place is one: "*133,symbols.shx".
void GcDbShape::subLoaded() {
  const GcText name(view(m_name));
  const size_t comma = std::min(name.find(GC_T(',')), name.size());
  int64_t number = 0;
  const bool isPlace = !name.empty() && name[0] == kByNumber &&
                       gc::parseInt(GcView(name).substr(1, comma - 1), number) && number >= INT16_MIN &&
                       number <= INT16_MAX;
  if (!isPlace || comma == name.size()) return;
  forShapeStyles(database(), [&](GcDbObjectId id) {
    if (!equalNoCase(fileOf(id), GcView(name).substr(comma + 1))) return false;
    m_styleId = id;
    m_number = static_cast<int16_t>(number);
    m_name = {};
    return true;
  });
}

// The base vectors are transformed and read back: turn, size, width factor and slant follow.
Gcad::ErrorStatus GcDbShape::subTransformBy(const GcGeMatrix3d& transform) {
  const GcGeVector3d normal = gcplanar::normalOfImage(transform, m_normal);
  if (normal.isZeroLength()) return Gcad::eCannotScaleNonUniformly;
  const GcGeVector3d way = gcplanar::directionAt(m_rotationRad, m_normal);
  const GcGeVector3d along = transform * way, up = transform * m_normal.crossProduct(way);
  const GcGeVector3d slanted = up + along * gc::tan(m_obliqueRad);
  const double stretch = along.length();
  const double sideways = slanted.dotProduct(along / stretch);
  const double rise = (slanted - along / stretch * sideways).length();
  const bool keepsForm = transform.isUniScaledOrtho();
  m_position = transform * m_position;
  m_rotationRad = gcplanar::angleOf(along, normal);
  m_size *= keepsForm ? stretch : rise;
  m_thickness *= transform.scale();
  if (!keepsForm) {
    m_widthFactor *= stretch / rise;
    m_obliqueRad = gc::atan2(sideways, rise);
  }
  m_normal = normal;
  return Gcad::eOk;
}

bool GcDbShape::subWorldDraw(GcGiWorldDraw* draw) {
  const GcGeVector3d way = gcplanar::directionAt(m_rotationRad, m_normal);
  const GcGeVector3d along = way * m_size * m_widthFactor;
  const GcGeVector3d up = m_normal.crossProduct(way) * m_size + along * gc::tan(m_obliqueRad);
  const Place at = place();
  const auto shapes = at.isKnown() ? shapesOf(database(), at.styleId) : std::nullopt;
  if (!shapes) {
    drawMissing(*draw, along, up);
    return true;
  }
  for (const std::vector<GcGePoint2d>& line : shapes->strokes(at.number)) {
    std::vector<GcGePoint3d> points;
    for (const GcGePoint2d& p : line) points.push_back(m_position + along * p.x + up * p.y);
    draw->geometry().polyline(static_cast<int>(points.size()), points.data());
  }
  return true;
}

void GcDbShape::drawMissing(GcGiWorldDraw& draw, const GcGeVector3d& along, const GcGeVector3d& up) const {
  const GcGePoint3d corners[] = {m_position, m_position + along, m_position + along + up, m_position + up};
  draw.geometry().polyline(4, corners, true);
  const GcGePoint3d cross[] = {corners[0], corners[2]}, back[] = {corners[1], corners[3]};
  draw.geometry().polyline(2, cross);
  draw.geometry().polyline(2, back);
}
