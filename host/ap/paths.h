// File names as the program's own layers need them. UTF-16, either separator.
#pragma once

#include "host/rx/view.h"

namespace ap {

[[nodiscard]] bool fileExists(GcView path);
[[nodiscard]] GcText absolutePath(GcView path);
[[nodiscard]] GcView fileNameOf(GcView path);
[[nodiscard]] GcView directoryOf(GcView path);  // without a separator at its end; empty when there is none
[[nodiscard]] GcView extensionOf(GcView path);  // with its dot; empty when there is none
[[nodiscard]] bool isAbsolutePath(GcView path);

}  // namespace ap
