#include "host/dwg/bits/bitwriter.h"

#include <algorithm>
#include <cstring>

#include "host/dwg/bits/bitreader.h"

namespace gc::dwg {

std::vector<uint8_t> BitWriter::take() {
  alignToByte();
  m_bytes.resize(m_size);
  std::vector<uint8_t> taken;
  taken.swap(m_bytes);
  m_size = 0;
  return taken;
}

std::span<const uint8_t> BitWriter::whole() {
  alignToByte();
  return {m_bytes.data(), m_size};
}

void BitWriter::clear() {
  m_size = 0;
  m_last = 0;
  m_used = 0;
}

void BitWriter::grow(size_t more) {
  constexpr size_t kLeast = 256;
  m_bytes.resize(std::max({m_size + more, 2 * m_bytes.size(), kLeast}));
}

void BitWriter::bit3(unsigned value) {
  if (value == 0)
    bits(0, 1);
  else if (value == 2)
    bits(2, 2);
  else
    bits(value, 3);
}

// Codes and what follows them are put at once.
void BitWriter::bs(int value) {
  const auto cut = static_cast<uint16_t>(value);
  if (cut == 0)
    bits(2, 2);
  else if (cut == 256)
    bits(3, 2);
  else if (cut < 256)
    bits(1u << 8 | cut, 10);
  else
    bits(__builtin_bswap16(cut), 18);
}

void BitWriter::bl(int32_t value) {
  if (value == 0)
    bits(2, 2);
  else if (value > 0 && value < 256)
    bits(1u << 8 | static_cast<unsigned>(value), 10);
  else
    bits(__builtin_bswap32(static_cast<uint32_t>(value)), 34);
}

void BitWriter::bll(uint64_t value) {
  int count = 0;
  while (count < 7 && value >> (8 * count) != 0) ++count;  // three bits count the bytes: 7 at most
  bits(static_cast<uint64_t>(count), 3);
  for (int i = 0; i < count; ++i) rc(static_cast<unsigned>(value >> (8 * i)) & 0xFFu);
}

void BitWriter::dd(double value, double otherwise) {
  const uint64_t now = std::bit_cast<uint64_t>(value);
  const uint64_t change = now ^ std::bit_cast<uint64_t>(otherwise);
  if (change == 0) {
    bits(0, 2);
  } else if (change >> 32 == 0) {
    bits(uint64_t{1} << 32 | __builtin_bswap32(static_cast<uint32_t>(now)), 34);
  } else if (change >> 48 == 0) {
    const uint64_t middle = __builtin_bswap16(static_cast<uint16_t>(now >> 32));
    bits(uint64_t{2} << 48 | middle << 32 | __builtin_bswap32(static_cast<uint32_t>(now)), 50);
  } else {
    bits(3, 2);
    rll(now);
  }
}

void BitWriter::bt(double value) {
  const bool zero = std::bit_cast<uint64_t>(value) == 0;
  b(zero);
  if (!zero) bd(value);
}

void BitWriter::be(const GcGeVector3d& value) {
  const bool plain = std::bit_cast<uint64_t>(value.x) == 0 && std::bit_cast<uint64_t>(value.y) == 0 && value.z == 1;
  b(plain);
  if (!plain) bd3({value.x, value.y, value.z});
}

void BitWriter::rd2(const GcGePoint2d& value) {
  rd(value.x);
  rd(value.y);
}

void BitWriter::rd3(const GcGePoint3d& value) {
  rd(value.x);
  rd(value.y);
  rd(value.z);
}

void BitWriter::bd2(const GcGePoint2d& value) {
  bd(value.x);
  bd(value.y);
}

void BitWriter::bd3(const GcGePoint3d& value) {
  bd(value.x);
  bd(value.y);
  bd(value.z);
}

void BitWriter::mc(uint64_t value) {
  while (value > 0x7F) {
    rc(static_cast<unsigned>(value & 0x7F) | 0x80u);
    value >>= 7;
  }
  rc(static_cast<unsigned>(value));
}

void BitWriter::mcSigned(int64_t value) {
  uint64_t rest = value < 0 ? uint64_t{0} - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
  while (rest > 0x3F) {
    rc(static_cast<unsigned>(rest & 0x7F) | 0x80u);
    rest >>= 7;
  }
  rc(static_cast<unsigned>(rest) | (value < 0 ? 0x40u : 0u));
}

void BitWriter::ms(uint32_t value) {
  if (value > 0x7FFF) {
    rs((value & 0x7FFF) | 0x8000u);
    value >>= 15;
  }
  rs(value & 0x7FFF);
}

void BitWriter::ot(uint32_t type) {
  if (type < 0x100) {
    bits(0, 2);
    rc(type);
  } else if (type >= 0x1F0 && type < 0x2F0) {
    bits(1, 2);
    rc(type - 0x1F0);
  } else {
    bits(2, 2);
    rs(type);
  }
}

void BitWriter::h(unsigned code, uint64_t value) {
  const int count = (std::bit_width(value) + 7) / 8;
  bits((code & 0xFu) << 4 | static_cast<unsigned>(count), 8);
  if (count == 8)
    rll(__builtin_bswap64(value));
  else if (count > 0)
    bits(value, 8 * count);
}

void BitWriter::bytes(std::span<const uint8_t> source) {
  if (source.empty()) return;
  if (m_used == 0) {
    if (m_size + source.size() > m_bytes.size()) grow(source.size());
    std::memcpy(m_bytes.data() + m_size, source.data(), source.size());
    m_size += source.size();
    return;
  }
  constexpr size_t kAtOnce = 8;
  size_t at = 0;
  for (; at + kAtOnce <= source.size(); at += kAtOnce) {
    uint64_t word = 0;
    std::memcpy(&word, source.data() + at, kAtOnce);
    rll(word);
  }
  for (; at < source.size(); ++at) rc(source[at]);
}

void BitWriter::rest(BitReader reader) {
  while (reader.remaining() >= 32) bits(reader.bits(32), 32);
  const auto left = static_cast<int>(reader.remaining());
  if (left > 0) bits(reader.bits(left), left);
}

void BitWriter::append(const BitWriter& other) {
  bytes({other.m_bytes.data(), other.m_size});
  if (other.m_used > 0) bits(other.m_last, other.m_used);
}

void BitWriter::alignToByte() {
  if (m_used > 0) bits(0, 8 - m_used);
}

void BitWriter::patchRl(uint64_t position, uint32_t value) {
  const auto shift = static_cast<unsigned>(position % 8);
  const size_t at = position / 8;
  if (at + 8 > m_bytes.size()) grow(8);
  uint64_t around = 0;
  std::memcpy(&around, m_bytes.data() + at, 8);
  const uint64_t mask = uint64_t{0xFFFFFFFF} << (32 - shift);
  const uint64_t ordered = uint64_t{__builtin_bswap32(value)} << (32 - shift);
  around = __builtin_bswap64((__builtin_bswap64(around) & ~mask) | ordered);
  std::memcpy(m_bytes.data() + at, &around, 8);
}

}  // namespace gc::dwg
