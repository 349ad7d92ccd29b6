#include "host/dwg/record/lineweights.h"

#include <cstdint>
#include <iterator>

#include "db/dbdefs.h"

namespace gc::dwg {

namespace {

constexpr int16_t kWeights[] = {0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
                                53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};
constexpr unsigned kByLayer = 29;
constexpr unsigned kByBlock = 30;
constexpr unsigned kDefault = 31;

}  // namespace

int lineWeightOf(unsigned code) {
  if (code < std::size(kWeights)) return kWeights[code];
  if (code == kByBlock) return GcDb::kLnWtByBlock;
  return code == kDefault ? GcDb::kLnWtByLwDefault : GcDb::kLnWtByLayer;
}

unsigned codeOfLineWeight(int weight) {
  if (weight == GcDb::kLnWtByLayer) return kByLayer;
  if (weight == GcDb::kLnWtByBlock) return kByBlock;
  if (weight == GcDb::kLnWtByLwDefault) return kDefault;
  unsigned code = 0;
  while (code + 1 < std::size(kWeights) && kWeights[code] < weight) ++code;
  return code;
}

}  // namespace gc::dwg
