// A law for every described class: what an object of generated values becomes in a record is read back, and makes the
// same record again.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <random>

#include "db/symboltable.h"
#include "db/zombie.h"
#include "host/db/core/asgroups.h"
#include "host/db/core/memoryfiler.h"
#include "host/db/describe/classinfo.h"
#include "host/db/objects/zombiedata.h"
#include "host/dwg/record/recordcodec.h"
#include "host/rx/view.h"
#include "tests/db/generate.h"

using namespace gc::dwg;

namespace {

constexpr int kVersions[] = {kR13, kR14, kR2000, kR2004, kR2007, kR2010, kR2013, kR2018};
constexpr int kRounds = 8;

unsigned seedOfRun() {
  static const unsigned seed = [] {
    const char* given = std::getenv("GC_SEED");
    return given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : std::random_device{}();
  }();
  return seed;
}

class RecordLaw : public testing::TestWithParam<GcRxClass*> {
 protected:
  // The class's number, whether the format's own or one that the file's class section gives.
  uint32_t typeIn(RecordContext& context) const {
    const GcRxClass& kind = *GetParam();
    const uint32_t fixed = ClassMap::fixedTypeOf(view(kind.name()));
    if (fixed != 0) return fixed;
    ClassMap::FileClass described;
    described.number = kFirstFileClass;
    described.dxfName = GcText(view(kind.dxfName()));
    described.className = GcText(view(kind.name()));
    described.isEntity = kind.isDerivedFrom(GcDbEntity::desc());
    context.classes.add(described);
    return kFirstFileClass;
  }
};

// Classes whose records are not described go as proxies that hold their groups, and come to life from them.
void expectSameAsProxy(RecordContext& context, const GcDbObject& object) {
  const bool isEntity = object.isKindOf(GcDbEntity::desc());
  const WrittenRecord written = writeRecord(context, object, isEntity ? kProxyEntity : kProxyObject, {});
  const ReadRecord back = readRecord(context, written.body, written.handleBits);
  ASSERT_NE(back.object, nullptr) << back.trouble;
  const GcDbZombieData* kept = nullptr;
  if (const auto* zombie = GcDbZombieEntity::cast(back.object.get())) kept = &zombie->data();
  if (const auto* zombie = GcDbZombieObject::cast(back.object.get())) kept = &zombie->data();
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(view(kept->dxfName), view(object.isA()->dxfName()));
  auto* copy = static_cast<GcDbObject*>(object.isA()->create());
  GcDbObjectId id;
  ASSERT_EQ(context.database.addGcDbObject(id, copy), Gcad::eOk);
  EXPECT_TRUE(gcdbFromGroups(*copy, kept->groups));
  EXPECT_TRUE(gcdbAsGroups(*copy).groups == gcdbAsGroups(object).groups);
  ignore(copy->close());
}

TEST_P(RecordLaw, WhatIsReadBackMakesTheSameRecord) {
  const GcRxClass* kind = GetParam();
  const bool isZombie = kind == GcDbZombieObject::desc() || kind == GcDbZombieEntity::desc();
  if (isZombie) GTEST_SKIP() << "keeps the bits of a record of another class; generated bits are no record";
  SCOPED_TRACE("GC_SEED=" + std::to_string(seedOfRun()));
  for (const int version : kVersions) {
    SCOPED_TRACE("version " + std::to_string(version));
    GcDbDatabase database;
    RecordContext context(database);
    context.version = version;
    context.byLayer = database.byLayerLinetype();
    context.byBlock = database.byBlockLinetype();
    context.continuous = database.continuousLinetype();
    context.modelSpace = database.modelSpaceId();
    context.paperSpace = database.paperSpaceId();
    const uint32_t type = typeIn(context);
    ObjectGenerator generator(database, seedOfRun());
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
      auto* object = static_cast<GcDbObject*>(GetParam()->create());
      GcDbObjectId id;
      ASSERT_EQ(database.addGcDbObject(id, object), Gcad::eOk);
      generator.fill(*object);
      if (!hasPacking(*object, version)) {
        if (version >= kR2000) expectSameAsProxy(context, *object);
        ignore(object->close());
        continue;
      }
      const WrittenRecord written = writeRecord(context, *object, type, {});
      const ReadRecord back = readRecord(context, written.body, written.handleBits);
      ASSERT_NE(back.object, nullptr) << back.trouble;
      ASSERT_FALSE(back.keptRaw) << back.trouble;
      // What was read takes the object's place, so that it has its handle.
      const auto image = gcdbImageOf(*back.object, GcDb::kCopyFiler);
      ASSERT_EQ(gcdbImageInto(*object, image, GcDb::kCopyFiler), Gcad::eOk);
      object->subLoaded();
      EXPECT_EQ(writeRecord(context, *object, type, {}).body, written.body);
      ignore(object->close());
    }
  }
}

INSTANTIATE_TEST_SUITE_P(EveryClass, RecordLaw,
                         testing::ValuesIn(gcdbDescribedClasses().begin(), gcdbDescribedClasses().end()),
                         [](const testing::TestParamInfo<GcRxClass*>& each) {
                           return toUtf8(view(each.param->name()));
                         });

}  // namespace
