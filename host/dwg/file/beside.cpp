#include "host/dwg/file/beside.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "db/database.h"
#include "db/dictionary.h"
#include "db/entity.h"
#include "db/mtext.h"
#include "db/polyline.h"
#include "db/solid.h"
#include "db/spline.h"
#include "db/symboltable.h"
#include "db/text.h"
#include "db/viewport.h"
#include "host/db/core/extra.h"
#include "host/db/core/loader.h"
#include "host/db/describe/fieldio.h"
#include "host/db/objects/zombiedata.h"
#include "host/dwg/file/headerrows.h"
#include "host/dwg/file/headersection.h"
#include "host/dwg/record/lineweights.h"
#include "host/dwg/record/rawrecord.h"
#include "host/dwg/record/recordcodec.h"
#include "host/rx/text/number.h"

namespace gc::dwg {

namespace {

// Settings that files say in other places than rows of the header.
constexpr const GCHAR* kSaidElsewhere[] = {
    GC_T("$ACADVER"),   GC_T("$DWGCODEPAGE"), GC_T("$HANDSEED"),   GC_T("$MEASUREMENT"),
    GC_T("$TDCREATE"),  GC_T("$TDUPDATE"),    GC_T("$CEPSNTYPE"),  GC_T("$CEPSNID"),
    GC_T("$CELWEIGHT"), GC_T("$ENDCAPS"),     GC_T("$JOINSTYLE"),  GC_T("$LWDISPLAY"),
    GC_T("$XEDIT"),     GC_T("$EXTNAMES"),    GC_T("$PSTYLEMODE"), GC_T("$OLESTARTUP"),
};

// Whether the record of an object may say less than the object has. Null: it always says all, which the laws of the
// tests find for the classes below; every class that is not listed is compared.
using MayDiffer = bool (*)(const GcDbObject& object);
struct Exact {
  const GCHAR* className;
  MayDiffer mayDiffer;
};

// A row of a class (and of what derives from it).
template <class Test>
const GcDbField& rowThat(const GcRxClass& rxClass, const Test& is) {
  const GcDbClassInfo& info = *rxClass.info();
  const auto* const* at = std::find_if(info.rows, info.rows + info.rowCount, is);
  GC_ASSERT(at != info.rows + info.rowCount, "the class has the row");
  return **at;
}
const GcDbField& rowOf(const GcRxClass& rxClass, int code) {
  return rowThat(rxClass, [&](const GcDbField* row) { return row->code == code; });
}
const GcDbField& rowNamed(const GcRxClass& rxClass, std::string_view name) {
  return rowThat(rxClass, [&](const GcDbField* row) { return row->name == name; });
}

double heightOf(const GcDbField& row, const GcDbObject& object) {
  return static_cast<const GcGePoint3d*>(row.value(&object))->z;
}

// Records have the height of a text's plane once.
bool textMayDiffer(const GcDbObject& object) {
  static const GcDbField& position = rowOf(*GcDbText::desc(), 10);
  static const GcDbField& alignment = rowOf(*GcDbText::desc(), 11);
  const auto& point = *static_cast<const GcGePoint3d*>(alignment.value(&object));
  return point != GcGePoint3d() && heightOf(position, object) != point.z;
}

// And that of an area's.
template <class Area>
bool areaMayDiffer(const GcDbObject& object) {
  static const GcDbField* const rows[] = {&rowOf(*Area::desc(), 10), &rowOf(*Area::desc(), 11),
                                          &rowOf(*Area::desc(), 12), &rowOf(*Area::desc(), 13)};
  const double height = heightOf(*rows[0], object);
  return std::any_of(rows + 1, rows + 4, [&](const GcDbField* row) { return heightOf(*row, object) != height; });
}

bool polylineMayDiffer(const GcDbObject& object) {
  static const GcDbField& flags = rowOf(*GcDbPolyline::desc(), 70);
  constexpr int kKnown = 1 | 128;  // closed; linetype runs through
  return (gcdbGetValue(flags, flags.value(&object), nullptr).asInt() & ~kKnown) != 0;
}

// A direction given by its angle, columns, a background.
bool paragraphMayDiffer(const GcDbObject& object) {
  static const GcDbField& angle = rowOf(*GcDbMText::desc(), 50);
  static const GcDbField& rare = rowNamed(*GcDbMText::desc(), "columns");
  return angle.inFiles(&object) || rare.records->size(rare.value(&object)) != 0;
}

// Points it runs through beside poles, what belongs to them, and numbers that do not fit each other.
bool splineMayDiffer(const GcDbObject& object) {
  static const GcDbField* const rows[] = {&rowOf(*GcDbSpline::desc(), 210), &rowOf(*GcDbSpline::desc(), 44),
                                          &rowOf(*GcDbSpline::desc(), 12), &rowOf(*GcDbSpline::desc(), 13)};
  static const GcDbField& flags = rowOf(*GcDbSpline::desc(), 70);
  constexpr int kPlanar = 8;
  const auto sizeOf = [&](const char* name) {
    const GcDbField& row = rowNamed(*GcDbSpline::desc(), name);
    return row.records->size(row.at(const_cast<GcDbObject*>(&object)));
  };
  if (gcdbGetValue(flags, flags.value(&object), nullptr).asInt() != kPlanar) return true;  // as they come back
  if (sizeOf("fitPoints") != 0 || sizeOf("weights") != 0) return true;
  return std::any_of(rows, rows + 4, [&](const GcDbField* row) { return !row->isDefault(&object); });
}

// Entries are owned as the dictionary says for all of them.
bool dictionaryMayDiffer(const GcDbObject& object) {
  const auto& dictionary = static_cast<const GcDbDictionary&>(object);
  return std::any_of(dictionary.entries().begin(), dictionary.entries().end(),
                     [&](const auto& entry) { return entry.hard != dictionary.isTreatElementsAsHard(); });
}

constexpr Exact kExact[] = {
    {GC_T("AcDbLine"), nullptr},
    {GC_T("AcDbCircle"), nullptr},
    {GC_T("AcDbArc"), nullptr},
    {GC_T("AcDbPoint"), nullptr},
    {GC_T("AcDbEllipse"), nullptr},
    {GC_T("AcDbRay"), nullptr},
    {GC_T("AcDbXline"), nullptr},
    {GC_T("AcDbFace"), nullptr},
    {GC_T("AcDbBlockReference"), nullptr},
    {GC_T("AcDbMInsertBlock"), nullptr},
    {GC_T("AcDbBlockBegin"), nullptr},
    {GC_T("AcDbBlockEnd"), nullptr},
    {GC_T("AcDbSequenceEnd"), nullptr},
    {GC_T("AcDb2dVertex"), nullptr},
    {GC_T("AcDb3dPolylineVertex"), nullptr},
    {GC_T("AcDbPolygonMeshVertex"), nullptr},
    {GC_T("AcDbPolyFaceMeshVertex"), nullptr},
    {GC_T("AcDbFaceRecord"), nullptr},
    {GC_T("AcDbXrecord"), nullptr},
    {GC_T("AcDbMlineStyle"), nullptr},  // its linetypes are found when all is read
    {GC_T("AcDbPolyline"), polylineMayDiffer},
    {GC_T("AcDbText"), textMayDiffer},
    {GC_T("AcDbAttribute"), textMayDiffer},
    {GC_T("AcDbAttributeDefinition"), textMayDiffer},
    {GC_T("AcDbSolid"), areaMayDiffer<GcDbSolid>},
    {GC_T("AcDbTrace"), areaMayDiffer<GcDbTrace>},
    {GC_T("AcDbMText"), paragraphMayDiffer},
    {GC_T("AcDbSpline"), splineMayDiffer},
    {GC_T("AcDbDictionary"), dictionaryMayDiffer},
};

bool always(const GcDbObject&) { return true; }

// What records of entities have in later versions than group files have it, or never.
bool hasRareCommon(const GcDbObject& object, int version) {
  const GcDbObjectExtra* extra = object.extra();
  if (extra == nullptr) return false;
  const bool hasLook =
      !extra->visualStyles[0].isNull() || !extra->visualStyles[1].isNull() || !extra->visualStyles[2].isNull();
  return !extra->colorBook.isEmpty() || (version < kR2010 && hasLook);
}

// Records have references to what the file has, or none.
class DanglingTeller final : public GcDbReferenceVisitor {
 public:
  DanglingTeller(SaveNotes& notes, const GcDbObject& object) : m_notes(notes), m_object(object) {}
  void reference(GcDbObjectId& id, Is) override { check(id); }
  void check(GcDbObjectId id) {
    if (!id.isNull() && !id.isValid())
      m_notes.leftOut(m_object, "refers to " + hexText(id.handle()) + ", which is not there: none written");
  }

 private:
  SaveNotes& m_notes;
  const GcDbObject& m_object;
};

void tellDangling(SaveNotes& notes, GcDbObject& object) {
  DanglingTeller teller(notes, object);
  gcdbVisitReferences(object, teller);
  teller.check(object.ownerId());
  if (object.extra() == nullptr) return;
  teller.check(object.extra()->extensionDictionary);
  for (const GcDbObjectId id : object.extra()->reactors) teller.check(id);
}

class Collector {
 public:
  Collector(RecordContext& context, const WritePlan& plan, SaveNotes& notes)
      : m_context(context), m_plan(plan), m_notes(notes), m_losses(context.version, GcDbLossOf::Everything) {}

  GcDbRoundTrip run() {
    const GcDbFileParts& parts = m_context.database.fileParts();
    for (const GcString& comment : parts.comments) m_found.comment(view(comment));
    if (!parts.comments.empty()) tell("comments");
    for (const GcDbCustomProperty& property : parts.customProperties) m_found.property(property);
    for (const GcDbFileSection& section : parts.sections) {
      m_found.section(section);
      tell("section " + toUtf8(view(section.name)));
    }
    collectSettings();
    constexpr size_t kAhead = 8;  // in a large drawing the next objects are not in the cache
    const std::vector<PlannedObject>& all = m_plan.objects;
    for (size_t i = 0; i < all.size(); ++i) {
      if (i + kAhead < all.size()) __builtin_prefetch(all[i + kAhead].object);
      look(all[i]);
    }
    return std::move(m_found);
  }

 private:
  void collectSettings() {
    std::unordered_set<GcText> said(std::begin(kSaidElsewhere), std::end(kSaidElsewhere));
    for (const HeaderRow& row : headerRows()) {
      if (row.name == nullptr || !row.isIn(m_context.version)) continue;
      said.insert(nameOfRow(row.name));
    }
    for (const GcDbHeader::Variable& variable : m_context.database.header().variables())
      if (!said.contains(variable.name)) keepSetting(variable.name, variable.groups);
    collectNames();
    collectTimes();
  }

  // Names of settings that no record has.
  void collectNames() {
    const GcDbHeader& header = m_context.database.header();
    for (const HeaderRow& row : headerRows()) {
      constexpr int kFirstReference = 330;
      if (row.op != HeaderOp::H || row.name == nullptr || row.code >= kFirstReference) continue;
      const GcText name = nameOfRow(row.name);
      if (!row.isIn(m_context.version) || header.text(name).empty()) continue;
      if (!referenceOf(m_context, row).isValid()) keepSetting(name, *header.find(name));
    }
    if (!m_settings.empty()) tell("settings " + m_settings);
  }
  void keepSetting(const GcText& name, const GcDbGroupList& groups) {
    m_found.variable(name, groups);
    m_settings += (m_settings.empty() ? "" : ", ") + toUtf8(name);
  }

  // Records have times to the millisecond, and universal ones alone.
  void collectTimes() {
    const GcDbHeader& header = m_context.database.header();
    struct Time {
      const GCHAR* name;
      const GCHAR* universal;
    };
    constexpr Time kTimes[] = {{GC_T("$TDUCREATE"), GC_T("$TDUCREATE")}, {GC_T("$TDUUPDATE"), GC_T("$TDUUPDATE")},
                               {GC_T("$TDCREATE"), GC_T("$TDUCREATE")},  {GC_T("$TDUPDATE"), GC_T("$TDUUPDATE")},
                               {GC_T("$TDINDWG"), GC_T("$TDINDWG")},     {GC_T("$TDUSRTIMER"), GC_T("$TDUSRTIMER")}};
    for (const Time& time : kTimes) {
      if (header.find(time.name) == nullptr) continue;
      const GCHAR* kept = header.find(time.universal) != nullptr ? time.universal : time.name;
      if (header.real(time.name) != inRecord(header.real(kept))) m_found.time(time.name, kept, header);
    }
  }
  // A time as it comes back.
  static double inRecord(double value) {
    constexpr double kMillisecondsPerDay = 86400000.0;
    const double days = std::floor(value);
    return days + static_cast<int32_t>((value - days) * kMillisecondsPerDay + 0.5) / kMillisecondsPerDay;
  }

  // Fields that versions after this one have.
  bool isYoung(const GcDbObject& object) {
    return m_context.version < GcDb::kDHL_Current && !m_losses.find(object).empty();
  }
  bool isInexact(const GcDbObject& object) {
    const GcRxClass& rxClass = *object.isA();
    if (&rxClass != m_lastClass) {
      m_lastClass = &rxClass;
      m_lastDiffers = differsOf(rxClass);
    }
    return m_lastDiffers != nullptr && m_lastDiffers(object);
  }
  MayDiffer differsOf(const GcRxClass& rxClass) {
    const auto [at, isNew] = m_inexact.try_emplace(&rxClass, always);
    if (isNew) {
      const GcView name = view(rxClass.name());
      for (const Exact& row : kExact)
        if (name == GcView(row.className)) at->second = row.mayDiffer;
    }
    return at->second;
  }

  void tell(const std::string& what) {
    m_notes.ofDrawing(GcDbSaveAction::Mapped, "no place in this format, kept beside: " + what);
  }
  void tell(const GcDbObject& object, const std::string& what) {
    m_notes.together(GcDbSaveAction::Mapped, object, "no place in its record, kept beside: " + what);
  }

  void look(const PlannedObject& planned) {
    const GcDbObject& object = *planned.object;
    m_notes.look(object);
    if (m_notes.isWanted()) tellDangling(m_notes, *object.objectId().stub()->object);
    const bool isFields = planned.kind->packing != nullptr && !planned.kind->isZombie;
    if (object.extra() != nullptr) keepForeign(planned, object.extra()->foreign);
    if (isFields &&
        (isInexact(object) || hasRareCommon(object, m_context.version) ||
         (planned.kind->isEntity && isOddLineWeight(static_cast<const GcDbEntity&>(object))) || isYoung(object)))
      compare(planned);
  }

  // Line weights that are none of the usual ones have no number in records. Most entities have the weight of the one
  // before.
  bool isOddLineWeight(const GcDbEntity& entity) {
    const auto weight = entity.lineWeight();
    if (weight == m_usualLineWeight) return false;
    if (lineWeightOf(codeOfLineWeight(weight)) != weight) return true;
    m_usualLineWeight = weight;
    return false;
  }

  // A proxy that holds an object's groups holds those too but for the ones in its head.
  void keepForeign(const PlannedObject& planned, const GcArray<GcDbForeignGroups>& all) {
    const bool isWhole = planned.kind->packing != nullptr || planned.kind->isZombie || planned.kind->isTable;
    bool any = false;
    for (const GcDbForeignGroups& groups : all) {
      if (!isWhole && !groups.section.isEmpty()) continue;
      m_found.foreign(planned.object->objectId(), groups);
      any = true;
    }
    if (any) tell(*planned.object, "groups that its class does not know");
  }

  // What the object's record gives, beside what went in.
  void compare(const PlannedObject& planned) {
    const WrittenRecord written = writeRecord(m_context, *planned.object, planned.type, {});
    const ReadRecord read = readRecord(m_context, written.body, written.handleBits);
    if (read.object == nullptr || read.keptRaw) return;
    // Anonymous blocks have their number in the block's begin.
    if (const auto* block = GcDbBlockTableRecord::cast(planned.object))
      GcDbLoader::setName(static_cast<GcDbSymbolTableRecord&>(*read.object), toGcString(view(block->getName())));
    read.object->subLoaded();
    const std::vector<int> codes = m_found.changes(planned.object->objectId(), gcdbGroupsToCompare(*planned.object),
                                                   gcdbGroupsToCompare(*read.object));
    std::string listed;
    for (const int code : codes) listed += (listed.empty() ? "groups " : ", ") + std::to_string(code);
    if (!listed.empty()) tell(*planned.object, listed);
  }

  RecordContext& m_context;
  const WritePlan& m_plan;
  SaveNotes& m_notes;
  GcDbLossFinder m_losses;
  GcDbRoundTrip m_found;
  std::string m_settings;  // kept beside, by name
  std::unordered_map<const GcRxClass*, MayDiffer> m_inexact;
  const GcRxClass* m_lastClass = nullptr;
  MayDiffer m_lastDiffers = nullptr;
  GcDb::LineWeight m_usualLineWeight = GcDb::kLnWtByLayer;
};

}  // namespace

GcDbRoundTrip collectBeside(RecordContext& context, const WritePlan& plan, SaveNotes& notes) {
  return Collector(context, plan, notes).run();
}

GcView typeName(const GcDbObject& object) {
  const GcDbZombieData* zombie = zombieDataOf(object);
  return zombie != nullptr ? view(zombie->dxfName) : view(object.isA()->dxfName());
}

}  // namespace gc::dwg
