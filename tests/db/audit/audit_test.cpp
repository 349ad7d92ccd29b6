// Every defect of the catalogue: made, found by its code, mended, not found again.
#include "host/db/audit/audit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>

#include "db/blockreference.h"
#include "db/circle.h"
#include "db/dictionary.h"
#include "db/line.h"
#include "db/mesh.h"
#include "db/polyline2d.h"
#include "db/spline.h"
#include "db/text.h"
#include "db/xrecord.h"
#include "host/db/audit/auditor.h"
#include "host/db/core/extra.h"
#include "host/db/core/loader.h"
#include "host/db/describe/fieldio.h"
#include "host/rx/view.h"

namespace {

class Audit : public testing::Test {
 protected:
  template <class Entity>
  Entity* add(Entity* entity, GcDbObjectId blockId = {}) {
    GcDbBlockTableRecord* block = nullptr;
    EXPECT_EQ(gcdbOpenObject(block, blockId.isNull() ? m_database.modelSpaceId() : blockId, GcDb::kForWrite),
              Gcad::eOk);
    entity->setDatabaseDefaults(&m_database);
    EXPECT_EQ(block->appendGcDbEntity(entity), Gcad::eOk);
    EXPECT_EQ(block->close(), Gcad::eOk);
    EXPECT_EQ(entity->close(), Gcad::eOk);
    return entity;
  }

  GcDbBlockTableRecord* addBlock(const GCHAR* name) {
    GcDbBlockTable* table = nullptr;
    EXPECT_EQ(m_database.getSymbolTable(table, GcDb::kForWrite), Gcad::eOk);
    auto* block = new GcDbBlockTableRecord;
    EXPECT_EQ(block->setName(name), Gcad::eOk);
    EXPECT_EQ(table->add(block), Gcad::eOk);
    EXPECT_EQ(block->close(), Gcad::eOk);
    EXPECT_EQ(table->close(), Gcad::eOk);
    GcDbLoader::completeBlock(block->objectId());
    return block;
  }

  GcDbDictionary& root() { return *gcdbLive<GcDbDictionary>(m_database.namedObjectsDictionaryId()); }

  // An id that nothing has.
  GcDbObjectId nothing() { return GcDbObjectId(m_database.store().need(0xABC)); }

  // Exactly this defect, however often.
  void expectOnly(GcDbDefect defect, bool canBeMended = true) {
    const GcDbAuditReport before = gcdbAudit(m_database, false);
    EXPECT_FALSE(before.isClean());
    EXPECT_EQ(before.mended(), 0);
    for (const GcDbAuditEntry& entry : before.entries)
      EXPECT_EQ(entry.defect, defect) << GcDbAuditReport::describe(entry);
    EXPECT_EQ(gcdbAudit(m_database, false).entries.size(), before.entries.size()) << "looking changes nothing";
    const GcDbAuditReport mended = gcdbAudit(m_database, true);
    if (!canBeMended) {
      EXPECT_EQ(mended.mended(), 0);
      return;
    }
    EXPECT_EQ(mended.mended(), static_cast<int>(mended.entries.size()));
    for (const GcDbAuditEntry& entry : gcdbAudit(m_database, false).entries)
      ADD_FAILURE() << "still: " << GcDbAuditReport::describe(entry);
  }

  GcDbDatabase m_database;
};

TEST_F(Audit, ANewDrawingIsClean) { EXPECT_TRUE(gcdbAudit(m_database, false).isClean()); }

TEST_F(Audit, TheCatalogueStandsInTheManual) {
  std::ifstream file(GC_SOURCE_DIR "/docs/audit.md");
  std::stringstream text;
  text << file.rdbuf();
  for (int i = 0; i < static_cast<int>(GcDbDefect::Count); ++i) {
    const GcDbDefectKind& kind = gcdbKindOfDefect(static_cast<GcDbDefect>(i));
    EXPECT_EQ(static_cast<int>(kind.defect), i);
    const std::string row = std::string("| ") + kind.code + " | " + kind.found + " | ";
    EXPECT_NE(text.str().find(row + (kind.done != nullptr ? kind.done : "none")), std::string::npos) << row;
  }
}

TEST_F(Audit, MissingRecords) {
  m_database.layerZero().stub()->erased = true;
  m_database.tableId(GcDbDatabase::kViews).stub()->erased = true;
  const GcDbAuditReport found = gcdbAudit(m_database, false);
  const auto missing = std::count_if(found.entries.begin(), found.entries.end(), [](const GcDbAuditEntry& entry) {
    return entry.defect == GcDbDefect::MissingRecord;
  });
  EXPECT_EQ(missing, 2);
}

TEST_F(Audit, BlocksWithoutEnds) {
  GcDbBlockTableRecord* block = addBlock(GC_T("A"));
  GcDbLoader::setBlockEnd(*block, GcDbObjectId());
  expectOnly(GcDbDefect::BlockWithoutEnds);
}

TEST_F(Audit, ATakenSeed) {
  m_database.store().need(0x7FFF);
  expectOnly(GcDbDefect::HandleSeed);
  EXPECT_GT(m_database.store().handseed(), 0x7FFFu);
}

TEST_F(Audit, NamesOfRecords) {
  GcDbLoader::setName(*addBlock(GC_T("A")), GcString(GC_T("a<b")));
  expectOnly(GcDbDefect::RecordName);
}

TEST_F(Audit, TwoRecordsOfOneName) {
  addBlock(GC_T("A"));
  GcDbBlockTableRecord* second = addBlock(GC_T("B"));
  GcDbLoader::setName(*second, GcString(GC_T("a")));
  expectOnly(GcDbDefect::DuplicateName);
  EXPECT_EQ(toUtf8(view(second->getName())), "a$1");
}

// The record the drawing goes by keeps the name, wherever it stands.
TEST_F(Audit, ASecondLayerZero) {
  GcDbLayerTable* table = nullptr;
  ASSERT_EQ(gcdbOpenObject(table, m_database.layerTableId(), GcDb::kForWrite), Gcad::eOk);
  auto* second = new GcDbLayerTableRecord;
  ASSERT_EQ(second->setName(GC_T("B")), Gcad::eOk);
  ASSERT_EQ(table->add(second), Gcad::eOk);
  ignore(second->close());
  ignore(table->close());
  GcDbLoader::setName(*second, GcString(GC_T("0")));
  auto& records = const_cast<GcDbObjectIdArray&>(table->records());
  std::swap(records[0], records[records.length() - 1]);
  expectOnly(GcDbDefect::DuplicateName);
  EXPECT_EQ(toUtf8(view(second->getName())), "0$1");
}

TEST_F(Audit, OwnersInACircle) {
  auto* first = new GcDbXrecord;
  auto* second = new GcDbXrecord;
  GcDbObjectId id;
  ASSERT_EQ(m_database.addGcDbObject(id, first), Gcad::eOk);
  ASSERT_EQ(m_database.addGcDbObject(id, second, first->objectId()), Gcad::eOk);
  EXPECT_EQ(first->close(), Gcad::eOk);
  EXPECT_EQ(second->close(), Gcad::eOk);
  GcDbLoader::setOwner(*first, second->objectId());
  expectOnly(GcDbDefect::OwnerCycle);
}

TEST_F(Audit, WrongOwners) {
  GcDbLine* line = add(new GcDbLine);
  GcDbLoader::setOwner(*line, m_database.layerTableId());
  expectOnly(GcDbDefect::WrongOwner);
  EXPECT_EQ(line->ownerId(), m_database.modelSpaceId());
}

TEST_F(Audit, EntitiesInNoBlock) {
  auto* line = new GcDbLine;
  GcDbObjectId id;
  ASSERT_EQ(line->setLayer(m_database.layerZero()), Gcad::eOk);
  ASSERT_EQ(m_database.addGcDbObject(id, line), Gcad::eOk);
  EXPECT_EQ(line->close(), Gcad::eOk);
  expectOnly(GcDbDefect::NoOwner);
  EXPECT_EQ(line->ownerId(), m_database.modelSpaceId());
}

TEST_F(Audit, EntitiesListedTwice) {
  GcDbLine* line = add(new GcDbLine);
  auto& model = *gcdbLive<GcDbBlockTableRecord>(m_database.modelSpaceId());
  GcDbLoader::appendEntity(model, line->objectId());
  GcDbLoader::appendEntity(*addBlock(GC_T("A")), line->objectId());
  expectOnly(GcDbDefect::EntityTwice);
  EXPECT_EQ(model.entities().length(), 1);
}

TEST_F(Audit, EntitiesTheirBlockDoesNotList) {
  add(new GcDbLine);
  GcDbLoader::setEntities(*gcdbLive<GcDbBlockTableRecord>(m_database.modelSpaceId()), {});
  expectOnly(GcDbDefect::NotListed);
}

TEST_F(Audit, BlocksInThemselves) {
  GcDbBlockTableRecord *a = addBlock(GC_T("A")), *b = addBlock(GC_T("B"));
  GcDbBlockReference* first = add(new GcDbBlockReference({}, b->objectId()), a->objectId());
  GcDbBlockReference* second = add(new GcDbBlockReference({}, a->objectId()), b->objectId());
  expectOnly(GcDbDefect::BlockInItself);
  EXPECT_NE(first->isErased(), second->isErased()) << "one of them goes";
}

TEST_F(Audit, ReferencesWithoutTheirBlock) {
  GcDbBlockTableRecord* block = addBlock(GC_T("A"));
  GcDbBlockReference* reference = add(new GcDbBlockReference({}, block->objectId()));
  block->objectId().stub()->erased = true;
  expectOnly(GcDbDefect::NoBlock);
  EXPECT_TRUE(reference->isErased());
}

TEST_F(Audit, ReferencesToNothing) {
  GcDbLayerTable* layers = nullptr;
  ASSERT_EQ(m_database.getLayerTable(layers, GcDb::kForWrite), Gcad::eOk);
  auto* layer = new GcDbLayerTableRecord;
  ASSERT_EQ(layer->setName(GC_T("A")), Gcad::eOk);
  ASSERT_EQ(layers->add(layer), Gcad::eOk);
  EXPECT_EQ(layer->close(), Gcad::eOk);
  EXPECT_EQ(layers->close(), Gcad::eOk);
  GcDbLine* line = add(new GcDbLine);
  {
    const GcDbMending writing(*line);
    ASSERT_EQ(line->setLayer(layer->objectId()), Gcad::eOk);
  }
  layer->objectId().stub()->erased = true;
  expectOnly(GcDbDefect::DanglingReference);
  EXPECT_EQ(line->layerId(), m_database.layerZero());
}

TEST_F(Audit, ExtensionDictionariesOfTwoObjects) {
  GcDbLine *line = add(new GcDbLine), *other = add(new GcDbLine);
  auto* dictionary = new GcDbDictionary;
  GcDbObjectId id;
  ASSERT_EQ(m_database.addGcDbObject(id, dictionary, other->objectId()), Gcad::eOk);
  EXPECT_EQ(dictionary->close(), Gcad::eOk);
  line->needExtra().extensionDictionary = id;
  other->needExtra().extensionDictionary = id;
  expectOnly(GcDbDefect::ExtensionDictionary);
  EXPECT_TRUE(line->extra()->extensionDictionary.isNull());
  EXPECT_EQ(other->extra()->extensionDictionary, id);
}

// Owners one above the other without end: no worse than as many beside each other.
TEST_F(Audit, LongChainsOfOwners) {
  GcDbObjectId owner = m_database.namedObjectsDictionaryId();
  for (int i = 0; i < 100000; ++i) {
    auto* record = new GcDbXrecord;
    ASSERT_EQ(m_database.addGcDbObject(owner, record, owner), Gcad::eOk);
    EXPECT_EQ(record->close(), Gcad::eOk);
  }
  EXPECT_TRUE(gcdbAudit(m_database, false).isClean());
  GcDbLoader::setOwner(root(), owner);
  expectOnly(GcDbDefect::OwnerCycle);
}

TEST_F(Audit, ReactorsThatAreNotThere) {
  m_database.store().raiseHandseed(0x1000);
  add(new GcDbLine)->needExtra().reactors.append(nothing());
  expectOnly(GcDbDefect::DanglingReactor);
}

TEST_F(Audit, ExtensionDictionariesThatAreNone) {
  GcDbLine *line = add(new GcDbLine), *other = add(new GcDbLine);
  line->needExtra().extensionDictionary = other->objectId();
  const GcDbAuditReport found = gcdbAudit(m_database, false);
  ASSERT_FALSE(found.isClean());
  EXPECT_TRUE(std::any_of(found.entries.begin(), found.entries.end(),
                          [](const GcDbAuditEntry& entry) { return entry.defect == GcDbDefect::ExtensionDictionary; }));
  m_database.store().raiseHandseed(0x1000);
  line->needExtra().extensionDictionary = nothing();
  expectOnly(GcDbDefect::ExtensionDictionary);
}

TEST_F(Audit, EntriesWithoutAnObject) {
  m_database.store().raiseHandseed(0x1000);
  root().appendEntry(GcString(GC_T("A")), nothing());
  const int before = root().entries().length();
  expectOnly(GcDbDefect::DictionaryEntry);
  EXPECT_EQ(root().entries().length(), before - 1);
}

TEST_F(Audit, KeysOfEntries) {
  for (const GCHAR* key : {GC_T("A"), GC_T("a"), GC_T("")}) {
    auto* record = new GcDbXrecord;
    GcDbObjectId id;
    ASSERT_EQ(m_database.addGcDbObject(id, record, root().objectId()), Gcad::eOk);
    EXPECT_EQ(record->close(), Gcad::eOk);
    root().appendEntry(GcString(key), id);
  }
  expectOnly(GcDbDefect::DictionaryKey);
}

TEST_F(Audit, SequencesWithoutTheirEnd) {
  auto* polyline = add(new GcDb2dPolyline);
  auto* vertex = new GcDb2dVertex;
  GcDbObjectId id;
  ASSERT_EQ(vertex->setLayer(m_database.layerZero()), Gcad::eOk);
  ASSERT_EQ(m_database.addGcDbObject(id, vertex, polyline->objectId()), Gcad::eOk);
  EXPECT_EQ(vertex->close(), Gcad::eOk);
  polyline->needExtra().parts.append(id);
  polyline->needExtra().sequenceEnd = GcDbObjectId();
  expectOnly(GcDbDefect::SequenceEnd);
}

TEST_F(Audit, NumbersThatAreNone) {
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  GcDbLine* line = add(new GcDbLine({kNone, 1, 2}, {HUGE_VAL, 0, 0}));
  expectOnly(GcDbDefect::NotFinite);
  EXPECT_TRUE(line->startPoint() == GcGePoint3d(0, 0, 0));
}

TEST_F(Audit, DirectionsOfNoLength) {
  GcDbLine* line = add(new GcDbLine({0, 0, 0}, {1, 0, 0}));
  const GcDbMending writing(*line);
  const GcDbClassInfo* info = gcdbInfoOf(*line);
  for (int i = 0; i < info->rowCount; ++i)
    if (info->rows[i]->is == Is::Normal) *static_cast<GcGeVector3d*>(info->rows[i]->at(line)) = {0, 0, 0};
  expectOnly(GcDbDefect::Direction);
}

TEST_F(Audit, Looks) {
  GcDbLine* line = add(new GcDbLine({0, 0, 0}, {1, 0, 0}));
  {
    const GcDbMending writing(*line);
    ASSERT_EQ(line->setColor(GcCmEntityColor::fromIndex(300)), Gcad::eOk);
  }
  expectOnly(GcDbDefect::Color);
  EXPECT_TRUE(line->color().isByLayer());
}

TEST_F(Audit, Sizes) {
  GcDbCircle* circle = add(new GcDbCircle({0, 0, 0}, GcGeVector3d::kZAxis, 1));
  const GcDbClassInfo* info = gcdbInfoOf(*circle);
  for (int i = 0; i < info->rowCount; ++i)
    if (info->rows[i]->code == 40) *static_cast<double*>(info->rows[i]->at(circle)) = -1;
  expectOnly(GcDbDefect::Size);
  EXPECT_TRUE(circle->isErased());
}

TEST_F(Audit, LinetypeScalesAndWeights) {
  GcDbLine* line = add(new GcDbLine({0, 0, 0}, {1, 0, 0}));
  const GcDbClassInfo* info = gcdbInfoOf(*line);
  const auto rowOf = [&](int code) {
    return *std::find_if(info->rows, info->rows + info->rowCount,
                         [&](const GcDbField* row) { return row->code == code; });
  };
  gcdbSetValue(*rowOf(48), rowOf(48)->at(line), GcDbGroup::ofReal(48, -1), nullptr);
  expectOnly(GcDbDefect::LinetypeScale);
  gcdbSetValue(*rowOf(370), rowOf(370)->at(line), GcDbGroup::ofInt(370, 77), nullptr);
  expectOnly(GcDbDefect::LineWeight);
}

TEST_F(Audit, CountsThatDoNotFit) {
  auto* mesh = add(new GcDbPolygonMesh);
  const GcDbMending writing(*mesh);
  ASSERT_EQ(mesh->setMSize(3), Gcad::eOk);
  ASSERT_EQ(mesh->setNSize(4), Gcad::eOk);
  expectOnly(GcDbDefect::Counts, false);
}

TEST_F(Audit, ExtendedData) {
  GcDbGroupList& xdata = add(new GcDbLine({0, 0, 0}, {1, 0, 0}))->needExtra().xdata;
  xdata.put(GcDbGroup::ofText(1001, GC_T("NOBODY")));
  xdata.put(GcDbGroup::ofInt(1070, 1));
  expectOnly(GcDbDefect::Application);
  xdata.put(GcDbGroup::ofText(1002, GC_T("{")));
  expectOnly(GcDbDefect::DataBraces);
  EXPECT_TRUE(xdata.isEmpty());
}

}  // namespace
