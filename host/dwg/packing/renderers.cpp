// Settings of renderers, what is rendered, what lies behind it.
#include <string_view>

#include "host/db/objects/rendersettings.h"
#include "host/dwg/record/grouppass.h"

namespace {

// The values of a section one by one: l whole numbers, L those that groups have as short ones, s short ones, d reals,
// b bits, c bytes, t texts.
template <class Pass>
void passValues(Pass& pass, GcDbGroupList& groups, std::string_view kinds) {
  gc::dwg::GroupPass g(pass, groups);
  for (const char kind : kinds) {
    switch (kind) {
      case 'l': g.bl(90); break;
      case 'L': g.bl(70); break;
      case 's': g.bs(70); break;
      case 'd': g.bd(40); break;
      case 'b': g.b(290); break;
      case 'c': g.rc(280); break;
      default: g.t(1); break;
    }
  }
  g.finish();
}

constexpr std::string_view kCommonSettings = "ltbbbbttl";

}  // namespace

template <>
struct GcDbRecordOf<GcDbMentalRayRenderSettings> {
  template <class Pass>
  static void pass(Pass& pass, GcDbMentalRayRenderSettings& settings) {
    passValues(pass, settings.m_settings, kCommonSettings);
    passValues(pass, settings.m_own, "lllsddddddsbblllblbdllllblbbbdddssdssbtlslbd");
  }
  static bool isWhole(const GcDbMentalRayRenderSettings& settings, int version) {
    return gc::dwg::fitsRecord(settings, version);
  }
};

template <>
struct GcDbRecordOf<GcDbRapidRTRenderSettings> {
  template <class Pass>
  static void pass(Pass& pass, GcDbRapidRTRenderSettings& settings) {
    passValues(pass, settings.m_settings, kCommonSettings);
    passValues(pass, settings.m_own, "lLllLLddb");
  }
  static bool isWhole(const GcDbRapidRTRenderSettings& settings, int version) {
    return gc::dwg::fitsRecord(settings, version);
  }
};

template <>
struct GcDbRecordOf<GcDbRenderGlobal> {
  template <class Pass>
  static void pass(Pass& pass, GcDbRenderGlobal& o) {
    passValues(pass, o.m_data, "lllbtllbb");
  }
  static bool isWhole(const GcDbRenderGlobal& o, int version) { return gc::dwg::fitsRecord(o, version); }
};

template <>
struct GcDbRecordOf<GcDbRenderEnvironment> {
  template <class Pass>
  static void pass(Pass& pass, GcDbRenderEnvironment& o) {
    passValues(pass, o.m_data, "lbbcccddddbt");
  }
  static bool isWhole(const GcDbRenderEnvironment& o, int version) { return gc::dwg::fitsRecord(o, version); }
};

namespace gc::dwg::packing {

void addRenderers(std::vector<ClassPacking>& list) {
  list.push_back(Passed<GcDbMentalRayRenderSettings>::named("AcDbMentalRayRenderSettings"));
  list.push_back(Passed<GcDbRapidRTRenderSettings>::named("AcDbRapidRTRenderSettings"));
  list.push_back(Passed<GcDbRenderGlobal>::named("AcDbRenderGlobal"));
  list.push_back(Passed<GcDbRenderEnvironment>::named("AcDbRenderEnvironment"));
}

}  // namespace gc::dwg::packing
