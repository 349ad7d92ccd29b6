// Line weights as records code them: a place in the list of weights, or 29 by layer, 30 by block, 31 default.
#pragma once

namespace gc::dwg {

// Hundredths of a millimetre, or one of the negative codes of GcDb::LineWeight.
[[nodiscard]] int lineWeightOf(unsigned code);
[[nodiscard]] unsigned codeOfLineWeight(int weight);

}  // namespace gc::dwg
