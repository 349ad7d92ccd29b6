#include "module/geometry/draggenjig.h"

#include <memory>

#include "gi/drawable.h"
#include "module/app/openptr.h"

namespace {

// What the special cursor of each cursor argument is.
constexpr int kSpecialCursors[] = {GcEdJig::kNoSpecialCursor, 7, 8};

constexpr const GCHAR* kLastPoint = GC_T("LASTPOINT");

GcString g_lastKeyword;

enum System : int16_t { kWorld = 0, kUser = 1 };

resbuf systemNode(System system) {
  resbuf node{};
  node.restype = RTSHORT;
  node.resval.rint = system;
  return node;
}

// A point from one coordinate system to another; as it is when the host refuses.
GcGePoint3d translated(const GcGePoint3d& point, System from, System to) {
  const resbuf fromNode = systemNode(from);
  const resbuf toNode = systemNode(to);
  const gds_point given = {point.x, point.y, point.z};
  gds_point result = {point.x, point.y, point.z};
  gcedTrans(given, &fromNode, &toNode, 0, result);
  return {result[0], result[1], result[2]};
}

bool isSeparator(GCHAR unit) {
  return unit == GC_T(' ') || unit == GC_T(',') || unit == GC_T('\t') || unit == GC_T('\n');
}

// Splits at separators; words beyond the last place are left out.
void split(const GCHAR* text, GcString* words, int places) {
  int count = 0;
  while (*text != 0 && count < places) {
    while (isSeparator(*text)) ++text;
    const GCHAR* end = text;
    while (*end != 0 && !isSeparator(*end)) ++end;
    if (end != text) words[count++] = GcString(text, static_cast<std::size_t>(end - text));
    text = end;
  }
}

// A reference that carries attributes shows them instead of their definitions.
void drawByParts(const GcDbBlockReference& reference, const GcDbObjectIdArray& attributes, GcGiWorldDraw& draw) {
  for (const GcDbObjectId id : attributes)
    if (const GcDbReadPtr<GcDbEntity> attribute(id); attribute) draw.draw(attribute.get());
  GcDbVoidPtrArray parts;
  ignore(reference.explode(parts));
  for (void* each : parts) {
    const std::unique_ptr<GcDbEntity> part(static_cast<GcDbEntity*>(each));
    if (!part->isKindOf(GcDbAttributeDefinition::desc())) draw.draw(part.get());
  }
}

}  // namespace

AsdkDragGenJig::AsdkDragGenJig() : m_drawable(*this) {}

const GcString& AsdkDragGenJig::lastKeyword() { return g_lastKeyword; }

int AsdkDragGenJig::setTransform(DragTransform transform) {
  m_transform = transform;
  return transform != nullptr ? RTNORM : RTERROR;
}

int AsdkDragGenJig::setCursor(int cursor) {
  constexpr int kCount = sizeof kSpecialCursors / sizeof kSpecialCursors[0];
  if (cursor < 0 || cursor >= kCount) return RTERROR;
  m_specialCursor = kSpecialCursors[cursor];
  return RTNORM;
}

int AsdkDragGenJig::setSelectionSet(const gds_name set) {
  int32_t count = 0;
  if (gcedSSLength(set, &count) != RTNORM || count == 0) return RTERROR;
  for (int32_t i = 0; i < count; ++i) {
    gds_name name = {};
    GcDbObjectId id;
    if (gcedSSName(set, i, name) != RTNORM || gcdbGetObjectId(id, name) != Gcad::eOk) return RTERROR;
    m_entities.append(id);
  }
  return RTNORM;
}

int AsdkDragGenJig::setPrompt(const GCHAR* prompt) {
  if (prompt == nullptr) return RTERROR;
  setDispPrompt(prompt);
  return RTNORM;
}

void AsdkDragGenJig::setKeywords(const GCHAR* keywords) {
  m_keywordList = keywords;
  split(keywords, m_keywords, kMostKeywords);
}

int AsdkDragGenJig::run(gds_point picked) {
  resbuf start{};
  if (const int status = gcedGetVar(kLastPoint, &start); status != RTNORM) return status;
  const gds_real* at = start.resval.rpoint;
  m_lastPoint = translated({at[0], at[1], at[2]}, kUser, kWorld);
  const DragStatus status = drag();
  // Converted and stored however the drag ended.
  const GcGePoint3d user = translated(m_lastPoint, kWorld, kUser);
  picked[0] = user.x;
  picked[1] = user.y;
  picked[2] = user.z;
  if (status >= kKW1 && status <= kLastKeywordStatus) return RTKWORD;
  return status == kNormal ? RTNORM : RTERROR;
}

GcEdJig::DragStatus AsdkDragGenJig::sampler() {
  setSpecialCursorType(m_specialCursor);
  setUserInputControls(kAccept3dCoordinates | kNullResponseAccepted);
  setKeywordList(m_keywordList.c_str());
  GcGePoint3d point;
  const DragStatus status = acquirePoint(point, m_lastPoint);
  // Deliberate: one keyword more is kept than a status can tell.
  if (status >= kKW1 && status <= kLastKeywordStatus) g_lastKeyword = m_keyword = m_keywords[status - kKW1];
  if (status != kNormal) return status;
  if (point.isEqualTo(m_lastPoint, GcGeContext::gTol)) return kNoChange;
  m_lastPoint = point;
  const GcGePoint3d user = translated(point, kWorld, kUser);
  gds_point sampled = {user.x, user.y, user.z};
  GcGeMatrix3d matrix;
  if (m_transform(sampled, matrix.entry) != RTNORM) return kCancel;
  m_matrix = matrix;
  return kNormal;
}

// A compound object: it draws others.
uint32_t AsdkDragGenJig::SelectionSet::subSetAttributes(GcGiDrawableTraits*) { return 4; }

bool AsdkDragGenJig::SelectionSet::subWorldDraw(GcGiWorldDraw* draw) {
  draw->geometry().pushModelTransform(m_jig.m_matrix);
  for (const GcDbObjectId id : m_jig.m_entities) {
    const GcDbReadPtr<GcDbEntity> entity(id);
    if (!entity) continue;
    GcDbObjectIdArray attributes;
    const auto* reference = GcDbBlockReference::cast(entity.get());
    if (reference != nullptr) reference->attributeIds(attributes);
    if (!attributes.isEmpty())
      drawByParts(*reference, attributes, *draw);
    else
      draw->draw(entity.get());
  }
  draw->geometry().popModelTransform();
  return true;
}
