// Selection sets by the names that plug-ins hold.
#pragma once

#include "host/ap/docmanager.h"
#include "host/ed/editor.h"
#include "rx/resbuf.h"

// The set of the current document; null when the name is none of a set.
inline const ed::SelectionSet* gcedSetOf(const gds_name name) {
  const ap::Document* document = ap::currentDocument();
  if (document == nullptr) return nullptr;
  return ed::editorOf(*document).sets().find(static_cast<ed::SetNumber>(name[0]));
}
