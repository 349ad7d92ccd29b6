#include "host/ed/colors.h"

#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

constexpr const GCHAR* kNames[] = {GC_T("red"),  GC_T("yellow"),  GC_T("green"), GC_T("cyan"),
                                   GC_T("blue"), GC_T("magenta"), GC_T("white")};

bool parseRgb(GcView text, GcCmColor& color) {
  int64_t parts[3];
  for (int i = 0; i < 3; ++i) {
    const size_t comma = i < 2 ? text.find(GC_T(',')) : text.size();
    if (comma == GcView::npos || !gc::parseInt(text.substr(0, comma), parts[i]) || parts[i] < 0 || parts[i] > 255)
      return false;
    text.remove_prefix(std::min(comma + 1, text.size()));
  }
  color = GcCmColor::fromRgb(static_cast<uint8_t>(parts[0]), static_cast<uint8_t>(parts[1]),
                             static_cast<uint8_t>(parts[2]));
  return true;
}

}  // namespace

bool parseColor(GcView text, GcCmColor& color) {
  int64_t index = 0;
  if (!text.empty() && text[0] == GC_T('_')) text.remove_prefix(1);
  if (equalNoCase(text, GC_T("BYLAYER"))) {
    color.setColorIndex(256);
  } else if (equalNoCase(text, GC_T("BYBLOCK"))) {
    color.setColorIndex(0);
  } else if (gc::parseInt(text, index)) {
    if (index < 0 || index > 256) return false;
    color.setColorIndex(static_cast<int>(index));
  } else if (text.size() > 4 && equalNoCase(text.substr(0, 4), GC_T("RGB:"))) {
    return parseRgb(text.substr(4), color);
  } else if (text.find(GC_T(',')) != GcView::npos) {
    return parseRgb(text, color);
  } else {
    for (int i = 0; i < 7; ++i) {
      if (!equalNoCase(text, kNames[i])) continue;
      color.setColorIndex(i + 1);
      return true;
    }
    return false;
  }
  return true;
}

GcText colorText(const GcCmColor& color) {
  if (color.isByLayer()) return GC_T("BYLAYER");
  if (color.isByBlock()) return GC_T("BYBLOCK");
  const std::string text = color.isByColor() ? "RGB:" + std::to_string(color.red()) + "," +
                                                   std::to_string(color.green()) + "," + std::to_string(color.blue())
                                             : std::to_string(color.colorIndex());
  return gc::fromUtf8(text);
}

}  // namespace ed
