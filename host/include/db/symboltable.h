// Symbol tables: named records of one kind. Names are compared without regard to case.
#pragma once

#include "cm/color.h"
#include "db/dimstyle.h"
#include "db/linetype.h"
#include "db/object.h"
#include "db/symboltablerecord.h"
#include "db/textstyle.h"
#include "db/ucs.h"
#include "db/view.h"
#include "ge/point.h"
#include "rx/gcstring.h"

struct GcDbNameIndex;

class GcDbSymbolTableIterator {
 public:
  explicit GcDbSymbolTableIterator(const GcDbObjectIdArray& ids, bool atBeginning = true, bool skipErased = true);
  void start(bool atBeginning = true, bool skipErased = true);
  [[nodiscard]] bool done() const { return m_at < 0 || m_at >= m_ids.length(); }
  void step(bool forwards = true, bool skipErased = true);
  Gcad::ErrorStatus getRecordId(GcDbObjectId& id) const;
  Gcad::ErrorStatus getRecord(GcDbSymbolTableRecord*& record, GcDb::OpenMode mode = GcDb::kForRead,
                              bool openErased = false) const;

 private:
  void skip(int direction, bool skipErased);
  GcDbObjectIdArray m_ids;  // a copy: records may come and go while it walks
  int m_at = 0;
};

class GcDbSymbolTable : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbSymbolTable);
  ~GcDbSymbolTable() override;

  // Errors: eKeyNotFound.
  Gcad::ErrorStatus getAt(const GCHAR* name, GcDbObjectId& id, bool getErased = false) const;
  Gcad::ErrorStatus getIdAt(const GCHAR* name, GcDbObjectId& id, bool getErased = false) const {
    return getAt(name, id, getErased);
  }
  template <class Record>
  Gcad::ErrorStatus getAt(const GCHAR* name, Record*& record, GcDb::OpenMode mode, bool openErased = false) const {
    record = nullptr;
    GcDbObjectId id;
    const Gcad::ErrorStatus status = getAt(name, id, openErased);
    return status == Gcad::eOk ? gcdbOpenObject(record, id, mode, openErased) : status;
  }
  [[nodiscard]] bool has(const GCHAR* name) const;
  [[nodiscard]] bool has(GcDbObjectId id) const { return m_records.contains(id); }
  // Adds a new record, which stays open for write. Errors: eDuplicateRecordName, eInvalidInput, eNotThatKindOfClass.
  Gcad::ErrorStatus add(GcDbSymbolTableRecord* record);
  Gcad::ErrorStatus add(GcDbObjectId& id, GcDbSymbolTableRecord* record);
  // The caller deletes the iterator.
  Gcad::ErrorStatus newIterator(GcDbSymbolTableIterator*& iterator, bool atBeginning = true,
                                bool skipErased = true) const;
  [[nodiscard]] const GcDbObjectIdArray& records() const { return m_records; }

  // The class of the records.
  [[nodiscard]] virtual GcRxClass* recordClass() const = 0;
  void subOwned(GcDbObjectIdArray& ids) const override;

 protected:
  GcDbSymbolTable() = default;

 private:
  friend class GcDbSymbolTableRecord;
  friend class GcDbDatabase;
  friend class GcDbLoader;
  void indexRecord(const GcDbSymbolTableRecord& record);
  void unindexRecord(const GcDbSymbolTableRecord& record);

  GcDbObjectIdArray m_records;
  GcDbNameIndex* m_index = nullptr;
};

// Layers. Flags: 1 frozen, 2 frozen in new viewports, 4 locked.
class GcDbLayerTableRecord : public GcDbSymbolTableRecord {
 public:
  GCRX_DECLARE_MEMBERS(GcDbLayerTableRecord);
  static const GcDbField kFields[];
  static const int kFieldCount;

  [[nodiscard]] bool isOff() const { return m_off; }
  Gcad::ErrorStatus setIsOff(bool off);
  [[nodiscard]] bool isFrozen() const { return (m_flags & 1) != 0; }
  Gcad::ErrorStatus setIsFrozen(bool frozen);
  [[nodiscard]] bool isLocked() const { return (m_flags & 4) != 0; }
  Gcad::ErrorStatus setIsLocked(bool locked);
  [[nodiscard]] bool isPlottable() const { return m_plottable; }
  [[nodiscard]] GcCmColor color() const { return m_color; }
  Gcad::ErrorStatus setColor(const GcCmColor& color);
  [[nodiscard]] GcDbObjectId linetypeObjectId() const { return m_linetypeId; }
  Gcad::ErrorStatus setLinetypeObjectId(GcDbObjectId id);
  [[nodiscard]] int lineWeight() const { return m_lineWeight; }
  Gcad::ErrorStatus setLineWeight(GcDb::LineWeight weight);
  void subJoined() override;
  Gcad::ErrorStatus subErase(bool erasing) override;

 private:
  friend struct GcDbLayerFields;
  GcCmColor m_color = GcCmColor::fromIndex(7);
  GcDbObjectId m_linetypeId;
  GcDbObjectId m_plotStyleId;
  GcDbObjectId m_materialId;
  int16_t m_lineWeight = GcDb::kLnWtByLwDefault;
  bool m_off = false;
  bool m_plottable = true;
};

class GcDbEntity;
class GcDbBlockBegin;
class GcDbBlockEnd;

// Steps through the entities of a block in drawing order.
class GcDbBlockTableRecordIterator {
 public:
  explicit GcDbBlockTableRecordIterator(const GcDbObjectIdArray& ids, bool atBeginning = true, bool skipErased = true);
  void start(bool atBeginning = true, bool skipErased = true);
  [[nodiscard]] bool done() const { return m_at < 0 || m_at >= m_ids.length(); }
  void step(bool forwards = true, bool skipErased = true);
  Gcad::ErrorStatus getEntityId(GcDbObjectId& id) const;

 private:
  void skip(int direction, bool skipErased);
  const GcDbObjectIdArray& m_ids;
  int m_at = 0;
};

// Block definitions, model space and paper spaces among them. Block flags (group 70 of the block):
// 1 anonymous, 2 has attribute definitions, 4 external reference, 8 overlaid reference.
class GcDbBlockTableRecord : public GcDbSymbolTableRecord {
 public:
  GCRX_DECLARE_MEMBERS(GcDbBlockTableRecord);
  static const GcDbField kFields[];  // the BLOCK_RECORD of the table
  static const int kFieldCount;
  static const GcDbField kBlockFields[];  // what the BLOCK entity tells of the definition
  static const int kBlockFieldCount;

  // Appends a new entity: it gets an id, a handle and this block as its owner, and stays open for write.
  Gcad::ErrorStatus appendGcDbEntity(GcDbEntity* entity);
  Gcad::ErrorStatus appendGcDbEntity(GcDbObjectId& id, GcDbEntity* entity);
  // Takes in an entity that is in the database already and has this block as its owner (a clone's copy).
  Gcad::ErrorStatus adoptEntity(GcDbObjectId id);
  Gcad::ErrorStatus newIterator(GcDbBlockTableRecordIterator*& iterator, bool atBeginning = true,
                                bool skipErased = true) const;
  [[nodiscard]] const GcDbObjectIdArray& entities() const { return m_entities; }

  [[nodiscard]] GcGePoint3d origin() const { return m_origin; }
  Gcad::ErrorStatus setOrigin(const GcGePoint3d& origin);
  [[nodiscard]] const GcString& comments() const { return m_comments; }
  Gcad::ErrorStatus comments(GcString& text) const;
  Gcad::ErrorStatus setComments(const GCHAR* text);
  [[nodiscard]] bool isLayout() const;  // model space, paper spaces, and whatever else a layout has for its block
  [[nodiscard]] bool isModelSpace() const;
  [[nodiscard]] bool isPaperSpace() const;  // any layout's paper space
  [[nodiscard]] bool isAnonymous() const { return (m_blockFlags & 1) != 0; }
  [[nodiscard]] bool isFromExternalReference() const { return (m_blockFlags & 4) != 0; }
  [[nodiscard]] bool hasAttributeDefinitions() const;
  [[nodiscard]] GcDbObjectId getLayoutId() const { return m_layoutId; }
  Gcad::ErrorStatus setLayoutId(GcDbObjectId id);
  [[nodiscard]] GcDbObjectId blockBeginId() const { return m_beginId; }
  [[nodiscard]] GcDbObjectId blockEndId() const { return m_endId; }
  [[nodiscard]] const GcString& pathName() const { return m_path; }
  [[nodiscard]] int blockFlags() const { return m_blockFlags; }
  Gcad::ErrorStatus setBlockFlags(int flags);

  void subOwned(GcDbObjectIdArray& ids) const override;
  void subSetOwned(const GcDbObjectIdArray& ids) override;
  Gcad::ErrorStatus subErase(bool erasing) override;

 private:
  friend class GcDbDatabase;
  friend struct GcDbBlockFields;
  friend class GcDbLoader;
  GcDbObjectIdArray m_entities;
  GcDbObjectId m_beginId;
  GcDbObjectId m_endId;
  GcDbObjectId m_layoutId;
  GcGePoint3d m_origin;
  GcString m_comments;
  GcString m_path;
  GcArray<uint8_t> m_preview;
  int16_t m_blockFlags = 0;
  int16_t m_units = 0;
  bool m_explodable = true;
  bool m_scaleUniformly = false;
};

// A table whose records are of one class.
#define GC_SYMBOL_TABLE(Table, Record)                     \
  class Table : public GcDbSymbolTable {                   \
   public:                                                 \
    GCRX_DECLARE_MEMBERS(Table);                           \
    [[nodiscard]] GcRxClass* recordClass() const override; \
  }

GC_SYMBOL_TABLE(GcDbLayerTable, GcDbLayerTableRecord);
GC_SYMBOL_TABLE(GcDbBlockTable, GcDbBlockTableRecord);
GC_SYMBOL_TABLE(GcDbLinetypeTable, GcDbLinetypeTableRecord);
GC_SYMBOL_TABLE(GcDbTextStyleTable, GcDbTextStyleTableRecord);
GC_SYMBOL_TABLE(GcDbDimStyleTable, GcDbDimStyleTableRecord);
GC_SYMBOL_TABLE(GcDbRegAppTable, GcDbRegAppTableRecord);
GC_SYMBOL_TABLE(GcDbViewTable, GcDbViewTableRecord);
GC_SYMBOL_TABLE(GcDbViewportTable, GcDbViewportTableRecord);
GC_SYMBOL_TABLE(GcDbUCSTable, GcDbUCSTableRecord);

// Names under which applications keep extended data.
class GcDbRegAppTableRecord : public GcDbSymbolTableRecord {
 public:
  GCRX_DECLARE_MEMBERS(GcDbRegAppTableRecord);
  static const GcDbField kFields[];
  static const int kFieldCount;

 private:
  friend struct GcDbRegAppFields;
};
