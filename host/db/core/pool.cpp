#include "host/db/core/pool.h"

#include <cstdlib>

namespace {

constexpr std::size_t kStep = 8;
constexpr std::size_t kLargest = 512;  // larger objects are few; they come from the heap
constexpr std::size_t kSlab = std::size_t{1} << 18;

struct FreeBlock {
  FreeBlock* next;
};

struct SizeClass {
  FreeBlock* free = nullptr;
  char* fresh = nullptr;
  char* end = nullptr;
};

SizeClass g_classes[kLargest / kStep + 1];

}  // namespace

void* gcdbPoolAlloc(std::size_t size) noexcept {
  if (size > kLargest) return std::malloc(size);
  const std::size_t index = (size + kStep - 1) / kStep;
  SizeClass& sizes = g_classes[index];
  if (sizes.free != nullptr) {
    FreeBlock* block = sizes.free;
    sizes.free = block->next;
    __builtin_prefetch(block->next);  // freed long ago, most often
    return block;
  }
  const std::size_t step = index * kStep;
  if (sizes.fresh == nullptr || sizes.fresh + step > sizes.end) {
    sizes.fresh = static_cast<char*>(std::malloc(kSlab));
    if (sizes.fresh == nullptr) return nullptr;
    sizes.end = sizes.fresh + kSlab;
  }
  char* block = sizes.fresh;
  sizes.fresh += step;
  return block;
}

void gcdbPoolFree(void* memory, std::size_t size) noexcept {
  if (memory == nullptr) return;
  if (size > kLargest) {
    std::free(memory);
    return;
  }
  SizeClass& sizes = g_classes[(size + kStep - 1) / kStep];
  auto* block = static_cast<FreeBlock*>(memory);
  block->next = sizes.free;
  sizes.free = block;
}
