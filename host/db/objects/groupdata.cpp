#include "db/groupdata.h"

#include "db/filer.h"
#include "host/db/core/xdata.h"
#include "host/db/describe/classinfo.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbGroupData, "vlo_VL")

GcDbGroupData::GcDbGroupData() : m_groups(new GcDbGroupList) {}
GcDbGroupData::~GcDbGroupData() { delete m_groups; }

Gcad::ErrorStatus GcDbGroupData::dwgInFields(GcDbDwgFiler* filer) {
  assertWriteEnabled();
  gcdbReadGroups(*m_groups, *filer);
  return filer->filerStatus();
}

Gcad::ErrorStatus GcDbGroupData::dwgOutFields(GcDbDwgFiler* filer) const {
  assertReadEnabled();
  gcdbWriteGroups(*m_groups, *filer);
  return filer->filerStatus();
}

Gcad::ErrorStatus GcDbGroupData::dxfInFields(GcDbDxfFiler* filer) {
  assertWriteEnabled();
  m_groups->clear();
  for (;;) {
    resbuf* node = gcutNewRb(RTNIL);
    const Gcad::ErrorStatus status = filer->readResBuf(node);
    GcDbGroup group;
    if (status == Gcad::eOk && gcdbRbToGroup(*node, group)) m_groups->put(group);
    gcutRelRb(node);
    if (status != Gcad::eOk) return status == Gcad::eEndOfFile ? Gcad::eOk : status;
  }
}

Gcad::ErrorStatus GcDbGroupData::dxfOutFields(GcDbDxfFiler* filer) const {
  assertReadEnabled();
  GcDbGroupList::Cursor cursor(*m_groups);
  for (GcDbGroup group; cursor.next(group);) {
    const Gcad::ErrorStatus status = gcdbWriteGroup(*filer, group);
    if (status != Gcad::eOk) return status;
  }
  return filer->filerStatus();
}
