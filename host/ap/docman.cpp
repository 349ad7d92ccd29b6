// Run-time classes of the document interface, and reactors that do nothing by themselves.
#include "ap/docman.h"

#include "rx/rxclass.h"

namespace {

GcRxClass* classOf(const GCHAR* name) {
  GcRxClass* found = gcrxFindGcRxClass(name);
  return found != nullptr ? found : newGcRxClass(name, GC_T("AcRxObject"));
}

}  // namespace

#define GC_AP_CLASS(Class, name)                                              \
  GcRxClass* Class::desc() {                                                  \
    static GcRxClass* const descriptor = (GcRxObject::desc(), classOf(name)); \
    return descriptor;                                                        \
  }                                                                           \
  GcRxClass* Class::isA() const { return desc(); }                            \
  void Class::rxInit() { desc(); }
GC_AP_CLASS(GcApDocManagerReactor, GC_T("AcApDocManagerReactor"))
GC_AP_CLASS(GcApDocument, GC_T("AcApDocument"))
GC_AP_CLASS(GcApDocManager, GC_T("AcApDocManager"))
#undef GC_AP_CLASS

void GcApDocManagerReactor::documentCreated(GcApDocument*) {}
void GcApDocManagerReactor::documentToBeDestroyed(GcApDocument*) {}
void GcApDocManagerReactor::documentDestroyed(const GCHAR*) {}
void GcApDocManagerReactor::documentBecameCurrent(GcApDocument*) {}
