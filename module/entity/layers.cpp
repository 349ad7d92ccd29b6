// Layers of the working database, by name.
#include <memory>

#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/results.h"

namespace {

GcDbObjectId layerTableId() {
  const GcDbDatabase* database = workingDatabase();
  return database != nullptr ? database->layerTableId() : GcDbObjectId::kNull;
}

// The named layer, open for write; empty when there is none or it refuses.
class WritableLayer {
 public:
  explicit WritableLayer(const GCHAR* name) : m_table(layerTableId()) {
    GcDbObjectId id;
    if (m_table && m_table->getAt(name, id) == Gcad::eOk) {
      GcDbLayerTableRecord* layer = nullptr;
      if (gcdbOpenObject(layer, id, GcDb::kForWrite) == Gcad::eOk) m_layer.attach(layer);
    }
  }
  explicit operator bool() const { return static_cast<bool>(m_layer); }
  GcDbLayerTableRecord* operator->() const { return m_layer.get(); }

 private:
  GcDbWritePtr<GcDbLayerTable> m_table;
  GcDbWritePtr<GcDbLayerTableRecord> m_layer;
};

}  // namespace

// Deliberate: the name is answered also when the table refuses the layer, as it does one that exists.
int addLayer() {
  ArgReader args(rules::kNameFirst);
  const GCHAR* name = args.string();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbLayerTable> table(layerTableId());
  if (!table) return ret::nil();
  auto layer = std::make_unique<GcDbLayerTableRecord>();
  ignore(layer->setName(name));
  if (table->add(layer.get()) == Gcad::eOk) ignore(layer.release()->close());
  return ret::string(name);
}

int deleteLayer() {
  ArgReader args(rules::kNameFirst);
  const GCHAR* name = args.string();
  if (args.failed()) return args.status();
  if (WritableLayer layer(name); layer) ignore(layer->erase());
  return ret::nothing();
}

int putLayerOn() {
  ArgReader args(rules::kNameFirst);
  const GCHAR* name = args.string();
  const bool on = args.flag();
  if (args.failed()) return args.status();
  if (WritableLayer layer(name); layer) ignore(layer->setIsOff(!on));
  return ret::nothing();
}

int setColorOfLayer() {
  ArgReader args(rules::kNameFirst);
  const GCHAR* name = args.string();
  const int16_t index = args.integer();
  if (args.failed()) return args.status();
  if (WritableLayer layer(name); layer) {
    GcCmColor color;
    color.setColorIndex(index);
    ignore(layer->setColor(color));
  }
  return ret::nothing();
}

// Renames a layer. A missing one and a name that the table refuses both give nil.
int putName() {
  ArgReader args(rules::kTextFirst);
  const GCHAR* oldName = args.string();
  const GCHAR* newName = args.string();
  if (args.failed()) return args.status();
  WritableLayer layer(oldName);
  const bool renamed = layer && layer->setName(newName) == Gcad::eOk;
  return renamed ? ret::string(newName) : ret::nil();
}
