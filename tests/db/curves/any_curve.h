// Generated curve entities of every kind, in the level plane; the same seed gives the same ones.
#pragma once

#include <cmath>
#include <memory>
#include <random>

#include "db/arc.h"
#include "db/circle.h"
#include "db/database.h"
#include "db/ellipse.h"
#include "db/leader.h"
#include "db/line.h"
#include "db/polyline.h"
#include "db/polyline2d.h"
#include "db/spline.h"
#include "db/xline.h"

// What stands in a database is closed, the rest deleted.
struct CurveEnd {
  void operator()(GcDbCurve* curve) const {
    if (curve->objectId().isNull())
      delete curve;
    else
      ignore(curve->close());
  }
};
using AnyCurvePtr = std::unique_ptr<GcDbCurve, CurveEnd>;

class AnyCurve {
 public:
  enum Kind { Line, Circle, Arc, Ellipse, LwPolyline, Spline, Ray, Xline, Leader, EllipseArc, Polyline2d, Polyline3d };
  static constexpr int kKinds = 12;
  static constexpr double kTwoPi = 2 * 3.14159265358979323846;

  // Polylines with vertices of their own are put into the database.
  AnyCurve(uint32_t seed, GcDbDatabase& database) : m_engine(seed * 2654435761u + 11), m_database(database) {}

  double between(double low, double high) {
    return low + (high - low) * static_cast<double>(m_engine() >> 11) * 0x1p-53;
  }
  GcGePoint3d point() {
    const double x = between(-5, 5), y = between(-5, 5);
    return {x, y, 0};
  }
  GcGeVector3d unit() {
    for (;;) {
      const double x = between(-1, 1), y = between(-1, 1), z = between(-1, 1);
      const GcGeVector3d v(x, y, z);
      if (v.length() > 0.1 && v.length() < 1) return v.normal();
    }
  }

  AnyCurvePtr curve(int kind) {
    const GcGeVector3d z(0, 0, 1);
    switch (kind) {
      case Line: {
        const GcGePoint3d a = point(), b = point();
        return AnyCurvePtr(new GcDbLine(a, b));
      }
      case Circle: {
        const GcGePoint3d center = point();
        return AnyCurvePtr(new GcDbCircle(center, z, between(0.5, 5)));
      }
      case Arc: {
        const GcGePoint3d center = point();
        const double radius = between(0.5, 5), from = between(0, 6), sweep = between(0.2, 6);
        return AnyCurvePtr(new GcDbArc(center, z, radius, from, std::fmod(from + sweep, kTwoPi)));
      }
      case Ellipse:
      case EllipseArc: {
        const GcGePoint3d center = point();
        const double turn = between(0, 6), major = between(1, 6), ratio = between(0.1, 1);
        const GcGeVector3d axis(major * std::cos(turn), major * std::sin(turn), 0);
        if (kind == Ellipse) return AnyCurvePtr(new GcDbEllipse(center, z, axis, ratio));
        const double from = between(0, 6);
        return AnyCurvePtr(new GcDbEllipse(center, z, axis, ratio, from, from + between(0.2, 6)));
      }
      case LwPolyline: return lwPolyline();
      case Spline: return spline();
      case Ray: {
        auto ray = std::make_unique<GcDbRay>();
        ignore(ray->setBasePoint(point()));
        ignore(ray->setUnitDir(flat()));
        return AnyCurvePtr(ray.release());
      }
      case Xline: {
        auto line = std::make_unique<GcDbXline>();
        ignore(line->setBasePoint(point()));
        ignore(line->setUnitDir(flat()));
        return AnyCurvePtr(line.release());
      }
      case Leader: {
        auto leader = std::make_unique<GcDbLeader>();
        for (int i = 0; i < 4; ++i) leader->appendVertex(point());
        return AnyCurvePtr(leader.release());
      }
      case Polyline2d: return polyline2d();
      default: return polyline3d();
    }
  }

  // Any scale from 1e-3 to 1e7, a tilted plane, sometimes 5e6 out.
  GcGeMatrix3d place() {
    GcGeMatrix3d turn, scale, move;
    turn.setToRotation(between(0, kTwoPi), unit());
    scale.setToScaling(std::pow(10.0, between(-3, 7)));
    move.setToTranslation(unit() * (m_engine() % 3 == 0 ? 5e6 : 10));
    return move * turn * scale;
  }

 private:
  GcGeVector3d flat() {
    const double turn = between(0, kTwoPi);
    return {std::cos(turn), std::sin(turn), 0};
  }
  bool heads() { return m_engine() % 2 == 0; }

  AnyCurvePtr lwPolyline() {
    auto made = std::make_unique<GcDbPolyline>();
    for (int i = 0; i < 6; ++i) {
      const GcGePoint3d p = point();
      const double bulge = heads() ? 0 : between(-1.2, 1.2);
      ignore(made->addVertexAt(i, GcGePoint2d(p.x, p.y), bulge));
    }
    made->setClosed(heads());
    return AnyCurvePtr(made.release());
  }

  AnyCurvePtr spline() {
    auto made = std::make_unique<GcDbSpline>();
    const int degree = 2 + static_cast<int>(m_engine() % 3), count = degree + 4;
    const bool rational = heads();
    GcArray<GcGePoint3d> points;
    GcArray<double> knots, weights;
    for (int i = 0; i < count; ++i) {
      points.append(point());
      if (rational) weights.append(between(0.4, 2.5));
    }
    for (int i = 0; i <= degree; ++i) knots.append(0);
    for (int i = 1; i < count - degree; ++i) knots.append(i);
    for (int i = 0; i <= degree; ++i) knots.append(count - degree);
    ignore(made->setNurbsData(degree, rational, false, false, points, knots, weights));
    return AnyCurvePtr(made.release());
  }

  template <class T>
  T* added() {
    auto* entity = new T;
    GcDbBlockTableRecord* space = nullptr;
    GcDbObjectId id;
    if (gcdbOpenObject(space, m_database.modelSpaceId(), GcDb::kForWrite) != Gcad::eOk) std::abort();
    if (space->appendGcDbEntity(id, entity) != Gcad::eOk) std::abort();
    ignore(space->close());
    return entity;
  }

  AnyCurvePtr polyline2d() {
    auto* made = added<GcDb2dPolyline>();
    for (int i = 0; i < 5; ++i) {
      auto* vertex = new GcDb2dVertex(point(), heads() ? 0 : between(-1.2, 1.2));
      ignore(made->appendVertex(vertex));
      ignore(vertex->close());
    }
    if (heads()) ignore(made->makeClosed());
    return AnyCurvePtr(made);
  }

  AnyCurvePtr polyline3d() {
    auto* made = added<GcDb3dPolyline>();
    for (int i = 0; i < 5; ++i) {
      auto* vertex = new GcDb3dPolylineVertex(point());
      ignore(made->appendVertex(vertex));
      ignore(vertex->close());
    }
    return AnyCurvePtr(made);
  }

  std::mt19937_64 m_engine;
  GcDbDatabase& m_database;
};
