// Settings of one dimension or leader that differ from its style. They stand in its extended data of the application
// ACAD, between braces behind the word DSTYLE, as pairs of the setting's group code and its value.
#pragma once

#include "db/entity.h"
#include "gi/drawable.h"

class GcDbDimStyleTableRecord;

namespace gcdimoverride {

// Group codes of the settings that name blocks.
inline constexpr int kLeaderArrow = 341;
inline constexpr int kArrow = 342;
inline constexpr int kFirstArrow = 343;
inline constexpr int kSecondArrow = 344;

// The override of a reference; null when the entity has none.
[[nodiscard]] GcDbObjectId arrow(const GcDbEntity& entity, int setting);
// The same, or the style's where there is no override; null is the closed filled arrow.
[[nodiscard]] GcDbObjectId arrow(const GcDbEntity& entity, int setting, GcDbObjectId ofStyle);

// Sets the arrowhead block by name: a block of the drawing, or one of the arrowheads' own names ("_DOT" …), whose
// block is then made. An empty name is the closed filled arrow. Errors: eKeyNotFound.
Gcad::ErrorStatus setArrow(GcDbEntity& entity, int setting, const GCHAR* name);

// A number override, or the style's value.
[[nodiscard]] double real(const GcDbEntity& entity, int setting, double ofStyle);
Gcad::ErrorStatus setReal(GcDbEntity& entity, int setting, double value);
[[nodiscard]] int integer(const GcDbEntity& entity, int setting, int ofStyle);

// The arrowhead at a leader's end, pointing from `behind` to `tip`. Gives the length of the line that it covers.
double drawArrow(GcGiWorldDraw& draw, const GcDbEntity& entity, GcDbObjectId styleId, const GcGePoint3d& tip,
                 const GcGePoint3d& behind, const GcGeVector3d& normal);

}  // namespace gcdimoverride
