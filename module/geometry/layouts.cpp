// Layouts: making, listing, and which one is shown. All of it through the host's layout manager.
#include <memory>

#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/rbchain.h"
#include "module/app/results.h"

namespace {

GcDbLayoutManager* layoutManager() { return gcdbHostApplicationServices()->layoutManager(); }

// The block of the active layout; null when there is none.
GcDbObjectId activeBlock() {
  GcDbLayoutManager* manager = layoutManager();
  const GcString name = manager->getActiveLayoutName();
  const GcDbReadPtr<GcDbLayout> layout(manager->findLayoutNamed(name.c_str()));
  return layout ? layout->getBlockTableRecordId() : GcDbObjectId::kNull;
}

// Deliberate: every layout is made under the host's next name and gets the wanted one when that is free, so a name
// given twice makes two layouts.
void addOne(const GCHAR* wanted) {
  GcDbLayoutManager* manager = layoutManager();
  const GcString generated = manager->getNextNewLayoutName();
  GcDbObjectId layout;
  GcDbObjectId block;
  ignore(manager->createLayout(generated.c_str(), layout, block));
  if (manager->findLayoutNamed(wanted).isNull()) ignore(manager->renameLayout(generated.c_str(), wanted));
}

}  // namespace

// Layouts made for the arguments before a faulty one stay.
int addLayout() {
  for (const resbuf* rb = gcedGetArgs(); rb != nullptr; rb = rb->rbnext) {
    if (rb->restype != RTSTR) return gcdbFail(msg::kWrongType), RTERROR;
    addOne(node::text(*rb));
  }
  layoutManager()->updateLayoutTabs();
  return ret::nothing();
}

int getLayouts() {
  gcedGetArgs();
  const GcDbDatabase* database = workingDatabase();
  const GcDbReadPtr<GcDbDictionary> layouts(database != nullptr ? database->layoutDictionaryId() : GcDbObjectId::kNull);
  RbChain list;
  list.append(RTLB);
  if (layouts) {
    for (const std::unique_ptr<GcDbDictionaryIterator> at(layouts->newIterator()); !at->done(); at->next()) {
      const GcDbReadPtr<GcDbLayout> layout(at->objectId());
      GcString name;
      if (layout && layout->getLayoutName(name) == Gcad::eOk) list.appendString(name.c_str());
    }
  }
  list.append(RTLE);
  return ret::list(list);
}

int getActiveLayout() {
  gcedGetArgs();
  return ret::string(layoutManager()->getActiveLayoutName().c_str());
}

int getActiveSpaceName() {
  gcedGetArgs();
  const GcDbReadPtr<GcDbBlockTableRecord> block(activeBlock());
  GcString name;
  return block && block->getName(name) == Gcad::eOk ? ret::string(name.c_str()) : ret::nil();
}

int getEntInLayout() {
  gcedGetArgs();
  const GcDbReadPtr<GcDbBlockTableRecord> block(activeBlock());
  GcDbBlockTableRecordIterator* made = nullptr;
  if (!block || block->newIterator(made) != Gcad::eOk) return ret::nothing();
  RbChain list;
  list.append(RTLB);
  for (const std::unique_ptr<GcDbBlockTableRecordIterator> at(made); !at->done(); at->step()) {
    GcDbObjectId id;
    if (at->getEntityId(id) == Gcad::eOk) list.appendName(id);
  }
  list.append(RTLE);
  return ret::list(list);
}

// Deliberate: an argument that is no name is reported as missing, and whether the layout exists is not looked at.
int putActiveLayout() {
  ArgReader args(rules::kTextFirst);
  const GCHAR* name = args.string();
  if (args.failed()) return args.status();
  ignore(layoutManager()->setCurrentLayout(name));
  layoutManager()->updateLayoutTabs();
  return ret::nothing();
}
