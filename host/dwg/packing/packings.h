// Every class's packing, by family. Each family is one file of tables.
#pragma once

#include <vector>

#include "host/dwg/record/packrow.h"

namespace gc::dwg::packing {

void addSimpleEntities(std::vector<ClassPacking>& list);
void addPolylines(std::vector<ClassPacking>& list);
void addTexts(std::vector<ClassPacking>& list);
void addBlocks(std::vector<ClassPacking>& list);
void addTableRecords(std::vector<ClassPacking>& list);
void addDictionaries(std::vector<ClassPacking>& list);
void addDimStyles(std::vector<ClassPacking>& list);
void addSplines(std::vector<ClassPacking>& list);
void addDimensions(std::vector<ClassPacking>& list);
void addHatches(std::vector<ClassPacking>& list);
void addModelers(std::vector<ClassPacking>& list);
void addSurfaces(std::vector<ClassPacking>& list);
void addLayouts(std::vector<ClassPacking>& list);
void addMlines(std::vector<ClassPacking>& list);
void addImages(std::vector<ClassPacking>& list);
void addMLeaders(std::vector<ClassPacking>& list);
void addVisualStyles(std::vector<ClassPacking>& list);
void addViewStyles(std::vector<ClassPacking>& list);
void addFilters(std::vector<ClassPacking>& list);
void addDimAssocs(std::vector<ClassPacking>& list);
void addSections(std::vector<ClassPacking>& list);
void addUnderlays(std::vector<ClassPacking>& list);
void addTableStyles(std::vector<ClassPacking>& list);
void addTextFields(std::vector<ClassPacking>& list);
void addScenes(std::vector<ClassPacking>& list);
void addMaterials(std::vector<ClassPacking>& list);
void addContexts(std::vector<ClassPacking>& list);
void addRenderers(std::vector<ClassPacking>& list);
void addGeoData(std::vector<ClassPacking>& list);
void addForeign(std::vector<ClassPacking>& list);
void addObjects(std::vector<ClassPacking>& list);

void addAll(std::vector<ClassPacking>& list);

}  // namespace gc::dwg::packing
