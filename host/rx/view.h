// String views and hashing for the host's own use: nothing of this crosses the edge.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "rx/gcchar.h"
#include "rx/gcstring.h"

using GcView = std::basic_string_view<GCHAR>;
using GcText = std::basic_string<GCHAR>;

inline GcView view(const GcString& text) { return {text.c_str(), text.length()}; }
inline GcView view(const GCHAR* text) { return text == nullptr ? GcView() : GcView(text); }
inline GcString toGcString(GcView text) { return {text.data(), text.size()}; }

// Simple upper-case mapping of one UTF-16 unit: Latin, Greek, Cyrillic; others stay.
GCHAR gcUpper(GCHAR unit);
GCHAR gcLower(GCHAR unit);

bool equalNoCase(GcView a, GcView b);
GcText upperText(GcView text);

// Hash that does not see letter case, for names of records.
uint64_t hashNoCase(GcView text);

std::string toUtf8(GcView text);         // lone surrogates become U+FFFD
GcText fromUtf8(std::string_view text);  // broken bytes become U+FFFD
