#include "host/dxf/read/head.h"

#include <iterator>

#include "db/dbdefs.h"
#include "host/dxf/tags/tag_reader.h"

namespace gc::dxf {
namespace {

struct VersionName {
  const char* text;
  int version;
};

// The earliest name of a version is the one that is written.
constexpr VersionName kVersions[] = {
    {"AC1009", GcDb::kDHL_AC1009}, {"AC1006", GcDb::kDHL_AC1006}, {"AC1004", GcDb::kDHL_AC1001},
    {"AC1003", GcDb::kDHL_AC1001}, {"AC1002", GcDb::kDHL_AC1001}, {"AC1001", GcDb::kDHL_AC1001},
    {"AC2.22", GcDb::kDHL_AC1001}, {"AC2.21", GcDb::kDHL_AC1001}, {"AC2.10", GcDb::kDHL_AC1001},
    {"AC1.50", GcDb::kDHL_AC1001}, {"AC1.40", GcDb::kDHL_AC1001}, {"AC1010", GcDb::kDHL_AC1009},
    {"AC1011", GcDb::kDHL_AC1009}, {"AC1012", GcDb::kDHL_AC1012}, {"AC1013", GcDb::kDHL_AC1012},
    {"AC1014", GcDb::kDHL_AC1014}, {"AC1015", GcDb::kDHL_AC1015}, {"AC1016", GcDb::kDHL_AC1018},
    {"AC1018", GcDb::kDHL_AC1018}, {"AC1019", GcDb::kDHL_AC1021}, {"AC1021", GcDb::kDHL_AC1021},
    {"AC1024", GcDb::kDHL_AC1024}, {"AC1027", GcDb::kDHL_AC1027}, {"AC1032", GcDb::kDHL_AC1032},
};

// The bytes a file whose code page is not given holds: UTF-8 when they can be nothing else.
bool looksLikeUtf8(std::string_view file) { return asciiPrefix(file) < file.size() && isUtf8(file); }

void take(const Tag& tag, const std::string& variable, Head& head) {
  if (tag.code == 1 && variable == "$ACADVER") head.versionText = tag.word();
  if (tag.code == 3 && variable == "$DWGCODEPAGE") head.codePageText = tag.word();
  if (tag.code == 5 && variable == "$HANDSEED") (void)tag.handle(head.handseed);
}

}  // namespace

int versionOf(std::string_view text) {
  for (const VersionName& row : kVersions) {
    if (text == row.text) return row.version;
  }
  return GcDb::kDHL_Unknown;
}

const char* versionText(int version) {
  switch (version) {
    case GcDb::kDHL_AC1012: return "AC1012";
    case GcDb::kDHL_AC1014: return "AC1014";
    case GcDb::kDHL_AC1015: return "AC1015";
    case GcDb::kDHL_AC1018: return "AC1018";
    case GcDb::kDHL_AC1021: return "AC1021";
    case GcDb::kDHL_AC1024: return "AC1024";
    case GcDb::kDHL_AC1027: return "AC1027";
    case GcDb::kDHL_AC1032: return "AC1032";
    default: return "AC1009";
  }
}

Head readHead(std::string_view file) {
  Head head;
  TagReader reader(file);
  Tag tag;
  std::string variable;
  bool inHeader = false;
  for (;;) {
    const ReadStatus status = reader.next(tag);
    if (status == ReadStatus::BadCode && reader.skipToRecord()) continue;
    if (status != ReadStatus::Tag) break;
    if (tag.code == 0 && inHeader) break;
    if (tag.code == 2 && !inHeader) {
      inHeader = tag.word() == "HEADER";
      if (!inHeader) break;  // the header comes first or not at all
    }
    if (tag.code == 9) variable = tag.word();
    take(tag, variable, head);
  }
  head.version = versionOf(head.versionText);
  if (head.version == GcDb::kDHL_Unknown)
    head.version = head.versionText.empty() ? GcDb::kDHL_AC1009 : GcDb::kDHL_AC1032;
  const CodePage page = codePageByName(head.codePageText);
  const bool unnamed = page == CodePage::None || page == CodePage::Ascii;
  const bool utf8 = head.version >= GcDb::kDHL_AC1021 || page == CodePage::Utf8 || (unnamed && looksLikeUtf8(file));
  head.text = DrawingText(page, utf8);
  return head;
}

}  // namespace gc::dxf
