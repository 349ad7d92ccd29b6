#include "host/db/objects/filters.h"

#include <iterator>

#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbSpatialFilter, "AcDbSpatialFilter")
GCDB_DEFINE_CLASS(GcDbFieldList, "AcDbFieldList")
GCDB_DEFINE_CLASS(GcDbLayerFilter, "AcDbLayerFilter")
GCDB_DEFINE_CLASS(GcDbIdBuffer, "AcDbIdBuffer")

const GcDbField GcDbSpatialFilter::kFields[] = {
    marker("AcDbFilter"),
    marker("AcDbSpatialFilter"),
    list<&GcDbSpatialFilter::m_clip, 10>(70, "clip"),
    field<&GcDbSpatialFilter::m_normal>(210, "normal", Is::Direction),
    field<&GcDbSpatialFilter::m_origin>(11, "origin", Is::Plain),
    field<&GcDbSpatialFilter::m_isShown>(71, "isShown", Is::Plain),
    field<&GcDbSpatialFilter::m_hasFront>(72, "hasFront", Is::Plain),
    field<&GcDbSpatialFilter::m_front>(40, "front", Is::Plain).when<&GcDbSpatialFilter::clipsFront>(),
    field<&GcDbSpatialFilter::m_hasBack>(73, "hasBack", Is::Plain),
    field<&GcDbSpatialFilter::m_back>(41, "back", Is::Plain).when<&GcDbSpatialFilter::clipsBack>(),
    list<&GcDbSpatialFilter::m_matrices, 40>(-1, "matrices"),
};
GCDB_FIELD_COUNT(GcDbSpatialFilter);

const GcDbField GcDbFieldList::kFields[] = {
    marker("AcDbIdSet"),
    list<&GcDbFieldList::m_fields, 330, Is::SoftPointer>(90, "fields"),
    marker("AcDbFieldList"),
};
GCDB_FIELD_COUNT(GcDbFieldList);

const GcDbField GcDbLayerFilter::kFields[] = {
    marker("AcDbFilter"),
    marker("AcDbLayerFilter"),
    list<&GcDbLayerFilter::m_names, 8>(-1, "names"),
};
GCDB_FIELD_COUNT(GcDbLayerFilter);

const GcDbField GcDbIdBuffer::kFields[] = {
    marker("AcDbIdBuffer"),
    list<&GcDbIdBuffer::m_ids, 330, Is::SoftPointer>(-1, "ids"),
};
GCDB_FIELD_COUNT(GcDbIdBuffer);
