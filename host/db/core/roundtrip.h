// Round-trip data: what a drawing has and the file it is saved to has no place for. It goes into an extension record
// of the root dictionary, which other programs keep, and comes back when the file is read: settings, comments and
// sections as a whole, groups of objects as changes to what the file itself says of the object, made only when it still
// says the same.
#pragma once

#include "host/db/core/extra.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/header.h"

class GcDbRoundTrip {
 public:
  void comment(GcView text);
  void property(const GcDbCustomProperty& property);
  void variable(GcView name, const GcDbGroupList& groups);
  // A time that the file has to the millisecond, or only as the universal time of `universal`.
  void time(GcView name, GcView universal, const GcDbHeader& header);
  void section(const GcDbFileSection& section);
  // Groups that no description knows, of a section of the object.
  void foreign(GcDbObjectId object, const GcDbForeignGroups& groups);
  // The object as it is (`whole`) and as the file will say it (`inFile`), both by gcdbGroupsToCompare. The codes of the
  // groups that differ, each once; none when nothing does.
  std::vector<int> changes(GcDbObjectId object, const GcDbGroupList& whole, const GcDbGroupList& inFile);

  [[nodiscard]] bool isEmpty() const { return m_groups.isEmpty(); }
  // The drawing has its record while one of these lives. A record that came with the drawing's file stays.
  class Stored {
   public:
    Stored(const GcDbRoundTrip& data, GcDbDatabase& database);
    ~Stored();
    Stored(const Stored&) = delete;
    Stored& operator=(const Stored&) = delete;
    [[nodiscard]] bool isNew() const { return m_made != nullptr; }

   private:
    GcDbDatabase& m_database;
    GcDbStub* m_made = nullptr;  // null: there was one, or nothing is to be kept
    uint64_t m_seed = 0;
    size_t m_count = 0;
  };

 private:
  void put(int code, GcView text) { m_groups.put(GcDbGroup::ofText(code, text)); }
  void putValue(const GcDbGroup& group);
  void putValues(const GcDbGroupList& groups);

  GcDbGroupList m_groups;
};

// The fields of an object as groups, those files do not have among them.
GcDbGroupList gcdbGroupsToCompare(const GcDbObject& object);

// After a file has been read: what its record of round-trip data says goes where it belongs; the record stays, empty.
void gcdbTakeRoundTrip(GcDbDatabase& database);
