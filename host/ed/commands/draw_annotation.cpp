// Paragraphs, leaders; ellipses, rings, polylines in space.
#include <numbers>

#include "db/ellipse.h"
#include "db/leader.h"
#include "db/mtext.h"
#include "db/polyline.h"
#include "db/polyline2d.h"
#include "db/text.h"
#include "db/textstyle.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/contents.h"
#include "host/ed/coordinates.h"
#include "host/ed/records.h"
#include "host/rx/math/elementary.h"

namespace ed {

namespace {

using What = Ask::What;

// ---- -MTEXT

struct ParagraphLook {
  double height = 0;
  double rotationRad = 0;
  double width = 0;
  int attachment = GcDbMText::kTopLeft;
  GcDbObjectId style;
};

// Lines until an empty one; each is a paragraph.
Task<GcText> askLines(CommandInput& in) {
  GcText text;
  for (;;) {
    const Answer line = co_await in.ask(Ask(What::Line, "\nMText: "));
    if (line.text.empty()) break;
    text += (text.empty() ? GcText() : GcText(GC_T("\\P"))) + line.text;
  }
  co_return text;
}

GcDbObjectId addParagraph(CommandInput& in, const GcGePoint3d& at, const ParagraphLook& look, const GcText& text) {
  auto* made = new GcDbMText;
  ignore(made->setLocation(at));
  ignore(made->setTextHeight(look.height));
  ignore(made->setRotation(look.rotationRad));
  ignore(made->setWidth(look.width));
  ignore(made->setAttachment(static_cast<GcDbMText::AttachmentPoint>(look.attachment)));
  ignore(made->setTextStyle(look.style));
  ignore(made->setContents(text.c_str()));
  return appendFromUser(in.editor(), made);
}

Task<bool> mtext(CommandInput& in) {
  Editor& editor = in.editor();
  ParagraphLook look;
  look.height = realVariable(editor, "TEXTSIZE");
  look.style = editor.database().textstyle();
  const Answer first = co_await in.ask(Ask(What::Point, "\nSpecify first corner: ").needed());
  if (!first.isPoint()) co_return false;
  for (;;) {
    const Answer answer = co_await in.ask(
        Ask(What::Point, "\nSpecify opposite corner or [Height/Justify/Line spacing/Rotation/Style/Width]: ")
            .from(first.point)
            .words("Height Justify Line Rotation Style Width Columns"));
    if (answer.isKeyword("Height")) {
      const Answer height = co_await in.ask(Ask(What::Distance, "\nSpecify height: ").positive());
      if (height.kind == Answer::Kind::Number) look.height = height.number;
    } else if (answer.isKeyword("Justify")) {
      static constexpr const char* kNames[] = {"TL", "TC", "TR", "ML", "MC", "MR", "BL", "BC", "BR"};
      const Answer place =
          co_await in.ask(Ask(What::Keyword, "\nEnter justification [TL/TC/TR/ML/MC/MR/BL/BC/BR] <TL>: ")
                              .words("TL TC TR ML MC MR BL BC BR"));
      for (int i = 0; i < 9; ++i)
        if (place.isKeyword(kNames[i])) look.attachment = i + 1;
    } else if (answer.isKeyword("Rotation")) {
      const Answer angle = co_await in.ask(Ask(What::Direction, "\nSpecify rotation angle <0>: "));
      if (angle.kind == Answer::Kind::Number) look.rotationRad = angle.number;
    } else if (answer.isKeyword("Style")) {
      const Answer name = co_await in.ask(Ask(What::Line, "\nEnter style name: "));
      const GcDbObjectId style = recordNamed(in.database().textStyleTableId(), name.text);
      if (!style.isNull()) look.style = style;
    } else if (answer.isKeyword("Width")) {
      look.width = (co_await in.ask(Ask(What::Distance, "\nSpecify width: "))).number;
      break;
    } else if (answer.kind == Answer::Kind::Keyword) {
      static_cast<void>(co_await in.ask(Ask(What::Word, "\nEnter new value: ")));
    } else if (answer.isPoint()) {
      look.width = std::fabs(answer.point.x - first.point.x);
      break;
    } else {
      co_return false;
    }
  }
  const GcText text = co_await askLines(in);
  if (text.empty()) co_return false;
  addParagraph(in, first.point, look, text);
  co_return true;
}

// ---- LEADER, QLEADER: points, then lines of text

struct LeaderForm {
  bool spline = false;
  bool arrow = true;
};

Task<bool> askLeaderForm(CommandInput& in, LeaderForm& form) {
  const Answer option =
      co_await in.ask(Ask(What::Keyword, "\nEnter leader format option [Spline/STraight/Arrow/None] <Exit>: ")
                          .words("Spline STraight Arrow None Exit"));
  if (option.isKeyword("Spline") || option.isKeyword("STraight")) form.spline = option.isKeyword("Spline");
  if (option.isKeyword("Arrow") || option.isKeyword("None")) form.arrow = option.isKeyword("Arrow");
  co_return true;
}

// Points until an Enter or a word, at most so many. False when cancelled or there are too few.
Task<bool> askLeaderPoints(CommandInput& in, size_t most, std::vector<GcGePoint3d>& points, LeaderForm& form) {
  while (points.size() < most) {
    const Answer next = co_await in.ask(
        Ask(What::Point, points.size() < 2 ? "\nSpecify next point: "
                                           : "\nSpecify next point or [Annotation/Format/Undo] <Annotation>: ")
            .from(points.back())
            .words("Annotation Format Undo"));
    if (next.isPoint()) {
      points.push_back(next.point);
    } else if (next.isKeyword("Undo")) {
      if (points.size() > 1) points.pop_back();
    } else if (next.isKeyword("Format")) {
      static_cast<void>(co_await askLeaderForm(in, form));
    } else {
      co_return points.size() > 1 && next.kind != Answer::Kind::Cancelled;
    }
  }
  co_return true;
}

// The contents of a text or paragraph.
GcText contentsOf(GcDbObjectId id) {
  GcText text;
  GcDbEntity* entity = nullptr;
  if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) return text;
  if (const auto* line = GcDbText::cast(entity)) text = view(line->textString());
  if (const auto* paragraph = GcDbMText::cast(entity)) text = view(paragraph->contents());
  ignore(entity->close());
  return text;
}

// Lines of text; behind an empty first one other kinds of annotation, of which frames of tolerances and blocks are
// passed over with a word.
Task<GcText> askAnnotation(CommandInput& in) {
  const Answer line = co_await in.ask(Ask(What::Line, "\nEnter first line of annotation text or <options>: "));
  if (!line.text.empty()) {
    const GcText more = co_await askLines(in);
    co_return line.text + (more.empty() ? GcText() : GC_T("\\P") + more);
  }
  const Answer option =
      co_await in.ask(Ask(What::Keyword, "\nEnter an annotation option [Tolerance/Copy/Block/None/Mtext] <Mtext>: ")
                          .words("Tolerance Copy Block None Mtext"));
  if (option.isKeyword("Copy")) {
    const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect an object to copy: "));
    co_return picked.kind == Answer::Kind::Entity ? contentsOf(picked.entity) : GcText();
  }
  if (option.isKeyword("Tolerance") || option.isKeyword("Block"))
    in.tell("\nOnly texts are added to leaders; insert the block or tolerance by itself.\n");
  // A program's last Enter means no text.
  if (option.isKeyword("Mtext")) co_return co_await askLines(in);
  co_return GcText();
}

// The text stands behind the last point, and the leader knows it.
void addLeader(CommandInput& in, const std::vector<GcGePoint3d>& points, const LeaderForm& form, const GcText& text,
               double width) {
  auto* made = new GcDbLeader;
  for (const GcGePoint3d& point : points) made->appendVertex(point);
  const GcDbObjectId id = appendFromUser(in.editor(), made);
  if (form.spline || !form.arrow)
    setGroups(id, {GcDbGroup::ofInt(71, form.arrow ? 1 : 0), GcDbGroup::ofInt(72, form.spline ? 1 : 0)});
  if (text.empty()) return;
  ParagraphLook look;
  look.height = realVariable(in.editor(), "DIMTXT");
  look.style = in.database().textstyle();
  look.width = width;
  const GcGePoint3d& end = points.back();
  const bool leftwards = end.x < points[points.size() - 2].x;
  look.attachment = leftwards ? GcDbMText::kMiddleRight : GcDbMText::kMiddleLeft;
  const double gap = realVariable(in.editor(), "DIMGAP") * (leftwards ? -1 : 1);
  const GcDbObjectId textId = addParagraph(in, {end.x + gap, end.y, end.z}, look, text);
  forEach<GcDbLeader>({id}, [&](GcDbLeader& leader) { ignore(leader.attachAnnotation(textId)); });
}

Task<bool> leader(CommandInput& in) {
  const Answer first = co_await in.ask(Ask(What::Point, "\nSpecify leader start point: ").needed());
  if (!first.isPoint()) co_return false;
  std::vector<GcGePoint3d> points{first.point};
  LeaderForm form;
  if (!co_await askLeaderPoints(in, SIZE_MAX, points, form)) co_return false;
  const GcText text = co_await askAnnotation(in);
  addLeader(in, points, form, text, 0);
  co_return true;
}

// As it is set in new drawings: at most three points, then the width of the text and its lines.
Task<bool> quickLeader(CommandInput& in) {
  constexpr size_t kMostPoints = 3;
  const Answer first = co_await in.ask(
      Ask(What::Point, "\nSpecify first leader point, or [Settings] <Settings>: ").words("Settings").needed());
  if (!first.isPoint()) {
    in.tell("\nThe settings need a dialog box.\n");
    co_return false;
  }
  std::vector<GcGePoint3d> points{first.point};
  LeaderForm form;
  if (!co_await askLeaderPoints(in, kMostPoints, points, form)) co_return false;
  const Answer width = co_await in.ask(Ask(What::Distance, "\nSpecify text width <0.0000>: "));
  const Answer line = co_await in.ask(Ask(What::Line, "\nEnter first line of annotation text <Mtext>: "));
  GcText text = line.text;
  const GcText more = co_await askLines(in);
  if (!more.empty()) text += (text.empty() ? GcText() : GcText(GC_T("\\P"))) + more;
  addLeader(in, points, form, text, width.kind == Answer::Kind::Number ? width.number : 0);
  co_return true;
}

// ---- ELLIPSE

Task<bool> ellipse(CommandInput& in) {
  const Answer first =
      co_await in.ask(Ask(What::Point, "\nSpecify axis endpoint of ellipse or [Center]: ").words("Center").needed());
  GcGePoint3d center = first.point;
  GcGeVector3d axis;
  if (first.isKeyword("Center")) {
    const Answer middle = co_await in.ask(Ask(What::Point, "\nSpecify center of ellipse: ").needed());
    const Answer end = co_await in.ask(Ask(What::Point, "\nSpecify endpoint of axis: ").from(middle.point).needed());
    if (!middle.isPoint() || !end.isPoint()) co_return false;
    center = middle.point;
    axis = end.point - center;
  } else {
    const Answer end = co_await in.ask(Ask(What::Point, "\nSpecify other endpoint of axis: ").from(center).needed());
    if (!first.isPoint() || !end.isPoint()) co_return false;
    axis = (end.point - center) * 0.5;
    center = center + axis;
  }
  const Answer other = co_await in.ask(Ask(What::Distance, "\nSpecify distance to other axis or [Rotation]: ")
                                           .from(center)
                                           .words("Rotation")
                                           .positive());
  double length = other.number;
  if (other.isKeyword("Rotation")) {
    const Answer turn = co_await in.ask(Ask(What::Angle, "\nSpecify rotation around major axis: ").needed());
    length = axis.length() * std::fabs(gc::cos(turn.number));
  }
  if (axis.isZeroLength() || length <= 0) co_return false;
  double ratio = length / axis.length();
  if (ratio > 1) {  // the second axis is the longer one
    axis = GcGeVector3d(0 - axis.y, axis.x, 0) * ratio;
    ratio = 1 / ratio;
  }
  appendFromUser(in.editor(), new GcDbEllipse(center, GcGeVector3d::kZAxis, axis, ratio));
  co_return true;
}

// ---- DONUT: a wide closed polyline of two half circles

Task<bool> donut(CommandInput& in) {
  const Answer inside = co_await in.ask(Ask(What::Distance, "\nSpecify inside diameter of donut <0.5>: "));
  const Answer outside = co_await in.ask(Ask(What::Distance, "\nSpecify outside diameter of donut <1>: "));
  const double inner = inside.kind == Answer::Kind::Number ? inside.number : 0.5;
  const double outer = outside.kind == Answer::Kind::Number ? outside.number : 1;
  if (inner < 0 || outer <= 0) co_return false;
  const double radius = (inner + outer) / 4;
  const double width = std::fabs(outer - inner) / 2;
  for (;;) {
    const Answer center = co_await in.ask(Ask(What::Point, "\nSpecify center of donut or <exit>: "));
    if (!center.isPoint()) break;
    auto* made = new GcDbPolyline(2);
    for (unsigned i = 0; i < 2; ++i)
      ignore(made->addVertexAt(i, {center.point.x + (i == 0 ? -radius : radius), center.point.y}, 1, width, width));
    ignore(made->setElevation(center.point.z));
    made->setClosed(true);
    appendFromUser(in.editor(), made);
  }
  co_return true;
}

// ---- 3DPOLY

Task<bool> spacePolyline(CommandInput& in) {
  const Answer first = co_await in.ask(Ask(What::Point, "\nSpecify start point of polyline: ").needed());
  if (!first.isPoint()) co_return false;
  std::vector<GcGePoint3d> points{first.point};
  bool closed = false;
  for (;;) {
    const Answer next = co_await in.ask(
        Ask(What::Point, "\nSpecify endpoint of line or [Close/Undo]: ").from(points.back()).words("Close Undo"));
    if (next.isKeyword("Undo") && points.size() > 1) {
      points.pop_back();
      continue;
    }
    if (!next.isPoint()) {
      closed = next.isKeyword("Close");
      break;
    }
    points.push_back(next.point);
  }
  if (points.size() < 2) co_return false;
  const GcDbObjectId id = appendWithDefaults(in.editor(), new GcDb3dPolyline);
  GcDb3dPolyline* line = nullptr;
  if (gcdbOpenObject(line, id, GcDb::kForWrite) != Gcad::eOk) co_return false;
  for (const GcGePoint3d& point : points) {
    auto* vertex = new GcDb3dPolylineVertex(in.toWorld(point));
    if (line->appendVertex(vertex) == Gcad::eOk)
      ignore(vertex->close());
    else
      delete vertex;
  }
  if (closed) ignore(line->makeClosed());
  ignore(line->close());
  co_return true;
}

constexpr Command kCommands[] = {
    {"-MTEXT", "MTEXT MT -MT T", mtext}, {"LEADER", "LEAD", leader},      {"QLEADER", "LE", quickLeader},
    {"ELLIPSE", "EL", ellipse},          {"DONUT", "DO DOUGHNUT", donut}, {"3DPOLY", "3P", spacePolyline},
};

}  // namespace

std::span<const Command> annotationCommands() { return kCommands; }

}  // namespace ed
