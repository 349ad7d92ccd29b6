// A drawing: its objects, tables, dictionaries, header settings, undo. Main thread only.
#pragma once

#include "cm/color.h"
#include "db/object.h"
#include "db/symboltable.h"
#include "rx/gcstring.h"

class GcDbDatabaseReactor;
class GcDbDictionary;
class GcDbHeader;
class GcDbIdMapping;
class GcDbLayoutManager;
class GcDbLoadReport;
class GcDbStore;
class GcDbTransactionManager;
class GcDbUndo;
struct GcDbFileParts;

class GcDbDatabase : public GcRxObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbDatabase);
  // Without default contents the database is empty until a file is read into it.
  explicit GcDbDatabase(bool buildDefaultDrawing = true, bool noDocument = false);
  ~GcDbDatabase() override;
  GcDbDatabase(const GcDbDatabase&) = delete;
  GcDbDatabase& operator=(const GcDbDatabase&) = delete;

  // Reads a drawing file of either format, told by its content. Only into a database without contents.
  // Errors: eFileNotFound, eFileAccessErr, eBadDxfFile, eBadDwgFile, eUnsupportedVersion. What was repaired
  // or skipped stands in loadReport() afterwards.
  Gcad::ErrorStatus readDwgFile(const GCHAR* fileName, int shareMode = 1, bool allowCPConversion = false,
                                const GCHAR* password = nullptr);
  [[nodiscard]] GcDbLoadReport& loadReport();

  // Copies objects and all they own. Deep: into an owner of this database (a block or a dictionary), references
  // to what is copied along lead to the copies, all others stay. References are translated in the same call;
  // eNotApplicable when `deferXlation` asks for it later.
  // Errors: eWrongDatabase, eNotThatKindOfClass (an owner that cannot take the object), eInvalidInput.
  Gcad::ErrorStatus deepCloneObjects(const GcDbObjectIdArray& ids, GcDbObjectId ownerId, GcDbIdMapping& map,
                                     bool deferXlation = false);
  // From this database into one of another: everything the objects need comes along (layers, linetypes, styles,
  // blocks, dictionary entries); what has a name that exists there is treated as `mode` says.
  Gcad::ErrorStatus wblockCloneObjects(const GcDbObjectIdArray& ids, GcDbObjectId ownerId, GcDbIdMapping& map,
                                       GcDb::DuplicateRecordCloning mode, bool deferXlation = false);
  // Makes the model space of another database a block of this one (a block of that name is redefined).
  Gcad::ErrorStatus insert(GcDbObjectId& blockId, const GCHAR* blockName, GcDbDatabase* source,
                           bool preserveSourceDatabase = true);
  Gcad::ErrorStatus insert(const GCHAR* blockName, GcDbDatabase* source, bool preserveSourceDatabase = true);

  // The nine tables and the root dictionary.
  [[nodiscard]] GcDbObjectId layerTableId() const { return m_tables[kLayers]; }
  [[nodiscard]] GcDbObjectId blockTableId() const { return m_tables[kBlocks]; }
  [[nodiscard]] GcDbObjectId linetypeTableId() const { return m_tables[kLinetypes]; }
  [[nodiscard]] GcDbObjectId textStyleTableId() const { return m_tables[kTextStyles]; }
  [[nodiscard]] GcDbObjectId dimStyleTableId() const { return m_tables[kDimStyles]; }
  [[nodiscard]] GcDbObjectId regAppTableId() const { return m_tables[kRegApps]; }
  [[nodiscard]] GcDbObjectId viewTableId() const { return m_tables[kViews]; }
  [[nodiscard]] GcDbObjectId viewportTableId() const { return m_tables[kViewports]; }
  [[nodiscard]] GcDbObjectId UCSTableId() const { return m_tables[kUcss]; }
  [[nodiscard]] GcDbObjectId namedObjectsDictionaryId() const { return m_namedObjectsId; }
  [[nodiscard]] GcDbObjectId layoutDictionaryId() const;
  Gcad::ErrorStatus getSymbolTable(GcDbBlockTable*& table, GcDb::OpenMode mode = GcDb::kForRead);
  Gcad::ErrorStatus getSymbolTable(GcDbLayerTable*& table, GcDb::OpenMode mode = GcDb::kForRead);
  Gcad::ErrorStatus getSymbolTable(GcDbLinetypeTable*& table, GcDb::OpenMode mode = GcDb::kForRead);
  Gcad::ErrorStatus getSymbolTable(GcDbTextStyleTable*& table, GcDb::OpenMode mode = GcDb::kForRead);
  Gcad::ErrorStatus getSymbolTable(GcDbDimStyleTable*& table, GcDb::OpenMode mode = GcDb::kForRead);
  Gcad::ErrorStatus getSymbolTable(GcDbRegAppTable*& table, GcDb::OpenMode mode = GcDb::kForRead);
  Gcad::ErrorStatus getSymbolTable(GcDbViewTable*& table, GcDb::OpenMode mode = GcDb::kForRead);
  Gcad::ErrorStatus getSymbolTable(GcDbViewportTable*& table, GcDb::OpenMode mode = GcDb::kForRead);
  Gcad::ErrorStatus getSymbolTable(GcDbUCSTable*& table, GcDb::OpenMode mode = GcDb::kForRead);
  Gcad::ErrorStatus getBlockTable(GcDbBlockTable*& table, GcDb::OpenMode mode = GcDb::kForRead) {
    return getSymbolTable(table, mode);
  }
  Gcad::ErrorStatus getLayerTable(GcDbLayerTable*& table, GcDb::OpenMode mode = GcDb::kForRead) {
    return getSymbolTable(table, mode);
  }
  Gcad::ErrorStatus getDimStyleTable(GcDbDimStyleTable*& table, GcDb::OpenMode mode = GcDb::kForRead) {
    return getSymbolTable(table, mode);
  }
  Gcad::ErrorStatus getUCSTable(GcDbUCSTable*& table, GcDb::OpenMode mode = GcDb::kForRead) {
    return getSymbolTable(table, mode);
  }
  Gcad::ErrorStatus getNamedObjectsDictionary(GcDbDictionary*& dictionary, GcDb::OpenMode mode = GcDb::kForRead);

  // Objects by handle; constant time. Errors: eUnknownHandle, eNullHandle.
  Gcad::ErrorStatus getGcDbObjectId(GcDbObjectId& id, bool createIfNotFound, const GcDbHandle& handle) const;
  // Makes a new object part of the database (no owner yet); it stays open for write.
  Gcad::ErrorStatus addGcDbObject(GcDbObjectId& id, GcDbObject* object, GcDbObjectId owner = GcDbObjectId::kNull);
  [[nodiscard]] GcDbHandle handseed() const;

  // What new entities get, and the records that count as standard.
  [[nodiscard]] GcDbObjectId clayer() const { return m_current.layer; }
  [[nodiscard]] GcDbObjectId celtype() const { return m_current.linetype; }
  [[nodiscard]] GcDbObjectId textstyle() const { return m_current.textStyle; }
  [[nodiscard]] GcDbObjectId dimstyle() const { return m_current.dimStyle; }
  [[nodiscard]] GcCmColor cecolor() const { return m_current.color; }
  [[nodiscard]] double celtscale() const { return m_current.linetypeScale; }
  [[nodiscard]] GcDb::LineWeight celweight() const { return static_cast<GcDb::LineWeight>(m_current.lineWeight); }
  Gcad::ErrorStatus setClayer(GcDbObjectId id);  // eInvalidInput for a frozen layer or a foreign id
  Gcad::ErrorStatus setCeltype(GcDbObjectId id);
  Gcad::ErrorStatus setTextstyle(GcDbObjectId id);
  Gcad::ErrorStatus setDimstyle(GcDbObjectId id);
  // The named system that orthographic views of the drawing are based on; null for the world.
  // Errors: eInvalidInput for anything but a system of this drawing.
  Gcad::ErrorStatus setUcsBase(GcDbObjectId id);
  Gcad::ErrorStatus setCecolor(const GcCmColor& color);
  Gcad::ErrorStatus setCeltscale(double scale);
  Gcad::ErrorStatus setCelweight(GcDb::LineWeight weight);
  [[nodiscard]] GcDbObjectId continuousLinetype() const { return m_known.continuous; }
  [[nodiscard]] GcDbObjectId byLayerLinetype() const { return m_known.byLayer; }
  [[nodiscard]] GcDbObjectId byBlockLinetype() const { return m_known.byBlock; }
  [[nodiscard]] GcDbObjectId layerZero() const { return m_known.layerZero; }
  [[nodiscard]] GcDbObjectId modelSpaceId() const { return m_known.modelSpace; }
  [[nodiscard]] GcDbObjectId paperSpaceId() const { return m_known.paperSpace; }  // the current layout's

  // Every other setting, by name as files have it ("$LTSCALE").
  [[nodiscard]] GcDbHeader& header() { return *m_header; }
  [[nodiscard]] const GcDbHeader& header() const { return *m_header; }
  // What the file held beside objects and settings: class records, comments, sections kept as they are.
  [[nodiscard]] GcDbFileParts& fileParts() { return *m_fileParts; }
  [[nodiscard]] const GcDbFileParts& fileParts() const { return *m_fileParts; }

  void addReactor(GcDbDatabaseReactor* reactor);
  void removeReactor(GcDbDatabaseReactor* reactor);

  // File name of the drawing (empty for a new one) and the version it came from or is to be saved as.
  [[nodiscard]] const GcString& getFilename() const { return m_fileName; }
  void setFilename(const GCHAR* name) { m_fileName = name; }
  [[nodiscard]] GcDb::GcDbDwgVersion originalFileVersion() const { return m_version; }
  void setOriginalFileVersion(GcDb::GcDbDwgVersion version) { m_version = version; }

  [[nodiscard]] GcDbTransactionManager* transactionManager() { return m_transactions; }

  // Recorded changes; recording is off until switched on.
  [[nodiscard]] GcDbUndo& undo() { return *m_undo; }

  // For the host's own use.
  [[nodiscard]] GcDbStore& store() { return *m_store; }
  [[nodiscard]] const GcDbStore& store() const { return *m_store; }
  [[nodiscard]] uint32_t serial() const;
  void notifyAppended(const GcDbObject* object);
  void notifyUnAppended(const GcDbObject* object);
  void notifyReAppended(const GcDbObject* object);
  void notifyErased(const GcDbObject* object, bool erased);
  void notifyModified(const GcDbObject* object);
  // Finds tables, root dictionary and standard records again after a file was read; makes what is missing.
  void completeAfterLoad();
  void setTableId(int table, GcDbObjectId id) { m_tables[table] = id; }
  [[nodiscard]] GcDbObjectId tableId(int table) const { return m_tables[table]; }
  void setNamedObjectsDictionaryId(GcDbObjectId id) { m_namedObjectsId = id; }
  void setPaperSpaceId(GcDbObjectId id) { m_known.paperSpace = id; }

  enum Table : uint8_t {
    kBlocks,
    kLayers,
    kTextStyles,
    kLinetypes,
    kViews,
    kUcss,
    kViewports,
    kRegApps,
    kDimStyles,
    kTableCount
  };

 private:
  struct Current {
    GcDbObjectId layer, linetype, textStyle, dimStyle;
    GcCmColor color;
    double linetypeScale = 1;
    int16_t lineWeight = GcDb::kLnWtByLayer;
  };
  struct Known {
    GcDbObjectId continuous, byLayer, byBlock, layerZero, modelSpace, paperSpace;
  };
  [[nodiscard]] bool isUsable(GcDbObjectId id) const;
  template <class T>
  void change(T& setting, const T& value);
  template <class T>
  Gcad::ErrorStatus openTable(T*& table, Table which, GcDb::OpenMode mode) {
    return gcdbOpenObject(table, m_tables[which], mode);
  }

  GcDbStore* m_store;
  GcDbHeader* m_header;
  GcDbFileParts* m_fileParts;
  GcDbUndo* m_undo;
  GcDbTransactionManager* m_transactions;
  GcDbLoadReport* m_report = nullptr;
  GcDbObjectId m_tables[kTableCount];
  GcDbObjectId m_namedObjectsId;
  Current m_current;
  Known m_known;
  GcArray<GcDbDatabaseReactor*> m_reactors;
  GcString m_fileName;
  GcDb::GcDbDwgVersion m_version = GcDb::kDHL_Current;
};

// Notifications of a database. Objects are open, for read at least, while a reactor is told of them. A new object is
// told of when it is closed for the first time, with all it has been given; undo takes an append back
// (objectUnAppended) and redo makes it anew (objectReAppended), an erase is told with the flag either way.
class GcDbDatabaseReactor : public GcRxObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbDatabaseReactor);
  virtual void objectAppended(const GcDbDatabase* database, const GcDbObject* object);
  virtual void objectUnAppended(const GcDbDatabase* database, const GcDbObject* object);
  virtual void objectReAppended(const GcDbDatabase* database, const GcDbObject* object);
  virtual void objectOpenedForModify(const GcDbDatabase* database, const GcDbObject* object);
  virtual void objectModified(const GcDbDatabase* database, const GcDbObject* object);
  virtual void objectErased(const GcDbDatabase* database, const GcDbObject* object, bool erased = true);
  virtual void headerSysVarWillChange(const GcDbDatabase* database, const GCHAR* name);
  virtual void headerSysVarChanged(const GcDbDatabase* database, const GCHAR* name, bool success);
  virtual void proxyResurrectionCompleted(const GcDbDatabase* database, const GCHAR* appName, GcDbObjectIdArray& ids);
  virtual void goodbye(const GcDbDatabase* database);
};

// What the application around the database offers it.
class GcDbHostApplicationServices : public GcRxObject {
 public:
  [[nodiscard]] GcDbDatabase* workingDatabase() const { return m_working; }
  void setWorkingDatabase(GcDbDatabase* database) { m_working = database; }
  [[nodiscard]] GcDbLayoutManager* layoutManager() const;
  // Full name of a file looked up as given, beside the drawing, along the support path. eFileNotFound.
  virtual Gcad::ErrorStatus findFile(GcString& found, const GCHAR* name, GcDbDatabase* database = nullptr);

 private:
  GcDbDatabase* m_working = nullptr;
};

GcDbHostApplicationServices* gcdbHostApplicationServices();
void gcdbSetHostApplicationServices(GcDbHostApplicationServices* services);
