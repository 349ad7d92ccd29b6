#include "host/db/objects/dimassoc.h"

#include <iterator>

#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbDimAssoc, "AcDbDimAssoc")

namespace {

constexpr GcDbField kRefFields[] = {
    field<&GcDbDimAssocRef::className>(1, "className", Is::Plain),
    field<&GcDbDimAssocRef::snapType>(72, "snapType", Is::Plain),
    list<&GcDbDimAssocRef::objects, 331, Is::SoftPointer>(-1, "objects"),
    field<&GcDbDimAssocRef::subentityType>(73, "subentityType", Is::Plain),
    field<&GcDbDimAssocRef::marker>(91, "marker", Is::Plain),
    list<&GcDbDimAssocRef::externalPath, 301>(-1, "externalPath"),
    field<&GcDbDimAssocRef::parameter>(40, "parameter", Is::Plain),
    field<&GcDbDimAssocRef::point>(10, "point", Is::WcsPoint),
    list<&GcDbDimAssocRef::crossing, 332, Is::SoftPointer>(-1, "crossing"),
    field<&GcDbDimAssocRef::crossingType>(74, "crossingType", Is::Plain)
        .when<&GcDbDimAssocRef::isIntersection>()
        .readAnyway(),
    field<&GcDbDimAssocRef::crossingMarker>(92, "crossingMarker", Is::Plain)
        .when<&GcDbDimAssocRef::isIntersection>()
        .readAnyway(),
    list<&GcDbDimAssocRef::crossingPath, 302>(-1, "crossingPath"),
    field<&GcDbDimAssocRef::hasLast>(75, "hasLast", Is::Plain),
};

}  // namespace

const GcDbField GcDbDimAssoc::kFields[] = {
    marker("AcDbDimAssoc"),
    field<&GcDbDimAssoc::m_dimension>(330, "dimension", Is::SoftPointer),
    field<&GcDbDimAssoc::m_associativity>(90, "associativity", Is::Plain),
    field<&GcDbDimAssoc::m_acrossSpaces>(70, "acrossSpaces", Is::Plain),
    field<&GcDbDimAssoc::m_rotatedType>(71, "rotatedType", Is::Plain),
    each<&GcDbDimAssoc::m_refs>(-1, "refs", kRefFields),
};
GCDB_FIELD_COUNT(GcDbDimAssoc);
