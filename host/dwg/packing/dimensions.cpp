// Dimensions: what all kinds have, then the points of each.
#include "host/dwg/packing/packings.h"
#include "host/dwg/record/pieces.h"

namespace gc::dwg::packing {

namespace {

// The middle of the text in the dimension's own plane, then the height of the plane.
template <class Io>
void textMiddle(Io& io) {
  const GcGePoint3d held = io.point(0);
  const GcGePoint2d p = io.rec.rd2({held.x, held.y});
  const double elevation = io.rec.bd(held.z);
  io.setPoint(0, {p.x, p.y, elevation});
}

// Bits of group 70: the kind, 32 the block is this dimension's alone, 64 (ordinates) along X, 128 the text was placed.
// The record has the kind as its type, the other two in a byte of their own where placing is told the other way round;
// what else that byte says is kept as it is.
constexpr unsigned kOwnBlock = 32;
constexpr unsigned kAlongX = 64;
constexpr unsigned kTextPlaced = 128;

template <class Io, unsigned Kind>
void flags(Io& io) {
  constexpr unsigned kTextAtHome = 1;
  constexpr unsigned kBlockIsOwn = 2;
  const auto held = static_cast<unsigned>(io.num(0));
  constexpr unsigned kKnown = kTextAtHome | kBlockIsOwn;
  const unsigned bits =
      io.rec.rc(((held & kTextPlaced) == 0 ? kTextAtHome : 0u) | ((held & kOwnBlock) != 0 ? kBlockIsOwn : 0u) |
                (static_cast<unsigned>(io.num(1)) & 0xFFu & ~kKnown));
  io.setNum(1, bits & ~kKnown);
  io.setNum(0, Kind | ((bits & kTextAtHome) == 0 ? kTextPlaced : 0u) | ((bits & kBlockIsOwn) != 0 ? kOwnBlock : 0u));
}

template <class Io>
void alongX(Io& io) {
  const auto held = static_cast<unsigned>(io.num(0));
  const unsigned bit = io.rec.rc((held & kAlongX) != 0 ? 1u : 0u);
  io.setNum(0, (held & ~kAlongX) | ((bit & 1) != 0 ? kAlongX : 0u));
}

template <class Io>
void cloneOffset(Io& io) {
  const GcGePoint3d held = io.point(0);
  const GcGePoint2d p = io.rec.rd2({held.x, held.y});
  io.setPoint(0, {p.x, p.y, held.z});
}

// The arc's point of an angular dimension lies in the dimension's plane.
template <class Io>
void arcPoint(Io& io) {
  const GcGePoint3d held = io.point(0);
  const GcGePoint2d p = io.rec.rd2({held.x, held.y});
  io.setPoint(0, {p.x, p.y, held.z});
}

#define DIMENSION_HEAD(kind)                                                                              \
  section("AcDbDimension"), field(Op::RC, 280).from(kR2010), field(Op::BD3, 210),                         \
      piece(textMiddle<PieceIn>, textMiddle<PieceOut>, {11}),                                             \
      piece(flags<PieceIn, kind>, flags<PieceOut, kind>, {70, -70}), field(Op::T, 1), field(Op::BD, 53),  \
      field(Op::BD, 51), fixed(Op::BD, 1), fixed(Op::BD, 1), fixed(Op::BD, 1), field(Op::BD, 54).maybe(), \
      field(Op::BS, 71).from(kR2000), field(Op::BS, 72).from(kR2000), field(Op::BD, 41).from(kR2000),     \
      field(Op::BD, 42).from(kR2000), field(Op::B, 73).from(kR2007), field(Op::B, 74).from(kR2007),       \
      field(Op::B, 75).from(kR2007), piece(cloneOffset<PieceIn>, cloneOffset<PieceOut>, {12})

#define DIMENSION_TAIL section("AcDbDimension"), field(Op::H, 3).as(5), field(Op::H, 2).as(5)
#define DEFINITION_POINT section("AcDbDimension"), field(Op::BD3, 10)

constinit const PackRow kRotated[] = {
    DIMENSION_HEAD(0), section("AcDbAlignedDimension"), field(Op::BD3, 13), field(Op::BD3, 14),
    DEFINITION_POINT,  section("AcDbAlignedDimension"), field(Op::BD, 52),  field(Op::BD, 50),
    DIMENSION_TAIL,
};

constinit const PackRow kAligned[] = {
    DIMENSION_HEAD(1), section("AcDbAlignedDimension"), field(Op::BD3, 13), field(Op::BD3, 14),
    DEFINITION_POINT,  section("AcDbAlignedDimension"), field(Op::BD, 52),  DIMENSION_TAIL,
};

constinit const PackRow kTwoLines[] = {
    DIMENSION_HEAD(2),
    section("AcDb2LineAngularDimension"),
    piece(arcPoint<PieceIn>, arcPoint<PieceOut>, {16}),
    field(Op::BD3, 13),
    field(Op::BD3, 14),
    field(Op::BD3, 15),
    DEFINITION_POINT,
    DIMENSION_TAIL,
};

constinit const PackRow kThreePoints[] = {
    DIMENSION_HEAD(5),  DEFINITION_POINT, section("AcDb3PointAngularDimension"), field(Op::BD3, 13), field(Op::BD3, 14),
    field(Op::BD3, 15), DIMENSION_TAIL,
};

constinit const PackRow kRadial[] = {
    DIMENSION_HEAD(4),  DEFINITION_POINT,  section("AcDbRadialDimension"),
    field(Op::BD3, 15), field(Op::BD, 40), DIMENSION_TAIL,
};

constinit const PackRow kDiametric[] = {
    DIMENSION_HEAD(3), section("AcDbDiametricDimension"), field(Op::BD3, 15),
    DEFINITION_POINT,  section("AcDbDiametricDimension"), field(Op::BD, 40),
    DIMENSION_TAIL,
};

constinit const PackRow kOrdinate[] = {
    DIMENSION_HEAD(6),
    DEFINITION_POINT,
    section("AcDbOrdinateDimension"),
    field(Op::BD3, 13),
    field(Op::BD3, 14),
    section("AcDbDimension"),
    piece(alongX<PieceIn>, alongX<PieceOut>, {70}),
    DIMENSION_TAIL,
};

constinit const PackRow kArc[] = {
    DIMENSION_HEAD(5),  DEFINITION_POINT,   section("AcDbArcDimension"),
    field(Op::BD3, 13), field(Op::BD3, 14), field(Op::BD3, 15),
    field(Op::B, 70),   field(Op::BD, 40),  field(Op::BD, 41),
    field(Op::B, 71),   field(Op::BD3, 16), field(Op::BD3, 17),
    DIMENSION_TAIL,
};

constinit const PackRow kLargeRadial[] = {
    DIMENSION_HEAD(4),  DEFINITION_POINT,  section("AcDbRadialDimensionLarge"),
    field(Op::BD3, 15), field(Op::BD, 40), field(Op::BD3, 14),
    field(Op::BD3, 13), DIMENSION_TAIL,
};

#undef DIMENSION_HEAD
#undef DIMENSION_TAIL
#undef DEFINITION_POINT

}  // namespace

void addDimensions(std::vector<ClassPacking>& list) {
  list.push_back(packingOf("AcDbRotatedDimension", kRotated));
  list.push_back(packingOf("AcDbAlignedDimension", kAligned));
  list.push_back(packingOf("AcDb2LineAngularDimension", kTwoLines));
  list.push_back(packingOf("AcDb3PointAngularDimension", kThreePoints));
  list.push_back(packingOf("AcDbRadialDimension", kRadial));
  list.push_back(packingOf("AcDbDiametricDimension", kDiametric));
  list.push_back(packingOf("AcDbOrdinateDimension", kOrdinate));
  list.push_back(packingOf("AcDbArcDimension", kArc));
  list.push_back(packingOf("AcDbRadialDimensionLarge", kLargeRadial));
}

}  // namespace gc::dwg::packing
