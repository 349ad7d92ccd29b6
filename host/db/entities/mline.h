// Multilines: several parallel lines along a chain of points, as a style says, with cuts in them.
#pragma once

#include "db/entity.h"
#include "host/db/describe/recordof.h"

// One line of the style at one vertex. `cuts` begins with the distance from the vertex along the miter to the line;
// then come distances along the line at which it starts, stops, starts again. `fillCuts` is the same for the fill.
struct GcDbMlineSegment {
  GcArray<double> cuts;
  GcArray<double> fillCuts;
};

struct GcDbMlineVertex {
  GcGePoint3d point;
  GcGeVector3d direction = GcGeVector3d::kXAxis;  // of what follows the vertex
  GcGeVector3d miter = GcGeVector3d::kYAxis;      // where the parallel lines bend
  GcArray<GcDbMlineSegment> lines;                // as many as the style has
};

class GcDbMline : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbMline);
  static const GcDbField kFields[];
  static const int kFieldCount;

  enum Flags : uint8_t { kHasVertices = 1, kClosed = 2, kNoStartCaps = 4, kNoEndCaps = 8 };

  GcDbMline() = default;
  [[nodiscard]] const GcArray<GcDbMlineVertex>& vertices() const { return m_vertices; }
  // Lays the multiline along points: the style's offsets times the scale, to the left of the way where positive.
  // System:  world; the points lie in one plane of the (unit) normal, neighbours apart.
  // Errors:  eInvalidInput for fewer than two points, neighbours that coincide, or what is no style; nothing changes.
  enum Justification : int16_t { kTop = 0, kZero = 1, kBottom = 2 };
  Gcad::ErrorStatus setCourse(const GcArray<GcGePoint3d>& points, bool closed, GcDbObjectId style, double scale,
                              Justification justification, const GcGeVector3d& normal);
  [[nodiscard]] GcDbObjectId styleId() const { return m_styleId; }
  [[nodiscard]] int flags() const { return m_flags; }
  [[nodiscard]] bool isClosed() const { return (m_flags & kClosed) != 0; }
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  [[nodiscard]] bool isPlanar() const override { return true; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  // Lines and arcs of all that is drawn but the fill.
  Gcad::ErrorStatus explode(GcDbVoidPtrArray& entities) const override;
  void subAppended() override;

 private:
  friend struct GcDbRecordOf<GcDbMline>;
  friend struct GcDbMlineStyleName;

  GcArray<GcDbMlineVertex> m_vertices;
  GcGePoint3d m_startPoint;
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
  GcString m_styleName;  // as read; once the style is known, its own name counts
  GcDbObjectId m_styleId;
  double m_scale = 1;
  int16_t m_justification = kTop;
  int16_t m_flags = kHasVertices;
  int16_t m_lineCount = 0;
};
