// Multileaders and their styles.
#include "host/db/core/extra.h"
#include "host/db/entities/mleader.h"
#include "host/db/objects/mleaderstyle.h"
#include "host/dwg/record/pass.h"

template <>
struct GcDbRecordOf<GcDbMLeader> {
  template <class Pass>
  static void pass(Pass& pass, GcDbMLeader& m) {
    const int version = pass.version();
    if (version >= gc::dwg::kR2010) pass.bs(m.m_version);
    pass.list(m.m_roots, Pass::Count::BL, 8, [&](GcDbMLeaderRoot& root) { passRoot(pass, root); });
    passContent(pass, m);
    if (version >= gc::dwg::kR2010) {
      pass.bs(m.m_actualTop);
      pass.bs(m.m_actualBottom);
    }
    passLook(pass, m);
    passLabels(pass, m);
    if (version >= gc::dwg::kR2010) {
      pass.bs(m.m_attachmentDirection);
      pass.bs(m.m_textTop);
      pass.bs(m.m_textBottom);
    }
    if (version >= gc::dwg::kR2013) pass.b(m.m_extendsToText);
  }

 private:
  template <class Pass>
  static void passBreaks(Pass& pass, GcArray<GcDbMLeaderBreak>& breaks) {
    pass.list(breaks, Pass::Count::BL, 12, [&](GcDbMLeaderBreak& part) {
      pass.bd3(part.start);
      pass.bd3(part.end);
    });
  }

  template <class Pass>
  static void passRoot(Pass& pass, GcDbMLeaderRoot& root) {
    pass.b(root.hasLastPoint);
    pass.b(root.hasDogleg);
    if (root.hasLastPoint) pass.bd3(root.lastPoint);
    if (root.hasDogleg) pass.bd3(root.doglegDirection);
    passBreaks(pass, root.breaks);
    pass.bl(root.index);
    pass.bd(root.doglegLength);
    pass.list(root.lines, Pass::Count::BL, 4, [&](GcDbMLeaderLine& line) {
      pass.list(line.points, Pass::Count::BL, 6, [&](GcGePoint3d& point) { pass.bd3(point); });
      pass.list(line.breaks, Pass::Count::BL, 4, [&](GcDbMLeaderLineBreaks& each) {
        pass.bl(each.segment);
        passBreaks(pass, each.breaks);
      });
      pass.bl(line.index);
      if (pass.version() < gc::dwg::kR2010) return;
      pass.bs(line.type);
      pass.cmc(line.color);
      pass.h(5, line.linetype);
      pass.bl(line.lineWeight);
      pass.bd(line.arrowSize);
      pass.h(5, line.arrow);
      pass.bl(line.overrides);
    });
    if (pass.version() >= gc::dwg::kR2010) pass.bs(root.attachmentDirection);
  }

  template <class Pass>
  static void passText(Pass& pass, GcDbMLeaderText& text) {
    pass.t(text.contents);
    pass.bd3(text.normal);
    pass.h(5, text.style);
    pass.bd3(text.location);
    pass.bd3(text.direction);
    pass.bd(text.rotationRad);
    pass.bd(text.width);
    pass.bd(text.height);
    pass.bd(text.lineSpacing);
    pass.bs(text.lineSpacingStyle);
    pass.cmc(text.color);
    pass.bs(text.alignment);
    pass.bs(text.flow);
    pass.cmc(text.backgroundColor);
    pass.bd(text.backgroundScale);
    pass.bl(text.backgroundTransparency);
    pass.b(text.hasBackgroundColor);
    pass.b(text.hasBackground);
    pass.bs(text.columnType);
    pass.b(text.autoHeight);
    pass.bd(text.columnWidth);
    pass.bd(text.columnGutter);
    pass.b(text.flowReversed);
    pass.list(text.columnHeights, Pass::Count::BL, 2, [&](double& height) { pass.bd(height); });
    pass.b(text.wordBreak);
    bool unused = false;
    pass.b(unused);
    pass.must(!unused);
  }

  template <class Pass>
  static void passBlock(Pass& pass, GcDbMLeaderBlock& block) {
    constexpr int kMatrixSize = 16;
    pass.h(4, block.block);
    pass.bd3(block.normal);
    pass.bd3(block.location);
    pass.bd3(block.scale);
    pass.bd(block.rotationRad);
    pass.cmc(block.color);
    pass.sized(block.matrix, kMatrixSize, 2, [&](double& entry) { pass.bd(entry); });
  }

  template <class Pass>
  static void passContent(Pass& pass, GcDbMLeader& m) {
    pass.bd(m.m_contentScale);
    pass.bd3(m.m_contentBase);
    pass.bd(m.m_textHeight);
    pass.bd(m.m_actualArrowSize);
    pass.bd(m.m_gap);
    pass.bs(m.m_actualLeft);
    pass.bs(m.m_actualRight);
    pass.bs(m.m_actualAlignment);
    pass.bs(m.m_actualBlockAttachment);
    bool hasText = m.hasText();
    pass.b(hasText);
    if (hasText) {
      pass.sized(m.m_text, 1, 40, [&](GcDbMLeaderText& text) { passText(pass, text); });
    } else {
      bool hasBlock = m.hasBlock();
      pass.b(hasBlock);
      if (hasBlock) pass.sized(m.m_block, 1, 40, [&](GcDbMLeaderBlock& block) { passBlock(pass, block); });
    }
    pass.bd3(m.m_planeOrigin);
    pass.bd3(m.m_planeX);
    pass.bd3(m.m_planeY);
    pass.b(m.m_normalReversed);
  }

  template <class Pass>
  static void passLook(Pass& pass, GcDbMLeader& m) {
    pass.h(5, m.m_styleId);
    pass.bl(m.m_overrides);
    pass.bs(m.m_leaderType);
    pass.cmc(m.m_lineColor);
    pass.h(5, m.m_linetype);
    pass.bl(m.m_leaderWeight);
    pass.b(m.m_hasLanding);
    pass.b(m.m_hasDogleg);
    pass.bd(m.m_doglegLength);
    pass.h(5, m.m_arrow);
    pass.bd(m.m_arrowSize);
    pass.bs(m.m_contentType);
    pass.h(5, m.m_textStyle);
    pass.bs(m.m_textLeft);
    pass.bs(m.m_textRight);
    pass.bs(m.m_angleType);
    pass.bs(m.m_alignment);
    pass.cmc(m.m_textColor);
    pass.b(m.m_hasFrame);
    pass.h(5, m.m_blockId);
    pass.cmc(m.m_blockColor);
    pass.bd3(m.m_blockScale);
    pass.bd(m.m_blockRotationRad);
    pass.bs(m.m_blockAttachment);
    pass.b(m.m_isAnnotative);
  }

  template <class Pass>
  static void passLabels(Pass& pass, GcDbMLeader& m) {
    if (pass.version() < gc::dwg::kR2010)
      pass.list(m.m_arrows, Pass::Count::BL, 10, [&](GcDbMLeaderArrow& arrow) {
        pass.bl(arrow.index);
        pass.h(5, arrow.arrow);
      });
    pass.list(m.m_labels, Pass::Count::BL, 12, [&](GcDbMLeaderLabel& label) {
      pass.h(4, label.attributeDefinition);
      pass.t(label.text);
      pass.bs(label.index);
      pass.bd(label.width);
    });
    pass.b(m.m_directionNegative);
    pass.bs(m.m_ipeAlignment);
    pass.bs(m.m_justification);
    pass.bd(m.m_scale);
  }
};

// Before R2010 the record does not say which form it has.
template <>
struct GcDbRecordOf<GcDbMLeaderStyle> {
  template <class Pass>
  static void pass(Pass& pass, GcDbMLeaderStyle& s) {
    if (pass.version() >= gc::dwg::kR2010) pass.bs(s.m_version);
    const bool isSecond = (pass.version() >= gc::dwg::kR2010 ? s.m_version : s.formInXData()) >= 2;
    pass.bs(s.m_contentType);
    pass.bs(s.m_drawOrder);
    pass.bs(s.m_leaderDrawOrder);
    pass.bl(s.m_maxPoints);
    pass.bd(s.m_firstAngleRad);
    pass.bd(s.m_secondAngleRad);
    pass.bs(s.m_leaderType);
    pass.cmc(s.m_lineColor);
    pass.h(5, s.m_linetype);
    pass.bl(s.m_lineWeight);
    pass.b(s.m_hasLanding);
    pass.bd(s.m_gap);
    pass.b(s.m_hasDogleg);
    pass.bd(s.m_doglegLength);
    pass.t(s.m_description);
    pass.h(5, s.m_arrow);
    pass.bd(s.m_arrowSize);
    pass.t(s.m_defaultText);
    pass.h(5, s.m_textStyle);
    pass.bs(s.m_left);
    pass.bs(s.m_right);
    if (isSecond) pass.bs(s.m_angleType);
    pass.bs(s.m_alignment);
    pass.cmc(s.m_textColor);
    pass.bd(s.m_textHeight);
    pass.b(s.m_hasFrame);
    if (isSecond) pass.b(s.m_alwaysLeft);
    pass.bd(s.m_alignSpace);
    pass.h(5, s.m_block);
    pass.cmc(s.m_blockColor);
    pass.bd3(s.m_blockScale);
    pass.b(s.m_usesBlockScale);
    pass.bd(s.m_blockRotationRad);
    pass.b(s.m_usesBlockRotation);
    pass.bs(s.m_blockAttachment);
    pass.bd(s.m_scale);
    pass.b(s.m_isChanged);
    pass.b(s.m_isAnnotative);
    pass.bd(s.m_breakSize);
    if (pass.version() >= gc::dwg::kR2010) {
      pass.bs(s.m_attachmentDirection);
      pass.bs(s.m_top);
      pass.bs(s.m_bottom);
    }
    if (pass.version() >= gc::dwg::kR2013) pass.b(s.m_extendsToText);
  }
};

namespace gc::dwg::packing {

void addMLeaders(std::vector<ClassPacking>& list) {
  list.push_back(Passed<GcDbMLeader>::named("AcDbMLeader"));
  list.push_back(Passed<GcDbMLeaderStyle>::named("AcDbMLeaderStyle"));
}

}  // namespace gc::dwg::packing
