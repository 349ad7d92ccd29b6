#include "host/db/curves/curve_path.h"

#include <array>

#include "host/db/core/store.h"

namespace {

struct Kept {
  const GcDbStub* stub = nullptr;
  std::shared_ptr<const GcGePath> path;
};

Kept& slotOf(const GcDbStub* stub) {
  static std::array<Kept, 256> slots;  // main thread only, as all of the interface
  const auto address = reinterpret_cast<uintptr_t>(stub) / sizeof(GcDbStub);
  return slots[address % slots.size()];
}

}  // namespace

class GcDbCurvePaths {
 public:
  static Gcad::ErrorStatus make(const GcDbCurve& curve, GcGePath& path) {
    const Gcad::ErrorStatus status = curve.subPath(path);
    if (status != Gcad::eOk) return status;
    if (path.isEmpty()) return Gcad::eDegenerateGeometry;
    if (!path.isFinite()) return Gcad::eInvalidInput;
    return path.size() > GcGePath::kLeastSize ? Gcad::eOk : Gcad::eDegenerateGeometry;
  }
  static bool keeps(const GcDbCurve& curve) { return curve.subKeepsPath(); }
};

GcDbCurvePath::GcDbCurvePath(const GcDbCurve& curve) {
  curve.assertReadEnabled();
  GcDbStub* stub = curve.objectId().isNull() ? nullptr : curve.objectId().stub();
  const bool keeps = stub != nullptr && !stub->writing && GcDbCurvePaths::keeps(curve);
  if (keeps && stub->pathKept) {
    const Kept& kept = slotOf(stub);
    if (kept.stub == stub) {
      m_path = kept.path;
      return;
    }
  }
  auto path = std::make_shared<GcGePath>();
  m_status = GcDbCurvePaths::make(curve, *path);
  m_path = path;
  if (!keeps || m_status != Gcad::eOk) return;
  slotOf(stub) = {stub, path};
  stub->pathKept = true;
}
