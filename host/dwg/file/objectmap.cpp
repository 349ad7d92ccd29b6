// Pieces of at most 2032 bytes. Each begins with its size (high byte first, the two bytes of the size counted), holds
// pairs of differences (handle, then offset) that start anew from zero, and ends with a checksum. An empty piece ends
// the map.
#include "host/dwg/file/objectmap.h"

#include "host/dwg/bits/bitreader.h"
#include "host/dwg/bits/bitwriter.h"
#include "host/dwg/bits/crc.h"
#include "host/dwg/file/bytes.h"
#include "host/dwg/file/sections.h"

namespace gc::dwg {

namespace {

constexpr size_t kMostPerPiece = 2032;
constexpr size_t kMostPair = 20;  // bytes of one pair

void readPiece(std::span<const uint8_t> piece, uint64_t most, std::vector<MapEntry>& entries) {
  BitReader in(piece);
  MapEntry at;
  while (in.remaining() >= 16 && entries.size() < most) {
    at.handle += in.mc();
    at.offset += static_cast<uint64_t>(in.mcSigned());
    if (in.failed()) return;
    entries.push_back(at);
  }
}

void closePiece(BitWriter& piece, std::vector<uint8_t>& out) {
  const std::vector<uint8_t> pairs = piece.take();
  const size_t begin = out.size();
  const size_t size = pairs.size() + 2;
  out.push_back(static_cast<uint8_t>(size >> 8));
  out.push_back(static_cast<uint8_t>(size));
  out.insert(out.end(), pairs.begin(), pairs.end());
  const uint16_t crc = crc16(std::span<const uint8_t>(out).subspan(begin), kCrcSeed);
  out.push_back(static_cast<uint8_t>(crc >> 8));
  out.push_back(static_cast<uint8_t>(crc));
}

}  // namespace

std::vector<MapEntry> readObjectMap(std::span<const uint8_t> bytes, uint64_t most, GcDbLoadReport& report) {
  std::vector<MapEntry> entries;
  for (uint64_t at = 0;;) {
    if (!holds(bytes, at, 4)) {
      note(report, GcDbLoadAction::Missing, at, 0, "the object map has no end");
      break;
    }
    const uint16_t size = u16be(bytes, at);
    if (size <= 2) break;
    if (entries.size() >= most) {
      note(report, GcDbLoadAction::Skipped, at, 0, "the object map tells of more objects than the file has room for");
      break;
    }
    if (!holds(bytes, at, uint64_t{size} + 2)) {
      note(report, GcDbLoadAction::Missing, at, 0, "the object map is cut off");
      readPiece(bytes.subspan(at + 2), most, entries);
      break;
    }
    if (crc16(bytes.subspan(at, size), kCrcSeed) != u16be(bytes, at + size))
      note(report, GcDbLoadAction::Noted, at, 0, "the checksum of a piece of the object map is wrong");
    readPiece(bytes.subspan(at + 2, size - 2u), most, entries);
    at += uint64_t{size} + 2;
  }
  return entries;
}

std::vector<uint8_t> writeObjectMap(const std::vector<MapEntry>& entries) {
  std::vector<uint8_t> out;
  BitWriter piece;
  MapEntry before;
  for (const MapEntry& entry : entries) {
    if (piece.position() / 8 + kMostPair > kMostPerPiece) {
      closePiece(piece, out);
      before = {};
    }
    piece.mc(entry.handle - before.handle);
    piece.mcSigned(static_cast<int64_t>(entry.offset - before.offset));
    before = entry;
  }
  if (piece.position() > 0) closePiece(piece, out);
  closePiece(piece, out);
  return out;
}

}  // namespace gc::dwg
