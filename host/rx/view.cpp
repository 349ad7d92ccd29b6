#include "host/rx/view.h"

namespace {

constexpr bool inRange(unsigned u, unsigned first, unsigned last) { return u >= first && u <= last; }

// Latin Extended-A pairs run even/odd in two stretches and odd/even between them.
unsigned upperExtendedA(unsigned u) {
  if (u == 0x131) return 'I';
  if (u == 0x17F) return 'S';
  if (inRange(u, 0x139, 0x148)) return u % 2 == 0 ? u - 1 : u;
  if (inRange(u, 0x179, 0x17E)) return u % 2 == 0 ? u - 1 : u;
  if (u == 0x138 || u == 0x149 || u == 0x130 || u == 0x178) return u;
  return u % 2 == 1 ? u - 1 : u;
}

unsigned lowerExtendedA(unsigned u) {
  if (u == 0x130) return 'i';
  if (u == 0x178) return 0xFF;
  if (inRange(u, 0x139, 0x148)) return u % 2 == 1 ? u + 1 : u;
  if (inRange(u, 0x179, 0x17E)) return u % 2 == 1 ? u + 1 : u;
  if (u == 0x138 || u == 0x149 || u == 0x131 || u == 0x17F) return u;
  return u % 2 == 0 ? u + 1 : u;
}

unsigned upperWide(unsigned u) {
  if (u == 0xB5) return 0x39C;
  if (u == 0xFF) return 0x178;
  if (inRange(u, 0xE0, 0xFE) && u != 0xF7) return u - 0x20;
  if (inRange(u, 0x100, 0x17F)) return upperExtendedA(u);
  if (u == 0x3AC) return 0x386;
  if (inRange(u, 0x3AD, 0x3AF)) return u - 37;
  if (u == 0x3C2) return 0x3A3;
  if (inRange(u, 0x3B1, 0x3CB)) return u - 0x20;
  if (u == 0x3CC) return 0x38C;
  if (inRange(u, 0x3CD, 0x3CE)) return u - 63;
  if (inRange(u, 0x430, 0x44F)) return u - 0x20;
  if (inRange(u, 0x450, 0x45F)) return u - 0x50;
  if (inRange(u, 0x460, 0x481) || inRange(u, 0x48A, 0x4BF) || inRange(u, 0x4D0, 0x52F)) return u % 2 == 1 ? u - 1 : u;
  return u;
}

unsigned lowerWide(unsigned u) {
  if (inRange(u, 0xC0, 0xDE) && u != 0xD7) return u + 0x20;
  if (inRange(u, 0x100, 0x17F)) return lowerExtendedA(u);
  if (u == 0x386) return 0x3AC;
  if (inRange(u, 0x388, 0x38A)) return u + 37;
  if (u == 0x38C) return 0x3CC;
  if (inRange(u, 0x38E, 0x38F)) return u + 63;
  if (inRange(u, 0x391, 0x3AB) && u != 0x3A2) return u + 0x20;
  if (inRange(u, 0x410, 0x42F)) return u + 0x20;
  if (inRange(u, 0x400, 0x40F)) return u + 0x50;
  if (inRange(u, 0x460, 0x481) || inRange(u, 0x48A, 0x4BF) || inRange(u, 0x4D0, 0x52F)) return u % 2 == 0 ? u + 1 : u;
  return u;
}

void appendUtf8(std::string& out, uint32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

// One code point from UTF-8 at `at`, which moves on; U+FFFD for a broken sequence.
uint32_t nextCodePoint(std::string_view text, size_t& at) {
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(at++);
  if (lead < 0x80) return lead;
  const int more = lead >= 0xF0 && lead < 0xF5   ? 3
                   : lead >= 0xE0 && lead < 0xF0 ? 2
                   : lead >= 0xC2 && lead < 0xE0 ? 1
                                                 : 0;
  if (more == 0) return 0xFFFD;
  uint32_t c = lead & (0x3Fu >> more);
  for (int i = 0; i < more; ++i) {
    if (at >= text.size() || (byte(at) & 0xC0) != 0x80) return 0xFFFD;
    c = (c << 6) | (byte(at++) & 0x3Fu);
  }
  const uint32_t least = more == 1 ? 0x80 : more == 2 ? 0x800 : 0x10000;
  if (c < least || c > 0x10FFFF || inRange(c, 0xD800, 0xDFFF)) return 0xFFFD;
  return c;
}

}  // namespace

GCHAR gcUpper(GCHAR unit) {
  const unsigned u = unit;
  if (u < 0x80) return static_cast<GCHAR>(u >= 'a' && u <= 'z' ? u - 32 : u);
  return static_cast<GCHAR>(upperWide(u));
}

GCHAR gcLower(GCHAR unit) {
  const unsigned u = unit;
  if (u < 0x80) return static_cast<GCHAR>(u >= 'A' && u <= 'Z' ? u + 32 : u);
  return static_cast<GCHAR>(lowerWide(u));
}

bool equalNoCase(GcView a, GcView b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (a[i] != b[i] && gcUpper(a[i]) != gcUpper(b[i])) return false;
  return true;
}

GcText upperText(GcView text) {
  GcText out(text);
  for (GCHAR& unit : out) unit = gcUpper(unit);
  return out;
}

uint64_t hashNoCase(GcView text) {
  uint64_t hash = 0xCBF29CE484222325u;  // FNV-1a over the upper-cased units, then a final mix
  for (const GCHAR unit : text) hash = (hash ^ gcUpper(unit)) * 0x100000001B3u;
  hash ^= hash >> 32;
  return hash;
}

std::string toUtf8(GcView text) {
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    uint32_t c = text[i];
    if (inRange(c, 0xD800, 0xDBFF) && i + 1 < text.size() && inRange(text[i + 1], 0xDC00, 0xDFFF)) {
      c = 0x10000 + ((c - 0xD800) << 10) + (static_cast<uint32_t>(text[++i]) - 0xDC00);
    } else if (inRange(c, 0xD800, 0xDFFF)) {
      c = 0xFFFD;
    }
    appendUtf8(out, c);
  }
  return out;
}

GcText fromUtf8(std::string_view text) {
  GcText out;
  out.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    const uint32_t c = nextCodePoint(text, at);
    if (c < 0x10000) {
      out += static_cast<GCHAR>(c);
    } else {
      out += static_cast<GCHAR>(0xD800 + ((c - 0x10000) >> 10));
      out += static_cast<GCHAR>(0xDC00 + ((c - 0x10000) & 0x3FF));
    }
  }
  return out;
}
