#include "host/db/entities/draw_path.h"

namespace gcdraw {

void path(GcGiWorldDraw& draw, const GcGePath& path) {
  constexpr int kPieces = 16;
  for (const GcGeSpan& span : path.spans()) {
    if (!span.isBounded()) continue;
    const auto at = [&](double u) { return path.origin() + gcgePointAt(span, path.poles(), u); };
    if (span.kind == GcGeSpan::Kind::Line || (span.kind == GcGeSpan::Kind::Bezier && span.degree == 1)) {
      const GcGePoint3d ends[2] = {at(span.u0), at(span.u1)};
      draw.geometry().polyline(2, ends);
      continue;
    }
    // Hermite pieces: ends and tangents agree with the span.
    const int pieces = span.kind == GcGeSpan::Kind::Bezier && !span.rational && span.degree <= 3 ? 1 : kPieces;
    GcGePoint3d points[3 * kPieces + 1];
    const double step = (span.u1 - span.u0) / pieces;
    points[0] = at(span.u0);
    for (int i = 0; i < pieces; ++i) {
      const double from = span.u0 + i * step;
      const double to = i + 1 == pieces ? span.u1 : from + step;
      points[3 * i + 3] = at(to);
      points[3 * i + 1] = points[3 * i] + gcgeJetAt(span, path.poles(), from).first * (step / 3);
      points[3 * i + 2] = points[3 * i + 3] - gcgeJetAt(span, path.poles(), to).first * (step / 3);
    }
    draw.geometry().bezier(3 * pieces + 1, points);
  }
}

}  // namespace gcdraw
