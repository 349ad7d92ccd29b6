#include "host/db/objects/underlaydef.h"

#include <iterator>

#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbUnderlayDefinition, "AcDbUnderlayDefinition")
GCDB_DEFINE_CLASS(GcDbPdfDefinition, "AcDbPdfDefinition")
GCDB_DEFINE_CLASS(GcDbDwfDefinition, "AcDbDwfDefinition")
GCDB_DEFINE_CLASS(GcDbDgnDefinition, "AcDbDgnDefinition")

const GcDbField GcDbUnderlayDefinition::kFields[] = {
    marker("AcDbUnderlayDefinition"),
    field<&GcDbUnderlayDefinition::m_fileName>(1, "fileName", Is::Plain),
    field<&GcDbUnderlayDefinition::m_itemName>(2, "itemName", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbUnderlayDefinition);
