#include "host/db/entities/dimension_look.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>

#include "db/database.h"
#include "host/db/entities/dimoverride.h"
#include "host/db/entities/planar.h"
#include "host/gi/textline.h"

namespace gcdimlook {

namespace {

double scaleOf(const GcDbDimension& dimension, const GcDbDimStyleTableRecord& style) {
  const double scale = gcdimoverride::real(dimension, 40, style.dimscale());
  return scale > 0 ? scale : 1;
}

void takeArrows(const GcDbDimension& dimension, const GcDbDimStyleTableRecord& style, Look& look) {
  const bool separate = gcdimoverride::integer(dimension, 173, style.dimsah()) != 0;
  look.first = separate ? style.dimblk1() : style.dimblk();
  look.second = separate ? style.dimblk2() : style.dimblk();
  look.first = gcdimoverride::arrow(dimension, gcdimoverride::kArrow, look.first);
  look.second = gcdimoverride::arrow(dimension, gcdimoverride::kArrow, look.second);
  look.first = gcdimoverride::arrow(dimension, gcdimoverride::kFirstArrow, look.first);
  look.second = gcdimoverride::arrow(dimension, gcdimoverride::kSecondArrow, look.second);
}

}  // namespace

Look lookOf(const GcDbDimension& dimension) {
  Look look;
  GcDbDimStyleTableRecord* style = nullptr;
  if (gcdbOpenObject(style, dimension.dimensionStyle(), GcDb::kForRead) != Gcad::eOk) return look;
  const double scale = scaleOf(dimension, *style);
  const auto length = [&](int code, double ofStyle) { return gcdimoverride::real(dimension, code, ofStyle) * scale; };
  const auto integer = [&](int code, int ofStyle) { return gcdimoverride::integer(dimension, code, ofStyle); };
  look.arrow = length(41, style->dimasz());
  look.offset = length(42, style->dimexo());
  look.beyond = length(44, style->dimexe());
  look.text = length(140, style->dimtxt());
  look.gap = length(147, style->dimgap());
  look.factor = gcdimoverride::real(dimension, 144, style->dimlfac());
  look.decimals = integer(271, style->dimdec());
  look.zeros = integer(78, style->dimzin());
  look.angleUnit = integer(275, style->dimaunit());
  const int angleDecimals = integer(179, style->dimadec());
  look.angleDecimals = angleDecimals < 0 ? look.decimals : angleDecimals;
  look.angleZeros = integer(79, style->dimazin());
  look.arcSymbol = integer(90, style->dimarcsym());
  const int separator = integer(278, style->dimdsep());
  look.separator = static_cast<GCHAR>(separator > 0 ? separator : '.');
  look.post = style->dimpost();
  look.textStyle = style->dimtxsty();
  takeArrows(dimension, *style, look);
  ignore(style->close());
  return look;
}

namespace {

GcText fixedText(double value, int decimals, bool dropsLeading, bool dropsTrailing, GCHAR separator) {
  char digits[400];
  const auto end =
      std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, std::clamp(decimals, 0, 12));
  GcText text(digits, end.ptr);
  if (dropsTrailing && text.find('.') != GcText::npos) {
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
  }
  if (dropsLeading && text.size() > 1 && text[0] == '0' && text[1] == '.') text.erase(0, 1);
  for (GCHAR& unit : text)
    if (unit == '.') unit = separator;
  return text;
}

// Degrees; minutes from one decimal on, seconds from three, decimals of them beyond four.
GcText minutesText(double degrees, int decimals) {
  const bool hasMinutes = decimals > 0, hasSeconds = decimals > 2;
  const int ofSeconds = std::clamp(decimals - 4, 0, 8);
  const double parts = hasSeconds ? 3600 * std::pow(10.0, ofSeconds) : hasMinutes ? 60 : 1;
  double rest = std::round(degrees * parts);
  const double whole = std::floor(rest / parts);
  rest = (rest - whole * parts) / parts * 60;
  GcText text = fixedText(whole, 0, false, false, '.') + GC_T("%%d");
  if (!hasMinutes) return text;
  const double minutes = hasSeconds ? std::floor(rest + 1e-9) : std::round(rest);
  text += fixedText(minutes, 0, false, false, '.') + GC_T("'");
  if (hasSeconds) text += fixedText(std::fabs(rest - minutes) * 60, ofSeconds, false, false, '.') + GC_T("\"");
  return text;
}

}  // namespace

GcText lengthText(double value, const Look& look) {
  constexpr int kNoTrailing = 8;
  const GcText text =
      fixedText(std::fabs(look.factor) * value, look.decimals, false, (look.zeros & kNoTrailing) != 0, look.separator);
  const GcView post = view(look.post);
  const size_t at = post.find(GC_T("<>"));
  if (at == GcView::npos) return text + GcText(post);
  return GcText(post.substr(0, at)) + text + GcText(post.substr(at + 2));
}

GcText angleText(double radians, const Look& look) {
  constexpr int kMinutes = 1, kGrads = 2, kRadians = 3;
  const bool dropsLeading = (look.angleZeros & 1) != 0, dropsTrailing = (look.angleZeros & 2) != 0;
  const auto text = [&](double value) {
    return fixedText(value, look.angleDecimals, dropsLeading, dropsTrailing, look.separator);
  };
  const double degrees = radians * 180 / std::numbers::pi;
  switch (look.angleUnit) {
    case kMinutes: return minutesText(degrees, look.angleDecimals);
    case kGrads: return text(degrees / 0.9) + GC_T("g");
    case kRadians: return text(radians) + GC_T("r");
    default: return text(degrees) + GC_T("%%d");
  }
}

GcString shownText(const GcDbDimension& dimension, const Look&, const GcText& value) {
  const GcView given = view(dimension.dimensionText());
  if (given.empty()) return toGcString(value);
  const size_t at = given.find(GC_T("<>"));
  if (at == GcView::npos) return toGcString(given);
  return toGcString(GcText(given.substr(0, at)) + value + GcText(given.substr(at + 2)));
}

namespace {

GcGiTextStyle textStyleOf(const Look& look) {
  GcGiTextStyle style;
  GcDbTextStyleTableRecord* record = nullptr;
  if (gcdbOpenObject(record, look.textStyle, GcDb::kForRead) == Gcad::eOk) {
    record->look(style);
    ignore(record->close());
  }
  style.height = look.text;
  return style;
}

}  // namespace

double textLength(const Look& look, const GcString& text) { return gcgiTextLength(view(text), textStyleOf(look)); }

bool readsBackward(const GcGeVector3d& along, const GcGeVector3d& normal) {
  const GcGeVector3d own = gcplanar::toOwn(along, normal);
  return own.x < -1e-9 || (std::fabs(own.x) <= 1e-9 && own.y < 0);
}

void drawText(GcGiWorldDraw& draw, const GcDbDimension& dimension, const Look& look, const GcString& text,
              const GcGePoint3d& middle, GcGeVector3d along) {
  const GcGiTextStyle style = textStyleOf(look);
  const GcGeVector3d normal = dimension.normal();
  if (readsBackward(along, normal)) along = -along;
  const GcGeVector3d up = normal.crossProduct(along);
  const double length = gcgiTextLength(view(text), style);
  draw.geometry().text(middle - along * (length / 2) + up * look.gap, normal, along, text.c_str(), style);
}

void drawTextBehind(GcGiWorldDraw& draw, const GcDbDimension& dimension, const Look& look, const GcString& text,
                    const GcGePoint3d& end, const GcGeVector3d& away) {
  const GcGiTextStyle style = textStyleOf(look);
  const GcGeVector3d normal = dimension.normal();
  const bool turns = readsBackward(away, normal);
  const GcGeVector3d along = turns ? -away : away;
  const double length = turns ? gcgiTextLength(view(text), style) : 0;
  const GcGeVector3d up = normal.crossProduct(along);
  const GcGePoint3d start = end + away * (look.gap + length) - up * (look.text / 2);
  draw.geometry().text(start, normal, along, text.c_str(), style);
}

void drawExtensionLine(GcGiWorldDraw& draw, const Look& look, const GcGePoint3d& origin, const GcGePoint3d& foot) {
  const GcGeVector3d way = foot - origin;
  if (way.length() <= look.offset) return;
  const GcGeVector3d unit = way.normal();
  const GcGePoint3d line[2] = {origin + unit * look.offset, foot + unit * look.beyond};
  draw.geometry().polyline(2, line);
}

}  // namespace gcdimlook
