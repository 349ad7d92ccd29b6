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
  // The bits [from, to) of the bytes; a range outside of them is cut. `behind`: how many bytes may be touched (never
  // used) behind these, which spares looking for their end.
  explicit BitReader(std::span<const uint8_t> bytes, size_t behind = 0)
      : BitReader(bytes, 0, bytes.size() * 8, behind) {}
  BitReader(std::span<const uint8_t> bytes, uint64_t from, uint64_t to, size_t behind = 0)
      : m_data(bytes.data()), m_size(bytes.size() + behind) {
    const uint64_t last = bytes.size() * 8;
    m_end = to < last ? to : last;
    m_at = from < m_end ? from : m_end;
  }

  [[nodiscard]] uint64_t position() const { return m_at; }  // bits from the start of the bytes
  [[nodiscard]] uint64_t end() const { return m_end; }
  [[nodiscard]] uint64_t remaining() const { return m_end - m_at; }
  [[nodiscard]] bool failed() const { return m_failed; }
  void fail() {
    m_failed = true;
    m_at = m_end;
  }
  void seek(uint64_t position) {
    if (position > m_end)
      fail();
    else
      m_at = position;
  }
  // Never farther than it was.
  void setEnd(uint64_t end) {
    if (end < m_end) m_end = end;
    if (m_at > m_end) fail();
  }
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
  // Modular characters: 7 bits a byte, no sign.
  uint64_t mc() {
    const uint8_t byte = rc();
    return (byte & 0x80) == 0 ? byte : longMc(byte & 0x7Fu);
  }
  int64_t mcSigned();  // the same with a sign bit in the last byte
  // Modular shorts: 15 bits each, two of them at most.
  uint32_t ms() {
    const uint16_t word = rs();
    return (word & 0x8000) == 0 ? word : longMs(word & 0x7FFFu);
  }
  uint32_t ot();  // object type from AC1024 on
  HandleRef h();
  // Whole bytes from any bit on. False, and failed, when they are not there.
  bool bytes(uint8_t* out, size_t count);

 private:
  // The bits from the position on, highest first: 57 of them at least. What is beyond the end means nothing.
  [[nodiscard]] uint64_t ahead() const { return window() << (m_at & 7); }
  // Passes bits that were looked at; false, and failed, when they are not there.
  bool pass(uint64_t count) {
    if (m_end - m_at < count) {
      fail();
      return false;
    }
    m_at += count;
    return true;
  }
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
  HandleRef longH();  // of seven or eight bytes
  uint64_t longMc(uint64_t first);
  uint32_t longMs(uint32_t first);

  const uint8_t* m_data = nullptr;
  uint64_t m_size = 0;  // bytes that may be touched
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

// A code and its value lie in one window.
inline int16_t BitReader::bs() {
  const uint64_t bits = ahead();
  switch (bits >> 62) {
    case 0: return pass(18) ? static_cast<int16_t>(__builtin_bswap16(static_cast<uint16_t>(bits >> 46))) : int16_t{0};
    case 1: return pass(10) ? static_cast<uint8_t>(bits >> 54) : int16_t{0};
    case 2: pass(2); return 0;
    default: return pass(2) ? int16_t{256} : int16_t{0};
  }
}

inline int32_t BitReader::bl() {
  const uint64_t bits = ahead();
  switch (bits >> 62) {
    case 0: return pass(34) ? static_cast<int32_t>(__builtin_bswap32(static_cast<uint32_t>(bits >> 30))) : 0;
    case 1: return pass(10) ? static_cast<uint8_t>(bits >> 54) : 0;
    case 2: pass(2); return 0;
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

// Code 1 replaces the low four bytes, code 2 bytes 4 and 5 and then the low four.
inline double BitReader::dd(double otherwise) {
  const uint64_t bits = ahead();
  const auto value = std::bit_cast<uint64_t>(otherwise);
  switch (bits >> 62) {
    case 0: return pass(2) ? otherwise : 0;
    case 1: {
      const uint64_t low = __builtin_bswap32(static_cast<uint32_t>(bits >> 30));
      return pass(34) ? std::bit_cast<double>((value & 0xFFFFFFFF00000000u) | low) : 0;
    }
    case 2: {
      const uint64_t middle = __builtin_bswap16(static_cast<uint16_t>(bits >> 46));
      const uint64_t low = __builtin_bswap32(static_cast<uint32_t>(bits >> 14));
      return pass(50) ? std::bit_cast<double>((value & 0xFFFF000000000000u) | middle << 32 | low) : 0;
    }
    default: return pass(2) ? rd() : 0;
  }
}

inline HandleRef BitReader::h() {
  const uint64_t bits = ahead();
  const auto count = static_cast<unsigned>(bits >> 56 & 0xF);
  constexpr unsigned kMostInWindow = 6;
  if (count > kMostInWindow) return longH();
  if (!pass(8 + 8 * count)) return {};
  return {static_cast<uint8_t>(bits >> 60), count == 0 ? 0 : bits << 8 >> (64 - 8 * count)};
}

}  // namespace gc::dwg
