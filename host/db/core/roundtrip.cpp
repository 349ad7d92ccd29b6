#include "host/db/core/roundtrip.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <vector>

#include "db/database.h"
#include "db/dictionary.h"
#include "db/symboltable.h"
#include "db/viewport.h"
#include "db/xrecord.h"
#include "host/db/core/loader.h"
#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"
#include "host/rx/view.h"

namespace {

constexpr const GCHAR* kKey = GC_T("GC_ROUNDTRIP");

// An item is a word under code 1, what it is about, and values. A value is its group code under code 70 and the value
// under a code of its kind, so that no code of an object means anything to programs that look at extension records.
constexpr int kWordCode = 1;
constexpr int kNameCode = 2;
constexpr int kValueCode = 70;
constexpr int kObjectCode = 330;
constexpr int kSumCode = 160;
constexpr int kCountCode = 90;
constexpr int kFlagCode = 290;

// What a block's begin says of it in group files.
constexpr int kMarkerCode = 100;
constexpr GcView kBlockMarker = GC_T("AcDbBlockBegin");

constexpr GcView kComment = GC_T("COMMENT");
constexpr GcView kProperty = GC_T("PROPERTY");
constexpr GcView kVariable = GC_T("VARIABLE");
constexpr GcView kTime = GC_T("TIME");
constexpr GcView kSection = GC_T("SECTION");
constexpr GcView kRecord = GC_T("RECORD");
constexpr GcView kForeign = GC_T("FOREIGN");
constexpr GcView kChanges = GC_T("CHANGES");

constexpr size_t kMaxBinaryChunk = 127;  // what one group of a file holds

// The code under which a value of its kind stands in the record.
enum Carrier { kText = 300, kReal = 40, kAngle = 50, kPoint2d = 12, kPoint3d = 11, kInteger = 161, kBytes = 310 };

GcDbGroup carrying(const GcDbGroup& group) {
  GcDbGroup carrier = group;
  switch (group.kind) {
    case GcDbGroupKind::Text: carrier.code = kText; break;
    case GcDbGroupKind::Real: carrier.code = group.isAngle ? kAngle : kReal; break;
    case GcDbGroupKind::Point2d: return GcDbGroup::ofPoint(kPoint2d, {group.point.x, group.point.y, 0});
    case GcDbGroupKind::Point3d: carrier.code = kPoint3d; break;
    case GcDbGroupKind::Id: carrier.code = 331; break;
    case GcDbGroupKind::Handle: carrier.code = 320; break;
    case GcDbGroupKind::Binary: carrier.code = kBytes; break;
    default: return GcDbGroup::ofInt(kInteger, group.integer);
  }
  return carrier;
}

// The value as the group it was.
GcDbGroup restored(int code, const GcDbGroup& carrier) {
  if (carrier.code == kPoint2d) return GcDbGroup::ofPoint2d(code, {carrier.point.x, carrier.point.y});
  if (carrier.code == kInteger) return GcDbGroup::ofInt(code, carrier.integer);
  GcDbGroup group = carrier;
  group.code = static_cast<int16_t>(code);
  group.isAngle = carrier.code == kAngle;
  return group;
}

// ---- what an object says in a file -----------------------------------------------------------------------

// FNV-1a over what is compared.
class Sum {
 public:
  void add(const void* bytes, size_t size) {
    constexpr uint64_t kPrime = 0x100000001B3;
    for (size_t i = 0; i < size; ++i) m_sum = (m_sum ^ static_cast<const uint8_t*>(bytes)[i]) * kPrime;
  }
  template <class T>
  void value(T value) {
    add(&value, sizeof value);
  }
  [[nodiscard]] int64_t get() const { return static_cast<int64_t>(m_sum); }

 private:
  uint64_t m_sum = 0xCBF29CE484222325;
};

// Numbers of viewports follow from their order: readers give them.
bool isNumberOfViewport(const GcDbObject& object, int code) {
  return (code == 68 || code == 69) && object.isKindOf(GcDbViewport::desc());
}

int64_t sumOf(const GcDbObject& object, const GcDbGroupList& groups) {
  Sum sum;
  GcDbGroupList::Cursor cursor(groups);
  for (GcDbGroup group; cursor.next(group);) {
    sum.value(group.code);
    sum.value(group.real);
    if (!isNumberOfViewport(object, group.code) && group.kind != GcDbGroupKind::Id) sum.value(group.integer);
    for (const double part : {group.point.x, group.point.y, group.point.z}) sum.value(part);
    sum.add(group.text.data(), group.text.size() * sizeof(GCHAR));
    sum.add(group.bytes.data(), group.bytes.size());
  }
  return sum.get();
}

std::vector<GcDbGroup> listed(const GcDbGroupList& groups) {
  std::vector<GcDbGroup> all;
  GcDbGroupList::Cursor cursor(groups);
  for (GcDbGroup group; cursor.next(group);) all.push_back(group);
  return all;
}

// What refers to nothing is none.
bool isSameId(GcDbObjectId a, GcDbObjectId b) { return a == b || (!a.isValid() && !b.isValid()); }

bool isSame(const GcDbGroup& a, const GcDbGroup& b) {
  return isSameId(a.id, b.id) && a.code == b.code && a.kind == b.kind && a.text == b.text && a.real == b.real &&
         a.integer == b.integer && a.point.x == b.point.x && a.point.y == b.point.y && a.point.z == b.point.z &&
         std::equal(a.bytes.begin(), a.bytes.end(), b.bytes.begin(), b.bytes.end());
}

// A time in days as the milliseconds files have.
int64_t millisecondsOf(const GcDbHeader& header, GcView name) {
  constexpr double kPerDay = 86400000.0;
  const double value = header.real(name);
  return value >= 0 && value < 1e9 ? static_cast<int64_t>(std::llround(value * kPerDay)) : 0;
}

// The codes of groups that one list has and the other has not, ascending.
std::vector<int> codesOfDifferences(const std::vector<GcDbGroup>& first, const std::vector<GcDbGroup>& second) {
  std::vector<int> codes;
  const auto addMissing = [&](const std::vector<GcDbGroup>& from, const std::vector<GcDbGroup>& in) {
    std::multimap<int, const GcDbGroup*> byCode;
    for (const GcDbGroup& group : in) byCode.emplace(group.code, &group);
    for (const GcDbGroup& group : from) {
      auto [at, end] = byCode.equal_range(group.code);
      while (at != end && !isSame(*at->second, group)) ++at;
      if (at != end)
        byCode.erase(at);
      else
        codes.push_back(group.code);
    }
  };
  addMissing(first, second);
  addMissing(second, first);
  std::sort(codes.begin(), codes.end());
  codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
  return codes;
}

// ---- the record ------------------------------------------------------------------------------------------

GcDbDictionary* rootOf(GcDbDatabase& database) {
  const GcDbStub* stub = database.namedObjectsDictionaryId().stub();
  return stub == nullptr || stub->object == nullptr ? nullptr : GcDbDictionary::cast(stub->object);
}

GcDbXrecord* recordIn(const GcDbDictionary& root) {
  for (const GcDbDictionaryEntry& entry : root.entries()) {
    const GcDbStub* stub = view(entry.key) == GcView(kKey) ? entry.id.stub() : nullptr;
    if (stub != nullptr && stub->object != nullptr && !stub->erased) return GcDbXrecord::cast(stub->object);
  }
  return nullptr;
}

// Reads what gcdbGroupsToCompare gives.
class Reader {
 public:
  explicit Reader(GcDbObject& object) : m_fields(object, GcDb::kDHL_Current) {
    if (GcDbBlockTableRecord::cast(&object) == nullptr) return;
    for (int i = 0; i < GcDbBlockTableRecord::kBlockFieldCount; ++i)
      m_blockRows.push_back(&GcDbBlockTableRecord::kBlockFields[i]);
    m_block.emplace(&object, m_blockRows.data(), GcDbBlockTableRecord::kBlockFieldCount, GcDb::kDHL_Current,
                    object.database());
  }
  void take(const GcDbGroup& group) {
    if (m_block && group.code == kMarkerCode && group.text == kBlockMarker)
      m_inBlock = true;
    else
      (void)(m_inBlock ? m_block->take(group) : m_fields.take(group));
  }

 private:
  GcDbFieldReader m_fields;
  std::vector<const GcDbField*> m_blockRows;
  std::optional<GcDbFieldReader> m_block;
  bool m_inBlock = false;
};

// ---- taking it back --------------------------------------------------------------------------------------

class Taker {
 public:
  explicit Taker(GcDbDatabase& database) : m_database(database) {}

  void take(const GcDbGroupList& all) {
    GcDbGroupList::Cursor cursor(all);
    for (GcDbGroup group; cursor.next(group);) {
      if (group.code == kWordCode && group.kind == GcDbGroupKind::Text) {
        finish();
        m_word = GcText(group.text);
      } else if (group.code == kValueCode) {
        endBytes();
        m_code = static_cast<int>(group.asInt());
        m_isValue = true;
      } else if (m_isValue) {
        takeValue(group);
      } else {
        takeHead(group);
      }
    }
    finish();
  }

 private:
  // Bytes are cut into pieces under the same code.
  void takeValue(const GcDbGroup& carrier) {
    if (carrier.kind == GcDbGroupKind::Binary) {
      m_bytes.insert(m_bytes.end(), carrier.bytes.begin(), carrier.bytes.end());
      m_hasBytes = true;
    } else {
      m_values.put(restored(m_code, carrier));
    }
  }
  void endBytes() {
    if (m_hasBytes) m_values.put(GcDbGroup::ofBinary(m_code, m_bytes));
    m_hasBytes = false;
    m_bytes.clear();
  }
  void takeHead(const GcDbGroup& group) {
    if (group.code == kNameCode) m_name = GcText(group.text);
    if (group.code == kObjectCode) m_object = group.id;
    if (group.code == kSumCode) m_sum = group.asInt();
    if (group.code == kCountCode) m_counts[m_countCount++ % 2] = static_cast<int>(group.asInt());
    if (group.code == kFlagCode) m_flag = group.asInt() != 0;
  }

  void finish() {
    endBytes();
    if (m_word == kComment) m_database.fileParts().comments.push_back(toGcString(m_name));
    if (m_word == kProperty) finishProperty();
    if (m_word == kVariable) finishVariable();
    if (m_word == kTime) finishTime();
    if (m_word == kSection || m_word == kRecord) finishSection();
    if (m_word == kForeign) finishForeign();
    if (m_word == kChanges) finishChanges();
    m_word.clear();
    m_name.clear();
    m_values.clear();
    m_object = GcDbObjectId();
    m_sum = 0;
    m_countCount = m_counts[0] = m_counts[1] = 0;
    m_flag = m_isValue = false;
  }

  void finishProperty() {
    GcDbGroup group;
    GcDbCustomProperty property{toGcString(m_name), GcString()};
    if (GcDbGroupList::Cursor(m_values).next(group)) property.value = toGcString(group.text);
    m_database.fileParts().customProperties.push_back(std::move(property));
  }

  // What the file itself says of a setting stands.
  void finishVariable() {
    const GcDbGroupList* said = m_database.header().find(m_name);
    GcDbGroup group;
    const bool isSaid = said != nullptr && GcDbGroupList::Cursor(*said).next(group) &&
                        !(group.kind == GcDbGroupKind::Text && group.text.empty());
    if (!isSaid && !m_name.empty()) m_database.header().set(m_name, m_values);
  }

  // Another program that saved the drawing has set the times anew.
  void finishTime() {
    GcDbHeader& header = m_database.header();
    GcDbGroup first, second;
    GcDbGroupList::Cursor cursor(m_values);
    if (!cursor.next(first) || !cursor.next(second) || second.kind != GcDbGroupKind::Text) return;
    if (millisecondsOf(header, second.text) == m_sum) header.setReal(m_name, first.real);
  }

  void finishSection() {
    auto& sections = m_database.fileParts().sections;
    if (m_word == kSection) {
      sections.push_back({toGcString(m_name), {}});
      m_inSection = true;
    }
    if (!m_inSection) return;
    GcDbFileRecord record;
    if (m_word == kRecord) record.type = toGcString(m_name);
    record.groups = m_values;
    sections.back().records.push_back(std::move(record));
  }

  [[nodiscard]] GcDbObject* object() const {
    const GcDbStub* stub = m_object.stub();
    return stub == nullptr || stub->erased ? nullptr : stub->object;
  }

  void finishForeign() {
    GcDbObject* target = object();
    if (target == nullptr) return;
    GcDbForeignGroups groups;
    groups.section = toGcString(m_name);
    groups.ownMarker = m_flag;
    groups.groups = m_values;
    target->needExtra().foreign.append(std::move(groups));
  }

  // Between the first and the last groups, which are as the file has them, stand those that it could not say.
  void finishChanges() {
    GcDbObject* target = object();
    if (target == nullptr) return;
    const GcDbGroupList inFile = gcdbGroupsToCompare(*target);
    if (sumOf(*target, inFile) != m_sum) return;  // another program has changed it
    const std::vector<GcDbGroup> said = listed(inFile);
    const auto [front, back] = m_counts;
    if (front < 0 || back < 0 || static_cast<size_t>(front) + static_cast<size_t>(back) > said.size()) return;
    Reader reader(*target);
    for (int i = 0; i < front; ++i) reader.take(said[static_cast<size_t>(i)]);
    GcDbGroupList::Cursor cursor(m_values);
    for (GcDbGroup group; cursor.next(group);) reader.take(group);
    for (size_t i = said.size() - static_cast<size_t>(back); i < said.size(); ++i) reader.take(said[i]);
    target->subLoaded();
  }

  GcDbDatabase& m_database;
  GcText m_word, m_name;
  GcDbGroupList m_values;
  GcDbObjectId m_object;
  int64_t m_sum = 0;
  int m_counts[2] = {};
  int m_countCount = 0;
  std::vector<uint8_t> m_bytes;
  int m_code = 0;
  bool m_hasBytes = false;
  bool m_isValue = false;  // the head of the item is over
  bool m_flag = false;
  bool m_inSection = false;
};

}  // namespace

// ---- putting it together ---------------------------------------------------------------------------------

void GcDbRoundTrip::putValue(const GcDbGroup& group) {
  m_groups.put(GcDbGroup::ofInt(kValueCode, group.code));
  if (group.kind != GcDbGroupKind::Binary || group.bytes.size() <= kMaxBinaryChunk) {
    m_groups.put(carrying(group));
    return;
  }
  for (size_t at = 0; at < group.bytes.size(); at += kMaxBinaryChunk)
    m_groups.put(
        GcDbGroup::ofBinary(kBytes, group.bytes.subspan(at, std::min(kMaxBinaryChunk, group.bytes.size() - at))));
}

void GcDbRoundTrip::putValues(const GcDbGroupList& groups) {
  GcDbGroupList::Cursor cursor(groups);
  for (GcDbGroup group; cursor.next(group);) putValue(group);
}

void GcDbRoundTrip::comment(GcView text) {
  put(kWordCode, kComment);
  put(kNameCode, text);
}

void GcDbRoundTrip::property(const GcDbCustomProperty& property) {
  put(kWordCode, kProperty);
  put(kNameCode, view(property.name));
  putValue(GcDbGroup::ofText(kWordCode, view(property.value)));
}

void GcDbRoundTrip::variable(GcView name, const GcDbGroupList& groups) {
  put(kWordCode, kVariable);
  put(kNameCode, name);
  putValues(groups);
}

void GcDbRoundTrip::time(GcView name, GcView universal, const GcDbHeader& header) {
  put(kWordCode, kTime);
  put(kNameCode, name);
  m_groups.put(GcDbGroup::ofInt(kSumCode, millisecondsOf(header, universal)));
  putValue(GcDbGroup::ofReal(kReal, header.real(name)));
  putValue(GcDbGroup::ofText(kText, universal));
}

void GcDbRoundTrip::section(const GcDbFileSection& section) {
  put(kWordCode, kSection);
  put(kNameCode, view(section.name));
  bool isHead = true;
  for (const GcDbFileRecord& record : section.records) {
    if (!isHead || !record.type.isEmpty()) {
      put(kWordCode, kRecord);
      put(kNameCode, view(record.type));
    }
    putValues(record.groups);
    isHead = false;
  }
}

void GcDbRoundTrip::foreign(GcDbObjectId object, const GcDbForeignGroups& groups) {
  put(kWordCode, kForeign);
  put(kNameCode, view(groups.section));
  m_groups.put(GcDbGroup::ofId(kObjectCode, object));
  m_groups.put(GcDbGroup::ofInt(kFlagCode, groups.ownMarker ? 1 : 0));
  putValues(groups.groups);
}

std::vector<int> GcDbRoundTrip::changes(GcDbObjectId object, const GcDbGroupList& whole, const GcDbGroupList& inFile) {
  const std::vector<GcDbGroup> all = listed(whole), said = listed(inFile);
  const size_t shorter = std::min(all.size(), said.size());
  size_t front = 0, back = 0;
  while (front < shorter && isSame(all[front], said[front])) ++front;
  while (back < shorter - front && isSame(all[all.size() - 1 - back], said[said.size() - 1 - back])) ++back;
  if (front + back == all.size() && all.size() == said.size()) return {};
  put(kWordCode, kChanges);
  m_groups.put(GcDbGroup::ofId(kObjectCode, object));
  m_groups.put(GcDbGroup::ofInt(kSumCode, sumOf(*object.stub()->object, inFile)));
  m_groups.put(GcDbGroup::ofInt(kCountCode, static_cast<int64_t>(front)));
  m_groups.put(GcDbGroup::ofInt(kCountCode, static_cast<int64_t>(back)));
  for (size_t i = front; i < all.size() - back; ++i) putValue(all[i]);
  return codesOfDifferences(
      {all.begin() + static_cast<std::ptrdiff_t>(front), all.end() - static_cast<std::ptrdiff_t>(back)},
      {said.begin() + static_cast<std::ptrdiff_t>(front), said.end() - static_cast<std::ptrdiff_t>(back)});
}

// A record that was made for an earlier save has the next handle still, behind those that undo has taken out, unless
// the drawing has grown since.
GcDbRoundTrip::Stored::Stored(const GcDbRoundTrip& data, GcDbDatabase& database) : m_database(database) {
  GcDbDictionary* root = rootOf(database);
  if (root == nullptr) return;
  GcDbXrecord* record = recordIn(*root);
  if (record == nullptr && !data.isEmpty()) {
    GcDbStore& store = database.store();
    m_seed = store.handseed();
    m_count = store.size();
    uint64_t handle = m_seed;
    const auto isOurs = [&](const GcDbStub& stub) {
      return stub.erased && stub.object != nullptr && stub.object->isA() == GcDbXrecord::desc() &&
             stub.object->ownerId() == stub.object->objectId();
    };
    for (m_made = store.find(handle); m_made != nullptr && !isOurs(*m_made); m_made = store.find(handle)) ++handle;
    if (m_made == nullptr) {
      m_made = store.fresh();
      store.adopt(m_made, new GcDbXrecord, root->objectId());
    }
    GcDbLoader::setOwner(*m_made->object, root->objectId());
    m_made->erased = false;
    store.raiseHandseed(m_made->handle + 1);
    record = static_cast<GcDbXrecord*>(m_made->object);
    root->appendEntry(toGcString(GcView(kKey)), record->objectId());
    root->subLoaded();
  }
  if (record != nullptr) record->groups() = data.m_groups;
}

// A save changes nothing: neither the root dictionary nor the handle that is given next.
GcDbRoundTrip::Stored::~Stored() {
  GcDbDictionary* root = rootOf(m_database);
  if (m_made == nullptr || root == nullptr) return;
  GcArray<GcDbDictionaryEntry> entries;
  for (const GcDbDictionaryEntry& entry : root->entries())
    if (entry.id.stub() != m_made) entries.append(entry);
  root->replaceEntries(entries);
  static_cast<GcDbXrecord*>(m_made->object)->groups().clear();
  GcDbLoader::setOwner(*m_made->object, m_made->object->objectId());  // no other object is its own
  m_made->erased = true;
  m_database.store().restoreHandseed(m_seed, m_count);
}

namespace {

// The groups of an object but for the one that follows from the block an entity stands in.
class OwnGroups final : public GcDbGroupList {
 public:
  void put(const GcDbGroup& group) override {
    constexpr int kInPaperSpace = 67;
    if (group.code != kInPaperSpace || !m_inEntity) GcDbGroupList::put(group);
    if (group.code == kMarkerCode) m_inEntity = group.text == GcView(GC_T("AcDbEntity"));
  }

 private:
  bool m_inEntity = false;
};

}  // namespace

GcDbGroupList gcdbGroupsToCompare(const GcDbObject& object) {
  OwnGroups groups;
  gcdbFieldsOut(object, groups, GcDb::kDHL_Current, For::Whole);
  if (GcDbBlockTableRecord::cast(&object) == nullptr) return groups;
  groups.put(GcDbGroup::ofText(kMarkerCode, kBlockMarker));
  gcdbRowsOut(&object, GcDbBlockTableRecord::kBlockFields, GcDbBlockTableRecord::kBlockFieldCount, groups,
              GcDb::kDHL_Current, object.database(), For::Whole);
  return groups;
}

void gcdbTakeRoundTrip(GcDbDatabase& database) {
  const GcDbDictionary* root = rootOf(database);
  GcDbXrecord* record = root == nullptr ? nullptr : recordIn(*root);
  if (record == nullptr || record->groups().isEmpty()) return;
  const GcDbGroupList all = record->groups();
  record->groups().clear();
  Taker(database).take(all);
}
