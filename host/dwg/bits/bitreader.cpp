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

HandleRef BitReader::longH() {
  HandleRef ref;
  ref.code = static_cast<uint8_t>(bits(4));
  const auto count = bits(4);
  if (count == 8)
    ref.value = __builtin_bswap64(rll());
  else if (count == 7)
    ref.value = bits(56);
  else
    fail();
  return ref;
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

uint64_t BitReader::longMc(uint64_t first) {
  uint64_t value = first;
  for (int shift = 7; shift < 64; shift += 7) {
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

uint32_t BitReader::longMs(uint32_t first) {
  const uint32_t word = rs();
  if ((word & 0x8000) == 0) return first | word << 15;
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
  size_t done = 0;
  for (; done + 8 <= count; done += 8) {
    const uint64_t eight = rll();
    std::memcpy(out + done, &eight, 8);
  }
  for (; done < count; ++done) out[done] = rc();
  return true;
}

}  // namespace gc::dwg
