// Parts of a class that are kept as their groups (host/db/describe/rest.h), to and from a record: one text says the
// order of the groups and how each value is packed.
//
//   GroupPass groups(pass, style.m_data);
//   groups.word(1, GC_T("TABLEFORMAT_BEGIN"));
//   groups.bl(90);
//   if (groups.bs(170) != 0) groups.bl(91);
//   groups.finish();
//
// Reading makes the groups. Writing takes them in this order; an object whose groups have another one has no record
// of its class and goes as a proxy (fitsRecord, ClassPacking::isWhole).
#pragma once

#include "host/db/describe/group.h"
#include "host/dwg/record/pass.h"

namespace gc::dwg {

// A record of which only is asked whether the groups of an object fit it.
class DryRecord {
 public:
  static constexpr bool kWriting = true;
  explicit DryRecord(int version) : m_version(version) {}
  bool misfits = false;

  [[nodiscard]] int version() const { return m_version; }
  [[nodiscard]] static bool failed() { return false; }
  static bool b(bool value) { return value; }
  static unsigned bb(unsigned value) { return value; }
  static int bs(int value) { return value; }
  static int32_t bl(int32_t value) { return value; }
  static uint64_t bll(uint64_t value) { return value; }
  static unsigned rc(unsigned value) { return value; }
  static unsigned rs(unsigned value) { return value; }
  static uint32_t rl(uint32_t value) { return value; }
  static double bd(double value) { return value; }
  static double rd(double value) { return value; }
  static double bt(double value) { return value; }
  static GcGePoint3d bd3(const GcGePoint3d& value) { return value; }
  static GcGePoint3d rd3(const GcGePoint3d& value) { return value; }
  static GcGePoint2d rd2(const GcGePoint2d& value) { return value; }
  static GcGePoint2d bd2(const GcGePoint2d& value) { return value; }
  static GcGeVector3d be(const GcGeVector3d& value) { return value; }
  static GcView t(GcView value) { return value; }
  static GcCmEntityColor cmc(GcCmEntityColor value) { return value; }
  static GcDbObjectId h(unsigned, GcDbObjectId id) { return id; }
  static const GcArray<uint8_t>& bytes(const GcArray<uint8_t>& value, size_t) { return value; }
  static int count(int32_t value, unsigned = 1) { return value; }

 private:
  int m_version;
};

struct DryIo {
  static constexpr bool kWriting = true;
  DryRecord rec;
  [[nodiscard]] int version() const { return rec.version(); }
};

template <class Class>
bool fitsRecord(const Class& object, int version) {
  DryIo io{DryRecord(version)};
  Pass<DryIo> pass(io);
  GcDbRecordOf<Class>::pass(pass, const_cast<Class&>(object));
  return !io.rec.misfits;
}

// The four bytes of a colour; files leave the index of one by layer or block out.
inline int32_t bitsInRecords(const GcDbIndexedColor& color) {
  const GcCmEntityColor value = color.color();
  const bool isOfAnother = value.isByLayer() || value.isByBlock();
  return static_cast<int32_t>(isOfAnother ? value.bits() & 0xFF000000u : value.bits());
}

template <class Pass>
class GroupPass {
 public:
  GroupPass(Pass& pass, GcDbGroupList& groups) : m_pass(pass), m_groups(groups), m_cursor(groups) {
    if constexpr (Pass::kWriting)
      advance();
    else
      groups.clear();
  }

  int32_t bl(int code) {
    return integer(code, [&](int32_t& value) { m_pass.bl(value); });
  }
  int32_t bs(int code) {
    return integer(code, [&](int32_t& value) { m_pass.bs(value); });
  }
  int32_t rc(int code) {
    return integer(code, [&](int32_t& value) { m_pass.rc(value); });
  }
  int32_t b(int code) {
    return integer(code, [&](int32_t& value) { m_pass.b(value); });
  }
  // A count of elements of at least so many bits.
  int32_t count(int code, unsigned leastBits) {
    return integer(code, [&](int32_t& value) {
      m_pass.bl(value);
      value = m_pass.io().rec.count(value, leastBits);
    });
  }
  double bd(int code) {
    double value = Pass::kWriting ? next(code, GcDbGroupKind::Real).real : 0;
    m_pass.bd(value);
    GcDbGroup group = GcDbGroup::ofReal(code, value);
    constexpr int kFirstAngle = 50, kLastAngle = 58;
    group.isAngle = code >= kFirstAngle && code <= kLastAngle;
    put(group);
    return value;
  }
  void bd3(int code) {
    GcGePoint3d value;
    if constexpr (Pass::kWriting) value = next(code, GcDbGroupKind::Point3d).point;
    m_pass.bd3(value);
    put(GcDbGroup::ofPoint(code, value));
  }
  void rd2(int code) {
    GcGePoint2d value;
    if constexpr (Pass::kWriting) {
      const GcDbGroup group = next(code, GcDbGroupKind::Point2d);
      value = {group.point.x, group.point.y};
    }
    m_pass.rd2(value);
    put(GcDbGroup::ofPoint2d(code, value));
  }
  // A text that files have in pieces of 255, all but the last under a code of their own.
  void longText(int pieceCode, int code) {
    constexpr size_t kPiece = 255;
    GcText whole;
    if constexpr (Pass::kWriting) {
      while (isNext(pieceCode)) whole += next(pieceCode, GcDbGroupKind::Text).text;
      whole += next(code, GcDbGroupKind::Text).text;
    }
    GcString value = toGcString(whole);
    m_pass.t(value);
    GcView rest = view(value);
    for (; rest.size() > kPiece; rest.remove_prefix(kPiece)) put(GcDbGroup::ofText(pieceCode, rest.substr(0, kPiece)));
    put(GcDbGroup::ofText(code, rest));
  }
  GcString t(int code) {
    GcString value;
    if constexpr (Pass::kWriting) value = toGcString(next(code, GcDbGroupKind::Text).text);
    m_pass.t(value);
    put(GcDbGroup::ofText(code, view(value)));
    return value;
  }
  void h(int code, unsigned kind) {
    GcDbObjectId value;
    if constexpr (Pass::kWriting) value = next(code, GcDbGroupKind::Id).id;
    m_pass.h(kind, value);
    put(GcDbGroup::ofId(code, value));
  }
  // A colour that has its four bytes in records of every version.
  void color(int code) {
    constexpr int kRgb = 420;
    GcDbIndexedColor color;
    if constexpr (Pass::kWriting) {
      color.index = static_cast<int16_t>(next(code, gcdbKindOfCode(code)).integer);
      if (m_has && m_next.code == kRgb) color.rgb = static_cast<int32_t>(next(kRgb, gcdbKindOfCode(kRgb)).integer);
    }
    int32_t unused = 0, bits = bitsInRecords(color), flags = 0;
    m_pass.bs(unused);
    m_pass.bl(bits);
    m_pass.rc(flags);
    m_pass.must(flags == 0);
    if constexpr (Pass::kWriting) return;
    color = GcDbIndexedColor(GcCmEntityColor::fromBits(static_cast<uint32_t>(bits)));
    put(GcDbGroup::ofInt(code, color.index));
    if (color.rgb != GcDbIndexedColor::kNoRgb) put(GcDbGroup::ofInt(kRgb, color.rgb));
  }
  // A text that files have around parts; records have not.
  void word(int code, const GCHAR* text) {
    if constexpr (Pass::kWriting) {
      if (next(code, GcDbGroupKind::Text).text != GcView(text)) misfit();
    } else {
      put(GcDbGroup::ofText(code, text));
    }
  }
  [[nodiscard]] bool failed() const { return m_pass.failed(); }
  [[nodiscard]] bool isNext(int code) const { return m_has && m_next.code == code; }
  void finish() {
    if (m_has) misfit();
  }
  void misfit() {
    if constexpr (requires { m_pass.io().rec.misfits; }) m_pass.io().rec.misfits = true;
  }

 private:
  void advance() { m_has = m_cursor.next(m_next); }
  // The next group, which has to have the code; a group of nothing when it has not.
  GcDbGroup next(int code, GcDbGroupKind kind) {
    if (!m_has || m_next.code != code || m_next.kind != kind) {
      misfit();
      return {};
    }
    const GcDbGroup group = m_next;
    advance();
    return group;
  }
  template <class F>
  int32_t integer(int code, const F& pass) {
    int32_t value = 0;
    if constexpr (Pass::kWriting) value = static_cast<int32_t>(next(code, gcdbKindOfCode(code)).integer);
    pass(value);
    put(GcDbGroup::ofInt(code, value));
    return value;
  }
  void put(const GcDbGroup& group) {
    if constexpr (!Pass::kWriting) m_groups.put(group);
  }

  Pass& m_pass;
  GcDbGroupList& m_groups;
  GcDbGroupList::Cursor m_cursor;
  GcDbGroup m_next;
  bool m_has = false;
};

}  // namespace gc::dwg
