// Styles of tables and their cells, settings of renderers.
//
// Up to R2007 a record of a table style has its three rows as groups have them. Since R2010 it has cell styles: the
// table's, then those of title, header, data and what users named; maps of cell styles have the same ones.
#include <string_view>

#include "host/db/objects/tablestyle.h"
#include "host/dwg/record/grouppass.h"

namespace {

constexpr int kTitle = 1, kHeader = 2, kData = 3;  // numbers of cell styles
constexpr int kBorders = GcDbTableRowStyle::kBorders;

template <class Groups>
void passContentFormat(Groups& g) {
  g.word(300, GC_T("CONTENTFORMAT"));
  g.word(1, GC_T("CONTENTFORMAT_BEGIN"));
  g.bl(90);   // what differs from the style
  g.bl(91);   // flags
  g.bl(92);   // kind of value
  g.bl(93);   // its unit
  g.t(300);   // its format
  g.bd(40);   // rotation
  g.bd(140);  // scale of blocks
  g.bl(94);   // alignment
  g.color(62);
  g.h(340, 5);  // text style
  g.bd(144);    // text height
  g.word(309, GC_T("CONTENTFORMAT_END"));
}

template <class Groups>
void passBorder(Groups& g) {
  if (g.bl(95) == 0) return;  // which one, as a bit
  g.word(302, GC_T("GRIDFORMAT"));
  g.word(1, GC_T("GRIDFORMAT_BEGIN"));
  g.bl(90);
  g.bl(91);
  g.color(62);
  g.bl(92);     // weight
  g.h(340, 5);  // linetype
  g.bl(93);     // hidden
  g.bd(40);     // between double lines
  g.word(309, GC_T("GRIDFORMAT_END"));
}

template <class Groups>
void passMargins(Groups& g) {
  constexpr int kMargins = 6;
  if (g.bs(171) == 0) return;
  g.word(301, GC_T("MARGIN"));
  g.word(1, GC_T("CELLMARGIN_BEGIN"));
  for (int i = 0; i < kMargins; ++i) g.bd(40);
  g.word(309, GC_T("CELLMARGIN_END"));
}

// A cell style with its number, its kind and its name.
template <class Groups>
void passCellStyle(Groups& g) {
  g.word(300, GC_T("CELLSTYLE"));
  g.word(1, GC_T("TABLEFORMAT_BEGIN"));
  g.bl(90);
  if (g.bs(170) != 0) {
    g.bl(91);
    g.bl(92);
    g.color(62);  // of the background
    g.bl(93);
    passContentFormat(g);
    passMargins(g);
    for (int i = g.count(94, 2); i > 0 && !g.failed(); --i) passBorder(g);
  }
  g.word(309, GC_T("TABLEFORMAT_END"));
  g.word(1, GC_T("CELLSTYLE_BEGIN"));
  g.bl(90);
  g.bl(91);
  g.t(300);
  g.word(309, GC_T("CELLSTYLE_END"));
}

}  // namespace

template <>
struct GcDbRecordOf<GcDbCellStyleMap> {
  template <class Pass>
  static void pass(Pass& pass, GcDbCellStyleMap& map) {
    gc::dwg::GroupPass g(pass, map.m_styles);
    constexpr unsigned kLeastStyle = 8;
    for (int i = g.count(90, kLeastStyle); i > 0 && !g.failed(); --i) passCellStyle(g);
    g.finish();
  }
  static bool isWhole(const GcDbCellStyleMap& map, int version) { return gc::dwg::fitsRecord(map, version); }
};

namespace {

// A colour with its four bytes, in records of every version.
template <class Pass>
void passColor(Pass& pass, GcDbIndexedColor& color) {
  int32_t unused = 0, bits = gc::dwg::bitsInRecords(color), flags = 0;
  pass.bs(unused);
  pass.bl(bits);
  pass.rc(flags);
  pass.must(flags == 0);
  if constexpr (!Pass::kWriting) color = GcDbIndexedColor(GcCmEntityColor::fromBits(static_cast<uint32_t>(bits)));
}

// ---- rows made of cell styles ----------------------------------------------------------------------------

// Which border of a row a bit of a cell style's means: above 1, right 2, below 4, left 8, between columns 16, rows 32.
int borderOf(int64_t bit) {
  switch (bit) {
    case 1: return 0;
    case 2: return 5;
    case 4: return 2;
    case 8: return 3;
    case 16: return 4;
    case 32: return 1;
    default: return -1;
  }
}

class StyleReader {
 public:
  // The rows of data, title and header, in the order of groups.
  static GcArray<GcDbTableRowStyle> rowsOf(const GcDbGroupList& groups) {
    StyleReader reader;
    GcDbGroupList::Cursor cursor(groups);
    for (GcDbGroup group; cursor.next(group);) reader.take(group);
    return reader.m_rows;
  }

 private:
  enum class In { Head, Cell, Content, Border, Name };

  StyleReader() {
    for (int i = 0; i < 3; ++i) m_rows.append(GcDbTableRowStyle());
  }

  void take(const GcDbGroup& group) {
    if (group.kind == GcDbGroupKind::Text && enter(group.text)) return;
    switch (m_in) {
      case In::Cell:
        if (isColor(group, m_row.fillColor)) m_row.isFilled = m_row.fillColor.index != GcDbIndexedColor::kNoneIndex;
        if (group.code == 95) m_border = borderOf(group.asInt());
        return;
      case In::Content: takeContent(group); return;
      case In::Border: takeBorder(group); return;
      case In::Name:
        if (group.code == 90) finish(static_cast<int>(group.asInt()));
        return;
      default: return;
    }
  }

  // True for a word around a part.
  bool enter(GcView word) {
    if (word == GcView(GC_T("TABLEFORMAT_BEGIN"))) {
      m_row = GcDbTableRowStyle();
      m_in = In::Cell;
    } else if (word == GcView(GC_T("CONTENTFORMAT_BEGIN"))) {
      m_in = In::Content;
    } else if (word == GcView(GC_T("GRIDFORMAT_BEGIN"))) {
      m_in = In::Border;
    } else if (word == GcView(GC_T("CONTENTFORMAT_END")) || word == GcView(GC_T("GRIDFORMAT_END"))) {
      m_in = In::Cell;
    } else if (word == GcView(GC_T("CELLSTYLE_BEGIN"))) {
      m_in = In::Name;
    } else if (word == GcView(GC_T("CELLSTYLE_END"))) {
      m_in = In::Head;
    } else {
      return false;
    }
    return true;
  }

  static bool isColor(const GcDbGroup& group, GcDbIndexedColor& color) {
    if (group.code == 62) color = GcDbIndexedColor(static_cast<int>(group.asInt()));
    if (group.code == 420) color.rgb = static_cast<int32_t>(group.asInt());
    return group.code == 62 || group.code == 420;
  }

  void takeContent(const GcDbGroup& group) {
    isColor(group, m_row.textColor);
    switch (group.code) {
      case 92: m_row.dataType = static_cast<int32_t>(group.asInt()); return;
      case 93: m_row.unit = static_cast<int32_t>(group.asInt()); return;
      case 300: m_row.format = toGcString(group.text); return;
      case 94: m_row.alignment = static_cast<int16_t>(group.asInt()); return;
      case 340: m_row.textStyle = group.id; return;
      case 144: m_row.textHeight = group.real; return;
      default: return;
    }
  }

  void takeBorder(const GcDbGroup& group) {
    if (m_border < 0) return;
    GcDbTableBorder& border = m_row.borders[m_border];
    isColor(group, border.color);
    if (group.code == 92) border.weight = static_cast<int16_t>(group.asInt());
    if (group.code == 93) border.isVisible = group.asInt() == 0;
  }

  void finish(int number) {
    constexpr int kUsualFill = 7;
    if (!m_row.isFilled) m_row.fillColor = GcDbIndexedColor(kUsualFill);
    if (number == kData) m_rows[0] = m_row;
    if (number == kTitle) m_rows[1] = m_row;
    if (number == kHeader) m_rows[2] = m_row;
    m_in = In::Head;
  }

  GcArray<GcDbTableRowStyle> m_rows;
  GcDbTableRowStyle m_row;
  In m_in = In::Head;
  int m_border = -1;
};

// ---- cell styles made of rows ----------------------------------------------------------------------------

class StyleWriter {
 public:
  StyleWriter(GcDbGroupList& out, double horizontalMargin, double verticalMargin)
      : m_out(out), m_horizontal(horizontalMargin), m_vertical(verticalMargin) {}

  void integer(int code, int64_t value) { m_out.put(GcDbGroup::ofInt(code, value)); }

  // `kind`: 1 a style of labels, 2 one of data.
  void style(const GcDbTableRowStyle& row, int number, int kind, const GCHAR* name, int32_t overrides,
             bool hasBorders) {
    constexpr int kMerged = 0x8000;
    word(300, GC_T("CELLSTYLE"));
    word(1, GC_T("TABLEFORMAT_BEGIN"));
    integer(90, 5);
    integer(170, 1);
    integer(91, overrides);
    integer(92, number == kTitle ? kMerged : 0);
    color(row.isFilled ? row.fillColor : GcDbIndexedColor(GcDbIndexedColor::kNoneIndex));
    integer(93, 1);
    content(row);
    margins();
    integer(94, hasBorders ? kBorders : 0);
    for (int bit = 1; hasBorders && bit <= 32; bit *= 2) border(row.borders[borderOf(bit)], bit);
    word(309, GC_T("TABLEFORMAT_END"));
    word(1, GC_T("CELLSTYLE_BEGIN"));
    integer(90, number);
    integer(91, kind);
    word(300, name);
    word(309, GC_T("CELLSTYLE_END"));
  }

 private:
  void word(int code, const GCHAR* text) { m_out.put(GcDbGroup::ofText(code, text)); }
  void real(int code, double value) { m_out.put(GcDbGroup::ofReal(code, value)); }
  void color(const GcDbIndexedColor& color) {
    integer(62, color.index);
    if (color.rgb != GcDbIndexedColor::kNoRgb) integer(420, color.rgb);
  }

  void content(const GcDbTableRowStyle& row) {
    word(300, GC_T("CONTENTFORMAT"));
    word(1, GC_T("CONTENTFORMAT_BEGIN"));
    integer(90, 0);
    integer(91, 0);
    integer(92, row.dataType);
    integer(93, row.unit);
    m_out.put(GcDbGroup::ofText(300, view(row.format)));
    real(40, 0);
    real(140, 1);
    integer(94, row.alignment);
    color(row.textColor);
    m_out.put(GcDbGroup::ofId(340, row.textStyle));
    real(144, row.textHeight);
    word(309, GC_T("CONTENTFORMAT_END"));
  }

  void margins() {
    constexpr double kSpacing = 3;  // times the margin
    integer(171, 1);
    word(301, GC_T("MARGIN"));
    word(1, GC_T("CELLMARGIN_BEGIN"));
    for (const double margin :
         {m_vertical, m_horizontal, m_vertical, m_horizontal, m_horizontal * kSpacing, m_vertical * kSpacing})
      real(40, margin);
    word(309, GC_T("CELLMARGIN_END"));
  }

  void border(const GcDbTableBorder& border, int bit) {
    constexpr double kBetweenLines = 0.75;  // times the margin
    integer(95, bit);
    word(302, GC_T("GRIDFORMAT"));
    word(1, GC_T("GRIDFORMAT_BEGIN"));
    integer(90, 0);
    integer(91, 1);
    color(border.color);
    integer(92, border.weight);
    m_out.put(GcDbGroup::ofId(340, GcDbObjectId()));
    integer(93, border.isVisible ? 0 : 1);
    real(40, m_vertical * kBetweenLines);
    word(309, GC_T("GRIDFORMAT_END"));
  }

  GcDbGroupList& m_out;
  double m_horizontal, m_vertical;
};

}  // namespace

template <>
struct GcDbRecordOf<GcDbTableStyle> {
  template <class Pass>
  static void pass(Pass& pass, GcDbTableStyle& style) {
    if (pass.version() < gc::dwg::kR2010)
      passRows(pass, style);
    else
      passCellStyles(pass, style);
  }
  static bool isWhole(const GcDbTableStyle& style, int version) {
    return style.m_rows.length() == kRows && gc::dwg::fitsRecord(style, version);
  }

 private:
  static constexpr int kRows = 3;
  static constexpr int32_t kUpwards = 0x10000;

  template <class Pass>
  static void passRows(Pass& pass, GcDbTableStyle& style) {
    constexpr unsigned kLeastRow = 60;
    pass.t(style.m_name);
    pass.bs(style.m_flow);
    pass.bs(style.m_flags);
    pass.bd(style.m_horizontalMargin);
    pass.bd(style.m_verticalMargin);
    pass.b(style.m_isTitleSuppressed);
    pass.b(style.m_isHeaderSuppressed);
    pass.sized(style.m_rows, kRows, kLeastRow, [&](GcDbTableRowStyle& row) { passRow(pass, row); });
  }

  template <class Pass>
  static void passRow(Pass& pass, GcDbTableRowStyle& row) {
    pass.h(5, row.textStyle);
    pass.bd(row.textHeight);
    pass.bs(row.alignment);
    passColor(pass, row.textColor);
    passColor(pass, row.fillColor);
    pass.b(row.isFilled);
    for (GcDbTableBorder& border : row.borders) {
      pass.bs(border.weight);
      pass.b(border.isVisible);
      passColor(pass, border.color);
    }
    if (pass.version() < gc::dwg::kR2007) return;
    pass.bl(row.dataType);
    pass.bl(row.unit);
    pass.t(row.format);
  }

  template <class Pass>
  static void passCellStyles(Pass& pass, GcDbTableStyle& style) {
    int32_t version = style.hasVersion() ? style.m_version : 0;
    pass.rc(version);
    if constexpr (!Pass::kWriting) style.m_version = static_cast<int16_t>(version);
    pass.t(style.m_name);
    GcDbGroupList made;
    if (Pass::kWriting && style.m_cellStyles.isEmpty()) made = cellStylesOf(style);
    gc::dwg::GroupPass g(pass, Pass::kWriting && !made.isEmpty() ? made : style.m_cellStyles);
    g.bl(90);
    g.bl(90);  // the next number of a style
    g.h(360, 3);
    passCellStyle(g);
    constexpr unsigned kLeastStyle = 10;
    for (int i = g.count(90, kLeastStyle); i > 0 && !g.failed(); --i) {
      g.bl(90);
      passCellStyle(g);
    }
    g.finish();
    if constexpr (!Pass::kWriting) takeRows(style);
  }

  static void takeRows(GcDbTableStyle& style) {
    style.m_rows = StyleReader::rowsOf(style.m_cellStyles);
    bool isFirst = true;
    int margins = 0;
    GcDbGroupList::Cursor cursor(style.m_cellStyles);
    for (GcDbGroup group; cursor.next(group) && margins < 2;) {
      if (group.code == 91 && isFirst) {
        style.m_flow = (group.asInt() & kUpwards) != 0 ? 1 : 0;
        isFirst = false;
      }
      if (group.code == 171) margins = group.asInt() == 0 ? 2 : -1;
      if (group.code != 40 || margins == 0) continue;
      (margins < 0 ? style.m_verticalMargin : style.m_horizontalMargin) = group.real;
      margins = margins < 0 ? 1 : 2;
    }
  }

  static GcDbGroupList cellStylesOf(const GcDbTableStyle& style) {
    constexpr int kTable = 4, kNextNumber = 101, kLabels = 1, kDataKind = 2;
    GcDbGroupList groups;
    if (style.m_rows.length() != kRows) return groups;
    StyleWriter out(groups, style.m_horizontalMargin, style.m_verticalMargin);
    out.integer(90, 0);
    out.integer(90, kNextNumber);
    groups.put(GcDbGroup::ofId(360, GcDbObjectId()));
    GcDbTableRowStyle table;
    table.textHeight = style.m_rows[0].textHeight;
    table.alignment = 1;
    out.style(table, kTable, kDataKind, GC_T("Table"), style.m_flow != 0 ? kUpwards : 0, false);
    out.integer(90, kRows);
    out.integer(90, kTitle);
    out.style(style.m_rows[1], kTitle, kLabels, GC_T("_TITLE"), 0, true);
    out.integer(90, kHeader);
    out.style(style.m_rows[2], kHeader, kLabels, GC_T("_HEADER"), 0, true);
    out.integer(90, kData);
    out.style(style.m_rows[0], kData, kDataKind, GC_T("_DATA"), 0, true);
    return groups;
  }
};

namespace {}  // namespace

namespace gc::dwg::packing {

void addTableStyles(std::vector<ClassPacking>& list) {
  list.push_back(Passed<GcDbTableStyle>::named("AcDbTableStyle"));
  list.push_back(Passed<GcDbCellStyleMap>::named("AcDbCellStyleMap"));
}

}  // namespace gc::dwg::packing
