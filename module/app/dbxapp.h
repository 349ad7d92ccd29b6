// What every plug-in application does with the host's messages: classes, commands and LISP functions of the module's
// tables come and go. An application derives from GcRxGrxApp and overrides what it adds.
#pragma once

#include "module/app/host.h"

// Answers the messages that any plug-in gets. `packet` is the host's, passed through.
class GcRxDbxApp {
 public:
  GcRxDbxApp() = default;
  GcRxDbxApp(const GcRxDbxApp&) = delete;
  GcRxDbxApp& operator=(const GcRxDbxApp&) = delete;

  virtual GcRx::AppRetCode On_kInitAppMsg(void* packet);
  virtual GcRx::AppRetCode On_kUnloadAppMsg(void* packet);
  virtual GcRx::AppRetCode On_kLoadDwgMsg(void* packet);
  virtual GcRx::AppRetCode On_kUnloadDwgMsg(void* packet);
  virtual GcRx::AppRetCode On_kInvkSubrMsg(void* packet);
  virtual GcRx::AppRetCode On_kCfgMsg(void* packet);
  virtual GcRx::AppRetCode On_kEndMsg(void* packet);
  virtual GcRx::AppRetCode On_kQuitMsg(void* packet);
  virtual GcRx::AppRetCode On_kSaveMsg(void* packet);
  virtual GcRx::AppRetCode On_kDependencyMsg(void* packet);
  virtual GcRx::AppRetCode On_kNoDependencyMsg(void* packet);
  virtual GcRx::AppRetCode On_kOleUnloadAppMsg(void* packet);
  virtual GcRx::AppRetCode On_kPreQuitMsg(void* packet);
  virtual GcRx::AppRetCode On_kInitDialogMsg(void* packet);
  virtual GcRx::AppRetCode On_kEndDialogMsg(void* packet);
  virtual GcRx::AppRetCode On_kNullMsg(void* packet);
  virtual void RegisterServerComponents() = 0;

 protected:
  ~GcRxDbxApp() = default;

 private:
  void* m_module = nullptr;  // for string resources
  bool m_unlocked = true;    // may be unloaded on request
  bool m_mdiAware = true;    // works with several documents

 protected:
  [[nodiscard]] void* module() const { return m_module; }
};

// Adds LISP functions and commands.
class GcRxGrxApp : public GcRxDbxApp {
 public:
  GcRx::AppRetCode On_kInitAppMsg(void* packet) override;
  GcRx::AppRetCode On_kUnloadAppMsg(void* packet) override;
  GcRx::AppRetCode On_kLoadDwgMsg(void* packet) override;
  GcRx::AppRetCode On_kUnloadDwgMsg(void* packet) override;
  GcRx::AppRetCode On_kInvkSubrMsg(void* packet) override;

 protected:
  ~GcRxGrxApp() = default;
};
