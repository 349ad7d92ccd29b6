#include "db/ucs.h"

#include <iterator>

#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbUCSTableRecord, "AcDbUCSTableRecord")

namespace {

constexpr GcDbField kOriginFields[] = {
    field<&GcDbUCSOrthoOrigin::view>(71, "view", Is::Plain),
    field<&GcDbUCSOrthoOrigin::origin>(13, "origin", Is::WcsPoint),
};

}  // namespace

const GcDbField GcDbUCSTableRecord::kFields[] = {
    marker("AcDbUCSTableRecord"),
    field<&GcDbUCSTableRecord::m_name>(2, "name", Is::Plain),
    field<&GcDbUCSTableRecord::m_flags>(70, "flags", Is::Plain),
    field<&GcDbUCSTableRecord::m_origin>(10, "origin", Is::WcsPoint),
    field<&GcDbUCSTableRecord::m_xAxis>(11, "xAxis", Is::Direction).orAxis(0),
    field<&GcDbUCSTableRecord::m_yAxis>(12, "yAxis", Is::Direction).orAxis(1),
    field<&GcDbUCSTableRecord::m_orthoView>(79, "orthoView", Is::Plain).from(GcDb::kDHL_AC1015),
    field<&GcDbUCSTableRecord::m_elevation>(146, "elevation", Is::Plain).from(GcDb::kDHL_AC1015),
    field<&GcDbUCSTableRecord::m_baseId>(346, "base", Is::HardPointer, Write::UnlessDefault).from(GcDb::kDHL_AC1015),
    each<&GcDbUCSTableRecord::m_orthoOrigins>(-1, "orthoOrigins", kOriginFields).from(GcDb::kDHL_AC1015),
};
GCDB_FIELD_COUNT(GcDbUCSTableRecord);
