// The platform's knowledge of the East Asian double-byte pages (932, 936, 949, 950, 1361).
#pragma once

#include "host/rx/text/code_page.h"

namespace gc::platform {

// Decodes all sequences of one byte 0x80..0xFF and of two bytes with such a lead, and calls
// `found(context, lead, trail, character)` for each that stands for a single character of the basic plane;
// `trail` is -1 for a single byte. False when the platform does not know the page.
using FoundCharacter = void (*)(void* context, int lead, int trail, char16_t character);
bool listDoubleByte(CodePage page, FoundCharacter found, void* context);

}  // namespace gc::platform
