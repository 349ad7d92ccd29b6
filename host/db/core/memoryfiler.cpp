#include "host/db/core/memoryfiler.h"

#include <cstring>

#include "db/entity.h"
#include "host/db/core/extra.h"
#include "host/db/describe/fieldio.h"
#include "host/rx/view.h"

Gcad::ErrorStatus GcDbMemoryFiler::writeBytes(const void* bytes, uint64_t count) {
  const size_t at = m_bytes.size();
  m_bytes.resize(at + count);
  if (count > 0) std::memcpy(m_bytes.data() + at, bytes, count);
  return m_status;
}

Gcad::ErrorStatus GcDbMemoryFiler::readBytes(void* bytes, uint64_t count) {
  if (m_status != Gcad::eOk) return m_status;
  if (count > m_bytes.size() - m_at) return m_status = Gcad::eEndOfFile;
  if (count > 0) std::memcpy(bytes, m_bytes.data() + m_at, count);
  m_at += count;
  return Gcad::eOk;
}

GcDbObjectId GcDbMemoryFiler::referenceAt(const GcDbReferencePlace& place) const {
  GcDbObjectId id;
  std::memcpy(static_cast<void*>(&id), m_bytes.data() + place.offset, sizeof id);
  return id;
}

void GcDbMemoryFiler::setReferenceAt(const GcDbReferencePlace& place, GcDbObjectId id) {
  std::memcpy(m_bytes.data() + place.offset, static_cast<const void*>(&id), sizeof id);
}

Gcad::ErrorStatus GcDbMemoryFiler::writeString(const GcString& text) {
  ignore(writeUInt32(static_cast<uint32_t>(text.length())));
  return writeBytes(text.c_str(), text.length() * sizeof(GCHAR));
}

Gcad::ErrorStatus GcDbMemoryFiler::writeString(const GCHAR* text) { return writeString(GcString(text)); }

Gcad::ErrorStatus GcDbMemoryFiler::readString(GcString& text) {
  uint32_t length = 0;
  ignore(readUInt32(&length));
  if (m_status == Gcad::eOk && length * sizeof(GCHAR) > m_bytes.size() - m_at) m_status = Gcad::eEndOfFile;
  if (m_status != Gcad::eOk) return m_status;
  GcText units(length, GCHAR(0));
  ignore(readBytes(units.data(), length * sizeof(GCHAR)));
  text.assign(units.data(), length);
  return m_status;
}

Gcad::ErrorStatus GcDbMemoryFiler::readString(GCHAR** text) {
  GcString read;
  const Gcad::ErrorStatus status = readString(read);
  return status == Gcad::eOk ? gcutNewString(read.c_str(), *text) : status;
}

namespace {

void writeIds(GcDbDwgFiler& filer, const GcDbObjectIdArray& ids) {
  ignore(filer.writeInt32(ids.length()));
  for (const GcDbObjectId id : ids) ignore(filer.writeSoftPointerId(id));
}

void readIds(GcDbDwgFiler& filer, GcDbObjectIdArray& ids) {
  int32_t count = 0;
  ignore(filer.readInt32(&count));
  ids.clear();
  for (int i = 0; i < count && filer.filerStatus() == Gcad::eOk; ++i) {
    GcDbObjectId id;
    ignore(filer.readSoftPointerId(&id));
    ids.append(id);
  }
}

void writeExtra(GcDbDwgFiler& filer, const GcDbObjectExtra& extra) {
  ignore(filer.writeHardOwnershipId(extra.extensionDictionary));
  writeIds(filer, extra.reactors);
  gcdbWriteGroups(extra.xdata, filer);
  ignore(filer.writeInt32(extra.foreign.length()));
  for (const GcDbForeignGroups& groups : extra.foreign) {
    ignore(filer.writeString(groups.section));
    ignore(filer.writeBool(groups.ownMarker));
    gcdbWriteGroups(groups.groups, filer);
  }
  ignore(filer.writeInt32(extra.parts.length()));
  for (const GcDbObjectId part : extra.parts) ignore(filer.writeHardOwnershipId(part));
  ignore(filer.writeHardOwnershipId(extra.sequenceEnd));
  ignore(filer.writeHardPointerId(extra.plotStyle));
  ignore(filer.writeHardPointerId(extra.material));
  for (const GcDbObjectId style : extra.visualStyles) ignore(filer.writeHardPointerId(style));
  ignore(filer.writeString(extra.colorBook));
  ignore(filer.writeInt32(extra.transparency));
  ignore(filer.writeInt16(extra.plotStyleFlags));
  ignore(filer.writeInt16(extra.materialFlags));
  ignore(filer.writeInt16(extra.shadowFlags));
  ignore(filer.writeInt32(extra.proxyGraphics.length()));
  ignore(filer.writeBytes(extra.proxyGraphics.begin(), static_cast<uint64_t>(extra.proxyGraphics.length())));
}

void readFlag(GcDbDwgFiler& filer, int8_t& flag) {
  int16_t value = 0;
  ignore(filer.readInt16(&value));
  flag = static_cast<int8_t>(value);
}

void readExtra(GcDbDwgFiler& filer, GcDbObjectExtra& extra) {
  ignore(filer.readHardOwnershipId(&extra.extensionDictionary));
  readIds(filer, extra.reactors);
  gcdbReadGroups(extra.xdata, filer);
  int32_t count = 0;
  ignore(filer.readInt32(&count));
  extra.foreign.clear();
  for (int i = 0; i < count && filer.filerStatus() == Gcad::eOk; ++i) {
    GcDbForeignGroups groups;
    ignore(filer.readString(groups.section));
    ignore(filer.readBool(&groups.ownMarker));
    gcdbReadGroups(groups.groups, filer);
    extra.foreign.append(std::move(groups));
  }
  ignore(filer.readInt32(&count));
  extra.parts.clear();
  for (int i = 0; i < count && filer.filerStatus() == Gcad::eOk; ++i) {
    GcDbObjectId part;
    ignore(filer.readHardOwnershipId(&part));
    extra.parts.append(part);
  }
  ignore(filer.readHardOwnershipId(&extra.sequenceEnd));
  ignore(filer.readHardPointerId(&extra.plotStyle));
  ignore(filer.readHardPointerId(&extra.material));
  for (GcDbObjectId& style : extra.visualStyles) ignore(filer.readHardPointerId(&style));
  ignore(filer.readString(extra.colorBook));
  ignore(filer.readInt32(&extra.transparency));
  readFlag(filer, extra.plotStyleFlags);
  readFlag(filer, extra.materialFlags);
  readFlag(filer, extra.shadowFlags);
  ignore(filer.readInt32(&count));
  extra.proxyGraphics.setLogicalLength(count);
  ignore(filer.readBytes(extra.proxyGraphics.begin(), static_cast<uint64_t>(count)));
}

}  // namespace

void gcdbImageOut(const GcDbObject& object, GcDbMemoryFiler& filer) {
  ignore(filer.writeSoftPointerId(object.ownerId()));
  ignore(filer.writeBool(object.extra() != nullptr));
  if (object.extra() != nullptr) writeExtra(filer, *object.extra());
  ignore(object.dwgOutFields(&filer));
}

Gcad::ErrorStatus gcdbImageIn(GcDbObject& object, GcDbMemoryFiler& filer) {
  GcDbObjectId owner;
  bool hasExtra = false;
  ignore(filer.readSoftPointerId(&owner));
  ignore(filer.readBool(&hasExtra));
  if (hasExtra)
    readExtra(filer, object.needExtra());
  else if (object.extra() != nullptr)
    *object.extra() = GcDbObjectExtra();
  ignore(object.setOwnerId(owner));
  return object.dwgInFields(&filer);
}

std::vector<uint8_t> gcdbImageOf(const GcDbObject& object, GcDb::FilerType type) {
  GcDbMemoryFiler filer(type);
  gcdbImageOut(object, filer);
  return filer.takeBytes();
}

Gcad::ErrorStatus gcdbImageInto(GcDbObject& object, const std::vector<uint8_t>& image, GcDb::FilerType type) {
  GcDbMemoryFiler filer(type, image);
  return gcdbImageIn(object, filer);
}
