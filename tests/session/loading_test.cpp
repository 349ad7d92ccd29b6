// The module comes and goes while documents are open.
#include <gtest/gtest.h>

#include <filesystem>

#include "host/ap/library.h"
#include "host/rx/file/folder.h"
#include "tests/scratch.h"
#include "tests/session/testhost.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

// Whether the process still has the library in its memory.
bool isMapped(const GcText& path) {
#ifdef _WIN32
  return GetModuleHandleW(path.c_str()) != nullptr;
#else
  void* library = dlopen(gc::toUtf8(path).c_str(), RTLD_NOLOAD | RTLD_NOW);
  if (library != nullptr) dlclose(library);
  return library != nullptr;
#endif
}

constexpr const char* kLine = "(cdr (assoc 8 (entget (kel_addline \"ModelSpace\" '(0 0) '(1 1)))))";
constexpr const char* kUndefined = "no function definition: KEL_ADDLINE";

class Loading : public ::testing::Test {
 protected:
  TestHost host;
};

TEST_F(Loading, AgainAndAgainLeavesNothingBehind) {
  ap::Document& document = host.open();
  const GcText path = TestHost::modulePath();
  constexpr int kTimes = 25;
  for (int time = 0; time < kTimes; ++time) {
    EXPECT_EQ(host.evaluate(document, kLine), kUndefined) << "before time " << time;
    ASSERT_TRUE(host.loadModule()) << "time " << time;
    EXPECT_TRUE(isMapped(path));
    EXPECT_EQ(host.evaluate(document, kLine), "\"0\"") << "time " << time;
    EXPECT_EQ(host.evaluate(document, "(addreact)"), "nil");
    ASSERT_TRUE(host.linker->unloadModule(path.c_str())) << "time " << time;
    EXPECT_FALSE(isMapped(path)) << "time " << time;
  }
  EXPECT_EQ(host.evaluate(document, "(sslength (ssget \"X\"))"), std::to_string(kTimes));
}

// The plug-in answers with the host's own version, by forwarding.
TEST_F(Loading, TheVersionThroughThePlugInIsTheHosts) {
  ap::Library library;
  GcText reason;
  ASSERT_TRUE(library.open(TestHost::modulePath(), reason)) << gc::toUtf8(reason);
  const auto version = reinterpret_cast<int (*)()>(library.symbol("gcrxGetApiVersion"));
  ASSERT_NE(version, nullptr);
  EXPECT_EQ(version(), gcrxGetApiVersion());
}

TEST_F(Loading, TwiceIsOnce) {
  ap::Document& document = host.open();
  ASSERT_TRUE(host.loadModule());
  host.loadModule();
  EXPECT_EQ(host.evaluate(document, kLine), "\"0\"");
  ASSERT_TRUE(host.linker->unloadModule(TestHost::modulePath().c_str()));
  EXPECT_FALSE(isMapped(TestHost::modulePath()));
  EXPECT_FALSE(host.linker->unloadModule(TestHost::modulePath().c_str()));
  EXPECT_EQ(host.evaluate(document, kLine), kUndefined);
}

TEST_F(Loading, EveryDocumentHasTheFunctionsWhetherOpenedBeforeOrAfter) {
  ap::Document& before = host.open();
  ASSERT_TRUE(host.loadModule());
  ap::Document& after = host.open();
  ap::Document& closed = host.open();
  for (ap::Document* document : {&before, &after, &closed}) EXPECT_EQ(host.evaluate(*document, kLine), "\"0\"");
  host.manager->close(closed);
  EXPECT_EQ(host.evaluate(before, kLine), "\"0\"");
  ASSERT_TRUE(host.linker->unloadModule(TestHost::modulePath().c_str()));
  for (ap::Document* document : {&before, &after}) EXPECT_EQ(host.evaluate(*document, kLine), kUndefined);
  EXPECT_EQ(host.evaluate(after, "(sslength (ssget \"X\"))"), "1");
  ASSERT_TRUE(host.loadModule());
  for (ap::Document* document : {&before, &after}) EXPECT_EQ(host.evaluate(*document, kLine), "\"0\"");
}

TEST_F(Loading, TheLastDocumentMayCloseFirst) {
  ASSERT_TRUE(host.loadModule());
  ap::Document& only = host.open();
  EXPECT_EQ(host.evaluate(only, "(addreact)"), "nil");
  host.manager->close(only);
  ASSERT_TRUE(host.linker->unloadModule(TestHost::modulePath().c_str()));
  EXPECT_FALSE(isMapped(TestHost::modulePath()));
}

// Strings made on one side and freed on the other, of every length around the sizes that are kept in place.
TEST_F(Loading, StringsCrossTheEdgeBothWays) {
  const TextsStay texts;
  ap::Document& document = host.open();
  ASSERT_TRUE(host.loadModule());
  const std::string same = host.evaluate(document, R"lisp(
    (progn
      (setq text "x" wrong 0)
      (repeat 300
        (kel_ldata_put "EDGE" "text" text)
        (if (/= (kel_ldata_get "EDGE" "text") text) (setq wrong (1+ wrong)))
        (setq made (kel_addtext "ModelSpace" text '(1 2) 2.5))
        (if (/= (cdr (assoc 1 (entget made))) text) (setq wrong (1+ wrong)))
        (setq text (strcat text (cond ((= (rem (strlen text) 3) 0) "ż") ((= (rem (strlen text) 3) 1) "日") (T "x")))))
      (list wrong (strlen text)))
  )lisp");
  EXPECT_EQ(same, "(0 301)");
}

// A module that is a copy under another name, in a folder of a user: loaded, unloaded, and then nothing holds its file.
TEST_F(Loading, FromAFolderOfAnyNameAndItsFileIsFreeAfterwards) {
  const gc::test::ScratchFolder scratch("moduł zażółć");
  const std::filesystem::path copy = scratch.path() / "VrkEntPropertyEx.grx";
  std::filesystem::copy_file(std::filesystem::path(TestHost::modulePath()), copy);
#ifdef _WIN32
  const GcText path = copy.native();
#else
  const GcText path = copy.u16string();
#endif
  ap::Document& document = host.open();
  ASSERT_TRUE(host.linker->loadModule(path.c_str(), true)) << gc::toUtf8(host.linker->reason());
  EXPECT_EQ(host.evaluate(document, kLine), "\"0\"");
  ASSERT_TRUE(host.linker->unloadModule(path.c_str()));
  EXPECT_TRUE(gc::removeFile(copy));
}

}  // namespace
