#include "host/dxf/write/r12/r12_groups.h"

#include <algorithm>
#include <span>

namespace gc::dxf {
namespace {

constexpr int kNoTable = -1;
constexpr int kMostCodes = 40;

// Source: the published DXF reference of the version. Ranges stand as first, -last.
struct Row {
  std::string_view type;
  bool isEntity;
  std::int16_t codes[kMostCodes];  // 0: the end
};

constexpr Row kRows[] = {
    {"LINE", true, {10, 11, 39, 210}},
    {"POINT", true, {10, 39, 50, 210}},
    {"CIRCLE", true, {10, 39, 40, 210}},
    {"ARC", true, {10, 39, 40, 50, 51, 210}},
    {"TRACE", true, {10, -13, 39, 210}},
    {"SOLID", true, {10, -13, 39, 210}},
    {"3DFACE", true, {10, -13, 70}},
    {"TEXT", true, {1, 7, 10, 11, 39, 40, 41, 50, 51, 71, -73, 210}},
    {"SHAPE", true, {2, 10, 39, 40, 41, 50, 51, 210}},
    {"INSERT", true, {2, 10, 41, -45, 50, 66, 70, 71, 210}},
    {"ATTDEF", true, {1, -3, 7, 10, 11, 39, 40, 41, 50, 51, 70, -74, 210}},
    {"ATTRIB", true, {1, 2, 7, 10, 11, 39, 40, 41, 50, 51, 70, -74, 210}},
    {"POLYLINE", true, {10, 39, -41, 66, 70, -75, 210}},
    {"VERTEX", true, {10, 40, -42, 50, 70, -74}},
    {"SEQEND", true, {}},
    {"DIMENSION", true, {1, -3, 10, -16, 40, 50, -53, 70, 210}},
    {"VIEWPORT", true, {10, 40, 41, 68, 69}},
    {"BLOCK", true, {1, -3, 10, 70}},
    {"ENDBLK", true, {}},
    {"LAYER", false, {2, 6, 62, 70}},
    {"LTYPE", false, {2, 3, 40, 49, 70, 72, 73}},
    {"STYLE", false, {2, -4, 40, -42, 50, 70, 71}},
    {"VIEW", false, {2, 10, -12, 40, -44, 50, 70, 71}},
    {"UCS", false, {2, 10, -12, 70}},
    {"VPORT", false, {2, 10, -17, 40, -45, 50, 51, 70, -78}},
    {"APPID", false, {2, 70}},
    {"DIMSTYLE", false, {2, -7, 40, -48, 70, -78, 140, -147, 170, -178}},
};

constexpr std::int16_t kCommonCodes[] = {6, 8, 38, 62, 67};  // of entities

const Row* rowOf(std::string_view type) {
  const auto found = std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& row) { return row.type == type; });
  return found == std::end(kRows) ? nullptr : found;
}

bool has(const Row& row, int code) {
  for (int i = 0; i < kMostCodes && row.codes[i] != 0; ++i) {
    const bool isRange = i + 1 < kMostCodes && row.codes[i + 1] < 0;
    if (code == row.codes[i] || (isRange && code > row.codes[i] && code <= -row.codes[i + 1])) return true;
    if (isRange) ++i;
  }
  return false;
}

// The table whose record a group names.
int tableOf(std::string_view type, int code) {
  const bool isDimension = type == "DIMENSION", isDimStyle = type == "DIMSTYLE";
  switch (code) {
    case 8: return GcDbDatabase::kLayers;
    case 6: return isDimStyle ? GcDbDatabase::kBlocks : GcDbDatabase::kLinetypes;
    case 7:
      if (isDimStyle) return GcDbDatabase::kBlocks;
      return type == "TEXT" || type == "ATTDEF" || type == "ATTRIB" ? GcDbDatabase::kTextStyles : kNoTable;
    case 5: return isDimStyle ? GcDbDatabase::kBlocks : kNoTable;
    case 3: return isDimension ? GcDbDatabase::kDimStyles : type == "BLOCK" ? GcDbDatabase::kBlocks : kNoTable;
    case 2: {
      if (type == "INSERT" || isDimension || type == "BLOCK") return GcDbDatabase::kBlocks;
      if (type == "LAYER") return GcDbDatabase::kLayers;
      if (type == "LTYPE") return GcDbDatabase::kLinetypes;
      if (type == "STYLE") return GcDbDatabase::kTextStyles;
      if (type == "VIEW") return GcDbDatabase::kViews;
      if (type == "UCS") return GcDbDatabase::kUcss;
      if (type == "VPORT") return GcDbDatabase::kViewports;
      if (type == "APPID") return GcDbDatabase::kRegApps;
      return isDimStyle ? GcDbDatabase::kDimStyles : kNoTable;
    }
    default: return kNoTable;
  }
}

// Groups about the structure of later files, which say nothing of the object itself.
bool isStructure(int code) {
  return code == 5 || code == 67 || code == 100 || code == 102 || code == 105 || code == 330 || code == 360;
}

// Zero, nothing and the null handle are what every reader takes where a group is missing.
bool saysSomething(const GcDbGroup& group) {
  switch (group.kind) {
    case GcDbGroupKind::Text: return !group.text.empty();
    case GcDbGroupKind::Id: return !group.id.isNull();
    case GcDbGroupKind::Binary: return !group.bytes.empty();
    case GcDbGroupKind::Point2d:
    case GcDbGroupKind::Point3d: return group.point.x != 0 || group.point.y != 0 || group.point.z != 0;
    default: return group.asReal() != 0;
  }
}

std::string nameOf(int code) {
  switch (code) {
    case 48: return "linetype scale (48)";
    case 60: return "invisibility (60)";
    case 370: return "line weight (370)";
    case 420: return "true colour (420)";
    case 440: return "transparency (440)";
    default: return std::to_string(code);
  }
}

}  // namespace

bool isR12Entity(std::string_view type) {
  const Row* row = rowOf(type);
  return row && row->isEntity;
}

R12Groups::R12Groups(GroupWriter& out, const R12Names& names, std::string_view type, bool keepsUnknown)
    : m_out(out), m_names(names), m_type(type), m_keepsUnknown(keepsUnknown) {}

bool R12Groups::isKnown(int code) const {
  const Row* row = rowOf(m_type);
  const bool isCommon = std::find(std::begin(kCommonCodes), std::end(kCommonCodes), code) != std::end(kCommonCodes);
  return row && (has(*row, code) || (row->isEntity && isCommon));
}

void R12Groups::put(const GcDbGroup& group) {
  const int code = group.code;
  if (code == 101) m_inEmbedded = true;
  const bool isDimStyleBlock = m_type == "DIMSTYLE" && code == 5 && group.kind == GcDbGroupKind::Text;
  if (code < 0 || code == 101 || (isStructure(code) && !isDimStyleBlock)) return;
  if (m_inEmbedded || (!isKnown(code) && !m_keepsUnknown)) {
    if (!saysSomething(group)) return;
    const std::string name = nameOf(code);
    if (m_dropped.find(name) == std::string::npos) m_dropped += (m_dropped.empty() ? "" : ", ") + name;
    return;
  }
  const int table = group.kind == GcDbGroupKind::Text ? tableOf(m_type, code) : kNoTable;
  if (table == GcDbDatabase::kDimStyles && group.text.empty()) return;  // dimensions of the time before styles
  if (table == kNoTable || group.text.empty()) {
    m_out.put(group);
  } else {
    const GcText name = m_names.of(table, group.text);
    m_out.putText(code, name);
  }
}

void R12Groups::put(const GcDbGroupList& groups) {
  GcDbGroupList::Cursor cursor(groups);
  for (GcDbGroup group; cursor.next(group);) put(group);
}

void putR12XData(GroupWriter& out, const R12Names& names, const GcDbGroupList& xdata) {
  GcDbGroupList::Cursor cursor(xdata);
  for (GcDbGroup group; cursor.next(group);) {
    const bool isName = group.kind == GcDbGroupKind::Text && (group.code == 1001 || group.code == 1003);
    if (isName) {
      out.putText(group.code,
                  names.of(group.code == 1001 ? GcDbDatabase::kRegApps : GcDbDatabase::kLayers, group.text));
    } else {
      out.put(group);
    }
  }
}

}  // namespace gc::dxf
