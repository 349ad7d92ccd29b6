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

 private:
  struct Known {
    std::string dxfName;
    GcRxClass* found;
    bool ambiguous;
    std::string lastMarker;  // of an ambiguous name: the marker found last and its class
    GcRxClass* lastOfMarker;
  };
  Known& known(std::string_view dxfName);
  static GcRxClass* byMarkers(const RawRecord& record, Known& entry);

  const LoadContext& m_context;
  std::vector<Known> m_known;
  std::size_t m_last = 0;
};

}  // namespace gc::dxf
