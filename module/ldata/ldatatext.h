// The text of one stored value, whoever stored it.
#pragma once

#include "module/app/host.h"

enum class LDataKind : uint8_t {
  Other,    // holds no text
  Own,      // a CKel_VL of this module
  Foreign,  // an object of the class named "vlo_VL", which another application writes
};

// By the object's class. The foreign class is told by its exact name, the own one by kind.
LDataKind ldataKind(const GcDbObject& object);

// The object's text; empty when it has none.  [object open for read]
//
// A foreign object keeps its real numbers apart from its text, which refers to them as "(&VLO-R . n)": n counts
// from the last number before the text backwards. Every reference is replaced by its number, printed with "%f".
GcString ldataText(const GcDbObject& object);
