// Lengths and angles as text and back, in the drawing's unit formats.
#pragma once

#include "host/lisp/core/text.h"

namespace lisp {

enum class LengthFormat : uint8_t { Scientific = 1, Decimal, Engineering, Architectural, Fractional };
enum class AngleFormat : uint8_t { Degrees, DegreesMinutesSeconds, Grads, Radians, Surveyor };

// Decimal digits with halves rounded away from zero; no negative zero.
Text fixedDigits(double value, int digits);

// `precision`: decimal digits; for the architectural and fractional formats the exponent of the denominator 2^n.
// `zeros`: DIMZIN. Bits 1 and 2 tell which of zero feet and inches are shown (0 none, 1 both, 2 feet, 3 inches),
// 4 drops the zero before the point, 8 those at the end.
Text formatLength(double value, LengthFormat format, int precision, int zeros);
// `radians` counter-clockwise from the x axis; the result is in [0, full turn). The surveyor's format counts from
// north or south; the others from `base`, clockwise if asked to.
Text formatAngle(double radians, AngleFormat format, int precision, double base, bool clockwise);

// False when the text is no length in that format.
bool parseLength(TextView text, LengthFormat format, double& value);
bool parseAngle(TextView text, AngleFormat format, double base, bool clockwise, double& radians);

// Converts between units by name ("inch", "cm", "degree", "sq ft" ...); false when unknown or of different kinds.
bool convertUnits(double& value, TextView from, TextView to);

}  // namespace lisp
