// The document's side of the page: carries out what people do there, asks them what programs ask, and keeps what the
// pages show up with the document. Everything here runs on the document's thread, which is the main one.
#pragma once

#include <deque>
#include <functional>

#include "cli/page/inbox.h"
#include "cli/page/pagescreen.h"
#include "cli/page/pagestate.h"
#include "cli/page/scenebuilder.h"
#include "cli/session.h"

namespace cli::page {

class Desk final : private ap::Output, private ed::InputSource {
 public:
  struct Line {
    std::function<void()> wake;                       // there is something new in the state
    std::function<void(lisp::Interpreter*)> running;  // what Stop would stop; null: nothing
  };
  Desk(Session& session, PageState& state, Inbox& inbox, Line line);
  ~Desk() override;
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;

  // Runs scripts first, then whatever people ask for, until the inbox is over or a program ends the service. The exit
  // code: kDone, or what the program said.
  int run(const std::vector<Source>& scripts);

 private:
  // ap::Output, ed::InputSource
  void write(GcView text) override;
  void expect(const ed::InputWish& wish) override { m_wish = wish; }
  bool readLine(GcText& line) override;
  [[nodiscard]] bool interrupted() const override { return m_interrupted; }

  enum class Answer : uint8_t { None, Line, Cancel };
  Answer answerFrom(const PageEvent& event, GcText& line);
  bool answerDrag(const PageEvent& event, GcText& line);
  bool cancelled(const char* why);

  void whenIdle(PageEvent event);
  void enter(const GcText& entry);
  void escape();
  void typed(GcText text);
  void clicked(const PageEvent& event);
  void boxed(const PageEvent& event);
  // What can be done at any time; false when the event is none of that.
  bool anyTime(const PageEvent& event, bool idle);
  void complete(const PageEvent& event);
  void tell(PageId page, const std::string& message);

  // Runs something that programs may be behind.
  template <class Work>
  void run(Work work);
  void lookThrough(PageId page);
  [[nodiscard]] GcText pointText(double x, double y);
  [[nodiscard]] std::vector<GcText> boxWords(const PageEvent& event);

  void select(const std::vector<GcDbObjectId>& entities, bool adds);
  void checkSelection();

  // Puts what is new into the state and wakes the network.
  void refresh();
  void settle();  // the document that is current now is the one that is shown
  void prompt(const char* mode, const ed::InputWish& wish);
  void idlePrompt();
  void setDocument();
  void setSelection();
  void setFirstView();

  Session& m_session;
  PageState& m_state;
  Inbox& m_inbox;
  Line m_line;
  SceneBuilder m_builder;
  PageScreen m_screen;
  ap::Output* m_formerOutput;
  ed::InputWish m_wish;
  std::deque<GcText> m_ahead;  // further lines of one thing a person did
  bool m_interrupted = false;
  bool m_wasAlone = false;
  GcText m_entry;  // an unfinished one
  GcText m_shownQuestion;
  GcText m_lastLine;  // of what has been printed
  std::vector<GcDbObjectId> m_selected;
  GcText m_layout;
  const ap::Document* m_document = nullptr;
  bool m_ended = false;
  int m_code = 0;
};

}  // namespace cli::page
