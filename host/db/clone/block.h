// Block definitions to be filled: a new one, or an existing one emptied of its entities.
#pragma once

#include "db/database.h"

// The block of the name, open for write. Errors: eInvalidInput for a name no block may have.
Gcad::ErrorStatus gcdbNeedEmptyBlock(GcDbDatabase& database, const GCHAR* name, GcDbBlockTableRecord*& block);
