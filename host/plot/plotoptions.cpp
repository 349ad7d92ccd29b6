// What people write for page sizes and backgrounds.
#include <cctype>
#include <charconv>
#include <cmath>
#include <utility>

#include "host/plot/plot.h"

namespace gc::plot {

namespace {

constexpr double kLongestSide = 100000;  // mm

bool readNumber(std::string_view& text, double& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  if (error != std::errc()) return false;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return value > 0 && value <= kLongestSide;
}

std::string lower(std::string_view text) {
  std::string made(text);
  for (char& c : made) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return made;
}

}  // namespace

bool parseSize(std::string_view text, double& widthMm, double& heightMm) {
  const std::string size = lower(text);
  if (size.size() >= 2 && size[0] == 'a' && size[1] >= '0' && size[1] <= '6') {
    // The sides of A0 are 841 and 1189; each next size is the half, rounded down.
    int shorter = 841, longer = 1189;
    for (char n = '0'; n < size[1]; ++n) longer = std::exchange(shorter, longer / 2);
    const std::string turn = size.substr(2);
    if (!turn.empty() && turn != "-landscape" && turn != "-portrait") return false;
    widthMm = turn == "-portrait" ? shorter : longer;
    heightMm = turn == "-portrait" ? longer : shorter;
    return true;
  }
  std::string_view rest = size;
  double width = 0, height = 0;
  if (!readNumber(rest, width) || rest.empty() || rest.front() != 'x') return false;
  rest.remove_prefix(1);
  if (!readNumber(rest, height) || !rest.empty()) return false;
  widthMm = width;
  heightMm = height;
  return true;
}

bool parseBackground(std::string_view text, uint32_t& rgb) {
  const std::string name = lower(text);
  if (name == "white" || name == "black") {
    rgb = name == "white" ? 0xFFFFFF : 0;
    return true;
  }
  if (name.size() != 7 || name[0] != '#') return false;
  uint32_t value = 0;
  const auto [end, error] = std::from_chars(name.data() + 1, name.data() + 7, value, 16);
  if (error != std::errc() || end != name.data() + 7) return false;
  rgb = value;
  return true;
}

}  // namespace gc::plot
