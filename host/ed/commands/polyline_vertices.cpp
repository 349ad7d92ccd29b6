#include "host/ed/commands/polyline_vertices.h"

#include <algorithm>

#include "host/ed/append.h"
#include "host/ed/coordinates.h"
#include "host/ed/editedpolyline.h"

namespace ed {

namespace {

using What = Ask::What;

// The vertex the options are about.
class Marker {
 public:
  explicit Marker(const EditedPolyline& line) : m_line(line) {}
  [[nodiscard]] size_t at() const { return m_at; }
  void set(size_t at) { m_at = at; }
  void move(bool forwards) {
    const size_t last = m_line.vertices.size() - 1;
    if (forwards)
      m_at = m_at < last ? m_at + 1 : m_line.closed ? 0 : last;
    else
      m_at = m_at > 0 ? m_at - 1 : m_line.closed ? last : 0;
  }

 private:
  const EditedPolyline& m_line;
  size_t m_at = 0;
};

// From the marked vertex to a second one, that Go takes; nothing comes of eXit.
struct Stretch {
  bool given = false;
  size_t from = 0;
  size_t to = 0;
};

Task<Stretch> askStretch(CommandInput& in, const EditedPolyline& line, size_t from) {
  Marker second(line);
  second.set(from);
  bool forwards = true;
  for (;;) {
    const Answer answer = co_await in.ask(
        Ask(What::Keyword, "\nEnter an option [Next/Previous/Go/eXit] <N>: ").words("Next Previous Go eXit"));
    if (answer.isKeyword("Go")) co_return Stretch{true, from, second.at()};
    if (answer.isKeyword("eXit") || answer.kind == Answer::Kind::Cancelled) co_return Stretch{};
    if (answer.kind == Answer::Kind::Keyword) forwards = answer.isKeyword("Next");
    second.move(forwards);
  }
}

// The run begins at another of its vertices.
void turnToBegin(EditedPolyline& line, size_t first) {
  std::rotate(line.vertices.begin(), line.vertices.begin() + static_cast<std::ptrdiff_t>(first), line.vertices.end());
}

// Takes out what lies between the two vertices; at a single one the run only comes apart.
void breakRun(CommandInput& in, EditedPolyline& line, Stretch stretch) {
  if (line.closed) {
    // What remains begins at the second vertex and ends at the first.
    const size_t count = line.vertices.size();
    const size_t remaining = stretch.to == stretch.from ? count : (stretch.from + count - stretch.to) % count;
    turnToBegin(line, stretch.to);
    if (remaining == count) line.vertices.push_back(line.vertices.front());
    line.vertices.resize(remaining + 1 <= line.vertices.size() ? remaining + 1 : line.vertices.size());
    line.closed = false;
    line.put();
    return;
  }
  const size_t from = std::min(stretch.from, stretch.to);
  const size_t to = std::max(stretch.from, stretch.to);
  const size_t last = line.vertices.size() - 1;
  if (from == 0 && to == last) {
    in.tell("\nNothing would be left of the polyline.\n");
    return;
  }
  if (from == to && (from == 0 || from == last)) return;
  if (from > 0 && to < last) static_cast<void>(line.addPart(in.editor(), to, last));
  if (from > 0)
    line.vertices.resize(from + 1);
  else
    line.vertices.erase(line.vertices.begin(), line.vertices.begin() + static_cast<std::ptrdiff_t>(to));
  line.put();
}

// One straight segment between the two vertices; at a single one the segment behind it.
void straighten(EditedPolyline& line, Stretch stretch) {
  const size_t from = std::min(stretch.from, stretch.to);
  const size_t to = std::max(stretch.from, stretch.to);
  line.vertices[from].flat.bulge = 0;
  if (to > from + 1)
    line.vertices.erase(line.vertices.begin() + static_cast<std::ptrdiff_t>(from) + 1,
                        line.vertices.begin() + static_cast<std::ptrdiff_t>(to));
  line.put();
}

Task<bool> movePoint(CommandInput& in, EditedPolyline& line, size_t at, bool inserts) {
  const GcGeMatrix3d toUser = ucsToWorld(in.editor()).inverse();
  const Answer point = co_await in.ask(
      Ask(What::Point, inserts ? "\nSpecify location for new vertex: " : "\nSpecify new location for marked vertex: ")
          .from(toUser * line.worldAt(at)));
  if (!point.isPoint()) co_return false;
  if (inserts)
    line.insertBehind(at, in.toWorld(point.point));
  else
    line.moveTo(at, in.toWorld(point.point));
  line.put();
  co_return true;
}

Task<bool> askWidth(CommandInput& in, EditedPolyline& line, size_t at) {
  const Answer start = co_await in.ask(Ask(What::Distance, "\nSpecify starting width for next segment: "));
  const Answer end = co_await in.ask(Ask(What::Distance, "\nSpecify ending width for next segment: "));
  GcDbPolylineVertex& vertex = line.vertices[at].flat;
  if (start.kind == Answer::Kind::Number) vertex.startWidth = start.number;
  if (start.kind == Answer::Kind::Number || end.kind == Answer::Kind::Number)
    vertex.endWidth = end.kind == Answer::Kind::Number ? end.number : vertex.startWidth;
  line.put();
  co_return true;
}

Task<bool> askTangent(CommandInput& in, EditedPolyline& line, size_t at) {
  const GcGeMatrix3d toUser = ucsToWorld(in.editor()).inverse();
  const Answer angle =
      co_await in.ask(Ask(What::Direction, "\nSpecify direction of vertex tangent: ").from(toUser * line.worldAt(at)));
  if (angle.kind != Answer::Kind::Number) co_return false;
  line.vertices[at].hasTangent = true;
  line.vertices[at].tangentRad = angle.number;
  line.put();
  co_return true;
}

}  // namespace

Task<bool> editPolylineVertices(CommandInput& in, GcDbObjectId id) {
  EditedPolyline line;
  if (!line.take(id)) co_return false;
  Marker marker(line);
  bool forwards = true;
  const bool space = line.isInSpace();
  for (;;) {
    const Answer option = co_await in.ask(
        Ask(What::Keyword,
            space ? "\nEnter a vertex editing option\n[Next/Previous/Break/Insert/Move/Regen/Straighten/eXit] <N>: "
                  : "\nEnter a vertex editing option\n"
                    "[Next/Previous/Break/Insert/Move/Regen/Straighten/Tangent/Width/eXit] <N>: ")
            .words(space ? "Next Previous Break Insert Move Regen Straighten eXit"
                         : "Next Previous Break Insert Move Regen Straighten Tangent Width eXit"));
    if (option.isKeyword("eXit") || option.kind == Answer::Kind::Cancelled) co_return true;
    if (option.isKeyword("Regen")) continue;
    if (option.isKeyword("Next") || option.isKeyword("Previous") || option.isNone()) {
      if (!option.isNone()) forwards = option.isKeyword("Next");
      marker.move(forwards);
      continue;
    }
    if (option.isKeyword("Move") || option.isKeyword("Insert")) {
      static_cast<void>(co_await movePoint(in, line, marker.at(), option.isKeyword("Insert")));
    } else if (option.isKeyword("Width")) {
      static_cast<void>(co_await askWidth(in, line, marker.at()));
    } else if (option.isKeyword("Tangent")) {
      static_cast<void>(co_await askTangent(in, line, marker.at()));
    } else {
      const Stretch stretch = co_await askStretch(in, line, marker.at());
      if (stretch.given && option.isKeyword("Break")) breakRun(in, line, stretch);
      if (stretch.given && option.isKeyword("Straighten")) straighten(line, stretch);
      if (stretch.given) marker.set(0);
    }
  }
}

}  // namespace ed
