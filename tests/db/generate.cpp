#include "generate.h"

#include <string_view>

#include "db/dictionary.h"
#include "db/entity.h"

double ObjectGenerator::real() {
  // Multiples of 1/64 keep sums and unit conversions exact enough to compare.
  return integer(-64000, 64000) / 64.0;
}

GcString ObjectGenerator::text() {
  static constexpr const GCHAR* kTexts[] = {GC_T(""), GC_T("A"), GC_T("\u0141\u0105ka 7"), GC_T("m\u00B2 %%c20")};
  GcString made(kTexts[integer(0, 3)]);
  if (integer(0, 9) == 0)
    for (int i = 0; i < 40; ++i) made += GcString(GC_T("long text \u0119 "));
  return made;
}

GcDbObjectId ObjectGenerator::recordFor(Is is) {
  switch (is) {
    case Is::LayerName: return m_database.layerZero();
    case Is::LinetypeName: return m_database.continuousLinetype();
    case Is::TextStyleName: return m_database.textstyle();
    case Is::DimStyleName: return m_database.dimstyle();
    case Is::BlockName: return m_database.modelSpaceId();
    default: return integer(0, 1) == 0 ? GcDbObjectId() : m_database.layerZero();
  }
}

void ObjectGenerator::fillRow(const GcDbField& row, void* record) {
  if (row.is == Is::Marker || row.isGroupsOnly() || row.at == nullptr || row.is == Is::Count) return;
  void* member = row.at(record);
  const auto set = [&](auto value) { *static_cast<decltype(value)*>(member) = value; };
  if (row.code == 72 && row.name == std::string_view("type")) {  // of a hatch's edge: says what else there is
    set(static_cast<int16_t>(integer(1, 4)));
    return;
  }
  if (row.code == 90 && row.name == std::string_view("kind")) {  // of a value: says what else there is
    static constexpr int32_t kKinds[] = {0, 1, 2, 4, 8, 16, 32, 64};
    set(kKinds[integer(0, 7)]);
    return;
  }
  const bool isCurve = row.is == Is::Angle || (row.code >= 50 && row.code <= 58);
  switch (row.kind) {
    case Kind::Bool: set(integer(0, 1) == 1); break;
    case Kind::Int8: set(static_cast<int8_t>(integer(0, 7))); break;
    case Kind::UInt8: set(static_cast<uint8_t>(integer(0, 7))); break;
    case Kind::Int16: set(static_cast<int16_t>(integer(0, 7))); break;
    case Kind::UInt16: set(static_cast<uint16_t>(integer(0, 7))); break;
    case Kind::Int32: set(static_cast<int32_t>(integer(0, 7))); break;
    case Kind::UInt32: set(static_cast<uint32_t>(integer(0, 7))); break;
    case Kind::Int64: set(static_cast<int64_t>(integer(0, 7))); break;
    case Kind::Real: set(isCurve ? integer(0, 62) / 10.0 : real()); break;
    case Kind::Point2d:
    case Kind::Vector2d: set(GcGePoint2d(real(), real())); break;
    case Kind::Point3d: set(GcGePoint3d(real(), real(), real())); break;
    case Kind::Vector3d:
      if (row.is == Is::Normal || row.is == Is::Direction)
        set(GcGeVector3d(integer(-1, 1), 2, integer(0, 1)).normal());
      else
        set(GcGeVector3d(real(), real(), 1 + std::fabs(real())));
      break;
    case Kind::String: set(text()); break;
    case Kind::Id: set(recordFor(row.is)); break;
    case Kind::Color: set(GcCmEntityColor::fromIndex(integer(1, 255))); break;
    case Kind::Bytes: {
      GcArray<uint8_t> bytes;
      for (int i = integer(0, 300); i > 0; --i) bytes.append(static_cast<uint8_t>(integer(0, 255)));
      set(bytes);
      break;
    }
    case Kind::Records:
      row.records->clear(member);
      for (int i = row.isPart ? integer(0, 1) : integer(0, 3); i > 0; --i) {
        void* element = row.records->append(member);
        for (int r = 0; r < row.rowCount; ++r) fillRow(row.rows[r], element);
      }
      break;
    default: break;
  }
}

void ObjectGenerator::fill(GcDbObject& object) {
  const GcDbClassInfo* info = gcdbInfoOf(object);
  for (int i = 0; info != nullptr && i < info->rowCount; ++i) fillRow(*info->rows[i], &object);
  object.subLoaded();
}
