#include "cli/convert.h"

#include "cli/drawingfile.h"
#include "cli/savefile.h"

namespace cli {

int convert(const ConvertOptions& options) {
  const SaveTarget target{options.out, options.in, options.as, false, options.binary, options.backup, options.force};
  if (const int code = checkTarget(target); code != kDone) return code;
  const std::unique_ptr<GcDbDatabase> database = openDrawingFile(options.in, Remarks::All);
  if (database == nullptr) return kCannotRead;
  return saveDrawing(*database, target);
}

}  // namespace cli
