// A body moved without its modeller: files have a record "transform" between a body and the space it stands in, which is
// made or changed; the geometry stays as the modeller wrote it.
//
//   text   transform $-1 -1 rotation by rows │ move │ scale │ rotate, reflect, shear or no_… #
//   bytes  the same words as one long text
//
// Points are rows: p' = p · rotation · scale + move.
// System:  world.
// Source:  the published description of the text; what independent readers of the bytes found.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ge/matrix3d.h"

namespace gcmodeler {

// The lines of a text, deciphered. False, and nothing changed, for one that has no body, numbers its records or keeps
// the body's history. The matrix moves, turns, mirrors and scales alike in all directions.
bool moveText(std::vector<std::string>& lines, const GcGeMatrix3d& matrix);
// The same for bytes.
bool moveBinary(std::string& bytes, const GcGeMatrix3d& matrix);

}  // namespace gcmodeler
