// Shared libraries opened at run time: the one place that knows the platform's calls for it.
#pragma once

#include <string>

#include "host/rx/view.h"

namespace ap {

class Library {
 public:
  Library() = default;
  ~Library() { close(); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  // An absolute path. False with the system's reason.
  bool open(GcView path, GcText& reason);
  void close();
  [[nodiscard]] void* symbol(const char* name) const;

 private:
  void* m_handle = nullptr;
};

// The directory of the running program, without a separator at its end.
GcText programDirectory();

}  // namespace ap
