// Height and place of texts, of one line or of paragraphs.
#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/results.h"

int putHeight() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const double height = args.real();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbObject> object(id);
  if (GcDbText* text = GcDbText::cast(object.get()))
    ignore(text->setHeight(height));
  else if (GcDbMText* paragraphs = GcDbMText::cast(object.get()))
    ignore(paragraphs->setTextHeight(height));
  else
    return args.wrongType();
  return ret::nothing();
}

int putInsertionPoint() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const GcGePoint3d point = args.point();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbObject> object(id);
  if (GcDbText* text = GcDbText::cast(object.get()))
    ignore(text->setPosition(point));
  else if (GcDbMText* paragraphs = GcDbMText::cast(object.get()))
    ignore(paragraphs->setLocation(point));
  else
    return args.wrongType();
  return ret::nothing();
}
