// Polylines: lightweight ones with their vertices inside, the older kinds with vertices that are entities.
#include "host/dwg/packing/packings.h"
#include "host/dwg/packing/parts.h"

namespace gc::dwg::packing {

namespace {

// ---- lightweight -----------------------------------------------------------------------------------------

// Bits of the record; those of group 70 are others (1 closed, 128 pattern throughout).
enum Lightweight : unsigned {
  kHasNormal = 1,
  kHasThickness = 2,
  kHasConstantWidth = 4,
  kHasElevation = 8,
  kHasBulges = 16,
  kHasWidths = 32,
  kPatternThroughout = 256,
  kClosed = 512,
  kHasIds = 1024
};

struct VertexColumns {
  Column<GcGePoint2d> point;
  Column<double> startWidth;
  Column<double> endWidth;
  Column<double> bulge;
  Column<int32_t> id;
  explicit VertexColumns(const Elements& vertices)
      : point(vertices, vertices.row(10)),
        startWidth(vertices, vertices.row(40)),
        endWidth(vertices, vertices.row(41)),
        bulge(vertices, vertices.row(42)),
        id(vertices, vertices.row(91)) {}
};

template <class Io>
class Lightweights {
 public:
  explicit Lightweights(Io& piece) : io(piece), vertices(piece.elements(5)) {}

  void pass() {
    unsigned flags = 0;
    if constexpr (Io::kWriting) flags = flagsOf();
    flags = static_cast<uint16_t>(io.rec.bs(static_cast<int>(flags)));
    io.setNum(0, ((flags & kClosed) != 0 ? 1 : 0) | ((flags & kPatternThroughout) != 0 ? 128 : 0));
    if ((flags & kHasConstantWidth) != 0) io.bd(1);
    if ((flags & kHasElevation) != 0) io.bd(2);
    if ((flags & kHasThickness) != 0) io.bd(3);
    if ((flags & kHasNormal) != 0) {
      const GcGePoint3d normal = io.rec.bd3(io.point(4));
      io.setPoint(4, normal);
    }
    const int points = io.rec.count(io.rec.bl(vertices.size()), 4);
    const int bulges = (flags & kHasBulges) != 0 ? io.rec.count(io.rec.bl(vertices.size())) : 0;
    const bool withIds = (flags & kHasIds) != 0 && io.version() >= kR2010;
    const int ids = withIds ? io.rec.count(io.rec.bl(vertices.size())) : 0;
    const int widths = (flags & kHasWidths) != 0 ? io.rec.count(io.rec.bl(vertices.size())) : 0;
    if constexpr (!Io::kWriting) {
      vertices.reserve(points);
      for (int i = 0; i < points; ++i) vertices.append();
    }
    const VertexColumns columns(vertices);
    passPoints(points, columns.point);
    for (int i = 0; i < bulges && !io.rec.failed(); ++i) passReal(i, columns.bulge);
    for (int i = 0; i < ids && !io.rec.failed(); ++i) passId(i, columns.id);
    for (int i = 0; i < widths && !io.rec.failed(); ++i) {
      passReal(i, columns.startWidth);
      passReal(i, columns.endWidth);
    }
  }

 private:
  static bool hasAny(const Column<double>& column) {
    for (int i = 0; i < column.size(); ++i)
      if (column[i] != 0) return true;
    return false;
  }

  [[nodiscard]] unsigned flagsOf() const {
    unsigned flags = 0;
    const GcGePoint3d normal = io.point(4);
    if (normal.x != 0 || normal.y != 0 || normal.z != 1) flags |= kHasNormal;
    if (io.real(3) != 0) flags |= kHasThickness;
    const bool even = !io.has(1) || io.args[1]->applies(io.object);
    if (even && io.real(1) != 0) flags |= kHasConstantWidth;
    if (io.real(2) != 0) flags |= kHasElevation;
    if ((io.num(0) & 1) != 0) flags |= kClosed;
    if ((io.num(0) & 128) != 0) flags |= kPatternThroughout;
    const VertexColumns columns(vertices);
    if (hasAny(columns.bulge)) flags |= kHasBulges;
    if (!even && (hasAny(columns.startWidth) || hasAny(columns.endWidth))) flags |= kHasWidths;
    for (int i = 0; i < columns.id.size() && io.version() >= kR2010; ++i)
      if (columns.id[i] != 0) flags |= kHasIds;
    return flags;
  }

  // From AC1015 on each point but the first is given as a change to the one before.
  void passPoints(int count, const Column<GcGePoint2d>& points) {
    GcGePoint2d before;
    for (int i = 0; i < count && !io.rec.failed(); ++i) {
      GcGePoint2d& p = points[i];
      if (i == 0 || io.version() < kR2000) {
        p = io.rec.rd2(p);
      } else {
        p.x = io.rec.dd(p.x, before.x);
        p.y = io.rec.dd(p.y, before.y);
      }
      before = p;
    }
  }

  void passReal(int index, const Column<double>& column) {
    const bool held = index < column.size();
    const double value = io.rec.bd(held ? column[index] : 0);
    if constexpr (!Io::kWriting)
      if (held) column[index] = value;
  }

  void passId(int index, const Column<int32_t>& column) {
    const bool held = index < column.size();
    const int32_t value = io.rec.bl(held ? column[index] : 0);
    if constexpr (!Io::kWriting)
      if (held) column[index] = value;
  }

  Io& io;
  Elements vertices;
};

template <class Io>
void lightweight(Io& io) {
  Lightweights<Io>(io).pass();
}

// ---- vertices --------------------------------------------------------------------------------------------

// Equal widths are written once, negated.
template <class Io>
void vertexWidths(Io& io) {
  const double start = io.real(0);
  const double end = io.real(1);
  const bool equal = start == end && start > 0;
  const double first = io.rec.bd(equal ? -start : start);
  if (first < 0 || equal) {
    io.setReal(0, -first);
    io.setReal(1, -first);
    return;
  }
  io.setReal(0, first);
  io.setReal(1, io.rec.bd(end));
}

constinit const PackRow kLightweight[] = {
    section("AcDbPolyline"),
    piece(lightweight<PieceIn>, lightweight<PieceOut>, {70, 43, 38, 39, 210, -10}),
};

constinit const PackRow kVertex2d[] = {
    section("AcDb2dVertex"), field(Op::RC, 70),
    field(Op::BD3, 10),      piece(vertexWidths<PieceIn>, vertexWidths<PieceOut>, {40, 41}),
    field(Op::BD, 42),       field(Op::BL, 91).from(kR2010).maybe(),
    field(Op::BD, 50),
};

constinit const PackRow kVertex3d[] = {section("AcDb3dPolylineVertex"), field(Op::RC, 70), field(Op::BD3, 10)};
constinit const PackRow kMeshVertex[] = {section("AcDbPolygonMeshVertex"), field(Op::RC, 70), field(Op::BD3, 10)};
constinit const PackRow kFaceMeshVertex[] = {section("AcDbPolyFaceMeshVertex"), field(Op::RC, 70), field(Op::BD3, 10)};
constinit const PackRow kFaceRecord[] = {
    section("AcDbFaceRecord"), field(Op::BS, 71), field(Op::BS, 72), field(Op::BS, 73), field(Op::BS, 74),
};

// ---- polylines of vertices -------------------------------------------------------------------------------

// The height is that of the point in group files.
template <class Io>
void elevation(Io& io) {
  const double height = io.rec.bd(io.point(0).z);
  io.setPoint(0, {0, 0, height});
}

// Group 70 adds a bit that says which kind of polyline it is; records have a type of their own instead, and for three
// dimensions what curve was fitted in a byte (1 quadratic, 2 cubic).
template <class Io>
void flags3d(Io& io) {
  constexpr unsigned kSplineFit = 4;
  constexpr unsigned kIs3d = 8;
  const auto flags = static_cast<unsigned>(io.num(0));
  const auto curve = static_cast<unsigned>(io.num(1));
  const unsigned fit = io.rec.rc(curve == 5 ? 1u : curve == 6 ? 2u : 0u);
  const unsigned closed = io.rec.rc(flags & 1u);
  const unsigned kept = Io::kWriting ? flags : 0;
  io.setNum(0, kept | (closed & 1u) | kIs3d | (fit != 0 ? kSplineFit : 0u));
  io.setNum(1, fit == 1 ? 5 : fit == 2 ? 6 : 0);
}

template <class Io, unsigned Kind>
void meshFlags(Io& io) {
  const auto flags = static_cast<unsigned>(io.rec.bs(static_cast<int>(io.num(0) & ~int64_t{Kind})));
  io.setNum(0, flags | Kind);
}

#define PARTS \
  piece(partCount<PieceIn>, partCount<PieceOut>, {}), piece(partReferences<PieceIn>, partReferences<PieceOut>, {})

constinit const PackRow kPolyline2d[] = {
    section("AcDb2dPolyline"),
    field(Op::BS, 70),
    field(Op::BS, 75),
    field(Op::BD, 40),
    field(Op::BD, 41),
    field(Op::BT, 39),
    piece(elevation<PieceIn>, elevation<PieceOut>, {10}),
    field(Op::BE, 210),
    PARTS,
};

constinit const PackRow kPolyline3d[] = {
    section("AcDb3dPolyline"),
    piece(flags3d<PieceIn>, flags3d<PieceOut>, {70, 75}),
    PARTS,
};

constinit const PackRow kPolygonMesh[] = {
    section("AcDbPolygonMesh"), piece(meshFlags<PieceIn, 16>, meshFlags<PieceOut, 16>, {70}),
    field(Op::BS, 75),          field(Op::BS, 71),
    field(Op::BS, 72),          field(Op::BS, 73),
    field(Op::BS, 74),          PARTS,
};

constinit const PackRow kPolyFaceMesh[] = {
    section("AcDbPolyFaceMesh"),
    field(Op::BS, 71),
    field(Op::BS, 72),
    PARTS,
};

#undef PARTS

}  // namespace

void addPolylines(std::vector<ClassPacking>& list) {
  list.push_back(packingOf("AcDbPolyline", kLightweight));
  list.push_back(packingOf("AcDb2dVertex", kVertex2d));
  list.push_back(packingOf("AcDb3dPolylineVertex", kVertex3d));
  list.push_back(packingOf("AcDbPolygonMeshVertex", kMeshVertex));
  list.push_back(packingOf("AcDbPolyFaceMeshVertex", kFaceMeshVertex));
  list.push_back(packingOf("AcDbFaceRecord", kFaceRecord));
  list.push_back(packingOf("AcDb2dPolyline", kPolyline2d));
  list.push_back(packingOf("AcDb3dPolyline", kPolyline3d));
  list.push_back(packingOf("AcDbPolygonMesh", kPolygonMesh));
  list.push_back(packingOf("AcDbPolyFaceMesh", kPolyFaceMesh));
}

}  // namespace gc::dwg::packing
