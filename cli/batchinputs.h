// Which drawings a batch goes over, and where the results go.
#pragma once

#include <string>
#include <vector>

#include "cli/options.h"

namespace cli {

struct BatchItem {
  std::string input;
  std::string output;  // empty when nothing is saved
};

// Folders are searched to their depth for drawings (their structure is kept below the output folder); in the last part
// of a path * and ? stand for other characters. Sorted by name; the shard is taken of the sorted list. False with a
// message for the person and the exit code.
bool collectBatch(const BatchOptions& options, std::vector<BatchItem>& items, std::string& message, int& exitCode);

// Whether the result is there and no older than the drawing and the script it comes of.
bool isUpToDate(const BatchItem& item, const std::string& script);

}  // namespace cli
