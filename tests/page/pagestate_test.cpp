#include "cli/page/pagestate.h"

#include <gtest/gtest.h>

#include "cli/page/bytes.h"
#include "cli/page/inbox.h"
#include "cli/page/shapecanvas.h"

namespace {

using namespace cli::page;
using namespace std::chrono_literals;

Shape lineFrom(double x) {
  ShapeCanvas canvas(1);
  gc::plot::Path path;
  path.moveTo({x, 0});
  path.lineTo({x + 50, 50});
  canvas.stroke(path, gc::plot::Pen());
  return canvas.take();
}

SceneChange scene(ShapeId count) {
  SceneChange change;
  change.anew = true;
  for (ShapeId id = 0; id < count; ++id) change.put.emplace_back(id, lineFrom(id));
  return change;
}

// Everything the page is told now; shapes as {"+", count}, dragged sets as "set".
struct Told {
  std::vector<std::string> json;
  uint32_t shapes = 0, gone = 0, sets = 0;
  bool last = false;
};

Told tellAll(PageState& state, PageId page) {
  Told told;
  for (PageMessage message; state.next(page, message);) {
    if (!message.binary) {
      told.json.push_back(message.bytes);
    } else if (numberAt<uint32_t>(message.bytes, 0) == 1) {
      told.last = (numberAt<uint32_t>(message.bytes, 8) & 1) != 0;
      told.gone += numberAt<uint32_t>(message.bytes, 12);
      told.shapes += numberAt<uint32_t>(message.bytes, 16);
    } else {
      ++told.sets;
    }
  }
  return told;
}

const PageView kAll = {50, 25, 1, 800, 600};

TEST(PageStateTest, APageIsToldThePresentOnce) {
  PageState state;
  state.set(PageState::kPrompt, "old");
  state.set(PageState::kPrompt, "new");
  state.addText("Hello\n\"");
  state.open(1);
  const Told told = tellAll(state, 1);
  ASSERT_EQ(told.json.size(), 2U);
  EXPECT_EQ(told.json[0], "{\"t\":\"text\",\"skipped\":false,\"text\":\"Hello\\u000a\\\"\"}");
  EXPECT_EQ(told.json[1], "new");
  EXPECT_TRUE(tellAll(state, 1).json.empty());
  state.set(PageState::kPrompt, "new");  // no change
  EXPECT_TRUE(tellAll(state, 1).json.empty());
  state.close(1);
  state.open(2);
  EXPECT_EQ(tellAll(state, 2).json.size(), 2U);
}

TEST(PageStateTest, ShapesComeOnceAndChangesFollow) {
  PageState state;
  state.changeScene(scene(100));
  state.open(1);
  EXPECT_EQ(tellAll(state, 1).shapes, 0U);  // it has not said what it looks at
  state.look(1, kAll);
  Told told = tellAll(state, 1);
  EXPECT_EQ(told.shapes, 100U);
  EXPECT_TRUE(told.last);
  state.look(1, {60, 25, 1, 800, 600});
  EXPECT_EQ(tellAll(state, 1).shapes, 0U);
  SceneChange change;
  change.gone = {7};
  change.put.emplace_back(8, lineFrom(1));
  state.changeScene(std::move(change));
  told = tellAll(state, 1);
  EXPECT_EQ(told.gone, 2U);
  EXPECT_EQ(told.shapes, 1U);
  state.changeScene(scene(3));
  EXPECT_EQ(tellAll(state, 1).shapes, 3U);
}

TEST(PageStateTest, WhatIsOutOfSightComesWhenItIsLookedAtOrDragged) {
  PageState state;
  SceneChange change = scene(10);
  change.put.emplace_back(10, lineFrom(1e6));
  state.changeScene(std::move(change));
  state.open(1);
  state.look(1, kAll);
  EXPECT_EQ(tellAll(state, 1).shapes, 10U);
  state.dragTo({10}, {1, 0, 0, 1, 5, 5});
  Told told = tellAll(state, 1);
  EXPECT_EQ(told.sets, 1U);
  EXPECT_EQ(told.shapes, 1U);
  ASSERT_EQ(told.json.size(), 1U);
  EXPECT_NE(told.json[0].find("\"drag\""), std::string::npos);
  // Of many frames a page that was away is told the last; the set again only when it is another.
  for (int i = 0; i < 50; ++i) state.dragTo({10}, {1, 0, 0, 1, static_cast<double>(i), 0});
  told = tellAll(state, 1);
  EXPECT_EQ(told.sets, 0U);
  ASSERT_EQ(told.json.size(), 1U);
  EXPECT_NE(told.json[0].find("49"), std::string::npos);
  state.endDrag();
  ASSERT_EQ(tellAll(state, 1).json, std::vector<std::string>{R"({"t":"dragged"})"});
}

TEST(PageStateTest, TextThatNobodyReadsIsBounded) {
  PageState state;
  state.open(1);
  const std::string line = "ąęść " + std::string(95, 'x') + "\n";
  for (int i = 0; i < 20000; ++i) state.addText(line);
  size_t bytes = 0;
  bool skipped = false;
  for (PageMessage message; state.next(1, message);) {
    bytes += message.bytes.size();
    skipped = skipped || message.bytes.find("\"skipped\":true") != std::string::npos;
  }
  EXPECT_TRUE(skipped);
  EXPECT_LT(bytes, size_t{700} << 10);
  EXPECT_GT(bytes, size_t{200} << 10);
}

PageEvent event(PageEvent::Kind kind, double x = 0) {
  PageEvent made;
  made.kind = kind;
  made.x = x;
  return made;
}

TEST(InboxTest, MovesAreReplacedClicksAreKept) {
  using Kind = PageEvent::Kind;
  Inbox inbox;
  for (int i = 0; i < 5000; ++i) EXPECT_TRUE(inbox.push(event(Kind::Move, i)));
  EXPECT_TRUE(inbox.push(event(Kind::Pick, 7)));
  EXPECT_TRUE(inbox.push(event(Kind::Move, 8)));
  PageEvent taken;
  ASSERT_EQ(inbox.take(taken, 0ms, true), Inbox::Taken::Event);
  EXPECT_EQ(taken.kind, Kind::Move);
  EXPECT_EQ(taken.x, 4999);
  ASSERT_EQ(inbox.take(taken, 0ms, true), Inbox::Taken::Event);
  EXPECT_EQ(taken.kind, Kind::Pick);
  inbox.push(event(Kind::Line));
  inbox.dropClicks();
  ASSERT_EQ(inbox.take(taken, 0ms, true), Inbox::Taken::Event);
  EXPECT_EQ(taken.kind, Kind::Line);
  EXPECT_EQ(inbox.take(taken, 1ms, true), Inbox::Taken::Idle);
}

TEST(InboxTest, IsBoundedAndEnds) {
  Inbox inbox;
  int taken = 0;
  while (inbox.push(event(PageEvent::Kind::Line)) && taken < 100000) ++taken;
  EXPECT_EQ(taken, 1000);
  inbox.end();
  PageEvent left;
  EXPECT_EQ(inbox.take(left, 10s, true), Inbox::Taken::Over);
}

TEST(InboxTest, NobodyIsThereOnceTheLastPageHasBeenGoneForAWhile) {
  Inbox inbox;
  PageEvent taken;
  EXPECT_EQ(inbox.take(taken, 1ms, true), Inbox::Taken::Idle);  // none has come yet
  inbox.pageOpened();
  inbox.pageOpened();
  inbox.pageClosed();
  EXPECT_EQ(inbox.take(taken, 1ms, true), Inbox::Taken::Idle);
  inbox.pageClosed();
  EXPECT_EQ(inbox.take(taken, 1ms, true), Inbox::Taken::Idle);  // it may be loaded anew
  EXPECT_EQ(inbox.take(taken, 60s, true), Inbox::Taken::Alone);
  EXPECT_EQ(inbox.take(taken, 1ms, false), Inbox::Taken::Idle);
}

TEST(EventTest, NumbersAndTextsAreChecked) {
  PageEvent read;
  ASSERT_TRUE(parseEvent(R"({"t":"box","x":1,"y":2.5,"x2":-3,"y2":4e2,"on":true})", read));
  EXPECT_EQ(read.kind, PageEvent::Kind::Window);
  EXPECT_EQ(read.x2, -3);
  EXPECT_TRUE(read.on);
  ASSERT_TRUE(parseEvent("{\"t\":\"line\",\"text\":\"((([[[\"}", read));
  for (const char* bad : {"", "{}", "[]", "{\"t\":\"box\",\"x\":1}", R"({"t":"layer","text":"a"})",
                          R"({"t":"layer","text":"a","n":1e99})", R"({"t":"pick","x":null,"y":0})"})
    EXPECT_FALSE(parseEvent(bad, read)) << bad;
}

}  // namespace
