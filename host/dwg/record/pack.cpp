// The loop over packing tables. It is one text for both directions; the record's type decides whether values are
// taken from the bits or put into them.
#include "host/dwg/record/pieces.h"

namespace gc::dwg {

namespace {

template <class Record>
struct PieceFor;
template <>
struct PieceFor<RecordIn> {
  using Type = PieceIn;
};
template <>
struct PieceFor<RecordOut> {
  using Type = PieceOut;
};

template <class Record>
int64_t passInt(Record& record, Op op, int64_t value) {
  switch (op) {
    case Op::B: return record.b(value != 0) ? 1 : 0;
    case Op::BB: return record.bb(static_cast<unsigned>(value));
    case Op::BS: return record.bs(static_cast<int>(value));
    case Op::BL: return record.bl(static_cast<int32_t>(value));
    case Op::BLL: return static_cast<int64_t>(record.bll(static_cast<uint64_t>(value)));
    case Op::RC: return record.rc(static_cast<unsigned>(value));
    case Op::RS: return record.rs(static_cast<unsigned>(value));
    case Op::RL: return record.rl(static_cast<uint32_t>(value));
    default: return static_cast<int64_t>(record.rll(static_cast<uint64_t>(value)));
  }
}

template <class Record>
double passReal(Record& record, Op op, double value) {
  switch (op) {
    case Op::BD: return record.bd(value);
    case Op::RD: return record.rd(value);
    default: return record.bt(value);
  }
}

template <class Record>
GcGePoint3d passPoint(Record& record, Op op, const GcGePoint3d& value) {
  switch (op) {
    case Op::BD3: return record.bd3(value);
    case Op::RD3: return record.rd3(value);
    case Op::BE: {
      const GcGeVector3d v = record.be({value.x, value.y, value.z});
      return {v.x, v.y, v.z};
    }
    default: {
      const GcGePoint2d p = op == Op::BD2 ? record.bd2({value.x, value.y}) : record.rd2({value.x, value.y});
      return {p.x, p.y, value.z};
    }
  }
}

template <class Record>
void passRows(Record& record, const BoundTable& table, void* object, uint32_t* registers);

template <class Record>
void passRecords(Record& record, const BoundRow& row, void* object, uint32_t* registers) {
  const GcDbField& field = *row.field;
  void* array = field.at(object);
  const int32_t held = Record::kWriting ? field.records->size(array) : 0;
  const int count = record.count(static_cast<int32_t>(passInt(record, row.pack->countOp, held)));
  if constexpr (!Record::kWriting) {
    field.records->clear(array);
    field.records->reserve(array, count);
  }
  for (int i = 0; i < count && !record.failed(); ++i) {
    void* element = Record::kWriting ? field.records->at(array, i) : field.records->append(array);
    passRows(record, *row.elements, element, registers);
  }
}

// A value without a field, or an integer of any width.
template <class Record>
void passInteger(Record& record, const BoundRow& row, void* object, uint32_t* registers) {
  const PackRow& pack = *row.pack;
  int64_t value = static_cast<int64_t>(pack.constant);
  if constexpr (Record::kWriting) {
    if (pack.compute != nullptr) {
      PieceOut piece(record, object, row.args, registers);
      value = pack.compute(piece);
    } else if (row.field != nullptr) {
      value = intOf(*row.field, object);
    }
  }
  value = passInt(record, pack.op, value);
  if (pack.toRegister >= 0) registers[pack.toRegister] = static_cast<uint32_t>(value);
  if constexpr (!Record::kWriting)
    if (row.field != nullptr) setInt(*row.field, object, value);
}

template <class Record>
void passRow(Record& record, const BoundRow& row, void* object, uint32_t* registers) {
  const PackRow& pack = *row.pack;
  const GcDbField* field = row.field;
  switch (pack.op) {
    case Op::Section: return;
    case Op::BD:
    case Op::RD:
    case Op::BT: {
      const double value = passReal(record, pack.op, field != nullptr ? realOf(*field, object) : pack.constant);
      if constexpr (!Record::kWriting)
        if (field != nullptr) setReal(*field, object, value);
      return;
    }
    case Op::BE:
    case Op::RD2:
    case Op::RD3:
    case Op::BD2:
    case Op::BD3: {
      const GcGePoint3d value = passPoint(record, pack.op, field != nullptr ? pointOf(*field, object) : GcGePoint3d());
      if constexpr (!Record::kWriting)
        if (field != nullptr) setPoint(*field, object, value);
      return;
    }
    case Op::T: {
      const auto value = record.t(field != nullptr ? textOf(*field, object) : GcView());
      if constexpr (!Record::kWriting)
        if (field != nullptr) setText(*field, object, value);
      return;
    }
    case Op::CMC: {
      const auto value = record.cmc(field != nullptr ? colorOf(*field, object) : GcCmEntityColor());
      if constexpr (!Record::kWriting)
        if (field != nullptr) setColor(*field, object, value);
      return;
    }
    case Op::H: {
      const unsigned code = pack.handleCode != 0 ? pack.handleCode : field != nullptr ? handleCodeOf(field->is) : 5u;
      const GcDbObjectId value = record.h(code, field != nullptr ? idOf(*field, object) : GcDbObjectId());
      if constexpr (!Record::kWriting)
        if (field != nullptr) setId(*field, object, value);
      return;
    }
    case Op::Records:
      if (field != nullptr) passRecords(record, row, object, registers);
      return;
    case Op::Piece: {
      typename PieceFor<Record>::Type piece(record, object, row.args, registers);
      if constexpr (Record::kWriting)
        pack.out(piece);
      else
        pack.in(piece);
      return;
    }
    default: passInteger(record, row, object, registers);
  }
}

template <class Record>
void passRows(Record& record, const BoundTable& table, void* object, uint32_t* registers) {
  const int version = record.version();
  for (const BoundRow& row : table.rows) {
    const PackRow& pack = *row.pack;
    if (!pack.isIn(version)) continue;
    if (pack.ifRegister >= 0 && ((registers[pack.ifRegister] & pack.ifMask) != 0) != pack.ifSet) continue;
    passRow(record, row, object, registers);
  }
}

}  // namespace

void unpackRows(RecordIn& record, const BoundTable& table, void* object, uint32_t* registers) {
  passRows(record, table, object, registers);
}

void packRows(RecordOut& record, const BoundTable& table, void* object, uint32_t* registers) {
  passRows(record, table, object, registers);
}

}  // namespace gc::dwg
