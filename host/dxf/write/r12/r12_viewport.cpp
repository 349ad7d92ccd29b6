#include "host/dxf/write/r12/r12_viewport.h"

#include <map>

#include "db/entity.h"
#include "host/db/core/names.h"
#include "host/db/describe/fieldio.h"
#include "host/dxf/angles.h"

namespace gc::dxf {
namespace {

// The groups of a viewport as files from R13 on have them, by code.
class Values final : public GcDbGroupSink {
 public:
  void put(const GcDbGroup& group) override {
    if (group.code == 331 || group.code == 341) {
      frozen.push_back(group.id);
    } else if (group.kind != GcDbGroupKind::Text && group.kind != GcDbGroupKind::Binary) {
      m_groups.try_emplace(group.code, group);
    }
  }
  [[nodiscard]] double real(int code, double otherwise) const {
    const auto found = m_groups.find(code);
    return found == m_groups.end() ? otherwise : found->second.asReal();
  }
  [[nodiscard]] int flag(int code, int bit) const { return (static_cast<int>(real(code, 0)) & bit) != 0 ? 1 : 0; }
  [[nodiscard]] GcGePoint3d point(int code, const GcGePoint3d& otherwise) const {
    const auto found = m_groups.find(code);
    return found == m_groups.end() ? otherwise : found->second.point;
  }
  std::vector<GcDbObjectId> frozen;

 private:
  std::map<int, GcDbGroup> m_groups;
};

}  // namespace

// Source: the published DXF reference of the version, "MVIEW" data. Bits of group 90: 1 perspective, 2 and 4 the
// clipping planes, 8 follow, 16 front not at the eye (the view mode of R12); 32 UCS icon, 64 it sits at the origin,
// 128 fast zoom, 256 snap, 512 grid, 1024 isometric snap, 2048 hidden lines are left out in plots.
void putViewportData(GroupWriter& out, const R12Names& names, const GcDbEntity& viewport) {
  constexpr int kReal = 1040, kInteger = 1070, kPoint = 1010, kBrace = 1002, kDataVersion = 16;
  Values of;
  gcdbFieldsOut(viewport, of, GcDb::kDHL_Current);
  TagWriter& tags = out.tags();
  const auto point = [&](const GcGePoint3d& p) { tags.writePoint(kPoint, p.x, p.y, p.z); };
  const auto real = [&](double value) { tags.writeReal(kReal, value); };
  const auto integer = [&](int value) { tags.writeInt(kInteger, value); };
  tags.writeString(1001, "ACAD");
  tags.writeString(1000, "MVIEW");
  tags.writeString(kBrace, "{");
  integer(kDataVersion);
  point(of.point(17, {}));
  point(of.point(16, {0, 0, 1}));
  real(degreesOf(of.real(51, 0)));
  real(of.real(45, 1));
  const GcGePoint3d center = of.point(12, {}), base = of.point(13, {}), snap = of.point(14, {0.5, 0.5, 0}),
                    grid = of.point(15, {0.5, 0.5, 0});
  real(center.x);
  real(center.y);
  real(of.real(42, 50));
  real(of.real(43, 0));
  real(of.real(44, 0));
  integer(static_cast<int>(of.real(90, 0)) & 31);
  integer(static_cast<int>(of.real(72, 100)));
  integer(of.flag(90, 128));
  integer(of.flag(90, 32) + 2 * of.flag(90, 64));
  integer(of.flag(90, 256));
  integer(of.flag(90, 512));
  integer(of.flag(90, 1024));
  integer(0);
  real(degreesOf(of.real(50, 0)));
  real(base.x);
  real(base.y);
  real(snap.x);
  real(snap.y);
  real(grid.x);
  real(grid.y);
  integer(of.flag(90, 2048));
  tags.writeString(kBrace, "{");
  for (const GcDbObjectId layer : of.frozen) {
    const GcView name = gcdbNameOfRecord(layer);
    if (!name.empty()) out.putText(1003, names.of(GcDbDatabase::kLayers, name));
  }
  tags.writeString(kBrace, "}");
  tags.writeString(kBrace, "}");
}

}  // namespace gc::dxf
