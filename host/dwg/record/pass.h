// Members of a class passed one after the other, in both directions with one text: for classes whose records are
// more than a row of fields (see host/db/describe/recordof.h).
//
//   template <>
//   struct GcDbRecordOf<GcDbX> {
//     template <class Pass>
//     static void pass(Pass& pass, GcDbX& x) {
//       pass.bd(x.m_scale);
//       pass.list(x.m_points, Pass::Count::BL, 6, [&](GcGePoint3d& p) { pass.bd3(p); });
//     }
//   };
#pragma once

#include "host/db/describe/indexedcolor.h"
#include "host/db/describe/recordof.h"
#include "host/dwg/packing/packings.h"
#include "host/dwg/record/pieces.h"

namespace gc::dwg {

template <class Io>
class Pass {
 public:
  enum class Count : uint8_t { RC, BS, BL, RL };
  static constexpr bool kWriting = Io::kWriting;
  explicit Pass(Io& io) : m_io(io) {}

  [[nodiscard]] int version() const { return m_io.version(); }
  [[nodiscard]] bool failed() const { return m_io.rec.failed(); }
  Io& io() { return m_io; }

  // A record that says what no member keeps is refused, and so kept as its bits.
  void must(bool holds) {
    if constexpr (!kWriting)
      if (!holds) m_io.rec.fail();
  }

  template <class T>
  void b(T& value) {
    set(value, m_io.rec.b(value != T{}) ? 1 : 0);
  }
  template <class T>
  void bb(T& value) {
    set(value, m_io.rec.bb(static_cast<unsigned>(value)));
  }
  template <class T>
  void rc(T& value) {
    set(value, m_io.rec.rc(static_cast<uint8_t>(value)));
  }
  template <class T>
  void rs(T& value) {
    set(value, m_io.rec.rs(static_cast<uint16_t>(value)));
  }
  template <class T>
  void bs(T& value) {
    set(value, m_io.rec.bs(static_cast<int16_t>(value)));
  }
  template <class T>
  void bl(T& value) {
    set(value, m_io.rec.bl(static_cast<int32_t>(value)));
  }
  template <class T>
  void rl(T& value) {
    set(value, static_cast<int32_t>(m_io.rec.rl(static_cast<uint32_t>(value))));
  }
  template <class T>
  void bll(T& value) {
    set(value, static_cast<int64_t>(m_io.rec.bll(static_cast<uint64_t>(value))));
  }
  void bd(double& value) { set(value, m_io.rec.bd(value)); }
  void rd(double& value) { set(value, m_io.rec.rd(value)); }
  void bt(double& value) { set(value, m_io.rec.bt(value)); }
  void be(GcGeVector3d& value) { set(value, m_io.rec.be(value)); }
  void bd3(GcGePoint3d& value) { set(value, m_io.rec.bd3(value)); }
  void bd3(GcGeVector3d& value) { set(value, m_io.rec.bd3({value.x, value.y, value.z}).asVector()); }
  void bd3(GcGeScale3d& value) {
    const GcGePoint3d passed = m_io.rec.bd3({value.sx, value.sy, value.sz});
    if constexpr (!kWriting) value = {passed.x, passed.y, passed.z};
  }
  void rd2(GcGePoint2d& value) { set(value, m_io.rec.rd2(value)); }
  void rd2(GcGeVector2d& value) {
    const GcGePoint2d passed = m_io.rec.rd2({value.x, value.y});
    set(value, GcGeVector2d(passed.x, passed.y));
  }
  void rd3(GcGePoint3d& value) { set(value, m_io.rec.rd3(value)); }
  void bd2(GcGePoint2d& value) { set(value, m_io.rec.bd2(value)); }
  void t(GcString& value) {
    const auto passed = m_io.rec.t(view(value));
    if constexpr (!kWriting) value = toGcString(passed);
  }
  void cmc(GcCmEntityColor& value) { set(value, m_io.rec.cmc(value)); }
  // A colour that its class keeps as its four bytes.
  void cmc(int32_t& bits) {
    const GcCmEntityColor passed = m_io.rec.cmc(GcCmEntityColor::fromBits(static_cast<uint32_t>(bits)));
    if constexpr (!kWriting) bits = static_cast<int32_t>(bitsInFiles(passed));
  }
  void cmc(GcDbIndexedColor& color) {
    if (version() < kR2004) return bs(color.index);
    const GcCmEntityColor passed = m_io.rec.cmc(color.color());
    if constexpr (!kWriting) color = GcDbIndexedColor(passed);
  }
  void h(unsigned kind, GcDbObjectId& value) { set(value, m_io.rec.h(kind, value)); }

  // Constants that no class keeps. A reader takes any value.
  void zeroB() { m_io.rec.b(false); }

  // A count and that many elements of at least `leastBits` bits each.
  template <class T, class F>
  void list(GcArray<T>& array, Count how, unsigned leastBits, const F& each) {
    sized(array, passCount(array.length(), how, leastBits), leastBits, each);
  }
  // Elements whose number is known: those that lack are made, those beyond it are not written.
  template <class T, class F>
  void sized(GcArray<T>& array, int count, unsigned leastBits, const F& each) {
    if constexpr (!kWriting) {
      array.clear();
      array.reserve(m_io.rec.count(count, leastBits));
    }
    for (int i = 0; i < count && !failed(); ++i) {
      if (i >= array.length()) {
        T lacking{};
        if constexpr (kWriting) {
          each(lacking);
          continue;
        } else {
          array.append(std::move(lacking));
        }
      }
      each(array[i]);
    }
  }
  int passCount(int held, Count how, unsigned leastBits) {
    int count = held;
    switch (how) {
      case Count::RC: count = static_cast<int>(m_io.rec.rc(static_cast<unsigned>(held))); break;
      case Count::BS: count = static_cast<uint16_t>(m_io.rec.bs(static_cast<int16_t>(held))); break;
      case Count::BL: count = m_io.rec.bl(held); break;
      case Count::RL: count = static_cast<int32_t>(m_io.rec.rl(static_cast<uint32_t>(held))); break;
    }
    return m_io.rec.count(count, leastBits);
  }
  // Bytes of a known number.
  void bytes(GcArray<uint8_t>& value, size_t size) {
    if constexpr (kWriting)
      m_io.rec.bytes(value, size);
    else
      value = m_io.rec.bytes(value, size);
  }

 private:
  // Files leave the index of a colour by layer or block out.
  static uint32_t bitsInFiles(GcCmEntityColor color) {
    return color.isByLayer() || color.isByBlock() ? color.bits() & 0xFF000000u : color.bits();
  }
  template <class T, class V>
  static void set(T& value, const V& passed) {
    if constexpr (!kWriting) value = static_cast<T>(passed);
  }

  Io& m_io;
};

namespace packing {

template <class Class, class Io>
void passAll(Io& io) {
  Pass<Io> pass(io);
  GcDbRecordOf<Class>::pass(pass, *static_cast<Class*>(static_cast<GcDbObject*>(io.object)));
}

// The packing of a class that passes its members itself.
template <class Class>
struct Passed {
  static constexpr PackRow kRows[1] = {piece(passAll<Class, PieceIn>, passAll<Class, PieceOut>, {})};
  static constexpr ClassPacking named(const char* className) {
    ClassPacking packing = packingOf(className, kRows);
    if constexpr (requires(const Class& object) { GcDbRecordOf<Class>::isWhole(object, 0); })
      packing.isWhole = [](const GcDbObject& object, int version) {
        return GcDbRecordOf<Class>::isWhole(static_cast<const Class&>(object), version);
      };
    return packing;
  }
};

}  // namespace packing

}  // namespace gc::dwg
