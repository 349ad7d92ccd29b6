#include "host/db/core/fileformats.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "host/rx/file/atomic_file.h"
#include "host/rx/view.h"
#include "tests/dxf/file/round_trip.h"
#include "tests/scratch.h"

namespace {

class FileFormats : public testing::Test {
 protected:
  [[nodiscard]] std::string pathOf(const char* name) const { return (m_scratch.path() / name).string(); }

 private:
  gc::test::ScratchFolder m_scratch;
};

TEST_F(FileFormats, ADrawingIsReadByContentAndSavedByExtension) {
  const std::string path = pathOf("gc_formats.dxf"), other = pathOf("gc_formats.txt");
  GcDbDatabase drawn;
  std::string message;
  ASSERT_EQ(gcdbSaveDrawing(drawn, path, {}, message), Gcad::eOk) << message;
  std::filesystem::rename(path, other);
  GcDbDatabase database(false);
  ASSERT_EQ(database.readDwgFile(toGcString(fromUtf8(other)).c_str()), Gcad::eOk);
  EXPECT_TRUE(database.layerZero().isValid());
  EXPECT_TRUE(gc::test::reportOf(database).empty()) << gc::test::reportOf(database).front();
  EXPECT_EQ(database.readDwgFile(toGcString(fromUtf8(other)).c_str()), Gcad::eNotApplicable);
  std::filesystem::remove(other);
}

TEST_F(FileFormats, WhatCannotBeReadOrSavedIsAStatus) {
  GcDbDatabase empty(false), drawn;
  std::string message;
  EXPECT_EQ(empty.readDwgFile(GC_T("/no/such/file.dxf")), Gcad::eFileNotFound);
  const std::string path = pathOf("gc_formats_none.dxf");
  ASSERT_TRUE(gc::writeFileAtomically(path, "no drawing\n", 11).ok());
  EXPECT_EQ(gcdbReadDrawing(empty, path, message), Gcad::eBadDwgFile);
  EXPECT_NE(message.find(path), std::string::npos);
  EXPECT_EQ(gcdbSaveDrawing(drawn, pathOf("a.xyz"), {}, message), Gcad::eInvalidInput);
  EXPECT_EQ(gcdbSaveDrawing(drawn, "/no/such/folder/a.dxf", {}, message), Gcad::eFileWriteError);
  EXPECT_NE(message.find("/no/such/folder"), std::string::npos);
  GcDbSaveOptions old;
  old.version = GcDb::kDHL_AC1014;
  EXPECT_EQ(gcdbSaveDrawing(drawn, path, old, message), Gcad::eUnsupportedVersion);
  std::filesystem::remove(path);
}

}  // namespace
