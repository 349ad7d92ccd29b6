// What layers have besides their fields, and states of all layers kept under a name.
#pragma once

#include <vector>

#include "host/ed/editor.h"

namespace ed {

// Text kept with the layer as extended data of AcAecLayerStandard, where all programs of the field keep it.
[[nodiscard]] GcText layerDescription(GcDbObjectId layer);
bool setLayerDescription(GcDbObjectId layer, GcView text);

// Percent, 0 (opaque) to 90; kept as extended data of AcCmTransparency, as an opacity from 0 to 255.
[[nodiscard]] int layerTransparency(GcDbObjectId layer);
bool setLayerTransparency(GcDbObjectId layer, int percent);

// ---- states: extension records in the dictionary ACAD_LAYERSTATES of the layer table's extension dictionary

// Which properties a state brings back: bits of its group 91.
enum LayerStateBit : int {
  kStateOn = 1,
  kStateFrozen = 2,
  kStateLocked = 4,
  kStatePlot = 8,
  kStateNewViewport = 16,
  kStateColor = 32,
  kStateLinetype = 64,
  kStateLineWeight = 128,
  kStatePlotStyle = 256,
  kStateTransparency = 1024,
  kStateAll = 2047,
};

[[nodiscard]] std::vector<GcText> layerStates(GcDbDatabase& database);
[[nodiscard]] bool hasLayerState(GcDbDatabase& database, GcView name);
// Keeps all layers as they are, in the place of a state of that name.
bool saveLayerState(GcDbDatabase& database, GcView name, int bits, GcView description = {});
// Layers the drawing has no more are passed over, those made since stay as they are. False when there is no such state.
bool restoreLayerState(GcDbDatabase& database, GcView name);
bool eraseLayerState(GcDbDatabase& database, GcView name);
bool renameLayerState(GcDbDatabase& database, GcView from, GcView to);
// Which properties the state brings back; 0 when there is none of this name.
[[nodiscard]] int layerStateBits(GcDbDatabase& database, GcView name);
bool setLayerStateBits(GcDbDatabase& database, GcView name, int bits);

// A state as text, pairs of lines of group code and value (.las files), and back. Linetypes go by name.
[[nodiscard]] GcText layerStateText(GcDbDatabase& database, GcView name);
// Puts every state of the text into the drawing; their names.
std::vector<GcText> readLayerStates(GcDbDatabase& database, GcView text);

}  // namespace ed
