#include "host/ed/input/parse.h"

#include <numbers>

#include "host/ed/coordinates.h"
#include "host/rx/math/elementary.h"
#include "host/rx/text/number.h"

namespace ed {

namespace {

constexpr double kDegree = std::numbers::pi / 180.0;

GcView trimmed(GcView text) {
  while (!text.empty() && text.front() <= GC_T(' ')) text.remove_prefix(1);
  while (!text.empty() && text.back() <= GC_T(' ')) text.remove_suffix(1);
  return text;
}

// "1/2", "2-1/2", "2 1/2".
bool parseFraction(GcView text, double& value) {
  const size_t slash = text.find(GC_T('/'));
  if (slash == GcView::npos) return gc::parseReal(text, value);
  const size_t gap = text.substr(0, slash).find_last_of(GC_T("- "));
  double whole = 0;
  double top = 0;
  double bottom = 0;
  const bool mixed = gap != GcView::npos && gap > 0;
  if (mixed && !gc::parseReal(text.substr(0, gap), whole)) return false;
  if (!gc::parseReal(text.substr(mixed ? gap + 1 : 0, slash - (mixed ? gap + 1 : 0)), top)) return false;
  if (!gc::parseReal(text.substr(slash + 1), bottom) || bottom == 0) return false;
  value = whole < 0 ? whole - top / bottom : whole + top / bottom;
  return true;
}

// Coordinates between commas; false unless there are two or three.
bool parseCoordinates(GcView text, double* at, int& count) {
  count = 0;
  for (size_t from = 0; from <= text.size();) {
    const size_t end = std::min(text.find(GC_T(','), from), text.size());
    if (count == 3 || !parseLength(text.substr(from, end - from), at[count])) return false;
    ++count;
    from = end + 1;
  }
  return count >= 2;
}

// "45d30'15"" and its beginnings.
bool parseDegrees(GcView text, double& degrees) {
  const size_t mark = text.find_first_of(GC_T("dD°"));
  if (mark == GcView::npos) return gc::parseReal(text, degrees);
  double minutes = 0;
  double seconds = 0;
  if (!gc::parseReal(text.substr(0, mark), degrees)) return false;
  GcView rest = text.substr(mark + 1);
  if (const size_t prime = rest.find(GC_T('\'')); prime != GcView::npos) {
    if (!gc::parseReal(rest.substr(0, prime), minutes)) return false;
    rest.remove_prefix(prime + 1);
  }
  if (!rest.empty() && rest.back() == GC_T('"')) rest.remove_suffix(1);
  if (!rest.empty() && !gc::parseReal(rest, seconds)) return false;
  const double part = minutes / 60 + seconds / 3600;
  degrees += text[0] == GC_T('-') ? -part : part;
  return true;
}

}  // namespace

bool parseLength(GcView text, double& value) {
  text = trimmed(text);
  const size_t foot = text.find(GC_T('\''));
  double feet = 0;
  if (foot != GcView::npos) {
    if (!gc::parseReal(text.substr(0, foot), feet)) return false;
    text.remove_prefix(foot + 1);
    if (!text.empty() && text[0] == GC_T('-')) text.remove_prefix(1);
  }
  if (!text.empty() && text.back() == GC_T('"')) text.remove_suffix(1);
  double inches = 0;
  if (!(text.empty() && foot != GcView::npos) && !parseFraction(text, inches)) return false;
  value = feet * 12 + (feet < 0 ? -inches : inches);
  return true;
}

bool parseInteger(GcView text, int32_t& value) {
  int64_t wide = 0;
  if (!gc::parseInt(text, wide) || wide < INT32_MIN || wide > INT32_MAX) return false;
  value = static_cast<int32_t>(wide);
  return true;
}

bool parseAngle(Editor& editor, GcView text, bool fromBase, double& radians) {
  text = trimmed(text);
  if (text.empty()) return false;
  int units = integerVariable(editor, "AUNITS");
  const GCHAR last = gcLower(text.back());
  if (last == GC_T('g') || last == GC_T('r')) {
    units = last == GC_T('g') ? 2 : 3;
    text.remove_suffix(1);
  }
  double value = 0;
  if (units >= 2 && text.find_first_of(GC_T("dD°")) == GcView::npos) {
    if (!gc::parseReal(text, value)) return false;
    radians = units == 2 ? value * std::numbers::pi / 200 : value;
  } else {
    if (!parseDegrees(text, value)) return false;
    radians = value * kDegree;
  }
  if (!fromBase) return true;
  if (integerVariable(editor, "ANGDIR") == 1) radians = -radians;
  radians += realVariable(editor, "ANGBASE");
  return true;
}

bool parsePoint(Editor& editor, GcView text, const GcGePoint3d& base, GcGePoint3d& point) {
  text = trimmed(text);
  const bool relative = !text.empty() && text[0] == GC_T('@');
  const bool world = !text.empty() && text[0] == GC_T('*');
  if (relative || world) text.remove_prefix(1);
  GcGePoint3d at = relative ? base : GcGePoint3d(0, 0, 0);
  if (relative && text.empty()) {
    point = base;
    return true;
  }
  if (const size_t turn = text.find(GC_T('<')); turn != GcView::npos) {
    double distance = 0;
    double angle = 0;
    if (!parseLength(text.substr(0, turn), distance) || !parseAngle(editor, text.substr(turn + 1), true, angle))
      return false;
    point = {at.x + distance * gc::cos(angle), at.y + distance * gc::sin(angle),
             relative ? at.z : realVariable(editor, "ELEVATION")};
    return true;
  }
  double c[3] = {0, 0, 0};
  int count = 0;
  if (!parseCoordinates(text, c, count)) return false;
  if (count == 2 && !relative && !world) c[2] = realVariable(editor, "ELEVATION");
  point = {at.x + c[0], at.y + c[1], at.z + c[2]};
  if (world) point = ucsToWorld(editor).inverse() * point;
  return true;
}

}  // namespace ed
