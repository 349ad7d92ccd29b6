// Recorded changes of one database: undo and redo in groups with marks. Off until switched on.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "cm/color.h"
#include "db/objectid.h"
#include "host/db/describe/group.h"

class GcDbUndo {
 public:
  explicit GcDbUndo(GcDbDatabase& database) : m_database(database) {}

  [[nodiscard]] bool isOn() const { return m_on; }
  void setOn(bool on);  // switching off forgets everything
  // True while recorded states are put back: objects may then be changed without being open.
  [[nodiscard]] bool isApplying() const { return m_applying; }

  // Nothing is recorded while one lives: a save completes what it writes, which is no change of the drawing.
  class Pause {
   public:
    explicit Pause(GcDbUndo& undo) : m_undo(undo) { ++m_undo.m_paused; }
    ~Pause() { --m_undo.m_paused; }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;

   private:
    GcDbUndo& m_undo;
  };

  // A group is what one U takes back: a command, a top-level LISP form. Groups nest; the outermost counts.
  void beginGroup();
  void endGroup();
  void setMark();  // Back goes to here

  // Takes back (or puts back) up to `groups` groups; the number done. Objects must be closed.
  int undo(int groups);
  int redo(int groups);
  // Back to the last mark, or to the beginning when there is none (then false).
  bool back();
  [[nodiscard]] int undoable() const { return static_cast<int>(m_done.size()); }
  [[nodiscard]] int marks() const;
  // Something has been recorded since the drawing was opened or saved last, whether or not recording is on.
  [[nodiscard]] bool isChanged() const { return m_changed; }
  void setSaved() { m_changed = false; }
  [[nodiscard]] int redoable() const { return static_cast<int>(m_undone.size()); }

  // Transactions record whether or not recording is on. The number says where changes stood at the start; an
  // abort takes back what has come since, without a redo.
  size_t beginTransaction();
  void endTransaction();
  void abortTransaction(size_t start);

  // Called by objects: before the first change of an open, after an append, before an erase.
  void recordModified(const GcDbObject& object);
  void recordAppended(const GcDbObject& object);
  void recordErased(const GcDbObject& object, bool erasing);
  // Before an object of another class takes the object's place under its id.
  void recordReplaced(const GcDbObject& object);
  // Before another layout is shown.
  void recordLayout();
  // Before a variable of the header changes, and before a current setting of the database does.
  void recordSetting(GcView name);
  void recordCurrent();

 private:
  // ModelShown, SheetShown: the layout shown before was model space, or the sheet; the id is the block of the sheet.
  enum class What : uint8_t {
    Modified,
    Appended,
    Unappended,
    Erased,
    Unerased,
    Replaced,
    ModelShown,
    SheetShown,
    Setting,
    Current
  };
  // A variable of the header as it was, and where it stood; absent when there was none.
  struct Setting {
    GcText name;
    GcDbGroupList groups;
    size_t place = 0;
    bool present = false;
  };
  // What new entities get, as it was.
  struct Current {
    GcDbObjectId layer, linetype, textStyle, dimStyle;
    GcCmColor color;
    double linetypeScale = 1;
    GcDb::LineWeight lineWeight = GcDb::kLnWtByLayer;
  };
  struct State {
    What what;
    std::vector<uint8_t> image{};     // Modified, Replaced: the state before
    const GcRxClass* kind = nullptr;  // Replaced: its class
    std::unique_ptr<const Setting> setting{};
    std::unique_ptr<const Current> current{};
  };
  // The states without an image are there once for all changes.
  struct Release {
    void operator()(const State* state) const {
      if (!state->image.empty() || state->kind != nullptr || state->setting || state->current) delete state;
    }
  };
  // Small, since a program that draws a million lines leaves a million of them.
  struct Change {
    GcDbObjectId id;
    std::unique_ptr<const State, Release> state;
  };
  // Where the handles of the database stood: the next one, and how many there are.
  struct Seed {
    uint64_t next = 0;
    size_t made = 0;
  };
  struct Group {
    std::vector<Change> changes;
    Seed seed;  // before the first change
    bool mark = false;
  };

  void record(What what, const GcDbObject& object);
  static Change change(What what, GcDbObjectId id);           // without an image
  static Change change(What what, const GcDbObject& object);  // with its state now
  void record(Change made);
  [[nodiscard]] Change layoutNow() const;
  [[nodiscard]] Change settingNow(GcView name) const;
  [[nodiscard]] Change currentNow() const;
  void showCurrent(const Current& current);
  [[nodiscard]] Seed seedNow() const;
  [[nodiscard]] Seed seedBefore(const Change& change) const;
  [[nodiscard]] bool isRecording() const { return m_paused == 0 && (m_on || !m_openSeeds.empty()); }
  void showLayout(const Change& change);
  void keep(Change change);
  // Applies a group backwards; returns the group that takes this back again.
  Group apply(const Group& group);
  void applyOne(const Change& change, Group& inverse);
  void putBack(const Change& change, Group& inverse);  // Replaced

  GcDbDatabase& m_database;
  std::vector<Group> m_done;
  std::vector<Group> m_undone;
  std::vector<Change> m_open;     // of the transactions under way
  std::vector<Seed> m_openSeeds;  // where each transaction began
  Seed m_groupSeed;
  int m_depth = 0;
  int m_paused = 0;
  bool m_on = false;
  bool m_applying = false;
  bool m_fresh = false;  // the group has been begun but has no change yet
  bool m_mark = false;
  bool m_changed = false;
};
