#include "db/attribute.h"

#include <iterator>

#include "db/database.h"
#include "host/db/describe/fieldio.h"
#include "host/db/entities/planar.h"
#include "host/db/entities/text_rows.h"
#include "host/rx/view.h"

GCDB_DEFINE_CLASS(GcDbAttributeDefinition, "AcDbAttributeDefinition")
GCDB_DEFINE_CLASS(GcDbAttribute, "AcDbAttribute")

// The text part is that of single-line text; the vertical mode stands with the attribute's own groups.
const GcDbField GcDbAttributeDefinition::kFields[] = {
    GC_TEXT_ROWS(GcDbAttributeDefinition),
    marker("AcDbAttributeDefinition"),
    field<&GcDbAttributeDefinition::m_version>(280, "version", Is::Plain).from(GcDb::kDHL_AC1024),
    field<&GcDbAttributeDefinition::m_prompt>(3, "prompt", Is::Plain),
    field<&GcDbAttributeDefinition::m_tag>(2, "tag", Is::Plain),
    field<&GcDbAttributeDefinition::m_flags>(70, "flags", Is::Plain),
    field<&GcDbAttributeDefinition::m_fieldLength>(73, "fieldLength", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbAttributeDefinition::m_vertical>(74, "verticalMode", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbAttributeDefinition::m_lockPosition>(280, "lockPosition", Is::Plain).from(GcDb::kDHL_AC1021),
};
GCDB_FIELD_COUNT(GcDbAttributeDefinition);

const GcDbField GcDbAttribute::kFields[] = {
    GC_TEXT_ROWS(GcDbAttribute),
    marker("AcDbAttribute"),
    field<&GcDbAttribute::m_version>(280, "version", Is::Plain).from(GcDb::kDHL_AC1024),
    field<&GcDbAttribute::m_tag>(2, "tag", Is::Plain),
    field<&GcDbAttribute::m_flags>(70, "flags", Is::Plain),
    field<&GcDbAttribute::m_fieldLength>(73, "fieldLength", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbAttribute::m_vertical>(74, "verticalMode", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbAttribute::m_lockPosition>(280, "lockPosition", Is::Plain).from(GcDb::kDHL_AC1021),
};
GCDB_FIELD_COUNT(GcDbAttribute);

namespace {

// Tags are upper-case words without blanks.
bool isTag(GcView tag) {
  if (tag.empty()) return false;
  for (const GCHAR unit : tag)
    if (unit <= ' ' || unit == '!') return false;
  return true;
}

}  // namespace

GcDbAttributeDefinition::GcDbAttributeDefinition(const GcGePoint3d& position, const GCHAR* text, const GCHAR* tag,
                                                 const GCHAR* prompt, GcDbObjectId style)
    : GcDbText(position, text, style), m_tag(GcString(tag).upper()), m_prompt(prompt) {}

GcDbAttribute::GcDbAttribute(const GcGePoint3d& position, const GCHAR* text, const GCHAR* tag, GcDbObjectId style)
    : GcDbText(position, text, style), m_tag(GcString(tag).upper()) {}

Gcad::ErrorStatus GcDbAttributeDefinition::setTag(const GCHAR* tag) {
  return isTag(view(tag)) ? assign(m_tag, GcString(tag).upper()) : Gcad::eInvalidInput;
}

Gcad::ErrorStatus GcDbAttribute::setTag(const GCHAR* tag) {
  return isTag(view(tag)) ? assign(m_tag, GcString(tag).upper()) : Gcad::eInvalidInput;
}

Gcad::ErrorStatus GcDbAttributeDefinition::setFlag(int bit, bool on) {
  return assign(m_flags, static_cast<int16_t>(on ? m_flags | bit : m_flags & ~bit));
}

Gcad::ErrorStatus GcDbAttribute::setFlag(int bit, bool on) {
  return assign(m_flags, static_cast<int16_t>(on ? m_flags | bit : m_flags & ~bit));
}

Gcad::ErrorStatus GcDbAttribute::setAttributeFromBlock(const GcDbAttributeDefinition* definition,
                                                       const GcGeMatrix3d& blockTransform) {
  if (definition == nullptr) return Gcad::eNullObjectPointer;
  assertWriteEnabled();
  ignore(setPropertiesFrom(*definition, false));
  m_tag = definition->m_tag;
  m_flags = definition->m_flags;
  m_fieldLength = definition->m_fieldLength;
  m_lockPosition = definition->m_lockPosition;
  m_position = definition->m_position;
  m_alignment = definition->m_alignment;
  m_normal = definition->m_normal;
  m_height = definition->m_height;
  m_rotationRad = definition->m_rotationRad;
  m_obliqueRad = definition->m_obliqueRad;
  m_widthFactor = definition->m_widthFactor;
  m_thickness = definition->m_thickness;
  m_text = definition->m_text;
  m_styleId = definition->m_styleId;
  m_mirror = definition->m_mirror;
  m_horizontal = definition->m_horizontal;
  m_vertical = definition->m_vertical;
  return transformExactly(blockTransform);
}

bool GcDbAttributeDefinition::subWorldDraw(GcGiWorldDraw* draw) {
  if (isConstant()) return GcDbText::subWorldDraw(draw);
  if (m_tag.isEmpty()) return true;
  GcGiTextStyle look;
  textLook(look);
  draw->geometry().text(position(), m_normal, gcplanar::directionAt(m_rotationRad, m_normal), m_tag.c_str(), look);
  return true;
}

bool GcDbAttribute::subWorldDraw(GcGiWorldDraw* draw) { return isInvisible() || GcDbText::subWorldDraw(draw); }
