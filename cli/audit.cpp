#include "cli/audit.h"

#include <nlohmann/json.hpp>

#include "cli/drawingfile.h"
#include "cli/savefile.h"
#include "host/db/audit/audit.h"
#include "host/db/core/loadreport.h"
#include "host/rx/text/number.h"

namespace cli {

namespace {

// What a reader of the file has found: notes are no errors.
uint64_t countErrors(const GcDbLoadReport& report) {
  uint64_t errors = report.total() - report.entries().size();
  for (const GcDbLoadEntry& entry : report.entries()) errors += entry.action != GcDbLoadAction::Noted ? 1 : 0;
  return errors;
}

std::string asText(const GcDbLoadReport& load, const GcDbAuditReport& found) {
  std::string out;
  for (const GcDbLoadEntry& entry : load.entries()) out += "reading: " + GcDbLoadReport::describe(entry) + "\n";
  for (const GcDbAuditEntry& entry : found.entries) out += GcDbAuditReport::describe(entry) + "\n";
  const uint64_t read = countErrors(load);
  out += std::to_string(read) + " errors in the file, " + std::to_string(found.entries.size()) + " in the drawing, " +
         std::to_string(found.mended()) + " of these mended\n";
  return out;
}

nlohmann::json asJson(const std::string& file, const GcDbLoadReport& load, const GcDbAuditReport& found) {
  nlohmann::json out;
  out["schema"] = 1;
  out["file"] = file;
  out["errorsInFile"] = countErrors(load);
  out["mended"] = found.mended();
  out["reading"] = nlohmann::json::array();
  for (const GcDbLoadEntry& entry : load.entries()) out["reading"].push_back(loadEntryAsJson(entry));
  out["drawing"] = nlohmann::json::array();
  for (const GcDbAuditEntry& entry : found.entries) {
    const GcDbDefectKind& kind = gcdbKindOfDefect(entry.defect);
    out["drawing"].push_back({{"code", kind.code},
                              {"handle", entry.handle == 0 ? std::string() : gc::hexText(entry.handle)},
                              {"object", entry.object},
                              {"found", kind.found},
                              {"detail", entry.detail},
                              {"mended", entry.mended}});
  }
  return out;
}

int refuse(const char* reason) {
  complain(std::string("gcad: ") + reason + "\n");
  return kUsage;
}

}  // namespace

int audit(Terminal& terminal, const AuditOptions& options) {
  if (options.fix && options.out.empty()) return refuse("--fix needs -o: the file that is read stays as it is");
  if (!options.fix && !options.out.empty()) return refuse("-o needs --fix");
  SaveTarget target;
  target.path = options.out;
  target.input = options.file;
  target.force = options.force;
  if (options.fix)
    if (const int code = checkTarget(target); code != kDone) return code;
  const std::unique_ptr<GcDbDatabase> database = openDrawingFile(options.file, Remarks::None);
  if (database == nullptr) return kCannotRead;
  const GcDbAuditReport found = gcdbAudit(*database, options.fix);
  const GcDbLoadReport& load = database->loadReport();
  terminal.write(
      options.json
          ? asJson(options.file, load, found).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n"
          : asText(load, found));
  if (options.fix) {
    if (const int code = saveDrawing(*database, target); code != kDone) return code;
    return found.mended() == static_cast<int>(found.entries.size()) ? kDone : kAuditErrors;
  }
  return countErrors(load) == 0 && found.isClean() ? kDone : kAuditErrors;
}

}  // namespace cli
