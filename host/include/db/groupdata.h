// A built-in data class whose objects keep the groups they came with, in order, for programs that read them
// through entity lists. Run-time class "vlo_VL", DXF name "VLO-VL".
#pragma once

#include "db/object.h"

class GcDbGroupList;

class GcDbGroupData : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbGroupData);
  GcDbGroupData();
  ~GcDbGroupData() override;

  // The groups behind the common ones, subclass markers included.
  [[nodiscard]] GcDbGroupList& groups() const { return *m_groups; }

  Gcad::ErrorStatus dwgInFields(GcDbDwgFiler* filer) override;
  Gcad::ErrorStatus dwgOutFields(GcDbDwgFiler* filer) const override;
  Gcad::ErrorStatus dxfInFields(GcDbDxfFiler* filer) override;
  Gcad::ErrorStatus dxfOutFields(GcDbDxfFiler* filer) const override;

 private:
  GcDbGroupList* m_groups;
};

// Leaves a built-in class out of the registry, so that its objects load as zombies. Only before the first
// database is made; later calls change nothing. `name` is the run-time name.
void gcdbLeaveClassOut(const GCHAR* name);
