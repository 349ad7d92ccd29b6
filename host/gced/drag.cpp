// The host's own drag of a selection set.
#include "ed/gced.h"
#include "host/ap/docmanager.h"
#include "host/ed/commandline.h"
#include "host/ed/drag/draginput.h"
#include "host/ed/screen.h"
#include "host/gced/setname.h"

namespace {

using Kind = ed::DragAnswer::Kind;
using Sampler = int (*)(gds_point point, double matrix[4][4]);

constexpr int kMostCursor = 2;
constexpr int kNoEmptyAnswer = 1;  // bit of the rules for the next input

// The rules given for the next input function hold for this one.
ed::DragQuestion questionOf(ed::Editor& editor, const GCHAR* prompt) {
  const ed::Editor::InputRules rules = std::exchange(editor.inputRules, {});
  ed::DragQuestion question;
  question.prompt = view(prompt);
  question.keywords = rules.keywords;
  question.mayBeEmpty = (rules.bits & kNoEmptyAnswer) == 0;
  return question;
}

// Samples where the cursor is now and shows the set there; false when the sampler gives up.
bool sample(const GcGePoint3d& at, Sampler sampler, const std::vector<GcDbObjectId>& entities, int cursor) {
  gds_point point = {at.x, at.y, at.z};
  GcGeMatrix3d matrix;
  if (sampler(point, matrix.entry) != RTNORM) return false;
  ed::screen().dragFrame(0, matrix, entities, cursor);
  return true;
}

int drag(ed::Editor& editor, const ed::DragQuestion& question, Sampler sampler,
         const std::vector<GcDbObjectId>& entities, int cursor, gds_point result) {
  ed::beginDrag(question);
  GcGePoint3d last;
  for (bool isFirst = true;;) {
    const ed::DragAnswer answer = ed::nextDragAnswer(editor, question);
    switch (answer.kind) {
      case Kind::Keyword: return RTKWORD;
      case Kind::Empty: return RTNONE;
      case Kind::Cancelled: return RTCAN;
      case Kind::Moved:
      case Kind::Picked: break;
    }
    if (isFirst || !answer.point.isEqualTo(last)) {
      if (!sample(answer.point, sampler, entities, cursor)) return RTCAN;
      last = answer.point;
      isFirst = false;
    }
    if (answer.kind != Kind::Picked) continue;
    result[0] = answer.point.x;
    result[1] = answer.point.y;
    result[2] = answer.point.z;
    return RTNORM;
  }
}

}  // namespace

int gcedDragGen(const gds_name set, const GCHAR* prompt, int cursor, Sampler sampler, gds_point result) {
  if (ap::currentDocument() == nullptr || sampler == nullptr || cursor < 0 || cursor > kMostCursor) return RTERROR;
  ed::Editor& editor = ed::currentEditor();
  const ed::SelectionSet* found = gcedSetOf(set);
  if (found == nullptr || found->size() == 0) return RTERROR;
  const ed::DragGuard guard;
  if (!guard.begun()) return RTERROR;
  const std::vector<GcDbObjectId> entities = found->ids();
  return drag(editor, questionOf(editor, prompt), sampler, entities, cursor, result);
}
