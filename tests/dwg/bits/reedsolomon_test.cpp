// Blocks with check bytes, made by another way than they are checked (long division), with bytes changed.
#include "host/dwg/bits/reedsolomon.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/dwg/damage/pack_r2007.h"

using namespace gc::dwg;

namespace {

std::vector<uint8_t> randomBlock(std::mt19937& rng, const BlockCode& code) {
  std::vector<uint8_t> message(code.messageBytes());
  for (uint8_t& byte : message) byte = static_cast<uint8_t>(rng());
  return codedBlock(message, code);
}

BlockState corrected(std::vector<uint8_t>& block, const BlockCode& code) {
  return correctBlock(std::span<uint8_t, kCodedBlock>(block.data(), kCodedBlock), code);
}

void damage(std::mt19937& rng, std::vector<uint8_t>& block, size_t bytes) {
  std::vector<size_t> places(block.size());
  for (size_t i = 0; i < places.size(); ++i) places[i] = i;
  std::shuffle(places.begin(), places.end(), rng);
  for (size_t i = 0; i < bytes; ++i) block[places[i]] ^= static_cast<uint8_t>(1 + rng() % 255);
}

}  // namespace

TEST(ReedSolomon, WhatIsWholeStaysAndAsManyBytesAsTheCodeCarriesAreCorrected) {
  std::mt19937 rng(5);
  for (const BlockCode& code : {kSystemBlocks, kDataBlocks})
    for (size_t errors = 0; errors <= code.checkBytes / 2; ++errors)
      for (int round = 0; round < 50; ++round) {
        const std::vector<uint8_t> whole = randomBlock(rng, code);
        std::vector<uint8_t> block = whole;
        damage(rng, block, errors);
        ASSERT_EQ(corrected(block, code), errors == 0 ? BlockState::Whole : BlockState::Corrected) << errors;
        ASSERT_EQ(block, whole) << errors;
      }
}

// More errors are seen; some of them look like few errors of another block, and what comes of them is one.
TEST(ReedSolomon, MoreWrongBytesAreNeverTakenForWhole) {
  std::mt19937 rng(6);
  size_t damaged = 0;
  for (const BlockCode& code : {kSystemBlocks, kDataBlocks})
    for (int round = 0; round < 400; ++round) {
      std::vector<uint8_t> block = randomBlock(rng, code);
      damage(rng, block, code.checkBytes / 2 + 1 + rng() % 20);
      const std::vector<uint8_t> before = block;
      const BlockState state = corrected(block, code);
      if (state == BlockState::Damaged) {
        ++damaged;
        ASSERT_EQ(block, before);
      } else {
        ASSERT_EQ(state, BlockState::Corrected);
        ASSERT_EQ(corrected(block, code), BlockState::Whole);
      }
    }
  EXPECT_GT(damaged, 500u);
}
