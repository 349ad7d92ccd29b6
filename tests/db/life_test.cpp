// Objects whose class comes, goes and comes again keep everything.
#include "host/db/core/life.h"

#include <gtest/gtest.h>

#include "db/database.h"
#include "db/dictionary.h"
#include "db/filer.h"
#include "db/zombie.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/store.h"
#include "host/db/objects/zombiedata.h"
#include "host/rx/view.h"

namespace {

GcRxClass* g_noteClass = nullptr;

// A class that files itself, as a plug-in's would: one text.
class Note : public GcDbObject {
 public:
  GcRxClass* isA() const override { return g_noteClass; }
  Gcad::ErrorStatus dxfInFields(GcDbDxfFiler* filer) override {
    assertWriteEnabled();
    if (!filer->atSubclassData(GC_T("Note"))) return Gcad::eBadDxfSequence;
    resbuf item{};
    if (filer->readResBuf(&item) != Gcad::eOk || item.restype != 1)
      return filer->setError(Gcad::eInvalidDxfCode, GC_T("%d"), 1);
    text = item.resval.rstring;
    gcutDelBuffer(item.resval.rstring);
    return Gcad::eOk;
  }
  Gcad::ErrorStatus dxfOutFields(GcDbDxfFiler* filer) const override {
    ignore(filer->writeString(100, GC_T("Note")));
    return filer->writeString(1, text.c_str());
  }
  GcString text;
};

void registerNote() {
  g_noteClass = newGcRxClass(
      GC_T("Note"), GC_T("AcDbObject"), 0, 0, 0, [] { return static_cast<GcRxObject*>(new Note); }, GC_T("NOTE"),
      GC_T("\"NOTES\""));
  gcrxBuildClassHierarchy();
}

void unregisterNote() {
  deleteGcRxClass(g_noteClass);
  g_noteClass = nullptr;
}

GcDbObjectId addNote(GcDbDatabase& database, const GCHAR* text) {
  GcDbDictionary* root = nullptr;
  EXPECT_EQ(database.getNamedObjectsDictionary(root, GcDb::kForWrite), Gcad::eOk);
  auto* note = new Note;
  note->text = text;
  GcDbObjectId id;
  EXPECT_EQ(root->setAt(GC_T("NOTE"), note, id), Gcad::eOk);
  EXPECT_EQ(note->close(), Gcad::eOk);
  EXPECT_EQ(root->close(), Gcad::eOk);
  return id;
}

TEST(Life, ObjectsSleepAndWakeWithTheirClass) {
  GcDbDatabase database;
  registerNote();
  const GcDbObjectId id = addNote(database, GC_T("zażółć"));
  const GcDbHandle handle = id.handle();
  unregisterNote();
  EXPECT_EQ(id.objectClass(), GcDbZombieObject::desc());
  EXPECT_EQ(id.handle(), handle);
  ASSERT_NE(database.fileParts().findClass(GC_T("NOTE")), nullptr);
  EXPECT_EQ(database.fileParts().findClass(GC_T("NOTE"))->className, GcString(GC_T("Note")));

  registerNote();
  ASSERT_EQ(id.objectClass(), g_noteClass);
  EXPECT_EQ(static_cast<Note*>(id.stub()->object)->text, GcString(GC_T("zażółć")));
  EXPECT_EQ(id.stub()->object->ownerId(), database.namedObjectsDictionaryId());
  unregisterNote();
  EXPECT_EQ(database.store().openCount(), 0);
}

TEST(Life, WhatItsClassCannotReadStaysAZombie) {
  GcDbDatabase database;
  registerNote();
  const GcDbObjectId id = addNote(database, GC_T("x"));
  unregisterNote();
  auto* zombie = GcDbZombieObject::cast(id.stub()->object);
  ASSERT_NE(zombie, nullptr);
  zombie->data().groups.clear();
  zombie->data().groups.put(GcDbGroup::ofText(100, GC_T("Note")));
  zombie->data().groups.put(GcDbGroup::ofInt(70, 5));
  const GcDbGroupList before = zombie->data().groups;
  registerNote();
  ASSERT_EQ(id.objectClass(), GcDbZombieObject::desc());
  EXPECT_TRUE(GcDbZombieObject::cast(id.stub()->object)->data().groups == before);
  unregisterNote();
}

}  // namespace
