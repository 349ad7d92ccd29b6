// Numbers: arithmetic, comparison, bits, elementary functions.
#include <cmath>
#include <numeric>

#include "host/lisp/core/builtin.h"
#include "host/lisp/core/numbers.h"
#include "host/lisp/core/vm.h"
#include "host/rx/math/elementary.h"

LISP_GROUP("Numbers")

namespace lisp {

namespace {

LispValue foldNumbers(Args& args, Core id, LispValue start) {
  if (!args.more()) return start;
  LispValue sum = args.number();
  while (args.more()) sum = arithmetic(args.vm(), id, sum, args.any());
  return sum;
}

// Whether each neighbouring pair is in the relation.
LispValue chain(Args& args, Core id) {
  const bool ordering = id != Core::Equal && id != Core::NotEqual;
  bool holds = true;
  for (uint32_t i = 0; i + 1 < args.count(); ++i) {
    if (holds) holds = compare(args.vm(), id, args[i], args[i + 1]);
    if (!holds && !ordering) break;
  }
  return LispValue::boolean(holds);
}

// An integer if it fits, otherwise the whole-valued real.
LispValue integerOrReal(double d) {
  return d >= INT32_MIN && d <= INT32_MAX ? LispValue::integer(static_cast<int32_t>(d)) : LispValue::real(d);
}

[[noreturn]] void failDomain(Args& args, double x) {
  failType(args.vm(), "function undefined for argument:", LispValue::real(x));
}

}  // namespace

LISP_BUILTIN("+", "(+ [number]...) -> number", "The sum; integers wrap at 32 bits.") {
  return foldNumbers(args, Core::Add, LispValue::integer(0));
}
LISP_BUILTIN("*", "(* [number]...) -> number", "The product; integers wrap at 32 bits.") {
  return foldNumbers(args, Core::Multiply, LispValue::integer(0));
}
LISP_BUILTIN("-", "(- [number]...) -> number", "The first less the others; of one number the negative.") {
  if (args.count() == 1) return arithmetic(args.vm(), Core::Subtract, LispValue::integer(0), args[0]);
  return foldNumbers(args, Core::Subtract, LispValue::integer(0));
}
LISP_BUILTIN("/", "(/ [number]...) -> number", "The first divided by the others; integers divide towards zero.") {
  if (args.count() <= 2) return foldNumbers(args, Core::Divide, LispValue::integer(0));
  // One real among several makes the whole division real.
  bool real = false;
  for (uint32_t i = 0; i < args.count(); ++i) real = real || args[i].isReal();
  if (!real) return foldNumbers(args, Core::Divide, LispValue::integer(0));
  LispValue quotient = LispValue::real(args.real());
  while (args.more()) quotient = arithmetic(args.vm(), Core::Divide, quotient, LispValue::real(args.real()));
  return quotient;
}
LISP_BUILTIN("1+", "(1+ number) -> number", "The number plus one.") {
  return arithmetic(args.vm(), Core::Add, args.any(), LispValue::integer(1));
}
LISP_BUILTIN("1-", "(1- number) -> number", "The number less one.") {
  return arithmetic(args.vm(), Core::Subtract, args.any(), LispValue::integer(1));
}

LISP_BUILTIN("=", "(= x...) -> T | nil",
             "Whether all are equal: numbers by value, strings by text, lists by identity.") {
  return chain(args, Core::Equal);
}
LISP_BUILTIN("/=", "(/= x...) -> T | nil", "Whether each differs from the next.") {
  return chain(args, Core::NotEqual);
}
LISP_BUILTIN("<", "(< x...) -> T | nil", "Whether numbers or strings ascend.") { return chain(args, Core::Less); }
LISP_BUILTIN(">", "(> x...) -> T | nil", "Whether numbers or strings descend.") { return chain(args, Core::Greater); }
LISP_BUILTIN("<=", "(<= x...) -> T | nil", "Whether no number or string is less than the one before.") {
  return chain(args, Core::LessEqual);
}
LISP_BUILTIN(">=", "(>= x...) -> T | nil", "Whether no number or string is greater than the one before.") {
  return chain(args, Core::GreaterEqual);
}
LISP_BUILTIN("eq", "(eq x y) -> T | nil",
             "Whether both are the same object, or equal strings or numbers of one type.") {
  return LispValue::boolean(isEq(args[0], args[1]));
}
LISP_BUILTIN("equal", "(equal x y [fuzz]) -> T | nil",
             "Whether both have equal structure; numbers may differ by fuzz.") {
  return LispValue::boolean(
      isEqual(args.vm(), args[0], args[1], args.count() > 2 ? (args.skip(), args.skip(), args.real()) : 0.0));
}

LISP_BUILTIN("rem", "(rem [number]...) -> number", "The remainder of the division, with the sign of the first.") {
  if (!args.more()) return LispValue::integer(0);
  LispValue left = args.number();
  while (args.more()) {
    const LispValue right = args.number();
    if (right.asDouble() == 0) fail("divide by zero");
    left = left.isInteger() && right.isInteger()
               ? LispValue::integer(static_cast<int32_t>(int64_t{left.asInteger()} % right.asInteger()))
               : LispValue::real(std::fmod(left.asDouble(), right.asDouble()));
  }
  return left;
}

LISP_BUILTIN("abs", "(abs number) -> number", "The absolute value.") {
  const LispValue v = args.number();
  if (v.isReal()) return LispValue::real(std::abs(v.asReal()));
  return v.asInteger() < 0 ? arithmetic(args.vm(), Core::Subtract, LispValue::integer(0), v) : v;
}

namespace {

LispValue extreme(Args& args, Core better) {
  if (!args.more()) return LispValue::integer(0);
  LispValue best = args.number();
  bool real = best.isReal();
  while (args.more()) {
    const LispValue v = args.number();
    real = real || v.isReal();
    if (compare(args.vm(), better, v, best)) best = v;
  }
  return real ? LispValue::real(best.asDouble()) : best;
}

}  // namespace

LISP_BUILTIN("max", "(max [number]...) -> number", "The greatest; real if any number is.") {
  return extreme(args, Core::Greater);
}
LISP_BUILTIN("min", "(min [number]...) -> number", "The least; real if any number is.") {
  return extreme(args, Core::Less);
}

LISP_BUILTIN("fix", "(fix number) -> integer", "The number without its fraction; a real when beyond 32 bits.") {
  const LispValue v = args.number();
  return v.isInteger() ? v : integerOrReal(std::trunc(v.asReal()));
}
LISP_BUILTIN("float", "(float number) -> real", "The number as a real.") { return LispValue::real(args.real()); }
LISP_BUILTIN("numberp", "(numberp x) -> T | nil", "Whether x is an integer or a real.") {
  return LispValue::boolean(args.any().isNumber());
}
LISP_BUILTIN("zerop", "(zerop number) -> T | nil", "Whether the number is zero.") {
  return LispValue::boolean(args.real() == 0);
}
LISP_BUILTIN("minusp", "(minusp number) -> T | nil", "Whether the number is negative.") {
  return LispValue::boolean(args.real() < 0);
}

LISP_BUILTIN("sqrt", "(sqrt number) -> real", "The square root.") {
  const double x = args.real();
  if (x < 0) failDomain(args, x);
  return LispValue::real(std::sqrt(x));
}
LISP_BUILTIN("exp", "(exp number) -> real", "e to the power of the number.") {
  return LispValue::real(std::exp(args.real()));
}
LISP_BUILTIN("log", "(log number) -> real", "The natural logarithm.") {
  const double x = args.real();
  if (!(x > 0)) failDomain(args, x);
  return LispValue::real(std::log(x));
}
LISP_BUILTIN("sin", "(sin angle) -> real", "The sine of an angle in radians.") {
  return LispValue::real(gc::sin(args.real()));
}
LISP_BUILTIN("cos", "(cos angle) -> real", "The cosine of an angle in radians.") {
  return LispValue::real(gc::cos(args.real()));
}
LISP_BUILTIN("atan", "(atan y [x]) -> real",
             "The angle whose tangent is y, or y/x in the quadrant of both, in radians.") {
  const double y = args.real();
  return LispValue::real(args.moreNotNil() ? gc::atan2(y, args.real()) : gc::atan(y));
}

LISP_BUILTIN("expt", "(expt base power) -> number", "base to the power; an integer if both are.") {
  const LispValue base = args.number(), power = args.number();
  if (base.isInteger() && power.isInteger()) {
    if (base.asInteger() == 0 && power.asInteger() < 0) fail("divide by zero");
    const double exact = std::pow(base.asInteger(), power.asInteger());
    if (std::abs(exact) <= INT32_MAX) return LispValue::integer(static_cast<int32_t>(exact));
    return LispValue::real(exact);
  }
  const double result = std::pow(base.asDouble(), power.asDouble());
  if (result != result) failDomain(args, base.asDouble());
  return LispValue::real(result);
}

LISP_BUILTIN("gcd", "(gcd integer integer) -> integer", "The greatest common divisor.") {
  const int64_t a = args.integer(), b = args.integer();
  return integerOrReal(static_cast<double>(std::gcd(a, b)));
}
LISP_BUILTIN("lcm", "(lcm integer integer) -> integer", "The least common multiple.") {
  const int64_t a = args.integer(), b = args.integer();
  return a == 0 || b == 0 ? LispValue::integer(0) : integerOrReal(static_cast<double>(std::lcm(a, b)));
}

LISP_BUILTIN("logand", "(logand [integer]...) -> integer", "The bits that are set in all.") {
  int32_t bits = -1;
  if (!args.more()) return LispValue::integer(0);
  while (args.more()) bits &= args.integer();
  return LispValue::integer(bits);
}
LISP_BUILTIN("logior", "(logior [integer]...) -> integer", "The bits that are set in any.") {
  int32_t bits = 0;
  while (args.more()) bits |= args.integer();
  return LispValue::integer(bits);
}
LISP_BUILTIN("~", "(~ integer) -> integer", "All bits inverted.") { return LispValue::integer(~args.integer()); }
LISP_BUILTIN("lsh", "(lsh integer count) -> integer",
             "The bits shifted left, or right for a negative count; zeros move in.") {
  const auto bits = static_cast<uint32_t>(args.integer());
  const int32_t count = args.integer();
  if (count <= -32 || count >= 32) return LispValue::integer(0);
  return LispValue::integer(static_cast<int32_t>(count >= 0 ? bits << count : bits >> -count));
}
LISP_BUILTIN(
    "boole", "(boole operator integer...) -> integer",
    "Bitwise: operator bit 1 counts bits set in both, 2 in the first only, 4 in the second only, 8 in neither.") {
  const int32_t op = args.integer();
  int32_t bits = args.integer();
  while (args.more()) {
    const int32_t a = bits, b = args.integer();
    bits = (op & 1 ? a & b : 0) | (op & 2 ? a & ~b : 0) | (op & 4 ? ~a & b : 0) | (op & 8 ? ~a & ~b : 0);
  }
  return LispValue::integer(bits);
}

}  // namespace lisp
