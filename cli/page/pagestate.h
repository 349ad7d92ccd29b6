// What pages show, kept by the document's thread and read by the network's.
//
// Pages are told the present state of things, not their history: each part has a number that grows with it, each page
// remembers which number it has seen, and whenever its connection is free it is given what it lacks. A page that
// opens late or reads slowly skips what is over; nothing piles up. All members but the constructor lock.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/page/pageserver.h"
#include "cli/page/scene.h"

namespace cli::page {

// What a page looks at: scene units, and pixels of the screen.
struct PageView {
  double x = 0, y = 0;  // centre
  double unitsPerPixel = 0;
  int width = 0, height = 0;
};

struct SceneChange {
  bool anew = false;  // everything before is gone
  std::vector<std::pair<ShapeId, Shape>> put;
  std::vector<ShapeId> gone;
};

class PageState {
 public:
  // Parts that are sent whole, as JSON, in this order.
  enum Part : uint8_t { kDocument, kPrompt, kView, kSelection, kLines, kPartCount };

  // ---- the document's thread
  void set(Part part, std::string json);
  void addText(std::string_view utf8);
  void changeScene(SceneChange change);
  // A frame of a drag: its shapes moved by (a b c d e f): x' = a x + c y + e, y' = b x + d y + f.
  void dragTo(const std::vector<ShapeId>& shapes, const std::array<double, 6>& matrix);
  void endDrag();
  void answer(PageId page, std::string json);
  [[nodiscard]] std::optional<PageView> viewOf(PageId page) const;
  [[nodiscard]] std::vector<ShapeId> within(const Box& region) const;
  // A copy of the shape; empty when there is none.
  [[nodiscard]] Shape shape(ShapeId id) const;
  [[nodiscard]] Box extents() const;

  // ---- the network's thread
  void open(PageId page);
  void close(PageId page);
  void look(PageId page, const PageView& view);
  // What the page is to be told next; false when it knows everything.
  bool next(PageId page, PageMessage& message);

 private:
  struct Page {
    std::array<uint64_t, kPartCount> seen = {};
    uint64_t textSeen = 0;  // bytes of the whole log
    std::deque<std::string> answers;
    std::optional<PageView> view;
    // The scene: how much of each shape it has, what it must forget, what it is to be sent.
    uint64_t epoch = 0;
    std::vector<Detail> has;
    std::vector<ShapeId> gone;
    std::vector<Seen> waiting;
    size_t sent = 0;  // of those
    bool mustLook = false;
    bool completed = false;
    uint64_t dragSetSeen = 0, dragSeen = 0;
  };
  bool nextText(Page& page, PageMessage& message);
  bool nextDrag(Page& page, PageMessage& message);
  bool nextScene(Page& page, PageMessage& message);
  void lookAgain(Page& page);

  mutable std::mutex m_mutex;
  struct Told {
    std::string json;
    uint64_t number = 0;
  };
  std::array<Told, kPartCount> m_parts;
  std::string m_log;        // its newest part
  uint64_t m_logBegin = 0;  // bytes before it
  Scene m_scene;
  uint64_t m_epoch = 1;
  std::vector<ShapeId> m_dragged;
  std::array<double, 6> m_dragMatrix = {};
  uint64_t m_dragSet = 0, m_drag = 0;  // 0: none has been
  bool m_dragging = false;
  std::map<PageId, Page> m_pages;
};

}  // namespace cli::page
