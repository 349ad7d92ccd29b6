// Regions: plane areas bounded by loops of curves, kept as the text of a solid modeller as files have it.
#pragma once

#include "db/entity.h"

// A line of the modeller's text, enciphered: its first 255 characters and what follows in further groups.
struct GcDbModelerLine {
  GcString text;
  GcArray<GcString> more;
};

class GcDbRegion : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbRegion);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbRegion() = default;

  // One region for every closed loop that the curves (GcDbCurve, as they are; open ones are joined at their ends)
  // make in a plane, in order of their first curve. Loops that cross themselves or lie in no plane make none. The
  // new regions belong to the caller. Errors: eInvalidInput when there is no loop.
  static Gcad::ErrorStatus createFromCurves(const GcDbVoidPtrArray& curves, GcDbVoidPtrArray& regions);

  [[nodiscard]] bool isNull() const { return m_lines.isEmpty() && m_recordId.isEmpty(); }
  // Of the area with its holes. Errors: eNotApplicable for data that is no plane area.
  Gcad::ErrorStatus getArea(double& area) const;
  Gcad::ErrorStatus getPerimeter(double& length) const;
  Gcad::ErrorStatus getCentroid(GcGePoint3d& centroid) const;
  [[nodiscard]] GcGeVector3d normal() const override;
  [[nodiscard]] bool isPlanar() const override { return true; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  // Lines, arcs, circles, ellipses and splines along the loops.
  Gcad::ErrorStatus explode(GcDbVoidPtrArray& entities) const override;

 protected:
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;

 private:
  [[nodiscard]] bool hasText() const { return m_recordId.isEmpty(); }

  GcArray<GcDbModelerLine> m_lines;
  GcString m_recordId;  // of files from 2013 on: names the record that holds the data in place of the text
  int16_t m_version = 1;
  bool m_isRecorded = false;
};
