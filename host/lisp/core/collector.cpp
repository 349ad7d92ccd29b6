// The heap's collector: marking in steps from a snapshot of the roots, then sweeping in steps.
#include <algorithm>
#include <bit>
#include <chrono>
#include <cstring>

#include "host/lisp/core/error.h"
#include "host/lisp/core/heap.h"

namespace lisp {

namespace {

constexpr size_t kMinTrigger = 16u << 20;
constexpr size_t kMarkPerByte = 4;   // bytes marked for each byte allocated: marking ends before the heap doubles
constexpr size_t kObjectCost = 32;   // what one marked or swept object counts for, bytes
constexpr size_t kSpareBlocks = 64;  // empty blocks kept for what comes next, beside half the filled ones
constexpr size_t kFreeAtOnce = 8;    // blocks given back in one step: the system takes its time for each

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

bool pointsToHeap(LispValue v) { return v.tag() >= LispValue::kConsTag && v.tag() <= LispValue::kObjectTag; }

}  // namespace

bool Marker::markCons(const Cons* c) {
  uint64_t& word = ConsBlock::of(c)->mark[ConsBlock::indexOf(c) / 64];
  const uint64_t bit = 1ull << ConsBlock::indexOf(c) % 64;
  if (word & bit) return false;
  word |= bit;
  return true;
}

bool Marker::mark(LispValue v) {
  if (!pointsToHeap(v)) return false;
  if (v.isPair()) {
    if (!markCons(v.asCons())) return false;
    m_heap.m_grey.push(v);
    return true;
  }
  Object* object = v.isString() ? static_cast<Object*>(v.asString()) : v.asObject();
  if (object->colour == m_heap.m_colour) return false;
  object->colour = m_heap.m_colour;
  if (object->type == ObjectType::Function) m_heap.m_grey.push(v);
  return true;
}

bool Marker::isMarked(LispValue v) const {
  if (!pointsToHeap(v)) return true;
  if (v.isPair()) {
    const Cons* c = v.asCons();
    return ConsBlock::of(c)->mark[ConsBlock::indexOf(c) / 64] >> ConsBlock::indexOf(c) % 64 & 1;
  }
  const Object* object = v.isString() ? static_cast<Object*>(v.asString()) : v.asObject();
  return object->colour == m_heap.m_colour;
}

void Marker::scan(Object* object) {
  const auto& function = static_cast<Function&>(*object);
  for (const LispValue constant : function.constants) mark(constant);
  mark(function.source);
}

size_t Marker::drain(size_t budget) {
  auto& grey = m_heap.m_grey;
  while (budget > 0 && !grey.empty()) {
    LispValue v = grey.pop();
    --budget;
    if (!v.isPair()) {
      scan(v.asObject());
      continue;
    }
    // Head first and the tail kept for later: the stack then stays short on long lists. A list of atoms is walked here.
    for (;;) {
      const Cons* c = v.asCons();
      const LispValue tail = c->tail;
      if (c->head.isPair()) {
        mark(tail);
        mark(c->head);
        break;
      }
      mark(c->head);
      if (!tail.isPair()) {
        mark(tail);
        break;
      }
      if (!markCons(tail.asCons())) break;
      v = tail;
      if (budget > 0) --budget;
      if (budget == 0) {
        grey.push(v);
        break;
      }
    }
  }
  return budget;
}

void Heap::startMarking() {
  while (m_phase == Phase::Sweeping) sweepSome(SIZE_MAX);
  m_phase = Phase::Marking;
  m_colour ^= 1;
  for (ConsBlock* block : m_blocks) {
    std::memset(block->mark, 0, sizeof block->mark);
    std::memset(block->mark, 0xFF, ConsBlock::kFirstCell / 8);  // the header's own cells are never free
  }
  blackenRun();
  Marker marker(*this);
  m_client.visitRoots(marker);
}

void Heap::finishMarking() {
  Marker marker(*this);
  do marker.drain(SIZE_MAX);
  while (m_client.visitWeak(marker));
  m_client.dropDeadWeak(marker);

  size_t liveCells = 0;
  std::vector<ConsBlock*> kept, empty;
  const ConsBlock* current = m_cursor != m_runEnd ? ConsBlock::of(m_cursor) : nullptr;
  for (ConsBlock* block : m_blocks) {
    size_t count = 0;
    for (const uint64_t word : block->mark) count += static_cast<size_t>(std::popcount(word));
    count -= ConsBlock::kFirstCell;
    liveCells += count;
    std::memcpy(block->live, block->mark, sizeof block->live);
    (count == 0 && block != current ? empty : kept).push_back(block);
  }
  const size_t spare = std::min(empty.size(), kSpareBlocks + kept.size() / 2);
  kept.insert(kept.end(), empty.begin(), empty.begin() + static_cast<ptrdiff_t>(spare));
  m_condemned.insert(m_condemned.end(), empty.begin() + static_cast<ptrdiff_t>(spare), empty.end());
  m_blocks.swap(kept);
  m_block = 0;
  m_cursor = m_runEnd = nullptr;

  m_unswept = m_objects;
  m_objects = nullptr;
  m_phase = Phase::Sweeping;
  m_fresh = 0;
  m_statistics.collections++;
  m_statistics.liveBytes = liveCells * sizeof(Cons);
}

void Heap::freeCondemned(size_t count) {
  for (; count > 0 && !m_condemned.empty(); --count) {
    ::operator delete (m_condemned.back(), std::align_val_t{ConsBlock::kBytes});
    m_condemned.pop_back();
  }
}

void Heap::sweepSome(size_t count) {
  freeCondemned(count == SIZE_MAX ? SIZE_MAX : kFreeAtOnce);
  while (m_unswept && count-- > 0) {
    Object* object = m_unswept;
    m_unswept = object->next;
    if (object->colour == m_colour) {
      object->next = m_objects;
      m_objects = object;
    } else {
      freeObject(object);
    }
  }
  if (m_unswept || !m_condemned.empty()) return;
  m_phase = Phase::Idle;
  m_statistics.liveBytes += m_objectBytes;
  m_statistics.bytes = m_blocks.size() * ConsBlock::kBytes + m_objectBytes;
  m_trigger = kMinTrigger + m_statistics.liveBytes * 3 / 4;
}

void Heap::work(size_t amount) {
  const size_t count = amount * kMarkPerByte / kObjectCost + 64;
  if (m_phase == Phase::Idle) return startMarking();
  if (m_phase == Phase::Sweeping) return sweepSome(count);
  Marker marker(*this);
  marker.drain(count);
  if (m_grey.empty()) finishMarking();
}

void Heap::safePoint() {
  if (m_stress) return collect();
  const bool due = m_debt >= kStepBytes && (m_phase != Phase::Idle || m_fresh > m_trigger);
  if (due) {
    const auto start = Clock::now();
    // An allocation spree between two safe points is paid back in bounded instalments.
    const size_t amount = m_debt < 4 * kStepBytes ? m_debt : 4 * kStepBytes;
    m_debt = 0;
    work(amount);
    const double pause = secondsSince(start);
    m_statistics.totalPauseS += pause;
    if (pause > m_statistics.longestPauseS) m_statistics.longestPauseS = pause;
  }
  if (m_memoryLimit && m_statistics.bytes > m_memoryCeiling) enforceMemoryLimit();
}

// After the error the ceiling is a little higher, so that the program can let go of what it holds.
void Heap::enforceMemoryLimit() {
  collect();
  const bool below = m_statistics.bytes <= m_memoryLimit;
  const bool again = m_statistics.bytes <= m_memoryCeiling;
  m_memoryCeiling = below ? m_memoryLimit : m_statistics.bytes + m_memoryLimit / 16;
  if (!below && !again) fail(ErrorKind::MemoryLimit, "memory limit reached");
}

void Heap::collectAll() {
  if (m_phase == Phase::Marking) finishMarking();
  startMarking();
  finishMarking();
  sweepSome(SIZE_MAX);
}

void Heap::collect() {
  collectAll();
  m_debt = 0;
  if (m_stress) poisonDeadCells();
}

// Stress only: a use of a freed cell shall fail at once and not by chance.
void Heap::poisonDeadCells() {
  const LispValue poison = LispValue::fromBits(LispValue::kObjectTag << 48 | 0xDEAD0);
  for (ConsBlock* block : m_blocks)
    for (size_t i = ConsBlock::kFirstCell; i < ConsBlock::kCells; ++i)
      if (!(block->live[i / 64] >> i % 64 & 1)) *block->cell(i) = {poison, poison};
}

}  // namespace lisp
