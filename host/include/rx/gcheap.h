// Memory that crosses the edge between host and plug-in: allocated and freed in one place.
#pragma once

#include <cstddef>

#include "rx/gcchar.h"
#include "rx/gcstatus.h"

void* gcHeapAlloc(std::size_t size) noexcept;  // null when memory is exhausted
// Another size for what gcHeapAlloc gave (null is fine), its contents kept; null when memory is exhausted, and then
// the old memory stays. Only for contents that may be moved bytewise.
void* gcHeapResize(void* memory, std::size_t size) noexcept;
void gcHeapFree(void* memory) noexcept;  // null is fine

// A fresh copy of a zero-terminated string, to be freed with gcutDelBuffer. A null input gives a null
// output and eOk.  Errors: eOutOfMemory (output is then untouched).
Gcad::ErrorStatus gcutNewString(const GCHAR* input, GCHAR*& output);

// Frees what gcutNewString gave and clears the pointer. Null is fine.
void gcutDelBuffer(GCHAR*& buffer);
