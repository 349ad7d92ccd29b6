#include "host/db/describe/fieldio.h"

#include <cmath>
#include <cstring>

#include "db/database.h"
#include "db/filer.h"
#include "db/symboltable.h"
#include "host/db/core/names.h"
#include "host/rx/math/elementary.h"

namespace {

template <class T>
T& as(void* member) {
  return *static_cast<T*>(member);
}
template <class T>
const T& as(const void* member) {
  return *static_cast<const T*>(member);
}

bool isNameReference(Is is) { return is >= Is::LayerName && is <= Is::BlockName; }

double numberOf(const GcDbField& row, const void* member) {
  switch (row.kind) {
    case Kind::Bool: return as<bool>(member) ? 1 : 0;
    case Kind::Int8: return as<int8_t>(member);
    case Kind::UInt8: return as<uint8_t>(member);
    case Kind::Int16: return as<int16_t>(member);
    case Kind::UInt16: return as<uint16_t>(member);
    case Kind::Int32: return as<int32_t>(member);
    case Kind::UInt32: return as<uint32_t>(member);
    case Kind::Int64: return static_cast<double>(as<int64_t>(member));
    case Kind::Real: return as<double>(member);
    default: return 0;
  }
}

int64_t integerOf(const GcDbField& row, const void* member) {
  return row.kind == Kind::Int64 ? as<int64_t>(member) : static_cast<int64_t>(numberOf(row, member));
}

// Stores an integer that came from a file: cut to the width of the member, never undefined.
void setInteger(const GcDbField& row, void* member, int64_t value) {
  switch (row.kind) {
    case Kind::Bool: as<bool>(member) = value != 0; break;
    case Kind::Int8: as<int8_t>(member) = static_cast<int8_t>(value); break;
    case Kind::UInt8: as<uint8_t>(member) = static_cast<uint8_t>(value); break;
    case Kind::Int16: as<int16_t>(member) = static_cast<int16_t>(value); break;
    case Kind::UInt16: as<uint16_t>(member) = static_cast<uint16_t>(value); break;
    case Kind::Int32: as<int32_t>(member) = static_cast<int32_t>(value); break;
    case Kind::UInt32: as<uint32_t>(member) = static_cast<uint32_t>(value); break;
    case Kind::Int64: as<int64_t>(member) = value; break;
    default: break;
  }
}

bool isInteger(Kind kind) { return kind >= Kind::Bool && kind <= Kind::Int64; }

GcGeVector3d defaultVector(const GcDbField& row) {
  if (row.is == Is::Normal || row.defaultAxis == 2) return GcGeVector3d::kZAxis;
  if (row.defaultAxis >= 0) return row.defaultAxis == 0 ? GcGeVector3d::kXAxis : GcGeVector3d::kYAxis;
  return {row.defaultValue, row.defaultValue, row.defaultValue};
}

// A text or dimension style that is not named in a file is the one called Standard.
bool isDefaultId(const GcDbField& row, GcDbObjectId id) {
  if (id.isNull()) return true;
  return (row.is == Is::TextStyleName || row.is == Is::DimStyleName) &&
         equalNoCase(gcdbNameOfRecord(id), GC_T("Standard"));
}

// Codes whose reals are angles, which files keep in degrees.
bool isAngleCode(int code) { return code >= 50 && code <= 58; }

}  // namespace

bool GcDbField::isDefault(const void* record) const {
  const void* member = value(record);
  switch (kind) {
    case Kind::Point2d:
    case Kind::Vector2d: return as<GcGePoint2d>(member) == GcGePoint2d(defaultValue, defaultValue);
    case Kind::Point3d:
    case Kind::Vector3d: return as<GcGeVector3d>(member) == defaultVector(*this);
    case Kind::String: return as<GcString>(member).isEmpty();
    case Kind::Id: return isDefaultId(*this, as<GcDbObjectId>(member));
    case Kind::Color:
      if (is == Is::TrueColor) return !as<GcCmEntityColor>(member).isByColor();
      return as<GcCmEntityColor>(member) == GcCmEntityColor::byLayer();
    case Kind::Bytes: return as<GcArray<uint8_t>>(member).isEmpty();
    case Kind::Groups: return as<GcDbGroupList>(member).isEmpty();
    case Kind::Records: return records->size(member) == 0;
    case Kind::None: return false;
    default: return numberOf(*this, member) == defaultValue;
  }
}

// ---- one value -------------------------------------------------------------------------------------------

bool gcdbSetValue(const GcDbField& row, void* member, const GcDbGroup& group, GcDbDatabase* database) {
  if (isInteger(row.kind)) {
    setInteger(row, member, group.asInt());
    return true;
  }
  switch (row.kind) {
    case Kind::Real: as<double>(member) = group.asReal(); return true;
    case Kind::Point2d:
    case Kind::Vector2d: as<GcGePoint2d>(member) = {group.point.x, group.point.y}; return true;
    case Kind::Point3d:
    case Kind::Vector3d: as<GcGePoint3d>(member) = group.point; return true;
    case Kind::String: as<GcString>(member).assign(group.text.data(), group.text.size()); return true;
    case Kind::Color: {
      const auto value = static_cast<uint32_t>(group.asInt());
      if (row.is == Is::TrueColor)
        as<GcCmEntityColor>(member) = GcCmEntityColor::fromRgb(
            static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 8), static_cast<uint8_t>(value));
      else if (!as<GcCmEntityColor>(member).isByColor())  // the index beside a true colour is only its nearest
        as<GcCmEntityColor>(member).setColorIndex(static_cast<int>(group.asInt()));
      return true;
    }
    case Kind::Bytes:
      for (const uint8_t byte : group.bytes) as<GcArray<uint8_t>>(member).append(byte);  // chunks follow each other
      return true;
    case Kind::Id:
      if (isNameReference(row.is) && group.kind == GcDbGroupKind::Text) {
        as<GcDbObjectId>(member) = gcdbRecordByName(database, row.is, group.text);
      } else if (group.kind != GcDbGroupKind::Id) {
        return false;  // a damaged handle, say
      } else {
        as<GcDbObjectId>(member) = group.id;
      }
      return true;
    default: return false;
  }
}

GcDbGroup gcdbGetValue(const GcDbField& row, const void* member, GcDbDatabase*) {
  if (isInteger(row.kind)) return GcDbGroup::ofInt(row.code, integerOf(row, member));
  switch (row.kind) {
    case Kind::Real: {
      GcDbGroup group = GcDbGroup::ofReal(row.code, as<double>(member));
      group.isAngle = isAngleCode(row.code);
      return group;
    }
    case Kind::Point2d:
    case Kind::Vector2d: return GcDbGroup::ofPoint2d(row.code, as<GcGePoint2d>(member));
    case Kind::Point3d:
    case Kind::Vector3d: return GcDbGroup::ofPoint(row.code, as<GcGePoint3d>(member));
    case Kind::String: return GcDbGroup::ofText(row.code, view(as<GcString>(member)));
    case Kind::Color: {
      const auto& color = as<GcCmEntityColor>(member);
      return GcDbGroup::ofInt(
          row.code, row.is == Is::TrueColor ? color.bits() & 0xFFFFFFu : static_cast<uint32_t>(color.colorIndex()));
    }
    case Kind::Bytes: {
      const auto& bytes = as<GcArray<uint8_t>>(member);
      return GcDbGroup::ofBinary(row.code, {bytes.begin(), static_cast<size_t>(bytes.length())});
    }
    case Kind::Id: {
      const GcDbObjectId id = as<GcDbObjectId>(member);
      return isNameReference(row.is) ? GcDbGroup::ofText(row.code, gcdbNameOfRecord(id))
                                     : GcDbGroup::ofId(row.code, id);
    }
    default: return {};
  }
}

// ---- writing ---------------------------------------------------------------------------------------------

namespace {

void putText(GcDbGroupSink& sink, int code, const char* ascii) {
  GCHAR buffer[64];
  size_t length = 0;
  while (ascii[length] != 0 && length < 64) {
    buffer[length] = static_cast<GCHAR>(ascii[length]);
    ++length;
  }
  sink.put(GcDbGroup::ofText(code, GcView(buffer, length)));
}

// Chunks of binary data as files have them: at most 127 bytes each.
void putBytes(GcDbGroupSink& sink, int code, const GcArray<uint8_t>& bytes) {
  constexpr int kChunk = 127;
  for (int at = 0; at < bytes.length(); at += kChunk) {
    const int size = bytes.length() - at < kChunk ? bytes.length() - at : kChunk;
    sink.put(GcDbGroup::ofBinary(code, {bytes.begin() + at, static_cast<size_t>(size)}));
  }
}

// A long text as the format wants it: pieces of 250 units (surrogate pairs stay whole), the rest last.
void putPieces(const GcDbField& row, GcView text, GcDbGroupSink& sink) {
  constexpr size_t kPiece = 250;
  bool isFirst = true;
  while (text.size() >= kPiece) {
    const bool splitsPair = (text[kPiece - 1] & 0xFC00) == 0xD800;
    const size_t size = splitsPair ? kPiece - 1 : kPiece;
    const bool hasOwnCode = row.piecesFollow && isFirst;
    sink.put(GcDbGroup::ofText(hasOwnCode ? row.code : row.pieceCode, text.substr(0, size)));
    text.remove_prefix(size);
    isFirst = false;
  }
  if (row.piecesFollow && !isFirst) {
    if (!text.empty()) sink.put(GcDbGroup::ofText(row.pieceCode, text));
    return;
  }
  sink.put(GcDbGroup::ofText(row.code, text));
}

bool isLeftOut(const GcDbField& row, const void* record, For purpose) {
  if (row.code < 0 && row.kind != Kind::Groups && row.kind != Kind::Records) return true;
  if (purpose != For::List && row.inFiles != nullptr && !row.inFiles(record)) return true;
  switch (row.write) {
    case Write::Never: return purpose != For::Whole || row.isDefault(record);
    case Write::ListsOnly: return purpose != For::List;
    case Write::UnlessDefault: return row.isDefault(record);
    case Write::FilesUnlessDefault: return purpose != For::List && row.isDefault(record);
    default: return false;
  }
}

void putRow(const GcDbField& row, const void* record, GcDbGroupSink& sink, int version, GcDbDatabase* database,
            For purpose) {
  if (row.is == Is::Marker) {
    putText(sink, row.code, row.name);
    return;
  }
  if (isLeftOut(row, record, purpose)) return;
  void* member = row.at(const_cast<void*>(record));
  switch (row.kind) {
    case Kind::Records: {
      const int size = row.records->size(member);
      if (row.code >= 0) sink.put(GcDbGroup::ofInt(row.code, size));
      if (row.is == Is::Count) return;
      for (int i = 0; i < size; ++i)
        gcdbRowsOut(row.records->at(member, i), row.rows, row.rowCount, sink, version, database, purpose);
      return;
    }
    case Kind::Groups: {
      GcDbGroupList::Cursor cursor(as<GcDbGroupList>(static_cast<const void*>(member)));
      for (GcDbGroup group; cursor.next(group);) sink.put(group);
      return;
    }
    case Kind::Bytes: putBytes(sink, row.code, as<GcArray<uint8_t>>(static_cast<const void*>(member))); return;
    case Kind::String:
      if (row.pieceCode != 0) {
        putPieces(row, view(as<GcString>(static_cast<const void*>(member))), sink);
        return;
      }
      [[fallthrough]];
    default: sink.put(row.get != nullptr ? row.get(record) : gcdbGetValue(row, member, database));
  }
}

}  // namespace

void gcdbRowsOut(const void* record, const GcDbField* rows, int count, GcDbGroupSink& sink, int version,
                 GcDbDatabase* database, For purpose) {
  for (int i = 0; i < count; ++i)
    if (rows[i].isIn(version) && rows[i].applies(record)) putRow(rows[i], record, sink, version, database, purpose);
}

void gcdbFieldsOut(const GcDbObject& object, GcDbGroupSink& sink, int version, For purpose) {
  const GcDbClassInfo* info = gcdbInfoOf(object);
  if (info == nullptr) return;
  GcDbDatabase* database = object.database();
  for (int i = 0; i < info->rowCount; ++i) {
    const GcDbField& row = *info->rows[i];
    if (row.isIn(version) && row.applies(&object)) putRow(row, &object, sink, version, database, purpose);
  }
}

// ---- reading ---------------------------------------------------------------------------------------------

GcDbFieldReader::GcDbFieldReader(GcDbObject& object, int version)
    : GcDbFieldReader(&object, gcdbInfoOf(object)->rows, gcdbInfoOf(object)->rowCount, version, object.database()) {}

GcDbFieldReader::GcDbFieldReader(void* record, const GcDbField* const* rows, int rowCount, int version,
                                 GcDbDatabase* database)
    : m_rows(rows), m_rowCount(rowCount), m_version(version), m_database(database), m_sectionEnd(rowCount) {
  m_frames[0] = {record, nullptr, rowCount, 0, 0, nullptr, nullptr};
}

// A class may have the same marker twice (TEXT); the next one behind the current section is meant. Markers that
// follow each other directly are names for one section, of which an object has the one that applies.
bool GcDbFieldReader::takeMarker(const GcDbGroup& group) {
  const int from = m_sectionEnd < m_rowCount ? m_sectionEnd : 0;
  for (int step = 0; step < m_rowCount; ++step) {
    const int i = from + step < m_rowCount ? from + step : from + step - m_rowCount;
    const GcDbField& row = *m_rows[i];
    if (row.is != Is::Marker || row.code != group.code || group.text.size() != std::strlen(row.name)) continue;
    if (!std::equal(group.text.begin(), group.text.end(), row.name)) continue;
    m_section = row.name;
    m_foreign = false;
    m_sectionStart = i + 1;
    while (m_sectionStart < m_rowCount && m_rows[m_sectionStart]->is == Is::Marker) ++m_sectionStart;
    m_sectionEnd = m_sectionStart;
    while (m_sectionEnd < m_rowCount && m_rows[m_sectionEnd]->is != Is::Marker) ++m_sectionEnd;
    m_depth = 0;
    m_frames[0].cursor = m_sectionStart;
    return true;
  }
  m_foreign = true;
  return false;
}

// True the first time it is asked about a member of the object in this reading.
bool GcDbFieldReader::isFirstOf(const void* member) {
  if (m_depth > 0) return false;  // members of an element are fresh
  for (int i = 0; i < m_begunCount; ++i)
    if (m_begun[i] == member) return false;
  if (m_begunCount < kMostBegun) m_begun[m_begunCount++] = member;
  return true;
}

void GcDbFieldReader::beginArray(const GcDbField& row, void* array) {
  if (isFirstOf(array)) row.records->clear(array);
}

// A new element of the row's array whose first row has the group's code.
bool GcDbFieldReader::enterRecord(Frame& frame, int index, const GcDbGroup& group) {
  if (m_depth + 1 >= kMaxDepth) return false;
  const GcDbField& row = rowOf(frame, index);
  void* array = row.at(frame.record);
  beginArray(row, array);
  frame.cursor = index;  // stays: the next element may follow
  const bool isThere = row.isPart && row.records->size(array) > 0;
  void* element = isThere ? row.records->at(array, 0) : row.records->append(array);
  m_frames[++m_depth] = {element, row.rows, row.rowCount, 0, 0, array, &row};
  Frame& inner = m_frames[m_depth];
  return takeIn(inner, group, 0, inner.count);
}

bool GcDbFieldReader::takePiece(GcString& text, const GcDbGroup& group) {
  if (isFirstOf(&text)) text.clear();
  text.append(group.text.data(), group.text.size());
  return true;
}

void GcDbFieldReader::markTaken(Frame& frame, int index) {
  if (m_depth > 0 && index < 64) frame.taken |= uint64_t{1} << index;
  if (m_depth == 0 && index < kMostMarked) m_taken[index / 64] |= uint64_t{1} << (index % 64);
}

// Takes the value of a row that is no array of records. Rows that take several groups stay where they are.
bool GcDbFieldReader::takeValue(Frame& frame, int index, const GcDbGroup& group) {
  const GcDbField& row = rowOf(frame, index);
  void* member = row.at(frame.record);
  const bool isPiece = row.pieceCode != 0 && (row.pieceCode == group.code || row.piecesFollow);
  const bool takesMore = row.kind == Kind::Bytes || row.kind == Kind::Groups || isPiece;
  frame.cursor = takesMore ? index : index + 1;
  if (!takesMore) markTaken(frame, index);
  if (row.set != nullptr) return row.set(frame.record, group);
  if (row.pieceCode != 0) return takePiece(*static_cast<GcString*>(member), group);
  if (row.kind == Kind::Groups) {
    if (isFirstOf(member)) static_cast<GcDbGroupList*>(member)->clear();
    static_cast<GcDbGroupList*>(member)->put(group);
    return true;
  }
  if (row.kind == Kind::Bytes && isFirstOf(member)) static_cast<GcArray<uint8_t>*>(member)->clear();
  return gcdbSetValue(row, member, group, m_database);
}

bool GcDbFieldReader::takeRow(Frame& frame, int index, const GcDbGroup& group) {
  const GcDbField& row = rowOf(frame, index);
  if (row.kind != Kind::Records) return takeValue(frame, index, group);
  if (row.code == group.code) {  // the count: a promise at most, never trusted for memory
    frame.cursor = row.is == Is::Count ? index + 1 : index;
    if (row.is == Is::Count) return true;
    void* array = row.at(frame.record);
    beginArray(row, array);
    constexpr int64_t kMostReserved = 4096;
    const int64_t promised = group.asInt();
    if (promised > 0) row.records->reserve(array, static_cast<int>(std::min(promised, kMostReserved)));
    return true;
  }
  return enterRecord(frame, index, group);
}

bool GcDbFieldReader::takeIn(Frame& frame, const GcDbGroup& group, int first, int last) {
  for (int i = first; i < last; ++i) {
    const GcDbField& row = rowOf(frame, i);
    const bool opens = row.opensWith(group.code);
    const bool counts = row.code == group.code || (row.alsoCode != 0 && row.alsoCode == group.code) ||
                        (row.pieceCode != 0 && row.pieceCode == group.code) || row.takesAnyGroup();
    if ((!counts && !opens) || row.is == Is::Marker || !row.isIn(m_version) || isTaken(frame, i)) continue;
    if (row.inExtra || row.readsAnyway || row.applies(frame.record)) return takeRow(frame, i, group);
  }
  return false;
}

bool GcDbFieldReader::take(const GcDbGroup& group) {
  if (group.code == 100 || group.code == 101) return takeMarker(group);
  if (m_foreign) return false;
  while (m_depth > 0) {  // inside records: forward, then what was passed over but for the first, then out
    Frame& frame = m_frames[m_depth];
    if (takeIn(frame, group, frame.cursor, frame.count) || takeIn(frame, group, 1, frame.cursor)) return true;
    --m_depth;
    Frame& outer = m_frames[m_depth];
    const GcDbField& row = rowOf(outer, outer.cursor);
    if (!row.isPart && row.opensWith(group.code) && row.code != group.code)
      return enterRecord(outer, outer.cursor, group);
  }
  Frame& top = m_frames[0];
  return takeIn(top, group, top.cursor, m_sectionEnd) ||
         takeIn(top, group, m_sectionStart, std::min(top.cursor, m_sectionEnd)) || takeInNamesake(group);
}

// Files that write a section whole where the class has it in two parts of one name (TEXT).
bool GcDbFieldReader::takeInNamesake(const GcDbGroup& group) {
  int i = m_sectionEnd;
  if (i >= m_rowCount || std::strcmp(m_rows[i]->name, m_section) != 0) return false;
  for (++i; i < m_rowCount && m_rows[i]->is != Is::Marker; ++i) {
    const GcDbField& row = *m_rows[i];
    void* record = m_frames[0].record;
    if (row.code == group.code && row.kind != Kind::Records && row.set == nullptr && row.isIn(m_version))
      return gcdbSetValue(row, row.at(record), group, m_database);
  }
  return false;
}

void GcDbFieldReader::emptyArrays() {
  for (int i = 0; i < m_rowCount; ++i) {
    const GcDbField& row = *m_rows[i];
    if (row.kind == Kind::Records && row.is != Is::Count) beginArray(row, row.at(m_frames[0].record));
  }
}

// ---- filers ----------------------------------------------------------------------------------------------

namespace {

void writeId(const GcDbField& row, GcDbObjectId id, GcDbDwgFiler& filer) {
  switch (row.is) {
    case Is::SoftPointer: ignore(filer.writeSoftPointerId(id)); break;
    case Is::SoftOwner: ignore(filer.writeSoftOwnershipId(id)); break;
    case Is::HardOwner: ignore(filer.writeHardOwnershipId(id)); break;
    default: ignore(filer.writeHardPointerId(id));
  }
}

GcDbObjectId readId(const GcDbField& row, GcDbDwgFiler& filer) {
  GcDbObjectId id;
  switch (row.is) {
    case Is::SoftPointer: ignore(filer.readSoftPointerId(&id)); break;
    case Is::SoftOwner: ignore(filer.readSoftOwnershipId(&id)); break;
    case Is::HardOwner: ignore(filer.readHardOwnershipId(&id)); break;
    default: ignore(filer.readHardPointerId(&id));
  }
  return id;
}

void writeMember(const GcDbField& row, void* member, GcDbDwgFiler& filer);
void readMember(const GcDbField& row, void* member, GcDbDwgFiler& filer);

void writeRecords(const GcDbField& row, void* array, GcDbDwgFiler& filer) {
  const int size = row.records->size(array);
  ignore(filer.writeInt32(size));
  for (int i = 0; i < size; ++i) {
    void* element = row.records->at(array, i);
    for (int r = 0; r < row.rowCount; ++r)
      if (!row.rows[r].isEcho) writeMember(row.rows[r], row.rows[r].at(element), filer);
  }
}

void readRecords(const GcDbField& row, void* array, GcDbDwgFiler& filer) {
  int32_t size = 0;
  ignore(filer.readInt32(&size));
  row.records->clear(array);
  for (int i = 0; i < size && filer.filerStatus() == Gcad::eOk; ++i) {
    void* element = row.records->append(array);
    for (int r = 0; r < row.rowCount; ++r)
      if (!row.rows[r].isEcho) readMember(row.rows[r], row.rows[r].at(element), filer);
  }
}

void writeMember(const GcDbField& row, void* member, GcDbDwgFiler& filer) {
  switch (row.kind) {
    case Kind::None: return;
    case Kind::Real: ignore(filer.writeDouble(as<double>(member))); return;
    case Kind::Point2d:
    case Kind::Vector2d: ignore(filer.writePoint2d(as<GcGePoint2d>(member))); return;
    case Kind::Point3d: ignore(filer.writePoint3d(as<GcGePoint3d>(member))); return;
    case Kind::Vector3d: ignore(filer.writeVector3d(as<GcGeVector3d>(member))); return;
    case Kind::String: ignore(filer.writeString(as<GcString>(member))); return;
    case Kind::Color: ignore(filer.writeUInt32(as<GcCmEntityColor>(member).bits())); return;
    case Kind::Id: writeId(row, as<GcDbObjectId>(member), filer); return;
    case Kind::Bytes: {
      const auto& bytes = as<GcArray<uint8_t>>(member);
      ignore(filer.writeInt32(bytes.length()));
      ignore(filer.writeBytes(bytes.begin(), static_cast<uint64_t>(bytes.length())));
      return;
    }
    case Kind::Groups: gcdbWriteGroups(as<GcDbGroupList>(member), filer); return;
    case Kind::Records:
      if (row.is != Is::Count) writeRecords(row, member, filer);
      return;
    default: ignore(filer.writeInt64(integerOf(row, member)));
  }
}

void readMember(const GcDbField& row, void* member, GcDbDwgFiler& filer) {
  switch (row.kind) {
    case Kind::None: return;
    case Kind::Real: ignore(filer.readDouble(&as<double>(member))); return;
    case Kind::Point2d:
    case Kind::Vector2d: ignore(filer.readPoint2d(&as<GcGePoint2d>(member))); return;
    case Kind::Point3d: ignore(filer.readPoint3d(&as<GcGePoint3d>(member))); return;
    case Kind::Vector3d: ignore(filer.readVector3d(&as<GcGeVector3d>(member))); return;
    case Kind::String: ignore(filer.readString(as<GcString>(member))); return;
    case Kind::Color: {
      uint32_t bits = 0;
      ignore(filer.readUInt32(&bits));
      as<GcCmEntityColor>(member) = GcCmEntityColor::fromBits(bits);
      return;
    }
    case Kind::Id: as<GcDbObjectId>(member) = readId(row, filer); return;
    case Kind::Bytes: {
      int32_t size = 0;
      ignore(filer.readInt32(&size));
      auto& bytes = as<GcArray<uint8_t>>(member);
      bytes.clear();
      bytes.setLogicalLength(size);
      ignore(filer.readBytes(bytes.begin(), static_cast<uint64_t>(size)));
      return;
    }
    case Kind::Groups: gcdbReadGroups(as<GcDbGroupList>(member), filer); return;
    case Kind::Records:
      if (row.is != Is::Count) readRecords(row, member, filer);
      return;
    default: {
      int64_t value = 0;
      ignore(filer.readInt64(&value));
      setInteger(row, member, value);
    }
  }
}

}  // namespace

namespace {
// The code of a reference says how strong it is.
void writeReference(const GcDbGroup& group, GcDbDwgFiler& filer) {
  if (group.code >= 360 && group.code <= 369)
    ignore(filer.writeHardOwnershipId(group.id));
  else if (group.code >= 350 && group.code <= 359)
    ignore(filer.writeSoftOwnershipId(group.id));
  else if (group.code >= 340)
    ignore(filer.writeHardPointerId(group.id));
  else
    ignore(filer.writeSoftPointerId(group.id));
}
}  // namespace

void gcdbWriteGroups(const GcDbGroupList& list, GcDbDwgFiler& filer) {
  GcArray<uint8_t> bytes = list.bytes();
  ignore(filer.writeInt32(bytes.length()));
  ignore(filer.writeBytes(bytes.begin(), static_cast<uint64_t>(bytes.length())));
  GcDbGroupList::Cursor cursor(list);
  for (GcDbGroup group; cursor.next(group);)
    if (group.kind == GcDbGroupKind::Id) writeReference(group, filer);
}

void gcdbReadGroups(GcDbGroupList& list, GcDbDwgFiler& filer) {
  int32_t size = 0;
  ignore(filer.readInt32(&size));
  GcArray<uint8_t> bytes;
  bytes.setLogicalLength(size);
  ignore(filer.readBytes(bytes.begin(), static_cast<uint64_t>(size)));
  list.setBytes(std::move(bytes));
  list.translateIds([&](GcDbObjectId) {
    GcDbObjectId id;
    ignore(filer.readSoftPointerId(&id));
    return id;
  });
}

namespace {

// What a block's first entity tells of it in files belongs to its record all the same. Calls f(row) for each of these
// rows but the name, which the record's own rows have.
template <class F>
void eachBlockRow(const GcDbObject& object, const F& f) {
  if (GcDbBlockTableRecord::cast(&object) == nullptr) return;
  for (int i = 0; i < GcDbBlockTableRecord::kBlockFieldCount; ++i)
    if (GcDbBlockTableRecord::kBlockFields[i].set == nullptr) f(GcDbBlockTableRecord::kBlockFields[i]);
}

}  // namespace

Gcad::ErrorStatus gcdbFieldsDwgOut(const GcDbObject& object, GcDbDwgFiler& filer) {
  const GcDbClassInfo* info = gcdbInfoOf(object);
  for (int i = 0; info != nullptr && i < info->rowCount; ++i) {
    const GcDbField& row = *info->rows[i];
    if (row.is != Is::Marker && !row.isGroupsOnly()) writeMember(row, row.at(const_cast<GcDbObject*>(&object)), filer);
  }
  eachBlockRow(object,
               [&](const GcDbField& row) { writeMember(row, row.at(const_cast<GcDbObject*>(&object)), filer); });
  return filer.filerStatus();
}

Gcad::ErrorStatus gcdbFieldsDwgIn(GcDbObject& object, GcDbDwgFiler& filer) {
  const GcDbClassInfo* info = gcdbInfoOf(object);
  for (int i = 0; info != nullptr && i < info->rowCount; ++i) {
    const GcDbField& row = *info->rows[i];
    if (row.is != Is::Marker && !row.isGroupsOnly()) readMember(row, row.at(&object), filer);
  }
  eachBlockRow(object, [&](const GcDbField& row) { readMember(row, row.at(&object), filer); });
  return filer.filerStatus();
}

// ---- walks -----------------------------------------------------------------------------------------------

namespace {

void visitRow(const GcDbField& row, void* record, GcDbReferenceVisitor& visitor) {
  if (row.at == nullptr || row.is == Is::Count || row.isEcho || (row.inExtra && !row.applies(record))) return;
  void* member = row.at(record);
  if (row.kind == Kind::Id) visitor.reference(as<GcDbObjectId>(member), row.is);
  if (row.kind == Kind::Groups)
    as<GcDbGroupList>(member).translateIds([&](GcDbObjectId id) {
      visitor.reference(id, Is::SoftPointer);
      return id;
    });
  if (row.kind == Kind::Records)
    for (int i = 0; i < row.records->size(member); ++i)
      for (int r = 0; r < row.rowCount; ++r) visitRow(row.rows[r], row.records->at(member, i), visitor);
}

// What a transformation does to the values of one object.
struct FieldTransform {
  GcGeMatrix3d world;  // as given
  GcGeMatrix3d ocs;    // from the old own system to the new one
  GcGeVector3d newNormal;
  double lengthFactor;
  double angleOffsetRad;  // added to angles of the own system
  bool mirrored;          // the own system changed hand: angles run the other way

  void apply(const GcDbField& row, void* member) const {
    switch (row.is) {
      case Is::WcsPoint: as<GcGePoint3d>(member) = world * as<GcGePoint3d>(member); break;
      case Is::WcsVector: as<GcGeVector3d>(member) = world * as<GcGeVector3d>(member); break;
      case Is::Direction: as<GcGeVector3d>(member) = (world * as<GcGeVector3d>(member)).normal(); break;
      case Is::Normal: as<GcGeVector3d>(member) = newNormal; break;
      case Is::OcsPoint: ocsPoint(row, member); break;
      case Is::OcsVector: ocsVector(row, member); break;
      case Is::Length: as<double>(member) *= lengthFactor; break;
      case Is::Elevation: as<double>(member) = (ocs * GcGePoint3d(0, 0, as<double>(member))).z; break;
      case Is::Angle: {
        double& angle = as<double>(member);
        angle = std::remainder((mirrored ? -angle : angle) + angleOffsetRad, 2 * 3.14159265358979323846);
        if (angle < 0) angle += 2 * 3.14159265358979323846;
        break;
      }
      default: break;
    }
  }
  void ocsVector(const GcDbField& row, void* member) const {
    if (row.kind == Kind::Vector2d) {
      const GcGeVector3d turned = ocs * GcGeVector3d(as<GcGeVector2d>(member).x, as<GcGeVector2d>(member).y, 0);
      as<GcGeVector2d>(member) = {turned.x, turned.y};
    } else {
      as<GcGeVector3d>(member) = ocs * as<GcGeVector3d>(member);
    }
  }
  void ocsPoint(const GcDbField& row, void* member) const {
    if (row.kind == Kind::Point2d) {
      const GcGePoint3d moved = ocs * GcGePoint3d(as<GcGePoint2d>(member).x, as<GcGePoint2d>(member).y, 0);
      as<GcGePoint2d>(member) = {moved.x, moved.y};
    } else {
      as<GcGePoint3d>(member) = ocs * as<GcGePoint3d>(member);
    }
  }
};

void transformRow(const GcDbField& row, void* record, const FieldTransform& transform) {
  if (row.at == nullptr || row.isGroupsOnly()) return;
  void* member = row.at(record);
  if (row.kind != Kind::Records) {
    transform.apply(row, member);
    return;
  }
  if (row.is == Is::Count) return;
  for (int i = 0; i < row.records->size(member); ++i)
    for (int r = 0; r < row.rowCount; ++r) transformRow(row.rows[r], row.records->at(member, i), transform);
}

}  // namespace

void gcdbVisitReferences(GcDbObject& object, GcDbReferenceVisitor& visitor) {
  const GcDbClassInfo* info = gcdbInfoOf(object);
  for (int i = 0; info != nullptr && i < info->rowCount; ++i) visitRow(*info->rows[i], &object, visitor);
}

Gcad::ErrorStatus gcdbTransformFields(GcDbObject& object, const GcGeMatrix3d& transform, GcDbImageSide side) {
  const GcDbClassInfo* info = gcdbInfoOf(object);
  if (info == nullptr) return Gcad::eNotApplicable;
  GcGeVector3d normal = GcGeVector3d::kZAxis;
  for (int i = 0; i < info->rowCount; ++i)
    if (info->rows[i]->is == Is::Normal) normal = as<GcGeVector3d>(info->rows[i]->at(&object));

  FieldTransform t;
  t.world = transform;
  GcGeMatrix3d fromOld, toNew;
  fromOld.setToPlaneToWorld(normal);
  // The new plane is spanned by the images of the old axes.
  t.newNormal = (transform * fromOld.column(0)).crossProduct(transform * fromOld.column(1)).normal();
  if (t.newNormal.lengthSqrd() == 0) return Gcad::eCannotScaleNonUniformly;
  t.mirrored = side == GcDbImageSide::Mirrors;
  if (t.mirrored) t.newNormal = GcGeVector3d() - t.newNormal;
  toNew.setToWorldToPlane(t.newNormal);
  t.ocs = toNew * transform * fromOld;
  t.lengthFactor = transform.scale();
  const GcGeVector3d x = t.ocs.column(0);
  t.angleOffsetRad = gc::atan2(x.y, x.x);
  for (int i = 0; i < info->rowCount; ++i) transformRow(*info->rows[i], &object, t);
  return Gcad::eOk;
}
