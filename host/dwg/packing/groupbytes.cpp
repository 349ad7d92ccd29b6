#include "host/dwg/packing/groupbytes.h"

#include <string>

#include "host/rx/text/drawing_text.h"

namespace gc::dwg::packing {

namespace {

bool isByteSized(int code) { return (code >= 280 && code <= 299); }

GcText takeText(RecordIn& record, BitReader& in) {
  GcText text;
  const size_t length = in.rs();
  if (record.version() >= kR2007) {
    if (in.remaining() / 16 < length) {
      in.fail();
      return text;
    }
    text.resize(length);
    for (GCHAR& unit : text) unit = static_cast<GCHAR>(in.rs());
    return text;
  }
  const CodePage page = codePageByDwgNumber(in.rc());
  if (in.remaining() / 8 < length) {
    in.fail();
    return text;
  }
  std::string bytes(length, '\0');
  in.bytes(reinterpret_cast<uint8_t*>(bytes.data()), length);
  DrawingText(page == CodePage::None ? record.context.text.page() : page, false, Carets::Plain).decode(bytes, text);
  return text;
}

void putText(RecordOut& record, GcView text, BitWriter& out) {
  if (record.version() >= kR2007) {
    out.rs(static_cast<unsigned>(text.size()));
    for (const GCHAR unit : text) out.rs(static_cast<unsigned>(unit));
    return;
  }
  std::string bytes;
  record.context.text.encode(text, bytes);
  out.rs(static_cast<unsigned>(bytes.size()));
  out.rc(static_cast<unsigned>(record.context.codePageNumber));
  out.bytes({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
}

GcDbGroup takeInteger(BitReader& in, int code, GcDbGroupKind kind) {
  GcDbGroup group = GcDbGroup::ofInt(code, 0);
  group.kind = kind;
  if (isByteSized(code))
    group.integer = in.rc();
  else if (kind == GcDbGroupKind::Int16)
    group.integer = static_cast<int16_t>(in.rs());
  else if (kind == GcDbGroupKind::Int32)
    group.integer = static_cast<int32_t>(in.rl());
  else
    group.integer = static_cast<int64_t>(in.rll());
  return group;
}

}  // namespace

unsigned referenceCode(int groupCode) {
  if (groupCode >= 330 && groupCode < 340) return 4;
  if (groupCode >= 340 && groupCode < 350) return 5;
  if (groupCode >= 350 && groupCode < 360) return 2;
  if (groupCode >= 360 && groupCode < 370) return 3;
  return 5;
}

bool takeGroups(RecordIn& record, BitReader in, GcDbGroupList& groups) {
  while (in.remaining() >= 16 && !in.failed()) {
    const int code = static_cast<int16_t>(in.rs());
    if (code < 0 || code > 1071) return false;
    const GcDbGroupKind kind = gcdbKindOfCode(code);
    switch (kind) {
      case GcDbGroupKind::Text: groups.put(GcDbGroup::ofText(code, takeText(record, in))); break;
      case GcDbGroupKind::Real: groups.put(GcDbGroup::ofReal(code, in.rd())); break;
      case GcDbGroupKind::Point2d:
      case GcDbGroupKind::Point3d: groups.put(GcDbGroup::ofPoint(code, in.rd3())); break;
      case GcDbGroupKind::Binary: {
        std::string bytes(in.rc(), '\0');
        in.bytes(reinterpret_cast<uint8_t*>(bytes.data()), bytes.size());
        groups.put(GcDbGroup::ofBinary(code, {reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()}));
        break;
      }
      case GcDbGroupKind::Id: groups.put(GcDbGroup::ofId(code, record.context.idOf(in.rll()))); break;
      default: groups.put(takeInteger(in, code, kind));
    }
  }
  return !in.failed();
}

void putGroups(RecordOut& record, const GcDbGroupList& groups, BitWriter& out) {
  GcDbGroupList::Cursor cursor(groups);
  for (GcDbGroup group; cursor.next(group);) {
    out.rs(static_cast<unsigned>(group.code));
    const GcDbGroupKind kind = gcdbKindOfCode(group.code);
    switch (kind) {
      case GcDbGroupKind::Text: putText(record, group.text, out); break;
      case GcDbGroupKind::Real: out.rd(group.asReal()); break;
      case GcDbGroupKind::Point2d:
      case GcDbGroupKind::Point3d: out.rd3(group.point); break;
      case GcDbGroupKind::Binary: {
        const auto bytes = group.bytes.size() > 255 ? group.bytes.first(255) : group.bytes;
        out.rc(static_cast<unsigned>(bytes.size()));
        out.bytes(bytes);
        break;
      }
      case GcDbGroupKind::Id: out.rll(record.context.isWritten(group.id) ? uint64_t(group.id.handle()) : 0); break;
      default:
        if (isByteSized(group.code))
          out.rc(static_cast<unsigned>(group.asInt()));
        else if (kind == GcDbGroupKind::Int16)
          out.rs(static_cast<unsigned>(group.asInt()));
        else if (kind == GcDbGroupKind::Int32)
          out.rl(static_cast<uint32_t>(group.asInt()));
        else
          out.rll(static_cast<uint64_t>(group.asInt()));
    }
  }
}

}  // namespace gc::dwg::packing
