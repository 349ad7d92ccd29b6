#include "host/db/entities/mline.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

#include "db/arc.h"
#include "db/database.h"
#include "db/dictionary.h"
#include "db/line.h"
#include "gi/drawable.h"
#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"
#include "host/db/objects/mlinestyle.h"
#include "host/rx/math/elementary.h"

GCDB_DEFINE_CLASS(GcDbMline, "AcDbMline")

namespace {

const GcDbMlineStyle* styleAt(GcDbObjectId id) {
  return id.isValid() && !id.isErased() ? GcDbMlineStyle::cast(id.stub()->object) : nullptr;
}

constexpr GcDbField kLineFields[] = {
    list<&GcDbMlineSegment::cuts, 41, Is::Length>(74, "cuts"),
    list<&GcDbMlineSegment::fillCuts, 42, Is::Length>(75, "fillCuts"),
};

constexpr GcDbField kVertexFields[] = {
    field<&GcDbMlineVertex::point>(11, "point", Is::WcsPoint),
    field<&GcDbMlineVertex::direction>(12, "direction", Is::Direction),
    field<&GcDbMlineVertex::miter>(13, "miter", Is::Direction),
    each<&GcDbMlineVertex::lines>(-1, "lines", kLineFields),
};

}  // namespace

// The name of the style as files repeat it beside the reference.
struct GcDbMlineStyleName {
  static GcDbGroup get(const void* record) {
    const auto& mline = *static_cast<const GcDbMline*>(record);
    const GcDbMlineStyle* style = styleAt(mline.m_styleId);
    return GcDbGroup::ofText(2, view(style == nullptr ? mline.m_styleName : style->name()));
  }
  static bool set(void* record, const GcDbGroup& group) {
    static_cast<GcDbMline*>(record)->m_styleName = toGcString(group.text);
    return true;
  }
};

const GcDbField GcDbMline::kFields[] = {
    marker("AcDbMline"),
    field<&GcDbMline::m_styleName>(2, "styleName", Is::Plain).filedAs(GcDbMlineStyleName::get, GcDbMlineStyleName::set),
    field<&GcDbMline::m_styleId>(340, "style", Is::HardPointer),
    field<&GcDbMline::m_scale>(40, "scale", Is::Length).orElse(1),
    field<&GcDbMline::m_justification>(70, "justification", Is::Plain),
    field<&GcDbMline::m_flags>(71, "flags", Is::Plain),
    count<&GcDbMline::m_vertices>(72, "vertexCount"),
    field<&GcDbMline::m_lineCount>(73, "lineCount", Is::Plain),
    field<&GcDbMline::m_startPoint>(10, "startPoint", Is::WcsPoint),
    field<&GcDbMline::m_normal>(210, "normal", Is::Direction),
    each<&GcDbMline::m_vertices>(-1, "vertices", kVertexFields),
};
GCDB_FIELD_COUNT(GcDbMline);

void GcDbMline::subAppended() {
  if (styleAt(m_styleId) != nullptr) return;
  GcDbDictionary* root = nullptr;
  GcDbObjectId styles;
  if (gcdbOpenObject(root, database()->namedObjectsDictionaryId(), GcDb::kForRead) != Gcad::eOk) return;
  ignore(root->getAt(GC_T("ACAD_MLINESTYLE"), styles));
  ignore(root->close());
  GcDbDictionary* dictionary = nullptr;
  if (gcdbOpenObject(dictionary, styles, GcDb::kForRead) != Gcad::eOk) return;
  if (dictionary->getAt(m_styleName.c_str(), m_styleId) != Gcad::eOk)
    ignore(dictionary->getAt(GC_T("Standard"), m_styleId));
  ignore(dictionary->close());
}

// ---- the course ------------------------------------------------------------------------------------------

namespace {

// The unit direction in which the parallel lines bend at a joint of two ways: along the bisector of their left sides.
GcGeVector3d miterOf(const GcGeVector3d& before, const GcGeVector3d& after, const GcGeVector3d& normal) {
  const GcGeVector3d left = normal.crossProduct(before), next = normal.crossProduct(after);
  const GcGeVector3d between = left + next;
  constexpr double kTurnsBack = 1e-9;  // the ways lie over each other: there is no bisector
  return between.length() > kTurnsBack ? between.normal() : next;
}

GcGeVector3d turned(const GcGeVector3d& way, double angleRad, const GcGeVector3d& normal) {
  constexpr double kSquare = 1e-15;  // a right angle in radians is not quite one
  const double along = gc::cos(angleRad);
  const GcGeVector3d left = normal.crossProduct(way);
  return std::fabs(along) < kSquare ? left : way * along + left * gc::sin(angleRad);
}

// What is added to the style's offsets so that the line the justification names runs through the points.
double shiftOf(const GcDbMlineStyle& style, GcDbMline::Justification justification) {
  if (justification == GcDbMline::kZero || style.elements().isEmpty()) return 0;
  double low = style.elements()[0].offset, high = low;
  for (const GcDbMlineElement& element : style.elements()) {
    low = std::min(low, element.offset);
    high = std::max(high, element.offset);
  }
  return justification == GcDbMline::kTop ? -high : -low;
}

}  // namespace

Gcad::ErrorStatus GcDbMline::setCourse(const GcArray<GcGePoint3d>& points, bool closed, GcDbObjectId styleId,
                                       double scale, Justification justification, const GcGeVector3d& normal) {
  const GcDbMlineStyle* style = styleAt(styleId);
  const int count = points.length();
  if (style == nullptr || count < 2 || (closed && count < 3)) return Gcad::eInvalidInput;
  std::vector<GcGeVector3d> ways;
  for (int i = 0; i < (closed ? count : count - 1); ++i) {
    ways.push_back(points[(i + 1) % count] - points[i]);
    if (ways.back().isZeroLength()) return Gcad::eInvalidInput;
    ways.back() = ways.back().normal();
  }
  assertWriteEnabled();
  const double shift = shiftOf(*style, justification);
  GcArray<GcDbMlineVertex> vertices;
  for (int i = 0; i < count; ++i) {
    GcDbMlineVertex vertex;
    vertex.point = points[i];
    const bool isStart = !closed && i == 0, isEnd = !closed && i == count - 1;
    const GcGeVector3d& before = ways[isStart ? 0 : (i + ways.size() - 1) % ways.size()];
    vertex.direction = isEnd ? ways.back() : ways[i];
    vertex.miter = isStart ? turned(vertex.direction, style->startAngle(), normal)
                   : isEnd ? turned(vertex.direction, style->endAngle(), normal)
                           : miterOf(before, vertex.direction, normal);
    // The miter meets the line at `offset` further out by the cosine between it and the way's left side.
    const double slant = vertex.miter.dotProduct(normal.crossProduct(vertex.direction));
    for (const GcDbMlineElement& element : style->elements()) {
      GcDbMlineSegment line;
      line.cuts.append((element.offset + shift) * scale / slant);
      line.cuts.append(0);
      vertex.lines.append(line);
    }
    vertices.append(vertex);
  }
  m_vertices = vertices;
  m_startPoint = points[0];
  m_normal = normal;
  m_styleId = styleId;
  m_styleName = style->name();
  m_scale = scale;
  m_justification = justification;
  m_flags = static_cast<int16_t>(kHasVertices | (closed ? kClosed : 0));
  m_lineCount = static_cast<int16_t>(style->elements().length());
  return Gcad::eOk;
}

// ---- drawing ---------------------------------------------------------------------------------------------

namespace {

// What a multiline is made of, as lines and half circles of one element each.
struct Piece {
  GcGePoint3d from, to;
  bool isArc = false;  // a half circle from `from` to `to`, on the side of `bulge`
  GcGeVector3d bulge;
  int element = 0;
};

class Outline {
 public:
  Outline(const GcDbMline& mline, const GcDbMlineStyle* style) : m_mline(mline), m_style(style) {}

  std::vector<Piece> pieces() {
    const int count = m_mline.vertices().length();
    if (count < 2) return {};
    const int segments = m_mline.isClosed() ? count : count - 1;
    for (int i = 0; i < segments; ++i)
      for (int line = 0; line < lineCount(i); ++line) addSegment(i, line);
    if (m_style == nullptr) return std::move(m_pieces);
    if ((m_style->flags() & GcDbMlineStyle::kShowMiters) != 0)
      for (int i = m_mline.isClosed() ? 0 : 1; i < (m_mline.isClosed() ? count : count - 1); ++i) addJoint(i);
    if (!m_mline.isClosed()) addCaps(count - 1);
    return std::move(m_pieces);
  }

  // Where an element passes a vertex: the first of its cuts along the miter.
  [[nodiscard]] GcGePoint3d at(int vertex, int line) const {
    const GcDbMlineVertex& v = m_mline.vertices()[vertex];
    if (line >= v.lines.length() || v.lines[line].cuts.isEmpty()) return v.point;
    return v.point + v.miter * v.lines[line].cuts[0];
  }
  [[nodiscard]] int lineCount(int vertex) const { return m_mline.vertices()[vertex].lines.length(); }
  // The elements that lie furthest to either side at a vertex.
  void outermost(int vertex, int& low, int& high) const {
    low = high = 0;
    for (int i = 1; i < lineCount(vertex); ++i) {
      if (offset(vertex, i) < offset(vertex, low)) low = i;
      if (offset(vertex, i) > offset(vertex, high)) high = i;
    }
  }

 private:
  [[nodiscard]] double offset(int vertex, int line) const {
    const GcArray<double>& cuts = m_mline.vertices()[vertex].lines[line].cuts;
    return cuts.isEmpty() ? 0 : cuts[0];
  }

  void addSegment(int vertex, int line) {
    const int next = (vertex + 1) % m_mline.vertices().length();
    const GcGePoint3d from = at(vertex, line), to = at(next, line);
    const GcDbMlineVertex& v = m_mline.vertices()[vertex];
    const GcArray<double>& cuts = v.lines[line].cuts;
    if (cuts.length() < 2) return add(from, to, line);
    for (int i = 1; i < cuts.length(); i += 2) {
      const GcGePoint3d start = from + v.direction * cuts[i];
      add(start, i + 1 < cuts.length() ? from + v.direction * cuts[i + 1] : to, line);
    }
  }

  void addJoint(int vertex) {
    int low = 0, high = 0;
    outermost(vertex, low, high);
    if (low != high) add(at(vertex, low), at(vertex, high), high);
  }

  void addCaps(int last) {
    const auto has = [&](int flag) { return (m_style->flags() & flag) != 0; };
    const auto& vertices = m_mline.vertices();
    if ((m_mline.flags() & GcDbMline::kNoStartCaps) == 0)
      addCap(0, vertices[0].direction * -1.0, has(GcDbMlineStyle::kStartSquare), has(GcDbMlineStyle::kStartRound),
             has(GcDbMlineStyle::kStartInnerArcs));
    if ((m_mline.flags() & GcDbMline::kNoEndCaps) == 0)
      addCap(last, (vertices[last].point - vertices[last - 1].point).normal(), has(GcDbMlineStyle::kEndSquare),
             has(GcDbMlineStyle::kEndRound), has(GcDbMlineStyle::kEndInnerArcs));
  }

  void addCap(int vertex, const GcGeVector3d& outward, bool isSquare, bool isRound, bool hasInner) {
    std::vector<int> order;
    for (int i = 0; i < lineCount(vertex); ++i) order.push_back(i);
    if (order.size() < 2) return;
    std::sort(order.begin(), order.end(), [&](int a, int b) { return offset(vertex, a) < offset(vertex, b); });
    if (isSquare) add(at(vertex, order.front()), at(vertex, order.back()), order.back());
    if (isRound) addArc(vertex, order.front(), order.back(), outward);
    for (size_t i = 1; hasInner && i < order.size() / 2; ++i)
      addArc(vertex, order[i], order[order.size() - 1 - i], outward);
  }

  void add(const GcGePoint3d& from, const GcGePoint3d& to, int line) {
    m_pieces.push_back({from, to, false, {}, line});
  }
  void addArc(int vertex, int low, int high, const GcGeVector3d& outward) {
    m_pieces.push_back({at(vertex, low), at(vertex, high), true, outward, high});
  }

  const GcDbMline& m_mline;
  const GcDbMlineStyle* m_style;
  std::vector<Piece> m_pieces;
};

// The half circle as center, start vector and the normal about which it runs counter-clockwise.
struct HalfCircle {
  GcGePoint3d center;
  GcGeVector3d start, normal;
};

HalfCircle halfCircleOf(const Piece& piece) {
  HalfCircle arc;
  arc.center = piece.from + (piece.to - piece.from) * 0.5;
  arc.start = piece.from - arc.center;
  arc.normal = arc.start.crossProduct(piece.bulge).normal();
  return arc;
}

constexpr double kPi = 3.14159265358979323846;

void drawFill(GcGiWorldDraw& draw, const GcDbMline& mline, const GcDbMlineStyle& style, const Outline& outline) {
  const int count = mline.vertices().length();
  draw.subEntityTraits().setColor(style.fillColor());
  draw.subEntityTraits().setFill(true);
  for (int i = 0; i < (mline.isClosed() ? count : count - 1); ++i) {
    const int next = (i + 1) % count;
    if (outline.lineCount(i) < 2 || outline.lineCount(next) < 2) continue;
    int low = 0, high = 0;
    outline.outermost(i, low, high);
    if (std::max(low, high) >= outline.lineCount(next)) continue;
    const GcGePoint3d corners[4] = {outline.at(i, low), outline.at(next, low), outline.at(next, high),
                                    outline.at(i, high)};
    draw.geometry().polygon(4, corners);
  }
  draw.subEntityTraits().setFill(false);
}

}  // namespace

bool GcDbMline::subWorldDraw(GcGiWorldDraw* draw) {
  const GcDbMlineStyle* style = styleAt(m_styleId);
  Outline outline(*this, style);
  if (style != nullptr && (style->flags() & GcDbMlineStyle::kFilled) != 0 && m_vertices.length() > 1)
    drawFill(*draw, *this, *style, outline);
  for (const Piece& piece : outline.pieces()) {
    if (style != nullptr && piece.element < style->elements().length()) {
      const GcDbMlineElement& element = style->elements()[piece.element];
      draw->subEntityTraits().setColor(element.color.isByLayer() ? color() : element.color);
      const bool isOwn = element.linetype.isNull() || element.linetype == database()->byLayerLinetype();
      draw->subEntityTraits().setLineType(isOwn ? linetypeId() : element.linetype);
    }
    if (piece.isArc) {
      const HalfCircle arc = halfCircleOf(piece);
      draw->geometry().circularArc(arc.center, arc.start.length(), arc.normal, arc.start, kPi);
    } else {
      const GcGePoint3d ends[2] = {piece.from, piece.to};
      draw->geometry().polyline(2, ends);
    }
  }
  return true;
}

Gcad::ErrorStatus GcDbMline::explode(GcDbVoidPtrArray& entities) const {
  const GcDbMlineStyle* style = styleAt(m_styleId);
  Outline outline(*this, style);
  const std::vector<Piece> pieces = outline.pieces();
  if (pieces.empty()) return Gcad::eNotApplicable;
  for (const Piece& piece : pieces) {
    GcDbEntity* made = nullptr;
    if (piece.isArc) {
      const HalfCircle arc = halfCircleOf(piece);
      const GcGeVector3d x = gcgeArbitraryXAxis(arc.normal);
      const double from = gc::atan2(arc.normal.crossProduct(x).dotProduct(arc.start), x.dotProduct(arc.start));
      made = new GcDbArc(arc.center, arc.normal, arc.start.length(), from, from + kPi);
    } else {
      made = new GcDbLine(piece.from, piece.to);
    }
    ignore(made->setPropertiesFrom(*this));
    if (style != nullptr && piece.element < style->elements().length()) {
      const GcDbMlineElement& element = style->elements()[piece.element];
      if (!element.color.isByLayer()) ignore(made->setColor(element.color));
      if (!element.linetype.isNull() && element.linetype != database()->byLayerLinetype())
        ignore(made->setLinetype(element.linetype));
    }
    entities.append(made);
  }
  return Gcad::eOk;
}
