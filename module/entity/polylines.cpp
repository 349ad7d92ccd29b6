// Vertices, widths, bulges and closure of polylines. Most of it is about lightweight polylines only; vertices are
// counted from 0 and points are of the polyline's own plane. An index that the polyline does not have changes
// nothing and reads as zero.
#include <memory>

#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/rbchain.h"
#include "module/app/results.h"

namespace {

// A vertex as these functions add it: straight, with the width that the polyline has.
constexpr double kNoBulge = 0.0;
constexpr double kNoWidth = -1.0;

// A negative index is one that no polyline has.
unsigned indexOf(int16_t index) { return static_cast<unsigned>(index); }

bool isOldPolyline(const GcDbObject* object) {
  return object != nullptr && (object->isKindOf(GcDb2dPolyline::desc()) || object->isKindOf(GcDb3dPolyline::desc()));
}

}  // namespace

int addVertex() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const int16_t index = args.integer();
  const GcGePoint2d point = args.point2d();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbPolyline> polyline(id);
  if (!polyline) return args.wrongType();
  ignore(polyline->addVertexAt(indexOf(index), point, kNoBulge, kNoWidth, kNoWidth, 0));
  return ret::nothing();
}

int getCoordinate() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const int16_t index = args.integer();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbPolyline> polyline(id);
  if (!polyline) return ret::nil(), args.wrongType();
  GcGePoint2d at;
  ignore(polyline->getPointAt(indexOf(index), at));
  return ret::point(at.x, at.y, 0.0);
}

int getCoordinates() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbPolyline> polyline(id);
  if (!polyline) return args.wrongType();
  RbChain list;
  list.append(RTLB);
  for (unsigned i = 0; i < polyline->numVerts(); ++i) {
    GcGePoint2d at;
    if (polyline->getPointAt(i, at) == Gcad::eOk) list.appendPoint(at.x, at.y, 0.0);
  }
  list.append(RTLE);
  return ret::list(list);
}

int putCoordinate() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const int16_t index = args.integer();
  const GcGePoint2d point = args.point2d();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbPolyline> polyline(id);
  if (!polyline) return args.wrongType();
  ignore(polyline->setPointAt(indexOf(index), point));
  return ret::nothing();
}

// Vertices that stay keep their bulge and widths.
int putCoordinates() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  if (!args.failed() && args.atEnd()) return args.refuse(msg::kTooFew);
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbPolyline> polyline(id);
  if (!polyline) return ret::nil(), args.wrongType();
  unsigned i = 0;
  for (const resbuf* rb = args.rest(); rb != nullptr; rb = rb->rbnext) {
    if (!node::isPoint(*rb)) continue;
    const GcGePoint2d point = node::point2d(*rb);
    if (i >= polyline->numVerts())
      ignore(polyline->addVertexAt(i, point, kNoBulge, kNoWidth, kNoWidth, 0));
    else
      ignore(polyline->setPointAt(i, point));
    ++i;
  }
  // Deliberate: an unsigned count down to i. Without any point i is 0, the index wraps and this never ends; a host
  // that limits the time of a call stops it.
  const unsigned count = polyline->numVerts();
  if (i < count)
    for (unsigned index = count - 1; index >= i; --index) ignore(polyline->removeVertexAt(index));
  return ret::nothing();
}

int getConstantWidth() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbPolyline> polyline(id);
  if (!polyline) return args.wrongType();
  double width = 0;
  if (polyline->getConstantWidth(width) != Gcad::eOk) width = 0;
  return ret::real(width);
}

int putConstantWidth() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const double width = args.real();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbPolyline> polyline(id);
  if (!polyline) return args.wrongType();
  ignore(polyline->setConstantWidth(width));
  return ret::nothing();
}

int setWidth() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const int16_t index = args.integer();
  const double startWidth = args.number();
  const double endWidth = args.number();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbPolyline> polyline(id);
  if (!polyline) return args.wrongType();
  ignore(polyline->setWidthsAt(indexOf(index), startWidth, endWidth));
  return ret::nothing();
}

// Deliberate: the older polylines, flat or in space, always answer 0.0.
int getBulge() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const int16_t index = args.integer();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbObject> object(id);
  const GcDbPolyline* polyline = object ? GcDbPolyline::cast(object.get()) : nullptr;
  if (polyline == nullptr && !isOldPolyline(object.get())) return args.wrongType();
  double bulge = 0;
  if (polyline != nullptr && polyline->getBulgeAt(indexOf(index), bulge) != Gcad::eOk) bulge = 0;
  return ret::real(bulge);
}

// Deliberate: the older polylines are accepted and left as they are.
int setBulge() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const int16_t index = args.integer();
  const double bulge = args.real();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbObject> object(id);
  GcDbPolyline* polyline = object ? GcDbPolyline::cast(object.get()) : nullptr;
  if (polyline == nullptr && !isOldPolyline(object.get())) return args.wrongType();
  if (polyline != nullptr) ignore(polyline->setBulgeAt(indexOf(index), bulge));
  return ret::nothing();
}

// Deliberate: a second argument must be there and is not read.
int getClosed() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  args.any();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbCurve> curve(id);
  if (!curve) return args.wrongType();
  return ret::truth(curve->isClosed());
}

int putClosed() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const bool closed = args.optionalFlag();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbPolyline> polyline(id);
  if (!polyline) return args.wrongType();
  polyline->setClosed(closed);
  return ret::nothing();
}

int putLinetypeGeneration() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const bool on = args.optionalFlag();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbObject> object(id);
  if (GcDb2dPolyline* old = GcDb2dPolyline::cast(object.get()))
    ignore(on ? old->setLinetypeGenerationOn() : old->setLinetypeGenerationOff());
  else if (GcDbPolyline* polyline = GcDbPolyline::cast(object.get()))
    polyline->setPlinegen(on);
  else
    return args.wrongType();
  return ret::nothing();
}

namespace {

// Deliberate: what is no curve type is the simple one.
GcDb::Poly2dType curveType(int16_t type) {
  switch (type) {
    case 1: return GcDb::k2dFitCurvePoly;
    case 2: return GcDb::k2dQuadSplinePoly;
    case 3: return GcDb::k2dCubicSplinePoly;
    default: return GcDb::k2dSimplePoly;
  }
}

// The older polyline that takes the lightweight one's place, id and all; it is open for write, and the lightweight one
// is gone. Null, with nothing changed, when the host refuses.
GcDb2dPolyline* replacedByOld(GcDbWritePtr<GcDbObject>& object, GcDbPolyline& lightweight) {
  auto old = std::make_unique<GcDb2dPolyline>();
  if (old->convertFrom(&lightweight) != Gcad::eOk) return nullptr;
  const std::unique_ptr<GcDbObject> replaced(object.release());
  object.attach(old.release());
  return GcDb2dPolyline::cast(object.get());
}

}  // namespace

// Deliberate: a lightweight polyline always becomes an older one, for the simple type too.
int putType() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const int16_t type = args.integer();
  if (args.failed()) return args.status();
  GcDbWritePtr<GcDbObject> object(id);
  GcDb2dPolyline* polyline = GcDb2dPolyline::cast(object.get());
  if (GcDbPolyline* lightweight = GcDbPolyline::cast(object.get())) polyline = replacedByOld(object, *lightweight);
  if (polyline == nullptr) return args.wrongType();
  ignore(polyline->convertToPolyType(curveType(type)));
  return ret::nothing();
}
