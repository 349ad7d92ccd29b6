// Dash patterns of linetypes, made ready for a line on the page.
#pragma once

#include <span>
#include <vector>

namespace gc::plot {

// A linetype's elements (dashes positive, gaps negative, dots zero) as dash and gap lengths in turn, a dash first,
// each multiplied by the factor. Empty for a solid line.
std::vector<double> alternateDashes(std::span<const double> elements, double factor);

// Stretches or shrinks the pattern a little, so that a line of the length begins and ends with its first dash. Empty,
// for a solid line, when the length does not hold the pattern once or the pattern is too fine to be seen
// (period below `finest`).
std::vector<double> fitDashes(std::span<const double> dashes, double length, double finest);

}  // namespace gc::plot
