// Little-endian numbers appended to bytes.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace gc::dwg {

class ByteWriter {
 public:
  std::vector<uint8_t> bytes;

  [[nodiscard]] uint64_t size() const { return bytes.size(); }
  template <class T>
  void put(T value) {
    for (unsigned i = 0; i < sizeof(T); ++i)
      bytes.push_back(static_cast<uint8_t>(static_cast<uint64_t>(value) >> (8 * i)));
  }
  void u8(unsigned value) { put(static_cast<uint8_t>(value)); }
  void u16(unsigned value) { put(static_cast<uint16_t>(value)); }
  void u32(uint32_t value) { put(value); }
  void u64(uint64_t value) { put(value); }
  void append(std::span<const uint8_t> more) { bytes.insert(bytes.end(), more.begin(), more.end()); }
  void zeros(uint64_t count) { bytes.resize(bytes.size() + count); }
  void alignTo(uint64_t step) { zeros((step - bytes.size() % step) % step); }
  template <class T>
  void patch(uint64_t at, T value) {
    for (unsigned i = 0; i < sizeof(T); ++i)
      bytes[at + i] = static_cast<uint8_t>(static_cast<uint64_t>(value) >> (8 * i));
  }
};

}  // namespace gc::dwg
