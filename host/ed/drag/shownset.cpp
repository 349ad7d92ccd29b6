#include "host/ed/drag/shownset.h"
#include "host/gi/listener.h"

#include <algorithm>

#include "db/attribute.h"
#include "gi/drawable.h"

namespace ed {

namespace {

// Lets drawables draw and keeps which entities came and how they were moved; lines and letters are dropped.
class Listener final : public GcGiListener {
 public:
  explicit Listener(ShownSet& shown) : m_shown(shown) {}

  [[nodiscard]] double deviation() const override { return 1; }
  void draw(GcGiDrawable* drawable) override {
    const GcDbEntity* entity = GcDbEntity::cast(drawable);
    if (entity == nullptr || entity->objectId().isNull()) return;
    const bool isPart = GcDbAttribute::cast(entity) != nullptr;
    const GcDbObjectId id = isPart ? entity->ownerId() : entity->objectId();
    if (m_shown.entities.empty() && isMoved()) m_shown.matrix = transform();
    // Parts of one entity come one after the other.
    if (m_shown.entities.empty() || m_shown.entities.back() != id) m_shown.entities.push_back(id);
  }

 private:
  friend ShownSet shownBy(GcDbEntity& drawable);
  ShownSet& m_shown;
};

}  // namespace

ShownSet shownBy(GcDbEntity& drawable) {
  ShownSet shown;
  Listener listener(shown);
  drawable.subSetAttributes(&listener.subEntityTraits());
  drawable.subWorldDraw(&listener);
  return shown;
}

}  // namespace ed
