// Curves made from curves: parallel ones, pieces.
#include <algorithm>
#include <memory>
#include <vector>

#include "host/db/curves/curve_path.h"
#include "host/db/curves/from_path.h"
#include "host/ge/curves/offset.h"

namespace {

// The plane in which a curve's parallels lie: its own, seen from the side of the entity's normal. A straight curve
// has many: the one of its normal when that is at right angles to it, else the one most level.
Gcad::ErrorStatus offsetPlane(const GcDbCurve& curve, const GcGePath& path, GcGeVector3d& normal) {
  if (!path.isPlanar(normal)) return Gcad::eNonPlanarEntity;
  const GcGeVector3d own = curve.normal().normal();
  if (normal.lengthSqrd() > 0) {
    constexpr double kSame = 0.999;
    if (normal.dotProduct(own) < -kSame) normal = -normal;
    return Gcad::eOk;
  }
  const GcGeSpan& s = path.spans()[0];
  const GcGeVector3d way = gcgeJetAt(s, path.poles(), std::isfinite(s.u0) ? s.u0 : 0).first.normal();
  for (const GcGeVector3d& up : {own, GcGeVector3d::kZAxis, GcGeVector3d::kYAxis}) {
    const GcGeVector3d across = up - way * way.dotProduct(up);
    if (across.length() < 1e-6) continue;
    normal = across / across.length();
    return Gcad::eOk;
  }
  return Gcad::eDegenerateGeometry;
}

using Pieces = std::vector<std::unique_ptr<GcDbCurve>>;

void handOver(Pieces& pieces, const GcDbCurve& source, GcDbVoidPtrArray& out) {
  for (std::unique_ptr<GcDbCurve>& piece : pieces) {
    ignore(piece->setPropertiesFrom(source, false));
    out.append(static_cast<GcDbEntity*>(piece.release()));
  }
}

}  // namespace

Gcad::ErrorStatus GcDbCurve::getOffsetCurves(double offsetDist, GcDbVoidPtrArray& offsetCurves) const {
  const GcDbCurvePath path(*this);
  if (path.status() != Gcad::eOk) return path.status();
  const double size = std::abs(offsetDist);
  if (!(size > GcGePath::kLeastSize && size < GcGePath::kMostNumber)) return Gcad::eInvalidInput;
  GcGeVector3d normal;
  const Gcad::ErrorStatus status = offsetPlane(*this, *path, normal);
  if (status != Gcad::eOk) return status;
  Pieces pieces;
  for (const GcGePath& parallel : gcgeOffset(*path, normal, offsetDist)) {
    pieces.emplace_back(subFromPath(parallel));
    if (!pieces.back()) return Gcad::eNotApplicable;
  }
  handOver(pieces, *this, offsetCurves);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbCurve::getSplitCurves(const GcArray<double>& params, GcDbVoidPtrArray& pieces) const {
  const GcDbCurvePath path(*this);
  if (path.status() != Gcad::eOk) return path.status();
  std::vector<double> cuts(params.begin(), params.end());
  if (cuts.empty() || !std::is_sorted(cuts.begin(), cuts.end())) return Gcad::eInvalidInput;
  int span = 0;
  double u = 0;
  for (const double t : cuts)
    if (!std::isfinite(t) || !path->locate(t, span, u)) return Gcad::eInvalidInput;
  cuts.erase(std::unique(cuts.begin(), cuts.end()), cuts.end());
  if (path->isClosed()) {
    if (cuts.size() == 1 && cuts[0] != path->startParam()) return Gcad::eInvalidInput;  // one cut opens, parts nothing
    cuts.push_back(cuts.front());
  } else {
    if (cuts.front() > path->startParam()) cuts.insert(cuts.begin(), path->startParam());
    if (cuts.back() < path->endParam()) cuts.push_back(path->endParam());
  }
  Pieces made;
  for (size_t i = 0; i + 1 < cuts.size(); ++i) {
    const GcGePath part = path->trimmed(cuts[i], cuts[i + 1]);
    if (part.isEmpty()) continue;
    made.emplace_back(subFromPath(part));
    if (!made.back()) return Gcad::eNotApplicable;
  }
  handOver(made, *this, pieces);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbCurve::getSplitCurves(const GcArray<GcGePoint3d>& points, GcDbVoidPtrArray& pieces) const {
  GcArray<double> params;
  for (const GcGePoint3d& point : points) {
    double t = 0;
    const Gcad::ErrorStatus status = getParamAtPoint(point, t);
    if (status != Gcad::eOk) return status;
    params.append(t);
  }
  std::sort(params.begin(), params.end());
  return getSplitCurves(params, pieces);
}

Gcad::ErrorStatus GcDbCurve::reverseCurve() { return Gcad::eNotApplicable; }

GcDbCurve* GcDbCurve::subFromPath(const GcGePath& path) const { return gcdbCurveFromPath(path, normal()); }
