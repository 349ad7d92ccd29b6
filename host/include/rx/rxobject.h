// The root of the run-time class system: every object that can say at run time what it is.
#pragma once

#include "rx/gcstatus.h"

class GcRxClass;

class GcRxObject {
 public:
  GcRxObject() = default;
  GcRxObject(const GcRxObject&) = default;
  GcRxObject& operator=(const GcRxObject&) = default;
  virtual ~GcRxObject();

  static GcRxClass* desc();
  [[nodiscard]] virtual GcRxClass* isA() const;
  [[nodiscard]] bool isKindOf(const GcRxClass* ancestor) const;
};

// The run-time class protocol of a class: its descriptor, its name and a checked cast.
#define GCRX_DECLARE_MEMBERS(Class)                                                                                    \
  static GcRxClass* desc();                                                                                            \
  GcRxClass* isA() const override;                                                                                     \
  static Class* cast(const GcRxObject* object) {                                                                       \
    return object != nullptr && object->isKindOf(Class::desc()) ? static_cast<Class*>(const_cast<GcRxObject*>(object)) \
                                                                : nullptr;                                             \
  }                                                                                                                    \
  static void rxInit()
