#include "host/dwg/bits/bitreader.h"

namespace gc::dwg {

uint64_t HandleRef::absolute(uint64_t own) const {
  switch (code) {
    case 6: return own + 1;
    case 8: return own - 1;
    case 0xA: return own + value;
    case 0xC: return own - value;
    default: return value;
  }
}

BitReader::BitReader(std::span<const uint8_t> bytes, uint64_t from, uint64_t to)
    : m_data(bytes.data()), m_size(bytes.size()) {
  const uint64_t last = m_size * 8;
  m_end = to < last ? to : last;
  m_at = from < m_end ? from : m_end;
}

void BitReader::seek(uint64_t position) {
  if (position > m_end)
    fail();
  else
    m_at = position;
}

void BitReader::setEnd(uint64_t end) {
  m_end = end < m_size * 8 ? end : m_size * 8;
  if (m_at > m_end) fail();
}

uint64_t BitReader::windowAtEnd(uint64_t byte) const {
  uint64_t value = 0;
  for (uint64_t i = 0; i < 8; ++i) value = value << 8 | (byte + i < m_size ? m_data[byte + i] : 0u);
  return value;
}

uint8_t BitReader::bit3() {
  uint8_t value = 0;
  for (int i = 0; i < 3; ++i) {
    const bool one = b();
    value = static_cast<uint8_t>(value << 1 | (one ? 1 : 0));
    if (!one) break;
  }
  return value;
}

uint64_t BitReader::bll() {
  const auto count = static_cast<int>(bits(3));
  uint64_t value = 0;
  for (int i = 0; i < count; ++i) value |= static_cast<uint64_t>(rc()) << (8 * i);
  return value;
}

// Code 1 replaces the low four bytes, code 2 bytes 4 and 5 and then the low four.
double BitReader::dd(double otherwise) {
  auto value = std::bit_cast<uint64_t>(otherwise);
  switch (bits(2)) {
    case 0: return otherwise;
    case 1: value = (value & 0xFFFFFFFF00000000u) | rl(); break;
    case 2: {
      const uint64_t middle = rs();
      value = (value & 0xFFFF000000000000u) | middle << 32 | rl();
      break;
    }
    default: return rd();
  }
  return m_failed ? 0 : std::bit_cast<double>(value);
}

double BitReader::bt() { return b() ? 0 : bd(); }

GcGeVector3d BitReader::be() {
  if (b()) return m_failed ? GcGeVector3d() : GcGeVector3d::kZAxis;
  const GcGePoint3d p = bd3();
  return {p.x, p.y, p.z};
}

GcGePoint2d BitReader::rd2() {
  const double x = rd();
  return {x, rd()};
}

GcGePoint3d BitReader::rd3() {
  const double x = rd();
  const double y = rd();
  return {x, y, rd()};
}

GcGePoint2d BitReader::bd2() {
  const double x = bd();
  return {x, bd()};
}

GcGePoint3d BitReader::bd3() {
  const double x = bd();
  const double y = bd();
  return {x, y, bd()};
}

uint64_t BitReader::mc() {
  uint64_t value = 0;
  for (int shift = 0; shift < 64; shift += 7) {
    const uint64_t byte = rc();
    value |= (byte & 0x7F) << shift;
    if ((byte & 0x80) == 0) return value;
  }
  fail();
  return 0;
}

int64_t BitReader::mcSigned() {
  uint64_t value = 0;
  for (int shift = 0; shift < 63; shift += 7) {
    const uint64_t byte = rc();
    if ((byte & 0x80) != 0) {
      value |= (byte & 0x7F) << shift;
      continue;
    }
    value |= (byte & 0x3F) << shift;
    return (byte & 0x40) != 0 ? -static_cast<int64_t>(value) : static_cast<int64_t>(value);
  }
  fail();
  return 0;
}

uint32_t BitReader::ms() {
  uint32_t value = 0;
  for (int shift = 0; shift < 30; shift += 15) {
    const uint32_t word = rs();
    value |= (word & 0x7FFF) << shift;
    if ((word & 0x8000) == 0) return value;
  }
  fail();
  return 0;
}

uint32_t BitReader::ot() {
  switch (bits(2)) {
    case 0: return rc();
    case 1: return rc() + 0x1F0u;
    default: return rs();
  }
}

bool BitReader::bytes(uint8_t* out, size_t count) {
  if (remaining() / 8 < count) {
    fail();
    return false;
  }
  if ((m_at & 7) == 0) {
    if (count > 0) std::memcpy(out, m_data + m_at / 8, count);
    m_at += count * 8;
    return true;
  }
  for (size_t i = 0; i < count; ++i) out[i] = rc();
  return true;
}

}  // namespace gc::dwg
