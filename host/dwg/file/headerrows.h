// The header section of a file: every setting in the order in which it is packed.
#pragma once

#include <cstdint>
#include <span>

#include "db/database.h"
#include "host/dwg/record/packrow.h"

namespace gc::dwg {

enum class HeaderOp : uint8_t {
  B,
  BS,
  BL,
  BLL,
  RC,
  BD,
  BD3,
  RD2,
  T,
  CMC,
  H,
  Time,           // days and milliseconds
  Seed,           // the next free handle
  Table,          // a symbol table
  Known,          // a record or dictionary the file points out
  Flags,          // several settings in the bits of one number
  PlotStyleType,  // $CEPSNTYPE and, when it is 3, $CEPSNID
};

enum class KnownRecord : uint8_t {
  kGroups,
  kMlineStyles,
  kRoot,
  kLayouts,
  kPlotSettings,
  kPlotStyles,
  kMaterials,
  kColors,
  kVisualStyles,
  kPaperSpace,
  kModelSpace,
  kByLayer,
  kByBlock,
  kContinuous,
  kCount
};

struct HeaderRow {
  HeaderOp op;
  const char* name = nullptr;  // null: a value no setting has
  int16_t code = 0;            // group code of the setting
  double constant = 0;         // written where the drawing has no such setting
  uint8_t index = 0;           // Table, Known
  uint8_t since = 0;
  uint8_t before = 255;

  constexpr HeaderRow from(int version) const {
    HeaderRow row = *this;
    row.since = static_cast<uint8_t>(version);
    return row;
  }
  constexpr HeaderRow until(int version) const {
    HeaderRow row = *this;
    row.before = static_cast<uint8_t>(version);
    return row;
  }
  constexpr HeaderRow orElse(double value) const {
    HeaderRow row = *this;
    row.constant = value;
    return row;
  }
  [[nodiscard]] bool isIn(int version) const { return version >= since && version < before; }
};

std::span<const HeaderRow> headerRows();

}  // namespace gc::dwg
