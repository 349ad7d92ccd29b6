// gcad convert: a drawing into another file, format or version.
#pragma once

#include "cli/options.h"

namespace cli {

int convert(const ConvertOptions& options);

}  // namespace cli
