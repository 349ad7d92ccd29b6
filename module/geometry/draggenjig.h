// A jig that drags a selection set by a transformation that a callback computes from the cursor. The entities stay as
// they are: only a picture of them moves.
#pragma once

#include "module/app/host.h"

// Computes the transformation from the point under the cursor (user coordinates); RTNORM goes on with the drag.
using DragTransform = int (*)(gds_point point, double matrix[4][4]);

class AsdkDragGenJig final : public GcEdJig {
 public:
  AsdkDragGenJig();

  // All of these give RTNORM, or RTERROR when the drag cannot be run.
  int setTransform(DragTransform transform);
  int setCursor(int cursor);  // 0, 1 or 2
  int setSelectionSet(const gds_name set);
  int setPrompt(const GCHAR* prompt);
  void setKeywords(const GCHAR* keywords);

  // Runs the drag. RTNORM with the point picked (user coordinates), RTKWORD, or an error.
  int run(gds_point picked);

  DragStatus sampler() override;
  // The drawable reads the current transformation itself.
  bool update() override { return true; }
  [[nodiscard]] GcDbEntity* entity() const override { return &m_drawable; }

  // The keyword that ended the last drag of the module; stays until the next keyword.
  static const GcString& lastKeyword();

 private:
  // The picture of the selection set.
  class SelectionSet final : public GcDbEntity {
   public:
    explicit SelectionSet(const AsdkDragGenJig& jig) : m_jig(jig) {}
    uint32_t subSetAttributes(GcGiDrawableTraits* traits) override;
    bool subWorldDraw(GcGiWorldDraw* draw) override;

   private:
    const AsdkDragGenJig& m_jig;
  };

  static constexpr int kMostKeywords = 31;
  static constexpr int kLastKeywordStatus = 30;

  DragTransform m_transform = nullptr;
  CursorType m_specialCursor = kNoSpecialCursor;
  GcGePoint3d m_lastPoint;  // world coordinates
  GcString m_keywordList;
  GcString m_keywords[kMostKeywords];
  GcString m_keyword;  // the one that was typed
  GcDbObjectIdArray m_entities;
  GcGeMatrix3d m_matrix;
  mutable SelectionSet m_drawable;
};
