// A large array that is reserved at once and takes real memory only as far as it is used. It never moves, so that
// pointers into the evaluator's stacks stay valid while they grow.
#pragma once

#include <cstddef>

namespace lisp {

class StackMemory {
 public:
  // Throws LispError when the address space cannot be reserved.
  explicit StackMemory(size_t bytes);
  ~StackMemory();
  StackMemory(const StackMemory&) = delete;
  StackMemory& operator=(const StackMemory&) = delete;

  void* data() const { return m_data; }
  size_t size() const { return m_bytes; }

 private:
  void* m_data;
  size_t m_bytes;
};

}  // namespace lisp
