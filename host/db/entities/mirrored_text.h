// Writing that a mirroring would show from behind, and what keeps it readable.
//
// A mirroring in a plane at right angles to the writing's, and a half turn about a line in it, lay the plane on itself
// with the other side up. With the drawing's setting MIRRTEXT at 0 the writing is not reversed: its box is that of the
// exact image, its normal and its alignment are those it had, and it runs as near to its former direction as the box
// allows.
#pragma once

#include "db/entity.h"
#include "ge/matrix3d.h"

namespace gcmirrored {

// Whether the transformation shows the plane's other side.
[[nodiscard]] bool turnsOver(const GcGeMatrix3d& transform, const GcGeVector3d& normal);

// The same, for writing of a drawing that keeps it readable.
[[nodiscard]] bool keepsReading(const GcDbEntity& writing, const GcGeMatrix3d& transform, const GcGeVector3d& normal);

// A box in the plane of the writing, from its base point along its direction and up.
struct Box {
  double left = 0, right = 0, low = 0, high = 0;
};

// Where the writing stands in the mirrored box.
struct Image {
  GcGePoint3d base;
  GcGeVector3d along, up;  // of unit length
};
[[nodiscard]] Image imageOf(const GcGeMatrix3d& transform, const GcGePoint3d& base, const GcGeVector3d& along,
                            const GcGeVector3d& up, const Box& box);

}  // namespace gcmirrored
