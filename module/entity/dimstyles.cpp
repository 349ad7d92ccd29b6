// Dimension styles of the working database.
#include <memory>

#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/rbchain.h"
#include "module/app/results.h"

namespace {

GcDbObjectId dimStyleTableId() {
  const GcDbDatabase* database = workingDatabase();
  return database != nullptr ? database->dimStyleTableId() : GcDbObjectId::kNull;
}

}  // namespace

// Deliberate: the name is answered also when the table refuses the style.
int addDimStyle() {
  ArgReader args(rules::kNameFirst);
  const GCHAR* name = args.string();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbDimStyleTable> table(dimStyleTableId());
  if (!table) return ret::nil();
  auto style = std::make_unique<GcDbDimStyleTableRecord>();
  ignore(style->setName(name));
  if (table->add(style.get()) == Gcad::eOk) ignore(style.release()->close());
  return ret::string(name);
}

// Deliberate: one entity name per style, and none of them filled in. The list tells how many styles there are.
int getDimStyle() {
  gcedGetArgs();
  const GcDbReadPtr<GcDbDimStyleTable> table(dimStyleTableId());
  if (!table) return ret::nil();
  RbChain list;
  if (list.append(RTLB) == nullptr) return ret::nil();
  GcDbSymbolTableIterator* made = nullptr;
  if (table->newIterator(made) != Gcad::eOk) return ret::nil();
  for (const std::unique_ptr<GcDbSymbolTableIterator> at(made); !at->done(); at->step()) list.append(RTENAME);
  list.append(RTLE);
  return ret::list(list);
}

int putActiveDimStyle() {
  ArgReader args(rules::kTextFirst);
  const GCHAR* name = args.string();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbDimStyleTable> table(dimStyleTableId());
  GcDbObjectId id;
  if (!table || table->getAt(name, id) != Gcad::eOk) return ret::nil();
  return ret::truth(workingDatabase()->setDimstyle(id) == Gcad::eOk);
}
