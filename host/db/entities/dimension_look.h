// What dimensions of all kinds draw with: the settings of their style and their own, values as text, texts and lines.
#pragma once

#include "db/dimension.h"
#include "gi/drawable.h"
#include "host/rx/view.h"

namespace gcdimlook {

// Settings of the style and the dimension's own, scaled; lengths in drawing units.
struct Look {
  double arrow = 2.5, text = 2.5, gap = 0.625, beyond = 1.25, offset = 0.625;
  double factor = 1;
  int decimals = 2;
  int zeros = 0;
  int angleUnit = 0;  // degrees; degrees, minutes, seconds; grads; radians
  int angleDecimals = 0;
  int angleZeros = 0;
  int arcSymbol = 0;  // before the text, above it, none
  GCHAR separator = '.';
  GcString post;  // around the value: before "<>" and behind it, or behind it alone
  GcDbObjectId textStyle;
  GcDbObjectId first, second;
};
Look lookOf(const GcDbDimension& dimension);

// The text of a length or an angle (radians): decimals, trailing zeros, separator.
GcText lengthText(double value, const Look& look);
GcText angleText(double radians, const Look& look);
// The dimension's own text, with the value in place of "<>", or the value.
GcString shownText(const GcDbDimension& dimension, const Look& look, const GcText& value);

[[nodiscard]] double textLength(const Look& look, const GcString& text);
// True when text along the direction would stand on its head.
[[nodiscard]] bool readsBackward(const GcGeVector3d& along, const GcGeVector3d& normal);
// Over the middle of a line, readable from below or from the right.
void drawText(GcGiWorldDraw& draw, const GcDbDimension& dimension, const Look& look, const GcString& text,
              const GcGePoint3d& middle, GcGeVector3d along);
// Goes on where a line along `away` ends.
void drawTextBehind(GcGiWorldDraw& draw, const GcDbDimension& dimension, const Look& look, const GcString& text,
                    const GcGePoint3d& end, const GcGeVector3d& away);

// From a little off the origin to a little behind the foot; nothing when they nearly meet.
void drawExtensionLine(GcGiWorldDraw& draw, const Look& look, const GcGePoint3d& origin, const GcGePoint3d& foot);

}  // namespace gcdimlook
