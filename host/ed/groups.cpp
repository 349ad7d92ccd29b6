#include "host/ed/groups.h"

#include "db/database.h"
#include "db/dictionary.h"
#include "host/db/objects/standard.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

constexpr const GCHAR* kDictionary = GC_T("ACAD_GROUP");

GcDbObjectId dictionaryOfGroups(GcDbDatabase& database, bool make) {
  GcDbDictionary* root = nullptr;
  GcDbObjectId id;
  if (database.getNamedObjectsDictionary(root, make ? GcDb::kForWrite : GcDb::kForRead) != Gcad::eOk) return id;
  if (root->getAt(kDictionary, id) != Gcad::eOk && make) {
    auto* made = new GcDbDictionary;
    if (root->setAt(kDictionary, made, id) == Gcad::eOk)
      ignore(made->close());
    else
      delete made;
  }
  ignore(root->close());
  return id;
}

}  // namespace

GcDbObjectId groupNamed(GcDbDatabase& database, GcView name) {
  GcDbDictionary* groups = nullptr;
  GcDbObjectId id;
  if (gcdbOpenObject(groups, dictionaryOfGroups(database, false), GcDb::kForRead) != Gcad::eOk) return id;
  ignore(groups->getAt(GcText(name).c_str(), id));
  ignore(groups->close());
  return id;
}

std::vector<GcDbObjectId> groupMembers(GcDbObjectId groupId) {
  std::vector<GcDbObjectId> members;
  GcDbEntityGroup* group = nullptr;
  if (gcdbOpenObject(group, groupId, GcDb::kForRead) != Gcad::eOk) return members;
  for (const GcDbObjectId id : group->entities())
    if (id.isValid() && !id.isErased()) members.push_back(id);
  ignore(group->close());
  return members;
}

GcDbObjectId makeGroup(GcDbDatabase& database, GcView name, GcView description,
                       const std::vector<GcDbObjectId>& members) {
  GcText key(name);
  for (int i = 1; key.empty(); ++i) {
    const GcText tried = gc::fromUtf8("*A" + std::to_string(i));
    if (groupNamed(database, tried).isNull()) key = tried;
  }
  GcDbDictionary* groups = nullptr;
  GcDbObjectId id = groupNamed(database, key);
  if (!id.isNull() || gcdbOpenObject(groups, dictionaryOfGroups(database, true), GcDb::kForWrite) != Gcad::eOk)
    return {};
  auto* group = new GcDbEntityGroup;
  if (groups->setAt(key.c_str(), group, id) == Gcad::eOk) {
    ignore(group->setAnonymous(name.empty()));
    ignore(group->setDescription(GcText(description).c_str()));
    for (const GcDbObjectId member : members) ignore(group->append(member));
    ignore(group->close());
  } else {
    delete group;
    id.setNull();
  }
  ignore(groups->close());
  return id;
}

}  // namespace ed
