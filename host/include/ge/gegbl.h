// Tolerances of the geometry library.
#pragma once

// Two points closer than `point` are one point; two directions whose unit vectors differ by less than
// `vector` are parallel. Tolerances are arguments that follow the size of what they are used on.
struct GcGeTol {
  double point = 1e-10;
  double vector = 1e-10;

  [[nodiscard]] double equalPoint() const { return point; }
  [[nodiscard]] double equalVector() const { return vector; }
};

namespace GcGeContext {
inline constexpr GcGeTol gTol{};
}
