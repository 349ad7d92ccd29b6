// Colours as drawings keep them: by layer, by block, an index of the standard palette, or true colour.
#pragma once

#include <cstdint>

// Four bytes: the method in the top byte, red, green, blue (or the index in the low 16 bits) below.
class GcCmEntityColor {
 public:
  enum ColorMethod : uint8_t { kByLayer = 0xC0, kByBlock = 0xC1, kByColor = 0xC2, kByACI = 0xC3, kNone = 0xC8 };

  constexpr GcCmEntityColor() = default;
  static constexpr GcCmEntityColor byLayer() { return GcCmEntityColor(); }
  static constexpr GcCmEntityColor fromIndex(int index) {
    GcCmEntityColor color;
    color.setColorIndex(index);
    return color;
  }
  static constexpr GcCmEntityColor fromRgb(uint8_t red, uint8_t green, uint8_t blue) {
    GcCmEntityColor color;
    color.m_bits = (uint32_t{kByColor} << 24) | (uint32_t{red} << 16) | (uint32_t{green} << 8) | blue;
    return color;
  }

  // 0 by block, 256 by layer, else a palette index as given (no range check).
  constexpr void setColorIndex(int index) {
    const uint32_t method = index == 256 ? kByLayer : index == 0 ? kByBlock : kByACI;
    m_bits = (method << 24) | (static_cast<uint32_t>(index) & 0xFFFFu);
  }
  [[nodiscard]] constexpr ColorMethod colorMethod() const { return static_cast<ColorMethod>(m_bits >> 24); }
  // The palette index; a true colour gives the nearest one of the standard palette.
  [[nodiscard]] int colorIndex() const;
  [[nodiscard]] constexpr bool isByLayer() const { return colorMethod() == kByLayer; }
  [[nodiscard]] constexpr bool isByBlock() const { return colorMethod() == kByBlock; }
  [[nodiscard]] constexpr bool isByColor() const { return colorMethod() == kByColor; }
  [[nodiscard]] constexpr uint8_t red() const { return static_cast<uint8_t>(m_bits >> 16); }
  [[nodiscard]] constexpr uint8_t green() const { return static_cast<uint8_t>(m_bits >> 8); }
  [[nodiscard]] constexpr uint8_t blue() const { return static_cast<uint8_t>(m_bits); }
  [[nodiscard]] constexpr uint32_t bits() const { return m_bits; }
  static constexpr GcCmEntityColor fromBits(uint32_t bits) {
    GcCmEntityColor color;
    color.m_bits = bits;
    return color;
  }
  friend constexpr bool operator==(const GcCmEntityColor&, const GcCmEntityColor&) = default;

  // 0xRRGGBB of a palette index 1..255; other indexes give white.
  static uint32_t lookUpRGB(int index);
  // The palette index whose colour lies nearest (squared distance in RGB, lower index wins).
  static int lookUpACI(uint8_t red, uint8_t green, uint8_t blue);

 private:
  uint32_t m_bits = (uint32_t{kByLayer} << 24) | 256u;
};

// The colour type of the interface's setters.
using GcCmColor = GcCmEntityColor;
