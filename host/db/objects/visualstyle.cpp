#include "host/db/objects/visualstyle.h"

#include <iterator>

#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbVisualStyle, "AcDbVisualStyle")

namespace {

constexpr int kWithSources = GcDb::kDHL_AC1024;  // every value is followed by where it comes from
constexpr int kAsList = GcDb::kDHL_AC1027;       // codes by the kind of value alone

// The second group of a colour, by its first.
constexpr int rgbCodeOf(int code) { return code == 62 ? 420 : code - 63 + 421; }

}  // namespace

struct GcDbStyleRows {
  using Style = GcDbVisualStyle;

  // Group files that list properties have 3 where records and older group files have 2.
  static GcDbGroup listModel(const void* record) {
    const int16_t held = static_cast<const Style*>(record)->m_lightingModel;
    return GcDbGroup::ofInt(177, held == kRecordModel ? kRecordModel + 1 : held);
  }
  static bool setListModel(void* record, const GcDbGroup& group) {
    const auto read = static_cast<int16_t>(group.asInt());
    static_cast<Style*>(record)->m_lightingModel = read == kRecordModel + 1 ? kRecordModel : read;
    return true;
  }
  static constexpr int16_t kRecordModel = 2;

  // A row of one property, `Member` of it.
  template <int Property, auto Member>
  static constexpr GcDbField row(int code, const char* name) {
    GcDbField made = field<Member>(code, name, Is::Plain);
    made.at = [](void* record) -> void* { return &(static_cast<Style*>(record)->m_properties[Property].*Member); };
    return made;
  }
  template <int Property, int32_t GcDbIndexedColor::*Part>
  static constexpr GcDbField rgbRow(int code, const char* name) {
    GcDbField made = field<Part>(code, name, Is::Plain, Write::UnlessDefault).orElse(GcDbIndexedColor::kNoRgb);
    made.at = [](void* record) -> void* { return &(static_cast<Style*>(record)->m_properties[Property].color.*Part); };
    return made;
  }
  template <int Property>
  static constexpr GcDbField indexRow(int code, const char* name) {
    GcDbField made = field<&GcDbIndexedColor::index>(code, name, Is::Plain);
    made.at = [](void* record) -> void* { return &static_cast<Style*>(record)->m_properties[Property].color.index; };
    return made;
  }
};

#define STYLE_NUMBER(p, code, suffix) \
  GcDbStyleRows::row<GcDbVisualStyle::k_##p, &GcDbStyleProperty::number>(code, #p suffix)
#define STYLE_FLAG(p, code, suffix) STYLE_NUMBER(p, code, suffix)
#define STYLE_REAL(p, code, suffix) \
  GcDbStyleRows::row<GcDbVisualStyle::k_##p, &GcDbStyleProperty::real>(code, #p suffix)
#define STYLE_TEXT(p, code, suffix) \
  GcDbStyleRows::row<GcDbVisualStyle::k_##p, &GcDbStyleProperty::text>(code, #p suffix)
#define STYLE_SOURCE(p, suffix) GcDbStyleRows::row<GcDbVisualStyle::k_##p, &GcDbStyleProperty::source>(176, #p suffix)
#define STYLE_INDEX(p, code, suffix) GcDbStyleRows::indexRow<GcDbVisualStyle::k_##p>(code, #p suffix)
#define STYLE_RGB(p, code, suffix) \
  GcDbStyleRows::rgbRow<GcDbVisualStyle::k_##p, &GcDbIndexedColor::rgb>(rgbCodeOf(code), #p suffix)

// Before R2013: each property under a code of its own.
#define OLD_Number(p, code) STYLE_NUMBER(p, code, "").until(kAsList)
#define OLD_Flag(p, code) STYLE_FLAG(p, code, "").until(kAsList)
#define OLD_Real(p, code) STYLE_REAL(p, code, "").until(kAsList)
#define OLD_Color(p, code) STYLE_INDEX(p, code, "").until(kAsList), STYLE_RGB(p, code, "Rgb").until(kAsList)
#define OLD_ROWS(p, kind, code) OLD_##kind(p, code), STYLE_SOURCE(p, "Source").from(kWithSources).until(kAsList)

// From R2013 on: codes by kind.
#define NEW_Number(p) STYLE_NUMBER(p, 90, "InList").from(kAsList)
#define NEW_Flag(p) STYLE_FLAG(p, 290, "InList").from(kAsList)
#define NEW_Real(p) STYLE_REAL(p, 40, "InList").from(kAsList)
#define NEW_Text(p) STYLE_TEXT(p, 1, "InList").from(kAsList)
#define NEW_Color(p) STYLE_INDEX(p, 62, "InList").from(kAsList), STYLE_RGB(p, 62, "RgbInList").from(kAsList)
#define NEW_ROWS(p, kind, ...) NEW_##kind(p), STYLE_SOURCE(p, "SourceInList").from(kAsList)

#define ECHO_ROWS(p, kind, ...) NEW_##kind##_ECHO(p), STYLE_SOURCE(p, "SourceInList").from(kAsList).echo()
#define NEW_Number_ECHO(p) NEW_Number(p).echo()
#define NEW_Flag_ECHO(p) NEW_Flag(p).echo()
#define NEW_Real_ECHO(p) NEW_Real(p).echo()
#define NEW_Color_ECHO(p) \
  STYLE_INDEX(p, 62, "InList").from(kAsList).echo(), STYLE_RGB(p, 62, "RgbInList").from(kAsList).echo()

const GcDbField GcDbVisualStyle::kFields[] = {
    marker("AcDbVisualStyle"),
    field<&GcDbVisualStyle::m_description>(2, "description", Is::Plain),
    field<&GcDbVisualStyle::m_type>(70, "type", Is::Plain),
    field<&GcDbVisualStyle::m_lightingModel>(177, "lightingModel", Is::Plain)
        .from(kWithSources)
        .until(kAsList)
        .orElse(2),
    field<&GcDbVisualStyle::m_lightingModel>(177, "lightingModelOfList", Is::Plain)
        .from(kAsList)
        .orElse(2)
        .echo()
        .filedAs(GcDbStyleRows::listModel, GcDbStyleRows::setListModel),
    field<&GcDbVisualStyle::m_isInternal>(291, "isInternal", Is::Plain).from(kWithSources),
    OLD_ROWS(faceLighting, Number, 71),
    OLD_ROWS(faceQuality, Number, 72),
    OLD_ROWS(faceColorMode, Number, 73),
    OLD_ROWS(faceModifiers, Number, 90),
    OLD_ROWS(faceOpacity, Real, 40),
    OLD_ROWS(faceSpecular, Real, 41),
    field<&GcDbVisualStyle::m_color>(62, "color", Is::Plain).until(kAsList).orElse(5),
    OLD_ROWS(faceColor, Color, 63),
    OLD_ROWS(edgeModel, Number, 74),
    OLD_ROWS(edgeStyle, Number, 91),
    OLD_ROWS(intersectionColor, Color, 64),
    OLD_ROWS(obscuredColor, Color, 65),
    OLD_ROWS(obscuredLinetype, Number, 75),
    OLD_ROWS(intersectionLinetype, Number, 175),
    OLD_ROWS(creaseAngle, Real, 42),
    OLD_ROWS(edgeModifiers, Number, 92),
    OLD_ROWS(edgeColor, Color, 66),
    OLD_ROWS(edgeOpacity, Real, 43),
    OLD_ROWS(edgeWidth, Number, 76),
    OLD_ROWS(overhang, Number, 77),
    OLD_ROWS(jitter, Number, 78),
    OLD_ROWS(silhouetteColor, Color, 67),
    OLD_ROWS(silhouetteWidth, Number, 79),
    OLD_ROWS(haloGap, Number, 170),
    OLD_ROWS(isolines, Number, 171),
    OLD_ROWS(hidePrecision, Flag, 290),
    field<&GcDbVisualStyle::m_apply>(174, "apply", Is::Plain).until(kWithSources),
    OLD_ROWS(displaySettings, Number, 93),
    OLD_ROWS(brightness, Real, 44),
    OLD_ROWS(shadowType, Number, 173),
    field<&GcDbVisualStyle::m_isInternal>(291, "isInternalToo", Is::Plain).until(kWithSources).echo(),
    field<&GcDbVisualStyle::m_unused>(45, "unused", Is::Plain).until(kWithSources),
    fixed<70, kPropertyCount>("propertyCount").from(kAsList),
#define X(p, kind, ...) ECHO_ROWS(p, kind),
    GC_STYLE_PROPERTIES(X)
#undef X
#define X(p, kind) NEW_ROWS(p, kind),
        GC_LATER_STYLE_PROPERTIES(X)
#undef X
};
GCDB_FIELD_COUNT(GcDbVisualStyle);

GcDbVisualStyle::GcDbVisualStyle() {
  m_properties[k_faceLighting].number = 2;
  m_properties[k_faceOpacity].real = 0.6;
  m_properties[k_faceSpecular].real = 30;
  m_properties[k_edgeModel].number = 1;
  m_properties[k_edgeStyle].number = 4;
  m_properties[k_obscuredLinetype].number = 1;
  m_properties[k_intersectionLinetype].number = 1;
  m_properties[k_creaseAngle].real = 1;
  m_properties[k_edgeOpacity].real = 1;
  m_properties[k_edgeWidth].number = 1;
  m_properties[k_overhang].number = 6;
  m_properties[k_jitter].number = 2;
  m_properties[k_silhouetteWidth].number = 5;
  m_properties[k_displaySettings].number = 1;
  m_properties[k_obscuredColor].color = GcDbIndexedColor(GcDbIndexedColor::kNoneIndex);
}
