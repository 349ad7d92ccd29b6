#include "tools/dxfdiff/compare.h"

#include <algorithm>
#include <iterator>

#include "host/dxf/angles.h"
#include "host/rx/text/number.h"
#include "tools/dxfdiff/drawing.h"

namespace gc::dxfdiff {
namespace {

using dxf::Tag;
using dxf::ValueKind;

struct Value {
  int code;
  std::string text;  // the value in one spelling
  friend bool operator==(const Value&, const Value&) = default;
  friend auto operator<=>(const Value&, const Value&) = default;
};

// Codes of names of records, which do not depend on letter case.
bool isNameCode(int code) { return code == 2 || code == 6 || code == 7 || code == 8; }

struct Default {
  const char* type;  // null: every entity
  Value value;
};

// What readers take when a group is not there. Source: the published DXF reference.
const Default kDefaults[] = {
    {nullptr, {6, "BYLAYER"}},  {nullptr, {39, "0.0"}},     {nullptr, {48, "1.0"}},
    {nullptr, {60, "0"}},       {nullptr, {62, "256"}},     {nullptr, {67, "0"}},
    {nullptr, {210, "0.0"}},    {nullptr, {220, "0.0"}},    {nullptr, {230, "1.0"}},
    {nullptr, {370, "-1"}},     {"DICTIONARY", {280, "0"}}, {"ACDBDICTIONARYWDFLT", {280, "0"}},
    {"MTEXT", {7, "STANDARD"}}, {"MTEXT", {50, "0.0"}},     {"TEXT", {7, "STANDARD"}},
    {"TEXT", {41, "1.0"}},      {"TEXT", {50, "0.0"}},      {"TEXT", {51, "0.0"}},
    {"TEXT", {71, "0"}},        {"TEXT", {72, "0"}},        {"TEXT", {73, "0"}},
    {"DIMENSION", {53, "0.0"}}, {"DIMENSION", {1, ""}},
};

bool isImplied(const Record& record, const Value& value) {
  const bool isEntity = record.place.starts_with("ENTITIES") || record.place.starts_with("BLOCKS");
  for (const Default& row : kDefaults) {
    if (row.value == value && (row.type ? record.type == row.type : isEntity)) return true;
  }
  return false;
}

bool isDerived(const Record& record, int code) {
  return (record.type == "TABLE" && code == 70) || (record.type == "CLASS" && code == 91);
}

std::string spelling(const Record& record, const Tag& tag, const DrawingText& codec) {
  double real = 0.0;
  std::int64_t whole = 0;
  std::uint64_t handle = 0;
  std::string bytes;
  switch (tag.kind) {
    case ValueKind::Real:
      if (!tag.real(real)) break;
      if (dxf::isAngleCode(tag.code)) real = dxf::degreesOf(dxf::radiansOf(real));  // as after a time as radians
      return realText(real == 0.0 ? 0.0 : real);
      break;
    case ValueKind::Handle:
      if (tag.handle(handle)) return hexText(handle);
      break;
    case ValueKind::Binary:
      if (tag.bytes(bytes)) {
        std::string digits;
        for (const char byte : bytes) {
          const auto value = static_cast<unsigned char>(byte);
          digits += "0123456789ABCDEF"[value >> 4];
          digits += "0123456789ABCDEF"[value & 15];
        }
        return digits;
      }
      break;
    case ValueKind::String: {
      GcText text;
      codec.decode(tag.text(), text);
      return toUtf8(isNameCode(tag.code) || record.place == "HEADER $DWGCODEPAGE" ? upperText(text) : text);
    }
    default:
      if (tag.integer(whole)) return std::to_string(whole);
  }
  return std::string(tag.word());
}

std::vector<Value> valuesOf(const Record& record, const DrawingText& codec) {
  std::vector<Value> values;
  bool joins = false;  // the value before is binary data of the same code
  for (const Tag& tag : record.tags) {
    if (isDerived(record, tag.code)) continue;
    Value value{tag.code, spelling(record, tag, codec)};
    joins = joins && tag.kind == ValueKind::Binary && values.back().code == tag.code;
    if (joins) {
      values.back().text += value.text;
    } else {
      values.push_back(std::move(value));
    }
    joins = tag.kind == ValueKind::Binary;
  }
  return values;
}

std::string shortened(const std::string& text) {
  constexpr std::size_t kMost = 60;
  return text.size() <= kMost ? text : text.substr(0, kMost) + "...";
}

std::string placeOf(const Record& record) {
  std::string place = record.place;
  if (!record.type.empty()) place += ' ' + record.type;
  place += record.handle         ? ' ' + hexText(record.handle)
           : record.type.empty() ? ""
                                 : " #" + std::to_string(record.ordinal);
  return place;
}

class Comparison {
 public:
  Comparison(const Drawing& first, const Drawing& second, const Options& options)
      : m_first(first), m_second(second), m_options(options) {}

  std::vector<Difference> run() {
    for (const Record& record : m_first.records()) {
      if (isIgnored(record)) continue;
      const Record* match = m_second.match(record);
      if (!match) {
        m_found.push_back({What::Lost, placeOf(record), ""});
      } else {
        compareRecords(record, *match);
      }
    }
    for (const Record& record : m_second.records()) {
      if (!isIgnored(record) && !m_first.match(record)) m_found.push_back({What::Added, placeOf(record), ""});
    }
    for (const Drawing* drawing : {&m_first, &m_second}) {
      if (!drawing->damage().empty()) m_found.push_back({What::Lost, drawing->damage(), "the file is damaged here"});
    }
    return std::move(m_found);
  }

 private:
  bool isIgnored(const Record& record) const {
    if (record.type == "SECTION" || record.type == "ENDSEC" || record.type == "ENDTAB" || record.type == "EOF")
      return true;
    if (!record.type.empty()) return false;
    const auto& names = m_options.ignoredVariables;
    return std::any_of(names.begin(), names.end(), [&](const auto& name) { return record.place == "HEADER " + name; });
  }

  void compareRecords(const Record& first, const Record& second) {
    if (first.type != second.type) {
      m_found.push_back({What::Changed, placeOf(first), "became " + second.type});
      return;
    }
    std::vector<Value> a = valuesOf(first, m_first.text()), b = valuesOf(second, m_second.text());
    if (a == b) return;
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    std::vector<Value> lost, added;
    std::set_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(lost));
    std::set_difference(b.begin(), b.end(), a.begin(), a.end(), std::back_inserter(added));
    if (lost.empty() && added.empty()) m_found.push_back({What::Moved, placeOf(first), ""});
    report(first, lost, added);
  }

  // A value lost and one added under the same code are one change.
  void report(const Record& record, const std::vector<Value>& lost, std::vector<Value>& added) {
    const std::string where = placeOf(record);
    for (const Value& value : lost) {
      const std::string code = std::to_string(value.code) + ": ";
      const auto instead =
          std::find_if(added.begin(), added.end(), [&](const Value& v) { return v.code == value.code; });
      if (instead == added.end()) {
        m_found.push_back({isImplied(record, value) ? What::Implied : What::Lost, where, code + shortened(value.text)});
      } else {
        m_found.push_back({What::Changed, where, code + shortened(value.text) + " -> " + shortened(instead->text)});
        added.erase(instead);
      }
    }
    for (const Value& value : added) {
      m_found.push_back({What::Added, where, std::to_string(value.code) + ": " + shortened(value.text)});
    }
  }

  const Drawing& m_first;
  const Drawing& m_second;
  const Options& m_options;
  std::vector<Difference> m_found;
};

}  // namespace

std::string describe(const Difference& difference) {
  constexpr const char* kNames[] = {"lost", "changed", "added", "moved", "implied"};
  std::string line = std::string(kNames[static_cast<int>(difference.what)]) + '\t' + difference.where;
  if (!difference.detail.empty()) line += '\t' + difference.detail;
  return line;
}

std::vector<Difference> compare(std::string_view first, std::string_view second, const Options& options) {
  const Drawing a(first), b(second);
  return Comparison(a, b, options).run();
}

bool hasLosses(const std::vector<Difference>& differences) {
  return std::any_of(differences.begin(), differences.end(),
                     [](const Difference& d) { return d.what == What::Lost || d.what == What::Changed; });
}

}  // namespace gc::dxfdiff
