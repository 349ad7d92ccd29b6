#include "host/ap/dynamiclinker.h"

#include "host/ap/docmanager.h"
#include "host/ap/output.h"
#include "host/ap/paths.h"
#include "host/db/describe/classinfo.h"
#include "host/rx/text/utf.h"

namespace ap {

namespace {

DynamicLinker* g_linker = nullptr;

// Messages about one document are sent while it is the current one.
class CurrentDocument {
 public:
  explicit CurrentDocument(Document* document) : m_before(currentDocument()) { documents()->setCurrent(document); }
  ~CurrentDocument() { documents()->setCurrent(m_before); }
  CurrentDocument(const CurrentDocument&) = delete;
  CurrentDocument& operator=(const CurrentDocument&) = delete;

 private:
  Document* m_before;
};

}  // namespace

DynamicLinker* dynamicLinker() { return g_linker; }

GcView PlugIn::name() const { return fileNameOf(m_path); }

int PlugIn::send(GcRx::AppMsgCode message) {
  PlugIn* before = g_linker->m_current;
  g_linker->m_current = this;
  const int answer = m_entry(message, this);
  g_linker->m_current = before;
  return answer;
}

DynamicLinker::DynamicLinker() {
  g_linker = this;
  gcrxSysRegistry()->atPut(GCRX_DYNAMIC_LINKER, this);
}

DynamicLinker::~DynamicLinker() {
  while (!m_plugIns.empty()) unload(m_plugIns.size() - 1);
  gcrxSysRegistry()->remove(GCRX_DYNAMIC_LINKER);
  g_linker = nullptr;
}

// The packet that comes with messages is the plug-in itself.
bool DynamicLinker::unlockApplication(void* packet) {
  for (const auto& plugIn : m_plugIns)
    if (plugIn.get() == packet) return !(plugIn->m_locked = false);
  return false;
}

bool DynamicLinker::registerAppMDIAware(void* packet) {
  for (const auto& plugIn : m_plugIns)
    if (plugIn.get() == packet) return plugIn->m_mdiAware = true;
  return false;
}

bool DynamicLinker::open(PlugIn& plugIn) {
  GcText why;
  if (!plugIn.m_library.open(plugIn.m_path, why)) {
    m_reason = plugIn.m_path + GC_T(": ") + why;
    return false;
  }
  plugIn.m_entry = reinterpret_cast<EntryPoint>(plugIn.m_library.symbol("gcrxEntryPoint"));
  const auto version = reinterpret_cast<int (*)()>(plugIn.m_library.symbol("gcrxGetApiVersion"));
  if (plugIn.m_entry == nullptr || version == nullptr) {
    m_reason = plugIn.m_path + GC_T(": is no plug-in (gcrxEntryPoint or gcrxGetApiVersion is missing)");
    return false;
  }
  if (const int built = version(); built != gcrxGetApiVersion()) {
    m_reason = plugIn.m_path + GC_T(": was made for interface version ") + gc::fromUtf8(std::to_string(built)) +
               GC_T(", this program has version ") + gc::fromUtf8(std::to_string(gcrxGetApiVersion()));
    return false;
  }
  return true;
}

bool DynamicLinker::loadModule(const GCHAR* fileName, bool printit) {
  GcText path = fileName;
  const GcText beside = programDirectory() + GC_T("/") + path;
  if (!isAbsolutePath(path)) path = fileExists(path) ? absolutePath(path) : beside;
  m_reason.clear();
  if (find(path) < m_plugIns.size()) return true;
  gcdbRegisterClasses();  // classes of plug-ins derive from the host's
  PlugIn& plugIn = *m_plugIns.emplace_back(std::make_unique<PlugIn>());
  plugIn.m_path = path;
  bool good = open(plugIn);
  if (good && plugIn.send(GcRx::kInitAppMsg) != GcRx::kRetOK) {
    m_reason = plugIn.m_path + GC_T(": refused to start");
    good = false;
  }
  if (!good) {
    m_plugIns.pop_back();
    if (printit) print(GC_T("\n") + m_reason + GC_T("\n"));
    return false;
  }
  if (documents() == nullptr) return true;
  for (const auto& document : documents()->documents()) {
    const CurrentDocument made(document.get());
    plugIn.send(GcRx::kLoadDwgMsg);
  }
  return true;
}

size_t DynamicLinker::find(GcView fileName) const {
  size_t index = 0;
  while (index < m_plugIns.size() && !equalNoCase(m_plugIns[index]->m_path, fileName) &&
         !equalNoCase(m_plugIns[index]->name(), fileName))
    ++index;
  return index;
}

bool DynamicLinker::unloadModule(const GCHAR* fileName) {
  m_reason.clear();
  size_t index = find(fileName);
  if (index == m_plugIns.size()) index = find(fileNameOf(fileName));
  if (index == m_plugIns.size()) {
    m_reason = GcText(fileName) + GC_T(": is not loaded");
    return false;
  }
  if (m_plugIns[index]->m_locked || m_plugIns[index].get() == m_current) {
    m_reason = GcText(fileName) + GC_T(": cannot be unloaded now");
    return false;
  }
  unload(index);
  return true;
}

void DynamicLinker::unload(size_t index) {
  PlugIn& plugIn = *m_plugIns[index];
  if (documents() != nullptr) {
    for (const auto& document : documents()->documents()) {
      const CurrentDocument made(document.get());
      plugIn.send(GcRx::kUnloadDwgMsg);
      if (document->lisp() != nullptr) document->lisp()->forgetPlugIn(&plugIn);
    }
  }
  plugIn.send(GcRx::kUnloadAppMsg);
  m_plugIns.erase(m_plugIns.begin() + static_cast<std::ptrdiff_t>(index));
}

void DynamicLinker::documentOpened() {
  for (size_t i = 0; i < m_plugIns.size(); ++i) m_plugIns[i]->send(GcRx::kLoadDwgMsg);
}

void DynamicLinker::documentCloses() {
  for (size_t i = 0; i < m_plugIns.size(); ++i) m_plugIns[i]->send(GcRx::kUnloadDwgMsg);
}

}  // namespace ap
