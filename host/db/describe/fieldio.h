// Reading and writing of described objects, group by group and through filers, and walks over their references.
#pragma once

#include "host/db/describe/classinfo.h"

class GcDbDwgFiler;
class GcGeMatrix3d;
class GcDbObject;

// Puts the groups of rows into the sink, as files of the version or entity lists have them.
void gcdbFieldsOut(const GcDbObject& object, GcDbGroupSink& sink, int version, For purpose = For::File);
void gcdbRowsOut(const void* record, const GcDbField* rows, int count, GcDbGroupSink& sink, int version,
                 GcDbDatabase* database, For purpose = For::File);

// Takes groups in file order (or nearly so) and puts their values where the rows say. A row is looked for
// forward from the last one taken, then among those of the current subclass that were passed over; records nest. A
// single value is taken once: a group that comes again finds a later row of its code or none.
class GcDbFieldReader {
 public:
  // `record` is the object (or, with the second form, any structure with rows of its own).
  GcDbFieldReader(GcDbObject& object, int version);
  GcDbFieldReader(void* record, const GcDbField* const* rows, int rowCount, int version, GcDbDatabase* database);

  // True when the group found its row. A false group is the caller's to keep.
  bool take(const GcDbGroup& group);
  // The name of the current subclass section, empty before the first marker; for keeping foreign groups in place.
  [[nodiscard]] const char* section() const { return m_section; }
  // True while groups of a subclass marker that no row knows go by.
  [[nodiscard]] bool inForeignSection() const { return m_foreign; }
  // Arrays are emptied when their first element (or count) comes; with this, at once (entmod of vertices).
  void emptyArrays();

 private:
  struct Frame {
    void* record;           // the structure whose fields the rows describe
    const GcDbField* rows;  // null for the outermost frame, which has m_rows
    int count;
    int cursor;
    uint64_t taken;          // of an element: bit per row that has had its group
    void* array;             // the array whose element `record` is
    const GcDbField* owner;  // its row
  };
  static constexpr int kMaxDepth = 8;
  static constexpr int kMostBegun = 16;

  [[nodiscard]] const GcDbField& rowOf(const Frame& frame, int index) const {
    return frame.rows != nullptr ? frame.rows[index] : *m_rows[index];
  }
  bool takeMarker(const GcDbGroup& group);
  bool takePiece(GcString& text, const GcDbGroup& group);
  bool isFirstOf(const void* member);
  bool takeIn(Frame& frame, const GcDbGroup& group, int first, int last);
  void markTaken(Frame& frame, int index);
  bool takeInNamesake(const GcDbGroup& group);
  bool takeValue(Frame& frame, int index, const GcDbGroup& group);
  bool takeRow(Frame& frame, int index, const GcDbGroup& group);
  bool enterRecord(Frame& frame, int index, const GcDbGroup& group);
  void beginArray(const GcDbField& row, void* array);

  const GcDbField* const* m_rows;
  int m_rowCount;
  int m_version;
  GcDbDatabase* m_database;
  const char* m_section = "";
  static constexpr int kMostMarked = 256;  // rows behind these may be taken again
  [[nodiscard]] bool isTaken(const Frame& frame, int index) const {
    if (m_depth > 0) return index < 64 && (frame.taken >> index & 1) != 0;
    return index < kMostMarked && (m_taken[index / 64] >> (index % 64) & 1) != 0;
  }

  bool m_foreign = false;
  uint64_t m_taken[kMostMarked / 64] = {};  // by row: single values that have been taken
  int m_sectionStart = 0;
  int m_sectionEnd = 0;
  Frame m_frames[kMaxDepth];
  int m_depth = 0;
  const void* m_begun[kMostBegun];  // members that have been emptied in this reading
  int m_begunCount = 0;
};

// Sets one value from a group (conversions between number kinds allowed). False when the value does not fit.
bool gcdbSetValue(const GcDbField& row, void* member, const GcDbGroup& group, GcDbDatabase* database);
// The value as a group.
GcDbGroup gcdbGetValue(const GcDbField& row, const void* member, GcDbDatabase* database);

// All fields through a filer, in row order: the form of memory copies.
Gcad::ErrorStatus gcdbFieldsDwgOut(const GcDbObject& object, GcDbDwgFiler& filer);
Gcad::ErrorStatus gcdbFieldsDwgIn(GcDbObject& object, GcDbDwgFiler& filer);

// A list of groups through a filer: one block of bytes, then its references as references, so that a clone
// translates them.
void gcdbWriteGroups(const GcDbGroupList& list, GcDbDwgFiler& filer);
void gcdbReadGroups(GcDbGroupList& list, GcDbDwgFiler& filer);

// Every reference in the fields, in row order.
class GcDbReferenceVisitor {
 public:
  virtual ~GcDbReferenceVisitor() = default;
  // May change the id.
  virtual void reference(GcDbObjectId& id, Is strength) = 0;
};
void gcdbVisitReferences(GcDbObject& object, GcDbReferenceVisitor& visitor);

// On which side of its plane an object's image has its normal: where a figure keeps its sense of turning, or on the
// other one, with its figures mirrored and its angles running the other way.
enum class GcDbImageSide : uint8_t { KeepsTurning, Mirrors };

// Transforms every field by what it is: points, vectors, lengths, normals, angles.
Gcad::ErrorStatus gcdbTransformFields(GcDbObject& object, const GcGeMatrix3d& transform,
                                      GcDbImageSide side = GcDbImageSide::KeepsTurning);
