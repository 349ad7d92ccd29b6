#include "cli/info.h"

#include <map>
#include <nlohmann/json.hpp>

#include "cli/drawingfile.h"
#include "cli/exitcode.h"
#include "db/dictionary.h"
#include "db/zombie.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/header.h"
#include "host/db/core/loadreport.h"
#include "host/db/core/store.h"
#include "host/db/objects/zombiedata.h"
#include "host/rx/view.h"

namespace cli {

namespace {

using Counts = std::map<std::string, int64_t>;

struct Summary {
  Counts model, paper, blocks;  // entities by DXF name: in model space, in layouts, in block definitions
  Counts objects;               // everything that is no entity
  std::vector<std::string> layers, layouts, blockNames;
};

std::string dxfNameOf(const GcDbObject& object) {
  if (const auto* zombie = GcDbZombieEntity::cast(&object)) return toUtf8(view(zombie->data().dxfName));
  if (const auto* zombie = GcDbZombieObject::cast(&object)) return toUtf8(view(zombie->data().dxfName));
  return toUtf8(view(object.isA()->dxfName()));
}

void countBlock(const GcDbBlockTableRecord& block, Summary& summary) {
  Counts& counts = block.isModelSpace()                       ? summary.model
                   : block.isLayout() || block.isPaperSpace() ? summary.paper
                                                              : summary.blocks;
  for (const GcDbObjectId id : block.entities())
    if (id.isValid() && !id.isErased()) ++counts[dxfNameOf(*id.stub()->object)];
}

std::vector<std::string> recordNames(GcDbObjectId tableId) {
  std::vector<std::string> names;
  GcDbSymbolTable* table = nullptr;
  if (gcdbOpenObject(table, tableId, GcDb::kForRead) != Gcad::eOk) return names;
  for (const GcDbObjectId id : table->records())
    if (id.isValid() && !id.isErased())
      names.push_back(toUtf8(view(static_cast<GcDbSymbolTableRecord*>(id.stub()->object)->getName())));
  ignore(table->close());
  return names;
}

std::vector<std::string> layoutNames(const GcDbDatabase& database) {
  std::vector<std::string> names;
  GcDbDictionary* layouts = nullptr;
  if (gcdbOpenObject(layouts, database.layoutDictionaryId(), GcDb::kForRead) != Gcad::eOk) return names;
  for (const GcDbDictionaryEntry& entry : layouts->entries())
    if (!entry.id.isErased()) names.push_back(toUtf8(view(entry.key)));
  ignore(layouts->close());
  return names;
}

Summary summarise(GcDbDatabase& database) {
  Summary summary;
  database.store().forEach([&](GcDbStub* stub) {
    if (stub->object == nullptr || stub->erased) return;
    if (const auto* block = GcDbBlockTableRecord::cast(stub->object)) countBlock(*block, summary);
    if (!stub->object->isKindOf(GcDbEntity::desc()) && !stub->object->isKindOf(GcDbSymbolTable::desc()))
      ++summary.objects[dxfNameOf(*stub->object)];
  });
  summary.layers = recordNames(database.layerTableId());
  summary.blockNames = recordNames(database.blockTableId());
  summary.layouts = layoutNames(database);
  return summary;
}

nlohmann::json pointOf(const GcGePoint3d& point) { return {point.x, point.y, point.z}; }

nlohmann::json asJson(const InfoOptions& options, GcDbDatabase& database, const Summary& summary) {
  nlohmann::json out;
  out["schema"] = 1;
  out["file"] = options.file;
  out["version"] = versionName(database.originalFileVersion());
  out["codePage"] = toUtf8(view(database.fileParts().codePage));
  out["extents"] = {pointOf(database.header().point(GC_T("$EXTMIN"))),
                    pointOf(database.header().point(GC_T("$EXTMAX")))};
  out["entities"] = {{"model", summary.model}, {"paper", summary.paper}, {"blocks", summary.blocks}};
  out["objects"] = summary.objects;
  out["layers"] = summary.layers;
  out["layouts"] = summary.layouts;
  out["blocks"] = summary.blockNames;
  out["handseed"] = static_cast<uint64_t>(database.handseed());
  out["remarks"] = nlohmann::json::array();
  for (const GcDbLoadEntry& entry : database.loadReport().entries())
    out["remarks"].push_back(GcDbLoadReport::describe(entry));
  return out;
}

std::string listed(const Counts& counts) {
  std::string out;
  for (const auto& [name, count] : counts) out += (out.empty() ? "" : ", ") + name + " " + std::to_string(count);
  return out.empty() ? "none" : out;
}

std::string listed(const std::vector<std::string>& names) {
  constexpr size_t kMostShown = 30;
  std::string out;
  for (size_t i = 0; i < names.size() && i < kMostShown; ++i) out += (out.empty() ? "" : ", ") + names[i];
  if (names.size() > kMostShown) out += ", … (" + std::to_string(names.size()) + " in all)";
  return out.empty() ? "none" : out;
}

std::string asText(const InfoOptions& options, GcDbDatabase& database, const Summary& summary) {
  std::string out = options.file + ": " + versionName(database.originalFileVersion());
  const std::string codePage = toUtf8(view(database.fileParts().codePage));
  if (!codePage.empty()) out += ", " + codePage;
  out += "\nmodel space: " + listed(summary.model);
  out += "\nlayouts:     " + listed(summary.layouts) + " (" + listed(summary.paper) + ")";
  out += "\nblocks:      " + listed(summary.blockNames) + " (" + listed(summary.blocks) + ")";
  out += "\nlayers:      " + listed(summary.layers);
  out += "\nobjects:     " + listed(summary.objects) + "\n";
  for (const GcDbLoadEntry& entry : database.loadReport().entries())
    out += "remark: " + GcDbLoadReport::describe(entry) + "\n";
  return out;
}

}  // namespace

int info(Terminal& terminal, const InfoOptions& options) {
  const std::unique_ptr<GcDbDatabase> database = openDrawingFile(options.file);
  if (database == nullptr) return kCannotRead;
  const Summary summary = summarise(*database);
  terminal.write(
      options.json
          ? asJson(options, *database, summary).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n"
          : asText(options, *database, summary));
  return kDone;
}

}  // namespace cli
