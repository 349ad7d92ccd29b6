#include "host/dxf/read/after_load.h"

#include "db/dimension.h"
#include "host/db/core/extra.h"
#include "host/db/core/life.h"
#include "host/db/core/loader.h"
#include "host/db/core/ownercycles.h"
#include "host/db/core/roundtrip.h"
#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"
#include "host/dxf/read/modeler_records.h"
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

void endCycles(const LoadContext& context) {
  GcDbOwnerCycles cycles;
  context.database.store().forEach([&](GcDbStub* stub) {
    if (!stub->object) return;
    cycles.search(stub, [&](GcDbObject& object) {
      context.report(GcDbLoadAction::Repaired, 0, object.objectId().handle(),
                     "is its own owner, directly or through others: owner removed");
      GcDbLoader::setOwner(object, GcDbObjectId());
      return true;
    });
  });
}

// What a dimension style of a file before R2000 says in its own way.
class OldDimStyle final : public GcDbGroupSink {
 public:
  void put(const GcDbGroup& group) override {
    const bool isName = group.code >= 5 && group.code <= 7 && group.kind == GcDbGroupKind::Text;
    if (isName) arrows[group.code - 5] = group.text;
    if (group.code == 270) unit = static_cast<int>(group.asInt());
    if (group.code == 287) fit = static_cast<int>(group.asInt());
  }
  GcText arrows[3];  // blocks by name
  int unit = 2;      // DIMUNIT: one number for the kind of unit and how fractions are stacked
  int fit = 3;       // DIMFIT: one number for what moves outside and how the text is led
};

GcDbObjectId blockNamed(const GcDbDatabase& database, const GcText& name) {
  const GcDbObjectId table = database.blockTableId();
  GcDbObjectId found;
  if (name.empty() || !table.isValid()) return found;
  ++table.stub()->readers;
  ignore(static_cast<const GcDbSymbolTable&>(*table.stub()->object).getAt(name.c_str(), found));
  --table.stub()->readers;
  return found;
}

// Source: what the published references of both versions say of the settings.
void modernise(GcDbDimStyleTableRecord& style, const OldDimStyle& old) {
  constexpr int kArchitectural = 4, kFractional = 5, kNotStacked = 2;
  struct Unit {
    int kind, fraction;
  };
  constexpr Unit kUnits[] = {{2, 0},
                             {1, 0},
                             {2, 0},
                             {3, 0},
                             {kArchitectural, 0},
                             {kFractional, 0},
                             {kArchitectural, kNotStacked},
                             {kFractional, kNotStacked},
                             {6, 0}};
  const Unit unit = kUnits[old.unit >= 1 && old.unit <= 8 ? old.unit : 0];
  ignore(style.setDimlunit(unit.kind));
  ignore(style.setDimfrac(unit.fraction));
  constexpr int kBestFit = 3;
  ignore(style.setDimatfit(old.fit >= 0 && old.fit <= kBestFit ? old.fit : kBestFit));
  ignore(style.setDimtmove(old.fit == 4 ? 1 : old.fit == 5 ? 2 : 0));
}

// Dimension styles stand before the blocks they name.
void connectDimStyles(const LoadContext& context) {
  context.database.store().forEach([&](GcDbStub* stub) {
    // Dimensions of the time before styles follow the current settings.
    auto* dimension = stub->object ? GcDbDimension::cast(stub->object) : nullptr;
    if (dimension && dimension->dimensionStyle().isNull()) {
      stub->writing = true;
      ignore(dimension->setDimensionStyle(context.database.dimstyle()));
      stub->writing = stub->recorded = stub->modified = false;
    }
    auto* style = stub->object ? GcDbDimStyleTableRecord::cast(stub->object) : nullptr;
    if (!style) return;
    OldDimStyle old;
    gcdbFieldsOut(*style, old, context.version);
    stub->writing = true;
    GcDbObjectId blocks[3];
    for (int i = 0; i < 3; ++i) blocks[i] = blockNamed(context.database, old.arrows[i]);
    if (!blocks[0].isNull()) ignore(style->setDimblk(blocks[0]));
    if (!blocks[1].isNull()) ignore(style->setDimblk1(blocks[1]));
    if (!blocks[2].isNull()) ignore(style->setDimblk2(blocks[2]));
    if (context.version >= GcDb::kDHL_AC1012) modernise(*style, old);
    stub->writing = stub->recorded = stub->modified = false;
  });
}

}  // namespace

void afterLoad(const LoadContext& context) {
  if (context.version < GcDb::kDHL_AC1015) connectDimStyles(context);
  if (context.hasUnwrapped) gcdbWakeZombies(context.database);
  takeModelerRecords(context);
  endCycles(context);
  listDangling(context);
  context.database.store().forEach([](GcDbStub* stub) {
    if (stub->object) stub->object->subLoaded();
  });
  gcdbTakeRoundTrip(context.database);
}

}  // namespace gc::dxf
