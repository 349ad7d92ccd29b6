// Solids, bodies and surfaces: what a solid modeller has written, as text or as bytes, kept as it came. Straight and
// elliptic edges are drawn.
#pragma once

#include "db/region.h"
#include "host/db/describe/group.h"
#include "host/db/describe/recordof.h"

class GcDbModelerGeometry : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbModelerGeometry);
  static const GcDbField kFields[];
  static const int kFieldCount;

  // What DWG files have since 2004, and all files since 2013; empty for a body of text.
  [[nodiscard]] const GcArray<uint8_t>& bytes() const { return m_bytes; }
  void setBytes(const GcArray<uint8_t>& bytes);
  [[nodiscard]] bool hasText() const { return !m_lines.isEmpty(); }
  // Some bodies have another one behind their picture, in DWG records alone.
  [[nodiscard]] bool hasSecond() const { return !m_second.isEmpty(); }

  bool subWorldDraw(GcGiWorldDraw* draw) override;

 protected:
  GcDbModelerGeometry() = default;
  // Errors: eCannotScaleNonUniformly; eNotApplicable for data that is no body.
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;

 private:
  friend struct GcDbModelerFiling;
  friend struct GcDbModelerParts;

  GcArray<GcDbModelerLine> m_lines;
  GcArray<uint8_t> m_bytes;
  GcArray<uint8_t> m_picture;  // of its edges, as DWG records have it; none when the body is newer
  GcArray<uint8_t> m_second;   // the bytes of a second body; its picture is that of the first
  GcString m_revisionId;       // of files from 2013 on; empty for none
  int16_t m_version = 1;
  bool m_hasRevision = false;
};

class GcDb3dSolid : public GcDbModelerGeometry {
 public:
  GCRX_DECLARE_MEMBERS(GcDb3dSolid);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDb3dSolid() = default;

 private:
  friend struct GcDbRecordOf<GcDb3dSolid>;

  GcDbObjectId m_history;  // since R2007: what it was made by
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
  friend struct GcDbRecordOf<GcDbSurface>;
  // What the surface was made by goes with it.
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;

  GcDbGroupList m_surfaceData;
  GcDbGroupList m_shapeData;  // of the kind of surface
};

#define GC_SURFACE(Class)              \
  class Class : public GcDbSurface {   \
   public:                             \
    GCRX_DECLARE_MEMBERS(Class);       \
    static const GcDbField kFields[];  \
    static const int kFieldCount;      \
    Class() = default;                 \
                                       \
   private:                            \
    friend struct GcDbRecordOf<Class>; \
  }
GC_SURFACE(GcDbPlaneSurface);
GC_SURFACE(GcDbExtrudedSurface);
GC_SURFACE(GcDbRevolvedSurface);
GC_SURFACE(GcDbSweptSurface);
GC_SURFACE(GcDbLoftedSurface);
GC_SURFACE(GcDbNurbSurface);
#undef GC_SURFACE
