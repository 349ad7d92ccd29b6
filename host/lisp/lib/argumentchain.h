// LISP arguments as the chain of result buffers a plug-in reads.
//
//   integer   RTSHORT when it fits 16 bits, else RTLONG     real      RTREAL
//   string    RTSTR (the text is not copied)                T, nil    RTT, RTNIL
//   entity    RTENAME                                       set       RTPICKS
//   (x y) or (x y z) of numbers   RTPOINT, RT3DPOINT (the third real of a 2D point is 0.0)
//   other lists   RTLB … RTLE with their elements by the same rules, RTDOTE before the tail of a dotted pair
//   anything else   RTOTHER, a type no function body accepts
//
// Nodes are zero-filled and come from a stock that is used like a stack: a call's nodes go when it returns. The texts
// belong to the LISP heap, where the caller's stack keeps them alive.
#pragma once

#include <memory>
#include <vector>

#include "host/lisp/core/interpreter.h"
#include "rx/resbuf.h"

namespace lisplib {

class NodeStock {
 public:
  // A zero-filled node of the type.
  resbuf* take(short type) {
    if (m_used == kChunk) nextChunk();
    resbuf* node = &m_chunks[m_chunk][m_used++];
    *node = resbuf{};
    node->restype = type;
    return node;
  }
  struct Mark {
    size_t chunk, used;
  };
  [[nodiscard]] Mark mark() const { return {m_chunk, m_used}; }
  void release(Mark mark) {
    m_chunk = mark.chunk;
    m_used = mark.used;
  }

 private:
  static constexpr size_t kChunk = 512;
  void nextChunk();
  std::vector<std::unique_ptr<resbuf[]>> m_chunks;
  size_t m_chunk = static_cast<size_t>(-1);
  size_t m_used = kChunk;
};

// Null when there are no arguments.
resbuf* buildArguments(const lisp::LispValue* values, uint32_t count, NodeStock& stock);

}  // namespace lisplib
