// Materials. Records have every value; group files leave out those that are as usual.
#include <map>

#include "host/db/objects/material.h"
#include "host/dwg/record/pass.h"

namespace {

constexpr int kMatrixSize = 16;

// Group codes of one map: what it shows over the colour, and how it lies on faces.
struct MapCodes {
  int blend, source, file, projection, tiling, transform, matrix;
};

constexpr MapCodes kDiffuse{42, 72, 3, 73, 74, 75, 43};
constexpr MapCodes kSpecular{46, 77, 4, 78, 79, 170, 47};
constexpr MapCodes kReflection{48, 171, 6, 172, 173, 174, 49};
constexpr MapCodes kOpacity{141, 175, 7, 176, 177, 178, 142};
constexpr MapCodes kBump{143, 179, 8, 270, 271, 272, 144};
constexpr MapCodes kRefraction{146, 273, 9, 274, 275, 276, 147};

// The values by their codes. A code that comes again in a file counts once.
class Values {
 public:
  explicit Values(const GcDbGroupList& groups) {
    GcDbGroupList::Cursor cursor(groups);
    for (GcDbGroup group; cursor.next(group);) {
      const int code = group.code;
      if (group.kind == GcDbGroupKind::Text)
        texts.try_emplace(code, toGcString(group.text));
      else if (!isMatrix(code))
        numbers.try_emplace(code, group.asReal());
      else if (matrices[code].length() < kMatrixSize)
        matrices[code].append(group.asReal());
    }
  }

  static bool isMatrix(int code) {
    for (const MapCodes* map : {&kDiffuse, &kSpecular, &kReflection, &kOpacity, &kBump, &kRefraction})
      if (map->matrix == code) return true;
    return false;
  }

  std::map<int, double> numbers;
  std::map<int, GcString> texts;
  std::map<int, GcArray<double>> matrices;
};

bool isIdentity(const GcArray<double>& matrix) {
  for (int i = 0; i < matrix.length(); ++i)
    if (matrix[i] != (i % 5 == 0 ? 1 : 0)) return false;
  return true;
}

// Values that were read, in the order of group files.
class Groups {
 public:
  Groups(Values& values, GcDbGroupList& out) : m_values(values), m_out(out) {}

  void number(int code, double usual) {
    const double value = m_values.numbers[code];
    const GcDbGroupKind kind = gcdbKindOfCode(code);
    if (value == usual) return;
    m_out.put(kind == GcDbGroupKind::Real ? GcDbGroup::ofReal(code, value)
                                          : GcDbGroup::ofInt(code, static_cast<int64_t>(value)));
  }
  void text(int code) {
    if (!m_values.texts[code].isEmpty()) m_out.put(GcDbGroup::ofText(code, view(m_values.texts[code])));
  }
  void color(int flag, int factor, int rgb) {
    number(flag, 0);
    number(factor, 1);
    if (m_values.numbers[flag] == 1) number(rgb, kNever);
  }
  void map(const MapCodes& map) {
    number(map.blend, 1);
    number(map.source, 1);
    text(map.file);
    number(map.projection, 1);
    number(map.tiling, 1);
    number(map.transform, 1);
    const GcArray<double>& matrix = m_values.matrices[map.matrix];
    if (isIdentity(matrix)) return;
    for (const double entry : matrix) m_out.put(GcDbGroup::ofReal(map.matrix, entry));
  }

 private:
  static constexpr double kNever = 1e300;
  Values& m_values;
  GcDbGroupList& m_out;
};

}  // namespace

template <>
struct GcDbRecordOf<GcDbMaterial> {
  template <class Pass>
  static void pass(Pass& pass, GcDbMaterial& material) {
    Values values(material.m_data);
    pass.t(material.m_name);
    pass.t(values.texts[2]);
    color(pass, values, 70, 40, 90);
    color(pass, values, 71, 41, 91);
    map(pass, values, kDiffuse);
    color(pass, values, 76, 45, 92);
    map(pass, values, kSpecular);
    pass.bd(number(values, 44, 0.5));
    map(pass, values, kReflection);
    pass.bd(number(values, 140, 1));
    map(pass, values, kOpacity);
    map(pass, values, kBump);
    pass.bd(number(values, 145, 1));
    map(pass, values, kRefraction);
    if (pass.version() >= gc::dwg::kR2007) {
      for (const int code : {148, 149, 468}) pass.bd(number(values, code, 0));
      for (const int code : {93, 94, 282}) pass.bl(number(values, code, 0));
    }
    if constexpr (!Pass::kWriting) keep(values, pass.version() >= gc::dwg::kR2007, material.m_data);
  }

  // What makes a procedural map is not described.
  static bool isWhole(const GcDbMaterial& material, int) {
    Values values(material.m_data);
    for (const MapCodes* map : {&kDiffuse, &kSpecular, &kReflection, &kOpacity, &kBump, &kRefraction})
      if (GcDbRecordOf::number(values, map->source, 1) == kProcedural) return false;
    return true;
  }

 private:
  static constexpr int kProcedural = 2;

  static double& number(Values& values, int code, double usual) {
    return values.numbers.try_emplace(code, usual).first->second;
  }

  template <class Pass>
  static void color(Pass& pass, Values& values, int flag, int factor, int rgb) {
    pass.rc(number(values, flag, 0));
    pass.bd(number(values, factor, 1));
    if (number(values, flag, 0) == 1) pass.bl(number(values, rgb, 0));
  }

  template <class Pass>
  static void map(Pass& pass, Values& values, const MapCodes& map) {
    constexpr int kFile = 1;
    pass.bd(number(values, map.blend, 1));
    for (const int code : {map.projection, map.tiling, map.transform}) pass.rc(number(values, code, 1));
    GcArray<double>& matrix = values.matrices[map.matrix];
    for (int i = matrix.length(); i < kMatrixSize; ++i) matrix.append(i % 5 == 0 ? 1.0 : 0.0);
    for (double& entry : matrix) pass.bd(entry);
    double& source = number(values, map.source, kFile);
    pass.rc(source);
    pass.must(source != kProcedural);
    if (source == kFile) pass.t(values.texts[map.file]);
  }

  static void keep(Values& values, bool isNew, GcDbGroupList& out) {
    out.clear();
    Groups groups(values, out);
    groups.text(2);
    groups.color(70, 40, 90);
    groups.color(71, 41, 91);
    groups.map(kDiffuse);
    groups.number(44, 0.5);
    groups.color(76, 45, 92);
    groups.map(kSpecular);
    groups.map(kReflection);
    groups.number(140, 1);
    groups.map(kOpacity);
    groups.map(kBump);
    groups.number(145, 1);
    groups.map(kRefraction);
    if (!isNew) return;
    for (const int code : {148, 149, 468, 93, 94, 282}) groups.number(code, 0);
  }
};

namespace gc::dwg::packing {

void addMaterials(std::vector<ClassPacking>& list) { list.push_back(Passed<GcDbMaterial>::named("AcDbMaterial")); }

}  // namespace gc::dwg::packing
