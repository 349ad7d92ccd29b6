#include "gi/drawable.h"

#include "host/db/describe/classinfo.h"

GCDB_DEFINE_CLASS(GcGiDrawable, "AcGiDrawable")

uint32_t GcGiDrawable::subSetAttributes(GcGiDrawableTraits*) { return 0; }
bool GcGiDrawable::subWorldDraw(GcGiWorldDraw*) { return true; }
