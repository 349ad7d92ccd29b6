// Styles of tables: of their rows as group files have them, of cells as DWG files have them since R2010 and maps of cell
// styles have them everywhere.
#pragma once

#include "db/object.h"
#include "host/db/describe/group.h"
#include "host/db/describe/indexedcolor.h"
#include "host/db/describe/recordof.h"

struct GcDbField;

struct GcDbTableBorder {
  int16_t weight = -2;
  bool isVisible = true;
  GcDbIndexedColor color{0};
};

// Of the data, the title and the header.
struct GcDbTableRowStyle {
  static constexpr int kBorders = 6;  // above, between rows, below, left, between columns, right

  GcDbObjectId textStyle;
  double textHeight = 4.5;
  int16_t alignment = 5;
  GcDbIndexedColor textColor{0};
  GcDbIndexedColor fillColor{7};
  bool isFilled = false;
  int32_t dataType = 512;  // and its unit and format: since R2007
  int32_t unit = 0;
  GcString format;
  GcDbTableBorder borders[kBorders];
};

class GcDbTableStyle : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbTableStyle);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbTableStyle() = default;

 private:
  friend struct GcDbRecordOf<GcDbTableStyle>;
  [[nodiscard]] bool hasVersion() const { return m_version != kNoVersion; }

  static constexpr int16_t kNoVersion = -1;

  int16_t m_version = kNoVersion;
  GcString m_name;
  int16_t m_flow = 0;  // 0 down, 1 up
  int16_t m_flags = 0;
  double m_horizontalMargin = 1.5;
  double m_verticalMargin = 1.5;
  bool m_isTitleSuppressed = false;
  bool m_isHeaderSuppressed = false;
  GcArray<GcDbTableRowStyle> m_rows;
  GcDbGroupList m_cellStyles;  // as DWG files have them since R2010
};

class GcDbCellStyleMap : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbCellStyleMap);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbCellStyleMap() = default;

 private:
  friend struct GcDbRecordOf<GcDbCellStyleMap>;

  GcDbGroupList m_styles;
};
