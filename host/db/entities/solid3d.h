// Solids, bodies and surfaces: what a solid modeller has written, as text or as a name of bytes elsewhere in the file,
// kept as it came. Straight and elliptic edges of text are drawn.
#pragma once

#include "db/entity.h"
#include "host/db/describe/group.h"

class GcDbModelerGeometry : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbModelerGeometry);
  static const GcDbField kFields[];
  static const int kFieldCount;

  bool subWorldDraw(GcGiWorldDraw* draw) override;

 protected:
  GcDbModelerGeometry() = default;
  // The modeller's own data cannot be moved without it. Errors: eNotApplicable.
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;

  GcDbGroupList m_data;
};

class GcDb3dSolid : public GcDbModelerGeometry {
 public:
  GCRX_DECLARE_MEMBERS(GcDb3dSolid);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDb3dSolid() = default;

 private:
  [[nodiscard]] bool hasSolidData() const { return !m_solidData.isEmpty(); }
  GcDbGroupList m_solidData;  // since R2007: what it was made by
};

class GcDbBody : public GcDbModelerGeometry {
 public:
  GCRX_DECLARE_MEMBERS(GcDbBody);
  GcDbBody() = default;
};

class GcDbSurface : public GcDbModelerGeometry {
 public:
  GCRX_DECLARE_MEMBERS(GcDbSurface);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbSurface() = default;

 protected:
  GcDbGroupList m_surfaceData;
  GcDbGroupList m_shapeData;  // of the kind of surface
};

#define GC_SURFACE(Class)             \
  class Class : public GcDbSurface {  \
   public:                            \
    GCRX_DECLARE_MEMBERS(Class);      \
    static const GcDbField kFields[]; \
    static const int kFieldCount;     \
    Class() = default;                \
  }
GC_SURFACE(GcDbPlaneSurface);
GC_SURFACE(GcDbExtrudedSurface);
GC_SURFACE(GcDbRevolvedSurface);
GC_SURFACE(GcDbSweptSurface);
GC_SURFACE(GcDbLoftedSurface);
GC_SURFACE(GcDbNurbSurface);
#undef GC_SURFACE
