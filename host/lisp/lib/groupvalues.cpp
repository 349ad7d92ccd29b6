#include "host/lisp/lib/groupvalues.h"

#include "host/db/core/handletext.h"
#include "host/lisp/core/error.h"
#include "host/lisp/lib/names.h"

namespace lisplib {

using lisp::LispValue;

namespace {

constexpr int kBeginsXData = -3;
constexpr int kApplication = 1001;

LispValue pointList(lisp::Vm& vm, const GcDbGroup& group) {
  LispValue list;
  if (group.kind == GcDbGroupKind::Point3d) list = vm.heap().cons(LispValue::real(group.point.z), list);
  list = vm.heap().cons(LispValue::real(group.point.y), list);
  return vm.heap().cons(LispValue::real(group.point.x), list);
}

LispValue hexText(lisp::Vm& vm, std::span<const uint8_t> bytes) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  lisp::Text text;
  for (const uint8_t byte : bytes) {
    text.push_back(static_cast<GCHAR>(kDigits[byte >> 4]));
    text.push_back(static_cast<GCHAR>(kDigits[byte & 15]));
  }
  return vm.heap().string(text);
}

LispValue valueOf(lisp::Vm& vm, const GcDbGroup& group) {
  switch (group.kind) {
    case GcDbGroupKind::Text: return vm.heap().string(group.text);
    case GcDbGroupKind::Real: return LispValue::real(group.real);
    case GcDbGroupKind::Point2d:
    case GcDbGroupKind::Point3d: return pointList(vm, group);
    case GcDbGroupKind::Id: return makeName(vm, group.id);
    case GcDbGroupKind::Binary: return hexText(vm, group.bytes);
    case GcDbGroupKind::Handle: return vm.heap().string(gcdbHandleText(static_cast<uint64_t>(group.integer)));
    default: break;
  }
  const bool fits = group.integer >= INT32_MIN && group.integer <= INT32_MAX;
  return fits ? LispValue::integer(static_cast<int32_t>(group.integer))
              : LispValue::real(static_cast<double>(group.integer));
}

// (code . value); the tail of a point is its coordinates, so that it reads (code x y z).
LispValue pairOf(lisp::Vm& vm, const GcDbGroup& group) {
  return vm.heap().cons(LispValue::integer(group.code), valueOf(vm, group));
}

[[noreturn]] void failGroup(lisp::Vm& vm, LispValue element) {
  lisp::fail("bad DXF group: " + lisp::toUtf8(vm.print(element, lisp::PrintStyle::Quoted)));
}

bool hexDigit(GCHAR unit, uint8_t& value) {
  const GCHAR upper = unit >= 'a' && unit <= 'f' ? static_cast<GCHAR>(unit - 32) : unit;
  if (upper >= '0' && upper <= '9')
    value = static_cast<uint8_t>(upper - '0');
  else if (upper >= 'A' && upper <= 'F')
    value = static_cast<uint8_t>(upper - 'A' + 10);
  else
    return false;
  return true;
}

bool bytesOf(lisp::TextView text, std::vector<uint8_t>& bytes) {
  if (text.size() % 2 != 0) return false;
  for (size_t i = 0; i < text.size(); i += 2) {
    uint8_t high = 0, low = 0;
    if (!hexDigit(text[i], high) || !hexDigit(text[i + 1], low)) return false;
    bytes.push_back(static_cast<uint8_t>(high * 16 + low));
  }
  return true;
}

// Takes a value of the kind the code's range tells; numbers of either kind serve each other.
bool takeValue(LispValue value, GcDbGroup& group, std::vector<uint8_t>& bytes) {
  switch (group.kind) {
    case GcDbGroupKind::Point2d:
    case GcDbGroupKind::Point3d: {
      double xyz[3];
      const int count = lisp::pointOf(value, xyz);
      group.kind = count == 2 ? GcDbGroupKind::Point2d : GcDbGroupKind::Point3d;
      group.point = {xyz[0], xyz[1], count == 2 ? 0 : xyz[2]};
      return count != 0;
    }
    case GcDbGroupKind::Real: group.real = value.isNumber() ? value.asDouble() : 0; return value.isNumber();
    case GcDbGroupKind::Text:
      if (value.isString()) group.text = value.asString()->view();
      return value.isString();
    case GcDbGroupKind::Handle:
      if (value.isString()) group.integer = static_cast<int64_t>(gcdbHandleValue(value.asString()->view()));
      return value.isString();
    case GcDbGroupKind::Id:  // lists give references to nothing as names of nothing
      return idOf(value, group.id) || lisp::objectOf<lisp::EntityName>(value, lisp::ObjectType::EntityName) != nullptr;
    case GcDbGroupKind::Binary:
      if (!value.isString() || !bytesOf(value.asString()->view(), bytes)) return false;
      group.bytes = bytes;
      return true;
    default:
      group.integer =
          value.isInteger() ? value.asInteger() : static_cast<int64_t>(value.isNumber() ? value.asReal() : 0);
      return value.isNumber();
  }
}

void putPair(lisp::Vm& vm, LispValue pair, GcDbGroupList& out) {
  if (!pair.isPair() || !pair.head().isInteger()) failGroup(vm, pair);
  const int code = pair.head().asInteger();
  if (code < -4 || code > 1071) failGroup(vm, pair);
  GcDbGroup group;
  group.code = static_cast<int16_t>(code);
  group.kind = code < 0 ? GcDbGroupKind::Id : code == 5 || code == 105 ? GcDbGroupKind::Text : gcdbKindOfCode(code);
  std::vector<uint8_t> bytes;
  if (!takeValue(pair.tail(), group, bytes)) failGroup(vm, pair);
  out.put(group);
}

// ("APP" (1000 . "x") …)
void putApplication(lisp::Vm& vm, LispValue application, GcDbGroupList& out) {
  if (!application.isPair() || !application.head().isString()) failGroup(vm, application);
  out.put(GcDbGroup::ofText(kApplication, application.head().asString()->view()));
  for (LispValue rest = application.tail(); rest.isPair(); rest = rest.tail()) putPair(vm, rest.head(), out);
}

}  // namespace

void GroupValues::endApplication() {
  if (m_application.empty()) return;
  lisp::ListBuilder list(m_vm);
  for (const LispValue value : m_application) list.add(value);
  m_applications.push_back(list.list());
  m_application.clear();
}

void GroupValues::put(const GcDbGroup& group) {
  if (group.code == kBeginsXData) {
    m_inXData = true;
  } else if (!m_inXData) {
    m_list.add(pairOf(m_vm, group));
  } else if (group.code == kApplication) {
    endApplication();
    m_application.push_back(m_vm.heap().string(group.text));
  } else {
    m_application.push_back(pairOf(m_vm, group));
  }
}

LispValue GroupValues::list() {
  endApplication();
  if (m_inXData) {
    lisp::ListBuilder data(m_vm);
    data.add(LispValue::integer(kBeginsXData));
    for (const LispValue application : m_applications) data.add(application);
    m_list.add(data.list());
    m_inXData = false;
    m_applications.clear();
  }
  return m_list.list();
}

GcDbGroupList groupsOf(lisp::Vm& vm, LispValue list) {
  GcDbGroupList out;
  LispValue xdata;
  for (; list.isPair(); list = list.tail()) {
    const LispValue element = list.head();
    if (element.isPair() && element.head().isInteger() && element.head().asInteger() == kBeginsXData)
      xdata = element.tail();
    else
      putPair(vm, element, out);
  }
  if (xdata.isPair()) out.put(GcDbGroup::ofText(kBeginsXData, {}));  // last, wherever it stood
  for (; xdata.isPair(); xdata = xdata.tail()) putApplication(vm, xdata.head(), out);
  return out;
}

}  // namespace lisplib
