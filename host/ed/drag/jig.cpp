// The host's side of a jig: where its points come from and what is shown of it.
#include "ed/jig.h"

#include "host/ap/docmanager.h"
#include "host/ed/coordinates.h"
#include "host/ed/drag/draginput.h"
#include "host/ed/drag/shownset.h"
#include "host/ed/screen.h"
#include "rx/rxclass.h"

GcRxClass* GcEdJig::desc() {
  static GcRxClass* const descriptor = [] {
    GcRxObject::desc();
    GcRxClass* found = gcrxFindGcRxClass(GC_T("AcEdJig"));
    return found != nullptr ? found : newGcRxClass(GC_T("AcEdJig"), GC_T("AcRxObject"));
  }();
  return descriptor;
}
GcRxClass* GcEdJig::isA() const { return desc(); }
void GcEdJig::rxInit() { desc(); }

struct GcEdJigDrag {
  explicit GcEdJigDrag(GcEdJig& dragged) : jig(dragged), editor(ed::currentEditor()) { jig.m_drag = this; }
  ~GcEdJigDrag() { jig.m_drag = nullptr; }
  GcEdJigDrag(const GcEdJigDrag&) = delete;
  GcEdJigDrag& operator=(const GcEdJigDrag&) = delete;

  GcEdJig::DragStatus acquire(GcGePoint3d& point);
  GcEdJig::DragStatus run();
  void show(int status) const;

  GcEdJig& jig;
  ed::Editor& editor;
  ed::DragAnswer answer;
  bool acquired = false;  // in this turn of the sampler
};

GcEdJig::DragStatus GcEdJigDrag::acquire(GcGePoint3d& point) {
  using Kind = ed::DragAnswer::Kind;
  // A sampler that acquires several points in one turn gets the same cursor.
  if (!acquired) {
    ed::DragQuestion question;
    question.keywords = jig.m_keywords.c_str();
    question.mayBeEmpty = (jig.m_controls & GcEdJig::kNullResponseAccepted) != 0;
    question.flat = (jig.m_controls & GcEdJig::kAccept3dCoordinates) == 0;
    answer = ed::nextDragAnswer(editor, question);
    acquired = true;
  }
  switch (answer.kind) {
    case Kind::Moved:
    case Kind::Picked: point = ed::ucsToWorld(editor) * answer.point; return GcEdJig::kNormal;
    case Kind::Keyword: return static_cast<GcEdJig::DragStatus>(answer.keyword);
    case Kind::Empty: return GcEdJig::kNull;
    case Kind::Cancelled: return GcEdJig::kCancel;
  }
  return GcEdJig::kOther;
}

GcEdJig::DragStatus GcEdJigDrag::run() {
  ed::DragQuestion question;
  question.prompt = jig.dispPrompt();
  ed::beginDrag(question);
  for (;;) {
    acquired = false;
    const GcEdJig::DragStatus status = jig.sampler();
    if (status == GcEdJig::kNormal && jig.update()) show(status);
    const bool goesOn = status == GcEdJig::kNormal || status == GcEdJig::kNoChange;
    if (!goesOn) return status;
    if (!acquired || answer.kind == ed::DragAnswer::Kind::Cancelled)
      return acquired ? GcEdJig::kCancel : GcEdJig::kOther;
    // A click ends the drag, also where the cursor stood already.
    if (answer.kind != ed::DragAnswer::Kind::Moved) return GcEdJig::kNormal;
  }
}

void GcEdJigDrag::show(int status) const {
  GcDbEntity* drawable = jig.entity();
  if (drawable == nullptr || !ed::screen().showsDrags()) return;
  const ed::ShownSet shown = ed::shownBy(*drawable);
  ed::screen().dragFrame(status, shown.matrix, shown.entities, jig.specialCursorType());
}

GcEdJig::GcEdJig() = default;
GcEdJig::~GcEdJig() = default;

GcEdJig::DragStatus GcEdJig::drag() {
  const ed::DragGuard guard;
  if (!guard.begun() || ap::currentDocument() == nullptr) return kOther;
  GcEdJigDrag drag(*this);
  return drag.run();
}

GcEdJig::DragStatus GcEdJig::sampler() { return kOther; }
bool GcEdJig::update() { return false; }
GcDbEntity* GcEdJig::entity() const { return nullptr; }

GcEdJig::DragStatus GcEdJig::acquirePoint(GcGePoint3d& point) {
  return m_drag == nullptr ? kOther : m_drag->acquire(point);
}

GcEdJig::DragStatus GcEdJig::acquirePoint(GcGePoint3d& point, const GcGePoint3d&) { return acquirePoint(point); }
