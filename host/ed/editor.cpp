#include "host/ed/editor.h"

#include "db/database.h"
#include "db/dictionary.h"
#include "host/ap/docmanager.h"
#include "host/ed/commandline.h"
#include "rx/gcassert.h"

namespace ed {

namespace {
constexpr const GCHAR* kModel = GC_T("Model");
constexpr int kPaperItself = 1;
constexpr int kModelTab = 2;
}  // namespace

Editor::Editor(ap::Document& document)
    : m_document(document),
      m_layout(kModel),
      m_lastPaperLayout(GC_T("Layout1")),
      m_commandLine(std::make_unique<CommandLine>(*this)) {}

Editor::~Editor() = default;

bool Editor::inPaperLayout() const { return !equalNoCase(m_layout, kModel); }
bool Editor::inPaperSpace() const { return inPaperLayout() && m_paperViewport == kPaperItself; }
int Editor::viewportNumber() const { return inPaperLayout() ? m_paperViewport : kModelTab; }

bool Editor::setViewportNumber(int number) {
  if (!inPaperLayout()) return number == kModelTab;
  if (number < kPaperItself) return false;
  m_paperViewport = number;
  return true;
}

bool Editor::setLayout(GcView name) {
  GcDbDictionary* layouts = nullptr;
  GcDbObjectId id;
  GcString key;
  const bool model = equalNoCase(name, kModel);
  if (gcdbOpenObject(layouts, database().layoutDictionaryId(), GcDb::kForRead) == Gcad::eOk) {
    if (layouts->getAt(GcText(name).c_str(), id) == Gcad::eOk) ignore(layouts->nameAt(id, key));
    ignore(layouts->close());
  }
  if (key.isEmpty() && !model) return false;
  m_layout = model ? GcText(kModel) : GcText(::view(key));
  if (!model) m_lastPaperLayout = m_layout;
  m_paperViewport = kPaperItself;
  return true;
}

GcDbObjectId Editor::currentSpace() const {
  return inPaperSpace() ? database().paperSpaceId() : database().modelSpaceId();
}

std::vector<GcText> Editor::layoutNames() const {
  std::vector<GcText> names;
  GcDbDictionary* layouts = nullptr;
  if (gcdbOpenObject(layouts, database().layoutDictionaryId(), GcDb::kForRead) != Gcad::eOk) return names;
  for (const GcDbDictionaryEntry& entry : layouts->entries())
    if (!entry.id.isErased() && !equalNoCase(::view(entry.key), kModel)) names.emplace_back(::view(entry.key));
  ignore(layouts->close());
  return names;
}

GcDbExtents Editor::spaceExtents() const {
  GcDbExtents all;
  GcDbBlockTableRecord* space = nullptr;
  if (gcdbOpenObject(space, currentSpace(), GcDb::kForRead) != Gcad::eOk) return all;
  for (const GcDbObjectId id : space->entities()) {
    GcDbEntity* entity = nullptr;
    if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) continue;
    GcDbExtents own;
    if (entity->getGeomExtents(own) == Gcad::eOk) all.addExt(own);
    ignore(entity->close());
  }
  ignore(space->close());
  return all;
}

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
