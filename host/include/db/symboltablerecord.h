// The root of named records. Names are compared without regard to case.
#pragma once

#include "db/object.h"
#include "rx/gcstring.h"

struct GcDbField;

class GcDbSymbolTableRecord : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbSymbolTableRecord);
  static const GcDbField kFields[];
  static const int kFieldCount;

  [[nodiscard]] const GcString& getName() const { return m_name; }
  Gcad::ErrorStatus getName(GcString& name) const;
  // A fresh copy for the caller, freed with gcutDelBuffer.
  Gcad::ErrorStatus getName(GCHAR*& name) const;
  // Renames. Errors: eInvalidInput (characters a name may not have), eDuplicateRecordName.
  Gcad::ErrorStatus setName(const GCHAR* name);
  [[nodiscard]] bool isDependent() const { return (m_flags & 16) != 0; }

  // Called when the record joins its table: gives fields that need a database their defaults.
  virtual void subJoined();
  // For cloning: the name a copy was entered under, put back after its fields were filed.
  void keepName(const GcString& name) { m_name = name; }
  [[nodiscard]] int16_t flags() const { return m_flags; }
  Gcad::ErrorStatus setFlags(int16_t flags);

 protected:
  GcDbSymbolTableRecord() = default;
  GcString m_name;
  int16_t m_flags = 0;  // group 70: the bits of each kind of record

 private:
  friend class GcDbLoader;
  friend class GcDbSymbolTable;
};
