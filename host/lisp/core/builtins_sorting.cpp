// vl-sort, vl-sort-i, acad_strlsort.
// The sort is a bottom-up merge sort that stops at each comparison to let the evaluator call the program's function:
// it makes few comparisons, is stable, and ends whatever the function answers.
#include <algorithm>
#include <vector>

#include "host/lisp/core/builtin.h"
#include "host/lisp/core/numbers.h"
#include "host/lisp/core/vm.h"

LISP_GROUP("Lists")

namespace lisp {

namespace {

// A merge sort of indices, driven comparison by comparison.
class MergeSort {
 public:
  explicit MergeSort(uint32_t count) : m_from(count), m_to(count) {
    for (uint32_t i = 0; i < count; ++i) m_from[i] = i;
    startRun();
  }

  // The two indices whose order is wanted next: whether `second` comes before `first`. False when sorted.
  bool next(uint32_t& first, uint32_t& second) {
    for (;;) {
      if (m_left < m_middle && m_right < m_end) {
        first = m_from[m_left];
        second = m_from[m_right];
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
  const std::vector<uint32_t>& order() const { return m_from; }

 private:
  void startRun() {
    const auto size = m_from.size();
    m_left = m_end;
    m_middle = m_right = std::min(m_left + m_width, size);
    m_end = std::min(m_middle + m_width, size);
  }

  std::vector<uint32_t> m_from, m_to;
  size_t m_width = 1, m_left = 0, m_middle = 0, m_right = 0, m_end = 0, m_out = 0;
};

// The elements (kept alive by the list they come from) and the sort under way.
struct SortJob {
  std::vector<LispValue> items;
  MergeSort sort;
  explicit SortJob(std::vector<LispValue> elements)
      : items(std::move(elements)), sort(static_cast<uint32_t>(items.size())) {}
};

const OpaqueType kSortJobType = {"SORT", [](uint64_t, Text&) {},
                                 [](uint64_t payload) { delete reinterpret_cast<SortJob*>(payload); }};

LispValue newJob(Vm& vm, LispValue list) {
  std::vector<LispValue> items;
  for (; list.isPair(); list = list.tail()) items.push_back(list.head());
  auto* opaque = vm.heap().create<Opaque>(ObjectType::Opaque);
  opaque->kind = &kSortJobType;
  opaque->payload = reinterpret_cast<uint64_t>(new SortJob(std::move(items)));
  return LispValue::of(static_cast<Object*>(opaque));
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
  native.state() = 1;
  uint32_t first = 0, second = 0;
  if (job.items.size() < 2 || !job.sort.next(first, second)) {
    const LispValue sorted = result(vm, job);
    opaque->kind->release(opaque->payload);
    opaque->payload = 0;
    return native.done(sorted);
  }
  native.push(job.items[second]);
  native.push(job.items[first]);
  return native.call(native.slot(1), 2);
}

LispValue sortedItems(Vm& vm, const SortJob& job) {
  ListBuilder out(vm);
  LispValue previous;
  bool first = true;
  for (const uint32_t index : job.sort.order()) {
    const LispValue item = job.items[index];
    if (first || !merges(item, previous)) out.add(item);
    previous = item;
    first = false;
  }
  return out.list();
}

LispValue sortedIndices(Vm& vm, const SortJob& job) {
  ListBuilder out(vm);
  for (const uint32_t index : job.sort.order()) out.add(LispValue::integer(static_cast<int32_t>(index)));
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
