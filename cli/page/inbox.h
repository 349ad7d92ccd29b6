// What people do on the pages, on its way to the document's thread.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>

#include "cli/page/pageserver.h"

namespace cli::page {

struct PageEvent {
  enum class Kind : uint8_t {
    Line,      // text, as typed and ended by Enter
    Escape,    // of the prompt
    Stop,      // of whatever runs
    Move,      // x, y: the cursor
    Pick,      // x, y: a click
    Window,    // x, y to x2, y2, dragged open; to the left a crossing
    Layer,     // text: its name; number: what is set, `on`: to what
    Layout,    // text: its name
    Complete,  // text: the start of a word; number: of the question
  } kind = Kind::Line;
  PageId page = 0;
  std::string text;
  double x = 0, y = 0, x2 = 0, y2 = 0;  // of the scene
  double reach = 0;                     // Pick: of the pick box, scene units
  int number = 0;
  bool on = false;  // Pick, Window: adds to the selection
};

// Reads a page's message that is an event. False when it is none.
bool parseEvent(std::string_view json, PageEvent& event);

class Inbox {
 public:
  enum class Taken : uint8_t {
    Event,
    Over,   // the service ends
    Alone,  // the last page has been gone for a while
    Idle,   // nothing has come in the time
  };

  // ---- the network's thread
  // A cursor that has not been looked at yet is moved. False: too much waits already.
  bool push(PageEvent event);
  void pageOpened();
  void pageClosed();
  void end();

  // ---- the document's thread
  // `tellAlone`: whether that nobody is there is news.
  Taken take(PageEvent& event, std::chrono::milliseconds patience, bool tellAlone);
  // Clicks that came while nobody asked for them are dropped.
  void dropClicks();
  [[nodiscard]] bool isOver();

 private:
  std::mutex m_mutex;
  std::condition_variable m_wake;
  std::deque<PageEvent> m_events;
  int m_pages = 0;
  bool m_hadPage = false;
  bool m_over = false;
  std::chrono::steady_clock::time_point m_leftAt;
};

}  // namespace cli::page
