#include "host/lisp/lib/drawingenvironment.h"

#include <cstring>

#include "host/ap/paths.h"
#include "host/ap/profile.h"
#include "host/db/core/header.h"

namespace lisplib {

int DrawingEnvironment::unitVariable(const char* name) const {
  GcText key(1, GC_T('$'));
  key.append(name, name + std::strlen(name));
  return static_cast<int>(m_editor.database().header().integer(key, lisp::Environment::unitVariable(name)));
}

double DrawingEnvironment::angleBase() const { return m_editor.database().header().real(GC_T("$ANGBASE"), 0.0); }

lisp::Text DrawingEnvironment::findFile(lisp::TextView name) const {
  return ap::findSupportFile(name, ap::directoryOf(m_editor.document().fileName()));
}

bool DrawingEnvironment::getEntry(lisp::TextView name, lisp::Text& value) const {
  return ap::profileEntry(name, value);
}

void DrawingEnvironment::setEntry(lisp::TextView name, lisp::TextView value) { ap::setProfileEntry(name, value); }

}  // namespace lisplib
