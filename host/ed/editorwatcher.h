// What happens in an editor, told to those who watch it.
#pragma once

#include <cstdint>
#include <vector>

#include "host/rx/view.h"

namespace ed {

enum class Happening : uint8_t {
  CommandStarts,  // the subject of these is the command's name
  CommandEnded,
  CommandCancelled,
  CommandFailed,
  CommandUnknown,
  VariableChanges,  // the variable's name
  VariableChanged,
  VariableRefused,
  SaveBegins,  // the file's name
  SaveEnded,
};

class EditorWatcher {
 public:
  // May run commands and set variables of its own.
  virtual void happened(Happening what, GcView subject) = 0;

 protected:
  ~EditorWatcher() = default;
};

class EditorWatchers {
 public:
  void add(EditorWatcher* watcher);
  void remove(EditorWatcher* watcher);
  void tell(Happening what, GcView subject) const {
    if (!m_watchers.empty()) tellAll(what, subject);
  }

 private:
  void tellAll(Happening what, GcView subject) const;
  std::vector<EditorWatcher*> m_watchers;
};

}  // namespace ed
