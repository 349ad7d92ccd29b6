#include "host/dwg/file/lz_r2007.h"

#include <cstring>

namespace gc::dwg {

namespace {

// A piece of a run of literals: where it lies in the packed bytes, and its size. Pieces of one to three bytes are stored
// backwards, those of sixteen with their halves exchanged.
struct Piece {
  uint8_t from;
  uint8_t size;
};

constexpr int kMostPieces = 5;

// For each length below 32 the pieces in the order in which they are wanted.
constexpr Piece kPieces[32][kMostPieces] = {
    {},
    {{0, 1}},
    {{0, 2}},
    {{0, 3}},
    {{0, 4}},
    {{4, 1}, {0, 4}},
    {{5, 1}, {1, 4}, {0, 1}},
    {{5, 2}, {1, 4}, {0, 1}},
    {{0, 8}},
    {{8, 1}, {0, 8}},
    {{9, 1}, {1, 8}, {0, 1}},
    {{9, 2}, {1, 8}, {0, 1}},
    {{8, 4}, {0, 8}},
    {{12, 1}, {8, 4}, {0, 8}},
    {{13, 1}, {9, 4}, {1, 8}, {0, 1}},
    {{13, 2}, {9, 4}, {1, 8}, {0, 1}},
    {{0, 16}},
    {{9, 8}, {8, 1}, {0, 8}},
    {{17, 1}, {1, 16}, {0, 1}},
    {{16, 3}, {0, 16}},
    {{16, 4}, {0, 16}},
    {{20, 1}, {16, 4}, {0, 16}},
    {{20, 2}, {16, 4}, {0, 16}},
    {{20, 3}, {16, 4}, {0, 16}},
    {{16, 8}, {0, 16}},
    {{17, 8}, {16, 1}, {0, 16}},
    {{25, 1}, {17, 8}, {16, 1}, {0, 16}},
    {{25, 2}, {17, 8}, {16, 1}, {0, 16}},
    {{24, 4}, {16, 8}, {0, 16}},
    {{28, 1}, {24, 4}, {16, 8}, {0, 16}},
    {{28, 2}, {24, 4}, {16, 8}, {0, 16}},
    {{30, 1}, {26, 4}, {18, 8}, {2, 16}, {0, 2}},
};

uint8_t* putPiece(uint8_t* to, const uint8_t* from, unsigned size) {
  if (size < 4) {
    for (unsigned i = 0; i < size; ++i) to[i] = from[size - 1 - i];
  } else if (size == 16) {
    std::memcpy(to, from + 8, 8);
    std::memcpy(to + 8, from, 8);
  } else {
    std::memcpy(to, from, size);
  }
  return to + size;
}

void putLiterals(uint8_t* to, const uint8_t* from, size_t count) {
  constexpr size_t kBlock = 32;
  for (; count >= kBlock; count -= kBlock, from += kBlock) {
    to = putPiece(to, from + 16, 16);
    to = putPiece(to, from, 16);
  }
  for (const Piece& piece : kPieces[count])
    if (piece.size > 0) to = putPiece(to, from + piece.from, piece.size);
}

class Unpacker {
 public:
  Unpacker(std::span<const uint8_t> in, std::span<uint8_t> out) : m_in(in), m_out(out) {}

  size_t run() {
    m_code = next();
    size_t literals = 0;
    if ((m_code & 0xF0) == 0x20) {  // the first run may have its length in the fourth byte
      m_at += 2;
      literals = next() & 7u;
      if (literals == 0) return 0;
    }
    while (!m_failed && m_at < m_in.size()) {
      if (literals == 0) literals = literalCount();
      if (!copyLiterals(literals) || m_at >= m_in.size()) break;
      m_code = next();
      readCopy();
      literals = copies();
    }
    return m_made;
  }

 private:
  unsigned next() {
    if (m_at < m_in.size()) return m_in[m_at++];
    m_failed = true;
    return 0;
  }

  size_t literalCount() {
    size_t length = m_code + 8u;
    if (length != 0x17) return length;
    unsigned more = next();
    length += more;
    if (more != 0xFF) return length;
    do {
      more = next();
      more |= next() << 8;
      length += more;
    } while (more == 0xFFFF && !m_failed);
    return length;
  }

  bool copyLiterals(size_t count) {
    if (m_failed || count > m_in.size() - m_at || count > m_out.size() - m_made) {
      m_failed = true;
      return false;
    }
    putLiterals(m_out.data() + m_made, m_in.data() + m_at, count);
    m_at += count;
    m_made += count;
    return true;
  }

  // Length and distance of a copy; m_code becomes the byte whose low bits say what follows.
  void readCopy() {
    switch (m_code >> 4) {
      case 0:
        m_length = (m_code & 0xF) + 0x13;
        m_offset = next();
        m_code = next();
        m_length += m_code >> 3 & 0x10;
        m_offset += ((m_code & 0x78) << 5) + 1;
        return;
      case 1:
        m_length = (m_code & 0xF) + 3;
        m_offset = next();
        m_code = next();
        m_offset += ((m_code & 0xF8) << 5) + 1;
        return;
      case 2: readFarCopy(); return;
      default:
        m_length = m_code >> 4;
        m_offset = m_code & 0xF;
        m_code = next();
        m_offset += ((m_code & 0xF8) << 1) + 1;
    }
  }

  void readFarCopy() {
    m_offset = next();
    m_offset |= next() << 8;
    m_length = m_code & 7;
    if ((m_code & 8) == 0) {
      m_code = next();
      m_length += m_code & 0xF8;
      return;
    }
    ++m_offset;
    m_length += next() << 3;
    m_code = next();
    m_length += ((m_code & 0xF8) << 8) + 0x100;
  }

  // Copies until literals follow; gives how many, zero when their count has a code of its own (m_code).
  size_t copies() {
    while (!m_failed) {
      if (m_offset > m_made || m_length > m_out.size() - m_made) {
        m_failed = true;
        return 0;
      }
      uint8_t* to = m_out.data() + m_made;
      const uint8_t* from = to - m_offset;
      for (size_t i = 0; i < m_length; ++i) to[i] = from[i];
      m_made += m_length;
      const size_t literals = m_code & 7;
      if (literals != 0 || m_at >= m_in.size()) return literals;
      m_code = next();
      if (m_code >> 4 == 0) return 0;
      if (m_code >> 4 == 0xF) m_code &= 0xF;
      readCopy();
    }
    return 0;
  }

  std::span<const uint8_t> m_in;
  std::span<uint8_t> m_out;
  size_t m_at = 0;
  size_t m_made = 0;
  unsigned m_code = 0;
  size_t m_length = 0;
  size_t m_offset = 0;
  bool m_failed = false;
};

}  // namespace

size_t decompressR2007(std::span<const uint8_t> packed, std::span<uint8_t> out) { return Unpacker(packed, out).run(); }

}  // namespace gc::dwg
