// The insides of paged files (AC1018, AC1024 on), behind packing and checksums: the first byte chooses the version, each
// five bytes behind it change a byte of a map, of the hidden header or of a page of a section.
#include <cstddef>
#include <cstdint>

#include "db/circle.h"
#include "db/database.h"
#include "db/line.h"
#include "db/text.h"
#include "host/dwg/file/dwgfile.h"
#include "host/dwg/record/packrow.h"
#include "tests/dwg/damage/repack.h"

using namespace gc::dwg;

namespace {

constexpr int kVersions[] = {kR2004, kR2010, kR2013, kR2018};
constexpr const char* kSections[] = {"AcDb:AcDbObjects", "AcDb:Handles", "AcDb:Classes",
                                     "AcDb:Header",      "AcDb:Preview", "AcDb:Template"};
constexpr size_t kEditSize = 5;
constexpr size_t kMostEdits = 12;

template <class T>
void add(GcDbBlockTableRecord& block, T* entity) {
  ignore(block.appendGcDbEntity(entity));
  ignore(entity->close());
}

std::vector<uint8_t> drawing(int version) {
  GcDbDatabase database;
  GcDbBlockTableRecord* block = nullptr;
  ignore(gcdbOpenObject(block, database.modelSpaceId(), GcDb::kForWrite));
  add(*block, new GcDbLine({0, 0, 0}, {3, 4, 1}));
  add(*block, new GcDbCircle({1, 2, 0}, {0, 0, 1}, 5));
  add(*block, new GcDbText);
  ignore(block->close());
  std::vector<uint8_t> bytes;
  std::string message;
  ignore(writeBytes(database, version, bytes, message));
  return bytes;
}

const std::vector<uint8_t>& drawingOf(unsigned choice) {
  static const std::vector<uint8_t> all[] = {drawing(kVersions[0]), drawing(kVersions[1]), drawing(kVersions[2]),
                                             drawing(kVersions[3])};
  return all[choice % 4];
}

// Where: header, page map, section map, then sections. A value of its own, or bits changed.
void edit(Repacker& file, const uint8_t* code) {
  const Repacker::Change change = [&](std::vector<uint8_t>& bytes) {
    if (bytes.empty()) return;
    uint8_t& byte = bytes[(code[2] | code[3] << 8) % bytes.size()];
    byte = static_cast<uint8_t>((code[1] & 1) != 0 ? code[4] : byte ^ code[4]);
  };
  const unsigned where = code[0] % 16;
  if (where == 0)
    file.changeHeader(change);
  else if (where == 1)
    static_cast<void>(file.changePageMap(change));
  else if (where < 4)
    static_cast<void>(file.changeSectionMap(change));
  else
    static_cast<void>(file.changePage(kSections[where < 11 ? 0 : where - 10], 0, change));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1 + kEditSize) return 0;
  Repacker file(drawingOf(data[0]));
  for (size_t at = 1; at + kEditSize <= size && at < 1 + kMostEdits * kEditSize; at += kEditSize) edit(file, data + at);
  const std::vector<uint8_t>& bytes = file.file();
  GcDbDatabase database(false, true);
  static_cast<void>(read(database, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}));
  return 0;
}
