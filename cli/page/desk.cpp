#include "cli/page/desk.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "cli/entry.h"
#include "cli/exitcode.h"
#include "cli/page/describe.h"
#include "cli/page/outline.h"
#include "cli/script.h"
#include "host/ed/input/ask.h"
#include "host/ed/variables/variables.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace cli::page {

using namespace std::chrono_literals;
using nlohmann::json;
using Kind = PageEvent::Kind;
using What = ed::InputWish::What;

namespace {

constexpr auto kPatience = 250ms;
constexpr size_t kMostPrompt = 500;
constexpr size_t kMostSelectedShown = 50000;
constexpr size_t kMostCompletions = 200;
constexpr double kSavedViewTooFar = 4;  // times the size of the drawing; its saved view is not used then

const char* modeOf(What what) {
  switch (what) {
    case What::Point: return "point";
    case What::Entity: return "entity";
    case What::Objects: return "objects";
    case What::Drag: return "drag";
    default: return "text";
  }
}

// Names in a drawing may hold anything; what is not UTF-8 is replaced.
std::string dumped(const json& value) { return value.dump(-1, ' ', false, json::error_handler_t::replace); }

json numbers(const Box& box) {
  if (box.isEmpty()) return nullptr;
  return {box.minX, box.minY, box.maxX, box.maxY};
}

GcText trimmed(GcText text) {
  text.erase(0, std::min(text.find_first_not_of(GC_T(" \r\n")), text.size()));
  while (!text.empty() && text.back() <= GC_T(' ')) text.pop_back();
  return text;
}

}  // namespace

Desk::Desk(Session& session, PageState& state, Inbox& inbox, Line line)
    : m_session(session),
      m_state(state),
      m_inbox(inbox),
      m_line(std::move(line)),
      m_screen(state, m_builder, m_line.wake, [this] { refresh(); }),
      m_formerOutput(ap::setOutput(this)) {}

Desk::~Desk() {
  m_session.commandLine().setSource(nullptr);
  ap::setOutput(m_formerOutput);
}

void Desk::write(GcView text) {
  std::string bytes;
  gc::appendToUtf8(text, bytes);
  m_state.addText(bytes);
  const size_t end = text.rfind(GC_T('\n'));
  if (end != GcView::npos) m_lastLine.clear();
  m_lastLine += end == GcView::npos ? text : text.substr(end + 1);
  if (m_lastLine.size() > kMostPrompt) m_lastLine.clear();
}

// What the pages show.

void Desk::settle() {
  ap::Document& document = m_session.document();
  if (m_document != &document) {
    m_document = &document;
    m_selected.clear();
    m_entry.clear();
    setSelection();
  }
  ed::Editor& editor = ed::editorOf(document);
  editor.commandLine().setSource(this);
  m_builder.watch(editor);
}

void Desk::refresh() {
  settle();
  m_session.lisp().flush();
  if (SceneChange change; m_builder.update(change)) {
    const GcText layout = ed::editorOf(*m_document).layout();
    const bool firstSeen = change.anew && layout != m_layout;
    m_state.changeScene(std::move(change));
    m_layout = layout;
    if (firstSeen) setFirstView();
    setDocument();
    checkSelection();
  }
  m_screen.publish();
  m_line.wake();
}

void Desk::setDocument() {
  ed::Editor& editor = ed::editorOf(*m_document);
  json clips = json::array();
  for (const auto& clip : m_builder.clips()) {
    json points = json::array();
    for (const gc::plot::Point p : clip) points.push_back({p.x, p.y});
    clips.push_back(points);
  }
  json layouts = json::array({"Model"});
  for (const GcText& name : editor.layoutNames()) layouts.push_back(gc::toUtf8(name));
  m_state.set(PageState::kDocument, dumped({{"t", "document"},
                                            {"name", gc::toUtf8(view(m_document->fileName()))},
                                            {"layouts", layouts},
                                            {"layout", gc::toUtf8(editor.layout())},
                                            {"layers", layersOf(editor.database())},
                                            {"extents", numbers(m_state.extents())},
                                            {"paper", numbers(m_builder.paper())},
                                            {"clips", clips}}));
}

// The view the drawing was saved with, where it shows something of it; else all of it.
void Desk::setFirstView() {
  const ed::Editor& editor = ed::editorOf(*m_document);
  Box box = m_state.extents();
  const Box& paper = m_builder.paper();
  if (!paper.isEmpty()) {
    box.add({paper.minX, paper.minY});
    box.add({paper.maxX, paper.maxY});
  }
  const ed::EditorView& saved = editor.view();
  double x = saved.center.x, y = saved.center.y, height = saved.height;
  const double size = box.isEmpty() ? 0 : std::fmax(box.width(), box.height());
  const Box seen = {x - saved.width() / 2, y - height / 2, x + saved.width() / 2, y + height / 2};
  const bool useless = height > kSavedViewTooFar * size || height * kSavedViewTooFar * 10 < size || !overlap(seen, box);
  if (size > 0 && (editor.inPaperLayout() || useless)) {
    x = (box.minX + box.maxX) / 2;
    y = (box.minY + box.maxY) / 2;
    height = std::fmax(box.height(), box.width() / saved.aspect) * 1.1;
  }
  m_state.set(PageState::kView, dumped({{"t", "view"}, {"x", x}, {"y", y}, {"h", height}}));
}

void Desk::prompt(const char* mode, const ed::InputWish& wish) {
  json base = nullptr;
  if (wish.hasBase) {
    const gc::plot::Point at = m_builder.scenePoint(wish.base);
    base = {at.x, at.y};
  }
  const int box = ed::integerVariable(ed::editorOf(*m_document), "PICKBOX");
  m_state.set(PageState::kPrompt, dumped({{"t", "prompt"},
                                          {"mode", mode},
                                          {"text", gc::toUtf8(trimmed(wish.prompt.empty() ? m_lastLine : wish.prompt))},
                                          {"keywords", gc::toUtf8(wish.keywords)},
                                          {"base", base},
                                          {"pickbox", box}}));
}

void Desk::idlePrompt() {
  m_screen.setDragging(false);
  const ed::CommandLine& line = m_session.commandLine();
  ed::InputWish wish;
  wish.prompt = m_entry.empty() ? GC_T("Command:") : GC_T(">");
  if (!line.isBusy() || line.question() == nullptr) {
    m_shownQuestion.clear();
    return prompt("idle", wish);
  }
  wish = ed::wishOf(*line.question());
  if (m_shownQuestion != wish.prompt) {
    m_shownQuestion = wish.prompt;
    m_state.addText("\n" + gc::toUtf8(trimmed(wish.prompt)));
  }
  prompt(modeOf(wish.what), wish);
}

void Desk::lookThrough(PageId page) {
  const std::optional<PageView> seen = m_state.viewOf(page);
  ed::Editor& editor = ed::editorOf(*m_document);
  if (!seen || seen->height <= 0 || (editor.inPaperLayout() && !editor.inPaperSpace())) return;
  ed::EditorView& view = editor.view();
  view.center = {seen->x, seen->y};
  view.height = seen->unitsPerPixel * seen->height;
  view.aspect = static_cast<double>(seen->width) / seen->height;
  view.pixels = seen->height;
}

GcText Desk::pointText(double x, double y) {
  const GcGePoint3d at = m_builder.userPoint(x, y);
  return gc::fromUtf8(gc::realText(at.x) + "," + gc::realText(at.y) + "," + gc::realText(at.z));
}

// A window dragged open is answered as it is typed: its word and two corners.
std::vector<GcText> Desk::boxWords(const PageEvent& event) {
  return {event.x2 >= event.x ? GC_T("W") : GC_T("C"), pointText(event.x, event.y), pointText(event.x2, event.y2)};
}

// What programs ask.

bool Desk::cancelled(const char* why) {
  m_state.addText(why);
  m_interrupted = true;
  m_screen.setDragging(false);
  prompt("busy", {});
  return false;
}

bool Desk::readLine(GcText& line) {
  m_interrupted = false;
  if (!m_ahead.empty()) {
    line = std::move(m_ahead.front());
    m_ahead.pop_front();
    return true;
  }
  refresh();
  m_screen.setDragging(m_wish.what == What::Drag);
  prompt(modeOf(m_wish.what), m_wish);
  m_line.wake();
  for (;;) {
    PageEvent event;
    switch (m_inbox.take(event, kPatience, true)) {
      case Inbox::Taken::Over: return cancelled("");
      case Inbox::Taken::Alone:
        // A program that asks on and on is ended, should it not take the first cancel.
        if (std::exchange(m_wasAlone, true)) m_session.lisp().interrupt();
        return cancelled("\n*Cancel* (the page was closed)\n");
      case Inbox::Taken::Idle: continue;
      case Inbox::Taken::Event: break;
    }
    m_wasAlone = false;
    if (anyTime(event, false)) {
      refresh();
      continue;
    }
    const Answer answer = answerFrom(event, line);
    if (answer == Answer::Cancel) return cancelled("\n*Cancel*\n");
    if (answer == Answer::Line) return true;
  }
}

Desk::Answer Desk::answerFrom(const PageEvent& event, GcText& line) {
  if (event.kind == Kind::Stop) return Answer::Cancel;
  lookThrough(event.page);
  if (event.kind == Kind::Line) {
    m_state.addText(event.text + "\n");
    line = gc::fromUtf8(event.text);
  } else if (m_wish.what == What::Drag) {
    return answerDrag(event, line) ? Answer::Line : Answer::None;
  } else if (event.kind == Kind::Escape) {
    return Answer::Cancel;
  } else if (event.kind == Kind::Pick && m_wish.what != What::Text) {
    line = pointText(event.x, event.y);
    m_state.addText("\n");
  } else if (event.kind == Kind::Window && m_wish.what == What::Objects) {
    const std::vector<GcText> words = boxWords(event);
    line = words[0];
    m_ahead.assign(words.begin() + 1, words.end());
    m_state.addText("\n");
  } else {
    return Answer::None;
  }
  if (m_wish.what == What::Drag) m_screen.setDragging(false);
  prompt("busy", {});
  return Answer::Line;
}

bool Desk::answerDrag(const PageEvent& event, GcText& line) {
  switch (event.kind) {
    case Kind::Move: line = GC_T("move ") + pointText(event.x, event.y); return true;
    case Kind::Pick: line = GC_T("pick ") + pointText(event.x, event.y); break;
    case Kind::Escape:
      m_state.addText("*Cancel*");
      line = GC_T("esc");
      break;
    default: return false;
  }
  m_state.addText("\n");
  m_screen.setDragging(false);
  prompt("busy", {});
  return true;
}

// What people do while no program asks.

int Desk::run(const std::vector<Source>& scripts) {
  refresh();
  for (const Source& script : scripts) {
    run([&] {
      bool ended = false;
      const int code = runSource(m_session, script, ended);
      if (ended || code == kCannotRead) m_ended = true;
      if (m_ended) m_code = code;
    });
  }
  while (!m_ended) {
    refresh();
    idlePrompt();
    m_line.wake();
    PageEvent event;
    const bool asks = m_session.commandLine().isBusy();
    switch (m_inbox.take(event, kPatience, asks)) {
      case Inbox::Taken::Over: return kDone;
      case Inbox::Taken::Alone: run([&] { m_session.commandLine().cancelAll(); }); break;
      case Inbox::Taken::Idle: break;
      case Inbox::Taken::Event: whenIdle(std::move(event)); break;
    }
  }
  return m_code;
}

template <class Work>
void Desk::run(Work work) {
  m_wasAlone = false;
  m_ahead.clear();
  prompt("busy", {});
  lisp::Interpreter& lisp = m_session.lisp();
  lisp.vm().clearInterrupts();
  m_line.running(&lisp);
  work();
  m_line.running(nullptr);
  settle();
  m_session.lisp().flush();
  m_session.runQueued();
  m_inbox.dropClicks();
}

void Desk::whenIdle(PageEvent event) {
  if (anyTime(event, true)) return;
  lookThrough(event.page);
  switch (event.kind) {
    case Kind::Line: typed(gc::fromUtf8(event.text)); break;
    case Kind::Escape:
    case Kind::Stop: escape(); break;
    case Kind::Pick: clicked(event); break;
    case Kind::Window: boxed(event); break;
    default: break;
  }
}

void Desk::typed(GcText text) {
  const bool asks = m_session.commandLine().isBusy();
  m_state.addText((asks ? " " : m_entry.empty() ? "\nCommand: " : "\n       > ") + gc::toUtf8(text) + "\n");
  if (asks) return enter(text);
  if (!m_entry.empty()) m_entry.push_back(GC_T('\n'));
  m_entry += text;
  if (openParentheses(m_entry) > 0) return;
  enter(std::exchange(m_entry, {}));
}

void Desk::enter(const GcText& entry) {
  run([&] {
    const EntryResult result = carryOut(m_session, entry);
    if (!result.trace.empty()) m_state.addText(result.trace);
    m_ended = m_ended || result.ended;
    if (result.ended) m_code = result.code;
  });
}

void Desk::escape() {
  if (!m_entry.empty()) {
    m_entry.clear();
    m_state.addText("*Cancel*\n");
  } else if (m_session.commandLine().isBusy()) {
    m_state.addText("*Cancel*\n");
    run([&] { m_session.commandLine().cancelAll(); });
  } else {
    select({}, false);
  }
}

void Desk::clicked(const PageEvent& event) {
  if (const ed::Ask* question = m_session.commandLine().question(); question != nullptr) {
    if (ed::wishOf(*question).what == What::Text) return;
    m_shownQuestion.clear();
    return enter(pointText(event.x, event.y));
  }
  const gc::plot::Point at{event.x, event.y};
  const double reach = std::fmax(event.reach, 0);
  GcDbObjectId picked;
  uint32_t order = 0;
  for (const ShapeId id : m_state.within({at.x - reach, at.y - reach, at.x + reach, at.y + reach})) {
    ShapeId inWindow = 0;
    const GcDbObjectId entity = m_builder.entityOf(id);
    if (entity.isNull() || !m_builder.shapeOf(entity, inWindow) || inWindow != id) continue;
    const Shape shape = m_state.shape(id);
    if ((!picked.isNull() && shape.order < order) || !isAt(shape, at, reach)) continue;
    picked = entity;
    order = shape.order;
  }
  if (!picked.isNull())
    select({picked}, event.on);
  else if (!event.on)
    select({}, false);
}

void Desk::boxed(const PageEvent& event) {
  if (const ed::Ask* question = m_session.commandLine().question(); question != nullptr) {
    if (question->what != ed::Ask::What::Objects) return;
    GcText words;
    for (const GcText& word : boxWords(event)) words += (words.empty() ? GC_T("") : GC_T("\n")) + word;
    m_shownQuestion.clear();
    return enter(words);
  }
  const Box box = {std::fmin(event.x, event.x2), std::fmin(event.y, event.y2), std::fmax(event.x, event.x2),
                   std::fmax(event.y, event.y2)};
  const bool crossing = event.x2 < event.x;
  std::vector<GcDbObjectId> found;
  for (const ShapeId id : m_state.within(box)) {
    ShapeId inWindow = 0;
    const GcDbObjectId entity = m_builder.entityOf(id);
    if (entity.isNull() || !m_builder.shapeOf(entity, inWindow) || inWindow != id) continue;
    const Shape shape = m_state.shape(id);
    if (crossing ? crosses(shape, box) : liesIn(shape, box)) found.push_back(entity);
  }
  std::sort(found.begin(), found.end(), [](GcDbObjectId a, GcDbObjectId b) { return a.handle() < b.handle(); });
  select(found, event.on);
}

// Selection.

void Desk::select(const std::vector<GcDbObjectId>& entities, bool adds) {
  std::vector<GcDbObjectId> chosen = adds ? m_selected : std::vector<GcDbObjectId>();
  ed::SelectionSet members;
  for (const GcDbObjectId id : chosen) members.add(id);
  // One that is chosen again is taken back.
  const bool takesBack = adds && entities.size() == 1 && members.contains(entities[0]);
  if (takesBack) members.remove(entities[0]);
  for (const GcDbObjectId id : entities)
    if (!takesBack) members.add(id);
  m_selected = members.ids();
  ed::Editor& editor = ed::editorOf(*m_document);
  const ed::SetNumber number = m_selected.empty() ? 0 : editor.sets().make(m_selected);
  editor.pickedSet().reset(number);
  if (number != 0) editor.sets().release(number);
  setSelection();
}

void Desk::checkSelection() {
  if (m_selected.empty()) return;
  std::vector<GcDbObjectId> alive;
  for (const GcDbObjectId id : m_selected)
    if (ShapeId shape = 0; id.isValid() && !id.isErased() && m_builder.shapeOf(id, shape)) alive.push_back(id);
  select(alive, false);
}

void Desk::setSelection() {
  json ids = json::array();
  for (const GcDbObjectId id : m_selected)
    if (ShapeId shape = 0; ids.size() < kMostSelectedShown && m_builder.shapeOf(id, shape)) ids.push_back(shape);
  m_state.set(PageState::kSelection,
              dumped({{"t", "selection"}, {"ids", std::move(ids)}, {"properties", propertiesOf(m_selected)}}));
}

// The rest.

void Desk::tell(PageId page, const std::string& message) {
  m_state.answer(page, dumped({{"t", "notice"}, {"text", message}}));
}

bool Desk::anyTime(const PageEvent& event, bool idle) {
  ed::Editor& editor = ed::editorOf(*m_document);
  switch (event.kind) {
    case Kind::Complete: complete(event); return true;
    case Kind::Layer: {
      if (event.number < 0 || event.number > static_cast<int>(LayerSwitch::Locked)) return true;
      editor.commandLine().beginGroup();
      const std::string wrong =
          switchLayer(editor.database(), gc::fromUtf8(event.text), static_cast<LayerSwitch>(event.number), event.on);
      editor.commandLine().endGroup();
      if (!wrong.empty()) tell(event.page, wrong);
      setDocument();
      return true;
    }
    case Kind::Layout:
      // A program, or a command, works in the space it was begun in.
      if (!idle || editor.commandLine().isBusy())
        tell(event.page, "The layout can be changed when no command is running.");
      else if (!editor.setLayout(gc::fromUtf8(event.text)))
        tell(event.page, "There is no layout \"" + event.text + "\".");
      return true;
    default: return false;
  }
}

void Desk::complete(const PageEvent& event) {
  const std::string start = event.text.substr(0, 64);
  std::vector<std::string> names;
  if (!start.empty()) names = namesBeginningWith(m_session, start);
  std::string upper = start;
  for (char& c : upper) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
  std::vector<std::string> commands;
  for (const std::string_view name : ed::commandNames())
    if (!start.empty() && name.substr(0, upper.size()) == upper) commands.emplace_back(name);
  std::sort(commands.begin(), commands.end());
  if (names.size() > kMostCompletions) names.resize(kMostCompletions);
  m_state.answer(event.page,
                 dumped({{"t", "completed"}, {"n", event.number}, {"names", names}, {"commands", commands}}));
  m_line.wake();
}

}  // namespace cli::page
