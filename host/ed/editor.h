// The editor's state of one document: what belongs to neither the drawing nor LISP.
#pragma once

#include <memory>

#include "db/entity.h"
#include "db/layoutmanager.h"
#include "host/ap/document.h"
#include "host/ed/editorview.h"
#include "host/ed/editorwatcher.h"
#include "host/ed/selectionsets.h"
#include "host/ed/variables/variables.h"

namespace ed {

class CommandLine;

class Editor final : public ap::DocumentPart, private GcDbLayoutManagerReactor {
 public:
  explicit Editor(ap::Document& document);
  ~Editor() override;

  [[nodiscard]] ap::Document& document() const { return m_document; }
  [[nodiscard]] GcDbDatabase& database() const { return *m_document.database(); }
  [[nodiscard]] CommandLine& commandLine() const { return *m_commandLine; }

  SelectionSets& sets() { return m_sets; }
  HeldSet& previousSet() { return m_previousSet; }  // what the last selection of a command was
  HeldSet& pickedSet() { return m_pickedSet; }      // chosen before a command

  // What DBMOD tells: bits 1 objects, 4 variables of the drawing, 16 view, changed since it was opened or saved.
  [[nodiscard]] int changedBits() const;
  void variableChanged() { m_variableChanged = true; }
  void drawingSaved();

  SessionValues& sessionValues() { return m_sessionValues; }
  EditorWatchers& watchers() { return m_watchers; }
  int errorNumber = 0;  // the variable ERRNO
  static constexpr int kMissedPick = 7;
  static constexpr int kEnterPressed = 52;

  // ---- spaces: the layout shown, and within a paper layout the viewport that is worked in
  [[nodiscard]] GcText layout() const;
  [[nodiscard]] GcText lastPaperLayout() const;
  bool setLayout(GcView name);  // false when the drawing has none of this name
  [[nodiscard]] bool inPaperLayout() const;
  [[nodiscard]] bool inPaperSpace() const;  // paper itself, not model space through a viewport
  [[nodiscard]] int viewportNumber() const;
  bool setViewportNumber(int number);                     // false when the layout has no such viewport that is on
  bool workIn(GcDbObjectId viewport);                     // the same by the viewport itself
  [[nodiscard]] GcDbObjectId currentSpace() const;        // the block new entities go to
  [[nodiscard]] GcDbExtents spaceExtents() const;         // of all entities of the current space
  [[nodiscard]] std::vector<GcText> layoutNames() const;  // paper layouts, in the order of their tabs

  EditorView& view() { return m_view; }
  [[nodiscard]] const EditorView& view() const { return m_view; }
  std::vector<EditorView>& earlierViews() { return m_earlierViews; }
  std::vector<GcGeMatrix3d>& earlierUcs() { return m_earlierUcs; }  // to world, newest last

  [[nodiscard]] int commandActive() const;  // bits of CMDACTIVE
  [[nodiscard]] GcText commandNames() const;

  // What the next input function is asked for (initget); used once.
  struct InputRules {
    int bits = 0;
    GcText keywords;
  };
  InputRules inputRules;
  GcText lastKeyword;
  int walkHint = 0;                             // where the last walk through a space stood
  std::vector<GcDbObjectId> layersSwitchedOff;  // by the last isolation of layers
  std::vector<GcDbObjectId> lastErased;         // by the last ERASE
  std::vector<GcText> undefinedCommands;        // answer only behind a dot

 private:
  void layoutSwitched(GcDbDatabase* database, const GCHAR* newLayout) override;

  ap::Document& m_document;
  SelectionSets m_sets;
  HeldSet m_previousSet{m_sets};
  HeldSet m_pickedSet{m_sets};
  SessionValues m_sessionValues;
  EditorWatchers m_watchers;
  EditorView m_view;
  EditorView m_savedView;
  bool m_variableChanged = false;
  std::vector<EditorView> m_earlierViews;
  std::vector<GcGeMatrix3d> m_earlierUcs;
  int m_paperViewport = 1;
  std::unique_ptr<CommandLine> m_commandLine;
};

// The editor of a document, and of the current one (which must exist).
Editor& editorOf(const ap::Document& document);
Editor& currentEditor();

}  // namespace ed
