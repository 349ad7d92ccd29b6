// What has changed in a drawing since it was last asked: listens to the database, keeps ids, looks at nothing else.
#pragma once

#include <unordered_set>
#include <vector>

#include "db/database.h"

namespace cli::page {

class Changes final : public GcDbDatabaseReactor {
 public:
  Changes() = default;
  ~Changes() override { listenTo(nullptr); }
  Changes(const Changes&) = delete;
  Changes& operator=(const Changes&) = delete;

  // Null for none.
  void listenTo(GcDbDatabase* database);
  [[nodiscard]] GcDbDatabase* database() const { return m_database; }

  // Entities that stand in a block by themselves (not their vertices and attributes), in no order.
  std::vector<GcDbObjectId> takeEntities();
  // Whether something changed that anything may look different by: layers, linetypes, styles, orders of drawing.
  bool takeLooks() { return std::exchange(m_looks, false); }

 private:
  void objectAppended(const GcDbDatabase*, const GcDbObject* object) override { note(*object); }
  void objectUnAppended(const GcDbDatabase*, const GcDbObject* object) override { note(*object); }
  void objectReAppended(const GcDbDatabase*, const GcDbObject* object) override { note(*object); }
  void objectModified(const GcDbDatabase*, const GcDbObject* object) override { note(*object); }
  void objectErased(const GcDbDatabase*, const GcDbObject* object, bool) override { note(*object); }
  void goodbye(const GcDbDatabase*) override {
    m_database = nullptr;
    m_entities.clear();
  }
  void note(const GcDbObject& object);

  struct IdHash {
    std::size_t operator()(GcDbObjectId id) const { return std::hash<const void*>()(id.stub()); }
  };
  GcDbDatabase* m_database = nullptr;
  std::unordered_set<GcDbObjectId, IdHash> m_entities;
  bool m_looks = false;
};

}  // namespace cli::page
