// How the fields of a class are packed in DWG records: the order and the bit codes, one table per class
// (host/dwg/packing). A row names a field by the group code it has in the class's own description and says how its
// value is packed; where the value lives and what it means stays in the description. One loop goes over the table in
// both directions.
//
//   section("AcDbCircle"), field(Op::BD3, 10), field(Op::BD, 40), field(Op::BT, 39), field(Op::BE, 210),
//   store(0, Op::RC, flagsOf), field(Op::RD, 38).unless(0, 1),      // a number that later rows ask about
//   records(Op::BL, 90, kVertex),                                   // count, then the elements
//   piece(knots<PieceIn>, knots<PieceOut>, {40, 10, 41}),           // what no row can say
#pragma once

#include <cstdint>
#include <initializer_list>
#include <iterator>

#include "db/dbdefs.h"

class GcDbObject;

namespace gc::dwg {

class PieceIn;
class PieceOut;

enum class Op : uint8_t {
  Section,  // the rows that follow belong to this subclass of the description
  B,
  BB,
  BS,
  BL,
  BLL,
  RC,
  RS,
  RL,
  RLL,
  BD,
  RD,
  BT,
  BE,
  RD2,
  RD3,
  BD2,
  BD3,
  T,        // text
  CMC,      // colour
  H,        // reference
  Records,  // count, then elements
  Piece
};

struct PackRow {
  Op op = Op::Section;
  uint8_t since = 0;
  uint8_t before = 255;
  int16_t code = 0;        // group code in the class's description; 0: a constant that no class keeps
  int8_t nth = 0;          // which of the fields of that code in the section
  uint8_t handleCode = 0;  // H: 2..5; 0: by what the field means
  bool optional = false;   // the description may lack it: read and dropped, written as `constant`
  int8_t toRegister = -1;  // the value is kept for conditions of later rows
  int8_t ifRegister = -1;  // only when (register & mask) != 0 is `ifSet`
  bool ifSet = true;
  uint32_t ifMask = 0;
  Op countOp = Op::BL;  // Records
  double constant = 0;
  const char* name = nullptr;  // Section
  const PackRow* rows = nullptr;
  int16_t rowCount = 0;
  void (*in)(PieceIn&) = nullptr;
  void (*out)(PieceOut&) = nullptr;
  uint32_t (*compute)(PieceOut&) = nullptr;  // what a stored number is, from the fields in `args`
  int16_t args[16] = {};
  uint8_t argCount = 0;

  constexpr PackRow from(int version) const {
    PackRow row = *this;
    row.since = static_cast<uint8_t>(version);
    return row;
  }
  constexpr PackRow until(int version) const {
    PackRow row = *this;
    row.before = static_cast<uint8_t>(version);
    return row;
  }
  constexpr PackRow when(int reg, uint32_t mask) const {
    PackRow row = *this;
    row.ifRegister = static_cast<int8_t>(reg);
    row.ifMask = mask;
    return row;
  }
  constexpr PackRow unless(int reg, uint32_t mask) const {
    PackRow row = when(reg, mask);
    row.ifSet = false;
    return row;
  }
  constexpr PackRow keep(int reg) const {
    PackRow row = *this;
    row.toRegister = static_cast<int8_t>(reg);
    return row;
  }
  constexpr PackRow maybe(double otherwise = 0) const {
    PackRow row = *this;
    row.optional = true;
    row.constant = otherwise;
    return row;
  }
  constexpr PackRow number(int n) const {
    PackRow row = *this;
    row.nth = static_cast<int8_t>(n);
    return row;
  }
  constexpr PackRow as(int code_) const {  // H: the kind of reference
    PackRow row = *this;
    row.handleCode = static_cast<uint8_t>(code_);
    return row;
  }
  [[nodiscard]] bool isIn(int version) const { return version >= since && version < before; }
};

constexpr PackRow section(const char* subclass) {
  PackRow row;
  row.name = subclass;
  return row;
}

constexpr PackRow field(Op op, int code) {
  PackRow row;
  row.op = op;
  row.code = static_cast<int16_t>(code);
  return row;
}

constexpr PackRow fixed(Op op, double value = 0) {
  PackRow row;
  row.op = op;
  row.constant = value;
  row.optional = true;
  return row;
}

namespace packing {
constexpr void setArgs(PackRow& row, std::initializer_list<int> codes) {
  for (const int code : codes) row.args[row.argCount++] = static_cast<int16_t>(code);
}
}  // namespace packing

// A number computed from fields when writing, kept in register `reg`.
constexpr PackRow store(int reg, Op op, uint32_t (*compute)(PieceOut&), std::initializer_list<int> codes) {
  PackRow row;
  row.op = op;
  row.toRegister = static_cast<int8_t>(reg);
  row.compute = compute;
  packing::setArgs(row, codes);
  return row;
}

constexpr PackRow piece(void (*in)(PieceIn&), void (*out)(PieceOut&), std::initializer_list<int> codes) {
  PackRow row;
  row.op = Op::Piece;
  row.in = in;
  row.out = out;
  packing::setArgs(row, codes);
  return row;
}

// `code`: that of the count, or of the elements' first field where files have no count.
template <int N>
constexpr PackRow records(Op countOp, int code, const PackRow (&rows)[N]) {
  PackRow row;
  row.op = Op::Records;
  row.code = static_cast<int16_t>(code);
  row.countOp = countOp;
  row.rows = rows;
  row.rowCount = N;
  return row;
}

// The packing of one class, by its run-time name.
struct ClassPacking {
  const char* className;  // "AcDbLine"
  const PackRow* rows;
  int rowCount;
  // Whether a record says all of an object; null when it always does. What it does not goes as a proxy with its groups.
  bool (*isWhole)(const GcDbObject& object, int version) = nullptr;
};

template <int N>
constexpr ClassPacking packingOf(const char* className, const PackRow (&rows)[N]) {
  return {className, rows, N, nullptr};
}

inline constexpr int kR13 = GcDb::kDHL_AC1012;
inline constexpr int kR14 = GcDb::kDHL_AC1014;
inline constexpr int kR2000 = GcDb::kDHL_AC1015;
inline constexpr int kR2004 = GcDb::kDHL_AC1018;
inline constexpr int kR2007 = GcDb::kDHL_AC1021;
inline constexpr int kR2010 = GcDb::kDHL_AC1024;
inline constexpr int kR2013 = GcDb::kDHL_AC1027;
inline constexpr int kR2018 = GcDb::kDHL_AC1032;

}  // namespace gc::dwg
