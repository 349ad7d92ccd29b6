#include "host/dwg/record/xdata.h"

#include <string>

#include "db/symboltable.h"

namespace gc::dwg {

namespace {

constexpr int kFirstCode = 1000;
constexpr int kAppName = 1001;
constexpr int kControl = 1002;
constexpr int kLayer = 1003;
constexpr int kBinary = 1004;
constexpr int kHandle = 1005;

GcText readString(RecordIn& record, BitReader& in) {
  GcText text;
  if (record.version() >= kR2007) {
    const size_t length = in.rs();
    if (in.remaining() / 16 < length) {
      in.fail();
      return text;
    }
    text.resize(length);
    for (GCHAR& unit : text) unit = static_cast<GCHAR>(in.rs());
    while (!text.empty() && text.back() == 0) text.pop_back();
    return text;
  }
  const size_t length = in.rc();
  const unsigned page = in.rc() << 8;  // the page's number has its high byte first
  const CodePage named = codePageByDwgNumber(static_cast<int>(page | in.rc()));
  if (in.remaining() / 8 < length) {
    in.fail();
    return text;
  }
  std::string bytes(length, '\0');
  in.bytes(reinterpret_cast<uint8_t*>(bytes.data()), length);
  while (!bytes.empty() && bytes.back() == '\0') bytes.pop_back();
  DrawingText(named == CodePage::None ? record.context.text.page() : named, false, Carets::Plain).decode(bytes, text);
  return text;
}

// Handles are eight bytes here, the highest first.
uint64_t readHandle(BitReader& in) { return __builtin_bswap64(in.rll()); }

// One value; false when its code means nothing.
bool readValue(RecordIn& record, BitReader& in, GcDbGroupList& out) {
  const int code = kFirstCode + in.rc();
  switch (code) {
    case 1000: out.put(GcDbGroup::ofText(code, readString(record, in))); return true;
    case kControl: out.put(GcDbGroup::ofText(code, in.rc() == 0 ? GC_T("{") : GC_T("}"))); return true;
    case kLayer: out.put(GcDbGroup::ofText(code, record.context.nameOf(readHandle(in)))); return true;
    case kBinary: {
      std::string bytes(in.rc(), '\0');
      in.bytes(reinterpret_cast<uint8_t*>(bytes.data()), bytes.size());
      out.put(GcDbGroup::ofBinary(code, {reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()}));
      return true;
    }
    case kHandle: out.put(GcDbGroup::ofInt(code, static_cast<int64_t>(readHandle(in)))); return true;
    case 1010:
    case 1011:
    case 1012:
    case 1013: out.put(GcDbGroup::ofPoint(code, in.rd3())); return true;
    case 1040:
    case 1041:
    case 1042: out.put(GcDbGroup::ofReal(code, in.rd())); return true;
    case 1070: out.put(GcDbGroup::ofInt(code, static_cast<int16_t>(in.rs()))); return true;
    case 1071: out.put(GcDbGroup::ofInt(code, static_cast<int32_t>(in.rl()))); return true;
    default: return false;
  }
}

void writeString(RecordOut& record, BitWriter& out, GcView text) {
  if (record.version() >= kR2007) {
    out.rs(static_cast<unsigned>(text.size()));
    for (const GCHAR unit : text) out.rs(static_cast<unsigned>(unit));
    return;
  }
  std::string bytes;
  record.context.text.encode(text, bytes);
  if (bytes.size() > 255) bytes.resize(255);
  out.rc(static_cast<unsigned>(bytes.size()));
  out.rc(static_cast<unsigned>(record.context.codePageNumber >> 8));
  out.rc(static_cast<unsigned>(record.context.codePageNumber));
  out.bytes({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
}

void writeValue(RecordOut& record, BitWriter& out, const GcDbGroup& group) {
  out.rc(static_cast<unsigned>(group.code - kFirstCode));
  switch (group.code) {
    case kControl: out.rc(group.text == GC_T("{") ? 0 : 1); return;
    case kLayer: out.rll(__builtin_bswap64(record.context.handleOfLayer(group.text))); return;
    case kBinary: {
      const auto bytes = group.bytes.size() > 255 ? group.bytes.first(255) : group.bytes;
      out.rc(static_cast<unsigned>(bytes.size()));
      out.bytes(bytes);
      return;
    }
    case kHandle: out.rll(__builtin_bswap64(static_cast<uint64_t>(group.integer))); return;
    case 1070: out.rs(static_cast<unsigned>(group.asInt())); return;
    case 1071: out.rl(static_cast<uint32_t>(group.asInt())); return;
    default: break;
  }
  if (group.kind == GcDbGroupKind::Text)
    writeString(record, out, group.text);
  else if (group.kind == GcDbGroupKind::Real)
    out.rd(group.real);
  else
    out.rd3(group.point);
}

void writeApplication(RecordOut& record, GcView name, BitWriter& values) {
  const uint64_t application = record.context.handleOfApplication(name);
  const std::vector<uint8_t> bytes = values.take();
  if (application == 0 || bytes.size() > 0xFFFF) return;
  record.data.bs(static_cast<int>(bytes.size()));
  record.data.h(5, application);
  record.data.bytes(bytes);
}

}  // namespace

void readXData(RecordIn& record, unsigned size, GcDbGroupList& xdata, bool& damaged) {
  for (; size != 0 && !record.data.failed(); size = static_cast<uint16_t>(record.data.bs())) {
    const uint64_t application = record.data.h().absolute(record.own);
    const uint64_t end = record.data.position() + uint64_t{size} * 8;
    BitReader in = record.data;
    record.data.seek(end);
    if (record.data.failed()) return;
    in.setEnd(end);
    const GcText name = record.context.nameOf(application);
    if (name.empty()) {
      damaged = true;
      continue;
    }
    xdata.put(GcDbGroup::ofText(kAppName, name));
    while (in.remaining() >= 8 && !in.failed())
      if (!readValue(record, in, xdata)) in.fail();
    damaged = damaged || in.failed();
  }
}

void writeXData(RecordOut& record, const GcDbGroupList& xdata) {
  if (xdata.isEmpty()) {
    record.data.bs(0);
    return;
  }
  BitWriter values;
  GcText name;
  GcDbGroupList::Cursor cursor(xdata);
  for (GcDbGroup group; cursor.next(group);) {
    if (group.code != kAppName) {
      writeValue(record, values, group);
      continue;
    }
    if (!name.empty()) writeApplication(record, name, values);
    name.assign(group.text);
    values.clear();
  }
  if (!name.empty()) writeApplication(record, name, values);
  record.data.bs(0);
}

}  // namespace gc::dwg
