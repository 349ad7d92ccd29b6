#include "host/db/objects/mlinestyle.h"

#include <iterator>

#include "db/database.h"
#include "host/db/core/names.h"
#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbMlineStyle, "AcDbMlineStyle")

namespace {

constexpr int16_t kByLayer = 32767;
constexpr int16_t kByBlock = 32766;

constexpr GcDbField kElementFields[] = {
    field<&GcDbMlineElement::offset>(49, "offset", Is::Plain),
    field<&GcDbMlineElement::color>(62, "color", Is::Color),
    field<&GcDbMlineElement::color>(420, "trueColor", Is::TrueColor, Write::UnlessDefault).echo(),
    field<&GcDbMlineElement::linetype>(6, "linetype", Is::LinetypeName),
    field<&GcDbMlineElement::linetypeIndex>(-1, "linetypeIndex", Is::Plain).orElse(-1),
};

}  // namespace

const GcDbField GcDbMlineStyle::kFields[] = {
    marker("AcDbMlineStyle"),
    field<&GcDbMlineStyle::m_name>(2, "name", Is::Plain),
    field<&GcDbMlineStyle::m_flags>(70, "flags", Is::Plain),
    field<&GcDbMlineStyle::m_description>(3, "description", Is::Plain),
    field<&GcDbMlineStyle::m_fillColor>(62, "fillColor", Is::Color),
    field<&GcDbMlineStyle::m_fillColor>(420, "fillTrueColor", Is::TrueColor, Write::UnlessDefault).echo(),
    field<&GcDbMlineStyle::m_startRad>(51, "startAngle", Is::Plain),
    field<&GcDbMlineStyle::m_endRad>(52, "endAngle", Is::Plain),
    each<&GcDbMlineStyle::m_elements>(71, "elements", kElementFields),
};
GCDB_FIELD_COUNT(GcDbMlineStyle);

void GcDbMlineStyle::setStandard(GcDbObjectId byLayerLinetype) {
  assertWriteEnabled();
  m_name = GC_T("STANDARD");
  m_elements.clear();
  for (const double offset : {0.5, -0.5})
    m_elements.append(GcDbMlineElement{offset, GcCmColor::byLayer(), byLayerLinetype, -1});
}

void GcDbMlineStyle::subLoaded() {
  for (GcDbMlineElement& element : m_elements) {
    if (element.linetypeIndex < 0 || database() == nullptr) continue;
    element.linetype = gcdbLinetypeAt(*database(), element.linetypeIndex);
    element.linetypeIndex = -1;
  }
}

namespace {

enum class Special : uint8_t { None, ByLayer, ByBlock };

// Told by their names: while a drawing is being read, nothing else says which they are.
Special specialOf(GcDbObjectId linetype) {
  const GcView name = gcdbNameOfRecord(linetype);
  if (equalNoCase(name, GC_T("ByLayer"))) return Special::ByLayer;
  return equalNoCase(name, GC_T("ByBlock")) ? Special::ByBlock : Special::None;
}

const GcDbObjectIdArray& linetypesOf(const GcDbDatabase& database) {
  static const GcDbObjectIdArray kNone;
  const GcDbObjectId id = database.linetypeTableId();
  const auto* table = id.isValid() ? GcDbLinetypeTable::cast(id.stub()->object) : nullptr;
  return table == nullptr ? kNone : table->records();
}

GcDbObjectId specialLinetype(const GcDbDatabase& database, Special which) {
  for (const GcDbObjectId each : linetypesOf(database))
    if (!each.isErased() && specialOf(each) == which) return each;
  return {};
}

}  // namespace

int16_t gcdbLinetypeIndex(const GcDbDatabase& database, GcDbObjectId linetype) {
  const Special special = specialOf(linetype);
  if (linetype.isNull() || special == Special::ByLayer) return kByLayer;
  if (special == Special::ByBlock) return kByBlock;
  int16_t index = 0;
  for (const GcDbObjectId each : linetypesOf(database)) {
    if (each == linetype) return index;
    if (!each.isErased() && specialOf(each) == Special::None) ++index;
  }
  return kByLayer;
}

GcDbObjectId gcdbLinetypeAt(const GcDbDatabase& database, int index) {
  if (index == kByBlock) return specialLinetype(database, Special::ByBlock);
  for (const GcDbObjectId each : linetypesOf(database)) {
    if (index == kByLayer) break;
    if (!each.isErased() && specialOf(each) == Special::None && index-- == 0) return each;
  }
  return specialLinetype(database, Special::ByLayer);
}
