#include "host/lisp/lib/resultvalue.h"

#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/names.h"

namespace lisplib {

using lisp::LispValue;
using lisp::ListBuilder;

namespace {

LispValue pointValue(lisp::Vm& vm, const gds_point point) {
  LispValue list;
  for (int i = 3; i-- > 0;) list = vm.heap().cons(LispValue::real(point[i]), list);
  return list;
}

LispValue textValue(lisp::Vm& vm, const GCHAR* text) {
  return vm.heap().string(text == nullptr ? lisp::TextView() : lisp::TextView(text));
}

// Binary chunks show as hexadecimal digits.
LispValue binaryValue(lisp::Vm& vm, const gds_binary& chunk) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  lisp::Text text;
  for (int i = 0; i < chunk.clen; ++i) {
    const auto byte = static_cast<unsigned char>(chunk.buf[i]);
    text.push_back(static_cast<GCHAR>(kDigits[byte >> 4]));
    text.push_back(static_cast<GCHAR>(kDigits[byte & 15]));
  }
  return vm.heap().string(text);
}

LispValue nameValue(lisp::Vm& vm, const gds_name name) {
  auto* made = vm.heap().create<lisp::EntityName>(lisp::ObjectType::EntityName);
  made->id = wordOfGds(name);
  return LispValue::of(static_cast<lisp::Object*>(made));
}

// What a node holds, whatever its type or group code.
LispValue heldValue(lisp::Vm& vm, const resbuf& node) {
  switch (gcutRbKind(node.restype)) {
    case GcRbKind::Real: return LispValue::real(node.resval.rreal);
    case GcRbKind::Point: return pointValue(vm, node.resval.rpoint);
    case GcRbKind::Short: return LispValue::integer(node.resval.rint);
    case GcRbKind::Long: return LispValue::integer(node.resval.rlong);
    case GcRbKind::Int64: {
      const int64_t wide = node.resval.mnInt64;
      const bool fits = wide >= INT32_MIN && wide <= INT32_MAX;
      return fits ? LispValue::integer(static_cast<int32_t>(wide)) : LispValue::real(static_cast<double>(wide));
    }
    case GcRbKind::String:
    case GcRbKind::Handle: return textValue(vm, node.resval.rstring);
    case GcRbKind::Name: return nameValue(vm, node.resval.rlname);
    case GcRbKind::Binary: return binaryValue(vm, node.resval.rbinary);
    case GcRbKind::Nothing: return LispValue::nil();
  }
  return LispValue::nil();
}

}  // namespace

LispValue valueOfNode(lisp::Vm& vm, const resbuf& node) {
  if (node.restype < 5000) return vm.heap().cons(LispValue::integer(node.restype), heldValue(vm, node));
  switch (node.restype) {
    case RTT: return LispValue::t();
    case RTVOID: return LispValue::nullSymbol();
    case RTPICKS: return makeSet(vm, static_cast<ed::SetNumber>(node.resval.rlname[0]));
    default: return heldValue(vm, node);
  }
}

namespace {

// Whether one pair of brackets holds the whole chain.
bool isOneList(const resbuf* chain) {
  if (chain == nullptr || chain->restype != RTLB) return false;
  int depth = 0;
  for (const resbuf* node = chain; node != nullptr && node->restype != RTNONE; node = node->rbnext) {
    depth += node->restype == RTLB ? 1 : node->restype == RTLE ? -1 : 0;
    if (depth == 0) return node->rbnext == nullptr || node->rbnext->restype == RTNONE;
  }
  return false;
}

}  // namespace

LispValue listOfChain(lisp::Vm& vm, const resbuf* chain) {
  if (isOneList(chain)) chain = chain->rbnext;  // the bracket left at its end is passed over
  constexpr size_t kUsualDepth = 8;
  std::vector<ListBuilder> open;
  open.reserve(kUsualDepth);
  open.emplace_back(vm);
  bool dot = false;
  for (const resbuf* node = chain; node != nullptr && node->restype != RTNONE; node = node->rbnext) {
    if (node->restype == RTLB) {
      open.emplace_back(vm);
      continue;
    }
    if (node->restype == RTDOTE) {
      dot = true;
      continue;
    }
    LispValue value;
    if (node->restype == RTLE) {
      if (open.size() == 1) continue;
      value = open.back().list();
      open.pop_back();
    } else {
      value = valueOfNode(vm, *node);
    }
    if (dot)
      open.back().closeWith(value);
    else
      open.back().add(value);
    dot = false;
  }
  for (; open.size() > 1; open.pop_back()) open[open.size() - 2].add(open.back().list());
  return open[0].list();
}

LispValue entityListOfChain(lisp::Vm& vm, const resbuf* chain) {
  ListBuilder list(vm);
  const resbuf* node = chain;
  for (; node != nullptr && node->restype != -3; node = node->rbnext) list.add(valueOfNode(vm, *node));
  if (node == nullptr) return list.list();
  ListBuilder applications(vm);
  applications.add(LispValue::integer(-3));
  for (node = node->rbnext; node != nullptr;) {
    ListBuilder data(vm);
    if (node->restype == 1001) {
      data.add(heldValue(vm, *node));
      node = node->rbnext;
    }
    for (; node != nullptr && node->restype != 1001; node = node->rbnext) data.add(valueOfNode(vm, *node));
    applications.add(data.list());
  }
  list.add(applications.list());
  return list.list();
}

}  // namespace lisplib
