#include "host/lisp/core/numbers.h"

#include <cmath>
#include <vector>

#include "host/lisp/core/vm.h"

namespace lisp {

namespace {

int32_t wrap(int64_t v) { return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint64_t>(v))); }

LispValue integerArithmetic(Core id, int64_t a, int64_t b) {
  switch (id) {
    case Core::Add: return LispValue::integer(wrap(a + b));
    case Core::Subtract: return LispValue::integer(wrap(a - b));
    case Core::Multiply: return LispValue::integer(wrap(a * b));
    default:
      if (b == 0) fail("divide by zero");
      return LispValue::integer(wrap(a / b));
  }
}

LispValue realArithmetic(Core id, double a, double b) {
  switch (id) {
    case Core::Add: return LispValue::computed(a + b);
    case Core::Subtract: return LispValue::computed(a - b);
    case Core::Multiply: return LispValue::computed(a * b);
    default:
      if (b == 0) fail("divide by zero");
      return LispValue::computed(a / b);
  }
}

template <class T>
bool ordered(Core id, const T& a, const T& b) {
  switch (id) {
    case Core::Less: return a < b;
    case Core::Greater: return a > b;
    case Core::LessEqual: return a <= b;
    default: return a >= b;
  }
}

bool sameObject(const Object& a, const Object& b) {
  if (a.type != b.type) return false;
  if (a.type == ObjectType::EntityName)
    return static_cast<const EntityName&>(a).id == static_cast<const EntityName&>(b).id;
  if (a.type == ObjectType::SelectionSet)
    return static_cast<const SelectionSet&>(a).handle == static_cast<const SelectionSet&>(b).handle;
  if (a.type == ObjectType::Opaque) {
    const auto& x = static_cast<const Opaque&>(a);
    const auto& y = static_cast<const Opaque&>(b);
    return x.kind == y.kind && x.payload == y.payload;
  }
  return &a == &b;
}

}  // namespace

LispValue arithmetic(Vm& vm, Core id, LispValue left, LispValue right) {
  if (!left.isNumber()) failType(vm, kNumberp, left);
  if (!right.isNumber()) failType(vm, kNumberp, right);
  if (left.isInteger() && right.isInteger()) return integerArithmetic(id, left.asInteger(), right.asInteger());
  return realArithmetic(id, left.asDouble(), right.asDouble());
}

bool compare(Vm&, Core id, LispValue left, LispValue right) {
  if (id == Core::Equal) return equalAtoms(left, right);
  if (id == Core::NotEqual) return !equalAtoms(left, right);
  if (left.isNumber() && right.isNumber()) return ordered(id, left.asDouble(), right.asDouble());
  if (left.isString() && right.isString()) return ordered(id, left.asString()->view(), right.asString()->view());
  fail("bad argument type for compare");
}

bool equalAtoms(LispValue left, LispValue right) {
  if (left.isNumber() && right.isNumber()) return left.asDouble() == right.asDouble();
  return isEq(left, right);
}

bool isEq(LispValue left, LispValue right) {
  if (left == right) return true;
  if (left.isString() && right.isString()) return left.asString()->view() == right.asString()->view();
  if (left.isReal() && right.isReal()) return left.asReal() == right.asReal();  // 0.0 and -0.0
  return left.isObject() && right.isObject() && sameObject(*left.asObject(), *right.asObject());
}

bool isEqual(Vm& vm, LispValue left, LispValue right, double fuzz) {
  constexpr uint32_t kAskEvery = 1u << 16;  // elements
  std::vector<LispValue> later;             // pairs of tails still to compare
  for (uint32_t count = 1;; ++count) {
    if (count % kAskEvery == 0) vm.checkEnd();
    while (left.isPair() && right.isPair()) {
      if (left == right) break;
      later.push_back(left.tail());
      later.push_back(right.tail());
      left = left.head();
      right = right.head();
    }
    if (left.isNumber() && right.isNumber()) {
      if (left.asDouble() != right.asDouble() && !(std::abs(left.asDouble() - right.asDouble()) <= fuzz)) return false;
    } else if (!isEq(left, right)) {
      return false;
    }
    if (later.empty()) return true;
    right = later.back();
    later.pop_back();
    left = later.back();
    later.pop_back();
  }
}

}  // namespace lisp
