// One record of a file as an object of the database: its class by name, its common groups (handle, owner, dictionary,
// reactors, extended data), its fields by the class's description. Groups no description knows stay with the object in
// their section; a record of an unknown class becomes a zombie that keeps all its groups.
#pragma once

#include "host/db/describe/fieldio.h"
#include "host/dxf/read/class_finder.h"
#include "host/dxf/read/group_cursor.h"

namespace gc::dxf {

// Takes groups of a record that its object's class does not know: those of the block record that a BLOCK speaks of, say.
class FieldTaker {
 public:
  virtual ~FieldTaker() = default;
  virtual bool take(const GcDbGroup& group) = 0;  // true when the group (a marker, too) is not to be kept
};

enum class RecordKind { Object, Entity };

class ObjectReader {
 public:
  explicit ObjectReader(LoadContext& context) : m_context(context), m_classes(context) {}

  // The object of the record, in the database under the record's handle (a new one when it has none or one that is
  // taken) and closed. Its owner is what the record says, null when it says nothing.
  GcDbObject* read(const RawRecord& record, RecordKind kind) { return read(record, kind, m_classes.find(record)); }
  // The same as an object of the given class.
  GcDbObject* read(const RawRecord& record, RecordKind kind, GcRxClass* found, FieldTaker* taker = nullptr);

 private:
  struct Target;  // the object that is being read

  std::uint64_t handleOf(const RawRecord& record) const;
  GcDbObject* make(const RawRecord& record, RecordKind kind, GcRxClass*& found) const;
  void adopt(const RawRecord& record, GcDbObject& object);
  void readGroups(const RawRecord& record, Target& target);
  bool readBySelf(const RawRecord& record, GcDbObject& object);
  void readHead(const GcDbGroup& group, GroupCursor& cursor, Target& target);
  void readBraces(const GcDbGroup& group, GroupCursor& cursor, Target& target);
  void readXData(GcDbGroup& group, GroupCursor& cursor, Target& target);
  static bool takeProxyGraphics(const GcDbGroup& group, Target& target);
  void readField(const GcDbGroup& group, Target& target);

  LoadContext& m_context;
  ClassFinder m_classes;
};

}  // namespace gc::dxf
