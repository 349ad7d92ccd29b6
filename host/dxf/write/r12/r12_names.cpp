#include "host/dxf/write/r12/r12_names.h"

#include "host/db/core/store.h"

namespace gc::dxf {
namespace {

constexpr std::size_t kLongest = 31;

GcText upper(GcView name) {
  GcText text(name);
  for (GCHAR& c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<GCHAR>(c - 'a' + 'A');
  }
  return text;
}

// The spaces have a dollar sign in files of that time.
bool isSpace(GcView name) { return equalNoCase(name, GC_T("*Model_Space")) || equalNoCase(name, GC_T("*Paper_Space")); }

}  // namespace

R12Names::R12Names(const GcDbDatabase& database, CodePage page, SaveNotes& notes)
    : m_page(page),
      m_keepsAll(database.originalFileVersion() != GcDb::kDHL_Unknown &&
                 database.originalFileVersion() < GcDb::kDHL_AC1012) {
  for (int table = 0; table < GcDbDatabase::kTableCount; ++table) addTable(database, table, notes);
}

void R12Names::addTable(const GcDbDatabase& database, int table, SaveNotes& notes) {
  const GcDbObjectId id = database.tableId(table);
  if (!id.isValid()) return;
  const GcDbObjectIdArray& records = static_cast<const GcDbSymbolTable&>(*id.stub()->object).records();
  const auto each = [&](const auto& act) {
    for (const GcDbObjectId record : records) {
      if (record.isValid() && !record.isErased())
        act(static_cast<const GcDbSymbolTableRecord&>(*record.stub()->object));
    }
  };
  each([&](const GcDbSymbolTableRecord& record) { m_used[table].insert(upper(view(record.getName()))); });
  each([&](const GcDbSymbolTableRecord& record) {
    if (!fits(view(record.getName()))) change(table, record, notes);
  });
}

bool R12Names::isAllowed(GCHAR c) const {
  if ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')) return true;
  if (c == '$' || c == '-' || c == '_' || c == '|') return true;  // the bar: names of other drawings' records
  std::string bytes;
  return c >= 0xC0 && appendEncoded(m_page, c, bytes);
}

bool R12Names::fits(GcView name) const {
  if (m_keepsAll || isSpace(name)) return true;
  if (name.size() > kLongest) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (!isAllowed(name[i]) && !(i == 0 && name[i] == '*')) return false;
  }
  return true;
}

GcText R12Names::fitted(GcView name) const {
  GcText text(name.substr(0, kLongest));
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!isAllowed(text[i]) && !(i == 0 && text[i] == '*')) text[i] = '_';
  }
  return text;
}

void R12Names::change(int table, const GcDbSymbolTableRecord& record, SaveNotes& notes) {
  const GcText first = fitted(view(record.getName()));
  GcText made = first;
  for (int i = 1; m_used[table].contains(upper(made)); ++i) {
    const GcText end = fromUtf8("$" + std::to_string(i));
    made = first.substr(0, kLongest - end.size()) + end;
  }
  m_used[table].insert(upper(made));
  notes.mapped(record, "name " + toUtf8(view(record.getName())) + " becomes " + toUtf8(GcView(made)));
  m_changed[table].emplace(upper(view(record.getName())), made);
}

GcText R12Names::of(int table, GcView name) const {
  if (table == GcDbDatabase::kBlocks && isSpace(name)) return GC_T("$") + upper(name.substr(1));
  if (fits(name)) return GcText(name);
  const auto found = m_changed[table].find(upper(name));
  return found == m_changed[table].end() ? fitted(name) : found->second;
}

}  // namespace gc::dxf
