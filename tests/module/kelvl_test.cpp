// The class of named values by itself: its filing with every status, every record version and every log line.
#include "module/ldata/kelvl.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "host/rx/text/utf.h"
#include "module/log/logger.h"
#include "tests/module/fakefilers.h"
#include "tests/module/listappender.h"

namespace {

using Gcad::ErrorStatus;
using Lines = std::vector<std::string>;

std::string utf8(const GcString& text) { return gc::toUtf8({text.c_str(), text.length()}); }

class KelVLTest : public testing::Test {
 protected:
  void SetUp() override {
    CKel_VL::rxInit();
    testing::internal::CaptureStdout();
    Logger::get(GC_T("ldataLogger")).setAppender(std::make_unique<ListAppender>(m_lines));
    testing::internal::GetCapturedStdout();
    m_value = std::make_unique<CKel_VL>();
    m_lines.clear();
  }
  void TearDown() override {
    m_value.reset();
    testing::internal::CaptureStdout();
    Logger::destroyAll();
    testing::internal::GetCapturedStdout();
  }

  // What was logged since the last call.
  Lines logged() {
    Lines texts;
    for (const GcString& line : m_lines) texts.push_back(utf8(line));
    m_lines.clear();
    return texts;
  }
  std::string text() {
    const GCHAR* kept = nullptr;
    EXPECT_EQ(m_value->getLData(kept), Gcad::eOk);
    m_lines.clear();
    return kept != nullptr ? utf8(GcString(kept)) : "(none)";
  }
  void set(const GCHAR* text) {
    EXPECT_EQ(m_value->setLData(text), Gcad::eOk);
    m_lines.clear();
  }
  ErrorStatus readDwg(FailingDwgFiler& filer) { return m_value->dwgInFields(&filer); }

  std::unique_ptr<CKel_VL> m_value;
  std::vector<GcString> m_lines;
};

// Records as a filer into memory keeps them.
FailingDwgFiler record(uint32_t version, const std::basic_string<GCHAR>& units) {
  FailingDwgFiler filer;
  filer.writeUInt32(version);
  filer.writeUInt32(static_cast<uint32_t>(2 * units.size()));
  filer.writeBytes(units.data(), 2 * units.size());
  return FailingDwgFiler(filer.bytes());
}

// ---- the text --------------------------------------------------------------------------------------------

TEST_F(KelVLTest, ANewObjectHasNoText) {
  const GCHAR* kept = GC_T("not touched");
  EXPECT_EQ(m_value->getLData(kept), Gcad::eOk);
  EXPECT_EQ(kept, nullptr);
  EXPECT_EQ(logged(), (Lines{"DEBUG: CKel_VL::getLData start", "DEBUG: CKel_VL::getLData m_sLData len=0, size=0",
                             "DEBUG: CKel_VL::getLData end"}));
}

TEST_F(KelVLTest, TheTextIsHandedOutItselfAndMayBeSetAgain) {
  set(GC_T("abc"));
  const GCHAR* first = nullptr;
  const GCHAR* second = nullptr;
  m_value->getLData(first);
  m_value->getLData(second);
  EXPECT_EQ(first, second);
  set(first);
  EXPECT_EQ(text(), "abc");
}

TEST_F(KelVLTest, NoTextCountsAsLengthZero) {
  const ErrorStatus status = m_value->setLData(nullptr);
  const std::string number = std::to_string(static_cast<int>(status));
  EXPECT_EQ(logged(), (Lines{"DEBUG: CKel_VL::setLData start", "DEBUG: CKel_VL::setLData lData len=0, size=0",
                             "DEBUG: CKel_VL::setLData m_sLData len=0, size=0, status=" + number,
                             "DEBUG: CKel_VL::setLData end"}));
}

// ---- DWG -------------------------------------------------------------------------------------------------

TEST_F(KelVLTest, DwgRecordIsVersionCountAndUnits) {
  set(GC_T("a\U0001F600"));
  FailingDwgFiler filer;
  EXPECT_EQ(m_value->dwgOutFields(&filer), Gcad::eOk);
  EXPECT_EQ(logged(),
            (Lines{"DEBUG: CKel_VL::dwgOutFields Start", "INFO: CKel_VL::dwgOutFields Zapisano numer wersji=2",
                   "DEBUG: CKel_VL::dwgOutFields Zapisano liczbe bajtow=6",
                   "DEBUG: CKel_VL::dwgOutFields Zapisano dane", "DEBUG: CKel_VL::dwgOutFields End"}));
  const std::vector<uint8_t> wanted{2, 0, 0, 0, 6, 0, 0, 0, 'a', 0, 0x3D, 0xD8, 0x00, 0xDE};
  EXPECT_EQ(filer.bytes(), wanted);
}

TEST_F(KelVLTest, AnObjectWithoutTextSavesACountOfNothing) {
  FailingDwgFiler out;
  EXPECT_EQ(m_value->dwgOutFields(&out), Gcad::eOk);
  EXPECT_EQ(out.bytes(), (std::vector<uint8_t>{2, 0, 0, 0, 0, 0, 0, 0}));
  FailingDwgFiler in(out.bytes());
  EXPECT_EQ(readDwg(in), Gcad::eOk);
  EXPECT_EQ(text(), "(none)");
}

// Deliberate: a count of nothing leaves the text that is there.
TEST_F(KelVLTest, ACountOfNothingLeavesTheText) {
  set(GC_T("earlier"));
  FailingDwgFiler in = record(2, GC_T(""));
  EXPECT_EQ(readDwg(in), Gcad::eOk);
  EXPECT_EQ(text(), "earlier");
}

TEST_F(KelVLTest, EveryFailingWriteIsItsStatusAndItsLine) {
  set(GC_T("abc"));
  const char* lines[] = {"ERROR: CKel_VL::dwgOutFields Blad przy zapisie numeru wersji!",
                         "ERROR: CKel_VL::dwgOutFields Blad przy zapisie liczby bajtow!",
                         "ERROR: CKel_VL::dwgOutFields Blad przy zapisie danych!"};
  for (int call = 0; call < 3; ++call) {
    FailingDwgFiler filer;
    filer.failAt(call, Gcad::eFilerError);
    EXPECT_EQ(m_value->dwgOutFields(&filer), Gcad::eFilerError) << call;
    EXPECT_EQ(logged().back(), lines[call]);
  }
}

TEST_F(KelVLTest, AFilerThatFailedBeforeFailsAtTheBase) {
  FailingDwgFiler filer;
  filer.setFilerStatus(Gcad::eFilerError);
  EXPECT_EQ(m_value->dwgOutFields(&filer), Gcad::eFilerError);
  EXPECT_EQ(logged().back(), "ERROR: CKel_VL::dwgOutFields Blad przy zapisie danych klasy bazowej!");
  EXPECT_EQ(readDwg(filer), Gcad::eFilerError);
  EXPECT_EQ(logged(), (Lines{"DEBUG: CKel_VL::dwgInFields Start",
                             "ERROR: CKel_VL::dwgInFields Blad podczas odczytu danych klasy bazowej!"}));
}

TEST_F(KelVLTest, DwgRecordsOfVersionZeroAndTwoAreCounted) {
  for (const uint32_t version : {0U, 2U}) {
    FailingDwgFiler in = record(version, GC_T("zażółć"));
    EXPECT_EQ(readDwg(in), Gcad::eOk);
    EXPECT_EQ(logged(),
              (Lines{"DEBUG: CKel_VL::dwgInFields Start",
                     "INFO: CKel_VL::dwgInFields Odczytano numer wersji=" + std::to_string(version),
                     "DEBUG: CKel_VL::dwgInFields Odczytano liczbe bajtow=12", "DEBUG: CKel_VL::setLData start",
                     "DEBUG: CKel_VL::setLData lData len=6, size=12",
                     "DEBUG: CKel_VL::setLData m_sLData len=6, size=12, status=0", "DEBUG: CKel_VL::setLData end",
                     "DEBUG: CKel_VL::dwgInFields Odczytano dane", "DEBUG: CKel_VL::dwgInFields End"}));
    EXPECT_EQ(text(), "zażółć");
    EXPECT_TRUE(in.atEnd());
  }
}

TEST_F(KelVLTest, DwgRecordOfVersionOneIsOneString) {
  FailingDwgFiler out;
  out.writeUInt32(1);
  out.writeString(GC_T("old text"));
  FailingDwgFiler in(out.bytes());
  EXPECT_EQ(readDwg(in), Gcad::eOk);
  EXPECT_EQ(logged(), (Lines{"DEBUG: CKel_VL::dwgInFields Start", "INFO: CKel_VL::dwgInFields Odczytano numer wersji=1",
                             "DEBUG: CKel_VL::dwgInFields Odczytano dane", "DEBUG: CKel_VL::dwgInFields End"}));
  EXPECT_EQ(text(), "old text");
}

TEST_F(KelVLTest, DwgRecordsOfNewerVersionsStayProxies) {
  for (const uint32_t version : {3U, 0x80000000U, 0xFFFFFFFFU}) {
    set(GC_T("kept"));
    FailingDwgFiler in = record(version, GC_T("new"));
    EXPECT_EQ(readDwg(in), Gcad::eMakeMeProxy);
    EXPECT_EQ(logged().back(), "ERROR: CKel_VL::dwgInFields Blad nieprawidlowy numer wersji!");
    EXPECT_EQ(text(), "kept");
  }
}

TEST_F(KelVLTest, EveryFailingReadIsItsStatusAndItsLine) {
  const char* lines[] = {// Deliberate: the misspelt word.
                         "ERROR: CKel_VL::dwgInFields Blad podczas odczytu numeru wesji!",
                         "ERROR: CKel_VL::dwgInFields Blad podczas odczytu liczby bajtow!",
                         "ERROR: CKel_VL::dwgInFields Blad podczas odczytu danych!"};
  for (int call = 0; call < 3; ++call) {
    FailingDwgFiler in = record(2, GC_T("abc"));
    in.failAt(call, Gcad::eFilerError);
    EXPECT_EQ(readDwg(in), Gcad::eFilerError) << call;
    EXPECT_EQ(logged().back(), lines[call]);
    EXPECT_EQ(text(), "(none)");
  }
}

TEST_F(KelVLTest, AFailingStringOfVersionOneIsItsStatusAndItsLine) {
  FailingDwgFiler out;
  out.writeUInt32(1);
  out.writeString(GC_T("old"));
  FailingDwgFiler in(out.bytes());
  in.failAt(1, Gcad::eFilerError);
  EXPECT_EQ(readDwg(in), Gcad::eFilerError);
  EXPECT_EQ(logged().back(), "ERROR: CKel_VL::dwgInFields Blad podczas odczytu danych!");
}

// A count beyond the record, as damage leaves it: no more is kept than the filer gave.
TEST_F(KelVLTest, ACountBeyondTheRecordFails) {
  FailingDwgFiler out;
  out.writeUInt32(2);
  out.writeUInt32(0x7FFFFFFF);
  FailingDwgFiler in(out.bytes());
  EXPECT_NE(readDwg(in), Gcad::eOk);
  EXPECT_EQ(text(), "(none)");
}

TEST_F(KelVLTest, AnOddCountOfBytesIsRead) {
  FailingDwgFiler out;
  out.writeUInt32(2);
  out.writeUInt32(3);
  out.writeBytes("a\0b", 3);
  FailingDwgFiler in(out.bytes());
  EXPECT_EQ(readDwg(in), Gcad::eOk);
  EXPECT_EQ(text(), "ab");
}

// ---- DXF -------------------------------------------------------------------------------------------------

TEST_F(KelVLTest, DxfGroupsAreMarkerVersionAndOneText) {
  const GcString large(std::basic_string<GCHAR>(100000, 'x').c_str());
  set(large.c_str());
  GroupListFiler filer;
  EXPECT_EQ(m_value->dxfOutFields(&filer), Gcad::eOk);
  EXPECT_EQ(logged(), (Lines{"DEBUG: CKel_VL::dxfOutFields Start",
                             "DEBUG: CKel_VL::dxfOutFields m_sLData len=100000, size=200000, filerStatus=0",
                             "DEBUG: CKel_VL::dxfOutFields End"}));
  ASSERT_EQ(filer.groups.size(), 3U);
  EXPECT_EQ(filer.groups[0].code, 100);
  EXPECT_EQ(utf8(filer.groups[0].text), "CKel_VL");
  EXPECT_EQ(filer.groups[1].code, 90);
  EXPECT_EQ(filer.groups[1].integer, 2);
  EXPECT_EQ(filer.groups[2].code, 300);
  EXPECT_EQ(filer.groups[2].text, large);
}

TEST_F(KelVLTest, FailingDxfWritesReturnAtOnceButForTheText) {
  for (int call = 0; call < 2; ++call) {
    GroupListFiler filer;
    filer.failAt(call, Gcad::eFilerError);
    EXPECT_EQ(m_value->dxfOutFields(&filer), Gcad::eFilerError) << call;
    EXPECT_EQ(logged(), Lines{"DEBUG: CKel_VL::dxfOutFields Start"});
  }
  // Deliberate: the text's own status is not looked at; the filer's is returned.
  GroupListFiler filer;
  filer.failAt(2, Gcad::eFilerError);
  EXPECT_EQ(m_value->dxfOutFields(&filer), Gcad::eFilerError);
  EXPECT_EQ(logged().back(), "DEBUG: CKel_VL::dxfOutFields End");
}

TEST_F(KelVLTest, AFilerThatFailedBeforeReturnsItsStatus) {
  GroupListFiler filer;
  filer.groups = {{100, GC_T("CKel_VL"), 0}, {90, {}, 2}, {300, GC_T("text"), 0}};
  filer.setStatus(Gcad::eFilerError);
  EXPECT_EQ(m_value->dxfOutFields(&filer), Gcad::eFilerError);
  EXPECT_EQ(logged(), Lines{"DEBUG: CKel_VL::dxfOutFields Start"});
  EXPECT_EQ(m_value->dxfInFields(&filer), Gcad::eFilerError);
  EXPECT_EQ(logged(), Lines{"DEBUG: CKel_VL::dxfInFields Start"});
  EXPECT_EQ(filer.position(), 0U);
}

TEST_F(KelVLTest, OtherSubclassDataIsLeftWhereItIs) {
  GroupListFiler filer;
  filer.groups = {{100, GC_T("AcDbOther"), 0}, {90, {}, 2}};
  EXPECT_EQ(m_value->dxfInFields(&filer), Gcad::eOk);
  EXPECT_EQ(filer.position(), 0U);
  EXPECT_EQ(text(), "(none)");
}

TEST_F(KelVLTest, AMissingVersionIsAnErrorAndTheGroupGoesBack) {
  GroupListFiler filer;
  filer.groups = {{100, GC_T("CKel_VL"), 0}, {300, GC_T("text"), 0}};
  EXPECT_EQ(m_value->dxfInFields(&filer), Gcad::eInvalidDxfCode);
  EXPECT_EQ(static_cast<int>(Gcad::eInvalidDxfCode), 50);
  EXPECT_EQ(utf8(filer.message), "\nError: expected group code %d (version #)");
  EXPECT_EQ(filer.values, 90);
  EXPECT_EQ(filer.position(), 1U);
}

TEST_F(KelVLTest, DxfVersionsOneAndTwoKeepTheLastText) {
  for (const int version : {1, 2}) {
    GroupListFiler filer;
    filer.groups = {
        {100, GC_T("CKel_VL"), 0}, {90, {}, version}, {300, GC_T("first"), 0}, {300, GC_T("last"), 0}, {70, {}, 1}};
    EXPECT_EQ(m_value->dxfInFields(&filer), Gcad::eOk);
    const Lines lines = logged();
    EXPECT_EQ(lines.front(), "DEBUG: CKel_VL::dxfInFields Start");
    ASSERT_GE(lines.size(), 2U);
    // Deliberate: reading logs the text of writing.
    EXPECT_EQ(lines[lines.size() - 2], "DEBUG: CKel_VL::dxfOutFields m_sLData len=4, size=8, filerStatus=0");
    EXPECT_EQ(lines.back(), "DEBUG: CKel_VL::dxfInFields End");
    EXPECT_EQ(text(), "last");
    EXPECT_EQ(filer.position(), 4U);  // the group of another code went back
  }
}

// Deliberate: version 0 reads its texts and drops them.
TEST_F(KelVLTest, DxfVersionZeroKeepsNoText) {
  GroupListFiler filer;
  filer.groups = {{100, GC_T("CKel_VL"), 0}, {90, {}, 0}, {300, GC_T("dropped"), 0}};
  EXPECT_EQ(m_value->dxfInFields(&filer), Gcad::eOk);
  EXPECT_EQ(logged().back(), "DEBUG: CKel_VL::dxfInFields End");
  EXPECT_EQ(text(), "(none)");
  EXPECT_EQ(filer.position(), 3U);
}

TEST_F(KelVLTest, NewerDxfVersionsStayProxiesWithoutALine) {
  for (const int version : {3, -1}) {
    GroupListFiler filer;
    filer.groups = {{100, GC_T("CKel_VL"), 0}, {90, {}, version}, {300, GC_T("new"), 0}};
    EXPECT_EQ(m_value->dxfInFields(&filer), Gcad::eMakeMeProxy);
    EXPECT_EQ(logged(), Lines{"DEBUG: CKel_VL::dxfInFields Start"});
    EXPECT_EQ(static_cast<int>(Gcad::eMakeMeProxy), 301);
  }
}

TEST_F(KelVLTest, AFailingDxfReadInTheTextsIsAnInvalidGroup) {
  GroupListFiler filer;
  filer.groups = {{100, GC_T("CKel_VL"), 0}, {90, {}, 2}, {300, GC_T("kept"), 0}, {300, GC_T("never read"), 0}};
  filer.failAt(2, Gcad::eFilerError);
  EXPECT_EQ(m_value->dxfInFields(&filer), Gcad::eInvalidResBuf);
  EXPECT_EQ(logged().back(), "DEBUG: CKel_VL::dxfOutFields m_sLData len=4, size=8, filerStatus=59");
  EXPECT_EQ(text(), "kept");
}

// ---- the run-time class ----------------------------------------------------------------------------------

TEST_F(KelVLTest, TheClassIsRegisteredOnceUnderItsNames) {
  const GcRxClass* before = CKel_VL::desc();
  CKel_VL::rxInit([](const GcRxClass*, GCHAR*&, int) {});
  EXPECT_EQ(CKel_VL::desc(), before);
  EXPECT_EQ(gcrxFindGcRxClass(GC_T("CKel_VL")), before);
  EXPECT_EQ(utf8(GcString(CKel_VL::className())), "CKel_VL");
  EXPECT_EQ(m_value->isA(), before);
  EXPECT_EQ(CKel_VL::cast(m_value.get()), m_value.get());
  EXPECT_EQ(CKel_VL::cast(nullptr), nullptr);
  const GcDbDictionary other;
  EXPECT_EQ(CKel_VL::cast(&other), nullptr);
}

}  // namespace
