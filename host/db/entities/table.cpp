#include "host/db/entities/table.h"

#include <iterator>

#include "host/db/describe/fieldio.h"
#include "host/db/describe/rest.h"

GCDB_DEFINE_CLASS(GcDbTable, "AcDbTable")

const GcDbField GcDbTable::kFields[] = {
    marker("AcDbTable"),
    field<&GcDbTable::m_version>(280, "version", Is::Plain, Write::UnlessDefault).orElse(kNoVersion),
    field<&GcDbTable::m_styleId>(342, "style", Is::HardPointer),
    field<&GcDbTable::m_blockRecordId>(343, "blockRecord", Is::HardPointer),
    field<&GcDbTable::m_direction>(11, "direction", Is::WcsVector).orAxis(0),
    rest<&GcDbTable::m_cells>("cells"),
};
GCDB_FIELD_COUNT(GcDbTable);
