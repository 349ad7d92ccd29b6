#include "host/ed/editedpolyline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "db/database.h"
#include "db/polyline2d.h"
#include "host/db/core/header.h"
#include "host/db/entities/polyline_fit.h"
#include "host/ed/append.h"
#include "host/ed/contents.h"

namespace ed {

namespace {

constexpr int kOfFit = 1, kHasTangent = 2, kOfSpline = 8, kControlPoint = 16, kSpaceVertex = 32;  // flags of vertices
constexpr int kClosed = 1, kSpline = 4;                                                           // of the polyline

template <class Kind>
GcDbObjectIdArray vertexIdsOf(GcDbObjectId id) {
  GcDbObjectIdArray ids;
  Kind* line = nullptr;
  if (gcdbOpenObject(line, id, GcDb::kForRead) != Gcad::eOk) return ids;
  line->vertexIds(ids);
  ignore(line->close());
  return ids;
}

void eraseVertex(GcDbObjectId id) {
  GcDbEntity* vertex = nullptr;
  if (gcdbOpenObject(vertex, id, GcDb::kForWrite) != Gcad::eOk) return;
  ignore(vertex->erase());
  ignore(vertex->close());
}

// Gives an older polyline as many vertices as are wanted; `set` fills in the one of a number.
template <class Kind, class Vertex, class Set>
void putVertices(GcDbObjectId id, size_t count, const Set& set) {
  const GcDbObjectIdArray ids = vertexIdsOf<Kind>(id);
  for (int i = 0; i < ids.length(); ++i) {
    if (static_cast<size_t>(i) >= count) {
      eraseVertex(ids[i]);
      continue;
    }
    forEach<Vertex>({ids[i]}, [&](Vertex& vertex) { set(vertex, static_cast<size_t>(i)); });
  }
  for (auto i = static_cast<size_t>(ids.length()); i < count; ++i) {
    forEach<Kind>({id}, [&](Kind& line) {
      auto* vertex = new Vertex;
      if (line.appendVertex(vertex) != Gcad::eOk) {
        delete vertex;
        return;
      }
      set(*vertex, i);
      ignore(vertex->close());
    });
  }
}

}  // namespace

bool needOwnVertices(GcDbObjectId id) {
  if (id.objectClass() != GcDbPolyline::desc()) return id.objectClass() == GcDb2dPolyline::desc();
  GcDbPolyline* light = nullptr;
  if (gcdbOpenObject(light, id, GcDb::kForWrite) != Gcad::eOk) return false;
  auto* made = new GcDb2dPolyline;
  if (made->convertFrom(light) != Gcad::eOk) {
    delete made;
    ignore(light->close());
    return false;
  }
  ignore(made->close());
  delete light;
  return true;
}

void EditedPolyline::takePlane(GcDbObjectId id) {
  m_kind = Kind::Plane;
  double elevation = 0;
  GcDb2dPolyline* line = nullptr;
  if (gcdbOpenObject(line, id, GcDb::kForRead) != Gcad::eOk) return;
  m_curve = line->polyType();
  closed = line->isClosed();
  m_toWorld.setToPlaneToWorld(line->normal());
  elevation = line->elevation();
  ignore(line->close());
  for (const GcDbObjectId vertexId : vertexIdsOf<GcDb2dPolyline>(id)) {
    GcDb2dVertex* vertex = nullptr;
    if (gcdbOpenObject(vertex, vertexId, GcDb::kForRead) != Gcad::eOk) continue;
    if ((vertex->flags() & (kOfFit | kOfSpline)) == 0) {
      EditedVertex& made = vertices.emplace_back();
      const GcGePoint3d at = vertex->position();
      const double bulge = m_curve == GcDb::k2dSimplePoly ? vertex->bulge() : 0;
      made.flat = {{at.x, at.y}, bulge, vertex->startWidth(), vertex->endWidth()};
      made.z = elevation;
      made.hasTangent = vertex->isTangentUsed();
      made.tangentRad = vertex->tangent();
    }
    ignore(vertex->close());
  }
}

void EditedPolyline::takeSpace(GcDbObjectId id) {
  m_kind = Kind::Space;
  m_toWorld = GcGeMatrix3d();
  GcDb3dPolyline* line = nullptr;
  if (gcdbOpenObject(line, id, GcDb::kForRead) != Gcad::eOk) return;
  m_curve = line->polyType();
  closed = line->isClosed();
  ignore(line->close());
  for (const GcDbObjectId vertexId : vertexIdsOf<GcDb3dPolyline>(id)) {
    GcDb3dPolylineVertex* vertex = nullptr;
    if (gcdbOpenObject(vertex, vertexId, GcDb::kForRead) != Gcad::eOk) continue;
    if ((vertex->flags() & kOfSpline) == 0) vertices.push_back(vertexAt(vertex->position()));
    ignore(vertex->close());
  }
}

bool EditedPolyline::take(GcDbObjectId id) {
  vertices.clear();
  m_id = id;
  m_curve = 0;
  const GcRxClass* kind = id.objectClass();
  if (kind == GcDb2dPolyline::desc()) takePlane(id);
  if (kind == GcDb3dPolyline::desc()) takeSpace(id);
  if (kind != GcDbPolyline::desc()) return !vertices.empty();
  GcDbPolyline* line = nullptr;
  if (gcdbOpenObject(line, id, GcDb::kForRead) != Gcad::eOk) return false;
  m_kind = Kind::Light;
  closed = line->isClosed();
  m_toWorld.setToPlaneToWorld(line->normal());
  for (const GcDbPolylineVertex& vertex : line->vertices()) vertices.push_back({vertex, line->elevation()});
  ignore(line->close());
  return !vertices.empty();
}

void EditedPolyline::putLight(GcDbObjectId id) const {
  forEach<GcDbPolyline>({id}, [&](GcDbPolyline& line) {
    while (line.numVerts() > 0) ignore(line.removeVertexAt(line.numVerts() - 1));
    for (const EditedVertex& each : vertices)
      ignore(line.addVertexAt(line.numVerts(), each.flat.point, each.flat.bulge, each.flat.startWidth,
                              each.flat.endWidth));
    line.setClosed(closed);
  });
}

void EditedPolyline::putPlane(GcDbObjectId id) const {
  forEach<GcDb2dPolyline>({id}, [](GcDb2dPolyline& line) { ignore(line.convertToPolyType(GcDb::k2dSimplePoly)); });
  putVertices<GcDb2dPolyline, GcDb2dVertex>(id, vertices.size(), [&](GcDb2dVertex& vertex, size_t i) {
    const EditedVertex& from = vertices[i];
    ignore(vertex.setPosition({from.flat.point.x, from.flat.point.y, from.z}));
    ignore(vertex.setBulge(from.flat.bulge));
    ignore(vertex.setStartWidth(from.flat.startWidth));
    ignore(vertex.setEndWidth(from.flat.endWidth));
    ignore(vertex.setTangent(from.tangentRad));
    ignore(vertex.setFlags(from.hasTangent ? kHasTangent : 0));
  });
  forEach<GcDb2dPolyline>({id}, [&](GcDb2dPolyline& line) {
    ignore(closed ? line.makeClosed() : line.makeOpen());
    if (m_curve != GcDb::k2dSimplePoly) ignore(line.convertToPolyType(static_cast<GcDb::Poly2dType>(m_curve)));
  });
}

void EditedPolyline::putSpace(GcDbObjectId id) const {
  if (m_curve != GcDb::k3dSimplePoly) setSpaceCurve(id, GcDb::k3dSimplePoly);
  putVertices<GcDb3dPolyline, GcDb3dPolylineVertex>(id, vertices.size(), [&](GcDb3dPolylineVertex& vertex, size_t i) {
    ignore(vertex.setPosition({vertices[i].flat.point.x, vertices[i].flat.point.y, vertices[i].z}));
    ignore(vertex.setFlags(kSpaceVertex));
  });
  forEach<GcDb3dPolyline>({id}, [&](GcDb3dPolyline& line) { ignore(closed ? line.makeClosed() : line.makeOpen()); });
  if (m_curve != GcDb::k3dSimplePoly) setSpaceCurve(id, m_curve);
}

void EditedPolyline::put() {
  const bool turns = std::any_of(vertices.begin(), vertices.end(), [](const EditedVertex& v) { return v.hasTangent; });
  if (m_kind == Kind::Light && turns && needOwnVertices(m_id)) m_kind = Kind::Plane;
  switch (m_kind) {
    case Kind::Light: putLight(m_id); break;
    case Kind::Plane: putPlane(m_id); break;
    case Kind::Space: putSpace(m_id); break;
  }
}

GcDbObjectId EditedPolyline::addPart(Editor& editor, size_t first, size_t last) {
  const std::vector<GcDbObjectId> copies = copyEntities(editor, {m_id});
  if (copies.empty() || copies[0].isNull()) return {};
  EditedPolyline part(*this);
  part.m_id = copies[0];
  part.closed = false;
  part.vertices.assign(vertices.begin() + static_cast<std::ptrdiff_t>(first),
                       vertices.begin() + static_cast<std::ptrdiff_t>(last) + 1);
  part.put();
  return copies[0];
}

GcGePoint3d EditedPolyline::worldAt(size_t index) const {
  const EditedVertex& vertex = vertices[index];
  return m_toWorld * GcGePoint3d(vertex.flat.point.x, vertex.flat.point.y, vertex.z);
}

EditedVertex EditedPolyline::vertexAt(const GcGePoint3d& world) const {
  const GcGePoint3d own = m_toWorld.inverse() * world;
  EditedVertex made;
  made.flat.point = {own.x, own.y};
  made.z = m_kind == Kind::Space ? own.z : vertices.empty() ? 0 : vertices[0].z;
  return made;
}

void EditedPolyline::moveTo(size_t index, const GcGePoint3d& world) {
  const EditedVertex to = vertexAt(world);
  vertices[index].flat.point = to.flat.point;
  vertices[index].z = to.z;
}

void EditedPolyline::insertBehind(size_t index, const GcGePoint3d& world) {
  EditedVertex made = vertexAt(world);
  made.flat.startWidth = made.flat.endWidth = vertices[index].flat.endWidth;
  vertices.insert(vertices.begin() + static_cast<std::ptrdiff_t>(index) + 1, made);
}

void EditedPolyline::reverse() {
  std::reverse(vertices.begin(), vertices.end());
  const size_t count = vertices.size();
  const std::vector<EditedVertex> old = vertices;
  for (size_t i = 0; i < count; ++i) {
    // What belonged to the segment behind a vertex now belongs to the one before it.
    const GcDbPolylineVertex& from = old[(i + 1) % count].flat;
    vertices[i].flat.bulge = -from.bulge;
    vertices[i].flat.startWidth = from.endWidth;
    vertices[i].flat.endWidth = from.startWidth;
    if (vertices[i].hasTangent) vertices[i].tangentRad += std::numbers::pi;
  }
}

namespace {

// Frees the polyline of a curve: what fitting has added goes, the control points become plain vertices.
std::vector<GcGePoint3d> plainSpaceVertices(GcDbObjectId id) {
  std::vector<GcGePoint3d> points;
  for (const GcDbObjectId vertexId : vertexIdsOf<GcDb3dPolyline>(id))
    forEach<GcDb3dPolylineVertex>({vertexId}, [&](GcDb3dPolylineVertex& vertex) {
      if ((vertex.flags() & (kOfFit | kOfSpline)) != 0) {
        ignore(vertex.erase());
        return;
      }
      ignore(vertex.setFlags(kSpaceVertex));
      points.push_back(vertex.position());
    });
  return points;
}

}  // namespace

void setSpaceCurve(GcDbObjectId id, int type) {
  constexpr int kQuadratic = 5, kCubic = 6, kUsualSegments = 8, kMost = 1000;
  bool isClosed = false;
  int perSpan = kUsualSegments;
  forEach<GcDb3dPolyline>({id}, [&](GcDb3dPolyline& line) {
    isClosed = line.isClosed();
    perSpan = std::abs(static_cast<int>(line.database()->header().integer(GC_T("$SPLINESEGS"), kUsualSegments)));
  });
  const std::vector<GcGePoint3d> control = plainSpaceVertices(id);
  const bool simple = type == GcDb::k3dSimplePoly || control.size() < 3;
  const bool quadratic = type == GcDb::k3dQuadSplinePoly;
  setGroups(id, {GcDbGroup::ofInt(70, (isClosed ? kClosed : 0) | (simple ? 0 : kSpline) | 8),
                 GcDbGroup::ofInt(75, simple      ? 0
                                      : quadratic ? kQuadratic
                                                  : kCubic)});
  if (simple) return;
  for (const GcDbObjectId vertexId : vertexIdsOf<GcDb3dPolyline>(id))
    forEach<GcDb3dPolylineVertex>(
        {vertexId}, [](GcDb3dPolylineVertex& vertex) { ignore(vertex.setFlags(kSpaceVertex | kControlPoint)); });
  for (const GcGePoint3d& point :
       gcfit::splinePoints(control, isClosed, quadratic ? 2 : 3, std::clamp(perSpan, 1, kMost)))
    forEach<GcDb3dPolyline>({id}, [&](GcDb3dPolyline& line) {
      auto* vertex = new GcDb3dPolylineVertex(point);
      if (line.appendVertex(vertex) != Gcad::eOk) {
        delete vertex;
        return;
      }
      ignore(vertex->setFlags(kSpaceVertex | kOfSpline));
      ignore(vertex->close());
    });
}

}  // namespace ed
