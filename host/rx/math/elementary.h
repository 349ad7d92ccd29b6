// Elementary functions that give the same number on every platform, so that a drawing saved there has the same bytes:
// the C libraries differ in the last digit, and one of them near the multiples of pi in many. Only additions,
// multiplications, divisions and square roots, which the floating-point standard fixes. Angles in radians.
//
// Errors: sin, cos, atan below 1 unit in the last place; tan, atan2, hypot, cbrt below 2; asin, acos below 3. Special values
// (zeros of both signs, infinities, what is no number) as the C standard has them. A pointed-out loss: the angle of
// sin, cos, tan is reduced with 2 pi to 106 bits, which is full precision up to 1e15.
#pragma once

namespace gc {

struct SinCos {
  double sin, cos;
};

[[nodiscard]] double sin(double angle);
[[nodiscard]] double cos(double angle);
[[nodiscard]] SinCos sinCos(double angle);
[[nodiscard]] double tan(double angle);
[[nodiscard]] double atan(double x);
[[nodiscard]] double atan2(double y, double x);  // [-pi, pi]
[[nodiscard]] double asin(double x);
[[nodiscard]] double acos(double x);
[[nodiscard]] double hypot(double x, double y);
[[nodiscard]] inline double hypot(double x, double y, double z) { return hypot(hypot(x, y), z); }
[[nodiscard]] double cbrt(double x);

}  // namespace gc
