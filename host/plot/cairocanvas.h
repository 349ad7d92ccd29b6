// Pages as PNG or PDF through cairo. Built only where cairo is installed; see plotFormats().
#pragma once

#include <memory>
#include <string>

#include "host/plot/canvas.h"
#include "host/rx/file/file_status.h"

namespace gc::plot {

enum class CairoFormat { Png, Pdf };

class CairoPage {
 public:
  virtual ~CairoPage() = default;
  [[nodiscard]] virtual Canvas& canvas() = 0;
  // Ends the page and gives the file's bytes. Errors: the device's message.
  virtual FileStatus finish(std::string& bytes) = 0;
};

// Null when this program was built without cairo. PNG pages have `dotsPerInch` dots.
std::unique_ptr<CairoPage> makeCairoPage(CairoFormat format, double widthMm, double heightMm, double dotsPerInch,
                                         uint32_t backgroundRgb);
bool hasCairo();

}  // namespace gc::plot
