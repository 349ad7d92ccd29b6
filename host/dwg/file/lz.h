// The compression of pages of AC1018 and of AC1024 on: runs of literals and copies from what was written before.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace gc::dwg {

// Fills `out` to at most its size; gives the number of bytes made. Damaged input ends the work early: the bytes made
// until then are good.
size_t decompress(std::span<const uint8_t> packed, std::span<uint8_t> out);

// Appends the packed bytes, their end mark included.
void compress(std::span<const uint8_t> bytes, std::vector<uint8_t>& out);

}  // namespace gc::dwg
