// Writes the bit-packed values of DWG records: the counterpart of BitReader. Each value takes the shortest of its
// codes, so that what is written is the same whoever wrote it.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

#include "ge/point.h"

namespace gc::dwg {

class BitReader;

class BitWriter {
 public:
  [[nodiscard]] uint64_t position() const { return m_size * 8 + static_cast<uint64_t>(m_used); }
  // What was written, the last byte filled with zeros.
  [[nodiscard]] std::vector<uint8_t> take();
  // The same, until more is written.
  [[nodiscard]] std::span<const uint8_t> whole();
  void clear();  // keeps its memory

  // Up to 56 bits, the highest first.
  void bits(uint64_t value, int count) {
    m_last = m_last << count | (value & ((uint64_t{1} << count) - 1));
    m_used += count;
    if (m_used < 8) return;
    if (m_size + 8 > m_bytes.size()) grow(8);
    const uint64_t ordered = __builtin_bswap64(m_last << (64 - m_used));
    std::memcpy(m_bytes.data() + m_size, &ordered, 8);
    m_size += static_cast<size_t>(m_used) / 8;
    m_used &= 7;
    m_last &= (uint64_t{1} << m_used) - 1;
  }

  void b(bool value) { bits(value ? 1 : 0, 1); }
  void bb(unsigned value) { bits(value & 3u, 2); }
  void bit3(unsigned value);
  void rc(unsigned value) { bits(value & 0xFFu, 8); }
  void rs(unsigned value) { bits((value & 0xFFu) << 8 | (value >> 8 & 0xFFu), 16); }
  void rl(uint32_t value) { bits(__builtin_bswap32(value), 32); }
  void rll(uint64_t value) {
    if (m_size + 9 > m_bytes.size()) grow(9);
    const uint64_t ordered = __builtin_bswap64(value);
    const uint64_t here = m_used == 0 ? value : __builtin_bswap64(m_last << (64 - m_used) | ordered >> m_used);
    std::memcpy(m_bytes.data() + m_size, &here, 8);
    m_size += 8;
    m_last = ordered & ((uint64_t{1} << m_used) - 1);
  }
  void rd(double value) { rll(std::bit_cast<uint64_t>(value)); }
  void bs(int value);
  void bl(int32_t value);
  void bll(uint64_t value);
  void bd(double value) {
    const auto pattern = std::bit_cast<uint64_t>(value);
    if (pattern == 0) {  // minus zero is written in full
      bits(2, 2);
    } else if (value == 1) {
      bits(1, 2);
    } else {
      bits(0, 2);
      rll(pattern);
    }
  }
  void dd(double value, double otherwise);
  void bt(double value);
  void be(const GcGeVector3d& value);
  void rd2(const GcGePoint2d& value);
  void rd3(const GcGePoint3d& value);
  void bd2(const GcGePoint2d& value);
  void bd3(const GcGePoint3d& value);
  void mc(uint64_t value);
  void mcSigned(int64_t value);
  void ms(uint32_t value);
  void ot(uint32_t type);
  void h(unsigned code, uint64_t value);
  void bytes(std::span<const uint8_t> bytes);
  // All that is left of the reader, bit by bit.
  void rest(BitReader reader);
  void append(const BitWriter& other);
  void alignToByte();
  // Overwrites 32 bits written before.
  void patchRl(uint64_t position, uint32_t value);

 private:
  void grow(size_t more);

  std::vector<uint8_t> m_bytes;  // room; what is beyond m_size means nothing
  size_t m_size = 0;
  uint64_t m_last = 0;  // bits of the byte that is not full yet, at the low end
  int m_used = 0;       // how many: 0..7
};

}  // namespace gc::dwg
