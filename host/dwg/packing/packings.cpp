#include "host/dwg/packing/packings.h"

namespace gc::dwg::packing {

void addAll(std::vector<ClassPacking>& list) {
  addSimpleEntities(list);
  addPolylines(list);
  addTexts(list);
  addBlocks(list);
  addTableRecords(list);
  addDictionaries(list);
  addDimStyles(list);
  addSplines(list);
  addDimensions(list);
  addHatches(list);
  addModelers(list);
  addSurfaces(list);
  addLayouts(list);
  addObjects(list);
  addMlines(list);
  addImages(list);
  addMLeaders(list);
  addVisualStyles(list);
  addViewStyles(list);
  addFilters(list);
  addDimAssocs(list);
  addSections(list);
  addUnderlays(list);
  addMaterials(list);
  addScenes(list);
  addTableStyles(list);
  addRenderers(list);
  addGeoData(list);
  addForeign(list);
  addContexts(list);
  addTextFields(list);
}

}  // namespace gc::dwg::packing
