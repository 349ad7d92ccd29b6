// Records of symbol tables.
#include "host/dwg/packing/packings.h"
#include "host/dwg/packing/tableflags.h"
#include "host/dwg/record/lineweights.h"

namespace gc::dwg::packing {

namespace {

#define HEAD piece(tableFlags<PieceIn>, tableFlags<PieceOut>, {})

// ---- layers ----------------------------------------------------------------------------------------------

enum LayerField { kPlottable, kLineWeight };

enum LayerBits : unsigned {  // of the record; those of group 70 are others
  kFrozen = 1,
  kIsOff = 2,
  kFrozenInNew = 4,
  kLocked = 8,
  kPlots = 16,
  kWeightShift = 5
};

unsigned bitsFromFlags(unsigned flags) {
  return ((flags & 1) != 0 ? kFrozen : 0u) | ((flags & 2) != 0 ? kFrozenInNew : 0u) | ((flags & 4) != 0 ? kLocked : 0u);
}

unsigned flagsFromBits(unsigned bits) {
  return ((bits & kFrozen) != 0 ? 1u : 0u) | ((bits & kFrozenInNew) != 0 ? 2u : 0u) | ((bits & kLocked) != 0 ? 4u : 0u);
}

template <class Io>
unsigned passLayerBits(Io& io, unsigned bits) {
  if (io.version() >= kR2000) return static_cast<unsigned>(io.rec.bs(static_cast<int>(bits)));
  unsigned read = io.rec.b((bits & kFrozen) != 0) ? kFrozen : 0u;
  read |= io.rec.b((bits & kIsOff) != 0) ? kIsOff : 0u;
  read |= io.rec.b((bits & kFrozenInNew) != 0) ? kFrozenInNew : 0u;
  return read | (io.rec.b((bits & kLocked) != 0) ? kLocked : 0u);
}

template <class Io>
void layer(Io& io) {
  auto& record = *static_cast<GcDbLayerTableRecord*>(static_cast<GcDbObject*>(io.object));
  const unsigned common = recordHead(io);
  const bool off = record.isOff();
  unsigned bits = bitsFromFlags(static_cast<unsigned>(record.flags())) | (off ? kIsOff : 0u) |
                  (io.num(kPlottable) != 0 ? kPlots : 0u) |
                  codeOfLineWeight(static_cast<int>(io.num(kLineWeight))) << kWeightShift;
  bits = passLayerBits(io, bits);
  GcCmEntityColor color = record.color();
  bool isOff = (bits & kIsOff) != 0;
  if (Io::kWriting && io.version() < kR2004) {
    const int index = color.colorIndex();  // before true colours a layer that is off has a negative colour
    io.rec.bs(off ? -index : index);
    return;
  }
  if constexpr (!Io::kWriting) {
    if (io.version() < kR2004) {
      const int index = io.rec.bs(0);
      isOff = isOff || index < 0;
      color = GcCmEntityColor::fromIndex(index < 0 ? -index : index);
    } else {
      color = io.rec.cmc(color);
    }
    ignore(record.setFlags(static_cast<int16_t>(common | flagsFromBits(bits))));
    ignore(record.setColor(color));
    ignore(record.setIsOff(isOff));
    if (io.version() < kR2000) return;
    io.setNum(kPlottable, (bits & kPlots) != 0 ? 1 : 0);
    io.setNum(kLineWeight, lineWeightOf(bits >> kWeightShift & 31u));
  } else {
    io.rec.cmc(color);
  }
}

constinit const PackRow kLayer[] = {
    section("AcDbLayerTableRecord"),
    piece(layer<PieceIn>, layer<PieceOut>, {290, 370}),
    field(Op::H, 390).as(5).from(kR2000),
    field(Op::H, 347).as(5).from(kR2007),
    field(Op::H, 6).as(5),
    field(Op::H, 348).as(5).from(kR2013).maybe(),
};

// ---- applications ----------------------------------------------------------------------------------------

constinit const PackRow kRegApp[] = {
    section("AcDbRegAppTableRecord"),
    HEAD,
    field(Op::RC, 71).maybe(),
};

// ---- text styles -----------------------------------------------------------------------------------------

// Bits 1 (a file of shapes) and 4 (vertical) of group 70 are bits of the record.
template <class Io>
void textStyleHead(Io& io) {
  auto& record = *static_cast<GcDbSymbolTableRecord*>(static_cast<GcDbObject*>(io.object));
  unsigned flags = recordHead(io);
  const auto held = static_cast<unsigned>(record.flags());
  flags |= io.rec.b((held & 1) != 0) ? 1u : 0u;
  flags |= io.rec.b((held & 4) != 0) ? 4u : 0u;
  if constexpr (!Io::kWriting) ignore(record.setFlags(static_cast<int16_t>(flags)));
}

constinit const PackRow kTextStyle[] = {
    section("AcDbTextStyleTableRecord"),
    piece(textStyleHead<PieceIn>, textStyleHead<PieceOut>, {}),
    field(Op::BD, 40),
    field(Op::BD, 41),
    field(Op::BD, 50),
    field(Op::RC, 71),
    field(Op::BD, 42),
    field(Op::T, 3),
    field(Op::T, 4),
};

// ---- linetypes -------------------------------------------------------------------------------------------

// Texts of complex dashes stand one after the other in an area of fixed size behind the dashes; a dash has the place
// of its text where others have the number of their shape.
template <class Io>
class Linetype {
 public:
  explicit Linetype(Io& piece) : io(piece), dashes(piece.elements(0)) {}

  void pass() {
    constexpr unsigned kAlignment = 'A';
    io.rec.rc(kAlignment);
    const auto count = static_cast<int>(io.rec.rc(static_cast<unsigned>(dashes.size()) & 0xFFu));
    for (int i = 0; i < count && !io.rec.failed(); ++i) passDash(Io::kWriting ? dashes.at(i) : dashes.append());
    if (io.version() < kR2007 || hasText) passArea();
  }

 private:
  static constexpr unsigned kIsText = 2;

  void passDash(void* dash) {
    real(dash, 49, [&](double v) { return io.rec.bd(v); });
    const auto flags = static_cast<unsigned>(number(dash, 74));
    int shape = static_cast<int>(number(dash, 75));
    if (Io::kWriting && (flags & kIsText) != 0) shape = appendText(dash);
    shape = io.rec.bs(shape);
    const GcDbField* style = dashes.row(340);
    const GcDbObjectId id = io.rec.h(5, idOf(*style, dash));
    real(dash, 44, [&](double v) { return io.rec.rd(v); });
    real(dash, 45, [&](double v) { return io.rec.rd(v); });
    real(dash, 46, [&](double v) { return io.rec.bd(v); });
    real(dash, 50, [&](double v) { return io.rec.bd(v); });
    const auto read = static_cast<unsigned>(io.rec.bs(static_cast<int>(flags)));
    hasText = hasText || (read & kIsText) != 0;
    if constexpr (!Io::kWriting) {
      setInt(*dashes.row(74), dash, static_cast<int>(read));
      setInt(*dashes.row(75), dash, shape);
      setId(*style, dash, id);
    }
  }

  [[nodiscard]] int64_t number(const void* dash, int code) const { return intOf(*dashes.row(code), dash); }

  template <class F>
  void real(void* dash, int code, const F& call) {
    const GcDbField& row = *dashes.row(code);
    const double value = call(realOf(row, dash));
    if constexpr (!Io::kWriting) setReal(row, dash, value);
  }

  [[nodiscard]] bool isWide() const { return io.version() >= kR2007; }

  [[nodiscard]] size_t areaSize() const { return isWide() ? 512 : 256; }

  // Puts the text into the area, as many whole letters of it as there is room for; gives its place.
  int appendText(const void* dash) {
    const size_t zero = isWide() ? 2 : 1;
    if (area.size() + zero > areaSize()) return static_cast<int>(areaSize() - zero);
    const auto place = static_cast<int>(area.size());
    const GcView text = textOf(*dashes.row(9), dash);
    for (size_t at = 0; at < text.size();) {
      const size_t units = isHighSurrogate(text[at]) && at + 1 < text.size() ? 2 : 1;
      std::string letter;
      appendLetter(text.substr(at, units), letter);
      if (area.size() + letter.size() + zero > areaSize()) break;
      area += letter;
      at += units;
    }
    area.append(zero, '\0');
    return place;
  }

  static bool isHighSurrogate(GCHAR unit) { return (unit & 0xFC00) == 0xD800; }

  void appendLetter(GcView letter, std::string& bytes) const {
    if (!isWide()) return io.rec.context.text.encode(letter, bytes);
    for (const GCHAR unit : letter) {
      bytes.push_back(static_cast<char>(unit & 0xFF));
      bytes.push_back(static_cast<char>(unit >> 8));
    }
  }

  void passArea() {
    const size_t size = areaSize();
    area.resize(size, '\0');
    if constexpr (Io::kWriting) {
      io.rec.data.bytes({reinterpret_cast<const uint8_t*>(area.data()), size});
    } else {
      io.rec.data.bytes(reinterpret_cast<uint8_t*>(area.data()), size);
      for (int i = 0; i < dashes.size() && !io.rec.failed(); ++i) takeText(dashes.at(i));
    }
  }

  void takeText(void* dash) {
    if ((number(dash, 74) & kIsText) == 0) return;
    auto at = static_cast<size_t>(number(dash, 75));
    GcText text;
    if (isWide()) {
      for (; at + 1 < area.size() && (area[at] != 0 || area[at + 1] != 0); at += 2)
        text.push_back(static_cast<GCHAR>(static_cast<uint8_t>(area[at]) | static_cast<uint8_t>(area[at + 1]) << 8));
    } else if (at < area.size()) {
      io.rec.context.text.decode(std::string_view(area.c_str() + at), text);
    }
    setText(*dashes.row(9), dash, text);
    setInt(*dashes.row(75), dash, 0);
  }

  Io& io;
  Elements dashes;
  std::string area;
  bool hasText = false;
};

template <class Io>
void linetypeDashes(Io& io) {
  Linetype<Io>(io).pass();
}

constinit const PackRow kLinetype[] = {
    section("AcDbLinetypeTableRecord"),
    HEAD,
    field(Op::T, 3),
    field(Op::BD, 40),
    piece(linetypeDashes<PieceIn>, linetypeDashes<PieceOut>, {-49}),
};

// ---- views and viewports ---------------------------------------------------------------------------------

// Four bits of the view mode: 1 perspective, 2 front clipping, 4 back clipping, and that front clipping is at the eye,
// which group files say by a 16 when it is not.
template <class Io>
unsigned viewMode(Io& io, unsigned mode) {
  constexpr unsigned kNotAtEye = 16;
  unsigned read = 0;
  for (const unsigned bit : {1u, 2u, 4u}) read |= io.rec.b((mode & bit) != 0) ? bit : 0u;
  return read | (io.rec.b((mode & kNotAtEye) == 0) ? 0u : kNotAtEye);
}

template <class Io>
void viewModeOf(Io& io) {
  io.setNum(0, viewMode(io, static_cast<unsigned>(io.num(0))));
}

// A view that belongs to paper space has bit 1 of group 70.
template <class Io>
void viewInPaper(Io& io) {
  auto& record = *static_cast<GcDbSymbolTableRecord*>(static_cast<GcDbObject*>(io.object));
  const auto flags = static_cast<unsigned>(record.flags());
  const bool inPaper = io.rec.b((flags & 1) != 0);
  if constexpr (!Io::kWriting) ignore(record.setFlags(static_cast<int16_t>(flags | (inPaper ? 1u : 0u))));
}

constexpr int kHasUcs = 0;

constinit const PackRow kView[] = {
    section("AcDbViewTableRecord"),
    HEAD,
    field(Op::BD, 40),
    field(Op::BD, 41),
    field(Op::RD2, 10),
    field(Op::BD3, 12),
    field(Op::BD3, 11),
    field(Op::BD, 50),
    field(Op::BD, 42),
    field(Op::BD, 43),
    field(Op::BD, 44),
    piece(viewModeOf<PieceIn>, viewModeOf<PieceOut>, {71}),
    field(Op::RC, 281).from(kR2000),
    field(Op::H, 332).as(4).from(kR2007).maybe(),
    field(Op::H, 348).as(5).from(kR2007).maybe(),
    field(Op::B, 292).from(kR2007).maybe(1),
    field(Op::RC, 282).from(kR2007).maybe(1),
    field(Op::BD, 141).from(kR2007).maybe(),
    field(Op::BD, 142).from(kR2007).maybe(),
    field(Op::CMC, 63).from(kR2007).maybe(),
    field(Op::H, 361).as(3).from(kR2007).maybe(),
    piece(viewInPaper<PieceIn>, viewInPaper<PieceOut>, {}),
    field(Op::B, 72).from(kR2000).keep(kHasUcs),
    field(Op::BD3, 110).from(kR2000).when(kHasUcs, 1),
    field(Op::BD3, 111).from(kR2000).when(kHasUcs, 1),
    field(Op::BD3, 112).from(kR2000).when(kHasUcs, 1),
    field(Op::BD, 146).from(kR2000).when(kHasUcs, 1),
    field(Op::BS, 79).from(kR2000).when(kHasUcs, 1),
    field(Op::H, 346).as(5).from(kR2000).when(kHasUcs, 1),
    field(Op::H, 345).as(5).from(kR2000).when(kHasUcs, 1),
    field(Op::B, 73).from(kR2007),
    field(Op::H, 334).as(4).from(kR2007),
};

// Records have the width, group files its ratio to the height.
template <class Io>
void viewportWidth(Io& io) {
  const double height = io.real(0);
  const double width = io.rec.bd(io.real(1) * height);
  io.setReal(1, height != 0 ? width / height : 0);
}

// Bit 8 of the view mode (the view follows the user system) stands apart.
template <class Io>
void viewportMode(Io& io) {
  const auto mode = static_cast<unsigned>(io.num(0));
  io.setNum(0, viewMode(io, mode));
}

template <class Io>
void viewportFollows(Io& io) {
  const auto mode = static_cast<unsigned>(io.num(0));
  const bool follows = io.rec.b((mode & 8) != 0);
  io.setNum(0, mode | (follows ? 8u : 0u));
}

constinit const PackRow kViewport[] = {
    section("AcDbViewportTableRecord"),
    HEAD,
    field(Op::BD, 40),
    piece(viewportWidth<PieceIn>, viewportWidth<PieceOut>, {40, 41}),
    field(Op::RD2, 12),
    field(Op::BD3, 17),
    field(Op::BD3, 16),
    field(Op::BD, 51),
    field(Op::BD, 42),
    field(Op::BD, 43),
    field(Op::BD, 44),
    piece(viewportMode<PieceIn>, viewportMode<PieceOut>, {71}),
    field(Op::RC, 281).from(kR2000),
    field(Op::H, 332).as(4).from(kR2007),
    field(Op::H, 348).as(5).from(kR2007),
    field(Op::H, 361).as(3).from(kR2007),
    field(Op::B, 292).from(kR2007),
    field(Op::RC, 282).from(kR2007),
    field(Op::BD, 141).from(kR2007),
    field(Op::BD, 142).from(kR2007),
    field(Op::CMC, 63).from(kR2007),
    field(Op::RD2, 10),
    field(Op::RD2, 11),
    piece(viewportFollows<PieceIn>, viewportFollows<PieceOut>, {71}),
    field(Op::BS, 72),
    field(Op::B, 73),
    field(Op::BB, 74),
    field(Op::B, 76),
    field(Op::RD2, 15),
    field(Op::B, 75),
    field(Op::B, 77),
    field(Op::BS, 78),
    field(Op::BD, 50),
    field(Op::RD2, 13),
    field(Op::RD2, 14),
    fixed(Op::B).from(kR2000),
    field(Op::B, 65).from(kR2000),
    field(Op::BD3, 110).from(kR2000),
    field(Op::BD3, 111).from(kR2000),
    field(Op::BD3, 112).from(kR2000),
    field(Op::BD, 146).from(kR2000),
    field(Op::BS, 79).from(kR2000),
    field(Op::BS, 60).from(kR2007),
    field(Op::BS, 61).from(kR2007),
    field(Op::H, 345).as(5).from(kR2000),
    field(Op::H, 346).as(5).from(kR2000),
};

// ---- user coordinate systems -----------------------------------------------------------------------------

template <class Io>
void orthoOrigins(Io& io) {
  Elements origins = io.elements(0);
  const int count = io.rec.count(io.rec.bs(origins.size()), 8);
  for (int i = 0; i < count && !io.rec.failed(); ++i) {
    void* origin = Io::kWriting ? origins.at(i) : origins.append();
    const int view = io.rec.bs(static_cast<int>(intOf(*origins.row(71), origin)));
    const GcGePoint3d at = io.rec.bd3(pointOf(*origins.row(13), origin));
    if constexpr (!Io::kWriting) {
      setInt(*origins.row(71), origin, view);
      setPoint(*origins.row(13), origin, at);
    }
  }
}

constinit const PackRow kUcs[] = {
    section("AcDbUCSTableRecord"),
    HEAD,
    field(Op::BD3, 10),
    field(Op::BD3, 11),
    field(Op::BD3, 12),
    field(Op::BD, 146).from(kR2000),
    field(Op::BS, 79).from(kR2000),
    piece(orthoOrigins<PieceIn>, orthoOrigins<PieceOut>, {-71}).from(kR2000),
    field(Op::H, 346).as(5).from(kR2000),
    fixed(Op::H).from(kR2000),
};

#undef HEAD

}  // namespace

void addTableRecords(std::vector<ClassPacking>& list) {
  list.push_back(packingOf("AcDbLayerTableRecord", kLayer));
  list.push_back(packingOf("AcDbRegAppTableRecord", kRegApp));
  list.push_back(packingOf("AcDbTextStyleTableRecord", kTextStyle));
  list.push_back(packingOf("AcDbLinetypeTableRecord", kLinetype));
  list.push_back(packingOf("AcDbViewTableRecord", kView));
  list.push_back(packingOf("AcDbViewportTableRecord", kViewport));
  list.push_back(packingOf("AcDbUCSTableRecord", kUcs));
}

}  // namespace gc::dwg::packing
