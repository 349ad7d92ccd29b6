// Polyline segments given by their end points and a bulge.
// Units:   drawing units; angles in radians, counter-clockwise positive.
// System:  the polyline's plane.
// Source:  bulge b = tan(sweep / 4); the center lies on the chord's bisector at (1/b - b) / 4 of the chord's length,
//          to the left of the way for a positive b below 1.
#pragma once

#include "ge/matrix3d.h"

class GcGiWorldDraw;

namespace gcbulge {

struct Arc {
  GcGePoint2d center;
  double radius = 0;
  double startRad = 0;  // angle of the start point seen from the center
  double sweepRad = 0;  // negative for clockwise
};

// The arc of a segment whose bulge is not 0 and whose ends differ.
Arc arcOf(const GcGePoint2d& start, const GcGePoint2d& end, double bulge);

struct Segment {
  GcGePoint2d start, end;
  double bulge = 0;
  double startWidth = 0, endWidth = 0;
};

// Draws the segments of a polyline, each beginning where the one before ends, at the elevation in the plane of the
// normal: their lines and arcs, or the filled bands of their widths.
void draw(GcGiWorldDraw& draw, const Segment* segments, int count, bool closed, double elevation,
          const GcGeVector3d& normal);

}  // namespace gcbulge
