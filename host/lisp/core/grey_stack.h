// Marked values whose parts are still to be marked. Grows by whole chunks: what is on it is never copied, so no single
// push takes long, however many values wait.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "host/lisp/core/value.h"

namespace lisp {

class GreyStack {
 public:
  [[nodiscard]] bool empty() const { return m_used == 0; }
  void push(LispValue value) {
    if (m_top == kChunk) grow();
    m_current[m_top++] = value;
    ++m_used;
  }
  LispValue pop() {
    --m_used;
    const LispValue value = m_current[--m_top];
    if (m_top == 0 && m_used > 0) shrink();
    return value;
  }

 private:
  static constexpr size_t kChunk = 8192;
  void grow() {
    if (m_spare) {
      m_chunks.push_back(std::move(m_spare));
    } else {
      m_chunks.push_back(std::make_unique<LispValue[]>(kChunk));
    }
    m_current = m_chunks.back().get();
    m_top = 0;
  }
  // One empty chunk is kept, for values that come and go at a chunk's edge.
  void shrink() {
    m_spare = std::move(m_chunks.back());
    m_chunks.pop_back();
    m_current = m_chunks.back().get();
    m_top = kChunk;
  }

  std::vector<std::unique_ptr<LispValue[]>> m_chunks;  // all but the last are full
  std::unique_ptr<LispValue[]> m_spare;
  LispValue* m_current = nullptr;
  size_t m_top = kChunk;  // of the current chunk
  size_t m_used = 0;
};

}  // namespace lisp
