// The registry of run-time classes and the system registry of services.
#include "rx/rxclass.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <unordered_map>
#include <vector>

#include "host/rx/view.h"
#include "rx/gcassert.h"
#include "rx/gcheap.h"
#include "rx/rxapp.h"

GcRxObject::~GcRxObject() = default;

// Owns the descriptors. Lookup by name and by DXF name, both exact.
class GcRxClassRegistry {
 public:
  static GcRxClassRegistry& instance() {
    static auto* registry = new GcRxClassRegistry;  // outlives every static object of every plug-in
    return *registry;
  }

  GcRxClass* add(GcRxClass* descriptor) {
    if (!m_byName.emplace(GcText(descriptor->m_name), descriptor).second) return nullptr;
    if (descriptor->m_dxfName != nullptr) m_byDxf.emplace(GcText(descriptor->m_dxfName), descriptor);
    link(descriptor);
    return descriptor;
  }

  void remove(GcRxClass* descriptor) {
    m_byName.erase(GcText(descriptor->m_name));
    if (descriptor->m_dxfName != nullptr) {
      const auto at = m_byDxf.find(GcText(descriptor->m_dxfName));
      if (at != m_byDxf.end() && at->second == descriptor) m_byDxf.erase(at);
    }
    for (const auto& [name, other] : m_byName)
      if (other->m_parent == descriptor) other->m_parent = nullptr;
    freeDescriptor(descriptor);
  }

  [[nodiscard]] GcRxClass* find(GcView name) const {
    const auto at = m_byName.find(GcText(name));
    return at == m_byName.end() ? nullptr : at->second;
  }
  [[nodiscard]] GcRxClass* findDxf(GcView name) const {
    const auto at = m_byDxf.find(GcText(name));
    return at == m_byDxf.end() ? nullptr : at->second;
  }

  void buildAll() {
    for (const auto& [name, descriptor] : m_byName) link(descriptor);
    if (m_watcher != nullptr) m_watcher->classesBuilt();
  }

  static GcRxClass* make(const GCHAR* name, const GCHAR* parent, const GCHAR* dxf, const GCHAR* app) {
    auto* made = new GcRxClass;
    ignore(gcutNewString(name, made->m_name));
    ignore(gcutNewString(parent, made->m_parentName));
    ignore(gcutNewString(dxf, made->m_dxfName));
    ignore(gcutNewString(app, made->m_appName));
    return made;
  }
  static void fill(GcRxClass* made, int dwgVersion, int maintenance, int proxyFlags, GcRxPseudoConstructor create,
                   GcRxAppNameChange change) {
    made->m_dwgVersion = dwgVersion;
    made->m_maintenanceVersion = maintenance;
    made->m_proxyFlags = proxyFlags;
    made->m_create = create;
    made->m_appNameChange = change;
  }
  static void freeDescriptor(GcRxClass* descriptor) {
    gcutDelBuffer(descriptor->m_name);
    gcutDelBuffer(descriptor->m_parentName);
    gcutDelBuffer(descriptor->m_dxfName);
    gcutDelBuffer(descriptor->m_appName);
    delete descriptor;
  }

  GcRxClassWatcher* m_watcher = nullptr;

 private:
  // Finds the parent (linking it first) and copies its line of ancestors.
  void link(GcRxClass* descriptor) {
    if (descriptor->m_parentName != nullptr && descriptor->m_parent == nullptr) {
      GcRxClass* parent = find(view(descriptor->m_parentName));
      if (parent != nullptr && parent != descriptor) {
        link(parent);
        descriptor->m_parent = parent;
      }
    }
    const GcRxClass* parent = descriptor->m_parent;
    descriptor->m_depth = parent == nullptr ? 0 : parent->m_depth + 1;
    GC_ASSERT(descriptor->m_depth < GcRxClass::kMaxDepth, "class hierarchy too deep");
    for (int i = 0; i < descriptor->m_depth; ++i) descriptor->m_ancestors[i] = parent->m_ancestors[i];
    descriptor->m_ancestors[descriptor->m_depth] = descriptor;
  }

  std::unordered_map<GcText, GcRxClass*> m_byName;
  std::unordered_map<GcText, GcRxClass*> m_byDxf;
};

GcRxClass* newGcRxClass(const GCHAR* className, const GCHAR* parentName, int dwgVersion, int maintenanceVersion,
                        int proxyFlags, GcRxPseudoConstructor create, const GCHAR* dxfName, const GCHAR* appName,
                        GcRxAppNameChange appNameChange) {
  GcRxClass* made = GcRxClassRegistry::make(className, parentName, dxfName, appName);
  GcRxClassRegistry::fill(made, dwgVersion, maintenanceVersion, proxyFlags, create, appNameChange);
  if (GcRxClassRegistry::instance().add(made) == nullptr) {
    GcRxClassRegistry::freeDescriptor(made);
    return nullptr;
  }
  return made;
}

GcRxClass* gcrxFindGcRxClass(const GCHAR* className) { return GcRxClassRegistry::instance().find(view(className)); }

GcRxClass* gcrxFindGcRxClassByDxf(const GCHAR* dxfName) { return GcRxClassRegistry::instance().findDxf(view(dxfName)); }

void gcrxBuildClassHierarchy() { GcRxClassRegistry::instance().buildAll(); }

void deleteGcRxClass(GcRxClass* descriptor) {
  if (descriptor == nullptr) return;
  GcRxClassRegistry& registry = GcRxClassRegistry::instance();
  if (registry.m_watcher != nullptr) registry.m_watcher->classGoes(descriptor);
  registry.remove(descriptor);
}

void gcrxSetClassWatcher(GcRxClassWatcher* watcher) { GcRxClassRegistry::instance().m_watcher = watcher; }

void gcrx_abort(const GCHAR* message) {
  std::fprintf(stderr, "gcad: %s\n", toUtf8(view(message)).c_str());
  std::fflush(stderr);
  std::abort();
}

namespace {

// Registers a class of the host itself once, at its first use.
GcRxClass* hostClass(const GCHAR* name, const GCHAR* parent) {
  GcRxClass* found = gcrxFindGcRxClass(name);
  return found != nullptr ? found : newGcRxClass(name, parent);
}

class SystemRegistry : public GcRxDictionary {
 public:
  [[nodiscard]] GcRxObject* at(const GCHAR* key) const override {
    const auto found = m_objects.find(GcText(key));
    return found == m_objects.end() ? nullptr : found->second;
  }
  GcRxObject* atPut(const GCHAR* key, GcRxObject* object) override {
    GcRxObject* former = at(key);
    m_objects[GcText(key)] = object;
    return former;
  }
  GcRxObject* remove(const GCHAR* key) override {
    GcRxObject* former = at(key);
    m_objects.erase(GcText(key));
    return former;
  }

 private:
  std::map<GcText, GcRxObject*> m_objects;
};

}  // namespace

GcRxClass* GcRxObject::desc() {
  static GcRxClass* const descriptor = hostClass(GC_T("AcRxObject"), nullptr);
  return descriptor;
}
GcRxClass* GcRxObject::isA() const { return desc(); }
bool GcRxObject::isKindOf(const GcRxClass* ancestor) const {
  const GcRxClass* own = isA();
  return own != nullptr && own->isDerivedFrom(ancestor);
}

#define GC_HOST_CLASS(Class, name)                                                                  \
  GcRxClass* Class::desc() {                                                                        \
    static GcRxClass* const descriptor = (GcRxObject::desc(), hostClass(name, GC_T("AcRxObject"))); \
    return descriptor;                                                                              \
  }                                                                                                 \
  GcRxClass* Class::isA() const { return desc(); }                                                  \
  void Class::rxInit() { desc(); }
GC_HOST_CLASS(GcRxService, GC_T("AcRxService"))
GC_HOST_CLASS(GcRxDictionary, GC_T("AcRxDictionary"))
GC_HOST_CLASS(GcRxDynamicLinker, GC_T("AcRxDynamicLinker"))
#undef GC_HOST_CLASS

GcRxDictionary* gcrxSysRegistry() {
  static auto* const registry = new SystemRegistry;
  return registry;
}
