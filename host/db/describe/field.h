// The description of a class: one row per field, in the order of files. Reading and writing of groups, the
// memory filer (clone, undo), reference walks, entity lists and transformation defaults are loops over rows.
//
// A row says where the value lives (a member), which group code it has, what it is and when it is written:
//   marker("AcDbLine"),
//   field<&GcDbLine::m_start>(10, "start", Is::WcsPoint),
//   field<&GcDbLine::m_thickness>(39, "thickness", Is::Length, Write::UnlessDefault),
//   each<&GcDbPolyline::m_vertices>(90, "vertices", kVertexFields),      // 90 is the count; -1 for no count group
//   list<&GcDbSpline::m_knots>(-1, 40, "knots", Is::Plain),               // one group per element
//   part<&GcDbMText::m_rare>("rare", kRareFields),                        // at most one
//   count<&GcDbSpline::m_knots>(72, "knotCount"),                         // written from the size, ignored on reading
// Chained on a row:
//   .from(version), .until(version)   only files of these versions have it
//   .when<&Class::method>()           only objects that answer true have it
//   .readAnyway()                     the answer is about writing only
//   .inFilesWhen<&Class::method>()    files have it only then; entity lists have it and it is read in any case
//   .orElse(value), .orAxis(0)        its default where that is not zero, empty or null
//   .also(code)                       read under a second code as well
//   .filedAs(get, set)                   files have it in another form than the member
//   .inPieces(code)                   a long text goes in pieces of 250 under `code`, the last under the row's own
//   .continuedIn(code)                the first piece under the row's own code, all others under `code`
//   .echo()                           repeats what another row has: groups only, no memory copies, no transforming
//   .packed(pack)                     how DWG records have it
#pragma once

#include <cstdint>
#include <type_traits>

#include "cm/color.h"
#include "db/objectid.h"
#include "ge/point.h"
#include "host/db/describe/group.h"
#include "rx/gcarray.h"
#include "rx/gcstring.h"

// What a value means: how transformations, clones and files treat it.
enum class Is : uint8_t {
  Plain,      // a number, flag or text of its own
  WcsPoint,   // a point in world coordinates
  OcsPoint,   // a point in the object's own system (of the row Is::Normal)
  WcsVector,  // a displacement in world coordinates
  OcsVector,
  Direction,    // a unit vector in world coordinates
  Normal,       // the normal of the object's own system
  Length,       // scales with the object
  Angle,        // radians in the object's own plane; degrees in files
  Elevation,    // distance of the object's plane along its normal
  Color,        // palette index (62)
  TrueColor,    // 0xRRGGBB (420) of the same member; only for true colours
  SoftPointer,  // references by handle; the four kinds of ownership and strength
  HardPointer,
  SoftOwner,
  HardOwner,
  LayerName,  // references that files give by the record's name
  LinetypeName,
  TextStyleName,
  DimStyleName,
  BlockName,
  Marker,  // group 100 (101 for an embedded object)
  Count    // number of elements of another row
};

enum class Write : uint8_t {
  Always,
  UnlessDefault,       // left out when it holds its default
  FilesUnlessDefault,  // the same in files; entity lists always have it
  ListsOnly,           // in entity lists; files leave it out
  Never                // read from old files, never written
};

// What the groups are for: files leave out more than entity lists do; what is whole has even what they have elsewhere.
enum class For : uint8_t { File, List, Whole };

// How the value lives in memory.
enum class Kind : uint8_t {
  None,
  Bool,
  Int8,
  UInt8,
  Int16,
  UInt16,
  Int32,
  UInt32,
  Int64,
  Real,
  Point2d,
  Point3d,
  Vector2d,
  Vector3d,
  String,
  Id,
  Color,
  Bytes,
  Groups,
  Records
};

// How DWG records pack it (R2000 names of the format's description); Natural follows from kind and meaning.
enum class Pack : uint8_t { Natural, B, BS, BL, BLL, BD, RC, RS, RL, RD, P2RD, P3BD, P2BD, BT, BE, DD, CMC, TV, Skip };

struct GcDbField;

// How a row reaches the elements of an array member.
struct GcDbRecordOps {
  int (*size)(const void* array);
  void* (*at)(void* array, int index);
  void* (*append)(void* array);
  void (*clear)(void* array);
  void (*reserve)(void* array, int size);
};

struct GcDbField {
  int16_t code = 0;
  Kind kind = Kind::None;
  Is is = Is::Plain;
  Write write = Write::Always;
  Pack pack = Pack::Natural;
  uint8_t since = 0;                    // GcDb::GcDbDwgVersion from which files have it
  uint8_t before = 255;                 // version from which files no longer have it
  const char* name = nullptr;           // for Marker: the subclass
  void* (*at)(void* record) = nullptr;  // the member; null for markers
  double defaultValue = 0;              // numbers; texts and ids default to empty; normals to (0 0 1)
  bool (*present)(const void* record) = nullptr;
  bool (*inFiles)(const void* record) = nullptr;  // files have it only when this answers true
  const GcDbRecordOps* records = nullptr;         // Records: how to reach elements
  const GcDbField* rows = nullptr;                // Records: the rows of one element
  int16_t rowCount = 0;
  int16_t alsoCode = 0;                            // a second code that is read as well; written when `get` says so
  int16_t pieceCode = 0;                           // texts: the code of all pieces but the last (or the first)
  int8_t defaultAxis = -1;                         // vectors: the default is the X (0), Y (1) or Z (2) axis
  GcDbGroup (*get)(const void* record) = nullptr;  // how files have it where the member alone does not say
  bool (*set)(void* record, const GcDbGroup& group) = nullptr;
  bool readsAnyway = false;   // the predicate is about writing only
  bool isPart = false;        // Records: at most one, there when the object has any of its values
  bool inExtra = false;       // lives in the object's rare parts, which memory filers copy whole
  bool piecesFollow = false;  // the first piece has the row's own code
  bool isEcho = false;        // another row has the same value for memory copies and transformations

  // True when memory copies, transformations and walks skip the row.
  [[nodiscard]] bool isGroupsOnly() const { return inExtra || isEcho; }

  [[nodiscard]] const void* value(const void* record) const { return at(const_cast<void*>(record)); }
  [[nodiscard]] bool isIn(int version) const { return version >= since && version < before; }
  [[nodiscard]] bool applies(const void* record) const { return present == nullptr || present(record); }
  // A list that keeps all groups from where it stands to the end of the section, whatever their codes.
  [[nodiscard]] bool takesAnyGroup() const { return kind == Kind::Groups && code < 0; }
  // True when the group's code begins an element of this array.
  [[nodiscard]] bool opensWith(int16_t groupCode) const {
    if (kind != Kind::Records || rows == nullptr) return false;
    if (!isPart) return rows[0].code == groupCode;
    for (int i = 0; i < rowCount; ++i)
      if (rows[i].code == groupCode || rows[i].opensWith(groupCode)) return true;
    return false;
  }
  [[nodiscard]] bool isDefault(const void* record) const;

  constexpr GcDbField from(int version) const {
    GcDbField row = *this;
    row.since = static_cast<uint8_t>(version);
    return row;
  }
  constexpr GcDbField until(int version) const {
    GcDbField row = *this;
    row.before = static_cast<uint8_t>(version);
    return row;
  }
  // `Method` is a const member function without arguments of the record's class (or a base that comes first).
  template <auto Method>
  constexpr GcDbField when() const;
  constexpr GcDbField when(bool (*predicate)(const void*)) const {
    GcDbField row = *this;
    row.present = predicate;
    return row;
  }
  template <auto Method>
  constexpr GcDbField inFilesWhen() const;
  constexpr GcDbField readAnyway() const {
    GcDbField row = *this;
    row.readsAnyway = true;
    return row;
  }
  constexpr GcDbField orElse(double value) const {
    GcDbField row = *this;
    row.defaultValue = value;
    return row;
  }
  constexpr GcDbField orAxis(int axis) const {
    GcDbField row = *this;
    row.defaultAxis = static_cast<int8_t>(axis);
    return row;
  }
  constexpr GcDbField also(int second) const {
    GcDbField row = *this;
    row.alsoCode = static_cast<int16_t>(second);
    return row;
  }
  constexpr GcDbField filedAs(GcDbGroup (*getter)(const void*), bool (*setter)(void*, const GcDbGroup&)) const {
    GcDbField row = *this;
    row.get = getter;
    row.set = setter;
    return row;
  }
  constexpr GcDbField inPieces(int piece) const {
    GcDbField row = *this;
    row.pieceCode = static_cast<int16_t>(piece);
    return row;
  }
  constexpr GcDbField continuedIn(int piece) const {
    GcDbField row = inPieces(piece);
    row.piecesFollow = true;
    return row;
  }
  constexpr GcDbField echo() const {
    GcDbField row = *this;
    row.isEcho = true;
    return row;
  }
  constexpr GcDbField packed(Pack p) const {
    GcDbField row = *this;
    row.pack = p;
    return row;
  }
};

namespace gcdescribe {

template <class M>
constexpr Kind kindOf() {
  if constexpr (std::is_enum_v<M>)
    return kindOf<std::underlying_type_t<M>>();
  else if constexpr (std::is_same_v<M, bool>)
    return Kind::Bool;
  else if constexpr (std::is_same_v<M, int8_t>)
    return Kind::Int8;
  else if constexpr (std::is_same_v<M, uint8_t>)
    return Kind::UInt8;
  else if constexpr (std::is_same_v<M, int16_t>)
    return Kind::Int16;
  else if constexpr (std::is_same_v<M, uint16_t>)
    return Kind::UInt16;
  else if constexpr (std::is_same_v<M, int32_t>)
    return Kind::Int32;
  else if constexpr (std::is_same_v<M, uint32_t>)
    return Kind::UInt32;
  else if constexpr (std::is_same_v<M, int64_t>)
    return Kind::Int64;
  else if constexpr (std::is_same_v<M, double>)
    return Kind::Real;
  else if constexpr (std::is_same_v<M, GcGePoint2d>)
    return Kind::Point2d;
  else if constexpr (std::is_same_v<M, GcGePoint3d>)
    return Kind::Point3d;
  else if constexpr (std::is_same_v<M, GcGeVector2d>)
    return Kind::Vector2d;
  else if constexpr (std::is_same_v<M, GcGeVector3d>)
    return Kind::Vector3d;
  else if constexpr (std::is_same_v<M, GcGeScale3d>)
    return Kind::Vector3d;
  else if constexpr (std::is_same_v<M, GcString>)
    return Kind::String;
  else if constexpr (std::is_same_v<M, GcDbObjectId>)
    return Kind::Id;
  else if constexpr (std::is_same_v<M, GcCmEntityColor>)
    return Kind::Color;
  else if constexpr (std::is_same_v<M, GcArray<uint8_t>>)
    return Kind::Bytes;
  else if constexpr (std::is_same_v<M, GcDbGroupList>)
    return Kind::Groups;
  else
    return Kind::None;
}

template <class T>
struct MemberOf;
template <class C, class M>
struct MemberOf<M C::*> {
  using Class = C;
  using Member = M;
};

template <class M>
struct ClassOfMethod;
template <class C>
struct ClassOfMethod<bool (C::*)() const> {
  using Class = C;
};

template <auto Method>
bool answersTrue(const void* record) {
  using Class = typename ClassOfMethod<decltype(Method)>::Class;
  return (static_cast<const Class*>(record)->*Method)();
}

template <auto Pointer>
void* memberAt(void* record) {
  using Class = typename MemberOf<decltype(Pointer)>::Class;
  return &(static_cast<Class*>(record)->*Pointer);
}

inline void* selfAt(void* record) { return record; }

template <class T>
struct ArrayOps {
  static int size(const void* array) { return static_cast<const GcArray<T>*>(array)->length(); }
  static void* at(void* array, int index) { return &(*static_cast<GcArray<T>*>(array))[index]; }
  static void* append(void* array) {
    auto& items = *static_cast<GcArray<T>*>(array);
    return &items[items.append(T())];
  }
  static void clear(void* array) { static_cast<GcArray<T>*>(array)->clear(); }
  static void reserve(void* array, int size) { static_cast<GcArray<T>*>(array)->reserve(size); }
  static constexpr GcDbRecordOps kOps{size, at, append, clear, reserve};
};

template <class A>
struct ElementOf;
template <class T>
struct ElementOf<GcArray<T>> {
  using Type = T;
};
template <auto Pointer>
using ElementAt = typename ElementOf<typename MemberOf<decltype(Pointer)>::Member>::Type;

// The rows that describe an element which is a bare value: one row, kept per (type, code, meaning).
template <class T, int Code, Is Meaning>
struct BareRow {
  static constexpr GcDbField make() {
    GcDbField row;
    row.code = Code;
    row.kind = kindOf<T>();
    row.is = Meaning;
    row.name = "value";
    row.at = selfAt;
    return row;
  }
  static constexpr GcDbField kRow[1] = {make()};
};

}  // namespace gcdescribe

template <auto Method>
constexpr GcDbField GcDbField::inFilesWhen() const {
  GcDbField row = *this;
  row.inFiles = gcdescribe::answersTrue<Method>;
  return row;
}

template <auto Method>
constexpr GcDbField GcDbField::when() const {
  return when(gcdescribe::answersTrue<Method>);
}

constexpr GcDbField marker(const char* subclass) {
  GcDbField row;
  row.code = 100;
  row.is = Is::Marker;
  row.name = subclass;
  return row;
}

// Begins the part of an entity that repeats another one's groups inside it (group 101).
constexpr GcDbField embedded(const char* name) {
  GcDbField row = marker(name);
  row.code = 101;
  return row;
}

// A group that files always have with the same integer; what is read there is dropped.
template <int Code, int Value>
constexpr GcDbField fixed(const char* name) {
  GcDbField row;
  row.code = Code;
  row.name = name;
  row.isEcho = true;
  row.readsAnyway = true;
  row.at = gcdescribe::selfAt;
  row.get = [](const void*) { return GcDbGroup::ofInt(Code, Value); };
  row.set = [](void*, const GcDbGroup&) { return true; };
  return row;
}

// The member pointer may belong to a base of the described class as long as the base comes first in memory
// (single inheritance), which holds for every database class.
template <auto Pointer>
constexpr GcDbField field(int code, const char* name, Is is, Write write = Write::Always) {
  using Member = typename gcdescribe::MemberOf<decltype(Pointer)>::Member;
  static_assert(gcdescribe::kindOf<Member>() != Kind::None, "a member of a kind that rows do not know");
  GcDbField row;
  row.code = static_cast<int16_t>(code);
  row.kind = gcdescribe::kindOf<Member>();
  row.is = is;
  row.write = write;
  row.name = name;
  row.at = gcdescribe::memberAt<Pointer>;
  return row;
}

// Records: an array of structures; countCode -1 when files give no count group.
template <auto Pointer, int N>
constexpr GcDbField each(int countCode, const char* name, const GcDbField (&rows)[N]) {
  GcDbField row;
  row.code = static_cast<int16_t>(countCode);
  row.kind = Kind::Records;
  row.name = name;
  row.at = gcdescribe::memberAt<Pointer>;
  row.records = &gcdescribe::ArrayOps<gcdescribe::ElementAt<Pointer>>::kOps;
  row.rows = rows;
  row.rowCount = N;
  return row;
}

// A part that few objects have, kept as an array of at most one structure. Any of its groups brings it about.
template <auto Pointer, int N>
constexpr GcDbField part(const char* name, const GcDbField (&rows)[N]) {
  GcDbField row = each<Pointer>(-1, name, rows);
  row.isPart = true;
  return row;
}

// An array of bare values, one group each.
template <auto Pointer, int Code, Is Meaning = Is::Plain>
constexpr GcDbField list(int countCode, const char* name) {
  return each<Pointer>(countCode, name, gcdescribe::BareRow<gcdescribe::ElementAt<Pointer>, Code, Meaning>::kRow);
}

// A count group that stands apart from the elements it counts.
template <auto Pointer>
constexpr GcDbField count(int code, const char* name) {
  GcDbField row;
  row.code = static_cast<int16_t>(code);
  row.kind = Kind::Records;
  row.is = Is::Count;
  row.name = name;
  row.at = gcdescribe::memberAt<Pointer>;
  row.records = &gcdescribe::ArrayOps<gcdescribe::ElementAt<Pointer>>::kOps;
  return row;
}
