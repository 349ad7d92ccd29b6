// Which class an object of a file belongs to.
#pragma once

#include <string>
#include <vector>

#include "host/dxf/read/record_reader.h"
#include "rx/rxclass.h"

namespace gc::dxf {

class ClassFinder {
 public:
  explicit ClassFinder(const LoadContext& context) : m_context(context) {}

  // The class of a record: by its DXF name, by the C++ name the file's CLASSES section gives for it, and, where one DXF
  // name stands for several classes (polylines, vertices, inserts, dimensions), by its subclass markers or, in files before
  // them, its flags. Null when no such class is loaded.
  GcRxClass* find(const RawRecord& record);

  // Whether the file describes the record's class as one of entities.
  [[nodiscard]] bool isEntityClass(std::string_view dxfName) const;

 private:
  struct Known {
    std::string dxfName;
    GcRxClass* found;
    bool ambiguous;
  };
  const Known& known(std::string_view dxfName);

  const LoadContext& m_context;
  std::vector<Known> m_known;
  std::size_t m_last = 0;
};

}  // namespace gc::dxf
