// Where the view of a document lives: the tile of model space, the sheet of a layout, or the viewport that is worked
// in. The editor's view is a copy of it; what changes the view puts it back.
#pragma once

#include "db/viewport.h"
#include "host/ed/editor.h"

namespace ed {

// The viewport of the shown layout that has the number; null when there is none or it is not on.
GcDbObjectId viewportNumbered(const Editor& editor, int number);

// The one worked in last, else the first that is on. Null when the layout has none.
GcDbObjectId viewportToWorkIn(const Editor& editor);

// The drawing's view into the editor's, and back. A drawing that lacks the place keeps the editor's view.
void takeView(Editor& editor);
void putView(Editor& editor);

// A viewport whose view is locked: zooming then moves the sheet.
bool isViewLocked(const Editor& editor);
// Shows on the sheet what the locked viewport would show of the model.
void moveSheetInstead(const Editor& editor, const GcGePoint2d& center, double height);

// From the display system of the viewport's view to the paper.
[[nodiscard]] GcGeMatrix3d displayToPaper(const GcDbViewport& viewport);

// The height of the view at which the viewport that is worked in has the scale; false outside viewports.
bool viewHeightAtScale(const Editor& editor, double scale, double& height);

// Changes an object that the running program may hold open for writing.
class Changing {
 public:
  explicit Changing(GcDbObjectId id);
  ~Changing();
  Changing(const Changing&) = delete;
  Changing& operator=(const Changing&) = delete;
  explicit operator bool() const { return m_object != nullptr; }
  template <class T>
  T* as() const {
    return T::cast(m_object);
  }

 private:
  GcDbObject* m_object = nullptr;
  bool m_opened = false;
};

}  // namespace ed
