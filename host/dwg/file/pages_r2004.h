// Places and numbers of the paged file of AC1018 and of AC1024 on, for reading and writing.
#pragma once

#include <cstdint>
#include <span>

#include "host/dwg/bits/crc.h"

namespace gc::dwg::r2004 {

// The hidden header.
inline constexpr uint64_t kHeaderAt = 0x80;
inline constexpr uint64_t kHeaderSize = 0x6C;
inline constexpr uint64_t kPageMapAddressAt = 0x54;  // counted from the first page
inline constexpr uint64_t kSectionMapIdAt = 0x5C;
inline constexpr uint64_t kHeaderCrcAt = 0x68;
inline constexpr uint64_t kFirstPageAt = 0x100;

inline constexpr uint32_t kPageMapType = 0x41630E3B;
inline constexpr uint32_t kSectionMapType = 0x4163003B;
inline constexpr uint32_t kDataPageType = 0x4163043B;
inline constexpr uint32_t kPacked = 2;

inline constexpr uint64_t kSystemHeaderSize = 20;
inline constexpr uint64_t kDataHeaderSize = 32;
inline constexpr uint64_t kDataChecksumAt = 0x1C;
inline constexpr uint64_t kGapRestSize = 16;

// The section map.
inline constexpr uint64_t kSectionMapHeaderSize = 20;
inline constexpr uint64_t kDescriptionSize = 96;
inline constexpr uint64_t kNameAt = 32;
inline constexpr size_t kNameSize = 64;
inline constexpr uint64_t kPageEntrySize = 16;
inline constexpr uint32_t kUsualPageSize = 0x7400;
inline constexpr uint32_t kMostPageSize = 0x100000;

// The fixed sequence of bytes over the header: a linear congruential generator.
inline void mask(std::span<uint8_t> bytes) {
  uint32_t state = 1;
  for (uint8_t& byte : bytes) {
    state = state * 0x343FD + 0x269EC3;
    byte = static_cast<uint8_t>(byte ^ (state >> 16));
  }
}

// What hides the header of a data page at an address.
inline uint32_t dataMask(uint64_t address) { return 0x4164536Bu ^ static_cast<uint32_t>(address); }

// Over the header (its checksum taken as zero) and then the packed bytes.
inline uint32_t systemChecksum(std::span<const uint8_t> header, std::span<const uint8_t> packed) {
  uint8_t copy[kSystemHeaderSize] = {};
  for (size_t i = 0; i < 16; ++i) copy[i] = header[i];
  return pageChecksum(packed, pageChecksum(copy, 0));
}

}  // namespace gc::dwg::r2004
