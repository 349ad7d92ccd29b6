// Settings of renderers. What they mean is theirs; files have them value by value.
#pragma once

#include "db/object.h"
#include "host/db/describe/group.h"
#include "host/db/describe/recordof.h"

struct GcDbField;

class GcDbRenderSettings : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbRenderSettings);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbRenderSettings() = default;

 protected:
  GcDbGroupList m_settings;
  GcDbGroupList m_own;  // of the renderer
};

#define GC_RENDER_SETTINGS(Class)           \
  class Class : public GcDbRenderSettings { \
   public:                                  \
    GCRX_DECLARE_MEMBERS(Class);            \
    static const GcDbField kFields[];       \
    static const int kFieldCount;           \
    Class() = default;                      \
                                            \
   private:                                 \
    friend struct GcDbRecordOf<Class>;      \
  }
GC_RENDER_SETTINGS(GcDbMentalRayRenderSettings);
GC_RENDER_SETTINGS(GcDbRapidRTRenderSettings);
#undef GC_RENDER_SETTINGS

// Objects of rendering that stand by themselves.
#define GC_RENDER_OBJECT(Class)        \
  class Class : public GcDbObject {    \
   public:                             \
    GCRX_DECLARE_MEMBERS(Class);       \
    static const GcDbField kFields[];  \
    static const int kFieldCount;      \
    Class() = default;                 \
                                       \
   private:                            \
    friend struct GcDbRecordOf<Class>; \
    GcDbGroupList m_data;              \
  }
GC_RENDER_OBJECT(GcDbRenderGlobal);       // what is rendered, where to, how large
GC_RENDER_OBJECT(GcDbRenderEnvironment);  // fog and picture behind
#undef GC_RENDER_OBJECT
