// A symbol of a file of shapes. DXF names it, DWG has its number and the text style that names the file; what one of
// them lacks comes from the file where it is there.
#pragma once

#include "db/entity.h"
#include "host/db/describe/recordof.h"

class GcDbShape : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbShape);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbShape() = default;

  // Where a shape is found: the style that names its file, and its number there.
  struct Place {
    GcDbObjectId styleId;
    int16_t number = 0;
    [[nodiscard]] bool isKnown() const { return !styleId.isNull(); }
  };
  // Of a shape known by name the place is looked up in the files of the drawing's styles.
  [[nodiscard]] Place place() const;
  // The name; where only the place is known and its file is not there: "*133,symbols.shx".
  [[nodiscard]] const GcString& nameInFiles() const;

  [[nodiscard]] bool isKnownByNumberOnly() const;

  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  [[nodiscard]] bool isPlanar() const override { return true; }
  // A crossed box where the file is missing.
  bool subWorldDraw(GcGiWorldDraw* draw) override;
  void subLoaded() override;

 protected:
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;

 private:
  friend struct GcDbShapeFiling;
  friend struct GcDbRecordOf<GcDbShape>;
  void drawMissing(GcGiWorldDraw& draw, const GcGeVector3d& along, const GcGeVector3d& up) const;

  GcString m_name;           // empty when the place is known
  mutable GcString m_shown;  // the name looked up for groups, which only refer to it
  GcDbObjectId m_styleId;
  int16_t m_number = 0;
  GcGePoint3d m_position;  // world
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
  double m_size = 1;
  double m_rotationRad = 0;
  double m_widthFactor = 1;
  double m_obliqueRad = 0;
  double m_thickness = 0;
};
