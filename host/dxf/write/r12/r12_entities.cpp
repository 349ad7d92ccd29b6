#include "host/dxf/write/r12/r12_entities.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "db/blockreference.h"
#include "db/dimension.h"
#include "db/hatch.h"
#include "db/polyline.h"
#include "db/zombie.h"
#include "host/db/core/header.h"
#include "host/db/core/names.h"
#include "host/db/describe/fieldio.h"
#include "host/dxf/write/object_writer.h"
#include "host/dxf/write/r12/r12_viewport.h"

namespace gc::dxf {
namespace {

constexpr double kDeviationOfSize = 1e-4;  // of a chain of lines from its curve, by the size of what is drawn

// Keeps an object readable while it is asked things.
class Reading {
 public:
  explicit Reading(const GcDbObject& object) : m_stub(*object.objectId().stub()) { ++m_stub.readers; }
  ~Reading() { --m_stub.readers; }
  Reading(const Reading&) = delete;
  Reading& operator=(const Reading&) = delete;

 private:
  GcDbStub& m_stub;
};

// The number of an anonymous name such as *X12; 0 for other names.
int numberOf(GcView name) {
  if (name.size() < 3 || name[0] != '*' || (name[1] != 'X' && name[1] != 'x')) return 0;
  int number = 0;
  for (const GCHAR c : name.substr(2)) {
    constexpr int kMost = 100000000;
    if (c < '0' || c > '9' || number > kMost) return 0;
    number = number * 10 + (c - '0');
  }
  return number;
}

bool cameFromR12(const GcDbDatabase& database) {
  const int version = database.originalFileVersion();
  return version != GcDb::kDHL_Unknown && version < GcDb::kDHL_AC1012;
}

}  // namespace

R12Entities::R12Entities(GroupWriter& out, const R12Names& names, const GcDbDatabase& database, SaveNotes& notes,
                         std::uint64_t firstHandle)
    : m_out(out),
      m_names(names),
      m_database(database),
      m_notes(notes),
      m_keepsUnknown(cameFromR12(database)),
      m_nextHandle(firstHandle),
      m_emitter(out, names, database, m_nextHandle) {
  findReach();
}

// Endless lines go as far as the drawing does, and as far again.
void R12Entities::findReach() {
  const GcGePoint3d low = m_database.header().point(GC_T("$EXTMIN")), high = m_database.header().point(GC_T("$EXTMAX"));
  const double size = (high - low).length();
  const double far = std::fmax(low.asVector().length(), high.asVector().length());
  constexpr double kGreatest = 1e15;
  if (high.x >= low.x && size > 0 && far < kGreatest) m_reach = 2 * (size + far);
}

void R12Entities::writeHatchBlocks() {
  int number = 0;
  std::vector<const GcDbEntity*> hatches;
  m_database.store().forEach([&](const GcDbStub* stub) {
    if (!stub->object || stub->erased) return;
    if (const auto* block = GcDbBlockTableRecord::cast(stub->object))
      number = std::max(number, numberOf(view(block->getName())));
    if (const auto* hatch = GcDbHatch::cast(stub->object)) hatches.push_back(hatch);
  });
  for (const GcDbEntity* hatch : hatches) {
    m_hatchBlocks[hatch].name = GC_T("*X") + fromUtf8(std::to_string(++number));
    writeHatchBlock(*hatch);
  }
}

void R12Entities::writeHatchBlock(const GcDbEntity& hatch) {
  constexpr int kAnonymous = 1;
  HatchBlock& block = m_hatchBlocks[&hatch];
  TagWriter& tags = m_out.tags();
  tags.writeString(0, "BLOCK");
  tags.writeHandle(5, m_nextHandle++);
  m_out.putText(8, GC_T("0"));
  m_out.putText(2, block.name);
  tags.writeInt(70, kAnonymous);
  tags.writePoint(10, 0, 0, 0);
  m_out.putText(3, block.name);
  m_emitter.start(hatch, false, false);
  drawInto(hatch);
  block.isEmpty = m_emitter.written().empty();
  tags.writeString(0, "ENDBLK");
  tags.writeHandle(5, m_nextHandle++);
  m_out.putText(8, GC_T("0"));
}

void R12Entities::drawInto(const GcDbEntity& entity) {
  const Reading reading(entity);
  GcDbExtents extents;
  double size = 1;
  if (entity.getGeomExtents(extents) == Gcad::eOk && !extents.isEmpty()) size = (extents.max - extents.min).length();
  R12Draw draw(m_emitter, size * kDeviationOfSize, m_reach);
  draw.draw(const_cast<GcDbEntity*>(&entity));
}

void R12Entities::writeHead(const GcDbEntity& entity, std::string_view type, const GcDbBlockTableRecord& block) {
  TagWriter& tags = m_out.tags();
  tags.writeString(0, type);
  tags.writeHandle(5, entity.handle());
  if (block.isPaperSpace()) tags.writeInt(67, 1);
}

// Groups no description knows, of drawings of that time.
void R12Entities::writeForeign(const GcDbEntity& entity, R12Groups& groups) {
  if (!entity.extra()) return;
  for (const GcDbForeignGroups& foreign : entity.extra()->foreign) {
    GcDbGroup first;
    const bool isBraced = GcDbGroupList::Cursor(foreign.groups).next(first) && first.code == 102;
    if (!isBraced) groups.put(foreign.groups);
  }
}

void R12Entities::writeNative(const GcDbEntity& entity, std::string_view type, const GcDbBlockTableRecord& block) {
  writeHead(entity, type, block);
  R12Groups groups(m_out, m_names, type, m_keepsUnknown);
  gcdbFieldsOut(entity, groups, GcDb::kDHL_AC1009);
  writeForeign(entity, groups);
  const GcDbGroupList* xdata = entity.extra() ? &entity.extra()->xdata : nullptr;
  const bool isViewport = type == "VIEWPORT";
  if (isViewport && !(m_keepsUnknown && xdata && !xdata->isEmpty())) putViewportData(m_out, m_names, entity);
  if (xdata) putR12XData(m_out, m_names, *xdata);
  m_notes.lookInGroups(entity);
  tellLosses(entity, isViewport ? std::string() : groups.dropped());
}

void R12Entities::tellLosses(const GcDbEntity& entity, const std::string& dropped) {
  if (!m_notes.isWanted()) return;
  if (!dropped.empty()) m_notes.mapped(entity, "R12 has no " + dropped);
  const GcDbObjectExtra* extra = entity.extra();
  if (extra && extra->extensionDictionary.isValid() && !extra->extensionDictionary.isErased())
    m_notes.mapped(entity, "R12 has no extension dictionaries: what is in this one is left out");
}

void R12Entities::writeParts(const GcDbEntity& entity, const GcDbBlockTableRecord& block) {
  const GcDbObjectExtra* extra = entity.extra();
  if (!extra || (extra->parts.isEmpty() && extra->sequenceEnd.isNull())) return;
  const auto writePart = [&](GcDbObjectId id) {
    const auto* part = id.isValid() && !id.isErased() ? GcDbEntity::cast(id.stub()->object) : nullptr;
    if (part) writeNative(*part, toUtf8(typeOf(*part)), block);
  };
  for (const GcDbObjectId part : extra->parts) writePart(part);
  writePart(extra->sequenceEnd);
}

void R12Entities::write(const GcDbEntity& entity, const GcDbBlockTableRecord& block) {
  const std::string type = toUtf8(typeOf(entity));
  const bool isZombie = GcDbZombieEntity::cast(&entity) != nullptr;
  if (isR12Entity(type) || (isZombie && m_keepsUnknown)) {
    writeNative(entity, type, block);
    writeParts(entity, block);
  } else {
    replace(entity, block);
  }
}

bool R12Entities::replaceByInsert(const GcDbEntity& entity) {
  if (const auto hatch = m_hatchBlocks.find(&entity); hatch != m_hatchBlocks.end()) {
    if (!hatch->second.isEmpty) m_emitter.insert(hatch->second.name, {});
    return true;
  }
  if (const auto* dimension = GcDbDimension::cast(&entity)) {
    if (!dimension->dimBlockId().isValid()) return false;
    m_emitter.insert(m_names.of(GcDbDatabase::kBlocks, gcdbNameOfRecord(dimension->dimBlockId())), {});
    return true;
  }
  if (const auto* reference = GcDbBlockReference::cast(&entity)) {
    if (!reference->blockTableRecord().isValid()) return false;
    m_emitter.insert(entity, m_names.of(GcDbDatabase::kBlocks, gcdbNameOfRecord(reference->blockTableRecord())));
    return true;
  }
  return false;
}

void R12Entities::replace(const GcDbEntity& entity, const GcDbBlockTableRecord& block) {
  m_emitter.start(entity, block.isPaperSpace(), true);
  if (const auto* polyline = GcDbPolyline::cast(&entity)) {
    m_emitter.lightweight(*polyline);
  } else if (!replaceByInsert(entity)) {
    drawInto(entity);
  }
  const std::string written = m_emitter.written();
  if (written.empty()) {
    m_notes.leftOut(entity, "R12 has no such entity, and it draws nothing that could stand for it");
    return;
  }
  m_notes.mapped(entity, "R12 has no such entity: written as " + written);
  m_notes.lookAtCommon(entity);
  tellLosses(entity, {});
}

void R12Entities::writeBlockBegin(const GcDbEntity& begin, const GcDbBlockTableRecord& block) {
  writeHead(begin, "BLOCK", block);
  R12Groups groups(m_out, m_names, "BLOCK");
  gcdbFieldsOut(begin, groups, GcDb::kDHL_AC1009);
  gcdbRowsOut(&block, GcDbBlockTableRecord::kBlockFields, GcDbBlockTableRecord::kBlockFieldCount, groups,
              GcDb::kDHL_AC1009, begin.database());
  if (begin.extra()) putR12XData(m_out, m_names, begin.extra()->xdata);
  if (!groups.dropped().empty()) m_notes.mapped(block, "R12 has no " + groups.dropped());
}

void R12Entities::writeBlockEnd(const GcDbEntity& end, const GcDbBlockTableRecord& block) {
  writeNative(end, "ENDBLK", block);
}

}  // namespace gc::dxf
