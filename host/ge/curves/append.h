// Paths put behind each other.
#pragma once

#include "host/ge/curves/path.h"

// Appends the pieces of one path to another, wherever their origins are; each piece gets a parameter range of 1.
void gcgeAppend(const GcGePath& own, GcGePath& path);

// A closed path with neighbouring lines on one straight line, and arcs on one circle, made one.
GcGePath gcgeSimplified(const GcGePath& path, double tol);
