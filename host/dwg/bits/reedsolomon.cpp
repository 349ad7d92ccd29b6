// Source: J. L. Massey, "Shift-register synthesis and BCH decoding", 1969, for the places of errors; G. D. Forney, "On
// decoding BCH codes", 1965, for their values.
#include "host/dwg/bits/reedsolomon.h"

#include <algorithm>
#include <array>

namespace gc::dwg {

namespace {

constexpr unsigned kOrder = 255;  // of a field's multiplicative group
constexpr size_t kMostCheckBytes = kSystemBlocks.checkBytes;

// A polynomial of a degree that check bytes can carry, the constant first.
using Polynomial = std::array<uint8_t, 2 * kMostCheckBytes + 1>;

// Arithmetic of a field by logarithms.
struct Field {
  std::array<uint8_t, 2 * kOrder> powers{};
  std::array<uint8_t, 256> logs{};

  constexpr explicit Field(unsigned polynomial) {
    unsigned x = 1;
    for (unsigned i = 0; i < kOrder; ++i) {
      powers[i] = powers[i + kOrder] = static_cast<uint8_t>(x);
      logs[x] = static_cast<uint8_t>(i);
      x <<= 1;
      if ((x & 0x100) != 0) x ^= polynomial;
    }
  }

  [[nodiscard]] uint8_t times(uint8_t a, uint8_t b) const {
    return a == 0 || b == 0 ? uint8_t{0} : powers[logs[a] + size_t{logs[b]}];
  }
  [[nodiscard]] uint8_t over(uint8_t a, uint8_t b) const {
    return a == 0 ? uint8_t{0} : powers[logs[a] + kOrder - size_t{logs[b]}];
  }
  [[nodiscard]] uint8_t valueAt(const Polynomial& p, uint8_t x) const {
    uint8_t value = 0;
    for (size_t i = p.size(); i-- > 0;) value = times(value, x) ^ p[i];
    return value;
  }
};
constexpr Field kSystemField(kSystemBlocks.field);
constexpr Field kDataField(kDataBlocks.field);

using Block = std::span<uint8_t, kCodedBlock>;

class Corrector {
 public:
  Corrector(const Field& field, size_t checkBytes) : m_field(field), m_checkBytes(checkBytes) {}

  BlockState correct(Block block) {
    if (hasAllRoots(block)) return BlockState::Whole;
    findPlaces();
    if (m_errors > m_checkBytes / 2) return BlockState::Damaged;
    findEvaluator();
    std::array<uint8_t, kCodedBlock> corrected;
    std::copy(block.begin(), block.end(), corrected.begin());
    if (put(corrected) != m_errors || !hasAllRoots(corrected)) return BlockState::Damaged;
    std::copy(corrected.begin(), corrected.end(), block.begin());
    return BlockState::Corrected;
  }

 private:
  // Takes the values of the block's polynomial at the roots it should have.
  bool hasAllRoots(std::span<const uint8_t, kCodedBlock> block) {
    uint8_t any = 0;
    for (size_t j = 0; j < m_checkBytes; ++j) {
      const size_t root = j + 1;  // its logarithm
      uint8_t value = 0;
      for (size_t i = kCodedBlock; i-- > 0;)
        value = (value == 0 ? uint8_t{0} : m_field.powers[m_field.logs[value] + root]) ^ block[i];
      m_syndrome[j] = value;
      any |= value;
    }
    return any == 0;
  }

  // The polynomial whose roots are the inverses of the places of errors, and how many there are.
  void findPlaces() {
    m_places = {1};
    m_errors = 0;
    Polynomial before{1};
    size_t shift = 1;
    uint8_t lastGap = 1;
    for (size_t n = 0; n < m_checkBytes; ++n, ++shift) {
      uint8_t gap = m_syndrome[n];
      for (size_t i = 1; i <= m_errors; ++i) gap ^= m_field.times(m_places[i], m_syndrome[n - i]);
      if (gap == 0) continue;
      const Polynomial kept = m_places;
      const uint8_t factor = m_field.over(gap, lastGap);
      for (size_t i = 0; i + shift < m_places.size(); ++i) m_places[i + shift] ^= m_field.times(factor, before[i]);
      if (2 * m_errors > n) continue;
      m_errors = n + 1 - m_errors;
      before = kept;
      lastGap = gap;
      shift = 0;
    }
  }

  void findEvaluator() {
    m_evaluator = {};
    for (size_t i = 0; i < m_checkBytes; ++i)
      for (size_t j = 0; j <= i; ++j) m_evaluator[i] ^= m_field.times(m_syndrome[i - j], m_places[j]);
    m_derivative = {};
    for (size_t i = 1; i < m_places.size(); i += 2) m_derivative[i - 1] = m_places[i];
  }

  // Corrects the bytes at the places; gives their number.
  size_t put(Block block) const {
    size_t found = 0;
    for (size_t i = 0; i < kCodedBlock; ++i) {
      const uint8_t inverse = m_field.powers[(kOrder - i) % kOrder];
      if (m_field.valueAt(m_places, inverse) != 0) continue;
      ++found;
      const uint8_t slope = m_field.valueAt(m_derivative, inverse);
      if (slope != 0) block[i] ^= m_field.over(m_field.valueAt(m_evaluator, inverse), slope);
    }
    return found;
  }

  const Field& m_field;
  size_t m_checkBytes;
  size_t m_errors = 0;
  Polynomial m_syndrome{};
  Polynomial m_places{};
  Polynomial m_evaluator{};
  Polynomial m_derivative{};
};

}  // namespace

BlockState correctBlock(Block block, const BlockCode& code) {
  return Corrector(code.field == kDataBlocks.field ? kDataField : kSystemField, code.checkBytes).correct(block);
}

}  // namespace gc::dwg
