// Objects known only by their bits, on their way from DWG through DXF and back: as proxies, nothing of them is lost.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include "db/database.h"
#include "db/linetype.h"
#include "db/zombie.h"
#include "host/db/core/asgroups.h"
#include "host/db/core/extra.h"
#include "host/db/core/fileformats.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/names.h"
#include "host/db/core/store.h"
#include "host/db/objects/mlinestyle.h"
#include "host/db/objects/zombiedata.h"
#include "host/rx/view.h"
#include "tests/scratch.h"

namespace fs = std::filesystem;

namespace {

// A folder of the test's own that goes with it.
class CrossingTest : public testing::Test {
 protected:
  void save(GcDbDatabase& database, const std::string& path, int version) {
    std::string message;
    GcDbSaveOptions options;
    options.version = static_cast<GcDb::GcDbDwgVersion>(version);
    ASSERT_EQ(gcdbSaveDrawing(database, path, options, message), Gcad::eOk) << path << ": " << message;
  }
  void load(GcDbDatabase& database, const std::string& path) {
    std::string message;
    ASSERT_EQ(gcdbReadDrawing(database, path, message), Gcad::eOk) << path << ": " << message;
  }
  [[nodiscard]] std::string file(const std::string& name) const { return (m_scratch.path() / name).string(); }

 private:
  gc::test::ScratchFolder m_scratch;
};

const GcDbZombieData* bitsOf(const GcDbObject* object) {
  const GcDbZombieData* data = nullptr;
  if (const auto* entity = GcDbZombieEntity::cast(object)) data = &entity->data();
  if (const auto* plain = GcDbZombieObject::cast(object)) data = &plain->data();
  return data != nullptr && data->version != 0 ? data : nullptr;
}

// Everything that is kept of such objects but the names of their types, which DXF does not carry for fixed ones.
std::map<uint64_t, std::string> keptBits(GcDbDatabase& database) {
  std::map<uint64_t, std::string> all;
  database.store().forEach([&](GcDbStub* stub) {
    const GcDbZombieData* data = stub->erased ? nullptr : bitsOf(stub->object);
    if (data == nullptr) return;
    std::string text = "version " + std::to_string(data->version) + " type " + std::to_string(data->recordType);
    if (data->recordType == 0) text += " " + toUtf8(view(data->dxfName));
    text += " owner " + std::to_string(uint64_t{stub->object->ownerId().handle()}) + " bits " +
            std::to_string(data->bitCount) + ":";
    for (const uint8_t byte : data->bits) text += std::to_string(byte) + ",";
    for (int i = 0; i < data->references.length(); ++i) {
      // References to what is not there are written as none.
      const GcDbObjectId id = data->references[i];
      text += " " + std::to_string(data->referenceCodes[i]) + "." +
              std::to_string(id.isValid() && !id.isErased() ? uint64_t{id.handle()} : 0);
    }
    all[stub->handle] = text;
  });
  return all;
}

std::vector<std::string> samples() {
  std::vector<std::string> found;
  const char* given = std::getenv("GC_DRAWINGS");
  const fs::path folder = given != nullptr ? fs::path(given) : fs::path(GC_SOURCE_DIR) / "../shared/drawings";
  if (!fs::is_directory(folder)) return found;
  for (const auto& entry : fs::directory_iterator(folder))
    if (entry.path().extension() == ".dwg") found.push_back(entry.path().string());
  return found;
}

}  // namespace

TEST_F(CrossingTest, AnUnknownObjectKeepsItsBitsAndReferences) {
  GcDbDatabase database(true, true);
  GcDbClassRecord described;
  described.dxfName = GC_T("SOMETHING");
  described.className = GC_T("OtherSomething");
  described.appName = GC_T("OtherApplication");
  database.fileParts().classes.push_back(described);
  auto* zombie = new GcDbZombieObject;
  GcDbZombieData& data = zombie->data();
  data.dxfName = GC_T("SOMETHING");
  data.version = GcDb::kDHL_AC1015;
  for (int i = 0; i < 300; ++i) data.bits.append(static_cast<uint8_t>(i * 7));
  data.bitCount = 300 * 8 - 3;
  for (const int code : {2, 3, 4, 5}) {
    data.references.append(database.layerTableId());
    data.referenceCodes.append(static_cast<uint8_t>(code));
  }
  GcDbObjectId id;
  ASSERT_EQ(database.addGcDbObject(id, zombie), Gcad::eOk);
  zombie->close();
  const auto before = keptBits(database);
  ASSERT_EQ(before.size(), 1U);
  for (const int version : {GcDb::kDHL_AC1015, GcDb::kDHL_AC1018, GcDb::kDHL_AC1021, GcDb::kDHL_AC1032}) {
    save(database, file("a.dxf"), version);
    GcDbDatabase back(false, true);
    load(back, file("a.dxf"));
    EXPECT_EQ(keptBits(back), before) << version;
  }
}

// Records before AC1032 count the linetypes in place of naming them.
TEST_F(CrossingTest, MultilineStylesKeepTheirLinetypes) {
  GcDbDatabase database(true, true);
  GcDbObjectId dashed, id;
  GcDbLinetypeTable* linetypes = nullptr;
  ASSERT_EQ(gcdbOpenObject(linetypes, database.linetypeTableId(), GcDb::kForWrite), Gcad::eOk);
  for (const GCHAR* name : {GC_T("OTHER"), GC_T("DASHED")}) {
    auto* linetype = new GcDbLinetypeTableRecord;
    ASSERT_EQ(linetype->setName(name), Gcad::eOk);
    ASSERT_EQ(linetypes->add(dashed, linetype), Gcad::eOk);
    ignore(linetype->close());
  }
  ignore(linetypes->close());
  auto* style = new GcDbMlineStyle;
  for (const GcDbObjectId linetype :
       {database.byLayerLinetype(), database.byBlockLinetype(), dashed, database.continuousLinetype()})
    style->elements().append(GcDbMlineElement{0.5, GcCmColor::byLayer(), linetype, -1});
  ASSERT_EQ(database.addGcDbObject(id, style), Gcad::eOk);
  ignore(style->close());
  for (const int version :
       {GcDb::kDHL_AC1015, GcDb::kDHL_AC1018, GcDb::kDHL_AC1024, GcDb::kDHL_AC1027, GcDb::kDHL_AC1032}) {
    save(database, file("a.dwg"), version);
    GcDbDatabase back(false, true);
    load(back, file("a.dwg"));
    const GcDbStub* stub = back.store().find(id.handle());
    ASSERT_NE(stub, nullptr);
    const auto* read = GcDbMlineStyle::cast(stub->object);
    ASSERT_NE(read, nullptr);
    std::string names;
    for (const GcDbMlineElement& element : read->elements()) names += toUtf8(gcdbNameOfRecord(element.linetype)) + " ";
    EXPECT_EQ(names, "ByLayer ByBlock DASHED Continuous ") << version;
  }
}

// A style that only groups have said so far, and extended data of an application that nobody has registered.
TEST_F(CrossingTest, WhatOldRecordsCanSayOnlyWithAMarkOrARegisteredApplication) {
  GcDbDatabase database(false, true);
  std::ofstream(file("style.dxf")) << "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1024\n0\nENDSEC\n"
                                      "0\nSECTION\n2\nENTITIES\n0\nPOINT\n5\n30\n100\nAcDbEntity\n8\n0\n"
                                      "100\nAcDbPoint\n10\n1\n20\n2\n30\n3\n1001\nNOBODY\n1070\n7\n0\nENDSEC\n"
                                      "0\nSECTION\n2\nOBJECTS\n0\nDICTIONARY\n5\nC\n330\n0\n100\nAcDbDictionary\n"
                                      "3\nS\n350\n20\n0\nMLEADERSTYLE\n5\n20\n330\nC\n100\nAcDbMLeaderStyle\n"
                                      "175\n2\n297\n1\n0\nENDSEC\n0\nEOF\n";
  load(database, file("style.dxf"));
  for (const int version : {GcDb::kDHL_AC1015, GcDb::kDHL_AC1018, GcDb::kDHL_AC1024, GcDb::kDHL_AC1032}) {
    save(database, file("a.dwg"), version);
    GcDbDatabase back(false, true);
    load(back, file("a.dwg"));
    const GcDbStub* point = back.store().find(0x30);
    ASSERT_TRUE(point != nullptr && point->object != nullptr && point->object->extra() != nullptr) << version;
    EXPECT_FALSE(point->object->extra()->xdata.isEmpty()) << version;
    const GcDbStub* style = back.store().find(0x20);
    ASSERT_TRUE(style != nullptr && style->object != nullptr) << version;
    std::string groups;
    const GcDbGroupList list = gcdbAsGroups(*style->object).groups;
    GcDbGroupList::Cursor cursor(list);
    for (GcDbGroup group; cursor.next(group);)
      if (group.code == 175 || group.code == 297)
        groups += std::to_string(group.code) + "=" + std::to_string(group.asInt()) + " ";
    EXPECT_EQ(groups, "175=2 297=1 ") << version;
  }
}

TEST_F(CrossingTest, ADamagedProxyStaysTheProxyItIs) {
  GcDbDatabase database(false, true);
  std::ofstream(file("damaged.dxf")) << "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n0\nENDSEC\n"
                                        "0\nSECTION\n2\nOBJECTS\n"
                                        "0\nDICTIONARY\n5\nC\n330\n0\n100\nAcDbDictionary\n3\nA\n350\n20\n"
                                        "0\nACAD_PROXY_OBJECT\n5\n20\n330\nC\n100\nAcDbProxyObject\n90\n499\n91\n500\n"
                                        "95\n23\n70\n0\n93\n4000000\n310\nFFFF\n94\n0\n"
                                        "0\nENDSEC\n0\nEOF\n";
  load(database, file("damaged.dxf"));
  const GcDbStub* stub = database.store().find(0x20);
  ASSERT_NE(stub, nullptr);
  const auto* zombie = GcDbZombieObject::cast(stub->object);
  ASSERT_NE(zombie, nullptr);
  EXPECT_EQ(zombie->data().version, 0);
  EXPECT_FALSE(zombie->data().groups.isEmpty());
}

TEST_F(CrossingTest, SamplesKeepTheirUnknownObjectsThroughDxf) {
  const std::vector<std::string> drawings = samples();
  if (drawings.empty()) GTEST_SKIP() << "no drawings at hand";
  for (const std::string& path : drawings) {
    GcDbDatabase first(false, true);
    load(first, path);
    save(first, file("a.dxf"), GcDb::kDHL_AC1032);
    GcDbDatabase second(false, true);
    load(second, file("a.dxf"));
    const auto before = keptBits(first), after = keptBits(second);
    for (const auto& [handle, text] : before) {
      const auto at = after.find(handle);
      ASSERT_NE(at, after.end()) << path << ": " << std::hex << handle << " is lost: " << text.substr(0, 100);
      EXPECT_EQ(at->second, text) << path << ": " << std::hex << handle;
    }
  }
}
