// Named things: purged, renamed; views and dimension styles kept and brought back.
#include "host/ed/records.h"
#include "db/dimension.h"
#include "db/dimstyle.h"
#include "db/line.h"
#include "db/mtext.h"
#include "db/text.h"
#include "db/view.h"
#include "host/db/core/header.h"
#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"
#include "host/ed/append.h"
#include "host/ed/command/families.h"
#include "host/ed/command/select.h"
#include "host/ed/coordinates.h"
#include "host/ed/patterns.h"
#include "host/ed/purge.h"
#include "host/ed/views.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;
using Table = GcDbDatabase::Table;

// ---- -PURGE

struct Purgeable {
  const char* word;
  const char* kind;
  Table table;
};
constexpr Purgeable kPurgeable[] = {
    {"Blocks", "block", GcDbDatabase::kBlocks},
    {"Dimstyles", "dimension style", GcDbDatabase::kDimStyles},
    {"LAyers", "layer", GcDbDatabase::kLayers},
    {"LTypes", "linetype", GcDbDatabase::kLinetypes},
    {"textSTyles", "text style", GcDbDatabase::kTextStyles},
    {"Regapps", "registered application", GcDbDatabase::kRegApps},
};

Task<int> purgeTable(CommandInput& in, const Purgeable& which, const GcText& pattern, bool verify) {
  int purged = 0;
  for (const GcDbObjectId id : unusedRecords(in.editor(), which.table)) {
    const GcText name = nameOfRecord(id);
    if (!matchesName(name, pattern)) continue;
    if (verify) {
      Ask ask(What::Keyword, "");
      ask.prompt = gc::fromUtf8("\nPurge " + std::string(which.kind) + " \"") + name + GC_T("\"? <N> ");
      const Answer answer = co_await in.ask(ask.words("Yes No"));
      if (!answer.isKeyword("Yes")) continue;
    }
    eraseRecord(id);
    ++purged;
  }
  co_return purged;
}

// Lines without length, texts without letters.
int purgeEntities(Editor& editor, bool texts) {
  GcDbBlockTable* blocks = nullptr;
  std::vector<GcDbObjectId> empty;
  if (editor.database().getSymbolTable(blocks, GcDb::kForRead) != Gcad::eOk) return 0;
  for (const GcDbObjectId blockId : blocks->records()) {
    GcDbBlockTableRecord* block = nullptr;
    if (gcdbOpenObject(block, blockId, GcDb::kForRead) != Gcad::eOk) continue;
    for (const GcDbObjectId id : block->entities()) {
      if (!id.isValid() || id.isErased()) continue;
      const GcDbObject* object = id.stub()->object;
      const auto* line = GcDbLine::cast(object);
      const auto* text = GcDbText::cast(object);
      const auto* paragraph = GcDbMText::cast(object);
      if (!texts && line != nullptr && line->startPoint() == line->endPoint()) empty.push_back(id);
      if (texts && text != nullptr && text->isA() == GcDbText::desc() && text->textString().isEmpty())
        empty.push_back(id);
      if (texts && paragraph != nullptr && paragraph->contents().isEmpty()) empty.push_back(id);
    }
    ignore(block->close());
  }
  ignore(blocks->close());
  for (const GcDbObjectId id : empty) eraseEntity(id);
  return static_cast<int>(empty.size());
}

Task<bool> purge(CommandInput& in) {
  const Answer what = co_await in.ask(
      Ask(What::Keyword,
          "\nEnter type of unused objects to purge [Blocks/Dimstyles/Groups/LAyers/LTypes/MAterials/Plotstyles/SHapes/"
          "textSTyles/Mlinestyles/Tablestyles/Visualstyles/Regapps/Zero-length geometry/Empty text objects/Orphaned "
          "data/All]: ")
          .words("Blocks Dimstyles Groups LAyers LTypes MAterials Plotstyles SHapes textSTyles Mlinestyles Tablestyles "
                 "Visualstyles Regapps Zero Empty Orphaned All"));
  if (what.kind != Answer::Kind::Keyword) co_return false;
  if (what.isKeyword("Zero") || what.isKeyword("Empty"))
    co_return purgeEntities(in.editor(), what.isKeyword("Empty")) >= 0;
  if (what.isKeyword("Orphaned")) co_return true;
  const Answer names = co_await in.ask(Ask(What::Line, "\nEnter name(s) to purge <*>: "));
  const Answer verify =
      co_await in.ask(Ask(What::Keyword, "\nVerify each name to be purged? [Yes/No] <Y>: ").words("Yes No"));
  const GcText pattern = names.text.empty() ? GcText(GC_T("*")) : names.text;
  int total = 0;
  // What only a purged block used can go after it.
  for (bool again = true; again;) {
    int purged = 0;
    for (const Purgeable& each : kPurgeable)
      if (what.isKeyword("All") || what.isKeyword(each.word))
        purged += co_await purgeTable(in, each, pattern, !verify.isKeyword("No"));
    total += purged;
    again = purged > 0 && what.isKeyword("All");
  }
  if (total == 0) in.tell("\nNo unreferenced objects found.\n");
  co_return true;
}

// ---- -RENAME

Task<bool> rename(CommandInput& in) {
  constexpr struct {
    const char* word;
    const GCHAR* kind;
  } kKinds[] = {{"Block", GC_T("BLOCK")}, {"Dimstyle", GC_T("DIMSTYLE")}, {"LAyer", GC_T("LAYER")},
                {"LType", GC_T("LTYPE")}, {"textStyle", GC_T("STYLE")},   {"Ucs", GC_T("UCS")},
                {"VIew", GC_T("VIEW")},   {"VPort", GC_T("VPORT")}};
  const Answer kind = co_await in.ask(
      Ask(What::Keyword, "\nEnter object type to rename [Block/Dimstyle/LAyer/LType/textStyle/Ucs/VIew/VPort]: ")
          .words("Block Dimstyle LAyer LType textStyle Ucs VIew VPort"));
  for (const auto& each : kKinds) {
    if (!kind.isKeyword(each.word)) continue;
    const Answer from = co_await in.ask(Ask(What::Line, "\nEnter old name: "));
    const GcDbObjectId id = recordNamed(tableOfKind(in.database(), each.kind), from.text);
    if (id.isNull()) {
      in.tell("\nCannot find a thing of this name.\n");
      co_return false;
    }
    const Answer to = co_await in.ask(Ask(What::Line, "\nEnter new name: "));
    GcDbSymbolTableRecord* record = nullptr;
    if (gcdbOpenObject(record, id, GcDb::kForWrite) != Gcad::eOk) co_return false;
    const bool renamed = record->setName(to.text.c_str()) == Gcad::eOk;
    ignore(record->close());
    if (!renamed) in.tell("\nInvalid name, or a thing of this name exists.\n");
    co_return renamed;
  }
  co_return false;
}

// ---- -VIEW

void fillView(GcDbViewTableRecord& record, const EditorView& view) {
  record.setCenterPoint(view.center);
  record.setHeight(view.height);
  record.setWidth(view.width());
  record.setTarget(view.target);
  record.setViewDirection(view.direction);
  record.setViewTwist(view.twistRad);
}

bool saveView(Editor& editor, const GcText& name, const EditorView& shown) {
  GcDbObjectId id = recordNamed(editor.database().viewTableId(), name);
  GcDbViewTableRecord* record = nullptr;
  if (!id.isNull()) {
    if (gcdbOpenObject(record, id, GcDb::kForWrite) != Gcad::eOk) return false;
  } else {
    GcDbViewTable* views = nullptr;
    if (editor.database().getSymbolTable(views, GcDb::kForWrite) != Gcad::eOk) return false;
    record = new GcDbViewTableRecord;
    const bool made = record->setName(name.c_str()) == Gcad::eOk && views->add(id, record) == Gcad::eOk;
    ignore(views->close());
    if (!made) {
      delete record;
      return false;
    }
  }
  fillView(*record, shown);
  constexpr int kOfPaper = 1;
  const int others = record->flags() & ~kOfPaper;
  ignore(record->setFlags(static_cast<int16_t>(editor.inPaperSpace() ? others | kOfPaper : others)));
  ignore(record->close());
  return true;
}

bool restoreView(Editor& editor, const GcText& name) {
  GcDbViewTableRecord* record = nullptr;
  const GcDbObjectId id = recordNamed(editor.database().viewTableId(), name);
  if (gcdbOpenObject(record, id, GcDb::kForRead) != Gcad::eOk) return false;
  EditorView shown = editor.view();
  shown.center = record->centerPoint();
  shown.height = record->height();
  shown.target = record->target();
  shown.direction = record->viewDirection();
  shown.twistRad = record->viewTwist();
  ignore(record->close());
  showView(editor, shown);
  return true;
}

Task<bool> orthographic(CommandInput& in) {
  const Answer side = co_await in.ask(Ask(What::Keyword, "\nEnter an option [Top/Bottom/Front/BAck/Left/Right] <Top>: ")
                                          .words("Top Bottom Front BAck Left Right"));
  GcGeVector3d direction = GcGeVector3d::kZAxis;
  if (side.isKeyword("Bottom")) direction = -GcGeVector3d::kZAxis;
  if (side.isKeyword("Front")) direction = -GcGeVector3d::kYAxis;
  if (side.isKeyword("BAck")) direction = GcGeVector3d::kYAxis;
  if (side.isKeyword("Left")) direction = -GcGeVector3d::kXAxis;
  if (side.isKeyword("Right")) direction = GcGeVector3d::kXAxis;
  in.editor().earlierViews().push_back(in.editor().view());
  in.editor().view().direction = direction;
  in.editor().view().twistRad = 0;
  zoomExtents(in.editor());
  co_return true;
}

Task<bool> viewCommand(CommandInput& in) {
  Editor& editor = in.editor();
  const Answer option =
      co_await in.ask(Ask(What::Keyword, "\nEnter an option [Delete/Orthographic/Restore/Save/Window]: ")
                          .words("Delete Orthographic Restore Save Window Top Bottom Front BAck Left Right"));
  if (option.isKeyword("Orthographic")) co_return co_await orthographic(in);
  if (option.isKeyword("Save") || option.isKeyword("Window")) {
    const Answer name = co_await in.ask(Ask(What::Line, "\nEnter view name to save: "));
    EditorView shown = editor.view();
    if (option.isKeyword("Window")) {
      const Answer a = co_await in.ask(Ask(What::Point, "\nSpecify first corner: ").needed());
      const Answer b = co_await in.ask(Ask(What::Point, "\nSpecify opposite corner: ").from(a.point).needed());
      if (!a.isPoint() || !b.isPoint()) co_return false;
      const GcGeMatrix3d toDisplay = displayToWorld(editor).inverse() * ucsToWorld(editor);
      const GcGePoint3d low = toDisplay * a.point;
      const GcGePoint3d high = toDisplay * b.point;
      shown.center = {(low.x + high.x) / 2, (low.y + high.y) / 2};
      shown.height = std::fabs(high.y - low.y);
      if (high.x != low.x && shown.height > 0) shown.aspect = std::fabs(high.x - low.x) / shown.height;
    }
    if (saveView(editor, name.text, shown)) co_return true;
    in.tell("\nInvalid view name.\n");
    co_return false;
  }
  if (option.isKeyword("Restore")) {
    const Answer name = co_await in.ask(Ask(What::Line, "\nEnter view name to restore: "));
    if (restoreView(editor, name.text)) co_return true;
    in.tell("\nCannot find the view.\n");
    co_return false;
  }
  if (option.isKeyword("Delete")) {
    const Answer name = co_await in.ask(Ask(What::Line, "\nEnter view name(s) to delete: "));
    const GcDbObjectId id = recordNamed(editor.database().viewTableId(), name.text);
    if (!id.isNull()) eraseRecord(id);
    co_return !id.isNull();
  }
  co_return false;
}

Task<bool> pan(CommandInput& in) {
  const Answer base = co_await in.ask(Ask(What::Point, "\nSpecify base point or displacement: "));
  if (!base.isPoint()) co_return false;
  const Answer second = co_await in.ask(Ask(What::Point, "\nSpecify second point: ").from(base.point));
  Editor& editor = in.editor();
  const GcGeVector3d moved = second.isPoint() ? second.point - base.point : base.point.asVector();
  const GcGeVector3d shown = displayToWorld(editor).inverse() * (ucsToWorld(editor) * moved);
  panTo(editor, {editor.view().center.x - shown.x, editor.view().center.y - shown.y});
  co_return true;
}

// ---- -DIMSTYLE: the settings of dimensions, between the drawing's variables and a style

// Calls f(row, variable name) for every setting of a style.
template <class F>
void eachSetting(GcDbDimStyleTableRecord& style, const F& f) {
  const GcDbClassInfo* info = gcdbInfoOf(style);
  for (int i = 0; info != nullptr && i < info->rowCount; ++i) {
    const GcDbField& row = *info->rows[i];
    const bool isSetting = row.name != nullptr && std::string_view(row.name).substr(0, 3) == "dim" && row.at != nullptr;
    if (isSetting && row.kind != Kind::Id) f(row, GC_T("$") + upperText(gc::fromUtf8(row.name)));
  }
}

void copyToStyle(GcDbDatabase& database, GcDbDimStyleTableRecord& style) {
  eachSetting(style, [&](const GcDbField& row, const GcText& name) {
    const GcDbGroupList* list = database.header().find(name);
    GcDbGroup group;
    if (list != nullptr && GcDbGroupList::Cursor(*list).next(group))
      static_cast<void>(gcdbSetValue(row, row.at(&style), group, &database));
  });
}

void copyFromStyle(GcDbDatabase& database, GcDbDimStyleTableRecord& style) {
  eachSetting(style, [&](const GcDbField& row, const GcText& name) {
    const GcDbGroupList* known = database.header().find(name);
    GcDbGroup group;
    if (known == nullptr || !GcDbGroupList::Cursor(*known).next(group)) return;
    GcDbGroup value = gcdbGetValue(row, row.value(&style), &database);
    value.code = group.code;
    GcDbGroupList list;
    list.put(value);
    database.header().set(name, list);
  });
}

Task<bool> dimstyle(CommandInput& in) {
  GcDbDatabase& database = in.database();
  const Answer option = co_await in.ask(Ask(What::Keyword,
                                            "\nEnter a dimension style option [Save/Restore/STatus/Variables/Apply/?] "
                                            "<Restore>: ")
                                            .words("ANnotative Save Restore STatus Variables Apply"));
  if (option.isKeyword("Apply")) {
    for (const GcDbObjectId id : co_await selectObjects(in)) {
      GcDbDimension* dimension = nullptr;
      if (gcdbOpenObject(dimension, id, GcDb::kForWrite) != Gcad::eOk) continue;
      ignore(dimension->setDimensionStyle(database.dimstyle()));
      ignore(dimension->close());
    }
    co_return true;
  }
  if (option.kind == Answer::Kind::Keyword && !option.isKeyword("Save") && !option.isKeyword("Restore"))
    co_return false;
  const bool saves = option.isKeyword("Save");
  const Answer name = co_await in.ask(
      Ask(What::Line, saves ? "\nEnter name for new dimension style: " : "\nEnter a dimension style name: "));
  GcDbObjectId id = recordNamed(database.dimStyleTableId(), name.text);
  GcDbDimStyleTableRecord* style = nullptr;
  if (saves && id.isNull()) {
    GcDbDimStyleTable* styles = nullptr;
    if (database.getSymbolTable(styles, GcDb::kForWrite) != Gcad::eOk) co_return false;
    style = new GcDbDimStyleTableRecord;
    if (style->setName(name.text.c_str()) == Gcad::eOk && styles->add(id, style) == Gcad::eOk)
      ignore(style->close());
    else
      delete style;
    ignore(styles->close());
  } else if (saves) {
    const Answer yes = co_await in.ask(
        Ask(What::Keyword, "\nThat name is already in use, redefine it? [Yes/No] <N>: ").words("Yes No"));
    if (!yes.isKeyword("Yes")) co_return false;
  }
  if (gcdbOpenObject(style, id, saves ? GcDb::kForWrite : GcDb::kForRead) != Gcad::eOk) {
    in.tell("\nCannot find the dimension style.\n");
    co_return false;
  }
  saves ? copyToStyle(database, *style) : copyFromStyle(database, *style);
  ignore(style->close());
  co_return database.setDimstyle(id) == Gcad::eOk;
}

constexpr Command kCommands[] = {
    {"-PURGE", "PURGE PU -PU", purge}, {"-RENAME", "RENAME REN -REN", rename},  {"-VIEW", "VIEW V -V", viewCommand},
    {"-PAN", "PAN P -P", pan},         {"-DIMSTYLE", "DIMSTYLE DST", dimstyle},
};

}  // namespace

std::span<const Command> recordCommands() { return kCommands; }

}  // namespace ed
