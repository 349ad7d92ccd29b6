// Text of every script through every version, form and code page of both formats.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "db/attribute.h"
#include "db/dictionary.h"
#include "db/mtext.h"
#include "db/text.h"
#include "db/xrecord.h"
#include "host/db/core/extra.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/header.h"
#include "host/db/core/store.h"
#include "host/dwg/file/dwgfile.h"
#include "host/rx/text/code_page.h"
#include "host/rx/view.h"
#include "tests/dxf/file/round_trip.h"

namespace {

constexpr const char* kTexts[] = {
    "m² Ø20 ±0,5 45°",
    "ąęłśżźćńó ĄĘŁŚŻŹĆŃÓ",
    "Straße, Größe, façade, señor, Ærø",
    "Чертёж, Україна",
    "Σχέδιο, ΑΒΓ αβγ",
    "漢字 図面 かな カナ",
    "简体中文 繁體中文",
    "한국어 도면",
    "עברית العربية ไทย",
    "emoji 😀🏗️ and 𝔐ath",
    "%%c20 %%d %%p %%u under%%u",
    "\\U+00B2 looks like an escape",
    "caret ^ and ^J, tab\tend",
    "~ \x7F \\ { } \" '",
};

// Names are what files of before 2000 may fit to their rules: these are compared from R2000 on.
constexpr const char* kNames[] = {"Wände Ø m²", "ściany żółte", "Стены", "図面 漢字", "도면", "σχέδιο", "emoji 😀"};

constexpr GcDb::GcDbDwgVersion kDxfVersions[] = {GcDb::kDHL_AC1009, GcDb::kDHL_AC1015, GcDb::kDHL_AC1018,
                                                 GcDb::kDHL_AC1021, GcDb::kDHL_AC1024, GcDb::kDHL_AC1027,
                                                 GcDb::kDHL_AC1032};
constexpr GcDb::GcDbDwgVersion kDwgVersions[] = {GcDb::kDHL_AC1015, GcDb::kDHL_AC1018, GcDb::kDHL_AC1024,
                                                 GcDb::kDHL_AC1027, GcDb::kDHL_AC1032};

// Every page that files know a name for, and one they do not.
std::vector<std::string> pageNames() {
  std::vector<std::string> names = {"unknown"};
  for (int page = 1; page < 65536; ++page) {
    const auto each = static_cast<gc::CodePage>(page);
    if (gc::codePageByName(gc::codePageName(each)) == each) names.emplace_back(gc::codePageName(each));
  }
  return names;
}

template <class T>
T* appended(GcDbDatabase& database, T* made) {
  GcDbBlockTableRecord* space = nullptr;
  EXPECT_EQ(gcdbOpenObject(space, database.modelSpaceId(), GcDb::kForWrite), Gcad::eOk);
  made->setDatabaseDefaults(&database);
  EXPECT_EQ(space->appendGcDbEntity(made), Gcad::eOk);
  EXPECT_EQ(space->close(), Gcad::eOk);
  return made;
}

void addTextWithData(GcDbDatabase& database, const GcText& wide) {
  auto* text = appended(database, new GcDbText);
  ASSERT_EQ(text->setTextString(wide.c_str()), Gcad::eOk);
  ASSERT_EQ(text->setHeight(1), Gcad::eOk);
  text->needExtra().xdata.put(GcDbGroup::ofText(1001, GC_T("ACAD")));
  text->needExtra().xdata.put(GcDbGroup::ofText(1000, wide));
  EXPECT_EQ(text->close(), Gcad::eOk);
}

void addParagraph(GcDbDatabase& database, const GcText& wide) {
  auto* paragraph = appended(database, new GcDbMText);
  ASSERT_EQ(paragraph->setContents(wide.c_str()), Gcad::eOk);
  EXPECT_EQ(paragraph->close(), Gcad::eOk);
}

void addDefinition(GcDbDatabase& database, const GcText& wide) {
  auto* definition = appended(database, new GcDbAttributeDefinition);
  ASSERT_EQ(definition->setTag(GC_T("TAG")), Gcad::eOk);
  ASSERT_EQ(definition->setPrompt(wide.c_str()), Gcad::eOk);
  ASSERT_EQ(definition->setTextString(wide.c_str()), Gcad::eOk);
  EXPECT_EQ(definition->close(), Gcad::eOk);
}

void addRecord(GcDbDatabase& database, GcView key, const GcText& wide) {
  GcDbDictionary* root = nullptr;
  ASSERT_EQ(database.getNamedObjectsDictionary(root, GcDb::kForWrite), Gcad::eOk);
  auto* record = new GcDbXrecord;
  GcDbObjectId id;
  ASSERT_EQ(root->setAt(GcText(key).c_str(), record, id), Gcad::eOk);
  resbuf* data = gcutBuildList(1, wide.c_str(), 0);
  EXPECT_EQ(record->setFromRbChain(*data), Gcad::eOk);
  gcutRelRb(data);
  EXPECT_EQ(record->close(), Gcad::eOk);
  EXPECT_EQ(root->close(), Gcad::eOk);
}

void addLayer(GcDbDatabase& database, const GcText& name) {
  GcDbLayerTable* layers = nullptr;
  ASSERT_EQ(database.getSymbolTable(layers, GcDb::kForWrite), Gcad::eOk);
  auto* layer = new GcDbLayerTableRecord;
  ASSERT_EQ(layer->setName(name.c_str()), Gcad::eOk);
  ASSERT_EQ(layers->add(layer), Gcad::eOk);
  EXPECT_EQ(layer->close(), Gcad::eOk);
  EXPECT_EQ(layers->close(), Gcad::eOk);
}

// Each text as text, extended data, paragraph, attribute with its prompt, record of a dictionary, its key, and one as a
// setting of the header; names as names of layers.
void fill(GcDbDatabase& database, const std::string& page) {
  database.fileParts().codePage = toGcString(fromUtf8(page));
  int number = 0;
  for (const char* each : kTexts) {
    const GcText wide = fromUtf8(each);
    addTextWithData(database, wide);
    addParagraph(database, wide);
    addDefinition(database, wide);
    addRecord(database, fromUtf8("LAW" + std::to_string(number++)), wide);
  }
  for (const char* each : kNames) {
    addLayer(database, fromUtf8(each));
    addRecord(database, fromUtf8(each), GC_T("named"));
  }
  database.header().setText(GC_T("$HYPERLINKBASE"), fromUtf8(kTexts[1]), 1);
}

void addTextsOf(const GcDbObject& object, std::vector<std::string>& all) {
  if (const auto* text = GcDbText::cast(&object)) all.push_back("text " + toUtf8(view(text->textString())));
  if (const auto* definition = GcDbAttributeDefinition::cast(&object))
    all.push_back("prompt " + toUtf8(view(definition->prompt())));
  if (const auto* paragraph = GcDbMText::cast(&object))
    all.push_back("paragraph " + toUtf8(view(paragraph->contents())));
  if (object.extra() == nullptr) return;
  GcDbGroupList::Cursor cursor(object.extra()->xdata);
  for (GcDbGroup group; cursor.next(group);)
    if (group.code == 1000) all.push_back("data " + toUtf8(group.text));
}

void addNamesAndRecords(GcDbDatabase& database, std::vector<std::string>& all) {
  const auto* layers = static_cast<const GcDbSymbolTable*>(database.layerTableId().stub()->object);
  for (const GcDbObjectId id : layers->records())
    all.push_back("layer " + toUtf8(view(static_cast<const GcDbSymbolTableRecord*>(id.stub()->object)->getName())));
  const auto* root = GcDbDictionary::cast(database.namedObjectsDictionaryId().stub()->object);
  for (const GcDbDictionaryEntry& entry : root->entries()) {
    auto* record = GcDbXrecord::cast(entry.id.stub()->object);
    if (record == nullptr || record->groups().isEmpty()) continue;  // that of round-trip data is empty once it is read
    GcDbXrecord* opened = nullptr;
    EXPECT_EQ(gcdbOpenObject(opened, entry.id, GcDb::kForRead), Gcad::eOk);
    resbuf* data = opened->rbChain();
    all.push_back("record " + toUtf8(view(entry.key)) + "=" + toUtf8(view(data->resval.rstring)));
    gcutRelRb(data);
    EXPECT_EQ(opened->close(), Gcad::eOk);
  }
  all.push_back("header " + toUtf8(database.header().text(GC_T("$HYPERLINKBASE"))));
}

// Files of R12 have no paragraphs, records and free names.
std::vector<std::string> textsOf(GcDbDatabase& database, bool isR12) {
  std::vector<std::string> all;
  const auto* space = GcDbBlockTableRecord::cast(database.modelSpaceId().stub()->object);
  for (const GcDbObjectId id : space->entities()) {
    const GcDbObject& object = *id.stub()->object;
    if (isR12 && GcDbMText::cast(&object)) continue;
    addTextsOf(object, all);
  }
  if (!isR12) addNamesAndRecords(database, all);
  std::sort(all.begin(), all.end());
  return all;
}

// What is in the first list and not in the second; of both, a line each.
std::string lackOf(const std::vector<std::string>& before, const std::vector<std::string>& after) {
  std::vector<std::string> lost, found;
  std::set_difference(before.begin(), before.end(), after.begin(), after.end(), std::back_inserter(lost));
  std::set_difference(after.begin(), after.end(), before.begin(), before.end(), std::back_inserter(found));
  std::string text;
  for (const std::string& each : lost) text += "- " + each + "\n";
  for (const std::string& each : found) text += "+ " + each + "\n";
  return text;
}

class TextOfPage : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override { fill(m_database, GetParam()); }
  GcDbDatabase m_database;
};

TEST_P(TextOfPage, EveryScriptThroughEveryVersionAndFormOfDxf) {
  for (const auto version : kDxfVersions) {
    const bool isR12 = version == GcDb::kDHL_AC1009;
    const auto before = textsOf(m_database, isR12);
    ASSERT_EQ(before.size(), isR12 ? 4 * std::size(kTexts) : 6 * std::size(kTexts) + 2 * std::size(kNames) + 2);
    for (const bool binary : {false, true}) {
      SCOPED_TRACE("DXF " + std::to_string(version) + (binary ? " binary" : ""));
      const auto again = gc::test::load(gc::test::save(m_database, version, binary));
      ASSERT_TRUE(again);
      const auto after = textsOf(*again, isR12);
      // In R12 the runs of paragraphs come back as further texts.
      const std::string lack = lackOf(before, after);
      EXPECT_EQ(isR12 ? lack.find("- ") : lack.size(), isR12 ? std::string::npos : 0) << lack;
    }
  }
}

TEST_P(TextOfPage, EveryScriptThroughEveryVersionOfDwg) {
  const auto before = textsOf(m_database, false);
  for (const int version : kDwgVersions) {
    SCOPED_TRACE("DWG " + std::to_string(version));
    std::vector<std::uint8_t> bytes;
    std::string message;
    ASSERT_EQ(gc::dwg::writeBytes(m_database, version, bytes, message), Gcad::eOk) << message;
    GcDbDatabase again(false);
    ASSERT_EQ(gc::dwg::read(again, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}), Gcad::eOk);
    EXPECT_EQ(lackOf(before, textsOf(again, false)), "");
  }
}

// A drawing of one page as a file of another form, and back.
TEST_P(TextOfPage, FromOneFormatIntoTheOtherAndBack) {
  const auto before = textsOf(m_database, false);
  for (const int version : kDwgVersions) {
    SCOPED_TRACE(version);
    std::vector<std::uint8_t> bytes;
    std::string message;
    ASSERT_EQ(gc::dwg::writeBytes(m_database, version, bytes, message), Gcad::eOk) << message;
    GcDbDatabase read(false);
    ASSERT_EQ(gc::dwg::read(read, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}), Gcad::eOk);
    for (const auto dxf : {GcDb::kDHL_AC1015, GcDb::kDHL_AC1032}) {
      const auto again = gc::test::load(gc::test::save(read, dxf));
      ASSERT_TRUE(again);
      EXPECT_EQ(lackOf(before, textsOf(*again, false)), "");
    }
  }
}

INSTANTIATE_TEST_SUITE_P(EveryPage, TextOfPage, testing::ValuesIn(pageNames()),
                         [](const testing::TestParamInfo<std::string>& each) {
                           std::string name = each.param;
                           std::replace_if(
                               name.begin(), name.end(), [](char c) { return c == '-'; }, '_');
                           return name;
                         });

TEST(Text, TextOfTheDrawingsOwnPageIsWrittenInItsBytes) {
  GcDbDatabase database;
  fill(database, "ANSI_1250");
  const std::string old = gc::test::save(database, GcDb::kDHL_AC1015);
  EXPECT_NE(old.find("\xB9\xEA\xB3\x9C\xBF\x9F\xE6\xF1\xF3"), std::string::npos) << "Polish letters, one byte each";
  EXPECT_NE(old.find("m\\U+00B2"), std::string::npos) << "a square that 1250 lacks";
  EXPECT_NE(old.find("\\U+00D820"), std::string::npos);
  const std::string young = gc::test::save(database, GcDb::kDHL_AC1021);
  EXPECT_NE(young.find("m²"), std::string::npos) << "UTF-8 whatever the page is called";
  EXPECT_NE(young.find("ANSI_1250"), std::string::npos) << "which keeps its name";
}

// A backslash before what looks like an escape does not become longer from save to save in groups nobody describes.
TEST(Text, BackslashesInUnknownObjectsStayAsLong) {
  const std::string begin =
      "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1015\n  0\nENDSEC\n  0\nSECTION\n  2\nOBJECTS\n"
      "  0\nDICTIONARY\n  5\nC\n330\n0\n100\nAcDbDictionary\n  3\nX\n350\n30\n"
      "  0\nNOBODYKNOWS\n  5\n30\n330\nC\n100\nAcDbNobody\n  1\n";
  for (const std::string text : {"a\\U+005CU+0001b", "a\\b", "\\U+005C", "\\\\U+0041"}) {
    std::string file = begin + text + "\n  0\nENDSEC\n  0\nEOF\n";
    for (int cycle = 0; cycle < 3; ++cycle) {
      const auto database = gc::test::load(file);
      ASSERT_NE(database, nullptr);
      file = gc::test::save(*database, GcDb::kDHL_AC1015);
      EXPECT_NE(file.find("AcDbNobody\n  1\n" + text + "\n"), std::string::npos) << text << ", cycle " << cycle;
    }
  }
}

}  // namespace
