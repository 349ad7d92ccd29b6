// Objects as single records, without a file around them: written, read back, equal, in every version.
#include <gtest/gtest.h>

#include <random>

#include "db/database.h"
#include "db/dictionary.h"
#include "db/line.h"
#include "db/xrecord.h"
#include "db/zombie.h"
#include "host/db/core/extra.h"
#include "host/db/core/memoryfiler.h"
#include "host/db/core/store.h"
#include "host/db/objects/zombiedata.h"
#include "host/dwg/record/bound.h"
#include "host/dwg/record/recordcodec.h"
#include "host/rx/view.h"

using namespace gc::dwg;

namespace {

constexpr int kVersions[] = {kR13, kR14, kR2000, kR2004, kR2007, kR2010, kR2013, kR2018};

struct Bench {
  GcDbDatabase database;
  RecordContext context{database};

  explicit Bench(int version) {
    context.version = version;
    context.byLayer = database.byLayerLinetype();
    context.byBlock = database.byBlockLinetype();
    context.continuous = database.continuousLinetype();
    context.modelSpace = database.modelSpaceId();
    context.paperSpace = database.paperSpaceId();
  }

  template <class T>
  T* add(T* entity) {
    GcDbBlockTableRecord* block = nullptr;
    EXPECT_EQ(gcdbOpenObject(block, database.modelSpaceId(), GcDb::kForWrite), Gcad::eOk);
    GcDbObjectId id;
    EXPECT_EQ(block->appendGcDbEntity(id, entity), Gcad::eOk);
    EXPECT_EQ(block->close(), Gcad::eOk);
    return entity;
  }

  ReadRecord thereAndBack(const GcDbObject& object, uint32_t type, RecordLinks::Mode mode = RecordLinks::Mode::Owner) {
    RecordLinks links;
    links.mode = mode;
    const WrittenRecord written = writeRecord(context, object, type, links);
    return readRecord(context, written.body, written.handleBits);
  }

  void expectSame(const GcDbObject& object, RecordLinks::Mode mode = RecordLinks::Mode::Owner) {
    const uint32_t type = ClassMap::fixedTypeOf(view(object.isA()->name()));
    ASSERT_NE(type, 0u);
    const ReadRecord back = thereAndBack(object, type, mode);
    ASSERT_NE(back.object, nullptr) << back.trouble;
    ASSERT_FALSE(back.keptRaw) << "AC" << context.version << ": " << back.trouble;
    EXPECT_EQ(back.handle, uint64_t(object.handle()));
    EXPECT_EQ(back.object->isA(), object.isA());
    ignore(back.object->setOwnerId(back.owner));
    back.object->subLoaded();
    EXPECT_TRUE(gcdbImageOf(*back.object, GcDb::kCopyFiler) == gcdbImageOf(object, GcDb::kCopyFiler))
        << "version " << context.version;
  }
};

}  // namespace

TEST(Packing, EveryFieldItNamesIsDescribed) {
  std::string all;
  for (const std::string& each : unboundFields()) all += each + "\n";
  EXPECT_EQ(all, "");
}

TEST(Record, Line) {
  std::mt19937 rng(7);
  std::uniform_real_distribution<double> any(-5e6, 5e6);
  for (const int version : kVersions) {
    Bench bench(version);
    for (int i = 0; i < 20; ++i) {
      const double z = i % 2 == 0 ? 0 : any(rng);
      auto* line = bench.add(new GcDbLine({any(rng), any(rng), z}, {any(rng), i % 3 == 0 ? 0.0 : any(rng), 0}));
      if (i % 4 == 0) ignore(line->setThickness(any(rng)));
      if (i % 5 == 0) ignore(line->setNormal({any(rng), any(rng), any(rng)}));
      if (i % 3 == 1) ignore(line->setColorIndex(i));
      ignore(line->setLinetypeScale(1 + i));
      if (version >= kR2000) ignore(line->setLineWeight(GcDb::kLnWt025));
      if (i % 7 == 0) ignore(line->setVisibility(GcDb::kInvisible));
      ignore(line->setLinetype(i % 2 == 0 ? bench.database.continuousLinetype() : bench.database.byBlockLinetype()));
      bench.expectSame(*line, i % 2 == 0 ? RecordLinks::Mode::ModelSpace : RecordLinks::Mode::Owner);
      ignore(line->close());
    }
  }
}

TEST(Record, ExtendedDataAndDictionariesComeAlong) {
  for (const int version : kVersions) {
    Bench bench(version);
    auto* line = bench.add(new GcDbLine({1, 2, 3}, {4, 5, 6}));
    GcDbGroupList xdata;
    xdata.put(GcDbGroup::ofText(1001, GC_T("ACAD")));
    xdata.put(GcDbGroup::ofText(1000, GC_T("gru\u00df")));
    xdata.put(GcDbGroup::ofText(1002, GC_T("{")));
    xdata.put(GcDbGroup::ofReal(1040, 2.5));
    xdata.put(GcDbGroup::ofPoint(1010, {1, 2, 3}));
    xdata.put(GcDbGroup::ofInt(1070, -3));
    xdata.put(GcDbGroup::ofInt(1071, 123456));
    xdata.put(GcDbGroup::ofInt(1005, 0x1F));
    xdata.put(GcDbGroup::ofText(1003, GC_T("0")));
    const uint8_t bytes[] = {1, 2, 0, 255};
    xdata.put(GcDbGroup::ofBinary(1004, bytes));
    xdata.put(GcDbGroup::ofText(1002, GC_T("}")));
    line->needExtra().xdata = xdata;
    ignore(line->createExtensionDictionary());
    line->addPersistentReactor(bench.database.layerZero());
    bench.expectSame(*line);
    ignore(line->close());
  }
}

// Handles in extended data have their highest byte first, unlike all other numbers.
TEST(Record, HandlesInExtendedData) {
  Bench bench(kR2000);
  auto* line = bench.add(new GcDbLine({1, 2, 3}, {4, 5, 6}));
  GcDbGroupList xdata;
  xdata.put(GcDbGroup::ofText(1001, GC_T("ACAD")));
  xdata.put(GcDbGroup::ofInt(1005, 0x77A));
  line->needExtra().xdata = xdata;
  const WrittenRecord written = writeRecord(bench.context, *line, 0x13, {});
  ignore(line->close());
  bool found = false;
  for (uint64_t at = 0; at + 72 <= written.body.size() * 8 && !found; ++at) {
    BitReader in(written.body, at, at + 72);
    found = in.rc() == 5 && in.bits(48) == 0 && in.bits(16) == 0x77A;
  }
  EXPECT_TRUE(found);
}

// A colour of its own stands before the transparency, beside it the nearest one of the palette: so files of other
// programs have it.
TEST(Record, ColorThenTransparency) {
  Bench bench(kR2004);
  auto* line = bench.add(new GcDbLine({1, 2, 3}, {4, 5, 6}));
  line->needExtra().transparency = 0x020000E5;
  ignore(line->setColor(GcCmColor::fromRgb(26, 228, 100)));
  bench.expectSame(*line);
  const WrittenRecord written = writeRecord(bench.context, *line, 0x13, {});
  const int nearest = line->colorIndex();
  ignore(line->close());
  bool found = false;
  for (uint64_t at = 0; at + 90 <= written.body.size() * 8 && !found; ++at) {
    BitReader in(written.body, at, written.body.size() * 8);
    found = static_cast<uint16_t>(in.bs()) == (0xA000 | nearest) && static_cast<uint32_t>(in.bl()) == 0xC21AE464 &&
            in.bl() == 0x020000E5;
  }
  EXPECT_TRUE(found);
}

// Plot styles came with R2000.
static void takePlotStyle(GcDbLayerTableRecord& layer) {
  const GcDbClassInfo& info = *gcdbInfoOf(layer);
  for (int i = 0; i < info.rowCount; ++i)
    if (info.rows[i]->code == 390) static_cast<GcDbObjectId*>(info.rows[i]->at(&layer))->setNull();
}

TEST(Record, TableRecords) {
  for (const int version : kVersions) {
    Bench bench(version);
    GcDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(gcdbOpenObject(layer, bench.database.layerZero(), GcDb::kForWrite), Gcad::eOk);
    ignore(layer->setColor(GcCmColor::fromIndex(5)));
    if (version >= kR2000)
      ignore(layer->setLineWeight(GcDb::kLnWt211));
    else
      takePlotStyle(*layer);
    ignore(layer->setIsLocked(true));
    bench.expectSame(*layer);
    ignore(layer->setIsOff(true));
    bench.expectSame(*layer);
    ignore(layer->close());
  }
}

TEST(Record, BlockRecordKeepsItsReferencesApart) {
  for (const int version : kVersions) {
    Bench bench(version);
    GcDbLine* first = bench.add(new GcDbLine({0, 0, 0}, {1, 1, 0}));
    GcDbLine* second = bench.add(new GcDbLine({0, 0, 0}, {2, 1, 0}));
    ignore(first->close());
    ignore(second->close());
    GcDbBlockTableRecord* block = nullptr;
    ASSERT_EQ(gcdbOpenObject(block, bench.database.modelSpaceId(), GcDb::kForWrite), Gcad::eOk);
    ignore(block->setOrigin({3, 4, 5}));
    const ReadRecord back = bench.thereAndBack(*block, 0x31);
    ASSERT_NE(back.object, nullptr);
    ASSERT_FALSE(back.keptRaw) << version << back.trouble;
    auto* read = GcDbBlockTableRecord::cast(back.object.get());
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(view(read->getName()), GC_T("*Model_Space"));
    EXPECT_EQ(read->origin(), GcGePoint3d(3, 4, 5));
    EXPECT_EQ(read->blockBeginId(), block->blockBeginId());
    EXPECT_EQ(read->blockEndId(), block->blockEndId());
    EXPECT_EQ(read->getLayoutId(), version >= kR2000 ? block->getLayoutId() : GcDbObjectId());
    if (version >= kR2004) {
      EXPECT_EQ(back.links.parts, block->entities());
    } else {
      EXPECT_EQ(back.links.firstPart, uint64_t(first->handle()));
      EXPECT_EQ(back.links.lastPart, uint64_t(second->handle()));
    }
    ignore(block->close());
  }
}

TEST(Record, DictionaryAndExtensionRecord) {
  for (const int version : kVersions) {
    Bench bench(version);
    GcDbDictionary* root = nullptr;
    ASSERT_EQ(bench.database.getNamedObjectsDictionary(root, GcDb::kForWrite), Gcad::eOk);
    auto* record = new GcDbXrecord;
    GcDbObjectId id;
    ASSERT_EQ(root->setAt(GC_T("\u017b\u00f3\u0142\u0107"), record, id), Gcad::eOk);
    record->groups().put(GcDbGroup::ofText(1, GC_T("text")));
    record->groups().put(GcDbGroup::ofReal(40, 1.25));
    record->groups().put(GcDbGroup::ofInt(70, -1));
    record->groups().put(GcDbGroup::ofInt(90, 70000));
    record->groups().put(GcDbGroup::ofInt(280, 3));
    record->groups().put(GcDbGroup::ofInt(290, 1));
    record->groups().put(GcDbGroup::ofPoint(10, {1, 2, 3}));
    record->groups().put(GcDbGroup::ofId(330, bench.database.layerZero()));
    record->groups().put(GcDbGroup::ofId(360, {}));
    bench.expectSame(*record);
    ignore(record->close());
    bench.expectSame(*root);
    ignore(root->close());
  }
}

TEST(Record, UnknownClassesKeepEveryBit) {
  for (const int version : kVersions) {
    Bench bench(version);
    bench.context.classes.add({500, GC_T("STRANGE"), GC_T("XxStrange"), GC_T("xx"), true, false, 0, 1, 0, 0});
    auto* line = bench.add(new GcDbLine({1, 2, 3}, {4, 5, 6}));
    ReadRecord strange = bench.thereAndBack(*line, 500);
    ASSERT_NE(strange.object, nullptr);
    EXPECT_TRUE(strange.keptRaw);
    auto* zombie = GcDbZombieEntity::cast(strange.object.get());
    ASSERT_NE(zombie, nullptr);
    EXPECT_EQ(view(zombie->data().dxfName), GC_T("STRANGE"));
    EXPECT_EQ(zombie->layerId(), line->layerId());
    EXPECT_GT(zombie->data().bitCount, 100);

    RecordLinks links;
    const WrittenRecord original = writeRecord(bench.context, *line, 500, links);
    // The zombie gets the line's place, so that the record is written with the same handle and owner.
    GcDbStub* stub = line->objectId().stub();
    ignore(line->close());
    GcDbObject* old = bench.database.store().replace(stub, strange.object.release());
    const WrittenRecord again = writeRecord(bench.context, *stub->object, 500, links);
    EXPECT_EQ(again.body, original.body) << version;
    EXPECT_EQ(again.handleBits, original.handleBits);
    delete old;
  }
}

TEST(Record, CutRecordsAreRefusedNotGuessed) {
  for (const int version : kVersions) {
    Bench bench(version);
    auto* line = bench.add(new GcDbLine({1, 2, 3}, {4, 5, 6}));
    RecordLinks links;
    const WrittenRecord whole = writeRecord(bench.context, *line, 0x13, links);
    ignore(line->close());
    for (size_t size = 0; size < whole.body.size(); ++size) {
      const ReadRecord back =
          readRecord(bench.context, std::span(whole.body).first(size), std::min(whole.handleBits, uint64_t{size * 8}));
      if (back.object != nullptr && !back.keptRaw) {
        FAIL() << "a record of " << whole.body.size() << " bytes cut to " << size << " was taken for whole";
      }
    }
  }
}

TEST(Record, FlippedBitsNeverHarm) {
  std::mt19937 rng(99);
  for (const int version : kVersions) {
    Bench bench(version);
    GcDbBlockTableRecord* block = nullptr;
    ASSERT_EQ(gcdbOpenObject(block, bench.database.modelSpaceId(), GcDb::kForRead), Gcad::eOk);
    RecordLinks links;
    const WrittenRecord whole = writeRecord(bench.context, *block, 0x31, links);
    ignore(block->close());
    for (int round = 0; round < 2000; ++round) {
      std::vector<uint8_t> body = whole.body;
      for (int flips = 0; flips < 3; ++flips) body[rng() % body.size()] ^= static_cast<uint8_t>(1u << rng() % 8);
      const ReadRecord back = readRecord(bench.context, body, whole.handleBits);
      EXPECT_TRUE(back.object != nullptr || !back.trouble.empty());
    }
  }
}
