#include "host/dxf/read/after_load.h"

#include "host/db/core/extra.h"
#include "host/db/core/loader.h"
#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"
#include "host/rx/text/number.h"

namespace gc::dxf {
namespace {

// Lists the references of one object that lead to nothing.
class DanglingVisitor final : public GcDbReferenceVisitor {
 public:
  DanglingVisitor(const LoadContext& context, const GcDbObject& object) : m_context(context), m_object(object) {}

  void reference(GcDbObjectId& id, Is) override { check(id); }
  void check(GcDbObjectId id) {
    if (id.isNull() || id.isValid()) return;
    m_context.report(GcDbLoadAction::Noted, 0, m_object.handle(),
                     "refers to " + hexText(id.handle()) + ", which is not there");
  }

 private:
  const LoadContext& m_context;
  const GcDbObject& m_object;
};

void listDangling(const LoadContext& context) {
  GcDbStore& store = context.database.store();
  bool any = false;
  store.forEach([&](GcDbStub* stub) { any = any || !stub->object; });
  if (!any) return;
  store.forEach([&](GcDbStub* stub) {
    if (!stub->object) return;
    DanglingVisitor visitor(context, *stub->object);
    gcdbVisitReferences(*stub->object, visitor);
    visitor.check(stub->object->ownerId());
    const GcDbObjectExtra* extra = stub->object->extra();
    if (!extra) return;
    visitor.check(extra->extensionDictionary);
    for (const GcDbObjectId id : extra->reactors) visitor.check(id);
  });
}

// True when the chain of owners comes back to the object. A chain that runs into a cycle of others ends there: the
// second pointer, which goes half as fast, is met.
bool ownsItself(const GcDbStub* stub) {
  const auto ownerOf = [](const GcDbStub* of) -> const GcDbStub* {
    const GcDbObjectId owner = of->object->ownerId();
    return owner.isValid() ? owner.stub() : nullptr;
  };
  const GcDbStub* slow = stub;
  bool moveSlow = false;
  for (const GcDbStub* at = ownerOf(stub); at; at = ownerOf(at), moveSlow = !moveSlow) {
    if (at == stub) return true;
    if (moveSlow) slow = ownerOf(slow);
    if (at == slow) return false;
  }
  return false;
}

void endCycles(const LoadContext& context) {
  context.database.store().forEach([&](GcDbStub* stub) {
    if (!stub->object || !ownsItself(stub)) return;
    context.report(GcDbLoadAction::Repaired, 0, stub->handle,
                   "is its own owner, directly or through others: owner removed");
    GcDbLoader::setOwner(*stub->object, GcDbObjectId());
  });
}

}  // namespace

void afterLoad(const LoadContext& context) {
  endCycles(context);
  listDangling(context);
  context.database.store().forEach([](GcDbStub* stub) {
    if (stub->object) stub->object->subLoaded();
  });
}

}  // namespace gc::dxf
