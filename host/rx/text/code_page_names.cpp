// Names and DWG numbers of the code pages. Source: the public descriptions of the DWG and DXF formats.
#include <iterator>

#include "host/rx/text/code_page.h"

namespace gc {
namespace {

struct Name {
  const char* text;  // lower case, letters and digits only
  CodePage page;
};

constexpr Name kAliases[] = {
    {"ascii", CodePage::Ascii},         {"usascii", CodePage::Ascii},       {"mac", CodePage::Macintosh},
    {"macintosh", CodePage::Macintosh}, {"macroman", CodePage::Macintosh},  {"big5", CodePage::Ansi950},
    {"ksc5601", CodePage::Ansi949},     {"ksc56011987", CodePage::Ansi949}, {"euckr", CodePage::Ansi949},
    {"johab", CodePage::Johab},         {"gb2312", CodePage::Ansi936},      {"gbk", CodePage::Ansi936},
    {"shiftjis", CodePage::Ansi932},    {"sjis", CodePage::Ansi932},        {"utf8", CodePage::Utf8},
    {"utf16", CodePage::Utf16},         {"unicode", CodePage::Utf16},
};

// Index: the number in a DWG header.
constexpr CodePage kDwgNumbers[] = {
    CodePage::None,      CodePage::Ascii,     CodePage::Iso8859_1, CodePage::Iso8859_2, CodePage::Iso8859_3,
    CodePage::Iso8859_4, CodePage::Iso8859_5, CodePage::Iso8859_6, CodePage::Iso8859_7, CodePage::Iso8859_8,
    CodePage::Iso8859_9, CodePage::Dos437,    CodePage::Dos850,    CodePage::Dos852,    CodePage::Dos855,
    CodePage::Dos857,    CodePage::Dos860,    CodePage::Dos861,    CodePage::Dos863,    CodePage::Dos864,
    CodePage::Dos865,    CodePage::Dos869,    CodePage::Ansi932,   CodePage::Macintosh, CodePage::Ansi950,
    CodePage::Ansi949,   CodePage::Johab,     CodePage::Dos866,    CodePage::Ansi1250,  CodePage::Ansi1251,
    CodePage::Ansi1252,  CodePage::Ansi936,   CodePage::Ansi1253,  CodePage::Ansi1254,  CodePage::Ansi1255,
    CodePage::Ansi1256,  CodePage::Ansi1257,  CodePage::Ansi874,   CodePage::Ansi932,   CodePage::Ansi936,
    CodePage::Ansi949,   CodePage::Ansi950,   CodePage::Johab,     CodePage::Utf16,     CodePage::Ansi1258,
};

struct Written {
  CodePage page;
  const char* name;
};

constexpr Written kWritten[] = {
    {CodePage::Ascii, "ASCII"},         {CodePage::Macintosh, "MACINTOSH"}, {CodePage::Johab, "ANSI_1361"},
    {CodePage::Utf8, "UTF-8"},          {CodePage::Utf16, "ANSI_1200"},     {CodePage::Dos437, "DOS437"},
    {CodePage::Dos737, "DOS737"},       {CodePage::Dos775, "DOS775"},       {CodePage::Dos850, "DOS850"},
    {CodePage::Dos852, "DOS852"},       {CodePage::Dos855, "DOS855"},       {CodePage::Dos857, "DOS857"},
    {CodePage::Dos858, "DOS858"},       {CodePage::Dos860, "DOS860"},       {CodePage::Dos861, "DOS861"},
    {CodePage::Dos862, "DOS862"},       {CodePage::Dos863, "DOS863"},       {CodePage::Dos864, "DOS864"},
    {CodePage::Dos865, "DOS865"},       {CodePage::Dos866, "DOS866"},       {CodePage::Dos869, "DOS869"},
    {CodePage::Ansi874, "ANSI_874"},    {CodePage::Ansi932, "ANSI_932"},    {CodePage::Ansi936, "ANSI_936"},
    {CodePage::Ansi949, "ANSI_949"},    {CodePage::Ansi950, "ANSI_950"},    {CodePage::Ansi1250, "ANSI_1250"},
    {CodePage::Ansi1251, "ANSI_1251"},  {CodePage::Ansi1252, "ANSI_1252"},  {CodePage::Ansi1253, "ANSI_1253"},
    {CodePage::Ansi1254, "ANSI_1254"},  {CodePage::Ansi1255, "ANSI_1255"},  {CodePage::Ansi1256, "ANSI_1256"},
    {CodePage::Ansi1257, "ANSI_1257"},  {CodePage::Ansi1258, "ANSI_1258"},  {CodePage::Iso8859_1, "ISO8859-1"},
    {CodePage::Iso8859_2, "ISO8859-2"}, {CodePage::Iso8859_3, "ISO8859-3"}, {CodePage::Iso8859_4, "ISO8859-4"},
    {CodePage::Iso8859_5, "ISO8859-5"}, {CodePage::Iso8859_6, "ISO8859-6"}, {CodePage::Iso8859_7, "ISO8859-7"},
    {CodePage::Iso8859_8, "ISO8859-8"}, {CodePage::Iso8859_9, "ISO8859-9"},
};

constexpr int kNoDigits = -1;

// The number at the end of a plain name after one of the prefixes; kNoDigits when it is not made that way.
int numberAfter(std::string_view plain, std::string_view prefix) {
  if (plain.substr(0, prefix.size()) != prefix || plain.size() == prefix.size() || plain.size() > prefix.size() + 5) {
    return kNoDigits;
  }
  int number = 0;
  for (const char c : plain.substr(prefix.size())) {
    if (c < '0' || c > '9') return kNoDigits;
    number = number * 10 + (c - '0');
  }
  return number;
}

CodePage knownNumber(int number) {
  for (const Written& row : kWritten) {
    if (static_cast<int>(row.page) == number) return row.page;
  }
  return CodePage::None;
}

template <class View>
std::string plainName(View name) {
  std::string plain;
  for (const auto c : name) {
    if (c >= 'A' && c <= 'Z') plain.push_back(static_cast<char>(c - 'A' + 'a'));
    if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) plain.push_back(static_cast<char>(c));
  }
  return plain;
}

CodePage pageOfPlainName(std::string_view plain) {
  for (const Name& alias : kAliases) {
    if (plain == alias.text) return alias.page;
  }
  for (const char* prefix : {"ansi", "dos", "cp", "windows", "ibm", "oem"}) {
    const int number = numberAfter(plain, prefix);
    if (number != kNoDigits) return knownNumber(number);
  }
  for (const char* prefix : {"iso8859", "isoir8859"}) {
    const int part = numberAfter(plain, prefix);
    if (part >= 1 && part <= 9) return knownNumber(28590 + part);
  }
  return CodePage::None;
}

}  // namespace

CodePage codePageByName(std::string_view name) { return pageOfPlainName(plainName(name)); }
CodePage codePageByName(GcView name) { return pageOfPlainName(plainName(name)); }

const char* codePageName(CodePage page) {
  for (const Written& row : kWritten) {
    if (row.page == page) return row.name;
  }
  return "ANSI_1252";
}

CodePage codePageByDwgNumber(int number) {
  return number >= 0 && number < static_cast<int>(std::size(kDwgNumbers)) ? kDwgNumbers[number] : CodePage::None;
}

int dwgNumberOf(CodePage page) {
  if (page == CodePage::None) return 0;
  // The ANSI numbers stand after the older ones of the same pages: the last match is the usual one.
  for (int number = static_cast<int>(std::size(kDwgNumbers)) - 1; number > 0; --number) {
    if (kDwgNumbers[number] == page) return number;
  }
  return 0;
}

}  // namespace gc
