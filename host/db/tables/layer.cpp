#include <iterator>

#include "db/database.h"
#include "db/entity.h"
#include "db/symboltable.h"
#include "host/db/core/names.h"
#include "host/db/core/newdrawing.h"
#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbLayerTableRecord, "AcDbLayerTableRecord")

// Files give a layer that is off a negative colour index.
struct GcDbLayerFields {
  static constexpr GcDbField name() { return field<&GcDbLayerTableRecord::m_name>(2, "name", Is::Plain); }
  static constexpr GcDbField flags() { return field<&GcDbLayerTableRecord::m_flags>(70, "flags", Is::Plain); }
  static constexpr GcDbField off() { return field<&GcDbLayerTableRecord::m_off>(-1, "off", Is::Plain); }
  static constexpr GcDbField color() {
    GcDbField row = field<&GcDbLayerTableRecord::m_color>(62, "color", Is::Plain);
    row.get = getColor;
    row.set = setColor;
    return row;
  }
  static GcDbGroup getColor(const void* record) {
    const auto& layer = *static_cast<const GcDbLayerTableRecord*>(record);
    const int index = layer.m_color.colorIndex();
    return GcDbGroup::ofInt(62, layer.m_off ? -index : index);
  }
  static bool setColor(void* record, const GcDbGroup& group) {
    auto& layer = *static_cast<GcDbLayerTableRecord*>(record);
    const int index = static_cast<int>(group.asInt());
    layer.m_off = index < 0;
    if (!layer.m_color.isByColor()) layer.m_color.setColorIndex(index < 0 ? -index : index);
    return true;
  }
  static constexpr GcDbField trueColor() {
    return field<&GcDbLayerTableRecord::m_color>(420, "trueColor", Is::TrueColor, Write::UnlessDefault)
        .from(GcDb::kDHL_AC1018);
  }
  static constexpr GcDbField linetype() {
    return field<&GcDbLayerTableRecord::m_linetypeId>(6, "linetype", Is::LinetypeName);
  }
  static constexpr GcDbField plottable() {
    return field<&GcDbLayerTableRecord::m_plottable>(290, "plottable", Is::Plain, Write::UnlessDefault)
        .orElse(1)
        .from(GcDb::kDHL_AC1015);
  }
  static constexpr GcDbField lineWeight() {
    return field<&GcDbLayerTableRecord::m_lineWeight>(370, "lineWeight", Is::Plain).from(GcDb::kDHL_AC1015);
  }
  static constexpr GcDbField plotStyle() {
    return field<&GcDbLayerTableRecord::m_plotStyleId>(390, "plotStyle", Is::HardPointer, Write::UnlessDefault)
        .from(GcDb::kDHL_AC1015);
  }
  static constexpr GcDbField material() {
    return field<&GcDbLayerTableRecord::m_materialId>(347, "material", Is::HardPointer, Write::UnlessDefault)
        .from(GcDb::kDHL_AC1021);
  }
};

const GcDbField GcDbLayerTableRecord::kFields[] = {
    marker("AcDbLayerTableRecord"), GcDbLayerFields::name(),      GcDbLayerFields::flags(),
    GcDbLayerFields::off(),         GcDbLayerFields::color(),     GcDbLayerFields::trueColor(),
    GcDbLayerFields::linetype(),    GcDbLayerFields::plottable(), GcDbLayerFields::lineWeight(),
    GcDbLayerFields::plotStyle(),   GcDbLayerFields::material(),
};
GCDB_FIELD_COUNT(GcDbLayerTableRecord);

namespace {

void setBit(int16_t& flags, int bit, bool on) { flags = static_cast<int16_t>(on ? flags | bit : flags & ~bit); }

}  // namespace

Gcad::ErrorStatus GcDbLayerTableRecord::setIsOff(bool off) {
  assertWriteEnabled();
  m_off = off;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbLayerTableRecord::setIsFrozen(bool frozen) {
  if (frozen && database() != nullptr && database()->clayer() == objectId()) return Gcad::eInvalidInput;
  assertWriteEnabled();
  setBit(m_flags, 1, frozen);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbLayerTableRecord::setIsLocked(bool locked) {
  assertWriteEnabled();
  setBit(m_flags, 4, locked);
  return Gcad::eOk;
}

// A layer has a colour of its own: none by layer or by block, and no index that the palette lacks.
Gcad::ErrorStatus GcDbLayerTableRecord::setColor(const GcCmColor& color) {
  if (!color.isByColor() && (color.colorIndex() < 1 || color.colorIndex() > 255)) return Gcad::eInvalidInput;
  assertWriteEnabled();
  m_color = color;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbLayerTableRecord::setLinetypeObjectId(GcDbObjectId id) {
  assertWriteEnabled();
  m_linetypeId = id;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbLayerTableRecord::setLineWeight(GcDb::LineWeight weight) {
  assertWriteEnabled();
  m_lineWeight = weight;
  return Gcad::eOk;
}

void GcDbLayerTableRecord::subJoined() {
  if (m_linetypeId.isNull()) m_linetypeId = database()->continuousLinetype();
  if (m_plotStyleId.isNull()) m_plotStyleId = gcdbDefaultPlotStyle(*database());
}

namespace {

bool hasEntities(GcDbDatabase& database, GcDbObjectId layer) {
  bool found = false;
  database.store().forEach([&](GcDbStub* stub) {
    if (found || stub->erased || stub->object == nullptr) return;
    const auto* entity = GcDbEntity::cast(stub->object);
    found = entity != nullptr && entity->layerId() == layer;
  });
  return found;
}

}  // namespace

// The current layer, those that the format counts on and those in use stay.
Gcad::ErrorStatus GcDbLayerTableRecord::subErase(bool erasing) {
  if (!erasing) return Gcad::eOk;
  if (database()->clayer() == objectId()) return Gcad::eDeletionOfCurrentLayer;
  const bool counted = database()->layerZero() == objectId() || equalNoCase(view(m_name), GC_T("Defpoints"));
  return counted || hasEntities(*database(), objectId()) ? Gcad::eCannotBeErasedByCaller : Gcad::eOk;
}
