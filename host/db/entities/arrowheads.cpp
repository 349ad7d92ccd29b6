#include "host/db/entities/arrowheads.h"

#include "db/arc.h"
#include "db/blockreference.h"
#include "db/circle.h"
#include "db/line.h"
#include "db/polyline.h"
#include "db/solid.h"
#include "host/db/core/loader.h"
#include "host/db/core/names.h"

namespace gcarrow {
namespace {

// What an arrowhead is drawn with, in units of its size.
struct Stroke {
  enum Kind : uint8_t { kEnd, kLine, kCircle, kDisc, kSolid, kArc, kWideLine };
  Kind kind = kEnd;
  double a = 0, b = 0, c = 0, d = 0, e = 0, f = 0;  // line: from, to; circle: center, radius; solid: three corners
};

struct Shape {
  const GCHAR* name;
  Stroke strokes[6];
};

constexpr double kHalfWidth = 1.0 / 6.0;  // of the closed arrows
constexpr double kTan15 = 0.26794919243112270647;

constexpr Shape kShapes[] = {
    {GC_T("_Dot"), {{Stroke::kDisc, 0, 0, 0.5}, {Stroke::kLine, -0.5, 0, -1, 0}}},
    {GC_T("_DotSmall"), {{Stroke::kDisc, 0, 0, 0.25}}},
    {GC_T("_DotBlank"), {{Stroke::kCircle, 0, 0, 0.5}, {Stroke::kLine, -0.5, 0, -1, 0}}},
    {GC_T("_Origin"), {{Stroke::kCircle, 0, 0, 0.5}, {Stroke::kLine, 0, 0, -1, 0}}},
    {GC_T("_Origin2"), {{Stroke::kCircle, 0, 0, 0.5}, {Stroke::kCircle, 0, 0, 0.25}, {Stroke::kLine, -0.5, 0, -1, 0}}},
    {GC_T("_Open"),
     {{Stroke::kLine, -1, kHalfWidth, 0, 0}, {Stroke::kLine, 0, 0, -1, -kHalfWidth}, {Stroke::kLine, 0, 0, -1, 0}}},
    {GC_T("_Open90"),
     {{Stroke::kLine, -0.5, 0.5, 0, 0}, {Stroke::kLine, 0, 0, -0.5, -0.5}, {Stroke::kLine, 0, 0, -1, 0}}},
    {GC_T("_Open30"),
     {{Stroke::kLine, -1, kTan15, 0, 0}, {Stroke::kLine, 0, 0, -1, -kTan15}, {Stroke::kLine, 0, 0, -1, 0}}},
    {GC_T("_Closed"),
     {{Stroke::kLine, -1, kHalfWidth, 0, 0},
      {Stroke::kLine, 0, 0, -1, -kHalfWidth},
      {Stroke::kLine, -1, -kHalfWidth, -1, kHalfWidth},
      {Stroke::kLine, 0, 0, -1, 0}}},
    {GC_T("_Small"), {{Stroke::kCircle, 0, 0, 0.25}}},
    {GC_T("_None"), {}},
    {GC_T("_Oblique"), {{Stroke::kLine, -0.5, -0.5, 0.5, 0.5}}},
    {GC_T("_BoxFilled"),
     {{Stroke::kSolid, -0.5, -0.5, 0.5, -0.5, -0.5, 0.5},
      {Stroke::kSolid, 0.5, 0.5, 0.5, -0.5, -0.5, 0.5},
      {Stroke::kLine, -0.5, 0, -1, 0}}},
    {GC_T("_BoxBlank"),
     {{Stroke::kLine, -0.5, -0.5, 0.5, -0.5},
      {Stroke::kLine, 0.5, -0.5, 0.5, 0.5},
      {Stroke::kLine, 0.5, 0.5, -0.5, 0.5},
      {Stroke::kLine, -0.5, 0.5, -0.5, -0.5},
      {Stroke::kLine, -0.5, 0, -1, 0}}},
    {GC_T("_ClosedBlank"),
     {{Stroke::kLine, -1, kHalfWidth, 0, 0},
      {Stroke::kLine, 0, 0, -1, -kHalfWidth},
      {Stroke::kLine, -1, -kHalfWidth, -1, kHalfWidth}}},
    {GC_T("_DatumFilled"), {{Stroke::kSolid, 0, 0.57735, -1, 0, 0, -0.57735}}},
    {GC_T("_DatumBlank"),
     {{Stroke::kLine, 0, 0.57735, -1, 0},
      {Stroke::kLine, -1, 0, 0, -0.57735},
      {Stroke::kLine, 0, -0.57735, 0, 0.57735}}},
    {GC_T("_Integral"),
     {{Stroke::kArc, 0.44488802, -0.09133463, 0.45416667, 1.78023584, 2.93215314},
      {Stroke::kArc, -0.44488802, 0.09133463, 0.45416667, 4.92182849, 6.07374580}}},
    {GC_T("_ArchTick"), {{Stroke::kWideLine, -0.5, -0.5, 0.5, 0.5, 0.15}}},
};

GcDbEntity* make(const Stroke& s) {
  switch (s.kind) {
    case Stroke::kLine: return new GcDbLine({s.a, s.b, 0}, {s.c, s.d, 0});
    case Stroke::kCircle: return new GcDbCircle({s.a, s.b, 0}, GcGeVector3d::kZAxis, s.c);
    case Stroke::kArc: return new GcDbArc({s.a, s.b, 0}, s.c, s.d, s.e);
    case Stroke::kSolid: return new GcDbSolid({s.a, s.b, 0}, {s.c, s.d, 0}, {s.e, s.f, 0});
    case Stroke::kDisc: {  // two half circles as wide as their radius
      auto* disc = new GcDbPolyline(2);
      ignore(disc->addVertexAt(0, {s.a - s.c / 2, s.b}, 1, s.c, s.c));
      ignore(disc->addVertexAt(1, {s.a + s.c / 2, s.b}, 1, s.c, s.c));
      disc->setClosed(true);
      return disc;
    }
    case Stroke::kWideLine: {
      auto* line = new GcDbPolyline(2);
      ignore(line->addVertexAt(0, {s.a, s.b}, 0, s.e, s.e));
      ignore(line->addVertexAt(1, {s.c, s.d}, 0, s.e, s.e));
      return line;
    }
    default: return nullptr;
  }
}

const Shape* shapeNamed(GcView name) {
  for (const Shape& shape : kShapes)
    if (equalNoCase(view(shape.name), name)) return &shape;
  return nullptr;
}

GcDbObjectId makeBlock(GcDbDatabase& database, const Shape& shape) {
  GcDbObjectId id;
  GcDbBlockTable* blocks = nullptr;
  if (database.getSymbolTable(blocks, GcDb::kForWrite) != Gcad::eOk) return id;
  auto* record = new GcDbBlockTableRecord;
  const bool added = record->setName(shape.name) == Gcad::eOk && blocks->add(id, record) == Gcad::eOk;
  ignore(blocks->close());
  if (!added) {
    delete record;
    return {};
  }
  for (const Stroke& stroke : shape.strokes) {
    GcDbEntity* part = make(stroke);
    if (part == nullptr) continue;
    ignore(record->appendGcDbEntity(part));
    ignore(part->setLayer(database.layerZero()));
    ignore(part->setColorIndex(0));
    ignore(part->setLinetype(database.byBlockLinetype()));
    ignore(part->setLineWeight(GcDb::kLnWtByBlock));
    ignore(part->close());
  }
  ignore(record->close());
  GcDbLoader::completeBlock(id);
  return id;
}

}  // namespace

GcDbObjectId blockNamed(GcDbDatabase& database, GcView name) {
  GcDbObjectId id;
  GcDbBlockTable* blocks = nullptr;
  if (database.getSymbolTable(blocks) != Gcad::eOk) return id;
  const GcText terminated(name);
  ignore(blocks->getAt(terminated.c_str(), id));
  ignore(blocks->close());
  if (!id.isNull()) return id;
  const Shape* shape = shapeNamed(name);
  return shape == nullptr ? GcDbObjectId() : makeBlock(database, *shape);
}

double reach(GcDbObjectId block, double size) {
  static constexpr const GCHAR* kCrossed[] = {GC_T("_None"),     GC_T("_Oblique"), GC_T("_ArchTick"),
                                              GC_T("_DotSmall"), GC_T("_Small"),   GC_T("_Integral")};
  if (block.isNull()) return size;
  const GcText name(gcdbNameOfRecord(block));
  for (const GCHAR* each : kCrossed)
    if (equalNoCase(name, view(each))) return 0;
  return size;
}

void draw(GcGiWorldDraw& draw, GcDbObjectId block, const GcGePoint3d& tip, const GcGeVector3d& direction, double size,
          const GcGeVector3d& normal) {
  if (!(size > 0) || direction.isZeroLength()) return;
  const GcGeVector3d x = direction.normal();
  const GcGeVector3d y = normal.crossProduct(x).normal();
  if (block.isNull()) {
    const GcGePoint3d corners[3] = {tip, tip - x * size + y * (size * kHalfWidth),
                                    tip - x * size - y * (size * kHalfWidth)};
    draw.geometry().polygon(3, corners);
    return;
  }
  GcGeMatrix3d place;
  place.setCoordSystem(tip, x * size, y * size, normal * size);
  GcDbBlockReference stamp(GcGePoint3d(), block);
  draw.geometry().pushModelTransform(place);
  stamp.subWorldDraw(&draw);
  draw.geometry().popModelTransform();
}

}  // namespace gcarrow
