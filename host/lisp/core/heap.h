// The collector's heap. It never moves anything and works in small steps.
//
// What a program can reach is immutable once built, so marking needs no write barrier: the roots are taken at one
// instant, everything reachable from them stays as it is and gets marked, and whatever is made during marking counts
// as marked. That instant (and a full collection) happens only at safe points of the evaluator: calls and loop ends.
// C++ code that runs between two safe points, a builtin for instance, may hold any value in a plain variable.
// Whoever calls back into the evaluator, or keeps values for longer, holds them in a Root or on the value stack.
//
// List cells lie in aligned blocks with two bitmaps: `live` as the last finished marking left it (the allocator walks
// its gaps) and `mark` as the running one fills it. Other objects come from malloc and are swept step by step.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <vector>

#include "host/lisp/core/grey_stack.h"
#include "host/lisp/core/objects.h"

namespace lisp {

class Marker;

// What the heap asks of its owner.
class HeapClient {
 public:
  virtual void visitRoots(Marker& marker) = 0;
  // Marks values that live only as long as their key does; returns whether it marked anything new.
  virtual bool visitWeak(Marker& marker) = 0;
  // Drops weak entries whose key is unmarked.
  virtual void dropDeadWeak(const Marker& marker) = 0;
  virtual void release(SelectionSet& set) = 0;
  // A step of work is due: call Heap::safePoint() at the next safe point.
  virtual void requestSafePoint() = 0;

 protected:
  ~HeapClient() = default;
};

struct ConsBlock {
  static constexpr size_t kBytes = 256 * 1024;
  static constexpr size_t kCells = kBytes / sizeof(Cons);
  static constexpr size_t kWords = kCells / 64;
  static constexpr size_t kFirstCell = 2 * kWords * sizeof(uint64_t) / sizeof(Cons);
  static_assert(kFirstCell % 8 == 0);

  uint64_t live[kWords];
  uint64_t mark[kWords];

  Cons* cell(size_t index) { return reinterpret_cast<Cons*>(this) + index; }
  static ConsBlock* of(const Cons* c) {
    return reinterpret_cast<ConsBlock*>(reinterpret_cast<uintptr_t>(c) & ~(kBytes - 1));
  }
  static size_t indexOf(const Cons* c) { return (reinterpret_cast<uintptr_t>(c) & (kBytes - 1)) / sizeof(Cons); }
};

struct HeapStatistics {
  size_t bytes = 0;      // cells in blocks plus objects, garbage not yet swept included
  size_t liveBytes = 0;  // after the last collection
  uint64_t collections = 0;
  double longestPauseS = 0;  // of a single step, seconds
  double totalPauseS = 0;
};

class Heap {
 public:
  explicit Heap(HeapClient& client) : m_client(client) {}
  ~Heap();
  Heap(const Heap&) = delete;
  Heap& operator=(const Heap&) = delete;

  LispValue cons(LispValue head, LispValue tail) {
    if (m_cursor == m_runEnd) nextRun();
    Cons* c = m_cursor++;
    c->head = head;
    c->tail = tail;
    return LispValue::of(c);
  }
  // Units after the zero-terminated length are the caller's to fill.
  StringObject* newString(size_t length);
  LispValue string(TextView text);
  template <class T>
  T* create(ObjectType type) {
    T* object = new (account(sizeof(T))) T();
    enlist(object, type);
    return object;
  }

  // Runs the work that is due. To be called only while every live value is rooted.
  void safePoint();
  // Collects everything that is unreachable, now.
  void collect();
  // With stress on, each safe point collects everything and overwrites what it frees.
  void setStress(bool on) { m_stress = on; }
  bool stress() const { return m_stress; }
  // 0: none. Beyond it the next safe point raises a MemoryLimit error unless a collection helps.
  // Ends the program when a text of so many units, not yet on the heap, is more than may be.
  void checkText(size_t length) const;
  void setMemoryLimit(size_t bytes) { m_memoryLimit = m_memoryCeiling = bytes; }
  const HeapStatistics& statistics() const { return m_statistics; }

 private:
  friend class Marker;
  enum class Phase : uint8_t { Idle, Marking, Sweeping };
  static constexpr size_t kStepBytes = 64 * 1024;  // allocation after which a step of work is due

  void nextRun();
  bool findRun();
  void newBlock();
  void* account(size_t bytes);
  void enlist(Object* object, ObjectType type);
  void startMarking();
  void finishMarking();
  void sweepSome(size_t count);
  void freeCondemned(size_t count);
  void freeObject(Object* object);
  void blackenRun();
  void charge(size_t bytes);
  void work(size_t amount);
  void poisonDeadCells();
  void collectAll();
  void enforceMemoryLimit();

  HeapClient& m_client;
  Cons* m_cursor = nullptr;
  Cons* m_runEnd = nullptr;
  size_t m_block = 0;  // index of the block the run lies in
  std::vector<ConsBlock*> m_blocks;
  std::vector<ConsBlock*> m_condemned;  // empty, to be given back
  GreyStack m_grey;
  Object* m_objects = nullptr;
  Object* m_unswept = nullptr;
  uint8_t m_colour = 0;
  Phase m_phase = Phase::Idle;
  bool m_stress = false;
  size_t m_debt = 0;   // bytes allocated since the last step
  size_t m_fresh = 0;  // bytes allocated since the last collection ended
  size_t m_trigger = 16u << 20;
  size_t m_memoryLimit = 0;
  size_t m_memoryCeiling = 0;  // where the next error is due
  size_t m_objectBytes = 0;
  HeapStatistics m_statistics;
};

// Marks values; handed to the client when roots are taken.
class Marker {
 public:
  explicit Marker(Heap& heap) : m_heap(heap) {}
  // Returns whether the value was unmarked before.
  bool mark(LispValue v);
  bool isMarked(LispValue v) const;
  // Follows what has been marked; stops after `budget` objects. Returns what is left of the budget.
  size_t drain(size_t budget);

 private:
  bool markCons(const Cons* c);
  void scan(Object* object);
  Heap& m_heap;
};

}  // namespace lisp
