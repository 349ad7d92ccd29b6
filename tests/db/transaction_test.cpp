// Transactions: what stands, what falls, what is closed.
#include "db/transaction.h"

#include <gtest/gtest.h>

#include "db/database.h"
#include "db/line.h"
#include "host/db/core/store.h"
#include "host/db/core/undo.h"

namespace {

class Transactions : public testing::Test {
 protected:
  GcDbObjectId addLine() {
    GcDbBlockTableRecord* space = nullptr;
    EXPECT_EQ(gcdbOpenObject(space, database.modelSpaceId(), GcDb::kForWrite), Gcad::eOk);
    auto* line = new GcDbLine({0, 0, 0}, {1, 0, 0});
    GcDbObjectId id;
    EXPECT_EQ(space->appendGcDbEntity(id, line), Gcad::eOk);
    EXPECT_EQ(space->close(), Gcad::eOk);
    EXPECT_EQ(line->close(), Gcad::eOk);
    return id;
  }
  void moveEnd(GcDbObjectId id, double x) {
    GcDbLine* line = nullptr;
    ASSERT_EQ(manager.getObject(line, id, GcDb::kForWrite), Gcad::eOk);
    EXPECT_EQ(line->setEndPoint({x, 0, 0}), Gcad::eOk);
  }
  double endOf(GcDbObjectId id) {
    GcDbLine* line = nullptr;
    EXPECT_EQ(gcdbOpenObject(line, id, GcDb::kForRead), Gcad::eOk);
    const double x = line->endPoint().x;
    EXPECT_EQ(line->close(), Gcad::eOk);
    return x;
  }
  GcDbDatabase database;
  GcDbTransactionManager& manager = *database.transactionManager();
};

TEST_F(Transactions, EndKeepsAndClosesAbortRestores) {
  const GcDbObjectId id = addLine();
  manager.startTransaction();
  moveEnd(id, 5);
  EXPECT_EQ(database.store().openCount(), 1);
  EXPECT_EQ(manager.endTransaction(), Gcad::eOk);
  EXPECT_EQ(database.store().openCount(), 0);
  EXPECT_EQ(endOf(id), 5);

  manager.startTransaction();
  moveEnd(id, 7);
  const GcDbObjectId fresh = addLine();
  EXPECT_EQ(manager.abortTransaction(), Gcad::eOk);
  EXPECT_EQ(endOf(id), 5);
  EXPECT_TRUE(fresh.isErased());
  EXPECT_EQ(manager.abortTransaction(), Gcad::eNoActiveTransactions);
}

TEST_F(Transactions, AnInnerAbortLeavesTheOuterChanges) {
  const GcDbObjectId a = addLine(), b = addLine();
  manager.startTransaction();
  moveEnd(a, 2);
  manager.startTransaction();
  moveEnd(b, 3);
  EXPECT_EQ(manager.numActiveTransactions(), 2);
  EXPECT_EQ(manager.abortTransaction(), Gcad::eOk);
  EXPECT_EQ(manager.endTransaction(), Gcad::eOk);
  EXPECT_EQ(endOf(a), 2);
  EXPECT_EQ(endOf(b), 1);
}

TEST_F(Transactions, AnInnerAbortRestoresWhatTheOuterHolds) {
  const GcDbObjectId id = addLine();
  manager.startTransaction();
  moveEnd(id, 2);
  manager.startTransaction();
  moveEnd(id, 3);
  EXPECT_EQ(manager.abortTransaction(), Gcad::eOk);
  EXPECT_EQ(manager.endTransaction(), Gcad::eOk);
  EXPECT_EQ(endOf(id), 2);
}

TEST_F(Transactions, ReadMayBecomeWrite) {
  const GcDbObjectId id = addLine();
  manager.startTransaction();
  GcDbLine* line = nullptr;
  ASSERT_EQ(manager.getObject(line, id, GcDb::kForRead), Gcad::eOk);
  EXPECT_FALSE(line->isWriteEnabled());
  moveEnd(id, 4);
  EXPECT_EQ(manager.endTransaction(), Gcad::eOk);
  EXPECT_EQ(endOf(id), 4);
}

TEST_F(Transactions, OneEndedTransactionIsOneUndoStep) {
  const GcDbObjectId id = addLine();
  database.undo().setOn(true);
  manager.startTransaction();
  moveEnd(id, 8);
  addLine();
  EXPECT_EQ(manager.endTransaction(), Gcad::eOk);
  EXPECT_EQ(database.undo().undoable(), 1);
  EXPECT_EQ(database.undo().undo(1), 1);
  EXPECT_EQ(endOf(id), 1);
}

}  // namespace
