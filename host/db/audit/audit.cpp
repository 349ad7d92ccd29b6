#include "host/db/audit/audit.h"

#include <algorithm>

#include "db/entity.h"
#include "db/zombie.h"
#include "host/db/audit/auditor.h"
#include "host/db/objects/zombiedata.h"
#include "host/rx/text/number.h"
#include "host/rx/view.h"

namespace {

constexpr GcDbDefectKind kKinds[] = {
    {GcDbDefect::MissingRecord, "A01", "what every drawing has is missing", "made"},
    {GcDbDefect::BlockWithoutEnds, "A02", "a block without begin or end", "made"},
    {GcDbDefect::HandleSeed, "A03", "the handle to be given next is taken", "raised"},
    {GcDbDefect::RecordName, "A04", "a record without a proper name", "renamed"},
    {GcDbDefect::DuplicateName, "A05", "a second record of the name", "renamed"},
    {GcDbDefect::OwnerCycle, "A06", "owns itself through others", "the owner is taken off"},
    {GcDbDefect::WrongOwner, "A07", "names another owner than the one that holds it", "the holder becomes the owner"},
    {GcDbDefect::NoOwner, "A08", "an entity in no block", "put into model space"},
    {GcDbDefect::EntityTwice, "A09", "an entity that is listed twice", "listed once, by its owner"},
    {GcDbDefect::NotListed, "A10", "an entity its block does not list", "listed"},
    {GcDbDefect::BlockInItself, "A11", "a block that refers to itself", "the reference is erased"},
    {GcDbDefect::NoBlock, "A12", "a block reference without its block", "erased"},
    {GcDbDefect::DanglingReference, "A13", "refers to nothing",
     "the reference is taken off or becomes the standard one"},
    {GcDbDefect::DanglingReactor, "A14", "a reactor that is not there", "taken off"},
    {GcDbDefect::ExtensionDictionary, "A15", "an extension dictionary that is none or is another object's",
     "taken off"},
    {GcDbDefect::DictionaryEntry, "A16", "a dictionary entry without an object", "taken out"},
    {GcDbDefect::DictionaryKey, "A17", "an empty or repeated key", "renamed"},
    {GcDbDefect::SequenceEnd, "A18", "a sequence without its end", "ended"},
    {GcDbDefect::NotFinite, "A19", "a number that is none", "set to its default"},
    {GcDbDefect::Direction, "A20", "a direction that is no unit vector", "made one; without length, the axis"},
    {GcDbDefect::Color, "A21", "a colour that is none", "by layer"},
    {GcDbDefect::LineWeight, "A22", "a line weight that is none", "by layer"},
    {GcDbDefect::LinetypeScale, "A23", "a linetype scale not above zero", "1"},
    {GcDbDefect::Size, "A24", "a size not above zero", "erased"},
    {GcDbDefect::Counts, "A25", "counts that do not fit", nullptr},
    {GcDbDefect::Application, "A26", "extended data of an application that is not registered", "registered"},
    {GcDbDefect::DataBraces, "A27", "extended data whose braces do not match", "taken off"},
};
static_assert(std::size(kKinds) == static_cast<size_t>(GcDbDefect::Count));

std::string nameOf(const GcDbObject& object) {
  if (const auto* zombie = GcDbZombieEntity::cast(&object)) return toUtf8(view(zombie->data().dxfName));
  if (const auto* zombie = GcDbZombieObject::cast(&object)) return toUtf8(view(zombie->data().dxfName));
  return toUtf8(view(object.isA()->dxfName()));
}

}  // namespace

const GcDbDefectKind& gcdbKindOfDefect(GcDbDefect defect) { return kKinds[static_cast<size_t>(defect)]; }

int GcDbAuditReport::mended() const {
  return static_cast<int>(
      std::count_if(entries.begin(), entries.end(), [](const GcDbAuditEntry& entry) { return entry.mended; }));
}

std::string GcDbAuditReport::describe(const GcDbAuditEntry& entry) {
  const GcDbDefectKind& kind = gcdbKindOfDefect(entry.defect);
  std::string line = std::string(kind.code) + ' ' + (entry.object.empty() ? "drawing" : entry.object);
  if (entry.handle != 0) line += ' ' + gc::hexText(entry.handle);
  line += std::string(": ") + kind.found;
  if (!entry.detail.empty()) line += ": " + entry.detail;
  if (entry.mended) line += std::string(": ") + kind.done;
  return line;
}

bool GcDbAuditor::found(GcDbDefect defect, const GcDbObject* object, const std::string& detail) {
  const bool mends = m_mend && gcdbKindOfDefect(defect).done != nullptr;
  GcDbAuditEntry entry{defect, 0, {}, detail, mends};
  if (object != nullptr) {
    entry.handle = object->handle();
    entry.object = nameOf(*object);
  }
  m_report.entries.push_back(std::move(entry));
  return mends;
}

GcDbAuditReport gcdbAudit(GcDbDatabase& database, bool mend) {
  GcDbAuditReport report;
  GcDbAuditor auditor(database, mend, report);
  gcdbAuditFrame(auditor);
  gcdbAuditNames(auditor);
  gcdbAuditOwners(auditor);
  gcdbAuditReferences(auditor);
  gcdbAuditBlocks(auditor);
  gcdbAuditValues(auditor);
  gcdbAuditData(auditor);
  return report;
}
