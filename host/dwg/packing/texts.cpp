// Single-line texts and attributes.
#include "host/dwg/packing/packings.h"
#include "host/dwg/record/pieces.h"

namespace gc::dwg::packing {

namespace {

// The fields a text names to its pieces, in this order.
enum TextField {
  kInsertion,
  kAlignment,
  kNormal,
  kThickness,
  kOblique,
  kRotation,
  kHeight,
  kWidth,
  kText,
  kGeneration,
  kHorizontal,
  kVertical
};

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

template <class Io>
bool isAligned(const Io& io) {
  return io.num(kHorizontal) != 0 || io.num(kVertical) != 0;
}

unsigned omitted(const PieceOut& io) {
  unsigned flags = 0;
  const GcGePoint3d at = io.point(kInsertion);
  const GcGePoint3d second = io.point(kAlignment);
  if (at.z == 0) flags |= kNoElevation;
  // Left out: the point of an aligned text that lies on the first one, and that of another text when it is zero.
  const GcGePoint3d usual = isAligned(io) ? at : GcGePoint3d();
  const bool hasHeight = !isAligned(io) && second.z != 0;
  if (second.x == usual.x && second.y == usual.y && !hasHeight) flags |= kNoAlignment;
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
  if ((flags & kNoAlignment) != 0 && isAligned(io)) io.setPoint(kAlignment, {place.x, place.y, at.z});
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
  if (isAligned(io) || aligned.x != 0 || aligned.y != 0) io.setPoint(kAlignment, {aligned.x, aligned.y, elevation});
}

#define TEXT_BODY(vertical)                                                                                          \
  piece(textBefore2000<PieceIn>, textBefore2000<PieceOut>, {10, 11, 210, 39, 51, 50, 40, 41, 1, 71, 72, vertical})   \
      .until(kR2000),                                                                                                \
      piece(textSince2000<PieceIn>, textSince2000<PieceOut>, {10, 11, 210, 39, 51, 50, 40, 41, 1, 71, 72, vertical}) \
          .from(kR2000)

constinit const PackRow kTextRows[] = {section("AcDbText"), TEXT_BODY(73), field(Op::H, 7)};

// ---- attributes ------------------------------------------------------------------------------------------

// Which kind of attribute it is (1 one line, 2 lines of an attribute, 4 lines of a definition); the text of several
// lines would follow here.
template <class Io>
void attributeKind(Io& io) {
  constexpr unsigned kOneLine = 1;
  if (io.rec.rc(kOneLine) > kOneLine) io.rec.fail();
}
void attributeKind(PieceOut& io) { io.rec.rc(1); }

constinit const PackRow kAttribute[] = {
    section("AcDbText"),
    TEXT_BODY(74),
    section("AcDbAttribute"),
    field(Op::RC, 280).from(kR2010),
    piece(attributeKind<PieceIn>, attributeKind, {}).from(kR2018),
    field(Op::T, 2),
    field(Op::BS, 73),
    field(Op::RC, 70),
    field(Op::B, 280).number(1).from(kR2007),
    section("AcDbText"),
    field(Op::H, 7),
};

constinit const PackRow kAttributeDefinition[] = {
    section("AcDbText"),
    TEXT_BODY(74),
    section("AcDbAttributeDefinition"),
    field(Op::RC, 280).from(kR2010),
    piece(attributeKind<PieceIn>, attributeKind, {}).from(kR2018),
    field(Op::T, 2),
    field(Op::BS, 73),
    field(Op::RC, 70),
    field(Op::B, 280).number(1).from(kR2007),
    fixed(Op::RC).from(kR2010),
    field(Op::T, 3),
    section("AcDbText"),
    field(Op::H, 7),
};

#undef TEXT_BODY

// ---- paragraphs ------------------------------------------------------------------------------------------

constexpr unsigned kFilled = 1;
constexpr unsigned kFramed = 16;

template <class Io>
void mtextBackground(Io& io) {
  Elements rare = io.elements(0);
  const bool has = rare.size() > 0;
  const auto number = [&](int code) { return has ? intOf(*rare.row(code), rare.at(0)) : 0; };
  const auto flags = static_cast<uint32_t>(io.rec.bl(static_cast<int32_t>(number(90))));
  const bool follows = (flags & kFilled) != 0 || (io.version() >= kR2018 && (flags & kFramed) != 0);
  if (!follows) {
    if constexpr (!Io::kWriting)
      if (flags != 0) setInt(*rare.row(90), rare.append(), flags);
    return;
  }
  const double scale = io.rec.bd(has ? realOf(*rare.row(45), rare.at(0)) : 1.5);
  const GcCmEntityColor color = io.rec.cmc(has ? colorOf(*rare.row(63), rare.at(0)) : GcCmEntityColor());
  const int32_t transparency = io.rec.bl(static_cast<int32_t>(number(441)));
  if constexpr (!Io::kWriting) {
    void* made = rare.append();
    setInt(*rare.row(90), made, flags);
    setReal(*rare.row(45), made, scale);
    setColor(*rare.row(63), made, color);
    setInt(*rare.row(441), made, transparency);
  }
}

// Columns of files from AC1032 on. They stand behind a repetition of what is told before.
enum MTextColumns {
  kDirection,
  kLocation,
  kBoxWidth,
  kBoxHeight,
  kActualWidth,
  kActualHeight,
  kColumns,
  kAnnotative,
  kAttachment
};
enum ColumnType { kNoColumns = 0, kStaticColumns = 1, kDynamicColumns = 2 };

template <class Io>
void mtextColumns(Io& io) {
  constexpr int kVersion = 4;
  const bool hasThem = io.rec.b(io.num(kAnnotative) == 0 || io.elements(kColumns).size() > 0);
  io.setNum(kAnnotative, hasThem ? 0 : 1);
  if (!hasThem) return;
  io.rec.bs(kVersion);
  io.rec.b(true);
  io.rec.h(5, {});
  io.rec.bl(static_cast<int32_t>(io.num(kAttachment)));
  io.rec.bd3(io.point(kDirection));
  io.rec.bd3(io.point(kLocation));
  io.rec.bd(io.real(kBoxWidth));
  io.rec.bd(io.real(kBoxHeight));
  Elements columns = io.elements(kColumns);
  void* held = columns.size() > 0 ? columns.at(0) : nullptr;
  const bool hasColumns = held != nullptr && intOf(*columns.row(71), held) != kNoColumns;
  const double width = io.rec.bd(hasColumns ? realOf(*columns.row(42), held) : io.real(kActualWidth));
  const double height = io.rec.bd(hasColumns ? realOf(*columns.row(43), held) : io.real(kActualHeight));
  const int type = io.rec.bs(held == nullptr ? 0 : static_cast<int>(intOf(*columns.row(71), held)));
  if (type == kNoColumns) return;
  if (held == nullptr) held = columns.append();
  const auto real = [&](int code) {
    const double value = io.rec.bd(realOf(*columns.row(code), held));
    if constexpr (!Io::kWriting) setReal(*columns.row(code), held, value);
  };
  const auto bit = [&](int code) {
    const bool value = io.rec.b(intOf(*columns.row(code), held) != 0);
    if constexpr (!Io::kWriting) setInt(*columns.row(code), held, value ? 1 : 0);
    return value;
  };
  const GcDbField* heightRow = columns.arrayRow(46);
  Elements heights(heightRow, held);
  const int32_t told = type == kStaticColumns || heights.size() == 0
                           ? static_cast<int32_t>(intOf(*columns.row(72), held))
                           : heights.size();
  const int32_t count = io.rec.bl(told);
  real(44);
  real(45);
  const bool autoHeight = bit(73);
  bit(74);
  if constexpr (!Io::kWriting) {
    setInt(*columns.row(71), held, type);
    setInt(*columns.row(72), held, count);
    setReal(*columns.row(42), held, width);
    setReal(*columns.row(43), held, height);
  }
  if (autoHeight || type != kDynamicColumns) return;
  const int most = io.rec.count(count, 2);
  for (int i = 0; i < most && !io.rec.failed(); ++i) {
    double value = 0;
    if (Io::kWriting && i < heights.size()) value = *static_cast<const double*>(heights.at(i));
    value = io.rec.bd(value);
    if constexpr (!Io::kWriting) *static_cast<double*>(heights.append()) = value;
  }
}

// The size that was read holds for the text as it was read.
template <class Io>
void mtextMeasured(Io& io) {
  io.setNum(0, 1);
}

constinit const PackRow kMText[] = {
    section("AcDbMText"),
    field(Op::BD3, 10),
    field(Op::BD3, 210),
    field(Op::BD3, 11),
    field(Op::BD, 41),
    field(Op::BD, 46).from(kR2007),
    field(Op::BD, 40),
    field(Op::BS, 71),
    field(Op::BS, 72),
    field(Op::BD, -143),
    field(Op::BD, -142),
    field(Op::T, 1),
    field(Op::H, 7),
    field(Op::BS, 73).from(kR2000),
    field(Op::BD, 44).from(kR2000),
    fixed(Op::B).from(kR2000),
    piece(mtextBackground<PieceIn>, mtextBackground<PieceOut>, {-90}).from(kR2004),
    piece(mtextColumns<PieceIn>, mtextColumns<PieceOut>, {11, 10, 41, 46, -142, -143, -42, -145, 71}).from(kR2018),
    piece(mtextMeasured<PieceIn>, mtextMeasured<PieceOut>, {-144}),
};

}  // namespace

void addTexts(std::vector<ClassPacking>& list) {
  list.push_back(packingOf("AcDbText", kTextRows));
  list.push_back(packingOf("AcDbAttribute", kAttribute));
  list.push_back(packingOf("AcDbAttributeDefinition", kAttributeDefinition));
  list.push_back(packingOf("AcDbMText", kMText));
}

}  // namespace gc::dwg::packing
