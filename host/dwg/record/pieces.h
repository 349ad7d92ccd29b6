// What a piece of a packing (see packrow.h) works with: the record's streams and the fields it named, by position.
// PieceIn and PieceOut have the same calls; a piece is a template over them that says both directions at once:
//
//   template <class Io> void ends(Io& io) {
//     const bool flat = io.b(io.point(0).z == 0 && io.point(1).z == 0);
//     …
//   }
#pragma once

#include "host/dwg/record/bound.h"
#include "host/dwg/record/fieldvalue.h"
#include "host/dwg/record/recordio.h"

namespace gc::dwg {

// The elements of an array field, each a structure with rows of its own.
class Elements {
 public:
  Elements(const GcDbField* row, void* record) : m_row(row), m_array(row == nullptr ? nullptr : row->at(record)) {}
  [[nodiscard]] int size() const { return m_row == nullptr ? 0 : m_row->records->size(m_array); }
  [[nodiscard]] void* at(int index) const { return m_row->records->at(m_array, index); }
  void* append() { return m_row->records->append(m_array); }
  void reserve(int count) const {
    if (m_row != nullptr) m_row->records->reserve(m_array, count);
  }
  void clear() {
    if (m_row != nullptr) m_row->records->clear(m_array);
  }
  // The row of an element by its group code; null when there is none. Arrays have rows of their own.
  [[nodiscard]] const GcDbField* row(int code, int nth = 0) const {
    for (int i = 0; m_row != nullptr && i < m_row->rowCount; ++i) {
      const GcDbField& each = m_row->rows[i];
      if (each.kind != Kind::Records && each.code == code && nth-- == 0) return &each;
    }
    return nullptr;
  }
  [[nodiscard]] const GcDbField* arrayRow(int code, int nth = 0) const {
    for (int i = 0; m_row != nullptr && i < m_row->rowCount; ++i) {
      const GcDbField& each = m_row->rows[i];
      if (each.kind != Kind::Records || each.is == Is::Count || each.rows == nullptr) continue;
      if ((each.code == code || each.rows[0].code == code) && nth-- == 0) return &each;
    }
    return nullptr;
  }

 private:
  const GcDbField* m_row;
  void* m_array;
};

// One plain field of all elements of an array, which lie side by side: their rows are asked once, not per element.
// Valid until the array grows.
template <class T>
class Column {
 public:
  // Empty where the row is missing, or where files have the field in another form than the member.
  Column(const Elements& elements, const GcDbField* row) {
    const int size = elements.size();
    if (row == nullptr || row->get != nullptr || row->kind != gcdescribe::kindOf<T>() || size == 0) return;
    m_first = static_cast<char*>(row->at(elements.at(0)));
    if (size > 1) m_step = static_cast<char*>(row->at(elements.at(1))) - m_first;
    m_size = size;
  }
  [[nodiscard]] int size() const { return m_size; }
  T& operator[](int index) const { return *reinterpret_cast<T*>(m_first + index * m_step); }

 private:
  char* m_first = nullptr;
  std::ptrdiff_t m_step = 0;
  int m_size = 0;
};

template <class Record>
class PieceIo {
 public:
  static constexpr bool kWriting = Record::kWriting;
  PieceIo(Record& record, void* structure, const GcDbField* const* fields, uint32_t* shared)
      : rec(record), object(structure), args(fields), registers(shared) {}

  Record& rec;
  void* object;  // the described structure: the database object, or an element of an array
  const GcDbField* const* args;
  uint32_t* registers;

  [[nodiscard]] int version() const { return rec.version(); }
  [[nodiscard]] bool has(int i) const { return args[i] != nullptr; }

  // Fields. A field the class does not keep reads as zero and swallows what is set.
  [[nodiscard]] int64_t num(int i) const { return has(i) ? intOf(*args[i], object) : 0; }
  [[nodiscard]] double real(int i) const { return has(i) ? realOf(*args[i], object) : 0; }
  [[nodiscard]] GcGePoint3d point(int i) const { return has(i) ? pointOf(*args[i], object) : GcGePoint3d(); }
  [[nodiscard]] GcView text(int i) const { return has(i) ? textOf(*args[i], object) : GcView(); }
  [[nodiscard]] GcDbObjectId id(int i) const { return has(i) ? idOf(*args[i], object) : GcDbObjectId(); }
  [[nodiscard]] GcCmEntityColor color(int i) const { return has(i) ? colorOf(*args[i], object) : GcCmEntityColor(); }
  [[nodiscard]] Elements elements(int i) const { return {args[i], object}; }
  void setNum(int i, int64_t value) const {
    if (!kWriting && has(i)) setInt(*args[i], object, value);
  }
  void setReal(int i, double value) const {
    if (!kWriting && has(i)) dwg::setReal(*args[i], object, value);
  }
  void setPoint(int i, const GcGePoint3d& value) const {
    if (!kWriting && has(i)) dwg::setPoint(*args[i], object, value);
  }
  void setText(int i, GcView value) const {
    if (!kWriting && has(i)) dwg::setText(*args[i], object, value);
  }
  void setId(int i, GcDbObjectId value) const {
    if (!kWriting && has(i)) dwg::setId(*args[i], object, value);
  }
  void setColor(int i, GcCmEntityColor value) const {
    if (!kWriting && has(i)) dwg::setColor(*args[i], object, value);
  }

  // A field by one of the codes.
  void b(int i) { setNum(i, rec.b(num(i) != 0) ? 1 : 0); }
  void bb(int i) { setNum(i, rec.bb(static_cast<unsigned>(num(i)))); }
  void bs(int i) { setNum(i, rec.bs(static_cast<int>(num(i)))); }
  void bl(int i) { setNum(i, rec.bl(static_cast<int32_t>(num(i)))); }
  void bll(int i) { setNum(i, static_cast<int64_t>(rec.bll(static_cast<uint64_t>(num(i))))); }
  void rc(int i) { setNum(i, rec.rc(static_cast<unsigned>(num(i)))); }
  void rs(int i) { setNum(i, rec.rs(static_cast<unsigned>(num(i)))); }
  void rl(int i) { setNum(i, rec.rl(static_cast<uint32_t>(num(i)))); }
  void bd(int i) { setReal(i, rec.bd(real(i))); }
  void rd(int i) { setReal(i, rec.rd(real(i))); }
  void dd(int i, double otherwise) { setReal(i, rec.dd(real(i), otherwise)); }
  void bt(int i) { setReal(i, rec.bt(real(i))); }
  void be(int i) {
    const GcGePoint3d p = point(i);
    const GcGeVector3d v = rec.be({p.x, p.y, p.z});
    setPoint(i, {v.x, v.y, v.z});
  }
  void bd3(int i) { setPoint(i, rec.bd3(point(i))); }
  void rd3(int i) { setPoint(i, rec.rd3(point(i))); }
  void bd2(int i) {
    const GcGePoint3d p = point(i);
    const GcGePoint2d q = rec.bd2({p.x, p.y});
    setPoint(i, {q.x, q.y, p.z});
  }
  void rd2(int i) {
    const GcGePoint3d p = point(i);
    const GcGePoint2d q = rec.rd2({p.x, p.y});
    setPoint(i, {q.x, q.y, p.z});
  }
  void t(int i) { setText(i, rec.t(text(i))); }
  void cmc(int i) { setColor(i, rec.cmc(color(i))); }
  void h(int i, unsigned code) { setId(i, rec.h(code, id(i))); }
};

class PieceIn : public PieceIo<RecordIn> {
 public:
  using PieceIo<RecordIn>::PieceIo;
};

class PieceOut : public PieceIo<RecordOut> {
 public:
  using PieceIo<RecordOut>::PieceIo;
};

// All rows of a table, for one structure.
void unpackRows(RecordIn& record, const BoundTable& table, void* object, uint32_t* registers);
void packRows(RecordOut& record, const BoundTable& table, void* object, uint32_t* registers);

inline constexpr int kRegisters = 8;

}  // namespace gc::dwg
