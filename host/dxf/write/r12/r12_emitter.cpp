#include "host/dxf/write/r12/r12_emitter.h"

#include "db/polyline.h"
#include "host/db/core/names.h"
#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"
#include "host/db/entities/planar.h"
#include "host/dxf/angles.h"

namespace gc::dxf {

R12Emitter::R12Emitter(GroupWriter& out, const R12Names& names, const GcDbDatabase& database, std::uint64_t& nextHandle)
    : m_out(out), m_names(names), m_database(database), m_nextHandle(nextHandle) {}

void R12Emitter::start(const GcDbEntity& original, bool inPaperSpace, bool givesHandle) {
  m_original = &original;
  m_handle = givesHandle ? static_cast<std::uint64_t>(original.handle()) : 0;
  m_isFirst = true;
  m_inPaperSpace = inPaperSpace;
  m_counts.clear();
  setLayer(original.layerId());
  setLinetype(original.linetypeId());
  m_color = original.colorIndex();
}

std::string R12Emitter::written() const {
  std::string text;
  for (const auto& [type, count] : m_counts)
    text += (text.empty() ? "" : ", ") + (count == 1 ? type : std::to_string(count) + ' ' + type);
  return text;
}

void R12Emitter::setLayer(GcDbObjectId id) {
  const GcView name = gcdbNameOfRecord(id.isNull() ? m_database.layerZero() : id);
  m_layer = m_names.of(GcDbDatabase::kLayers, name.empty() ? GcView(GC_T("0")) : name);
}

void R12Emitter::setLinetype(GcDbObjectId id) {
  m_linetype = id.isNull() || id == m_database.byLayerLinetype()
                   ? GcText()
                   : m_names.of(GcDbDatabase::kLinetypes, gcdbNameOfRecord(id));
}

void R12Emitter::head(const char* type, std::uint64_t handle) {
  TagWriter& tags = m_out.tags();
  tags.writeString(0, type);
  tags.writeHandle(5, handle);
  m_out.putText(8, m_layer);
  if (!m_linetype.empty()) m_out.putText(6, m_linetype);
  if (m_color != 256) tags.writeInt(62, m_color);
  if (m_inPaperSpace) tags.writeInt(67, 1);
}

void R12Emitter::begin(const char* type) {
  ++m_counts[type];
  head(type, m_isFirst && m_handle != 0 ? m_handle : m_nextHandle++);
}

// The extended data of the original goes to the first entity, before anything else begins.
void R12Emitter::end() {
  if (m_isFirst && m_original && m_original->extra()) putR12XData(m_out, m_names, m_original->extra()->xdata);
  m_isFirst = false;
}

void R12Emitter::normal(const GcGeVector3d& n) {
  if (!(n == GcGeVector3d::kZAxis)) m_out.tags().writePoint(210, n.x, n.y, n.z);
}

void R12Emitter::line(const GcGePoint3d& from, const GcGePoint3d& to) {
  begin("LINE");
  point(10, from);
  point(11, to);
  end();
}

void R12Emitter::vertex(const GcGePoint3d& p, int flags) {
  head("VERTEX", m_nextHandle++);
  point(10, p);
  if (flags != 0) m_out.tags().writeInt(70, flags);
}

void R12Emitter::polyline(std::span<const GcGePoint3d> points, bool closed) {
  if (points.size() == 2 && !closed) {
    line(points[0], points[1]);
    return;
  }
  if (points.size() < 2) return;
  constexpr int k3d = 8, k3dVertex = 32;
  bool isFlat = true;
  for (const GcGePoint3d& p : points) isFlat = isFlat && p.z == points[0].z;
  begin("POLYLINE");
  TagWriter& tags = m_out.tags();
  tags.writeInt(66, 1);
  point(10, {0, 0, isFlat ? points[0].z : 0});
  tags.writeInt(70, (closed ? 1 : 0) | (isFlat ? 0 : k3d));
  end();
  for (const GcGePoint3d& p : points) vertex(p, isFlat ? 0 : k3dVertex);
  head("SEQEND", m_nextHandle++);
}

void R12Emitter::lightweight(const GcDbPolyline& polyline) {
  constexpr int kPlinegen = 128;
  begin("POLYLINE");
  TagWriter& tags = m_out.tags();
  tags.writeInt(66, 1);
  point(10, {0, 0, polyline.elevation()});
  if (polyline.thickness() != 0) tags.writeReal(39, polyline.thickness());
  tags.writeInt(70, (polyline.isClosed() ? 1 : 0) | (polyline.hasPlinegen() ? kPlinegen : 0));
  double width = 0;
  const bool isEven = polyline.getConstantWidth(width) == Gcad::eOk;
  if (isEven && width != 0) {
    tags.writeReal(40, width);
    tags.writeReal(41, width);
  }
  normal(polyline.normal());
  end();
  for (const GcDbPolylineVertex& each : polyline.vertices()) {
    vertex({each.point.x, each.point.y, polyline.elevation()}, 0);
    if (each.startWidth != 0) tags.writeReal(40, each.startWidth);
    if (each.endWidth != 0) tags.writeReal(41, each.endWidth);
    if (each.bulge != 0) tags.writeReal(42, each.bulge);
  }
  head("SEQEND", m_nextHandle++);
}

void R12Emitter::circle(const GcGePoint3d& center, double radius, const GcGeVector3d& n) {
  begin("CIRCLE");
  point(10, gcplanar::toOwn(center, n));
  m_out.tags().writeReal(40, radius);
  normal(n);
  end();
}

void R12Emitter::arc(const GcGePoint3d& center, double radius, const GcGeVector3d& n, double startRad, double endRad) {
  begin("ARC");
  point(10, gcplanar::toOwn(center, n));
  TagWriter& tags = m_out.tags();
  tags.writeReal(40, radius);
  tags.writeReal(50, degreesOf(startRad));
  tags.writeReal(51, degreesOf(endRad));
  normal(n);
  end();
}

void R12Emitter::solid(std::span<const GcGePoint3d> corners) {
  if (corners.size() < 3) return;
  GcGeVector3d n = (corners[1] - corners[0]).crossProduct(corners[2] - corners[0]);
  if (n.length() == 0) n = (corners[2] - corners[0]).crossProduct(corners.back() - corners[0]);
  const bool isFlat = n.x == 0 && n.y == 0;
  n = isFlat ? GcGeVector3d::kZAxis : n * (1 / n.length());
  begin("SOLID");
  // The third and fourth corners stand crosswise.
  const GcGePoint3d order[4] = {corners[0], corners[1], corners.size() > 3 ? corners[3] : corners[2], corners[2]};
  for (int i = 0; i < 4; ++i) point(10 + i, gcplanar::toOwn(order[i], n));
  normal(n);
  end();
}

// The text style that has the font; fonts chosen within a text may have none.
GcText R12Emitter::styleOf(const GcGiTextStyle& style) const {
  const auto& table = static_cast<const GcDbSymbolTable&>(*m_database.textStyleTableId().stub()->object);
  for (const GcDbObjectId id : table.records()) {
    if (!id.isValid() || id.isErased()) continue;
    const auto* record = GcDbTextStyleTableRecord::cast(id.stub()->object);
    if (record && !record->isShapeFile() && equalNoCase(view(record->fileName()), view(style.fontFile)))
      return m_names.of(GcDbDatabase::kTextStyles, view(record->getName()));
  }
  return GC_T("STANDARD");
}

void R12Emitter::text(const GcGePoint3d& position, const GcGeVector3d& n, const GcGeVector3d& direction, GcView text,
                      const GcGiTextStyle& style) {
  constexpr int kBackward = 2, kUpsideDown = 4;
  begin("TEXT");
  point(10, gcplanar::toOwn(position, n));
  TagWriter& tags = m_out.tags();
  tags.writeReal(40, style.height);
  m_out.putText(1, text);
  if (const double angle = gcplanar::angleOf(direction, n); angle != 0) tags.writeReal(50, degreesOf(angle));
  if (style.widthFactor != 1) tags.writeReal(41, style.widthFactor);
  if (style.obliqueRad != 0) tags.writeReal(51, degreesOf(style.obliqueRad));
  m_out.putText(7, styleOf(style));
  const int generation = (style.backward ? kBackward : 0) | (style.upsideDown ? kUpsideDown : 0);
  if (generation != 0) tags.writeInt(71, generation);
  normal(n);
  end();
}

void R12Emitter::insert(GcView block, const GcGePoint3d& position) {
  begin("INSERT");
  m_out.putText(2, block);
  point(10, position);
  end();
}

void R12Emitter::insert(const GcDbEntity& reference, GcView block) {
  // The groups of a block reference among those of the class.
  class Placing final : public GcDbGroupSink {
   public:
    explicit Placing(GroupWriter& to) : m_to(to) {}
    void put(const GcDbGroup& group) override {
      const bool isScale = group.code >= 41 && group.code <= 43 && group.kind == GcDbGroupKind::Real;
      if (m_taken[group.code & 0xFF] || !(isScale || group.code == 10 || group.code == 50 || group.code == 210)) return;
      m_taken[group.code & 0xFF] = true;
      m_to.put(group);
    }

   private:
    GroupWriter& m_to;
    bool m_taken[0x100] = {};
  };
  begin("INSERT");
  m_out.putText(2, block);
  Placing placing(m_out);
  gcdbFieldsOut(reference, placing, GcDb::kDHL_Current);
  end();
}

}  // namespace gc::dxf
