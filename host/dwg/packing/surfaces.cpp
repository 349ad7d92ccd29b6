// Surfaces: a body, the lines drawn on it, and what it was made by. The values of the kinds are kept as groups, in the
// order of DXF; records have them in another.
//
//   body │ BS u lines │ BS v lines │ by kind:
//     extruded  sweep │ 3BD way │ matrix │ profile
//     swept     sweep │ matrix of the profile │ matrix of the path │ profile │ path
//     revolved  BD draft angle, its start, its end, twist │ B solid │ B to the axis │ 3BD, 3BD axis │ BD angle │
//               BD start │ matrix │ profile
//     lofted    matrix │ BL profiles │ BL guides │ B path │ BD draft angles and sizes, each at start and end │ 8 B │
//               BL kind of normals │ profiles …
//   sweep       BD draft angle, its start, its end, twist, scale, turn │ B solid │ BS alignment │ BS │ B aligned start │
//               B bank │ B base point │ 3BD twist's direction │ B, B matrices were made │ matrix │ matrix
//   profile     BL type of its record │ BL how many bits │ the bits of its fields
// Source: records of R2004 beside the DXF of the same drawing. A loft with guides or a path was not among them.
#include <algorithm>
#include <vector>

#include "host/dwg/packing/modelerpass.h"
#include "host/dwg/record/grouppass.h"

namespace gc::dwg::packing {

namespace {

// How many groups of a code follow in a file; none: all that follow each other.
struct Run {
  int16_t code;
  int16_t count = 1;
};

// Values of a record by the codes of their groups, in the record's order. Writing finds them wherever they stand.
template <class Pass>
class Values {
 public:
  Values(Pass& pass, const GcDbGroupList& groups) : m_pass(pass) {
    GcDbGroupList::Cursor cursor(groups);
    if constexpr (Pass::kWriting)
      for (GcDbGroup group; cursor.next(group);) m_groups.push_back({group, false});
  }

  int32_t bl(int code) {
    return integer(code, [&](int32_t& value) { m_pass.bl(value); });
  }
  int32_t bs(int code) {
    return integer(code, [&](int32_t& value) { m_pass.bs(value); });
  }
  int32_t b(int code) {
    return integer(code, [&](int32_t& value) { m_pass.b(value); });
  }
  void bd(int code) {
    double value = Pass::kWriting ? next(code, GcDbGroupKind::Real).real : 0;
    m_pass.bd(value);
    m_made.put(GcDbGroup::ofReal(code, value));
  }
  void matrix(int code) {
    constexpr int kElements = 16;
    for (int i = 0; i < kElements; ++i) bd(code);
  }
  void bd3(int code) {
    GcGePoint3d value;
    if constexpr (Pass::kWriting) value = next(code, GcDbGroupKind::Point3d).point;
    m_pass.bd3(value);
    m_made.put(GcDbGroup::ofPoint(code, value));
  }
  // The fields of another record.
  void profile(int typeCode) {
    constexpr int kBits = 90, kData = 310;
    bl(typeCode);
    const int32_t count = bl(kBits);
    if constexpr (Pass::kWriting) {
      putBits(joined(kData, (static_cast<size_t>(std::max(count, 0)) + 7) / 8), count);
    } else {
      const GcArray<uint8_t> bytes = takeBits(m_pass.io().rec.count(count));
      constexpr int kChunk = 127;
      for (int at = 0; at < bytes.length(); at += kChunk)
        m_made.put(GcDbGroup::ofBinary(
            kData, {bytes.begin() + at, static_cast<size_t>(std::min(kChunk, bytes.length() - at))}));
    }
  }

  [[nodiscard]] int count(int code) const {
    int count = 0;
    for (const Each& each : m_groups) count += each.group.code == code ? 1 : 0;
    return count;
  }
  // All groups were taken: there is nothing a record does not say.
  [[nodiscard]] bool isDone() const {
    for (const Each& each : m_groups)
      if (!each.isTaken) return false;
    return m_fits;
  }
  // What was read, in the order of files.
  [[nodiscard]] GcDbGroupList inFileOrder(std::span<const Run> order) const {
    std::vector<Each> made;
    GcDbGroupList::Cursor cursor(m_made);
    for (GcDbGroup group; cursor.next(group);) made.push_back({group, false});
    GcDbGroupList list;
    for (const Run& run : order) {
      int left = run.count;
      bool isRunning = false;
      for (Each& each : made) {
        const bool fits = !each.isTaken && each.group.code == run.code && (run.count == 0 || left > 0);
        if (isRunning && !fits) break;
        if (!fits) continue;
        isRunning = each.isTaken = true;
        --left;
        list.put(each.group);
      }
    }
    return list;
  }

 private:
  struct Each {
    GcDbGroup group;
    bool isTaken;
  };

  GcDbGroup next(int code, GcDbGroupKind kind) {
    for (Each& each : m_groups) {
      if (each.isTaken || each.group.code != code || each.group.kind != kind) continue;
      each.isTaken = true;
      return each.group;
    }
    m_fits = false;
    return {};
  }

  template <class F>
  int32_t integer(int code, const F& pass) {
    int32_t value = 0;
    if constexpr (Pass::kWriting) value = static_cast<int32_t>(next(code, gcdbKindOfCode(code)).integer);
    pass(value);
    m_made.put(GcDbGroup::ofInt(code, value));
    return value;
  }

  // The bytes of groups that belong together.
  std::vector<uint8_t> joined(int code, size_t size) {
    std::vector<uint8_t> bytes;
    while (bytes.size() < size && m_fits) {
      const GcDbGroup group = next(code, GcDbGroupKind::Binary);
      bytes.insert(bytes.end(), group.bytes.begin(), group.bytes.end());
    }
    m_fits = m_fits && bytes.size() == size;
    return bytes;
  }

  void putBits(const std::vector<uint8_t>& bytes, int32_t count) {
    if constexpr (requires { m_pass.io().rec.data; })
      for (int32_t i = 0; i < count; ++i)
        m_pass.io().rec.data.b((bytes[static_cast<size_t>(i / 8)] << i % 8 & 128) != 0);
  }

  GcArray<uint8_t> takeBits(int32_t count) {
    GcArray<uint8_t> bytes;
    for (int32_t i = 0; i < count; ++i) {
      if (i % 8 == 0) bytes.append(0);
      if (m_pass.io().rec.data.b()) bytes[i / 8] |= static_cast<uint8_t>(128 >> i % 8);
    }
    return bytes;
  }

  Pass& m_pass;
  std::vector<Each> m_groups;
  GcDbGroupList m_made;
  bool m_fits = true;
};

template <class Pass>
void passSweep(Values<Pass>& values) {
  for (const int code : {42, 43, 44, 45, 48, 49}) values.bd(code);
  values.b(290);
  values.bs(70);
  values.bs(71);
  for (const int code : {292, 293, 294}) values.b(code);
  values.bd3(11);
  for (const int code : {295, 296}) values.b(code);
  for (const int code : {46, 47}) values.matrix(code);
}

struct Extruded {
  static constexpr Run kOrder[] = {{90, 2}, {310, 0}, {10},  {40, 16}, {42},     {43},  {44},
                                   {45},    {48},     {49},  {46, 16}, {47, 16}, {290}, {70},
                                   {71},    {292},    {293}, {294},    {295},    {296}, {11}};
  template <class Pass>
  static void pass(Pass&, Values<Pass>& values) {
    passSweep(values);
    values.bd3(10);
    values.matrix(40);
    values.profile(90);
  }
};

struct Swept {
  static constexpr Run kOrder[] = {{90, 2}, {310, 0}, {91},  {90},  {310, 0}, {40, 16}, {41, 16}, {42},
                                   {43},    {44},     {45},  {48},  {49},     {46, 16}, {47, 16}, {290},
                                   {70},    {71},     {292}, {293}, {294},    {295},    {296},    {11}};
  template <class Pass>
  static void pass(Pass&, Values<Pass>& values) {
    passSweep(values);
    values.matrix(40);
    values.matrix(41);
    values.profile(90);
    values.profile(91);
  }
};

struct Revolved {
  static constexpr Run kOrder[] = {{90, 2}, {310, 0}, {10}, {11}, {40},  {41}, {42, 16},
                                   {43},    {44},     {45}, {46}, {290}, {291}};
  template <class Pass>
  static void pass(Pass&, Values<Pass>& values) {
    for (const int code : {43, 44, 45, 46}) values.bd(code);
    for (const int code : {290, 291}) values.b(code);
    values.bd3(10);
    values.bd3(11);
    for (const int code : {40, 41}) values.bd(code);
    values.matrix(42);
    values.profile(90);
  }
};

// Only lofts between two profiles, which cannot be anything else.
struct Lofted {
  static constexpr int kProfiles = 2;
  static constexpr Run kOrder[] = {{40, 16}, {90, 2}, {310, 0}, {90, 2}, {310, 0}, {70},  {41},  {42},  {43},
                                   {44},     {290},   {291},    {292},   {293},    {294}, {295}, {296}, {297}};
  template <class Pass>
  static void pass(Pass& pass, Values<Pass>& values) {
    int32_t profiles = kProfiles, guides = 0;
    bool hasPath = false;
    values.matrix(40);
    pass.bl(profiles);
    pass.bl(guides);
    pass.b(hasPath);
    pass.must(profiles == kProfiles && guides == 0 && !hasPath);
    for (const int code : {41, 42, 43, 44}) values.bd(code);
    for (int code = 290; code <= 297; ++code) values.b(code);
    pass.must(values.bl(70) == 0);
    for (int i = 0; i < kProfiles; ++i) values.profile(90);
  }
};

struct Plane {
  static constexpr Run kOrder[] = {{0, 0}};
  template <class Pass>
  static void pass(Pass&, Values<Pass>&) {}
};

struct Lines {
  static constexpr Run kOrder[] = {{71}, {72}};
  template <class Pass>
  static void pass(Pass&, Values<Pass>& values) {
    values.bs(71);
    values.bs(72);
  }
};

template <class Kind, class Pass>
void passGroups(Pass& pass, GcDbGroupList& groups) {
  Values<Pass> values(pass, groups);
  Kind::pass(pass, values);
  if constexpr (!Pass::kWriting) groups = values.inFileOrder(Kind::kOrder);
}

// Whether the groups are those of a record.
template <class Kind>
bool fitsGroups(const GcDbGroupList& groups, int version) {
  DryIo io{DryRecord(version)};
  Pass<DryIo> pass(io);
  Values<Pass<DryIo>> values(pass, groups);
  Kind::pass(pass, values);
  return values.isDone();
}

}  // namespace

// Names what the class of a surface has of its own.
template <class Kind>
struct SurfaceRecord {
  template <class Pass, class Surface>
  static void pass(Pass& pass, Surface& surface, GcDbGroupList& lines, GcDbGroupList& shape) {
    passBody(pass, GcDbModelerParts::of(surface));
    passGroups<Lines>(pass, lines);
    passGroups<Kind>(pass, shape);
  }
  // Bodies stand apart since R2013; where a second one would go then is not known.
  static bool isWhole(bool hasSecond, const GcDbGroupList& lines, const GcDbGroupList& shape, int version) {
    return version >= kR2000 && !(hasSecond && version >= kR2013) && fitsGroups<Lines>(lines, version) &&
           fitsGroups<Kind>(shape, version);
  }
};

}  // namespace gc::dwg::packing

#define GC_SURFACE_RECORD(Class, Kind)                                                                  \
  template <>                                                                                           \
  struct GcDbRecordOf<Class> {                                                                          \
    using Record = gc::dwg::packing::SurfaceRecord<gc::dwg::packing::Kind>;                             \
    template <class Pass>                                                                               \
    static void pass(Pass& pass, Class& surface) {                                                      \
      Record::pass(pass, surface, surface.m_surfaceData, surface.m_shapeData);                          \
    }                                                                                                   \
    static bool isWhole(const Class& surface, int version) {                                            \
      return Record::isWhole(surface.hasSecond(), surface.m_surfaceData, surface.m_shapeData, version); \
    }                                                                                                   \
  }
GC_SURFACE_RECORD(GcDbSurface, Plane);
GC_SURFACE_RECORD(GcDbPlaneSurface, Plane);
GC_SURFACE_RECORD(GcDbExtrudedSurface, Extruded);
GC_SURFACE_RECORD(GcDbRevolvedSurface, Revolved);
GC_SURFACE_RECORD(GcDbSweptSurface, Swept);
GC_SURFACE_RECORD(GcDbLoftedSurface, Lofted);
#undef GC_SURFACE_RECORD

namespace gc::dwg::packing {

void addSurfaces(std::vector<ClassPacking>& list) {
  list.push_back(Passed<GcDbSurface>::named("AcDbSurface"));
  list.push_back(Passed<GcDbPlaneSurface>::named("AcDbPlaneSurface"));
  list.push_back(Passed<GcDbExtrudedSurface>::named("AcDbExtrudedSurface"));
  list.push_back(Passed<GcDbRevolvedSurface>::named("AcDbRevolvedSurface"));
  list.push_back(Passed<GcDbSweptSurface>::named("AcDbSweptSurface"));
  list.push_back(Passed<GcDbLoftedSurface>::named("AcDbLoftedSurface"));
}

}  // namespace gc::dwg::packing
