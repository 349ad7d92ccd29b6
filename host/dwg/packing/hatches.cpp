// Hatches: gradient, boundary loops of every kind, pattern lines, seeds.
#include "host/dwg/packing/elementfields.h"
#include "host/dwg/packing/packings.h"

namespace gc::dwg::packing {

namespace {

constexpr unsigned kSoftPointer = 4;

enum LoopBits : unsigned { kPolyline = 2, kDerived = 4 };
enum EdgeType { kLineEdge = 1, kArcEdge = 2, kEllipseEdge = 3, kSplineEdge = 4 };

// The register that says a loop was derived from others: the size of a pixel follows then.
constexpr int kHasDerived = 0;

// Group files have a palette index beside or in place of a true colour, records one of them.
template <class Io>
void gradientColor(Io& io, const Elements& colors, void* element) {
  const GcDbField& rgb = *colors.row(421);
  const GcDbField& index = *colors.row(63);
  GcCmEntityColor color = colorOf(rgb, element);
  if (!color.isByColor()) color = GcCmEntityColor::fromIndex(static_cast<int>(intOf(index, element)));
  color = io.rec.cmc(color);
  if constexpr (!Io::kWriting) {
    if (color.isByColor()) setColor(rgb, element, color);
    setInt(index, element, color.colorIndex());
  }
}

// What a hatch without a gradient has: zeros, no colours, no name.
bool saysNothing(const Elements& part, const void* gradient) {
  for (const int code : {450, 451, 460, 461, 452, 462})
    if (realOf(*part.row(code), gradient) != 0) return false;
  const GcDbField& colors = *part.arrayRow(453);
  return colors.records->size(colors.value(gradient)) == 0 && textOf(*part.row(470), gradient).empty();
}

template <class Io>
void gradient(Io& io) {
  Elements part = io.elements(0);
  const bool has = part.size() > 0;
  void* element = has ? part.at(0) : nullptr;
  if (!has && Io::kWriting) {  // no gradient: zeros, no colours, no name
    io.rec.bl(0);
    io.rec.bl(0);
    io.rec.bd(0);
    io.rec.bd(0);
    io.rec.bl(0);
    io.rec.bd(0);
    io.rec.bl(0);
    io.rec.t({});
    return;
  }
  if constexpr (!Io::kWriting) element = part.append();
  ElementFields<Io> fields(io, part, element);
  fields.bl(450);
  fields.bl(451);
  fields.bd(460);
  fields.bd(461);
  fields.bl(452);
  fields.bd(462);
  Elements colors = fields.array(453);
  const int count = io.rec.count(io.rec.bl(colors.size()), 12);
  for (int i = 0; i < count && !io.rec.failed(); ++i) {
    void* color = Io::kWriting ? colors.at(i) : colors.append();
    ElementFields<Io>(io, colors, color).bd(463);
    gradientColor(io, colors, color);
  }
  fields.t(470);
  if constexpr (!Io::kWriting)
    if (saysNothing(part, element)) part.clear();
}

template <class Io>
void bareReals(Io& io, Elements array, int count) {
  for (int i = 0; i < count && !io.rec.failed(); ++i) {
    double value = Io::kWriting ? *static_cast<const double*>(array.at(i)) : 0;
    value = io.rec.bd(value);
    if constexpr (!Io::kWriting) *static_cast<double*>(array.append()) = value;
  }
}

template <class Io>
void barePoints(Io& io, Elements array, int count) {
  for (int i = 0; i < count && !io.rec.failed(); ++i) {
    GcGePoint2d value;
    if constexpr (Io::kWriting) value = *static_cast<const GcGePoint2d*>(array.at(i));
    value = io.rec.rd2(value);
    if constexpr (!Io::kWriting) *static_cast<GcGePoint2d*>(array.append()) = value;
  }
}

template <class Io>
void splineEdge(Io& io, ElementFields<Io>& edge) {
  edge.bl(94);
  const bool isRational = edge.b(73, 1);
  edge.b(74);
  Elements knots = edge.array(40);
  Elements points = edge.array(10);
  const int knotCount = io.rec.count(io.rec.bl(knots.size()), 2);
  const int pointCount = io.rec.count(io.rec.bl(points.size()), 128);
  bareReals(io, knots, knotCount);
  eachElement(io, points, pointCount, [&](ElementFields<Io>& point) {
    point.rd2(10);
    if (isRational) point.bd(42);
  });
  if (io.version() < kR2010) return;
  Elements fit = edge.array(97);
  const int fitCount = io.rec.count(io.rec.bl(fit.size()), 128);
  barePoints(io, fit, fitCount);
  if (fitCount == 0) return;
  edge.rd2(12);
  edge.rd2(13);
}

template <class Io>
void edge(Io& io, ElementFields<Io>& fields) {
  switch (fields.rc(72)) {
    case kLineEdge:
      fields.rd2(10);
      fields.rd2(11);
      return;
    case kArcEdge:
      fields.rd2(10);
      fields.bd(40);
      fields.bd(50);
      fields.bd(51);
      fields.b(73);
      return;
    case kEllipseEdge:
      fields.rd2(10);
      fields.rd2(11, 1);
      fields.bd(40);
      fields.bd(50);
      fields.bd(51);
      fields.b(73);
      return;
    case kSplineEdge: splineEdge(io, fields); return;
    default:
      if constexpr (!Io::kWriting) io.rec.fail();
  }
}

template <class Io>
void loop(Io& io, ElementFields<Io>& fields) {
  const auto flags = static_cast<unsigned>(fields.bl(92));
  if ((flags & kDerived) != 0) io.registers[kHasDerived] = 1;
  if ((flags & kPolyline) != 0) {
    Elements vertices = fields.array(10);
    const bool hasBulges = fields.b(72);
    fields.b(73);
    const int count = io.rec.count(io.rec.bl(vertices.size()), 128);
    eachElement(io, vertices, count, [&](ElementFields<Io>& vertex) {
      vertex.rd2(10);
      if (hasBulges) vertex.bd(42);
    });
  } else {
    Elements edges = fields.array(72);
    const int count = io.rec.count(io.rec.bl(edges.size()), 8);
    eachElement(io, edges, count, [&](ElementFields<Io>& each) { edge(io, each); });
  }
  Elements sources = fields.array(330);
  const int count = io.rec.count(io.rec.bl(sources.size()), 8);
  for (int i = 0; i < count && !io.rec.failed(); ++i) {
    GcDbObjectId id;
    if constexpr (Io::kWriting) id = *static_cast<const GcDbObjectId*>(sources.at(i));
    id = io.rec.h(kSoftPointer, id);
    if constexpr (!Io::kWriting) *static_cast<GcDbObjectId*>(sources.append()) = id;
  }
}

template <class Io>
void loops(Io& io) {
  Elements all = io.elements(0);
  io.registers[kHasDerived] = 0;
  const int count = io.rec.count(io.rec.bl(all.size()), 8);
  eachElement(io, all, count, [&](ElementFields<Io>& fields) { loop(io, fields); });
}

template <class Io>
void patternLines(Io& io) {
  Elements lines = io.elements(0);
  const int count = io.rec.count(static_cast<uint16_t>(io.rec.bs(lines.size())), 12);
  eachElement(io, lines, count, [&](ElementFields<Io>& line) {
    line.bd(53);
    line.bd(43);
    line.bd(44);
    line.bd(45);
    line.bd(46);
    Elements dashes = line.array(79);
    const int dashCount = io.rec.count(static_cast<uint16_t>(io.rec.bs(dashes.size())), 2);
    bareReals(io, dashes, dashCount);
  });
}

template <class Io>
void seeds(Io& io) {
  Elements points = io.elements(0);
  const int count = io.rec.count(io.rec.bl(points.size()), 128);
  barePoints(io, points, count);
}

template <class Io>
void elevation(Io& io) {
  const double height = io.rec.bd(io.point(0).z);
  io.setPoint(0, {0, 0, height});
}

constexpr int kIsSolid = 1;

constinit const PackRow kHatch[] = {
    section("AcDbHatch"),
    piece(gradient<PieceIn>, gradient<PieceOut>, {-450}).from(kR2004),
    piece(elevation<PieceIn>, elevation<PieceOut>, {10}),
    field(Op::BD3, 210),
    field(Op::T, 2),
    field(Op::B, 70).keep(kIsSolid),
    field(Op::B, 71),
    piece(loops<PieceIn>, loops<PieceOut>, {-91}),
    field(Op::BS, 75),
    field(Op::BS, 76),
    field(Op::BD, 52).unless(kIsSolid, 1),
    field(Op::BD, 41).unless(kIsSolid, 1),
    field(Op::B, 77).unless(kIsSolid, 1),
    piece(patternLines<PieceIn>, patternLines<PieceOut>, {-78}).unless(kIsSolid, 1),
    field(Op::BD, 47).when(kHasDerived, 1),
    piece(seeds<PieceIn>, seeds<PieceOut>, {-98}),
};

}  // namespace

void addHatches(std::vector<ClassPacking>& list) { list.push_back(packingOf("AcDbHatch", kHatch)); }

}  // namespace gc::dwg::packing
