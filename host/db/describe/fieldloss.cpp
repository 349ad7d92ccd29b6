#include "host/db/describe/fieldloss.h"

#include <algorithm>
#include <string_view>

#include "db/database.h"
#include "db/entity.h"
#include "host/db/describe/fieldio.h"

namespace {

bool isReference(const GcDbField& row) { return row.kind == Kind::Id && row.is >= Is::SoftPointer; }

// A measured value follows from the points, whether there is a value from its kind.
bool isDerived(const GcDbField& row) {
  return std::string_view(row.name) == "measurement" || std::string_view(row.name) == "valueFlags";
}

// Markers, counts and repetitions say nothing of their own; a row that is never written cannot be lost.
bool saysSomething(const GcDbField& row) {
  return row.is != Is::Marker && row.is != Is::Count && (!row.isEcho || row.isPart || row.is == Is::TrueColor) &&
         row.write != Write::Never && row.write != Write::ListsOnly && row.at != nullptr && !isDerived(row);
}

bool isSame(const GcDbGroup& a, const GcDbGroup& b) {
  return a.kind == b.kind && a.text == b.text && a.real == b.real && a.integer == b.integer && a.id == b.id &&
         a.point.x == b.point.x && a.point.y == b.point.y && a.point.z == b.point.z &&
         std::equal(a.bytes.begin(), a.bytes.end(), b.bytes.begin(), b.bytes.end());
}

GcDbGroup valueOf(const GcDbField& row, const void* record) {
  return row.get != nullptr ? row.get(record) : gcdbGetValue(row, row.value(record), nullptr);
}

bool isArray(const GcDbField& row) { return row.kind == Kind::Records && row.is != Is::Count && row.rows != nullptr; }

// The row or one of its elements' rows is younger than the version.
bool hasYoungRow(const GcDbField& array, int version) {
  return std::any_of(array.rows, array.rows + array.rowCount, [&](const GcDbField& row) {
    return row.since > version ? saysSomething(row) : isArray(row) && hasYoungRow(row, version);
  });
}

// True when another row says the same under the same code in that version.
bool hasElder(const GcDbField& young, const void* record, const GcDbField& row, int version) {
  if (young.isPart || row.code != young.code || !row.isIn(version) || row.at == nullptr) return false;
  void* place = const_cast<void*>(record);
  return row.at(place) == young.at(place);
}

bool isCommon(const GcDbField* row) {
  return row >= GcDbEntity::kFields && row < GcDbEntity::kFields + GcDbEntity::kFieldCount;
}

bool hasValue(const GcDbField& row, const void* record) {
  if (isArray(row)) return row.records->size(row.at(const_cast<void*>(record))) != 0;
  return !row.isDefault(record);
}

// Another row of the elements says the same in the version.
bool hasElderIn(const GcDbField& array, const GcDbField& row, const void* element, int version) {
  return std::any_of(array.rows, array.rows + array.rowCount,
                     [&](const GcDbField& elder) { return hasElder(row, element, elder, version); });
}

void append(std::string& names, const GcDbField& row) {
  const std::string name = std::string(row.name) + (row.code >= 0 ? " (" + std::to_string(row.code) + ")" : "");
  if (names.find(name) == std::string::npos) names += (names.empty() ? "" : ", ") + name;
}

}  // namespace

GcDbLossFinder::GcDbLossFinder(int version, GcDbLossOf what) : m_version(version), m_what(what) {}
GcDbLossFinder::~GcDbLossFinder() = default;

const GcDbLossFinder::Kind& GcDbLossFinder::kindOf(const GcDbObject& object) {
  if (object.isA() == m_lastClass) return *m_lastKind;
  const auto [at, isNew] = m_kinds.try_emplace(object.isA());
  if (isNew) take(at->second, object);
  m_lastClass = object.isA();
  m_lastKind = &at->second;
  return at->second;
}

void GcDbLossFinder::take(Kind& kind, const GcDbObject& object) const {
  const GcDbClassInfo* info = gcdbInfoOf(object);
  if (info == nullptr) return;
  for (int i = 0; i < info->rowCount; ++i) {
    const GcDbField& row = *info->rows[i];
    const bool counts = saysSomething(row) && !(m_what == GcDbLossOf::ValuesOnly && isReference(row));
    if (counts && isYoung(row)) (row.inExtra ? kind.rare : kind.young).push_back({&row, row.inExtra});
    if (!isYoung(row) && isArray(row) && hasYoungRow(row, m_version)) kind.arrays.push_back(youngOf(row));
  }
  if (kind.young.empty() && kind.rare.empty()) return;
  kind.fresh.reset(GcDbObject::cast(object.isA()->create()));
  for (YoungRow& young : kind.young)
    young.isFreshDefault = young.row->kind != ::Kind::Records && young.row->isDefault(kind.fresh.get());
}

bool GcDbLossFinder::isLost(const YoungRow& young, const GcDbObject& object, GcDbObject& fresh) const {
  const GcDbField& row = *young.row;
  if (!row.applies(&object) || (row.inFiles != nullptr && !row.inFiles(&object))) return false;
  if (row.kind == ::Kind::Records) return row.records->size(row.at(const_cast<GcDbObject*>(&object))) != 0;
  if (young.isFreshDefault && row.isDefault(&object)) return false;
  if (row.kind == ::Kind::Groups || row.kind == ::Kind::Bytes) return true;
  return row.inExtra || !row.applies(&fresh) || !isSame(valueOf(row, &object), valueOf(row, &fresh));
}

bool GcDbLossFinder::isSaidByElder(const GcDbField& row, const GcDbObject& object) const {
  const GcDbClassInfo* info = gcdbInfoOf(object);
  return std::any_of(info->rows, info->rows + info->rowCount,
                     [&](const GcDbField* elder) { return hasElder(row, &object, *elder, m_version); });
}

std::string GcDbLossFinder::find(const GcDbObject& object, bool commonOnly) {
  const Kind& kind = kindOf(object);
  std::string names;
  const auto look = [&](const std::vector<YoungRow>& rows) {
    for (const YoungRow& young : rows)
      if ((!commonOnly || isCommon(young.row)) && isLost(young, object, *kind.fresh) &&
          !isSaidByElder(*young.row, object))
        append(names, *young.row);
  };
  look(kind.young);
  if (object.extra() != nullptr) look(kind.rare);
  if (commonOnly) return names;
  for (const YoungArray& array : kind.arrays) findInElements(array, &object, names);
  return names;
}

// Arrays nest as deep as the descriptions do.
GcDbLossFinder::YoungArray GcDbLossFinder::youngOf(const GcDbField& array) const {
  YoungArray found{&array, {}, {}};
  for (int i = 0; i < array.rowCount; ++i) {
    const GcDbField& row = array.rows[i];
    if (isYoung(row)) {
      if (saysSomething(row)) found.young.push_back(&row);
    } else if (isArray(row) && hasYoungRow(row, m_version)) {
      found.nested.push_back(youngOf(row));
    }
  }
  return found;
}

void GcDbLossFinder::findInElements(const YoungArray& array, const void* record, std::string& names) const {
  if (!array.array->applies(record)) return;
  void* member = array.array->at(const_cast<void*>(record));
  const int size = array.array->records->size(member);
  for (int i = 0; i < size; ++i) {
    const void* element = array.array->records->at(member, i);
    for (const GcDbField* row : array.young)
      if (row->applies(element) && hasValue(*row, element) && !hasElderIn(*array.array, *row, element, m_version))
        append(names, *row);
    for (const YoungArray& nested : array.nested) findInElements(nested, element, names);
  }
}
