#include "host/db/entities/mirrored_text.h"

#include "db/database.h"
#include "host/db/core/header.h"
#include "host/db/entities/planar.h"

namespace gcmirrored {

bool turnsOver(const GcGeMatrix3d& transform, const GcGeVector3d& normal) {
  constexpr double kOpposite = -1 + 1e-9;  // cosine of what still counts as the same plane
  return transform.isUniScaledOrtho() && gcplanar::normalOfImage(transform, normal).dotProduct(normal) < kOpposite;
}

bool keepsReading(const GcDbEntity& writing, const GcGeMatrix3d& transform, const GcGeVector3d& normal) {
  const GcDbDatabase* database = writing.database();
  return database != nullptr && turnsOver(transform, normal) && database->header().integer(GC_T("$MIRRTEXT")) == 0;
}

// Either the direction of reading is turned back or the letters' tops are; a tie (a quarter turn away from both) goes
// to the right, and upwards.
Image imageOf(const GcGeMatrix3d& transform, const GcGePoint3d& base, const GcGeVector3d& along, const GcGeVector3d& up,
              const Box& box) {
  const GcGeVector3d alongImage = (transform * along).normal(), upImage = (transform * up).normal();
  constexpr double kTie = 1e-9;
  const double same = alongImage.dotProduct(along);
  const double toTheRight = std::abs(alongImage.x) > kTie ? alongImage.x : alongImage.y;
  const bool turnsBack = std::abs(same) > kTie ? same < 0 : toTheRight < 0;
  if (turnsBack) return {transform * (base + along * (box.left + box.right)), GcGeVector3d() - alongImage, upImage};
  return {transform * (base + up * (box.low + box.high)), alongImage, GcGeVector3d() - upImage};
}

}  // namespace gcmirrored
