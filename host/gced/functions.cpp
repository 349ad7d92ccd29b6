// LISP functions of plug-ins: definition, arguments, results.
#include "ed/gced.h"
#include "host/ap/docmanager.h"
#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/names.h"
#include "host/lisp/lib/resultvalue.h"

using lisp::LispValue;

namespace {

ap::LispSpace* currentLisp() {
  const ap::Document* document = ap::currentDocument();
  return document == nullptr ? nullptr : document->lisp();
}

int answer(bool good) { return good ? RTNORM : RTERROR; }

// Sets the result of the running call; outside a call there is nobody to take it.
template <class Make>
int setResult(const Make& make) {
  lisplib::ExternalCall* call = lisplib::currentCall();
  if (call == nullptr) return RTERROR;
  call->result.value = make(call->vm);
  return RTNORM;
}

LispValue pointList(lisp::Vm& vm, const gds_point point) {
  LispValue list;
  for (int i = 3; i-- > 0;) list = vm.heap().cons(LispValue::real(point[i]), list);
  return list;
}

}  // namespace

int gcedDefun(const GCHAR* name, int code) {
  ap::LispSpace* space = currentLisp();
  return answer(space != nullptr && space->define(view(name), code));
}

int gcedUndef(const GCHAR* name, int code) {
  ap::LispSpace* space = currentLisp();
  return answer(space != nullptr && space->undefine(view(name), code));
}

int gcedRegFunc(int (*function)(), int code) {
  ap::LispSpace* space = currentLisp();
  return answer(space != nullptr && space->registerFunction(function, code));
}

int gcedGetFunCode() {
  const lisplib::ExternalCall* call = lisplib::currentCall();
  return call == nullptr ? RTERROR : call->code;
}

resbuf* gcedGetArgs() {
  const lisplib::ExternalCall* call = lisplib::currentCall();
  return call == nullptr ? nullptr : call->arguments;
}

int gcedRetNil() {
  return setResult([](lisp::Vm&) { return LispValue::nil(); });
}
int gcedRetT() {
  return setResult([](lisp::Vm&) { return LispValue::t(); });
}
int gcedRetVoid() {
  return setResult([](lisp::Vm&) { return LispValue::nullSymbol(); });
}
int gcedRetReal(double value) {
  return setResult([=](lisp::Vm&) { return LispValue::real(value); });
}
int gcedRetInt(int value) {
  return setResult([=](lisp::Vm&) { return LispValue::integer(value); });
}
int gcedRetStr(const GCHAR* text) {
  return setResult([=](lisp::Vm& vm) { return vm.heap().string(view(text)); });
}
int gcedRetPoint(const gds_point point) {
  return setResult([=](lisp::Vm& vm) { return pointList(vm, point); });
}

int gcedRetName(const gds_name name, int type) {
  if (type != RTENAME && type != RTPICKS) return RTERROR;
  return setResult([=](lisp::Vm& vm) {
    if (type == RTPICKS) return lisplib::makeSet(vm, static_cast<ed::SetNumber>(name[0]));
    auto* made = vm.heap().create<lisp::EntityName>(lisp::ObjectType::EntityName);
    made->id = lisplib::wordOfGds(name);
    return LispValue::of(static_cast<lisp::Object*>(made));
  });
}

int gcedRetList(const resbuf* chain) {
  return setResult([=](lisp::Vm& vm) { return lisplib::listOfChain(vm, chain); });
}

int gcedRetVal(const resbuf* value) {
  if (value == nullptr) return RTERROR;
  return setResult([=](lisp::Vm& vm) { return lisplib::valueOfNode(vm, *value); });
}
