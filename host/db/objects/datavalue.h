// A value of a field or of a table's cell: what kind it is, the value, and the text it shows.
//
// Groups (since R2007 with flags, unit, format and text, closed by a word):
//   93 flags, 90 kind, then by kind 91, 140, 1 (2 for pieces), 92 and 310, 92 and 11, 330, 94 unit, 300 format, 302 text,
//   304 "ACVALUE_END"
#pragma once

#include "db/objectid.h"
#include "host/db/describe/field.h"

struct GcDbDataValue {
  enum Kind : int32_t {
    kUnknown = 0,
    kLong = 1,
    kDouble = 2,
    kString = 4,
    kDate = 8,
    kPoint2d = 16,
    kPoint3d = 32,
    kObjectId = 64,
    kBuffer = 128,
    kResBuf = 256,
    kGeneral = 512
  };
  static constexpr int32_t kIsEmpty = 1;                  // a flag: there is no value
  static constexpr int32_t kNothing = 3;                  // flags of what never had a value
  static constexpr int32_t kHasIdleInteger = 0x40000000;  // in memory only: groups have a number though it is empty
  static constexpr int32_t kNoText = 12;  // the unit of values that have no text of their own in records

  int32_t flags = kNothing;
  int32_t kind = kUnknown;
  int32_t integer = 0;
  double real = 0;
  GcString string;
  GcArray<uint8_t> bytes;  // of dates and buffers
  GcGePoint3d point;
  GcDbObjectId id;
  int32_t unit = 0;
  GcString format;
  GcString text;

  [[nodiscard]] bool isEmpty() const { return (flags & kIsEmpty) != 0; }
  [[nodiscard]] bool hasIdleInteger() const { return (flags & kHasIdleInteger) != 0; }
  [[nodiscard]] int32_t filedFlags() const { return flags & ~kHasIdleInteger; }
  [[nodiscard]] bool isInteger() const { return kind == kUnknown || kind == kLong; }
  [[nodiscard]] bool isBytes() const { return kind == kDate || kind == kBuffer || kind == kGeneral; }
  [[nodiscard]] bool isPoint() const { return kind == kPoint2d || kind == kPoint3d; }

  // A number of before R2007: one that is not zero is a value even where its kind is not known.
  void takeOldInteger(int32_t value) {
    integer = value;
    if (value != 0) flags = 0;
  }
  void setReal(double value);
  void setInteger(int32_t value);
  void setString(const GcString& value);
  void setPoint(const GcGePoint3d& value);
};

// Rows of a value that lives in a larger record; `Of` finds it there.
namespace gcvaluerows {

using Finder = GcDbDataValue& (*)(void*);

template <Finder Of>
const GcDbDataValue& valueOf(const void* record) {
  return Of(const_cast<void*>(record));
}

template <Finder Of, auto Member>
constexpr GcDbField row(int code, const char* name, Is is = Is::Plain, Write write = Write::Always) {
  GcDbField made = field<Member>(code, name, is, write);
  made.at = [](void* record) -> void* { return &(Of(record).*Member); };
  return made;
}

template <Finder Of>
constexpr GcDbField flags() {
  return row<Of, &GcDbDataValue::flags>(93, "valueFlags")
      .from(GcDb::kDHL_AC1021)
      .orElse(GcDbDataValue::kNothing)
      .filedAs([](const void* record) { return GcDbGroup::ofInt(93, valueOf<Of>(record).filedFlags()); },
               [](void* record, const GcDbGroup& group) {
                 Of(record).flags = static_cast<int32_t>(group.asInt()) & ~GcDbDataValue::kHasIdleInteger;
                 return true;
               });
}

// Before R2007 a value is always there, and what kind it is says whether it is empty.
template <Finder Of>
constexpr GcDbField oldKind() {
  return row<Of, &GcDbDataValue::kind>(90, "oldKind")
      .until(GcDb::kDHL_AC1021)
      .filedAs(
          [](const void* record) {
            const GcDbDataValue& value = valueOf<Of>(record);
            return GcDbGroup::ofInt(90, value.isEmpty() ? 0 : value.kind & ~GcDbDataValue::kGeneral);
          },
          [](void* record, const GcDbGroup& group) {
            GcDbDataValue& value = Of(record);
            value.kind = static_cast<int32_t>(group.asInt());
            value.flags = value.kind == GcDbDataValue::kUnknown ? GcDbDataValue::kNothing : 0;
            return true;
          })
      .echo();
}

// The size of what follows, which says the same.
template <Finder Of>
constexpr GcDbField size() {
  GcDbField made =
      row<Of, &GcDbDataValue::kind>(92, "size")
          .filedAs(
              [](const void* record) {
                const GcDbDataValue& value = valueOf<Of>(record);
                constexpr int kReal = 8;
                if (value.isPoint())
                  return GcDbGroup::ofInt(92, value.kind == GcDbDataValue::kPoint3d ? 3 * kReal : 2 * kReal);
                return GcDbGroup::ofInt(92, value.bytes.length());
              },
              [](void*, const GcDbGroup&) { return true; });
  made.isEcho = true;
  return made.when([](const void* record) {
    const GcDbDataValue& value = valueOf<Of>(record);
    return !value.isEmpty() && (value.isBytes() || value.isPoint());
  });
}

template <Finder Of>
constexpr GcDbField integer() {
  return row<Of, &GcDbDataValue::integer>(91, "integer")
      .from(GcDb::kDHL_AC1021)
      .filedAs([](const void* record) { return GcDbGroup::ofInt(91, valueOf<Of>(record).integer); },
               [](void* record, const GcDbGroup& group) {
                 GcDbDataValue& value = Of(record);
                 value.integer = static_cast<int32_t>(group.asInt());
                 if (value.isEmpty()) value.flags |= GcDbDataValue::kHasIdleInteger;
                 return true;
               })
      .when([](const void* record) {
        const GcDbDataValue& value = valueOf<Of>(record);
        return value.isInteger() && (!value.isEmpty() || value.hasIdleInteger());
      })
      .readAnyway();
}

template <Finder Of>
constexpr GcDbField oldInteger() {
  return row<Of, &GcDbDataValue::integer>(91, "oldInteger")
      .until(GcDb::kDHL_AC1021)
      .filedAs(
          [](const void* record) {
            const GcDbDataValue& value = valueOf<Of>(record);
            return GcDbGroup::ofInt(91, value.isEmpty() ? 0 : value.integer);
          },
          [](void* record, const GcDbGroup& group) {
            Of(record).takeOldInteger(static_cast<int32_t>(group.asInt()));
            return true;
          })
      .when([](const void* record) { return valueOf<Of>(record).isInteger() || valueOf<Of>(record).isEmpty(); })
      .echo();
}

template <Finder Of>
constexpr GcDbField point2d() {
  return row<Of, &GcDbDataValue::point>(11, "point2d")
      .filedAs(
          [](const void* record) {
            const GcGePoint3d& at = valueOf<Of>(record).point;
            return GcDbGroup::ofPoint2d(11, {at.x, at.y});
          },
          [](void* record, const GcDbGroup& group) {
            Of(record).point = group.point;
            return true;
          })
      .when([](const void* record) {
        return valueOf<Of>(record).kind == GcDbDataValue::kPoint2d && !valueOf<Of>(record).isEmpty();
      })
      .echo();
}

template <Finder Of>
constexpr GcDbField end() {
  GcDbField made = row<Of, &GcDbDataValue::kind>(304, "end").from(GcDb::kDHL_AC1021);
  made.isEcho = true;
  made.get = [](const void*) { return GcDbGroup::ofText(304, GC_T("ACVALUE_END")); };
  made.set = [](void*, const GcDbGroup&) { return true; };
  return made;
}

template <Finder Of, GcDbDataValue::Kind A>
constexpr GcDbField whenKind(const GcDbField& row) {
  return row.when([](const void* record) { return valueOf<Of>(record).kind == A && !valueOf<Of>(record).isEmpty(); });
}

template <Finder Of>
constexpr GcDbField whenBytes(const GcDbField& row) {
  return row.when([](const void* record) { return valueOf<Of>(record).isBytes() && !valueOf<Of>(record).isEmpty(); });
}

}  // namespace gcvaluerows

#define GCDB_VALUE_ROWS(Of)                                                                                           \
  gcvaluerows::flags<Of>(), gcvaluerows::row<Of, &GcDbDataValue::kind>(90, "kind").from(GcDb::kDHL_AC1021),           \
      gcvaluerows::oldKind<Of>(), gcvaluerows::integer<Of>(), gcvaluerows::oldInteger<Of>(),                          \
      gcvaluerows::whenKind<Of, GcDbDataValue::kDouble>(gcvaluerows::row<Of, &GcDbDataValue::real>(140, "real")),     \
      gcvaluerows::whenKind<Of, GcDbDataValue::kString>(                                                              \
          gcvaluerows::row<Of, &GcDbDataValue::string>(1, "string").inPieces(2)),                                     \
      gcvaluerows::size<Of>(), gcvaluerows::whenBytes<Of>(gcvaluerows::row<Of, &GcDbDataValue::bytes>(310, "bytes")), \
      gcvaluerows::point2d<Of>(),                                                                                     \
      gcvaluerows::whenKind<Of, GcDbDataValue::kPoint3d>(gcvaluerows::row<Of, &GcDbDataValue::point>(11, "point")),   \
      gcvaluerows::whenKind<Of, GcDbDataValue::kObjectId>(                                                            \
          gcvaluerows::row<Of, &GcDbDataValue::id>(330, "id", Is::SoftPointer)),                                      \
      gcvaluerows::row<Of, &GcDbDataValue::unit>(94, "unit").from(GcDb::kDHL_AC1021),                                 \
      gcvaluerows::row<Of, &GcDbDataValue::format>(300, "valueFormat").from(GcDb::kDHL_AC1021),                       \
      gcvaluerows::row<Of, &GcDbDataValue::text>(302, "valueText").from(GcDb::kDHL_AC1021), gcvaluerows::end<Of>()
