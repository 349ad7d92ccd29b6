#include "host/db/core/store.h"

#include <algorithm>
#include <unordered_map>

#include "db/database.h"
#include "rx/gcassert.h"

namespace {

struct LiveDatabase {
  GcDbDatabase* database = nullptr;
  uint32_t serial = 0;
};

// Open databases by index. Never destroyed: objects of static life may ask at process end.
std::vector<LiveDatabase>& liveDatabases() {
  static auto* const live = new std::vector<LiveDatabase>;
  return *live;
}

uint32_t g_lastSerial = 0;

}  // namespace

struct GcDbStore::FarHandles {
  std::unordered_map<uint64_t, GcDbStub*> map;
};

GcDbDatabase* GcDbStub::database() const { return GcDbStore::databaseAt(databaseIndex); }

GcDbStore::GcDbStore(GcDbDatabase* database) : m_serial(++g_lastSerial) {
  auto& live = liveDatabases();
  size_t index = 0;
  while (index < live.size() && live[index].database != nullptr) ++index;
  if (index == live.size()) live.emplace_back();
  GC_ASSERT(index < 0xFFFF, "too many open drawings");
  live[index] = {database, m_serial};
  m_index = static_cast<uint16_t>(index);
}

GcDbStore::~GcDbStore() {
  forEach([](GcDbStub* stub) {
    delete stub->object;
    stub->object = nullptr;
  });
  liveDatabases()[m_index] = {};
}

GcDbDatabase* GcDbStore::databaseAt(uint16_t index) {
  const auto& live = liveDatabases();
  return index < live.size() ? live[index].database : nullptr;
}

uint16_t GcDbStore::databaseCount() { return static_cast<uint16_t>(liveDatabases().size()); }

bool GcDbStore::isAlive(uint32_t serial) {
  for (const LiveDatabase& each : liveDatabases())
    if (each.serial == serial && each.database != nullptr) return true;
  return false;
}

GcDbStub* GcDbStore::findFar(uint64_t handle) const {
  if (m_far == nullptr) return nullptr;
  const auto at = m_far->map.find(handle);
  return at == m_far->map.end() ? nullptr : at->second;
}

std::vector<GcDbStub*> GcDbStore::farByHandle() const {
  std::vector<GcDbStub*> all;
  if (m_far == nullptr) return all;
  all.reserve(m_far->map.size());
  for (const auto& [handle, stub] : m_far->map) all.push_back(stub);
  std::sort(all.begin(), all.end(), [](const GcDbStub* a, const GcDbStub* b) { return a->handle < b->handle; });
  return all;
}

// A file of a few kilobytes may refer to thousands of handles that lie far apart: pages for them would be empty, and
// those handles go into the map.
bool GcDbStore::needPage(uint64_t page) {
  constexpr size_t kAlways = 64;
  constexpr size_t kLeastPerPage = 64;
  constexpr uint64_t kNear = 4096;
  if (page < m_pages.size() && m_pages[page] != nullptr) return true;
  if (page >= kMostPages || page >= kNear + m_count || m_pageCount > kAlways + m_count / kLeastPerPage) return false;
  if (page >= m_pages.size()) m_pages.resize(page + 1);
  m_pages[page] = std::make_unique<GcDbStub*[]>(kPageMask + 1);
  ++m_pageCount;
  return true;
}

GcDbStub* GcDbStore::make(uint64_t handle) {
  if ((m_count & kChunkMask) == 0 && (m_count >> kChunkBits) == m_chunks.size())
    m_chunks.push_back(std::make_unique<GcDbStub[]>(kChunkMask + 1));
  GcDbStub* stub = stubAt(m_count++);
  stub->handle = handle;
  stub->databaseIndex = m_index;
  const uint64_t page = handle >> kPageBits;
  if (needPage(page)) {
    m_pages[page][handle & kPageMask] = stub;
  } else {
    if (m_far == nullptr) m_far = std::make_unique<FarHandles>();
    m_far->map[handle] = stub;
  }
  return stub;
}

GcDbStub* GcDbStore::need(uint64_t handle) {
  GcDbStub* stub = find(handle);
  return stub != nullptr ? stub : make(handle);
}

GcDbStub* GcDbStore::fresh() {
  while (find(m_handseed) != nullptr) ++m_handseed;
  return make(m_handseed++);
}

void GcDbStore::restoreHandseed(uint64_t seed, size_t made) {
  m_handseed = seed;
  for (size_t i = made; i < m_count; ++i) {
    const GcDbStub* stub = stubAt(i);
    if (stub->object != nullptr && !stub->erased && stub->handle < UINT64_MAX) raiseHandseed(stub->handle + 1);
  }
}

void GcDbStore::adopt(GcDbStub* stub, GcDbObject* object, GcDbObjectId owner) {
  GC_ASSERT(stub->object == nullptr, "a handle has one object");
  stub->object = object;
  object->m_id = GcDbObjectId(stub);
  object->m_ownerId = owner;
  if (stub->handle >= m_handseed && stub->handle < UINT64_MAX) m_handseed = stub->handle + 1;
}

GcDbObject* GcDbStore::replace(GcDbStub* stub, GcDbObject* object) {
  GcDbObject* former = stub->object;
  stub->object = object;
  stub->pathKept = false;
  object->m_id = GcDbObjectId(stub);
  object->m_ownerId = former != nullptr ? former->m_ownerId : GcDbObjectId();
  if (former != nullptr) {
    std::swap(object->m_extra, former->m_extra);
    former->m_id.setNull();
  }
  return former;
}

GcDbObjectIdArray GcDbStore::openObjects() const {
  GcDbObjectIdArray open;
  if (m_openCount == 0) return open;
  forEach([&](GcDbStub* stub) {
    if (stub->isOpen()) open.append(GcDbObjectId(stub));
  });
  return open;
}

size_t GcDbStore::overheadBytes() const {
  size_t bytes = m_chunks.size() * (kChunkMask + 1) * sizeof(GcDbStub) + m_pages.size() * sizeof(void*);
  bytes += m_pageCount * (kPageMask + 1) * sizeof(void*);
  constexpr size_t kFarNode = 4 * sizeof(void*);
  if (m_far != nullptr) bytes += m_far->map.size() * kFarNode + m_far->map.bucket_count() * sizeof(void*);
  return bytes;
}
