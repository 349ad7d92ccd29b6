// Extension records: any groups a program wants to keep.
#pragma once

#include "db/object.h"

struct GcDbField;
class GcDbGroupList;

class GcDbXrecord : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbXrecord);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbXrecord();
  ~GcDbXrecord() override;

  // The groups as a chain the caller releases; null when there are none.
  [[nodiscard]] resbuf* rbChain() const;
  // Replaces the groups. Errors: eInvalidResBuf for a code no file keeps.
  Gcad::ErrorStatus setFromRbChain(const resbuf& chain);
  [[nodiscard]] int mergeStyle() const { return m_merge; }
  [[nodiscard]] GcDbGroupList& groups() const { return *m_groups; }

 private:
  friend struct GcDbXrecordFields;
  GcDbGroupList* m_groups;
  int8_t m_merge = 1;
};
