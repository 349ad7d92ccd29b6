// Groups as LISP values: (code . value) pairs, (code x y z) points, and back.
#pragma once

#include "host/db/describe/group.h"
#include "host/lisp/core/args.h"
#include "host/lisp/core/vm.h"

namespace lisplib {

// Collects groups into a list of pairs; extended data becomes (-3 ("APP" (1000 . "x") …) …).
class GroupValues final : public GcDbGroupSink {
 public:
  explicit GroupValues(lisp::Vm& vm) : m_vm(vm), m_list(vm) {}
  void put(const GcDbGroup& group) override;
  lisp::LispValue list();

 private:
  void endApplication();

  lisp::Vm& m_vm;
  lisp::ListBuilder m_list;
  std::vector<lisp::LispValue> m_applications;  // of the extended data, each a finished list
  std::vector<lisp::LispValue> m_application;   // name and values of the one under way
  bool m_inXData = false;
};

// The groups of a list; raises "bad DXF group: …" for an element that is none.
GcDbGroupList groupsOf(lisp::Vm& vm, lisp::LispValue list);

}  // namespace lisplib
