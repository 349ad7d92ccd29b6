// Parts of a document as JSON for the pages.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "db/entity.h"
#include "host/ed/editor.h"

namespace cli::page {

// [{"name", "off", "frozen", "locked", "color": 0xRRGGBB, "current"}, …] by name.
nlohmann::json layersOf(GcDbDatabase& database);

// What a layer is set to from a page.
enum class LayerSwitch : int { Off = 0, Frozen = 1, Locked = 2 };
// Empty text, or why not.
std::string switchLayer(GcDbDatabase& database, GcView name, LayerSwitch what, bool on);

// {"title", "rows": [[name, value], …]}: of one entity all it says of itself, of several what they have in common.
nlohmann::json propertiesOf(const std::vector<GcDbObjectId>& entities);

}  // namespace cli::page
