// Drags in which a program decides what moves: a class derived from GcEdJig samples the cursor and shows an entity.
//
//   drag() asks sampler() again and again; sampler() gets the cursor with acquirePoint() and answers whether anything
//   changed. After a change update() brings the entity up to date and entity() is drawn anew. The drag ends with a
//   click, a keyword, Enter, Esc, or a status of the sampler that ends it.
//
// One drag at a time. Main thread only.
#pragma once

#include "db/entity.h"
#include "rx/gcstring.h"

struct GcEdJigDrag;  // the host's side of a running drag

class GcEdJig : public GcRxObject {
 public:
  GCRX_DECLARE_MEMBERS(GcEdJig);

  // What a sampler and a whole drag answer. 1, 2, 3 … is the keyword of that number.
  enum DragStatus : int {
    kNoChange = -6,  // the cursor moved by nothing that matters: no redraw
    kCancel = -4,    // Esc, or the sampler gave up
    kOther = -3,     // something else went wrong
    kNull = -1,      // Enter
    kNormal = 0,
    kKW1 = 1,
  };
  // How a point may be given; bits.
  enum UserInputControls : int {
    kNullResponseAccepted = 0x02,  // Enter ends the drag (kNull); without it Enter is passed over
    kAccept3dCoordinates = 0x80,   // without it the point's user Z is the elevation
  };
  // The look of the cursor while it is dragged, by the screen's own numbers.
  using CursorType = int;
  static constexpr CursorType kNoSpecialCursor = -1;

  GcEdJig();
  ~GcEdJig() override;
  GcEdJig(const GcEdJig&) = delete;
  GcEdJig& operator=(const GcEdJig&) = delete;

  // Runs the drag. kNormal after a click; kOther when another drag is under way or the sampler acquires nothing.
  DragStatus drag();

  virtual DragStatus sampler();
  virtual bool update();                             // true: draw entity() anew
  [[nodiscard]] virtual GcDbEntity* entity() const;  // stays the jig's

  // For sampler(): the cursor in world coordinates, seen from a base point or not. kNormal with the point, a keyword's
  // number, kNull, kCancel; kOther outside a drag. The point is untouched unless kNormal.
  DragStatus acquirePoint(GcGePoint3d& point);
  DragStatus acquirePoint(GcGePoint3d& point, const GcGePoint3d& base);

  [[nodiscard]] const GCHAR* dispPrompt() const { return m_prompt.c_str(); }
  void setDispPrompt(const GCHAR* prompt) { m_prompt = prompt != nullptr ? prompt : GC_T(""); }
  // Words between blanks, commas, tabs or line ends, numbered from 1. Their capitals are what must be typed at least.
  [[nodiscard]] const GCHAR* keywordList() const { return m_keywords.c_str(); }
  void setKeywordList(const GCHAR* keywords) { m_keywords = keywords != nullptr ? keywords : GC_T(""); }
  [[nodiscard]] CursorType specialCursorType() const { return m_cursor; }
  void setSpecialCursorType(CursorType cursor) { m_cursor = cursor; }
  [[nodiscard]] int userInputControls() const { return m_controls; }
  void setUserInputControls(int controls) { m_controls = controls; }

 private:
  friend struct GcEdJigDrag;
  GcString m_prompt;
  GcString m_keywords;
  CursorType m_cursor = kNoSpecialCursor;
  int m_controls = 0;
  GcEdJigDrag* m_drag = nullptr;  // null outside drag()
};
