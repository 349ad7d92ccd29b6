// Objects of classes that are not loaded. They keep everything they were read with and are written back
// unchanged; when their class is registered they become live objects of it, and back when it goes.
#pragma once

#include "db/entity.h"

// What a zombie keeps, the same for objects and entities: the groups of its file (host/db/objects/zombiedata.h).
struct GcDbZombieData;

class GcDbZombieObject : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbZombieObject);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbZombieObject();
  ~GcDbZombieObject() override;
  [[nodiscard]] GcDbZombieData& data() const { return *m_data; }

 private:
  friend struct GcDbZombieFields;
  GcDbZombieData* m_data;
};

class GcDbZombieEntity : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbZombieEntity);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbZombieEntity();
  ~GcDbZombieEntity() override;
  [[nodiscard]] GcDbZombieData& data() const { return *m_data; }

 private:
  friend struct GcDbZombieFields;
  GcDbZombieData* m_data;
};
