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
  if (!m_from.empty()) m_from.push_back(0);
  if (!m_members.empty()) {
    m_members.insert(id.stub());
  } else if (m_ids.size() > kSearched) {
    for (const GcDbObjectId member : m_ids) m_members.insert(member.stub());
  }
  return true;
}

void SelectionSet::add(const std::vector<GcDbObjectId>& ids, SelectionOrigin origin) {
  const size_t before = m_ids.size();
  for (const GcDbObjectId id : ids) add(id);
  if (origin.how == SelectionOrigin::How::Named || m_ids.size() == before) return;
  m_from.resize(before);
  m_from.resize(m_ids.size(), static_cast<uint32_t>(m_origins.size()));
  m_origins.push_back(std::move(origin));
}

void SelectionSet::addFrom(const SelectionSet& other, const std::vector<GcDbObjectId>& ids) {
  if (other.m_from.empty()) {
    for (const GcDbObjectId id : ids) add(id);
    return;
  }
  std::unordered_map<GcDbStub*, uint32_t> from;
  for (size_t i = 0; i < other.m_ids.size(); ++i) from[other.m_ids[i].stub()] = other.m_from[i];
  const auto before = static_cast<uint32_t>(m_origins.size() - 1);  // the first of both is the same
  m_origins.insert(m_origins.end(), other.m_origins.begin() + 1, other.m_origins.end());
  m_from.resize(m_ids.size());
  for (const GcDbObjectId id : ids) {
    const auto at = from.find(id.stub());
    if (at == from.end()) continue;
    const size_t size = m_ids.size();
    if (add(id) && m_from.size() < m_ids.size()) m_from.resize(size + 1);
    if (m_ids.size() > size) m_from[size] = at->second == 0 ? 0 : before + at->second;
  }
}

bool SelectionSet::remove(GcDbObjectId id) {
  const auto at = std::find(m_ids.begin(), m_ids.end(), id);
  if (at == m_ids.end()) return false;
  if (!m_from.empty()) m_from.erase(m_from.begin() + (at - m_ids.begin()));
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
