// How much memory there is, and how much of it this process has.
#pragma once

#include <cstddef>

namespace cli {

// Bytes in real memory; 0 where the system does not say.
[[nodiscard]] size_t residentBytes();
[[nodiscard]] size_t machineBytes();

}  // namespace cli
