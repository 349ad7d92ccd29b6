// Materials of rendered views: colours, maps and factors as files have them, of which those that have their usual value
// are mostly left out.
#pragma once

#include "db/object.h"
#include "host/db/describe/group.h"
#include "host/db/describe/recordof.h"
#include "rx/gcstring.h"

struct GcDbField;

class GcDbMaterial : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbMaterial);
  static const GcDbField kFields[];
  static const int kFieldCount;
  [[nodiscard]] const GcString& name() const { return m_name; }

 private:
  friend struct GcDbRecordOf<GcDbMaterial>;

  GcString m_name;
  GcDbGroupList m_data;
};
