// The fields of one element of an array, passed by their group codes. For pieces that walk structures by hand.
#pragma once

#include "host/dwg/record/pieces.h"

namespace gc::dwg::packing {

template <class Io>
class ElementFields {
 public:
  ElementFields(Io& io, const Elements& of, void* element) : m_io(io), m_of(of), m_element(element) {}

  [[nodiscard]] int64_t num(int code, int nth = 0) const {
    const GcDbField* row = m_of.row(code, nth);
    return row == nullptr ? 0 : intOf(*row, m_element);
  }
  void setNum(int code, int64_t value, int nth = 0) const {
    const GcDbField* row = m_of.row(code, nth);
    if (!Io::kWriting && row != nullptr) setInt(*row, m_element, value);
  }
  bool b(int code, int nth = 0) {
    const bool value = m_io.rec.b(num(code, nth) != 0);
    setNum(code, value ? 1 : 0, nth);
    return value;
  }
  int rc(int code, int nth = 0) {
    const auto value = static_cast<int>(m_io.rec.rc(static_cast<unsigned>(num(code, nth))));
    setNum(code, value, nth);
    return value;
  }
  int bs(int code, int nth = 0) {
    const int value = m_io.rec.bs(static_cast<int>(num(code, nth)));
    setNum(code, value, nth);
    return value;
  }
  int32_t bl(int code, int nth = 0) {
    const int32_t value = m_io.rec.bl(static_cast<int32_t>(num(code, nth)));
    setNum(code, value, nth);
    return value;
  }
  void bd(int code, int nth = 0) {
    const GcDbField* row = m_of.row(code, nth);
    const double value = m_io.rec.bd(row == nullptr ? 0 : realOf(*row, m_element));
    if (!Io::kWriting && row != nullptr) setReal(*row, m_element, value);
  }
  void rd2(int code, int nth = 0) {
    plane(code, nth, [&](const GcGePoint2d& p) { return m_io.rec.rd2(p); });
  }
  void bd3(int code, int nth = 0) {
    const GcDbField* row = m_of.row(code, nth);
    const GcGePoint3d value = m_io.rec.bd3(row == nullptr ? GcGePoint3d() : pointOf(*row, m_element));
    if (!Io::kWriting && row != nullptr) setPoint(*row, m_element, value);
  }
  void t(int code) {
    const GcDbField* row = m_of.row(code);
    const auto value = m_io.rec.t(row == nullptr ? GcView() : textOf(*row, m_element));
    if (!Io::kWriting && row != nullptr) setText(*row, m_element, value);
  }
  void cmc(int code) {
    const GcDbField* row = m_of.row(code);
    const GcCmEntityColor value = m_io.rec.cmc(row == nullptr ? GcCmEntityColor() : colorOf(*row, m_element));
    if (!Io::kWriting && row != nullptr) setColor(*row, m_element, value);
  }
  void h(int code, unsigned kind) {
    const GcDbField* row = m_of.row(code);
    const GcDbObjectId value = m_io.rec.h(kind, row == nullptr ? GcDbObjectId() : idOf(*row, m_element));
    if (!Io::kWriting && row != nullptr) setId(*row, m_element, value);
  }
  // The nth array of the element whose count or first field has the code.
  [[nodiscard]] Elements array(int code, int nth = 0) const { return {m_of.arrayRow(code, nth), m_element}; }

 private:
  template <class F>
  void plane(int code, int nth, const F& call) {
    const GcDbField* row = m_of.row(code, nth);
    const GcGePoint3d held = row == nullptr ? GcGePoint3d() : pointOf(*row, m_element);
    const GcGePoint2d value = call(GcGePoint2d(held.x, held.y));
    if (!Io::kWriting && row != nullptr) setPoint(*row, m_element, {value.x, value.y, held.z});
  }

  Io& m_io;
  const Elements& m_of;
  void* m_element;
};

// Passes `count` elements: those that are there, or new ones.
template <class Io, class F>
void eachElement(Io& io, Elements& elements, int count, const F& pass) {
  for (int i = 0; i < count && !io.rec.failed(); ++i) {
    void* element = Io::kWriting ? elements.at(i) : elements.append();
    ElementFields<Io> fields(io, elements, element);
    pass(fields);
  }
}

}  // namespace gc::dwg::packing
