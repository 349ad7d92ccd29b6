#include "host/db/objects/contextdata.h"

#include <iterator>

#include "host/db/describe/fieldio.h"
#include "host/db/describe/rest.h"

GCDB_DEFINE_CLASS(GcDbObjectContextData, "AcDbObjectContextData")
GCDB_DEFINE_CLASS(GcDbAnnotScaleObjectContextData, "AcDbAnnotScaleObjectContextData")
GCDB_DEFINE_CLASS(GcDbTextObjectContextData, "AcDbTextObjectContextData")
GCDB_DEFINE_CLASS(GcDbMTextAttributeObjectContextData, "AcDbMTextAttributeObjectContextData")
GCDB_DEFINE_CLASS(GcDbMTextObjectContextData, "AcDbMTextObjectContextData")
GCDB_DEFINE_CLASS(GcDbBlkRefObjectContextData, "AcDbBlkRefObjectContextData")
GCDB_DEFINE_CLASS(GcDbLeaderObjectContextData, "AcDbLeaderObjectContextData")
GCDB_DEFINE_CLASS(GcDbFcfObjectContextData, "AcDbFcfObjectContextData")
GCDB_DEFINE_CLASS(GcDbDimensionObjectContextData, "AcDbDimensionObjectContextData")

// What a class adds stands in the section of the scale.
const GcDbField GcDbObjectContextData::kFields[] = {
    marker("AcDbObjectContextData"),
    field<&GcDbObjectContextData::m_version>(70, "version", Is::Plain),
    field<&GcDbObjectContextData::m_isDefault>(290, "isDefault", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbObjectContextData);

const GcDbField GcDbAnnotScaleObjectContextData::kFields[] = {
    marker("AcDbAnnotScaleObjectContextData"),
    field<&GcDbAnnotScaleObjectContextData::m_scaleId>(340, "scale", Is::HardPointer),
};
GCDB_FIELD_COUNT(GcDbAnnotScaleObjectContextData);

const GcDbField GcDbTextObjectContextData::kFields[] = {
    field<&GcDbTextObjectContextData::m_horizontal>(70, "horizontalMode", Is::Plain),
    field<&GcDbTextObjectContextData::m_rotationRad>(50, "rotation", Is::Plain),
    field<&GcDbTextObjectContextData::m_position>(10, "position", Is::Plain),
    field<&GcDbTextObjectContextData::m_alignment>(11, "alignment", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbTextObjectContextData);

const GcDbField GcDbMTextAttributeObjectContextData::kFields[] = {
    field<&GcDbMTextAttributeObjectContextData::m_hasContext>(290, "hasContext", Is::Plain),
    rest<&GcDbMTextAttributeObjectContextData::m_context>("context"),
};
GCDB_FIELD_COUNT(GcDbMTextAttributeObjectContextData);

#define GC_COLUMNS(row) row.when<&GcDbMTextObjectContextData::hasColumns>().readAnyway()
const GcDbField GcDbMTextObjectContextData::kFields[] = {
    field<&GcDbMTextObjectContextData::m_attachment>(70, "attachment", Is::Plain),
    field<&GcDbMTextObjectContextData::m_position>(10, "position", Is::Plain),
    field<&GcDbMTextObjectContextData::m_direction>(11, "direction", Is::Plain),
    field<&GcDbMTextObjectContextData::m_width>(40, "width", Is::Plain),
    field<&GcDbMTextObjectContextData::m_height>(41, "height", Is::Plain),
    field<&GcDbMTextObjectContextData::m_actualWidth>(42, "actualWidth", Is::Plain),
    field<&GcDbMTextObjectContextData::m_actualHeight>(43, "actualHeight", Is::Plain),
    field<&GcDbMTextObjectContextData::m_columnType>(71, "columnType", Is::Plain),
    GC_COLUMNS(field<&GcDbMTextObjectContextData::m_columnCount>(72, "columnCount", Is::Plain)),
    GC_COLUMNS(field<&GcDbMTextObjectContextData::m_columnWidth>(44, "columnWidth", Is::Plain)),
    GC_COLUMNS(field<&GcDbMTextObjectContextData::m_gutter>(45, "gutter", Is::Plain)),
    GC_COLUMNS(field<&GcDbMTextObjectContextData::m_hasAutoHeight>(73, "hasAutoHeight", Is::Plain)),
    GC_COLUMNS(field<&GcDbMTextObjectContextData::m_isReversed>(74, "isReversed", Is::Plain)),
    list<&GcDbMTextObjectContextData::m_heights, 46>(-1, "heights")
        .when<&GcDbMTextObjectContextData::hasHeights>()
        .readAnyway(),
};
GCDB_FIELD_COUNT(GcDbMTextObjectContextData);
#undef GC_COLUMNS

const GcDbField GcDbBlkRefObjectContextData::kFields[] = {
    rest<&GcDbBlkRefObjectContextData::m_place>("place"),
};
GCDB_FIELD_COUNT(GcDbBlkRefObjectContextData);

const GcDbField GcDbLeaderObjectContextData::kFields[] = {
    list<&GcDbLeaderObjectContextData::m_points, 10>(70, "points"),
    field<&GcDbLeaderObjectContextData::m_xDirection>(11, "xDirection", Is::Plain),
    field<&GcDbLeaderObjectContextData::m_isOnXDirection>(290, "isOnXDirection", Is::Plain),
    field<&GcDbLeaderObjectContextData::m_insertionOffset>(12, "insertionOffset", Is::Plain),
    field<&GcDbLeaderObjectContextData::m_endPointOffset>(13, "endPointOffset", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbLeaderObjectContextData);

const GcDbField GcDbFcfObjectContextData::kFields[] = {
    field<&GcDbFcfObjectContextData::m_location>(10, "location", Is::Plain),
    field<&GcDbFcfObjectContextData::m_direction>(11, "direction", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbFcfObjectContextData);

const GcDbField GcDbDimensionObjectContextData::kFields[] = {
    field<&GcDbDimensionObjectContextData::m_blockId>(2, "block", Is::BlockName),
    field<&GcDbDimensionObjectContextData::m_flag293>(293, "flag293", Is::Plain),
    field<&GcDbDimensionObjectContextData::m_textPosition>(10, "textPosition", Is::Plain),
    field<&GcDbDimensionObjectContextData::m_isDefaultPlace>(294, "isDefaultPlace", Is::Plain),
    field<&GcDbDimensionObjectContextData::m_textRotationRad>(140, "textRotation", Is::Plain),
    field<&GcDbDimensionObjectContextData::m_forcesLine>(298, "forcesLine", Is::Plain),
    field<&GcDbDimensionObjectContextData::m_suppressesOutside>(291, "suppressesOutside", Is::Plain),
    field<&GcDbDimensionObjectContextData::m_fits>(70, "fits", Is::Plain),
    field<&GcDbDimensionObjectContextData::m_textInside>(292, "textInside", Is::Plain),
    field<&GcDbDimensionObjectContextData::m_movesText>(71, "movesText", Is::Plain),
    field<&GcDbDimensionObjectContextData::m_overrides>(280, "overrides", Is::Plain),
    field<&GcDbDimensionObjectContextData::m_hasSecondArrow>(295, "hasSecondArrow", Is::Plain),
    field<&GcDbDimensionObjectContextData::m_flipsSecondArrow>(296, "flipsSecondArrow", Is::Plain),
    field<&GcDbDimensionObjectContextData::m_flipsFirstArrow>(297, "flipsFirstArrow", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbDimensionObjectContextData);

#define GC_ONE_POINT(Class, name)                     \
  GCDB_DEFINE_CLASS(Class, name)                      \
  const GcDbField Class::kFields[] = {                \
      field<&Class::m_first>(11, "point", Is::Plain), \
  };                                                  \
  GCDB_FIELD_COUNT(Class)
#define GC_TWO_POINTS(Class, name, first, second)                \
  GCDB_DEFINE_CLASS(Class, name)                                 \
  const GcDbField Class::kFields[] = {                           \
      field<&Class::m_first>(first, "point", Is::Plain),         \
      field<&Class::m_second>(second, "secondPoint", Is::Plain), \
  };                                                             \
  GCDB_FIELD_COUNT(Class)
GC_ONE_POINT(GcDbAlignedDimensionObjectContextData, "AcDbAlignedDimensionObjectContextData");
GC_ONE_POINT(GcDbAngularDimensionObjectContextData, "AcDbAngularDimensionObjectContextData");
GC_ONE_POINT(GcDbRadialDimensionObjectContextData, "AcDbRadialDimensionObjectContextData");
GC_TWO_POINTS(GcDbDiametricDimensionObjectContextData, "AcDbDiametricDimensionObjectContextData", 11, 12);
GC_TWO_POINTS(GcDbOrdinateDimensionObjectContextData, "AcDbOrdinateDimensionObjectContextData", 11, 12);
GC_TWO_POINTS(GcDbRadialDimensionLargeObjectContextData, "AcDbRadialDimensionLargeObjectContextData", 12, 13);
#undef GC_ONE_POINT
#undef GC_TWO_POINTS
