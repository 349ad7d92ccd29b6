// Text of every script through every version, form and code page of both formats.
#include <gtest/gtest.h>

#include "db/attribute.h"
#include "db/mtext.h"
#include "db/text.h"
#include "host/db/core/extra.h"
#include "host/db/core/fileparts.h"
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

constexpr const char* kPages[] = {"ANSI_1252", "ANSI_1250", "ANSI_1251", "ANSI_1253", "ANSI_932",  "ANSI_936",
                                  "ANSI_949",  "ANSI_950",  "dos850",    "dos852",    "iso8859-2", "unknown"};

// A text, a paragraph, a value of extended data and an entry of a header for each text.
void fill(GcDbDatabase& database, const char* page) {
  database.fileParts().codePage = toGcString(fromUtf8(page));
  GcDbBlockTableRecord* space = nullptr;
  ASSERT_EQ(gcdbOpenObject(space, database.modelSpaceId(), GcDb::kForWrite), Gcad::eOk);
  for (const char* each : kTexts) {
    const GcText wide = fromUtf8(each);
    auto* text = new GcDbText;
    text->setDatabaseDefaults(&database);
    ASSERT_EQ(text->setTextString(wide.c_str()), Gcad::eOk);
    ASSERT_EQ(text->setHeight(1), Gcad::eOk);
    ASSERT_EQ(space->appendGcDbEntity(text), Gcad::eOk);
    text->needExtra().xdata.put(GcDbGroup::ofText(1001, GC_T("ACAD")));
    text->needExtra().xdata.put(GcDbGroup::ofText(1000, wide));
    EXPECT_EQ(text->close(), Gcad::eOk);
  }
  EXPECT_EQ(space->close(), Gcad::eOk);
}

std::vector<std::string> textsOf(GcDbDatabase& database) {
  std::vector<std::string> all;
  const auto* space = GcDbBlockTableRecord::cast(database.modelSpaceId().stub()->object);
  for (const GcDbObjectId id : space->entities()) {
    const auto* text = GcDbText::cast(id.stub()->object);
    if (!text) continue;
    all.push_back(toUtf8(view(text->textString())));
    if (!text->extra()) continue;
    GcDbGroupList::Cursor cursor(text->extra()->xdata);
    for (GcDbGroup group; cursor.next(group);)
      if (group.code == 1000) all.push_back(toUtf8(group.text));
  }
  return all;
}

TEST(Text, EveryScriptThroughEveryVersionFormAndPage) {
  for (const char* page : kPages) {
    SCOPED_TRACE(page);
    GcDbDatabase database;
    fill(database, page);
    const auto before = textsOf(database);
    ASSERT_EQ(before.size(), 2 * std::size(kTexts));
    for (const auto version : {GcDb::kDHL_AC1009, GcDb::kDHL_AC1015, GcDb::kDHL_AC1018, GcDb::kDHL_AC1021,
                               GcDb::kDHL_AC1024, GcDb::kDHL_AC1027, GcDb::kDHL_AC1032}) {
      for (const bool binary : {false, true}) {
        SCOPED_TRACE("DXF " + std::to_string(version) + (binary ? " binary" : ""));
        const auto again = gc::test::load(gc::test::save(database, version, binary));
        ASSERT_TRUE(again);
        EXPECT_EQ(textsOf(*again), before);
      }
    }
    for (const int version : {GcDb::kDHL_AC1015, GcDb::kDHL_AC1018, GcDb::kDHL_AC1024, GcDb::kDHL_AC1032}) {
      SCOPED_TRACE("DWG " + std::to_string(version));
      std::vector<std::uint8_t> bytes;
      std::string message;
      ASSERT_EQ(gc::dwg::writeBytes(database, version, bytes, message), Gcad::eOk) << message;
      GcDbDatabase again(false);
      ASSERT_EQ(gc::dwg::read(again, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}), Gcad::eOk);
      EXPECT_EQ(textsOf(again), before);
    }
  }
}

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

}  // namespace
