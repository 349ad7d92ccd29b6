#include "host/db/objects/material.h"

#include <iterator>

#include "host/db/describe/fieldio.h"
#include "host/db/describe/rest.h"

GCDB_DEFINE_CLASS(GcDbMaterial, "AcDbMaterial")

const GcDbField GcDbMaterial::kFields[] = {
    marker("AcDbMaterial"),
    field<&GcDbMaterial::m_name>(1, "name", Is::Plain),
    rest<&GcDbMaterial::m_data>("data"),
};
GCDB_FIELD_COUNT(GcDbMaterial);
