// Coordinate systems: world, user (UCS), display, paper, and those of objects or planes.
#pragma once

#include "ge/matrix3d.h"
#include "host/ed/editor.h"

namespace ed {

// From user coordinates to world coordinates. The drawing keeps one user system for model space and one for paper.
[[nodiscard]] GcGeMatrix3d ucsToWorld(const Editor& editor);
// The axes need neither length 1 nor a right angle between them: X counts, Y gives the side. `name` is that of the named
// system it comes from (UCSNAME). False, nothing changed, for axes that span no plane.
bool setUcs(Editor& editor, const GcGePoint3d& origin, const GcGeVector3d& x, const GcGeVector3d& y, GcView name = {});
[[nodiscard]] bool ucsIsWorld(const Editor& editor);

// From display coordinates (the view's own axes, origin at the target) to world coordinates.
[[nodiscard]] GcGeMatrix3d displayToWorld(const Editor& editor);

// A point or displacement, from one system (given by its matrix to world) to another.
[[nodiscard]] GcGePoint3d transformed(const GcGePoint3d& point, const GcGeMatrix3d& from, const GcGeMatrix3d& to,
                                      bool displacement);

}  // namespace ed
