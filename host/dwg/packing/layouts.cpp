// Viewports of paper space, plot settings, layouts.
#include "db/layout.h"
#include "db/viewport.h"
#include "host/db/core/store.h"
#include "host/dwg/packing/packings.h"
#include "host/dwg/record/pieces.h"

namespace gc::dwg::packing {

namespace {

constexpr unsigned kSoftPointer = 4;
constexpr unsigned kHardPointer = 5;

template <class Io>
void frozenLayers(Io& io) {
  Elements layers = io.elements(0);
  const int count = io.rec.count(io.rec.bl(layers.size()), 8);
  for (int i = 0; i < count && !io.rec.failed(); ++i) {
    GcDbObjectId id;
    if constexpr (Io::kWriting) id = *static_cast<const GcDbObjectId*>(layers.at(i));
    id = io.rec.h(io.version() >= kR2004 ? kSoftPointer : kHardPointer, id);
    if constexpr (!Io::kWriting) *static_cast<GcDbObjectId*>(layers.append()) = id;
  }
}

// Records have neither number nor status; they are given when the whole drawing is there.
template <class Io>
void noNumber(Io& io) {
  io.setNum(0, GcDbViewport::kNumberUnknown);
}

constinit const PackRow kViewport[] = {
    section("AcDbViewport"),
    field(Op::BD3, 10),
    field(Op::BD, 40),
    field(Op::BD, 41),
    piece(noNumber<PieceIn>, noNumber<PieceOut>, {69}),
    fixed(Op::H).as(kHardPointer).until(kR2000),
    field(Op::BD3, 17).from(kR2000),
    field(Op::BD3, 16).from(kR2000),
    field(Op::BD, 51).from(kR2000),
    field(Op::BD, 45).from(kR2000),
    field(Op::BD, 42).from(kR2000),
    field(Op::BD, 43).from(kR2000),
    field(Op::BD, 44).from(kR2000),
    field(Op::BD, 50).from(kR2000),
    field(Op::RD2, 12).from(kR2000),
    field(Op::RD2, 13).from(kR2000),
    field(Op::RD2, 14).from(kR2000),
    field(Op::RD2, 15).from(kR2000),
    field(Op::BS, 72).from(kR2000),
    field(Op::BS, 61).from(kR2007),
    piece(frozenLayers<PieceIn>, frozenLayers<PieceOut>, {-331}).from(kR2000),
    field(Op::BL, 90).from(kR2000),
    field(Op::T, 1).from(kR2000),
    field(Op::RC, 281).from(kR2000),
    field(Op::B, 74).from(kR2000),
    field(Op::B, 71).from(kR2000),
    field(Op::BD3, 110).from(kR2000),
    field(Op::BD3, 111).from(kR2000),
    field(Op::BD3, 112).from(kR2000),
    field(Op::BD, 146).from(kR2000),
    field(Op::BS, 79).from(kR2000),
    field(Op::BS, 170).from(kR2004),
    field(Op::B, 292).from(kR2007),
    field(Op::RC, 282).from(kR2007),
    field(Op::BD, 141).from(kR2007),
    field(Op::BD, 142).from(kR2007),
    field(Op::CMC, 63).from(kR2007),
    field(Op::H, 340).as(kSoftPointer).from(kR2000),
    fixed(Op::H).as(kHardPointer).from(kR2000).until(kR2004),
    field(Op::H, 345).as(kHardPointer).from(kR2000),
    field(Op::H, 346).as(kHardPointer).from(kR2000),
    field(Op::H, 332).as(kSoftPointer).from(kR2007),
    field(Op::H, 348).as(kHardPointer).from(kR2007),
    field(Op::H, 333).as(kSoftPointer).from(kR2007),
    field(Op::H, 361).as(3).from(kR2007),
};

// Files from R2004 on name the view by its record.
template <class Io>
void plotView(Io& io) {
  auto& settings = *static_cast<GcDbPlotSettings*>(static_cast<GcDbObject*>(io.object));
  GcDbObjectId id = settings.plotViewId();
  id = io.rec.h(kSoftPointer, id);
  if constexpr (!Io::kWriting) settings.setPlotView(id);
}

#define PLOT_SETTINGS                                                                                                 \
  section("AcDbPlotSettings"), field(Op::T, 1), field(Op::T, 2), field(Op::BS, 70), field(Op::BD, 40),                \
      field(Op::BD, 41), field(Op::BD, 42), field(Op::BD, 43), field(Op::BD, 44), field(Op::BD, 45), field(Op::T, 4), \
      field(Op::BD, 46), field(Op::BD, 47), field(Op::BS, 72), field(Op::BS, 73), field(Op::BS, 74),                  \
      field(Op::BD, 48), field(Op::BD, 49), field(Op::BD, 140), field(Op::BD, 141), field(Op::T, 6).until(kR2004),    \
      field(Op::BD, 142), field(Op::BD, 143), field(Op::T, 7), field(Op::BS, 75), field(Op::BD, 147),                 \
      field(Op::BD, 148), field(Op::BD, 149), field(Op::BS, 76).from(kR2004), field(Op::BS, 77).from(kR2004),         \
      field(Op::BS, 78).from(kR2004), piece(plotView<PieceIn>, plotView<PieceOut>, {}).from(kR2004),                  \
      field(Op::H, 333).as(kSoftPointer).from(kR2007)

constinit const PackRow kPlotSettings[] = {PLOT_SETTINGS};

// The layout's viewports, for those who follow references: they stand in its block.
template <class Io>
void viewportCount(Io& io) {
  auto& layout = *static_cast<GcDbLayout*>(static_cast<GcDbObject*>(io.object));
  GcDbObjectIdArray viewports;
  if constexpr (Io::kWriting)
    for (const GcDbObjectId id : layout.getViewportArray())
      if (io.rec.context.isWritten(id)) viewports.append(id);
  io.registers[0] = static_cast<uint32_t>(io.rec.bl(viewports.length()));
}

template <class Io>
void viewportHandles(Io& io) {
  const int count = io.rec.count(static_cast<int32_t>(io.registers[0]), 8);
  if constexpr (Io::kWriting) {
    auto& layout = *static_cast<GcDbLayout*>(static_cast<GcDbObject*>(io.object));
    for (const GcDbObjectId id : layout.getViewportArray())
      if (io.rec.context.isWritten(id)) io.rec.h(kSoftPointer, id);
  } else {
    for (int i = 0; i < count && !io.rec.failed(); ++i) io.rec.h(kSoftPointer, GcDbObjectId());
  }
}

constinit const PackRow kLayout[] = {
    PLOT_SETTINGS,
    section("AcDbLayout"),
    field(Op::T, 1),
    field(Op::BL, 71),
    field(Op::BS, 70),
    field(Op::BD3, 13),
    field(Op::RD2, 10),
    field(Op::RD2, 11),
    field(Op::BD3, 12),
    field(Op::BD3, 16),
    field(Op::BD3, 17),
    field(Op::BD, 146),
    field(Op::BS, 76),
    field(Op::BD3, 14),
    field(Op::BD3, 15),
    piece(viewportCount<PieceIn>, viewportCount<PieceOut>, {}).from(kR2004),
    field(Op::H, 330).as(kSoftPointer),
    field(Op::H, 331).as(kSoftPointer),
    field(Op::H, 346).as(kHardPointer),
    field(Op::H, 345).as(kHardPointer),
    piece(viewportHandles<PieceIn>, viewportHandles<PieceOut>, {}).from(kR2004),
};

#undef PLOT_SETTINGS

}  // namespace

void addLayouts(std::vector<ClassPacking>& list) {
  list.push_back(packingOf("AcDbViewport", kViewport));
  list.push_back(packingOf("AcDbPlotSettings", kPlotSettings));
  list.push_back(packingOf("AcDbLayout", kLayout));
}

}  // namespace gc::dwg::packing
