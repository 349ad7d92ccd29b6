#include "host/ed/drag/draginput.h"

#include <cmath>

#include "host/ap/output.h"
#include "host/ed/command/families.h"
#include "host/ed/commandline.h"
#include "host/ed/input/keywords.h"
#include "host/ed/input/parse.h"

namespace ed {

namespace {

using Kind = DragAnswer::Kind;

constexpr GcView kKeywordSeparators = GC_T(" ,\t\n");
constexpr GcView kBlanks = GC_T(" \t\r");

bool g_dragging = false;

// One word of a keyword list and its number.
struct Keyword {
  GcView word;
  int number;
};

// The keyword that the typed text means. Words behind one that begins with an underscore are the names of the first
// ones in every language: "Ja Nein _Yes No".
Keyword findKeyword(GcView list, GcView typed) {
  std::vector<GcView> words;
  for (size_t at = 0; (at = list.find_first_not_of(kKeywordSeparators, at)) != GcView::npos;) {
    const size_t end = std::min(list.find_first_of(kKeywordSeparators, at), list.size());
    words.push_back(list.substr(at, end - at));
    at = end;
  }
  size_t locals = 0;
  while (locals < words.size() && words[locals][0] != GC_T('_')) ++locals;
  for (size_t i = 0; i < words.size(); ++i) {
    const GcView name = i == locals ? words[i].substr(1) : words[i];
    if (matchKeyword(name, typed).empty()) continue;
    const size_t meant = i >= locals && i - locals < locals ? i - locals : i;
    return {words[meant], static_cast<int>(meant) + 1};
  }
  return {{}, 0};
}

bool isFinite(const GcGePoint3d& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }

bool takePoint(Editor& editor, const DragQuestion& question, GcView text, GcGePoint3d& point) {
  if (!parsePoint(editor, text, lastPoint(editor), point) || !isFinite(point)) return false;
  if (question.flat) point.z = realVariable(editor, "ELEVATION");
  return true;
}

// Typed text: a keyword, else a point to click at.
bool takeTyped(Editor& editor, const DragQuestion& question, GcView text, DragAnswer& answer) {
  const Keyword keyword = findKeyword(question.keywords, text);
  if (keyword.number != 0) {
    answer.kind = Kind::Keyword;
    answer.keyword = keyword.number;
    answer.word = keyword.word;
    return true;
  }
  if (takePoint(editor, question, text, answer.point)) {
    answer.kind = Kind::Picked;
    return true;
  }
  ap::print(question.keywords.empty() ? "\nInvalid point.\n" : "\nInvalid option keyword.\n");
  return false;
}

GcView trimmed(GcView text) {
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == GcView::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// False when the line is no answer; it has then been complained about.
bool takeLine(Editor& editor, const DragQuestion& question, GcView line, DragAnswer& answer) {
  line = trimmed(line);
  const GcView verb = line.substr(0, line.find_first_of(kBlanks));
  const GcView rest = trimmed(line.substr(verb.size()));
  if (line.empty() || equalNoCase(line, GC_T("enter"))) {
    answer.kind = Kind::Empty;
    return question.mayBeEmpty;
  }
  if (equalNoCase(line, GC_T("esc"))) {
    answer.kind = Kind::Cancelled;
    return true;
  }
  const bool moves = equalNoCase(verb, GC_T("move"));
  if (moves || equalNoCase(verb, GC_T("pick"))) {
    answer.kind = moves ? Kind::Moved : Kind::Picked;
    if (takePoint(editor, question, rest, answer.point)) return true;
    ap::print("\nInvalid point.\n");
    return false;
  }
  return takeTyped(editor, question, equalNoCase(verb, GC_T("key")) ? rest : line, answer);
}

}  // namespace

void beginDrag(const DragQuestion& question) { ap::print(question.prompt); }

DragAnswer nextDragAnswer(Editor& editor, const DragQuestion& question) {
  InputWish wish;
  wish.what = InputWish::What::Drag;
  wish.prompt = question.prompt;
  wish.keywords = question.keywords;
  GcText line;
  while (editor.commandLine().readTyped(line, wish)) {
    DragAnswer answer;
    if (!takeLine(editor, question, line, answer)) continue;
    if (answer.kind == Kind::Keyword) editor.lastKeyword = answer.word;
    return answer;
  }
  return {};
}

DragGuard::DragGuard() : m_begun(!g_dragging) { g_dragging = true; }
DragGuard::~DragGuard() {
  if (m_begun) g_dragging = false;
}

}  // namespace ed
