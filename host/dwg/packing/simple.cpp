// Entities of one shape: lines, circles, arcs, points, faces.
#include "host/dwg/packing/packings.h"
#include "host/dwg/record/pieces.h"

namespace gc::dwg::packing {

namespace {

// Two ends, the second as changes to the first; heights only when one of them is not zero.
template <class Io>
void lineEnds(Io& io) {
  GcGePoint3d start = io.point(0);
  GcGePoint3d end = io.point(1);
  const bool flat = io.rec.b(start.z == 0 && end.z == 0);
  start.x = io.rec.rd(start.x);
  end.x = io.rec.dd(end.x, start.x);
  start.y = io.rec.rd(start.y);
  end.y = io.rec.dd(end.y, start.y);
  start.z = flat ? 0 : io.rec.rd(start.z);
  end.z = flat ? 0 : io.rec.dd(end.z, start.z);
  io.setPoint(0, start);
  io.setPoint(1, end);
}

// A point with the bit for no height.
template <class Io>
void faceCorners(Io& io) {
  const bool noFlags = io.rec.b(io.num(4) == 0);
  GcGePoint3d corner = io.point(0);
  const bool flat = io.rec.b(corner.z == 0);
  corner.x = io.rec.rd(corner.x);
  corner.y = io.rec.rd(corner.y);
  corner.z = flat ? 0 : io.rec.rd(corner.z);
  io.setPoint(0, corner);
  for (int i = 1; i < 4; ++i) {
    const GcGePoint3d before = corner;
    corner = io.point(i);
    corner.x = io.rec.dd(corner.x, before.x);
    corner.y = io.rec.dd(corner.y, before.y);
    corner.z = io.rec.dd(corner.z, before.z);
    io.setPoint(i, corner);
  }
  if (!noFlags) io.bs(4);
}

// Four corners in one plane: their common height, then two coordinates each.
template <class Io>
void flatCorners(Io& io) {
  const double elevation = io.rec.bd(io.point(0).z);
  for (int i = 0; i < 4; ++i) {
    const GcGePoint3d p = io.point(i);
    const GcGePoint2d q = io.rec.rd2({p.x, p.y});
    io.setPoint(i, {q.x, q.y, elevation});
  }
}

constinit const PackRow kLine[] = {
    section("AcDbLine"),
    field(Op::BD3, 10).until(kR2000),
    field(Op::BD3, 11).until(kR2000),
    piece(lineEnds<PieceIn>, lineEnds<PieceOut>, {10, 11}).from(kR2000),
    field(Op::BT, 39),
    field(Op::BE, 210),
};

constinit const PackRow kCircle[] = {
    section("AcDbCircle"), field(Op::BD3, 10), field(Op::BD, 40), field(Op::BT, 39), field(Op::BE, 210),
};

constinit const PackRow kArc[] = {
    section("AcDbCircle"), field(Op::BD3, 10), field(Op::BD, 40), field(Op::BT, 39),
    field(Op::BE, 210),    section("AcDbArc"), field(Op::BD, 50), field(Op::BD, 51),
};

constinit const PackRow kEllipse[] = {
    section("AcDbEllipse"), field(Op::BD3, 10), field(Op::BD3, 11), field(Op::BD3, 210),
    field(Op::BD, 40),      field(Op::BD, 41),  field(Op::BD, 42),
};

constinit const PackRow kPoint[] = {
    section("AcDbPoint"), field(Op::BD3, 10), field(Op::BT, 39), field(Op::BE, 210), field(Op::BD, 50),
};

constinit const PackRow kRay[] = {section("AcDbRay"), field(Op::BD3, 10), field(Op::BD3, 11)};
constinit const PackRow kXline[] = {section("AcDbXline"), field(Op::BD3, 10), field(Op::BD3, 11)};

constinit const PackRow kFace[] = {
    section("AcDbFace"),
    field(Op::BD3, 10).until(kR2000),
    field(Op::BD3, 11).until(kR2000),
    field(Op::BD3, 12).until(kR2000),
    field(Op::BD3, 13).until(kR2000),
    field(Op::BS, 70).until(kR2000),
    piece(faceCorners<PieceIn>, faceCorners<PieceOut>, {10, 11, 12, 13, 70}).from(kR2000),
};

constinit const PackRow kTrace[] = {
    section("AcDbTrace"),
    field(Op::BT, 39),
    piece(flatCorners<PieceIn>, flatCorners<PieceOut>, {10, 11, 12, 13}),
    field(Op::BE, 210),
};

}  // namespace

void addSimpleEntities(std::vector<ClassPacking>& list) {
  list.push_back(packingOf("AcDbLine", kLine));
  list.push_back(packingOf("AcDbCircle", kCircle));
  list.push_back(packingOf("AcDbArc", kArc));
  list.push_back(packingOf("AcDbEllipse", kEllipse));
  list.push_back(packingOf("AcDbPoint", kPoint));
  list.push_back(packingOf("AcDbRay", kRay));
  list.push_back(packingOf("AcDbXline", kXline));
  list.push_back(packingOf("AcDbFace", kFace));
  list.push_back(packingOf("AcDbSolid", kTrace));
  list.push_back(packingOf("AcDbTrace", kTrace));
}

}  // namespace gc::dwg::packing
