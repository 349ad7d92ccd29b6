// How the values of fields read: formats such as "%lu2%pr2%ps[,m]" and dates such as "yyyy-MM-dd".
//
//   %lu1 … %lu5   a length: scientific, decimal, engineering, architectural, fractional; %lu6 as LUNITS says
//   %au0 … %au4   an angle: degrees, with minutes, grads, radians, surveyor's; %au5 as AUNITS says
//   %pr3          decimals; %zs8 which zeros are left out (as DIMZIN); %ds44 %th46 the separators' characters
//   %ct8[0.001]   times a factor; %ps[before,after] around the number
//   %pt3          of a point: 1 x, 2 y, 4 z together; %ls59 what parts them
//   %tc1 … %tc4   a text: upper case, lower case, first letter, first letters of words upper case
//   %fn7          of a file's name: 1 folder, 2 name, 4 extension together
#pragma once

#include "ge/point.h"
#include "host/ed/editor.h"

namespace ed {

struct FieldValue {
  enum class Kind : uint8_t { Text, Integer, Number, Angle, Point, Date };
  Kind kind = Kind::Text;
  double number = 0;  // angles in radians, dates as Julian days
  GcGePoint3d point;
  GcText text;

  static FieldValue ofText(GcView value) { return {Kind::Text, 0, {}, GcText(value)}; }
  static FieldValue ofInteger(double value) { return {Kind::Integer, value, {}, {}}; }
  static FieldValue of(double value) { return {Kind::Number, value, {}, {}}; }
  static FieldValue ofAngle(double radians) { return {Kind::Angle, radians, {}, {}}; }
  static FieldValue ofDate(double days) { return {Kind::Date, days, {}, {}}; }
  static FieldValue of(const GcGePoint3d& value) { return {Kind::Point, 0, value, {}}; }
};

// What is unknown in a format is passed over.
[[nodiscard]] GcText formatField(Editor& editor, const FieldValue& value, GcView format);

}  // namespace ed
