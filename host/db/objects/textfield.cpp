#include "host/db/objects/textfield.h"

#include <iterator>

#include "db/database.h"
#include "db/dictionary.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbTextField, "AcDbField")

namespace {

GcDbDataValue& ofItem(void* record) { return static_cast<GcDbFieldItem*>(record)->value; }

constexpr GcDbField kItemFields[] = {
    field<&GcDbFieldItem::key>(6, "key", Is::Plain),
    GCDB_VALUE_ROWS(ofItem),
};

// The value of a field itself, which is private to it.
template <auto Member>
GcDbDataValue& ofMember(void* record) {
  return *static_cast<GcDbDataValue*>(gcdescribe::memberAt<Member>(record));
}

}  // namespace

const GcDbField GcDbTextField::kFields[] = {
    marker("AcDbField"),
    field<&GcDbTextField::m_evaluator>(1, "evaluator", Is::Plain),
    field<&GcDbTextField::m_code>(2, "code", Is::Plain).continuedIn(3),
    list<&GcDbTextField::m_children, 360, Is::HardOwner>(90, "children"),
    list<&GcDbTextField::m_objects, 331, Is::SoftPointer>(97, "objects"),
    field<&GcDbTextField::m_format>(4, "format", Is::Plain).until(GcDb::kDHL_AC1021),
    field<&GcDbTextField::m_options>(91, "evaluationOptions", Is::Plain),
    field<&GcDbTextField::m_filing>(92, "filingOptions", Is::Plain),
    field<&GcDbTextField::m_state>(94, "state", Is::Plain),
    field<&GcDbTextField::m_status>(95, "evaluationStatus", Is::Plain),
    field<&GcDbTextField::m_error>(96, "error", Is::Plain),
    field<&GcDbTextField::m_message>(300, "message", Is::Plain),
    each<&GcDbTextField::m_items>(93, "items", kItemFields),
    field<&GcDbTextField::m_valueKey>(7, "valueKey", Is::Plain),
    GCDB_VALUE_ROWS(ofMember<&GcDbTextField::m_value>),
    field<&GcDbTextField::m_text>(301, "text", Is::Plain).continuedIn(9),
    field<&GcDbTextField::m_textLength>(98, "textLength", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbTextField);

void GcDbTextField::subOwned(GcDbObjectIdArray& ids) const {
  GcDbObject::subOwned(ids);
  ids.append(m_children);
}

void GcDbTextField::setCode(const GcString& evaluator, const GcString& code) {
  assertWriteEnabled();
  m_evaluator = evaluator;
  m_code = code;
}

Gcad::ErrorStatus GcDbTextField::addChild(GcDbObjectId& id) {
  if (database() == nullptr) return Gcad::eNoDatabase;
  assertWriteEnabled();
  auto* child = new GcDbTextField;
  if (const Gcad::ErrorStatus status = database()->addGcDbObject(id, child, objectId()); status != Gcad::eOk) {
    delete child;
    return status;
  }
  m_children.append(id);
  return child->close();
}

void GcDbTextField::addObject(GcDbObjectId id) {
  assertWriteEnabled();
  m_objects.append(id);
}

void GcDbTextField::setResult(const GcDbDataValue& value, const GcString& text) {
  constexpr int32_t kCompiled = 2, kEvaluated = 8, kHasCache = 32;
  assertWriteEnabled();
  m_state |= 1 | kCompiled | kEvaluated | kHasCache;
  m_status = kSuccess;
  m_error = 0;
  m_message = GcString();
  m_value = value;
  m_text = text;
  m_textLength = static_cast<int32_t>(text.length());
}

void GcDbTextField::setFailed(Status status, const GcString& message, const GcString& shown) {
  assertWriteEnabled();
  m_status = status;
  m_message = message;
  m_value = GcDbDataValue();
  m_text = shown;
  m_textLength = static_cast<int32_t>(shown.length());
}

GcDbObjectId gcdbFieldOf(GcDbObjectId host, const GCHAR* what) {
  GcDbObject* object = nullptr;
  if (gcdbOpenObject(object, host, GcDb::kForRead) != Gcad::eOk) return {};
  const GcDbObjectId extension = object->extensionDictionary();
  ignore(object->close());
  GcDbObjectId id;
  for (const GCHAR* key : {GC_T("ACAD_FIELD"), what}) {
    GcDbDictionary* dictionary = nullptr;
    if (gcdbOpenObject(dictionary, id.isNull() ? extension : id, GcDb::kForRead) != Gcad::eOk) return {};
    const Gcad::ErrorStatus status = dictionary->getAt(key, id);
    ignore(dictionary->close());
    if (status != Gcad::eOk) return {};
  }
  return id;
}
