// Layers by the objects on them: isolated, frozen, switched off, locked, made current, merged, deleted; properties set
// back to those of the layer; layers per viewport.
#include <algorithm>

#include "db/blockreference.h"
#include "db/viewport.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/contents.h"
#include "host/ed/patterns.h"
#include "host/ed/purge.h"
#include "host/ed/records.h"
#include "host/ed/viewplace.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;
using Ids = std::vector<GcDbObjectId>;
using Layer = GcDbLayerTableRecord;

GcDbObjectId layerOf(GcDbObjectId entityId) {
  GcDbEntity* entity = nullptr;
  if (gcdbOpenObject(entity, entityId, GcDb::kForRead) != Gcad::eOk) return {};
  const GcDbObjectId layer = entity->layerId();
  ignore(entity->close());
  return layer;
}

Ids layersOf(const Ids& entities) {
  Ids layers;
  for (const GcDbObjectId entity : entities)
    if (const GcDbObjectId layer = layerOf(entity); std::find(layers.begin(), layers.end(), layer) == layers.end())
      layers.push_back(layer);
  return layers;
}

Ids allLayers(CommandInput& in) { return recordsOf(in.database().layerTableId()); }

// ---- layers of picked objects, one after the other

struct Picking {
  const char* prompt;
  bool sparesCurrent;
  void (*change)(Layer& layer);
};

Task<bool> changePicked(CommandInput& in, Picking how) {
  bool any = false;
  for (;;) {
    const Answer picked = co_await in.ask(Ask(What::Entity, how.prompt).words("Settings Undo"));
    if (picked.isKeyword("Settings") || picked.isKeyword("Undo")) continue;
    if (picked.kind != Answer::Kind::Entity) break;
    const GcDbObjectId layer = layerOf(picked.entity);
    if (how.sparesCurrent && layer == in.database().clayer()) {
      in.tell("\nCannot freeze the current layer.\n");
      continue;
    }
    forEach<Layer>({layer}, how.change);
    any = true;
  }
  co_return any;
}

Task<bool> freezePicked(CommandInput& in) {
  co_return co_await changePicked(in, {"\nSelect an object on the layer to be frozen or [Settings/Undo]: ", true,
                                       [](Layer& l) { ignore(l.setIsFrozen(true)); }});
}
Task<bool> switchOffPicked(CommandInput& in) {
  co_return co_await changePicked(in, {"\nSelect an object on the layer to be turned off or [Settings/Undo]: ", false,
                                       [](Layer& l) { ignore(l.setIsOff(true)); }});
}

Task<bool> changeOnePicked(CommandInput& in, const char* prompt, void (*change)(Layer& layer)) {
  const Answer picked = co_await in.ask(Ask(What::Entity, prompt));
  if (picked.kind != Answer::Kind::Entity) co_return false;
  forEach<Layer>({layerOf(picked.entity)}, change);
  co_return true;
}

Task<bool> lockPicked(CommandInput& in) {
  co_return co_await changeOnePicked(
      in, "\nSelect an object on the layer to be locked: ", [](Layer& l) { ignore(l.setIsLocked(true)); });
}
Task<bool> unlockPicked(CommandInput& in) {
  co_return co_await changeOnePicked(
      in, "\nSelect an object on the layer to be unlocked: ", [](Layer& l) { ignore(l.setIsLocked(false)); });
}

Task<bool> switchOnAll(CommandInput& in) {
  forEach<Layer>(allLayers(in), [](Layer& l) { ignore(l.setIsOff(false)); });
  co_return true;
}
Task<bool> thawAll(CommandInput& in) {
  forEach<Layer>(allLayers(in), [](Layer& l) { ignore(l.setIsFrozen(false)); });
  co_return true;
}

Task<bool> makeCurrent(CommandInput& in) {
  const Answer picked =
      co_await in.ask(Ask(What::Entity, "\nSelect object whose layer will become current: ").needed());
  co_return picked.kind == Answer::Kind::Entity&& in.database().setClayer(layerOf(picked.entity)) == Gcad::eOk;
}

// ---- onto other layers

void moveTo(const Ids& entities, GcDbObjectId layer) {
  forEach<GcDbEntity>(entities, [&](GcDbEntity& entity) { ignore(entity.setLayer(layer)); });
}

Task<bool> toCurrent(CommandInput& in) {
  const Ids ids = co_await selectObjects(in, "\nSelect objects to be changed to the current layer: ");
  moveTo(ids, in.database().clayer());
  co_return !ids.empty();
}

// A layer by an object on it, or by its name.
Task<GcDbObjectId> askLayer(CommandInput& in, const char* prompt) {
  const Answer picked = co_await in.ask(Ask(What::Entity, prompt).words("Name"));
  if (picked.kind == Answer::Kind::Entity) co_return layerOf(picked.entity);
  if (!picked.isKeyword("Name")) co_return GcDbObjectId();
  const Answer name = co_await in.ask(Ask(What::Line, "\nEnter layer name: "));
  const GcDbObjectId layer = recordNamed(in.database().layerTableId(), name.text);
  if (layer.isNull()) in.tell("\nCannot find layer.\n");
  co_return layer;
}

Task<bool> match(CommandInput& in) {
  const Ids ids = co_await selectObjects(in, "\nSelect objects to be changed: ");
  if (ids.empty()) co_return false;
  const GcDbObjectId layer = co_await askLayer(in, "\nSelect object on destination layer or [Name]: ");
  if (layer.isNull()) co_return false;
  moveTo(ids, layer);
  co_return true;
}

// ---- isolated: all other layers off until they are brought back

Task<bool> isolate(CommandInput& in) {
  const Ids ids = co_await selectObjects(in, "\nSelect objects on the layer(s) to be isolated or [Settings]: ");
  if (ids.empty()) co_return false;
  const Ids kept = layersOf(ids);
  Ids& switchedOff = in.editor().layersSwitchedOff;
  switchedOff.clear();
  for (const GcDbObjectId id : allLayers(in)) {
    if (std::find(kept.begin(), kept.end(), id) != kept.end()) continue;
    forEach<Layer>({id}, [&](Layer& layer) {
      if (!layer.isOff()) switchedOff.push_back(id);
      ignore(layer.setIsOff(true));
    });
  }
  if (std::find(kept.begin(), kept.end(), in.database().clayer()) == kept.end())
    ignore(in.database().setClayer(kept.front()));
  co_return true;
}

Task<bool> endIsolation(CommandInput& in) {
  Ids& switchedOff = in.editor().layersSwitchedOff;
  if (switchedOff.empty()) co_return false;
  forEach<Layer>(switchedOff, [](Layer& layer) { ignore(layer.setIsOff(false)); });
  switchedOff.clear();
  co_return true;
}

// ---- merged into another layer, deleted with what is on them

// The layers meant: by objects until Enter, or by names until an empty one.
Task<Ids> askLayers(CommandInput& in, const char* prompt) {
  Ids layers;
  bool byName = false;
  for (;;) {
    GcDbObjectId layer;
    if (byName) {
      const Answer name = co_await in.ask(Ask(What::Line, "\nEnter layer name: "));
      if (name.text.empty()) break;
      layer = recordNamed(in.database().layerTableId(), name.text);
      if (layer.isNull()) in.tell("\nCannot find layer.\n");
    } else {
      const Answer picked = co_await in.ask(Ask(What::Entity, prompt).words("Name Undo"));
      byName = picked.isKeyword("Name");
      if (byName) continue;
      if (picked.kind != Answer::Kind::Entity) break;
      layer = layerOf(picked.entity);
    }
    if (!layer.isNull()) layers.push_back(layer);
  }
  co_return layers;
}

bool mayGo(CommandInput& in, GcDbObjectId layer) {
  if (layer != in.database().layerZero() && layer != in.database().clayer()) return true;
  in.tell("\nLayer 0 and the current layer cannot be deleted.\n");
  return false;
}

Ids entitiesOn(CommandInput& in, GcDbObjectId layer) {
  Ids found;
  for (const GcDbObjectId id : entitiesOfAllBlocks(in.database()))
    if (layerOf(id) == layer) found.push_back(id);
  return found;
}

void unlock(GcDbObjectId layer) {
  forEach<Layer>({layer}, [](Layer& l) { ignore(l.setIsLocked(false)); });
}

Task<bool> askSure(CommandInput& in) {
  const Answer sure = co_await in.ask(Ask(What::Keyword, "\nDo you wish to continue? [Yes/No] <No>: ").words("Yes No"));
  co_return sure.isKeyword("Yes");
}

Task<bool> deleteLayers(CommandInput& in) {
  const Ids layers = co_await askLayers(in, "\nSelect object on layer to delete or [Name]: ");
  if (layers.empty() || !co_await askSure(in)) co_return false;
  bool all = true;
  for (const GcDbObjectId layer : layers) {
    if (!mayGo(in, layer)) {
      all = false;
      continue;
    }
    unlock(layer);
    forEach<GcDbEntity>(entitiesOn(in, layer), [](GcDbEntity& entity) { ignore(entity.erase()); });
    eraseRecord(layer);
  }
  co_return all;
}

Task<bool> mergeLayers(CommandInput& in) {
  const Ids layers = co_await askLayers(in, "\nSelect object on layer to merge or [Name]: ");
  if (layers.empty()) co_return false;
  const GcDbObjectId target = co_await askLayer(in, "\nSelect object on target layer or [Name]: ");
  if (target.isNull() || !co_await askSure(in)) co_return false;
  bool all = true;
  for (const GcDbObjectId layer : layers) {
    if (layer == target || !mayGo(in, layer)) {
      all = false;
      continue;
    }
    unlock(layer);
    moveTo(entitiesOn(in, layer), target);
    eraseRecord(layer);
  }
  co_return all;
}

// ---- SETBYLAYER

Ids insideBlocksOf(CommandInput& in, const Ids& ids) {
  Ids inside;
  for (const GcDbObjectId record : recordsOf(in.database().blockTableId())) {
    const bool used = std::any_of(ids.begin(), ids.end(), [&](GcDbObjectId id) {
      GcDbEntity* entity = nullptr;
      if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) return false;
      const auto* reference = GcDbBlockReference::cast(entity);
      const bool hit = reference != nullptr && reference->blockTableRecord() == record;
      ignore(entity->close());
      return hit;
    });
    if (!used) continue;
    const Ids held = entitiesOf(record);
    inside.insert(inside.end(), held.begin(), held.end());
  }
  return inside;
}

Task<bool> setByLayer(CommandInput& in) {
  Ids ids = co_await selectObjects(in, "\nSelect objects or [Settings]: ");
  if (ids.empty()) co_return false;
  const Answer byBlock =
      co_await in.ask(Ask(What::Keyword, "\nChange ByBlock to ByLayer? [Yes/No] <Yes>: ").words("Yes No"));
  const Answer blocks = co_await in.ask(Ask(What::Keyword, "\nInclude blocks? [Yes/No] <Yes>: ").words("Yes No"));
  if (!blocks.isKeyword("No")) {
    const Ids inside = insideBlocksOf(in, ids);
    ids.insert(ids.end(), inside.begin(), inside.end());
  }
  const GcDbObjectId linetype = in.database().byLayerLinetype();
  const GcDbObjectId blockLinetype = in.database().byBlockLinetype();
  const bool keepsByBlock = byBlock.isKeyword("No");
  forEach<GcDbEntity>(ids, [&](GcDbEntity& entity) {
    if (!keepsByBlock || entity.colorIndex() != 0) ignore(entity.setColorIndex(256));
    if (!keepsByBlock || entity.linetypeId() != blockLinetype) ignore(entity.setLinetype(linetype));
    if (!keepsByBlock || entity.lineWeight() != GcDb::kLnWtByBlock) ignore(entity.setLineWeight(GcDb::kLnWtByLayer));
  });
  co_return true;
}

// ---- VPLAYER

constexpr int kFrozenInNewViewports = 2;  // bit of a layer's flags

GcDbObjectIdArray layersNamed(CommandInput& in, GcView patterns) {
  GcDbObjectIdArray found;
  for (const GcDbObjectId id : allLayers(in))
    if (matchesName(nameOfRecord(id), patterns)) found.append(id);
  return found;
}

// The windows meant: the one worked in, all of the drawing's or those selected on the sheet.
Task<Ids> askViewports(CommandInput& in) {
  const Answer which =
      co_await in.ask(Ask(What::Keyword, "\nEnter an option [All/Select/Current/eXcept current] <Current>: ")
                          .words("All Select Current eXcept"));
  Ids found;
  if (which.isKeyword("Select")) co_return co_await selectObjects(in);
  const GcDbObjectId current = viewportNumbered(in.editor(), in.editor().viewportNumber());
  if (!which.isKeyword("All") && !which.isKeyword("eXcept")) co_return Ids{current};
  for (const GcDbObjectId id : entitiesOfAllBlocks(in.database()))
    if (id.objectClass()->isDerivedFrom(GcDbViewport::desc()) && !(which.isKeyword("eXcept") && id == current))
      found.push_back(id);
  co_return found;
}

Task<bool> changeInViewports(CommandInput& in, bool freeze) {
  const Answer names = co_await in.ask(
      Ask(What::Line, freeze ? "\nEnter layer name(s) to freeze: " : "\nEnter layer name(s) to thaw: "));
  const GcDbObjectIdArray layers = layersNamed(in, names.text);
  const Ids viewports = co_await askViewports(in);
  forEach<GcDbViewport>(viewports, [&](GcDbViewport& viewport) {
    if (!viewport.isSheet())
      ignore(freeze ? viewport.freezeLayersInViewport(layers) : viewport.thawLayersInViewport(layers));
  });
  co_return true;
}

// Frozen exactly where a new viewport would have it so.
Task<bool> resetInViewports(CommandInput& in) {
  const Answer names = co_await in.ask(Ask(What::Line, "\nEnter layer name(s) to reset: "));
  GcDbObjectIdArray frozen, thawed;
  for (const GcDbObjectId id : layersNamed(in, names.text))
    forEach<Layer>({id}, [&](Layer& l) { ((l.flags() & kFrozenInNewViewports) != 0 ? frozen : thawed).append(id); });
  const Ids viewports = co_await askViewports(in);
  forEach<GcDbViewport>(viewports, [&](GcDbViewport& viewport) {
    if (viewport.isSheet()) return;
    ignore(viewport.freezeLayersInViewport(frozen));
    ignore(viewport.thawLayersInViewport(thawed));
  });
  co_return true;
}

Task<bool> newFrozenLayers(CommandInput& in) {
  const Answer names = co_await in.ask(Ask(What::Line, "\nEnter name(s) of new layers frozen in all viewports: "));
  GcDbObjectIdArray made;
  for (size_t at = 0; at < names.text.size();) {
    const size_t end = std::min(names.text.find(GC_T(','), at), names.text.size());
    if (end > at) made.append(needLayer(in.database(), GcView(names.text).substr(at, end - at)));
    at = end + 1;
  }
  for (const GcDbObjectId id : made)
    forEach<Layer>({id}, [](Layer& l) { ignore(l.setFlags(static_cast<int16_t>(l.flags() | kFrozenInNewViewports))); });
  forEach<GcDbViewport>(entitiesOfAllBlocks(in.database()), [&](GcDbViewport& viewport) {
    if (!viewport.isSheet()) ignore(viewport.freezeLayersInViewport(made));
  });
  co_return !made.isEmpty();
}

Task<bool> viewportDefault(CommandInput& in) {
  const Answer names = co_await in.ask(Ask(What::Line, "\nEnter layer name(s) to change viewport visibility: "));
  const Answer to = co_await in.ask(
      Ask(What::Keyword, "\nEnter a viewport visibility option [Frozen/Thawed] <Thawed>: ").words("Frozen Thawed"));
  for (const GcDbObjectId id : layersNamed(in, names.text))
    forEach<Layer>({id}, [&](Layer& l) {
      const int flags = l.flags() & ~kFrozenInNewViewports;
      ignore(l.setFlags(static_cast<int16_t>(to.isKeyword("Frozen") ? flags | kFrozenInNewViewports : flags)));
    });
  co_return true;
}

Task<bool> viewportLayers(CommandInput& in) {
  if (!in.editor().inPaperLayout()) {
    in.tell("\n** Command not allowed in Model Tab **\n");
    co_return false;
  }
  for (;;) {
    const Answer option = co_await in.ask(
        Ask(What::Keyword, "\nEnter an option [?/Color/Ltype/LWeight/Freeze/Thaw/Reset/Newfrz/Vpvisdflt]: ")
            .words("? Color Ltype LWeight TRansparency Freeze Thaw Reset Newfrz Vpvisdflt"));
    if (option.isKeyword("Freeze") || option.isKeyword("Thaw")) {
      static_cast<void>(co_await changeInViewports(in, option.isKeyword("Freeze")));
    } else if (option.isKeyword("Reset")) {
      static_cast<void>(co_await resetInViewports(in));
    } else if (option.isKeyword("Newfrz")) {
      static_cast<void>(co_await newFrozenLayers(in));
    } else if (option.isKeyword("Vpvisdflt")) {
      static_cast<void>(co_await viewportDefault(in));
    } else if (option.kind == Answer::Kind::Keyword) {
      in.tell("\nColors, linetypes and lineweights of single viewports are not supported.\n");
      co_return false;
    } else {
      break;
    }
  }
  co_return true;
}

constexpr Command kCommands[] = {
    {"LAYFRZ", "", freezePicked},       {"LAYOFF", "", switchOffPicked},
    {"LAYLCK", "", lockPicked},         {"LAYULK", "", unlockPicked},
    {"LAYON", "", switchOnAll},         {"LAYTHW", "", thawAll},
    {"LAYMCUR", "", makeCurrent},       {"LAYCUR", "", toCurrent},
    {"-LAYMCH", "LAYMCH", match},       {"LAYISO", "", isolate},
    {"LAYUNISO", "", endIsolation},     {"-LAYDEL", "LAYDEL", deleteLayers},
    {"-LAYMRG", "LAYMRG", mergeLayers}, {"SETBYLAYER", "", setByLayer},
    {"VPLAYER", "", viewportLayers},
};

}  // namespace

std::span<const Command> layerToolCommands() { return kCommands; }

}  // namespace ed
