#include "host/gi/strokefont.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace {

constexpr double kCapHeight = 18;  // of the description's grid
constexpr double kGridGap = GcGiStrokeFont::kGap * kCapHeight;

// The strokes of one line of the description, on its grid.
struct Shape {
  double width = 0;
  std::vector<GcGiStroke> strokes;
};
using Shapes = std::unordered_map<std::string, Shape>;

std::string_view nextWord(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const std::string_view word = text.substr(0, text.find(' '));
  text.remove_prefix(word.size());
  return word;
}

std::optional<double> number(std::string_view word) {
  double value = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
  if (error != std::errc() || end != word.data() + word.size()) return std::nullopt;
  return value;
}

// The character a name stands for: "U+00A0" or itself; 0 for a word that only other lines use.
char32_t characterOf(std::string_view name) {
  if (name.size() > 2 && name.substr(0, 2) == "U+") {
    uint32_t code = 0;
    std::from_chars(name.data() + 2, name.data() + name.size(), code, 16);
    return code;
  }
  const auto byte = [&](std::size_t i) { return static_cast<uint32_t>(static_cast<unsigned char>(name[i])); };
  if (name.size() == 1) return byte(0);
  if (name.size() == 2 && byte(0) >= 0xC0) return (byte(0) & 0x1F) << 6 | (byte(1) & 0x3F);
  if (name.size() == 3 && byte(0) >= 0xE0) {
    return (byte(0) & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
  }
  return 0;
}

// "x,y x,y ~x,y x,y ; x,y ..."
bool parseStrokes(std::string_view text, Shape& shape) {
  bool penUp = true;
  for (std::string_view word = nextWord(text); !word.empty(); word = nextWord(text)) {
    if (word == ";") {
      penUp = true;
      continue;
    }
    const bool control = word.front() == '~';
    if (control) word.remove_prefix(1);
    const std::size_t comma = word.find(',');
    if (comma == std::string_view::npos || (control && penUp)) return false;
    const auto x = number(word.substr(0, comma));
    const auto y = number(word.substr(comma + 1));
    if (!x || !y) return false;
    const GcGiStroke::Kind kind = penUp ? GcGiStroke::kMove : control ? GcGiStroke::kControl : GcGiStroke::kLine;
    shape.strokes.push_back({static_cast<float>(*x), static_cast<float>(*y), kind});
    penUp = false;
  }
  return shape.strokes.empty() || shape.strokes.back().kind != GcGiStroke::kControl;
}

// "NAME dx dy [scale] + NAME dx dy ..."
bool parseParts(std::string_view text, const Shapes& shapes, Shape& shape) {
  for (std::string_view name = nextWord(text); !name.empty(); name = nextWord(text)) {
    const auto part = shapes.find(std::string(name));
    const auto dx = number(nextWord(text));
    const auto dy = number(nextWord(text));
    if (part == shapes.end() || !dx || !dy) return false;
    double scale = 1;
    std::string_view word = nextWord(text);
    if (!word.empty() && word != "+") {
      const auto factor = number(word);
      if (!factor) return false;
      scale = *factor;
      word = nextWord(text);
    }
    if (!word.empty() && word != "+") return false;
    for (GcGiStroke stroke : part->second.strokes) {
      stroke.x = static_cast<float>(stroke.x * scale + *dx);
      stroke.y = static_cast<float>(stroke.y * scale + *dy);
      shape.strokes.push_back(stroke);
    }
  }
  return true;
}

// One line of the description; false when it cannot be understood.
bool parseLine(std::string_view line, Shapes& shapes, std::string& name) {
  name = nextWord(line);
  const auto width = number(nextWord(line));
  const std::string_view kind = nextWord(line);
  if (!width) return false;
  Shape shape;
  shape.width = *width;
  const bool good = kind == ":" ? parseStrokes(line, shape) : kind == "=" && parseParts(line, shapes, shape);
  if (good) shapes[name] = std::move(shape);
  return good;
}

}  // namespace

GcGiStrokeFont::GcGiStrokeFont(const char* description) {
  Shapes shapes;
  std::vector<std::pair<std::string, std::size_t>> order;  // name, where its strokes begin
  std::string_view text(description);
  std::string name;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.empty() || line.front() == '#') continue;
    if (!parseLine(line, shapes, name)) {
      ++m_badLines;
      continue;
    }
    order.emplace_back(name, m_strokes.size());
    for (GcGiStroke stroke : shapes[name].strokes) {
      stroke.x = static_cast<float>(stroke.x / kCapHeight);
      stroke.y = static_cast<float>(stroke.y / kCapHeight);
      m_strokes.push_back(stroke);
    }
  }
  for (const auto& [glyphName, begin] : order) {
    const Shape& shape = shapes[glyphName];
    const GcGiGlyph glyph{(shape.width + kGridGap) / kCapHeight, m_strokes.data() + begin,
                          static_cast<int>(shape.strokes.size())};
    if (const char32_t character = characterOf(glyphName); character != 0) m_glyphs.push_back({character, glyph});
    if (glyphName == "missing") m_missing = glyph;
  }
  std::sort(m_glyphs.begin(), m_glyphs.end(), [](const Entry& a, const Entry& b) { return a.character < b.character; });
}

const GcGiStrokeFont& GcGiStrokeFont::plain() {
  static const GcGiStrokeFont font(kGcGiPlainStrokes);
  return font;
}

const GcGiStrokeFont::Entry* GcGiStrokeFont::find(char32_t character) const {
  const auto at = std::lower_bound(m_glyphs.begin(), m_glyphs.end(), character,
                                   [](const Entry& entry, char32_t wanted) { return entry.character < wanted; });
  return at != m_glyphs.end() && at->character == character ? &*at : nullptr;
}

const GcGiGlyph& GcGiStrokeFont::glyph(char32_t character) const {
  const Entry* entry = find(character);
  return entry != nullptr ? entry->glyph : m_missing;
}

bool GcGiStrokeFont::has(char32_t character) const { return find(character) != nullptr; }
