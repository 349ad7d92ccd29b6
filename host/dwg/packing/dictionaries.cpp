// Dictionaries and extension records.
#include "db/dictionary.h"
#include "db/xrecord.h"
#include "host/db/core/store.h"
#include "host/dwg/packing/groupbytes.h"
#include "host/dwg/packing/packings.h"
#include "host/dwg/record/pieces.h"

namespace gc::dwg::packing {

namespace {

constexpr unsigned kSoftOwner = 2;
constexpr unsigned kHardOwner = 3;

// Entries that go into the file: those whose object does, and those that never had one.
struct Entries {
  std::vector<int> living;
  Entries(const RecordContext& context, const Elements& elements) {
    const GcDbField* id = elements.row(350);
    for (int i = 0; i < elements.size(); ++i) {
      const GcDbObjectId object = idOf(*id, elements.at(i));
      if (object.isNull() || context.isWritten(object)) living.push_back(i);
    }
  }
};

// Before R2000 only dictionaries with a default say how duplicates are merged.
template <class Io, bool kHasDefault>
void dictionary(Io& io) {
  Elements elements = io.elements(0);
  const GcDbField& key = *elements.row(3);
  const GcDbField& id = *elements.row(350);
  std::vector<int> living;
  if constexpr (Io::kWriting) living = Entries(io.rec.context, elements).living;
  const int count = io.rec.count(io.rec.bl(static_cast<int32_t>(living.size())), 8);
  if (kHasDefault || io.version() >= kR2000) io.bs(1);
  io.rc(2);
  if constexpr (!Io::kWriting) elements.reserve(count);
  for (int i = 0; i < count && !io.rec.failed(); ++i) {
    void* entry = Io::kWriting ? elements.at(living[static_cast<size_t>(i)]) : elements.append();
    const auto name = io.rec.t(textOf(key, entry));
    if constexpr (!Io::kWriting) setText(key, entry, name);
  }
  for (int i = 0; i < count && !io.rec.failed(); ++i) {
    auto& entry = *static_cast<GcDbDictionaryEntry*>(elements.at(Io::kWriting ? living[static_cast<size_t>(i)] : i));
    const unsigned code = io.num(2) != 0 ? kHardOwner : kSoftOwner;
    const GcDbObjectId object = io.rec.h(code, entry.id);
    if constexpr (!Io::kWriting) {
      setId(id, &entry, object);
      entry.hard = io.num(2) != 0;
    }
  }
}

template <class Io>
void xrecordGroups(Io& io) {
  auto& groups = static_cast<GcDbXrecord*>(static_cast<GcDbObject*>(io.object))->groups();
  if constexpr (Io::kWriting) {
    BitWriter bytes;
    putGroups(io.rec, groups, bytes);
    const std::vector<uint8_t> whole = bytes.take();
    io.rec.data.bl(static_cast<int32_t>(whole.size()));
    io.rec.data.bytes(whole);
  } else {
    const int size = io.rec.count(io.rec.bl(0), 8);
    const uint64_t from = io.rec.data.position();
    BitReader bytes = io.rec.data;
    io.rec.data.skip(static_cast<uint64_t>(size) * 8);
    bytes.setEnd(from + static_cast<uint64_t>(size) * 8);
    if (!takeGroups(io.rec, bytes, groups)) io.rec.fail();
  }
}

// Every reference of the groups once more, so that those who follow references need not know groups.
template <class Io>
void xrecordReferences(Io& io) {
  if constexpr (Io::kWriting) {
    const auto& groups = static_cast<GcDbXrecord*>(static_cast<GcDbObject*>(io.object))->groups();
    GcDbGroupList::Cursor cursor(groups);
    for (GcDbGroup group; cursor.next(group);)
      if (group.kind == GcDbGroupKind::Id) io.rec.h(referenceCode(group.code), group.id);
  } else {
    while (!io.rec.failed() && io.rec.handles.remaining() >= 8) io.rec.handles.h();
  }
}

constinit const PackRow kDictionary[] = {
    section("AcDbDictionary"),
    piece(dictionary<PieceIn, false>, dictionary<PieceOut, false>, {-3, 281, 280}),
};

constinit const PackRow kDictionaryWithDefault[] = {
    section("AcDbDictionary"),
    piece(dictionary<PieceIn, true>, dictionary<PieceOut, true>, {-3, 281, 280}),
    section("AcDbDictionaryWithDefault"),
    field(Op::H, 340).as(5),
};

constinit const PackRow kXrecord[] = {
    section("AcDbXrecord"),
    piece(xrecordGroups<PieceIn>, xrecordGroups<PieceOut>, {}),
    field(Op::BS, 280).from(kR2000),
    piece(xrecordReferences<PieceIn>, xrecordReferences<PieceOut>, {}),
};

}  // namespace

void addDictionaries(std::vector<ClassPacking>& list) {
  list.push_back(packingOf("AcDbDictionary", kDictionary));
  list.push_back(packingOf("AcDbDictionaryWithDefault", kDictionaryWithDefault));
  list.push_back(packingOf("AcDbXrecord", kXrecord));
}

}  // namespace gc::dwg::packing
