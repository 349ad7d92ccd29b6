// The common properties of entities for their description and for readers of files.
#pragma once

#include "db/entity.h"
#include "host/db/core/extra.h"
#include "host/db/describe/field.h"

// Fields of an entity that live in its rare parts read as their defaults when there are none. Reading gives a
// shared empty part; writing a value that is not default makes the part (through needExtra).
struct GcDbEntityAccess {
  static GcDbObjectExtra& rare(void* record) {
    auto* entity = static_cast<GcDbEntity*>(record);
    return entity->needExtra();
  }
  static bool has(const void* record) { return static_cast<const GcDbEntity*>(record)->extra() != nullptr; }
  template <auto Member>
  static void* at(void* record) {
    return &(rare(record).*Member);
  }
  // A field in the rare parts: written when it is there and not default, never read through a memory filer
  // (the rare parts are copied as a whole).
  template <auto Member>
  static constexpr GcDbField row(int code, const char* name, Is is) {
    GcDbField made;
    made.code = static_cast<int16_t>(code);
    made.kind = gcdescribe::kindOf<typename gcdescribe::MemberOf<decltype(Member)>::Member>();
    made.is = is;
    made.write = Write::UnlessDefault;
    made.name = name;
    made.at = at<Member>;
    made.present = has;
    made.inExtra = true;
    return made;
  }

  // What every entity has beside its class's own, as readers of files set it: without checks, notifications and undo.
  struct Common {
    GcDbObjectId layer;
    GcDbObjectId linetype;
    double linetypeScale = 1;
    GcCmEntityColor color;
    int16_t lineWeight = GcDb::kLnWtByLayer;
    bool invisible = false;
    bool inPaperSpace = false;
  };
  static void set(GcDbEntity& entity, const Common& common) {
    entity.m_layerId = common.layer;
    entity.m_linetypeId = common.linetype;
    entity.m_linetypeScale = common.linetypeScale;
    entity.m_color = common.color;
    entity.m_lineWeight = common.lineWeight;
    entity.m_invisible = common.invisible;
    entity.m_inPaperSpace = common.inPaperSpace;
  }

  static constexpr GcDbField inPaperSpace() {
    return field<&GcDbEntity::m_inPaperSpace>(67, "inPaperSpace", Is::Plain, Write::UnlessDefault);
  }
  static constexpr GcDbField layer() { return field<&GcDbEntity::m_layerId>(8, "layer", Is::LayerName); }
  static constexpr GcDbField linetype() {
    return field<&GcDbEntity::m_linetypeId>(6, "linetype", Is::LinetypeName, Write::UnlessDefault);
  }
  static constexpr GcDbField color() {
    return field<&GcDbEntity::m_color>(62, "color", Is::Color, Write::UnlessDefault);
  }
  static constexpr GcDbField trueColor() {
    GcDbField row =
        field<&GcDbEntity::m_color>(420, "trueColor", Is::TrueColor, Write::UnlessDefault).from(GcDb::kDHL_AC1018);
    return row;
  }
  static constexpr GcDbField lineWeight() {
    return field<&GcDbEntity::m_lineWeight>(370, "lineWeight", Is::Plain, Write::UnlessDefault)
        .orElse(GcDb::kLnWtByLayer)
        .from(GcDb::kDHL_AC1015);
  }
  static constexpr GcDbField linetypeScale() {
    return field<&GcDbEntity::m_linetypeScale>(48, "linetypeScale", Is::Plain, Write::UnlessDefault).orElse(1);
  }
  static constexpr GcDbField invisible() {
    return field<&GcDbEntity::m_invisible>(60, "invisible", Is::Plain, Write::UnlessDefault);
  }
};
