// vl-sort, vl-sort-i, acad_strlsort.
// The sort is a bottom-up merge sort that stops at each comparison to let the evaluator call the program's function:
// it makes few comparisons, is stable, and ends whatever the function answers.
#include <algorithm>
#include <cmath>
#include <vector>

#include "host/lisp/core/builtin.h"
#include "host/lisp/core/numbers.h"
#include "host/lisp/core/vm.h"

LISP_GROUP("Lists")

namespace lisp {

namespace {

// An element and its place in the list. They move together, so that merging reads memory in order.
struct SortItem {
  LispValue value;  // kept alive by the list it comes from
  uint32_t index;
};

// A merge sort, driven comparison by comparison.
class MergeSort {
 public:
  explicit MergeSort(std::vector<SortItem> items) : m_from(std::move(items)), m_to(m_from.size()) { startRun(); }

  // The two elements whose order is wanted next: whether `second` comes before `first`. False when sorted.
  bool next(LispValue& first, LispValue& second) {
    for (;;) {
      if (m_left < m_middle && m_right < m_end) {
        first = m_from[m_left].value;
        second = m_from[m_right].value;
        return true;
      }
      while (m_left < m_middle) m_to[m_out++] = m_from[m_left++];
      while (m_right < m_end) m_to[m_out++] = m_from[m_right++];
      if (m_end < m_from.size()) {
        startRun();
        continue;
      }
      m_from.swap(m_to);
      m_width *= 2;
      if (m_width >= m_from.size()) return false;
      m_out = m_end = 0;
      startRun();
    }
  }
  void answer(bool secondFirst) { m_to[m_out++] = secondFirst ? m_from[m_right++] : m_from[m_left++]; }
  [[nodiscard]] const std::vector<SortItem>& order() const { return m_from; }
  // For orders the sort can find alone.
  template <class Before>
  void sortBy(const Before& before) {
    std::stable_sort(m_from.begin(), m_from.end(),
                     [&](const SortItem& a, const SortItem& b) { return before(a.value, b.value); });
  }

 private:
  void startRun() {
    const auto size = m_from.size();
    m_left = m_end;
    m_middle = m_right = std::min(m_left + m_width, size);
    m_end = std::min(m_middle + m_width, size);
  }

  std::vector<SortItem> m_from, m_to;
  size_t m_width = 1, m_left = 0, m_middle = 0, m_right = 0, m_end = 0, m_out = 0;
};

struct SortJob {
  MergeSort sort;
};

const OpaqueType kSortJobType = {"SORT", [](uint64_t, Text&) {},
                                 [](uint64_t payload) { delete reinterpret_cast<SortJob*>(payload); }};

LispValue newJob(Vm& vm, LispValue list) {
  std::vector<SortItem> items;
  for (; list.isPair(); list = list.tail()) items.push_back({list.head(), static_cast<uint32_t>(items.size())});
  auto* opaque = vm.heap().create<Opaque>(ObjectType::Opaque);
  opaque->kind = &kSortJobType;
  opaque->payload = reinterpret_cast<uint64_t>(new SortJob{MergeSort(std::move(items))});
  return LispValue::of(static_cast<Object*>(opaque));
}

// Numbers without NaN, or texts: what the builtins < and > order without being called.
bool isOrdered(const std::vector<SortItem>& items) {
  const auto all = [&](auto is) { return std::all_of(items.begin(), items.end(), is); };
  return all([](const SortItem& i) { return i.value.isNumber() && !std::isnan(i.value.asDouble()); }) ||
         all([](const SortItem& i) { return i.value.isString(); });
}

bool isBefore(LispValue a, LispValue b) {
  return a.isString() ? a.asString()->view() < b.asString()->view() : a.asDouble() < b.asDouble();
}

// Sorts at once when the function is the builtin < or > and the elements are of one kind. False otherwise.
bool sortAlone(Vm& vm, LispValue function, MergeSort& sort) {
  if (function.isCellSymbol()) function = function.asSymbol()->value;
  const Subr* subr = function.isObject() ? objectOf<Subr>(function, ObjectType::Subr) : nullptr;
  if (subr == nullptr || !isOrdered(sort.order())) return false;
  if (subr->name == vm.symbols().intern("<"))
    sort.sortBy(isBefore);
  else if (subr->name == vm.symbols().intern(">"))
    sort.sortBy([](LispValue a, LispValue b) { return isBefore(b, a); });
  else
    return false;
  return true;
}

// Integers and symbols that are the same are kept once.
bool merges(LispValue a, LispValue b) { return a == b && (a.isInteger() || a.isSymbol()); }

// Slots: 0 list, 1 function; extra 0: the job.
StepResult sortStep(Native& native, LispValue (*result)(Vm&, const SortJob&)) {
  Vm& vm = native.vm();
  if (native.state() == 0) {
    if (!native.slot(0).isList()) failType(vm, kListp, native.slot(0));
    native.extra(0) = newJob(vm, native.slot(0));
  }
  auto* opaque = objectOf<Opaque>(native.extra(0), ObjectType::Opaque);
  auto& job = *reinterpret_cast<SortJob*>(opaque->payload);
  if (native.state() == 1) job.sort.answer(static_cast<bool>(native.result()));
  const bool alone = native.state() == 0 && sortAlone(vm, native.slot(1), job.sort);
  native.state() = 1;
  LispValue first, second;
  if (alone || job.sort.order().size() < 2 || !job.sort.next(first, second)) {
    const LispValue sorted = result(vm, job);
    opaque->kind->release(opaque->payload);
    opaque->payload = 0;
    return native.done(sorted);
  }
  native.push(second);
  native.push(first);
  return native.call(native.slot(1), 2);
}

LispValue sortedItems(Vm& vm, const SortJob& job) {
  ListBuilder out(vm);
  LispValue previous;
  bool first = true;
  for (const SortItem& item : job.sort.order()) {
    if (first || !merges(item.value, previous)) out.add(item.value);
    previous = item.value;
    first = false;
  }
  return out.list();
}

LispValue sortedIndices(Vm& vm, const SortJob& job) {
  ListBuilder out(vm);
  for (const SortItem& item : job.sort.order()) out.add(LispValue::integer(static_cast<int32_t>(item.index)));
  return out.list();
}

}  // namespace

LISP_NATIVE("vl-sort", "(vl-sort list function) -> list",
            "The elements in the order of the function; equal integers or symbols are kept once.", 1) {
  return sortStep(native, sortedItems);
}

LISP_NATIVE("vl-sort-i", "(vl-sort-i list function) -> list",
            "The indices of the elements in the order of the function.", 1) {
  return sortStep(native, sortedIndices);
}

LISP_BUILTIN("acad_strlsort", "(acad_strlsort strings) -> list",
             "The strings in alphabetical order, case aside at first.") {
  std::vector<LispValue> items;
  for (LispValue rest = args.list(); rest.isPair(); rest = rest.tail()) {
    if (!rest.head().isString()) failType(args.vm(), kStringp, rest.head());
    items.push_back(rest.head());
  }
  std::stable_sort(items.begin(), items.end(), [](LispValue a, LispValue b) {
    const TextView x = a.asString()->view(), y = b.asString()->view();
    const Text u = upperCase(x), v = upperCase(y);
    return u != v ? u < v : x < y;
  });
  ListBuilder out(args.vm());
  for (const LispValue item : items) out.add(item);
  return out.list();
}

}  // namespace lisp
