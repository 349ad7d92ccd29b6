#include "host/db/objects/geodata.h"

#include <cmath>
#include <iterator>

#include "host/db/describe/fieldio.h"
#include "host/db/describe/rest.h"

GCDB_DEFINE_CLASS(GcDbGeoData, "AcDbGeoData")
GCDB_DEFINE_CLASS(GcDbLayerIndex, "AcDbLayerIndex")

const GcDbField GcDbGeoData::kFields[] = {
    marker("AcDbGeoData"),
    rest<&GcDbGeoData::m_data>("data"),
};
GCDB_FIELD_COUNT(GcDbGeoData);

int GcDbGeoData::version() const {
  constexpr int kVersion = 90;
  GcDbGroupList::Cursor cursor(m_data);
  GcDbGroup group;
  return cursor.next(group) && group.code == kVersion ? static_cast<int>(group.asInt()) : 0;
}

// Directions on the ground and the net's points have two coordinates; groups that came through a proxy have three.
void GcDbGeoData::subLoaded() {
  constexpr int kFirst = 12, kLast = 17;
  GcDbGroupList flat;
  GcDbGroupList::Cursor cursor(m_data);
  bool isChanged = false;
  for (GcDbGroup group; cursor.next(group);) {
    const bool isDeep = group.kind == GcDbGroupKind::Point3d && group.code >= kFirst && group.code <= kLast;
    if (isDeep) group.kind = GcDbGroupKind::Point2d;
    isChanged = isChanged || isDeep;
    flat.put(group);
  }
  if (isChanged) m_data = std::move(flat);
}

// DXF has the time of the last change in days.
struct GcDbIndexTime {
  static constexpr int kCode = 40;
  static constexpr double kDay = 86400000;
  static GcDbGroup get(const void* record) {
    const auto& index = *static_cast<const GcDbLayerIndex*>(record);
    return GcDbGroup::ofReal(kCode, index.m_day + index.m_milliseconds / kDay);
  }
  static bool set(void* record, const GcDbGroup& group) {
    const double days = group.asReal();
    if (!(days >= 0) || days > INT32_MAX) return false;
    auto& index = *static_cast<GcDbLayerIndex*>(record);
    index.m_day = static_cast<int32_t>(days);
    index.m_milliseconds = static_cast<int32_t>(std::lround((days - index.m_day) * kDay));
    return true;
  }
};

namespace {

constexpr GcDbField kEntryFields[] = {
    field<&GcDbLayerIndexEntry::layer>(8, "layer", Is::Plain),
    field<&GcDbLayerIndexEntry::entities>(360, "entities", Is::HardOwner),
    field<&GcDbLayerIndexEntry::count>(90, "count", Is::Plain),
};

constexpr GcDbField inMemory(GcDbField row) {
  row.write = Write::Never;
  return row;
}

}  // namespace

const GcDbField GcDbLayerIndex::kFields[] = {
    marker("AcDbIndex"),
    field<&GcDbLayerIndex::m_day>(40, "changed", Is::Plain).filedAs(GcDbIndexTime::get, GcDbIndexTime::set),
    inMemory(field<&GcDbLayerIndex::m_milliseconds>(91, "milliseconds", Is::Plain)),
    marker("AcDbLayerIndex"),
    each<&GcDbLayerIndex::m_entries>(-1, "entries", kEntryFields),
};
GCDB_FIELD_COUNT(GcDbLayerIndex);
