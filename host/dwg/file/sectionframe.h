// Header and class sections: a sentinel, the size, the content with a checksum, the closing sentinel. From AC1021 on
// the content has the streams of a record (data, texts, references) with the size of data and texts in front.
#pragma once

#include <array>
#include <vector>

#include "host/dwg/file/sections.h"
#include "host/dwg/record/recordio.h"

namespace gc::dwg {

using Sentinel = std::array<uint8_t, 16>;
inline constexpr Sentinel kHeaderBegin = {0xCF, 0x7B, 0x1F, 0x23, 0xFD, 0xDE, 0x38, 0xA9,
                                          0x5F, 0x7C, 0x68, 0xB8, 0x4E, 0x6D, 0x33, 0x5F};
inline constexpr Sentinel kClassesBegin = {0x8D, 0xA1, 0xC4, 0xB8, 0xC4, 0xA9, 0xF8, 0xC5,
                                           0xC0, 0xDC, 0xF4, 0x5F, 0xE7, 0xCF, 0xB6, 0x8A};
inline constexpr Sentinel kPreviewBegin = {0x1F, 0x25, 0x6D, 0x07, 0xD4, 0x36, 0x28, 0x28,
                                           0x9D, 0x57, 0xCA, 0x3F, 0x9D, 0x44, 0x10, 0x2B};
inline constexpr Sentinel kSecondHeaderBegin = {0xD4, 0x7B, 0x21, 0xCE, 0x28, 0x93, 0x9F, 0xBF,
                                                0x53, 0x24, 0x40, 0x09, 0x12, 0x3C, 0xAA, 0x01};
// The closing sentinel has every bit turned.
constexpr Sentinel closing(const Sentinel& begin) {
  Sentinel end{};
  for (size_t i = 0; i < begin.size(); ++i) end[i] = static_cast<uint8_t>(~begin[i]);
  return end;
}

// Sets the streams up at the first value. False when there is no content; damage is reported with the section's name.
bool openFrame(const Sections& sections, std::span<const uint8_t> bytes, const Sentinel& begin, const char* name,
               RecordIn& record, GcDbLoadReport& report);
std::vector<uint8_t> closeFrame(const Sentinel& begin, RecordOut& record);

// The maintenance release a file of the version says it is from: one that programs of the version have. Readers tell by
// it whether sizes have two words.
constexpr int maintenanceToWrite(int version) {
  if (version == kR2010) return 0x6D;
  return version == kR2013 ? 0x7D : 0;
}

}  // namespace gc::dwg
