// Objects of described classes as the groups a zombie keeps: without the groups all entities have, with those that no
// description knows. For files that have no form of their own for a class.
#pragma once

#include "host/db/objects/zombiedata.h"

class GcDbObject;

GcDbZombieData gcdbAsGroups(const GcDbObject& object);

// The way back. False when a group is none of the object's class; the object is then not to be used.
bool gcdbFromGroups(GcDbObject& object, const GcDbGroupList& groups);
