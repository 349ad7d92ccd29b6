// Dictionaries: objects by name; keys are compared without regard to case and keep the case they came with.
// Iteration follows the order in which the entries came.
#pragma once

#include "db/object.h"
#include "rx/gcstring.h"

struct GcDbField;
struct GcDbNameIndex;

struct GcDbDictionaryEntry {
  GcString key;
  GcDbObjectId id;
  bool hard = false;  // owned hard: the object goes with the dictionary
};

class GcDbDictionary;

class GcDbDictionaryIterator {
 public:
  [[nodiscard]] bool done() const;
  bool next();  // false at the end
  [[nodiscard]] const GCHAR* name() const;
  [[nodiscard]] GcDbObjectId objectId() const;
  Gcad::ErrorStatus getObject(GcDbObject*& object, GcDb::OpenMode mode = GcDb::kForRead) const;

 private:
  friend class GcDbDictionary;
  explicit GcDbDictionaryIterator(const GcDbDictionary& dictionary);
  void skipErased();
  const GcDbDictionary& m_dictionary;
  int m_at = 0;
};

class GcDbDictionary : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbDictionary);
  static const GcDbField kFields[];
  static const int kFieldCount;
  GcDbDictionary() = default;
  ~GcDbDictionary() override;

  // Errors: eKeyNotFound, eInvalidKey.
  Gcad::ErrorStatus getAt(const GCHAR* key, GcDbObjectId& id) const;
  template <class T>
  Gcad::ErrorStatus getAt(const GCHAR* key, T*& object, GcDb::OpenMode mode) const {
    object = nullptr;
    GcDbObjectId id;
    const Gcad::ErrorStatus status = getAt(key, id);
    return status == Gcad::eOk ? gcdbOpenObject(object, id, mode) : status;
  }
  [[nodiscard]] bool has(const GCHAR* key) const;
  [[nodiscard]] bool has(GcDbObjectId id) const;
  Gcad::ErrorStatus nameAt(GcDbObjectId id, GcString& key) const;
  // Puts a new object under the key (it stays open for write), erasing what was there; id is its new id.
  Gcad::ErrorStatus setAt(const GCHAR* key, GcDbObject* object, GcDbObjectId& id);
  // Takes an entry out; the object stays. Errors: eKeyNotFound.
  Gcad::ErrorStatus remove(const GCHAR* key);
  Gcad::ErrorStatus remove(const GCHAR* key, GcDbObjectId& id);
  Gcad::ErrorStatus remove(GcDbObjectId id);
  bool setName(const GCHAR* oldKey, const GCHAR* newKey);
  [[nodiscard]] uint32_t numEntries() const;                  // erased objects not counted
  [[nodiscard]] GcDbDictionaryIterator* newIterator() const;  // the caller deletes it
  [[nodiscard]] bool isTreatElementsAsHard() const { return m_hard; }
  void setTreatElementsAsHard(bool hard);
  [[nodiscard]] int mergeStyle() const { return m_merge; }
  [[nodiscard]] const GcArray<GcDbDictionaryEntry>& entries() const { return m_entries; }

  void subOwned(GcDbObjectIdArray& ids) const override;
  void subLoaded() override;

  // For readers of files: an entry as the file has it, without creating or opening anything.
  void appendEntry(const GcString& key, GcDbObjectId id);
  // For mending: the entries as they should be; those without an object are left out.
  void replaceEntries(const GcArray<GcDbDictionaryEntry>& entries);
  // For cloning: takes out entries whose objects were not copied.
  void dropNullEntries();

 private:
  friend class GcDbDictionaryIterator;
  [[nodiscard]] int findKey(const GCHAR* key) const;
  void rebuildIndex() const;

  GcArray<GcDbDictionaryEntry> m_entries;
  mutable GcDbNameIndex* m_index = nullptr;  // only for dictionaries of many entries
  int8_t m_merge = 1;
  bool m_hard = false;
};
