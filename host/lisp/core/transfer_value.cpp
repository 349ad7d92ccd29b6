#include "host/lisp/core/transfer_value.h"

#include "host/lisp/core/vm.h"

namespace lisp {

TransferValue Vm::transferable(LispValue value) {
  using Kind = TransferValue::Kind;
  TransferValue out;
  std::vector<LispValue> open{value};
  while (!open.empty()) {
    const LispValue v = open.back();
    open.pop_back();
    if (v.isPair()) {
      out.nodes.push_back({Kind::Pair, 0, {}});
      open.push_back(v.tail());
      open.push_back(v.head());
    } else if (v.isInteger() || v.isReal()) {
      out.nodes.push_back({v.isInteger() ? Kind::Integer : Kind::Real, v.bits(), {}});
    } else if (v.isString()) {
      out.nodes.push_back({Kind::String, 0, Text(v.asString()->view())});
    } else if (v.isCellSymbol()) {
      out.nodes.push_back({Kind::Symbol, 0, Text(v.asSymbol()->text())});
    } else if (const auto* e = objectOf<EntityName>(v, ObjectType::EntityName)) {
      out.nodes.push_back({Kind::EntityName, e->id, {}});
    } else {
      out.nodes.push_back({v.isTrue() ? Kind::True : Kind::Nil, 0, {}});
    }
  }
  return out;
}

// Built from the back: when a pair is met, its two parts are on top of the stack.
LispValue Vm::transferred(const TransferValue& value) {
  using Kind = TransferValue::Kind;
  std::vector<LispValue> done;
  for (size_t i = value.nodes.size(); i-- > 0;) {
    const auto& node = value.nodes[i];
    LispValue v;
    switch (node.kind) {
      case Kind::Nil: break;
      case Kind::True: v = LispValue::t(); break;
      case Kind::Integer:
      case Kind::Real: v = LispValue::fromBits(node.bits); break;
      case Kind::String: v = m_heap.string(node.text); break;
      case Kind::Symbol: v = LispValue::of(m_symbols.intern(node.text)); break;
      case Kind::EntityName: {
        auto* e = m_heap.create<EntityName>(ObjectType::EntityName);
        e->id = node.bits;
        v = LispValue::of(static_cast<Object*>(e));
        break;
      }
      case Kind::Pair: {
        const LispValue head = done.back();
        done.pop_back();
        const LispValue tail = done.back();
        done.pop_back();
        v = m_heap.cons(head, tail);
        break;
      }
    }
    done.push_back(v);
  }
  return done.empty() ? LispValue::nil() : done.back();
}

}  // namespace lisp
