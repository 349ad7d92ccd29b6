#include "db/hatch.h"

#include <iterator>
#include <vector>

#include "db/database.h"
#include "host/db/core/header.h"
#include "host/db/describe/fieldio.h"
#include "host/db/entities/hatch_pattern.h"
#include "host/db/entities/planar.h"
#include "host/rx/math/elementary.h"

GCDB_DEFINE_CLASS(GcDbHatch, "AcDbHatch")

namespace {

constexpr GcDbField kSplinePointFields[] = {
    field<&GcDbHatchSplinePoint::point>(10, "point", Is::OcsPoint),
    field<&GcDbHatchSplinePoint::weight>(42, "weight", Is::Plain, Write::UnlessDefault),
};

constexpr GcDbField kEdgeFields[] = {
    field<&GcDbHatchEdge::type>(72, "type", Is::Plain),
    field<&GcDbHatchEdge::start>(10, "start", Is::OcsPoint).when<&GcDbHatchEdge::hasStart>(),
    field<&GcDbHatchEdge::end>(11, "end", Is::OcsPoint).when<&GcDbHatchEdge::isLine>(),
    field<&GcDbHatchEdge::majorAxis>(11, "majorAxis", Is::OcsVector).when<&GcDbHatchEdge::isEllipse>(),
    field<&GcDbHatchEdge::radius>(40, "radius", Is::Plain).when<&GcDbHatchEdge::isCurved>(),
    field<&GcDbHatchEdge::startRad>(50, "startAngle", Is::Plain).when<&GcDbHatchEdge::isCurved>(),
    field<&GcDbHatchEdge::endRad>(51, "endAngle", Is::Plain).when<&GcDbHatchEdge::isCurved>(),
    field<&GcDbHatchEdge::isCounterClockwise>(73, "isCounterClockwise", Is::Plain).when<&GcDbHatchEdge::isCurved>(),
    field<&GcDbHatchEdge::degree>(94, "degree", Is::Plain).when<&GcDbHatchEdge::isSpline>(),
    field<&GcDbHatchEdge::isRational>(73, "isRational", Is::Plain).when<&GcDbHatchEdge::isSpline>(),
    field<&GcDbHatchEdge::isPeriodic>(74, "isPeriodic", Is::Plain).when<&GcDbHatchEdge::isSpline>(),
    count<&GcDbHatchEdge::knots>(95, "knotCount").when<&GcDbHatchEdge::isSpline>(),
    count<&GcDbHatchEdge::controlPoints>(96, "controlPointCount").when<&GcDbHatchEdge::isSpline>(),
    list<&GcDbHatchEdge::knots, 40>(-1, "knots").when<&GcDbHatchEdge::isSpline>(),
    each<&GcDbHatchEdge::controlPoints>(-1, "controlPoints", kSplinePointFields).when<&GcDbHatchEdge::isSpline>(),
    list<&GcDbHatchEdge::fitPoints, 11, Is::OcsPoint>(97, "fitPoints")
        .when<&GcDbHatchEdge::isSpline>()
        .from(GcDb::kDHL_AC1024),
    field<&GcDbHatchEdge::startTangent>(12, "startTangent", Is::OcsVector)
        .when<&GcDbHatchEdge::hasFit>()
        .from(GcDb::kDHL_AC1024),
    field<&GcDbHatchEdge::endTangent>(13, "endTangent", Is::OcsVector)
        .when<&GcDbHatchEdge::hasFit>()
        .from(GcDb::kDHL_AC1024),
};

constexpr GcDbField kVertexFields[] = {
    field<&GcDbHatchVertex::point>(10, "point", Is::OcsPoint),
    field<&GcDbHatchVertex::bulge>(42, "bulge", Is::Plain),
};

constexpr GcDbField kStraightVertexFields[] = {
    field<&GcDbHatchVertex::point>(10, "point", Is::OcsPoint),
};

constexpr GcDbField kLoopFields[] = {
    field<&GcDbHatchLoop::flags>(92, "flags", Is::Plain),
    field<&GcDbHatchLoop::hasBulge>(72, "hasBulge", Is::Plain).when<&GcDbHatchLoop::isPolyline>(),
    field<&GcDbHatchLoop::isClosed>(73, "isClosed", Is::Plain).when<&GcDbHatchLoop::isPolyline>(),
    each<&GcDbHatchLoop::vertices>(93, "vertices", kVertexFields).when<&GcDbHatchLoop::isBulgedPolyline>(),
    each<&GcDbHatchLoop::vertices>(93, "straightVertices", kStraightVertexFields)
        .when<&GcDbHatchLoop::isStraightPolyline>()
        .echo(),
    each<&GcDbHatchLoop::edges>(93, "edges", kEdgeFields).when<&GcDbHatchLoop::hasEdges>(),
    list<&GcDbHatchLoop::sources, 330, Is::SoftPointer>(97, "sources"),
};

// Base and offset are lengths in the plane; the hatch's own transformation turns them.
constexpr GcDbField kLineFields[] = {
    field<&GcDbHatchPatternLine::angleRad>(53, "angle", Is::Plain),
    field<&GcDbHatchPatternLine::baseX>(43, "baseX", Is::Plain),
    field<&GcDbHatchPatternLine::baseY>(44, "baseY", Is::Plain),
    field<&GcDbHatchPatternLine::offsetX>(45, "offsetX", Is::Plain),
    field<&GcDbHatchPatternLine::offsetY>(46, "offsetY", Is::Plain),
    list<&GcDbHatchPatternLine::dashes, 49>(79, "dashes"),
};

constexpr GcDbField kGradientColorFields[] = {
    field<&GcDbHatchGradientColor::position>(463, "position", Is::Plain),
    field<&GcDbHatchGradientColor::colorIndex>(63, "colorIndex", Is::Plain, Write::UnlessDefault),
    field<&GcDbHatchGradientColor::color>(421, "trueColor", Is::TrueColor, Write::UnlessDefault),
};

constexpr GcDbField kGradientFields[] = {
    field<&GcDbHatchGradient::isGradient>(450, "isGradient", Is::Plain),
    field<&GcDbHatchGradient::reserved>(451, "reserved", Is::Plain),
    field<&GcDbHatchGradient::angleRad>(460, "angle", Is::Plain),
    field<&GcDbHatchGradient::shift>(461, "shift", Is::Plain),
    field<&GcDbHatchGradient::isOneColor>(452, "isOneColor", Is::Plain),
    field<&GcDbHatchGradient::tint>(462, "tint", Is::Plain),
    each<&GcDbHatchGradient::colors>(453, "colors", kGradientColorFields),
    field<&GcDbHatchGradient::name>(470, "name", Is::Plain),
};

}  // namespace

// Files give the elevation as the height of a point whose other coordinates are 0.
const GcDbField GcDbHatch::kFields[] = {
    marker("AcDbHatch"),
    field<&GcDbHatch::m_elevation>(10, "elevation", Is::Elevation)
        .filedAs(
            [](const void* record) {
              return GcDbGroup::ofPoint(10, {0, 0, static_cast<const GcDbHatch*>(record)->m_elevation});
            },
            [](void* record, const GcDbGroup& group) {
              static_cast<GcDbHatch*>(record)->m_elevation = group.point.z;
              return true;
            }),
    field<&GcDbHatch::m_normal>(210, "normal", Is::Normal),
    field<&GcDbHatch::m_patternName>(2, "patternName", Is::Plain),
    field<&GcDbHatch::m_isSolid>(70, "isSolid", Is::Plain).orElse(1),
    field<&GcDbHatch::m_isAssociative>(71, "isAssociative", Is::Plain),
    each<&GcDbHatch::m_loops>(91, "loops", kLoopFields),
    field<&GcDbHatch::m_style>(75, "style", Is::Plain),
    field<&GcDbHatch::m_patternType>(76, "patternType", Is::Plain).orElse(1),
    field<&GcDbHatch::m_patternAngleRad>(52, "patternAngle", Is::Plain).when<&GcDbHatch::hasPattern>(),
    field<&GcDbHatch::m_patternScale>(41, "patternScale", Is::Plain).orElse(1).when<&GcDbHatch::hasPattern>(),
    field<&GcDbHatch::m_isDouble>(77, "isDouble", Is::Plain).when<&GcDbHatch::hasPattern>(),
    each<&GcDbHatch::m_lines>(78, "patternLines", kLineFields).when<&GcDbHatch::hasPattern>(),
    field<&GcDbHatch::m_pixelSize>(47, "pixelSize", Is::Length, Write::FilesUnlessDefault),
    list<&GcDbHatch::m_seeds, 10, Is::OcsPoint>(98, "seeds"),
    part<&GcDbHatch::m_gradient>("gradient", kGradientFields).from(GcDb::kDHL_AC1018),
};
GCDB_FIELD_COUNT(GcDbHatch);

Gcad::ErrorStatus GcDbHatch::setNormal(const GcGeVector3d& normal) {
  if (normal.isZeroLength()) return Gcad::eInvalidInput;
  return assign(m_normal, normal.normal());
}

Gcad::ErrorStatus GcDbHatch::setPatternScale(double scale) {
  return scale > 0 ? assign(m_patternScale, scale) : Gcad::eInvalidInput;
}

namespace {

// The units of a hatch that is in no drawing yet are those of the working one.
bool isMetric(const GcDbHatch& hatch) {
  constexpr int kMetric = 1;
  const GcDbDatabase* database = hatch.database();
  const GcDbHostApplicationServices* services = gcdbHostApplicationServices();
  if (database == nullptr && services != nullptr) database = services->workingDatabase();
  return database == nullptr || database->header().integer(GC_T("$MEASUREMENT"), kMetric) != 0;
}

}  // namespace

Gcad::ErrorStatus GcDbHatch::setPattern(HatchPatternType type, const GCHAR* name) {
  if (name == nullptr || type > kCustomDefined) return Gcad::eInvalidInput;
  GcArray<GcDbHatchPatternLine> lines;
  const bool solid = type != kUserDefined && equalNoCase(view(name), GC_T("SOLID"));
  if (type == kUserDefined)
    gchatch::userLines(m_patternAngleRad, m_patternScale, m_isDouble, lines);
  else if (!solid && !gchatch::patternLines(view(name), isMetric(*this), m_patternAngleRad, m_patternScale, lines))
    return Gcad::eKeyNotFound;
  assertWriteEnabled();
  m_patternType = type;
  m_patternName = type == kUserDefined && name[0] == 0 ? GcString(GC_T("_USER")) : GcString(name).upper();
  m_isSolid = solid;
  m_lines = lines;
  return Gcad::eOk;
}

namespace {

constexpr int kDerivedLoop = 4;  // made of curves of the drawing

// The curves of an associative hatch are bound to tell it of their changes.
void bindTo(GcDbObjectId hatch, const GcDbObjectIdArray& curves) {
  for (const GcDbObjectId id : curves) {
    GcDbObject* curve = nullptr;
    if (gcdbOpenObject(curve, id, GcDb::kForWrite) != Gcad::eOk) continue;
    curve->addPersistentReactor(hatch);
    ignore(curve->close());
  }
}

}  // namespace

Gcad::ErrorStatus GcDbHatch::appendLoop(const GcDbHatchLoop& loop) {
  assertWriteEnabled();
  m_loops.append(loop);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbHatch::appendLoop(int loopType, const GcDbObjectIdArray& curves) {
  return insertLoopAt(m_loops.length(), loopType, curves);
}

Gcad::ErrorStatus GcDbHatch::insertLoopAt(int index, int loopType, const GcDbObjectIdArray& curves) {
  if (index < 0 || index > m_loops.length()) return Gcad::eInvalidIndex;
  GcDbHatchLoop loop;
  const Gcad::ErrorStatus status = makeLoop(loopType, curves, loop);
  if (status != Gcad::eOk) return status;
  assertWriteEnabled();
  m_loops.insertAt(index, loop);
  if (m_isAssociative && !objectId().isNull()) bindTo(objectId(), loop.sources);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbHatch::removeLoopAt(int index) {
  if (index < 0 || index >= m_loops.length()) return Gcad::eInvalidIndex;
  assertWriteEnabled();
  m_loops.removeAt(index);
  return Gcad::eOk;
}

// A loop whose curves are gone or no longer close stays as it was and is bound to nothing any more.
Gcad::ErrorStatus GcDbHatch::evaluateHatch(bool) {
  assertWriteEnabled();
  if (!m_isAssociative) return Gcad::eOk;
  for (GcDbHatchLoop& loop : m_loops) {
    if (loop.sources.isEmpty()) continue;
    GcDbHatchLoop fresh;
    if (makeLoop(loop.flags, loop.sources, fresh) == Gcad::eOk) {
      loop = fresh;
      continue;
    }
    loop.sources.clear();
    loop.flags &= ~kDerivedLoop;
  }
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbHatch::removeAssociativity() {
  assertWriteEnabled();
  for (GcDbHatchLoop& loop : m_loops) {
    loop.sources.clear();
    loop.flags &= ~kDerivedLoop;
  }
  m_isAssociative = false;
  return Gcad::eOk;
}

namespace {

// Angles of curved edges are measured in the direction of the edge.
void turnEdge(GcDbHatchEdge& edge, double angleRad, double factor) {
  if (edge.isArc()) {
    edge.radius *= factor;
    const double turn = edge.isCounterClockwise ? angleRad : -angleRad;
    edge.startRad += turn;
    edge.endRad += turn;
  }
}

}  // namespace

Gcad::ErrorStatus GcDbHatch::subTransformBy(const GcGeMatrix3d& transform) {
  if (!transform.isUniScaledOrtho()) return Gcad::eCannotScaleNonUniformly;
  const GcGeVector3d formerX = gcplanar::directionAt(0, m_normal);
  std::vector<GcGePoint3d> bases;  // in the world: the lines go along with what they fill
  for (const GcDbHatchPatternLine& line : m_lines)
    bases.push_back(gcplanar::toWorld(GcGePoint3d(line.baseX, line.baseY, m_elevation), m_normal));
  const Gcad::ErrorStatus status = GcDbEntity::subTransformBy(transform);
  if (status != Gcad::eOk) return status;
  double turn = gcplanar::angleOf(transform * formerX, m_normal);
  if (turn > gcplanar::kTwoPi / 2) turn -= gcplanar::kTwoPi;
  const double factor = transform.scale();
  for (GcDbHatchLoop& loop : m_loops)
    for (GcDbHatchEdge& edge : loop.edges) turnEdge(edge, turn, factor);
  const double c = gc::cos(turn) * factor;
  const double s = gc::sin(turn) * factor;
  const auto turned = [&](double& x, double& y) {
    const double x0 = x;
    x = c * x0 - s * y;
    y = s * x0 + c * y;
  };
  for (int i = 0; i < m_lines.length(); ++i) {
    GcDbHatchPatternLine& line = m_lines[i];
    line.angleRad = gcplanar::inFullTurn(line.angleRad + turn);
    const GcGePoint3d base = gcplanar::toOwn(transform * bases[static_cast<size_t>(i)], m_normal);
    line.baseX = base.x;
    line.baseY = base.y;
    turned(line.offsetX, line.offsetY);
    for (double& dash : line.dashes) dash *= factor;
  }
  m_patternAngleRad = gcplanar::inFullTurn(m_patternAngleRad + turn);
  m_patternScale *= factor;
  return Gcad::eOk;
}
