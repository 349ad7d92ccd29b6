// Visual styles, suns, styles of drawing views.
#include "host/db/objects/sun.h"
#include "host/db/objects/visualstyle.h"
#include "host/dwg/record/pass.h"

template <>
struct GcDbRecordOf<GcDbVisualStyle> {
  template <class Pass>
  static void pass(Pass& pass, GcDbVisualStyle& style) {
    pass.t(style.m_description);
    pass.bl(style.m_type);
    if (pass.version() < gc::dwg::kR2010)
      passOld(pass, style);
    else
      passNew(pass, style);
  }

 private:
  using Style = GcDbVisualStyle;

  template <class Pass>
  static void Number(Pass& pass, GcDbStyleProperty& property) {
    pass.bl(property.number);
  }
  template <class Pass>
  static void Flag(Pass& pass, GcDbStyleProperty& property) {
    pass.b(property.number);
  }
  template <class Pass>
  static void Real(Pass& pass, GcDbStyleProperty& property) {
    pass.bd(property.real);
  }
  template <class Pass>
  static void Color(Pass& pass, GcDbStyleProperty& property) {
    pass.cmc(property.color);
  }
  template <class Pass>
  static void Text(Pass& pass, GcDbStyleProperty& property) {
    pass.t(property.text);
  }

  template <class Pass>
  static void passNew(Pass& pass, GcDbVisualStyle& style) {
    pass.bs(style.m_lightingModel);
    pass.b(style.m_isInternal);
#define X(name, kind, ...)                         \
  kind(pass, style.m_properties[Style::k_##name]); \
  pass.bs(style.m_properties[Style::k_##name].source);
    GC_STYLE_PROPERTIES(X)
    if (pass.version() < gc::dwg::kR2013) return;
    GC_LATER_STYLE_PROPERTIES(X)
#undef X
  }

  // Before R2010 some values stand elsewhere, and the brightness is a whole number.
  template <class Pass>
  static void passOld(Pass& pass, GcDbVisualStyle& style) {
    for (int i = 0; i < Style::k_brightness; ++i) {
      GcDbStyleProperty& property = style.m_properties[i];
      if (i == Style::k_intersectionLinetype || i == Style::k_faceModifiers) continue;
      if (i == Style::k_displaySettings) {
        pass.bs(style.m_apply);
        pass.bs(style.m_properties[Style::k_intersectionLinetype].number);
      }
      passOne(pass, i, property);
      if (i == Style::k_faceColor) pass.bl(style.m_properties[Style::k_faceModifiers].number);
    }
    double& brightness = style.m_properties[Style::k_brightness].real;
    int32_t whole = static_cast<int32_t>(brightness > 1000 ? 1000 : brightness < -1000 ? -1000 : brightness);
    pass.bl(whole);
    if constexpr (!Pass::kWriting) brightness = whole;
    pass.bl(style.m_properties[Style::k_shadowType].number);
    if (pass.version() >= gc::dwg::kR2007) pass.bd(style.m_unused);
    pass.b(style.m_isInternal);
  }

  template <class Pass>
  static void passOne(Pass& pass, int which, GcDbStyleProperty& property) {
    switch (which) {
      case Style::k_edgeWidth:
      case Style::k_overhang:
      case Style::k_silhouetteWidth:
      case Style::k_isolines: pass.bs(property.number); return;
      case Style::k_haloGap: pass.rc(property.number); return;
      default: break;
    }
    switch (which) {
#define X(name, kind, ...) \
  case Style::k_##name: kind(pass, property); break;
      GC_STYLE_PROPERTIES(X)
#undef X
      default: break;
    }
  }
};

template <>
struct GcDbRecordOf<GcDbSun> {
  template <class Pass>
  static void pass(Pass& pass, GcDbSun& sun) {
    pass.bl(sun.m_version);
    pass.b(sun.m_isOn);
    pass.cmc(sun.m_color);
    pass.bd(sun.m_intensity);
    pass.b(sun.m_hasShadow);
    pass.bl(sun.m_julianDay);
    pass.bl(sun.m_milliseconds);
    pass.b(sun.m_isDaylightSaving);
    pass.bl(sun.m_shadowType);
    pass.bs(sun.m_shadowMapSize);
    pass.rc(sun.m_shadowSoftness);
  }
};

namespace gc::dwg::packing {

void addVisualStyles(std::vector<ClassPacking>& list) {
  list.push_back(Passed<GcDbVisualStyle>::named("AcDbVisualStyle"));
  list.push_back(Passed<GcDbSun>::named("AcDbSun"));
}

}  // namespace gc::dwg::packing
