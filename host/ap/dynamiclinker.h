// The dynamic linker: plug-ins are opened, sent their messages, and closed.
//
// Life of a plug-in: init message, load-document message for each open document (that document being current), invoke
// messages, unload-document message per document, unload message, library closed. It may then be loaded again.
#pragma once

#include <memory>
#include <vector>

#include "host/ap/library.h"
#include "rx/rxapp.h"

namespace ap {

using EntryPoint = int (*)(unsigned message, void* packet);

class PlugIn {
 public:
  [[nodiscard]] const GcText& path() const { return m_path; }
  // Its file's name without directory.
  [[nodiscard]] GcView name() const;
  // Sends a message; while it runs, this is the linker's current plug-in.
  int send(GcRx::AppMsgCode message);
  [[nodiscard]] bool isLocked() const { return m_locked; }

 private:
  friend class DynamicLinker;
  GcText m_path;
  Library m_library;
  EntryPoint m_entry = nullptr;
  bool m_locked = true;  // until it says otherwise, it may not be unloaded on request
  bool m_mdiAware = false;
};

class DynamicLinker final : public GcRxDynamicLinker {
 public:
  DynamicLinker();            // registers itself in the system registry
  ~DynamicLinker() override;  // unloads every plug-in

  bool unlockApplication(void* packet) override;
  bool registerAppMDIAware(void* packet) override;
  // Looks the file up as given, then beside the program. With printit a failure is told on the command line.
  bool loadModule(const GCHAR* fileName, bool printit) override;
  bool unloadModule(const GCHAR* fileName) override;
  // Why the last loadModule or unloadModule failed, naming file and reason.
  [[nodiscard]] const GcText& reason() const { return m_reason; }

  [[nodiscard]] const std::vector<std::unique_ptr<PlugIn>>& plugIns() const { return m_plugIns; }
  // Who is being sent a message now; null outside messages.
  [[nodiscard]] PlugIn* current() const { return m_current; }

  // The current document has just been opened, or is about to close.
  void documentOpened();
  void documentCloses();

 private:
  friend class PlugIn;
  bool open(PlugIn& plugIn);
  void unload(size_t index);
  [[nodiscard]] size_t find(GcView fileName) const;

  std::vector<std::unique_ptr<PlugIn>> m_plugIns;
  PlugIn* m_current = nullptr;
  GcText m_reason;
};

// The one linker of the process; null before it is made and after it is gone.
DynamicLinker* dynamicLinker();

}  // namespace ap
