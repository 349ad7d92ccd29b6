// One named value of a LISP program, kept in the drawing as one text.
//
// Lives in dictionaries (named or extension) and files itself in DWG and DXF under the name "KEL_VL":
//   DWG: fields of GcDbObject, version (UInt32), count of bytes (UInt32), the UTF-16LE units without terminator.
//        Version 1 has one filer string behind the version instead.
//   DXF: groups of GcDbObject, 100 "CKel_VL", 90 version, 300 the whole text.
// A record of a newer version stays a proxy (eMakeMeProxy). Every member logs on the module's logger.
#pragma once

#include "module/app/host.h"

#ifdef _WIN32
#define VRK_EXPORT __declspec(dllexport)
#else
#define VRK_EXPORT
#endif

class VRK_EXPORT CKel_VL : public GcDbObject {
 public:
  CKel_VL();
  // Deliberate: the text is not released; it stays allocated when the object goes.
  ~CKel_VL() override;

  static GcRxClass* desc();
  static const GCHAR* className();
  static CKel_VL* cast(const GcRxObject* object);
  [[nodiscard]] GcRxClass* isA() const override;

  // Registers the class. Stops the process when another class holds the name. The second form passes a function
  // to be told when the application name changes.
  static void rxInit();
  static void rxInit(GcRxAppNameChange appNameChange);

  // The text itself, not a copy; null when there is none. Always eOk.  [open for read]
  Gcad::ErrorStatus getLData(const GCHAR*& lData) const;
  // Keeps a copy. Errors: eOutOfMemory (there is no text afterwards).  [open for write]
  Gcad::ErrorStatus setLData(const GCHAR* lData);

  Gcad::ErrorStatus dwgInFields(GcDbDwgFiler* filer) override;
  Gcad::ErrorStatus dwgOutFields(GcDbDwgFiler* filer) const override;
  Gcad::ErrorStatus dxfInFields(GcDbDxfFiler* filer) override;
  Gcad::ErrorStatus dxfOutFields(GcDbDxfFiler* filer) const override;

 private:
  Gcad::ErrorStatus readOldText(GcDbDwgFiler* filer);
  Gcad::ErrorStatus readCountedText(GcDbDwgFiler* filer);
  Gcad::ErrorStatus readTextGroups(GcDbDxfFiler* filer, uint32_t version);

  static const uint32_t kCurrentVersionNumber;
  static GcRxClass* gpDesc;

  GCHAR* m_sLData = nullptr;  // of gcutNewString; null: no text
};
