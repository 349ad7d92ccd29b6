// Reactors of the module in several documents, through the messages that the host really sends.
#include <gtest/gtest.h>

#include "rx/rxclass.h"
#include "tests/session/testhost.h"

namespace {

constexpr const char* kPrepare =
    "(regapp \"ST_X\")"
    "(defun WSQ_RE_LT_EntAdded (handle) (princ (strcat \"added \" where)))"
    "(defun WSQ_RE_LT_EntErased (handle) (princ (strcat \"erased \" where)))"
    "(defun line () (entmakex '((0 . \"LINE\") (10 0 0 0) (11 1 0 0) (-3 (\"ST_X\" (1000 . \"x\"))))))";

class Reactors : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(host.loadModule()); }

  ap::Document& open(const char* name) {
    ap::Document& document = host.open();
    host.evaluate(document, kPrepare);
    host.evaluate(document, (std::string("(setq where \"") + name + "\")").c_str());
    host.takeShown();
    return document;
  }
  // What the command line shows when a marked line is drawn there.
  std::string draw(ap::Document& document) {
    host.evaluate(document, "(setq made (line))");
    return host.takeShown();
  }

  TestHost host;
};

TEST_F(Reactors, BelongToTheDocumentInWhichTheyWereSwitchedOn) {
  ap::Document& first = open("first");
  ap::Document& second = open("second");
  EXPECT_EQ(draw(second), "");
  EXPECT_EQ(host.evaluate(first, "(addreact)"), "nil");
  EXPECT_EQ(draw(first), "added first");
  EXPECT_EQ(draw(second), "");
  EXPECT_EQ(host.evaluate(second, "(addreact)"), "nil");
  EXPECT_EQ(draw(second), "added second");
  EXPECT_EQ(host.evaluate(first, "(removereact)"), "nil");
  EXPECT_EQ(draw(first), "");
  EXPECT_EQ(draw(second), "added second");
}

TEST_F(Reactors, GoWithTheirDocument) {
  ap::Document* first = &open("first");
  ap::Document& second = open("second");
  host.evaluate(*first, "(addreact)");
  host.evaluate(second, "(addreact)");
  host.manager->close(*first);
  EXPECT_EQ(draw(second), "added second");
  // A new document, perhaps at the address of the old one, begins without.
  ap::Document& third = open("third");
  EXPECT_EQ(draw(third), "");
  host.evaluate(third, "(addreact)");
  EXPECT_EQ(draw(third), "added third");
  EXPECT_EQ(draw(second), "added second");
}

TEST_F(Reactors, AllGoWithTheModule) {
  ap::Document& first = open("first");
  ap::Document& second = open("second");
  host.evaluate(first, "(addreact)");
  host.evaluate(second, "(addreact)");
  EXPECT_EQ(draw(first), "added first");
  EXPECT_EQ(draw(second), "added second");
  ASSERT_TRUE(host.linker->unloadModule(TestHost::modulePath().c_str()));
  EXPECT_EQ(gcrxFindGcRxClass(GC_T("CObjReactor")), nullptr);
  EXPECT_EQ(draw(first), "");
  EXPECT_EQ(draw(second), "");
  EXPECT_EQ(host.evaluate(first, "(addreact)"), "no function definition: ADDREACT");
  host.takeShown();
  // Loaded again it begins anew.
  ASSERT_TRUE(host.loadModule());
  EXPECT_EQ(draw(first), "");
  host.evaluate(first, "(addreact)");
  EXPECT_EQ(draw(first), "added first");
}

TEST_F(Reactors, SendToTheCurrentDocument) {
  ap::Document& first = open("first");
  ap::Document& second = open("second");
  host.evaluate(first, "(addreact)");
  host.evaluate(first, "(setq made (line))");
  host.takeShown();
  // The first document's database changes while the second one is current.
  host.manager->setCurrent(&second);
  GcDbBlockTableRecord* space = nullptr;
  ASSERT_EQ(gcdbOpenObject(space, first.database()->modelSpaceId(), GcDb::kForRead), Gcad::eOk);
  const GcDbObjectId made = space->entities()[0];
  ASSERT_EQ(space->close(), Gcad::eOk);
  GcDbEntity* entity = nullptr;
  ASSERT_EQ(gcdbOpenObject(entity, made, GcDb::kForWrite), Gcad::eOk);
  ASSERT_EQ(entity->erase(), Gcad::eOk);
  ASSERT_EQ(entity->close(), Gcad::eOk);
  TestHost::runQueued(first);
  EXPECT_EQ(host.takeShown().find("erased first"), std::string::npos);
  TestHost::runQueued(second);
  EXPECT_NE(host.takeShown().find("erased second"), std::string::npos);
}

TEST_F(Reactors, RegisterTheirClass) {
  GcRxClass* made = gcrxFindGcRxClass(GC_T("CObjReactor"));
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(GcString(made->myParent()->name()), GcString(GC_T("GcDbDatabaseReactor")));
  // What the class makes by itself watches nothing.
  GcRxObject* reactor = made->create();
  ASSERT_NE(reactor, nullptr);
  EXPECT_EQ(reactor->isA(), made);
  ap::Document& document = open("first");
  EXPECT_EQ(draw(document), "");
  delete reactor;
}

// ---- commands that bring whole states back

GcDbObjectId g_victim;

void eraseVictim() {
  GcDbEntity* entity = nullptr;
  if (gcdbOpenObject(entity, g_victim, GcDb::kForWrite, true) != Gcad::eOk) return;
  ignore(entity->erase(!entity->isErased()));
  ignore(entity->close());
}

GcEdCommandStack* commandStack() {
  return static_cast<GcEdCommandStack*>(gcrxSysRegistry()->at(GCED_REGISTERED_COMMANDS));
}

class Commands : public Reactors {
 protected:
  void SetUp() override {
    Reactors::SetUp();
    document = &open("here");
    host.evaluate(*document, "(addreact)");
    host.evaluate(*document, "(setq made (line))");
    GcDbBlockTableRecord* space = nullptr;
    ASSERT_EQ(gcdbOpenObject(space, document->database()->modelSpaceId(), GcDb::kForRead), Gcad::eOk);
    g_victim = space->entities()[0];
    ASSERT_EQ(space->close(), Gcad::eOk);
    host.takeShown();
  }
  // Whether an erase within a plug-in's command of that name is told.
  bool isTold(const GCHAR* name) {
    EXPECT_EQ(commandStack()->addCommand(GC_T("TEST"), name, name, 0, eraseVictim), Gcad::eOk);
    EXPECT_EQ(ed::editorOf(*document).commandLine().feed(ed::InputItem::ofText(name)), ed::FeedStatus::Done);
    EXPECT_EQ(commandStack()->removeCmd(GC_T("TEST"), name), Gcad::eOk);
    TestHost::runQueued(*document);
    const std::string shown = host.takeShown();
    return shown.find("erased here") != std::string::npos;
  }

  ap::Document* document = nullptr;
};

TEST_F(Commands, SomeAreNotTold) {
  EXPECT_FALSE(isTold(GC_T("DIMSTYLE")));
  EXPECT_FALSE(isTold(GC_T("dimstyle")));
  EXPECT_FALSE(isTold(GC_T("UNDO")));
  EXPECT_FALSE(isTold(GC_T("Redo")));
  // Deliberate: U is told, and so is everything that only contains one of the names.
  EXPECT_TRUE(isTold(GC_T("U")));
  EXPECT_TRUE(isTold(GC_T("DIMSTYLES")));
  EXPECT_TRUE(isTold(GC_T("ERASE")));
}

}  // namespace
