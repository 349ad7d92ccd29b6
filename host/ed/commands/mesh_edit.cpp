#include "host/ed/commands/mesh_edit.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "db/mesh.h"
#include "db/vertex.h"
#include "host/db/entities/polyline_fit.h"
#include "host/ed/contents.h"
#include "host/ed/coordinates.h"
#include "host/ed/stepundo.h"

namespace ed {

namespace {

using What = Ask::What;

constexpr int kMClosed = 1, kSmooth = 4, kMesh = 16, kNClosed = 32;  // flags of the mesh
constexpr int kOfSpline = 8, kControlPoint = 16, kMeshVertex = 64;   // of its vertices
constexpr int kQuadratic = 5, kBezier = 8;                           // of SURFTYPE; 6 is cubic

// The control points of a mesh, row by row.
struct Net {
  int rows = 0, columns = 0;  // M and N
  bool closedM = false, closedN = false;
  int flags = 0;
  std::vector<GcDbObjectId> ids;
  std::vector<GcGePoint3d> points;

  [[nodiscard]] int surfaceFlags() const { return flags & ~kSmooth; }
};

bool take(GcDbObjectId id, Net& net) {
  net = Net();
  GcDbPolygonMesh* mesh = nullptr;
  if (gcdbOpenObject(mesh, id, GcDb::kForRead) != Gcad::eOk) return false;
  net.rows = mesh->mSize();
  net.columns = mesh->nSize();
  net.closedM = mesh->isMClosed();
  net.closedN = mesh->isNClosed();
  net.flags = kMesh | (net.closedM ? kMClosed : 0) | (net.closedN ? kNClosed : 0);
  GcDbObjectIdArray vertices;
  mesh->subEntities(vertices);
  ignore(mesh->close());
  for (const GcDbObjectId vertexId : vertices) {
    GcDbPolygonMeshVertex* vertex = nullptr;
    if (gcdbOpenObject(vertex, vertexId, GcDb::kForRead) != Gcad::eOk) continue;
    if ((vertex->flags() & kOfSpline) == 0) {
      net.ids.push_back(vertexId);
      net.points.push_back(vertex->position());
    }
    ignore(vertex->close());
  }
  return net.rows > 1 && net.columns > 1 && net.points.size() == static_cast<size_t>(net.rows) * net.columns;
}

// Takes the smooth surface away again.
void desmooth(GcDbObjectId id) {
  GcDbObjectIdArray vertices;
  forEach<GcDbPolygonMesh>({id}, [&](GcDbPolygonMesh& mesh) { mesh.subEntities(vertices); });
  for (const GcDbObjectId vertexId : vertices)
    forEach<GcDbPolygonMeshVertex>({vertexId}, [](GcDbPolygonMeshVertex& vertex) {
      if ((vertex.flags() & kOfSpline) != 0)
        ignore(vertex.erase());
      else
        ignore(vertex.setFlags(kMeshVertex));
    });
  Net net;
  if (take(id, net))
    setGroups(id, {GcDbGroup::ofInt(70, net.surfaceFlags()), GcDbGroup::ofInt(73, 0), GcDbGroup::ofInt(74, 0),
                   GcDbGroup::ofInt(75, 0)});
}

// A grid of points, smoothed along its rows.
struct Grid {
  int rows = 0;
  std::vector<GcGePoint3d> points;
  [[nodiscard]] int columns() const { return static_cast<int>(points.size()) / rows; }
};

Grid smoothedRows(const Grid& grid, bool closed, int degree, int perSpan) {
  Grid made{grid.rows, {}};
  const int columns = grid.columns();
  for (int row = 0; row < grid.rows; ++row) {
    const auto begin = grid.points.begin() + static_cast<std::ptrdiff_t>(row) * columns;
    const std::vector<GcGePoint3d> smooth =
        gcfit::splinePoints(std::vector<GcGePoint3d>(begin, begin + columns), closed, degree, perSpan);
    made.points.insert(made.points.end(), smooth.begin(), smooth.end());
  }
  return made;
}

Grid transposed(const Grid& grid) {
  Grid made{grid.columns(), {}};
  for (int column = 0; column < grid.columns(); ++column)
    for (int row = 0; row < grid.rows; ++row)
      made.points.push_back(grid.points[static_cast<size_t>(row) * grid.columns() + column]);
  return made;
}

// A surface over the control points as SURFTYPE says, about SURFU by SURFV faces.
bool smooth(Editor& editor, GcDbObjectId id) {
  constexpr int kMost = 200;
  desmooth(id);
  Net net;
  if (!take(id, net)) return false;
  const int type = integerVariable(editor, "SURFTYPE");
  const int degree = type == kQuadratic ? 2 : type == kBezier ? std::max(net.rows, net.columns) - 1 : 3;
  const auto perSpan = [&](const char* variable, int count, bool closed) {
    return std::max(1,
                    std::clamp(integerVariable(editor, variable), 2, kMost) / std::max(1, closed ? count : count - 1));
  };
  Grid grid{net.rows, net.points};
  grid = smoothedRows(grid, net.closedN, degree, perSpan("SURFV", net.columns, net.closedN));
  grid = transposed(smoothedRows(transposed(grid), net.closedM, degree, perSpan("SURFU", net.rows, net.closedM)));
  for (const GcDbObjectId vertexId : net.ids)
    forEach<GcDbPolygonMeshVertex>(
        {vertexId}, [](GcDbPolygonMeshVertex& vertex) { ignore(vertex.setFlags(kMeshVertex | kControlPoint)); });
  forEach<GcDbPolygonMesh>({id}, [&](GcDbPolygonMesh& mesh) {
    for (const GcGePoint3d& point : grid.points) {
      auto vertex = std::make_unique<GcDbPolygonMeshVertex>(point);
      GcDbObjectId made;
      if (mesh.appendVertex(made, vertex.get()) != Gcad::eOk) return;
      ignore(vertex->setFlags(kMeshVertex | kOfSpline));
      ignore(vertex.release()->close());
    }
  });
  return setGroups(id, {GcDbGroup::ofInt(70, net.flags | kSmooth), GcDbGroup::ofInt(73, grid.rows),
                        GcDbGroup::ofInt(74, grid.columns()), GcDbGroup::ofInt(75, type)});
}

// ---- vertices

Task<bool> editMeshVertices(CommandInput& in, GcDbObjectId id) {
  Net net;
  if (!take(id, net)) co_return false;
  int row = 0, column = 0;
  const auto step = [](int& at, int by, int count, bool closed) {
    at = closed ? (at + by + count) % count : std::clamp(at + by, 0, count - 1);
  };
  for (;;) {
    const Answer option =
        co_await in.ask(Ask(What::Keyword, "\nEnter an option [Next/Previous/Left/Right/Up/Down/Move/REgen/eXit] <N>: ")
                            .words("Next Previous Left Right Up Down Move REgen eXit"));
    if (option.isKeyword("eXit") || option.kind == Answer::Kind::Cancelled) co_return true;
    const int at = row * net.columns + column;
    const int count = net.rows * net.columns;
    if (option.isKeyword("Move")) {
      const Answer point = co_await in.ask(Ask(What::Point, "\nSpecify new location for marked vertex: "));
      if (point.isPoint())
        forEach<GcDbPolygonMeshVertex>({net.ids[static_cast<size_t>(at)]}, [&](GcDbPolygonMeshVertex& vertex) {
          ignore(vertex.setPosition(in.toWorld(point.point)));
        });
    } else if (option.isKeyword("Left") || option.isKeyword("Right")) {
      step(column, option.isKeyword("Right") ? 1 : -1, net.columns, net.closedN);
    } else if (option.isKeyword("Up") || option.isKeyword("Down")) {
      step(row, option.isKeyword("Up") ? 1 : -1, net.rows, net.closedM);
    } else if (!option.isKeyword("REgen")) {
      const int next = (at + (option.isKeyword("Previous") ? -1 : 1) + count) % count;
      row = next / net.columns;
      column = next % net.columns;
    }
  }
}

Task<bool> carryOut(CommandInput& in, GcDbObjectId id, const Answer& option) {
  Net net;
  bool wasSmooth = false;
  forEach<GcDbPolygonMesh>({id}, [&](GcDbPolygonMesh& mesh) {
    GcDbObjectIdArray vertices;
    mesh.subEntities(vertices);
    wasSmooth = vertices.length() != mesh.mSize() * mesh.nSize();
  });
  if (!take(id, net)) co_return false;
  if (option.isKeyword("Smooth")) co_return smooth(in.editor(), id);
  if (option.isKeyword("Desmooth")) {
    desmooth(id);
    co_return true;
  }
  if (option.isKeyword("Edit")) {
    static_cast<void>(co_await editMeshVertices(in, id));
  } else {
    const int bit = option.isKeyword("Mclose") || option.isKeyword("Mopen") ? kMClosed : kNClosed;
    const bool closes = option.isKeyword("Mclose") || option.isKeyword("Nclose");
    setGroups(id, {GcDbGroup::ofInt(70, closes ? net.flags | bit : net.flags & ~bit)});
  }
  if (wasSmooth) static_cast<void>(smooth(in.editor(), id));
  co_return true;
}

}  // namespace

Task<bool> editMesh(CommandInput& in, GcDbObjectId id) {
  StepUndo steps(in.database());
  for (;;) {
    const Answer option = co_await in.ask(
        Ask(What::Keyword, "\nEnter an option [Edit vertex/Smooth surface/Desmooth/Mclose/Mopen/Nclose/Nopen/Undo]: ")
            .words("Edit Smooth Desmooth Mclose Mopen Nclose Nopen Undo eXit"));
    if (option.kind != Answer::Kind::Keyword || option.isKeyword("eXit")) co_return true;
    if (option.isKeyword("Undo")) {
      if (!steps.back()) in.tell("\nAll changes of the mesh have been undone.\n");
      continue;
    }
    steps.begin();
    static_cast<void>(co_await carryOut(in, id, option));
  }
}

}  // namespace ed
