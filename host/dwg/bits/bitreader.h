// Reads the bit-packed values of DWG records. Bits run from the highest of each byte to the lowest; whole bytes may
// begin at any bit; numbers of several bytes are little-endian. docs/dwg.md draws the codes.
//
// After a read past the end (or a code that means nothing) the reader stays failed: every later value is zero.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <span>

#include "ge/point.h"

namespace gc::dwg {

// A reference as written: 2 soft owner, 3 hard owner, 4 soft pointer, 5 hard pointer; 6, 8, A, C relative to the
// handle of the record itself.
struct HandleRef {
  uint8_t code = 0;
  uint64_t value = 0;
  // The handle meant, for a record of handle `own`.
  [[nodiscard]] uint64_t absolute(uint64_t own) const;
};

class BitReader {
 public:
  BitReader() = default;
  // The bits [from, to) of the bytes; a range outside of them is cut.
  explicit BitReader(std::span<const uint8_t> bytes) : BitReader(bytes, 0, bytes.size() * 8) {}
  BitReader(std::span<const uint8_t> bytes, uint64_t from, uint64_t to);

  [[nodiscard]] uint64_t position() const { return m_at; }  // bits from the start of the bytes
  [[nodiscard]] uint64_t end() const { return m_end; }
  [[nodiscard]] uint64_t remaining() const { return m_end - m_at; }
  [[nodiscard]] bool failed() const { return m_failed; }
  void fail() {
    m_failed = true;
    m_at = m_end;
  }
  void seek(uint64_t position);
  void setEnd(uint64_t end);  // never beyond the bytes
  void skip(uint64_t bits) { seek(m_at + bits); }

  // Up to 56 bits, the first one highest.
  uint64_t bits(int count) {
    if (m_end - m_at < static_cast<uint64_t>(count)) {
      fail();
      return 0;
    }
    const uint64_t value = (window() << (m_at & 7)) >> (64 - count);
    m_at += static_cast<uint64_t>(count);
    return value;
  }

  bool b() { return bits(1) != 0; }
  uint8_t bb() { return static_cast<uint8_t>(bits(2)); }
  uint8_t bit3();  // up to three bits, ended by the first zero
  uint8_t rc() { return static_cast<uint8_t>(bits(8)); }
  uint16_t rs() { return __builtin_bswap16(static_cast<uint16_t>(bits(16))); }
  uint32_t rl() { return __builtin_bswap32(static_cast<uint32_t>(bits(32))); }
  uint64_t rll();
  double rd();
  int16_t bs();
  int32_t bl();
  uint64_t bll();
  double bd();
  double dd(double otherwise);  // a double given as a change to `otherwise`
  double bt();                  // thickness: one bit for 0
  GcGeVector3d be();            // extrusion: one bit for (0 0 1)
  double btSince2000(bool packed) { return packed ? bt() : bd(); }
  GcGePoint2d rd2();
  GcGePoint3d rd3();
  GcGePoint2d bd2();
  GcGePoint3d bd3();
  uint64_t mc();       // modular characters: 7 bits a byte, no sign
  int64_t mcSigned();  // the same with a sign bit in the last byte
  uint32_t ms();       // modular shorts: 15 bits each
  uint32_t ot();       // object type from AC1024 on
  HandleRef h();
  // Whole bytes from any bit on. False, and failed, when they are not there.
  bool bytes(uint8_t* out, size_t count);

 private:
  // The 64 bits that begin at the byte of the position, zero beyond the end of the bytes.
  [[nodiscard]] uint64_t window() const {
    const uint64_t byte = m_at >> 3;
    if (byte + 8 > m_size) return windowAtEnd(byte);
    uint64_t value = 0;
    std::memcpy(&value, m_data + byte, 8);
    if constexpr (std::endian::native == std::endian::little) value = __builtin_bswap64(value);
    return value;
  }
  [[nodiscard]] uint64_t windowAtEnd(uint64_t byte) const;

  const uint8_t* m_data = nullptr;
  uint64_t m_size = 0;  // bytes
  uint64_t m_at = 0;
  uint64_t m_end = 0;
  bool m_failed = false;
};

inline uint64_t BitReader::rll() {
  if (m_end - m_at < 64) {
    fail();
    return 0;
  }
  const auto shift = static_cast<int>(m_at & 7);
  uint64_t value = window();
  if (shift != 0) value = value << shift | m_data[(m_at >> 3) + 8] >> (8 - shift);
  m_at += 64;
  return __builtin_bswap64(value);
}

inline double BitReader::rd() { return std::bit_cast<double>(rll()); }

inline int16_t BitReader::bs() {
  switch (bits(2)) {
    case 0: return static_cast<int16_t>(rs());
    case 1: return rc();
    case 2: return 0;
    default: return m_failed ? int16_t{0} : int16_t{256};
  }
}

inline int32_t BitReader::bl() {
  switch (bits(2)) {
    case 0: return static_cast<int32_t>(rl());
    case 1: return rc();
    case 2: return 0;
    default: fail(); return 0;
  }
}

inline double BitReader::bd() {
  switch (bits(2)) {
    case 0: return rd();
    case 1: return 1;
    case 2: return 0;
    default: fail(); return 0;
  }
}

inline HandleRef BitReader::h() {
  HandleRef ref;
  ref.code = static_cast<uint8_t>(bits(4));
  const auto count = static_cast<int>(bits(4));
  if (count == 8) {
    ref.value = __builtin_bswap64(rll());
  } else if (count > 8) {
    fail();
  } else if (count > 0) {
    ref.value = bits(8 * count);
  }
  return ref;
}

}  // namespace gc::dwg
