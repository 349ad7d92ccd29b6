#include "host/dwg/file/headersection.h"

#include <cmath>
#include <string_view>

#include "db/dictionary.h"
#include "host/db/core/header.h"
#include "host/db/core/names.h"
#include "host/dwg/file/sectionframe.h"
#include "host/dwg/record/lineweights.h"

namespace gc::dwg {

namespace {

constexpr double kMillisecondsPerDay = 86400000.0;
constexpr int kAngleCode = 50;

// ---- the settings packed into one number -----------------------------------------------------------------

struct FlagSetting {
  const char* name;
  int code;
  int shift;
  int64_t mask;
  bool inverted;
  int usual;
};

constexpr FlagSetting kFlagSettings[] = {
    {"$ENDCAPS", 280, 5, 3, false, 0},     {"$JOINSTYLE", 280, 7, 3, false, 0}, {"$LWDISPLAY", 290, 9, 1, true, 0},
    {"$XEDIT", 290, 10, 1, true, 1},       {"$EXTNAMES", 290, 11, 1, false, 1}, {"$PSTYLEMODE", 290, 13, 1, false, 1},
    {"$OLESTARTUP", 290, 14, 1, false, 0},
};

constexpr unsigned kWeightMask = 0x1F;

// ---- reading ---------------------------------------------------------------------------------------------

class HeaderIn {
 public:
  HeaderIn(RecordIn& record, HeaderReferences& references)
      : m_record(record), m_header(record.context.database.header()), m_references(references) {}

  void take(const HeaderRow& row) {
    switch (row.op) {
      case HeaderOp::B: setInteger(row, m_record.b(false) ? 1 : 0); return;
      case HeaderOp::BS: setInteger(row, static_cast<int16_t>(m_record.bs(0))); return;
      case HeaderOp::BL: setInteger(row, m_record.bl(0)); return;
      case HeaderOp::BLL: setInteger(row, static_cast<int64_t>(m_record.bll(0))); return;
      case HeaderOp::RC: setInteger(row, m_record.rc(0)); return;
      case HeaderOp::BD: setReal(row, m_record.bd(0)); return;
      case HeaderOp::BD3: set(row, GcDbGroup::ofPoint(row.code, m_record.bd3({}))); return;
      case HeaderOp::RD2: set(row, GcDbGroup::ofPoint2d(row.code, m_record.rd2({}))); return;
      case HeaderOp::T: {
        const GcText text = m_record.t({});
        set(row, GcDbGroup::ofText(row.code, text));
        return;
      }
      case HeaderOp::CMC: takeColor(row); return;
      case HeaderOp::H: takeReference(row); return;
      case HeaderOp::Time: {
        const double days = m_record.bl(0);
        takeTime(row, days + m_record.bl(0) / kMillisecondsPerDay);
        return;
      }
      case HeaderOp::Seed:
        m_references.handseed = m_record.data.h().value;
        setNamed("$HANDSEED", GcDbGroup::ofInt(5, static_cast<int64_t>(m_references.handseed)));
        return;
      case HeaderOp::Table: m_references.tables[row.index] = handle(); return;
      case HeaderOp::Known: m_references.known[row.index] = handle(); return;
      case HeaderOp::Flags: takeFlags(); return;
      case HeaderOp::PlotStyleType: {
        constexpr int kByRecord = 3;
        const int type = m_record.bs(0);
        setNamed("$CEPSNTYPE", GcDbGroup::ofInt(380, type));
        if (type == kByRecord) {
          static constexpr HeaderRow kRow{HeaderOp::H, "$CEPSNID", 390, 0, 0, 0, 255};
          m_references.settings.push_back({&kRow, m_record.context.idOf(handle())});
        }
        return;
      }
    }
  }

 private:
  // References stand among the data before AC1021.
  uint64_t handle() {
    return m_record.version() < kR2007 ? m_record.data.h().absolute(0) : m_record.handles.h().absolute(0);
  }
  void set(const HeaderRow& row, const GcDbGroup& group) {
    if (row.name != nullptr) setNamed(row.name, group);
  }
  void setNamed(const char* name, const GcDbGroup& group) {
    if (m_record.failed()) return;
    GcDbGroupList list;
    list.put(group);
    m_header.set(nameOfRow(name), list);
  }
  void setInteger(const HeaderRow& row, int64_t value) { set(row, GcDbGroup::ofInt(row.code, value)); }
  void setReal(const HeaderRow& row, double value) {
    if (!std::isfinite(value)) {
      m_record.fail();
      return;
    }
    GcDbGroup group = GcDbGroup::ofReal(row.code, value);
    group.isAngle = row.code == kAngleCode;
    if (row.name != nullptr && nameOfRow(row.name) == GC_T("$CELTSCALE")) m_references.linetypeScale = value;
    set(row, group);
  }
  // Times of making and changing are universal; the local ones group files have beside them are taken as the same.
  void takeTime(const HeaderRow& row, double value) {
    setReal(row, value);
    if (std::string_view(row.name) == "$TDUCREATE") setNamed("$TDCREATE", GcDbGroup::ofReal(row.code, value));
    if (std::string_view(row.name) == "$TDUUPDATE") setNamed("$TDUPDATE", GcDbGroup::ofReal(row.code, value));
  }
  void takeColor(const HeaderRow& row) {
    const GcCmEntityColor color = m_record.cmc({});
    setInteger(row, color.colorIndex());
    if (row.name != nullptr && nameOfRow(row.name) == GC_T("$CECOLOR")) m_references.color = color;
  }
  void takeReference(const HeaderRow& row) {
    const uint64_t value = handle();
    if (row.name != nullptr) m_references.settings.push_back({&row, m_record.context.idOf(value)});
  }
  void takeFlags() {
    const int64_t bits = m_record.bl(0);
    m_references.lineWeight = lineWeightOf(static_cast<unsigned>(bits) & kWeightMask);
    setNamed("$CELWEIGHT", GcDbGroup::ofInt(370, m_references.lineWeight));
    for (const FlagSetting& each : kFlagSettings) {
      const int64_t value = bits >> each.shift & each.mask;
      setNamed(each.name, GcDbGroup::ofInt(each.code, each.inverted ? 1 - value : value));
    }
  }

  RecordIn& m_record;
  GcDbHeader& m_header;
  HeaderReferences& m_references;
};

// ---- what settings refer to ------------------------------------------------------------------------------

GcDbObjectId inDictionary(GcDbObjectId dictionaryId, GcView key) {
  GcDbObjectId id;
  GcDbDictionary* dictionary = nullptr;
  if (gcdbOpenObject(dictionary, dictionaryId, GcDb::kForRead) != Gcad::eOk) return id;
  ignore(dictionary->getAt(GcText(key).c_str(), id));
  ignore(dictionary->close());
  return id.isErased() ? GcDbObjectId() : id;
}

GcDbObjectId inTable(GcDbObjectId tableId, GcView name) {
  GcDbObjectId id;
  GcDbSymbolTable* table = nullptr;
  if (gcdbOpenObject(table, tableId, GcDb::kForRead) != Gcad::eOk) return id;
  ignore(table->getAt(GcText(name).c_str(), id));
  ignore(table->close());
  return id;
}

GcDbObjectId knownOf(const GcDbDatabase& database, KnownRecord which) {
  const auto entry = [&](const GCHAR* key) { return inDictionary(database.namedObjectsDictionaryId(), key); };
  switch (which) {
    case KnownRecord::kGroups: return entry(GC_T("ACAD_GROUP"));
    case KnownRecord::kMlineStyles: return entry(GC_T("ACAD_MLINESTYLE"));
    case KnownRecord::kRoot: return database.namedObjectsDictionaryId();
    case KnownRecord::kLayouts: return entry(GC_T("ACAD_LAYOUT"));
    case KnownRecord::kPlotSettings: return entry(GC_T("ACAD_PLOTSETTINGS"));
    case KnownRecord::kPlotStyles: return entry(GC_T("ACAD_PLOTSTYLENAME"));
    case KnownRecord::kMaterials: return entry(GC_T("ACAD_MATERIAL"));
    case KnownRecord::kColors: return entry(GC_T("ACAD_COLOR"));
    case KnownRecord::kVisualStyles: return entry(GC_T("ACAD_VISUALSTYLE"));
    case KnownRecord::kPaperSpace: return database.paperSpaceId();
    case KnownRecord::kModelSpace: return database.modelSpaceId();
    case KnownRecord::kByLayer: return database.byLayerLinetype();
    case KnownRecord::kByBlock: return database.byBlockLinetype();
    case KnownRecord::kContinuous: return database.continuousLinetype();
    case KnownRecord::kCount: break;
  }
  return {};
}

// The table whose records settings of the group code name.
GcDbObjectId tableNamedBy(const GcDbDatabase& database, int code, GcView setting) {
  switch (code) {
    case 8: return database.layerTableId();
    case 7: return database.textStyleTableId();
    case 6: return database.linetypeTableId();
    case 1: return database.blockTableId();
    default: break;
  }
  return setting.find(GC_T("UCS")) != GcView::npos ? database.UCSTableId() : database.dimStyleTableId();
}

// ---- writing ---------------------------------------------------------------------------------------------

class HeaderOut {
 public:
  HeaderOut(RecordOut& record, uint64_t handseed)
      : m_record(record),
        m_database(record.context.database),
        m_header(record.context.database.header()),
        m_handseed(handseed) {}

  void put(const HeaderRow& row) {
    switch (row.op) {
      case HeaderOp::B: m_record.b(integer(row) != 0); return;
      case HeaderOp::BS: m_record.bs(static_cast<int>(integer(row))); return;
      case HeaderOp::BL: m_record.bl(static_cast<int32_t>(integer(row))); return;
      case HeaderOp::BLL: m_record.bll(static_cast<uint64_t>(integer(row))); return;
      case HeaderOp::RC: m_record.rc(static_cast<unsigned>(integer(row))); return;
      case HeaderOp::BD: m_record.bd(real(row)); return;
      case HeaderOp::BD3: m_record.bd3(point(nameOfRow(row.name))); return;
      case HeaderOp::RD2: {
        const GcGePoint3d p = m_header.point(nameOfRow(row.name));
        m_record.rd2({p.x, p.y});
        return;
      }
      case HeaderOp::T: m_record.t(row.name == nullptr ? GcText() : m_header.text(nameOfRow(row.name))); return;
      case HeaderOp::CMC: putColor(row); return;
      case HeaderOp::H:
        handle(5, row.name == nullptr ? 0 : uint64_t(referenceOf(m_record.context, row).handle()));
        return;
      case HeaderOp::Time: putTime(row); return;
      case HeaderOp::Seed: m_record.data.h(0, m_handseed); return;
      case HeaderOp::Table: handle(3, tableOf(row.index).handle()); return;
      case HeaderOp::Known: handle(5, knownOf(m_database, static_cast<KnownRecord>(row.index)).handle()); return;
      case HeaderOp::Flags: putFlags(); return;
      case HeaderOp::PlotStyleType: m_record.bs(0); return;
    }
  }

 private:
  void handle(unsigned code, uint64_t value) {
    if (m_record.version() < kR2007)
      m_record.data.h(code, value);
    else
      m_record.handles.h(code, value);
  }
  [[nodiscard]] int64_t integer(const HeaderRow& row) const {
    return row.name == nullptr ? static_cast<int64_t>(row.constant)
                               : m_header.integer(nameOfRow(row.name), static_cast<int64_t>(row.constant));
  }
  [[nodiscard]] double real(const HeaderRow& row) const {
    if (row.name == nullptr) return row.constant;
    if (std::string_view(row.name) == "$CELTSCALE") return m_database.celtscale();
    return m_header.real(nameOfRow(row.name), row.constant);
  }
  // The axes of coordinate systems are the world's where nothing else is said.
  [[nodiscard]] GcGePoint3d point(const GcText& name) const {
    if (m_header.find(name) != nullptr) return m_header.point(name);
    if (name == GC_T("$UCSXDIR") || name == GC_T("$PUCSXDIR")) return {1, 0, 0};
    if (name == GC_T("$UCSYDIR") || name == GC_T("$PUCSYDIR")) return {0, 1, 0};
    return {};
  }
  void putColor(const HeaderRow& row) {
    const GcText name = nameOfRow(row.name);
    m_record.cmc(name == GC_T("$CECOLOR") ? m_database.cecolor()
                                          : GcCmEntityColor::fromIndex(static_cast<int>(
                                                m_header.integer(name, static_cast<int64_t>(row.constant)))));
  }
  void putTime(const HeaderRow& row) {
    const GcText name = nameOfRow(row.name);
    const GcText local = GcText(GC_T("$TD")) + (name.size() > 4 ? name.substr(4) : GcText());
    const double value = m_header.find(name) != nullptr ? m_header.real(name) : m_header.real(local);
    const double days = std::floor(value);
    const bool usable = days >= 0 && days < 1e9;
    m_record.bl(usable ? static_cast<int32_t>(days) : 0);
    m_record.bl(usable ? static_cast<int32_t>((value - days) * kMillisecondsPerDay + 0.5) : 0);
  }
  void putFlags() {
    int64_t bits = codeOfLineWeight(m_database.celweight());
    for (const FlagSetting& each : kFlagSettings) {
      const int64_t value = m_header.integer(nameOfRow(each.name), each.usual) & each.mask;
      bits |= (each.inverted ? 1 - value : value) << each.shift;
    }
    m_record.bl(static_cast<int32_t>(bits));
  }
  [[nodiscard]] GcDbObjectId tableOf(int which) const {
    switch (which) {
      case GcDbDatabase::kBlocks: return m_database.blockTableId();
      case GcDbDatabase::kLayers: return m_database.layerTableId();
      case GcDbDatabase::kTextStyles: return m_database.textStyleTableId();
      case GcDbDatabase::kLinetypes: return m_database.linetypeTableId();
      case GcDbDatabase::kViews: return m_database.viewTableId();
      case GcDbDatabase::kUcss: return m_database.UCSTableId();
      case GcDbDatabase::kViewports: return m_database.viewportTableId();
      case GcDbDatabase::kRegApps: return m_database.regAppTableId();
      default: return m_database.dimStyleTableId();
    }
  }
  RecordOut& m_record;
  GcDbDatabase& m_database;
  const GcDbHeader& m_header;
  uint64_t m_handseed;
};

GcText keyIn(GcDbObjectId dictionaryId, GcDbObjectId id) {
  GcDbDictionary* dictionary = nullptr;
  if (!id.isValid() || gcdbOpenObject(dictionary, dictionaryId, GcDb::kForRead) != Gcad::eOk) return {};
  GcString key;
  ignore(dictionary->nameAt(id, key));
  ignore(dictionary->close());
  return GcText(view(key));
}

// The name a record or (for what lives in dictionaries) an entry has.
GcText nameOfId(GcDbObjectId id) {
  if (!id.isValid()) return {};
  GcText name(gcdbNameOfRecord(id));
  if (!name.empty()) return name;
  GcDbObject* object = nullptr;
  if (gcdbOpenGcDbObject(object, id, GcDb::kForRead) != Gcad::eOk) return {};
  const GcDbObjectId owner = object->ownerId();
  ignore(object->close());
  return keyIn(owner, id);
}

}  // namespace

GcText nameOfRow(const char* ascii) {
  GcText name;
  while (*ascii != 0) name.push_back(static_cast<GCHAR>(*ascii++));
  return name;
}

GcDbObjectId referenceOf(const RecordContext& context, const HeaderRow& row) {
  const GcDbDatabase& database = context.database;
  const GcText name = nameOfRow(row.name);
  if (name == GC_T("$CLAYER")) return database.clayer();
  if (name == GC_T("$CELTYPE")) return database.celtype();
  if (name == GC_T("$TEXTSTYLE")) return database.textstyle();
  if (name == GC_T("$DIMSTYLE")) return database.dimstyle();
  const GcDbGroupList* groups = database.header().find(name);
  GcDbGroup group;
  if (groups == nullptr || !GcDbGroupList::Cursor(*groups).next(group)) return {};
  if (group.kind == GcDbGroupKind::Id) return group.id;
  if (group.text.empty()) return {};
  if (name == GC_T("$CMLSTYLE")) return inDictionary(knownOf(database, KnownRecord::kMlineStyles), group.text);
  return inTable(tableNamedBy(database, row.code, name), group.text);
}

bool readHeader(const Sections& sections, RecordContext& context, HeaderReferences& references,
                GcDbLoadReport& report) {
  RecordIn record(context, 0);
  if (!openFrame(sections, sections.header, kHeaderBegin, "settings", record, report)) return false;
  HeaderIn header(record, references);
  for (const HeaderRow& row : headerRows()) {
    if (!row.isIn(context.version)) continue;
    header.take(row);
    if (!record.failed()) continue;
    note(report, GcDbLoadAction::Missing, 0, 0,
         std::string("the settings are damaged from ") + (row.name == nullptr ? "a value without a name" : row.name));
    break;
  }
  return references.of(KnownRecord::kModelSpace) != 0 || references.tables[GcDbDatabase::kBlocks] != 0;
}

void connectHeader(const RecordContext& context, const HeaderReferences& references) {
  GcDbDatabase& database = context.database;
  for (const HeaderReferences::Setting& each : references.settings) {
    const GcText variable = nameOfRow(each.row->name);
    GcDbGroupList list;
    const GcText name = variable == GC_T("$CMLSTYLE") ? keyIn(knownOf(database, KnownRecord::kMlineStyles), each.id)
                                                      : nameOfId(each.id);
    if (each.row->code >= 330)
      list.put(GcDbGroup::ofId(each.row->code, each.id.isValid() ? each.id : GcDbObjectId()));
    else
      list.put(GcDbGroup::ofText(each.row->code, name));
    database.header().set(variable, list);
    if (!each.id.isValid()) continue;
    if (variable == GC_T("$CLAYER")) ignore(database.setClayer(each.id));
    if (variable == GC_T("$CELTYPE")) ignore(database.setCeltype(each.id));
    if (variable == GC_T("$TEXTSTYLE")) ignore(database.setTextstyle(each.id));
    if (variable == GC_T("$DIMSTYLE")) ignore(database.setDimstyle(each.id));
  }
  ignore(database.setCecolor(references.color));
  ignore(database.setCeltscale(references.linetypeScale));
  ignore(database.setCelweight(static_cast<GcDb::LineWeight>(references.lineWeight)));
}

std::vector<uint8_t> writeHeader(RecordContext& context, uint64_t handseed) {
  RecordOut record(context, 0);
  HeaderOut header(record, handseed);
  for (const HeaderRow& row : headerRows())
    if (row.isIn(context.version)) header.put(row);
  return closeFrame(kHeaderBegin, record);
}

}  // namespace gc::dwg
