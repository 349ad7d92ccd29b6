// Angles of files, in degrees, and angles inside, in radians: degrees come back as they were.
#pragma once

namespace gc::dxf {

// The codes whose values are angles in degrees.
constexpr bool isAngleCode(int code) { return code >= 50 && code <= 58; }

[[nodiscard]] double radiansOf(double degrees);

// The degrees that radiansOf makes this value of: of those, one of at most 15 digits when there is one.
[[nodiscard]] double degreesOf(double radians);

}  // namespace gc::dxf
