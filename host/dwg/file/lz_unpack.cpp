#include <cstring>

#include "host/dwg/file/lz.h"

namespace gc::dwg {

namespace {

constexpr unsigned kEndMark = 0x11;
constexpr size_t kFarOffset = 0x3FFF;

class Unpacker {
 public:
  Unpacker(std::span<const uint8_t> in, std::span<uint8_t> out) : m_in(in), m_out(out) {}

  size_t run() {
    unsigned code = next();
    if (code < 0x10 && !m_done) {  // the first run may be a literal one
      const size_t count = literalCount(code);
      copyLiterals(count);
      code = next();
    }
    while (!m_done && code != kEndMark && code >= 0x10) code = step(code);
    return m_made;
  }

 private:
  unsigned next() {
    if (m_at >= m_in.size()) {
      m_done = true;
      return kEndMark;
    }
    return m_in[m_at++];
  }

  // Zero bytes count 255 each.
  size_t longCount() {
    size_t total = 0;
    unsigned byte = next();
    while (byte == 0 && !m_done) {
      total += 0xFF;
      byte = next();
    }
    return total + byte;
  }

  // The count a code below 0x10 stands for.
  size_t literalCount(unsigned code) { return code == 0 ? longCount() + 0x0F + 3 : code + 3u; }

  // One copy and the literals behind it; gives the code that follows.
  unsigned step(unsigned code) {
    size_t length = 0;
    size_t offset = 0;
    unsigned literals = 0;
    if (code >= 0x40) {
      length = (code >> 4) - 1u;
      offset = static_cast<size_t>(next()) << 2 | (code & 0x0C) >> 2;
      literals = code & 3;
    } else {
      if (code >= 0x20) {
        length = code == 0x20 ? longCount() + 0x21 : code - 0x1Eu;
      } else {
        length = (code & 7) == 0 ? longCount() + 9 : (code & 7) + 2u;
        offset = kFarOffset + ((code & 8u) << 11);
      }
      const unsigned low = next();
      offset += low >> 2 | static_cast<size_t>(next()) << 6;
      literals = low & 3;
    }
    if (m_done) return kEndMark;
    copyBack(offset + 1, length);
    if (literals > 0) {
      copyLiterals(literals);
      return next();
    }
    const unsigned following = next();
    if (following >= 0x10 || m_done) return following;
    copyLiterals(literalCount(following));
    return next();
  }

  void copyLiterals(size_t count) {
    if (count > m_in.size() - m_at || count > m_out.size() - m_made) {
      const size_t here = m_in.size() - m_at < m_out.size() - m_made ? m_in.size() - m_at : m_out.size() - m_made;
      count = here < count ? here : count;
      m_done = true;
    }
    if (count > 0) std::memcpy(m_out.data() + m_made, m_in.data() + m_at, count);
    m_at += count;
    m_made += count;
  }

  // The copy may overlap what it makes: a run of one byte is a copy from one byte back.
  void copyBack(size_t offset, size_t length) {
    if (offset > m_made) {
      m_done = true;
      return;
    }
    if (length > m_out.size() - m_made) {
      length = m_out.size() - m_made;
      m_done = true;
    }
    uint8_t* to = m_out.data() + m_made;
    const uint8_t* from = to - offset;
    size_t i = 0;
    if (offset >= 8)
      for (; i + 8 <= length; i += 8) std::memcpy(to + i, from + i, 8);
    for (; i < length; ++i) to[i] = from[i];
    m_made += length;
  }

  std::span<const uint8_t> m_in;
  std::span<uint8_t> m_out;
  size_t m_at = 0;
  size_t m_made = 0;
  bool m_done = false;
};

}  // namespace

size_t decompress(std::span<const uint8_t> packed, std::span<uint8_t> out) { return Unpacker(packed, out).run(); }

}  // namespace gc::dwg
