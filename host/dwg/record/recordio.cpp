#include "host/dwg/record/recordio.h"

#include "host/db/core/names.h"
#include "host/db/core/store.h"
#include "host/rx/view.h"

namespace gc::dwg {

namespace {

// Colours from AC1018 on: the index is unused, the four bytes say all.
constexpr unsigned kNamedColor = 1;
constexpr unsigned kBookColor = 2;

GcCmEntityColor colorOfBits(uint32_t bits) {
  const uint32_t method = bits >> 24;
  switch (method) {
    case GcCmEntityColor::kByLayer: return GcCmEntityColor::byLayer();
    case GcCmEntityColor::kByBlock: return GcCmEntityColor::fromIndex(0);
    case GcCmEntityColor::kByACI: return GcCmEntityColor::fromIndex(static_cast<int>(bits & 0xFFFF));
    default: return GcCmEntityColor::fromBits(bits);
  }
}

uint32_t bitsOfColor(GcCmEntityColor color) {
  if (color.isByLayer() || color.isByBlock()) return color.bits() & 0xFF000000u;
  return color.bits();
}

}  // namespace

// ---- reading ---------------------------------------------------------------------------------------------

GcGeVector3d RecordIn::be(const GcGeVector3d&) {
  if (version() >= kR2000) return data.be();
  const GcGePoint3d p = data.bd3();
  return {p.x, p.y, p.z};
}

GcText RecordIn::t(GcView) {
  GcText text;
  if (version() >= kR2007) {
    if (!hasTexts) return text;
    const auto length = static_cast<uint16_t>(texts.bs());
    if (texts.remaining() / 16 < length) {
      texts.fail();
      return text;
    }
    text.resize(length);
    for (GCHAR& unit : text) unit = static_cast<GCHAR>(texts.rs());
  } else {
    const auto length = static_cast<uint16_t>(data.bs());
    if (data.remaining() / 8 < length) {
      data.fail();
      return text;
    }
    std::string bytes(length, '\0');
    data.bytes(reinterpret_cast<uint8_t*>(bytes.data()), length);
    const size_t zero = bytes.find('\0');
    if (zero != std::string::npos) bytes.resize(zero);
    context.text.decode(bytes, text);
  }
  const size_t zero = text.find(GCHAR(0));
  if (zero != GcText::npos) text.resize(zero);
  return text;
}

GcCmEntityColor RecordIn::cmc(GcCmEntityColor) {
  const int index = data.bs();
  if (version() < kR2004) return GcCmEntityColor::fromIndex(index);
  const auto bits = static_cast<uint32_t>(data.bl());
  const unsigned flags = data.rc();
  if ((flags & kNamedColor) != 0) t({});
  if ((flags & kBookColor) != 0) t({});
  return colorOfBits(bits);
}

GcDbObjectId RecordIn::h(unsigned code, GcDbObjectId id) {
  unsigned ignored = code;
  return h(code, id, ignored);
}

GcDbObjectId RecordIn::h(unsigned, GcDbObjectId, unsigned& code) {
  const HandleRef ref = handles.h();
  code = ref.code;
  return context.idOf(ref.absolute(own));
}

GcArray<uint8_t> RecordIn::bytes(const GcArray<uint8_t>&, size_t size) {
  GcArray<uint8_t> read;
  if (data.remaining() / 8 < size) {
    data.fail();
    return read;
  }
  read.setLogicalLength(static_cast<int>(size));
  data.bytes(read.begin(), size);
  return read;
}

int RecordIn::count(int32_t read, unsigned leastBits) {
  const uint64_t room = data.remaining() + texts.remaining() + handles.remaining();
  if (read >= 0 && static_cast<uint64_t>(read) * leastBits <= room) return read;
  data.fail();
  return 0;
}

// ---- writing ---------------------------------------------------------------------------------------------

double RecordOut::bt(double value) {
  if (version() >= kR2000)
    data.bt(value);
  else
    data.bd(value);
  return value;
}

GcGeVector3d RecordOut::be(const GcGeVector3d& value) {
  if (version() >= kR2000)
    data.be(value);
  else
    data.bd3({value.x, value.y, value.z});
  return value;
}

GcView RecordOut::t(GcView value) {
  constexpr size_t kMost = 0x7FFF;
  if (version() >= kR2007) {
    hasTexts = true;
    const GcView cut = value.substr(0, kMost);
    texts.bs(static_cast<int>(cut.size()));
    for (const GCHAR unit : cut) texts.rs(static_cast<unsigned>(unit));
  } else {
    std::string bytes;
    context.text.encode(value, bytes);
    if (bytes.size() > kMost) bytes.resize(kMost);
    data.bs(static_cast<int>(bytes.size()));
    data.bytes({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
  }
  return value;
}

GcCmEntityColor RecordOut::cmc(GcCmEntityColor value) {
  if (version() < kR2004) {
    data.bs(value.colorIndex());
    return value;
  }
  data.bs(0);
  data.bl(static_cast<int32_t>(bitsOfColor(value)));
  data.rc(0);
  return value;
}

GcDbObjectId RecordOut::h(unsigned code, GcDbObjectId id) {
  handles.h(code, context.isWritten(id) ? id.stub()->handle : 0);
  return id;
}

const GcArray<uint8_t>& RecordOut::bytes(const GcArray<uint8_t>& value, size_t size) {
  data.bytes({value.begin(), size});
  return value;
}

// ---- context ---------------------------------------------------------------------------------------------

GcDbObjectId RecordContext::idOf(uint64_t handle) const {
  return handle == 0 ? GcDbObjectId() : GcDbObjectId(database.store().need(handle));
}

GcText RecordContext::nameOf(uint64_t handle) const {
  const auto at = names.find(handle);
  if (at != names.end()) return at->second;
  const GcDbStub* stub = database.store().find(handle);
  if (stub == nullptr || stub->object == nullptr) return {};
  const auto* record = GcDbSymbolTableRecord::cast(stub->object);
  return record == nullptr ? GcText() : GcText(view(record->getName()));
}

namespace {

uint64_t handleInTable(GcDbObjectId tableId, GcView name) {
  GcDbSymbolTable* table = nullptr;
  GcDbObjectId id;
  if (gcdbOpenObject(table, tableId, GcDb::kForRead) != Gcad::eOk) return 0;
  ignore(table->getAt(GcText(name).c_str(), id));
  ignore(table->close());
  return id.handle();
}

}  // namespace

uint64_t RecordContext::handleOfApplication(GcView name) const { return handleInTable(database.regAppTableId(), name); }

uint64_t RecordContext::handleOfLayer(GcView name) const { return handleInTable(database.layerTableId(), name); }

}  // namespace gc::dwg
