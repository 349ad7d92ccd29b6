// Commands that plug-ins add, found in the system registry under GCED_REGISTERED_COMMANDS.
#pragma once

#include <vector>

#include "ed/cmdstack.h"
#include "host/rx/view.h"

namespace ed {

class CommandStack final : public GcEdCommandStack {
 public:
  CommandStack();  // enters itself in the registry
  ~CommandStack() override;

  Gcad::ErrorStatus addCommand(const GCHAR* group, const GCHAR* globalName, const GCHAR* localName, int flags,
                               void (*function)()) override;
  Gcad::ErrorStatus removeCmd(const GCHAR* group, const GCHAR* globalName) override;

  using Function = void (*)();
  // The command typed so; null when no plug-in has it. `global` asks for global names only.
  [[nodiscard]] static Function find(GcView name, bool global);

 private:
  struct Row {
    GcText group, globalName, localName;
    Function function;
  };
  std::vector<Row> m_rows;
};

}  // namespace ed
