// What holds for copies into another drawing whatever the class, and for every table, dictionary and mode.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <set>

#include "db/dictionary.h"
#include "db/idmapping.h"
#include "db/line.h"
#include "db/xrecord.h"
#include "db/zombie.h"
#include "generate.h"
#include "host/db/core/extra.h"
#include "host/db/core/memoryfiler.h"
#include "host/db/core/store.h"
#include "host/db/describe/classinfo.h"
#include "host/rx/view.h"

namespace {

unsigned seedOfRun() {
  static const unsigned seed = [] {
    const char* given = std::getenv("GC_SEED");
    return given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : std::random_device{}();
  }();
  return seed;
}

template <class T, class F>
void change(GcDbObjectId id, const F& f) {
  T* object = nullptr;
  ASSERT_EQ(gcdbOpenObject(object, id, GcDb::kForWrite), Gcad::eOk);
  f(*object);
  EXPECT_EQ(object->close(), Gcad::eOk);
}

// ---- every class -------------------------------------------------------------------------------------------

struct Reference {
  GcDbObjectId id;
  GcDbReferenceKind kind;
};

std::vector<Reference> referencesOf(GcDbObjectId id) {
  GcDbMemoryFiler filer(GcDb::kWblockCloneFiler);
  GcDbObject* object = nullptr;
  EXPECT_EQ(gcdbOpenGcDbObject(object, id, GcDb::kForRead), Gcad::eOk);
  if (object == nullptr) return {};
  gcdbImageOut(*object, filer);
  ignore(object->close());
  std::vector<Reference> all;
  for (const GcDbReferencePlace& place : filer.references()) all.push_back({filer.referenceAt(place), place.kind});
  return all;
}

class CloneLaw : public testing::TestWithParam<GcRxClass*> {
 protected:
  void SetUp() override {
    const GcRxClass* kind = GetParam();
    m_isEntity = kind->isDerivedFrom(GcDbEntity::desc());
    m_isRecord = kind->isDerivedFrom(GcDbSymbolTableRecord::desc());
  }

  // An object of the class with generated values where such objects stand: in model space, in its table, in a dictionary.
  GcDbObjectId make() {
    auto* object = static_cast<GcDbObject*>(GetParam()->create());
    ObjectGenerator generator(m_source, seedOfRun());
    GcDbObjectId id;
    if (m_isRecord) return makeRecord(static_cast<GcDbSymbolTableRecord*>(object), generator);
    if (m_isEntity) {
      change<GcDbBlockTableRecord>(m_source.modelSpaceId(), [&](GcDbBlockTableRecord& space) {
        EXPECT_EQ(space.appendGcDbEntity(id, static_cast<GcDbEntity*>(object)), Gcad::eOk);
      });
    } else {
      change<GcDbDictionary>(m_source.namedObjectsDictionaryId(),
                             [&](GcDbDictionary& root) { EXPECT_EQ(root.setAt(GC_T("LAW"), object, id), Gcad::eOk); });
    }
    generator.fill(*object);
    addHandleOf(*object, m_source.layerZero());
    EXPECT_EQ(object->close(), Gcad::eOk);
    return id;
  }

  GcDbObjectId makeRecord(GcDbSymbolTableRecord* record, ObjectGenerator& generator) {
    GcDbObjectId id;
    EXPECT_EQ(record->setName(GC_T("LAW")), Gcad::eOk);
    for (int which = 0; which < GcDbDatabase::kTableCount && id.isNull(); ++which)
      change<GcDbSymbolTable>(m_source.tableId(which), [&](GcDbSymbolTable& table) {
        if (table.recordClass() == record->isA()) {
          EXPECT_EQ(table.add(id, record), Gcad::eOk);
        }
      });
    generator.fill(*record);
    record->keepName(GcString(GC_T("LAW")));
    addHandleOf(*record, m_source.layerZero());
    EXPECT_EQ(record->close(), Gcad::eOk);
    m_table = record->ownerId();
    return id;
  }

  static void addHandleOf(GcDbObject& object, GcDbObjectId other) {
    object.needExtra().xdata.put(GcDbGroup::ofText(1001, GC_T("ACAD")));
    GcDbGroup handle;
    handle.code = 1005;
    handle.kind = GcDbGroupKind::Handle;
    handle.integer = static_cast<int64_t>(static_cast<uint64_t>(other.handle()));
    object.needExtra().xdata.put(handle);
  }

  GcDbObjectId ownerInTarget() {
    if (m_isEntity) return m_target.modelSpaceId();
    if (!m_isRecord) return m_target.namedObjectsDictionaryId();
    for (int which = 0; which < GcDbDatabase::kTableCount; ++which)
      if (m_source.tableId(which) == m_table) return m_target.tableId(which);
    return {};
  }

  // No reference of a copy leads into the source, and none that holds something leads to nothing.
  void checkCopy(const GcDbIdPair& pair) {
    const std::vector<Reference> before = referencesOf(pair.key());
    const std::vector<Reference> after = referencesOf(pair.value());
    for (const Reference& each : after) {
      EXPECT_TRUE(each.id.isNull() || each.id.database() == &m_target) << "a reference into the source";
    }
    if (before.size() != after.size()) return;  // parts that were erased have not come along
    for (size_t i = 0; i < before.size(); ++i) {
      const bool held =
          before[i].kind == GcDbReferenceKind::HardPointer && before[i].id.isValid() && !before[i].id.isErased();
      EXPECT_FALSE(held && after[i].id.isNull()) << "reference " << i << " of " << before.size();
    }
  }

  // The handle in extended data is that of the copy of what it named.
  void checkHandles(const GcDbIdMapping& map, GcDbObjectId copy) {
    GcDbGroupList::Cursor cursor(copy.stub()->object->extra()->xdata);
    int handles = 0;
    for (GcDbGroup group; cursor.next(group);) {
      if (group.code != 1005) continue;
      ++handles;
      const GcDbObjectId layer = map.valueOf(m_source.layerZero());
      EXPECT_EQ(static_cast<uint64_t>(group.integer), layer.isNull() ? 0 : static_cast<uint64_t>(layer.handle()));
    }
    EXPECT_EQ(handles, 1);
  }

  GcDbDatabase m_source, m_target;
  GcDbObjectId m_table;
  bool m_isEntity = false;
  bool m_isRecord = false;
};

TEST_P(CloneLaw, CopiesReferToTheirOwnDrawing) {
  SCOPED_TRACE("GC_SEED=" + std::to_string(seedOfRun()));
  const GcDbObjectId source = make();
  ASSERT_FALSE(source.isNull());
  GcDbObjectIdArray ids;
  ids.append(source);
  GcDbIdMapping map;
  const Gcad::ErrorStatus status = m_source.wblockCloneObjects(ids, ownerInTarget(), map, GcDb::kDrcIgnore);
  if (status == Gcad::eNotThatKindOfClass) GTEST_SKIP() << "a part of others, which goes with them";
  ASSERT_EQ(status, Gcad::eOk);
  ASSERT_GT(map.length(), 0);
  EXPECT_EQ(map.pairs()[0].key(), source);
  EXPECT_TRUE(map.pairs()[0].isPrimary());
  EXPECT_TRUE(map.pairs()[0].isCloned());
  for (const GcDbIdPair& pair : map.pairs())
    if (pair.isCloned() && !pair.value().isNull()) checkCopy(pair);
  checkHandles(map, map.valueOf(source));
  EXPECT_EQ(m_source.store().openCount() + m_target.store().openCount(), 0);
}

TEST_P(CloneLaw, ACopyInTheSameDrawingIsTheSameObject) {
  SCOPED_TRACE("GC_SEED=" + std::to_string(seedOfRun()));
  if (m_isRecord) GTEST_SKIP() << "a table has a name once";
  const GcDbObjectId source = make();
  GcDbObjectIdArray ids;
  ids.append(source);
  GcDbIdMapping map;
  const GcDbObjectId owner = m_isEntity ? m_source.modelSpaceId() : m_source.namedObjectsDictionaryId();
  const Gcad::ErrorStatus status = m_source.deepCloneObjects(ids, owner, map);
  if (status == Gcad::eNotThatKindOfClass) GTEST_SKIP() << "a part of others, which goes with them";
  ASSERT_EQ(status, Gcad::eOk);
  const GcDbObjectId copy = map.valueOf(source);
  ASSERT_FALSE(copy.isNull());
  EXPECT_NE(copy, source);
  EXPECT_EQ(copy.objectClass(), source.objectClass());
  for (const Reference& each : referencesOf(copy)) EXPECT_TRUE(each.id.isNull() || each.id.database() == &m_source);
  EXPECT_EQ(m_source.store().openCount(), 0);
}

INSTANTIATE_TEST_SUITE_P(EveryClass, CloneLaw,
                         testing::ValuesIn(gcdbDescribedClasses().begin(), gcdbDescribedClasses().end()),
                         [](const testing::TestParamInfo<GcRxClass*>& each) {
                           return toUtf8(view(each.param->name()));
                         });

// ---- every table, a dictionary, every mode -----------------------------------------------------------------

constexpr const GCHAR* kName = GC_T("Law");

// A drawing whose tables and a dictionary have a record of the name, told apart by what their data says.
class Modes : public testing::TestWithParam<GcDb::DuplicateRecordCloning> {
 protected:
  void SetUp() override {
    m_source.setFilename(GC_T("/drawings/PLAN.dxf"));
    for (int which = 0; which < GcDbDatabase::kTableCount; ++which) {
      add(m_source, which, GC_T("new"));
      add(m_target, which, GC_T("old"));
    }
  }

  static GcDbObjectId add(GcDbDatabase& database, int which, const GCHAR* said) {
    GcDbObjectId id;
    change<GcDbSymbolTable>(database.tableId(which), [&](GcDbSymbolTable& table) {
      auto* record = static_cast<GcDbSymbolTableRecord*>(table.recordClass()->create());
      EXPECT_EQ(record->setName(kName), Gcad::eOk);
      EXPECT_EQ(table.add(id, record), Gcad::eOk);
      record->needExtra().xdata.put(GcDbGroup::ofText(1001, GC_T("ACAD")));
      record->needExtra().xdata.put(GcDbGroup::ofText(1000, said));
      EXPECT_EQ(record->close(), Gcad::eOk);
    });
    return id;
  }

  static GcDbObjectId find(GcDbDatabase& database, int which, const GCHAR* name) {
    GcDbObjectId id;
    change<GcDbSymbolTable>(database.tableId(which), [&](GcDbSymbolTable& table) { ignore(table.getAt(name, id)); });
    return id;
  }

  static GcText said(GcDbObjectId id) {
    GcDbGroupList::Cursor cursor(id.stub()->object->extra()->xdata);
    for (GcDbGroup group; cursor.next(group);)
      if (group.code == 1000) return GcText(group.text);
    return {};
  }

  GcDbDatabase m_source, m_target;
};

TEST_P(Modes, OfEveryTableAreTreatedAsAsked) {
  for (int which = 0; which < GcDbDatabase::kTableCount; ++which) {
    SCOPED_TRACE("table " + std::to_string(which));
    const GcDbObjectId from = find(m_source, which, kName);
    const GcDbObjectId existing = find(m_target, which, kName);
    GcDbObjectIdArray ids;
    ids.append(from);
    GcDbIdMapping map;
    ASSERT_EQ(m_source.wblockCloneObjects(ids, m_target.tableId(which), map, GetParam()), Gcad::eOk);
    const GcDbObjectId value = map.valueOf(from);
    GcDbIdPair pair;
    ASSERT_TRUE(map.compute(from, pair));
    EXPECT_TRUE(pair.isPrimary());
    switch (GetParam()) {
      case GcDb::kDrcReplace:
        EXPECT_EQ(value, existing);
        EXPECT_EQ(said(existing), GcText(GC_T("new")));
        EXPECT_TRUE(pair.isCloned());
        break;
      case GcDb::kDrcMangleName: EXPECT_EQ(value, find(m_target, which, GC_T("$0$Law"))); break;
      case GcDb::kDrcXrefMangleName: EXPECT_EQ(value, find(m_target, which, GC_T("PLAN$0$Law"))); break;
      default:
        EXPECT_EQ(value, existing);
        EXPECT_FALSE(pair.isCloned());
        break;
    }
    EXPECT_FALSE(value.isNull());
    EXPECT_EQ(said(existing), GetParam() == GcDb::kDrcReplace ? GcText(GC_T("new")) : GcText(GC_T("old")));
    EXPECT_EQ(find(m_target, which, kName), existing);
  }
  EXPECT_EQ(m_source.store().openCount() + m_target.store().openCount(), 0);
}

TEST_P(Modes, WhatEveryDrawingHasIsNeverDoubled) {
  GcDbObjectId line;
  change<GcDbBlockTableRecord>(m_source.modelSpaceId(), [&](GcDbBlockTableRecord& space) {
    auto* made = new GcDbLine({0, 0, 0}, {1, 0, 0});
    EXPECT_EQ(made->setLayer(m_source.layerZero()), Gcad::eOk);
    EXPECT_EQ(made->setLinetype(m_source.continuousLinetype()), Gcad::eOk);
    EXPECT_EQ(space.appendGcDbEntity(line, made), Gcad::eOk);
    EXPECT_EQ(made->close(), Gcad::eOk);
  });
  GcDbObjectIdArray ids;
  ids.append(line);
  GcDbIdMapping map;
  ASSERT_EQ(m_source.wblockCloneObjects(ids, m_target.modelSpaceId(), map, GetParam()), Gcad::eOk);
  EXPECT_EQ(map.valueOf(m_source.layerZero()), m_target.layerZero());
  change<GcDbLine>(map.valueOf(line), [&](GcDbLine& copy) {
    EXPECT_EQ(copy.layerId(), m_target.layerZero());
    EXPECT_EQ(copy.linetypeId(), m_target.continuousLinetype());
  });
}

// An entry that a record refers to, in a dictionary of the same place.
TEST_P(Modes, OfEntriesOfDictionariesAreTreatedAsAsked) {
  const auto addEntry = [](GcDbDatabase& database, const GCHAR* text) {
    GcDbObjectId inner, id;
    change<GcDbDictionary>(database.namedObjectsDictionaryId(), [&](GcDbDictionary& root) {
      auto* made = new GcDbDictionary;
      EXPECT_EQ(root.setAt(GC_T("LAWS"), made, inner), Gcad::eOk);
      EXPECT_EQ(made->close(), Gcad::eOk);
    });
    change<GcDbDictionary>(inner, [&](GcDbDictionary& dictionary) {
      auto* record = new GcDbXrecord;
      EXPECT_EQ(dictionary.setAt(kName, record, id), Gcad::eOk);
      resbuf* data = gcutBuildList(1, text, 0);
      EXPECT_EQ(record->setFromRbChain(*data), Gcad::eOk);
      gcutRelRb(data);
      EXPECT_EQ(record->close(), Gcad::eOk);
    });
    return id;
  };
  const auto textOf = [](GcDbObjectId id) {
    GcText text;
    change<GcDbXrecord>(id, [&](GcDbXrecord& record) {
      resbuf* data = record.rbChain();
      text = view(data->resval.rstring);
      gcutRelRb(data);
    });
    return text;
  };
  const GcDbObjectId from = addEntry(m_source, GC_T("new"));
  const GcDbObjectId existing = addEntry(m_target, GC_T("old"));
  GcDbObjectId holder;
  change<GcDbDictionary>(m_source.namedObjectsDictionaryId(), [&](GcDbDictionary& root) {
    auto* record = new GcDbXrecord;
    EXPECT_EQ(root.setAt(GC_T("HOLDER"), record, holder), Gcad::eOk);
    resbuf* data = gcutNewRb(340);
    ASSERT_EQ(gcdbGetGdsName(data->resval.rlname, from), Gcad::eOk);
    EXPECT_EQ(record->setFromRbChain(*data), Gcad::eOk);
    gcutRelRb(data);
    EXPECT_EQ(record->close(), Gcad::eOk);
  });
  GcDbObjectIdArray ids;
  ids.append(holder);
  GcDbIdMapping map;
  ASSERT_EQ(m_source.wblockCloneObjects(ids, m_target.namedObjectsDictionaryId(), map, GetParam()), Gcad::eOk);
  const GcDbObjectId value = map.valueOf(from);
  ASSERT_FALSE(value.isNull());
  const bool renames = GetParam() == GcDb::kDrcMangleName || GetParam() == GcDb::kDrcXrefMangleName;
  EXPECT_EQ(value == existing, !renames);
  EXPECT_EQ(textOf(existing), GetParam() == GcDb::kDrcReplace ? GcText(GC_T("new")) : GcText(GC_T("old")));
  if (renames) {
    EXPECT_EQ(textOf(value), GcText(GC_T("new")));
    change<GcDbDictionary>(existing.stub()->object->ownerId(), [&](GcDbDictionary& dictionary) {
      GcString key;
      EXPECT_EQ(dictionary.nameAt(value, key), Gcad::eOk);
      EXPECT_EQ(GcText(view(key)),
                GetParam() == GcDb::kDrcMangleName ? GcText(GC_T("$0$Law")) : GcText(GC_T("PLAN$0$Law")));
    });
  }
  const std::vector<Reference> held = referencesOf(map.valueOf(holder));
  EXPECT_TRUE(std::any_of(held.begin(), held.end(), [&](const Reference& each) { return each.id == value; }));
}

INSTANTIATE_TEST_SUITE_P(EveryMode, Modes,
                         testing::Values(GcDb::kDrcIgnore, GcDb::kDrcReplace, GcDb::kDrcXrefMangleName,
                                         GcDb::kDrcMangleName, GcDb::kDrcUnmangleName));

// A block that came under another's name goes back under its own.
TEST(Unmangled, NamesLoseTheirDrawing) {
  GcDbDatabase source, target;
  GcDbObjectId layer;
  change<GcDbSymbolTable>(source.layerTableId(), [&](GcDbSymbolTable& layers) {
    auto* record = new GcDbLayerTableRecord;
    EXPECT_EQ(record->setName(GC_T("PLAN$12$Walls")), Gcad::eOk);
    EXPECT_EQ(layers.add(layer, record), Gcad::eOk);
    EXPECT_EQ(record->close(), Gcad::eOk);
  });
  GcDbObjectIdArray ids;
  ids.append(layer);
  GcDbIdMapping map;
  ASSERT_EQ(source.wblockCloneObjects(ids, target.layerTableId(), map, GcDb::kDrcUnmangleName), Gcad::eOk);
  change<GcDbLayerTableRecord>(map.valueOf(layer),
                               [](GcDbLayerTableRecord& copy) { EXPECT_EQ(copy.getName(), GcString(GC_T("Walls"))); });
}

}  // namespace
