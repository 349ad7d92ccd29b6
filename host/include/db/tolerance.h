// Feature control frames: tolerances of form and position as a row of boxes.
#pragma once

#include "db/entity.h"

class GcDbFcf : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbFcf);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbFcf() = default;

  [[nodiscard]] const GcString& text() const { return m_text; }
  Gcad::ErrorStatus setText(const GCHAR* text) { return assign(m_text, GcString(text)); }
  [[nodiscard]] GcGePoint3d location() const { return m_location; }
  Gcad::ErrorStatus setLocation(const GcGePoint3d& point) { return assign(m_location, point); }
  [[nodiscard]] GcGeVector3d direction() const { return m_direction; }
  [[nodiscard]] GcDbObjectId dimensionStyle() const { return m_styleId; }
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  [[nodiscard]] bool isPlanar() const override { return true; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  void subAppended() override;

 private:
  GcGePoint3d m_location;
  GcGeVector3d m_direction = GcGeVector3d::kXAxis;
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
  GcString m_text;
  GcDbObjectId m_styleId;
};
