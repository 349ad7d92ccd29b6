// The page's files, built into the program.
#pragma once

#include <string_view>

namespace cli::page {

struct Asset {
  std::string_view name;  // as in the address, without the slash; the page itself is index.html
  std::string_view type;
  std::string_view content;
};

// Null when there is none of the name.
const Asset* findAsset(std::string_view name);

}  // namespace cli::page
