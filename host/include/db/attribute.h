// Attributes: the definition in a block and the value with a reference to that block.
#pragma once

#include "db/text.h"

// Flags of both: 1 invisible, 2 constant, 4 to be verified, 8 preset.
class GcDbAttributeDefinition : public GcDbText {
 public:
  GCRX_DECLARE_MEMBERS(GcDbAttributeDefinition);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbAttributeDefinition() = default;
  GcDbAttributeDefinition(const GcGePoint3d& position, const GCHAR* text, const GCHAR* tag, const GCHAR* prompt,
                          GcDbObjectId style = GcDbObjectId::kNull);

  [[nodiscard]] const GcString& tag() const { return m_tag; }
  [[nodiscard]] const GCHAR* tagConst() const { return m_tag.c_str(); }
  Gcad::ErrorStatus setTag(const GCHAR* tag);
  [[nodiscard]] const GcString& prompt() const { return m_prompt; }
  [[nodiscard]] const GCHAR* promptConst() const { return m_prompt.c_str(); }
  Gcad::ErrorStatus setPrompt(const GCHAR* prompt) { return assign(m_prompt, GcString(prompt)); }
  [[nodiscard]] bool isInvisible() const { return (m_flags & 1) != 0; }
  Gcad::ErrorStatus setInvisible(bool invisible) { return setFlag(1, invisible); }
  [[nodiscard]] bool isConstant() const { return (m_flags & 2) != 0; }
  Gcad::ErrorStatus setConstant(bool constant) { return setFlag(2, constant); }
  [[nodiscard]] bool isVerifiable() const { return (m_flags & 4) != 0; }
  Gcad::ErrorStatus setVerifiable(bool verifiable) { return setFlag(4, verifiable); }
  [[nodiscard]] bool isPreset() const { return (m_flags & 8) != 0; }
  Gcad::ErrorStatus setPreset(bool preset) { return setFlag(8, preset); }
  [[nodiscard]] int16_t fieldLength() const { return m_fieldLength; }
  Gcad::ErrorStatus setFieldLength(int16_t length) { return assign(m_fieldLength, length); }
  [[nodiscard]] bool lockPositionInBlock() const { return m_lockPosition; }
  Gcad::ErrorStatus setLockPositionInBlock(bool lock) { return assign(m_lockPosition, lock); }

  // Shows its tag, as in a block that is being drawn; constant ones show their text.
  bool subWorldDraw(GcGiWorldDraw* draw) override;

 private:
  friend class GcDbAttribute;
  Gcad::ErrorStatus setFlag(int bit, bool on);
  GcString m_tag;
  GcString m_prompt;
  int16_t m_flags = 0;
  int16_t m_fieldLength = 0;
  int8_t m_version = 0;
  bool m_lockPosition = true;
};

class GcDbAttribute : public GcDbText {
 public:
  GCRX_DECLARE_MEMBERS(GcDbAttribute);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbAttribute() = default;
  GcDbAttribute(const GcGePoint3d& position, const GCHAR* text, const GCHAR* tag,
                GcDbObjectId style = GcDbObjectId::kNull);

  [[nodiscard]] const GcString& tag() const { return m_tag; }
  [[nodiscard]] const GCHAR* tagConst() const { return m_tag.c_str(); }
  Gcad::ErrorStatus setTag(const GCHAR* tag);
  [[nodiscard]] bool isInvisible() const { return (m_flags & 1) != 0; }
  Gcad::ErrorStatus setInvisible(bool invisible) { return setFlag(1, invisible); }
  [[nodiscard]] bool isConstant() const { return (m_flags & 2) != 0; }
  [[nodiscard]] bool isVerifiable() const { return (m_flags & 4) != 0; }
  [[nodiscard]] bool isPreset() const { return (m_flags & 8) != 0; }
  [[nodiscard]] int16_t fieldLength() const { return m_fieldLength; }
  Gcad::ErrorStatus setFieldLength(int16_t length) { return assign(m_fieldLength, length); }
  [[nodiscard]] bool lockPositionInBlock() const { return m_lockPosition; }
  Gcad::ErrorStatus setLockPositionInBlock(bool lock) { return assign(m_lockPosition, lock); }

  // Takes tag, text, flags, text look, layer and colours of the definition and its place moved by the reference's
  // block transformation. Errors: eNullObjectPointer.
  Gcad::ErrorStatus setAttributeFromBlock(const GcDbAttributeDefinition* definition,
                                          const GcGeMatrix3d& blockTransform);

  bool subWorldDraw(GcGiWorldDraw* draw) override;

 private:
  Gcad::ErrorStatus setFlag(int bit, bool on);
  GcString m_tag;
  int16_t m_flags = 0;
  int16_t m_fieldLength = 0;
  int8_t m_version = 0;
  bool m_lockPosition = true;
};
