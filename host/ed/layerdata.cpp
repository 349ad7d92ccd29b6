#include "host/ed/layerdata.h"

#include <algorithm>
#include <cmath>

#include "db/database.h"
#include "db/xrecord.h"
#include "host/ed/contents.h"
#include "host/ed/dictionaries.h"
#include "host/ed/extended.h"
#include "host/ed/records.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

constexpr const GCHAR* kDescriptions = GC_T("AcAecLayerStandard");
constexpr const GCHAR* kTransparencies = GC_T("AcCmTransparency");
constexpr const GCHAR* kStates = GC_T("ACAD_LAYERSTATES");
constexpr int64_t kByAlpha = 0x02000000;  // the low byte is the opacity
constexpr int kOpaque = 255;

// Group codes of a state. A layer's part begins with its name.
constexpr int kBits = 91;
constexpr int kDescription = 301;
constexpr int kCurrentLayer = 302;
constexpr int kLayerName = 8;
constexpr int kLayerFlags = 90;
constexpr int kColorIndex = 62;
constexpr int kLineWeight = 370;
constexpr int kLinetypeId = 331;
constexpr int kLinetypeName = 6;  // in files of states
constexpr int kPlotStyle = 1;
constexpr int kTransparency = 440;
constexpr int kTrueColor = 92;  // method and colour

enum LayerFlag : int { kOff = 1, kFrozen = 2, kLocked = 4, kNotPlotted = 8, kFrozenInNew = 16 };

GcDbObjectId statesOf(GcDbDatabase& database, bool make) {
  const GcDbObjectId extension = extensionOf(database.layerTableId(), make);
  return extension.isNull() ? extension : subdictionary(extension, kStates, make);
}

GcDbObjectId stateNamed(GcDbDatabase& database, GcView name) {
  const GcDbObjectId states = statesOf(database, false);
  return states.isNull() ? states : entryNamed(states, name);
}

int64_t opacityOf(GcDbObjectId layer) {
  const ExtendedValues values = extendedOf(layer, kTransparencies);
  return values.numbers.empty() ? 0 : values.numbers[0];  // 0: none is set
}

int percentOf(int64_t opacity) {
  if ((opacity & 0xFF000000) != kByAlpha) return 0;
  return static_cast<int>(std::lround(100.0 * (kOpaque - (opacity & 0xFF)) / kOpaque));
}

void putLayer(GcDbObjectId id, GcDbGroupList& groups) {
  GcDbLayerTableRecord* layer = nullptr;
  if (gcdbOpenObject(layer, id, GcDb::kForRead) != Gcad::eOk) return;
  constexpr int kFrozenInNewViewports = 2;  // of a record's own flags
  const GcCmColor color = layer->color();
  const int flags = (layer->isOff() ? kOff : 0) | (layer->isFrozen() ? kFrozen : 0) |
                    (layer->isLocked() ? kLocked : 0) | (layer->isPlottable() ? 0 : kNotPlotted) |
                    ((layer->flags() & kFrozenInNewViewports) != 0 ? kFrozenInNew : 0);
  groups.put(GcDbGroup::ofText(kLayerName, view(layer->getName())));
  groups.put(GcDbGroup::ofInt(kLayerFlags, flags));
  groups.put(GcDbGroup::ofInt(kColorIndex, color.colorIndex()));
  groups.put(GcDbGroup::ofInt(kLineWeight, layer->lineWeight()));
  groups.put(GcDbGroup::ofId(kLinetypeId, layer->linetypeObjectId()));
  groups.put(GcDbGroup::ofText(kPlotStyle, gc::fromUtf8("Color_" + std::to_string(color.colorIndex()))));
  const GcDbObjectId layerId = layer->objectId();
  ignore(layer->close());
  groups.put(GcDbGroup::ofInt(kTransparency, opacityOf(layerId)));
  groups.put(GcDbGroup::ofInt(kTrueColor, static_cast<int32_t>(color.bits())));
}

// A layer as a state tells of it, while the groups pass by.
struct KeptLayer {
  GcDbObjectId id;
  int flags = 0;
  GcCmColor color = GcCmColor::fromIndex(7);
  int lineWeight = GcDb::kLnWtByLwDefault;
  GcDbObjectId linetype;
  int64_t opacity = 0;
};

// States of other programs name true colours only where they are: an index otherwise counts.
void takeTrueColor(int64_t bits, GcCmColor& color) {
  const GcCmColor found = GcCmColor::fromBits(static_cast<uint32_t>(bits));
  if (found.isByColor()) color = found;
}

void takeGroup(const GcDbGroup& group, KeptLayer& layer) {
  switch (group.code) {
    case kLayerFlags: layer.flags = static_cast<int>(group.asInt()); break;
    case kColorIndex: layer.color.setColorIndex(static_cast<int>(group.asInt())); break;
    case kLineWeight: layer.lineWeight = static_cast<int>(group.asInt()); break;
    case kLinetypeId: layer.linetype = group.id; break;
    case kTransparency: layer.opacity = group.asInt(); break;
    case kTrueColor: takeTrueColor(group.asInt(), layer.color); break;
    default: break;
  }
}

void restore(const KeptLayer& kept, int bits, GcDbObjectId current) {
  if (kept.id.isNull()) return;
  forEach<GcDbLayerTableRecord>({kept.id}, [&](GcDbLayerTableRecord& layer) {
    if ((bits & kStateOn) != 0) ignore(layer.setIsOff((kept.flags & kOff) != 0));
    if ((bits & kStateFrozen) != 0 && kept.id != current) ignore(layer.setIsFrozen((kept.flags & kFrozen) != 0));
    if ((bits & kStateLocked) != 0) ignore(layer.setIsLocked((kept.flags & kLocked) != 0));
    if ((bits & kStateColor) != 0) ignore(layer.setColor(kept.color));
    if ((bits & kStateLinetype) != 0 && kept.linetype.isValid() && !kept.linetype.isErased())
      ignore(layer.setLinetypeObjectId(kept.linetype));
    if ((bits & kStateLineWeight) != 0) ignore(layer.setLineWeight(static_cast<GcDb::LineWeight>(kept.lineWeight)));
  });
  if ((bits & kStatePlot) != 0) setGroups(kept.id, {GcDbGroup::ofInt(290, (kept.flags & kNotPlotted) != 0 ? 0 : 1)});
  if ((bits & kStateTransparency) != 0 && opacityOf(kept.id) != kept.opacity)
    setLayerTransparency(kept.id, percentOf(kept.opacity));
}

// Calls f with the groups of a state, which is open while it runs.
template <class F>
bool withState(GcDbObjectId id, const F& f) {
  GcDbXrecord* record = nullptr;
  if (gcdbOpenObject(record, id, GcDb::kForRead) != Gcad::eOk) return false;
  f(static_cast<const GcDbGroupList&>(record->groups()));
  ignore(record->close());
  return true;
}

bool putState(GcDbDatabase& database, GcView name, const GcDbGroupList& groups) {
  auto* record = new GcDbXrecord;
  record->groups() = groups;
  return !putEntry(statesOf(database, true), name, record).isNull();
}

}  // namespace

GcText layerDescription(GcDbObjectId layer) {
  const ExtendedValues values = extendedOf(layer, kDescriptions);
  return values.texts.size() > 1 ? values.texts[1] : GcText();
}

bool setLayerDescription(GcDbObjectId layer, GcView text) {
  return setExtended(layer, kDescriptions, {GcDbGroup::ofText(1000, {}), GcDbGroup::ofText(1000, text)});
}

int layerTransparency(GcDbObjectId layer) { return percentOf(opacityOf(layer)); }

bool setLayerTransparency(GcDbObjectId layer, int percent) {
  const int64_t opacity = std::lround(kOpaque * (100 - percent) / 100.0);
  return setExtended(layer, kTransparencies, {GcDbGroup::ofInt(1071, kByAlpha | opacity)});
}

std::vector<GcText> layerStates(GcDbDatabase& database) {
  std::vector<GcText> names;
  const GcDbObjectId states = statesOf(database, false);
  if (states.isNull()) return names;
  for (const GcDbDictionaryEntry& entry : entriesOf(states)) names.emplace_back(view(entry.key));
  return names;
}

bool hasLayerState(GcDbDatabase& database, GcView name) { return !stateNamed(database, name).isNull(); }

bool saveLayerState(GcDbDatabase& database, GcView name, int bits, GcView description) {
  GcDbGroupList groups;
  groups.put(GcDbGroup::ofInt(kBits, bits));
  groups.put(GcDbGroup::ofText(kDescription, description));
  groups.put(GcDbGroup::ofInt(290, 1));
  groups.put(GcDbGroup::ofText(kCurrentLayer, nameOfRecord(database.clayer())));
  for (const GcDbObjectId id : recordsOf(database.layerTableId())) putLayer(id, groups);
  return putState(database, name, groups);
}

bool restoreLayerState(GcDbDatabase& database, GcView name) {
  int bits = 0;
  GcText current;
  std::vector<KeptLayer> kept;
  const bool found = withState(stateNamed(database, name), [&](const GcDbGroupList& groups) {
    GcDbGroupList::Cursor cursor(groups);
    for (GcDbGroup group; cursor.next(group);) {
      if (group.code == kBits) bits = static_cast<int>(group.asInt());
      if (group.code == kCurrentLayer) current = group.text;
      if (group.code == kLayerName) kept.emplace_back().id = recordNamed(database.layerTableId(), group.text);
      if (!kept.empty()) takeGroup(group, kept.back());
    }
  });
  if (!found) return false;
  const GcDbObjectId id = recordNamed(database.layerTableId(), current);
  if (!id.isNull()) ignore(database.setClayer(id));
  for (const KeptLayer& each : kept) restore(each, bits, database.clayer());
  return true;
}

bool eraseLayerState(GcDbDatabase& database, GcView name) {
  const GcDbObjectId id = stateNamed(database, name);
  if (!id.isNull()) eraseObject(id);
  return !id.isNull();
}

bool renameLayerState(GcDbDatabase& database, GcView from, GcView to) {
  if (to.empty() || hasLayerState(database, to)) return false;
  GcDbGroupList groups;
  if (!withState(stateNamed(database, from), [&](const GcDbGroupList& found) { groups = found; })) return false;
  return putState(database, to, groups) && eraseLayerState(database, from);
}

int layerStateBits(GcDbDatabase& database, GcView name) {
  int bits = 0;
  withState(stateNamed(database, name), [&](const GcDbGroupList& groups) {
    GcDbGroupList::Cursor cursor(groups);
    for (GcDbGroup group; bits == 0 && cursor.next(group);)
      if (group.code == kBits) bits = static_cast<int>(group.asInt());
  });
  return bits;
}

bool setLayerStateBits(GcDbDatabase& database, GcView name, int bits) {
  GcDbGroupList changed;
  const bool found = withState(stateNamed(database, name), [&](const GcDbGroupList& groups) {
    GcDbGroupList::Cursor cursor(groups);
    for (GcDbGroup group; cursor.next(group);) changed.put(group.code == kBits ? GcDbGroup::ofInt(kBits, bits) : group);
  });
  return found && putState(database, name, changed);
}

// ---- files of states

namespace {

void addPair(GcText& text, int code, GcView value) {
  text += gc::fromUtf8(std::to_string(code)) + GC_T("\n");
  text += value;
  text += GC_T("\n");
}

GcText takeLine(GcView& text) {
  const size_t end = std::min(text.find(GC_T('\n')), text.size());
  GcText line(text.substr(0, end));
  text.remove_prefix(std::min(end + 1, text.size()));
  if (!line.empty() && line.back() == GC_T('\r')) line.pop_back();
  return line;
}

// A pair of lines as the group a state keeps; false for what it does not keep.
bool groupOfPair(GcDbDatabase& database, int code, const GcText& value, GcDbGroup& group) {
  if (code == kLinetypeName) {
    group = GcDbGroup::ofId(kLinetypeId, recordNamed(database.linetypeTableId(), value));
    return !group.id.isNull();
  }
  if (code == kLayerName || code == kPlotStyle || code == kDescription || code == kCurrentLayer) {
    group = GcDbGroup::ofText(code, value);
    return true;
  }
  int64_t number = 0;
  const size_t begin = std::min(value.find_first_not_of(GC_T(" ")), value.size());
  if (!gc::parseInt(GcView(value).substr(begin), number)) return false;
  group = GcDbGroup::ofInt(code, number);
  return code == kBits || code == 290 || code == kLayerFlags || code == kColorIndex || code == kLineWeight ||
         code == kTransparency || code == kTrueColor;
}

}  // namespace

GcText layerStateText(GcDbDatabase& database, GcView name) {
  GcText text;
  withState(stateNamed(database, name), [&](const GcDbGroupList& groups) {
    addPair(text, 0, GC_T("LAYERSTATEDICTIONARY"));
    addPair(text, 0, GC_T("LAYERSTATE"));
    addPair(text, 1, name);
    GcDbGroupList::Cursor cursor(groups);
    for (GcDbGroup group; cursor.next(group);) {
      if (group.kind == GcDbGroupKind::Text)
        addPair(text, group.code, group.text);
      else if (group.kind == GcDbGroupKind::Id)
        addPair(text, kLinetypeName, nameOfRecord(group.id));
      else
        addPair(text, group.code, gc::fromUtf8(std::to_string(group.asInt())));
    }
  });
  return text;
}

std::vector<GcText> readLayerStates(GcDbDatabase& database, GcView text) {
  std::vector<GcText> names;
  GcText name;
  GcDbGroupList groups;
  bool wantsName = false;
  const auto keep = [&] {
    if (!name.empty() && putState(database, name, groups)) names.push_back(name);
    name.clear();
    groups.clear();
  };
  while (!text.empty()) {
    int64_t code = 0;
    const GcText codeLine = takeLine(text);
    const size_t begin = std::min(codeLine.find_first_not_of(GC_T(" ")), codeLine.size());
    if (!gc::parseInt(GcView(codeLine).substr(begin), code)) break;
    const GcText value = takeLine(text);
    GcDbGroup group;
    if (code == 0) {
      keep();
      wantsName = equalNoCase(value, GC_T("LAYERSTATE"));
    } else if (wantsName && code == 1) {
      name = value;
      wantsName = false;
    } else if (!name.empty() && groupOfPair(database, static_cast<int>(code), value, group)) {
      groups.put(group);
    }
  }
  keep();
  return names;
}

}  // namespace ed
