// Plain entities of R12, one after the other: what stands in place of an entity R12 has not.
// Units:   drawing units, radians.
// System:  world coordinates; written in the entity's own system where R12 has one.
#pragma once

#include <map>
#include <span>

#include "db/entity.h"
#include "gi/drawable.h"
#include "host/dxf/write/r12/r12_groups.h"

class GcDbPolyline;

namespace gc::dxf {

class R12Emitter {
 public:
  // `nextHandle` is counted up for every handle taken.
  R12Emitter(GroupWriter& out, const R12Names& names, const GcDbDatabase& database, std::uint64_t& nextHandle);

  // Begins the replacement of an entity. The first entity written gets its extended data and, when it may, its handle.
  void start(const GcDbEntity& original, bool inPaperSpace, bool givesHandle);
  // What has been written since: "LINE", "3 LINE, TEXT"; empty for nothing.
  [[nodiscard]] std::string written() const;

  void setColor(int index) { m_color = index; }
  void setLayer(GcDbObjectId id);
  void setLinetype(GcDbObjectId id);

  void line(const GcGePoint3d& from, const GcGePoint3d& to);
  void polyline(std::span<const GcGePoint3d> points, bool closed);
  void lightweight(const GcDbPolyline& polyline);
  void circle(const GcGePoint3d& center, double radius, const GcGeVector3d& normal);
  void arc(const GcGePoint3d& center, double radius, const GcGeVector3d& normal, double startRad, double endRad);
  // Three or four corners in one plane, in order around.
  void solid(std::span<const GcGePoint3d> corners);
  void text(const GcGePoint3d& position, const GcGeVector3d& normal, const GcGeVector3d& direction, GcView text,
            const GcGiTextStyle& style);
  // A block by its name in R12.
  void insert(GcView block, const GcGePoint3d& position);
  // The same with groups for scale, turn and so on.
  void insert(const GcDbEntity& reference, GcView block);

 private:
  void begin(const char* type);
  void end();
  void head(const char* type, std::uint64_t handle);
  void point(int code, const GcGePoint3d& p) { m_out.tags().writePoint(code, p.x, p.y, p.z); }
  void normal(const GcGeVector3d& n);
  void vertex(const GcGePoint3d& p, int flags);
  [[nodiscard]] GcText styleOf(const GcGiTextStyle& style) const;

  GroupWriter& m_out;
  const R12Names& m_names;
  const GcDbDatabase& m_database;
  std::uint64_t& m_nextHandle;
  std::uint64_t m_handle = 0;  // the original's, until it is given
  const GcDbEntity* m_original = nullptr;
  bool m_isFirst = false;
  bool m_inPaperSpace = false;
  GcText m_layer, m_linetype;
  int m_color = 256;
  std::map<std::string, int> m_counts;
};

}  // namespace gc::dxf
