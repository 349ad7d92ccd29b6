#include "cli/functions.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "cli/exitcode.h"
#include "host/ap/library.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/core/wcmatch.h"
#include "host/rx/view.h"

namespace cli {

namespace {

// A plug-in describes its functions in a file of its own name beside it.
constexpr const char* kSuffix = ".functions.json";

bool hasSuffix(const std::string& name) {
  const std::string_view suffix = kSuffix;
  return name.size() > suffix.size() && name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0;
}

void addPlugIn(const std::filesystem::path& file, std::vector<FunctionHelp>& all) {
  std::ifstream stream(file, std::ios::binary);
  const nlohmann::json description = nlohmann::json::parse(stream, nullptr, false);
  if (!description.is_object() || !description["functions"].is_array()) {
    complain("gcad: " + file.string() + " does not describe functions\n");
    return;
  }
  const std::string module = description.value("module", "");
  for (const nlohmann::json& each : description["functions"]) {
    FunctionHelp help{each.value("name", ""), each.value("arguments", ""), each.value("result", ""), "", module};
    if (each.contains("help")) help.help = each["help"].value("en", "");
    all.push_back(help);
  }
}

std::string upper(std::string text) {
  for (char& c : text)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
  return text;
}

bool isWanted(const FunctionHelp& function, const std::string& pattern) {
  return pattern.empty() || lisp::wildcardMatch(fromUtf8(upper(function.name)), fromUtf8(upper(pattern)));
}

std::string described(const FunctionHelp& function, bool whole) {
  std::string out = function.source == "LISP" ? function.arguments
                                              : "(" + function.name + (function.arguments.empty() ? "" : " ") +
                                                    function.arguments + ") -> " + function.result;
  if (whole)
    out += "\n  " + function.help + "\n  " + (function.source == "LISP" ? "built in" : "of " + function.source);
  return out + "\n";
}

}  // namespace

std::vector<FunctionHelp> allFunctions() {
  std::vector<FunctionHelp> all;
  for (const lisp::Builtin* each = lisp::firstBuiltin(); each != nullptr; each = each->next)
    if (each->name[0] != '%')  // those are what others are made of
      all.push_back({each->name, each->signature, "", each->help, "LISP"});
  std::error_code error;
  const std::string folder = toUtf8(ap::programDirectory());
  for (const auto& entry :
       std::filesystem::directory_iterator(std::filesystem::path(std::u8string(folder.begin(), folder.end())), error))
    if (hasSuffix(entry.path().filename().string())) addPlugIn(entry.path(), all);
  std::sort(all.begin(), all.end(), [](const FunctionHelp& a, const FunctionHelp& b) { return a.name < b.name; });
  return all;
}

std::string functionReference(const std::string& pattern) {
  std::string text;
  for (const FunctionHelp& each : allFunctions())
    if (isWanted(each, pattern)) text += described(each, true);
  return text;
}

int functions(Terminal& terminal, const FunctionsOptions& options) {
  std::vector<FunctionHelp> wanted = allFunctions();
  std::erase_if(wanted, [&](const FunctionHelp& each) { return !isWanted(each, options.name); });
  if (wanted.empty()) {
    complain("gcad: no function is named " + options.name + "\n");
    return kUsage;
  }
  if (options.json) {
    nlohmann::json out = nlohmann::json::array();
    for (const FunctionHelp& each : wanted)
      out.push_back({{"name", each.name},
                     {"arguments", each.arguments},
                     {"result", each.result},
                     {"help", each.help},
                     {"source", each.source}});
    terminal.write(out.dump() + "\n");
    return kDone;
  }
  for (const FunctionHelp& each : wanted) terminal.write(described(each, !options.name.empty()));
  return kDone;
}

}  // namespace cli
