// Plane areas as the text ("SAT") or the bytes ("SAB") a solid modeller saves, and back.
// System:  world. A loop's path runs with the area on its left seen against the normal.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/ge/curves/path.h"

namespace gcmodeler {

// Loops that run counter-clockwise about the normal are outlines, the others holes in them.
struct PlaneArea {
  GcGeVector3d normal = GcGeVector3d::kZAxis;
  std::vector<GcGePath> loops;
};

// The lines of a body of sheets, one for each outline with its holes.
std::vector<std::string> write(const PlaneArea& area);

// The first plane face of a body and all others in its plane. False for a text that has none, or edges of kinds other than straight lines, arcs of
// ellipses and splines. Reads the forms of all versions of the text.
bool read(std::string_view text, PlaneArea& area);

// The same as bytes, of the version that drawings have had since 2013.
std::string writeBinary(const PlaneArea& area);
// Bytes of any version. False where read() of the text would be, and for damaged ones.
bool readBinary(std::string_view bytes, PlaneArea& area);
// The text that says the same as the bytes of any version, but for words that bytes have not (`read` and `edgesOf` do
// not look at them). False for damaged bytes.
bool textOfBinary(std::string_view bytes, std::string& text);
// How many of the bytes belong to the body they begin with; 0 when they begin with none, or it has no end.
size_t binarySize(std::string_view bytes);
// The number of the modeller's version that bytes begin with (20800, say); 0 for none.
int binaryVersion(std::string_view bytes);

// Files keep the text enciphered; the same call deciphers it.
std::string cipher(std::string_view line);

}  // namespace gcmodeler
