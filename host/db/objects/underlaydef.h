// The file and page that underlays show.
#pragma once

#include "db/object.h"
#include "rx/gcstring.h"

struct GcDbField;

class GcDbUnderlayDefinition : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbUnderlayDefinition);
  static const GcDbField kFields[];
  static const int kFieldCount;
  [[nodiscard]] const GcString& sourceFileName() const { return m_fileName; }

 protected:
  GcDbUnderlayDefinition() = default;

 private:
  GcString m_fileName;
  GcString m_itemName;  // page, sheet or model
};

#define GC_UNDERLAY(Class)                      \
  class Class : public GcDbUnderlayDefinition { \
   public:                                      \
    GCRX_DECLARE_MEMBERS(Class);                \
    Class() = default;                          \
  }
GC_UNDERLAY(GcDbPdfDefinition);
GC_UNDERLAY(GcDbDwfDefinition);
GC_UNDERLAY(GcDbDgnDefinition);
#undef GC_UNDERLAY
