// What a program shows on the screen beyond the drawing.
#include "host/ed/commandline.h"
#include "host/ed/screen.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/names.h"

using lisp::LispValue;
using lisplib::hostOf;

LISP_GROUP("Screen")

namespace {

GcGePoint3d pointArgument(lisp::Args& args) {
  double at[3];
  args.point(at);
  return {at[0], at[1], at[2]};
}

// A 4x4 matrix as four lists of four numbers.
bool matrixOf(LispValue rows, GcGeMatrix3d& matrix) {
  for (int row = 0; row < 4; ++row, rows = rows.tail()) {
    if (!rows.isPair()) return false;
    LispValue cells = rows.head();
    for (int column = 0; column < 4; ++column, cells = cells.tail()) {
      if (!cells.isPair() || !cells.head().isNumber()) return false;
      matrix.entry[row][column] = cells.head().asDouble();
    }
  }
  return true;
}

}  // namespace

LISP_BUILTIN("grdraw", "(grdraw from to colour [highlight]) -> nil",
             "A temporary line; colour -1 draws in complement, so that drawing again erases.") {
  const GcGePoint3d from = pointArgument(args);
  const GcGePoint3d to = pointArgument(args);
  const int color = args.integer();
  const LispValue highlight = args.any();
  ed::screen().line(from, to, color, highlight && !(highlight.isInteger() && highlight.asInteger() == 0));
  return LispValue::nil();
}

LISP_BUILTIN("grvecs", "(grvecs list [matrix]) -> nil",
             "Temporary lines: ([colour] from to [colour] from to …), transformed by a matrix when given.") {
  LispValue list = args.list();
  GcGeMatrix3d matrix;
  if (args.moreNotNil() && !matrixOf(args.any(), matrix)) lisp::fail("bad grvecs matrix value");
  int color = 7;
  double from[3];
  double to[3];
  while (list.isPair()) {
    if (list.head().isInteger()) {
      color = list.head().asInteger();
      list = list.tail();
      continue;
    }
    const bool good =
        lisp::pointOf(list.head(), from) != 0 && list.tail().isPair() && lisp::pointOf(list.tail().head(), to) != 0;
    if (!good) lisp::fail("bad grvecs list value");
    ed::screen().line(matrix * GcGePoint3d(from[0], from[1], from[2]), matrix * GcGePoint3d(to[0], to[1], to[2]),
                      color < 0 ? -color : color, color < 0);
    list = list.tail().tail();
  }
  return LispValue::nil();
}

LISP_BUILTIN("redraw", "(redraw [entity [mode]]) -> nil",
             "Draws the screen anew, or one entity: 1 show, 2 hide, 3 highlight, 4 end of highlight.") {
  if (args.count() == 0) {
    ed::screen().update();
    return LispValue::nil();
  }
  const GcDbObjectId id = lisplib::idOfWord(args.entityName());
  if (id.isValid()) ed::screen().entityChanged(id);
  return LispValue::nil();
}

LISP_BUILTIN("grtext", "(grtext [box text [highlight]]) -> text | nil",
             "Text in a box of the screen; there are none.") {
  return args[1];
}

LISP_BUILTIN("grclear", "(grclear) -> nil", "Clears the screen until the next redraw.") { return LispValue::nil(); }

LISP_BUILTIN("grread", "(grread [track [bits [cursor]]]) -> (kind value) | nil",
             "The next input of any kind: (2 character), (3 point). The end of input is Enter: (2 13).") {
  args.vm().flush();
  ed::Editor& editor = hostOf(args.vm()).editor();
  GcText line;
  LispValue kind = LispValue::integer(2);
  LispValue value = LispValue::integer(13);
  ed::InputWish wish;
  wish.what = ed::InputWish::What::Point;
  if (editor.commandLine().readTyped(line, wish) && !line.empty()) {
    ed::Answer answer;
    GcText complaint;
    const bool isPoint =
        ed::accept(editor, ed::Ask(ed::Ask::What::Point, ""), ed::InputItem::ofText(line), answer, complaint);
    if (isPoint && answer.isPoint()) {
      const double at[] = {answer.point.x, answer.point.y, answer.point.z};
      kind = LispValue::integer(3);
      value = args.newPoint(at, 3);
    } else {
      value = LispValue::integer(line[0]);
    }
  }
  return args.cons(kind, args.cons(value, LispValue::nil()));
}
