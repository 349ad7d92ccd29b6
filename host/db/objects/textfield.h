// Fields: texts that programs work out (dates, properties of objects, formulae) and what came of it last time.
//
// A text's field hangs in its extension dictionary: ACAD_FIELD, in it TEXT. Its code is the text with places for its
// child fields (%<\_FldIdx 0>%); a child's code names an evaluator, what is meant, and a format. Objects that a code
// speaks of (%<\_ObjIdx 0>%) are references of the field, so that clones speak of the cloned ones.
#pragma once

#include "db/object.h"
#include "host/db/describe/recordof.h"
#include "host/db/objects/datavalue.h"

struct GcDbField;

// A value that an evaluator keeps with the field, by name.
struct GcDbFieldItem {
  GcString key;
  GcDbDataValue value;
};

class GcDbTextField : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbTextField);
  static const GcDbField kFields[];
  static const int kFieldCount;

  // What evaluation ended with.
  enum Status : int32_t {
    kNotYetEvaluated = 1,
    kSuccess = 2,
    kEvaluatorNotFound = 4,
    kSyntaxError = 8,
    kInvalidCode = 16,
    kInvalidContext = 32,
    kOtherError = 64
  };

  GcDbTextField() = default;

  [[nodiscard]] const GcString& evaluator() const { return m_evaluator; }
  [[nodiscard]] const GcString& code() const { return m_code; }
  [[nodiscard]] const GcDbObjectIdArray& children() const { return m_children; }
  [[nodiscard]] const GcDbObjectIdArray& objects() const { return m_objects; }
  [[nodiscard]] const GcString& text() const { return m_text; }
  [[nodiscard]] int32_t status() const { return m_status; }
  [[nodiscard]] const GcDbDataValue& value() const { return m_value; }
  // The format: the field's own where the version has it, else none.
  [[nodiscard]] const GcString& format() const { return m_format; }

  void setCode(const GcString& evaluator, const GcString& code);
  // A new field within this one, which has to be in a database; it is closed.
  Gcad::ErrorStatus addChild(GcDbObjectId& id);
  void addObject(GcDbObjectId id);

  // What an evaluation brought: a value and how it reads, or why there is none and what is shown in its place.
  void setResult(const GcDbDataValue& value, const GcString& text);
  void setFailed(Status status, const GcString& message, const GcString& shown);

  void subOwned(GcDbObjectIdArray& ids) const override;

 private:
  friend struct GcDbRecordOf<GcDbTextField>;

  GcString m_evaluator;
  GcString m_code;
  GcString m_format;  // before R2007; the code has it since
  GcDbObjectIdArray m_children;
  GcDbObjectIdArray m_objects;
  int32_t m_options = 63;  // when it is evaluated: on open 1, save 2, plot 4, transmit 8, regeneration 16, demand 32
  int32_t m_filing = 0;
  int32_t m_state = 1;
  int32_t m_status = kNotYetEvaluated;
  int32_t m_error = 0;
  GcString m_message;
  GcArray<GcDbFieldItem> m_items;
  GcString m_valueKey = GC_T("ACFD_FIELD_VALUE");
  GcDbDataValue m_value;
  GcString m_text;
  int32_t m_textLength = 0;
};

// The field that makes a text of its host's (TEXT for a text, a paragraph, an attribute); null when there is none.
[[nodiscard]] GcDbObjectId gcdbFieldOf(GcDbObjectId host, const GCHAR* what);
