// Objects of the format's dictionaries: groups, multiline styles, settings, scales, drawing orders.
#include "db/database.h"
#include "host/db/objects/mlinestyle.h"
#include "host/db/objects/standard.h"
#include "host/dwg/packing/elementfields.h"
#include "host/dwg/packing/packings.h"

namespace gc::dwg::packing {

namespace {

constexpr unsigned kSoftPointer = 4;
constexpr unsigned kHardPointer = 5;

// An array of bare references: its count among the numbers, the references apart.
template <class Io, unsigned kKind>
void references(Io& io) {
  Elements all = io.elements(0);
  const int count = io.rec.count(io.rec.bl(all.size()), 8);
  for (int i = 0; i < count && !io.rec.failed(); ++i) {
    GcDbObjectId id;
    if constexpr (Io::kWriting) id = *static_cast<const GcDbObjectId*>(all.at(i));
    id = io.rec.h(kKind, id);
    if constexpr (!Io::kWriting) *static_cast<GcDbObjectId*>(all.append()) = id;
  }
}

constinit const PackRow kGroup[] = {
    section("AcDbGroup"),
    field(Op::T, 300),
    field(Op::BS, 70),
    field(Op::BS, 71),
    piece(references<PieceIn, kHardPointer>, references<PieceOut, kHardPointer>, {-340}),
};

// Records have the bits of group 70 in another order.
constexpr unsigned swapBits(unsigned flags, unsigned a, unsigned b) {
  const bool hasA = (flags & a) != 0, hasB = (flags & b) != 0;
  return (flags & ~(a | b)) | (hasA ? b : 0u) | (hasB ? a : 0u);
}

constexpr unsigned otherOrder(unsigned flags) { return swapBits(swapBits(swapBits(flags, 1, 2), 32, 64), 512, 1024); }

template <class Io>
void mlineFlags(Io& io) {
  const auto held = static_cast<unsigned>(io.num(0));
  io.setNum(0, otherOrder(static_cast<unsigned>(io.rec.bs(static_cast<int>(otherOrder(held)))) & 0xFFFFu));
}

template <class Io>
void mlineElements(Io& io) {
  Elements all = io.elements(0);
  auto& style = *static_cast<GcDbMlineStyle*>(static_cast<GcDbObject*>(io.object));
  const auto count = static_cast<int>(io.rec.rc(static_cast<unsigned>(all.size())));
  if constexpr (!Io::kWriting) style.elements().clear();
  for (int i = 0; i < count && !io.rec.failed(); ++i) {
    if constexpr (!Io::kWriting) all.append();
    GcDbMlineElement& element = style.elements()[i];
    element.offset = io.rec.bd(element.offset);
    element.color = io.rec.cmc(element.color);
    if (io.version() >= kR2018) {
      element.linetype = io.rec.h(kHardPointer, element.linetype);
      continue;
    }
    int16_t index = 0;
    if constexpr (Io::kWriting) index = gcdbLinetypeIndex(io.rec.context.database, element.linetype);
    index = static_cast<int16_t>(io.rec.bs(index));
    if constexpr (!Io::kWriting) element.linetypeIndex = index;
  }
}

constinit const PackRow kMlineStyle[] = {
    section("AcDbMlineStyle"), field(Op::T, 2),
    field(Op::T, 3),           piece(mlineFlags<PieceIn>, mlineFlags<PieceOut>, {70}),
    field(Op::CMC, 62),        field(Op::BD, 51),
    field(Op::BD, 52),         piece(mlineElements<PieceIn>, mlineElements<PieceOut>, {-71}),
};

template <class Io>
void nothing(Io&) {}

constinit const PackRow kPlaceHolder[] = {piece(nothing<PieceIn>, nothing<PieceOut>, {})};

constinit const PackRow kDictionaryVar[] = {
    section("DictionaryVariables"),
    field(Op::RC, 280),
    field(Op::T, 1),
};

constinit const PackRow kScale[] = {
    section("AcDbScale"), field(Op::BS, 70),  field(Op::T, 300),
    field(Op::BD, 140),   field(Op::BD, 141), field(Op::B, 290),
};

// The sorting handles are data.
template <class Io>
void sortPairs(Io& io) {
  auto& pairs =
      const_cast<GcArray<GcDbSortPair>&>(static_cast<GcDbSortentsTable*>(static_cast<GcDbObject*>(io.object))->pairs());
  const int count = io.rec.count(io.rec.bl(pairs.length()), 8);
  for (int i = 0; i < count && !io.rec.failed(); ++i) {
    if constexpr (Io::kWriting) {
      io.rec.data.h(0, static_cast<uint64_t>(pairs[i].sortedAs));
    } else {
      pairs.append(GcDbSortPair());
      pairs[i].sortedAs = static_cast<int64_t>(io.rec.data.h().value);
    }
  }
}

template <class Io>
void sortedEntities(Io& io) {
  auto& pairs =
      const_cast<GcArray<GcDbSortPair>&>(static_cast<GcDbSortentsTable*>(static_cast<GcDbObject*>(io.object))->pairs());
  for (int i = 0; i < pairs.length() && !io.rec.failed(); ++i)
    pairs[i].entity = io.rec.h(kSoftPointer, pairs[i].entity);
}

constinit const PackRow kSortentsTable[] = {
    section("AcDbSortentsTable"),
    piece(sortPairs<PieceIn>, sortPairs<PieceOut>, {}),
    field(Op::H, 330).as(kSoftPointer),
    piece(sortedEntities<PieceIn>, sortedEntities<PieceOut>, {}),
};

}  // namespace

void addObjects(std::vector<ClassPacking>& list) {
  list.push_back(packingOf("AcDbGroup", kGroup));
  list.push_back(packingOf("AcDbMlineStyle", kMlineStyle));
  list.push_back(packingOf("AcDbPlaceHolder", kPlaceHolder));
  list.push_back(packingOf("AcDbDictionaryVar", kDictionaryVar));
  list.push_back(packingOf("AcDbScale", kScale));
  list.push_back(packingOf("AcDbSortentsTable", kSortentsTable));
}

}  // namespace gc::dwg::packing
