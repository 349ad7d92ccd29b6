#include "host/lisp/core/heap.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "host/lisp/core/error.h"

namespace lisp {

namespace {

constexpr size_t kMaxTextLength = UINT32_MAX / 4;  // units

// Sets bits [from, to) of a bitmap.
void setBits(uint64_t* words, size_t from, size_t to) {
  while (from < to) {
    const size_t bit = from % 64;
    const size_t count = to - from < 64 - bit ? to - from : 64 - bit;
    const uint64_t mask = count == 64 ? ~0ull : ((1ull << count) - 1) << bit;
    words[from / 64] |= mask;
    from += count;
  }
}

// First index at or after `from` whose bit is (or is not) set; kCells when there is none.
size_t findBit(const uint64_t* words, size_t from, bool set) {
  while (from < ConsBlock::kCells) {
    const uint64_t word = (set ? words[from / 64] : ~words[from / 64]) >> (from % 64);
    if (word) return from + static_cast<size_t>(std::countr_zero(word));
    from = (from / 64 + 1) * 64;
  }
  return ConsBlock::kCells;
}

}  // namespace

Heap::~Heap() {
  for (Object* list : {m_objects, m_unswept}) {
    while (list) {
      Object* next = list->next;
      freeObject(list);
      list = next;
    }
  }
  freeCondemned(SIZE_MAX);
  for (ConsBlock* block : m_blocks) ::operator delete (block, std::align_val_t{ConsBlock::kBytes});
}

void Heap::newBlock() {
  auto* block = static_cast<ConsBlock*>(::operator new (ConsBlock::kBytes, std::align_val_t{ConsBlock::kBytes}));
  std::memset(block->live, 0, sizeof block->live);
  std::memset(block->mark, 0, sizeof block->mark);
  setBits(block->live, 0, ConsBlock::kFirstCell);
  setBits(block->mark, 0, ConsBlock::kFirstCell);
  m_blocks.push_back(block);
}

// Finds the next gap of free cells in the blocks not yet walked.
bool Heap::findRun() {
  size_t from = m_runEnd ? ConsBlock::indexOf(m_runEnd - 1) + 1 : 0;
  for (; m_block < m_blocks.size(); ++m_block, from = 0) {
    ConsBlock* block = m_blocks[m_block];
    const size_t start = findBit(block->live, from, false);
    if (start == ConsBlock::kCells) continue;
    const size_t end = findBit(block->live, start, true);
    m_cursor = block->cell(start);
    m_runEnd = block->cell(end);
    return true;
  }
  m_cursor = m_runEnd = nullptr;
  return false;
}

void Heap::nextRun() {
  if (!findRun()) {
    newBlock();
    m_block = m_blocks.size() - 1;
    findRun();
  }
  if (m_phase == Phase::Marking) blackenRun();
  charge(static_cast<size_t>(m_runEnd - m_cursor) * sizeof(Cons));
}

// Cells handed out while marking runs count as marked.
void Heap::blackenRun() {
  if (m_cursor == m_runEnd) return;
  ConsBlock* block = ConsBlock::of(m_cursor);
  const size_t start = ConsBlock::indexOf(m_cursor);
  setBits(block->mark, start, start + static_cast<size_t>(m_runEnd - m_cursor));
}

void Heap::charge(size_t bytes) {
  m_debt += bytes;
  m_fresh += bytes;
  m_statistics.bytes = m_blocks.size() * ConsBlock::kBytes + m_objectBytes;
  if (m_memoryLimit && m_statistics.bytes > m_memoryLimit) {
    m_client.requestSafePoint();
    // One builtin that goes far beyond the limit is stopped on the spot.
    if (m_statistics.bytes > 2 * m_memoryLimit) fail(ErrorKind::MemoryLimit, "memory limit reached");
  }
  if (m_debt < kStepBytes) return;
  if (m_phase != Phase::Idle || m_fresh > m_trigger) m_client.requestSafePoint();
}

void* Heap::account(size_t bytes) {
  if (m_memoryLimit && bytes > m_memoryLimit) fail(ErrorKind::MemoryLimit, "memory limit reached");
  void* memory = std::malloc(bytes);
  if (!memory) fail(ErrorKind::MemoryLimit, "out of memory");
  m_objectBytes += bytes;
  charge(bytes);
  return memory;
}

void Heap::enlist(Object* object, ObjectType type) {
  object->type = type;
  object->colour = m_colour;
  object->next = m_objects;
  m_objects = object;
}

void Heap::checkText(size_t length) const {
  if (length > kMaxTextLength) fail(ErrorKind::MemoryLimit, "string too long");
  if (m_memoryLimit && length * sizeof(GCHAR) > m_memoryLimit) fail(ErrorKind::MemoryLimit, "memory limit reached");
}

StringObject* Heap::newString(size_t length) {
  checkText(length);
  const size_t bytes = sizeof(StringObject) + (length + 1) * sizeof(GCHAR);
  auto* object = static_cast<StringObject*>(account(bytes));
  object->flags = 0;
  object->length = static_cast<uint32_t>(length);
  object->data()[length] = 0;
  enlist(object, ObjectType::String);
  return object;
}

LispValue Heap::string(TextView text) {
  StringObject* object = newString(text.size());
  std::copy(text.begin(), text.end(), object->data());
  return LispValue::of(object);
}

void Heap::freeObject(Object* object) {
  const auto destroy = [&](auto* typed) {
    using T = std::remove_pointer_t<decltype(typed)>;
    m_objectBytes -= sizeof(T);
    typed->~T();
  };
  switch (object->type) {
    case ObjectType::String:
      m_objectBytes -= sizeof(StringObject) + (object->length + size_t{1}) * sizeof(GCHAR);
      break;
    case ObjectType::Subr: destroy(static_cast<Subr*>(object)); break;
    case ObjectType::Function: destroy(static_cast<Function*>(object)); break;
    case ObjectType::External: destroy(static_cast<External*>(object)); break;
    case ObjectType::EntityName: destroy(static_cast<EntityName*>(object)); break;
    case ObjectType::SelectionSet:
      m_client.release(*static_cast<SelectionSet*>(object));
      destroy(static_cast<SelectionSet*>(object));
      break;
    case ObjectType::File: destroy(static_cast<File*>(object)); break;
    case ObjectType::CatchError: destroy(static_cast<CatchError*>(object)); break;
    case ObjectType::Opaque: {
      auto* opaque = static_cast<Opaque*>(object);
      if (opaque->kind && opaque->kind->release) opaque->kind->release(opaque->payload);
      destroy(opaque);
      break;
    }
  }
  std::free(object);
}

}  // namespace lisp
