#include "cli/drawingfile.h"

#include <cctype>
#include <nlohmann/json.hpp>

#include "cli/terminal.h"
#include "host/db/core/fileformats.h"
#include "host/db/core/loadreport.h"
#include "host/rx/file/folder.h"
#include "host/rx/text/number.h"

namespace cli {

namespace {

struct VersionName {
  GcDb::GcDbDwgVersion version;
  const char* name;
};

constexpr VersionName kVersionNames[] = {
    {GcDb::kDHL_AC1001, "R9"},    {GcDb::kDHL_AC1006, "R10"},   {GcDb::kDHL_AC1009, "R12"},
    {GcDb::kDHL_AC1012, "R13"},   {GcDb::kDHL_AC1014, "R14"},   {GcDb::kDHL_AC1015, "R2000"},
    {GcDb::kDHL_AC1018, "R2004"}, {GcDb::kDHL_AC1021, "R2007"}, {GcDb::kDHL_AC1024, "R2010"},
    {GcDb::kDHL_AC1027, "R2013"}, {GcDb::kDHL_AC1032, "R2018"},
};

}  // namespace

const char* versionName(GcDb::GcDbDwgVersion version) {
  for (const VersionName& each : kVersionNames)
    if (each.version == version) return each.name;
  return "?";
}

GcDb::GcDbDwgVersion versionOfName(const std::string& name) {
  std::string upper;
  for (const char c : name) upper += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  for (const VersionName& each : kVersionNames)
    if (upper == each.name) return each.version;
  return GcDb::kDHL_Unknown;
}

namespace {

void tell(const GcDbLoadReport& report, const std::string& path, Remarks remarks) {
  if (report.isClean() || remarks == Remarks::None) return;
  if (remarks == Remarks::First) {
    complain("gcad: " + path + ": " + std::to_string(report.total()) +
             " remarks on reading, the first: " + GcDbLoadReport::describe(report.entries().front()) + "\n");
    return;
  }
  for (const GcDbLoadEntry& entry : report.entries())
    complain("gcad: " + path + ": " + GcDbLoadReport::describe(entry) + "\n");
  if (report.total() > report.entries().size())
    complain("gcad: " + path + ": " + std::to_string(report.total() - report.entries().size()) + " more remarks\n");
}

}  // namespace

std::unique_ptr<GcDbDatabase> openDrawingFile(const std::string& path, Remarks remarks) {
  auto database = std::make_unique<GcDbDatabase>(false);
  std::string message;
  if (gcdbReadDrawing(*database, path, message) != Gcad::eOk) {
    complain("gcad: " + message + "\n");
    return nullptr;
  }
  tell(database->loadReport(), path, remarks);
  return database;
}

nlohmann::json loadEntryAsJson(const GcDbLoadEntry& entry) {
  constexpr const char* kActions[] = {"noted", "repaired", "skipped", "missing"};
  nlohmann::json out{{"action", kActions[static_cast<size_t>(entry.action)]}, {"text", entry.text}};
  if (entry.line != 0) out["line"] = entry.line;
  if (entry.offset != 0) out["offset"] = entry.offset;
  if (entry.handle != 0) out["handle"] = gc::hexText(entry.handle);
  return out;
}

bool mayWrite(const std::string& path, bool force) {
  if (force || gc::pathFacts(gc::pathOfUtf8(path)).kind == gc::PathFacts::Kind::None) return true;
  complain("gcad: " + path + " exists; -f overwrites it\n");
  return false;
}

}  // namespace cli
