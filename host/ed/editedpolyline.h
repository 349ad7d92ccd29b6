// A polyline of any of the three kinds as a run of vertices to be changed, and back.
#pragma once

#include <vector>

#include "db/polyline.h"
#include "ge/matrix3d.h"
#include "host/ed/editor.h"

namespace ed {

struct EditedVertex {
  GcDbPolylineVertex flat;  // bulge and widths belong to the segment behind the vertex; polylines in space have neither
  double z = 0;
  bool hasTangent = false;
  double tangentRad = 0;
};

class EditedPolyline {
 public:
  // Takes the vertices, without those of a fitted curve. False for what is no polyline.
  [[nodiscard]] bool take(GcDbObjectId id);
  // Gives the polyline the vertices, and the fitted curve it had. Tangents turn a lightweight polyline into one with
  // vertices of their own.
  void put();
  // Another polyline like this one, of the vertices from `first` to `last`; null when it cannot be made.
  GcDbObjectId addPart(Editor& editor, size_t first, size_t last);

  [[nodiscard]] bool isInSpace() const { return m_kind == Kind::Space; }
  [[nodiscard]] GcGePoint3d worldAt(size_t index) const;
  void moveTo(size_t index, const GcGePoint3d& world);
  // Behind the vertex; its segment goes on straight.
  void insertBehind(size_t index, const GcGePoint3d& world);
  void reverse();

  std::vector<EditedVertex> vertices;
  bool closed = false;

 private:
  enum class Kind : uint8_t { Light, Plane, Space };
  [[nodiscard]] EditedVertex vertexAt(const GcGePoint3d& world) const;
  void takePlane(GcDbObjectId id);
  void takeSpace(GcDbObjectId id);
  void putLight(GcDbObjectId id) const;
  void putPlane(GcDbObjectId id) const;
  void putSpace(GcDbObjectId id) const;

  GcDbObjectId m_id;
  Kind m_kind = Kind::Light;
  int m_curve = 0;  // of the fitted curve: a Poly2dType or Poly3dType
  GcGeMatrix3d m_toWorld;
};

// A 2D polyline in the place of a lightweight one, under the same id; true when it is one.
bool needOwnVertices(GcDbObjectId id);

// Takes a curve along the vertices of a polyline in space away, or makes one, as the type says.
void setSpaceCurve(GcDbObjectId id, int type);

}  // namespace ed
