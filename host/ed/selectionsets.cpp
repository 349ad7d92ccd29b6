#include "host/ed/selectionsets.h"

#include <algorithm>

namespace ed {

bool SelectionSet::contains(GcDbObjectId id) const {
  if (m_members.empty()) return std::find(m_ids.begin(), m_ids.end(), id) != m_ids.end();
  return m_members.count(id.stub()) != 0;
}

bool SelectionSet::add(GcDbObjectId id) {
  if (contains(id)) return false;
  m_ids.push_back(id);
  if (!m_members.empty()) {
    m_members.insert(id.stub());
  } else if (m_ids.size() > kSearched) {
    for (const GcDbObjectId member : m_ids) m_members.insert(member.stub());
  }
  return true;
}

bool SelectionSet::remove(GcDbObjectId id) {
  const auto at = std::find(m_ids.begin(), m_ids.end(), id);
  if (at == m_ids.end()) return false;
  m_ids.erase(at);
  m_members.erase(id.stub());
  return true;
}

SetNumber SelectionSets::make() {
  m_sets[++m_last] = Held{std::make_unique<SelectionSet>(), 1};
  return m_last;
}

SetNumber SelectionSets::make(std::vector<GcDbObjectId> ids) {
  const SetNumber number = make();
  for (const GcDbObjectId id : ids) find(number)->add(id);
  return number;
}

SelectionSet* SelectionSets::find(SetNumber number) const {
  const auto at = m_sets.find(number);
  return at == m_sets.end() ? nullptr : at->second.set.get();
}

void SelectionSets::retain(SetNumber number) {
  if (const auto at = m_sets.find(number); at != m_sets.end()) ++at->second.holders;
}

void SelectionSets::release(SetNumber number) {
  const auto at = m_sets.find(number);
  if (at != m_sets.end() && --at->second.holders == 0) m_sets.erase(at);
}

void HeldSet::reset(SetNumber number) {
  m_sets.retain(number);
  m_sets.release(m_number);
  m_number = number;
}

}  // namespace ed
