// What those who listen to drawables may offer besides: showing only what lies within an outline.
#pragma once

#include "ge/point.h"

class GcGiClipping {
 public:
  virtual ~GcGiClipping() = default;
  // Until popClip, of all that is drawn only what lies within the outline, as seen along the view, is shown. Points in
  // the current model transform. Outlines within each other show what all of them show.
  virtual void pushClip(int count, const GcGePoint3d* outline) = 0;
  virtual void popClip() = 0;
};
