// A value of a field or a table's cell in a record (host/db/objects/datavalue.h).
#pragma once

#include "host/db/objects/datavalue.h"
#include "host/dwg/record/pass.h"

namespace gc::dwg {

namespace valuepass {

constexpr int kReal = 8;

template <class Pass>
void passBytes(Pass& pass, GcDbDataValue& value) {
  int32_t size = value.bytes.length();
  pass.bl(size);
  pass.bytes(value.bytes, static_cast<size_t>(pass.io().rec.count(size, 8)));
}

// Since R2007 the texts of values are no texts of records: their bytes, with a closing zero, stand among the numbers.
template <class Pass>
void passString(Pass& pass, GcDbDataValue& value) {
  if (pass.version() < kR2007) return pass.t(value.string);
  GcArray<uint8_t> bytes;
  if constexpr (Pass::kWriting) {
    for (const GCHAR unit : view(value.string)) {
      bytes.append(static_cast<uint8_t>(unit));
      bytes.append(static_cast<uint8_t>(unit >> 8));
    }
    bytes.append(0);
    bytes.append(0);
  }
  int32_t size = bytes.length();
  pass.bl(size);
  pass.must(size % 2 == 0);
  pass.bytes(bytes, static_cast<size_t>(pass.io().rec.count(size, 8)));
  if constexpr (!Pass::kWriting) {
    GcText text;
    for (int i = 0; i + 1 < bytes.length(); i += 2) text += static_cast<GCHAR>(bytes[i] | (bytes[i + 1] << 8));
    while (!text.empty() && text.back() == 0) text.pop_back();
    value.string = toGcString(text);
  }
}

template <class Pass>
void passPoint(Pass& pass, GcDbDataValue& value) {
  const bool isFlat = value.kind == GcDbDataValue::kPoint2d;
  int32_t size = (isFlat ? 2 : 3) * kReal;
  const int32_t expected = size;
  pass.bl(size);
  pass.must(size == expected);
  pass.rd(value.point.x);
  pass.rd(value.point.y);
  if (!isFlat) pass.rd(value.point.z);
}

template <class Pass>
void passData(Pass& pass, GcDbDataValue& value) {
  switch (value.kind) {
    case GcDbDataValue::kUnknown:
    case GcDbDataValue::kLong: pass.bl(value.integer); return;
    case GcDbDataValue::kDouble: pass.bd(value.real); return;
    case GcDbDataValue::kString: passString(pass, value); return;
    case GcDbDataValue::kDate: passBytes(pass, value); return;
    case GcDbDataValue::kPoint2d:
    case GcDbDataValue::kPoint3d: passPoint(pass, value); return;
    case GcDbDataValue::kObjectId: pass.h(4, value.id); return;
    case GcDbDataValue::kGeneral: passBytes(pass, value); return;
    default: pass.must(false);
  }
}

}  // namespace valuepass

template <class Pass>
void passValue(Pass& pass, GcDbDataValue& value) {
  const bool isOld = pass.version() < kR2007;
  if (isOld) {
    int32_t kind = value.isEmpty() ? GcDbDataValue::kUnknown : value.kind & ~GcDbDataValue::kGeneral;
    pass.bl(kind);
    if constexpr (!Pass::kWriting) {
      value.kind = kind;
      value.flags = kind == GcDbDataValue::kUnknown ? GcDbDataValue::kNothing : 0;
    }
    if (!value.isEmpty()) return valuepass::passData(pass, value);
    int32_t integer = 0;
    pass.bl(integer);
    if constexpr (!Pass::kWriting) value.takeOldInteger(integer);
    return;
  }
  int32_t flags = value.filedFlags();
  pass.bl(flags);
  if constexpr (!Pass::kWriting) value.flags = flags & ~GcDbDataValue::kHasIdleInteger;
  pass.bl(value.kind);
  if (!value.isEmpty()) valuepass::passData(pass, value);
  pass.bl(value.unit);
  pass.t(value.format);
  if (value.unit != GcDbDataValue::kNoText) pass.t(value.text);
}

// True when a record of the version says all of the value.
inline bool isWholeValue(const GcDbDataValue& value, int version) {
  if (value.unit == GcDbDataValue::kNoText && !value.text.isEmpty()) return false;
  if (value.isEmpty()) return true;
  switch (value.kind) {
    case GcDbDataValue::kUnknown:
    case GcDbDataValue::kLong:
    case GcDbDataValue::kDouble:
    case GcDbDataValue::kString:
    case GcDbDataValue::kDate:
    case GcDbDataValue::kPoint2d:
    case GcDbDataValue::kPoint3d:
    case GcDbDataValue::kObjectId: return true;
    case GcDbDataValue::kGeneral: return version >= kR2007 || value.bytes.isEmpty();
    default: return false;
  }
}

}  // namespace gc::dwg
