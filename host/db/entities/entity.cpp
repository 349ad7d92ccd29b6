#include "db/entity.h"

#include <cmath>
#include <iterator>

#include "db/curve.h"
#include "db/database.h"
#include "db/dictionary.h"
#include "host/db/core/extra.h"
#include "host/db/core/header.h"
#include "host/db/core/names.h"
#include "host/db/describe/fieldio.h"
#include "host/db/entities/entityaccess.h"

GCDB_DEFINE_CLASS(GcDbEntity, "AcDbEntity")
GCDB_DEFINE_CLASS(GcDbCurve, "AcDbCurve")

const GcDbField GcDbEntity::kFields[] = {
    marker("AcDbEntity"),
    GcDbEntityAccess::inPaperSpace(),
    GcDbEntityAccess::layer(),
    GcDbEntityAccess::linetype(),
    GcDbEntityAccess::row<&GcDbObjectExtra::material>(347, "material", Is::HardPointer).from(GcDb::kDHL_AC1021),
    GcDbEntityAccess::color(),
    GcDbEntityAccess::lineWeight(),
    GcDbEntityAccess::linetypeScale(),
    GcDbEntityAccess::invisible(),
    GcDbEntityAccess::trueColor(),
    GcDbEntityAccess::row<&GcDbObjectExtra::colorBook>(430, "colorBook", Is::Plain).from(GcDb::kDHL_AC1018),
    GcDbEntityAccess::row<&GcDbObjectExtra::transparency>(440, "transparency", Is::Plain).from(GcDb::kDHL_AC1018),
    GcDbEntityAccess::row<&GcDbObjectExtra::plotStyleFlags>(380, "plotStyleType", Is::Plain).from(GcDb::kDHL_AC1015),
    GcDbEntityAccess::row<&GcDbObjectExtra::plotStyle>(390, "plotStyle", Is::HardPointer).from(GcDb::kDHL_AC1015),
    GcDbEntityAccess::row<&GcDbObjectExtra::shadowFlags>(284, "shadowFlags", Is::Plain).from(GcDb::kDHL_AC1021),
};
GCDB_FIELD_COUNT(GcDbEntity);

void GcDbExtents::addPoint(const GcGePoint3d& p) {
  min = {std::fmin(min.x, p.x), std::fmin(min.y, p.y), std::fmin(min.z, p.z)};
  max = {std::fmax(max.x, p.x), std::fmax(max.y, p.y), std::fmax(max.z, p.z)};
}

void GcDbExtents::addExt(const GcDbExtents& e) {
  if (e.isEmpty()) return;
  addPoint(e.min);
  addPoint(e.max);
}

namespace {

GcDbDatabase* databaseOf(const GcDbEntity& entity) {
  return entity.database() != nullptr ? entity.database() : gcdbHostApplicationServices()->workingDatabase();
}

// Calls f on every sub-entity, opened for write.
template <class F>
void onSubEntities(const GcDbEntity& entity, bool wanted, const F& f) {
  if (!wanted) return;
  GcDbObjectIdArray ids;
  entity.subEntities(ids);
  for (const GcDbObjectId id : ids) {
    GcDbEntity* part = nullptr;
    if (gcdbOpenObject(part, id, GcDb::kForWrite) != Gcad::eOk) continue;
    f(*part);
    ignore(part->close());
  }
}

Gcad::ErrorStatus idOfRecord(const GcDbEntity& entity, GcDbDatabase::Table which, const GCHAR* name, GcDbObjectId& id) {
  GcDbDatabase* database = databaseOf(entity);
  if (database == nullptr) return Gcad::eNoDatabase;
  GcDbSymbolTable* table = nullptr;
  const Gcad::ErrorStatus status = gcdbOpenObject(
      table, which == GcDbDatabase::kLayers ? database->layerTableId() : database->linetypeTableId(), GcDb::kForRead);
  if (status != Gcad::eOk) return status;
  const Gcad::ErrorStatus found = table->getAt(name, id);
  ignore(table->close());
  return found;
}

}  // namespace

Gcad::ErrorStatus GcDbEntity::setColor(const GcCmEntityColor& color, bool doSubents) {
  assertWriteEnabled();
  m_color = color;
  onSubEntities(*this, doSubents, [&](GcDbEntity& part) { ignore(part.setColor(color)); });
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbEntity::setColorIndex(int index, bool doSubents) {
  if (index < 0 || index > 256) return Gcad::eInvalidInput;
  return setColor(GcCmEntityColor::fromIndex(index), doSubents);
}

GcString GcDbEntity::layer() const { return toGcString(gcdbNameOfRecord(m_layerId)); }

Gcad::ErrorStatus GcDbEntity::setLayer(const GCHAR* name, bool doSubents, bool allowHidden) {
  GcDbObjectId id;
  const Gcad::ErrorStatus status = idOfRecord(*this, GcDbDatabase::kLayers, name, id);
  return status == Gcad::eOk ? setLayer(id, doSubents, allowHidden) : status;
}

Gcad::ErrorStatus GcDbEntity::setLayer(GcDbObjectId id, bool doSubents, bool) {
  if (id.objectClass() != GcDbLayerTableRecord::desc()) return Gcad::eInvalidInput;
  assertWriteEnabled();
  m_layerId = id;
  onSubEntities(*this, doSubents, [&](GcDbEntity& part) { ignore(part.setLayer(id)); });
  return Gcad::eOk;
}

GcString GcDbEntity::linetype() const {
  if (!m_linetypeId.isNull()) return toGcString(gcdbNameOfRecord(m_linetypeId));
  return GC_T("ByLayer");
}

Gcad::ErrorStatus GcDbEntity::setLinetype(const GCHAR* name, bool doSubents) {
  GcDbObjectId id;
  const Gcad::ErrorStatus status = idOfRecord(*this, GcDbDatabase::kLinetypes, name, id);
  return status == Gcad::eOk ? setLinetype(id, doSubents) : status;
}

// "By layer" is kept as no linetype at all: most entities have none, and files leave it out.
Gcad::ErrorStatus GcDbEntity::setLinetype(GcDbObjectId id, bool doSubents) {
  assertWriteEnabled();
  m_linetypeId = id == id.database()->byLayerLinetype() ? GcDbObjectId() : id;
  onSubEntities(*this, doSubents, [&](GcDbEntity& part) { ignore(part.setLinetype(id)); });
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbEntity::setLinetypeScale(double scale, bool doSubents) {
  if (!(scale > 0)) return Gcad::eInvalidInput;
  assertWriteEnabled();
  m_linetypeScale = scale;
  onSubEntities(*this, doSubents, [&](GcDbEntity& part) { ignore(part.setLinetypeScale(scale)); });
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbEntity::setVisibility(GcDb::Visibility visibility, bool doSubents) {
  assertWriteEnabled();
  m_invisible = visibility == GcDb::kInvisible;
  onSubEntities(*this, doSubents, [&](GcDbEntity& part) { ignore(part.setVisibility(visibility)); });
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbEntity::setLineWeight(GcDb::LineWeight weight, bool doSubents) {
  static constexpr int16_t kValid[] = {-3, -2, -1, 0,  5,  9,  13,  15,  18,  20,  25,  30,  35, 40,
                                       50, 53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};
  bool valid = false;
  for (const int16_t each : kValid) valid = valid || each == weight;
  if (!valid) return Gcad::eInvalidInput;
  assertWriteEnabled();
  m_lineWeight = weight;
  onSubEntities(*this, doSubents, [&](GcDbEntity& part) { ignore(part.setLineWeight(weight)); });
  return Gcad::eOk;
}

namespace {

constexpr int8_t kPlotStyleByBlock = 1;

// The drawing's plot styles by name.
class PlotStyles {
 public:
  explicit PlotStyles(const GcDbDatabase* database) {
    GcDbDictionary* root = nullptr;
    GcDbObjectId id;
    if (database == nullptr || gcdbOpenObject(root, database->namedObjectsDictionaryId(), GcDb::kForRead) != Gcad::eOk)
      return;
    ignore(root->getAt(GC_T("ACAD_PLOTSTYLENAME"), id));
    ignore(root->close());
    ignore(gcdbOpenObject(m_styles, id, GcDb::kForRead));
  }
  PlotStyles(const PlotStyles&) = delete;
  PlotStyles& operator=(const PlotStyles&) = delete;
  ~PlotStyles() {
    if (m_styles != nullptr) ignore(m_styles->close());
  }
  [[nodiscard]] GcString nameOf(GcDbObjectId style) const {
    GcString name;
    if (m_styles != nullptr) ignore(m_styles->nameAt(style, name));
    return name;
  }
  [[nodiscard]] GcDbObjectId find(const GCHAR* name) const {
    GcDbObjectId id;
    if (m_styles == nullptr || !m_styles->has(name)) return id;
    ignore(m_styles->getAt(name, id));
    return id;
  }

 private:
  GcDbDictionary* m_styles = nullptr;
};

}  // namespace

GcString GcDbEntity::plotStyleName() const {
  const GcDbObjectExtra* rare = extra();
  if (rare == nullptr) return GC_T("ByLayer");
  if (!rare->plotStyle.isNull()) {
    const GcString name = PlotStyles(database()).nameOf(rare->plotStyle);
    return name.isEmpty() ? GcString(GC_T("ByLayer")) : name;
  }
  return rare->plotStyleFlags == kPlotStyleByBlock ? GC_T("ByBlock") : GC_T("ByLayer");
}

// Where plot styles follow from colours, entities have none of their own.
Gcad::ErrorStatus GcDbEntity::setPlotStyleName(const GCHAR* name, bool doSubents) {
  if (name == nullptr || name[0] == 0) return Gcad::eInvalidInput;
  const GcDbDatabase* home = databaseOf(*this);
  if (home == nullptr) return Gcad::eNoDatabase;
  if (home->header().integer(GC_T("$PSTYLEMODE"), 1) != 0) return Gcad::eNotApplicable;
  const bool byLayer = equalNoCase(view(name), GC_T("ByLayer")), byBlock = equalNoCase(view(name), GC_T("ByBlock"));
  const GcDbObjectId style = byLayer || byBlock ? GcDbObjectId() : PlotStyles(home).find(name);
  if (!byLayer && !byBlock && style.isNull()) return Gcad::eKeyNotFound;
  assertWriteEnabled();
  needExtra().plotStyle = style;
  needExtra().plotStyleFlags = byBlock ? kPlotStyleByBlock : int8_t{0};
  onSubEntities(*this, doSubents, [&](GcDbEntity& part) { ignore(part.setPlotStyleName(name)); });
  return Gcad::eOk;
}

void GcDbEntity::setDatabaseDefaults(GcDbDatabase* database) {
  if (database == nullptr) database = databaseOf(*this);
  if (database == nullptr) return;
  m_layerId = database->clayer();
  const GcDbObjectId linetype = database->celtype();
  m_linetypeId = linetype == database->byLayerLinetype() ? GcDbObjectId() : linetype;
  m_color = database->cecolor();
  m_linetypeScale = database->celtscale();
  m_lineWeight = database->celweight();
}

Gcad::ErrorStatus GcDbEntity::setPropertiesFrom(const GcDbEntity& other, bool doSubents) {
  assertWriteEnabled();
  m_layerId = other.m_layerId;
  m_linetypeId = other.m_linetypeId;
  m_linetypeScale = other.m_linetypeScale;
  m_color = other.m_color;
  m_lineWeight = other.m_lineWeight;
  m_invisible = other.m_invisible;
  const GcDbObjectExtra* rare = other.extra();
  if (rare != nullptr && (!rare->plotStyle.isNull() || rare->plotStyleFlags != 0)) {
    needExtra().plotStyle = rare->plotStyle;
    needExtra().plotStyleFlags = rare->plotStyleFlags;
  }
  onSubEntities(*this, doSubents, [&](GcDbEntity& part) { ignore(part.setPropertiesFrom(other, false)); });
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbEntity::transformBy(const GcGeMatrix3d& transform) {
  assertWriteEnabled();
  return subTransformBy(transform);
}

Gcad::ErrorStatus GcDbEntity::subTransformBy(const GcGeMatrix3d& transform) {
  const Gcad::ErrorStatus status = gcdbTransformFields(*this, transform);
  onSubEntities(*this, status == Gcad::eOk, [&](GcDbEntity& part) { ignore(part.transformBy(transform)); });
  return status;
}

void GcDbEntity::subAppended() {}
bool GcDbEntity::isPlanar() const { return false; }
GcGeVector3d GcDbEntity::normal() const { return GcGeVector3d::kZAxis; }
Gcad::ErrorStatus GcDbEntity::explode(GcDbVoidPtrArray&) const { return Gcad::eNotApplicable; }
void GcDbEntity::subEntities(GcDbObjectIdArray& ids) const { subOwned(ids); }

uint32_t GcDbEntity::subSetAttributes(GcGiDrawableTraits* traits) {
  traits->setLayer(m_layerId);
  traits->setColor(m_color);
  traits->setLineType(m_linetypeId);
  traits->setLineTypeScale(m_linetypeScale);
  traits->setLineWeight(m_lineWeight);
  return 0;
}
