#include "cli/page/describe.h"

#include <algorithm>
#include <map>

#include "db/database.h"
#include "db/symboltable.h"
#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace cli::page {

using nlohmann::json;

namespace {

constexpr size_t kMostRows = 200;
constexpr size_t kMostText = 400;   // bytes of a value
constexpr size_t kMostValues = 24;  // of a list

uint32_t rgbOf(const GcCmColor& color) {
  return color.isByColor() ? color.bits() & 0xFFFFFF : GcCmEntityColor::lookUpRGB(color.colorIndex());
}

std::string shortened(std::string text) {
  if (text.size() <= kMostText) return text;
  size_t end = kMostText;
  while ((static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return text.substr(0, end) + " …";
}

std::string numberText(double value) { return gc::realText(value == 0 ? 0 : value); }

std::string nameOf(GcDbObjectId id) {
  if (!id.isValid()) return "";
  const auto* record = GcDbSymbolTableRecord::cast(id.stub()->object);
  return record != nullptr ? gc::toUtf8(view(record->getName())) : "#" + gc::hexText(id.handle());
}

std::string valueOf(const GcDbGroup& group) {
  switch (group.kind) {
    case GcDbGroupKind::Text: return gc::toUtf8(group.text);
    case GcDbGroupKind::Real:
      return group.isAngle ? numberText(group.real * 180 / 3.14159265358979323846) + "°" : numberText(group.real);
    case GcDbGroupKind::Point2d: return numberText(group.point.x) + ", " + numberText(group.point.y);
    case GcDbGroupKind::Point3d:
      return numberText(group.point.x) + ", " + numberText(group.point.y) + ", " + numberText(group.point.z);
    case GcDbGroupKind::Bool: return group.integer != 0 ? "yes" : "no";
    case GcDbGroupKind::Id: return nameOf(group.id);
    case GcDbGroupKind::Handle: return "#" + gc::hexText(static_cast<uint64_t>(group.integer));
    case GcDbGroupKind::Binary: return std::to_string(group.bytes.size()) + " bytes";
    default: return std::to_string(group.integer);
  }
}

// The values of one row as text.
class RowText final : public GcDbGroupSink {
 public:
  // Of records (vertices, say) the points tell enough.
  explicit RowText(bool pointsOnly) : m_pointsOnly(pointsOnly) {}
  void put(const GcDbGroup& group) override {
    const bool isPoint = group.kind == GcDbGroupKind::Point2d || group.kind == GcDbGroupKind::Point3d;
    if ((m_pointsOnly && !isPoint) || ++m_count > kMostValues) return;
    if (!m_text.empty()) m_text += m_count > 1 ? "; " : "";
    m_text += valueOf(group);
  }
  [[nodiscard]] std::string text() const {
    return shortened(m_count > kMostValues ? m_text + " … (" + std::to_string(m_count) + ")" : m_text);
  }
  [[nodiscard]] bool isEmpty() const { return m_count == 0; }

 private:
  bool m_pointsOnly;
  std::string m_text;
  size_t m_count = 0;
};

// "startPoint" as "Start point".
std::string spaced(std::string_view name) {
  std::string text;
  for (const char c : name) {
    const bool capital = c >= 'A' && c <= 'Z';
    if (text.empty() && c >= 'a' && c <= 'z') {
      text.push_back(static_cast<char>(c - 32));
    } else if (capital && !text.empty()) {
      text.push_back(' ');
      text.push_back(static_cast<char>(c + 32));
    } else {
      text.push_back(c);
    }
  }
  return text;
}

std::string kindOf(const GcDbObject& object) {
  std::string name = gc::toUtf8(view(object.isA()->name()));
  if (name.compare(0, 4, "AcDb") == 0) name.erase(0, 4);
  return spaced(name);
}

std::string colorText(const GcCmEntityColor& color) {
  switch (color.colorMethod()) {
    case GcCmEntityColor::kByLayer: return "by layer";
    case GcCmEntityColor::kByBlock: return "by block";
    case GcCmEntityColor::kByColor: {
      const std::string digits = gc::hexText(0x1000000 | (color.bits() & 0xFFFFFF));
      return "#" + digits.substr(digits.size() - 6);
    }
    default: return std::to_string(color.colorIndex());
  }
}

std::string weightText(int weight) {
  if (weight == -1) return "by layer";
  if (weight == -2) return "by block";
  return weight < 0 ? "default" : numberText(weight / 100.0) + " mm";
}

using Rows = std::vector<std::pair<std::string, std::string>>;

Rows commonRows(const GcDbEntity& entity) {
  return {{"Layer", gc::toUtf8(view(entity.layer()))},
          {"Color", colorText(entity.color())},
          {"Linetype", gc::toUtf8(view(entity.linetype()))},
          {"Linetype scale", numberText(entity.linetypeScale())},
          {"Line weight", weightText(entity.lineWeight())}};
}

// The rows of the class itself, below those all entities have.
void addOwnRows(const GcDbEntity& entity, Rows& rows) {
  const GcDbClassInfo* info = gcdbInfoOf(entity);
  if (info == nullptr) return;
  bool isOwn = false;
  for (int i = 0; i < info->rowCount && rows.size() < kMostRows; ++i) {
    const GcDbField& row = *info->rows[i];
    if (row.is == Is::Marker) {
      isOwn = row.name != nullptr && std::string_view(row.name) != "AcDbEntity";
      continue;
    }
    if (!isOwn || row.name == nullptr || row.isEcho) continue;
    const bool isRecords = row.records != nullptr;
    if (row.is == Is::Count && !isRecords) continue;
    RowText text(isRecords && !row.isPart);
    gcdbRowsOut(&entity, &row, 1, text, GcDb::kDHL_Current, entity.database(), For::List);
    if (!text.isEmpty()) rows.emplace_back(spaced(row.name), text.text());
  }
}

json toJson(const Rows& rows) {
  json list = json::array();
  for (const auto& [name, value] : rows) list.push_back({name, value});
  return list;
}

const GcDbEntity* entityOf(GcDbObjectId id) {
  return id.isValid() && !id.isErased() ? GcDbEntity::cast(id.stub()->object) : nullptr;
}

json propertiesOfSeveral(const std::vector<GcDbObjectId>& entities) {
  std::map<std::string, int> kinds;
  Rows common;
  for (const GcDbObjectId id : entities) {
    const GcDbEntity* entity = entityOf(id);
    if (entity == nullptr) continue;
    ++kinds[kindOf(*entity)];
    const Rows own = commonRows(*entity);
    if (common.empty()) common = own;
    for (size_t i = 0; i < common.size(); ++i)
      if (common[i].second != own[i].second) common[i].second = "various";
  }
  Rows rows;
  for (const auto& [kind, count] : kinds) rows.emplace_back(kind, std::to_string(count));
  rows.insert(rows.end(), common.begin(), common.end());
  return {{"title", std::to_string(entities.size()) + " objects"}, {"rows", toJson(rows)}};
}

}  // namespace

json layersOf(GcDbDatabase& database) {
  std::vector<std::pair<std::string, json>> layers;
  GcDbSymbolTable* table = nullptr;
  if (gcdbOpenObject(table, database.layerTableId(), GcDb::kForRead) != Gcad::eOk) return json::array();
  for (const GcDbObjectId id : table->records()) {
    const auto* layer = id.isValid() && !id.isErased() ? GcDbLayerTableRecord::cast(id.stub()->object) : nullptr;
    if (layer == nullptr) continue;
    const std::string name = gc::toUtf8(view(layer->getName()));
    layers.emplace_back(name, json{{"name", name},
                                   {"off", layer->isOff()},
                                   {"frozen", layer->isFrozen()},
                                   {"locked", layer->isLocked()},
                                   {"color", rgbOf(layer->color())},
                                   {"current", id == database.clayer()}});
  }
  ignore(table->close());
  std::sort(layers.begin(), layers.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  json list = json::array();
  for (auto& [name, layer] : layers) list.push_back(std::move(layer));
  return list;
}

std::string switchLayer(GcDbDatabase& database, GcView name, LayerSwitch what, bool on) {
  GcDbSymbolTable* table = nullptr;
  if (gcdbOpenObject(table, database.layerTableId(), GcDb::kForRead) != Gcad::eOk) return "the layers are in use";
  GcDbObjectId id;
  const bool found = table->getAt(GcText(name).c_str(), id) == Gcad::eOk;
  ignore(table->close());
  if (!found) return "there is no layer \"" + gc::toUtf8(name) + "\"";
  GcDbLayerTableRecord* layer = nullptr;
  if (gcdbOpenObject(layer, id, GcDb::kForWrite) != Gcad::eOk) return "the layer is in use";
  Gcad::ErrorStatus status = Gcad::eOk;
  switch (what) {
    case LayerSwitch::Off: status = layer->setIsOff(on); break;
    case LayerSwitch::Frozen: status = layer->setIsFrozen(on); break;
    case LayerSwitch::Locked: status = layer->setIsLocked(on); break;
  }
  ignore(layer->close());
  return status == Gcad::eOk ? "" : "the layer cannot be set so (the current layer cannot be frozen)";
}

json propertiesOf(const std::vector<GcDbObjectId>& entities) {
  if (entities.empty()) return {{"title", ""}, {"rows", json::array()}};
  if (entities.size() > 1) return propertiesOfSeveral(entities);
  const GcDbEntity* entity = entityOf(entities[0]);
  if (entity == nullptr) return {{"title", ""}, {"rows", json::array()}};
  Rows rows = {{"Handle", gc::hexText(entities[0].handle())}};
  const Rows common = commonRows(*entity);
  rows.insert(rows.end(), common.begin(), common.end());
  addOwnRows(*entity, rows);
  return {{"title", kindOf(*entity)}, {"rows", toJson(rows)}};
}

}  // namespace cli::page
