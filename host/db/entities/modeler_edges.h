// The edges of a body that a solid modeller has written as text: straight ones and arcs of ellipses as they are, others
// as the chord between their ends. Source: the text form's records, one per line, that refer to each other by number.
#pragma once

#include <string_view>
#include <vector>

#include "ge/point.h"

namespace gcmodeler {

// One chain of points per edge. Nothing for text that is no body; damaged records are passed over.
std::vector<std::vector<GcGePoint3d>> edgesOf(std::string_view text);

}  // namespace gcmodeler
