// The space that a new entity goes to, and the one operation that puts it there.
#pragma once

#include <memory>

#include "module/app/argreader.h"
#include "module/app/openptr.h"
#include "module/app/results.h"

namespace space {

enum class Space : uint8_t { Neither, Model, Paper };

// Exactly "ModelSpace" or "PaperSpace".
Space exact(const GCHAR* name);
// Without "*" and "_" and in upper case "MODELSPACE" or "PAPERSPACE", so "*Model_Space" too.
Space normalised(const GCHAR* name);

// Reads the first argument as an exact space name; any other name is a wrong argument.
Space read(ArgReader& args);

// The block of the space: "*Model_Space", or "*Paper_Space", which is the current layout's; null for neither.
const GCHAR* blockName(Space space);

}  // namespace space

// Appends a new entity to a block of the working database and closes it. The entity stays the caller's when this
// fails before the entity is in the block, and is the database's afterwards.
// Errors: eNoDatabase, eKeyNotFound, those of opening and appending, that of the closing. The block table stays open
// after eKeyNotFound and when the block cannot be opened.
Gcad::ErrorStatus appendTo(const GCHAR* blockName, GcDbEntity* entity);

// Appends to the space's block and answers with the new entity's name; nil with RTERROR when it is refused (the
// entity is then freed).
int appendAndAnswer(space::Space space, std::unique_ptr<GcDbEntity> entity);
