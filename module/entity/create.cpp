// Functions that draw one new entity each. Layer, colour, linetype and the like are the drawing's current ones.
// None of them looks at the geometry: what a degenerate entity becomes is the database's affair.
#include "module/app/functions.h"
#include "module/entity/space.h"

int addLine() {
  ArgReader args(rules::kTextFirst);
  const space::Space space = space::read(args);
  const GcGePoint3d start = args.anyPoint();
  const GcGePoint3d end = args.anyPoint();
  if (args.failed()) return args.status();
  return appendAndAnswer(space, std::make_unique<GcDbLine>(start, end));
}

// Deliberate: a centre of another type is the origin, without a message, and the status of this function alone is 1
// when it is done or has nothing to do.
int addCircle() {
  constexpr int kDone = 1;
  ArgReader args(rules::kTextFirst);
  const space::Space space = space::read(args);
  const GcGePoint3d center = args.pointOrOrigin();
  const double radius = args.real();
  if (args.failed()) return args.status() == RTNORM ? kDone : args.status();
  const int status = appendAndAnswer(space, std::make_unique<GcDbCircle>(center, GcGeVector3d::kZAxis, radius));
  return status == RTNORM ? kDone : status;
}

int addSolid() {
  ArgReader args(rules::kTextFirst);
  const space::Space space = space::read(args);
  const GcGePoint3d first = args.anyPoint();
  const GcGePoint3d second = args.anyPoint();
  const GcGePoint3d third = args.anyPoint();
  const GcGePoint3d fourth = args.anyPoint();
  if (args.failed()) return args.status();
  return appendAndAnswer(space, std::make_unique<GcDbSolid>(first, second, third, fourth));
}

int addText() {
  ArgReader args(rules::kTextFirst);
  const space::Space space = space::read(args);
  const GCHAR* text = args.string();
  const GcGePoint3d position = args.anyPoint();
  const double height = args.number();
  if (args.failed()) return args.status();
  return appendAndAnswer(space, std::make_unique<GcDbText>(position, text, GcDbObjectId::kNull, height, 0.0));
}

// Deliberate: any spelling of the spaces will do here, and a name that is none of them gives no entity and no
// message; what is missing behind the space is reported with the text of the empty call.
int addMText() {
  static constexpr ArgRules kRules{nullptr, msg::kNoArguments, msg::kNoArguments, msg::kWrongType};
  ArgReader args(kRules);
  const GCHAR* spaceName = args.string();
  const GcGePoint3d location = args.point();
  const double width = args.number();
  const GCHAR* contents = args.anyText();
  if (args.failed()) return args.status();
  auto text = std::make_unique<GcDbMText>();
  ignore(text->setLocation(location));
  ignore(text->setWidth(width));
  ignore(text->setContents(contents));
  const space::Space space = space::normalised(spaceName);
  return space == space::Space::Neither ? ret::nothing() : appendAndAnswer(space, std::move(text));
}

int addXline() {
  ArgReader args(rules::kTextFirst);
  const space::Space space = space::read(args);
  const GcGePoint3d base = args.anyPoint();
  const GcGePoint3d second = args.anyPoint();
  if (args.failed()) return args.status();
  auto line = std::make_unique<GcDbXline>();
  ignore(line->setBasePoint(base));
  ignore(line->setUnitDir(second - base));
  return appendAndAnswer(space, std::move(line));
}

// Every point among the arguments is a vertex; none at all makes an empty polyline.
int addPolyline() {
  ArgReader args(rules::kTextFirst);
  const space::Space space = space::read(args);
  if (args.failed()) return args.status();
  auto polyline = std::make_unique<GcDbPolyline>();
  for (const resbuf* rb = args.rest(); rb != nullptr; rb = rb->rbnext)
    if (node::isPoint(*rb)) ignore(polyline->addVertexAt(polyline->numVerts(), node::point2d(*rb), 0.0, -1.0, -1.0, 0));
  return appendAndAnswer(space, std::move(polyline));
}
