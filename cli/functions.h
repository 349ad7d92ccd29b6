// gcad functions: reference of the LISP functions, the host's and those of plug-ins beside the program.
#pragma once

#include <string>
#include <vector>

#include "cli/options.h"
#include "cli/terminal.h"

namespace cli {

struct FunctionHelp {
  std::string name;
  std::string arguments;
  std::string result;  // empty for the host's, whose signature says it
  std::string help;
  std::string source;  // "LISP" or the plug-in's name
};

// All of them in the order of their names.
std::vector<FunctionHelp> allFunctions();

// The reference of the functions whose names match the pattern, in full; empty when there is none.
std::string functionReference(const std::string& pattern);

int functions(Terminal& terminal, const FunctionsOptions& options);

}  // namespace cli
