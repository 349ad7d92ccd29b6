#include "host/db/entities/draw_path.h"

#include <cmath>

#include "host/rx/math/elementary.h"

namespace gcdraw {

namespace {

void circularArc(GcGiWorldDraw& draw, const GcGePath& path, const GcGeSpan& span) {
  const GcGePoint3d center = path.origin() + span.center();
  const GcGeVector3d start = path.origin() + gcgePointAt(span, nullptr, span.u0) - center;
  const GcGeVector3d turn = span.b.crossProduct(span.c) * (span.sweep < 0 ? -1 : 1);
  draw.geometry().circularArc(center, span.b.length(), turn.normal(), start,
                              std::abs(span.sweep) * (span.u1 - span.u0));
}

}  // namespace

void path(GcGiWorldDraw& draw, const GcGePath& path) {
  if (auto* listener = dynamic_cast<PathListener*>(&draw)) return listener->wholePath(path);
  constexpr int kPieces = 16;
  for (const GcGeSpan& span : path.spans()) {
    if (!span.isBounded()) continue;
    const auto at = [&](double u) { return path.origin() + gcgePointAt(span, path.poles(), u); };
    if (span.kind == GcGeSpan::Kind::Line || (span.kind == GcGeSpan::Kind::Bezier && span.degree == 1)) {
      const GcGePoint3d ends[2] = {at(span.u0), at(span.u1)};
      draw.geometry().polyline(2, ends);
      continue;
    }
    if (span.kind == GcGeSpan::Kind::Arc && span.circular) {
      circularArc(draw, path, span);
      continue;
    }
    // Pieces whose ends and tangents agree with the span: of arcs with the length of tangents that keeps to the ellipse.
    const int pieces = span.kind == GcGeSpan::Kind::Bezier && !span.rational && span.degree <= 3 ? 1 : kPieces;
    GcGePoint3d points[3 * kPieces + 1];
    const double step = (span.u1 - span.u0) / pieces;
    const bool isArc = span.kind == GcGeSpan::Kind::Arc && span.sweep != 0;
    const double reach = isArc ? 4.0 / 3 * gc::tan(span.sweep * step / 4) / span.sweep : step / 3;
    points[0] = at(span.u0);
    for (int i = 0; i < pieces; ++i) {
      const double from = span.u0 + i * step;
      const double to = i + 1 == pieces ? span.u1 : from + step;
      points[3 * i + 3] = at(to);
      points[3 * i + 1] = points[3 * i] + gcgeJetAt(span, path.poles(), from).first * reach;
      points[3 * i + 2] = points[3 * i + 3] - gcgeJetAt(span, path.poles(), to).first * reach;
    }
    draw.geometry().bezier(3 * pieces + 1, points);
  }
}

}  // namespace gcdraw
