// What an object says that files of an older version cannot: fields of later versions that do not hold what every reader
// takes when they are missing.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/db/describe/classinfo.h"

class GcDbObject;

// References to objects may be left out of the search: those that lead to objects the version lacks altogether.
enum class GcDbLossOf : uint8_t { Everything, ValuesOnly };

class GcDbLossFinder {
 public:
  GcDbLossFinder(int version, GcDbLossOf what);
  ~GcDbLossFinder();
  GcDbLossFinder(const GcDbLossFinder&) = delete;
  GcDbLossFinder& operator=(const GcDbLossFinder&) = delete;

  // The lost fields as "name (code)", each once, separated by commas; empty when nothing is lost.
  std::string find(const GcDbObject& object) { return find(object, false); }
  // Of the fields that all entities have alone.
  std::string findCommon(const GcDbObject& entity) { return find(entity, true); }

 private:
  // An array whose elements, or arrays in them, have rows of later versions.
  struct YoungArray {
    const GcDbField* array;
    std::vector<const GcDbField*> young;
    std::vector<YoungArray> nested;
  };
  struct YoungRow {
    const GcDbField* row;
    bool isFreshDefault;  // a default value is what readers take
  };
  struct Kind {
    std::vector<YoungRow> young;        // rows of later versions
    std::vector<YoungRow> rare;         // those of them that lie in what only some objects have
    std::vector<YoungArray> arrays;     // older rows of records with rows of later versions
    std::unique_ptr<GcDbObject> fresh;  // an object of the class as it is made: what readers take
  };
  std::string find(const GcDbObject& object, bool commonOnly);
  [[nodiscard]] YoungArray youngOf(const GcDbField& array) const;
  void findInElements(const YoungArray& array, const void* record, std::string& names) const;
  const Kind& kindOf(const GcDbObject& object);
  void take(Kind& kind, const GcDbObject& object) const;
  [[nodiscard]] bool isLost(const YoungRow& young, const GcDbObject& object, GcDbObject& fresh) const;
  [[nodiscard]] bool isSaidByElder(const GcDbField& row, const GcDbObject& object) const;
  [[nodiscard]] bool isYoung(const GcDbField& row) const { return row.since > m_version; }

  int m_version;
  GcDbLossOf m_what;
  std::unordered_map<const GcRxClass*, Kind> m_kinds;
  const GcRxClass* m_lastClass = nullptr;
  const Kind* m_lastKind = nullptr;
};
