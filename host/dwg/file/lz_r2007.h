// The compression of pages of AC1021: as that of the other versions in kind, but with codes of its own and literals
// stored in a permuted order.
#pragma once

#include <cstdint>
#include <span>

namespace gc::dwg {

// Fills `out` to at most its size; gives the number of bytes made. Damaged input ends the work early.
size_t decompressR2007(std::span<const uint8_t> packed, std::span<uint8_t> out);

}  // namespace gc::dwg
