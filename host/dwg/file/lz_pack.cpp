#include <array>
#include <bit>
#include <cstring>

#include "host/dwg/file/lz.h"

namespace gc::dwg {

namespace {

constexpr size_t kLeastCopy = 4;          // the hash finds runs of four bytes
constexpr size_t kNearOffset = 0x400;     // told by two bytes
constexpr size_t kMiddleOffset = 0x4000;  // by three; farther ones by three too, of another range
constexpr size_t kMostOffset = 0x7FFF;
constexpr size_t kFirstLiterals = 4;  // the shortest run that can begin the data
constexpr int kHashBits = 13;
constexpr uint8_t kEndMark = 0x11;

class Packer {
 public:
  Packer(std::span<const uint8_t> in, std::vector<uint8_t>& out) : m_in(in), m_out(out) { m_last.fill(kNowhere); }

  void run() {
    m_out.resize(mostPacked(m_in.size()));
    size_t literalsFrom = 0;
    size_t at = 0;
    while (at + kLeastCopy <= m_in.size()) {
      size_t offset = 0;
      const size_t length = at < kFirstLiterals ? remember(at) : match(at, offset);
      if (length == 0) {
        at += 1 + ((at - literalsFrom) >> kPatience);
        continue;
      }
      putLiterals(literalsFrom, at);
      putCopy(offset, length);
      rememberInside(at, length);
      at += length;
      literalsFrom = at;
    }
    putLiterals(literalsFrom, m_in.size());
    put(kEndMark);
    put(0);
    put(0);
    m_out.resize(m_size);
  }

 private:
  static constexpr uint32_t kNowhere = 0xFFFFFFFF;
  // Where this many bits of bytes without a copy lie behind, the next ones are tried less and less densely.
  static constexpr int kPatience = 6;

  // A copy never takes more bytes than it stands for; literals need a byte per run and one for each 255 of them.
  static constexpr size_t mostPacked(size_t size) { return size + size / 8 + 64; }

  void put(size_t byte) { m_out[m_size++] = static_cast<uint8_t>(byte); }

  [[nodiscard]] size_t hashAt(size_t at) const {
    uint32_t value = 0;
    std::memcpy(&value, m_in.data() + at, sizeof value);
    return (value * 2654435761u) >> (32 - kHashBits);
  }

  size_t remember(size_t at) {
    m_last[hashAt(at)] = static_cast<uint32_t>(at);
    return 0;
  }

  // Of a long run its ends: what repeats a run begins or ends like it.
  void rememberInside(size_t at, size_t length) {
    constexpr size_t kEnds = 8;
    for (size_t i = 1; i < length; ++i) {
      if (i == kEnds && length > 2 * kEnds) i = length - kEnds;
      if (at + i + kLeastCopy <= m_in.size()) remember(at + i);
    }
  }

  // The run from an earlier place that begins with the same four bytes; zero when there is none.
  size_t match(size_t at, size_t& offset) {
    uint32_t& place = m_last[hashAt(at)];
    const uint32_t before = place;
    place = static_cast<uint32_t>(at);
    if (before == kNowhere || at - before > kMostOffset) return 0;
    const size_t length = sameBytes(m_in.data() + before, m_in.data() + at, m_in.size() - at);
    offset = at - before;
    return length < kLeastCopy ? 0 : length;
  }

  static size_t sameBytes(const uint8_t* old, const uint8_t* now, size_t most) {
    size_t length = 0;
    for (; length + 8 <= most; length += 8) {
      uint64_t a = 0;
      uint64_t b = 0;
      std::memcpy(&a, old + length, 8);
      std::memcpy(&b, now + length, 8);
      if (a != b) return length + static_cast<size_t>(std::countr_zero(a ^ b)) / 8;
    }
    while (length < most && old[length] == now[length]) ++length;
    return length;
  }

  // Up to three literals are told by the copy before them, more by a code of their own.
  void putLiterals(size_t from, size_t to) {
    const size_t count = to - from;
    if (count == 0) return;
    if (count <= 3)
      m_out[m_literalBits] = static_cast<uint8_t>(m_out[m_literalBits] | count);
    else
      putNumber(count - 3, 0x0F, 0);
    std::memcpy(m_out.data() + m_size, m_in.data() + from, count);
    m_size += count;
  }

  // In the low bits of a code, or the code alone and what is beyond in bytes, where a zero counts 255.
  void putNumber(size_t value, size_t mostInCode, unsigned code) {
    if (value <= mostInCode) {
      put(code | value);
      return;
    }
    put(code);
    value -= mostInCode;
    while (value > 0xFF) {
      put(0);
      value -= 0xFF;
    }
    put(value);
  }

  void putCopy(size_t offset, size_t length) {
    const size_t back = offset - 1;
    constexpr size_t kMostShort = 14;
    if (length <= kMostShort && back < kNearOffset) {
      m_literalBits = m_size;
      put((length + 1) << 4 | (back & 3) << 2);
      put(back >> 2);
      return;
    }
    size_t rest = back;
    if (back < kMiddleOffset - 1) {
      putNumber(length - 2, 0x1F, 0x20);
    } else {
      rest = back - (kMiddleOffset - 1);
      putFarLength(length);
    }
    m_literalBits = m_size;
    put((rest & 0x3F) << 2);
    put(rest >> 6);
  }

  // Lengths 4 to 9 in the code (3 would be the end mark), longer ones counted from 9. The code's fourth bit belongs to
  // the offset.
  void putFarLength(size_t length) {
    constexpr size_t kMostInCode = 9;
    if (length <= kMostInCode)
      put(0x10 | (length - 2));
    else
      putNumber(length - 9, 0, 0x10);
  }

  std::span<const uint8_t> m_in;
  std::vector<uint8_t>& m_out;  // room; what is beyond m_size means nothing
  size_t m_size = 0;
  std::array<uint32_t, size_t{1} << kHashBits> m_last;
  size_t m_literalBits = 0;  // the byte whose low two bits count the literals behind the last copy
};

}  // namespace

void compress(std::span<const uint8_t> bytes, std::vector<uint8_t>& out) { Packer(bytes, out).run(); }

}  // namespace gc::dwg
