// Single-line texts and attributes.
#include "host/dwg/packing/packings.h"
#include "host/dwg/record/pieces.h"

namespace gc::dwg::packing {

namespace {

// The fields a text names to its pieces, in this order.
enum TextField { kInsertion, kAlignment, kNormal, kThickness, kOblique, kRotation, kHeight, kWidth, kText, kGeneration,
                 kHorizontal, kVertical };

// Bits that say what is left out because it has its usual value.
enum TextOmits : unsigned {
  kNoElevation = 0x01,
  kNoAlignment = 0x02,
  kNoOblique = 0x04,
  kNoRotation = 0x08,
  kNoWidth = 0x10,
  kNoGeneration = 0x20,
  kNoHorizontal = 0x40,
  kNoVertical = 0x80
};

unsigned omitted(const PieceOut& io) {
  unsigned flags = 0;
  const GcGePoint3d at = io.point(kInsertion);
  const GcGePoint3d second = io.point(kAlignment);
  if (at.z == 0) flags |= kNoElevation;
  const bool isAligned = io.num(kHorizontal) != 0 || io.num(kVertical) != 0;
  if (!isAligned || (second.x == at.x && second.y == at.y)) flags |= kNoAlignment;
  if (io.real(kOblique) == 0) flags |= kNoOblique;
  if (io.real(kRotation) == 0) flags |= kNoRotation;
  if (io.real(kWidth) == 1) flags |= kNoWidth;
  if (io.num(kGeneration) == 0) flags |= kNoGeneration;
  if (io.num(kHorizontal) == 0) flags |= kNoHorizontal;
  if (io.num(kVertical) == 0) flags |= kNoVertical;
  return flags;
}

template <class Io>
void textSince2000(Io& io) {
  unsigned flags = 0;
  if constexpr (Io::kWriting) flags = omitted(io);
  flags = io.rec.rc(flags);
  GcGePoint3d at = io.point(kInsertion);
  GcGePoint3d second = io.point(kAlignment);
  at.z = (flags & kNoElevation) != 0 ? 0 : io.rec.rd(at.z);
  const GcGePoint2d place = io.rec.rd2({at.x, at.y});
  io.setPoint(kInsertion, {place.x, place.y, at.z});
  if ((flags & kNoAlignment) == 0) {
    second.x = io.rec.dd(second.x, place.x);
    second.y = io.rec.dd(second.y, place.y);
    io.setPoint(kAlignment, {second.x, second.y, at.z});
  }
  io.be(kNormal);
  io.bt(kThickness);
  if ((flags & kNoOblique) == 0) io.rd(kOblique);
  if ((flags & kNoRotation) == 0) io.rd(kRotation);
  io.rd(kHeight);
  if ((flags & kNoWidth) == 0)
    io.rd(kWidth);
  else
    io.setReal(kWidth, 1);
  io.t(kText);
  if ((flags & kNoGeneration) == 0) io.bs(kGeneration);
  if ((flags & kNoHorizontal) == 0) io.bs(kHorizontal);
  if ((flags & kNoVertical) == 0) io.bs(kVertical);
  // An aligned text whose two points are one leaves the second out.
  if ((flags & kNoAlignment) != 0 && (io.num(kHorizontal) != 0 || io.num(kVertical) != 0))
    io.setPoint(kAlignment, {place.x, place.y, at.z});
}

template <class Io>
void textBefore2000(Io& io) {
  const double elevation = io.rec.bd(io.point(kInsertion).z);
  const GcGePoint3d at = io.point(kInsertion);
  const GcGePoint3d second = io.point(kAlignment);
  const GcGePoint2d place = io.rec.rd2({at.x, at.y});
  const GcGePoint2d aligned = io.rec.rd2({second.x, second.y});
  io.setPoint(kInsertion, {place.x, place.y, elevation});
  io.be(kNormal);
  io.bt(kThickness);
  io.bd(kOblique);
  io.bd(kRotation);
  io.bd(kHeight);
  io.bd(kWidth);
  io.t(kText);
  io.bs(kGeneration);
  io.bs(kHorizontal);
  io.bs(kVertical);
  if (io.num(kHorizontal) != 0 || io.num(kVertical) != 0)
    io.setPoint(kAlignment, {aligned.x, aligned.y, elevation});
}

#define TEXT_BODY(vertical)                                                                                        \
  piece(textBefore2000<PieceIn>, textBefore2000<PieceOut>, {10, 11, 210, 39, 51, 50, 40, 41, 1, 71, 72, vertical}) \
      .until(kR2000),                                                                                              \
      piece(textSince2000<PieceIn>, textSince2000<PieceOut>, {10, 11, 210, 39, 51, 50, 40, 41, 1, 71, 72, vertical}) \
          .from(kR2000)

constinit const PackRow kTextRows[] = {section("AcDbText"), TEXT_BODY(73), field(Op::H, 7)};

}  // namespace

void addTexts(std::vector<ClassPacking>& list) { list.push_back(packingOf("AcDbText", kTextRows)); }

}  // namespace gc::dwg::packing
