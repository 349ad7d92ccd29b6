// Records that other programs wrote, read into objects of their classes and written again in the same version: the data
// bits of the record must be the same. What a class does not keep, or passes in another order, shows at once.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>

#include "db/database.h"
#include "host/db/core/store.h"
#include "host/dwg/file/bytes.h"
#include "host/dwg/file/dwgfile.h"
#include "host/dwg/file/objectmap.h"
#include "host/dwg/file/sections.h"
#include "host/dwg/record/recordcodec.h"
#include "host/rx/file/file_view.h"
#include "host/rx/view.h"

using namespace gc::dwg;
namespace fs = std::filesystem;

namespace {

std::vector<std::string> drawings() {
  std::vector<std::string> found;
  const char* given = std::getenv("GC_DRAWINGS");
  const fs::path folder = given != nullptr ? fs::path(given) : fs::path(GC_SOURCE_DIR) / "../shared/drawings";
  if (!fs::is_directory(folder)) return found;
  for (const auto& entry : fs::directory_iterator(folder))
    if (entry.path().extension() == ".dwg") found.push_back(entry.path().string());
  return found;
}

// The data of a record behind its type, as text of 0 and 1: numbers and texts, not the references, which may be told
// relative to the record or not.
std::string dataBits(int version, std::span<const uint8_t> body, uint64_t handleBits) {
  BitReader in(body);
  uint64_t end = body.size() * 8 - handleBits;
  if (version >= kR2010) {
    in.ot();
  } else {
    in.bs();
    end = in.rl();
  }
  std::string bits;
  while (!in.failed() && in.position() < end) bits += in.b() ? '1' : '0';
  return bits;
}

std::map<uint64_t, std::string> recordsOf(std::span<const uint8_t> file) {
  std::map<uint64_t, std::string> records;
  GcDbLoadReport report;
  Sections sections;
  sections.version = versionOfBytes(file);
  const bool isOpen = sections.version < kR2004    ? openR2000(file, sections, report)
                      : sections.version == kR2007 ? openR2007(file, sections, report)
                                                   : openR2004(file, sections, report);
  if (!isOpen) return records;
  for (const MapEntry& entry : readObjectMap(sections.handles, SIZE_MAX, report)) {
    const auto rest = part(sections.objects, entry.offset, sections.objects.size());
    BitReader in(rest);
    const uint64_t size = in.ms();
    const uint64_t handleBits = sections.version >= kR2010 ? in.mc() : 0;
    const uint64_t at = in.position() / 8;
    if (in.failed() || !holds(rest, at, size)) continue;
    records[entry.handle] = dataBits(sections.version, rest.subspan(at, size), handleBits);
  }
  return records;
}

std::span<const uint8_t> spanOf(std::string_view bytes) {
  return {reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()};
}

struct Count {
  int same = 0, different = 0;
  std::string example;
};

// Classes whose records must come back to the bit. The data begin with the number of reactors, which is not that of the
// file where some of them are not there: classes to which that happens are not listed.
const std::set<std::string> kExact = {
    "AcDbMline",
    "AcDbRasterImage",
    "AcDbWipeout",
    "AcDbRasterImageDefReactor",
    "AcDbRasterVariables",
    "AcDbWipeoutVariables",
    "AcDbMLeader",
    "AcDbMLeaderStyle",
    "AcDb2LineAngularDimension",
    "AcDb3PointAngularDimension",
    "AcDbDiametricDimension",
    "AcDbRadialDimension",
    "AcDbOrdinateDimension",
    "AcDbRotatedDimension",
    "AcDbLeader",
    "AcDbFcf",
    "AcDbMText",
    "AcDbSpline",
    "AcDbHatch",
    "AcDbText",
    "AcDbEllipse",
    "AcDbArc",
    "AcDbFace",
    "AcDbSolid",
    "AcDbTrace",
    "AcDbBlockReference",
    "AcDbDimAssoc",
    "AcDbDimStyleTableRecord",
    "AcDbLayerTableRecord",
    "AcDbLinetypeTableRecord",
    "AcDbTextStyleTableRecord",
    "AcDbViewportTableRecord",
    "AcDbMlineStyle",
    "AcDbSection",
    "AcDbSectionSettings",
    "AcDbScale",
    "AcDbGroup",
    "AcDbDictionary",
    "AcDbDictionaryVar",
    "AcDbShape",
    "AcDbOle2Frame",
    "AcDbPlaneSurface",
    "AcDbExtrudedSurface",
    "AcDbRevolvedSurface",
    "AcDbSweptSurface",
    "AcDbLoftedSurface",
    "AcDbTextObjectContextData",
    "AcDbMTextObjectContextData",
    "AcDbMTextAttributeObjectContextData",
    "AcDbLeaderObjectContextData",
    "AcDbAlignedDimensionObjectContextData",
    "AcDbGeoData",
    "AcDbDetailViewStyle",
    "AcDbSectionViewStyle",
};

// Records whose texts end in a zero, which is not kept, are shorter afterwards: by a byte for every text before AC1021.
// From then on only one program is known to write such zeros, two bytes each.
bool isShorterByZeros(const fs::path& file, int version, const std::string& before, const std::string& after) {
  const bool endsTexts = version < kR2007 || file.filename() == "acadsharp_export_sample.dwg";
  const size_t unit = version < kR2007 ? 8 : 16;
  return endsTexts && before.size() > after.size() && (before.size() - after.size()) % unit == 0;
}

}  // namespace

TEST(SameBits, RecordsOfOthersInTheirOwnVersion) {
  const std::vector<std::string> all = drawings();
  if (all.empty()) GTEST_SKIP() << "no drawings at hand (GC_DRAWINGS)";
  std::map<std::string, Count> counts;
  for (const std::string& path : all) {
    gc::FileView file;
    ASSERT_TRUE(file.open(path).ok());
    const int version = versionOfBytes(spanOf(file.bytes()));
    if (!isWritable(version)) continue;
    GcDbDatabase database(false, true);
    ASSERT_EQ(read(database, file.bytes()), Gcad::eOk);
    std::vector<uint8_t> bytes;
    std::string message;
    ASSERT_EQ(writeBytes(database, version, bytes, message), Gcad::eOk) << message;
    const auto before = recordsOf(spanOf(file.bytes()));
    const auto after = recordsOf(bytes);
    for (const auto& [handle, bits] : before) {
      const GcDbStub* stub = database.store().find(handle);
      const auto written = after.find(handle);
      if (stub == nullptr || stub->object == nullptr || written == after.end()) continue;
      // The root has an entry more where something is kept beside the records.
      if (stub == database.namedObjectsDictionaryId().stub()) continue;
      Count& count = counts[toUtf8(view(stub->object->isA()->name()))];
      if (isShorterByZeros(path, version, bits, written->second)) continue;
      if (written->second == bits) {
        ++count.same;
      } else if (count.different++ == 0) {
        size_t at = 0;
        while (at < bits.size() && at < written->second.size() && bits[at] == written->second[at]) ++at;
        char hex[32];
        std::snprintf(hex, sizeof hex, "%llX", static_cast<unsigned long long>(handle));
        count.example = fs::path(path).filename().string() + " " + hex + " at bit " + std::to_string(at) + " of " +
                        std::to_string(bits.size()) + ", now " + std::to_string(written->second.size());
      }
    }
  }
  for (const auto& [name, count] : counts) {
    if (std::getenv("GC_SHOW") != nullptr)
      std::printf("%-28s %6d the same, %d not %s\n", name.c_str(), count.same, count.different, count.example.c_str());
    if (kExact.count(name) != 0) {
      EXPECT_EQ(count.different, 0) << name << ": " << count.example;
    }
  }
}
