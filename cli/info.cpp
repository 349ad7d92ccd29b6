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
#include "host/rx/text/number.h"
#include "host/rx/view.h"

namespace cli {

namespace {

using Counts = std::map<std::string, int64_t>;

struct Summary {
  Counts model, paper, blocks;  // entities by DXF name: in model space, in layouts, in block definitions
  Counts objects;               // everything that is no entity
  Counts unknown;               // objects and entities of classes that are not loaded
  std::vector<std::string> layers, layouts, blockNames;
};

std::string dxfNameOf(const GcDbObject& object) {
  if (const auto* zombie = GcDbZombieEntity::cast(&object)) return toUtf8(view(zombie->data().dxfName));
  if (const auto* zombie = GcDbZombieObject::cast(&object)) return toUtf8(view(zombie->data().dxfName));
  return toUtf8(view(object.isA()->dxfName()));
}

bool isZombie(const GcDbObject& object) {
  return GcDbZombieEntity::cast(&object) != nullptr || GcDbZombieObject::cast(&object) != nullptr;
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
    if (isZombie(*stub->object)) ++summary.unknown[dxfNameOf(*stub->object)];
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

nlohmann::json valueOf(const GcDbGroup& group) {
  switch (group.kind) {
    case GcDbGroupKind::Text: return toUtf8(group.text);
    case GcDbGroupKind::Real: return group.real;
    case GcDbGroupKind::Point2d: return {group.point.x, group.point.y};
    case GcDbGroupKind::Point3d: return pointOf(group.point);
    case GcDbGroupKind::Id: return gc::hexText(group.id.handle());
    case GcDbGroupKind::Handle: return gc::hexText(static_cast<uint64_t>(group.integer));
    case GcDbGroupKind::Binary: return group.bytes.size();
    default: return group.integer;
  }
}

// Each setting by its name: its value, or a list of them.
nlohmann::json headerOf(const GcDbDatabase& database) {
  nlohmann::json out = nlohmann::json::object();
  for (const GcDbHeader::Variable& variable : database.header().variables()) {
    nlohmann::json values = nlohmann::json::array();
    GcDbGroupList::Cursor cursor(variable.groups);
    for (GcDbGroup group; cursor.next(group);) values.push_back(valueOf(group));
    out[toUtf8(GcView(variable.name))] = values.size() == 1 ? values.front() : values;
  }
  return out;
}

// Classes the file describes: those of its own, beside the fixed kinds of the format.
nlohmann::json classesOf(const GcDbDatabase& database, const Counts& unknown) {
  nlohmann::json out = nlohmann::json::array();
  for (const GcDbClassRecord& record : database.fileParts().classes) {
    const std::string name = toUtf8(view(record.dxfName));
    const auto found = unknown.find(name);
    out.push_back({{"name", name},
                   {"class", toUtf8(view(record.className))},
                   {"application", toUtf8(view(record.appName))},
                   {"entity", record.isEntity},
                   {"unknownObjects", found == unknown.end() ? 0 : found->second}});
  }
  return out;
}

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
  out["unknown"] = summary.unknown;
  out["classes"] = classesOf(database, summary.unknown);
  out["header"] = headerOf(database);
  nlohmann::json properties = nlohmann::json::object();
  for (const GcDbCustomProperty& property : database.fileParts().customProperties)
    properties[toUtf8(view(property.name))] = toUtf8(view(property.value));
  out["properties"] = properties;
  out["handseed"] = static_cast<uint64_t>(database.handseed());
  out["remarks"] = nlohmann::json::array();
  for (const GcDbLoadEntry& entry : database.loadReport().entries()) out["remarks"].push_back(loadEntryAsJson(entry));
  out["remarkCount"] = database.loadReport().total();
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
  if (!summary.unknown.empty()) out += "unknown:     " + listed(summary.unknown) + "\n";
  for (const GcDbLoadEntry& entry : database.loadReport().entries())
    out += "remark: " + GcDbLoadReport::describe(entry) + "\n";
  return out;
}

}  // namespace

int info(Terminal& terminal, const InfoOptions& options) {
  // The remarks are part of what is told.
  const std::unique_ptr<GcDbDatabase> database = openDrawingFile(options.file, Remarks::None);
  if (database == nullptr) return kCannotRead;
  const Summary summary = summarise(*database);
  terminal.write(
      options.json
          ? asJson(options, *database, summary).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n"
          : asText(options, *database, summary));
  return kDone;
}

}  // namespace cli
