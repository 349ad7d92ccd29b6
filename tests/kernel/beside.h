// Curve entities of the level plane as curves of Open CASCADE, made from the entities' own fields.
#pragma once

#include <Geom_Curve.hxx>
#include <vector>

#include "db/curve.h"

// In order along the entity: one for each segment of a polyline, else one. Rays and construction lines are cut to a
// thousand units.
std::vector<opencascade::handle<Geom_Curve>> besideOf(const GcDbCurve& curve);
