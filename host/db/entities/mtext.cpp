#include "db/mtext.h"

#include <bit>
#include <iterator>

#include "db/database.h"
#include "db/textstyle.h"
#include "host/db/describe/fieldio.h"
#include "host/db/entities/mirrored_text.h"
#include "host/db/entities/planar.h"
#include "host/gi/mtext.h"

GCDB_DEFINE_CLASS(GcDbMText, "AcDbMText")

namespace {

constexpr GcDbField kBackgroundFields[] = {
    field<&GcDbMTextRare::backgroundFlags>(90, "backgroundFlags", Is::Plain, Write::UnlessDefault),
    field<&GcDbMTextRare::backgroundColor>(63, "backgroundColor", Is::Color).when<&GcDbMTextRare::hasBackground>(),
    field<&GcDbMTextRare::backgroundColor>(421, "backgroundTrueColor", Is::TrueColor, Write::UnlessDefault)
        .when<&GcDbMTextRare::hasBackground>()
        .echo(),
    field<&GcDbMTextRare::backgroundScale>(45, "backgroundScale", Is::Plain).when<&GcDbMTextRare::hasBackground>(),
    field<&GcDbMTextRare::backgroundTransparency>(441, "backgroundTransparency", Is::Plain)
        .when<&GcDbMTextRare::hasBackground>(),
    field<&GcDbMTextRare::columnType>(-1, "columnType", Is::Plain),
    field<&GcDbMTextRare::columnCount>(-1, "columnCount", Is::Plain),
    field<&GcDbMTextRare::columnFlowReversed>(-1, "columnFlowReversed", Is::Plain),
    field<&GcDbMTextRare::columnAutoHeight>(-1, "columnAutoHeight", Is::Plain),
    field<&GcDbMTextRare::columnWidth>(-1, "columnWidth", Is::Length),
    field<&GcDbMTextRare::columnGutter>(-1, "columnGutter", Is::Length),
    field<&GcDbMTextRare::totalWidth>(-1, "totalWidth", Is::Length),
    field<&GcDbMTextRare::totalHeight>(-1, "totalHeight", Is::Length),
    list<&GcDbMTextRare::columnHeights, -1, Is::Length>(-1, "columnHeights"),
};

// The columns as the embedded object of files from 2018 on has them.
constexpr GcDbField kColumnFields[] = {
    field<&GcDbMTextRare::totalWidth>(42, "totalWidth", Is::Length),
    field<&GcDbMTextRare::totalHeight>(43, "totalHeight", Is::Length),
    field<&GcDbMTextRare::columnType>(71, "columnType", Is::Plain),
    field<&GcDbMTextRare::columnCount>(72, "columnCount", Is::Plain),
    field<&GcDbMTextRare::columnWidth>(44, "columnWidth", Is::Length),
    field<&GcDbMTextRare::columnGutter>(45, "columnGutter", Is::Length),
    field<&GcDbMTextRare::columnAutoHeight>(73, "columnAutoHeight", Is::Plain),
    field<&GcDbMTextRare::columnFlowReversed>(74, "columnFlowReversed", Is::Plain),
    list<&GcDbMTextRare::columnHeights, 46, Is::Length>(-1, "columnHeights"),
};

GcGePoint3d toPoint(const GcGeVector3d& v) { return {v.x, v.y, v.z}; }

}  // namespace

const GcDbField GcDbMText::kFields[] = {
    marker("AcDbMText"),
    field<&GcDbMText::m_location>(10, "location", Is::WcsPoint),
    field<&GcDbMText::m_textHeight>(40, "textHeight", Is::Length),
    field<&GcDbMText::m_width>(41, "width", Is::Length),
    field<&GcDbMText::m_definedHeight>(46, "definedHeight", Is::Length).from(GcDb::kDHL_AC1021),
    field<&GcDbMText::m_attachment>(71, "attachment", Is::Plain).orElse(1),
    field<&GcDbMText::m_flow>(72, "flowDirection", Is::Plain).orElse(5),
    field<&GcDbMText::m_contents>(1, "contents", Is::Plain).inPieces(3),
    field<&GcDbMText::m_styleId>(7, "style", Is::TextStyleName, Write::FilesUnlessDefault),
    field<&GcDbMText::m_normal>(210, "normal", Is::Normal, Write::FilesUnlessDefault),
    // The direction is given by a vector or by the angle it makes in the plane; files keep the form they came with.
    field<&GcDbMText::m_direction>(11, "direction", Is::WcsVector, Write::FilesUnlessDefault)
        .orAxis(0)
        .filedAs(
            [](const void* text) {
              return GcDbGroup::ofPoint(11, toPoint(static_cast<const GcDbMText*>(text)->m_direction));
            },
            [](void* record, const GcDbGroup& group) {
              static_cast<GcDbMText*>(record)->m_direction = group.point.asVector();
              static_cast<GcDbMText*>(record)->m_turnRad = kNoTurn;
              return true;
            })
        .inFilesWhen<&GcDbMText::isGivenByVector>(),
    field<&GcDbMText::m_textHeight>(42, "actualWidth", Is::Plain, Write::ListsOnly)
        .filedAs(
            [](const void* text) { return GcDbGroup::ofReal(42, static_cast<const GcDbMText*>(text)->actualWidth()); },
            [](void*, const GcDbGroup&) { return true; })
        .echo(),
    field<&GcDbMText::m_textHeight>(43, "actualHeight", Is::Plain, Write::ListsOnly)
        .filedAs(
            [](const void* text) { return GcDbGroup::ofReal(43, static_cast<const GcDbMText*>(text)->actualHeight()); },
            [](void*, const GcDbGroup&) { return true; })
        .echo(),
    field<&GcDbMText::m_turnRad>(50, "turn", Is::Plain)
        .filedAs([](const void* text) { return GcDbGroup::ofReal(50, static_cast<const GcDbMText*>(text)->turn()); },
                 [](void* record, const GcDbGroup& group) {
                   auto& text = *static_cast<GcDbMText*>(record);
                   constexpr double kSameAngle = 1e-12;  // rounding of an angle computed from the direction
                   const double angle = group.asReal();
                   if (text.isGivenByVector() && std::fabs(angle - text.rotation()) <= kSameAngle) return true;
                   text.m_turnRad = angle;
                   text.m_direction = gcplanar::directionAt(angle, text.m_normal);
                   return true;
                 })
        .inFilesWhen<&GcDbMText::isGivenByAngle>(),
    field<&GcDbMText::m_measuredWidth>(-142, "measuredWidth", Is::Plain)
        .filedAs(
            [](const void* record) {
              const auto& text = *static_cast<const GcDbMText*>(record);
              return GcDbGroup::ofReal(42, text.isMeasured() ? text.m_measuredWidth : text.actualWidth());
            },
            [](void* record, const GcDbGroup& group) {
              static_cast<GcDbMText*>(record)->m_measuredWidth = group.asReal();
              return true;
            }),
    field<&GcDbMText::m_measuredHeight>(-143, "measuredHeight", Is::Plain)
        .filedAs(
            [](const void* record) {
              const auto& text = *static_cast<const GcDbMText*>(record);
              return GcDbGroup::ofReal(43, text.isMeasured() ? text.m_measuredHeight : text.actualHeight());
            },
            [](void* record, const GcDbGroup& group) {
              static_cast<GcDbMText*>(record)->m_measuredHeight = group.asReal();
              return true;
            }),
    // Set behind all others: the measured size holds for the text as it is then.
    field<&GcDbMText::m_measuredSum>(-144, "measuredSum", Is::Plain)
        .filedAs(
            [](const void* record) {
              return GcDbGroup::ofInt(-144, static_cast<const GcDbMText*>(record)->isMeasured() ? 1 : 0);
            },
            [](void* record, const GcDbGroup&) {
              auto& text = *static_cast<GcDbMText*>(record);
              text.m_measuredSum = text.sumOfMeasured();
              return true;
            }),
    field<&GcDbMText::m_isAnnotative>(-145, "isAnnotative", Is::Plain),
    field<&GcDbMText::m_lineSpacingStyle>(73, "lineSpacingStyle", Is::Plain).orElse(1).from(GcDb::kDHL_AC1015),
    field<&GcDbMText::m_lineSpacing>(44, "lineSpacing", Is::Plain).orElse(1).from(GcDb::kDHL_AC1015),
    part<&GcDbMText::m_rare>("rare", kBackgroundFields),
    embedded("Embedded Object").when<&GcDbMText::hasColumns>().readAnyway().from(GcDb::kDHL_AC1032),
    fixed<70, 1>("embeddedVersion").when<&GcDbMText::hasColumns>().readAnyway().from(GcDb::kDHL_AC1032),
    field<&GcDbMText::m_direction>(10, "embeddedDirection", Is::WcsVector)
        .when<&GcDbMText::hasColumns>()
        .readAnyway()
        .from(GcDb::kDHL_AC1032)
        .echo(),
    field<&GcDbMText::m_location>(11, "embeddedLocation", Is::WcsPoint)
        .when<&GcDbMText::hasColumns>()
        .readAnyway()
        .from(GcDb::kDHL_AC1032)
        .echo(),
    field<&GcDbMText::m_width>(40, "embeddedWidth", Is::Length)
        .when<&GcDbMText::hasColumns>()
        .readAnyway()
        .from(GcDb::kDHL_AC1032)
        .echo(),
    field<&GcDbMText::m_definedHeight>(41, "embeddedHeight", Is::Length)
        .when<&GcDbMText::hasColumns>()
        .readAnyway()
        .from(GcDb::kDHL_AC1032)
        .echo(),
    part<&GcDbMText::m_rare>("columns", kColumnFields)
        .when<&GcDbMText::hasColumns>()
        .readAnyway()
        .from(GcDb::kDHL_AC1032)
        .echo(),
};
GCDB_FIELD_COUNT(GcDbMText);

Gcad::ErrorStatus GcDbMText::setContents(const GCHAR* contents) {
  if (contents == nullptr) return Gcad::eInvalidInput;
  return assign(m_contents, GcString(contents));
}

Gcad::ErrorStatus GcDbMText::setWidth(double width) {
  return width >= 0 ? assign(m_width, width) : Gcad::eInvalidInput;
}

Gcad::ErrorStatus GcDbMText::setTextHeight(double height) {
  return height > 0 ? assign(m_textHeight, height) : Gcad::eInvalidInput;
}

Gcad::ErrorStatus GcDbMText::setTextStyle(GcDbObjectId id) {
  if (id.objectClass() != GcDbTextStyleTableRecord::desc()) return Gcad::eInvalidInput;
  return assign(m_styleId, id);
}

Gcad::ErrorStatus GcDbMText::setAttachment(AttachmentPoint attachment) {
  if (attachment < kTopLeft || attachment > kBottomRight) return Gcad::eInvalidInput;
  return assign(m_attachment, static_cast<int16_t>(attachment));
}

Gcad::ErrorStatus GcDbMText::setDirection(const GcGeVector3d& direction) {
  if (direction.isZeroLength()) return Gcad::eInvalidInput;
  assertWriteEnabled();
  m_direction = direction.normal();
  m_turnRad = kNoTurn;
  return Gcad::eOk;
}

double GcDbMText::rotation() const { return gcplanar::angleOf(m_direction, m_normal); }

Gcad::ErrorStatus GcDbMText::setRotation(double angleRad) {
  return setDirection(gcplanar::directionAt(angleRad, m_normal));
}

Gcad::ErrorStatus GcDbMText::setNormal(const GcGeVector3d& normal) {
  if (normal.isZeroLength()) return Gcad::eInvalidInput;
  return assign(m_normal, normal.normal());
}

void GcDbMText::subLoaded() {
  if (isGivenByAngle()) m_direction = gcplanar::directionAt(m_turnRad, m_normal);
}

void GcDbMText::subAppended() {
  if (m_styleId.isNull()) m_styleId = database()->textstyle();
  if (m_textHeight > 0) return;
  GcDbTextStyleTableRecord* style = nullptr;
  if (gcdbOpenObject(style, m_styleId, GcDb::kForRead) != Gcad::eOk) return;
  m_textHeight = style->textSize() > 0 ? style->textSize() : style->priorSize();
  ignore(style->close());
}

namespace {

GcGiMTextLayout layOut(const GcDbMText& text) {
  GcGiMText what;
  what.contents = view(text.contents());
  GcDbTextStyleTableRecord* style = nullptr;
  if (gcdbOpenObject(style, text.textStyle(), GcDb::kForRead) == Gcad::eOk) {
    style->look(what.style);
    ignore(style->close());
  }
  what.style.height = text.textHeight();
  what.width = text.width();
  what.attachment = text.attachment();
  what.lineSpacing = text.lineSpacingFactor();
  what.exactSpacing = text.lineSpacingStyle() == 2;
  return gcgiLayOutMText(what);
}

}  // namespace

namespace {

// The attachment point says how the lines lie about the location: from it on, on both sides, or up to it.
gcmirrored::Image mirroredImage(const GcDbMText& text, const GcGeMatrix3d& transform) {
  const GcGiMTextLayout layout = layOut(text);
  const int column = (text.attachment() - 1) % 3, row = (text.attachment() - 1) / 3;
  const gcmirrored::Box box{-layout.width * column / 2, layout.width * (2 - column) / 2, -layout.height * (2 - row) / 2,
                            layout.height * row / 2};
  const GcGeVector3d along = gcplanar::directionAt(text.rotation(), text.normal());
  return gcmirrored::imageOf(transform, text.location(), along, text.normal().crossProduct(along), box);
}

}  // namespace

Gcad::ErrorStatus GcDbMText::subTransformBy(const GcGeMatrix3d& transform) {
  const bool staysReadable = gcmirrored::keepsReading(*this, transform, m_normal);
  gcmirrored::Image image;
  const GcGeVector3d normal = m_normal;
  if (staysReadable) image = mirroredImage(*this, transform);
  const Gcad::ErrorStatus status = GcDbEntity::subTransformBy(transform);
  if (staysReadable && status == Gcad::eOk) {
    m_location = image.base;
    m_direction = image.along;
    m_normal = normal;
  }
  if (!m_direction.isZeroLength()) m_direction = m_direction.normal();
  m_turnRad = kNoTurn;
  return status;
}

// Whatever the size of the text depends on; never 0.
uint32_t GcDbMText::sumOfMeasured() const {
  constexpr uint64_t kStart = 14695981039346656037u, kPrime = 1099511628211u;  // Fowler, Noll and Vo's, 64 bits
  uint64_t sum = kStart;
  const auto add = [&](uint64_t value) { sum = (sum ^ value) * kPrime; };
  for (const GCHAR unit : view(m_contents)) add(static_cast<uint16_t>(unit));
  for (const double number : {m_textHeight, m_width, m_definedHeight, m_lineSpacing})
    add(std::bit_cast<uint64_t>(number));
  add(m_styleId.handle());
  add(static_cast<uint16_t>(m_lineSpacingStyle));
  return static_cast<uint32_t>(sum >> 32) | 1u;
}

double GcDbMText::actualWidth() const { return layOut(*this).width; }
double GcDbMText::actualHeight() const { return layOut(*this).height; }

bool GcDbMText::subWorldDraw(GcGiWorldDraw* draw) {
  gcgiDrawMText(layOut(*this), m_location, m_direction, m_normal, color(), *draw);
  return true;
}
