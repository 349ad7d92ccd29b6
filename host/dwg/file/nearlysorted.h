// Sorting of what is in order but for a few, as handles of drawings are.
#pragma once

#include <algorithm>
#include <vector>

namespace gc::dwg {

// What stands out of order is taken out, sorted and merged back: one pass when it is little. Of two in the wrong order
// either may be the stray: the former ones, when few of them are in the way, else the latter.
template <class T, class Less>
void sortNearlySorted(std::vector<T>& all, const Less& less) {
  constexpr size_t kFew = 4;
  std::vector<T> strays;
  size_t kept = 0;
  for (size_t i = 0; i < all.size(); ++i) {
    if (kept > kFew && less(all[i], all[kept - 1 - kFew])) {
      strays.push_back(all[i]);
      continue;
    }
    while (kept > 0 && less(all[i], all[kept - 1])) strays.push_back(all[--kept]);
    all[kept++] = all[i];
  }
  if (strays.empty()) return;
  if (strays.size() < all.size() / 2)
    sortNearlySorted(strays, less);  // they are often in order among themselves
  else
    std::sort(strays.begin(), strays.end(), less);
  const auto middle = all.begin() + static_cast<std::ptrdiff_t>(kept);
  std::copy(strays.begin(), strays.end(), middle);
  std::inplace_merge(all.begin(), middle, all.end(), less);
}

}  // namespace gc::dwg
