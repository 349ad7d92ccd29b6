// Copies within a drawing and across drawings: what goes along, where references lead, what the map says.
#include <gtest/gtest.h>

#include "db/database.h"
#include "db/dictionary.h"
#include "db/idmapping.h"
#include "db/line.h"
#include "db/text.h"
#include "db/xrecord.h"
#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"
#include "host/db/objects/contextdata.h"
#include "host/db/objects/draworder.h"
#include "host/db/objects/standard.h"
#include "host/db/objects/textfield.h"
#include "host/rx/view.h"

namespace {

GcDbObjectId addLine(GcDbDatabase& database, const GcGePoint3d& to) {
  GcDbBlockTableRecord* space = nullptr;
  EXPECT_EQ(gcdbOpenObject(space, database.modelSpaceId(), GcDb::kForWrite), Gcad::eOk);
  auto* line = new GcDbLine({0, 0, 0}, to);
  GcDbObjectId id;
  EXPECT_EQ(space->appendGcDbEntity(id, line), Gcad::eOk);
  EXPECT_EQ(space->close(), Gcad::eOk);
  EXPECT_EQ(line->close(), Gcad::eOk);
  return id;
}

GcDbObjectId addLayer(GcDbDatabase& database, const GCHAR* name, int color) {
  GcDbLayerTable* layers = nullptr;
  EXPECT_EQ(database.getSymbolTable(layers, GcDb::kForWrite), Gcad::eOk);
  auto* layer = new GcDbLayerTableRecord;
  EXPECT_EQ(layer->setName(name), Gcad::eOk);
  EXPECT_EQ(layer->setColor(GcCmColor::fromIndex(color)), Gcad::eOk);
  GcDbObjectId id;
  EXPECT_EQ(layers->add(id, layer), Gcad::eOk);
  EXPECT_EQ(layer->close(), Gcad::eOk);
  EXPECT_EQ(layers->close(), Gcad::eOk);
  return id;
}

template <class T, class F>
void change(GcDbObjectId id, const F& f) {
  T* object = nullptr;
  ASSERT_EQ(gcdbOpenObject(object, id, GcDb::kForWrite), Gcad::eOk);
  f(*object);
  EXPECT_EQ(object->close(), Gcad::eOk);
}

GcDbObjectId onlyCopy(const GcDbIdMapping& map, GcDbObjectId source) {
  const GcDbObjectId copy = map.valueOf(source);
  EXPECT_FALSE(copy.isNull());
  return copy;
}

TEST(DeepClone, CopiesEntityWithItsDictionaryAndData) {
  GcDbDatabase database;
  const GcDbObjectId source = addLine(database, {1, 2, 3});
  const GcDbObjectId other = addLine(database, {9, 9, 9});
  change<GcDbLine>(source, [&](GcDbLine& line) {
    EXPECT_EQ(line.createExtensionDictionary(), Gcad::eOk);
    line.addPersistentReactor(other);
  });
  change<GcDbDictionary>(source.stub()->object->extensionDictionary(), [&](GcDbDictionary& dictionary) {
    auto* record = new GcDbXrecord;
    GcDbObjectId id;
    EXPECT_EQ(dictionary.setAt(GC_T("DATA"), record, id), Gcad::eOk);
    resbuf* data = gcutBuildList(1, GC_T("text"), 70, 5, 0);
    EXPECT_EQ(record->setFromRbChain(*data), Gcad::eOk);
    gcutRelRb(data);
    EXPECT_EQ(record->close(), Gcad::eOk);
  });
  GcDbObjectIdArray ids;
  ids.append(source);
  GcDbIdMapping map;
  ASSERT_EQ(database.deepCloneObjects(ids, database.modelSpaceId(), map, false), Gcad::eOk);
  const GcDbObjectId copy = onlyCopy(map, source);
  EXPECT_NE(copy, source);
  EXPECT_NE(copy.handle(), source.handle());
  GcDbIdMappingIter iter(map);
  GcDbIdPair first;
  ASSERT_TRUE(iter.getMap(first));
  EXPECT_TRUE(first.isCloned() && first.isPrimary());
  EXPECT_EQ(first.key(), source);

  change<GcDbLine>(copy, [&](GcDbLine& line) {
    EXPECT_EQ(line.endPoint(), GcGePoint3d(1, 2, 3));
    EXPECT_EQ(line.ownerId(), database.modelSpaceId());
    EXPECT_EQ(line.persistentReactors().length(), 0);  // the listener was not copied
    const GcDbObjectId dictionaryId = line.extensionDictionary();
    EXPECT_NE(dictionaryId, source.stub()->object->extensionDictionary());
    GcDbDictionary* dictionary = nullptr;
    ASSERT_EQ(gcdbOpenObject(dictionary, dictionaryId, GcDb::kForRead), Gcad::eOk);
    EXPECT_EQ(dictionary->ownerId(), copy);
    GcDbXrecord* record = nullptr;
    ASSERT_EQ(dictionary->getAt(GC_T("DATA"), record, GcDb::kForRead), Gcad::eOk);
    resbuf* data = record->rbChain();
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(view(data->resval.rstring), GcView(GC_T("text")));
    gcutRelRb(data);
    EXPECT_EQ(record->close(), Gcad::eOk);
    EXPECT_EQ(dictionary->close(), Gcad::eOk);
  });
  EXPECT_EQ(database.store().openCount(), 0);
}

TEST(WblockClone, BringsTheLayerAlongOnce) {
  GcDbDatabase source, target;
  const GcDbObjectId wall = addLayer(source, GC_T("Wall"), 3);
  const GcDbObjectId a = addLine(source, {1, 0, 0});
  const GcDbObjectId b = addLine(source, {2, 0, 0});
  for (const GcDbObjectId id : {a, b})
    change<GcDbLine>(id, [&](GcDbLine& line) { EXPECT_EQ(line.setLayer(wall), Gcad::eOk); });
  GcDbObjectIdArray ids;
  ids.append(a);
  ids.append(b);
  GcDbIdMapping map;
  ASSERT_EQ(source.wblockCloneObjects(ids, target.modelSpaceId(), map, GcDb::kDrcIgnore), Gcad::eOk);
  GcDbObjectId layer;
  change<GcDbLine>(map.valueOf(a), [&](GcDbLine& line) { layer = line.layerId(); });
  change<GcDbLine>(map.valueOf(b), [&](GcDbLine& line) { EXPECT_EQ(line.layerId(), layer); });
  EXPECT_EQ(layer.database(), &target);
  change<GcDbLayerTableRecord>(layer, [&](GcDbLayerTableRecord& record) {
    EXPECT_EQ(record.getName(), GcString(GC_T("Wall")));
    EXPECT_EQ(record.color().colorIndex(), 3);
    EXPECT_EQ(record.linetypeObjectId(), target.continuousLinetype());
  });
  EXPECT_EQ(source.store().openCount() + target.store().openCount(), 0);
}

GcDbObjectId addScale(GcDbDatabase& database, const GCHAR* key, const GCHAR* name, double units) {
  GcDbObjectId list, id;
  change<GcDbDictionary>(database.namedObjectsDictionaryId(),
                         [&](GcDbDictionary& root) { EXPECT_EQ(root.getAt(GC_T("ACAD_SCALELIST"), list), Gcad::eOk); });
  change<GcDbDictionary>(list, [&](GcDbDictionary& scales) {
    auto* scale = new GcDbScale(name, 1, units, false);
    EXPECT_EQ(scales.setAt(key, scale, id), Gcad::eOk);
    EXPECT_EQ(scale->close(), Gcad::eOk);
  });
  return id;
}

// How the entity looks at the scale, under the key in its extension dictionary.
void addContext(GcDbObjectId entity, const GCHAR* key, GcDbObjectId scale) {
  change<GcDbDictionary>(entity.stub()->object->extensionDictionary(), [&](GcDbDictionary& dictionary) {
    auto* context = new GcDbAnnotScaleObjectContextData;
    GcDbObjectId id;
    EXPECT_EQ(dictionary.setAt(key, context, id), Gcad::eOk);
    GcDbFieldReader reader(*context, GcDb::kDHL_Current);
    EXPECT_TRUE(reader.take(GcDbGroup::ofText(100, GC_T("AcDbAnnotScaleObjectContextData"))));
    EXPECT_TRUE(reader.take(GcDbGroup::ofId(340, scale)));
    EXPECT_EQ(context->close(), Gcad::eOk);
  });
}

GcDbObjectId scaleOf(GcDbObjectId entity, const GCHAR* key) {
  GcDbObjectId scale;
  change<GcDbDictionary>(entity.stub()->object->extensionDictionary(), [&](GcDbDictionary& dictionary) {
    GcDbAnnotScaleObjectContextData* context = nullptr;
    ASSERT_EQ(dictionary.getAt(key, context, GcDb::kForRead), Gcad::eOk);
    scale = context->scaleId();
    EXPECT_EQ(context->close(), Gcad::eOk);
  });
  return scale;
}

// Keys of scales are numbers that mean another scale in another drawing: names tell.
TEST(WblockClone, ScalesAreThoseOfTheirNames) {
  GcDbDatabase source, target;
  const GcDbObjectId known = addScale(source, GC_T("B1"), GC_T("1:7"), 7);
  const GcDbObjectId unknown = addScale(source, GC_T("B2"), GC_T("1:11"), 11);
  addScale(target, GC_T("B1"), GC_T("1:9"), 9);
  const GcDbObjectId taken = addScale(target, GC_T("B2"), GC_T("1:13"), 13);
  const GcDbObjectId same = addScale(target, GC_T("C5"), GC_T("1:7"), 7);
  const GcDbObjectId line = addLine(source, {1, 0, 0});
  change<GcDbLine>(line, [&](GcDbLine& each) { EXPECT_EQ(each.createExtensionDictionary(), Gcad::eOk); });
  addContext(line, GC_T("KNOWN"), known);
  addContext(line, GC_T("UNKNOWN"), unknown);
  GcDbObjectIdArray ids;
  ids.append(line);
  GcDbIdMapping map;
  ASSERT_EQ(source.wblockCloneObjects(ids, target.modelSpaceId(), map, GcDb::kDrcIgnore), Gcad::eOk);
  const GcDbObjectId copy = onlyCopy(map, line);
  EXPECT_EQ(scaleOf(copy, GC_T("KNOWN")), same);
  const GcDbObjectId made = scaleOf(copy, GC_T("UNKNOWN"));
  EXPECT_EQ(made.database(), &target);
  EXPECT_NE(made, taken);
  change<GcDbScale>(made, [&](GcDbScale& scale) {
    EXPECT_EQ(scale.name(), GcString(GC_T("1:11")));
    EXPECT_EQ(scale.ownerId(), taken.stub()->object->ownerId());
  });
  // Within one drawing the scale is the same one.
  GcDbIdMapping again;
  ASSERT_EQ(source.deepCloneObjects(ids, source.modelSpaceId(), again, false), Gcad::eOk);
  EXPECT_EQ(scaleOf(onlyCopy(again, line), GC_T("KNOWN")), known);
}

class DuplicateRecords : public testing::TestWithParam<std::pair<GcDb::DuplicateRecordCloning, int>> {};

TEST_P(DuplicateRecords, AreTreatedAsAsked) {
  GcDbDatabase source, target;
  const GcDbObjectId from = addLayer(source, GC_T("Wall"), 3);
  const GcDbObjectId existing = addLayer(target, GC_T("WALL"), 1);
  const GcDbObjectId line = addLine(source, {1, 0, 0});
  change<GcDbLine>(line, [&](GcDbLine& each) { EXPECT_EQ(each.setLayer(from), Gcad::eOk); });
  GcDbObjectIdArray ids;
  ids.append(line);
  GcDbIdMapping map;
  ASSERT_EQ(source.wblockCloneObjects(ids, target.modelSpaceId(), map, GetParam().first), Gcad::eOk);
  GcDbObjectId layer;
  change<GcDbLine>(map.valueOf(line), [&](GcDbLine& each) { layer = each.layerId(); });
  change<GcDbLayerTableRecord>(
      existing, [&](GcDbLayerTableRecord& each) { EXPECT_EQ(each.color().colorIndex(), GetParam().second); });
  if (GetParam().first == GcDb::kDrcMangleName) {
    change<GcDbLayerTableRecord>(
        layer, [&](GcDbLayerTableRecord& each) { EXPECT_EQ(each.getName(), GcString(GC_T("$0$Wall"))); });
  } else {
    EXPECT_EQ(layer, existing);
  }
}

INSTANTIATE_TEST_SUITE_P(Modes, DuplicateRecords,
                         testing::Values(std::pair{GcDb::kDrcIgnore, 1}, std::pair{GcDb::kDrcReplace, 3},
                                         std::pair{GcDb::kDrcMangleName, 1}));

TEST(Insert, MakesTheOtherModelSpaceABlock) {
  GcDbDatabase source, target;
  addLine(source, {7, 0, 0});
  GcDbObjectId block;
  ASSERT_EQ(target.insert(block, GC_T("PART"), &source), Gcad::eOk);
  change<GcDbBlockTableRecord>(block, [&](GcDbBlockTableRecord& record) {
    EXPECT_EQ(record.getName(), GcString(GC_T("PART")));
    ASSERT_EQ(record.entities().length(), 1);
    EXPECT_TRUE(record.blockBeginId().isValid() && record.blockEndId().isValid());
  });
  ASSERT_EQ(target.insert(block, GC_T("PART"), &source), Gcad::eOk);  // redefined, not doubled
  change<GcDbBlockTableRecord>(block, [&](GcDbBlockTableRecord& record) {
    int live = 0;
    for (const GcDbObjectId id : record.entities()) live += id.isErased() ? 0 : 1;
    EXPECT_EQ(live, 1);
  });
  EXPECT_EQ(target.insert(block, GC_T("a<b"), &source), Gcad::eInvalidInput);
}

// ---- fields ------------------------------------------------------------------------------------------------

// A text whose field speaks of another entity: ACAD_FIELD / TEXT, a child field with a reference.
GcDbObjectId addFieldText(GcDbDatabase& database, GcDbObjectId subject) {
  auto* text = new GcDbText;
  GcDbObjectId id;
  change<GcDbBlockTableRecord>(database.modelSpaceId(), [&](GcDbBlockTableRecord& space) {
    EXPECT_EQ(space.appendGcDbEntity(id, text), Gcad::eOk);
  });
  EXPECT_EQ(text->createExtensionDictionary(), Gcad::eOk);
  const GcDbObjectId extension = text->extensionDictionary();
  EXPECT_EQ(text->close(), Gcad::eOk);
  GcDbObjectId fieldsId, outerId, innerId;
  change<GcDbDictionary>(extension, [&](GcDbDictionary& dictionary) {
    auto* fields = new GcDbDictionary;
    EXPECT_EQ(dictionary.setAt(GC_T("ACAD_FIELD"), fields, fieldsId), Gcad::eOk);
    EXPECT_EQ(fields->close(), Gcad::eOk);
  });
  change<GcDbDictionary>(fieldsId, [&](GcDbDictionary& dictionary) {
    auto* outer = new GcDbTextField;
    EXPECT_EQ(dictionary.setAt(GC_T("TEXT"), outer, outerId), Gcad::eOk);
    EXPECT_EQ(outer->close(), Gcad::eOk);
  });
  change<GcDbTextField>(outerId, [&](GcDbTextField& outer) {
    outer.setCode(GC_T("_text"), GC_T("L = %<\\_FldIdx 0>%"));
    EXPECT_EQ(outer.addChild(innerId), Gcad::eOk);
  });
  change<GcDbTextField>(innerId, [&](GcDbTextField& inner) {
    inner.setCode(GC_T("AcObjProp"), GC_T("\\AcObjProp Object(%<\\_ObjIdx 0>%).Length"));
    inner.addObject(subject);
  });
  return id;
}

// The entity that the field of a text speaks of.
GcDbObjectId subjectOf(GcDbObjectId text) {
  const GcDbObjectId outer = gcdbFieldOf(text, GC_T("TEXT"));
  GcDbObjectId child, subject;
  change<GcDbTextField>(outer, [&](GcDbTextField& field) {
    ASSERT_EQ(field.children().length(), 1);
    child = field.children()[0];
  });
  change<GcDbTextField>(child, [&](GcDbTextField& field) {
    EXPECT_EQ(field.ownerId(), outer);
    ASSERT_EQ(field.objects().length(), 1);
    subject = field.objects()[0];
  });
  return subject;
}

TEST(Fields, OfCopiesSpeakOfTheCopies) {
  GcDbDatabase database;
  const GcDbObjectId line = addLine(database, {3, 4, 0});
  const GcDbObjectId text = addFieldText(database, line);
  GcDbObjectIdArray both, alone;
  both.append(text);  // before what it speaks of
  both.append(line);
  alone.append(text);
  GcDbIdMapping map, second;
  ASSERT_EQ(database.deepCloneObjects(both, database.modelSpaceId(), map, false), Gcad::eOk);
  EXPECT_EQ(subjectOf(map.valueOf(text)), map.valueOf(line));
  EXPECT_EQ(subjectOf(text), line);
  ASSERT_EQ(database.deepCloneObjects(alone, database.modelSpaceId(), second, false), Gcad::eOk);
  EXPECT_EQ(subjectOf(second.valueOf(text)), line);  // of what was not copied, as before
  EXPECT_EQ(database.store().openCount(), 0);
}

TEST(Fields, SpeakOfTheirDrawingsOwnEntitiesInAnother) {
  GcDbDatabase source, target;
  addLine(target, {1, 0, 0});
  addLine(target, {2, 0, 0});  // takes the handles
  const GcDbObjectId line = addLine(source, {3, 4, 0});
  const GcDbObjectId text = addFieldText(source, line);
  GcDbObjectIdArray both, alone;
  both.append(text);
  both.append(line);
  alone.append(text);
  GcDbIdMapping map, second;
  ASSERT_EQ(source.wblockCloneObjects(both, target.modelSpaceId(), map, GcDb::kDrcIgnore), Gcad::eOk);
  EXPECT_EQ(subjectOf(map.valueOf(text)), map.valueOf(line));
  ASSERT_EQ(source.wblockCloneObjects(alone, target.modelSpaceId(), second, GcDb::kDrcIgnore), Gcad::eOk);
  EXPECT_TRUE(subjectOf(second.valueOf(text)).isNull());  // what is not there is not spoken of
  GcDbObjectId block;
  ASSERT_EQ(target.insert(block, GC_T("PART"), &source), Gcad::eOk);
  change<GcDbBlockTableRecord>(block, [&](GcDbBlockTableRecord& record) {
    GcDbObjectId copiedLine, copiedText;
    for (const GcDbObjectId id : record.entities())
      (id.objectClass() == GcDbLine::desc() ? copiedLine : copiedText) = id;
    EXPECT_EQ(subjectOf(copiedText), copiedLine);
  });
}

// ---- drawing order -----------------------------------------------------------------------------------------

std::vector<double> drawn(GcDbObjectId block) {
  std::vector<double> ends;
  for (const GcDbSortPair& each : gcdbDrawingOrder(block)) {
    GcDbLine* line = nullptr;
    EXPECT_EQ(gcdbOpenObject(line, each.entity, GcDb::kForRead), Gcad::eOk);
    ends.push_back(line->endPoint().x);
    EXPECT_EQ(line->close(), Gcad::eOk);
  }
  return ends;
}

// Sorts the entities of a block by the handles of one another, the last one first.
void turnOrder(GcDbObjectId blockId) {
  const std::vector<GcDbSortPair> order = gcdbDrawingOrder(blockId);
  GcArray<GcDbSortPair> pairs;
  for (size_t i = 0; i < order.size(); ++i) pairs.append({order[i].entity, order[order.size() - 1 - i].sortedAs});
  GcDbObjectId extension;
  change<GcDbBlockTableRecord>(blockId, [&](GcDbBlockTableRecord& block) {
    EXPECT_EQ(block.createExtensionDictionary(), Gcad::eOk);
    extension = block.extensionDictionary();
  });
  change<GcDbDictionary>(extension, [&](GcDbDictionary& dictionary) {
    auto* table = new GcDbSortentsTable;
    GcDbObjectId id;
    EXPECT_EQ(dictionary.setAt(kSortTable, table, id), Gcad::eOk);
    EXPECT_EQ(table->setBlockId(blockId), Gcad::eOk);
    EXPECT_EQ(table->setPairs(pairs), Gcad::eOk);
    EXPECT_EQ(table->close(), Gcad::eOk);
  });
}

TEST(DrawingOrder, GoesWithABlockIntoAnotherDrawing) {
  GcDbDatabase source, target;
  addLine(target, {9, 0, 0});  // the same handles are taken there
  GcDbBlockTable* blocks = nullptr;
  ASSERT_EQ(source.getSymbolTable(blocks, GcDb::kForWrite), Gcad::eOk);
  auto* block = new GcDbBlockTableRecord;
  GcDbObjectId blockId;
  EXPECT_EQ(block->setName(GC_T("LAYERED")), Gcad::eOk);
  ASSERT_EQ(blocks->add(blockId, block), Gcad::eOk);
  for (const double x : {1.0, 2.0, 3.0}) {
    auto* line = new GcDbLine({0, 0, 0}, {x, 0, 0});
    EXPECT_EQ(block->appendGcDbEntity(line), Gcad::eOk);
    EXPECT_EQ(line->close(), Gcad::eOk);
  }
  EXPECT_EQ(block->close(), Gcad::eOk);
  EXPECT_EQ(blocks->close(), Gcad::eOk);
  turnOrder(blockId);
  ASSERT_EQ(drawn(blockId), (std::vector<double>{3, 2, 1}));
  GcDbObjectIdArray ids;
  ids.append(blockId);
  GcDbIdMapping map;
  ASSERT_EQ(source.wblockCloneObjects(ids, target.blockTableId(), map, GcDb::kDrcReplace), Gcad::eOk);
  const GcDbObjectId copy = map.valueOf(blockId);
  EXPECT_EQ(drawn(copy), (std::vector<double>{3, 2, 1}));
  EXPECT_FALSE(gcdbSortTableOf(copy).isNull());
  for (const GcDbSortPair& each : gcdbDrawingOrder(copy))  // by handles of the copies only
    EXPECT_TRUE(each.sortedAs != 0);
}

TEST(DrawingOrder, OfAWholeDrawingIsThatOfItsBlock) {
  GcDbDatabase source, target;
  for (const double x : {1.0, 2.0, 3.0}) addLine(source, {x, 0, 0});
  turnOrder(source.modelSpaceId());
  GcDbObjectId block;
  ASSERT_EQ(target.insert(block, GC_T("WHOLE"), &source, true), Gcad::eOk);
  EXPECT_EQ(drawn(block), (std::vector<double>{3, 2, 1}));
}

}  // namespace
