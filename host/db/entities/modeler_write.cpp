#include <cmath>

#include "host/db/entities/ellipse_axes.h"
#include "host/db/entities/modeler_text.h"
#include "host/ge/curves/nurbs.h"
#include "host/rx/text/number.h"

namespace gcmodeler {
namespace {

constexpr int kNone = -1;

// A record with its blanks; pointers are "$n".
class Record {
 public:
  explicit Record(const char* kind) : m_text(kind) {}
  Record& ref(int index) { return word("$" + std::to_string(index)); }
  Record& word(const std::string& text) {
    m_text += ' ';
    m_text += text;
    return *this;
  }
  Record& real(double value) { return word(gc::realText(value == 0 ? 0 : value)); }
  Record& triple(double x, double y, double z) { return real(x).real(y).real(z); }
  Record& point(const GcGePoint3d& p) { return triple(p.x, p.y, p.z); }
  Record& vector(const GcGeVector3d& v) { return triple(v.x, v.y, v.z); }
  [[nodiscard]] std::string end() const { return m_text + " #"; }

 private:
  std::string m_text;
};

// Records are laid down in the order of their numbers: body 0, lump 1, shell 2, face 3, plane 4, then each loop with
// its coedges, edges, vertices, points and curves.
class Writer {
 public:
  explicit Writer(const PlaneArea& area) : m_area(area) {}

  std::vector<std::string> run() {
    m_records.push_back(Record("body").ref(kNone).ref(1).ref(kNone).ref(kNone).end());
    m_records.push_back(Record("lump").ref(kNone).ref(kNone).ref(2).ref(0).end());
    m_records.push_back(Record("shell").ref(kNone).ref(kNone).ref(kNone).ref(3).ref(kNone).ref(1).end());
    m_records.push_back(
        Record("face").ref(kNone).ref(kNone).ref(5).ref(2).ref(kNone).ref(4).word("forward double out").end());
    m_records.push_back(plane());
    for (size_t i = 0; i < m_area.loops.size(); ++i) loop(m_area.loops[i], i + 1 == m_area.loops.size());
    std::vector<std::string> lines = {"400 " + std::to_string(m_records.size()) + " 1 0 ",
                                      "4 gcad 9 plane SAT 24 Thu Jan 01 00:00:00 1970 ", "1 1e-06 1e-10 "};
    for (std::string& record : m_records) lines.push_back(record + ' ');
    lines.emplace_back("End-of-ACIS-data ");
    return lines;
  }

 private:
  [[nodiscard]] std::string plane() const {
    const GcGePath& path = m_area.loops[0];
    const GcGePoint3d at = path.origin() + path.pointOn(0, path.spans()[0].u0);
    return Record("plane-surface")
        .ref(kNone)
        .point(at)
        .vector(m_area.normal)
        .vector(m_area.normal.perpVector().normal())
        .word("forward_v I I I I")
        .end();
  }

  // Numbers of a loop's records: the loop, then five for every edge.
  void loop(const GcGePath& path, bool isLast) {
    constexpr int kPerEdge = 5;
    const int self = static_cast<int>(m_records.size());
    const int count = static_cast<int>(path.spans().size());
    const auto record = [&](int edge, int which) { return self + 1 + kPerEdge * ((edge + count) % count) + which; };
    const int next = isLast ? kNone : self + 1 + kPerEdge * count;
    m_records.push_back(Record("loop").ref(kNone).ref(next).ref(record(0, 0)).ref(3).end());
    for (int i = 0; i < count; ++i) {
      m_records.push_back(Record("coedge")
                              .ref(kNone)
                              .ref(record(i + 1, 0))
                              .ref(record(i - 1, 0))
                              .ref(kNone)
                              .ref(record(i, 1))
                              .word("forward")
                              .ref(self)
                              .ref(kNone)
                              .end());
      m_records.push_back(Record("edge")
                              .ref(kNone)
                              .ref(record(i, 2))
                              .ref(record(i + 1, 2))
                              .ref(record(i, 0))
                              .ref(record(i, 4))
                              .word("forward")
                              .end());
      m_records.push_back(Record("vertex").ref(kNone).ref(record(i, 1)).ref(record(i, 3)).end());
      m_records.push_back(Record("point").ref(kNone).point(at(path, i, path.spans()[i].u0)).end());
      m_records.push_back(curve(path, i));
    }
  }

  static GcGePoint3d at(const GcGePath& path, int span, double u) { return path.origin() + path.pointOn(span, u); }

  static std::string curve(const GcGePath& path, int index) {
    const GcGeSpan& span = path.spans()[static_cast<size_t>(index)];
    if (span.kind == GcGeSpan::Kind::Line) {
      const GcGePoint3d from = at(path, index, span.u0);
      const GcGeVector3d way = at(path, index, span.u1) - from;
      return Record("straight-curve").ref(kNone).point(from).vector(way.normal()).word("I I").end();
    }
    return span.kind == GcGeSpan::Kind::Arc ? ellipse(path, span) : spline(path, index);
  }

  // About the normal that makes the edge run the way of the ellipse.
  static std::string ellipse(const GcGePath& path, const GcGeSpan& span) {
    const bool backwards = span.sweep * (span.u1 - span.u0) < 0;
    gcellipse::Axes axes = gcellipse::principalAxes(span.b, backwards ? -span.c : span.c);
    if (span.circular) axes.ratio = 1;
    return Record("ellipse-curve")
        .ref(kNone)
        .point(path.origin() + span.center())
        .vector(axes.normal)
        .vector(axes.major)
        .real(axes.ratio)
        .word("I I")
        .end();
  }

  static std::string spline(const GcGePath& path, int index) {
    const GcGeSpan& span = path.spans()[static_cast<size_t>(index)];
    GcGePole poles[GcGeSpan::kMostDegree + 1];
    gcgeTrimBezier(path.poles() + span.firstPole, span.degree, span.u0, span.u1, poles);
    Record record("intcurve-curve");
    record.ref(kNone).word("forward { exactcur").word(span.rational ? "nurbs" : "nubs");
    record.word(std::to_string(span.degree)).word("open 2 0").word(std::to_string(span.degree));
    record.word("1").word(std::to_string(span.degree));
    for (int i = 0; i <= span.degree; ++i) {
      record.point(path.origin() + poles[i].point());
      if (span.rational) record.real(poles[i].w);
    }
    return record.word("0 null_surface null_surface nullbs nullbs I I } I I").end();
  }

  const PlaneArea& m_area;
  std::vector<std::string> m_records;
};

}  // namespace

std::vector<std::string> write(const PlaneArea& area) { return Writer(area).run(); }

// Every character but the blank and the tab stands for the one that completes it to 159.
std::string cipher(std::string_view line) {
  constexpr int kSum = 159;
  std::string out(line);
  for (char& c : out)
    if (c > ' ' && c < 127) c = static_cast<char>(kSum - c);
  return out;
}

}  // namespace gcmodeler
