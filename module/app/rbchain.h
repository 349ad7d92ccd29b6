// A chain of result buffers under construction. Grows at its end; releases what it holds.
#pragma once

#include <utility>

#include "module/app/host.h"

class RbChain {
 public:
  RbChain() = default;
  // Takes over a chain.
  explicit RbChain(resbuf* chain) : m_head(chain), m_tail(chain) {
    while (m_tail != nullptr && m_tail->rbnext != nullptr) m_tail = m_tail->rbnext;
  }
  RbChain(const RbChain&) = delete;
  RbChain& operator=(const RbChain&) = delete;
  ~RbChain() { gcutRelRb(m_head); }

  [[nodiscard]] resbuf* head() const { return m_head; }
  [[nodiscard]] bool isEmpty() const { return m_head == nullptr; }

  // A new node at the end; null when memory is exhausted (the chain is then as it was).
  resbuf* append(int type) {
    resbuf* rb = gcutNewRb(type);
    if (rb == nullptr) return nullptr;
    (m_tail != nullptr ? m_tail->rbnext : m_head) = rb;
    return m_tail = rb;
  }
  // Puts brackets around the whole chain, so that it is one list whatever it holds.
  void enclose() {
    resbuf* open = gcutNewRb(RTLB);
    if (open == nullptr) return;
    open->rbnext = m_head;
    m_head = open;
    if (m_tail == nullptr) m_tail = open;
    append(RTLE);
  }
  void appendShort(int16_t value) {
    if (resbuf* rb = append(RTSHORT)) rb->resval.rint = value;
  }
  void appendReal(double value) {
    if (resbuf* rb = append(RTREAL)) rb->resval.rreal = value;
  }
  void appendString(const GCHAR* text) {
    if (resbuf* rb = append(RTSTR)) gcutSetRbString(rb, text);
  }
  void appendPoint(double x, double y, double z) {
    resbuf* rb = append(RTPOINT);
    if (rb == nullptr) return;
    rb->resval.rpoint[0] = x;
    rb->resval.rpoint[1] = y;
    rb->resval.rpoint[2] = z;
  }
  // The object's entity name; nothing is appended when it has none.
  void appendName(GcDbObjectId id) {
    gds_name entity = {};
    if (gcdbGetGdsName(entity, id) != Gcad::eOk) return;
    resbuf* rb = append(RTENAME);
    if (rb == nullptr) return;
    rb->resval.rlname[0] = entity[0];
    rb->resval.rlname[1] = entity[1];
  }

 private:
  resbuf* m_head = nullptr;
  resbuf* m_tail = nullptr;
};

namespace ret {

// Hands the list over; the host keeps a copy. A chain that is one bracketed list answers that list, any other chain
// the list of its values.
inline int list(const RbChain& chain) { return gcedRetList(chain.head()), RTNORM; }

}  // namespace ret
