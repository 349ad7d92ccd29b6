// TXT2MTXT: lines of text put together as one paragraph.
#include <algorithm>
#include <cmath>

#include "db/mtext.h"
#include "db/text.h"
#include "host/db/entities/planar.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/contents.h"
#include "host/gi/listener.h"
#include "host/gi/textline.h"
#include "host/rx/math/elementary.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;

struct Line {
  GcDbObjectId id;
  GcText contents;  // as a paragraph has it
  GcGePoint3d start;
  double height = 0, width = 0;
  double x = 0, y = 0;  // of the start, along the first text and up from it
};

// Hears a text draw itself: where its base line begins and how long it is.
class Heard final : public GcGiListener {
 public:
  GcGePoint3d start;
  double length = 0;
  [[nodiscard]] double deviation() const override { return 0; }

 private:
  void text(const GcGePoint3d& position, const GcGeVector3d&, const GcGeVector3d&, const GCHAR* text,
            const GcGiTextStyle& style) override {
    start = position;
    length = gcgiTextLength(view(text), style);
  }
};

// What stands for itself in a line would be a code in a paragraph; %%u and %%o become the paragraph's codes.
GcText paragraphOf(GcView line) {
  GcText made;
  bool under = false, over = false;
  for (size_t i = 0; i < line.size(); ++i) {
    const GCHAR c = line[i];
    const bool isCode = c == GC_T('%') && i + 2 < line.size() && line[i + 1] == GC_T('%');
    const GCHAR code = isCode ? gcUpper(line[i + 2]) : GC_T('\0');
    if (code == GC_T('U') || code == GC_T('O')) {
      bool& on = code == GC_T('U') ? under : over;
      on = !on;
      made += code == GC_T('U') ? (on ? GC_T("\\L") : GC_T("\\l")) : (on ? GC_T("\\O") : GC_T("\\o"));
      i += 2;
      continue;
    }
    if (c == GC_T('\\') || c == GC_T('{') || c == GC_T('}')) made += GC_T('\\');
    made += c;
  }
  if (under) made += GC_T("\\l");
  if (over) made += GC_T("\\o");
  return made;
}

bool takeLine(GcDbObjectId id, Line& line) {
  GcDbEntity* entity = nullptr;
  if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) return false;
  line.id = id;
  bool good = true;
  if (auto* text = GcDbText::cast(entity); text != nullptr && text->isA() == GcDbText::desc()) {
    Heard heard;
    text->subWorldDraw(&heard);
    line.contents = paragraphOf(view(text->textString()));
    line.start = heard.start;
    line.width = heard.length;
    line.height = text->height();
  } else if (const auto* paragraph = GcDbMText::cast(entity)) {
    line.contents = view(paragraph->contents());
    line.start = paragraph->location();
    line.width = paragraph->width() > 0 ? paragraph->width() : paragraph->actualWidth();
    line.height = paragraph->textHeight();
  } else {
    good = false;
  }
  ignore(entity->close());
  return good;
}

// Along the first text, up from it, and its rotation.
struct Frame {
  GcGeVector3d x, y, normal;
  double rotationRad = 0;
};

Frame frameOf(GcDbObjectId id) {
  Frame frame;
  GcDbEntity* entity = nullptr;
  if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) return frame;
  frame.normal = entity->normal();
  if (const auto* text = GcDbText::cast(entity)) frame.rotationRad = text->rotation();
  if (const auto* paragraph = GcDbMText::cast(entity)) frame.rotationRad = paragraph->rotation();
  frame.x = gcplanar::directionAt(frame.rotationRad, frame.normal);
  frame.y = frame.normal.crossProduct(frame.x);
  ignore(entity->close());
  return frame;
}

// From the top down; what stands on one line from the left to the right.
void sortAsRead(std::vector<Line>& lines, const Frame& frame) {
  for (Line& line : lines) {
    line.x = line.start.asVector().dotProduct(frame.x);
    line.y = line.start.asVector().dotProduct(frame.y);
  }
  std::stable_sort(lines.begin(), lines.end(), [](const Line& a, const Line& b) { return a.y > b.y; });
  for (auto row = lines.begin(); row != lines.end();) {
    const auto end =
        std::find_if(row, lines.end(), [&](const Line& each) { return row->y - each.y > row->height / 2; });
    std::stable_sort(row, end, [](const Line& a, const Line& b) { return a.x < b.x; });
    row = end;
  }
}

void merge(Editor& editor, const std::vector<Line>& lines, const Frame& frame, const Line& first) {
  auto* made = new GcDbMText;
  GcText contents;
  double left = lines[0].x, right = lines[0].x + lines[0].width, top = lines[0].y + lines[0].height;
  for (const Line& line : lines) {
    if (!contents.empty()) contents += GC_T(' ');
    contents += line.contents;
    left = std::min(left, line.x);
    right = std::max(right, line.x + line.width);
    top = std::max(top, line.y + line.height);
  }
  GcDbEntity* model = nullptr;
  if (gcdbOpenObject(model, first.id, GcDb::kForRead) == Gcad::eOk) {
    ignore(made->setPropertiesFrom(*model));
    if (const auto* text = GcDbText::cast(model)) ignore(made->setTextStyle(text->textStyle()));
    if (const auto* paragraph = GcDbMText::cast(model)) ignore(made->setTextStyle(paragraph->textStyle()));
    ignore(model->close());
  }
  const double depth = first.start.asVector().dotProduct(frame.normal);
  const GcGeVector3d at = frame.x * left + frame.y * top + frame.normal * depth;
  ignore(made->setNormal(frame.normal));
  ignore(made->setLocation({at.x, at.y, at.z}));
  ignore(made->setRotation(frame.rotationRad));
  ignore(made->setTextHeight(first.height));
  constexpr double kRoom = 1.001;  // so that rounding breaks no line
  ignore(made->setWidth((right - left) * kRoom));
  ignore(made->setContents(contents.c_str()));
  GcDbBlockTableRecord* space = nullptr;
  if (gcdbOpenObject(space, editor.currentSpace(), GcDb::kForWrite) != Gcad::eOk) {
    delete made;
    return;
  }
  if (space->appendGcDbEntity(made) == Gcad::eOk)
    ignore(made->close());
  else
    delete made;
  ignore(space->close());
  for (const Line& line : lines) eraseEntity(line.id);
}

Task<bool> textsToParagraph(CommandInput& in) {
  const Ids chosen = co_await selectObjects(in, "\nSelect text objects: ");
  std::vector<Line> lines;
  for (const GcDbObjectId id : chosen)
    if (Line line; takeLine(id, line)) lines.push_back(std::move(line));
  if (lines.empty()) {
    in.tell("\nNo text objects selected.\n");
    co_return false;
  }
  const Line first = lines.front();
  const Frame frame = frameOf(first.id);
  sortAsRead(lines, frame);
  merge(in.editor(), lines, frame, first);
  in.tell(("\n" + std::to_string(lines.size()) + " text object(s) made into 1 mtext object(s).\n").c_str());
  co_return true;
}

constexpr Command kCommands[] = {
    {"TXT2MTXT", "", textsToParagraph},
};

}  // namespace

std::span<const Command> textMergeCommands() { return kCommands; }

}  // namespace ed
