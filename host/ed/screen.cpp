#include "host/ed/screen.h"

namespace ed {

namespace {
Screen* g_screen = nullptr;
}

void Screen::line(const GcGePoint3d&, const GcGePoint3d&, int, bool) {}
bool Screen::showsDrags() const { return false; }
void Screen::dragFrame(int, const GcGeMatrix3d&, const std::vector<GcDbObjectId>&, int) {}
void Screen::command(const std::vector<InputItem>&) {}
void Screen::viewChanged(const GcGePoint2d&, double) {}
void Screen::entityChanged(GcDbObjectId) {}
void Screen::update() {}

Screen& screen() {
  static Screen none;
  return g_screen == nullptr ? none : *g_screen;
}

Screen* setScreen(Screen* screen) {
  Screen* former = g_screen;
  g_screen = screen;
  return former;
}

}  // namespace ed
