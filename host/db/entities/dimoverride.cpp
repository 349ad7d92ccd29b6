#include "host/db/entities/dimoverride.h"

#include <vector>

#include "db/blockreference.h"
#include "db/database.h"
#include "host/db/core/extra.h"
#include "host/db/core/names.h"
#include "host/db/entities/arrowheads.h"

namespace gcdimoverride {
namespace {

struct Pair {
  int setting;
  GcDbGroup value;
};

// Where the reading of extended data stands.
enum class Place { Elsewhere, InAcad, AtBrace, InPairs };

// The pairs of the entity; `rest` receives the groups of ACAD that are none of them (texts point into the list).
std::vector<Pair> pairsOf(const GcDbGroupList& xdata, std::vector<GcDbGroup>* rest) {
  std::vector<Pair> pairs;
  Place place = Place::Elsewhere;
  GcDbGroupList::Cursor cursor(xdata);
  int setting = -1;
  for (GcDbGroup group; cursor.next(group);) {
    if (group.code == 1001) {
      place = group.text == GC_T("ACAD") ? Place::InAcad : Place::Elsewhere;
      continue;
    }
    if (place == Place::Elsewhere) continue;
    if (place == Place::InAcad && group.code == 1000 && group.text == GC_T("DSTYLE")) {
      place = Place::AtBrace;
    } else if (place == Place::AtBrace) {
      place = group.code == 1002 && group.text == GC_T("{") ? Place::InPairs : Place::InAcad;
    } else if (place == Place::InPairs) {
      if (group.code == 1002) {
        place = Place::InAcad;
      } else if (setting < 0) {
        setting = static_cast<int>(group.asInt());
      } else {
        pairs.push_back({setting, group});
        setting = -1;
      }
    } else if (rest != nullptr) {
      rest->push_back(group);
    }
  }
  return pairs;
}

bool find(const GcDbEntity& entity, int setting, GcDbGroup& value) {
  if (entity.extra() == nullptr) return false;
  for (const Pair& pair : pairsOf(entity.extra()->xdata, nullptr)) {
    if (pair.setting != setting) continue;
    value = pair.value;
    return true;
  }
  return false;
}

void put(GcDbGroupList& list, GcDbGroup group, int code) {
  group.code = static_cast<int16_t>(code);
  list.put(group);
}

GcDbGroup shortGroup(int code, int value) {
  GcDbGroup group = GcDbGroup::ofInt(code, value);
  group.kind = GcDbGroupKind::Int16;
  return group;
}

// Replaces or adds one pair; a code below 0 removes it.
void setPair(GcDbEntity& entity, int setting, const GcDbGroup& value) {
  entity.assertWriteEnabled();
  GcDbGroupList& xdata = entity.needExtra().xdata;
  const GcDbGroupList former = xdata;
  std::vector<GcDbGroup> rest;
  std::vector<Pair> pairs = pairsOf(former, &rest);
  std::erase_if(pairs, [&](const Pair& pair) { return pair.setting == setting; });
  if (value.code >= 0) pairs.push_back({setting, value});
  xdata.clear();
  if (!pairs.empty() || !rest.empty()) xdata.put(GcDbGroup::ofText(1001, GC_T("ACAD")));
  for (const GcDbGroup& group : rest) xdata.put(group);
  if (!pairs.empty()) {
    xdata.put(GcDbGroup::ofText(1000, GC_T("DSTYLE")));
    xdata.put(GcDbGroup::ofText(1002, GC_T("{")));
    for (const Pair& pair : pairs) {
      xdata.put(shortGroup(1070, pair.setting));
      put(xdata, pair.value, pair.value.code);
    }
    xdata.put(GcDbGroup::ofText(1002, GC_T("}")));
  }
  bool elsewhere = false;
  GcDbGroupList::Cursor cursor(former);
  for (GcDbGroup group; cursor.next(group);) {
    if (group.code == 1001) elsewhere = group.text != GC_T("ACAD");
    if (elsewhere) xdata.put(group);
  }
}

}  // namespace

GcDbObjectId arrow(const GcDbEntity& entity, int setting) { return arrow(entity, setting, GcDbObjectId()); }

GcDbObjectId arrow(const GcDbEntity& entity, int setting, GcDbObjectId ofStyle) {
  GcDbGroup value;
  GcDbObjectId id;
  if (!find(entity, setting, value) || entity.database() == nullptr) return ofStyle;
  if (value.kind == GcDbGroupKind::Id) return value.id;
  ignore(entity.database()->getGcDbObjectId(id, false, GcDbHandle(static_cast<uint64_t>(value.integer))));
  return id;
}

Gcad::ErrorStatus setArrow(GcDbEntity& entity, int setting, const GCHAR* name) {
  if (entity.database() == nullptr) return Gcad::eNoDatabase;
  GcDbObjectId block;
  if (name != nullptr && name[0] != 0) {
    block = gcarrow::blockNamed(*entity.database(), view(name));
    if (block.isNull()) return Gcad::eKeyNotFound;
  }
  GcDbGroup value;
  value.code = 1005;
  value.kind = GcDbGroupKind::Handle;
  value.integer = static_cast<int64_t>(static_cast<uint64_t>(block.handle()));
  setPair(entity, setting, value);
  return Gcad::eOk;
}

double real(const GcDbEntity& entity, int setting, double ofStyle) {
  GcDbGroup value;
  return find(entity, setting, value) ? value.asReal() : ofStyle;
}

int integer(const GcDbEntity& entity, int setting, int ofStyle) {
  GcDbGroup value;
  return find(entity, setting, value) ? static_cast<int>(value.asInt()) : ofStyle;
}

Gcad::ErrorStatus setReal(GcDbEntity& entity, int setting, double number) {
  setPair(entity, setting, GcDbGroup::ofReal(1040, number));
  return Gcad::eOk;
}

double drawArrow(GcGiWorldDraw& draw, const GcDbEntity& entity, GcDbObjectId styleId, const GcGePoint3d& tip,
                 const GcGePoint3d& behind, const GcGeVector3d& normal) {
  constexpr int kScale = 40;
  constexpr int kSize = 41;
  double scale = 1;
  double size = 2.5;
  GcDbObjectId block;
  GcDbDimStyleTableRecord* style = nullptr;
  if (gcdbOpenObject(style, styleId, GcDb::kForRead) == Gcad::eOk) {
    scale = style->dimscale();
    size = style->dimasz();
    block = style->dimldrblk();
    ignore(style->close());
  }
  scale = real(entity, kScale, scale);
  size = real(entity, kSize, size) * (scale > 0 ? scale : 1);
  block = arrow(entity, kLeaderArrow, block);
  gcarrow::draw(draw, block, tip, tip - behind, size, normal);
  return gcarrow::reach(block, size);
}

}  // namespace gcdimoverride
