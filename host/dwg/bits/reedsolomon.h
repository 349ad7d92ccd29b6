// The error-correcting codes of files of AC1021: blocks of 255 bytes of Reed and Solomon's code over GF(2^8). Byte i of a
// block is the coefficient of x^i; the roots of its polynomial are a^1 .. a^n for n check bytes, which stand at the
// block's end. The two codes differ in n and in the polynomial that makes the field; both were found from files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace gc::dwg {

inline constexpr size_t kCodedBlock = 255;
struct BlockCode {
  size_t checkBytes;
  unsigned field;

  [[nodiscard]] constexpr size_t messageBytes() const { return kCodedBlock - checkBytes; }
};
inline constexpr BlockCode kSystemBlocks = {16, 0x169};  // x^8 + x^6 + x^5 + x^3 + 1
inline constexpr BlockCode kDataBlocks = {4, 0x11D};     // x^8 + x^4 + x^3 + x^2 + 1

enum class BlockState { Whole, Corrected, Damaged };

// Corrects up to checkBytes / 2 wrong bytes, wherever in the block they are. A block with more of them stays as it is,
// but for the few that look like another one with fewer: what they hold has checksums of its own.
[[nodiscard]] BlockState correctBlock(std::span<uint8_t, kCodedBlock> block, const BlockCode& code);

}  // namespace gc::dwg
