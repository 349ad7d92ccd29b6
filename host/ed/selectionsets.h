// Selection sets of a document: ordered, each entity once, erased members kept. Sets are named by numbers and live as
// long as somebody holds them (LISP values, the previous set).
#pragma once

#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "db/objectid.h"
#include "ge/point.h"

namespace ed {

// How members came into a set.
struct SelectionOrigin {
  enum class How : uint8_t { Named, Picked, Window, Crossing, Fence } how = How::Named;
  std::vector<GcGePoint3d> points;  // world: the pick, the corners of the region, the fence
};

class SelectionSet {
 public:
  [[nodiscard]] const std::vector<GcDbObjectId>& ids() const { return m_ids; }
  [[nodiscard]] size_t size() const { return m_ids.size(); }
  [[nodiscard]] bool contains(GcDbObjectId id) const;
  bool add(GcDbObjectId id);  // false when it is a member already
  // Those that are no members yet, with what they were selected by.
  void add(const std::vector<GcDbObjectId>& ids, SelectionOrigin origin);
  // The members of another set that are among the ids, in the order of the ids, with their origins.
  void addFrom(const SelectionSet& other, const std::vector<GcDbObjectId>& ids);
  // Number of a member's origin within origins(); 0 for one that was named.
  [[nodiscard]] size_t originAt(size_t index) const { return m_from.empty() ? 0 : m_from[index]; }
  [[nodiscard]] const std::vector<SelectionOrigin>& origins() const { return m_origins; }
  bool remove(GcDbObjectId id);  // false when it is no member

 private:
  // Small sets are searched; beyond this many members a hash tells.
  static constexpr size_t kSearched = 16;
  std::vector<GcDbObjectId> m_ids;
  std::unordered_set<GcDbStub*> m_members;
  std::vector<SelectionOrigin> m_origins{1};  // the first is for members that were named
  std::vector<uint32_t> m_from;               // beside m_ids; empty while all were named
};

using SetNumber = uint64_t;  // 0 names no set

class SelectionSets {
 public:
  // A new set, held once by the caller.
  SetNumber make();
  SetNumber make(std::vector<GcDbObjectId> ids);
  // Null for a number that names no living set.
  [[nodiscard]] SelectionSet* find(SetNumber number) const;
  void retain(SetNumber number);
  void release(SetNumber number);
  [[nodiscard]] size_t living() const { return m_sets.size(); }

 private:
  struct Held {
    std::unique_ptr<SelectionSet> set;
    int holders;
  };
  std::unordered_map<SetNumber, Held> m_sets;
  SetNumber m_last = 0;
};

// Holds a set for as long as it lives itself.
class HeldSet {
 public:
  explicit HeldSet(SelectionSets& sets) : m_sets(sets) {}
  ~HeldSet() { reset(); }
  HeldSet(const HeldSet&) = delete;
  HeldSet& operator=(const HeldSet&) = delete;
  [[nodiscard]] SetNumber number() const { return m_number; }
  [[nodiscard]] SelectionSet* set() const { return m_sets.find(m_number); }
  void reset(SetNumber number = 0);

 private:
  SelectionSets& m_sets;
  SetNumber m_number = 0;
};

}  // namespace ed
