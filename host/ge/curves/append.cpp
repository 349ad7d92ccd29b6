#include "host/ge/curves/append.h"

#include <cmath>

void gcgeAppend(const GcGePath& own, GcGePath& path) {
  const GcGeVector3d shift = own.origin() - path.origin();
  for (GcGeSpan span : own.spans()) {
    const double t = path.isEmpty() ? 0 : path.endParam();
    GcGePole poles[GcGeSpan::kMostDegree + 1];
    if (span.kind == GcGeSpan::Kind::Bezier) {
      for (int i = 0; i <= span.degree; ++i) {
        poles[i] = own.poles()[span.firstPole + i];
        poles[i].x += shift.x * poles[i].w;
        poles[i].y += shift.y * poles[i].w;
        poles[i].z += shift.z * poles[i].w;
      }
      span.firstPole = 0;
    } else {
      span.a += shift;
    }
    span.tPerU = 1 / (span.u1 - span.u0);
    span.tBase = t - span.tPerU * span.u0;
    path.addSpan(span, poles);
  }
}

namespace {

bool isCircular(const GcGeSpan& span) { return span.kind == GcGeSpan::Kind::Arc && span.circular; }

// Makes `first` reach to the end of `second`, which goes on where it ended; false when they do not lie on one carrier.
bool prolong(GcGeSpan& first, const GcGeSpan& second, double tol) {
  if (first.kind == GcGeSpan::Kind::Line && second.kind == GcGeSpan::Kind::Line) {
    const GcGeVector3d from = first.a + first.b * first.u0, corner = first.a + first.b * first.u1;
    const GcGeVector3d to = second.a + second.b * second.u1;
    const GcGeVector3d way = to - from, part = corner - from;
    if (part.crossProduct(way).length() > tol * way.length() || part.dotProduct(to - corner) <= 0) return false;
    first.a = from;
    first.b = way;
    first.u0 = 0;
    first.u1 = 1;
    return true;
  }
  if (!isCircular(first) || !isCircular(second)) return false;
  const bool isOneCircle =
      (first.center() - second.center()).length() <= tol && std::fabs(first.b.length() - second.b.length()) <= tol;
  const GcGeVector3d firstWay = first.b.crossProduct(first.c) * first.sweep;
  const GcGeVector3d secondWay = second.b.crossProduct(second.c) * second.sweep;
  if (!isOneCircle || firstWay.dotProduct(secondWay) <= 0) return false;
  first.u1 += std::fabs(second.sweep * (second.u1 - second.u0) / first.sweep);
  return true;
}

}  // namespace

GcGePath gcgeSimplified(const GcGePath& path, double tol) {
  std::vector<GcGeSpan> spans;
  for (const GcGeSpan& span : path.spans())
    if (spans.empty() || !prolong(spans.back(), span, tol)) spans.push_back(span);
  if (path.isClosed() && spans.size() > 1 && prolong(spans.back(), spans.front(), tol)) spans.erase(spans.begin());
  GcGePath made(path.origin());
  double t = 0;
  for (GcGeSpan span : spans) {
    span.tPerU = 1 / (span.u1 - span.u0);
    span.tBase = t - span.tPerU * span.u0;
    made.addSpan(span, path.poles());
    t += 1;
  }
  made.setClosed(path.isClosed(), path.isPeriodic());
  return made;
}
