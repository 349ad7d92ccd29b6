// Texts that files have around or before parts of an object ("CONTEXT_DATA{", "}"): written as they are, dropped when
// they are read.
#pragma once

#include "host/db/describe/field.h"

template <int Code, const GCHAR* Text>
constexpr GcDbField word(const char* name) {
  GcDbField row;
  row.code = Code;
  row.name = name;
  row.isEcho = true;
  row.readsAnyway = true;
  row.at = gcdescribe::selfAt;
  row.get = [](const void*) { return GcDbGroup::ofText(Code, Text); };
  row.set = [](void*, const GcDbGroup&) { return true; };
  return row;
}
