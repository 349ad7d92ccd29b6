// What multileaders of one style have in common.
#pragma once

#include "db/object.h"
#include "ge/point.h"
#include "host/db/describe/recordof.h"
#include "rx/gcstring.h"

struct GcDbField;

// Colours are the four bytes of GcCmEntityColor, as files have them.
class GcDbMLeaderStyle : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbMLeaderStyle);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbMLeaderStyle() = default;
  [[nodiscard]] GcDbObjectId arrowId() const { return m_arrow; }
  [[nodiscard]] GcDbObjectId textStyleId() const { return m_textStyle; }

  // Records before AC1024 have the first form, without the kind of angle and without `alwaysLeft`, unless extended data
  // tell otherwise. Puts them there for a style that would lose something.
  void markSecondForm();
  // The form that extended data tell.
  [[nodiscard]] int formInXData() const;

 private:
  friend struct GcDbRecordOf<GcDbMLeaderStyle>;
  static constexpr int32_t kByBlockBits = -0x3F000000;  // 0xC1000000

  int16_t m_version = 2;
  int16_t m_contentType = 2;
  int16_t m_drawOrder = 1;
  int16_t m_leaderDrawOrder = 0;
  int32_t m_maxPoints = 2;
  double m_firstAngleRad = 0;
  double m_secondAngleRad = 0;
  int16_t m_leaderType = 1;
  int32_t m_lineColor = kByBlockBits;
  GcDbObjectId m_linetype;
  int32_t m_lineWeight = -2;
  bool m_hasLanding = true;
  double m_gap = 0.09;
  bool m_hasDogleg = true;
  double m_doglegLength = 0.36;
  GcString m_description;
  GcDbObjectId m_arrow;
  double m_arrowSize = 0.18;
  GcString m_defaultText;
  GcDbObjectId m_textStyle;
  int16_t m_left = 1;
  int16_t m_right = 1;
  int16_t m_angleType = 1;
  int16_t m_alignment = 0;
  int32_t m_textColor = kByBlockBits;
  double m_textHeight = 0.18;
  bool m_hasFrame = false;
  bool m_alwaysLeft = false;
  double m_alignSpace = 0.18;
  GcDbObjectId m_block;
  int32_t m_blockColor = kByBlockBits;
  GcGeScale3d m_blockScale{1};
  bool m_usesBlockScale = true;
  double m_blockRotationRad = 0;
  bool m_usesBlockRotation = true;
  int16_t m_blockAttachment = 0;
  double m_scale = 1;
  bool m_isChanged = false;
  bool m_isAnnotative = false;
  double m_breakSize = 0.125;
  int16_t m_attachmentDirection = 0;
  int16_t m_bottom = 9;
  int16_t m_top = 9;
  bool m_extendsToText = false;
};
