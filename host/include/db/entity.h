// The root of everything that is drawn.
#pragma once

#include "cm/color.h"
#include "db/object.h"
#include "ge/matrix3d.h"
#include "rx/gcstring.h"

struct GcDbField;

// An axis-parallel box; empty until a point is added.
struct GcDbExtents {
  GcGePoint3d min{1e300, 1e300, 1e300};
  GcGePoint3d max{-1e300, -1e300, -1e300};
  [[nodiscard]] bool isEmpty() const { return min.x > max.x; }
  [[nodiscard]] GcGePoint3d minPoint() const { return min; }
  [[nodiscard]] GcGePoint3d maxPoint() const { return max; }
  void addPoint(const GcGePoint3d& p);
  void addExt(const GcDbExtents& e);
};

class GcDbEntity : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbEntity);
  static const GcDbField kFields[];
  static const int kFieldCount;

  [[nodiscard]] GcDbObjectId blockId() const { return ownerId(); }

  // The seven common properties. Names are looked up in the entity's own database (or the working one
  // for an entity that has none yet). Errors: eKeyNotFound, eInvalidInput, eOnLockedLayer.
  [[nodiscard]] GcCmEntityColor color() const { return m_color; }
  [[nodiscard]] int colorIndex() const { return m_color.colorIndex(); }
  Gcad::ErrorStatus setColor(const GcCmEntityColor& color, bool doSubents = true);
  Gcad::ErrorStatus setColorIndex(int index, bool doSubents = true);
  [[nodiscard]] GcDbObjectId layerId() const { return m_layerId; }
  [[nodiscard]] GcString layer() const;
  Gcad::ErrorStatus setLayer(const GCHAR* name, bool doSubents = true, bool allowHidden = false);
  Gcad::ErrorStatus setLayer(GcDbObjectId id, bool doSubents = true, bool allowHidden = false);
  [[nodiscard]] GcDbObjectId linetypeId() const { return m_linetypeId; }
  [[nodiscard]] GcString linetype() const;
  Gcad::ErrorStatus setLinetype(const GCHAR* name, bool doSubents = true);
  Gcad::ErrorStatus setLinetype(GcDbObjectId id, bool doSubents = true);
  [[nodiscard]] double linetypeScale() const { return m_linetypeScale; }
  Gcad::ErrorStatus setLinetypeScale(double scale, bool doSubents = true);
  [[nodiscard]] GcDb::Visibility visibility() const { return m_invisible ? GcDb::kInvisible : GcDb::kVisible; }
  Gcad::ErrorStatus setVisibility(GcDb::Visibility visibility, bool doSubents = true);
  [[nodiscard]] GcDb::LineWeight lineWeight() const { return static_cast<GcDb::LineWeight>(m_lineWeight); }
  Gcad::ErrorStatus setLineWeight(GcDb::LineWeight weight, bool doSubents = true);
  [[nodiscard]] GcString plotStyleName() const;
  Gcad::ErrorStatus setPlotStyleName(const GCHAR* name, bool doSubents = true);

  // Layer, colour, linetype, scale and weight that the database gives to new entities.
  void setDatabaseDefaults(GcDbDatabase* database = nullptr);
  // Layer, colour, linetype, scale, weight, plot style and visibility of another entity.
  Gcad::ErrorStatus setPropertiesFrom(const GcDbEntity& other, bool doSubents = true);

  // Errors of the world: eCannotScaleNonUniformly, eNotApplicable.
  Gcad::ErrorStatus transformBy(const GcGeMatrix3d& transform);
  [[nodiscard]] virtual bool isPlanar() const;
  // The normal of the plane the entity lies in, for entities with a system of their own; Z otherwise.
  [[nodiscard]] virtual GcGeVector3d normal() const;
  // From what it draws. Errors: eNullExtents when it draws nothing bounded.
  virtual Gcad::ErrorStatus getGeomExtents(GcDbExtents& extents) const;
  // Simpler entities that draw the same, made with new, owned by the caller. Errors: eNotApplicable.
  virtual Gcad::ErrorStatus explode(GcDbVoidPtrArray& entities) const;
  // Points where the two meet, in order along this one, none twice; appended. Entities that are no curves count by
  // the lines they are drawn with. A common stretch gives its ends. Errors: eNotApplicable (one of them draws no
  // lines), eInvalidInput. The markers name a part of an entity; 0 means all of it.
  virtual Gcad::ErrorStatus intersectWith(const GcDbEntity* other, GcDb::Intersect mode, GcArray<GcGePoint3d>& points,
                                          intptr_t thisMarker = 0, intptr_t otherMarker = 0) const;
  // Entities to which the common properties are passed on (attributes, vertices).
  virtual void subEntities(GcDbObjectIdArray& ids) const;

  // Called when the entity has become part of a database: fills in what is still open (styles, sizes).
  virtual void subAppended();

  uint32_t subSetAttributes(GcGiDrawableTraits* traits) override;

 protected:
  GcDbEntity() = default;
  // The geometry's own part of transformBy; the default transforms every described field by what it is.
  virtual Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform);

 private:
  friend struct GcDbEntityAccess;

  GcDbObjectId m_layerId;
  GcDbObjectId m_linetypeId;
  double m_linetypeScale = 1.0;
  GcCmEntityColor m_color;
  int16_t m_lineWeight = GcDb::kLnWtByLayer;
  bool m_invisible = false;
  bool m_inPaperSpace = false;
};
