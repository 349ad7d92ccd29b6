// One group (code and value) as it passes between objects and the sources and sinks of groups: DXF files,
// entity lists of LISP, extended data, extension records. Points come whole; angles are in radians.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>

#include "db/objectid.h"
#include "ge/point.h"
#include "host/rx/view.h"

enum class GcDbGroupKind : uint8_t { Text, Real, Point2d, Point3d, Bool, Int16, Int32, Int64, Id, Binary, Handle };

struct GcDbGroup {
  int16_t code = 0;
  GcDbGroupKind kind = GcDbGroupKind::Text;
  bool isAngle = false;            // a real that files keep in degrees
  GcGePoint3d point;               // Point2d, Point3d (z is 0 for 2d)
  double real = 0;                 // Real
  int64_t integer = 0;             // Bool, Int16, Int32, Int64; Handle: a handle that is data (group 5, 105, 320, 1005)
  GcView text;                     // Text: valid as long as the source says
  GcDbObjectId id;                 // Id
  std::span<const uint8_t> bytes;  // Binary

  static GcDbGroup ofText(int code, GcView text);
  static GcDbGroup ofReal(int code, double value);
  static GcDbGroup ofPoint(int code, const GcGePoint3d& value);
  static GcDbGroup ofPoint2d(int code, const GcGePoint2d& value);
  static GcDbGroup ofInt(int code, int64_t value);  // width by the code's range
  static GcDbGroup ofId(int code, GcDbObjectId id);
  static GcDbGroup ofBinary(int code, std::span<const uint8_t> bytes);

  // The value as a number, whichever kind of number it is; 0 for other kinds.
  [[nodiscard]] double asReal() const;
  [[nodiscard]] int64_t asInt() const;
};

// What the code's range says its value is. Point for every code that begins a point (10, 110, 210, 1010 …).
GcDbGroupKind gcdbKindOfCode(int code);

// Where groups go.
class GcDbGroupSink {
 public:
  virtual ~GcDbGroupSink() = default;
  virtual void put(const GcDbGroup& group) = 0;
};

// Groups kept as they came, packed into one block of memory: extended data, extension records, groups no
// description knows, whole objects of unknown classes. Ids in it are followed by reference walks.
class GcDbGroupList : public GcDbGroupSink {
 public:
  void put(const GcDbGroup& group) override;
  [[nodiscard]] bool isEmpty() const { return m_bytes.isEmpty(); }
  void clear() { m_bytes = GcArray<uint8_t>(); }
  [[nodiscard]] size_t heapBytes() const { return static_cast<size_t>(m_bytes.physicalLength()); }
  friend bool operator==(const GcDbGroupList& a, const GcDbGroupList& b) { return a.m_bytes == b.m_bytes; }

  // Walks the groups. Texts and bytes point into the list: valid until it changes.
  class Cursor {
   public:
    explicit Cursor(const GcDbGroupList& list) : m_list(&list) {}
    bool next(GcDbGroup& group);  // false at the end
    // Byte offset of the group that next() will give.
    [[nodiscard]] int offset() const { return m_at; }

   private:
    friend class GcDbGroupList;
    const GcDbGroupList* m_list;
    int m_at = 0;
  };
  // Replaces ids in place: `map` gives the new id for an old one.
  template <class Map>
  void translateIds(const Map& map);
  // The same for handles that are data (group 1005 and its like).
  template <class Map>
  void translateHandles(const Map& map);
  [[nodiscard]] const GcArray<uint8_t>& bytes() const { return m_bytes; }
  void setBytes(GcArray<uint8_t>&& bytes) { m_bytes = std::move(bytes); }

 private:
  // `next` is where the next group begins.
  // The value of the group at the offset when it is of the kind (at any even address), or null.
  [[nodiscard]] void* valueAt(int offset, GcDbGroupKind kind, int& next);
  GcArray<uint8_t> m_bytes;
};

template <class Map>
void GcDbGroupList::translateIds(const Map& map) {
  for (int at = 0; at < m_bytes.length();) {
    int next = at;
    if (void* place = valueAt(at, GcDbGroupKind::Id, next)) {
      GcDbObjectId id;
      std::memcpy(static_cast<void*>(&id), place, sizeof id);
      id = map(id);
      std::memcpy(place, static_cast<const void*>(&id), sizeof id);
    }
    at = next;
  }
}

template <class Map>
void GcDbGroupList::translateHandles(const Map& map) {
  for (int at = 0; at < m_bytes.length();) {
    int next = at;
    if (void* place = valueAt(at, GcDbGroupKind::Handle, next)) {
      uint64_t handle = 0;
      std::memcpy(&handle, place, sizeof handle);
      handle = map(handle);
      std::memcpy(place, &handle, sizeof handle);
    }
    at = next;
  }
}
