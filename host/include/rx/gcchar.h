// The 16-bit character of the whole system: UTF-16 code units everywhere inside.
// ELF has no 16-bit wchar_t and Windows wants none other, so the type follows the platform.
// Literals: GC_T("text"). GC_T pastes after expanding, so GC_T(MACRO) works too.
#pragma once

#ifdef _WIN32
using GCHAR = wchar_t;
#define GC_T_(x) L##x
#else
using GCHAR = char16_t;
#define GC_T_(x) u##x
#endif
#define GC_T(x) GC_T_(x)

static_assert(sizeof(GCHAR) == 2, "host strings are UTF-16");
