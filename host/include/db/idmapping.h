// What became of each object in a clone: source ids and the ids of their copies, in the order in which the
// sources were listed, the objects they own right behind them.
#pragma once

#include "db/objectid.h"

class GcDbIdPair {
 public:
  constexpr GcDbIdPair() = default;
  constexpr GcDbIdPair(GcDbObjectId source, GcDbObjectId copy, bool cloned, bool primary)
      : m_key(source), m_value(copy), m_cloned(cloned), m_primary(primary) {}

  [[nodiscard]] GcDbObjectId key() const { return m_key; }
  [[nodiscard]] GcDbObjectId value() const { return m_value; }  // null when there is no copy
  [[nodiscard]] bool isCloned() const { return m_cloned; }      // false: the value existed before
  [[nodiscard]] bool isPrimary() const { return m_primary; }    // was asked for, not brought along

 private:
  GcDbObjectId m_key;
  GcDbObjectId m_value;
  bool m_cloned = false;
  bool m_primary = false;
};

struct GcDbIdMappingIndex;

class GcDbIdMapping {
 public:
  GcDbIdMapping() = default;
  ~GcDbIdMapping();
  GcDbIdMapping(const GcDbIdMapping&) = delete;
  GcDbIdMapping& operator=(const GcDbIdMapping&) = delete;

  // Adds a pair or replaces the one of the same source.
  void assign(const GcDbIdPair& pair);
  // The pair of a source; false when there is none.
  bool compute(GcDbObjectId source, GcDbIdPair& pair) const;
  [[nodiscard]] GcDbObjectId valueOf(GcDbObjectId source) const;  // null when there is none
  [[nodiscard]] int length() const { return m_pairs.length(); }
  [[nodiscard]] const GcArray<GcDbIdPair>& pairs() const { return m_pairs; }

 private:
  GcArray<GcDbIdPair> m_pairs;
  GcDbIdMappingIndex* m_index = nullptr;
};

class GcDbIdMappingIter {
 public:
  explicit GcDbIdMappingIter(const GcDbIdMapping& mapping) : m_mapping(mapping) {}
  void start() { m_at = 0; }
  [[nodiscard]] bool done() const { return m_at >= m_mapping.length(); }
  void next() { ++m_at; }
  // The current pair; false at the end.
  bool getMap(GcDbIdPair& pair) const {
    if (done()) return false;
    pair = m_mapping.pairs()[m_at];
    return true;
  }

 private:
  const GcDbIdMapping& m_mapping;
  int m_at = 0;
};
