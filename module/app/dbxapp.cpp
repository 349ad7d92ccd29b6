#include "module/app/dbxapp.h"

#include <span>

#include "module/app/moduleplatform.h"
#include "module/app/tables.h"

namespace {

// Longest name a string resource may give, with its terminator.
constexpr int kNameSize = 132;

// The entry's LISP name; `buffer` holds it when it comes from a string resource, empty when there is none.
const GCHAR* nameOf(const LispFunction& entry, void* module, GCHAR (&buffer)[kNameSize]) {
  if (entry.name != nullptr) return entry.name;
  buffer[0] = 0;
  moduleplatform::loadString(module, entry.resourceId, buffer, kNameSize);
  return buffer;
}

void initClasses() {
  const std::span<CustomClass> classes = customClasses();
  for (CustomClass& entry : classes) {
    entry.rxInit();
    entry.registered = true;
  }
  if (!classes.empty()) gcrxBuildClassHierarchy();
}

// Children go before their parent.
void deleteClass(CustomClass& entry) {
  for (CustomClass& child : customClasses())
    if (child.registered && child.desc()->myParent() == entry.desc()) deleteClass(child);
  deleteGcRxClass(entry.desc());
  entry.registered = false;
}

GcEdCommandStack* commandStack() {
  return static_cast<GcEdCommandStack*>(gcrxSysRegistry()->at(GCED_REGISTERED_COMMANDS));
}

void addCommands(void* module) {
  for (const CommandEntry& entry : commands()) {
    GCHAR local[kNameSize] = {};
    if (entry.localName == nullptr) moduleplatform::loadString(module, entry.resourceId, local, kNameSize);
    if (GcEdCommandStack* stack = commandStack())
      ignore(stack->addCommand(entry.group, entry.globalName, entry.localName != nullptr ? entry.localName : local,
                               entry.flags, entry.function));
  }
}

void removeCommands() {
  for (const CommandEntry& entry : commands())
    if (GcEdCommandStack* stack = commandStack()) ignore(stack->removeCmd(entry.group, entry.globalName));
}

}  // namespace

GcRx::AppRetCode GcRxDbxApp::On_kInitAppMsg(void* packet) {
  m_module = moduleplatform::handle();
  GcRxDynamicLinker* linker = gcrxDynamicLinker();
  if (m_unlocked && linker != nullptr) linker->unlockApplication(packet);
  if (m_mdiAware && linker != nullptr) linker->registerAppMDIAware(packet);
  RegisterServerComponents();
  initClasses();
  return GcRx::kRetOK;
}

GcRx::AppRetCode GcRxDbxApp::On_kUnloadAppMsg(void*) {
  for (CustomClass& entry : customClasses())
    if (entry.registered) deleteClass(entry);
  return GcRx::kRetOK;
}

GcRx::AppRetCode GcRxDbxApp::On_kLoadDwgMsg(void*) { return GcRx::kRetOK; }
GcRx::AppRetCode GcRxDbxApp::On_kUnloadDwgMsg(void*) { return GcRx::kRetOK; }
GcRx::AppRetCode GcRxDbxApp::On_kInvkSubrMsg(void*) { return GcRx::kRetOK; }
GcRx::AppRetCode GcRxDbxApp::On_kCfgMsg(void*) { return GcRx::kRetOK; }
GcRx::AppRetCode GcRxDbxApp::On_kEndMsg(void*) { return GcRx::kRetOK; }
GcRx::AppRetCode GcRxDbxApp::On_kQuitMsg(void*) { return GcRx::kRetOK; }
GcRx::AppRetCode GcRxDbxApp::On_kSaveMsg(void*) { return GcRx::kRetOK; }
GcRx::AppRetCode GcRxDbxApp::On_kDependencyMsg(void*) { return GcRx::kRetOK; }
GcRx::AppRetCode GcRxDbxApp::On_kNoDependencyMsg(void*) { return GcRx::kRetOK; }
GcRx::AppRetCode GcRxDbxApp::On_kOleUnloadAppMsg(void*) { return GcRx::kRetOK; }
GcRx::AppRetCode GcRxDbxApp::On_kPreQuitMsg(void*) { return GcRx::kRetOK; }
GcRx::AppRetCode GcRxDbxApp::On_kInitDialogMsg(void*) { return GcRx::kRetOK; }
GcRx::AppRetCode GcRxDbxApp::On_kEndDialogMsg(void*) { return GcRx::kRetOK; }
GcRx::AppRetCode GcRxDbxApp::On_kNullMsg(void*) { return GcRx::kRetOK; }

GcRx::AppRetCode GcRxGrxApp::On_kInitAppMsg(void* packet) {
  const GcRx::AppRetCode answer = GcRxDbxApp::On_kInitAppMsg(packet);
  addCommands(module());
  return answer;
}

GcRx::AppRetCode GcRxGrxApp::On_kUnloadAppMsg(void* packet) {
  const GcRx::AppRetCode answer = GcRxDbxApp::On_kUnloadAppMsg(packet);
  removeCommands();
  return answer;
}

GcRx::AppRetCode GcRxGrxApp::On_kLoadDwgMsg(void*) {
  GCHAR buffer[kNameSize];
  int code = 0;
  for (const LispFunction& entry : lispFunctions()) {
    if (!entry.isPresent()) continue;
    gcedDefun(nameOf(entry, module(), buffer), code);
    if (entry.regFunc == 1) gcedRegFunc(entry.function, code);
    ++code;
  }
  return GcRx::kRetOK;
}

GcRx::AppRetCode GcRxGrxApp::On_kUnloadDwgMsg(void*) {
  GCHAR buffer[kNameSize];
  int code = 0;
  for (const LispFunction& entry : lispFunctions())
    if (entry.isPresent()) gcedUndef(nameOf(entry, module(), buffer), code++);
  return GcRx::kRetOK;
}

GcRx::AppRetCode GcRxGrxApp::On_kInvkSubrMsg(void*) {
  if (const LispFunction* entry = lispFunctionAt(gcedGetFunCode())) entry->function();
  return GcRx::kRetOK;
}
