#include "host/rx/text/utf.h"

#include <cstdint>
#include <cstring>

#include "host/rx/text/widen.h"

namespace gc {
namespace {

struct Decoded {
  char32_t value;
  int length;  // bytes used; 0: not well-formed
};

bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// One non-ASCII sequence at `at`, `left` bytes before the end of the text.
Decoded decodeSequence(const unsigned char* at, std::size_t left) {
  const unsigned char lead = at[0];
  if (lead < 0xC2 || lead > 0xF4) return {0, 0};
  const int length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (left < static_cast<std::size_t>(length)) return {0, 0};
  char32_t value = lead & (0x7F >> length);
  for (int i = 1; i < length; ++i) {
    if (!isContinuation(at[i])) return {0, 0};
    value = (value << 6) | (at[i] & 0x3F);
  }
  const bool overLong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
  const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
  if (overLong || surrogate || value > 0x10FFFF) return {0, 0};
  return {value, length};
}

void appendUnit(GcText& out, char32_t value) {
  if (value < 0x10000) {
    out.push_back(static_cast<GCHAR>(value));
  } else {
    out.push_back(static_cast<GCHAR>(0xD800 + ((value - 0x10000) >> 10)));
    out.push_back(static_cast<GCHAR>(0xDC00 + ((value - 0x10000) & 0x3FF)));
  }
}

void appendSequence(std::string& out, char32_t value) {
  char bytes[4];
  int count = 0;
  if (value < 0x800) {
    bytes[count++] = static_cast<char>(0xC0 | (value >> 6));
  } else {
    if (value < 0x10000) {
      bytes[count++] = static_cast<char>(0xE0 | (value >> 12));
    } else {
      bytes[count++] = static_cast<char>(0xF0 | (value >> 18));
      bytes[count++] = static_cast<char>(0x80 | ((value >> 12) & 0x3F));
    }
    bytes[count++] = static_cast<char>(0x80 | ((value >> 6) & 0x3F));
  }
  bytes[count++] = static_cast<char>(0x80 | (value & 0x3F));
  out.append(bytes, count);
}

}  // namespace

std::size_t asciiPrefix(std::string_view bytes) {
  const char* at = bytes.data();
  std::size_t done = 0;
  for (; done + 8 <= bytes.size(); done += 8) {
    std::uint64_t word;
    std::memcpy(&word, at + done, 8);
    if (word & 0x8080808080808080u) break;
  }
  while (done < bytes.size() && static_cast<unsigned char>(at[done]) < 0x80) ++done;
  return done;
}

std::size_t asciiPrefix(GcView text) {
  const GCHAR* at = text.data();
  std::size_t done = 0;
  for (; done + 4 <= text.size(); done += 4) {
    std::uint64_t word;
    std::memcpy(&word, at + done, 8);
    if (word & 0xFF80FF80FF80FF80u) break;
  }
  while (done < text.size() && at[done] < 0x80) ++done;
  return done;
}

bool appendFromUtf8(std::string_view bytes, GcText& out) {
  bool wellFormed = true;
  std::size_t at = 0;
  while (at < bytes.size()) {
    const std::size_t ascii = asciiPrefix(bytes.substr(at));
    appendWidened(bytes.substr(at, ascii), out);
    at += ascii;
    while (at < bytes.size() && static_cast<unsigned char>(bytes[at]) >= 0x80) {
      const auto* here = reinterpret_cast<const unsigned char*>(bytes.data()) + at;
      const Decoded sequence = decodeSequence(here, bytes.size() - at);
      if (sequence.length == 0) {
        wellFormed = false;
        out.push_back(strayByte(*here));
        ++at;
      } else {
        appendUnit(out, sequence.value);
        at += sequence.length;
      }
    }
  }
  return wellFormed;
}

bool appendToUtf8(GcView text, std::string& out) {
  bool paired = true;
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t ascii = asciiPrefix(text.substr(at));
    appendNarrowed(text.substr(at, ascii), out);
    at += ascii;
    for (; at < text.size() && text[at] >= 0x80; ++at) {
      const GCHAR unit = text[at];
      if (isHighSurrogate(unit) && at + 1 < text.size() && isLowSurrogate(text[at + 1])) {
        const char32_t high = unit - 0xD800u, low = text[++at] - 0xDC00u;
        appendSequence(out, 0x10000 + (high << 10) + low);
      } else if (isStrayByte(unit)) {
        paired = false;
        out.push_back(static_cast<char>(unit - 0xDC00));
      } else if (isHighSurrogate(unit) || isLowSurrogate(unit)) {
        paired = false;
        appendSequence(out, 0xFFFD);
      } else {
        appendSequence(out, unit);
      }
    }
  }
  return paired;
}

GcText fromUtf8(std::string_view bytes) {
  GcText out;
  appendFromUtf8(bytes, out);
  return out;
}

std::string toUtf8(GcView text) {
  std::string out;
  appendToUtf8(text, out);
  return out;
}

bool isUtf8(std::string_view bytes) {
  for (std::size_t at = asciiPrefix(bytes); at < bytes.size();) {
    const auto* here = reinterpret_cast<const unsigned char*>(bytes.data()) + at;
    const Decoded sequence = decodeSequence(here, bytes.size() - at);
    if (sequence.length == 0) return false;
    at += sequence.length;
    at += asciiPrefix(bytes.substr(at));
  }
  return true;
}

}  // namespace gc
