// Small objects of the format's dictionaries.
#pragma once

#include "db/dictionary.h"
#include "db/object.h"
#include "ge/point.h"
#include "rx/gcstring.h"

struct GcDbField;

// A dictionary that answers for names it does not have.
class GcDbDictionaryWithDefault : public GcDbDictionary {
 public:
  GCRX_DECLARE_MEMBERS(GcDbDictionaryWithDefault);
  static const GcDbField kFields[];
  static const int kFieldCount;
  [[nodiscard]] GcDbObjectId defaultId() const { return m_defaultId; }
  Gcad::ErrorStatus setDefaultId(GcDbObjectId id) { return assign(m_defaultId, id); }

 private:
  GcDbObjectId m_defaultId;
};

// Stands for something by being there; it has no data (plot style names).
class GcDbPlaceHolder : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbPlaceHolder);
  GcDbPlaceHolder() = default;
};

// A setting of the drawing that is kept in a dictionary.
class GcDbDictionaryVar : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbDictionaryVar);
  static const GcDbField kFields[];
  static const int kFieldCount;
  [[nodiscard]] const GcString& value() const { return m_value; }
  Gcad::ErrorStatus setValue(const GCHAR* text) { return assign(m_value, GcString(text)); }

 private:
  GcString m_value;
  uint8_t m_schema = 0;
};

// A named set of entities.
class GcDbEntityGroup : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbEntityGroup);
  static const GcDbField kFields[];
  static const int kFieldCount;
  [[nodiscard]] const GcString& description() const { return m_description; }
  [[nodiscard]] bool isAnonymous() const { return m_unnamed; }
  [[nodiscard]] bool isSelectable() const { return m_selectable; }
  [[nodiscard]] const GcDbObjectIdArray& entities() const { return m_entities; }
  Gcad::ErrorStatus append(GcDbObjectId entity);
  Gcad::ErrorStatus setEntities(const GcDbObjectIdArray& entities) { return assign(m_entities, entities); }
  Gcad::ErrorStatus setDescription(const GCHAR* text) { return assign(m_description, GcString(text)); }
  Gcad::ErrorStatus setAnonymous(bool anonymous) { return assign(m_unnamed, anonymous); }
  Gcad::ErrorStatus setSelectable(bool selectable) { return assign(m_selectable, selectable); }

 private:
  GcString m_description;
  GcDbObjectIdArray m_entities;
  bool m_unnamed = false;
  bool m_selectable = true;
};

// A scale of the list that dialogs offer.
class GcDbScale : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbScale);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbScale() = default;
  GcDbScale(const GCHAR* name, double paperUnits, double drawingUnits, bool isUnit)
      : m_name(name), m_paperUnits(paperUnits), m_drawingUnits(drawingUnits), m_isUnit(isUnit) {}
  [[nodiscard]] const GcString& name() const { return m_name; }
  [[nodiscard]] double paperUnits() const { return m_paperUnits; }
  [[nodiscard]] double drawingUnits() const { return m_drawingUnits; }
  [[nodiscard]] bool isUnitScale() const { return m_isUnit; }

 private:
  GcString m_name;
  double m_paperUnits = 1;
  double m_drawingUnits = 1;
  int16_t m_flags = 0;
  bool m_isUnit = false;
};

// Puts the metric scales that a new drawing offers into its list of scales, under the keys A0, A1 ….
void gcdbAddStandardScales(GcDbObjectId dictionary);

// The drawing order of a block where it is not that of the handles.
struct GcDbSortPair {
  GcDbObjectId entity;
  int64_t sortedAs = 0;  // a handle: drawn where the entity of this handle would be
  friend bool operator==(const GcDbSortPair& a, const GcDbSortPair& b) = default;
};

class GcDbSortentsTable : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbSortentsTable);
  static const GcDbField kFields[];
  static const int kFieldCount;
  [[nodiscard]] GcDbObjectId blockId() const { return m_blockId; }
  [[nodiscard]] const GcArray<GcDbSortPair>& pairs() const { return m_pairs; }
  Gcad::ErrorStatus setBlockId(GcDbObjectId id) { return assign(m_blockId, id); }
  Gcad::ErrorStatus setPairs(const GcArray<GcDbSortPair>& pairs) { return assign(m_pairs, pairs); }

 private:
  GcDbObjectId m_blockId;
  GcArray<GcDbSortPair> m_pairs;
};
