// Sorting of what is in order but for a few, as handles of drawings are.
#pragma once

#include <algorithm>
#include <vector>

namespace gc::dwg {

// Those that stand before something smaller than them are taken out, sorted and merged back: one pass when they are few.
template <class T, class Less>
void sortNearlySorted(std::vector<T>& all, const Less& less) {
  std::vector<T> strays;
  size_t kept = 0;
  for (size_t i = 0; i < all.size(); ++i) {
    while (kept > 0 && less(all[i], all[kept - 1])) strays.push_back(all[--kept]);
    all[kept++] = all[i];
  }
  if (strays.empty()) return;
  std::sort(strays.begin(), strays.end(), less);
  const auto middle = all.begin() + static_cast<std::ptrdiff_t>(kept);
  std::copy(strays.begin(), strays.end(), middle);
  std::inplace_merge(all.begin(), middle, all.end(), less);
}

}  // namespace gc::dwg
