#include "host/ed/fields/summary.h"

#include <span>

#include "db/database.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/header.h"
#include "host/rx/text/code_page.h"

namespace ed {

namespace {

// In the order in which the section of DWG files has them.
constexpr const GCHAR* kNames[] = {GC_T("Title"),          GC_T("Subject"),      GC_T("Author"),
                                   GC_T("Keywords"),       GC_T("Comments"),     GC_T("LastSavedBy"),
                                   GC_T("RevisionNumber"), GC_T("HyperlinkBase")};

// Reads texts with their lengths in front, one after the other; what is cut off is empty.
class Texts {
 public:
  Texts(std::span<const uint8_t> bytes, bool isWide, gc::CodePage page)
      : m_rest(bytes), m_isWide(isWide), m_page(page) {}

  GcText next() {
    GcText text;
    const size_t size = size_t{word()} * (m_isWide ? 2 : 1);
    if (size > m_rest.size()) {
      m_rest = {};
      return text;
    }
    const std::span<const uint8_t> bytes = m_rest.first(size);
    m_rest = m_rest.subspan(size);
    if (m_isWide)
      for (size_t i = 0; i + 1 < bytes.size(); i += 2) text += static_cast<GCHAR>(bytes[i] | (bytes[i + 1] << 8));
    else
      static_cast<void>(gc::appendDecoded(m_page, {reinterpret_cast<const char*>(bytes.data()), size}, text));
    while (!text.empty() && text.back() == 0) text.pop_back();
    return text;
  }

 private:
  uint16_t word() {
    if (m_rest.size() < 2) {
      m_rest = {};
      return 0;
    }
    const auto value = static_cast<uint16_t>(m_rest[0] | (m_rest[1] << 8));
    m_rest = m_rest.subspan(2);
    return value;
  }

  std::span<const uint8_t> m_rest;
  bool m_isWide;
  gc::CodePage m_page;
};

GcText ofSection(const GcDbFileParts& parts, int which) {
  for (const GcDbDwgSection& section : parts.dwgSections) {
    if (section.name != "AcDb:SummaryInfo") continue;
    Texts texts(section.bytes, section.version >= GcDb::kDHL_AC1021, gc::codePageByName(view(parts.codePage)));
    for (int i = 0; i < which; ++i) static_cast<void>(texts.next());
    return texts.next();
  }
  return {};
}

}  // namespace

bool drawingSummary(GcDbDatabase& database, GcView name, GcText& text) {
  constexpr int kLastSavedBy = 5;
  for (int i = 0; i < static_cast<int>(std::size(kNames)); ++i) {
    if (!equalNoCase(name, kNames[i])) continue;
    text = ofSection(database.fileParts(), i);
    if (text.empty() && i == kLastSavedBy) text = database.header().text(GC_T("$LASTSAVEDBY"));
    return true;
  }
  return false;
}

}  // namespace ed
