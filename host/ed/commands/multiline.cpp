// MLINE: parallel lines along a chain of points.
#include "host/db/entities/mline.h"

#include "host/db/objects/mlinestyle.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/coordinates.h"
#include "host/ed/dictionaries.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;
using Points = std::vector<GcGePoint3d>;

constexpr const char* kJustifications[] = {"Top", "Zero", "Bottom"};

GcDbObjectId styles(CommandInput& in) { return dictionaryNamed(in.database(), GC_T("ACAD_MLINESTYLE")); }

GcDbObjectId currentStyle(CommandInput& in) {
  const GcDbObjectId id = entryNamed(styles(in), textVariable(in.editor(), "CMLSTYLE"));
  return id.isNull() ? entryNamed(styles(in), GC_T("Standard")) : id;
}

int justification(Editor& editor) { return integerVariable(editor, "CMLJUST"); }

void tellSettings(CommandInput& in) {
  Editor& editor = in.editor();
  in.tell((std::string("\nCurrent settings: Justification = ") + kJustifications[justification(editor)] +
           ", Scale = " + gc::realText(realVariable(editor, "CMLSCALE")) +
           ", Style = " + gc::toUtf8(textVariable(editor, "CMLSTYLE")) + "\n")
              .c_str());
}

Task<bool> askStyle(CommandInput& in) {
  const Answer name = co_await in.ask(Ask(What::Line, "\nEnter mline style name or [?]: "));
  if (name.text == GC_T("?")) {
    in.tell("\nLoaded multiline styles:\n");
    for (const GcDbDictionaryEntry& entry : entriesOf(styles(in)))
      in.tell((gc::toUtf8(view(entry.key)) + "\n").c_str());
    co_return true;
  }
  if (entryNamed(styles(in), name.text).isNull()) {
    in.tell("\nThe drawing has no multiline style of this name.\n");
    co_return false;
  }
  co_return setVariable(in.editor(), GC_T("CMLSTYLE"), VariableValue::of(GcView(name.text))) == VariableStatus::Done;
}

Task<bool> askSetting(CommandInput& in, const Answer& option) {
  Editor& editor = in.editor();
  if (option.isKeyword("STyle")) co_return co_await askStyle(in);
  if (option.isKeyword("Scale")) {
    const Answer scale = co_await in.ask(Ask(What::Real, "\nEnter mline scale: "));
    if (scale.kind == Answer::Kind::Number)
      static_cast<void>(setVariable(editor, GC_T("CMLSCALE"), VariableValue::of(scale.number)));
    co_return true;
  }
  const Answer side =
      co_await in.ask(Ask(What::Keyword, "\nEnter justification type [Top/Zero/Bottom]: ").words("Top Zero Bottom"));
  for (int i = 0; i < 3; ++i)
    if (side.isKeyword(kJustifications[i]))
      static_cast<void>(setVariable(editor, GC_T("CMLJUST"), VariableValue::of(i)));
  co_return true;
}

bool draw(CommandInput& in, const Points& points, bool closed) {
  const GcGeMatrix3d user = ucsToWorld(in.editor());
  GcArray<GcGePoint3d> course;
  for (GcGePoint3d point : points) {
    point.z = points.front().z;  // a multiline lies in one plane
    course.append(user * point);
  }
  auto* made = new GcDbMline;
  const auto side = static_cast<GcDbMline::Justification>(justification(in.editor()));
  if (made->setCourse(course, closed, currentStyle(in), realVariable(in.editor(), "CMLSCALE"), side,
                      user.column(2).normal()) == Gcad::eOk)
    return !appendWithDefaults(in.editor(), made).isNull();
  delete made;
  return false;
}

Ask nextPoint(const Points& points) {
  Ask ask(What::Point, points.size() < 2   ? "\nSpecify next point: "
                       : points.size() < 3 ? "\nSpecify next point or [Undo]: "
                                           : "\nSpecify next point or [Close/Undo]: ");
  if (points.size() > 1) ask.words(points.size() < 3 ? "Undo" : "Close Undo");
  return ask.from(points.back());
}

bool repeatsLast(const Points& points, const GcGePoint3d& next) {
  return next.x == points.back().x && next.y == points.back().y;
}

Task<bool> mline(CommandInput& in) {
  tellSettings(in);
  Answer first;
  for (;;) {
    first = co_await in.ask(
        Ask(What::Point, "\nSpecify start point or [Justification/Scale/STyle]: ").words("Justification Scale STyle"));
    if (first.kind != Answer::Kind::Keyword) break;
    static_cast<void>(co_await askSetting(in, first));
  }
  if (!first.isPoint()) co_return false;
  Points points{first.point};
  for (;;) {
    const Answer next = co_await in.ask(nextPoint(points));
    if (next.isPoint() && !repeatsLast(points, next.point)) {
      points.push_back(next.point);
    } else if (next.isKeyword("Undo")) {
      points.pop_back();
    } else if (!next.isPoint()) {
      const bool closed = next.isKeyword("Close");
      co_return points.size() > 1 && draw(in, points, closed);
    }
  }
}

constexpr Command kCommands[] = {
    {"MLINE", "ML", mline},
};

}  // namespace

std::span<const Command> multilineCommands() { return kCommands; }

}  // namespace ed
