// What all records of symbol tables begin with: name, flags and the block of the external drawing they come from.
#pragma once

#include "db/symboltable.h"
#include "host/db/core/loader.h"
#include "host/dwg/record/pieces.h"

namespace gc::dwg::packing {

// Bits of group 70 that all records have.
enum RecordBits : unsigned { kDependent = 16, kResolved = 32, kReferenced = 64 };

// Anonymous blocks lose the number of their name in the record: it stands in the begin entity. The two spaces that
// have always been there keep their names.
inline GcView nameInRecord(const GcDbSymbolTableRecord& record) {
  GcView name = view(record.getName());
  if (name.empty() || name[0] != GCHAR('*') || !record.isKindOf(GcDbBlockTableRecord::desc())) return name;
  while (name.size() > 1 && name.back() >= GCHAR('0') && name.back() <= GCHAR('9')) name.remove_suffix(1);
  return name;
}

// Passes the common part; gives the common bits of group 70.
template <class Io>
unsigned recordHead(Io& io) {
  auto& record = *static_cast<GcDbSymbolTableRecord*>(static_cast<GcDbObject*>(io.object));
  const auto name = io.rec.t(nameInRecord(record));
  if constexpr (!Io::kWriting) GcDbLoader::setName(record, toGcString(name));
  const auto flags = static_cast<unsigned>(record.flags());
  constexpr int kIsResolved = 256;
  bool isDependent = (flags & kDependent) != 0;
  bool isResolved = (flags & kResolved) != 0;
  if (io.version() < kR2007) io.rec.b(true);
  isResolved = io.rec.bs(isDependent || isResolved ? kIsResolved : 0) == kIsResolved;
  if (io.version() < kR2007)
    isDependent = io.rec.b(isDependent);
  else
    isDependent = isResolved;
  io.rec.h(5, {});
  return (isDependent ? kDependent | kResolved : 0u);
}

template <class Io>
void tableFlags(Io& io) {
  const unsigned bits = recordHead(io);
  if constexpr (!Io::kWriting)
    ignore(
        static_cast<GcDbSymbolTableRecord*>(static_cast<GcDbObject*>(io.object))->setFlags(static_cast<int16_t>(bits)));
}

}  // namespace gc::dwg::packing
