// A block placed in another one, alone or as a grid of copies.
#pragma once

#include "db/entity.h"
#include "db/objectiterator.h"

class GcDbAttribute;

class GcDbBlockReference : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbBlockReference);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbBlockReference() = default;
  GcDbBlockReference(const GcGePoint3d& position, GcDbObjectId blockTableRecord)
      : m_position(position), m_blockId(blockTableRecord) {}

  [[nodiscard]] GcDbObjectId blockTableRecord() const { return m_blockId; }
  Gcad::ErrorStatus setBlockTableRecord(GcDbObjectId id);
  [[nodiscard]] GcGePoint3d position() const;  // world
  Gcad::ErrorStatus setPosition(const GcGePoint3d& position);
  // About the normal, from the X axis of the own system, radians.
  [[nodiscard]] double rotation() const { return m_rotationRad; }
  Gcad::ErrorStatus setRotation(double angleRad) { return assign(m_rotationRad, angleRad); }
  [[nodiscard]] GcGeScale3d scaleFactors() const { return {m_scaleX, m_scaleY, m_scaleZ}; }
  // Errors: eInvalidInput for a factor of 0.
  Gcad::ErrorStatus setScaleFactors(const GcGeScale3d& scale);
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  // Keeps the position.
  Gcad::ErrorStatus setNormal(const GcGeVector3d& normal);
  [[nodiscard]] bool isPlanar() const override { return false; }

  // From the definition's coordinates to those the reference stands in.
  [[nodiscard]] GcGeMatrix3d blockTransform() const;
  // Errors: eCannotScaleNonUniformly for a matrix whose axes are not at right angles.
  Gcad::ErrorStatus setBlockTransform(const GcGeMatrix3d& transform);

  // Takes a new attribute, which stays open for write. The reference must be in a database.
  Gcad::ErrorStatus appendAttribute(GcDbAttribute* attribute);
  Gcad::ErrorStatus appendAttribute(GcDbObjectId& id, GcDbAttribute* attribute);
  [[nodiscard]] GcDbObjectIterator* attributeIterator() const;
  void attributeIds(GcDbObjectIdArray& ids) const;

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  // Copies of the definition's entities, moved into place. Errors: eCannotScaleNonUniformly when one of them cannot
  // take the scale.
  Gcad::ErrorStatus explode(GcDbVoidPtrArray& entities) const override;

 protected:
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;
  [[nodiscard]] bool hasAttributes() const;
  // Draws the definition's entities once, moved by the offset in the definition's grid.
  void drawOnce(GcGiWorldDraw& draw, const GcGeMatrix3d& transform) const;

  GcGePoint3d m_position;  // own system
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
  double m_scaleX = 1;
  double m_scaleY = 1;
  double m_scaleZ = 1;
  double m_rotationRad = 0;
  GcDbObjectId m_blockId;
};

// A grid of copies: columns along the reference's X axis, rows along its Y axis.
class GcDbMInsertBlock : public GcDbBlockReference {
 public:
  GCRX_DECLARE_MEMBERS(GcDbMInsertBlock);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbMInsertBlock() = default;

  [[nodiscard]] int columns() const { return m_columns; }
  Gcad::ErrorStatus setColumns(int columns) { return assign(m_columns, static_cast<int16_t>(columns)); }
  [[nodiscard]] int rows() const { return m_rows; }
  Gcad::ErrorStatus setRows(int rows) { return assign(m_rows, static_cast<int16_t>(rows)); }
  [[nodiscard]] double columnSpacing() const { return m_columnSpacing; }
  Gcad::ErrorStatus setColumnSpacing(double spacing) { return assign(m_columnSpacing, spacing); }
  [[nodiscard]] double rowSpacing() const { return m_rowSpacing; }
  Gcad::ErrorStatus setRowSpacing(double spacing) { return assign(m_rowSpacing, spacing); }

  bool subWorldDraw(GcGiWorldDraw* draw) override;

 private:
  double m_columnSpacing = 0;
  double m_rowSpacing = 0;
  int16_t m_columns = 1;
  int16_t m_rows = 1;
};
