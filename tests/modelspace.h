// Drawings that tests fill.
#pragma once

#include <gtest/gtest.h>

#include "db/database.h"
#include "db/entity.h"
#include "db/symboltablerecord.h"

namespace gc::test {

// An entity into model space, closed.
inline GcDbObjectId append(GcDbDatabase& database, GcDbEntity* entity) {
  GcDbBlockTableRecord* space = nullptr;
  EXPECT_EQ(gcdbOpenObject(space, database.modelSpaceId(), GcDb::kForWrite), Gcad::eOk);
  GcDbObjectId id;
  EXPECT_EQ(space->appendGcDbEntity(id, entity), Gcad::eOk);
  EXPECT_EQ(entity->close(), Gcad::eOk);
  EXPECT_EQ(space->close(), Gcad::eOk);
  return id;
}

}  // namespace gc::test
