// New entities in the current space.
#pragma once

#include "host/ed/editor.h"

namespace ed {

// Gives the entity the drawing's current layer, colour, linetype, scale and weight, and appends it to the current
// space. Takes the entity over. A null id when the space refuses it.
GcDbObjectId appendWithDefaults(Editor& editor, GcDbEntity* entity);
// The same for an entity made in user coordinates.
GcDbObjectId appendFromUser(Editor& editor, GcDbEntity* entity);

// Erases an entity; nothing happens when it cannot be opened.
void eraseEntity(GcDbObjectId id);
// Transforms entities (world coordinates), passing over those that cannot be opened or refuse.
void transformEntities(const std::vector<GcDbObjectId>& ids, const GcGeMatrix3d& matrix);
// Copies entities within their space, in order.
std::vector<GcDbObjectId> copyEntities(Editor& editor, const std::vector<GcDbObjectId>& ids);

// Puts simpler entities in the place of each that can be taken apart. False when none could.
bool explodeEntities(Editor& editor, const std::vector<GcDbObjectId>& ids);
// Makes (or redefines) a block of entities, which move into it. World coordinates.
bool defineBlock(Editor& editor, GcView name, const GcGePoint3d& base, const std::vector<GcDbObjectId>& ids);

}  // namespace ed
