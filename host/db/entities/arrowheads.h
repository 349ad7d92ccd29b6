// Arrowheads of dimensions and leaders: blocks one unit long whose tip lies at the origin and points along +X.
#pragma once

#include "db/database.h"
#include "gi/drawable.h"
#include "host/rx/view.h"

namespace gcarrow {

// The block of the name. One of the arrowheads every drawing knows ("_DOT", case ignored) is made when the drawing
// lacks it; null for other names the drawing does not have.
GcDbObjectId blockNamed(GcDbDatabase& database, GcView name);

// How far behind the tip the line of an arrowhead ends: where the block's own begins; 0 for those that lines run through.
double reach(GcDbObjectId block, double size);

// Draws an arrowhead with its tip at the point; a null block is the closed filled arrow, three times as long as wide.
void draw(GcGiWorldDraw& draw, GcDbObjectId block, const GcGePoint3d& tip, const GcGeVector3d& direction, double size,
          const GcGeVector3d& normal);

}  // namespace gcarrow
