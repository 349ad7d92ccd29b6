#include "host/db/core/header.h"

#include <algorithm>

#include "host/db/core/undo.h"

const GcDbGroupList* GcDbHeader::find(GcView name) const {
  const auto at = m_index.find(GcText(name));
  return at == m_index.end() ? nullptr : &m_variables[at->second].groups;
}

void GcDbHeader::set(GcView name, const GcDbGroupList& groups) {
  if (const GcDbGroupList* former = find(name); former != nullptr && *former == groups) return;
  if (m_undo != nullptr) m_undo->recordSetting(name);
  const auto [at, fresh] = m_index.emplace(GcText(name), m_variables.size());
  if (fresh)
    m_variables.push_back({GcText(name), groups});
  else
    m_variables[at->second].groups = groups;
}

void GcDbHeader::remove(GcView name) {
  const auto at = m_index.find(GcText(name));
  if (at == m_index.end()) return;
  if (m_undo != nullptr) m_undo->recordSetting(name);
  m_variables.erase(m_variables.begin() + static_cast<std::ptrdiff_t>(at->second));
  indexAnew();
}

void GcDbHeader::indexAnew() {
  m_index.clear();
  for (size_t i = 0; i < m_variables.size(); ++i) m_index[m_variables[i].name] = i;
}

size_t GcDbHeader::placeOf(GcView name) const {
  const auto at = m_index.find(GcText(name));
  return at == m_index.end() ? m_variables.size() : at->second;
}

void GcDbHeader::restore(GcView name, const GcDbGroupList* groups, size_t place) {
  if (groups == nullptr) {
    remove(name);
  } else if (find(name) != nullptr) {
    set(name, *groups);
  } else {
    const size_t at = std::min(place, m_variables.size());
    m_variables.insert(m_variables.begin() + static_cast<std::ptrdiff_t>(at), {GcText(name), *groups});
    indexAnew();
  }
}

void GcDbHeader::clear() {
  m_variables.clear();
  m_index.clear();
}

bool GcDbHeader::first(GcView name, GcDbGroup& group) const {
  const GcDbGroupList* groups = find(name);
  return groups != nullptr && GcDbGroupList::Cursor(*groups).next(group);
}

double GcDbHeader::real(GcView name, double otherwise) const {
  GcDbGroup group;
  return first(name, group) ? group.asReal() : otherwise;
}

int64_t GcDbHeader::integer(GcView name, int64_t otherwise) const {
  GcDbGroup group;
  return first(name, group) ? group.asInt() : otherwise;
}

GcText GcDbHeader::text(GcView name) const {
  GcDbGroup group;
  return first(name, group) ? GcText(group.text) : GcText();
}

GcGePoint3d GcDbHeader::point(GcView name) const {
  GcDbGroup group;
  return first(name, group) ? group.point : GcGePoint3d();
}

void GcDbHeader::setOne(GcView name, GcDbGroup group) {
  GcDbGroup former;
  if (first(name, former)) {
    group.code = former.code;
    if (former.kind == GcDbGroupKind::Point2d && group.kind == GcDbGroupKind::Point3d) group.kind = former.kind;
    if (group.kind >= GcDbGroupKind::Bool && group.kind <= GcDbGroupKind::Int64) group.kind = former.kind;
  }
  GcDbGroupList list;
  list.put(group);
  set(name, list);
}

void GcDbHeader::setReal(GcView name, double value, int code) { setOne(name, GcDbGroup::ofReal(code, value)); }
void GcDbHeader::setInteger(GcView name, int64_t value, int code) { setOne(name, GcDbGroup::ofInt(code, value)); }
void GcDbHeader::setText(GcView name, GcView value, int code) { setOne(name, GcDbGroup::ofText(code, value)); }
void GcDbHeader::setPoint(GcView name, const GcGePoint3d& value, int code) {
  setOne(name, GcDbGroup::ofPoint(code, value));
}
