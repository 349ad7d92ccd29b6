#include <cmath>
#include <string_view>

#include "host/db/entities/ellipse_axes.h"
#include "host/db/entities/modeler_record.h"
#include "host/db/entities/modeler_tags.h"
#include "host/db/entities/modeler_text.h"
#include "host/ge/curves/arrangement.h"
#include "host/ge/curves/nurbs.h"
#include "host/rx/math/elementary.h"

namespace gcmodeler {
namespace {

constexpr int kNone = -1;

// An outline and its holes.
using Face = std::vector<const GcGePath*>;

// The outlines of an area, each with the holes that lie in it and in no smaller one.
std::vector<Face> facesOf(const PlaneArea& area) {
  std::vector<Face> faces;
  std::vector<double> sizes;
  for (const GcGePath& loop : area.loops) {
    const double size = loop.vectorArea().dotProduct(area.normal);
    if (size <= 0) continue;
    faces.push_back({&loop});
    sizes.push_back(size);
  }
  if (faces.size() < 2) {
    Face all;
    for (const GcGePath& loop : area.loops) all.push_back(&loop);
    return {all};
  }
  for (const GcGePath& loop : area.loops) {
    if (loop.vectorArea().dotProduct(area.normal) > 0) continue;
    const GcGePoint3d at = loop.origin() + loop.pointOn(0, (loop.spans()[0].u0 + loop.spans()[0].u1) / 2);
    size_t best = faces.size();
    for (size_t i = 0; i < faces.size(); ++i)
      if ((best == faces.size() || sizes[i] < sizes[best]) && gcgeEncloses(*faces[i][0], area.normal, at)) best = i;
    faces[best == faces.size() ? 0 : best].push_back(&loop);
  }
  return faces;
}

constexpr int kPerEdge = 5;  // records of an edge of a loop

// Records are laid down in the order of their numbers: body, then for each face lump, shell, face, plane, and each loop
// with its coedges, edges, vertices, points and curves. Bytes have one record before them.
class Writer {
 public:
  Writer(const PlaneArea& area, Form form) : m_area(area), m_form(form) {}

  std::vector<std::string> run() {
    if (isBinary()) m_records.push_back(versionRecord());
    m_body = static_cast<int>(m_records.size());
    add(begin("body").ref(m_body + 1).ref(kNone).ref(kNone));
    const std::vector<Face> faces = facesOf(m_area);
    for (size_t i = 0; i < faces.size(); ++i) face(faces[i], i + 1 == faces.size());
    return std::move(m_records);
  }

 private:
  [[nodiscard]] bool isBinary() const { return m_form == Form::Binary21800; }
  [[nodiscard]] int faceNumber() const { return m_lump + 2; }

  void face(const Face& loops, bool isLast) {
    m_lump = static_cast<int>(m_records.size());
    int next = m_lump + 4;
    for (const GcGePath* loop : loops) next += 1 + kPerEdge * static_cast<int>(loop->spans().size());
    add(begin("lump").ref(isLast ? kNone : next).ref(m_lump + 1).ref(m_body));
    add(begin("shell").ref(kNone).ref(kNone).ref(faceNumber()).ref(kNone).ref(m_lump));
    add(begin("face")
            .ref(kNone)
            .ref(faceNumber() + 2)
            .ref(m_lump + 1)
            .ref(kNone)
            .ref(faceNumber() + 1)
            .flag(false, "forward")
            .flag(true, "double")
            .flag(false, "out"));
    add(plane(*loops[0]));
    for (size_t i = 0; i < loops.size(); ++i) loop(*loops[i], i + 1 == loops.size());
  }
  void add(const Record& record) { m_records.push_back(record.end()); }

  // The kind, no attributes; later versions add the number of the history and the pattern it is part of.
  [[nodiscard]] Record begin(const char* kind) const {
    Record record(m_form, kind);
    record.ref(kNone);
    if (isBinary()) record.integer(kNone).ref(kNone);
    return record;
  }
  [[nodiscard]] std::string versionRecord() const {
    return Record(m_form, "asmheader").ref(kNone).integer(kNone).text("208.0.4.7009").end();
  }

  static Record& unbounded(Record& record, int directions) {
    for (int i = 0; i < directions; ++i) record.flag(false, "I");
    return record;
  }

  [[nodiscard]] Record plane(const GcGePath& path) const {
    Record record = begin("plane-surface");
    record.place(path.origin() + path.pointOn(0, path.spans()[0].u0))
        .vector(m_area.normal)
        .vector(m_area.normal.perpVector().normal())
        .flag(false, "forward_v");
    return unbounded(record, 4);
  }

  // Numbers of a loop's records: the loop, then five for every edge.
  void loop(const GcGePath& path, bool isLast) {
    const int self = static_cast<int>(m_records.size());
    const int count = static_cast<int>(path.spans().size());
    const auto record = [&](int edge, int which) { return self + 1 + kPerEdge * ((edge + count) % count) + which; };
    const int next = isLast ? kNone : self + 1 + kPerEdge * count;
    add(begin("loop").ref(next).ref(record(0, 0)).ref(faceNumber()));
    for (int i = 0; i < count; ++i) {
      Record coedge = begin("coedge");
      coedge.ref(record(i + 1, 0)).ref(record(i - 1, 0)).ref(kNone).ref(record(i, 1)).flag(false, "forward").ref(self);
      if (isBinary()) coedge.integer(0);
      add(coedge.ref(kNone));
      Record curve = this->curve(path, i);
      add(edge(record(i, 2), record(i + 1, 2), record(i, 0), record(i, 4)));
      Record vertex = begin("vertex");
      vertex.ref(record(i, 1));
      if (isBinary()) vertex.integer(0);
      add(vertex.ref(record(i, 3)));
      add(begin("point").place(at(path, i, path.spans()[static_cast<size_t>(i)].u0)));
      add(curve);
    }
  }

  [[nodiscard]] Record edge(int start, int end, int coedge, int curve) const {
    Record record = begin("edge");
    record.ref(start);
    if (isBinary()) record.real(m_from);
    record.ref(end);
    if (isBinary()) record.real(m_to);
    record.ref(coedge).ref(curve).flag(false, "forward");
    if (isBinary()) record.text("unknown");
    return record;
  }

  static GcGePoint3d at(const GcGePath& path, int span, double u) { return path.origin() + path.pointOn(span, u); }

  // Sets the parameters between which the edge runs.
  Record curve(const GcGePath& path, int index) {
    const GcGeSpan& span = path.spans()[static_cast<size_t>(index)];
    if (span.kind == GcGeSpan::Kind::Line) return line(at(path, index, span.u0), at(path, index, span.u1));
    return span.kind == GcGeSpan::Kind::Arc ? ellipse(path, span) : spline(path, index);
  }

  Record line(const GcGePoint3d& from, const GcGePoint3d& to) {
    m_from = 0;
    m_to = (to - from).length();
    Record record = begin("straight-curve");
    record.place(from).vector((to - from).normal());
    return unbounded(record, 2);
  }

  // About the normal that makes the edge run the way of the ellipse; parameters are angles from the longer axis.
  Record ellipse(const GcGePath& path, const GcGeSpan& span) {
    const bool backwards = span.sweep * (span.u1 - span.u0) < 0;
    gcellipse::Axes axes = gcellipse::principalAxes(span.b, backwards ? -span.c : span.c);
    if (span.circular) axes.ratio = 1;
    const GcGeVector3d start = gcgePointAt(span, path.poles(), span.u0) - span.center();
    const GcGeVector3d minor = axes.normal.crossProduct(axes.major) * axes.ratio;
    m_from =
        gc::atan2(start.dotProduct(minor) / minor.lengthSqrd(), start.dotProduct(axes.major) / axes.major.lengthSqrd());
    m_to = m_from + std::fabs(span.sweep * (span.u1 - span.u0));
    Record record = begin("ellipse-curve");
    record.place(path.origin() + span.center()).vector(axes.normal).vector(axes.major).real(axes.ratio);
    return unbounded(record, 2);
  }

  // A Bezier curve over 0 to 1.
  Record spline(const GcGePath& path, int index) {
    const GcGeSpan& span = path.spans()[static_cast<size_t>(index)];
    GcGePole poles[GcGeSpan::kMostDegree + 1];
    gcgeTrimBezier(path.poles() + span.firstPole, span.degree, span.u0, span.u1, poles);
    m_from = 0;
    m_to = 1;
    Record record = begin("intcurve-curve");
    record.flag(false, "forward").open().word("exactcur");
    if (isBinary()) record.choice(0, "full");
    record.word(span.rational ? "nurbs" : "nubs").integer(span.degree).choice(0, "open").integer(2);
    record.real(0).integer(span.degree).real(1).integer(span.degree);
    for (int i = 0; i <= span.degree; ++i) {
      const GcGePoint3d p = path.origin() + poles[i].point();
      record.real(p.x).real(p.y).real(p.z);
      if (span.rational) record.real(poles[i].w);
    }
    record.real(0).word("null_surface").word("null_surface").word("nullbs").word("nullbs");
    unbounded(record, 2);
    if (isBinary()) record.integer(0).integer(0).integer(0);  // no corners of any order
    record.close();
    return unbounded(record, 2);
  }

  const PlaneArea& m_area;
  Form m_form;
  int m_body = 0, m_lump = 0;
  double m_from = 0, m_to = 0;
  std::vector<std::string> m_records;
};

constexpr const char* kDate = "Thu Jan 01 00:00:00 1970";

}  // namespace

std::vector<std::string> write(const PlaneArea& area) {
  const std::vector<std::string> records = Writer(area, Form::Text400).run();
  std::vector<std::string> lines = {"400 " + std::to_string(records.size()) + " 1 0 ",
                                    std::string("4 gcad 12 ACIS 4.00 NT 24 ") + kDate + ' ', "1 1e-06 1e-10 "};
  for (const std::string& record : records) lines.push_back(record + ' ');
  lines.emplace_back("End-of-ACIS-data ");
  return lines;
}

// The head: version, records (may be left at 0), bodies with the record before them, no history.
std::string writeBinary(const PlaneArea& area) {
  constexpr int kHead[] = {21800, 0, 2, 0};
  std::string out(tags::kOlder);
  for (const int value : kHead) out.append(reinterpret_cast<const char*>(&value), sizeof value);
  for (const std::string_view text : {std::string_view("gcad"), std::string_view("ACIS 218.00 NT"), {kDate, 24}}) {
    out += static_cast<char>(tags::kText8);
    out += static_cast<char>(text.size());
    out += text;
  }
  for (const double value : {1.0, 1e-6, 1e-10}) {
    out += static_cast<char>(tags::kReal);
    out.append(reinterpret_cast<const char*>(&value), sizeof value);
  }
  for (const std::string& record : Writer(area, Form::Binary21800).run()) out += record;
  const std::string end = Record(Form::Binary21800, "End-of-ASM-data").end();
  return out + end.substr(0, end.size() - 1);  // the last one has no end of its own
}

// Every character but the blank and the tab stands for the one that completes it to 159.
std::string cipher(std::string_view line) {
  constexpr int kSum = 159;
  std::string out(line);
  for (char& c : out)
    if (c > ' ' && c < 127) c = static_cast<char>(kSum - c);
  return out;
}

}  // namespace gcmodeler
