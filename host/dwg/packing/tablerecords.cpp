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

#undef HEAD

}  // namespace

void addTableRecords(std::vector<ClassPacking>& list) {
  list.push_back(packingOf("AcDbLayerTableRecord", kLayer));
  list.push_back(packingOf("AcDbRegAppTableRecord", kRegApp));
}

}  // namespace gc::dwg::packing
