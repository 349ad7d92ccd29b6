// Layouts: model space and the sheets of paper, each with its block, its plot settings and its tab.
#pragma once

#include "db/plotsettings.h"

class GcDbLayout : public GcDbPlotSettings {
 public:
  GCRX_DECLARE_MEMBERS(GcDbLayout);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbLayout() = default;

  [[nodiscard]] const GcString& getLayoutName() const { return m_name; }
  Gcad::ErrorStatus getLayoutName(GcString& name) const;
  // For a layout of a drawing use the layout manager's renameLayout, which renames its dictionary entry as well.
  Gcad::ErrorStatus setLayoutName(const GCHAR* name) { return assign(m_name, GcString(name)); }
  [[nodiscard]] GcDbObjectId getBlockTableRecordId() const { return m_blockId; }
  Gcad::ErrorStatus setBlockTableRecordId(GcDbObjectId block) { return assign(m_blockId, block); }
  [[nodiscard]] int getTabOrder() const { return m_tabOrder; }
  Gcad::ErrorStatus setTabOrder(int order) { return assign(m_tabOrder, order); }
  void getLimits(GcGePoint2d& min, GcGePoint2d& max) const;
  Gcad::ErrorStatus setLimits(const GcGePoint2d& min, const GcGePoint2d& max);
  void getExtents(GcGePoint3d& min, GcGePoint3d& max) const;
  // The viewport that was worked in last; null for none.
  [[nodiscard]] GcDbObjectId lastActiveViewport() const { return m_lastViewportId; }
  Gcad::ErrorStatus setLastActiveViewport(GcDbObjectId id) { return assign(m_lastViewportId, id); }
  // The layout's viewports in the order in which they came, the sheet's own first. Empty for model space.
  [[nodiscard]] GcDbObjectIdArray getViewportArray() const;

 private:
  GcString m_name;
  GcDbObjectId m_blockId;
  GcDbObjectId m_lastViewportId;
  GcDbObjectId m_ucsId;
  GcDbObjectId m_ucsBaseId;
  GcGePoint2d m_limitsMin;
  GcGePoint2d m_limitsMax{420, 297};
  GcGePoint3d m_insertionBase;
  GcGePoint3d m_extentsMin{1e20, 1e20, 1e20};
  GcGePoint3d m_extentsMax{-1e20, -1e20, -1e20};
  GcGePoint3d m_ucsOrigin;
  GcGeVector3d m_ucsXAxis = GcGeVector3d::kXAxis;
  GcGeVector3d m_ucsYAxis = GcGeVector3d::kYAxis;
  double m_ucsElevation = 0;
  int32_t m_tabOrder = 0;
  int16_t m_flags = 1;
  int16_t m_ucsOrthoView = 0;
};
