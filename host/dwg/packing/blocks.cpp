// Block definitions and what refers to them.
#include "db/symboltable.h"
#include "host/db/core/loader.h"
#include "host/dwg/packing/packings.h"
#include "host/dwg/packing/parts.h"
#include "host/dwg/packing/tableflags.h"

namespace gc::dwg::packing {

namespace {

// ---- references ------------------------------------------------------------------------------------------

enum InsertField { kScaleX, kScaleY, kScaleZ };

enum ScaleForm : unsigned { kAllGiven = 0, kXIsOne = 1, kAllEqual = 2, kAllOne = 3 };

template <class Io>
void insertScale(Io& io) {
  GcGePoint3d s(io.real(kScaleX), io.real(kScaleY), io.real(kScaleZ));
  if (io.version() < kR2000) {
    s = io.rec.bd3(s);
  } else {
    unsigned form = kAllGiven;
    if (s.x == s.y && s.x == s.z)
      form = s.x == 1 ? kAllOne : kAllEqual;
    else if (s.x == 1)
      form = kXIsOne;
    form = io.rec.bb(form);
    s.x = form == kAllOne || form == kXIsOne ? 1 : io.rec.rd(s.x);
    const bool given = form == kAllGiven || form == kXIsOne;
    s.y = given ? io.rec.dd(s.y, s.x) : s.x;
    s.z = given ? io.rec.dd(s.z, s.x) : s.x;
  }
  io.setReal(kScaleX, s.x);
  io.setReal(kScaleY, s.y);
  io.setReal(kScaleZ, s.z);
}

constexpr int kHasParts = 0;  // the register

uint32_t hasParts(PieceOut& io) { return livingParts(io.rec.context, objectOf(io)).isEmpty() ? 0 : 1; }

constinit const PackRow kInsert[] = {
    section("AcDbBlockReference"),
    field(Op::BD3, 10),
    piece(insertScale<PieceIn>, insertScale<PieceOut>, {41, 42, 43}),
    field(Op::BD, 50),
    field(Op::BD3, 210),
    store(kHasParts, Op::B, hasParts, {}),
    piece(partCount<PieceIn>, partCount<PieceOut>, {}).when(kHasParts, 1),
    field(Op::H, 2).as(5),
    piece(partReferences<PieceIn>, partReferences<PieceOut>, {}).when(kHasParts, 1),
};

constinit const PackRow kMInsert[] = {
    section("AcDbMInsertBlock"),
    field(Op::BD3, 10),
    piece(insertScale<PieceIn>, insertScale<PieceOut>, {41, 42, 43}),
    field(Op::BD, 50),
    field(Op::BD3, 210),
    store(kHasParts, Op::B, hasParts, {}),
    piece(partCount<PieceIn>, partCount<PieceOut>, {}).when(kHasParts, 1),
    field(Op::BS, 70),
    field(Op::BS, 71),
    field(Op::BD, 44),
    field(Op::BD, 45),
    field(Op::H, 2).as(5),
    piece(partReferences<PieceIn>, partReferences<PieceOut>, {}).when(kHasParts, 1),
};

// ---- begin and end ---------------------------------------------------------------------------------------

// The begin entity has the whole name.
template <class Io>
void blockBeginName(Io& io) {
  if constexpr (Io::kWriting)
    io.rec.t(io.rec.context.nameOf(objectOf(io).ownerId().handle()));
  else
    io.rec.context.blockNames[io.rec.own] = io.rec.t({});
}

constinit const PackRow kBlockBegin[] = {piece(blockBeginName<PieceIn>, blockBeginName<PieceOut>, {})};
constinit const PackRow kNothing[] = {section("AcDbEntity")};

// ---- the definition --------------------------------------------------------------------------------------

// Numbers that rows of a block record share.
enum BlockRegister { kIsExternal, kOwnedCount, kInsertCount };

enum BlockBits : unsigned { kAnonymous = 1, kHasAttributes = 2, kExternal = 4, kOverlay = 8, kLoaded = 32 };

template <class Io>
void blockFlags(Io& io) {
  const auto flags = static_cast<unsigned>(io.num(0));
  unsigned read = io.rec.b((flags & kAnonymous) != 0) ? kAnonymous : 0u;
  read |= io.rec.b((flags & kHasAttributes) != 0) ? kHasAttributes : 0u;
  read |= io.rec.b((flags & kExternal) != 0) ? kExternal : 0u;
  read |= io.rec.b((flags & kOverlay) != 0) ? kOverlay : 0u;
  if (io.version() >= kR2000) read |= io.rec.b((flags & kLoaded) != 0) ? kLoaded : 0u;
  io.registers[kIsExternal] = read & (kExternal | kOverlay);
  io.setNum(0, read);
}

inline GcDbObjectIdArray livingEntities(const RecordContext& context, const GcDbBlockTableRecord& block) {
  GcDbObjectIdArray entities;
  for (const GcDbObjectId id : block.entities())
    if (context.isWritten(id)) entities.append(id);
  return entities;
}

template <class Io>
void ownedCount(Io& io) {
  int owned = 0;
  if constexpr (Io::kWriting)
    owned = livingEntities(io.rec.context, static_cast<GcDbBlockTableRecord&>(objectOf(io))).length();
  io.registers[kOwnedCount] = static_cast<uint32_t>(io.rec.count(io.rec.bl(owned), 8));
}

// Every reference to the block is counted by one byte of 1, the row is closed by one of 0. The references are not
// kept: they are found when they are needed.
template <class Io>
void insertCount(Io& io) {
  uint32_t count = 0;
  if constexpr (Io::kWriting) {
    io.rec.rc(0);
  } else {
    while (!io.rec.failed() && io.rec.rc(0) != 0) ++count;
  }
  io.registers[kInsertCount] = count;
}

// Binary data with its size in front.
template <class Io>
void sizedBytes(Io& io) {
  static const GcArray<uint8_t> kNone;
  const bool kept = io.has(0) && io.args[0]->kind == Kind::Bytes;
  const auto& held = kept ? *static_cast<const GcArray<uint8_t>*>(io.args[0]->value(io.object)) : kNone;
  const int size = io.rec.count(io.rec.bl(held.length()), 8);
  auto bytes = io.rec.bytes(held, static_cast<size_t>(size));
  if constexpr (!Io::kWriting)
    if (kept) *static_cast<GcArray<uint8_t>*>(io.args[0]->at(io.object)) = std::move(bytes);
}

constexpr unsigned kSoftPointer = 4;
constexpr unsigned kHardOwner = 3;

// The entities between begin and end: each of them, or (before AC1018) the ends of their chain.
void passEntities(PieceOut& io, const GcDbBlockTableRecord& block) {
  const GcDbObjectIdArray entities = livingEntities(io.rec.context, block);
  if (io.version() >= kR2004) {
    for (uint32_t i = 0; i < io.registers[kOwnedCount]; ++i) io.rec.h(kHardOwner, entities[static_cast<int>(i)]);
  } else if (io.registers[kIsExternal] == 0) {
    io.rec.h(kSoftPointer, entities.isEmpty() ? GcDbObjectId() : entities[0]);
    io.rec.h(kSoftPointer, entities.isEmpty() ? GcDbObjectId() : entities.last());
  }
}

void passEntities(PieceIn& io, const GcDbBlockTableRecord&) {
  io.rec.links.hasParts = true;
  if (io.version() >= kR2004) {
    io.rec.links.parts.setLogicalLength(static_cast<int>(io.registers[kOwnedCount]));
    for (GcDbObjectId& id : io.rec.links.parts) id = io.rec.h(kHardOwner, {});
  } else if (io.registers[kIsExternal] == 0) {
    io.rec.links.firstPart = io.rec.handles.h().absolute(io.rec.own);
    io.rec.links.lastPart = io.rec.handles.h().absolute(io.rec.own);
  }
}

template <class Io>
void blockReferences(Io& io) {
  auto& block = static_cast<GcDbBlockTableRecord&>(objectOf(io));
  const GcDbObjectId begin = io.rec.h(kHardOwner, block.blockBeginId());
  passEntities(io, block);
  const GcDbObjectId end = io.rec.h(kHardOwner, block.blockEndId());
  if constexpr (!Io::kWriting) {
    GcDbLoader::setBlockBegin(block, begin);
    GcDbLoader::setBlockEnd(block, end);
  }
  if (io.version() < kR2000) return;
  for (uint32_t i = 0; i < io.registers[kInsertCount]; ++i) io.rec.h(kSoftPointer, {});
  io.h(0, 5);
}

constinit const PackRow kBlockRecord[] = {
    section("AcDbBlockTableRecord"),
    piece(tableFlags<PieceIn>, tableFlags<PieceOut>, {}),
    section("AcDbBlockBegin"),
    piece(blockFlags<PieceIn>, blockFlags<PieceOut>, {70}),
    piece(ownedCount<PieceIn>, ownedCount<PieceOut>, {}).from(kR2004).unless(kIsExternal, kExternal | kOverlay),
    field(Op::BD3, 10),
    field(Op::T, 1),
    piece(insertCount<PieceIn>, insertCount<PieceOut>, {}).from(kR2000),
    field(Op::T, 4).from(kR2000),
    section("AcDbBlockTableRecord"),
    piece(sizedBytes<PieceIn>, sizedBytes<PieceOut>, {310}).from(kR2000),
    field(Op::BS, 70).from(kR2007),
    field(Op::B, 280).from(kR2007),
    field(Op::RC, 281).from(kR2007),
    piece(blockReferences<PieceIn>, blockReferences<PieceOut>, {340}),
};

}  // namespace

void addBlocks(std::vector<ClassPacking>& list) {
  list.push_back(packingOf("AcDbBlockReference", kInsert));
  list.push_back(packingOf("AcDbMInsertBlock", kMInsert));
  list.push_back(packingOf("AcDbBlockBegin", kBlockBegin));
  list.push_back(packingOf("AcDbBlockEnd", kNothing));
  list.push_back(packingOf("AcDbSequenceEnd", kNothing));
  list.push_back(packingOf("AcDbBlockTableRecord", kBlockRecord));
}

}  // namespace gc::dwg::packing
