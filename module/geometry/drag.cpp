// Dragging selection sets: the user picks a point or an angle while a picture of the entities follows the cursor. The
// program that asked applies the result; nothing is changed here.
//
// Two functions drag with the module's own jig, which knows keywords; their twins (_x) with the host's drag.
#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/results.h"
#include "module/geometry/draggenjig.h"

namespace {

// Shared by the callbacks, which get nothing but the point. One drag at a time.
struct DragState {
  gds_point base = {};   // user coordinates
  gds_point drawn = {};  // where the rubber band ends
  bool isFirst = true;   // no band has been drawn
};
DragState g_state;

// Drawn in complement: the same line once more takes it away.
void drawBand() {
  constexpr int kComplement = -1;
  gcedGrDraw(g_state.base, g_state.drawn, kComplement, 0);
}

void moveBand(const gds_point to) {
  if (!g_state.isFirst) drawBand();
  g_state.isFirst = false;
  for (int i = 0; i < 3; ++i) g_state.drawn[i] = to[i];
  drawBand();
}

void fill(double matrix[4][4], const GcGeMatrix3d& with) {
  for (int row = 0; row < 4; ++row)
    for (int column = 0; column < 4; ++column) matrix[row][column] = with.entry[row][column];
}

GcGePoint3d toPoint(const gds_point at) { return {at[0], at[1], at[2]}; }

int moveTransform(gds_point point, double matrix[4][4]) {
  GcGeMatrix3d translation;
  fill(matrix, translation.setToTranslation(toPoint(point) - toPoint(g_state.base)));
  moveBand(point);
  return RTNORM;
}

int rotateTransform(gds_point point, double matrix[4][4]) {
  GcGeMatrix3d rotation;
  const double angleRad = gcutAngle(g_state.base, point);
  fill(matrix, rotation.setToRotation(angleRad, GcGeVector3d::kZAxis, toPoint(g_state.base)));
  moveBand(point);
  return RTNORM;
}

// What one of the four functions is made of.
struct DragKind {
  DragTransform transform;
  int (*answer)(const gds_point picked);
};

constexpr DragKind kMove = {moveTransform, [](const gds_point picked) { return ret::point(toPoint(picked)); }};
constexpr DragKind kRotate = {rotateTransform,
                              [](const gds_point picked) { return ret::real(gcutAngle(g_state.base, picked)); }};

// Every fault but a base of another type is told as missing arguments.
constexpr ArgRules kRules{msg::kNoArguments, msg::kNoArguments, msg::kNoArguments, msg::kNoArguments};

struct DragArguments {
  const GCHAR* keywords = GC_T("");
  const resbuf* set = nullptr;
  const resbuf* base = nullptr;
  const GCHAR* prompt = GC_T("");
  int cursor = 0;

  // Reads what follows the keywords.
  void readRest(ArgReader& args) {
    set = args.any();
    if (set != nullptr && set->restype != RTENAME && set->restype != RTPICKS) args.wrongType();
    base = args.any();
    if (base != nullptr && !node::isPoint(*base)) args.refuse(msg::kWrongType);
    prompt = args.anyText();
    if (args.nextType() == RTSHORT) cursor = args.integer();
  }
};

void begin(const resbuf& base) {
  for (int i = 0; i < 3; ++i) g_state.base[i] = base.resval.rpoint[i];
  g_state.isFirst = true;
  resbuf last{};
  last.restype = RT3DPOINT;
  for (int i = 0; i < 3; ++i) last.resval.rpoint[i] = g_state.base[i];
  gcedSetVar(GC_T("LASTPOINT"), &last);
}

// The last band goes; where none was drawn, drawing would leave one.
int end() {
  if (!g_state.isFirst) drawBand();
  return RTNORM;
}

int dragWithJig(const DragArguments& with, const DragKind& kind, gds_point picked) {
  AsdkDragGenJig jig;
  if (jig.setTransform(kind.transform) != RTNORM || jig.setCursor(with.cursor) != RTNORM) return RTERROR;
  if (jig.setSelectionSet(with.set->resval.rlname) != RTNORM) return RTERROR;
  if (jig.setPrompt(with.prompt) != RTNORM) return RTERROR;
  jig.setKeywords(with.keywords);
  return jig.run(picked);
}

int answerKeyword(const GcString& keyword) { return keyword.isEmpty() ? ret::nil() : ret::string(keyword.c_str()); }

bool isKeyword(int result) { return result == RTKWORD || result == -RTKWORD; }

int dragKeywords(const DragKind& kind) {
  ArgReader args(kRules);
  DragArguments with;
  with.keywords = args.string();
  with.readRest(args);
  if (args.failed()) return args.status();
  begin(*with.base);
  gds_point picked = {};
  const int result = dragWithJig(with, kind, picked);
  if (result == RTNORM)
    kind.answer(picked);
  else if (isKeyword(result))
    answerKeyword(AsdkDragGenJig::lastKeyword());
  else
    ret::nil();
  return end();
}

int dragByHost(const DragKind& kind) {
  ArgReader args(kRules);
  DragArguments with;
  with.readRest(args);
  if (args.failed()) return args.status();
  begin(*with.base);
  gds_point picked = {};
  const int result = gcedDragGen(with.set->resval.rlname, with.prompt, with.cursor, kind.transform, picked);
  GcString keyword;
  if (result == RTNORM)
    kind.answer(picked);
  else if (isKeyword(result) && gcedGetInput(keyword) == RTNORM)
    answerKeyword(keyword);
  else
    ret::nil();
  return end();
}

}  // namespace

int ssDragMove() { return dragKeywords(kMove); }
int ssDragRotate() { return dragKeywords(kRotate); }
int ssDragMoveX() { return dragByHost(kMove); }
int ssDragRotateX() { return dragByHost(kRotate); }
