#include "host/lisp/lib/calculations.h"

#include "host/ed/calculator.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/lib/drawinghost.h"

using lisp::LispValue;
using lisplib::hostOf;

LISP_GROUP("Geometry of the drawing")

namespace lisplib {

ap::LispNumber numberOf(LispValue value) {
  using Kind = ap::LispNumber::Kind;
  ap::LispNumber number;
  double xyz[3] = {0, 0, 0};
  if (value.isNumber()) {
    number.kind = value.isInteger() ? Kind::Integer : Kind::Real;
    number.x = value.asDouble();
  } else if (lisp::pointOf(value, xyz) != 0) {
    number = {Kind::Point, xyz[0], xyz[1], xyz[2]};
  }
  return number;
}

LispValue valueOf(lisp::Vm& vm, const ap::LispNumber& number) {
  using Kind = ap::LispNumber::Kind;
  const double xyz[] = {number.x, number.y, number.z};
  switch (number.kind) {
    case Kind::Integer: return LispValue::integer(static_cast<int32_t>(number.x));
    case Kind::Real: return LispValue::real(number.x);
    case Kind::Point: return lisp::Args(vm, nullptr, 0).newPoint(xyz, 3);
    case Kind::None: break;
  }
  return LispValue::nil();
}

}  // namespace lisplib

namespace {

LispValue calculated(lisp::Args& args) {
  args.vm().flush();
  return lisplib::valueOf(args.vm(), ed::calculate(hostOf(args.vm()).editor(), args.string()));
}

}  // namespace

LISP_BUILTIN("cal", "(cal expression) -> number | point | nil",
             "What an expression of the geometry calculator comes to; nil, with a message, for one that is wrong.") {
  return calculated(args);
}

LISP_BUILTIN("c:cal", "(c:cal [expression]) -> number | point | nil",
             "The same; without an expression the person is asked for one.") {
  if (args.more()) return calculated(args);
  args.vm().flush();
  return lisplib::valueOf(args.vm(), ed::calculateTyped(hostOf(args.vm()).editor()));
}
