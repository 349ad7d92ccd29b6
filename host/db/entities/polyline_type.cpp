// The curve type of the older plane polylines: vertices that carry a fitted curve come and go.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "db/database.h"
#include "db/polyline2d.h"
#include "host/db/core/extra.h"
#include "host/db/core/header.h"
#include "host/db/entities/polyline_fit.h"
#include "host/db/entities/sequence.h"
#include "host/rx/math/elementary.h"

namespace {

constexpr int kFit = 2, kSpline = 4;                          // flags of the polyline
constexpr int kOfFit = 1, kOfSpline = 8, kControlPoint = 16;  // flags of a vertex

template <class F>
void change(GcDbObjectId id, const F& f) {
  GcDb2dVertex* vertex = nullptr;
  if (gcdbOpenObject(vertex, id, GcDb::kForWrite) != Gcad::eOk) return;
  f(*vertex);
  ignore(vertex->close());
}

struct Corner {
  GcDbObjectId id;
  gcfit::Through through;
  double startWidth = 0, endWidth = 0;
};

// Erases the vertices that fitting has added, makes the others plain ones, and gives these.
std::vector<Corner> plainCorners(const GcDb2dPolyline& polyline, bool straighten) {
  GcDbObjectIdArray ids;
  polyline.vertexIds(ids);
  std::vector<Corner> corners;
  for (const GcDbObjectId id : ids)
    change(id, [&](GcDb2dVertex& vertex) {
      if ((vertex.flags() & (kOfFit | kOfSpline)) != 0) {
        ignore(vertex.erase());
        return;
      }
      ignore(vertex.setFlags(vertex.flags() & ~kControlPoint));
      if (straighten) ignore(vertex.setBulge(0));
      Corner corner{id, {{vertex.position().x, vertex.position().y}, {}}, vertex.startWidth(), vertex.endWidth()};
      if (vertex.isTangentUsed()) corner.through.tangent = {gc::cos(vertex.tangent()), gc::sin(vertex.tangent())};
      corners.push_back(corner);
    });
  return corners;
}

// Where behind the vertex the next part goes.
int placeBehind(const GcDb2dPolyline& polyline, GcDbObjectId vertex) {
  return polyline.extra()->parts.find(vertex) + 1;
}

void insert(GcDb2dPolyline& polyline, int place, GcDb2dVertex* vertex, int flags) {
  GcDbObjectId id;
  if (gcsequence::insertAt(polyline, place, vertex, id) != Gcad::eOk) {
    delete vertex;
    return;
  }
  ignore(vertex->setFlags(flags));
  ignore(vertex->close());
}

void fit(GcDb2dPolyline& polyline, const std::vector<Corner>& corners) {
  std::vector<gcfit::Through> through;
  for (const Corner& corner : corners) through.push_back(corner.through);
  gcfit::findTangents(through, polyline.isClosed());
  const size_t count = corners.size();
  for (size_t i = 0; i + 1 < count || (polyline.isClosed() && i < count); ++i) {
    const Corner& corner = corners[i];
    const gcfit::Arcs arcs = gcfit::arcsBetween(through[i], through[(i + 1) % count]);
    const double middle = (corner.startWidth + corner.endWidth) / 2;
    change(corner.id, [&](GcDb2dVertex& vertex) {
      ignore(vertex.setBulge(arcs.firstBulge));
      if (!arcs.isSingle) ignore(vertex.setEndWidth(middle));
    });
    if (arcs.isSingle) continue;
    auto* joint =
        new GcDb2dVertex({arcs.joint.x, arcs.joint.y, polyline.elevation()}, arcs.secondBulge, middle, corner.endWidth);
    insert(polyline, placeBehind(polyline, corner.id), joint, kOfFit);
  }
}

// Control points first, then the points on the curve; widths go evenly from the first vertex's to the last one's.
void spline(GcDb2dPolyline& polyline, const std::vector<Corner>& corners, int degree) {
  constexpr int kUsual = 8, kMost = 1000;
  const int perSpan = std::clamp(
      std::abs(static_cast<int>(polyline.database()->header().integer(GC_T("$SPLINESEGS"), kUsual))), 1, kMost);
  std::vector<GcGePoint2d> control;
  for (const Corner& corner : corners) {
    control.push_back(corner.through.at);
    change(corner.id, [](GcDb2dVertex& vertex) { ignore(vertex.setFlags(vertex.flags() | kControlPoint)); });
  }
  const std::vector<GcGePoint2d> points = gcfit::splinePoints(control, polyline.isClosed(), degree, perSpan);
  int place = placeBehind(polyline, corners.back().id);
  const double first = corners.front().startWidth, last = corners.back().endWidth;
  for (size_t i = 0; i < points.size(); ++i) {
    const auto width = [&](size_t at) { return first + (last - first) * static_cast<double>(at) / points.size(); };
    insert(polyline, place++,
           new GcDb2dVertex({points[i].x, points[i].y, polyline.elevation()}, 0, width(i), width(i + 1)), kOfSpline);
  }
}

}  // namespace

Gcad::ErrorStatus GcDb2dPolyline::convertToPolyType(GcDb::Poly2dType type) {
  constexpr int kQuadratic = 5, kCubic = 6;
  if (objectId().isNull()) return Gcad::eNotInDatabase;
  if (type > GcDb::k2dCubicSplinePoly) return Gcad::eInvalidInput;
  const bool wasSimple = polyType() == GcDb::k2dSimplePoly;
  if (wasSimple && type == GcDb::k2dSimplePoly) return Gcad::eOk;
  assertWriteEnabled();
  const std::vector<Corner> corners = plainCorners(*this, !wasSimple);
  m_flags = static_cast<int16_t>(m_flags & ~(kFit | kSpline));
  m_curveType = 0;
  if (type == GcDb::k2dSimplePoly || corners.size() < 2) return Gcad::eOk;
  const bool quadratic = type == GcDb::k2dQuadSplinePoly;
  if (type == GcDb::k2dFitCurvePoly)
    fit(*this, corners);
  else
    spline(*this, corners, quadratic ? 2 : 3);
  m_flags = static_cast<int16_t>(m_flags | (type == GcDb::k2dFitCurvePoly ? kFit : kSpline));
  if (type != GcDb::k2dFitCurvePoly) m_curveType = static_cast<int16_t>(quadratic ? kQuadratic : kCubic);
  return Gcad::eOk;
}
