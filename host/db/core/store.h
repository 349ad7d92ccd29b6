// Where a database keeps its objects: a stub per object (24 bytes, never moved, freed with the database)
// and a table from handle to stub. An id is the stub's address.
#pragma once

#include <memory>
#include <vector>

#include "db/objectid.h"

class GcDbStub {
 public:
  [[nodiscard]] GcDbDatabase* database() const;
  [[nodiscard]] bool isOpen() const { return readers != 0 || writing; }

  GcDbObject* object = nullptr;  // null: the handle is known (referred to), nothing is there
  uint64_t handle = 0;
  uint16_t databaseIndex = 0;
  uint16_t readers = 0;
  bool writing : 1 = false;
  bool erased : 1 = false;
  bool erasedAlone : 1 = false;  // when erased: not with its owner, and so not restored with it
  bool recorded : 1 = false;     // this open's first write has been recorded for undo
  bool modified : 1 = false;     // written to during this open
  bool isNew : 1 = false;        // appended and not yet closed
  bool pathKept : 1 = false;     // a curve's geometry is kept for the next query; cleared by every write
};

static_assert(sizeof(GcDbStub) == 24, "ten million objects have a stub each");

class GcDbStore {
 public:
  explicit GcDbStore(GcDbDatabase* database);
  ~GcDbStore();
  GcDbStore(const GcDbStore&) = delete;
  GcDbStore& operator=(const GcDbStore&) = delete;

  // The stub of a handle; null when there is none.
  [[nodiscard]] GcDbStub* find(uint64_t handle) const {
    const uint64_t page = handle >> kPageBits;
    if (page < m_pages.size() && m_pages[page] != nullptr)
      if (GcDbStub* stub = m_pages[page][handle & kPageMask]) return stub;
    return m_far == nullptr ? nullptr : findFar(handle);
  }
  // The stub of a handle, made when there is none (a reference to an object that may come later).
  GcDbStub* need(uint64_t handle);
  // A stub with the next free handle.
  GcDbStub* fresh();
  // Gives the object its stub: owner, id. The stub must be empty.
  void adopt(GcDbStub* stub, GcDbObject* object, GcDbObjectId owner);
  // Replaces the object of a stub (a zombie that came to life, a converted polyline); the old one is returned.
  GcDbObject* replace(GcDbStub* stub, GcDbObject* object);

  [[nodiscard]] uint64_t handseed() const { return m_handseed; }
  void raiseHandseed(uint64_t next) {
    if (next > m_handseed) m_handseed = next;
  }
  // Puts the seed where it stood before the stubs from the `made`th on were made: undo has taken their objects out.
  // It stays above what still lives. New stubs pass over the handles of those that were taken out.
  void restoreHandseed(uint64_t seed, size_t made);
  [[nodiscard]] int openCount() const { return m_openCount; }
  void countOpen(int by) { m_openCount += by; }
  // Every object that is open now.
  [[nodiscard]] GcDbObjectIdArray openObjects() const;
  [[nodiscard]] size_t size() const { return m_count; }  // stubs, empty ones included
  // Calls f(stub) for every stub in the order in which they were made; f may make new ones (not visited).
  template <class F>
  void forEach(const F& f) const {
    const size_t count = m_count;
    for (size_t i = 0; i < count; ++i) {
      if (i + kAhead < count) prefetch(stubAt(i + kAhead)->object);
      f(stubAt(i));
    }
  }
  // The same by handle. f makes no new ones.
  template <class F>
  void forEachByHandle(const F& f) const {
    const std::vector<GcDbStub*> far = farByHandle();
    size_t nextFar = 0;
    for (const auto& page : m_pages) {
      if (page == nullptr) continue;
      for (uint64_t i = 0; i <= kPageMask; ++i) {
        if (const GcDbStub* later = page[(i + kAhead) & kPageMask]) prefetch(later->object);
        GcDbStub* stub = page[i];
        if (stub == nullptr) continue;
        while (nextFar < far.size() && far[nextFar]->handle < stub->handle) f(far[nextFar++]);
        f(stub);
      }
    }
    while (nextFar < far.size()) f(far[nextFar++]);
  }
  [[nodiscard]] GcDbStub* stubAt(size_t index) const { return &m_chunks[index >> kChunkBits][index & kChunkMask]; }
  [[nodiscard]] uint16_t index() const { return m_index; }
  [[nodiscard]] uint32_t serial() const { return m_serial; }
  // Bytes kept for stubs and the handle table.
  [[nodiscard]] size_t overheadBytes() const;

  // The database of an index, null when it is gone; the index of a live database by its serial number.
  static GcDbDatabase* databaseAt(uint16_t index);
  static bool isAlive(uint32_t serial);
  template <class F>
  static void forEachDatabase(const F& f) {
    for (uint16_t i = 0; i < databaseCount(); ++i)
      if (GcDbDatabase* database = databaseAt(i)) f(*database);
  }

 private:
  static uint16_t databaseCount();
  // Walking a large drawing waits for memory: what comes soon is asked for ahead.
  static constexpr size_t kAhead = 16;
  static void prefetch(const void* memory) { __builtin_prefetch(memory); }
  static constexpr int kPageBits = 10;
  static constexpr uint64_t kPageMask = (uint64_t{1} << kPageBits) - 1;
  static constexpr uint64_t kMostPages = uint64_t{1} << 22;  // 4 G handles in pages; farther ones in a map
  static constexpr int kChunkBits = 12;
  static constexpr size_t kChunkMask = (size_t{1} << kChunkBits) - 1;

  [[nodiscard]] GcDbStub* findFar(uint64_t handle) const;
  [[nodiscard]] std::vector<GcDbStub*> farByHandle() const;
  GcDbStub* make(uint64_t handle);
  bool needPage(uint64_t page);

  struct FarHandles;
  std::vector<std::unique_ptr<GcDbStub*[]>> m_pages;
  std::vector<std::unique_ptr<GcDbStub[]>> m_chunks;
  std::unique_ptr<FarHandles> m_far;
  size_t m_count = 0;
  size_t m_pageCount = 0;
  uint64_t m_handseed = 1;
  int m_openCount = 0;
  uint16_t m_index = 0;
  uint32_t m_serial = 0;
};
