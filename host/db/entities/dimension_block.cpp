// The block that shows a dimension, made of what the dimension draws by itself.
#include <cmath>
#include <memory>
#include <vector>

#include "db/arc.h"
#include "db/circle.h"
#include "db/database.h"
#include "db/dimension.h"
#include "db/line.h"
#include "db/solid.h"
#include "db/text.h"
#include "host/db/core/loader.h"
#include "host/db/entities/planar.h"
#include "host/gi/listener.h"
#include "host/rx/view.h"

namespace {

// Makes entities of everything that is drawn, in world coordinates.
class PartMaker final : public GcGiListener {
 public:
  [[nodiscard]] double deviation() const override { return 0; }

  std::vector<std::unique_ptr<GcDbEntity>> parts;

 private:
  void add(GcDbEntity* part) {
    std::unique_ptr<GcDbEntity> owned(part);
    if (!isMoved() || owned->transformBy(transform()) == Gcad::eOk) parts.push_back(std::move(owned));
  }
  void polyline(int count, const GcGePoint3d* points, bool closed) override {
    for (int i = 0; i + 1 < count || (closed && i < count); ++i) add(new GcDbLine(points[i], points[(i + 1) % count]));
  }
  void polygon(int count, const GcGePoint3d* points) override {
    for (int i = 1; i + 1 < count; ++i) add(new GcDbSolid(points[0], points[i], points[i + 1]));
  }
  void polyPolygon(int loopCount, const int* pointCounts, const GcGePoint3d* points) override {
    for (int i = 0; i < loopCount; points += pointCounts[i++]) polygon(pointCounts[i], points);
  }
  void circle(const GcGePoint3d& center, double radius, const GcGeVector3d& normal) override {
    add(new GcDbCircle(center, normal, radius));
  }
  void circularArc(const GcGePoint3d& center, double radius, const GcGeVector3d& normal, const GcGeVector3d& start,
                   double sweepRad) override {
    const double from = gcplanar::angleOf(start, normal);
    add(new GcDbArc(center, normal, radius, from, gcplanar::inFullTurn(from + sweepRad)));
  }
  void text(const GcGePoint3d& position, const GcGeVector3d& normal, const GcGeVector3d& direction, const GCHAR* text,
            const GcGiTextStyle& style) override {
    auto* made = new GcDbText(position, text, GcDbObjectId(), style.height, gcplanar::angleOf(direction, normal));
    ignore(made->setNormal(normal));
    ignore(made->setPosition(position));
    add(made);
  }
  void bezier(int count, const GcGePoint3d* points) override {
    constexpr int kSides = 8;
    for (int i = 0; i + 3 < count; i += 3) {
      GcGePoint3d from = points[i];
      for (int k = 1; k <= kSides; ++k) {
        const double t = static_cast<double>(k) / kSides, s = 1 - t;
        const GcGePoint3d to =
            GcGePoint3d() + (points[i].asVector() * (s * s * s) + points[i + 1].asVector() * (3 * s * s * t) +
                             points[i + 2].asVector() * (3 * s * t * t) + points[i + 3].asVector() * (t * t * t));
        add(new GcDbLine(from, to));
        from = to;
      }
    }
  }
};

// A new block of the next free name for dimensions.
GcDbObjectId newBlock(GcDbDatabase& database) {
  GcDbObjectId id;
  GcDbBlockTable* blocks = nullptr;
  if (database.getSymbolTable(blocks, GcDb::kForWrite) != Gcad::eOk) return id;
  auto record = std::make_unique<GcDbBlockTableRecord>();
  GcText name;
  for (int n = 1; name.empty() || blocks->has(name.c_str()); ++n) name = GC_T("*D") + fromUtf8(std::to_string(n));
  constexpr int kAnonymous = 1;
  ignore(record->setBlockFlags(kAnonymous));
  if (record->setName(name.c_str()) == Gcad::eOk && blocks->add(id, record.get()) == Gcad::eOk)
    ignore(record.release()->close());
  ignore(blocks->close());
  if (!id.isNull()) GcDbLoader::completeBlock(id);
  return id;
}

void fillBlock(GcDbDatabase& database, GcDbObjectId id, std::vector<std::unique_ptr<GcDbEntity>>& parts) {
  GcDbBlockTableRecord* record = nullptr;
  if (gcdbOpenObject(record, id, GcDb::kForWrite) != Gcad::eOk) return;
  for (std::unique_ptr<GcDbEntity>& each : parts) {
    if (record->appendGcDbEntity(each.get()) != Gcad::eOk) continue;
    GcDbEntity* part = each.release();
    ignore(part->setLayer(database.layerZero()));
    ignore(part->setColorIndex(0));
    ignore(part->setLinetype(database.byBlockLinetype()));
    ignore(part->setLineWeight(GcDb::kLnWtByBlock));
    ignore(part->close());
  }
  ignore(record->close());
}

void eraseBlock(GcDbObjectId id) {
  GcDbBlockTableRecord* record = nullptr;
  if (gcdbOpenObject(record, id, GcDb::kForWrite) != Gcad::eOk) return;
  ignore(record->erase());
  ignore(record->close());
}

}  // namespace

Gcad::ErrorStatus GcDbDimension::recomputeDimBlock() {
  constexpr int kOwnBlock = 32;
  if (database() == nullptr) return Gcad::eNotInDatabase;
  assertWriteEnabled();
  PartMaker maker;
  drawPlainly(maker);
  if (maker.parts.empty()) return Gcad::eNotApplicable;
  const GcDbObjectId fresh = newBlock(*database());
  if (fresh.isNull()) return Gcad::eInvalidInput;
  fillBlock(*database(), fresh, maker.parts);
  if ((m_flags & kOwnBlock) != 0 && m_blockId.isValid()) eraseBlock(m_blockId);
  m_blockId = fresh;
  m_cloneOffset = GcGePoint3d();
  m_flags = static_cast<int16_t>(m_flags | kOwnBlock);
  return Gcad::eOk;
}
