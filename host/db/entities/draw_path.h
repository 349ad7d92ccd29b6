// Paths of the curve kernel drawn with the primitives of drawables.
#pragma once

#include "gi/drawable.h"
#include "host/ge/curves/path.h"

namespace gcdraw {

// What listens to drawables drawing and takes paths as they are.
class PathListener {
 public:
  virtual void wholePath(const GcGePath& path) = 0;

 protected:
  ~PathListener() = default;
};

// To a PathListener the path itself, to others primitives. Bounded spans only: lines, circular arcs and cubics as they are, other curves as
// cubics that touch them at 17 places a span.
void path(GcGiWorldDraw& draw, const GcGePath& path);

}  // namespace gcdraw
