#include "cm/color.h"

#include <cmath>

namespace {

// The standard palette by its construction: 1-9 fixed, 10-249 twenty-four hues (15 degrees apart) of five
// values, each full and half saturated, 250-255 greys.
constexpr uint32_t kFirst[10] = {0xFFFFFF, 0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF,
                                 0x0000FF, 0xFF00FF, 0xFFFFFF, 0x808080, 0xC0C0C0};
constexpr uint32_t kGreys[6] = {0x333333, 0x505050, 0x696969, 0x828282, 0xBEBEBE, 0xFFFFFF};
constexpr int kValues[5] = {255, 165, 127, 76, 38};

// One channel of a hue at full saturation: 1 within 60 degrees of its peak, falling to 0 at 120.
double channel(double hueDeg, double peakDeg) {
  double away = std::fabs(std::fmod(hueDeg - peakDeg + 540.0, 360.0) - 180.0);
  away = away < 60 ? 60 : away > 120 ? 120 : away;
  return (120 - away) / 60;
}

uint32_t hueColor(int index) {
  const int hue = (index - 10) / 10;
  const int shade = (index % 10) / 2;
  const bool half = index % 2 == 1;
  const double value = kValues[shade];
  const auto mix = [&](double peak) {
    const double full = channel(hue * 15.0, peak);
    const double level = half ? (1 + full) / 2 : full;
    return static_cast<uint32_t>(value * level);
  };
  return (mix(0) << 16) | (mix(120) << 8) | mix(240);
}

}  // namespace

uint32_t GcCmEntityColor::lookUpRGB(int index) {
  if (index >= 1 && index <= 9) return kFirst[index];
  if (index >= 10 && index <= 249) return hueColor(index);
  if (index >= 250 && index <= 255) return kGreys[index - 250];
  return 0xFFFFFF;
}

int GcCmEntityColor::lookUpACI(uint8_t red, uint8_t green, uint8_t blue) {
  int best = 7;
  int64_t bestDistance = INT64_MAX;
  for (int index = 1; index <= 255; ++index) {
    const uint32_t rgb = lookUpRGB(index);
    const int64_t dr = static_cast<int64_t>((rgb >> 16) & 255) - red;
    const int64_t dg = static_cast<int64_t>((rgb >> 8) & 255) - green;
    const int64_t db = static_cast<int64_t>(rgb & 255) - blue;
    const int64_t distance = dr * dr + dg * dg + db * db;
    if (distance < bestDistance) {
      best = index;
      bestDistance = distance;
    }
  }
  return best;
}

int GcCmEntityColor::colorIndex() const {
  if (isByLayer()) return 256;
  if (isByBlock()) return 0;
  if (isByColor()) return lookUpACI(red(), green(), blue());
  return static_cast<int16_t>(m_bits & 0xFFFFu);
}
