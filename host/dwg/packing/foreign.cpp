// What other files and programs bring into a drawing: shapes, frames of their objects.
#include "host/db/entities/oleframe.h"
#include "host/db/entities/shape.h"
#include "host/dwg/record/pass.h"

namespace {

// A size and that many bytes.
template <class Pass>
void passBytes(Pass& pass, GcArray<uint8_t>& bytes) {
  const int size = pass.passCount(bytes.length(), Pass::Count::BL, 8);
  pass.bytes(bytes, static_cast<size_t>(size));
}

}  // namespace

template <>
struct GcDbRecordOf<GcDbShape> {
  template <class Pass>
  static void pass(Pass& pass, GcDbShape& shape) {
    GcDbShape::Place place;
    if constexpr (Pass::kWriting) place = shape.place();
    pass.bd3(shape.m_position);
    pass.bd(shape.m_size);
    pass.bd(shape.m_rotationRad);
    pass.bd(shape.m_widthFactor);
    pass.bd(shape.m_obliqueRad);
    pass.bd(shape.m_thickness);
    pass.bs(place.number);
    pass.bd3(shape.m_normal);
    pass.h(5, place.styleId);
    if constexpr (!Pass::kWriting) {
      shape.m_styleId = place.styleId;
      shape.m_number = place.number;
      shape.m_name = GcString();
    }
  }

  // A shape that nothing but its name is known of has no number.
  static bool isWhole(const GcDbShape& shape, int) { return shape.m_name.isEmpty() || shape.place().isKnown(); }
};

template <>
struct GcDbRecordOf<GcDbOleFrame> {
  template <class Pass>
  static void pass(Pass& pass, GcDbOleFrame& frame) {
    pass.bs(frame.m_version);
    if (pass.version() >= gc::dwg::kR2000) pass.bs(frame.m_mode);
    passBytes(pass, frame.m_bytes);
  }
};

template <>
struct GcDbRecordOf<GcDbOle2Frame> {
  template <class Pass>
  static void pass(Pass& pass, GcDbOle2Frame& frame) {
    pass.bs(frame.m_type);
    if (pass.version() >= gc::dwg::kR2000) pass.bs(frame.m_mode);
    GcArray<uint8_t> bytes;
    if constexpr (Pass::kWriting) bytes = frame.bytesInRecords();
    passBytes(pass, bytes);
    if (pass.version() >= gc::dwg::kR2000) pass.rc(frame.m_lockAspect);
    if constexpr (!Pass::kWriting) frame.setBytes(bytes);
  }

  // Records have the corners among the bytes only.
  static bool isWhole(const GcDbOle2Frame& frame, int) { return frame.bytesHaveCorners(); }
};

namespace gc::dwg::packing {

void addForeign(std::vector<ClassPacking>& list) {
  list.push_back(Passed<GcDbShape>::named("AcDbShape"));
  list.push_back(Passed<GcDbOleFrame>::named("AcDbOleFrame"));
  list.push_back(Passed<GcDbOle2Frame>::named("AcDbOle2Frame"));
}

}  // namespace gc::dwg::packing
