#include "host/db/objects/imagedef.h"

#include <iterator>

#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbRasterImageDef, "AcDbRasterImageDef")
GCDB_DEFINE_CLASS(GcDbRasterImageDefReactor, "AcDbRasterImageDefReactor")
GCDB_DEFINE_CLASS(GcDbRasterVariables, "AcDbRasterVariables")
GCDB_DEFINE_CLASS(GcDbWipeoutVariables, "AcDbWipeoutVariables")

const GcDbField GcDbRasterImageDef::kFields[] = {
    marker("AcDbRasterImageDef"),
    field<&GcDbRasterImageDef::m_version>(90, "version", Is::Plain),
    field<&GcDbRasterImageDef::m_fileName>(1, "fileName", Is::Plain),
    field<&GcDbRasterImageDef::m_size>(10, "size", Is::Plain),
    field<&GcDbRasterImageDef::m_pixelSize>(11, "pixelSize", Is::Plain),
    field<&GcDbRasterImageDef::m_isLoaded>(280, "isLoaded", Is::Plain),
    field<&GcDbRasterImageDef::m_units>(281, "units", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbRasterImageDef);

const GcDbField GcDbRasterImageDefReactor::kFields[] = {
    marker("AcDbRasterImageDefReactor"),
    field<&GcDbRasterImageDefReactor::m_version>(90, "version", Is::Plain),
    field<&GcDbRasterImageDefReactor::m_imageId>(330, "image", Is::SoftPointer)
        .filedAs(
            [](const void* record) {
              const auto& reactor = *static_cast<const GcDbRasterImageDefReactor*>(record);
              return GcDbGroup::ofId(330, reactor.m_imageId.isNull() ? reactor.ownerId() : reactor.m_imageId);
            },
            [](void* record, const GcDbGroup& group) {
              static_cast<GcDbRasterImageDefReactor*>(record)->m_imageId = group.id;
              return true;
            }),
};
GCDB_FIELD_COUNT(GcDbRasterImageDefReactor);

const GcDbField GcDbRasterVariables::kFields[] = {
    marker("AcDbRasterVariables"),
    field<&GcDbRasterVariables::m_version>(90, "version", Is::Plain),
    field<&GcDbRasterVariables::m_frame>(70, "frame", Is::Plain),
    field<&GcDbRasterVariables::m_quality>(71, "quality", Is::Plain),
    field<&GcDbRasterVariables::m_units>(72, "units", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbRasterVariables);

const GcDbField GcDbWipeoutVariables::kFields[] = {
    marker("AcDbWipeoutVariables"),
    field<&GcDbWipeoutVariables::m_frame>(70, "frame", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbWipeoutVariables);
