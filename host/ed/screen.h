// What is drawn for the person beyond the drawing itself: temporary lines, drags, changes of the view. Whoever has a
// screen (a recorder, the page) registers one; the base class shows nothing.
#pragma once

#include <vector>

#include "ge/matrix3d.h"
#include "host/ed/editor.h"
#include "host/ed/input/inputitem.h"

namespace ed {

class Screen {
 public:
  virtual ~Screen() = default;
  // A line that is not part of the drawing, user coordinates; colour -1 draws in complement.
  virtual void line(const GcGePoint3d& from, const GcGePoint3d& to, int color, bool highlight);
  // Whether frames of drags are looked at; computing them is spared otherwise.
  [[nodiscard]] virtual bool showsDrags() const;
  // A frame of a drag: the entities shown transformed. `status` is what the sampler answered (0), `cursor` the special
  // cursor of the drag, in the numbers of who drags.
  virtual void dragFrame(int status, const GcGeMatrix3d& matrix, const std::vector<GcDbObjectId>& entities, int cursor);
  virtual void command(const std::vector<InputItem>& items);
  virtual void viewChanged(const GcGePoint2d& center, double height);
  virtual void entityChanged(GcDbObjectId entity);
  virtual void update();
};

// The screen in use.
Screen& screen();
// Null for none. The screen stays the caller's. Returns the former one, null for none.
Screen* setScreen(Screen* screen);

}  // namespace ed
