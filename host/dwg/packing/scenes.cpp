// Meshes and lights.
#include "host/db/entities/light.h"
#include "host/db/entities/subdmesh.h"
#include "host/dwg/record/pass.h"

template <>
struct GcDbRecordOf<GcDbSubDMesh> {
  template <class Pass>
  static void pass(Pass& pass, GcDbSubDMesh& mesh) {
    using Count = typename Pass::Count;
    pass.bs(mesh.m_version);
    pass.b(mesh.m_blendCrease);
    pass.bl(mesh.m_level);
    pass.list(mesh.m_vertices, Count::BL, 6, [&](GcGePoint3d& vertex) { pass.bd3(vertex); });
    pass.list(mesh.m_faces, Count::BL, 2, [&](int32_t& index) { pass.bl(index); });
    pass.list(mesh.m_edges, Count::BL, 4, [&](GcDbMeshEdge& edge) {
      pass.bl(edge.from);
      pass.bl(edge.to);
    });
    pass.list(mesh.m_creases, Count::BL, 2, [&](double& crease) { pass.bd(crease); });
    int32_t overrides = 0;
    pass.bl(overrides);
    pass.must(overrides == 0);
    if constexpr (!Pass::kWriting) mesh.m_overrides.put(GcDbGroup::ofInt(kOverrides, 0));
  }

  // Looks of single faces are in groups only.
  static bool isWhole(const GcDbSubDMesh& mesh, int) {
    GcDbGroupList::Cursor cursor(mesh.m_overrides);
    GcDbGroup group;
    if (!cursor.next(group)) return true;
    return group.code == kOverrides && group.asInt() == 0 && !cursor.next(group);
  }

 private:
  static constexpr int kOverrides = 90;
};

template <>
struct GcDbRecordOf<GcDbLight> {
  template <class Pass>
  static void pass(Pass& pass, GcDbLight& light) {
    pass.bl(light.m_version);
    pass.t(light.m_name);
    pass.bl(light.m_type);
    pass.b(light.m_isOn);
    pass.cmc(light.m_lightColor);
    pass.b(light.m_isPlotted);
    pass.bd(light.m_intensity);
    pass.bd3(light.m_position);
    pass.bd3(light.m_target);
    pass.bl(light.m_attenuation);
    pass.b(light.m_hasLimits);
    pass.bd(light.m_startLimit);
    pass.bd(light.m_endLimit);
    pass.bd(light.m_hotspotRad);
    pass.bd(light.m_falloffRad);
    pass.b(light.m_castsShadows);
    pass.bl(light.m_shadowType);
    pass.bs(light.m_shadowMapSize);
    pass.rc(light.m_shadowSoftness);
  }
};

namespace gc::dwg::packing {

void addScenes(std::vector<ClassPacking>& list) {
  list.push_back(Passed<GcDbSubDMesh>::named("AcDbSubDMesh"));
  list.push_back(Passed<GcDbLight>::named("AcDbLight"));
}

}  // namespace gc::dwg::packing
