// Raster images, wipeouts, what they share, and the settings for them.
#include "host/db/entities/rasterimage.h"
#include "host/dwg/record/pass.h"

// A rectangle has two corners and no count. Polygons repeat their first corner in group files but not here.
template <>
struct GcDbRecordOf<GcDbRasterImage> {
  template <class Pass>
  static void pass(Pass& pass, GcDbRasterImage& image) {
    pass.bl(image.m_version);
    pass.bd3(image.m_corner);
    pass.bd3(image.m_u);
    pass.bd3(image.m_v);
    pass.rd2(image.m_size);
    pass.h(5, image.m_imageDefId);
    pass.bs(image.m_display);
    pass.b(image.m_isClipped);
    pass.rc(image.m_brightness);
    pass.rc(image.m_contrast);
    pass.rc(image.m_fade);
    pass.h(3, image.m_reactorId);
    if (pass.version() >= gc::dwg::kR2010) pass.b(image.m_isInverted);
    pass.bs(image.m_clipType);
    const auto corner = [&](GcGePoint2d& point) { pass.rd2(point); };
    if (image.m_clipType == GcDbRasterImage::kRectangle) {
      pass.sized(image.m_clip, 2, 128, corner);
      return;
    }
    GcArray<GcGePoint2d> open(image.m_clip);
    if (open.length() > 1 && open[0] == open.last()) open.removeLast();
    pass.list(open, Pass::Count::BL, 128, corner);
    if constexpr (!Pass::kWriting) {
      if (!open.isEmpty()) open.append(GcGePoint2d(open[0]));
      image.m_clip.swap(open);
    }
  }
};

namespace gc::dwg::packing {

namespace {

constinit const PackRow kImageDef[] = {
    section("AcDbRasterImageDef"),
    field(Op::BL, 90),
    field(Op::RD2, 10),
    field(Op::T, 1),
    field(Op::B, 280),
    field(Op::RC, 281),
    field(Op::RD2, 11),
};

constinit const PackRow kImageDefReactor[] = {
    section("AcDbRasterImageDefReactor"),
    field(Op::BL, 90),
};

constinit const PackRow kRasterVariables[] = {
    section("AcDbRasterVariables"), field(Op::BL, 90), field(Op::BS, 70), field(Op::BS, 71), field(Op::BS, 72),
};

constinit const PackRow kWipeoutVariables[] = {
    section("AcDbWipeoutVariables"),
    field(Op::BS, 70),
};

}  // namespace

void addImages(std::vector<ClassPacking>& list) {
  list.push_back(Passed<GcDbRasterImage>::named("AcDbRasterImage"));
  list.push_back(Passed<GcDbRasterImage>::named("AcDbWipeout"));
  list.push_back(packingOf("AcDbRasterImageDef", kImageDef));
  list.push_back(packingOf("AcDbRasterImageDefReactor", kImageDefReactor));
  list.push_back(packingOf("AcDbRasterVariables", kRasterVariables));
  list.push_back(packingOf("AcDbWipeoutVariables", kWipeoutVariables));
}

}  // namespace gc::dwg::packing
