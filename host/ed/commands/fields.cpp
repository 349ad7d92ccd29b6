// UPDATEFIELD: texts with fields say what is so now.
#include "host/ed/fields/update.h"

#include "host/ed/command/families.h"
#include "host/ed/command/select.h"

namespace ed {

namespace {

Task<bool> updateField(CommandInput& in) {
  const std::vector<GcDbObjectId> chosen = co_await selectObjects(in);
  const FieldCount count = updateFields(in.editor(), chosen);
  in.tell(
      ("\n" + std::to_string(count.found) + " field(s) found\n" + std::to_string(count.updated) + " field(s) updated\n")
          .c_str());
  co_return true;
}

constexpr Command kCommands[] = {
    {"UPDATEFIELD", "", updateField},
};

}  // namespace

std::span<const Command> fieldCommands() { return kCommands; }

}  // namespace ed
