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

namespace {

constexpr int16_t kFirstAttachment = 1;  // top left
constexpr int16_t kLastAttachment = 9;   // bottom right

void attach(GcDbMText& text, int16_t attachment) {
  if (attachment >= kFirstAttachment && attachment <= kLastAttachment)
    ignore(text.setAttachment(static_cast<GcDbMText::AttachmentPoint>(attachment)));
}

// Deliberate: an annotation that cannot be opened is told, but the call counts as done.
void attachAnnotation(const GcDbLeader& leader, int16_t attachment) {
  const GcDbObjectId id = leader.annotationObjId();
  if (id.isNull()) return;
  const GcDbWritePtr<GcDbObject> annotation(id);
  if (!annotation)
    gcdbFail(msg::kCannotAttach);
  else if (GcDbMText* text = GcDbMText::cast(annotation.get()))
    attach(*text, attachment);
}

}  // namespace

// Deliberate: an attachment that there is not changes nothing, without a message.
int putAttachmentPoint() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const int16_t attachment = args.integer();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbObject> object(id);
  if (GcDbMText* text = GcDbMText::cast(object.get()))
    attach(*text, attachment);
  else if (const GcDbLeader* leader = GcDbLeader::cast(object.get()))
    attachAnnotation(*leader, attachment);
  else
    return args.wrongType();
  return ret::nothing();
}
