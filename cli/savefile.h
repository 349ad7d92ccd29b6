// Drawings saved by subcommands: what can be refused before any work is done, the version, and what is told to the person.
#pragma once

#include <string>

#include "cli/exitcode.h"
#include "db/database.h"

namespace cli {

struct SaveTarget {
  std::string path;
  std::string input;  // the drawing that was read; empty for a new one
  std::string as;     // name of a version; empty: the drawing's own
  bool inPlace = false;
  bool binary = false;
  bool backup = false;
  bool force = false;
};

// kDone, kUsage (no format for the extension, a version the format is not written in, the output is the input) or
// kCannotWrite (it exists). The reason has been told.
int checkTarget(const SaveTarget& target);

// Saves; what the version cannot say is told line by line on standard error. kDone or kCannotWrite.
int saveDrawing(GcDbDatabase& database, const SaveTarget& target);

}  // namespace cli
