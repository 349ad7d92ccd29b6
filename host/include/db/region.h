// Regions: plane areas bounded by loops of curves, kept as the text of a solid modeller as files have it. Files from
// 2013 on have bytes in place of the text, in a section of their own; they stay as they are until the region changes.
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

  enum BoolOperType : uint8_t { kBoolUnite = 0, kBoolIntersect = 1, kBoolSubtract = 2 };
  // Makes this region what it is together with the other one, which stays. Nothing may be left: isNull() then.
  // Errors: eNotApplicable for data that is no plane area, eInvalidInput when the two lie in different planes.
  Gcad::ErrorStatus booleanOper(BoolOperType operation, const GcDbRegion& other);

  [[nodiscard]] bool isNull() const { return m_lines.isEmpty() && m_bytes.isEmpty(); }
  // Of the area with its holes. Errors: eNotApplicable for data that is no plane area.
  Gcad::ErrorStatus getArea(double& area) const;
  Gcad::ErrorStatus getPerimeter(double& length) const;
  Gcad::ErrorStatus getCentroid(GcGePoint3d& centroid) const;
  [[nodiscard]] GcGeVector3d normal() const override;
  [[nodiscard]] bool isPlanar() const override { return true; }

  // The form of files from 2013 on. Errors: eNotApplicable for text that is no plane area.
  Gcad::ErrorStatus getBytes(GcArray<uint8_t>& bytes) const;
  // Errors: eNotApplicable for bytes that are no plane area; they are kept, and are all there is.
  Gcad::ErrorStatus setBytes(const GcArray<uint8_t>& bytes);
  [[nodiscard]] bool hasText() const { return !m_lines.isEmpty(); }

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  // Lines, arcs, circles, ellipses and splines along the loops.
  Gcad::ErrorStatus explode(GcDbVoidPtrArray& entities) const override;

 protected:
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;

 private:
  Gcad::ErrorStatus moveAsBody(const GcGeMatrix3d& transform);
  friend struct GcDbRegionFiling;
  friend struct GcDbModelerParts;
  [[nodiscard]] bool isRecorded() const;
  [[nodiscard]] bool isTextOnly() const { return !isRecorded(); }

  GcArray<GcDbModelerLine> m_lines;
  GcArray<uint8_t> m_bytes;    // as they were read; empty when the text is newer
  GcArray<uint8_t> m_picture;  // of its edges, as DWG records have it; none when the region is newer
  GcString m_historyId;        // of files from 2013 on; empty for none
  int16_t m_version = 1;
  bool m_hasHistory = false;
};
