// Named values of drawings that are open while the module comes and goes.
#include <gtest/gtest.h>

#include "db/dictionary.h"
#include "db/zombie.h"
#include "host/db/core/fileformats.h"
#include "tests/scratch.h"
#include "tests/session/testhost.h"

namespace {

constexpr const char* kPut =
    "(progn (setq e (entmakex '((0 . \"LINE\") (10 0 0 0) (11 1 0 0))))"
    " (kel_ldata_put \"D\" \"k\" \"kept\") (kel_ldata_put e \"k\" \"on the line\"))";
constexpr const char* kGet = "(list (kel_ldata_get \"D\" \"k\") (kel_ldata_get (entlast) \"k\"))";
constexpr const char* kBoth = "(\"kept\" \"on the line\")";

class NamedValues : public ::testing::TestWithParam<const char*> {
 protected:
  TextsStay texts;

  // A drawing file of the parameter's format with two values in it.
  void save(const std::string& path) {
    TestHost writer;
    ASSERT_TRUE(writer.loadModule());
    ap::Document& document = writer.open();
    ASSERT_EQ(writer.evaluate(document, kPut), "\"on the line\"");
    std::string message;
    ASSERT_EQ(gcdbSaveDrawing(*document.database(), path, {}, message), Gcad::eOk) << message;
  }
  static ap::Document& openFile(TestHost& host, const std::string& path) {
    auto database = std::make_unique<GcDbDatabase>(false);
    std::string message;
    EXPECT_EQ(gcdbReadDrawing(*database, path, message), Gcad::eOk) << message;
    return host.manager->open(std::move(database), gc::fromUtf8(path));
  }
  // Whether the value in the dictionary is an object of a class nobody has loaded.
  static bool asleep(ap::Document& document) {
    GcDbDictionary* root = nullptr;
    GcDbDictionary* values = nullptr;
    GcDbObjectId id;
    EXPECT_EQ(gcdbOpenObject(root, document.database()->namedObjectsDictionaryId(), GcDb::kForRead), Gcad::eOk);
    EXPECT_EQ(root->getAt(GC_T("D"), id), Gcad::eOk);
    EXPECT_EQ(root->close(), Gcad::eOk);
    EXPECT_EQ(gcdbOpenObject(values, id, GcDb::kForRead), Gcad::eOk);
    EXPECT_EQ(values->getAt(GC_T("k"), id), Gcad::eOk);
    EXPECT_EQ(values->close(), Gcad::eOk);
    GcDbObject* value = nullptr;
    EXPECT_EQ(gcdbOpenObject(value, id, GcDb::kForRead), Gcad::eOk);
    const bool isZombie = value->isKindOf(GcDbZombieObject::desc());
    EXPECT_EQ(value->close(), Gcad::eOk);
    return isZombie;
  }

  gc::test::ScratchFolder folder;
};

TEST_P(NamedValues, WakeInEveryOpenDrawingWhenTheModuleComes) {
  const std::string path = (folder.path() / GetParam()).string();
  save(path);
  TestHost host;
  ap::Document& first = openFile(host, path);
  ap::Document& second = openFile(host, path);
  EXPECT_TRUE(asleep(first));
  EXPECT_TRUE(asleep(second));
  EXPECT_EQ(host.evaluate(first, kGet), "no function definition: KEL_LDATA_GET");
  ASSERT_TRUE(host.loadModule());
  EXPECT_FALSE(asleep(first));
  EXPECT_EQ(host.evaluate(first, kGet), kBoth);
  EXPECT_EQ(host.evaluate(second, kGet), kBoth);
}

TEST_P(NamedValues, SleepWhileTheModuleIsAway) {
  const std::string path = (folder.path() / GetParam()).string();
  save(path);
  TestHost host;
  ASSERT_TRUE(host.loadModule());
  ap::Document& document = openFile(host, path);
  for (int times = 0; times < 3; ++times) {
    EXPECT_EQ(host.evaluate(document, kGet), kBoth);
    ASSERT_TRUE(host.linker->unloadModule(TestHost::modulePath().c_str()));
    EXPECT_TRUE(asleep(document));
    ASSERT_TRUE(host.loadModule());
  }
  EXPECT_EQ(host.evaluate(document, "(kel_ldata_put \"D\" \"k\" \"new\")"), "\"new\"");
  EXPECT_EQ(host.evaluate(document, kGet), "(\"new\" \"on the line\")");
}

// Saved while nobody knows the class, read where it is known.
TEST_P(NamedValues, OutliveASaveWithoutTheModule) {
  const std::string path = (folder.path() / GetParam()).string();
  save(path);
  {
    TestHost without;
    ap::Document& document = openFile(without, path);
    EXPECT_EQ(without.evaluate(document, "(type (entmakex '((0 . \"POINT\") (10 5 5 0))))"), "ENAME");
    EXPECT_EQ(without.evaluate(document, "(entdel (entlast))").substr(0, 8), "<Entity ");
    std::string message;
    ASSERT_EQ(gcdbSaveDrawing(*document.database(), path, {}, message), Gcad::eOk) << message;
  }
  TestHost host;
  ASSERT_TRUE(host.loadModule());
  EXPECT_EQ(host.evaluate(openFile(host, path), kGet), kBoth);
}

INSTANTIATE_TEST_SUITE_P(Formats, NamedValues, ::testing::Values("values.dxf", "values.dwg"),
                         [](const auto& named) { return std::string(named.param).substr(7); });

}  // namespace
