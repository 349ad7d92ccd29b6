#include "host/ed/editor.h"

#include <algorithm>

#include "db/database.h"
#include "db/dictionary.h"
#include "db/layout.h"
#include "host/ap/docmanager.h"
#include "host/db/core/header.h"
#include "host/db/core/store.h"
#include "host/db/core/undo.h"
#include "host/db/core/viewspace.h"
#include "host/ed/commandline.h"
#include "host/ed/viewplace.h"
#include "rx/gcassert.h"

namespace ed {

namespace {
constexpr const GCHAR* kModel = GC_T("Model");
constexpr int kPaperItself = 1;
constexpr int kModelTab = 2;

GcDbLayoutManager& layouts() { return *gcdbHostApplicationServices()->layoutManager(); }

}  // namespace

Editor::Editor(ap::Document& document) : m_document(document), m_commandLine(std::make_unique<CommandLine>(*this)) {
  layouts().addReactor(this);
  takeView(*this);
  drawingSaved();
}

int Editor::changedBits() const {
  constexpr int kObjects = 1, kVariables = 4, kView = 16;
  return (database().undo().isChanged() ? kObjects : 0) | (m_variableChanged ? kVariables : 0) |
         (m_view == m_savedView ? 0 : kView);
}

void Editor::drawingSaved() {
  database().undo().setSaved();
  m_variableChanged = false;
  m_savedView = m_view;
}

Editor::~Editor() { layouts().removeReactor(this); }

GcText Editor::layout() const { return GcText(::view(layouts().getActiveLayoutName(true, &database()))); }
GcText Editor::lastPaperLayout() const { return GcText(::view(layouts().getActiveLayoutName(false, &database()))); }

bool Editor::inPaperLayout() const { return database().header().integer(GC_T("$TILEMODE"), 1) == 0; }
bool Editor::inPaperSpace() const { return inPaperLayout() && m_paperViewport == kPaperItself; }
int Editor::viewportNumber() const { return inPaperLayout() ? m_paperViewport : kModelTab; }

// Another viewport's view is the one seen from now on; the layout remembers which it was.
bool Editor::setViewportNumber(int number) {
  if (!inPaperLayout()) return number == kModelTab;
  const GcDbObjectId id = number == kPaperItself ? GcDbObjectId() : viewportNumbered(*this, number);
  if (number != kPaperItself && id.isNull()) return false;
  m_paperViewport = number;
  m_earlierViews.clear();
  takeView(*this);
  if (id.isNull()) return true;
  const Changing changing(layouts().findActiveLayout(true, &database()));
  if (changing) ignore(changing.as<GcDbLayout>()->setLastActiveViewport(id));
  return true;
}

bool Editor::workIn(GcDbObjectId viewport) {
  const auto* object = viewport.isValid() ? GcDbViewport::cast(viewport.stub()->object) : nullptr;
  return object != nullptr && viewport.database() == &database() &&
         viewportNumbered(*this, object->number()) == viewport && setViewportNumber(object->number());
}

bool Editor::setLayout(GcView name) {
  return layouts().setCurrentLayout(GcText(name).c_str(), &database()) == Gcad::eOk;
}

void Editor::layoutSwitched(GcDbDatabase* of, const GCHAR*) {
  if (of != &database()) return;
  m_paperViewport = kPaperItself;
  m_earlierViews.clear();
  takeView(*this);
}

GcDbObjectId Editor::currentSpace() const {
  return inPaperSpace() ? database().paperSpaceId() : database().modelSpaceId();
}

std::vector<GcText> Editor::layoutNames() const {
  std::vector<std::pair<int, GcText>> tabs;
  GcDbDictionary* all = nullptr;
  if (gcdbOpenObject(all, database().layoutDictionaryId(), GcDb::kForRead) != Gcad::eOk) return {};
  for (const GcDbDictionaryEntry& entry : all->entries()) {
    if (!entry.id.isValid() || entry.id.isErased() || equalNoCase(::view(entry.key), kModel)) continue;
    const auto* each = GcDbLayout::cast(entry.id.stub()->object);
    tabs.emplace_back(each == nullptr ? 0 : each->getTabOrder(), GcText(::view(entry.key)));
  }
  ignore(all->close());
  std::stable_sort(tabs.begin(), tabs.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<GcText> names;
  for (auto& [order, name] : tabs) names.push_back(std::move(name));
  return names;
}

GcDbExtents Editor::spaceExtents() const { return gcdbExtentsOf(currentSpace()); }

int Editor::commandActive() const { return m_commandLine->isBusy() ? 1 : 0; }
GcText Editor::commandNames() const { return m_commandLine->runningName(); }

Editor& editorOf(const ap::Document& document) {
  GC_ASSERT(document.editor() != nullptr, "a document has its editor before anybody is told of it");
  return static_cast<Editor&>(*document.editor());
}

Editor& currentEditor() {
  const ap::Document* document = ap::currentDocument();
  GC_ASSERT(document != nullptr, "an editor needs a document");
  return editorOf(*document);
}

}  // namespace ed
