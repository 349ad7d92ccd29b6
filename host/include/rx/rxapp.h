// Loading of plug-ins: the messages a plug-in receives, what it may ask of the dynamic linker, and
// the system registry in which services are found by name.
#pragma once

#include "rx/gcchar.h"
#include "rx/rxobject.h"

namespace GcRx {

// Messages to gcrxEntryPoint, in the numbering that both sides share.
enum AppMsgCode : unsigned {
  kNullMsg = 0,
  kInitAppMsg = 1,
  kUnloadAppMsg = 2,
  kLoadDwgMsg = 3,
  kUnloadDwgMsg = 4,
  kInvkSubrMsg = 5,
  kCfgMsg = 6,
  kEndMsg = 7,
  kQuitMsg = 8,
  kSaveMsg = 9,
  kDependencyMsg = 10,
  kNoDependencyMsg = 11,
  kOleUnloadAppMsg = 12,
  kPreQuitMsg = 13,
  kInitDialogMsg = 14,
  kEndDialogMsg = 15
};

enum AppRetCode : int { kRetOK = 0, kRetError = 3 };

}  // namespace GcRx

// An object that is found by name in the system registry.
class GcRxService : public GcRxObject {
 public:
  GCRX_DECLARE_MEMBERS(GcRxService);
};

class GcRxDictionary : public GcRxObject {
 public:
  GCRX_DECLARE_MEMBERS(GcRxDictionary);
  [[nodiscard]] virtual GcRxObject* at(const GCHAR* key) const = 0;     // null when absent
  virtual GcRxObject* atPut(const GCHAR* key, GcRxObject* object) = 0;  // gives the former one
  virtual GcRxObject* remove(const GCHAR* key) = 0;                     // gives the removed one
};

// The process-wide registry: "ClassDictionary"-like services such as "DynamicLinker".
GcRxDictionary* gcrxSysRegistry();

#define GCRX_DYNAMIC_LINKER GC_T("DynamicLinker")
#define GCED_REGISTERED_COMMANDS GC_T("ACRX_REGISTERED_COMMANDS")

// The dynamic linker, as a plug-in sees it. `packet` is what came with its init message.
class GcRxDynamicLinker : public GcRxService {
 public:
  GCRX_DECLARE_MEMBERS(GcRxDynamicLinker);
  virtual bool unlockApplication(void* packet) = 0;    // may be unloaded on request
  virtual bool registerAppMDIAware(void* packet) = 0;  // works with several documents
  virtual bool loadModule(const GCHAR* fileName, bool printit) = 0;
  virtual bool unloadModule(const GCHAR* fileName) = 0;
};

inline GcRxDynamicLinker* gcrxDynamicLinker() {
  return static_cast<GcRxDynamicLinker*>(gcrxSysRegistry()->at(GCRX_DYNAMIC_LINKER));
}

// The interface version a plug-in was built against and the host answers with.
extern "C" int gcrxGetApiVersion();
