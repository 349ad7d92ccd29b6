#include "tools/dxfdiff/implied.h"

#include "host/db/describe/classinfo.h"
#include "host/dxf/angles.h"
#include "host/rx/text/number.h"

namespace gc::dxfdiff {
namespace {

struct Default {
  int code;
  const char* text;
};

// What entities have when nothing is said. Source: the published DXF reference.
constexpr Default kEntityDefaults[] = {
    {6, "BYLAYER"}, {39, "0.0"},  {48, "1.0"},  {60, "0"},    {62, "256"},
    {67, "0"},      {210, "0.0"}, {220, "0.0"}, {230, "1.0"}, {370, "-1"},
};

// The class the record is of, as far as its name and markers tell; null for an unknown one.
const GcRxClass* classOf(const Record& record) {
  gcdbRegisterClasses();
  const GcText type = fromUtf8(record.type);
  for (std::size_t i = record.tags.size(); i-- > 0;) {
    if (record.tags[i].code != 100) continue;
    const GcRxClass* found = gcrxFindGcRxClass(fromUtf8(record.tags[i].word()).c_str());
    if (found && found->dxfName() && view(found->dxfName()) == type) return found;
  }
  return gcrxFindGcRxClassByDxf(type.c_str());
}

bool isPoint(Kind kind) {
  return kind == Kind::Point2d || kind == Kind::Point3d || kind == Kind::Vector2d || kind == Kind::Vector3d;
}

// Whether the row's default, or a coordinate of it, has the code and is written like that.
bool isDefaultOf(const GcDbField& row, int code, const std::string& text) {
  if (row.kind == Kind::String) return row.code == code && text.empty();
  if (row.kind == Kind::Id) {
    const bool isStandard = row.is == Is::TextStyleName && text == "STANDARD";
    return row.code == code && (text == "0" || text.empty() || isStandard);
  }
  double value = row.defaultValue;
  if (isPoint(row.kind)) {
    if (code != row.code && code != row.code + 10 && code != row.code + 20) return false;
    if (row.is == Is::Normal) value = code == row.code + 20 ? 1.0 : 0.0;
  } else if (row.code != code) {
    return false;
  }
  double written = 0.0;
  if (!parseReal(text, written)) return false;
  return (dxf::isAngleCode(code) ? dxf::radiansOf(written) : written) == value;
}

}  // namespace

bool isImplied(const Record& record, int code, const std::string& text) {
  if (record.place.starts_with("ENTITIES") || record.place.starts_with("BLOCKS")) {
    for (const Default& row : kEntityDefaults) {
      if (row.code == code && text == row.text) return true;
    }
  }
  const GcRxClass* descriptor = classOf(record);
  const GcDbClassInfo* info = descriptor ? descriptor->info() : nullptr;
  for (int i = 0; info && i < info->rowCount; ++i) {
    const GcDbField& row = *info->rows[i];
    const bool leftOut = row.write == Write::UnlessDefault || row.write == Write::FilesUnlessDefault;
    if (leftOut && isDefaultOf(row, code, text)) return true;
    if (row.write == Write::ListsOnly && row.code == code) return true;  // files say it in another form
  }
  return false;
}

}  // namespace gc::dxfdiff
