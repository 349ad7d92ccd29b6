#include "host/dwg/file/savenotes.h"

#include <map>

#include "host/db/entities/modeler_body.h"
#include "host/db/objects/zombiedata.h"
#include "host/dwg/record/rawrecord.h"
#include "host/rx/text/number.h"

namespace gc::dwg {

namespace {

struct Group {
  uint64_t first = 0;
  int count = 0;
  std::string handles;
};

std::string typeName(const GcDbObject& object) {
  if (const GcDbZombieData* zombie = zombieDataOf(object)) return toUtf8(view(zombie->dxfName));
  const GCHAR* name = object.isA()->dxfName();
  return name == nullptr ? toUtf8(view(object.isA()->name())) : toUtf8(view(name));
}

// Empty where the record says all of the object.
std::string lackOf(const PlannedObject& planned, int version) {
  const GcDbObject& object = *planned.object;
  if (planned.type == kProxyEntity || planned.type == kProxyObject) {
    if (zombieDataOf(object) != nullptr)
      return "a record of another version or a file's groups, of a class nobody knows: a proxy that keeps them";
    return "no record of the version says all of it: a proxy that holds its groups";
  }
  if (version >= kR2004 || !gcmodeler::hasBody(object) || gcmodeler::hasText(object)) return {};
  GcArray<uint8_t> bytes;
  if (gcmodeler::getBytes(object, bytes) != Gcad::eOk) return {};
  return "its body is known as bytes, which programs of that version cannot read: kept in the record";
}

}  // namespace

void tellSaved(const WritePlan& plan, int version, GcDbSaveReport& report) {
  std::map<std::pair<std::string, std::string>, Group> groups;
  for (const PlannedObject& planned : plan.objects) {
    const std::string lack = lackOf(planned, version);
    if (lack.empty()) continue;
    Group& group = groups[{typeName(*planned.object), lack}];
    group.first = planned.handle;
    group.handles += (group.count++ == 0 ? "" : ", ") + hexText(planned.handle);
  }
  for (const auto& [key, group] : groups) {
    const bool isOne = group.count == 1;
    report.add({GcDbSaveAction::Mapped, isOne ? group.first : 0, key.first,
                isOne ? key.second : key.second + ": " + group.handles});
  }
}

}  // namespace gc::dwg
