// Conversions between UTF-8 (terminal, scripts, logs, drawings from 2007 on) and the UTF-16 used inside.
// Lossless both ways: a byte that belongs to no well-formed UTF-8 sequence becomes the lone low surrogate
// U+DC80 + (byte - 0x80), and such a surrogate becomes that byte again. Other lone surrogates have no UTF-8 form
// and come out as U+FFFD.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/rx/view.h"

namespace gc {

// How many of the first bytes (units) are ASCII.
[[nodiscard]] std::size_t asciiPrefix(std::string_view bytes);
[[nodiscard]] std::size_t asciiPrefix(GcView text);

// Appends to `out`. False when some bytes were not well-formed UTF-8 (they are kept as described above).
bool appendFromUtf8(std::string_view bytes, GcText& out);

// Appends to `out`. False when a surrogate stood alone.
bool appendToUtf8(GcView text, std::string& out);

[[nodiscard]] GcText fromUtf8(std::string_view bytes);
[[nodiscard]] std::string toUtf8(GcView text);

// True when all bytes are well-formed UTF-8 (no over-long forms, no surrogates, nothing above U+10FFFF).
[[nodiscard]] bool isUtf8(std::string_view bytes);

// A byte that no code page explains, carried through UTF-16 and back.
constexpr GCHAR strayByte(unsigned char byte) { return static_cast<GCHAR>(0xDC00 + byte); }
constexpr bool isStrayByte(GCHAR unit) { return unit >= 0xDC80 && unit <= 0xDCFF; }
constexpr bool isHighSurrogate(GCHAR unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool isLowSurrogate(GCHAR unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

}  // namespace gc
