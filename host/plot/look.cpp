#include "host/plot/look.h"

#include "db/database.h"
#include "host/db/objects/externals.h"
#include "host/plot/objectgroups.h"

namespace gc::plot {

namespace {

constexpr double kDefaultWidthMm = 0.25;
constexpr double kFinestWidthMm = 0.05;  // width 0 is the finest line a device draws
constexpr uint32_t kWhite = 0xFFFFFF;

bool isLight(uint32_t rgb) {
  // Luma of the sRGB primaries, in thousandths.
  return 299 * ((rgb >> 16) & 255) + 587 * ((rgb >> 8) & 255) + 114 * (rgb & 255) > 127 * 1000;
}

}  // namespace

Looks::Looks(GcDbDatabase& database, uint32_t backgroundRgb, For purpose) : m_database(database), m_purpose(purpose) {
  m_outermost.rgb = isLight(backgroundRgb) ? 0 : kWhite;
  m_outermost.widthMm = kDefaultWidthMm;
  m_outermost.linetype = database.continuousLinetype();
}

uint32_t Looks::rgbOfIndex(int index) const { return index == 7 ? m_outermost.rgb : GcCmEntityColor::lookUpRGB(index); }

uint32_t Looks::rgbOf(const GcCmEntityColor& color, GcDbObjectId layerId, const Look& container) {
  switch (color.colorMethod()) {
    case GcCmEntityColor::kByBlock: return container.rgb;
    case GcCmEntityColor::kByColor: return color.bits() & 0xFFFFFF;
    case GcCmEntityColor::kByLayer: {
      const GcCmEntityColor& own = layer(layerId).color;
      return own.isByColor() ? own.bits() & 0xFFFFFF : rgbOfIndex(own.colorIndex());
    }
    default: return rgbOfIndex(color.colorIndex());
  }
}

GcDbObjectId Looks::ownRecord(GcDbObjectId record) {
  if (record.isNull() || record.database() == &m_database) return record;
  const auto [at, isNew] = m_ownRecords.try_emplace(record);
  if (isNew) at->second = gcdbHostRecord(m_database, record);
  return at->second.isNull() ? record : at->second;
}

Look Looks::resolve(const Traits& traits, const Look& container) {
  Look look;
  // Layer "0" inside a block is the layer the block is inserted on.
  const bool inherits = traits.layer.isNull() || traits.layer == m_database.layerZero();
  look.layer = inherits && !container.layer.isNull() ? container.layer : traits.layer;
  look.rgb = rgbOf(traits.color, look.layer, container);
  look.linetypeScale = traits.linetypeScale;

  look.linetype = traits.linetype.isNull() || traits.linetype == m_database.byLayerLinetype()
                      ? layer(look.layer).linetype
                      : traits.linetype;
  if (look.linetype == m_database.byBlockLinetype()) look.linetype = container.linetype;

  const int weight = traits.lineWeight == -1 ? layer(look.layer).lineWeight : traits.lineWeight;
  if (weight == -2) {
    look.widthMm = container.widthMm;
  } else {
    look.widthMm = weight < 0 ? kDefaultWidthMm : weight == 0 ? kFinestWidthMm : weight / 100.0;
  }
  return look;
}

const Looks::Layer& Looks::layer(GcDbObjectId id) {
  const auto [at, isNew] = m_layers.try_emplace(id);
  Layer& layer = at->second;
  if (!isNew) return layer;
  layer.color.setColorIndex(7);
  layer.linetype = m_database.continuousLinetype();
  GcDbLayerTableRecord* record = nullptr;
  if (gcdbOpenObject(record, id, GcDb::kForRead) != Gcad::eOk) return layer;
  layer.color = record->color();
  if (!record->linetypeObjectId().isNull()) layer.linetype = ownRecord(record->linetypeObjectId());
  layer.lineWeight = record->lineWeight();
  layer.frozen = record->isFrozen();
  layer.shown = !record->isOff() && (record->isPlottable() || m_purpose == For::Screen);
  ignore(record->close());
  return layer;
}

bool Looks::isFrozen(GcDbObjectId id) {
  return layer(id).frozen || (!m_alsoFrozen.empty() && m_alsoFrozen.contains(id));
}

bool Looks::isShown(GcDbObjectId id) { return layer(id).shown; }

void Looks::freezeAlso(const std::vector<GcDbObjectId>& layers) {
  m_alsoFrozen.clear();
  m_alsoFrozen.insert(layers.begin(), layers.end());
}

const std::vector<double>& Looks::linetypeElements(GcDbObjectId linetype) {
  const auto [at, isNew] = m_linetypes.try_emplace(linetype);
  if (isNew && !linetype.isNull()) {
    const ObjectGroups record(linetype);
    for (int i = 0, count = record.count(49); i < count; ++i) at->second.push_back(record.real(49, 0, nullptr, i));
  }
  return at->second;
}

const std::vector<LineMark>& Looks::linetypeMarks(GcDbObjectId linetype) {
  const auto [at, isNew] = m_marks.try_emplace(linetype);
  if (isNew && !linetype.isNull()) at->second = marksOf(linetype);
  return at->second;
}

}  // namespace gc::plot
