// Bodies of solid modellers in DWG files: text before R2004, bytes in the record since, in the data section since R2013.
#include <gtest/gtest.h>

#include "db/circle.h"
#include "db/database.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/savereport.h"
#include "host/db/core/store.h"
#include "host/db/entities/modeler_body.h"
#include "host/db/entities/modeler_text.h"
#include "host/dwg/file/datasection.h"
#include "host/dwg/file/dwgfile.h"
#include "host/dwg/record/recordcodec.h"
#include "host/rx/view.h"
#include "tests/modelspace.h"

using namespace gc::dwg;

namespace {

constexpr int kWritten[] = {kR2000, kR2004, kR2010, kR2013, kR2018};
constexpr double kPi = 3.14159265358979323846;

using gc::test::append;

std::unique_ptr<GcDbRegion> disc(double radius) {
  const GcDbCircle circle({1, 2, 0}, GcGeVector3d::kZAxis, radius);
  GcDbVoidPtrArray curves, made;
  curves.append(const_cast<GcDbCircle*>(&circle));
  EXPECT_EQ(GcDbRegion::createFromCurves(curves, made), Gcad::eOk);
  return std::unique_ptr<GcDbRegion>(static_cast<GcDbRegion*>(made[0]));
}

GcArray<uint8_t> bytesOfDisc(double radius) {
  GcArray<uint8_t> bytes;
  EXPECT_EQ(disc(radius)->getBytes(bytes), Gcad::eOk);
  return bytes;
}

std::vector<uint8_t> saved(GcDbDatabase& database, int version) {
  std::vector<uint8_t> bytes;
  std::string message;
  EXPECT_EQ(writeBytes(database, version, bytes, message), Gcad::eOk) << message;
  return bytes;
}

std::unique_ptr<GcDbDatabase> loaded(const std::vector<uint8_t>& file) {
  auto database = std::make_unique<GcDbDatabase>(false, true);
  EXPECT_EQ(read(*database, {reinterpret_cast<const char*>(file.data()), file.size()}), Gcad::eOk);
  return database;
}

const GcDbObject* objectIn(GcDbDatabase& database, GcDbHandle handle) {
  const GcDbStub* stub = database.store().find(handle);
  return stub == nullptr ? nullptr : stub->object;
}

double areaIn(GcDbDatabase& database, GcDbHandle handle) {
  double area = -1;
  const auto* region = GcDbRegion::cast(objectIn(database, handle));
  if (region != nullptr) ignore(region->getArea(area));
  return area;
}

std::vector<uint8_t>* dataSectionOf(GcDbDatabase& database) {
  for (GcDbDwgSection& each : database.fileParts().dwgSections)
    if (each.name == kDataSection) return &each.bytes;
  return nullptr;
}

TEST(ModelersInDwg, RegionsAreMeasuredInEveryVersion) {
  for (const int version : kWritten) {
    SCOPED_TRACE(version);
    GcDbDatabase database;
    const GcDbHandle one = append(database, disc(3).release()).handle();
    const GcDbHandle two = append(database, disc(5).release()).handle();
    const auto back = loaded(saved(database, version));
    EXPECT_NEAR(areaIn(*back, one), 9 * kPi, 1e-9);
    EXPECT_NEAR(areaIn(*back, two), 25 * kPi, 1e-9);
    EXPECT_EQ(dataSectionOf(*back) != nullptr, version >= kR2013);
    for (const int next : kWritten)
      EXPECT_NEAR(areaIn(*loaded(saved(*back, next)), two), 25 * kPi, 1e-9) << "then " << next;
  }
}

// A solid whose body only the modeller can read keeps it to the byte, wherever a version has it.
TEST(ModelersInDwg, SolidsKeepTheirBytesInEveryVersion) {
  GcArray<uint8_t> bytes = bytesOfDisc(7);
  for (const int version : kWritten) {
    SCOPED_TRACE(version);
    GcDbDatabase database;
    auto* solid = new GcDb3dSolid;
    solid->setBytes(bytes);
    const GcDbHandle handle = append(database, solid).handle();
    auto* body = new GcDbBody;
    const GcDbHandle empty = append(database, body).handle();
    auto back = loaded(saved(database, version));
    for (const int next : kWritten) back = loaded(saved(*back, next));
    const auto* again = GcDb3dSolid::cast(objectIn(*back, handle));
    ASSERT_NE(again, nullptr);
    EXPECT_TRUE(again->bytes() == bytes);
    const auto* none = GcDbBody::cast(objectIn(*back, empty));
    ASSERT_NE(none, nullptr);
    EXPECT_TRUE(none->bytes().isEmpty());
  }
}

// Copies and what was erased: the section follows the objects.
TEST(ModelersInDwg, TheDataSectionHoldsTheObjectsThatAreThere) {
  GcDbDatabase database;
  const GcDbHandle one = append(database, disc(1).release()).handle();
  const GcDbObjectId two = append(database, disc(2).release());
  auto back = loaded(saved(database, kR2018));
  GcDbObjectId id;
  ASSERT_EQ(back->getGcDbObjectId(id, false, two.handle()), Gcad::eOk);
  GcDbRegion* region = nullptr;
  ASSERT_EQ(gcdbOpenObject(region, id, GcDb::kForWrite), Gcad::eOk);
  ASSERT_EQ(region->erase(), Gcad::eOk);
  ASSERT_EQ(region->close(), Gcad::eOk);
  const GcDbHandle three = append(*back, disc(3).release()).handle();
  back = loaded(saved(*back, kR2013));
  EXPECT_NEAR(areaIn(*back, one), kPi, 1e-9);
  EXPECT_EQ(areaIn(*back, two.handle()), -1);
  EXPECT_NEAR(areaIn(*back, three), 9 * kPi, 1e-9);
  const auto size = dataSectionOf(*back)->size();
  EXPECT_EQ(dataSectionOf(*loaded(saved(*back, kR2018)))->size(), size);
}

// The section stands where the description of the format has its parts: marks, sizes in steps, entries by handle.
TEST(ModelersInDwg, TheDataSectionIsAsOthersWriteIt) {
  GcDbDatabase database;
  const GcDbHandle handle = append(database, disc(1).release()).handle();
  const auto back = loaded(saved(database, kR2013));
  const std::vector<uint8_t>& section = *dataSectionOf(*back);
  const auto u32 = [&](size_t at) {
    uint32_t value = 0;
    for (int i = 3; i >= 0; --i) value = value << 8 | section[at + static_cast<size_t>(i)];
    return value;
  };
  EXPECT_EQ(u32(0), 0x6472616AU);
  EXPECT_EQ(u32(0x34), section.size());
  EXPECT_EQ(section.size() % 0x80, 0U);
  const size_t index = u32(0x18);
  const char* const names[] = {"segidx", "datidx", "_data_", "schidx", "schdat", "search"};
  for (uint32_t i = 1; i <= 6; ++i) {
    const size_t entry = index + 0x30 + i * size_t{12};
    const size_t at = u32(entry);
    ASSERT_LT(at, section.size());
    EXPECT_EQ(std::string(section.begin() + static_cast<long>(at) + 2, section.begin() + static_cast<long>(at) + 8),
              names[i - 1]);
    EXPECT_EQ(u32(at + 8), i);
    EXPECT_EQ(u32(at + 16), u32(entry + 8));
  }
  const size_t data = u32(index + 0x30 + 3 * size_t{12});
  EXPECT_EQ(u32(data + 0x30 + 8), handle);
  const size_t body = data + u32(data + 0x24) * size_t{16};
  EXPECT_EQ(std::string(section.begin() + static_cast<long>(body) + 4, section.begin() + static_cast<long>(body) + 19),
            "ACIS BinaryFile");
}

// Every byte of the section wrong, one after the other: nothing worse than a body that is not there.
TEST(ModelersInDwg, DamagedDataSectionsDoNoHarm) {
  GcDbDatabase made;
  append(made, disc(1).release());
  const auto whole = loaded(saved(made, kR2018));
  const std::vector<uint8_t> section = *dataSectionOf(*whole);
  RecordContext context(*whole);
  context.version = kR2018;
  for (size_t at = 0; at < section.size(); ++at) {
    for (const uint8_t wrong : {uint8_t{0xFF}, uint8_t{0x80}, uint8_t{0}}) {
      std::vector<uint8_t> damaged = section;
      damaged[at] = wrong;
      GcDbLoadReport report;
      takeBodies(damaged, context, report);
      *dataSectionOf(*whole) = damaged;
      planDataSection(context);
      EXPECT_LT(writeDataSection(context).size(), 3 * section.size());
    }
    GcDbLoadReport report;
    takeBodies(std::span(section).first(at), context, report);
  }
}

// Bytes too long for the segment of all others stand in pieces; those of other programs are read so.
TEST(ModelersInDwg, BodiesInPiecesAreJoined) {
  GcDbDatabase made;
  const GcDbHandle handle = append(made, disc(2).release()).handle();
  const auto whole = loaded(saved(made, kR2018));
  const std::vector<uint8_t> section = *dataSectionOf(*whole);
  const auto u32 = [](const std::vector<uint8_t>& bytes, size_t at) {
    return static_cast<uint32_t>(bytes[at] | bytes[at + 1] << 8 | bytes[at + 2] << 16 | bytes[at + 3] << 24);
  };
  const auto put = [](std::vector<uint8_t>& bytes, size_t at, uint64_t value, int size) {
    for (int i = 0; i < size; ++i) bytes[at + static_cast<size_t>(i)] = static_cast<uint8_t>(value >> (8 * i));
  };
  const size_t data = u32(section, 0x80 + 0x30 + 3 * size_t{12});
  const size_t body = data + u32(section, data + 0x24) * size_t{16};
  const uint32_t size = u32(section, body);
  const std::vector<uint8_t> bytes(section.begin() + static_cast<long>(body) + 4,
                                   section.begin() + static_cast<long>(body) + 4 + size);
  // Two pieces in segments 7 and 8 behind all others; the index of segments grows into its filling.
  std::vector<uint8_t> split = section;
  const uint32_t first = size / 2;
  put(split, 0x20, 9, 4);
  for (uint32_t piece = 0; piece < 2; ++piece) {
    const size_t at = split.size();
    const uint32_t length = piece == 0 ? first : size - first;
    split.resize(at + 0x50 + length);
    put(split, at, 0xD5AC, 2);
    std::copy_n("blob01", 6, split.begin() + static_cast<long>(at) + 2);
    std::copy_n(bytes.begin() + (piece == 0 ? 0 : first), length, split.begin() + static_cast<long>(at) + 0x50);
    put(split, 0x80 + 0x30 + (7 + piece) * size_t{12}, at, 8);
    put(split, 0x80 + 0x30 + (7 + piece) * size_t{12} + 8, 0x50 + length, 4);
    put(split, body + 36 + piece * size_t{8}, 7 + piece, 4);
    put(split, body + 40 + piece * size_t{8}, length, 4);
  }
  put(split, body, 0xBB106BB1, 4);
  put(split, body + 4, size, 8);
  put(split, body + 12, 2, 4);
  GcDbStub* stub = whole->store().find(handle);
  ASSERT_NE(stub, nullptr);
  stub->writing = true;
  ignore(gcmodeler::setBytes(*stub->object, bytesOfDisc(1)));
  stub->writing = false;
  ASSERT_NEAR(areaIn(*whole, handle), kPi, 1e-9);
  RecordContext context(*whole);
  context.version = kR2018;
  GcDbLoadReport report;
  takeBodies(split, context, report);
  EXPECT_NEAR(areaIn(*whole, handle), 4 * kPi, 1e-9);
}

// A picture of edges stays; it is no part of groups.
TEST(ModelersInDwg, PicturesOfEdgesAreKept) {
  BitWriter picture;
  picture.b(true);
  picture.b(true);
  picture.bd3({1, 2, 3});
  picture.bl(4);
  picture.b(true);
  picture.bl(1);  // one edge of two points
  picture.rc(1);
  picture.bl(-1);
  picture.bl(256);
  picture.bl(-1);
  picture.bl(2);
  picture.bd3({0, 0, 0});
  picture.bd3({5, 0, 0.5});
  picture.b(true);
  for (int axis = 0; axis < 4; ++axis) picture.bd3({1, 0, 0});
  picture.bd(1);
  for (int flag = 0; flag < 3; ++flag) picture.b(false);
  picture.bl(1);  // and one silhouette without any
  picture.bl(2);
  for (int p = 0; p < 3; ++p) picture.bd3({0, 0, 1});
  picture.b(false);
  picture.b(false);
  GcArray<uint8_t> bits;
  for (const uint8_t byte : picture.whole()) bits.append(byte);
  for (const int version : kWritten) {
    GcDbDatabase database;
    GcDbRegion* region = disc(1).release();
    GcDbModelerParts::of(*region).picture = bits;
    const GcDbHandle handle = append(database, region).handle();
    const auto back = loaded(saved(database, version));
    auto* again = const_cast<GcDbRegion*>(GcDbRegion::cast(objectIn(*back, handle)));
    ASSERT_NE(again, nullptr);
    EXPECT_TRUE(GcDbModelerParts::of(*again).picture == bits) << version;
  }
}

}  // namespace

// Each object of which the version cannot say all is told.
TEST(ModelersInDwg, SavesTellWhatTheVersionLacks) {
  GcDbDatabase database;
  auto* solid = new GcDb3dSolid;
  const GcDbObjectId id = append(database, solid);
  GcDb3dSolid* open = nullptr;
  ASSERT_EQ(gcdbOpenObject(open, id, GcDb::kForWrite), Gcad::eOk);
  open->setBytes(bytesOfDisc(2));
  ASSERT_EQ(open->close(), Gcad::eOk);
  for (const int version : kWritten) {
    SCOPED_TRACE(version);
    GcDbSaveReport report;
    std::vector<uint8_t> bytes;
    std::string message;
    ASSERT_EQ(writeBytes(database, version, bytes, message, &report), Gcad::eOk) << message;
    int told = 0;
    for (const GcDbSaveEntry& entry : report.entries())
      told += entry.object == "3DSOLID" && entry.handle == uint64_t{id.handle()} ? 1 : 0;
    EXPECT_EQ(told, version == kR2000 ? 1 : 0);
  }
}
