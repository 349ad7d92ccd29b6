// Laws that hold for every described class: groups out and in, memory image out and in, undo, walks.
#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>

#include "db/curve.h"
#include "db/zombie.h"
#include "generate.h"
#include "host/db/core/memoryfiler.h"
#include "host/db/core/undo.h"
#include "host/db/describe/fieldio.h"

namespace {

constexpr int kRounds = 25;

unsigned seedOfRun() {
  static const unsigned seed = [] {
    const char* given = std::getenv("GC_SEED");
    return given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : std::random_device{}();
  }();
  return seed;
}

class ListSink : public GcDbGroupSink {
 public:
  void put(const GcDbGroup& group) override { list.put(group); }
  GcDbGroupList list;
};

std::string nameOf(const GcRxClass* kind) { return toUtf8(view(kind->name())); }

bool isZombie(const GcRxClass* kind) { return kind == GcDbZombieObject::desc() || kind == GcDbZombieEntity::desc(); }

// Groups of the list that the reader gives back.
GcDbGroupList readInto(GcDbObject& object, const GcDbGroupList& groups, int version) {
  ListSink left;
  GcDbFieldReader reader(object, version);
  GcDbGroupList::Cursor cursor(groups);
  for (GcDbGroup group; cursor.next(group);)
    if (!reader.take(group)) left.put(group);
  object.subLoaded();
  return left.list;
}

GcDbGroupList groupsOf(const GcDbObject& object, int version, For purpose) {
  ListSink sink;
  gcdbFieldsOut(object, sink, version, purpose);
  return sink.list;
}

std::string shown(const GcDbGroupList& list) {
  std::string text;
  GcDbGroupList::Cursor cursor(list);
  for (GcDbGroup g; cursor.next(g);) {
    text += std::to_string(g.code) + "=";
    if (g.kind == GcDbGroupKind::Text)
      text += toUtf8(g.text);
    else if (g.kind == GcDbGroupKind::Point3d || g.kind == GcDbGroupKind::Point2d)
      text += std::to_string(g.point.x) + "," + std::to_string(g.point.y) + "," + std::to_string(g.point.z);
    else
      text += std::to_string(g.asReal());
    text += "\n";
  }
  return text;
}

// The owner that names of records are looked up in: an object of the class added to a database.
class Laws : public testing::TestWithParam<GcRxClass*> {
 protected:
  void SetUp() override { RecordProperty("seed", static_cast<int>(seedOfRun())); }
  GcDbObject* make() {
    auto* object = static_cast<GcDbObject*>(GetParam()->create());
    GcDbObjectId id;
    EXPECT_EQ(m_database.addGcDbObject(id, object), Gcad::eOk);
    return object;
  }
  GcDbDatabase m_database;
};

void groupLaw(GcDbObject& object, GcDbObject& copy, int version, For purpose) {
  const GcDbGroupList groups = groupsOf(object, version, purpose);
  const GcDbGroupList left = readInto(copy, groups, version);
  EXPECT_EQ(shown(left), "");
  EXPECT_EQ(shown(groupsOf(copy, version, purpose)), shown(groups));
}

TEST_P(Laws, GroupsOutAndInGiveAnEqualObject) {
  if (isZombie(GetParam())) GTEST_SKIP() << "files have its groups, not its rows";
  SCOPED_TRACE("GC_SEED=" + std::to_string(seedOfRun()));
  ObjectGenerator generator(m_database, seedOfRun());
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    for (const int version : {GcDb::kDHL_AC1015, GcDb::kDHL_AC1018, GcDb::kDHL_AC1021, GcDb::kDHL_AC1032}) {
      SCOPED_TRACE("version " + std::to_string(version));
      GcDbObject* object = make();
      GcDbObject* copy = make();
      generator.fill(*object);
      groupLaw(*object, *copy, version, For::File);
      ignore(object->close());
      ignore(copy->close());
      if (HasFailure()) break;
    }
  }
}

TEST_P(Laws, EntityListsOutAndInGiveAnEqualObject) {
  if (isZombie(GetParam())) GTEST_SKIP() << "files have its groups, not its rows";
  SCOPED_TRACE("GC_SEED=" + std::to_string(seedOfRun()));
  ObjectGenerator generator(m_database, seedOfRun() + 1);
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    GcDbObject* object = make();
    GcDbObject* copy = make();
    generator.fill(*object);
    groupLaw(*object, *copy, GcDb::kDHL_Current, For::List);
    ignore(object->close());
    ignore(copy->close());
  }
}

TEST_P(Laws, ImagesOutAndInGiveAnEqualObject) {
  SCOPED_TRACE("GC_SEED=" + std::to_string(seedOfRun()));
  ObjectGenerator generator(m_database, seedOfRun() + 2);
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    GcDbObject* object = make();
    GcDbObject* copy = make();
    generator.fill(*object);
    generator.fill(*copy);  // what it held before must be gone
    const auto image = gcdbImageOf(*object, GcDb::kCopyFiler);
    EXPECT_EQ(gcdbImageInto(*copy, image, GcDb::kCopyFiler), Gcad::eOk);
    EXPECT_EQ(gcdbImageOf(*copy, GcDb::kCopyFiler), image);
    ignore(object->close());
    ignore(copy->close());
  }
}

TEST_P(Laws, UndoRestores) {
  SCOPED_TRACE("GC_SEED=" + std::to_string(seedOfRun()));
  ObjectGenerator generator(m_database, seedOfRun() + 3);
  GcDbObject* object = make();
  const GcDbObjectId id = object->objectId();
  generator.fill(*object);
  const auto before = gcdbImageOf(*object, GcDb::kCopyFiler);
  ignore(object->close());
  m_database.undo().setOn(true);
  m_database.undo().beginGroup();
  ASSERT_EQ(gcdbOpenGcDbObject(object, id, GcDb::kForWrite), Gcad::eOk);
  object->assertWriteEnabled();
  generator.fill(*object);
  ignore(object->close());
  m_database.undo().endGroup();
  EXPECT_EQ(m_database.undo().undo(1), 1);
  ASSERT_EQ(gcdbOpenGcDbObject(object, id, GcDb::kForRead), Gcad::eOk);
  EXPECT_EQ(gcdbImageOf(*object, GcDb::kCopyFiler), before);
  ignore(object->close());
}

TEST_P(Laws, ATransformationAndItsInverseGiveTheFormerEntity) {
  GcDbObject* object = make();
  GcDbEntity* entity = GcDbEntity::cast(object);
  if (entity == nullptr) {
    ignore(object->close());
    GTEST_SKIP() << "no entity";
  }
  SCOPED_TRACE("GC_SEED=" + std::to_string(seedOfRun()));
  GcGeMatrix3d move, turn;
  move.setToTranslation({3, -7, 2});
  turn.setToRotation(0.75, GcGeVector3d(1, 2, 2).normal(), {5, 4, 3});
  const GcGeMatrix3d there = move * turn;
  const Gcad::ErrorStatus status = entity->transformBy(there);
  if (status == Gcad::eOk) {
    EXPECT_EQ(entity->transformBy(there.inverse()), Gcad::eOk);
  }
  ignore(object->close());
}

// Row names are how other parts of the program and documents refer to fields.
TEST_P(Laws, FieldNamesAreTheirOwn) {
  const GcDbClassInfo* info = GetParam()->info();
  std::set<std::string> names;
  for (int i = 0; i < info->rowCount; ++i) {
    const GcDbField& row = *info->rows[i];
    if (row.is == Is::Marker) continue;
    EXPECT_TRUE(names.insert(row.name).second) << row.name;
  }
}

INSTANTIATE_TEST_SUITE_P(EveryClass, Laws,
                         testing::ValuesIn(gcdbDescribedClasses().begin(), gcdbDescribedClasses().end()),
                         [](const testing::TestParamInfo<GcRxClass*>& each) { return nameOf(each.param); });

}  // namespace
