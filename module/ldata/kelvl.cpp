#include "module/ldata/kelvl.h"

#include <new>
#include <string>

#include "module/log/modulelog.h"

using Gcad::ErrorStatus;

const uint32_t CKel_VL::kCurrentVersionNumber = 2;
GcRxClass* CKel_VL::gpDesc = nullptr;

namespace {

constexpr const GCHAR* kClassName = GC_T("CKel_VL");
constexpr const GCHAR* kDxfName = GC_T("KEL_VL");
constexpr int kDwgVersion = 33;
constexpr int kMaintenanceVersion = 327;
// Everything a person may do to a proxy, without a warning: erase, transform, colour, layer, linetype, linetype
// scale, visibility, cloning, lineweight, plot style and material changes.
constexpr int kProxyFlags = 0xBFF;
constexpr const GCHAR* kAppDescription = GC_T("\"VRKENTPROPERTYEXAPP\" ") GC_T("\"|Product Desc:     Kel_VL\" ")
    GC_T("\"|Company:          VRK\" ") GC_T("\"|WEB Address:      https://vrk.example\"");

GcRxObject* makeKelVL() { return new (std::nothrow) CKel_VL; }

int lengthOf(const GCHAR* text) {
  return text != nullptr ? static_cast<int>(std::char_traits<GCHAR>::length(text)) : 0;
}

// For log lines: characters, then bytes.
struct Size {
  explicit Size(const GCHAR* text) : length(lengthOf(text)), bytes(2 * length) {}
  int length;
  int bytes;
};

}  // namespace

CKel_VL::CKel_VL() { modulelog::debug(GC_T("CKel_VL::CKel_VL")); }

CKel_VL::~CKel_VL() { modulelog::debug(GC_T("CKel_VL::~CKel_VL")); }

GcRxClass* CKel_VL::desc() { return gpDesc; }
const GCHAR* CKel_VL::className() { return kClassName; }
GcRxClass* CKel_VL::isA() const { return desc(); }

CKel_VL* CKel_VL::cast(const GcRxObject* object) {
  if (object == nullptr || !object->isKindOf(desc())) return nullptr;
  return static_cast<CKel_VL*>(const_cast<GcRxObject*>(object));
}

void CKel_VL::rxInit() { rxInit(nullptr); }

void CKel_VL::rxInit(GcRxAppNameChange appNameChange) {
  if (const GcRxClass* found = gcrxFindGcRxClass(kClassName)) {
    if (found == gpDesc) return;
    gcrx_abort(GC_T("Class mismatch"));
  }
  gpDesc = newGcRxClass(kClassName, GC_T("AcDbObject"), kDwgVersion, kMaintenanceVersion, kProxyFlags, makeKelVL,
                        kDxfName, kAppDescription, appNameChange);
}

ErrorStatus CKel_VL::getLData(const GCHAR*& lData) const {
  modulelog::debug(GC_T("CKel_VL::getLData start"));
  assertReadEnabled();
  lData = m_sLData;
  const Size size(m_sLData);
  modulelog::debugf(GC_T("CKel_VL::getLData m_sLData len=%d, size=%d"), size.length, size.bytes);
  modulelog::debug(GC_T("CKel_VL::getLData end"));
  return Gcad::eOk;
}

ErrorStatus CKel_VL::setLData(const GCHAR* lData) {
  modulelog::debug(GC_T("CKel_VL::setLData start"));
  assertWriteEnabled(true, true);
  const Size given(lData);
  modulelog::debugf(GC_T("CKel_VL::setLData lData len=%d, size=%d"), given.length, given.bytes);
  // Copied before the old text goes: the argument may be what getLData gave.
  GCHAR* copy = nullptr;
  const ErrorStatus status = gcutNewString(lData, copy);
  gcutDelBuffer(m_sLData);
  m_sLData = status == Gcad::eOk ? copy : nullptr;
  const Size kept(m_sLData);
  modulelog::debugf(GC_T("CKel_VL::setLData m_sLData len=%d, size=%d, status=%d"), kept.length, kept.bytes,
                    static_cast<int>(status));
  modulelog::debug(GC_T("CKel_VL::setLData end"));
  return status;
}

// ---- DWG -------------------------------------------------------------------------------------------------

ErrorStatus CKel_VL::dwgOutFields(GcDbDwgFiler* filer) const {
  modulelog::debug(GC_T("CKel_VL::dwgOutFields Start"));
  assertReadEnabled();
  ErrorStatus status = GcDbObject::dwgOutFields(filer);
  if (status != Gcad::eOk) {
    modulelog::error(GC_T("CKel_VL::dwgOutFields Blad przy zapisie danych klasy bazowej!"));
    return status;
  }
  status = filer->writeUInt32(kCurrentVersionNumber);
  if (status != Gcad::eOk) {
    modulelog::error(GC_T("CKel_VL::dwgOutFields Blad przy zapisie numeru wersji!"));
    return status;
  }
  modulelog::infof(GC_T("CKel_VL::dwgOutFields Zapisano numer wersji=%d"), static_cast<int>(kCurrentVersionNumber));

  const uint32_t bytes = 2 * static_cast<uint32_t>(lengthOf(m_sLData));
  status = filer->writeUInt32(bytes);
  if (status != Gcad::eOk) {
    modulelog::error(GC_T("CKel_VL::dwgOutFields Blad przy zapisie liczby bajtow!"));
    return status;
  }
  modulelog::debugf(GC_T("CKel_VL::dwgOutFields Zapisano liczbe bajtow=%d"), static_cast<int>(bytes));
  if (bytes != 0) status = filer->writeBytes(m_sLData, bytes);
  if (status != Gcad::eOk) {
    modulelog::error(GC_T("CKel_VL::dwgOutFields Blad przy zapisie danych!"));
    return status;
  }
  modulelog::debug(GC_T("CKel_VL::dwgOutFields Zapisano dane"));
  modulelog::debug(GC_T("CKel_VL::dwgOutFields End"));
  return filer->filerStatus();
}

ErrorStatus CKel_VL::dwgInFields(GcDbDwgFiler* filer) {
  modulelog::debug(GC_T("CKel_VL::dwgInFields Start"));
  assertWriteEnabled(true, true);
  ErrorStatus status = GcDbObject::dwgInFields(filer);
  if (status != Gcad::eOk) {
    modulelog::error(GC_T("CKel_VL::dwgInFields Blad podczas odczytu danych klasy bazowej!"));
    return status;
  }
  uint32_t version = 0;
  status = filer->readUInt32(&version);
  if (status != Gcad::eOk) {
    // Deliberate: the misspelt word.
    modulelog::error(GC_T("CKel_VL::dwgInFields Blad podczas odczytu numeru wesji!"));
    return status;
  }
  modulelog::infof(GC_T("CKel_VL::dwgInFields Odczytano numer wersji=%d"), static_cast<int>(version));
  if (version > kCurrentVersionNumber) {
    modulelog::error(GC_T("CKel_VL::dwgInFields Blad nieprawidlowy numer wersji!"));
    return Gcad::eMakeMeProxy;
  }
  status = version == 1 ? readOldText(filer) : readCountedText(filer);
  if (status != Gcad::eOk) return status;
  modulelog::debug(GC_T("CKel_VL::dwgInFields Odczytano dane"));
  modulelog::debug(GC_T("CKel_VL::dwgInFields End"));
  return filer->filerStatus();
}

ErrorStatus CKel_VL::readOldText(GcDbDwgFiler* filer) {
  GCHAR* text = nullptr;
  const ErrorStatus status = filer->readString(&text);
  if (status != Gcad::eOk) {
    modulelog::error(GC_T("CKel_VL::dwgInFields Blad podczas odczytu danych!"));
    return status;
  }
  gcutDelBuffer(m_sLData);
  m_sLData = text;
  return Gcad::eOk;
}

ErrorStatus CKel_VL::readCountedText(GcDbDwgFiler* filer) {
  uint32_t bytes = 0;
  ErrorStatus status = filer->readUInt32(&bytes);
  if (status != Gcad::eOk) {
    modulelog::error(GC_T("CKel_VL::dwgInFields Blad podczas odczytu liczby bajtow!"));
    return status;
  }
  modulelog::debugf(GC_T("CKel_VL::dwgInFields Odczytano liczbe bajtow=%d"), static_cast<int>(bytes));
  if (bytes == 0) return Gcad::eOk;  // Deliberate: an earlier text stays

  // A whole unit and a terminator behind the data, also behind an odd count of bytes.
  const std::size_t size = std::size_t{bytes} + 4;
  auto* buffer = static_cast<char*>(gcHeapAlloc(size));
  status = buffer != nullptr ? filer->readBytes(buffer, bytes) : Gcad::eOutOfMemory;
  if (status != Gcad::eOk) {
    modulelog::error(GC_T("CKel_VL::dwgInFields Blad podczas odczytu danych!"));
    gcHeapFree(buffer);
    return status;
  }
  for (std::size_t i = bytes; i < size; ++i) buffer[i] = 0;
  ignore(setLData(reinterpret_cast<const GCHAR*>(buffer)));
  gcHeapFree(buffer);
  return Gcad::eOk;
}

// ---- DXF -------------------------------------------------------------------------------------------------

ErrorStatus CKel_VL::dxfOutFields(GcDbDxfFiler* filer) const {
  modulelog::debug(GC_T("CKel_VL::dxfOutFields Start"));
  assertReadEnabled();
  ErrorStatus status = GcDbObject::dxfOutFields(filer);
  if (status != Gcad::eOk) return status;
  status = filer->writeString(100, kClassName);
  if (status != Gcad::eOk) return status;
  status = filer->writeUInt32(90, kCurrentVersionNumber);
  if (status != Gcad::eOk) return status;
  // Deliberate: one group however long the text is, and its status is not looked at.
  ignore(filer->writeString(300, m_sLData != nullptr ? m_sLData : GC_T("")));
  const Size size(m_sLData);
  modulelog::debugf(GC_T("CKel_VL::dxfOutFields m_sLData len=%d, size=%d, filerStatus=%d"), size.length, size.bytes,
                    static_cast<int>(filer->filerStatus()));
  modulelog::debug(GC_T("CKel_VL::dxfOutFields End"));
  return filer->filerStatus();
}

namespace {

// One group read from a filer; releases the group's text.
class ReadGroup {
 public:
  explicit ReadGroup(GcDbDxfFiler* filer) : m_item(gcutNewRb(RTNONE)) {
    m_status = m_item != nullptr ? filer->readResBuf(m_item) : Gcad::eOutOfMemory;
  }
  ReadGroup(const ReadGroup&) = delete;
  ReadGroup& operator=(const ReadGroup&) = delete;
  ~ReadGroup() { gcutRelRb(m_item); }
  [[nodiscard]] ErrorStatus status() const { return m_status; }
  [[nodiscard]] int code() const { return m_item->restype; }
  [[nodiscard]] const GCHAR* text() const { return m_item->resval.rstring; }
  [[nodiscard]] int32_t integer() const { return m_item->resval.rlong; }

 private:
  resbuf* m_item;
  ErrorStatus m_status;
};

}  // namespace

ErrorStatus CKel_VL::dxfInFields(GcDbDxfFiler* filer) {
  modulelog::debug(GC_T("CKel_VL::dxfInFields Start"));
  assertWriteEnabled(true, true);
  if (GcDbObject::dxfInFields(filer) != Gcad::eOk || !filer->atSubclassData(kClassName)) return filer->filerStatus();

  uint32_t version = 0;
  {
    const ReadGroup group(filer);
    if (group.status() != Gcad::eOk || group.code() != 90) {
      if (group.status() == Gcad::eOk) ignore(filer->pushBackItem());
      ignore(filer->setError(Gcad::eInvalidDxfCode, GC_T("\nError: expected group code %d (version #)"), 90));
      return filer->filerStatus();
    }
    version = static_cast<uint32_t>(group.integer());
  }
  if (version > kCurrentVersionNumber) return Gcad::eMakeMeProxy;

  const ErrorStatus status = readTextGroups(filer, version);
  const Size size(m_sLData);
  // Deliberate: reading logs the text of writing.
  modulelog::debugf(GC_T("CKel_VL::dxfOutFields m_sLData len=%d, size=%d, filerStatus=%d"), size.length, size.bytes,
                    static_cast<int>(filer->filerStatus()));
  if (status != Gcad::eEndOfFile) return Gcad::eInvalidResBuf;
  modulelog::debug(GC_T("CKel_VL::dxfInFields End"));
  return filer->filerStatus();
}

// Up to the first group of another code, which goes back: eEndOfFile, as at the end of the object's groups.
// The last of several texts stays; version 0 keeps none.
ErrorStatus CKel_VL::readTextGroups(GcDbDxfFiler* filer, uint32_t version) {
  for (;;) {
    const ReadGroup group(filer);
    if (group.status() != Gcad::eOk) return group.status();
    if (group.code() != 300) {
      ignore(filer->pushBackItem());
      return Gcad::eEndOfFile;
    }
    if (version == 1 || version == 2) ignore(setLData(group.text()));
  }
}
