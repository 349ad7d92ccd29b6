// Multileaders: a text or a block with any number of leaders, each of one or more lines with an arrowhead.
#pragma once

#include "db/entity.h"
#include "host/db/describe/recordof.h"

// Colours are the four bytes of GcCmEntityColor, as files have them.
inline constexpr int32_t kGcByBlockBits = -0x3F000000;  // 0xC1000000

// A part of a leader's line that is left out where something crosses it.
struct GcDbMLeaderBreak {
  GcGePoint3d start, end;
};

struct GcDbMLeaderLineBreaks {
  int32_t segment = 0;
  GcArray<GcDbMLeaderBreak> breaks;
};

struct GcDbMLeaderLine {
  GcArray<GcGePoint3d> points;  // from the arrowhead on; the last point is the leader's
  GcArray<GcDbMLeaderLineBreaks> breaks;
  int32_t index = 0;
  // From R2010 on lines may differ from the multileader; `overrides` says in what.
  int16_t type = 0;
  int32_t color = kGcByBlockBits;
  GcDbObjectId linetype;
  int32_t lineWeight = 0;
  double arrowSize = 0;
  GcDbObjectId arrow;
  int32_t overrides = 0;
};

// Lines that meet in one point, from where a landing leads to the content.
struct GcDbMLeaderRoot {
  bool hasLastPoint = false;
  bool hasDogleg = false;
  GcGePoint3d lastPoint;
  GcGeVector3d doglegDirection = GcGeVector3d::kXAxis;
  double doglegLength = 0;
  GcArray<GcDbMLeaderBreak> breaks;
  GcArray<GcDbMLeaderLine> lines;
  int32_t index = 0;
  int16_t attachmentDirection = 0;  // 0 horizontal, 1 vertical

  [[nodiscard]] bool hasLast() const { return hasLastPoint; }
  [[nodiscard]] bool hasLanding() const { return hasDogleg; }
};

struct GcDbMLeaderText {
  GcString contents;
  GcGeVector3d normal = GcGeVector3d::kZAxis;
  GcDbObjectId style;
  GcGePoint3d location;
  GcGeVector3d direction = GcGeVector3d::kXAxis;
  double rotationRad = 0;
  double width = 0;
  double height = 0;
  double lineSpacing = 1;
  int16_t lineSpacingStyle = 1;
  int32_t color = kGcByBlockBits;
  int16_t alignment = 1;  // 1 left, 2 centre, 3 right
  int16_t flow = 1;
  int32_t backgroundColor = kGcByBlockBits;
  double backgroundScale = 1.5;
  int32_t backgroundTransparency = 0;
  bool hasBackgroundColor = false;
  bool hasBackground = false;
  int16_t columnType = 0;
  bool autoHeight = false;
  double columnWidth = 0;
  double columnGutter = 0;
  bool flowReversed = false;
  GcArray<double> columnHeights;
  bool wordBreak = false;
};

struct GcDbMLeaderBlock {
  GcDbObjectId block;
  GcGeVector3d normal = GcGeVector3d::kZAxis;
  GcGePoint3d location;
  GcGeScale3d scale{1};
  double rotationRad = 0;
  int32_t color = kGcByBlockBits;
  GcArray<double> matrix;  // 16 numbers, row by row
};

struct GcDbMLeaderArrow {
  int32_t index = 0;
  GcDbObjectId arrow;
};

struct GcDbMLeaderLabel {
  GcDbObjectId attributeDefinition;
  int16_t index = 0;
  double width = 0;
  GcString text;
};

class GcDbMLeader : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbMLeader);
  static const GcDbField kFields[];
  static const int kFieldCount;

  enum LeaderType : uint8_t { kInvisible = 0, kStraight = 1, kSpline = 2 };

  GcDbMLeader() = default;
  [[nodiscard]] const GcArray<GcDbMLeaderRoot>& roots() const { return m_roots; }
  [[nodiscard]] GcDbObjectId styleId() const { return m_styleId; }
  // The text with its inline codes; empty when the content is none.
  [[nodiscard]] GcString contents() const { return m_text.isEmpty() ? GcString() : m_text[0].contents; }
  [[nodiscard]] bool hasText() const { return !m_text.isEmpty(); }
  [[nodiscard]] bool hasBlock() const { return m_text.isEmpty() && !m_block.isEmpty(); }
  [[nodiscard]] GcGeVector3d normal() const override;

  bool subWorldDraw(GcGiWorldDraw* draw) override;

 protected:
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;

 private:
  friend struct GcDbRecordOf<GcDbMLeader>;
  friend struct GcDbMLeaderContentRows;
  void drawText(GcGiWorldDraw& draw) const;
  void drawBlock(GcGiWorldDraw& draw) const;
  void drawRoot(GcGiWorldDraw& draw, const GcDbMLeaderRoot& root) const;

  // The content and its leaders, in their true sizes.
  double m_contentScale = 1;
  GcGePoint3d m_contentBase;
  double m_textHeight = 0;
  double m_actualArrowSize = 0;
  double m_gap = 0;
  int16_t m_actualLeft = 1;
  int16_t m_actualRight = 1;
  int16_t m_actualAlignment = 0;
  int16_t m_actualBlockAttachment = 0;
  GcArray<GcDbMLeaderText> m_text;    // one or none
  GcArray<GcDbMLeaderBlock> m_block;  // one or none, and none beside a text
  GcGePoint3d m_planeOrigin;
  GcGeVector3d m_planeX = GcGeVector3d::kXAxis;
  GcGeVector3d m_planeY = GcGeVector3d::kYAxis;
  bool m_normalReversed = false;
  GcArray<GcDbMLeaderRoot> m_roots;
  int16_t m_actualTop = 9;
  int16_t m_actualBottom = 9;
  // What the style says, or this one alone.
  int16_t m_version = 2;
  GcDbObjectId m_styleId;
  int32_t m_overrides = 0;
  int16_t m_leaderType = kStraight;
  int32_t m_lineColor = kGcByBlockBits;
  GcDbObjectId m_linetype;
  int32_t m_leaderWeight = -2;
  bool m_hasLanding = true;
  bool m_hasDogleg = true;
  double m_doglegLength = 0;
  GcDbObjectId m_arrow;
  double m_arrowSize = 0;
  int16_t m_contentType = 2;  // 0 none, 1 block, 2 text
  GcDbObjectId m_textStyle;
  int16_t m_textLeft = 1;
  int32_t m_textRight = 1;
  int16_t m_angleType = 1;
  int16_t m_alignment = 0;
  int32_t m_textColor = kGcByBlockBits;
  bool m_hasFrame = false;
  GcDbObjectId m_blockId;
  int32_t m_blockColor = kGcByBlockBits;
  GcGeScale3d m_blockScale{1};
  double m_blockRotationRad = 0;
  int16_t m_blockAttachment = 0;
  bool m_isAnnotative = false;
  GcArray<GcDbMLeaderArrow> m_arrows;
  GcArray<GcDbMLeaderLabel> m_labels;
  bool m_directionNegative = false;
  int16_t m_ipeAlignment = 0;
  int16_t m_justification = 0;
  double m_scale = 1;
  int16_t m_attachmentDirection = 0;
  int16_t m_textBottom = 9;
  int16_t m_textTop = 9;
  bool m_extendsToText = false;
};
