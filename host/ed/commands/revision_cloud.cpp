// REVCLOUD: outlines made of small arcs.
#include <algorithm>
#include <cmath>
#include <memory>

#include "db/polyline.h"
#include "host/db/curves/curve_path.h"
#include "host/db/entities/planar.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/coordinates.h"
#include "host/rx/text/number.h"

namespace ed {

namespace {

using What = Ask::What;

constexpr double kBulge = 0.5205670505517458;  // an arc of 110 degrees
constexpr const char* kReverse = "\nReverse direction [Yes/No] <No>: ";
constexpr const GCHAR* kLeast = GC_T("REVCLOUDMINARCLENGTH");
constexpr const GCHAR* kMost = GC_T("REVCLOUDMAXARCLENGTH");

struct Cloud {
  double least = 0.5, most = 0.5;  // lengths of the arcs' chords, measured along the outline
  bool calligraphic = false;
};

Task<bool> askArcLength(CommandInput& in, Cloud& cloud) {
  const Answer least = co_await in.ask(Ask(What::Distance, "\nSpecify minimum length of arc: ").positive());
  if (least.kind == Answer::Kind::Number) cloud.least = least.number;
  for (;;) {
    const Answer most = co_await in.ask(Ask(What::Distance, "\nSpecify maximum length of arc: ").positive());
    cloud.most = most.kind == Answer::Kind::Number ? most.number : std::max(cloud.least, cloud.most);
    if (most.kind != Answer::Kind::Number || (cloud.most >= cloud.least && cloud.most <= 3 * cloud.least)) break;
    in.tell("\nThe maximum length must lie between the minimum and three times the minimum.\n");
  }
  cloud.most = std::clamp(cloud.most, cloud.least, 3 * cloud.least);
  static_cast<void>(setVariable(in.editor(), kLeast, VariableValue::of(cloud.least)));
  static_cast<void>(setVariable(in.editor(), kMost, VariableValue::of(cloud.most)));
  co_return true;
}

// Where arcs begin along an outline of the length: steps between the two lengths in turn, stretched so that a whole
// number of them makes the way.
std::vector<double> stationsOf(double length, const Cloud& cloud, bool closed) {
  const double middle = (cloud.least + cloud.most) / 2;
  const double count = std::clamp(std::round(length / middle), closed ? 3.0 : 1.0, 1e5);
  const double steps[] = {cloud.least, middle, cloud.most};
  std::vector<double> stations{0};
  for (int i = 0; i < static_cast<int>(count); ++i) stations.push_back(stations.back() + steps[i % 3]);
  const double stretch = length / stations.back();
  for (double& each : stations) each *= stretch;
  if (closed) stations.pop_back();
  return stations;
}

// The polyline of arcs along a path that lies in a plane of the normal; null when it does not.
GcDbPolyline* cloudAlong(const GcGePath& path, const GcGeVector3d& normal, bool closed, bool inwards,
                         const Cloud& cloud) {
  const double length = path.length();
  if (!std::isfinite(length) || length <= 0) return nullptr;
  const bool clockwise = path.vectorArea().dotProduct(normal) < 0;
  const double bulge = clockwise == inwards ? kBulge : -kBulge;
  auto* made = new GcDbPolyline;
  ignore(made->setNormal(normal));
  unsigned index = 0;
  for (const double station : stationsOf(length, cloud, closed)) {
    double t = 0;
    GcGePoint3d at;
    if (!path.paramAtDist(station, t) || !path.pointAt(t, at)) continue;
    const GcGePoint3d own = gcplanar::toOwn(at, normal);
    const double width = cloud.calligraphic ? cloud.least / 10 : 0;
    if (index == 0) ignore(made->setElevation(own.z));
    ignore(made->addVertexAt(index++, {own.x, own.y}, bulge, 0, width));
  }
  made->setClosed(closed);
  return made;
}

bool drawAlong(CommandInput& in, const std::vector<GcGePoint3d>& points, bool closed, bool inwards,
               const Cloud& cloud) {
  const GcGeMatrix3d user = ucsToWorld(in.editor());
  GcGePath path(user * points.front());
  const size_t segments = closed ? points.size() : points.size() - 1;
  for (size_t i = 0; i < segments; ++i) {
    GcGePoint3d to = points[(i + 1) % points.size()], from = points[i];
    from.z = to.z = points.front().z;
    if (from.distanceTo(to) > 0)
      path.addLine(user * from, user * to, static_cast<double>(i), static_cast<double>(i + 1));
  }
  if (path.isEmpty()) return false;
  path.setClosed(closed);
  GcDbPolyline* made = cloudAlong(path, user.column(2).normal(), closed, inwards, cloud);
  return made != nullptr && !appendWithDefaults(in.editor(), made).isNull();
}

// A curve turned into a cloud; it goes unless DELOBJ keeps it.
Task<bool> fromObject(CommandInput& in, const Cloud& cloud) {
  const Answer picked = co_await in.ask(Ask(What::Entity, "\nSelect object: ").needed());
  GcDbCurve* curve = nullptr;
  if (picked.kind != Answer::Kind::Entity) co_return false;
  std::unique_ptr<GcDbPolyline> shapes[2];
  if (gcdbOpenObject(curve, picked.entity, GcDb::kForRead) == Gcad::eOk) {
    const GcDbCurvePath path(*curve);
    GcGeVector3d normal;
    if (path.status() == Gcad::eOk && path->isPlanar(normal)) {
      normal = curve->isPlanar() && !curve->normal().isZeroLength() && !normal.isZeroLength() ? curve->normal()
                                                                                              : GcGeVector3d::kZAxis;
      for (const bool inwards : {false, true})
        shapes[inwards ? 1 : 0].reset(cloudAlong(*path, normal, curve->isClosed(), inwards, cloud));
    }
    for (const auto& shape : shapes)
      if (shape != nullptr) ignore(shape->setPropertiesFrom(*curve));
    ignore(curve->close());
  }
  if (shapes[0] == nullptr) {
    in.tell("\nThis object cannot be made a revision cloud.\n");
    co_return false;
  }
  const Answer reverse = co_await in.ask(Ask(What::Keyword, kReverse).words("Yes No"));
  GcDbBlockTableRecord* space = nullptr;
  if (gcdbOpenObject(space, in.editor().currentSpace(), GcDb::kForWrite) != Gcad::eOk) co_return false;
  GcDbPolyline* made = shapes[reverse.isKeyword("Yes") ? 1 : 0].release();
  if (space->appendGcDbEntity(made) == Gcad::eOk)
    ignore(made->close());
  else
    delete made;
  ignore(space->close());
  if (integerVariable(in.editor(), "DELOBJ") != 0) eraseEntity(picked.entity);
  co_return true;
}

Task<bool> rectangular(CommandInput& in, const Cloud& cloud) {
  const Answer a = co_await in.ask(Ask(What::Point, "\nSpecify first corner point: ").needed());
  if (!a.isPoint()) co_return false;
  const Answer b = co_await in.ask(Ask(What::Point, "\nSpecify opposite corner: ").from(a.point).needed());
  if (!b.isPoint()) co_return false;
  const double z = a.point.z;
  const bool rising = (b.point.x > a.point.x) == (b.point.y > a.point.y);
  std::vector<GcGePoint3d> corners{
      a.point, {b.point.x, a.point.y, z}, {b.point.x, b.point.y, z}, {a.point.x, b.point.y, z}};
  if (!rising) std::reverse(corners.begin() + 1, corners.end());
  co_return drawAlong(in, corners, true, false, cloud);
}

// Points until Enter; a way that comes back to its start is closed there.
Task<bool> alongPoints(CommandInput& in, const GcGePoint3d& first, bool polygonal, const Cloud& cloud) {
  std::vector<GcGePoint3d> points{first};
  bool closed = polygonal;
  const char* prompt =
      polygonal ? "\nSpecify next point or [Undo]: " : "\nGuide crosshairs along cloud path, or next point: ";
  for (;;) {
    const Answer next = co_await in.ask(Ask(What::Point, prompt).from(points.back()).words("Undo"));
    if (next.isKeyword("Undo") && points.size() > 1) {
      points.pop_back();
    } else if (next.isPoint()) {
      const double reach = polygonal ? 0 : cloud.most / 2;
      closed = closed || (points.size() > 2 && next.point.distanceTo(first) <= reach);
      if (closed && !polygonal) break;
      if (next.point.distanceTo(points.back()) > 0) points.push_back(next.point);
    } else if (!next.isKeyword("Undo")) {
      break;
    }
  }
  if (points.size() < (closed ? 3U : 2U)) co_return false;
  const Answer reverse = co_await in.ask(Ask(What::Keyword, kReverse).words("Yes No"));
  co_return drawAlong(in, points, closed, reverse.isKeyword("Yes"), cloud);
}

void tellSettings(CommandInput& in, const Cloud& cloud) {
  in.tell(("\nMinimum arc length: " + gc::realText(cloud.least) + "   Maximum arc length: " + gc::realText(cloud.most) +
           "   Style: " + (cloud.calligraphic ? "Calligraphy" : "Normal") + "\n")
              .c_str());
}

Task<bool> revisionCloud(CommandInput& in) {
  Editor& editor = in.editor();
  Cloud cloud;
  cloud.least = realVariable(editor, "REVCLOUDMINARCLENGTH");
  cloud.most = realVariable(editor, "REVCLOUDMAXARCLENGTH");
  tellSettings(in, cloud);
  for (;;) {
    const Answer first = co_await in.ask(
        Ask(What::Point, "\nSpecify first point or [Arc length/Object/Rectangular/Polygonal/Freehand/Style] <Object>: ")
            .words("Arc Object Rectangular Polygonal Freehand Style"));
    if (first.isPoint()) co_return co_await alongPoints(in, first.point, false, cloud);
    if (first.isKeyword("Arc")) {
      static_cast<void>(co_await askArcLength(in, cloud));
    } else if (first.isKeyword("Style")) {
      const Answer style = co_await in.ask(
          Ask(What::Keyword, "\nSelect arc style [Normal/Calligraphy] <Normal>: ").words("Normal Calligraphy"));
      cloud.calligraphic = style.isKeyword("Calligraphy");
    } else if (first.isKeyword("Rectangular")) {
      co_return co_await rectangular(in, cloud);
    } else if (first.isKeyword("Polygonal") || first.isKeyword("Freehand")) {
      const bool polygonal = first.isKeyword("Polygonal");
      const Answer start = co_await in.ask(Ask(What::Point, "\nSpecify start point: ").needed());
      if (!start.isPoint()) co_return false;
      co_return co_await alongPoints(in, start.point, polygonal, cloud);
    } else if (first.isNone() || first.isKeyword("Object")) {
      co_return co_await fromObject(in, cloud);
    } else {
      co_return false;
    }
  }
}

constexpr Command kCommands[] = {
    {"REVCLOUD", "", revisionCloud},
};

}  // namespace

std::span<const Command> revisionCloudCommands() { return kCommands; }

}  // namespace ed
