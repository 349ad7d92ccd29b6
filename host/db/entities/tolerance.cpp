#include "db/tolerance.h"

#include <iterator>

#include "db/database.h"
#include "gi/drawable.h"
#include "host/db/describe/fieldio.h"
#include "host/gi/textline.h"

GCDB_DEFINE_CLASS(GcDbFcf, "AcDbFcf")

const GcDbField GcDbFcf::kFields[] = {
    marker("AcDbFcf"),
    field<&GcDbFcf::m_styleId>(3, "dimensionStyle", Is::DimStyleName),
    field<&GcDbFcf::m_location>(10, "location", Is::WcsPoint),
    field<&GcDbFcf::m_text>(1, "text", Is::Plain),
    field<&GcDbFcf::m_normal>(210, "normal", Is::Direction, Write::FilesUnlessDefault).orAxis(2),
    field<&GcDbFcf::m_direction>(11, "direction", Is::WcsVector).orAxis(0),
};
GCDB_FIELD_COUNT(GcDbFcf);

void GcDbFcf::subAppended() {
  if (m_styleId.isNull()) m_styleId = database()->dimstyle();
}

namespace {

struct Frame {
  GcGePoint3d origin;
  GcGeVector3d x, y;
  [[nodiscard]] GcGePoint3d at(double along, double up) const { return origin + x * along + y * up; }
};

// One box with its text; gives the box's width.
double drawBox(GcGiWorldDraw& draw, const Frame& frame, double left, double bottom, GcView text, double height,
               const GcGeVector3d& normal) {
  GcGiTextStyle look;
  look.height = height;
  const double width = gcgiTextLength(text, look) + height;
  const GcGePoint3d corners[4] = {frame.at(left, bottom), frame.at(left + width, bottom),
                                  frame.at(left + width, bottom + 2 * height), frame.at(left, bottom + 2 * height)};
  draw.geometry().polyline(4, corners, true);
  const GcString line = toGcString(text);
  draw.geometry().text(frame.at(left + height / 2, bottom + height / 2), normal, frame.x, line.c_str(), look);
  return width;
}

// Symbols come as a font switch and a letter, {\Fgdt;j}: the letter stands for them.
GcText withoutFontSwitches(GcView text) {
  GcText plain;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '{' || text[i] == '}') continue;
    if (text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == 'F' || text[i + 1] == 'f')) {
      while (i < text.size() && text[i] != ';') ++i;
      continue;
    }
    plain += text[i];
  }
  return plain;
}

}  // namespace

// Rows are parted by ^J, boxes of a row by %%v.
bool GcDbFcf::subWorldDraw(GcGiWorldDraw* draw) {
  double height = 2.5;
  GcDbDimStyleTableRecord* style = nullptr;
  if (gcdbOpenObject(style, m_styleId, GcDb::kForRead) == Gcad::eOk) {
    height = style->dimtxt() * (style->dimscale() > 0 ? style->dimscale() : 1);
    ignore(style->close());
  }
  const Frame frame{m_location, m_direction.normal(), m_normal.crossProduct(m_direction).normal()};
  const GcText all = withoutFontSwitches(view(m_text));
  double left = 0;
  double bottom = -height;
  size_t from = 0;
  for (size_t i = 0; i <= all.size(); ++i) {
    const GcView rest = GcView(all).substr(i);
    const bool endsRow = rest.empty() || rest[0] == '\n' || rest.substr(0, 2) == GC_T("^J");
    const bool endsBox = rest.substr(0, 3) == GC_T("%%v");
    if (!endsRow && !endsBox) continue;
    const GcView text = GcView(all).substr(from, i - from);
    if (!text.empty()) left += drawBox(*draw, frame, left, bottom, text, height, m_normal);
    if (endsRow) {
      left = 0;
      bottom -= 2 * height;
    }
    const size_t skipped = rest.empty() || rest[0] == '\n' ? 1 : endsBox ? 3 : 2;
    from = i + skipped;
    i = from - 1;
  }
  return true;
}
