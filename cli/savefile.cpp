#include "cli/savefile.h"

#include "cli/drawingfile.h"
#include "cli/terminal.h"
#include "host/ap/paths.h"
#include "host/db/core/fileformats.h"
#include "host/db/core/savereport.h"
#include "host/rx/text/utf.h"

namespace cli {

namespace {

int refuse(const std::string& reason) {
  complain("gcad: " + reason + "\n");
  return kUsage;
}

std::string versionsOf(const GcDbFileFormat& format) {
  std::string names;
  for (int version = GcDb::kDHL_AC1001; version <= GcDb::kDHL_Current; ++version) {
    const auto each = static_cast<GcDb::GcDbDwgVersion>(version);
    if (format.writes(each)) names += (names.empty() ? "" : ", ") + std::string(versionName(each));
  }
  return names;
}

GcDb::GcDbDwgVersion versionOf(const GcDbDatabase& database, const GcDbFileFormat& format, const SaveTarget& target) {
  if (!target.as.empty()) return versionOfName(target.as);
  return target.input.empty() ? GcDb::kDHL_Current : gcdbVersionToWrite(format, database.originalFileVersion());
}

void tell(const GcDbSaveReport& report, const std::string& path) {
  for (const GcDbSaveEntry& entry : report.entries())
    complain("gcad: " + path + ": " + GcDbSaveReport::describe(entry) + "\n");
}

}  // namespace

int checkTarget(const SaveTarget& target) {
  const GcDbFileFormat* format = gcdbFormatOfName(target.path);
  if (format == nullptr) return refuse(target.path + ": the extension names no format a drawing can be saved in");
  if (target.binary && std::string_view(format->extension) != "dxf")
    return refuse("--binary is for DXF: " + target.path + " is none");
  if (!target.as.empty() && !format->writes(versionOfName(target.as)))
    return refuse(target.path + ": this format is not written as " + target.as + " but as " + versionsOf(*format));
  if (target.inPlace) return kDone;
  const bool isInput = !target.input.empty() &&
                       ap::absolutePath(gc::fromUtf8(target.path)) == ap::absolutePath(gc::fromUtf8(target.input));
  if (isInput) return refuse(target.path + " is the drawing that is read; --in-place saves over it");
  return mayWrite(target.path, target.force) ? kDone : kCannotWrite;
}

int saveDrawing(GcDbDatabase& database, const SaveTarget& target) {
  GcDbSaveReport report;
  GcDbSaveOptions how;
  how.version = versionOf(database, *gcdbFormatOfName(target.path), target);
  how.binary = target.binary;
  how.backup = target.backup;
  how.report = &report;
  std::string message;
  if (gcdbSaveDrawing(database, target.path, how, message) != Gcad::eOk) {
    complain("gcad: " + message + "\n");
    return kCannotWrite;
  }
  tell(report, target.path);
  if (report.isClean() && !message.empty()) complain("gcad: " + target.path + ": " + message + "\n");
  return kDone;
}

}  // namespace cli
