// Jigs as the host runs them, with classes of our own.
#include "ed/jig.h"

#include <gtest/gtest.h>

#include <deque>

#include "host/ed/screen.h"
#include "tests/session/testhost.h"

namespace {

class Lines final : public ed::InputSource {
 public:
  explicit Lines(std::deque<std::string> lines) : m_lines(std::move(lines)) {}
  bool readLine(GcText& line) override {
    if (m_lines.empty()) return false;
    line = gc::fromUtf8(m_lines.front());
    m_lines.pop_front();
    return true;
  }

 private:
  std::deque<std::string> m_lines;
};

class Frames final : public ed::Screen {
 public:
  Frames() : m_former(ed::setScreen(this)) {}
  ~Frames() override { ed::setScreen(m_former); }
  [[nodiscard]] bool showsDrags() const override { return true; }
  void dragFrame(int, const GcGeMatrix3d&, const std::vector<GcDbObjectId>&, int) override { ++count; }
  int count = 0;

 private:
  ed::Screen* m_former;
};

// Notes every status it was given.
class Recorder : public GcEdJig {
 public:
  DragStatus sampler() override {
    setKeywordList(GC_T("One Two"));
    setUserInputControls(controls);
    GcGePoint3d point;
    const DragStatus status = acquirePoint(point, GcGePoint3d::kOrigin);
    statuses.push_back(status);
    if (status == kNormal) points.push_back(point);
    return status;
  }
  bool update() override { return true; }

  int controls = kAccept3dCoordinates;
  std::vector<int> statuses;
  std::vector<GcGePoint3d> points;
};

class Jig : public ::testing::Test {
 protected:
  GcEdJig::DragStatus drag(GcEdJig& jig, std::deque<std::string> lines) {
    Lines source(std::move(lines));
    ed::CommandLine& line = ed::editorOf(document).commandLine();
    line.setSource(&source);
    const GcEdJig::DragStatus status = jig.drag();
    line.setSource(nullptr);
    return status;
  }
  TestHost host;
  ap::Document& document = host.open();
};

TEST_F(Jig, EndsWithAClick) {
  Recorder jig;
  jig.setDispPrompt(GC_T("Where: "));
  EXPECT_EQ(drag(jig, {"move 1,2,3", "pick 4,5", "pick 6,7"}), GcEdJig::kNormal);
  EXPECT_EQ(host.takeShown(), "Where: ");
  ASSERT_EQ(jig.points.size(), 2u);
  EXPECT_EQ(jig.points[0].z, 3);
  EXPECT_EQ(jig.points[1].x, 4);
}

TEST_F(Jig, GivesKeywordsTheirNumber) {
  Recorder jig;
  EXPECT_EQ(drag(jig, {"key two"}), 2);
  EXPECT_EQ(drag(jig, {"key o"}), GcEdJig::kKW1);
}

TEST_F(Jig, TakesEnterOnlyWhenAsked) {
  Recorder jig;
  EXPECT_EQ(drag(jig, {"enter", "", "pick 1,1"}), GcEdJig::kNormal);
  jig.controls |= GcEdJig::kNullResponseAccepted;
  EXPECT_EQ(drag(jig, {"enter", "pick 1,1"}), GcEdJig::kNull);
}

TEST_F(Jig, IsCancelledByEscAndByTheEndOfInput) {
  Recorder jig;
  EXPECT_EQ(drag(jig, {"move 1,1", "ESC"}), GcEdJig::kCancel);
  EXPECT_EQ(drag(jig, {"move 1,1"}), GcEdJig::kCancel);
}

TEST_F(Jig, LiesAtTheElevationUnlessItTakesSpace) {
  Recorder jig;
  jig.controls = 0;
  EXPECT_EQ(drag(jig, {"pick 1,2,3"}), GcEdJig::kNormal);
  EXPECT_EQ(jig.points[0].z, 0);
}

TEST_F(Jig, PassesOverWhatIsNoPoint) {
  Recorder jig;
  EXPECT_EQ(drag(jig, {"move", "pick 1", "move nan,1", "pick 1e999,0", "pick 1,1"}), GcEdJig::kNormal);
  EXPECT_EQ(jig.points.size(), 1u);
}

TEST_F(Jig, ThatAcquiresNothingEndsAtOnce) {
  class Idle final : public GcEdJig {
   public:
    DragStatus sampler() override { return kNormal; }
  } idle;
  EXPECT_EQ(drag(idle, {"pick 1,1"}), GcEdJig::kOther);
  GcEdJig plain;
  EXPECT_EQ(drag(plain, {"pick 1,1"}), GcEdJig::kOther);
  GcGePoint3d point;
  EXPECT_EQ(plain.acquirePoint(point), GcEdJig::kOther);
}

TEST_F(Jig, ThatGivesUpEndsTheDrag) {
  class Quitter final : public Recorder {
   public:
    DragStatus sampler() override {
      const DragStatus status = Recorder::sampler();
      return points.size() < 2 ? status : kCancel;
    }
  } quitter;
  EXPECT_EQ(drag(quitter, {"move 1,1", "move 2,2", "pick 3,3"}), GcEdJig::kCancel);
  EXPECT_EQ(quitter.points.size(), 2u);
}

TEST_F(Jig, RunsOneAtATime) {
  class Nested final : public Recorder {
   public:
    DragStatus sampler() override {
      const DragStatus status = Recorder::sampler();
      Recorder inner;
      innerStatus = inner.drag();
      return status;
    }
    DragStatus innerStatus = kNormal;
  } nested;
  EXPECT_EQ(drag(nested, {"pick 1,1", "pick 2,2"}), GcEdJig::kNormal);
  EXPECT_EQ(nested.innerStatus, GcEdJig::kOther);
  EXPECT_EQ(nested.points.size(), 1u);
}

TEST_F(Jig, IsDrawnAnewOnlyAfterAChange) {
  class Shown final : public Recorder {
   public:
    DragStatus sampler() override {
      const DragStatus status = Recorder::sampler();
      return status == kNormal && points.size() == 2 ? kNoChange : status;
    }
    [[nodiscard]] GcDbEntity* entity() const override { return drawable; }
    GcDbEntity* drawable = nullptr;
  } shown;
  Frames frames;
  EXPECT_EQ(drag(shown, {"move 1,1", "pick 2,2"}), GcEdJig::kNormal);
  EXPECT_EQ(frames.count, 0);  // nothing to draw
  host.evaluate(document, "(entmake '((0 . \"LINE\") (10 0 0 0) (11 1 0 0)))");
  GcDbBlockTableRecord* space = nullptr;
  ASSERT_EQ(gcdbOpenObject(space, document.database()->modelSpaceId(), GcDb::kForRead), Gcad::eOk);
  ASSERT_EQ(gcdbOpenObject(shown.drawable, space->entities()[0], GcDb::kForRead), Gcad::eOk);
  ASSERT_EQ(space->close(), Gcad::eOk);
  shown.points.clear();
  EXPECT_EQ(drag(shown, {"move 1,1", "move 2,2", "pick 3,3"}), GcEdJig::kNormal);
  EXPECT_EQ(frames.count, 2);
  ASSERT_EQ(shown.drawable->close(), Gcad::eOk);
}

}  // namespace
