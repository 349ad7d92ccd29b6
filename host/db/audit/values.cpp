#include <cmath>

#include "db/arc.h"
#include "db/circle.h"
#include "db/ellipse.h"
#include "db/mesh.h"
#include "db/spline.h"
#include "db/text.h"
#include "host/db/audit/auditor.h"
#include "host/db/core/extra.h"
#include "host/db/describe/fieldio.h"
#include "host/rx/math/elementary.h"

namespace {

// The real numbers a member is made of: how many, and where.
int realsOf(Kind kind) {
  switch (kind) {
    case Kind::Real: return 1;
    case Kind::Point2d:
    case Kind::Vector2d: return 2;
    case Kind::Point3d:
    case Kind::Vector3d: return 3;
    default: return 0;
  }
}

class Values {
 public:
  Values(GcDbAuditor& auditor, GcDbObject& object) : m_auditor(auditor), m_object(object) {}

  void row(const GcDbField& row, void* record) {
    if (row.at == nullptr || row.isEcho || row.is == Is::Marker || row.is == Is::Count || row.inExtra) return;
    void* member = row.at(record);
    if (row.kind == Kind::Records) {
      const int size = row.records->size(member);
      for (int i = 0; i < size; ++i)
        for (int r = 0; r < row.rowCount; ++r) this->row(row.rows[r], row.records->at(member, i));
      return;
    }
    const int count = realsOf(row.kind);
    if (count != 0) check(row, static_cast<double*>(member), count, record);
  }

 private:
  void check(const GcDbField& row, double* reals, int count, const void* record) {
    const bool isUnit = count == 3 && (row.is == Is::Normal || row.is == Is::Direction) && row.applies(record);
    bool isFinite = true;
    for (int i = 0; i < count; ++i) isFinite = isFinite && std::isfinite(reals[i]);
    if (!isFinite && m_auditor.found(GcDbDefect::NotFinite, &m_object, row.name)) {
      for (int i = 0; i < count; ++i) reals[i] = count == 1 ? row.defaultValue : 0;
      isFinite = true;
      if (isUnit) setAxis(row, reals);
    }
    if (isUnit && isFinite) checkUnit(row, reals);
  }

  void checkUnit(const GcDbField& row, double* v) {
    constexpr double kOff = 1e-6;  // files keep few digits
    const double length = gc::hypot(v[0], v[1], v[2]);
    if (std::fabs(length - 1) <= kOff || !m_auditor.found(GcDbDefect::Direction, &m_object, row.name)) return;
    if (length > 0)
      for (int i = 0; i < 3; ++i) v[i] /= length;
    else
      setAxis(row, v);
  }

  static void setAxis(const GcDbField& row, double* v) {
    const int axis = row.is == Is::Normal ? 2 : row.defaultAxis < 0 ? 0 : row.defaultAxis;
    for (int i = 0; i < 3; ++i) v[i] = i == axis ? 1 : 0;
  }

  GcDbAuditor& m_auditor;
  GcDbObject& m_object;
};

bool isWeight(int weight) {
  constexpr int kWeights[] = {-3, -2, -1, 0,  5,  9,  13,  15,  18,  20,  25,  30,  35, 40,
                              50, 53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};
  for (const int each : kWeights)
    if (each == weight) return true;
  return false;
}

void auditLook(GcDbAuditor& auditor, GcDbEntity& entity) {
  const int index = entity.color().isByColor() ? 7 : entity.colorIndex();
  if ((index < 0 || index > 256) && auditor.found(GcDbDefect::Color, &entity, std::to_string(index)))
    ignore(entity.setColor(GcCmEntityColor::byLayer(), false));
  const int weight = entity.lineWeight();
  if (!isWeight(weight) && auditor.found(GcDbDefect::LineWeight, &entity, std::to_string(weight)))
    ignore(entity.setLineWeight(GcDb::kLnWtByLayer, false));
  const double scale = entity.linetypeScale();
  if (!(scale > 0) && auditor.found(GcDbDefect::LinetypeScale, &entity)) ignore(entity.setLinetypeScale(1, false));
}

// The size without which an entity is none; above zero for all that have none.
double sizeOf(const GcDbEntity& entity) {
  if (const auto* circle = GcDbCircle::cast(&entity)) return circle->radius();
  if (const auto* arc = GcDbArc::cast(&entity)) return arc->radius();
  if (const auto* ellipse = GcDbEllipse::cast(&entity)) return ellipse->radiusRatio();
  if (const auto* text = GcDbText::cast(&entity)) return text->height();
  return 1;
}

void auditCounts(GcDbAuditor& auditor, const GcDbEntity& entity) {
  const int parts = entity.extra() != nullptr ? entity.extra()->parts.length() : 0;
  if (const auto* spline = GcDbSpline::cast(&entity)) {
    const int points = spline->numControlPoints();
    if (points != 0 && spline->knots().length() != points + spline->degree() + 1)
      auditor.found(GcDbDefect::Counts, &entity,
                    std::to_string(spline->knots().length()) + " knots, " + std::to_string(points) + " control points");
  }
  if (const auto* mesh = GcDbPolygonMesh::cast(&entity)) {
    if (parts < mesh->mSize() * mesh->nSize())
      auditor.found(GcDbDefect::Counts, &entity,
                    std::to_string(parts) + " vertices of a mesh of " + std::to_string(mesh->mSize()) + " by " +
                        std::to_string(mesh->nSize()));
  }
}

}  // namespace

void gcdbAuditValues(GcDbAuditor& auditor) {
  auditor.forEach([&](GcDbObject& object) {
    const GcDbMending mending(object);
    const GcDbClassInfo* info = gcdbInfoOf(object);
    Values values(auditor, object);
    for (int i = 0; info != nullptr && i < info->rowCount; ++i) values.row(*info->rows[i], &object);
    auto* entity = GcDbEntity::cast(&object);
    if (entity == nullptr) return;
    auditLook(auditor, *entity);
    auditCounts(auditor, *entity);
    if (!(sizeOf(*entity) > 0) && auditor.found(GcDbDefect::Size, entity)) object.objectId().stub()->erased = true;
  });
}
