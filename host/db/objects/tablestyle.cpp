#include "host/db/objects/tablestyle.h"

#include <iterator>

#include "host/db/describe/colorrows.h"
#include "host/db/describe/fieldio.h"
#include "host/db/describe/rest.h"

GCDB_DEFINE_CLASS(GcDbTableStyle, "AcDbTableStyle")
GCDB_DEFINE_CLASS(GcDbCellStyleMap, "AcDbCellStyleMap")

namespace {

using Row = GcDbTableRowStyle;

// A value of one of the six borders.
template <int Index, auto Member>
constexpr GcDbField borderRow(int code, const char* name) {
  GcDbField row = field<Member>(code, name, Is::Plain);
  row.at = [](void* record) -> void* { return &(static_cast<Row*>(record)->borders[Index].*Member); };
  return row;
}
template <int Index>
constexpr GcDbField borderColor(int code) {
  GcDbField row = field<&GcDbIndexedColor::index>(code, "borderColor", Is::Plain);
  row.at = [](void* record) -> void* { return &static_cast<Row*>(record)->borders[Index].color.index; };
  return row;
}

#define GC_BORDER(i)                                                 \
  borderRow<i, &GcDbTableBorder::weight>(274 + (i), "borderWeight"), \
      borderRow<i, &GcDbTableBorder::isVisible>(284 + (i), "borderVisible"), borderColor<i>(64 + (i))

constexpr GcDbField kRowFields[] = {
    field<&Row::textStyle>(7, "textStyle", Is::TextStyleName),
    field<&Row::textHeight>(140, "textHeight", Is::Plain),
    field<&Row::alignment>(170, "alignment", Is::Plain),
    colorIndexRow<&Row::textColor>(62, "textColor"),
    colorIndexRow<&Row::fillColor>(63, "fillColor"),
    field<&Row::isFilled>(283, "isFilled", Is::Plain),
    field<&Row::dataType>(90, "dataType", Is::Plain).orElse(512).from(GcDb::kDHL_AC1021),
    field<&Row::unit>(91, "unit", Is::Plain).from(GcDb::kDHL_AC1021),
    field<&Row::format>(1, "format", Is::Plain).from(GcDb::kDHL_AC1021),
    GC_BORDER(0),
    GC_BORDER(1),
    GC_BORDER(2),
    GC_BORDER(3),
    GC_BORDER(4),
    GC_BORDER(5),
};
#undef GC_BORDER

// Of what DWG files have and groups have not: no group has it.
constexpr int kNoGroup = 999;

}  // namespace

const GcDbField GcDbTableStyle::kFields[] = {
    marker("AcDbTableStyle"),
    field<&GcDbTableStyle::m_version>(280, "version", Is::Plain)
        .orElse(kNoVersion)
        .when<&GcDbTableStyle::hasVersion>()
        .readAnyway(),
    field<&GcDbTableStyle::m_name>(3, "name", Is::Plain),
    field<&GcDbTableStyle::m_flow>(70, "flow", Is::Plain),
    field<&GcDbTableStyle::m_flags>(71, "flags", Is::Plain),
    field<&GcDbTableStyle::m_horizontalMargin>(40, "horizontalMargin", Is::Plain),
    field<&GcDbTableStyle::m_verticalMargin>(41, "verticalMargin", Is::Plain),
    field<&GcDbTableStyle::m_isTitleSuppressed>(280, "isTitleSuppressed", Is::Plain),
    field<&GcDbTableStyle::m_isHeaderSuppressed>(281, "isHeaderSuppressed", Is::Plain),
    each<&GcDbTableStyle::m_rows>(-1, "rows", kRowFields),
    field<&GcDbTableStyle::m_cellStyles>(kNoGroup, "cellStyles", Is::Plain, Write::Never),
};
GCDB_FIELD_COUNT(GcDbTableStyle);

const GcDbField GcDbCellStyleMap::kFields[] = {
    marker("AcDbCellStyleMap"),
    rest<&GcDbCellStyleMap::m_styles>("styles"),
};
GCDB_FIELD_COUNT(GcDbCellStyleMap);
