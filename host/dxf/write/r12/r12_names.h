// Names of table records as R12 has them: at most 31 characters, letters, digits, '$', '-', '_'. Other names are changed,
// each into one that no other record of its table has. Drawings that came from files of that time keep theirs.
#pragma once

#include <unordered_map>
#include <unordered_set>

#include "db/database.h"
#include "host/db/core/savenotes.h"
#include "host/rx/text/code_page.h"

namespace gc::dxf {

class R12Names {
 public:
  R12Names(const GcDbDatabase& database, CodePage page, SaveNotes& notes);

  // `table`: GcDbDatabase::Table. A name no record has comes back fitted.
  [[nodiscard]] GcText of(int table, GcView name) const;

 private:
  void addTable(const GcDbDatabase& database, int table, SaveNotes& notes);
  [[nodiscard]] bool fits(GcView name) const;
  [[nodiscard]] bool isAllowed(GCHAR c) const;
  [[nodiscard]] GcText fitted(GcView name) const;
  void change(int table, const GcDbSymbolTableRecord& record, SaveNotes& notes);

  CodePage m_page;
  bool m_keepsAll;
  std::unordered_map<GcText, GcText> m_changed[GcDbDatabase::kTableCount];  // upper-case name to new name
  std::unordered_set<GcText> m_used[GcDbDatabase::kTableCount];             // upper case
};

}  // namespace gc::dxf
