#include "host/ed/selectionfilter.h"

#include <algorithm>
#include <cmath>

#include "db/entity.h"
#include "db/symboltable.h"
#include "host/db/core/handletext.h"
#include "host/db/entlist/entitylist.h"
#include "host/ed/patterns.h"

namespace ed {

namespace {

constexpr double kSame = 1e-9;  // numbers that differ by less are equal, relative to their size

bool related(double have, Relation relation, double want) {
  const bool same = std::fabs(have - want) <= kSame * std::max({1.0, std::fabs(have), std::fabs(want)});
  const auto bits = [](double value) { return static_cast<int64_t>(value); };
  switch (relation) {
    case Relation::Equal: return same;
    case Relation::NotEqual: return !same;
    case Relation::Less: return have < want && !same;
    case Relation::LessOrEqual: return have < want || same;
    case Relation::Greater: return have > want && !same;
    case Relation::GreaterOrEqual: return have > want || same;
    case Relation::Any: return true;
    case Relation::AnyBit: return (bits(have) & bits(want)) != 0;
    case Relation::AllBits: return (bits(have) & bits(want)) == bits(want);
  }
  return false;
}

bool relatedText(GcView have, Relation relation, GcView want) {
  switch (relation) {
    case Relation::Equal: return matchesName(have, want);
    case Relation::NotEqual: return !matchesName(have, want);
    case Relation::Any: return true;
    default: break;
  }
  const int order = upperText(have).compare(upperText(want));
  return related(order < 0 ? -1 : order > 0 ? 1 : 0, relation, 0);
}

bool relatedPoint(const GcGePoint3d& have, const FilterTest& test) {
  const double given[] = {have.x, have.y, have.z};
  const double wanted[] = {test.point.x, test.point.y, test.point.z};
  for (int i = 0; i < test.coordinates; ++i)
    if (!related(given[i], test.relations[i], wanted[i])) return false;
  return true;
}

bool isNumber(const GcDbGroup& group) {
  return group.kind == GcDbGroupKind::Real || (group.kind >= GcDbGroupKind::Bool && group.kind <= GcDbGroupKind::Int64);
}

bool meets(const GcDbGroup& group, const FilterTest& test) {
  switch (test.kind) {
    case FilterTest::Value::Text:
      if (group.kind == GcDbGroupKind::Handle)
        return relatedText(gcdbHandleText(static_cast<uint64_t>(group.integer)), test.relations[0], test.text);
      return group.kind == GcDbGroupKind::Text && relatedText(group.text, test.relations[0], test.text);
    case FilterTest::Value::Number: return isNumber(group) && related(group.asReal(), test.relations[0], test.number);
    case FilterTest::Value::Point:
      return (group.kind == GcDbGroupKind::Point2d || group.kind == GcDbGroupKind::Point3d) &&
             relatedPoint(group.point, test);
    case FilterTest::Value::Entity: return group.kind == GcDbGroupKind::Id && group.id == test.entity;
  }
  return false;
}

// What lists leave out because it is the layer's or the usual.
bool unwrittenGroup(int code, GcDbGroup& group) {
  switch (code) {
    case 62: group = GcDbGroup::ofInt(62, 256); return true;
    case 6: group = GcDbGroup::ofText(6, GC_T("BYLAYER")); return true;
    case 370: group = GcDbGroup::ofInt(370, -1); return true;
    case 48: group = GcDbGroup::ofReal(48, 1.0); return true;
    case 60: group = GcDbGroup::ofInt(60, 0); return true;
    case 39: group = GcDbGroup::ofReal(39, 0.0); return true;
    default: return false;
  }
}

// Takes any application, so that a list shows all extended data.
class EveryApplication final : public GcDbApplicationFilter {
 public:
  [[nodiscard]] bool takes(GcView) const override { return true; }
};

}  // namespace

// The entity under test. Kind and layer are asked of the object itself; its list is made only when a test needs it.
class SelectionFilter::Subject {
 public:
  explicit Subject(GcDbObjectId id) : m_id(id) {}

  bool meetsTest(const FilterTest& test) {
    if (test.code == 0 && test.kind == FilterTest::Value::Text)
      return relatedText(view(m_id.objectClass()->dxfName()), test.relations[0], test.text);
    if (test.code == 8 && test.kind == FilterTest::Value::Text)
      return relatedText(layerName(), test.relations[0], test.text);
    GcDbGroupList::Cursor cursor(groups());
    bool found = false;
    for (GcDbGroup group; cursor.next(group);) {
      if (group.code != test.code) continue;
      found = true;
      if (meets(group, test)) return true;
    }
    GcDbGroup unwritten;
    return !found && unwrittenGroup(test.code, unwritten) && meets(unwritten, test);
  }

  bool hasApplication(GcView pattern) {
    GcDbGroupList::Cursor cursor(groups());
    for (GcDbGroup group; cursor.next(group);)
      if (group.code == 1001 && matchesName(group.text, pattern)) return true;
    return false;
  }

 private:
  const GcDbGroupList& groups() {
    if (!m_listed) gcdbEntityList(m_id, &m_every, m_groups);
    m_listed = true;
    return m_groups;
  }
  GcView layerName() {
    if (!m_layer.isEmpty()) return view(m_layer);
    GcDbEntity* entity = nullptr;
    if (gcdbOpenObject(entity, m_id, GcDb::kForRead, true) != Gcad::eOk) return {};
    m_layer = entity->layer();
    ignore(entity->close());
    return view(m_layer);
  }

  GcDbObjectId m_id;
  EveryApplication m_every;
  GcDbGroupList m_groups;
  GcString m_layer;
  bool m_listed = false;
};

void SelectionFilter::add(const FilterTest& test) {
  Node node;
  node.test = test;
  m_nodes.push_back(std::move(node));
}

void SelectionFilter::addApplication(GcView pattern) {
  Node node;
  node.kind = Node::Kind::Application;
  node.test.text = pattern;
  m_nodes.push_back(std::move(node));
}

void SelectionFilter::open(Join join) {
  m_open.push_back(m_nodes.size());
  Node node;
  node.kind = Node::Kind::Join;
  node.join = join;
  m_nodes.push_back(std::move(node));
}

bool SelectionFilter::close(Join join) {
  if (m_open.empty() || m_nodes[m_open.back()].join != join) return false;
  m_nodes[m_open.back()].end = m_nodes.size();
  m_open.pop_back();
  return true;
}

size_t SelectionFilter::behind(size_t node) const {
  return m_nodes[node].kind == Node::Kind::Join ? m_nodes[node].end : node + 1;
}

bool SelectionFilter::passes(size_t index, Subject& subject) const {
  const Node& node = m_nodes[index];
  if (node.kind == Node::Kind::Test) return subject.meetsTest(node.test);
  if (node.kind == Node::Kind::Application) return subject.hasApplication(node.test.text);
  int good = 0;
  int members = 0;
  for (size_t member = index + 1; member < node.end; member = behind(member)) {
    ++members;
    const bool passed = passes(member, subject);
    good += passed ? 1 : 0;
    if (node.join == Join::Or && passed) return true;
    if (node.join == Join::And && !passed) return false;
  }
  switch (node.join) {
    case Join::And: return true;
    case Join::Or: return members == 0;
    case Join::Not: return good != members || members == 0;
    case Join::Xor: return good == 1;
  }
  return false;
}

bool SelectionFilter::passes(GcDbObjectId entity) const {
  Subject subject(entity);
  for (size_t node = 0; node < m_nodes.size(); node = behind(node))
    if (!passes(node, subject)) return false;
  return true;
}

std::vector<GcDbObjectId> SelectionFilter::passing(const std::vector<GcDbObjectId>& entities) const {
  if (isEmpty()) return entities;
  std::vector<GcDbObjectId> found;
  for (const GcDbObjectId id : entities)
    if (id.isValid() && passes(id)) found.push_back(id);
  return found;
}

bool parseRelations(GcView text, Relation relations[3]) {
  constexpr struct {
    const GCHAR* sign;
    Relation relation;
  } kSigns[] = {{GC_T("="), Relation::Equal},
                {GC_T("<"), Relation::Less},
                {GC_T("<="), Relation::LessOrEqual},
                {GC_T(">"), Relation::Greater},
                {GC_T(">="), Relation::GreaterOrEqual},
                {GC_T("<>"), Relation::NotEqual},
                {GC_T("!="), Relation::NotEqual},
                {GC_T("/="), Relation::NotEqual},
                {GC_T("*"), Relation::Any},
                {GC_T("&"), Relation::AnyBit},
                {GC_T("&="), Relation::AllBits}};
  int count = 0;
  for (size_t at = 0; at <= text.size() && count < 3; ++count) {
    const size_t end = std::min(text.find(GC_T(','), at), text.size());
    const GcView sign = text.substr(at, end - at);
    bool known = false;
    for (const auto& each : kSigns) {
      if (sign != each.sign) continue;
      relations[count] = each.relation;
      known = true;
    }
    if (!known) return false;
    at = end + 1;
  }
  // One sign is for every coordinate; two leave the third free.
  for (int i = count; i < 3; ++i) relations[i] = count == 1 ? relations[0] : Relation::Any;
  return true;
}

}  // namespace ed
