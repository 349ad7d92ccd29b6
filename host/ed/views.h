// Changes of what the screen shows. Points are user coordinates.
#pragma once

#include "host/ed/editor.h"

namespace ed {

void zoomWindow(Editor& editor, const GcGePoint3d& a, const GcGePoint3d& b);
void zoomCenter(Editor& editor, const GcGePoint3d& center, double height);
// The whole of the current space; an empty one shows the drawing's limits.
void zoomExtents(Editor& editor);
// A box of world coordinates; nothing changes for an empty one.
void zoomTo(Editor& editor, const GcDbExtents& world);
// `ofView`: times the present magnification; else times the one that shows the limits.
void zoomScale(Editor& editor, double factor, bool ofView);
// Paper units to one unit of the model, for the viewport that is worked in; false where there is none.
bool zoomToPaperScale(Editor& editor, double scale);
void zoomPrevious(Editor& editor);
// Moves the middle, in display coordinates.
void panTo(Editor& editor, const GcGePoint2d& center);
// Shows the view and keeps it in the drawing; the present one is remembered.
void showView(Editor& editor, const EditorView& view);

[[nodiscard]] bool parseFactor(GcView text, double& factor);  // positive

}  // namespace ed
