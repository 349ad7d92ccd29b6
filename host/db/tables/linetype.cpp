#include "db/linetype.h"

#include <iterator>

#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbLinetypeTableRecord, "AcDbLinetypeTableRecord")

namespace {

constexpr GcDbField kDashFields[] = {
    field<&GcDbLinetypeDash::length>(49, "length", Is::Plain),
    field<&GcDbLinetypeDash::flags>(74, "flags", Is::Plain).from(GcDb::kDHL_AC1012),
    field<&GcDbLinetypeDash::shapeNumber>(75, "shapeNumber", Is::Plain)
        .when<&GcDbLinetypeDash::isComplex>()
        .from(GcDb::kDHL_AC1012),
    field<&GcDbLinetypeDash::styleId>(340, "style", Is::HardPointer)
        .when<&GcDbLinetypeDash::isComplex>()
        .from(GcDb::kDHL_AC1012),
    field<&GcDbLinetypeDash::scale>(46, "scale", Is::Plain)
        .when<&GcDbLinetypeDash::isComplex>()
        .from(GcDb::kDHL_AC1012),
    field<&GcDbLinetypeDash::rotationRad>(50, "rotation", Is::Plain)
        .when<&GcDbLinetypeDash::isComplex>()
        .from(GcDb::kDHL_AC1012),
    field<&GcDbLinetypeDash::offsetX>(44, "offsetX", Is::Plain)
        .when<&GcDbLinetypeDash::isComplex>()
        .from(GcDb::kDHL_AC1012),
    field<&GcDbLinetypeDash::offsetY>(45, "offsetY", Is::Plain)
        .when<&GcDbLinetypeDash::isComplex>()
        .from(GcDb::kDHL_AC1012),
    field<&GcDbLinetypeDash::text>(9, "text", Is::Plain).when<&GcDbLinetypeDash::isText>().from(GcDb::kDHL_AC1012),
};

}  // namespace

const GcDbField GcDbLinetypeTableRecord::kFields[] = {
    marker("AcDbLinetypeTableRecord"),
    field<&GcDbLinetypeTableRecord::m_name>(2, "name", Is::Plain),
    field<&GcDbLinetypeTableRecord::m_flags>(70, "flags", Is::Plain),
    field<&GcDbLinetypeTableRecord::m_description>(3, "description", Is::Plain),
    fixed<72, 'A'>("alignment"),
    count<&GcDbLinetypeTableRecord::m_dashes>(73, "dashCount"),
    field<&GcDbLinetypeTableRecord::m_patternLength>(40, "patternLength", Is::Plain),
    each<&GcDbLinetypeTableRecord::m_dashes>(-1, "dashes", kDashFields),
};
GCDB_FIELD_COUNT(GcDbLinetypeTableRecord);

Gcad::ErrorStatus GcDbLinetypeTableRecord::setNumDashes(int count) {
  constexpr int kMost = 12;
  if (count < 0 || count > kMost) return Gcad::eInvalidInput;
  assertWriteEnabled();
  m_dashes.setLogicalLength(count);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbLinetypeTableRecord::setDashLengthAt(int index, double length) {
  if (index < 0 || index >= m_dashes.length()) return Gcad::eInvalidIndex;
  return assign(m_dashes[index].length, length);
}
