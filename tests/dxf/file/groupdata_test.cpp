// The built-in data class keeps its groups through files, with its class record.
#include "db/groupdata.h"

#include <gtest/gtest.h>

#include "db/database.h"
#include "db/dictionary.h"
#include "host/db/core/fileparts.h"
#include "host/db/describe/group.h"
#include "host/dxf/dxf_file.h"

namespace {

class StringSink final : public gc::dxf::ByteSink {
 public:
  bool write(const char* bytes, std::size_t count) override {
    text.append(bytes, count);
    return true;
  }
  std::string text;
};

GcDbGroupList sampleGroups() {
  GcDbGroupList groups;
  groups.put(GcDbGroup::ofText(100, GC_T("vlo_VL")));
  groups.put(GcDbGroup::ofReal(40, 1.5));
  groups.put(GcDbGroup::ofReal(40, 2.0));
  groups.put(GcDbGroup::ofText(300, GC_T("(a (&VLO-R . 0) (&VLO-R . 1))")));
  return groups;
}

TEST(GroupData, KeepsItsGroupsThroughFiles) {
  StringSink file;
  {
    GcDbDatabase database;
    GcDbDictionary* root = nullptr;
    ASSERT_EQ(database.getNamedObjectsDictionary(root, GcDb::kForWrite), Gcad::eOk);
    auto* data = new GcDbGroupData;
    data->groups() = sampleGroups();
    GcDbObjectId id;
    EXPECT_EQ(root->setAt(GC_T("DATA"), data, id), Gcad::eOk);
    EXPECT_EQ(data->close(), Gcad::eOk);
    EXPECT_EQ(root->close(), Gcad::eOk);
    ASSERT_EQ(gc::dxf::write(database, file, {}), Gcad::eOk);
  }
  GcDbDatabase read(false);
  ASSERT_EQ(gc::dxf::read(read, file.text), Gcad::eOk);
  GcDbDictionary* root = nullptr;
  ASSERT_EQ(read.getNamedObjectsDictionary(root), Gcad::eOk);
  GcDbGroupData* data = nullptr;
  ASSERT_EQ(root->getAt(GC_T("DATA"), data, GcDb::kForRead), Gcad::eOk);
  EXPECT_TRUE(data->groups() == sampleGroups());
  EXPECT_EQ(data->close(), Gcad::eOk);
  EXPECT_EQ(root->close(), Gcad::eOk);
  const GcDbClassRecord* record = read.fileParts().findClass(GC_T("VLO-VL"));
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->className, GcString(GC_T("vlo_VL")));
}

}  // namespace
