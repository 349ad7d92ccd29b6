// -STYLE: text styles made and changed.
#include <algorithm>

#include "db/textstyle.h"
#include "host/ap/paths.h"
#include "host/ap/profile.h"
#include "host/ed/command/families.h"
#include "host/ed/contents.h"
#include "host/ed/records.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;
using Style = GcDbTextStyleTableRecord;

constexpr int kBackward = 2;  // of group 71
constexpr int kUpsideDown = 4;
constexpr int kVertical = 4;  // of group 70

GcDbObjectId makeStyle(GcDbDatabase& database, const GcText& name) {
  GcDbObjectId id;
  GcDbTextStyleTable* styles = nullptr;
  if (database.getSymbolTable(styles, GcDb::kForWrite) != Gcad::eOk) return id;
  auto* style = new Style;
  if (style->setName(name.c_str()) == Gcad::eOk && style->setFileName(GC_T("txt")) == Gcad::eOk &&
      styles->add(id, style) == Gcad::eOk)
    ignore(style->close());
  else
    delete style;
  ignore(styles->close());
  return id;
}

// Whether a font is one of strokes, which may run downwards; others are outlines, known by a file or a family. A name
// alone is one of strokes where such a file lies on the support path or it is one that every program of the field has.
bool isStrokeFont(Editor& editor, GcView font) {
  constexpr GcView kUsual[] = {
      GC_T("txt"),      GC_T("monotxt"),  GC_T("simplex"), GC_T("complex"), GC_T("italic"),  GC_T("romans"),
      GC_T("romand"),   GC_T("romanc"),   GC_T("romant"),  GC_T("italicc"), GC_T("italict"), GC_T("scripts"),
      GC_T("scriptc"),  GC_T("greeks"),   GC_T("greekc"),  GC_T("gothice"), GC_T("gothicg"), GC_T("gothici"),
      GC_T("cyrillic"), GC_T("cyriltlc"), GC_T("isocp"),   GC_T("isocp2"),  GC_T("isocp3"),  GC_T("isoct"),
      GC_T("isoct2"),   GC_T("isoct3"),   GC_T("gdt"),     GC_T("syastro"), GC_T("symap"),   GC_T("symath"),
      GC_T("symeteo"),  GC_T("symusic"),
  };
  const GcView extension = ap::extensionOf(font);
  if (!extension.empty()) return equalNoCase(extension, GC_T(".shx"));
  const GcView beside = ap::directoryOf(editor.document().fileName());
  return std::any_of(std::begin(kUsual), std::end(kUsual), [&](GcView each) { return equalNoCase(each, font); }) ||
         !ap::findSupportFile(GcText(font) + GC_T(".shx"), beside).empty();
}

struct Wanted {
  GcText font;
  GcText bigFont;
  double height = 0;
  double width = 1;
  double obliqueRad = 0;
  int generation = 0;  // kBackward, kUpsideDown
  bool vertical = false;
};

Wanted settingsOf(GcDbObjectId id) {
  Wanted found;
  Style* style = nullptr;
  if (gcdbOpenObject(style, id, GcDb::kForRead) != Gcad::eOk) return found;
  found = {GcText(view(style->fileName())),
           GcText(view(style->bigFontFileName())),
           style->textSize(),
           style->xScale(),
           style->obliquingAngle(),
           style->flagBits(),
           style->isVertical()};
  ignore(style->close());
  return found;
}

// Yes, no, or for Enter as it was.
Task<bool> askYes(CommandInput& in, const char* question, bool now) {
  const std::string prompt = std::string("\nDisplay text ") + question + "? [Yes/No] " + (now ? "<Y>: " : "<N>: ");
  const Answer answer = co_await in.ask(Ask(What::Keyword, prompt.c_str()).words("Yes No"));
  co_return answer.kind == Answer::Kind::Keyword ? answer.isKeyword("Yes") : now;
}

Task<bool> askFont(CommandInput& in, Wanted& wanted) {
  const std::string prompt =
      "\nSpecify full font name or font filename (TTF or SHX) <" + gc::toUtf8(wanted.font) + ">: ";
  const Answer typed = co_await in.ask(Ask(What::Line, prompt.c_str()));
  const GcText& font = typed.text;
  if (font.empty()) co_return true;
  const size_t comma = font.find(GC_T(','));
  wanted.font = font.substr(0, comma);
  wanted.bigFont = comma == GcText::npos ? GcText() : font.substr(comma + 1);
  co_return true;
}

// A style is made or changed, and becomes the current one.
Task<bool> style(CommandInput& in) {
  const std::string current = gc::toUtf8(nameOfRecord(in.database().textstyle()));
  const std::string prompt = "\nEnter name of text style or [?] <" + current + ">: ";
  const Answer typed = co_await in.ask(Ask(What::Line, prompt.c_str()));
  GcText name = typed.text;
  if (name == GC_T("?")) {
    static_cast<void>(co_await in.ask(Ask(What::Line, "\nEnter text style(s) to list <*>: ")));
    for (const GcDbObjectId id : recordsOf(in.database().textStyleTableId()))
      in.tell(
          ("\nStyle name: \"" + gc::toUtf8(nameOfRecord(id)) + "\"  Font: " + gc::toUtf8(settingsOf(id).font)).c_str());
    in.tell("\n");
    co_return true;
  }
  if (name.empty()) name = nameOfRecord(in.database().textstyle());
  GcDbObjectId id = recordNamed(in.database().textStyleTableId(), name);
  if (id.isNull()) id = makeStyle(in.database(), name);
  if (id.isNull()) {
    in.tell("\nInvalid style name.\n");
    co_return false;
  }
  Wanted wanted = settingsOf(id);
  static_cast<void>(co_await askFont(in, wanted));
  const std::string heightPrompt = "\nSpecify height of text <" + gc::realText(wanted.height) + ">: ";
  const Answer height = co_await in.ask(Ask(What::Distance, heightPrompt.c_str()));
  const std::string widthPrompt = "\nSpecify width factor <" + gc::realText(wanted.width) + ">: ";
  const Answer width = co_await in.ask(Ask(What::Real, widthPrompt.c_str()).positive());
  const Answer oblique = co_await in.ask(Ask(What::Angle, "\nSpecify obliquing angle: "));
  if (height.kind == Answer::Kind::Number) wanted.height = height.number;
  if (width.kind == Answer::Kind::Number) wanted.width = width.number;
  if (oblique.kind == Answer::Kind::Number) wanted.obliqueRad = oblique.number;
  const bool backward = co_await askYes(in, "backwards", (wanted.generation & kBackward) != 0);
  const bool upsideDown = co_await askYes(in, "upside-down", (wanted.generation & kUpsideDown) != 0);
  wanted.generation = (backward ? kBackward : 0) | (upsideDown ? kUpsideDown : 0);
  bool vertical = false;
  if (isStrokeFont(in.editor(), wanted.font)) vertical = co_await askYes(in, "vertically", wanted.vertical);
  int flags = 0;
  forEach<Style>({id}, [&](Style& record) {
    flags = record.flags();
    ignore(record.setFileName(wanted.font.c_str()));
    ignore(record.setBigFontFileName(wanted.bigFont.c_str()));
    ignore(record.setTextSize(wanted.height));
    ignore(record.setXScale(wanted.width));
    ignore(record.setObliquingAngle(wanted.obliqueRad));
  });
  const int otherFlags = flags & ~kVertical;
  setGroups(id, {GcDbGroup::ofInt(70, vertical ? otherFlags | kVertical : otherFlags),
                 GcDbGroup::ofInt(71, wanted.generation)});
  co_return in.database().setTextstyle(id) == Gcad::eOk;
}

constexpr Command kCommands[] = {
    {"-STYLE", "STYLE ST", style},
};

}  // namespace

std::span<const Command> textStyleCommands() { return kCommands; }

}  // namespace ed
