#include "host/db/entities/mleader.h"

#include <iterator>

#include "db/attribute.h"
#include "db/database.h"
#include "db/textstyle.h"
#include "gi/drawable.h"
#include "host/db/describe/braces.h"
#include "host/db/describe/fieldio.h"
#include "host/db/entities/arrowheads.h"
#include "host/db/entities/block_content.h"
#include "host/gi/mtext.h"

GCDB_DEFINE_CLASS(GcDbMLeader, "AcDbMLeader")

// Flags in files that say which content follows.
struct GcDbMLeaderContentRows {
  template <int Code, bool (GcDbMLeader::*Has)() const>
  static constexpr GcDbField flag(const char* name) {
    GcDbField row = fixed<Code, 1>(name);
    row.get = [](const void* record) {
      return GcDbGroup::ofInt(Code, (static_cast<const GcDbMLeader*>(record)->*Has)() ? 1 : 0);
    };
    return row;
  }
};

namespace {

constexpr GCHAR kContextText[] = GC_T("CONTEXT_DATA{");
constexpr GCHAR kLeaderText[] = GC_T("LEADER{");
constexpr GCHAR kLineText[] = GC_T("LEADER_LINE{");
constexpr GCHAR kEndText[] = GC_T("}");

constexpr GcDbField kTextFields[] = {
    field<&GcDbMLeaderText::contents>(304, "contents", Is::Plain),
    field<&GcDbMLeaderText::normal>(11, "normal", Is::Direction),
    field<&GcDbMLeaderText::style>(340, "style", Is::HardPointer),
    field<&GcDbMLeaderText::location>(12, "location", Is::WcsPoint),
    field<&GcDbMLeaderText::direction>(13, "direction", Is::Direction),
    field<&GcDbMLeaderText::rotationRad>(42, "rotation", Is::Angle),
    field<&GcDbMLeaderText::width>(43, "width", Is::Length),
    field<&GcDbMLeaderText::height>(44, "height", Is::Length),
    field<&GcDbMLeaderText::lineSpacing>(45, "lineSpacing", Is::Plain),
    field<&GcDbMLeaderText::lineSpacingStyle>(170, "lineSpacingStyle", Is::Plain),
    field<&GcDbMLeaderText::color>(90, "color", Is::Plain),
    field<&GcDbMLeaderText::alignment>(171, "alignment", Is::Plain),
    field<&GcDbMLeaderText::flow>(172, "flow", Is::Plain),
    field<&GcDbMLeaderText::backgroundColor>(91, "backgroundColor", Is::Plain),
    field<&GcDbMLeaderText::backgroundScale>(141, "backgroundScale", Is::Plain),
    field<&GcDbMLeaderText::backgroundTransparency>(92, "backgroundTransparency", Is::Plain),
    field<&GcDbMLeaderText::hasBackgroundColor>(291, "hasBackgroundColor", Is::Plain),
    field<&GcDbMLeaderText::hasBackground>(292, "hasBackground", Is::Plain),
    field<&GcDbMLeaderText::columnType>(173, "columnType", Is::Plain),
    field<&GcDbMLeaderText::autoHeight>(293, "autoHeight", Is::Plain),
    field<&GcDbMLeaderText::columnWidth>(142, "columnWidth", Is::Length),
    field<&GcDbMLeaderText::columnGutter>(143, "columnGutter", Is::Length),
    field<&GcDbMLeaderText::flowReversed>(294, "flowReversed", Is::Plain),
    list<&GcDbMLeaderText::columnHeights, 144, Is::Length>(-1, "columnHeights"),
    field<&GcDbMLeaderText::wordBreak>(295, "wordBreak", Is::Plain),
};

constexpr GcDbField kBlockFields[] = {
    field<&GcDbMLeaderBlock::block>(341, "block", Is::SoftPointer),
    field<&GcDbMLeaderBlock::normal>(14, "normal", Is::Direction),
    field<&GcDbMLeaderBlock::location>(15, "location", Is::WcsPoint),
    field<&GcDbMLeaderBlock::scale>(16, "scale", Is::Plain),
    field<&GcDbMLeaderBlock::rotationRad>(46, "rotation", Is::Angle),
    field<&GcDbMLeaderBlock::color>(93, "color", Is::Plain),
    list<&GcDbMLeaderBlock::matrix, 47>(-1, "matrix"),
};

constexpr GcDbField kRootBreakFields[] = {
    field<&GcDbMLeaderBreak::start>(12, "start", Is::WcsPoint),
    field<&GcDbMLeaderBreak::end>(13, "end", Is::WcsPoint),
};

constexpr GcDbField kBreakFields[] = {
    field<&GcDbMLeaderBreak::start>(11, "start", Is::WcsPoint),
    field<&GcDbMLeaderBreak::end>(12, "end", Is::WcsPoint),
};

constexpr GcDbField kLineBreakFields[] = {
    field<&GcDbMLeaderLineBreaks::segment>(90, "segment", Is::Plain),
    each<&GcDbMLeaderLineBreaks::breaks>(-1, "breaks", kBreakFields),
};

constexpr int kOwnLooks = GcDb::kDHL_AC1024;  // lines have looks of their own from then on

constexpr GcDbField kLineFields[] = {
    word<304, kLineText>("begin"),
    list<&GcDbMLeaderLine::points, 10, Is::WcsPoint>(-1, "points"),
    each<&GcDbMLeaderLine::breaks>(-1, "breaks", kLineBreakFields),
    field<&GcDbMLeaderLine::index>(91, "index", Is::Plain),
    field<&GcDbMLeaderLine::type>(170, "type", Is::Plain, Write::UnlessDefault).from(kOwnLooks),
    field<&GcDbMLeaderLine::color>(92, "color", Is::Plain, Write::UnlessDefault).orElse(kGcByBlockBits).from(kOwnLooks),
    field<&GcDbMLeaderLine::linetype>(340, "linetype", Is::HardPointer, Write::UnlessDefault).from(kOwnLooks),
    field<&GcDbMLeaderLine::lineWeight>(171, "lineWeight", Is::Plain, Write::UnlessDefault).from(kOwnLooks),
    field<&GcDbMLeaderLine::arrowSize>(40, "arrowSize", Is::Plain, Write::UnlessDefault).from(kOwnLooks),
    field<&GcDbMLeaderLine::arrow>(341, "arrow", Is::HardPointer, Write::UnlessDefault).from(kOwnLooks),
    field<&GcDbMLeaderLine::overrides>(93, "overrides", Is::Plain, Write::UnlessDefault).from(kOwnLooks),
    word<305, kEndText>("end"),
};

constexpr GcDbField kRootFields[] = {
    word<302, kLeaderText>("begin"),
    field<&GcDbMLeaderRoot::hasLastPoint>(290, "hasLastPoint", Is::Plain),
    field<&GcDbMLeaderRoot::hasDogleg>(291, "hasDogleg", Is::Plain),
    field<&GcDbMLeaderRoot::lastPoint>(10, "lastPoint", Is::WcsPoint).when<&GcDbMLeaderRoot::hasLast>().readAnyway(),
    field<&GcDbMLeaderRoot::doglegDirection>(11, "doglegDirection", Is::Direction)
        .when<&GcDbMLeaderRoot::hasLanding>()
        .readAnyway(),
    each<&GcDbMLeaderRoot::breaks>(-1, "breaks", kRootBreakFields),
    field<&GcDbMLeaderRoot::index>(90, "index", Is::Plain),
    field<&GcDbMLeaderRoot::doglegLength>(40, "doglegLength", Is::Length),
    each<&GcDbMLeaderRoot::lines>(-1, "lines", kLineFields),
    field<&GcDbMLeaderRoot::attachmentDirection>(271, "attachmentDirection", Is::Plain).from(kOwnLooks),
    word<303, kEndText>("end"),
};

constexpr GcDbField kArrowFields[] = {
    field<&GcDbMLeaderArrow::index>(94, "index", Is::Plain),
    field<&GcDbMLeaderArrow::arrow>(345, "arrow", Is::HardPointer),
};

constexpr GcDbField kLabelFields[] = {
    field<&GcDbMLeaderLabel::attributeDefinition>(330, "attributeDefinition", Is::SoftPointer),
    field<&GcDbMLeaderLabel::index>(177, "index", Is::Plain),
    field<&GcDbMLeaderLabel::width>(44, "width", Is::Plain),
    field<&GcDbMLeaderLabel::text>(302, "text", Is::Plain),
};

}  // namespace

const GcDbField GcDbMLeader::kFields[] = {
    marker("AcDbMLeader"),
    field<&GcDbMLeader::m_version>(270, "version", Is::Plain).from(kOwnLooks).orElse(2),
    word<300, kContextText>("contextBegin"),
    field<&GcDbMLeader::m_contentScale>(40, "contentScale", Is::Length),
    field<&GcDbMLeader::m_contentBase>(10, "contentBase", Is::WcsPoint),
    field<&GcDbMLeader::m_textHeight>(41, "textHeight", Is::Length),
    field<&GcDbMLeader::m_actualArrowSize>(140, "actualArrowSize", Is::Length),
    field<&GcDbMLeader::m_gap>(145, "gap", Is::Length),
    field<&GcDbMLeader::m_actualLeft>(174, "actualLeft", Is::Plain),
    field<&GcDbMLeader::m_actualRight>(175, "actualRight", Is::Plain),
    field<&GcDbMLeader::m_actualAlignment>(176, "actualAlignment", Is::Plain),
    field<&GcDbMLeader::m_actualBlockAttachment>(177, "actualBlockAttachment", Is::Plain),
    GcDbMLeaderContentRows::flag<290, &GcDbMLeader::hasText>("hasText"),
    part<&GcDbMLeader::m_text>("text", kTextFields),
    GcDbMLeaderContentRows::flag<296, &GcDbMLeader::hasBlock>("hasBlock"),
    part<&GcDbMLeader::m_block>("block", kBlockFields).when<&GcDbMLeader::hasBlock>().readAnyway(),
    field<&GcDbMLeader::m_planeOrigin>(110, "planeOrigin", Is::WcsPoint),
    field<&GcDbMLeader::m_planeX>(111, "planeX", Is::Direction),
    field<&GcDbMLeader::m_planeY>(112, "planeY", Is::Direction),
    field<&GcDbMLeader::m_normalReversed>(297, "normalReversed", Is::Plain),
    each<&GcDbMLeader::m_roots>(-1, "leaders", kRootFields),
    field<&GcDbMLeader::m_actualBottom>(272, "actualBottom", Is::Plain).from(kOwnLooks).orElse(9),
    field<&GcDbMLeader::m_actualTop>(273, "actualTop", Is::Plain).from(kOwnLooks).orElse(9),
    word<301, kEndText>("contextEnd"),
    field<&GcDbMLeader::m_styleId>(340, "style", Is::HardPointer),
    field<&GcDbMLeader::m_overrides>(90, "overrides", Is::Plain),
    field<&GcDbMLeader::m_leaderType>(170, "leaderType", Is::Plain),
    field<&GcDbMLeader::m_lineColor>(91, "lineColor", Is::Plain),
    field<&GcDbMLeader::m_linetype>(341, "leaderLinetype", Is::HardPointer),
    field<&GcDbMLeader::m_leaderWeight>(171, "leaderWeight", Is::Plain),
    field<&GcDbMLeader::m_hasLanding>(290, "hasLanding", Is::Plain),
    field<&GcDbMLeader::m_hasDogleg>(291, "hasDogleg", Is::Plain),
    field<&GcDbMLeader::m_doglegLength>(41, "doglegLength", Is::Plain),
    field<&GcDbMLeader::m_arrow>(342, "arrow", Is::HardPointer),
    field<&GcDbMLeader::m_arrowSize>(42, "arrowSize", Is::Plain),
    field<&GcDbMLeader::m_contentType>(172, "contentType", Is::Plain),
    field<&GcDbMLeader::m_textStyle>(343, "textStyle", Is::HardPointer),
    field<&GcDbMLeader::m_textLeft>(173, "textLeft", Is::Plain),
    field<&GcDbMLeader::m_textRight>(95, "textRight", Is::Plain),
    field<&GcDbMLeader::m_angleType>(174, "angleType", Is::Plain),
    field<&GcDbMLeader::m_alignment>(175, "alignment", Is::Plain),
    field<&GcDbMLeader::m_textColor>(92, "textColor", Is::Plain),
    field<&GcDbMLeader::m_hasFrame>(292, "hasFrame", Is::Plain),
    field<&GcDbMLeader::m_blockId>(344, "blockContent", Is::HardPointer),
    field<&GcDbMLeader::m_blockColor>(93, "blockColor", Is::Plain),
    field<&GcDbMLeader::m_blockScale>(10, "blockScale", Is::Plain),
    field<&GcDbMLeader::m_blockRotationRad>(43, "blockRotation", Is::Angle),
    field<&GcDbMLeader::m_blockAttachment>(176, "blockAttachment", Is::Plain),
    field<&GcDbMLeader::m_isAnnotative>(293, "isAnnotative", Is::Plain),
    each<&GcDbMLeader::m_arrows>(-1, "arrows", kArrowFields),
    each<&GcDbMLeader::m_labels>(-1, "labels", kLabelFields),
    field<&GcDbMLeader::m_directionNegative>(294, "directionNegative", Is::Plain),
    field<&GcDbMLeader::m_ipeAlignment>(178, "ipeAlignment", Is::Plain),
    field<&GcDbMLeader::m_justification>(179, "justification", Is::Plain),
    field<&GcDbMLeader::m_scale>(45, "scale", Is::Length),
    field<&GcDbMLeader::m_attachmentDirection>(271, "attachmentDirection", Is::Plain).from(kOwnLooks),
    field<&GcDbMLeader::m_textBottom>(272, "textBottom", Is::Plain).from(kOwnLooks).orElse(9),
    field<&GcDbMLeader::m_textTop>(273, "textTop", Is::Plain).from(kOwnLooks).orElse(9),
    field<&GcDbMLeader::m_extendsToText>(295, "extendsToText", Is::Plain).from(GcDb::kDHL_AC1027),
};
GCDB_FIELD_COUNT(GcDbMLeader);

GcGeVector3d GcDbMLeader::normal() const {
  const GcGeVector3d normal = m_planeX.crossProduct(m_planeY);
  if (normal.isZeroLength()) return GcGeVector3d::kZAxis;
  return m_normalReversed ? normal.normal() * -1.0 : normal.normal();
}

namespace {

constexpr int kMatrixSize = 16;

GcGeMatrix3d matrixOf(const GcDbMLeaderBlock& block) {
  GcGeMatrix3d matrix;
  if (block.matrix.length() == kMatrixSize)
    for (int i = 0; i < kMatrixSize; ++i) matrix.entry[i / 4][i % 4] = block.matrix[i];
  return matrix;
}

}  // namespace

Gcad::ErrorStatus GcDbMLeader::subTransformBy(const GcGeMatrix3d& transform) {
  const Gcad::ErrorStatus status = GcDbEntity::subTransformBy(transform);
  if (status != Gcad::eOk) return status;
  const double factor = transform.scale();
  for (GcDbMLeaderBlock& block : m_block) {
    block.scale = {block.scale.sx * factor, block.scale.sy * factor, block.scale.sz * factor};
    if (block.matrix.length() != kMatrixSize) continue;
    const GcGeMatrix3d moved = transform * matrixOf(block);
    for (int i = 0; i < kMatrixSize; ++i) block.matrix[i] = moved.entry[i / 4][i % 4];
  }
  return Gcad::eOk;
}

// ---- drawing ---------------------------------------------------------------------------------------------

namespace {

// A colour of a part: that of the whole where it says by block.
GcCmEntityColor shown(int32_t bits, const GcCmEntityColor& own) {
  const GcCmEntityColor color = GcCmEntityColor::fromBits(static_cast<uint32_t>(bits));
  return color.isByBlock() || color.isByLayer() ? own : color;
}

}  // namespace

void GcDbMLeader::drawText(GcGiWorldDraw& draw) const {
  const GcDbMLeaderText& content = m_text[0];
  GcGiMText what;
  what.contents = view(content.contents);
  GcDbTextStyleTableRecord* style = nullptr;
  if (gcdbOpenObject(style, content.style, GcDb::kForRead) == Gcad::eOk) {
    style->look(what.style);
    ignore(style->close());
  }
  what.style.height = m_textHeight;
  what.width = content.width;
  what.attachment = content.alignment >= 1 && content.alignment <= 3 ? content.alignment : 1;
  what.lineSpacing = content.lineSpacing;
  what.exactSpacing = content.lineSpacingStyle == 2;
  const GcGiMTextLayout layout = gcgiLayOutMText(what);
  const GcCmEntityColor textColor = shown(content.color, color());
  draw.subEntityTraits().setColor(textColor);
  gcgiDrawMText(layout, content.location, content.direction, content.normal, textColor, draw);
  if (!m_hasFrame) return;
  const GcGeVector3d x = content.direction.normal(), y = content.normal.crossProduct(x).normal();
  const double left = what.attachment == 1 ? 0 : what.attachment == 2 ? -layout.width / 2 : -layout.width;
  const auto corner = [&](double along, double up) { return content.location + x * along + y * up; };
  const GcGePoint3d corners[4] = {corner(left - m_gap, -layout.height - m_gap),
                                  corner(left + layout.width + m_gap, -layout.height - m_gap),
                                  corner(left + layout.width + m_gap, m_gap), corner(left - m_gap, m_gap)};
  draw.subEntityTraits().setColor(shown(m_lineColor, color()));
  draw.geometry().polyline(4, corners, true);
}

void GcDbMLeader::drawBlock(GcGiWorldDraw& draw) const {
  gcblock::drawContent(draw, m_block[0].block, matrixOf(m_block[0]));
}

void GcDbMLeader::drawRoot(GcGiWorldDraw& draw, const GcDbMLeaderRoot& root) const {
  for (const GcDbMLeaderLine& line : root.lines) {
    GcArray<GcGePoint3d> points(line.points);
    if (root.hasLastPoint) points.append(root.lastPoint);
    if (points.length() < 2) continue;
    const GcDbObjectId arrow = line.arrow.isNull() ? m_arrow : line.arrow;
    const GcGeVector3d first = points[0] - points[1];
    gcarrow::draw(draw, arrow, points[0], first, m_actualArrowSize, normal());
    const double covered = gcarrow::reach(arrow, m_actualArrowSize);
    if (covered < first.length()) points[0] = points[0] - first.normal() * covered;
    draw.geometry().polyline(points.length(), points.begin());
  }
  if (!root.hasLastPoint || !root.hasDogleg || root.doglegLength <= 0 || !m_hasLanding) return;
  const GcGePoint3d landing[2] = {root.lastPoint, root.lastPoint + root.doglegDirection * root.doglegLength};
  draw.geometry().polyline(2, landing);
}

bool GcDbMLeader::subWorldDraw(GcGiWorldDraw* draw) {
  if (m_leaderType != kInvisible) {
    draw->subEntityTraits().setColor(shown(m_lineColor, color()));
    for (const GcDbMLeaderRoot& root : m_roots) drawRoot(*draw, root);
  }
  if (hasText())
    drawText(*draw);
  else if (hasBlock())
    drawBlock(*draw);
  return true;
}
