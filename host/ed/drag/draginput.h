// What a person does during a drag, as lines of input:
//
//   move X,Y[,Z]   the cursor moves          key WORD   types a keyword, or a point
//   pick X,Y[,Z]   it clicks                 enter, esc
//
// Any other line is what was typed. Coordinates are user coordinates. At the end of input the answer is Esc.
#pragma once

#include "host/ed/editor.h"

namespace ed {

struct DragQuestion {
  GcText prompt;
  GcText keywords;         // separated by blanks, commas, tabs, line ends
  bool mayBeEmpty = true;  // Enter is an answer
  bool flat = false;       // points lie at the elevation, whatever their Z
};

struct DragAnswer {
  enum class Kind : uint8_t { Moved, Picked, Keyword, Empty, Cancelled };
  Kind kind = Kind::Cancelled;
  GcGePoint3d point;  // Moved, Picked: user coordinates
  int keyword = 0;    // Keyword: its number from 1
  GcText word;        // Keyword: as the list spells it
};

// Shows the prompt; asked once, before the first answer.
void beginDrag(const DragQuestion& question);
// The next thing that happens. What is no answer is complained about and passed over.
DragAnswer nextDragAnswer(Editor& editor, const DragQuestion& question);

// While one lives, a drag is under way. `begun` is false when another one was already.
class DragGuard {
 public:
  DragGuard();
  ~DragGuard();
  DragGuard(const DragGuard&) = delete;
  DragGuard& operator=(const DragGuard&) = delete;
  [[nodiscard]] bool begun() const { return m_begun; }

 private:
  bool m_begun;
};

}  // namespace ed
