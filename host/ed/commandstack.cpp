#include "host/ed/commandstack.h"

#include "rx/rxapp.h"

namespace ed {

namespace {
CommandStack* g_stack = nullptr;
}

CommandStack::CommandStack() {
  g_stack = this;
  gcrxSysRegistry()->atPut(GCED_REGISTERED_COMMANDS, this);
}

CommandStack::~CommandStack() {
  gcrxSysRegistry()->remove(GCED_REGISTERED_COMMANDS);
  g_stack = nullptr;
}

Gcad::ErrorStatus CommandStack::addCommand(const GCHAR* group, const GCHAR* globalName, const GCHAR* localName, int,
                                           void (*function)()) {
  if (view(globalName).empty() || function == nullptr) return Gcad::eInvalidInput;
  for (const Row& row : m_rows)
    if (equalNoCase(row.group, view(group)) && equalNoCase(row.globalName, view(globalName)))
      return Gcad::eDuplicateKey;
  const GcView local = view(localName).empty() ? view(globalName) : view(localName);
  m_rows.push_back({GcText(view(group)), GcText(view(globalName)), GcText(local), function});
  return Gcad::eOk;
}

Gcad::ErrorStatus CommandStack::removeCmd(const GCHAR* group, const GCHAR* globalName) {
  const size_t removed = std::erase_if(m_rows, [&](const Row& row) {
    return equalNoCase(row.group, view(group)) && equalNoCase(row.globalName, view(globalName));
  });
  return removed > 0 ? Gcad::eOk : Gcad::eKeyNotFound;
}

CommandStack::Function CommandStack::find(GcView name, bool global) {
  if (g_stack == nullptr) return nullptr;
  for (const Row& row : g_stack->m_rows)
    if (equalNoCase(row.globalName, name) || (!global && equalNoCase(row.localName, name))) return row.function;
  return nullptr;
}

}  // namespace ed
