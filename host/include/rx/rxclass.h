// Class descriptors and their registry: classes by name, by DXF name, made at run time.
#pragma once

#include <cstdint>

#include "rx/gcchar.h"
#include "rx/rxobject.h"

struct GcDbClassInfo;

using GcRxPseudoConstructor = GcRxObject* (*)();
// Called when the application name of a class changes: (class, new name, save flag).
using GcRxAppNameChange = void (*)(const GcRxClass*, GCHAR*&, int);

class GcRxClass : public GcRxObject {
 public:
  [[nodiscard]] const GCHAR* name() const { return m_name; }
  [[nodiscard]] const GCHAR* dxfName() const { return m_dxfName; }  // null when the class is not filed
  [[nodiscard]] const GCHAR* appName() const { return m_appName; }  // null for the host's own classes
  [[nodiscard]] int proxyFlags() const { return m_proxyFlags; }
  [[nodiscard]] int dwgVersion() const { return m_dwgVersion; }
  [[nodiscard]] int maintenanceVersion() const { return m_maintenanceVersion; }
  [[nodiscard]] GcRxClass* myParent() const { return m_parent; }
  [[nodiscard]] GcRxAppNameChange appNameChange() const { return m_appNameChange; }

  // True when this class is `ancestor` or derived from it.
  [[nodiscard]] bool isDerivedFrom(const GcRxClass* ancestor) const {
    return ancestor != nullptr && ancestor->m_depth <= m_depth && m_ancestors[ancestor->m_depth] == ancestor;
  }
  // A new object by the pseudo-constructor; null for abstract classes or exhausted memory.
  [[nodiscard]] GcRxObject* create() const { return m_create != nullptr ? m_create() : nullptr; }

  // The host's description of the class's fields; null for classes that file themselves.
  [[nodiscard]] const GcDbClassInfo* info() const { return m_info; }
  void setInfo(const GcDbClassInfo* info) { m_info = info; }

 private:
  friend class GcRxClassRegistry;
  static constexpr int kMaxDepth = 12;

  GCHAR* m_name = nullptr;
  GCHAR* m_parentName = nullptr;
  GCHAR* m_dxfName = nullptr;
  GCHAR* m_appName = nullptr;
  GcRxClass* m_parent = nullptr;
  GcRxPseudoConstructor m_create = nullptr;
  GcRxAppNameChange m_appNameChange = nullptr;
  const GcDbClassInfo* m_info = nullptr;
  int m_proxyFlags = 0;
  int m_dwgVersion = 0;
  int m_maintenanceVersion = 0;
  int m_depth = 0;
  const GcRxClass* m_ancestors[kMaxDepth] = {};
};

// Registers a class. The parent is found by name, now or at the next gcrxBuildClassHierarchy.
// Returns the descriptor, owned by the registry; null when the name is taken or memory is exhausted.
GcRxClass* newGcRxClass(const GCHAR* className, const GCHAR* parentName, int dwgVersion = 0, int maintenanceVersion = 0,
                        int proxyFlags = 0, GcRxPseudoConstructor create = nullptr, const GCHAR* dxfName = nullptr,
                        const GCHAR* appName = nullptr, GcRxAppNameChange appNameChange = nullptr);

GcRxClass* gcrxFindGcRxClass(const GCHAR* className);     // null when there is none; exact case
GcRxClass* gcrxFindGcRxClassByDxf(const GCHAR* dxfName);  // null when there is none; exact case

// Links classes to their parents and tells everyone who waits for classes (zombies come to life).
void gcrxBuildClassHierarchy();

// Unregisters and frees a class: its live objects become zombies first. Null is fine.
void deleteGcRxClass(GcRxClass* descriptor);

// Ends the process with a message: the class system is inconsistent and nothing can be trusted.
[[noreturn]] void gcrx_abort(const GCHAR* message);

// What is told when classes come and go (the database brings zombies to life and back).
struct GcRxClassWatcher {
  virtual void classesBuilt() = 0;
  virtual void classGoes(GcRxClass* descriptor) = 0;

 protected:
  ~GcRxClassWatcher() = default;
};
void gcrxSetClassWatcher(GcRxClassWatcher* watcher);
