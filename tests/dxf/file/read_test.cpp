// What the reader makes of sound, old, damaged and hostile files.
#include <gtest/gtest.h>

#include <algorithm>

#include "db/dictionary.h"
#include "db/ellipse.h"
#include "db/line.h"
#include "db/zombie.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/header.h"
#include "host/db/core/names.h"
#include "host/db/core/store.h"
#include "tests/dxf/file/round_trip.h"

namespace {

using gc::test::load;
using gc::test::losses;
using gc::test::reportOf;
using gc::test::save;
using Lines = std::vector<std::string>;

std::string section(const std::string& name, const std::string& content) {
  return "  0\nSECTION\n  2\n" + name + "\n" + content + "  0\nENDSEC\n";
}

std::string header(const std::string& version, const std::string& more = "") {
  return section("HEADER", "  9\n$ACADVER\n  1\n" + version + "\n" + more);
}

const std::string kEof = "  0\nEOF\n";
const std::string kLine =
    "  0\nLINE\n  5\n100\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n1.0\n 20\n2.0\n 30\n3.0\n 11\n4.0\n "
    "21\n5.0\n 31\n6.0\n";

std::string drawing(const std::string& entities, const std::string& objects = "", const std::string& more = "") {
  return header("AC1015", "  9\n$HANDSEED\n  5\n1000\n" + more) + section("ENTITIES", entities) +
         (objects.empty() ? "" : section("OBJECTS", objects)) + kEof;
}

const GcDbObjectIdArray& entitiesOf(GcDbObjectId block) {
  return static_cast<const GcDbBlockTableRecord&>(*block.stub()->object).entities();
}

template <class T>
const T* objectAt(GcDbDatabase& database, std::uint64_t handle) {
  const GcDbStub* stub = database.store().find(handle);
  return stub && stub->object ? T::cast(stub->object) : nullptr;
}

GcText blockNames(GcDbDatabase& database) {
  const auto& table = static_cast<const GcDbSymbolTable&>(*database.blockTableId().stub()->object);
  GcText names;
  for (const GcDbObjectId id : table.records()) {
    names += view(static_cast<const GcDbSymbolTableRecord&>(*id.stub()->object).getName());
    names += ' ';
  }
  return names;
}

bool mentions(const Lines& report, const std::string& text) {
  return std::any_of(report.begin(), report.end(),
                     [&](const std::string& line) { return line.find(text) != line.npos; });
}

TEST(ReadDxf, ALineIsWhereTheFileSays) {
  const auto database = load(drawing(kLine));
  ASSERT_TRUE(database);
  EXPECT_EQ(reportOf(*database), Lines());
  const auto* line = objectAt<GcDbLine>(*database, 0x100);
  ASSERT_TRUE(line);
  EXPECT_TRUE(line->startPoint() == GcGePoint3d(1, 2, 3));
  EXPECT_TRUE(line->endPoint() == GcGePoint3d(4, 5, 6));
  EXPECT_EQ(line->ownerId(), database->modelSpaceId());
  EXPECT_EQ(line->layerId(), database->layerZero());
  ASSERT_EQ(entitiesOf(database->modelSpaceId()).length(), 1);
}

TEST(ReadDxf, WhatIsNoDxfFileIsRefused) {
  for (const char* file : {"", "\n", "hello", "0\nLINE\n", "1\n0\n", "AC1015"}) EXPECT_FALSE(load(file)) << file;
}

TEST(ReadDxf, TheOldestFilesNeedNothingButEntities) {
  const auto database = load(section("ENTITIES", "0\nLINE\n8\nWALLS\n10\n1.0\n20\n2.0\n11\n3.0\n21\n4.0\n") + kEof);
  ASSERT_TRUE(database);
  EXPECT_EQ(database->originalFileVersion(), GcDb::kDHL_AC1009);
  ASSERT_EQ(entitiesOf(database->modelSpaceId()).length(), 1);
  const auto* line = GcDbLine::cast(entitiesOf(database->modelSpaceId())[0].stub()->object);
  ASSERT_TRUE(line);
  EXPECT_TRUE(line->startPoint() == GcGePoint3d(1, 2, 0));
  EXPECT_TRUE(view(line->layer()) == GC_T("WALLS"));
  EXPECT_TRUE(mentions(reportOf(*database), "\"WALLS\" is used but not defined")) << reportOf(*database).front();
}

TEST(ReadDxf, OldBlocksAreFoundBeforeTheyAreDefinedAndSpacesGetTheirNames) {
  const std::string blocks =
      "0\nBLOCK\n8\n0\n2\nOUTER\n70\n0\n10\n1.0\n20\n2.0\n30\n0.0\n0\nINSERT\n8\n0\n2\nINNER\n10\n0.0\n20\n0."
      "0\n0\nENDBLK\n8\n0\n"
      "0\nBLOCK\n8\n0\n2\nINNER\n70\n0\n10\n0.0\n20\n0.0\n0\nLINE\n8\n0\n10\n0.0\n20\n0.0\n11\n1.0\n21\n1."
      "0\n0\nENDBLK\n8\n0\n"
      "0\nBLOCK\n8\n0\n2\n$MODEL_SPACE\n70\n0\n10\n0.0\n20\n0.0\n0\nENDBLK\n8\n0\n";
  const auto database = load(header("AC1009") + section("BLOCKS", blocks) +
                             section("ENTITIES", "0\nLINE\n8\n0\n67\n1\n10\n0.0\n20\n0.0\n11\n1.0\n21\n1.0\n") + kEof);
  ASSERT_TRUE(database);
  EXPECT_EQ(reportOf(*database), Lines());
  EXPECT_EQ(toUtf8(blockNames(*database)), "OUTER INNER *Model_Space *Paper_Space ");
  EXPECT_EQ(entitiesOf(database->modelSpaceId()).length(), 0);
  EXPECT_EQ(entitiesOf(database->paperSpaceId()).length(), 1);
}

TEST(ReadDxf, VerticesBelongToTheirPolylineAndAttributesToTheirInsert) {
  const auto database =
      load(header("AC1009") +
           section("ENTITIES",
                   "0\nPOLYLINE\n8\n0\n66\n1\n0\nVERTEX\n8\n0\n10\n1.0\n20\n1.0\n0\nVERTEX\n8\n0\n10\n2.0\n20\n1.0\n"
                   "0\nSEQEND\n8\n0\n0\nINSERT\n8\n0\n66\n1\n2\nB\n10\n0.0\n20\n0.0\n0\nATTRIB\n8\n0\n1\nx\n2\nTAG\n"
                   "0\nSEQEND\n8\n0\n0\nSEQEND\n8\n0\n0\nPOLYLINE\n8\n0\n0\nVERTEX\n8\n0\n10\n1.0\n20\n0.0\n") +
           kEof);
  ASSERT_TRUE(database);
  const auto& entities = entitiesOf(database->modelSpaceId());
  ASSERT_EQ(entities.length(), 3);
  GcDbObjectIdArray parts;
  entities[0].stub()->object->subOwned(parts);
  EXPECT_EQ(parts.length(), 3);
  for (const GcDbObjectId part : parts) EXPECT_EQ(part.stub()->object->ownerId(), entities[0]);
  EXPECT_TRUE(mentions(reportOf(*database), "SEQEND follows nothing it belongs to"));
  EXPECT_TRUE(mentions(reportOf(*database), "a sequence without its end"));
  const std::string saved = save(*database, GcDb::kDHL_AC1015);
  const auto again = load(saved);
  EXPECT_EQ(reportOf(*again), Lines());
  EXPECT_TRUE(losses(saved, save(*again, GcDb::kDHL_AC1015)).empty());
}

TEST(ReadDxf, UnknownObjectsKeepEverything) {
  const std::string strange =
      "  0\nSTRANGE_THING\n  5\n200\n102\n{ACAD_REACTORS\n330\n300\n102\n}\n330\n1F\n100\nAcDbEntity\n  8\n0\n "
      "62\n3\n100\nStrange\n"
      " 10\n1.0\n 20\n2.0\n 10\n5.0\n 40\n2.5\n 50\n45.0\n  1\nłąka²\n330\n100\n310\n0AFF\n290\n1\n160\n123456789012\n"
      "102\n{WHATEVER\n  1\nx\n102\n}\n1001\nAPP\n1070\n5\n1010\n1.0\n1020\n2.0\n1030\n3.0\n1005\n100\n";
  const std::string object =
      "  0\nDICTIONARY\n  5\nC\n330\n0\n100\nAcDbDictionary\n281\n1\n  3\nSTRANGE\n350\n300\n"
      "  0\nSTRANGE_OBJECT\n  5\n300\n330\nC\n100\nStrange\n 90\n7\n360\n200\n";
  const std::string file = header("AC1021", "  9\n$HANDSEED\n  5\n1000\n") + section("ENTITIES", kLine + strange) +
                           section("OBJECTS", object) + kEof;
  const auto database = load(file);
  ASSERT_TRUE(database);
  EXPECT_TRUE(objectAt<GcDbZombieEntity>(*database, 0x200));
  EXPECT_TRUE(objectAt<GcDbZombieObject>(*database, 0x300));
  for (const bool binary : {false, true}) {
    const std::string saved = save(*database, GcDb::kDHL_AC1021, binary);
    const Lines lost = losses(file, saved);
    // The owner was given as a block the file does not have.
    ASSERT_EQ(lost.size(), 1u) << lost.back();
    EXPECT_EQ(lost[0].substr(0, 40), "changed\tENTITIES STRANGE_THING 200\t330: ");
  }
}

TEST(ReadDxf, GroupsNoDescriptionKnowsStayWithTheirObject) {
  const std::string line = kLine + " 77\n5\n  1\nunknown\n 10\n9.0\n 20\n9.0\n100\nAcDbLater\n 70\n1\n";
  const std::string file = drawing(line);
  const auto database = load(file);
  ASSERT_TRUE(database);
  const auto* made = objectAt<GcDbLine>(*database, 0x100);
  ASSERT_TRUE(made);
  EXPECT_TRUE(made->startPoint() == GcGePoint3d(1, 2, 3));
  EXPECT_EQ(losses(file, save(*database, GcDb::kDHL_AC1015)), Lines());
}

// Some programs mark the entity part and nothing else.
TEST(ReadDxf, AnEntityIsReadThoughTheMarkOfItsClassIsMissing) {
  const std::string ellipse =
      "  0\nELLIPSE\n  5\n100\n100\nAcDbEntity\n  8\n0\n 62\n3\n 10\n1.0\n 20\n2.0\n 30\n0.0\n 11\n5.0\n 21\n0.0\n"
      " 31\n0.0\n 40\n0.5\n 41\n0.25\n 42\n1.5\n";
  const auto database = load(drawing(ellipse));
  ASSERT_NE(database, nullptr);
  const auto* read = objectAt<GcDbEllipse>(*database, 0x100);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->center(), GcGePoint3d(1, 2, 0));
  EXPECT_EQ(read->majorAxis(), GcGeVector3d(5, 0, 0));
  EXPECT_EQ(read->radiusRatio(), 0.5);
  EXPECT_EQ(read->colorIndex(), 3);
  EXPECT_EQ(losses(drawing(ellipse), save(*database, GcDb::kDHL_AC1015)), Lines());
}

TEST(ReadDxf, SettingsCommentsClassesPropertiesAndStrangeSectionsAreKept) {
  const std::string file =
      "999\nmade by hand\n" +
      header(
          "AC1024",
          "  9\n$DWGCODEPAGE\n  3\nANSI_1250\n  9\n$LTSCALE\n 40\n2.5\n  9\n$CLAYER\n  8\nWALLS\n  9\n$NOVELTY\n "
          "1\nx\n 70\n3\n"
          "  9\n$CUSTOMPROPERTYTAG\n  1\nfirst\n  9\n$CUSTOMPROPERTY\n  1\none\n  9\n$CUSTOMPROPERTYTAG\n  1\nsecond\n"
          "  9\n$CUSTOMPROPERTY\n  1\ntwo\n  9\n$HANDSEED\n  5\n1000\n") +
      section("CLASSES",
              "  0\nCLASS\n  1\nSTRANGE\n  2\nStrangeClass\n  3\nAn application\n 90\n1025\n 91\n0\n280\n1\n281\n0\n") +
      section("TABLES",
              "  0\nTABLE\n  2\nLAYER\n  5\n2\n330\n0\n100\nAcDbSymbolTable\n 70\n1\n  0\nLAYER\n  5\n50\n330\n2\n100\n"
              "AcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n  2\nWALLS\n 70\n0\n 62\n3\n  6\nContinuous\n  "
              "0\nENDTAB\n") +
      section("STRANGE", " 70\n2\n  0\nRECORD\n  1\nł\n310\n00FF\n") + kEof;
  const auto database = load(file);
  ASSERT_TRUE(database);
  EXPECT_EQ(database->header().real(GC_T("$LTSCALE")), 2.5);
  EXPECT_EQ(database->fileParts().customProperties.size(), 2u);
  EXPECT_TRUE(gcdbNameOfRecord(database->clayer()) == GC_T("WALLS"));
  const std::string saved = save(*database, GcDb::kDHL_AC1024);
  EXPECT_EQ(losses(file, saved), Lines());
  EXPECT_EQ(saved.substr(0, 17), "999\nmade by hand\n");
}

TEST(ReadDxf, AHandleThatIsTakenIsReplacedAndBothObjectsStay) {
  const std::string second =
      "  0\nLINE\n  5\n100\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n7.0\n 20\n7.0\n 30\n7.0\n";
  const auto database = load(drawing(kLine + second + "  0\nLINE\n  5\nXYZ\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n"));
  ASSERT_TRUE(database);
  EXPECT_EQ(entitiesOf(database->modelSpaceId()).length(), 3);
  EXPECT_TRUE(mentions(reportOf(*database), "handle 100, repaired: LINE: the handle is taken"));
  EXPECT_TRUE(mentions(reportOf(*database), "handle \"XYZ\": a new one given"));
  EXPECT_EQ(reportOf(*load(save(*database, GcDb::kDHL_AC1015))), Lines());
}

TEST(ReadDxf, AHandseedThatIsTakenIsRaised) {
  const auto database = load(header("AC1015", "  9\n$HANDSEED\n  5\n10\n") + section("ENTITIES", kLine) + kEof);
  ASSERT_TRUE(database);
  EXPECT_GT(static_cast<std::uint64_t>(database->handseed()), 0x100u);
  EXPECT_TRUE(mentions(reportOf(*database), "$HANDSEED 10 is taken"));
}

TEST(ReadDxf, ReferencesToNothingAreListedAndKept) {
  const std::string object = "  0\nDICTIONARY\n  5\nC\n330\n0\n100\nAcDbDictionary\n281\n1\n  3\nGONE\n350\n999\n";
  const std::string file = drawing(kLine, object);
  const auto database = load(file);
  ASSERT_TRUE(database);
  EXPECT_TRUE(mentions(reportOf(*database), "handle C, note: refers to 999, which is not there"));
  EXPECT_EQ(losses(file, save(*database, GcDb::kDHL_AC1015)), Lines());
}

TEST(ReadDxf, OwnersInACircleAreParted) {
  const std::string objects =
      "  0\nDICTIONARY\n  5\nC\n330\n0\n100\nAcDbDictionary\n"
      "  0\nDICTIONARY\n  5\nD\n330\nE\n100\nAcDbDictionary\n"
      "  0\nDICTIONARY\n  5\nE\n330\nD\n100\nAcDbDictionary\n"
      "  0\nDICTIONARY\n  5\nF\n330\nF\n100\nAcDbDictionary\n"
      "  0\nDICTIONARY\n  5\n10\n330\nF\n100\nAcDbDictionary\n";
  const auto database = load(drawing("", objects));
  ASSERT_TRUE(database);
  EXPECT_TRUE(mentions(reportOf(*database), "is its own owner"));
  EXPECT_EQ(objectAt<GcDbDictionary>(*database, 0x10)->ownerId().handle(), 0xFu);
  EXPECT_TRUE(objectAt<GcDbDictionary>(*database, 0xF)->ownerId().isNull());
  const auto* d = objectAt<GcDbDictionary>(*database, 0xD);
  const auto* e = objectAt<GcDbDictionary>(*database, 0xE);
  EXPECT_NE(d->ownerId().isNull(), e->ownerId().isNull());
}

TEST(ReadDxf, ALineEndWithinATextCostsALineNotTheRest) {
  const std::string broken =
      "  0\nTEXT\n  5\n101\n100\nAcDbEntity\n  8\n0\n100\nAcDbText\n  1\nfirst\nsecond\n 40\n2.5\n";
  const auto database = load(drawing(broken + kLine));
  ASSERT_TRUE(database);
  EXPECT_EQ(entitiesOf(database->modelSpaceId()).length(), 2);
  EXPECT_TRUE(mentions(reportOf(*database), "a line that is no group code"));
  EXPECT_NE(save(*database, GcDb::kDHL_AC1015).find(" 40\n2.5\n"), std::string::npos);
}

TEST(ReadDxf, DamageBetweenRecordsCostsTheRecordNotTheRest) {
  const std::string damaged = "  0\nCIRCLE\n  5\n101\n  8\n0\ngarbage\nmore\ngarbage\n!\n";
  const auto database = load(drawing(damaged + kLine));
  ASSERT_TRUE(database);
  EXPECT_TRUE(objectAt<GcDbLine>(*database, 0x100));
  EXPECT_TRUE(mentions(reportOf(*database), "CIRCLE is damaged"));
}

TEST(ReadDxf, NumbersThatAreNoneAreZeroAndTold) {
  const std::string line =
      "  0\nLINE\n  5\n100\n100\nAcDbEntity\n  8\n0\n 62\nred\n100\nAcDbLine\n 10\nnan\n 20\n1,5\n 30\n1e999\n "
      "11\n4.0\n"
      " 21\n5.0\n 31\n6.0\n";
  const auto database = load(drawing(line));
  ASSERT_TRUE(database);
  EXPECT_TRUE(objectAt<GcDbLine>(*database, 0x100)->startPoint() == GcGePoint3d(0, 0, 0));
  EXPECT_TRUE(objectAt<GcDbLine>(*database, 0x100)->endPoint() == GcGePoint3d(4, 5, 6));
  for (const char* text : {"\"red\"", "\"nan\"", "\"1,5\"", "\"1e999\""})
    EXPECT_TRUE(mentions(reportOf(*database), text));
}

TEST(ReadDxf, TablesAreReadInWhateverOrderTheyStand) {
  const std::string file =
      header("AC1015", "  9\n$HANDSEED\n  5\n1000\n") +
      section(
          "TABLES",
          "  0\nTABLE\n  2\nLAYER\n  5\n2\n330\n0\n100\nAcDbSymbolTable\n 70\n1\n  0\nLAYER\n  5\n50\n330\n2\n100\n"
          "AcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n  2\nWALLS\n 70\n0\n 62\n3\n  6\nDASHED\n  0\nENDTAB\n"
          "  0\nTABLE\n  2\nLTYPE\n  5\n5\n330\n0\n100\nAcDbSymbolTable\n 70\n1\n  0\nLTYPE\n  5\n51\n330\n5\n100\n"
          "AcDbSymbolTableRecord\n100\nAcDbLinetypeTableRecord\n  2\nDASHED\n 70\n0\n  3\n- -\n 72\n65\n 73\n0\n "
          "40\n0.0\n  0\nENDTAB\n"
          "  0\nTABLE\n  2\nLAYER\n  5\n3\n330\n0\n100\nAcDbSymbolTable\n 70\n1\n  0\nLAYER\n  5\n52\n330\n3\n100\n"
          "AcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n  2\nDOORS\n 70\n0\n 62\n3\n  6\nDASHED\n  0\nENDTAB\n") +
      kEof;
  const auto database = load(file);
  ASSERT_TRUE(database);
  const auto* layer = objectAt<GcDbLayerTableRecord>(*database, 0x50);
  ASSERT_TRUE(layer);
  EXPECT_EQ(layer->linetypeObjectId().handle(), 0x51u);
  EXPECT_TRUE(mentions(reportOf(*database), "a second table of the kind"));
  EXPECT_EQ(objectAt<GcDbLayerTableRecord>(*database, 0x52)->ownerId(), database->layerTableId());
}

TEST(ReadDxf, TextIsRightInEveryEncoding) {
  const std::string text = "  0\nTEXT\n  5\n101\n100\nAcDbEntity\n  8\n0\n100\nAcDbText\n  1\n";
  const auto with = [&](const std::string& version, const std::string& page, const std::string& bytes) {
    return header(version, "  9\n$DWGCODEPAGE\n  3\n" + page + "\n  9\n$HANDSEED\n  5\n1000\n") +
           section("ENTITIES", text + bytes + "\n") + kEof;
  };
  const std::string utf8 = with("AC1021", "ANSI_1250", "m² Ø20 ąęłśżźćńó");
  for (const char* page : {"ANSI_1250", "ANSI_1252", "ANSI_932", "DOS852"}) {
    const auto database = load(with("AC1021", page, "m² Ø20 ąęłśżźćńó"));
    ASSERT_TRUE(database);
    const Lines lost = losses(utf8, save(*database, GcDb::kDHL_AC1015));
    EXPECT_TRUE(std::none_of(lost.begin(), lost.end(), [](const auto& line) { return line.find("TEXT") != line.npos; }))
        << page << ' ' << lost.back();
  }
  const auto old = load(with("AC1015", "ANSI_1250", "m\\U+00B2 \\U+00D820 \xB9\xEA\xB3\x9C\xBF\x9F\xE6\xF1\xF3"));
  ASSERT_TRUE(old);
  EXPECT_EQ(reportOf(*old), Lines());
  EXPECT_NE(save(*old, GcDb::kDHL_AC1032).find("m² Ø20 ąęłśżźćńó"), std::string::npos);
  EXPECT_NE(save(*old, GcDb::kDHL_AC1015).find("m\\U+00B2 \\U+00D820 \xB9\xEA\xB3\x9C\xBF\x9F\xE6\xF1\xF3"),
            std::string::npos);
  // A file marked as newer than 2007 that is not UTF-8 is read in its code page, and that is told.
  const auto wrong = load(with("AC1024", "ANSI_1250", "\xB9\xEA"));
  EXPECT_TRUE(mentions(reportOf(*wrong), "is not in the drawing's encoding"));
  EXPECT_NE(save(*wrong, GcDb::kDHL_AC1032).find("ąę"), std::string::npos);
}

TEST(ReadDxf, HugeCountsAndHandlesCostNoMemory) {
  const std::string line =
      "  0\nLWPOLYLINE\n  5\nFFFFFFFFFFFFFFFF\n100\nAcDbEntity\n  8\n0\n100\nAcDbPolyline\n 90\n2000000000\n"
      " 10\n1.0\n 20\n1.0\n330\nEEEEEEEEEEEEEEEE\n";
  const auto database = load(drawing(line));
  ASSERT_TRUE(database);
  EXPECT_LT(database->store().overheadBytes(), std::size_t{100} << 20);
}

TEST(ReadDxf, ANewDrawingComesBackAsItIs) {
  GcDbDatabase drawn;
  for (const auto version : {GcDb::kDHL_AC1015, GcDb::kDHL_AC1018, GcDb::kDHL_AC1021, GcDb::kDHL_AC1024,
                             GcDb::kDHL_AC1027, GcDb::kDHL_AC1032}) {
    const std::string saved = save(drawn, version);
    const auto database = load(saved);
    ASSERT_TRUE(database);
    EXPECT_EQ(database->originalFileVersion(), version);
    EXPECT_EQ(reportOf(*database), Lines());
    EXPECT_TRUE(save(*database, version) == saved);
  }
}

TEST(ReadDxf, ErasedObjectsAreLeftOutAndWithThemWhatReferredToThem) {
  const std::string objects =
      "  0\nDICTIONARY\n  5\nC\n330\n0\n100\nAcDbDictionary\n281\n1\n  3\nKEPT\n350\nD\n  3\nGONE\n350\nE\n"
      "  0\nXRECORD\n  5\nD\n102\n{ACAD_REACTORS\n330\nE\n330\nC\n102\n}\n330\nC\n100\nAcDbXrecord\n280\n1\n 70\n5\n"
      "  0\nXRECORD\n  5\nE\n330\nC\n100\nAcDbXrecord\n280\n1\n330\nD\n";
  const auto database = load(drawing("", objects));
  ASSERT_TRUE(database);
  GcDbObject* erased = nullptr;
  ASSERT_EQ(gcdbOpenGcDbObject(erased, GcDbObjectId(database->store().find(0xE)), GcDb::kForWrite), Gcad::eOk);
  ignore(erased->erase());
  ignore(erased->close());
  const auto again = load(save(*database, GcDb::kDHL_AC1015));
  ASSERT_TRUE(again);
  EXPECT_EQ(reportOf(*again), Lines());
  EXPECT_EQ(objectAt<GcDbDictionary>(*again, 0xC)->entries().length(), 1);
  EXPECT_EQ(again->store().find(0xE), nullptr);
}

}  // namespace
