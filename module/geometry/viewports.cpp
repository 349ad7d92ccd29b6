// Viewports of layouts: making one, making one current, scale, lock, switching on and off.
#include <cmath>
#include <memory>

#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/results.h"

namespace {

constexpr const GCHAR* kNoBlockTable = GC_T("\nBłąd otwarcia tabeli bloków.");
// Deliberate: the last word is spelt so.
constexpr const GCHAR* kNoPaperSpace = GC_T("\nNie można uaktywnić przestrzeni paieru.");
constexpr const GCHAR* kNotAppended = GC_T("\nNie można dopisać viewport do przestrzeni papieru.");
constexpr const GCHAR* kNoModelSpace = GC_T("\nNie można ustawić MSPACE.");
constexpr const GCHAR* kPaperSpace = GC_T("*Paper_Space");

// A name first, quiet without arguments; what is missing is told by the text for no arguments.
constexpr ArgRules kNamedWindow{nullptr, msg::kNoArguments, msg::kNoArguments, msg::kWrongType};
// A viewport first; what is missing counts as a wrong type.
constexpr ArgRules kViewport{nullptr, msg::kWrongType, msg::kWrongType, msg::kWrongType};

// Opens the paper space that is shown for writing; prints what failed.
bool openPaperSpace(GcDbWritePtr<GcDbBlockTableRecord>& block) {
  const GcDbDatabase* database = workingDatabase();
  const GcDbReadPtr<GcDbBlockTable> blocks(database != nullptr ? database->blockTableId() : GcDbObjectId::kNull);
  if (!blocks) return gcutPrintf(kNoBlockTable), false;
  GcDbBlockTableRecord* record = nullptr;
  if (blocks->getAt(kPaperSpace, record, GcDb::kForWrite) != Gcad::eOk) return gcutPrintf(kNoPaperSpace), false;
  block.attach(record);
  return true;
}

}  // namespace

int addViewport() {
  ArgReader args(kNamedWindow);
  const GCHAR* layout = args.string();
  const GcGePoint3d center = args.point();
  const double width = args.number();
  const double height = args.number();
  if (args.failed()) return args.status();
  GcDbLayoutManager* manager = gcdbHostApplicationServices()->layoutManager();
  if (manager->setCurrentLayout(layout) != Gcad::eOk) return ret::nothing();
  manager->updateLayoutTabs();
  auto viewport = std::make_unique<GcDbViewport>();
  ignore(viewport->setWidth(width));
  ignore(viewport->setHeight(height));
  ignore(viewport->setCenterPoint(center));
  GcDbWritePtr<GcDbBlockTableRecord> block;
  if (!openPaperSpace(block)) return ret::nothing();
  if (block->appendGcDbEntity(viewport.get()) != Gcad::eOk) return gcutPrintf(kNotAppended), RTNORM;
  GcDbWritePtr<GcDbViewport> made;
  made.attach(viewport.release());
  ignore(block.close());
  ignore(made->setOn());
  const GcDbObjectId id = made->objectId();
  ignore(made.close());
  return ret::name(id);
}

// The viewport is open for writing while the command runs, and the command runs whatever the object is.
int putActiveViewport() {
  ArgReader args(kViewport);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbObject> object(id);
  if (gcedCommandS(RTSTR, GC_T("_MSPACE"), RTNONE) != RTNORM) gcutPrintf(kNoModelSpace);
  GcDbViewport* viewport = GcDbViewport::cast(object.get());
  if (viewport == nullptr) return args.wrongType();
  ignore(viewport->setOn());
  ignore(gcedSetCurrentVPort(viewport));
  return ret::nothing();
}

int putCustomScale() {
  ArgReader args(kViewport);
  const GcDbObjectId id = args.entityName();
  const double scale = args.number();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbViewport> viewport(id);
  if (!viewport) return args.wrongType();
  ignore(viewport->setCustomScale(scale));
  return ret::nothing();
}

int putStandardScale() {
  ArgReader args(kViewport);
  const GcDbObjectId id = args.entityName();
  const double number = args.number();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbViewport> viewport(id);
  if (!viewport) return args.wrongType();
  constexpr double kMost = 32767;  // no number of a scale is anywhere near
  const int truncated = std::fabs(number) <= kMost ? static_cast<int>(number) : -1;
  ignore(viewport->setStandardScale(truncated));
  return ret::nothing();
}

int putDisplayLocked() {
  ArgReader args(kViewport);
  const GcDbObjectId id = args.entityName();
  const bool locked = args.optionalFlag();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbViewport> viewport(id);
  if (!viewport) return args.wrongType();
  ignore(locked ? viewport->setLocked() : viewport->setUnlocked());
  return ret::nothing();
}

// Deliberate: a second argument that is no flag switches off when it is the last one, and is a wrong type when more
// follow.
int displayViewport() {
  ArgReader args(kViewport);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbViewport> viewport(id);
  if (!viewport) return args.wrongType();
  const resbuf* flag = args.any();
  if (flag == nullptr) return args.status();
  if (flag->restype == RTT) return ignore(viewport->setOn()), ret::nothing();
  if (flag->restype != RTNIL && flag->rbnext != nullptr) return args.wrongType();
  ignore(viewport->setOff());
  return ret::nothing();
}
