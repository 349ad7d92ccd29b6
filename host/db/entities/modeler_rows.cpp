#include "host/db/entities/modeler_rows.h"

#include <algorithm>
#include <string>

#include "host/db/entities/modeler_text.h"

namespace gcmodeler {

std::string textOf(const GcArray<GcDbModelerLine>& lines) {
  std::string text;
  for (const GcDbModelerLine& line : lines) {
    text += cipher(toUtf8(view(line.text)));
    for (const GcString& more : line.more) text += cipher(toUtf8(view(more)));
    text += '\n';
  }
  return text;
}

// In groups of at most 255 characters.
GcArray<GcDbModelerLine> linesOf(const std::vector<std::string>& text) {
  constexpr size_t kMostCharacters = 255;
  GcArray<GcDbModelerLine> lines;
  for (const std::string& plain : text) {
    const GcText enciphered = fromUtf8(cipher(plain));
    GcDbModelerLine line;
    line.text = GcString(enciphered.c_str(), std::min(enciphered.size(), kMostCharacters));
    for (size_t at = kMostCharacters; at < enciphered.size(); at += kMostCharacters)
      line.more.append(GcString(enciphered.c_str() + at, std::min(enciphered.size() - at, kMostCharacters)));
    lines.append(line);
  }
  return lines;
}

}  // namespace gcmodeler
