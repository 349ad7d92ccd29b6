// Classes whose values are kept as their groups: through DWG records of every version, and what has no record as a
// proxy of its groups.
#include <gtest/gtest.h>

#include <fstream>

#include "db/database.h"
#include "db/xrecord.h"
#include "db/zombie.h"
#include "host/db/core/asgroups.h"
#include "host/db/core/fileformats.h"
#include "host/db/core/store.h"
#include "host/dwg/record/grouppass.h"
#include "host/dwg/record/recordcodec.h"
#include "host/rx/view.h"
#include "tests/scratch.h"

namespace {

constexpr int kWritten[] = {gc::dwg::kR2000, gc::dwg::kR2004, gc::dwg::kR2010, gc::dwg::kR2013, gc::dwg::kR2018};

// A group per word: code, '=', value.
std::string linesOf(const std::string& objects) {
  std::string text;
  size_t at = 0;
  while (at < objects.size()) {
    const size_t end = std::min(objects.find('|', at), objects.size());
    const std::string group = objects.substr(at, end - at);
    const size_t equals = group.find('=');
    text += group.substr(0, equals) + "\n" + group.substr(equals + 1) + "\n";
    at = end + 1;
  }
  return text;
}

std::string dxfOf(const std::string& objects, const std::string& entities) {
  std::string text = "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1032\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n" +
                     linesOf(entities) +
                     "0\nENDSEC\n0\nSECTION\n2\nOBJECTS\n0\nDICTIONARY\n"
                     "5\nC\n330\n0\n100\nAcDbDictionary\n281\n1\n3\nONE\n350\n1AA\n3\nTWO\n350\n1AB\n";
  return text + linesOf(objects) + "0\nENDSEC\n0\nEOF\n";
}

const std::string kBorder =
    "|302=GRIDFORMAT|1=GRIDFORMAT_BEGIN|90=0|91=1|62=3|420=65280|92=25|340=0|93=1|40=1.125|309=GRIDFORMAT_END";

// A cell style with a true colour, margins and one border.
std::string cellStyle(int number, const std::string& name) {
  return "|300=CELLSTYLE|1=TABLEFORMAT_BEGIN|90=5|170=1|91=0|92=32768|62=257|93=1|300=CONTENTFORMAT|"
         "1=CONTENTFORMAT_BEGIN|90=0|91=0|92=512|93=0|300=%lu2|40=0.5|140=1.0|94=5|62=1|340=0|144=6.0|"
         "309=CONTENTFORMAT_END|171=1|301=MARGIN|1=CELLMARGIN_BEGIN|40=1.5|40=2.5|40=1.5|40=1.5|40=4.5|40=4.5|"
         "309=CELLMARGIN_END|94=1|95=4" +
         kBorder + "|309=TABLEFORMAT_END|1=CELLSTYLE_BEGIN|90=" + std::to_string(number) + "|91=1|300=" + name +
         "|309=CELLSTYLE_END";
}

const std::string kMap =
    "0=CELLSTYLEMAP|5=1AA|330=C|100=AcDbCellStyleMap|90=2" + cellStyle(1, "_TITLE") + cellStyle(104, "Łąka");

std::string rowStyle(int height) {
  std::string row = "|7=Standard|140=" + std::to_string(height) + "|170=2|62=1|63=5|283=1|90=4|91=1|1=%ds2";
  for (int i = 0; i < 6; ++i)
    row += "|" + std::to_string(274 + i) + "=" + std::to_string(i == 2 ? 30 : -2) + "|" + std::to_string(284 + i) +
           "=" + std::to_string(i % 2) + "|" + std::to_string(64 + i) + "=" + std::to_string(i);
  return row;
}

const std::string kTableStyle =
    "0=TABLESTYLE|5=1AB|330=C|100=AcDbTableStyle|280=0|3=Mine|70=1|71=0|40=2.5|41=1.5|280=0|"
    "281=0" +
    rowStyle(3) + rowStyle(6) + rowStyle(4);

const std::string kRender =
    "0=RAPIDRTRENDERSETTINGS|5=1AB|330=C|100=AcDbRenderSettings|90=2|1=Medium|290=1|290=0|290=1|"
    "290=1|1=|1=Applies 5 rendering levels|90=1|100=AcDbRapidRTRenderSettings|90=3|70=0|90=5|"
    "90=1|70=1|70=2|40=3.0|40=4.0|290=1";

class GroupsTest : public testing::Test {
 protected:
  void load(GcDbDatabase& database, const std::string& name) {
    std::string message;
    ASSERT_EQ(gcdbReadDrawing(database, path(name), message), Gcad::eOk) << message;
  }
  void save(GcDbDatabase& database, const std::string& name, int version) {
    std::string message;
    GcDbSaveOptions options;
    options.version = static_cast<GcDb::GcDbDwgVersion>(version);
    ASSERT_EQ(gcdbSaveDrawing(database, path(name), options, message), Gcad::eOk) << message;
  }
  void put(const std::string& objects, const std::string& entities = {}) {
    std::ofstream(path("in.dxf")) << dxfOf(objects, entities);
  }
  [[nodiscard]] std::string path(const std::string& name) const { return (m_scratch.path() / name).string(); }

  // The drawing as it comes back from DWG of each version: `look(back, version)`.
  template <class Look>
  void throughEveryVersion(GcDbDatabase& database, const Look& look) {
    for (const int version : kWritten) {
      SCOPED_TRACE(version);
      save(database, "out.dwg", version);
      GcDbDatabase back(false, true);
      load(back, "out.dwg");
      look(back, version);
    }
  }

 private:
  gc::test::ScratchFolder m_scratch;
};

const GcDbObject* objectOf(GcDbDatabase& database, uint64_t handle) {
  const GcDbStub* stub = database.store().find(handle);
  return stub == nullptr ? nullptr : stub->object;
}

bool isZombie(const GcDbObject& object) { return GcDbZombieObject::cast(&object) != nullptr; }

// The object is of its class before and after, with the same groups; `hasRecord`: the version has a record for it.
void expectSameThrough(GcDbDatabase& database, GcDbDatabase& back, uint64_t handle, int version, bool hasRecord) {
  const GcDbObject* before = objectOf(database, handle);
  const GcDbObject* after = objectOf(back, handle);
  ASSERT_NE(before, nullptr);
  ASSERT_NE(after, nullptr);
  EXPECT_FALSE(isZombie(*before));
  EXPECT_EQ(gc::dwg::hasPacking(*before, version), hasRecord);
  EXPECT_EQ(before->isA(), after->isA());
  EXPECT_TRUE(gcdbAsGroups(*before).groups == gcdbAsGroups(*after).groups) << handle;
}

TEST_F(GroupsTest, MapsOfCellStylesAndRenderersComeThroughEveryVersion) {
  put(kMap + "|" + kRender);
  GcDbDatabase database(false, true);
  load(database, "in.dxf");
  throughEveryVersion(database, [&](GcDbDatabase& back, int version) {
    for (const uint64_t handle : {0x1AA, 0x1AB}) expectSameThrough(database, back, handle, version, true);
  });
}

// Rows of a table style are cell styles in newer records, and rows again in older ones.
TEST_F(GroupsTest, TableStylesComeThroughEveryVersion) {
  put(kMap + "|" + kTableStyle);
  GcDbDatabase database(false, true);
  load(database, "in.dxf");
  const GcDbObject* before = objectOf(database, 0x1AB);
  ASSERT_NE(before, nullptr);
  ASSERT_FALSE(isZombie(*before));
  ASSERT_TRUE(gc::dwg::hasPacking(*before, gc::dwg::kR2018));
  // The groups of a file of 2018, and what they are when they have been cell styles.
  const auto groupsAfter = [&](const std::vector<int>& versions) {
    auto from = std::make_unique<GcDbDatabase>(false, true);
    load(*from, "in.dxf");
    for (const int version : versions) {
      save(*from, "out.dwg", version);
      from = std::make_unique<GcDbDatabase>(false, true);
      load(*from, "out.dwg");
    }
    save(*from, "out.dxf", gc::dwg::kR2018);
    std::ifstream file(path("out.dxf"));
    std::string all((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    const size_t at = all.find("AcDbTableStyle\n", all.find("OBJECTS"));
    return all.substr(at, all.find("\n  0\n", at) - at);
  };
  const std::string whole = groupsAfter({});
  ASSERT_NE(whole.find("Mine"), std::string::npos);
  EXPECT_EQ(groupsAfter({gc::dwg::kR2018}), whole);
  EXPECT_EQ(groupsAfter({gc::dwg::kR2010, gc::dwg::kR2013}), whole);
  // Before 2007 rows have no kinds of data, files before 2010 no version: those are kept beside the records.
  EXPECT_EQ(groupsAfter({gc::dwg::kR2004}), whole);
  EXPECT_EQ(groupsAfter({gc::dwg::kR2000}), whole);
}

// Groups in an order that no record has: the object goes as a proxy, and is itself again.
TEST_F(GroupsTest, WhatFitsNoRecordGoesAsAProxy) {
  std::string odd = kMap;
  odd.replace(odd.find("|93=1|300=CONTENTFORMAT"), 5, "");
  put(odd + "|" + kRender + "|1=more than others have");
  GcDbDatabase database(false, true);
  load(database, "in.dxf");
  throughEveryVersion(database, [&](GcDbDatabase& back, int version) {
    for (const uint64_t handle : {0x1AA, 0x1AB}) expectSameThrough(database, back, handle, version, false);
  });
}

// Codes of extended data among an object's own groups are its own until an application is named.
TEST_F(GroupsTest, OwnGroupsWithCodesOfExtendedData) {
  const std::string own = "1071=135625452|1010=5.0|1020=6.0|1030=7.0|70=25|1=State|1071=-4|1000=inside";
  put("0=XRECORD|5=1AA|330=C|100=AcDbXrecord|280=1|" + own +
      "|1001=ACAD|1070=7|0=BLOCKTHING|5=1AB|330=C|100=AcDbBlockThing|90=1|" + own);
  GcDbDatabase database(false, true);
  load(database, "in.dxf");
  auto* record = const_cast<GcDbXrecord*>(GcDbXrecord::cast(objectOf(database, 0x1AA)));
  ASSERT_NE(record, nullptr);
  GcDbGroupList::Cursor cursor(record->groups());
  std::string codes;
  for (GcDbGroup group; cursor.next(group);) codes += std::to_string(group.code) + " ";
  EXPECT_EQ(codes, "1071 1010 70 1 1071 1000 ");
  throughEveryVersion(database, [&](GcDbDatabase& back, int) {
    save(back, "out.dxf", gc::dwg::kR2018);
    GcDbDatabase again(false, true);
    load(again, "out.dxf");
    for (const uint64_t handle : {0x1AA, 0x1AB})
      for (GcDbDatabase* each : {&back, &again}) {
        const GcDbObject* after = objectOf(*each, handle);
        ASSERT_NE(after, nullptr);
        EXPECT_TRUE(gcdbAsGroups(*objectOf(database, handle)).groups == gcdbAsGroups(*after).groups) << handle;
      }
  });
}

// A matrix that moves, under one code.
std::string matrix(int code, double x) {
  std::string text;
  for (int i = 0; i < 16; ++i)
    text += "|" + std::to_string(code) + "=" + std::to_string(i == 3 ? x : i % 5 == 0 ? 1.0 : 0.0);
  return text;
}

std::string sweep() {
  return "|42=0.25|43=1.0|44=2.0|45=0.5|48=1.5|49=0.125" + matrix(46, 7) + matrix(47, -3) +
         "|290=1|70=1|71=2|292=1|293=0|294=1|295=0|296=1|11=1.0|21=2.0|31=3.0";
}

// The fields of another record: 1,100 bits.
std::string profile(int code, int type) {
  std::string bytes;
  for (int i = 0; i < 138; ++i) bytes += i % 2 == 0 ? "5A" : i < 137 ? "C3" : "C0";
  return "|" + std::to_string(code) + "=" + std::to_string(type) + "|90=1100|310=" + bytes.substr(0, 254) +
         "|310=" + bytes.substr(254);
}

std::string surface(const std::string& name, const std::string& subclass, const std::string& shape) {
  return "0=" + name + "|5=1AB|330=1F|100=AcDbEntity|8=0|100=AcDbModelerGeometry|70=1|100=AcDbSurface|71=6|72=4" +
         (subclass.empty() ? "" : "|100=" + subclass + shape);
}

TEST_F(GroupsTest, SurfacesComeThroughEveryVersion) {
  const std::string loft = "|70=0|41=1.5|42=1.25|43=2.0|44=3.0|290=0|291=1|292=1|293=1|294=0|295=0|296=0|297=1";
  const std::string all[] = {
      surface("PLANESURFACE", "", ""),
      surface("SURFACE", "", ""),
      surface("EXTRUDEDSURFACE", "AcDbExtrudedSurface",
              profile(90, 35) + "|10=0.0|20=0.0|30=200.0" + matrix(40, 1) + sweep()),
      surface("SWEPTSURFACE", "AcDbSweptSurface",
              profile(90, 77) + profile(91, 19) + matrix(40, 1) + matrix(41, 2) + sweep()),
      surface("REVOLVEDSURFACE", "AcDbRevolvedSurface",
              profile(90, 77) + "|10=1.0|20=2.0|30=3.0|11=0.0|21=1.0|31=0.0|40=0.5|41=0.25" + matrix(42, 4) +
                  "|43=0.125|44=1.0|45=2.0|46=0.75|290=0|291=1"),
      surface("LOFTEDSURFACE", "AcDbLoftedSurface", matrix(40, 9) + profile(90, 77) + profile(90, 35) + loft)};
  for (const std::string& each : all) {
    SCOPED_TRACE(each.substr(0, 20));
    put("", each);
    GcDbDatabase database(false, true);
    load(database, "in.dxf");
    throughEveryVersion(database, [&](GcDbDatabase& back, int version) {
      const GcDbObject* before = objectOf(database, 0x1AB);
      const GcDbObject* after = objectOf(back, 0x1AB);
      ASSERT_NE(before, nullptr);
      ASSERT_NE(after, nullptr);
      EXPECT_TRUE(gc::dwg::hasPacking(*before, version));
      EXPECT_EQ(before->isA(), after->isA());
      EXPECT_TRUE(gcdbAsGroups(*before).groups == gcdbAsGroups(*after).groups);
    });
  }
}

// A loft with guides cannot be told from one with more profiles: it stays its groups.
TEST_F(GroupsTest, LoftsOfThreeCurvesGoAsProxies) {
  put("", surface("LOFTEDSURFACE", "AcDbLoftedSurface",
                  matrix(40, 9) + profile(90, 77) + profile(90, 35) + profile(90, 19) +
                      "|70=0|41=1.5|42=1.25|43=2.0|44=3.0|290=0|291=1|292=1|293=1|294=0|295=0|296=0|297=1"));
  GcDbDatabase database(false, true);
  load(database, "in.dxf");
  throughEveryVersion(database, [&](GcDbDatabase& back, int version) {
    const GcDbObject* before = objectOf(database, 0x1AB);
    const GcDbObject* after = objectOf(back, 0x1AB);
    EXPECT_FALSE(gc::dwg::hasPacking(*before, version));
    ASSERT_NE(after, nullptr);
    EXPECT_EQ(before->isA(), after->isA());
    EXPECT_TRUE(gcdbAsGroups(*before).groups == gcdbAsGroups(*after).groups);
  });
}

// The place of a drawing: long texts in pieces, points and faces of the net that turns places into degrees.
TEST_F(GroupsTest, GeoDataComesThroughNewVersionsAndAsAProxyThroughOld) {
  const std::string system(255, 'x');
  put("0=GEODATA|5=1AB|330=C|100=AcDbGeoData|90=2|330=0|70=1|10=1.0|20=2.0|30=3.0|11=-122.5|21=37.75|31=0.0|40=1.0|"
      "91=6|41=1.0|92=6|210=0.0|220=0.0|230=1.0|12=0.0|22=1.0|95=3|141=1.0|294=0|142=0.0|143=0.0|303=" +
      system + "|303=" + system +
      "|301=rest Łąka|302=<point>|305=|306=|307=|93=2|13=1.0|23=2.0|14=3.0|24=4.0|13=5.0|23=6.0|" +
      "14=7.0|24=8.0|96=1|97=0|98=1|99=0");
  GcDbDatabase database(false, true);
  load(database, "in.dxf");
  throughEveryVersion(database, [&](GcDbDatabase& back, int version) {
    const GcDbObject* before = objectOf(database, 0x1AB);
    const GcDbObject* after = objectOf(back, 0x1AB);
    ASSERT_NE(before, nullptr);
    ASSERT_NE(after, nullptr);
    EXPECT_EQ(gc::dwg::hasPacking(*before, version), version >= gc::dwg::kR2010);
    EXPECT_EQ(before->isA(), after->isA());
    EXPECT_TRUE(gcdbAsGroups(*before).groups == gcdbAsGroups(*after).groups);
  });
}

}  // namespace
