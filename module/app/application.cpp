// The application object and the entry point through which the host's messages reach it.
#include "module/app/dbxapp.h"
#include "module/ldata/kelvl.h"
#include "module/log/modulelog.h"

namespace {

class CVrkEntPropertyExApp final : public GcRxGrxApp {
 public:
  GcRx::AppRetCode On_kInitAppMsg(void* packet) override {
    modulelog::attachFromSettings();
    modulelog::debug(GC_T("CVrkLDATAApp::On_kInitAppMsg"));
    const GcRx::AppRetCode answer = GcRxGrxApp::On_kInitAppMsg(packet);
    CKel_VL::rxInit();
    gcrxBuildClassHierarchy();
    return answer;
  }

  GcRx::AppRetCode On_kUnloadAppMsg(void* packet) override {
    modulelog::debug(GC_T("CVrkLDATAApp::On_kUnloadAppMsg"));
    Logger::destroyAll();
    return GcRxGrxApp::On_kUnloadAppMsg(packet);
  }

  void RegisterServerComponents() override {}
};

CVrkEntPropertyExApp s_application;

using Handler = GcRx::AppRetCode (GcRxDbxApp::*)(void*);

// By message code.
constexpr Handler kHandlers[] = {
    &GcRxDbxApp::On_kNullMsg,         &GcRxDbxApp::On_kInitAppMsg,    &GcRxDbxApp::On_kUnloadAppMsg,
    &GcRxDbxApp::On_kLoadDwgMsg,      &GcRxDbxApp::On_kUnloadDwgMsg,  &GcRxDbxApp::On_kInvkSubrMsg,
    &GcRxDbxApp::On_kCfgMsg,          &GcRxDbxApp::On_kEndMsg,        &GcRxDbxApp::On_kQuitMsg,
    &GcRxDbxApp::On_kSaveMsg,         &GcRxDbxApp::On_kDependencyMsg, &GcRxDbxApp::On_kNoDependencyMsg,
    &GcRxDbxApp::On_kOleUnloadAppMsg, &GcRxDbxApp::On_kPreQuitMsg,    &GcRxDbxApp::On_kInitDialogMsg,
    &GcRxDbxApp::On_kEndDialogMsg,
};
constexpr unsigned kHandlerCount = sizeof kHandlers / sizeof kHandlers[0];
static_assert(kHandlerCount == GcRx::kEndDialogMsg + 1);

}  // namespace

// Codes that no handler has are answered kRetOK.
extern "C" GcRx::AppRetCode gcrxEntryPoint(GcRx::AppMsgCode code, void* packet) {
  if (static_cast<unsigned>(code) >= kHandlerCount) return GcRx::kRetOK;
  return (s_application.*kHandlers[code])(packet);
}
