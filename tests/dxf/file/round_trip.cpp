#include "tests/dxf/file/round_trip.h"

#include "host/db/core/loadreport.h"
#include "tools/dxfdiff/compare.h"

namespace gc::test {

std::unique_ptr<GcDbDatabase> load(std::string_view file) {
  auto database = std::make_unique<GcDbDatabase>(false);
  if (dxf::read(*database, file) != Gcad::eOk) return nullptr;
  return database;
}

std::string save(GcDbDatabase& database, GcDb::GcDbDwgVersion version, bool binary) {
  dxf::StringSink sink;
  dxf::WriteOptions options;
  options.version = version;
  options.binary = binary;
  return dxf::write(database, sink, options) == Gcad::eOk ? std::move(sink.text()) : std::string();
}

std::vector<std::string> reportOf(GcDbDatabase& database) {
  std::vector<std::string> lines;
  for (const GcDbLoadEntry& entry : database.loadReport().entries()) {
    if (!entry.text.starts_with("no table ")) lines.push_back(GcDbLoadReport::describe(entry));
  }
  return lines;
}

std::vector<std::string> losses(std::string_view before, std::string_view after) {
  dxfdiff::Options options;
  options.ignoredVariables = {"$HANDSEED"};
  std::vector<std::string> lines;
  for (const dxfdiff::Difference& difference : dxfdiff::compare(before, after, options)) {
    const bool isLoss = difference.what == dxfdiff::What::Lost || difference.what == dxfdiff::What::Changed;
    if (isLoss) lines.push_back(dxfdiff::describe(difference));
  }
  return lines;
}

}  // namespace gc::test
