#include "host/dwg/record/fieldvalue.h"

namespace gc::dwg {

namespace {

template <class T>
T& as(void* member) {
  return *static_cast<T*>(member);
}
template <class T>
const T& as(const void* member) {
  return *static_cast<const T*>(member);
}

}  // namespace

int64_t intOf(const GcDbField& row, const void* record) {
  if (row.get != nullptr) return row.get(record).asInt();
  const void* member = row.value(record);
  switch (row.kind) {
    case Kind::Bool: return as<bool>(member) ? 1 : 0;
    case Kind::Int8: return as<int8_t>(member);
    case Kind::UInt8: return as<uint8_t>(member);
    case Kind::Int16: return as<int16_t>(member);
    case Kind::UInt16: return as<uint16_t>(member);
    case Kind::Int32: return as<int32_t>(member);
    case Kind::UInt32: return as<uint32_t>(member);
    case Kind::Int64: return as<int64_t>(member);
    case Kind::Real: return static_cast<int64_t>(as<double>(member));
    case Kind::Color: return as<GcCmEntityColor>(member).colorIndex();
    default: return 0;
  }
}

void setInt(const GcDbField& row, void* record, int64_t value) {
  if (row.set != nullptr) {
    row.set(record, GcDbGroup::ofInt(row.code, value));
    return;
  }
  void* member = row.at(record);
  switch (row.kind) {
    case Kind::Bool: as<bool>(member) = value != 0; break;
    case Kind::Int8: as<int8_t>(member) = static_cast<int8_t>(value); break;
    case Kind::UInt8: as<uint8_t>(member) = static_cast<uint8_t>(value); break;
    case Kind::Int16: as<int16_t>(member) = static_cast<int16_t>(value); break;
    case Kind::UInt16: as<uint16_t>(member) = static_cast<uint16_t>(value); break;
    case Kind::Int32: as<int32_t>(member) = static_cast<int32_t>(value); break;
    case Kind::UInt32: as<uint32_t>(member) = static_cast<uint32_t>(value); break;
    case Kind::Int64: as<int64_t>(member) = value; break;
    case Kind::Real: as<double>(member) = static_cast<double>(value); break;
    case Kind::Color: as<GcCmEntityColor>(member).setColorIndex(static_cast<int>(value)); break;
    default: break;
  }
}

double realOf(const GcDbField& row, const void* record) {
  if (row.get != nullptr) return row.get(record).asReal();
  return row.kind == Kind::Real ? as<double>(row.value(record)) : static_cast<double>(intOf(row, record));
}

void setReal(const GcDbField& row, void* record, double value) {
  if (row.set != nullptr)
    row.set(record, GcDbGroup::ofReal(row.code, value));
  else if (row.kind == Kind::Real)
    as<double>(row.at(record)) = value;
  else
    setInt(row, record, value >= -9e15 && value <= 9e15 ? static_cast<int64_t>(value) : 0);
}

GcGePoint3d pointOf(const GcDbField& row, const void* record) {
  if (row.get != nullptr) return row.get(record).point;
  const void* member = row.value(record);
  switch (row.kind) {
    case Kind::Point2d:
    case Kind::Vector2d: return {as<GcGePoint2d>(member).x, as<GcGePoint2d>(member).y, 0};
    case Kind::Point3d:
    case Kind::Vector3d: return as<GcGePoint3d>(member);
    default: return {};
  }
}

void setPoint(const GcDbField& row, void* record, const GcGePoint3d& value) {
  if (row.set != nullptr) {
    row.set(record, GcDbGroup::ofPoint(row.code, value));
    return;
  }
  void* member = row.at(record);
  if (row.kind == Kind::Point2d || row.kind == Kind::Vector2d)
    as<GcGePoint2d>(member) = {value.x, value.y};
  else if (row.kind == Kind::Point3d || row.kind == Kind::Vector3d)
    as<GcGePoint3d>(member) = value;
}

GcView textOf(const GcDbField& row, const void* record) {
  return row.kind == Kind::String ? view(as<GcString>(row.value(record))) : GcView();
}

void setText(const GcDbField& row, void* record, GcView value) {
  if (row.set != nullptr)
    row.set(record, GcDbGroup::ofText(row.code, value));
  else if (row.kind == Kind::String)
    as<GcString>(row.at(record)).assign(value.data(), value.size());
}

GcDbObjectId idOf(const GcDbField& row, const void* record) {
  return row.kind == Kind::Id ? as<GcDbObjectId>(row.value(record)) : GcDbObjectId();
}

void setId(const GcDbField& row, void* record, GcDbObjectId value) {
  if (row.kind == Kind::Id) as<GcDbObjectId>(row.at(record)) = value;
}

GcCmEntityColor colorOf(const GcDbField& row, const void* record) {
  if (row.kind == Kind::Color) return as<GcCmEntityColor>(row.value(record));
  return GcCmEntityColor::fromIndex(static_cast<int>(intOf(row, record)));
}

void setColor(const GcDbField& row, void* record, GcCmEntityColor value) {
  if (row.kind == Kind::Color)
    as<GcCmEntityColor>(row.at(record)) = value;
  else
    setInt(row, record, value.colorIndex());
}

unsigned handleCodeOf(Is meaning) {
  switch (meaning) {
    case Is::SoftOwner: return 2;
    case Is::HardOwner: return 3;
    case Is::SoftPointer: return 4;
    default: return 5;
  }
}

}  // namespace gc::dwg
