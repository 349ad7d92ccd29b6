// The word Undo within a command: what each of its steps has changed, taken back one by one.
#pragma once

#include <vector>

#include "db/database.h"
#include "host/db/core/undo.h"

namespace ed {

class StepUndo {
 public:
  explicit StepUndo(GcDbDatabase& database) : m_undo(database.undo()) {}
  ~StepUndo() {
    for (size_t i = m_starts.size(); i > 0; --i) m_undo.endTransaction();
  }
  StepUndo(const StepUndo&) = delete;
  StepUndo& operator=(const StepUndo&) = delete;

  // What changes from here on is one step.
  void begin() { m_starts.push_back(m_undo.beginTransaction()); }
  // The step came to nothing: it needs no Undo.
  void drop() {
    m_undo.endTransaction();
    m_starts.pop_back();
  }
  // Takes the last step back; false when there is none.
  bool back() {
    if (m_starts.empty()) return false;
    m_undo.abortTransaction(m_starts.back());
    m_starts.pop_back();
    return true;
  }

 private:
  GcDbUndo& m_undo;
  std::vector<size_t> m_starts;
};

}  // namespace ed
