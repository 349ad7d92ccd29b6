// Where on the earth a drawing lies; lists of layers with what is on them.
#pragma once

#include "db/object.h"
#include "host/db/describe/group.h"
#include "host/db/describe/recordof.h"

struct GcDbField;

// Files of R2009 have version 1, later ones 2 and 3, with other groups.
class GcDbGeoData : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbGeoData);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbGeoData() = default;
  void subLoaded() override;

 private:
  friend struct GcDbRecordOf<GcDbGeoData>;
  [[nodiscard]] int version() const;

  GcDbGroupList m_data;
};

struct GcDbLayerIndexEntry {
  GcString layer;
  GcDbObjectId entities;  // an IDBUFFER
  int32_t count = 0;
  friend bool operator==(const GcDbLayerIndexEntry& a, const GcDbLayerIndexEntry& b) = default;
};

class GcDbLayerIndex : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbLayerIndex);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbLayerIndex() = default;

 private:
  friend struct GcDbRecordOf<GcDbLayerIndex>;
  friend struct GcDbIndexTime;

  int32_t m_day = 0;           // Julian
  int32_t m_milliseconds = 0;  // of the day
  GcArray<GcDbLayerIndexEntry> m_entries;
};
