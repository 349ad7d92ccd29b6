// The two rows of a colour of an object: its index, and 0xRRGGBB where it has one.
#pragma once

#include "host/db/describe/field.h"
#include "host/db/describe/indexedcolor.h"

template <auto Member>
constexpr GcDbField colorIndexRow(int code, const char* name) {
  GcDbField row = field<&GcDbIndexedColor::index>(code, name, Is::Plain);
  row.at = [](void* record) -> void* {
    using Class = typename gcdescribe::MemberOf<decltype(Member)>::Class;
    return &(static_cast<Class*>(record)->*Member).index;
  };
  return row;
}

template <auto Member>
constexpr GcDbField colorRgbRow(int code, const char* name) {
  GcDbField row =
      field<&GcDbIndexedColor::rgb>(code, name, Is::Plain, Write::UnlessDefault).orElse(GcDbIndexedColor::kNoRgb);
  row.at = [](void* record) -> void* {
    using Class = typename gcdescribe::MemberOf<decltype(Member)>::Class;
    return &(static_cast<Class*>(record)->*Member).rgb;
  };
  return row;
}
