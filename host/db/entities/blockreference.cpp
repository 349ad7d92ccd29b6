#include "db/blockreference.h"

#include <iterator>
#include <vector>

#include "db/attribute.h"
#include "db/database.h"
#include "db/dictionary.h"
#include "db/symboltable.h"
#include "host/db/core/header.h"
#include "host/db/core/memoryfiler.h"
#include "host/db/describe/fieldio.h"
#include "host/db/entities/block_content.h"
#include "host/db/entities/planar.h"
#include "host/db/entities/sequence.h"
#include "host/db/objects/externals.h"
#include "host/db/objects/filters.h"
#include "host/gi/clipping.h"

GCDB_DEFINE_CLASS(GcDbBlockReference, "AcDbBlockReference")
GCDB_DEFINE_CLASS(GcDbMInsertBlock, "AcDbMInsertBlock")

#define GC_INSERT_ROWS(Class)                                                                                          \
  fixed<66, 1>("attributesFollow").when<&Class::hasAttributes>(), field<&Class::m_blockId>(2, "block", Is::BlockName), \
      field<&Class::m_position>(10, "position", Is::OcsPoint),                                                         \
      field<&Class::m_scaleX>(41, "scaleX", Is::Plain, Write::FilesUnlessDefault).orElse(1),                           \
      field<&Class::m_scaleY>(42, "scaleY", Is::Plain, Write::FilesUnlessDefault).orElse(1),                           \
      field<&Class::m_scaleZ>(43, "scaleZ", Is::Plain, Write::FilesUnlessDefault).orElse(1),                           \
      field<&Class::m_rotationRad>(50, "rotation", Is::Angle, Write::FilesUnlessDefault)

namespace {

// A single reference is a grid of one: entity lists tell so.
template <int Code>
constexpr GcDbField gridRow(const char* name) {
  GcDbField row = fixed<Code, 0>(name);
  row.write = Write::ListsOnly;
  if (Code == 44 || Code == 45) row.get = [](const void*) { return GcDbGroup::ofReal(Code, 0); };
  return row;
}

}  // namespace

const GcDbField GcDbBlockReference::kFields[] = {
    marker("AcDbBlockReference"),
    GC_INSERT_ROWS(GcDbBlockReference),
    gridRow<70>("columns"),
    gridRow<71>("rows"),
    gridRow<44>("columnSpacing"),
    gridRow<45>("rowSpacing"),
    field<&GcDbBlockReference::m_normal>(210, "normal", Is::Normal, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDbBlockReference);

const GcDbField GcDbMInsertBlock::kFields[] = {
    marker("AcDbMInsertBlock"),
    GC_INSERT_ROWS(GcDbMInsertBlock),
    field<&GcDbMInsertBlock::m_columns>(70, "columns", Is::Plain, Write::FilesUnlessDefault).orElse(1),
    field<&GcDbMInsertBlock::m_rows>(71, "rows", Is::Plain, Write::FilesUnlessDefault).orElse(1),
    field<&GcDbMInsertBlock::m_columnSpacing>(44, "columnSpacing", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbMInsertBlock::m_rowSpacing>(45, "rowSpacing", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbMInsertBlock::m_normal>(210, "normal", Is::Normal, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDbMInsertBlock);

bool GcDbBlockReference::hasAttributes() const { return gcsequence::hasParts(*this); }

Gcad::ErrorStatus GcDbBlockReference::setBlockTableRecord(GcDbObjectId id) {
  if (id.objectClass() != GcDbBlockTableRecord::desc()) return Gcad::eInvalidInput;
  return assign(m_blockId, id);
}

GcGePoint3d GcDbBlockReference::position() const { return gcplanar::toWorld(m_position, m_normal); }

Gcad::ErrorStatus GcDbBlockReference::setPosition(const GcGePoint3d& position) {
  return assign(m_position, gcplanar::toOwn(position, m_normal));
}

Gcad::ErrorStatus GcDbBlockReference::setScaleFactors(const GcGeScale3d& scale) {
  if (scale.sx == 0 || scale.sy == 0 || scale.sz == 0) return Gcad::eInvalidInput;
  assertWriteEnabled();
  m_scaleX = scale.sx;
  m_scaleY = scale.sy;
  m_scaleZ = scale.sz;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbBlockReference::setNormal(const GcGeVector3d& normal) {
  if (normal.isZeroLength()) return Gcad::eInvalidInput;
  assertWriteEnabled();
  const GcGePoint3d kept = position();
  m_normal = normal.normal();
  m_position = gcplanar::toOwn(kept, m_normal);
  return Gcad::eOk;
}

GcGeMatrix3d GcDbBlockReference::blockTransform() const {
  GcGePoint3d origin;
  GcDbBlockTableRecord* block = nullptr;
  if (gcdbOpenObject(block, m_blockId, GcDb::kForRead) == Gcad::eOk) {
    origin = block->origin();
    ignore(block->close());
  }
  GcGeMatrix3d plane, place, turn, scale, base;
  plane.setToPlaneToWorld(m_normal);
  place.setToTranslation(m_position.asVector());
  turn.setToRotation(m_rotationRad, GcGeVector3d::kZAxis);
  scale.setToScaling(scaleFactors());
  base.setToTranslation(-origin.asVector());
  return plane * place * turn * scale * base;
}

Gcad::ErrorStatus GcDbBlockReference::setBlockTransform(const GcGeMatrix3d& transform) {
  const GcGeVector3d x = transform.column(0);
  const GcGeVector3d y = transform.column(1);
  const GcGeVector3d z = transform.column(2);
  constexpr double kRightAngle = 1e-6;  // cosine of what still counts as a right angle
  const double sx = x.length();
  const double sy = y.length();
  const double sz = z.length();
  if (sx == 0 || sy == 0 || sz == 0 || std::fabs(x.dotProduct(y)) > kRightAngle * sx * sy ||
      std::fabs(y.dotProduct(z)) > kRightAngle * sy * sz || std::fabs(z.dotProduct(x)) > kRightAngle * sz * sx)
    return Gcad::eCannotScaleNonUniformly;
  assertWriteEnabled();
  GcGePoint3d origin;
  GcDbBlockTableRecord* block = nullptr;
  if (gcdbOpenObject(block, m_blockId, GcDb::kForRead) == Gcad::eOk) {
    origin = block->origin();
    ignore(block->close());
  }
  m_normal = x.crossProduct(y).normal();
  m_rotationRad = gcplanar::angleOf(x, m_normal);
  m_scaleX = sx;
  m_scaleY = sy;
  m_scaleZ = z.dotProduct(m_normal) < 0 ? -sz : sz;
  m_position = gcplanar::toOwn(transform * origin, m_normal);
  return Gcad::eOk;
}

// The signs of the scale factors are kept where the normal turns over instead.
Gcad::ErrorStatus GcDbBlockReference::subTransformBy(const GcGeMatrix3d& transform) {
  const GcGeScale3d former = scaleFactors();
  const GcGeMatrix3d whole = transform * blockTransform();
  const Gcad::ErrorStatus status = setBlockTransform(whole);
  if (status != Gcad::eOk) return status;
  if (former.sx < 0 || former.sy < 0) {
    // The axes of the definition point the other way: turn the plane's X axis (and normal) back.
    const bool flipX = former.sx < 0;
    const bool flipY = former.sy < 0;
    if (flipX != flipY) m_scaleZ = -m_scaleZ;
    const GcGeVector3d x = whole.column(0) * (flipX ? -1.0 : 1.0);
    const GcGeVector3d y = whole.column(1) * (flipY ? -1.0 : 1.0);
    const GcGePoint3d kept = position();
    m_normal = x.crossProduct(y).normal();
    m_rotationRad = gcplanar::angleOf(x, m_normal);
    m_position = gcplanar::toOwn(kept, m_normal);
    if (flipX) m_scaleX = -m_scaleX;
    if (flipY) m_scaleY = -m_scaleY;
  }
  GcDbObjectIdArray ids;
  attributeIds(ids);
  for (const GcDbObjectId id : ids) {
    GcDbAttribute* attribute = nullptr;
    if (gcdbOpenObject(attribute, id, GcDb::kForWrite) != Gcad::eOk) continue;
    ignore(attribute->transformBy(transform));
    ignore(attribute->close());
  }
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbBlockReference::appendAttribute(GcDbAttribute* attribute) {
  GcDbObjectId id;
  return appendAttribute(id, attribute);
}

Gcad::ErrorStatus GcDbBlockReference::appendAttribute(GcDbObjectId& id, GcDbAttribute* attribute) {
  return gcsequence::append(*this, attribute, id);
}

void GcDbBlockReference::attributeIds(GcDbObjectIdArray& ids) const {
  gcsequence::collect(*this, GcDbAttribute::desc(), ids);
}

GcDbObjectIterator* GcDbBlockReference::attributeIterator() const {
  GcDbObjectIdArray ids;
  attributeIds(ids);
  return new GcDbObjectIterator(ids);
}

namespace gcblock {

namespace {

// The clip of a reference, in the coordinates of its block; empty when it has none that is on.
std::vector<GcGePoint3d> clipOf(const GcDbBlockReference& reference) {
  std::vector<GcGePoint3d> corners;
  GcDbObjectId id = reference.extensionDictionary();
  for (const GCHAR* key : {GC_T("ACAD_FILTER"), GC_T("SPATIAL")}) {
    GcDbDictionary* dictionary = nullptr;
    if (id.isNull() || gcdbOpenObject(dictionary, id, GcDb::kForRead) != Gcad::eOk) return corners;
    const bool found = dictionary->getAt(key, id) == Gcad::eOk;
    ignore(dictionary->close());
    if (!found) return corners;
  }
  GcDbSpatialFilter* filter = nullptr;
  if (gcdbOpenObject(filter, id, GcDb::kForRead) != Gcad::eOk) return corners;
  const GcArray<GcGePoint2d>& outline = filter->outline();
  const GcGeMatrix3d toBlock = filter->outlineToBlock();
  const auto add = [&](double x, double y) { corners.push_back(toBlock * GcGePoint3d(x, y, 0)); };
  if (filter->isOn() && outline.length() == 2) {
    add(outline[0].x, outline[0].y);
    add(outline[1].x, outline[0].y);
    add(outline[1].x, outline[1].y);
    add(outline[0].x, outline[1].y);
  } else if (filter->isOn() && outline.length() > 2) {
    for (const GcGePoint2d& corner : outline) add(corner.x, corner.y);
  }
  ignore(filter->close());
  return corners;
}

// A block that is an external reference shows the model of that drawing.
GcDbObjectId shownBlock(GcDbObjectId block) {
  if (!gcdbIsExternal(block)) return block;
  const GcDbExternal& external = gcdbNeedExternal(block);
  return external.database == nullptr ? block : external.database->modelSpaceId();
}

}  // namespace

void drawContent(GcGiWorldDraw& draw, GcDbObjectId blockId, const GcGeMatrix3d& transform) {
  GcDbBlockTableRecord* block = nullptr;
  if (gcdbOpenObject(block, shownBlock(blockId), GcDb::kForRead) != Gcad::eOk) return;
  draw.geometry().pushModelTransform(transform);
  for (const GcDbObjectId id : block->entities()) {
    const GcRxClass* kind = id.isErased() ? nullptr : id.objectClass();
    if (kind == nullptr) continue;
    GcDbEntity* entity = nullptr;
    if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) continue;
    const auto* definition = GcDbAttributeDefinition::cast(entity);
    const bool standsForValue = definition != nullptr && !definition->isConstant();
    if (!standsForValue && entity->visibility() == GcDb::kVisible) draw.draw(entity);
    ignore(entity->close());
  }
  draw.geometry().popModelTransform();
  ignore(block->close());
}

}  // namespace gcblock

void GcDbBlockReference::drawOnce(GcGiWorldDraw& draw, const GcGeMatrix3d& transform) const {
  const std::vector<GcGePoint3d> clip = gcblock::clipOf(*this);
  auto* clipping = clip.empty() ? nullptr : dynamic_cast<GcGiClipping*>(&draw);
  if (clipping != nullptr) {
    draw.geometry().pushModelTransform(transform);
    clipping->pushClip(static_cast<int>(clip.size()), clip.data());
    draw.geometry().popModelTransform();
  }
  gcblock::drawContent(draw, m_blockId, transform);
  if (clipping == nullptr) return;
  clipping->popClip();
  // Files may also say 2: on screens only.
  constexpr int kFrameEverywhere = 1;
  if (database() == nullptr || database()->header().integer(GC_T("$XCLIPFRAME"), 0) != kFrameEverywhere) return;
  draw.geometry().pushModelTransform(transform);
  draw.geometry().polyline(static_cast<int>(clip.size()), clip.data(), true);
  draw.geometry().popModelTransform();
}

bool GcDbBlockReference::subWorldDraw(GcGiWorldDraw* draw) {
  drawOnce(*draw, blockTransform());
  gcsequence::forEach<GcDbAttribute>(*this, [&](GcDbAttribute& attribute) { draw->draw(&attribute); });
  return true;
}

bool GcDbMInsertBlock::subWorldDraw(GcGiWorldDraw* draw) {
  const GcGeMatrix3d first = blockTransform();
  GcGeMatrix3d plane, turn, step;
  plane.setToPlaneToWorld(m_normal);
  turn.setToRotation(m_rotationRad, GcGeVector3d::kZAxis);
  constexpr int kMost = 1000000;  // copies: damaged counts end here
  int drawn = 0;
  for (int row = 0; row < m_rows; ++row)
    for (int column = 0; column < m_columns && drawn < kMost; ++column, ++drawn) {
      step.setToTranslation(plane * (turn * GcGeVector3d(column * m_columnSpacing, row * m_rowSpacing, 0)));
      drawOnce(*draw, step * first);
    }
  gcsequence::forEach<GcDbAttribute>(*this, [&](GcDbAttribute& attribute) { draw->draw(&attribute); });
  return true;
}

Gcad::ErrorStatus GcDbBlockReference::explode(GcDbVoidPtrArray& entities) const {
  assertReadEnabled();
  if (gcdbIsExternal(m_blockId)) return Gcad::eNotApplicable;
  GcDbBlockTableRecord* block = nullptr;
  Gcad::ErrorStatus status = gcdbOpenObject(block, m_blockId, GcDb::kForRead);
  if (status != Gcad::eOk) return status;
  const GcGeMatrix3d transform = blockTransform();
  for (const GcDbObjectId id : block->entities()) {
    GcDbEntity* entity = nullptr;
    if (id.isErased() || gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) continue;
    auto* copy = static_cast<GcDbEntity*>(entity->isA()->create());
    if (copy != nullptr) {
      ignore(gcdbImageInto(*copy, gcdbImageOf(*entity, GcDb::kCopyFiler), GcDb::kCopyFiler));
      const Gcad::ErrorStatus moved = copy->transformBy(transform);
      if (moved == Gcad::eOk) {
        entities.append(copy);
      } else {
        delete copy;
        status = moved;
      }
    }
    ignore(entity->close());
  }
  ignore(block->close());
  return status;
}
