// A law for every described class: an object of generated values through every format and version comes back equal, or
// what is told of the save names it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "db/database.h"
#include "db/dictionary.h"
#include "db/symboltable.h"
#include "db/zombie.h"
#include "host/db/core/savereport.h"
#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"
#include "host/dwg/file/dwgfile.h"
#include "host/dxf/dxf_file.h"
#include "host/rx/text/number.h"
#include "host/rx/view.h"
#include "tests/db/generate.h"

namespace {

unsigned seedOfRun() {
  static const unsigned seed = [] {
    const char* given = std::getenv("GC_SEED");
    return given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : std::random_device{}();
  }();
  return seed;
}

bool isAngle(int code) { return code >= 50 && code <= 58; }

std::string shortened(double value) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.15g", value);
  return buffer;
}

std::string shown(const GcDbGroup& group) {
  std::string text = std::to_string(group.code) + "=";
  switch (group.kind) {
    case GcDbGroupKind::Text: return text + toUtf8(group.text);
    case GcDbGroupKind::Id: return text + "#" + std::to_string(uint64_t{group.id.handle()});
    case GcDbGroupKind::Point2d:
    case GcDbGroupKind::Point3d:
      for (const double part : {group.point.x, group.point.y, group.point.z}) text += gc::realText(part) + " ";
      return text;
    case GcDbGroupKind::Binary: {
      for (const uint8_t byte : group.bytes) text += std::to_string(byte) + ",";
      return text;
    }
    // Angles are degrees in files: of the radians that lead to the same degrees one comes back.
    case GcDbGroupKind::Real: return text + (isAngle(group.code) ? shortened(group.real) : gc::realText(group.real));
    default: return text + std::to_string(group.integer);
  }
}

using Lines = std::vector<std::string>;

Lines linesOf(const GcDbObject& object) {
  constexpr int kInPaperSpace = 67;  // follows from the block the entity stands in
  GcDbGroupList groups;
  gcdbFieldsOut(object, groups, GcDb::kDHL_Current);
  Lines lines{toUtf8(view(object.isA()->name()))};
  GcDbGroupList::Cursor cursor(groups);
  for (GcDbGroup group; cursor.next(group);)
    if (group.code != kInPaperSpace) lines.push_back(shown(group));
  return lines;
}

// What differs, line by line from both ends.
std::string difference(Lines before, Lines after) {
  while (!before.empty() && !after.empty() && before.back() == after.back()) {
    before.pop_back();
    after.pop_back();
  }
  size_t same = 0;
  while (same < before.size() && same < after.size() && before[same] == after[same]) ++same;
  std::string text;
  for (size_t i = same; i < before.size(); ++i) text += "- " + before[i] + "\n";
  for (size_t i = same; i < after.size(); ++i) text += "+ " + after[i] + "\n";
  return text;
}

// Classes whose objects stand in places of their own, which no test object can take: tables, begins and ends, parts of
// other entities, definitions of blocks; those that hold what came from other files; and regions, whose bytes mean
// something (the tests of modeler data take real ones).
bool hasAPlaceOfItsOwn(const GcRxClass& kind) {
  for (const GCHAR* base :
       {GC_T("AcDbSymbolTable"), GC_T("AcDbSymbolTableRecord"), GC_T("AcDbBlockBegin"), GC_T("AcDbBlockEnd"),
        GC_T("AcDbSequenceEnd"), GC_T("AcDbVertex"), GC_T("AcDbAttribute"), GC_T("AcDb2dVertex"),
        GC_T("AcDb3dPolylineVertex"), GC_T("AcDbPolygonMeshVertex"), GC_T("AcDbPolyFaceMeshVertex"),
        GC_T("AcDbFaceRecord"), GC_T("AcDbDictionary"), GC_T("AcDbRegion")}) {
    const GcRxClass* each = gcrxFindGcRxClass(base);
    if (each != nullptr && kind.isDerivedFrom(each)) return true;
  }
  return kind.isDerivedFrom(GcDbZombieObject::desc()) || kind.isDerivedFrom(GcDbZombieEntity::desc());
}

GcDbObjectId put(GcDbDatabase& database, GcDbObject* object) {
  GcDbObjectId id;
  if (auto* entity = GcDbEntity::cast(object)) {
    GcDbBlockTableRecord* space = nullptr;
    EXPECT_EQ(gcdbOpenObject(space, database.modelSpaceId(), GcDb::kForWrite), Gcad::eOk);
    EXPECT_EQ(space->appendGcDbEntity(id, entity), Gcad::eOk);
    ignore(space->close());
  } else {
    GcDbDictionary* root = nullptr;
    EXPECT_EQ(gcdbOpenObject(root, database.namedObjectsDictionaryId(), GcDb::kForWrite), Gcad::eOk);
    EXPECT_EQ(root->setAt(GC_T("TESTED"), object, id), Gcad::eOk);
    ignore(root->close());
  }
  return id;
}

bool names(const GcDbSaveReport& report, uint64_t handle) {
  for (const GcDbSaveEntry& entry : report.entries()) {
    if (entry.handle == handle) return true;
    if ((entry.text + ",").find(" " + gc::hexText(handle) + ",") != std::string::npos) return true;
  }
  return false;
}

struct Format {
  bool isDwg;
  int version;
};

constexpr Format kFormats[] = {{false, GcDb::kDHL_AC1015}, {false, GcDb::kDHL_AC1018}, {false, GcDb::kDHL_AC1021},
                               {false, GcDb::kDHL_AC1024}, {false, GcDb::kDHL_AC1027}, {false, GcDb::kDHL_AC1032},
                               {true, GcDb::kDHL_AC1015},  {true, GcDb::kDHL_AC1018},  {true, GcDb::kDHL_AC1024},
                               {true, GcDb::kDHL_AC1027},  {true, GcDb::kDHL_AC1032},  {false, GcDb::kDHL_AC1009}};

// The file's bytes; empty when it could not be written.
std::string saved(GcDbDatabase& database, const Format& format, GcDbSaveReport& report) {
  if (format.isDwg) {
    std::vector<uint8_t> bytes;
    std::string message;
    if (gc::dwg::writeBytes(database, format.version, bytes, message, &report) != Gcad::eOk) return {};
    return {bytes.begin(), bytes.end()};
  }
  gc::dxf::StringSink sink;
  gc::dxf::WriteOptions options;
  options.version = static_cast<GcDb::GcDbDwgVersion>(format.version);
  options.report = &report;
  return gc::dxf::write(database, sink, options) == Gcad::eOk ? std::move(sink.text()) : std::string();
}

class ClassCrossing : public testing::TestWithParam<GcRxClass*> {};

TEST_P(ClassCrossing, ComesBackEqualOrIsNamed) {
  if (hasAPlaceOfItsOwn(*GetParam())) GTEST_SKIP() << "stands in a place of its own";
  SCOPED_TRACE("GC_SEED=" + std::to_string(seedOfRun()));
  constexpr int kRounds = 3;
  for (const Format& format : kFormats) {
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
      SCOPED_TRACE((format.isDwg ? "DWG " : "DXF ") + std::to_string(format.version));
      GcDbDatabase database;
      auto* object = static_cast<GcDbObject*>(GetParam()->create());
      const GcDbObjectId id = put(database, object);
      ObjectGenerator generator(database, seedOfRun() + static_cast<unsigned>(round));
      generator.fill(*object);
      object->subLoaded();
      ignore(object->close());
      const Lines before = linesOf(*object);
      GcDbSaveReport report;
      const std::string file = saved(database, format, report);
      GcDbDatabase back(false, true);
      ASSERT_EQ(format.isDwg ? gc::dwg::read(back, file) : gc::dxf::read(back, file), Gcad::eOk);
      const GcDbStub* stub = back.store().find(id.handle());
      const Lines after = stub != nullptr && stub->object != nullptr ? linesOf(*stub->object) : Lines();
      EXPECT_TRUE(after == before || names(report, id.handle())) << difference(before, after);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(EveryClass, ClassCrossing,
                         testing::ValuesIn(gcdbDescribedClasses().begin(), gcdbDescribedClasses().end()),
                         [](const testing::TestParamInfo<GcRxClass*>& each) {
                           return toUtf8(view(each.param->name()));
                         });

}  // namespace
