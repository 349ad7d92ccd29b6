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
