// The layouts of drawings: making, renaming, finding them, and which one is shown. For a null database the working one
// is meant. Names are compared without regard to case; "Model" is the layout of model space and stays.
#pragma once

#include "db/objectid.h"
#include "rx/gcstring.h"

class GcDbLayoutManager;

// Who shows layouts (tabs, views) hears of what happens to them.
class GcDbLayoutManagerReactor {
 public:
  virtual ~GcDbLayoutManagerReactor() = default;
  virtual void layoutSwitched(GcDbDatabase* database, const GCHAR* newLayout);
  virtual void layoutTabsUpdated(GcDbDatabase* database);
};

class GcDbLayoutManager {
 public:
  GcDbLayoutManager() = default;
  GcDbLayoutManager(const GcDbLayoutManager&) = delete;
  GcDbLayoutManager& operator=(const GcDbLayoutManager&) = delete;

  // The layout that is shown. With `allowModel` false the paper layout that is shown or was last.
  [[nodiscard]] GcDbObjectId findActiveLayout(bool allowModel = true, const GcDbDatabase* database = nullptr) const;
  [[nodiscard]] GcString getActiveLayoutName(bool allowModel = true, const GcDbDatabase* database = nullptr) const;
  // Null when there is none of the name.
  [[nodiscard]] GcDbObjectId findLayoutNamed(const GCHAR* name, const GcDbDatabase* database = nullptr) const;

  // Shows a layout: its block becomes "*Paper_Space", the former one takes the name it had.
  // Errors: eKeyNotFound.
  Gcad::ErrorStatus setCurrentLayout(const GCHAR* name, GcDbDatabase* database = nullptr);
  // A sheet with paper and a block of its own; its tab comes last. The viewport that stands for the sheet is made when
  // the layout is shown for the first time.
  // Errors: eInvalidInput for an empty name or one with letters that names cannot have, eDuplicateRecordName.
  Gcad::ErrorStatus createLayout(const GCHAR* name, GcDbObjectId& layoutId, GcDbObjectId& blockId,
                                 GcDbDatabase* database = nullptr);
  // Errors: eKeyNotFound, eInvalidInput (also for "Model"), eDuplicateRecordName.
  Gcad::ErrorStatus renameLayout(const GCHAR* oldName, const GCHAR* newName, GcDbDatabase* database = nullptr);
  // With its block and all that is in it. The current one gives way to model space.
  // Errors: eKeyNotFound, eCannotBeErasedByCaller for "Model".
  Gcad::ErrorStatus deleteLayout(const GCHAR* name, GcDbDatabase* database = nullptr);
  // "Layout" and the first number no layout has.
  [[nodiscard]] GcString getNextNewLayoutName(const GcDbDatabase* database = nullptr) const;
  [[nodiscard]] int countLayouts(const GcDbDatabase* database = nullptr) const;
  void updateLayoutTabs(GcDbDatabase* database = nullptr);

  void addReactor(GcDbLayoutManagerReactor* reactor);
  void removeReactor(GcDbLayoutManagerReactor* reactor);

 private:
  GcArray<GcDbLayoutManagerReactor*> m_reactors;
};
