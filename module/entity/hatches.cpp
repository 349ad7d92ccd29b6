// Hatches step by step: an empty one, loops along curves of the drawing, angle and scale of the pattern. Angles are
// radians. Which curves make a loop is the database's affair.
#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/results.h"
#include "module/entity/space.h"

int addHatch() {
  constexpr int16_t kAssociative = 1;
  ArgReader args(rules::kTextFirst);
  const space::Space space = space::read(args);
  const int16_t type = args.integer();
  const GCHAR* pattern = args.string();
  const bool associative = args.integer() == kAssociative;
  if (args.failed()) return args.status();
  auto hatch = std::make_unique<GcDbHatch>();
  ignore(hatch->setNormal(GcGeVector3d::kZAxis));
  ignore(hatch->setElevation(0.0));
  ignore(hatch->setPattern(static_cast<GcDbHatch::HatchPatternType>(type), pattern));
  ignore(hatch->setAssociative(associative));
  return appendAndAnswer(space, std::move(hatch));
}

namespace {

// The entities among the remaining arguments, in order; arguments of other types are passed over.
GcDbObjectIdArray curvesOf(const ArgReader& args) {
  GcDbObjectIdArray ids;
  for (const resbuf* rb = args.rest(); rb != nullptr; rb = rb->rbnext)
    if (rb->restype == RTENAME) ids.append(node::objectId(*rb));
  return ids;
}

// Deliberate: what is no hatch is passed over without a message.
template <class AddLoop>
int changeLoops(GcDbObjectId id, const AddLoop& addLoop) {
  const GcDbWritePtr<GcDbHatch> hatch(id);
  if (!hatch) return ret::nothing();
  return addLoop(*hatch) == Gcad::eOk ? ret::name(id) : ret::nil();
}

}  // namespace

int appendOuterLoop() {
  constexpr int kDefaultLoop = 0;
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  if (!args.failed() && args.atEnd()) return args.refuse(msg::kTooFew);
  if (args.failed()) return args.status();
  const GcDbObjectIdArray curves = curvesOf(args);
  return changeLoops(id, [&](GcDbHatch& hatch) { return hatch.appendLoop(kDefaultLoop, curves); });
}

int insertLoopAt() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const int16_t index = args.integer();
  const int16_t type = args.integer();
  if (!args.failed() && args.atEnd()) return args.refuse(msg::kTooFew);
  if (args.failed()) return args.status();
  const GcDbObjectIdArray curves = curvesOf(args);
  return changeLoops(id, [&](GcDbHatch& hatch) { return hatch.insertLoopAt(index, type, curves); });
}

namespace {

// Sets a number of the pattern; the pattern is then taken anew with it and the hatch computed.
int changePattern(Gcad::ErrorStatus (GcDbHatch::*set)(double)) {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const double value = args.number();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbHatch> hatch(id);
  if (!hatch) return args.wrongType();
  if ((hatch.get()->*set)(value) != Gcad::eOk) return ret::nil();
  const GcString name = hatch->patternName();
  const bool taken = hatch->setPattern(hatch->patternType(), name.c_str()) == Gcad::eOk;
  return ret::truth(hatch->evaluateHatch(false) == Gcad::eOk && taken);
}

}  // namespace

// Deliberate: the LISP names have one t.
int putPaternAngle() { return changePattern(&GcDbHatch::setPatternAngle); }
int putPaternScale() { return changePattern(&GcDbHatch::setPatternScale); }

int evaluateEntity() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbObject> object(id);
  if (GcDbHatch* hatch = GcDbHatch::cast(object.get()))
    ignore(hatch->evaluateHatch(false));
  else if (GcDbLeader* leader = GcDbLeader::cast(object.get()))
    ignore(leader->evaluateLeader());
  else
    return args.wrongType();
  return ret::nothing();
}
