// The room a text takes.
#include <algorithm>

#include "db/textstyle.h"
#include "gi/drawable.h"
#include "host/ed/records.h"
#include "host/gi/textline.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/groupvalues.h"

using lisp::LispValue;
using lisplib::hostOf;

LISP_GROUP("Geometry of the drawing")

namespace {

// The box of what the pen draws.
class Box final : public GcGiStrokeSink {
 public:
  void moveTo(double x, double y) override { go(x, y); }
  void lineTo(double x, double y) override { add(x, y), go(x, y); }
  void quadTo(double controlX, double controlY, double x, double y) override {
    add(extreme(m_x, controlX, x), m_y);
    add(m_x, extreme(m_y, controlY, y));
    add(x, y);
    go(x, y);
  }
  [[nodiscard]] bool isEmpty() const { return m_low[0] > m_high[0]; }
  [[nodiscard]] const double* low() const { return m_low; }
  [[nodiscard]] const double* high() const { return m_high; }

 private:
  // Where a coordinate of a quadratic arc turns, else its start.
  static double extreme(double a, double b, double c) {
    const double bend = a - 2 * b + c;
    const double t = bend == 0 ? 0 : (a - b) / bend;
    return t <= 0 || t >= 1 ? a : (1 - t) * (1 - t) * a + 2 * t * (1 - t) * b + t * t * c;
  }
  void go(double x, double y) {
    add(x, y);
    m_x = x;
    m_y = y;
  }
  void add(double x, double y) {
    m_low[0] = std::min(m_low[0], x);
    m_low[1] = std::min(m_low[1], y);
    m_high[0] = std::max(m_high[0], x);
    m_high[1] = std::max(m_high[1], y);
  }
  double m_x = 0, m_y = 0;
  double m_low[3] = {1e300, 1e300, 0};
  double m_high[3] = {-1e300, -1e300, 0};
};

// The look of a style as text begins with it. False when the drawing has none of this name.
bool lookOfStyle(ed::Editor& editor, GcView name, GcGiTextStyle& look) {
  GcDbTextStyleTableRecord* style = nullptr;
  const GcDbObjectId id = ed::recordNamed(editor.database().textStyleTableId(), name);
  if (gcdbOpenObject(style, id, GcDb::kForRead) != Gcad::eOk) return false;
  style->look(look);
  if (style->textSize() <= 0) look.height = ed::realVariable(editor, "TEXTSIZE");
  ignore(style->close());
  return true;
}

void takeGroup(const GcDbGroup& group, GcGiTextStyle& look, GcText& text) {
  switch (group.code) {
    case 1: text = group.text; break;
    case 40: look.height = group.asReal(); break;
    case 41: look.widthFactor = group.asReal(); break;
    case 51: look.obliqueRad = group.asReal(); break;
    case 71:
      look.backward = (group.asInt() & 2) != 0;
      look.upsideDown = (group.asInt() & 4) != 0;
      break;
    default: break;
  }
}

}  // namespace

LISP_BUILTIN("textbox", "(textbox list) -> (point point) | nil",
             "Opposite corners of the box around a text as its groups describe it, seen from its start, unturned.") {
  ed::Editor& editor = hostOf(args.vm()).editor();
  const GcDbGroupList groups = lisplib::groupsOf(args.vm(), args.list());
  GcText styleName = ed::textVariable(editor, "TEXTSTYLE");
  GcDbGroup group;
  for (GcDbGroupList::Cursor at(groups); at.next(group);)
    if (group.code == 7) styleName = group.text;
  GcGiTextStyle look;
  GcText text;
  if (!lookOfStyle(editor, styleName, look)) return LispValue::nil();
  for (GcDbGroupList::Cursor at(groups); at.next(group);) takeGroup(group, look, text);
  Box box;
  gcgiStrokeText(text, look, box);
  if (box.isEmpty()) return LispValue::nil();
  return args.cons(args.newPoint(box.low(), 3), args.cons(args.newPoint(box.high(), 3), LispValue::nil()));
}
