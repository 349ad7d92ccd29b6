// The option stAte of -LAYER.
#pragma once

#include "host/ed/command/command.h"

namespace ed {

// Saves, restores and keeps the books of states of all layers.
Task<bool> layerStateOption(CommandInput& in);

}  // namespace ed
