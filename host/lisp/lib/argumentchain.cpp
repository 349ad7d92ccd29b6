#include "host/lisp/lib/argumentchain.h"

#include "host/lisp/lib/names.h"

namespace lisplib {

using lisp::LispValue;
using lisp::ObjectType;

namespace {

// Appends values to a chain. Lists within lists are walked with a stack of their own, so that no depth of nesting
// exhausts the machine's.
class ChainBuilder {
 public:
  explicit ChainBuilder(NodeStock& stock) : m_stock(stock) {}
  [[nodiscard]] resbuf* head() const { return m_head; }

  void add(LispValue value) {
    if (value.isPair() && !addPoint(value)) {
      addList(value);
    } else if (!value.isPair()) {
      addAtom(value);
    }
  }

 private:
  resbuf& append(short type) {
    resbuf* node = m_stock.take(type);
    *m_tail = node;
    m_tail = &node->rbnext;
    return *node;
  }

  void addAtom(LispValue value) {
    if (value.isReal()) {
      append(RTREAL).resval.rreal = value.asReal();
    } else if (value.isInteger()) {
      addInteger(value.asInteger());
    } else if (value.isString()) {
      append(RTSTR).resval.rstring = value.asString()->data();
    } else if (value.isNil()) {
      append(RTNIL);
    } else if (value.isTrue()) {
      append(RTT);
    } else if (value.isObject()) {
      addObject(value);
    } else {
      append(RTOTHER);
    }
  }

  void addInteger(int32_t number) {
    if (number >= INT16_MIN && number <= INT16_MAX)
      append(RTSHORT).resval.rint = static_cast<short>(number);
    else
      append(RTLONG).resval.rlong = number;
  }

  void addObject(LispValue value) {
    if (const auto* name = lisp::objectOf<lisp::EntityName>(value, ObjectType::EntityName))
      wordToGds(name->id, append(RTENAME).resval.rlname);
    else if (const auto* set = lisp::objectOf<lisp::SelectionSet>(value, ObjectType::SelectionSet))
      append(RTPICKS).resval.rlname[0] = static_cast<int64_t>(set->handle);
    else
      append(RTOTHER);
  }

  // Two or three numbers and nothing else.
  bool addPoint(LispValue list) {
    double at[3] = {0, 0, 0};
    int count = 0;
    for (; list.isPair() && count < 3; list = list.tail(), ++count) {
      if (!list.head().isNumber()) return false;
      at[count] = list.head().asDouble();
    }
    if (count < 2 || !list.isNil()) return false;
    resbuf& node = append(count == 2 ? RTPOINT : RT3DPOINT);
    for (int i = 0; i < 3; ++i) node.resval.rpoint[i] = at[i];
    return true;
  }

  void addList(LispValue list) {
    const size_t bottom = m_rest.size();
    m_rest.push_back(list);
    append(RTLB);
    while (m_rest.size() > bottom) {
      const LispValue rest = m_rest.back();
      if (rest.isPair()) {
        m_rest.back() = rest.tail();
        const LispValue head = rest.head();
        if (!head.isPair()) {
          addAtom(head);
        } else if (!addPoint(head)) {
          append(RTLB);
          m_rest.push_back(head);
        }
        continue;
      }
      if (!rest.isNil()) {
        append(RTDOTE);
        addAtom(rest);
      }
      append(RTLE);
      m_rest.pop_back();
    }
  }

  NodeStock& m_stock;
  resbuf* m_head = nullptr;
  resbuf** m_tail = &m_head;
  std::vector<LispValue> m_rest;  // what is left of each list being walked, outermost first
};

}  // namespace

void NodeStock::nextChunk() {
  if (++m_chunk == m_chunks.size()) m_chunks.push_back(std::make_unique<resbuf[]>(kChunk));
  m_used = 0;
}

resbuf* buildArguments(const LispValue* values, uint32_t count, NodeStock& stock) {
  ChainBuilder builder(stock);
  for (uint32_t i = 0; i < count; ++i) builder.add(values[i]);
  return builder.head();
}

}  // namespace lisplib
