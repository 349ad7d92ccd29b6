// A value outside any heap: what the blackboard keeps and interpreters hand each other. Numbers, strings, symbols,
// entity names, selection sets and lists of them; anything else becomes nil.
#pragma once

#include <vector>

#include "host/lisp/core/text.h"

namespace lisp {

struct TransferValue {
  // A value in prefix order: a Pair is followed by its head and its tail.
  enum class Kind : uint8_t { Nil, True, Integer, Real, String, Symbol, EntityName, Pair };
  struct Node {
    Kind kind = Kind::Nil;
    uint64_t bits = 0;
    Text text;
  };
  std::vector<Node> nodes;
};

}  // namespace lisp
