#include "host/dxf/read/load_context.h"

#include "host/db/core/loader.h"
#include "host/rx/text/number.h"

namespace gc::dxf {

void LoadContext::report(GcDbLoadAction action, std::size_t offset, std::uint64_t handle, std::string what) const {
  database.loadReport().add({action, reader.lineAt(offset), offset, handle, std::move(what)});
}

void LoadContext::setOwner(std::size_t offset, GcDbObject& object, GcDbObjectId owner) const {
  if (!object.ownerId().isNull() && object.ownerId() != owner) {
    report(GcDbLoadAction::Repaired, offset, object.handle(),
           "owner " + hexText(object.ownerId().handle()) + ": " + hexText(owner.handle()) + " taken");
  }
  GcDbLoader::setOwner(object, owner);
}

GcText LoadContext::decoded(std::string_view raw) const {
  GcText name;
  (void)text.decode(raw, name);
  return name;
}

std::string LoadContext::shown(std::string_view raw) const {
  constexpr std::size_t kMost = 80;
  GcText decoded;
  (void)text.decode(raw.substr(0, kMost), decoded);
  return '"' + toUtf8(GcView(decoded)) + (raw.size() > kMost ? "…\"" : "\"");
}

}  // namespace gc::dxf
