#include "tools/bigdxf/big_drawing.h"

#include <algorithm>
#include <random>
#include <string>

namespace gc {
namespace {

using dxf::TagWriter;

constexpr int kLayers = 40;
constexpr int kBlocks = 10;
constexpr std::uint64_t kModelSpace = 0x1F, kPaperSpace = 0x1E, kTables = 0x40, kFirstEntity = 0x1000;

class Maker {
 public:
  Maker(TagWriter& out, long count) : m_out(out), m_count(count) {}

  void run() {
    header();
    tables();
    blocks();
    section("ENTITIES");
    for (long i = 0; i < m_count; ++i) entity(kModelSpace);
    endSection();
    objects();
    m_out.writeString(0, "EOF");
  }

 private:
  void section(const char* name) {
    m_out.writeString(0, "SECTION");
    m_out.writeString(2, name);
  }
  void endSection() { m_out.writeString(0, "ENDSEC"); }
  double place() { return m_place(m_random); }
  double size() { return m_size(m_random); }
  std::string layer() { return "LAYER" + std::to_string(m_random() % kLayers); }

  void header() {
    section("HEADER");
    m_out.writeString(9, "$ACADVER");
    m_out.writeString(1, "AC1015");
    m_out.writeString(9, "$DWGCODEPAGE");
    m_out.writeString(3, "ANSI_1250");
    m_out.writeString(9, "$HANDSEED");
    m_out.writeHandle(5, kFirstEntity + 4ULL * static_cast<std::uint64_t>(m_count) + 1000);
    endSection();
  }

  void table(const char* name, int index, int count) {
    m_out.writeString(0, "TABLE");
    m_out.writeString(2, name);
    m_out.writeHandle(5, kTables + static_cast<std::uint64_t>(index));
    m_out.writeHandle(330, 0);
    m_out.writeString(100, "AcDbSymbolTable");
    m_out.writeInt(70, count);
  }

  void record(const char* type, const char* subclass, int tableIndex, std::uint64_t handle, const std::string& name) {
    m_out.writeString(0, type);
    m_out.writeHandle(5, handle);
    m_out.writeHandle(330, kTables + static_cast<std::uint64_t>(tableIndex));
    m_out.writeString(100, "AcDbSymbolTableRecord");
    m_out.writeString(100, subclass);
    m_out.writeString(2, name);
  }

  void layerRecord(int index, const std::string& name) {
    record("LAYER", "AcDbLayerTableRecord", 1, 0x100 + static_cast<std::uint64_t>(index), name);
    m_out.writeInt(70, 0);
    m_out.writeInt(62, 1 + index % 255);
    m_out.writeString(6, "Continuous");
  }

  void tables() {
    section("TABLES");
    table("LTYPE", 0, 1);
    record("LTYPE", "AcDbLinetypeTableRecord", 0, 0x60, "Continuous");
    m_out.writeInt(70, 0);
    m_out.writeString(3, "Solid line");
    m_out.writeInt(72, 65);
    m_out.writeInt(73, 0);
    m_out.writeReal(40, 0.0);
    m_out.writeString(0, "ENDTAB");
    table("LAYER", 1, kLayers + 1);
    layerRecord(kLayers, "0");
    for (int i = 0; i < kLayers; ++i) layerRecord(i, "LAYER" + std::to_string(i));
    m_out.writeString(0, "ENDTAB");
    table("STYLE", 2, 1);
    record("STYLE", "AcDbTextStyleTableRecord", 2, 0x61, "Standard");
    m_out.writeInt(70, 0);
    m_out.writeReal(40, 0.0);
    m_out.writeReal(41, 1.0);
    m_out.writeString(3, "txt");
    m_out.writeString(0, "ENDTAB");
    table("APPID", 3, 2);
    record("APPID", "AcDbRegAppTableRecord", 3, 0x62, "ACAD");
    m_out.writeInt(70, 0);
    record("APPID", "AcDbRegAppTableRecord", 3, 0x63, "SURVEY");
    m_out.writeInt(70, 0);
    m_out.writeString(0, "ENDTAB");
    table("BLOCK_RECORD", 4, kBlocks + 2);
    record("BLOCK_RECORD", "AcDbBlockTableRecord", 4, kModelSpace, "*Model_Space");
    record("BLOCK_RECORD", "AcDbBlockTableRecord", 4, kPaperSpace, "*Paper_Space");
    for (int i = 0; i < kBlocks; ++i) {
      record("BLOCK_RECORD", "AcDbBlockTableRecord", 4, blockHandle(i), "BLOCK" + std::to_string(i));
    }
    m_out.writeString(0, "ENDTAB");
    endSection();
  }

  static std::uint64_t blockHandle(int index) { return 0x200 + static_cast<std::uint64_t>(index); }

  void block(std::uint64_t owner, std::uint64_t handle, const std::string& name, int entities) {
    m_out.writeString(0, "BLOCK");
    m_out.writeHandle(5, handle);
    m_out.writeHandle(330, owner);
    m_out.writeString(100, "AcDbEntity");
    m_out.writeString(8, "0");
    m_out.writeString(100, "AcDbBlockBegin");
    m_out.writeString(2, name);
    m_out.writeInt(70, 0);
    m_out.writePoint(10, 0.0, 0.0, 0.0);
    m_out.writeString(3, name);
    m_out.writeString(1, "");
    for (int i = 0; i < entities; ++i) line(owner);
    m_out.writeString(0, "ENDBLK");
    m_out.writeHandle(5, handle + 1);
    m_out.writeHandle(330, owner);
    m_out.writeString(100, "AcDbEntity");
    m_out.writeString(8, "0");
    m_out.writeString(100, "AcDbBlockEnd");
  }

  void blocks() {
    section("BLOCKS");
    block(kModelSpace, 0x300, "*Model_Space", 0);
    block(kPaperSpace, 0x302, "*Paper_Space", 0);
    for (int i = 0; i < kBlocks; ++i) {
      block(blockHandle(i), 0x304 + 2ULL * static_cast<std::uint64_t>(i), "BLOCK" + std::to_string(i), 20);
    }
    endSection();
  }

  void begin(const char* type, const char* subclass, std::uint64_t owner) {
    m_out.writeString(0, type);
    m_out.writeHandle(5, m_handle++);
    m_out.writeHandle(330, owner);
    m_out.writeString(100, "AcDbEntity");
    m_out.writeString(8, layer());
    if (m_random() % 4 == 0) m_out.writeInt(62, static_cast<int>(m_random() % 256));
    m_out.writeString(100, subclass);
  }

  void line(std::uint64_t owner) {
    begin("LINE", "AcDbLine", owner);
    m_out.writePoint(10, place(), place(), 0.0);
    m_out.writePoint(11, place(), place(), 0.0);
  }

  void text(std::uint64_t owner) {
    begin("TEXT", "AcDbText", owner);
    m_out.writePoint(10, place(), place(), 0.0);
    m_out.writeReal(40, size());
    m_out.writeString(1, "dz. 123/" + std::to_string(m_random() % 1000) + " \xB3\xB9ka");
    m_out.writeReal(50, 0.0);
    m_out.writeString(7, "Standard");
    m_out.writeString(100, "AcDbText");
  }

  void polyline(std::uint64_t owner) {
    begin("LWPOLYLINE", "AcDbPolyline", owner);
    const int vertices = 4 + static_cast<int>(m_random() % 13);
    m_out.writeInt(90, vertices);
    m_out.writeInt(70, static_cast<int>(m_random() % 2));
    m_out.writeReal(43, 0.0);
    for (int i = 0; i < vertices; ++i) {
      m_out.writePoint(10, place(), place());
      if (m_random() % 8 == 0) m_out.writeReal(42, size() / 10.0);
    }
  }

  void arc(std::uint64_t owner) {
    begin("ARC", "AcDbCircle", owner);
    m_out.writePoint(10, place(), place(), 0.0);
    m_out.writeReal(40, size());
    m_out.writeString(100, "AcDbArc");
    m_out.writeReal(50, 36.0 * size());
    m_out.writeReal(51, 36.0 * size());
  }

  void circle(std::uint64_t owner) {
    begin("CIRCLE", "AcDbCircle", owner);
    m_out.writePoint(10, place(), place(), 0.0);
    m_out.writeReal(40, size());
  }

  void point(std::uint64_t owner) {
    begin("POINT", "AcDbPoint", owner);
    m_out.writePoint(10, place(), place(), size());
  }

  void attribute(std::uint64_t insert) {
    begin("ATTRIB", "AcDbText", insert);
    m_out.writePoint(10, place(), place(), 0.0);
    m_out.writeReal(40, 2.5);
    m_out.writeString(1, "No. " + std::to_string(m_random() % 10000));
    m_out.writeString(100, "AcDbAttribute");
    m_out.writeString(2, "NUMBER");
    m_out.writeInt(70, 0);
  }

  // Every other insert carries an attribute.
  void insert(std::uint64_t owner) {
    const std::uint64_t handle = m_handle;
    const bool attributed = m_random() % 2 == 0;
    begin("INSERT", "AcDbBlockReference", owner);
    if (attributed) m_out.writeInt(66, 1);
    m_out.writeString(2, "BLOCK" + std::to_string(m_random() % kBlocks));
    m_out.writePoint(10, place(), place(), 0.0);
    m_out.writeReal(41, size());
    m_out.writeReal(42, size());
    m_out.writeReal(50, 36.0 * size());
    extendedData();
    if (!attributed) return;
    attribute(handle);
    m_out.writeString(0, "SEQEND");
    m_out.writeHandle(5, m_handle++);
    m_out.writeHandle(330, handle);
    m_out.writeString(100, "AcDbEntity");
    m_out.writeString(8, "0");
  }

  // A clamped cubic with uniform knots.
  void spline(std::uint64_t owner) {
    constexpr int kDegree = 3;
    begin("SPLINE", "AcDbSpline", owner);
    const int poles = 4 + static_cast<int>(m_random() % 9), spans = poles - kDegree;
    m_out.writePoint(210, 0.0, 0.0, 1.0);
    m_out.writeInt(70, 8);
    m_out.writeInt(71, kDegree);
    m_out.writeInt(72, poles + kDegree + 1);
    m_out.writeInt(73, poles);
    m_out.writeInt(74, 0);
    m_out.writeReal(42, 1e-7);
    m_out.writeReal(43, 1e-7);
    for (int i = -kDegree; i <= spans + kDegree; ++i) m_out.writeReal(40, std::clamp(i, 0, spans));
    for (int i = 0; i < poles; ++i) m_out.writePoint(10, place(), place(), 0.0);
  }

  // A solid fill within one polyline.
  void hatch(std::uint64_t owner) {
    begin("HATCH", "AcDbHatch", owner);
    m_out.writePoint(10, 0.0, 0.0, 0.0);
    m_out.writePoint(210, 0.0, 0.0, 1.0);
    m_out.writeString(2, "SOLID");
    m_out.writeInt(70, 1);
    m_out.writeInt(71, 0);
    m_out.writeInt(91, 1);
    m_out.writeInt(92, 7);
    m_out.writeInt(72, 0);
    m_out.writeInt(73, 1);
    m_out.writeInt(93, 4);
    for (int i = 0; i < 4; ++i) m_out.writePoint(10, place(), place());
    m_out.writeInt(97, 0);
    m_out.writeInt(75, 0);
    m_out.writeInt(76, 1);
    m_out.writeInt(98, 0);
  }

  // A tenth of the entities carry it.
  void extendedData() {
    if (m_random() % 10 != 0) return;
    m_out.writeString(1001, "SURVEY");
    m_out.writeString(1000, "height");
    m_out.writeReal(1040, size());
  }

  void entity(std::uint64_t owner) {
    const std::uint64_t kind = m_random() % 20;
    if (kind >= 18) return insert(owner);
    if (kind < 6)
      line(owner);
    else if (kind < 11)
      polyline(owner);
    else if (kind < 13)
      text(owner);
    else if (kind == 13)
      arc(owner);
    else if (kind == 14)
      circle(owner);
    else if (kind == 15)
      point(owner);
    else if (kind == 16)
      spline(owner);
    else
      hatch(owner);
    extendedData();
  }

  void objects() {
    section("OBJECTS");
    m_out.writeString(0, "DICTIONARY");
    m_out.writeHandle(5, 0xC);
    m_out.writeHandle(330, 0);
    m_out.writeString(100, "AcDbDictionary");
    m_out.writeInt(281, 1);
    endSection();
  }

  TagWriter& m_out;
  long m_count;
  std::uint64_t m_handle = kFirstEntity;
  std::mt19937_64 m_random{20};
  std::uniform_real_distribution<> m_place{5.0e6, 5.1e6};
  std::uniform_real_distribution<> m_size{0.1, 10.0};
};

}  // namespace

void writeBigDrawing(dxf::TagWriter& out, long count) { Maker(out, count).run(); }

}  // namespace gc
