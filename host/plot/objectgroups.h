// What an object's description says of it, by group code: for the few values pictures need of classes that have no
// accessor for them.
#pragma once

#include <vector>

#include "host/db/describe/group.h"

namespace gc::plot {

class ObjectGroups {
 public:
  // Opens the object for read while it is read; nothing is found in one that cannot be opened.
  explicit ObjectGroups(GcDbObjectId id);

  [[nodiscard]] bool isEmpty() const { return m_values.empty(); }
  // The index-th value of the code behind the subclass marker (any, when null).
  [[nodiscard]] double real(int code, double otherwise, const char* subclass = nullptr, int index = 0) const;
  [[nodiscard]] int64_t integer(int code, int64_t otherwise, const char* subclass = nullptr, int index = 0) const;
  [[nodiscard]] GcText text(int code, const char* subclass = nullptr, int index = 0) const;
  [[nodiscard]] GcGePoint3d point(int code, const GcGePoint3d& otherwise, const char* subclass = nullptr) const;
  [[nodiscard]] GcDbObjectId id(int code, const char* subclass = nullptr, int index = 0) const;
  [[nodiscard]] int count(int code, const char* subclass = nullptr) const;

 private:
  struct Value {
    GcDbGroup group;
    GcText text;
    GcText section;
  };
  class Collector;
  [[nodiscard]] const Value* find(int code, const char* subclass, int index) const;

  std::vector<Value> m_values;
};

}  // namespace gc::plot
