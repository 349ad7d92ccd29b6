#include "db/idmapping.h"

#include <unordered_map>

struct GcDbIdMappingIndex {
  std::unordered_map<const GcDbStub*, int> places;
};

GcDbIdMapping::~GcDbIdMapping() { delete m_index; }

void GcDbIdMapping::assign(const GcDbIdPair& pair) {
  if (m_index == nullptr) m_index = new GcDbIdMappingIndex;
  const auto [at, fresh] = m_index->places.emplace(pair.key().stub(), m_pairs.length());
  if (fresh)
    m_pairs.append(pair);
  else
    m_pairs[at->second] = pair;
}

bool GcDbIdMapping::compute(GcDbObjectId source, GcDbIdPair& pair) const {
  if (m_index == nullptr) return false;
  const auto at = m_index->places.find(source.stub());
  if (at == m_index->places.end()) return false;
  pair = m_pairs[at->second];
  return true;
}

GcDbObjectId GcDbIdMapping::valueOf(GcDbObjectId source) const {
  GcDbIdPair pair;
  return compute(source, pair) ? pair.value() : GcDbObjectId();
}
