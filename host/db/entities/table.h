// Tables: drawn by a block of their own, in which the program that changed them last has put what they look like.
#pragma once

#include "db/blockreference.h"
#include "host/db/describe/group.h"

class GcDbTable : public GcDbBlockReference {
 public:
  GCRX_DECLARE_MEMBERS(GcDbTable);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbTable() = default;
  [[nodiscard]] GcDbObjectId tableStyleId() const { return m_styleId; }

 private:
  static constexpr int16_t kNoVersion = -1;

  int16_t m_version = kNoVersion;
  GcDbObjectId m_styleId;
  GcDbObjectId m_blockRecordId;
  GcGeVector3d m_direction = GcGeVector3d::kXAxis;
  GcDbGroupList m_cells;  // rows, columns, cells as they came
};
