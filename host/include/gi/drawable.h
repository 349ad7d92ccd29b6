// Drawables and what they draw on. An object draws itself in world coordinates through GcGiWorldDraw;
// who listens (a plot, an extents computation, a screen) decides what becomes of it.
#pragma once

#include <cstdint>

#include "cm/color.h"
#include "ge/matrix3d.h"
#include "rx/gcstring.h"
#include "rx/rxobject.h"

class GcDbObjectId;
class GcGiDrawable;

// How text is set; lengths in drawing units, angles in radians.
struct GcGiTextStyle {
  GcString fontFile;  // as the style names it: a stroke font, a TrueType file, or empty
  double height = 1;
  double widthFactor = 1;
  double obliqueRad = 0;
  bool backward = false;
  bool upsideDown = false;
  bool vertical = false;
};

// Geometry in the current model transform; every call draws with the traits set before it.
class GcGiGeometry {
 public:
  virtual ~GcGiGeometry() = default;
  virtual void pushModelTransform(const GcGeMatrix3d& toParent) = 0;
  virtual void popModelTransform() = 0;
  virtual void polyline(int count, const GcGePoint3d* points, bool closed = false) = 0;
  virtual void polygon(int count, const GcGePoint3d* points) = 0;  // filled
  // Filled loops, their points one after the other: inside is where a line outwards crosses an odd number of times.
  virtual void polyPolygon(int loopCount, const int* pointCounts, const GcGePoint3d* points) = 0;
  virtual void circle(const GcGePoint3d& center, double radius, const GcGeVector3d& normal) = 0;
  // Counter-clockwise about the normal from the start vector by the sweep angle (radians).
  virtual void circularArc(const GcGePoint3d& center, double radius, const GcGeVector3d& normal,
                           const GcGeVector3d& startVector, double sweepRad) = 0;
  // One line of text; position is the left end of the base line, direction its way, normal its side.
  virtual void text(const GcGePoint3d& position, const GcGeVector3d& normal, const GcGeVector3d& direction,
                    const GCHAR* text, const GcGiTextStyle& style) = 0;
  virtual void xline(const GcGePoint3d& point, const GcGeVector3d& direction) = 0;
  virtual void ray(const GcGePoint3d& point, const GcGeVector3d& direction) = 0;
  // A chain of cubic Bezier arcs: 3 n + 1 points.
  virtual void bezier(int count, const GcGePoint3d* points) = 0;
};

// A fill that runs from one colour to another along a line in the current model transform.
struct GcGiGradient {
  GcGePoint3d from, to;
  GcCmEntityColor colorFrom, colorTo;
  bool mirrored = false;  // to the second colour half way, then back
};

// What the next geometry looks like; ids are null for the entity's own.
class GcGiSubEntityTraits {
 public:
  virtual ~GcGiSubEntityTraits() = default;
  virtual void setColor(const GcCmEntityColor& color) = 0;
  virtual void setLayer(const GcDbObjectId& layerId) = 0;
  virtual void setLineType(const GcDbObjectId& linetypeId) = 0;
  virtual void setLineTypeScale(double scale) = 0;
  virtual void setLineWeight(int hundredthsOfMm) = 0;  // negative: by layer, by block, default
  virtual void setFill(bool filled) = 0;
  virtual void setGradient(const GcGiGradient* gradient) = 0;  // of the next fills; null: the plain colour again
};

class GcGiWorldDraw {
 public:
  virtual ~GcGiWorldDraw() = default;
  virtual GcGiGeometry& geometry() = 0;
  virtual GcGiSubEntityTraits& subEntityTraits() = 0;
  // The length a drawn curve may lie off the true one, drawing units.
  [[nodiscard]] virtual double deviation() const = 0;
  // Draws another drawable (a block's entity, an attribute) with its own traits.
  virtual void draw(GcGiDrawable* drawable) = 0;
};

using GcGiDrawableTraits = GcGiSubEntityTraits;

class GcGiDrawable : public GcRxObject {
 public:
  GCRX_DECLARE_MEMBERS(GcGiDrawable);
  // Sets the traits the drawable begins with; the result tells how it wants to be drawn (bit flags, 0 none).
  virtual uint32_t subSetAttributes(GcGiDrawableTraits* traits);
  // True when everything has been drawn.
  virtual bool subWorldDraw(GcGiWorldDraw* draw);
};
