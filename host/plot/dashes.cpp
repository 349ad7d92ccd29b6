#include "host/plot/dashes.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace gc::plot {

std::vector<double> alternateDashes(std::span<const double> elements, double factor) {
  std::vector<double> lengths;  // dash, gap, dash, gap ...
  for (const double element : elements) {
    if (!std::isfinite(element)) return {};
    const bool dash = element >= 0;
    const bool wantsDash = lengths.size() % 2 == 0;
    const double length = std::fabs(element) * factor;
    if (dash == wantsDash) {
      lengths.push_back(length);
    } else if (!lengths.empty()) {
      lengths.back() += length;  // two of a kind in a row are one
    } else {
      lengths.insert(lengths.end(), {0, length});
    }
  }
  if (lengths.size() < 2) return {};
  if (lengths.size() % 2 != 0) {  // ends with a dash: it runs into the first one
    lengths.front() += lengths.back();
    lengths.pop_back();
  }
  const double gaps = std::accumulate(lengths.begin(), lengths.end(), 0.0);
  if (!(gaps > 0)) return {};
  return lengths;
}

std::vector<double> fitDashes(std::span<const double> dashes, double length, double finest) {
  if (dashes.empty()) return {};
  const double period = std::accumulate(dashes.begin(), dashes.end(), 0.0);
  if (!(period >= finest)) return {};
  const double periods = std::round((length - dashes.front()) / period);
  if (!(periods >= 1)) return {};
  const double stretch = length / (periods * period + dashes.front());
  std::vector<double> fitted(dashes.begin(), dashes.end());
  for (double& each : fitted) each *= stretch;
  return fitted;
}

}  // namespace gc::plot
