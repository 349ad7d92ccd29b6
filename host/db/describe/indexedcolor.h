// A colour of an object as group files have it: a palette index and, for a true colour, its 0xRRGGBB beside it. Both
// are kept, since programs differ in which index they think nearest.
#pragma once

#include "cm/color.h"

struct GcDbIndexedColor {
  static constexpr int32_t kNoRgb = -1;
  static constexpr int16_t kNoneIndex = 257;  // the colour of what has none

  int16_t index = 256;
  int32_t rgb = kNoRgb;

  GcDbIndexedColor() = default;
  explicit GcDbIndexedColor(int colorIndex) : index(static_cast<int16_t>(colorIndex)) {}
  explicit GcDbIndexedColor(GcCmEntityColor color) {
    if (color.isByColor()) rgb = static_cast<int32_t>(color.bits() & 0xFFFFFFu);
    index = color.colorMethod() == GcCmEntityColor::kNone ? kNoneIndex : static_cast<int16_t>(color.colorIndex());
  }
  [[nodiscard]] GcCmEntityColor color() const {
    if (rgb != kNoRgb)
      return GcCmEntityColor::fromRgb(static_cast<uint8_t>(rgb >> 16), static_cast<uint8_t>(rgb >> 8),
                                      static_cast<uint8_t>(rgb));
    if (index == kNoneIndex) return GcCmEntityColor::fromBits(uint32_t{GcCmEntityColor::kNone} << 24);
    return GcCmEntityColor::fromIndex(index);
  }
};
