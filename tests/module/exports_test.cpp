// What the built plug-in gives to and takes from the process: two functions and one class out, nothing in but the
// host's libraries and the language's.
#include <gtest/gtest.h>

#ifndef _WIN32

#include <filesystem>
#include <set>
#include <sstream>
#include <string>

#include "tests/module/output.h"

namespace {

const std::string kModule = std::string(GC_BIN_DIR) + "/VrkEntPropertyEx.grx";

std::set<std::string> symbols(const std::string& options, const std::string& file) {
  std::set<std::string> names;
  std::istringstream lines(outputOf("nm -D -C " + options + " '" + file + "'"));
  std::string line;
  while (std::getline(lines, line)) {
    // "address kind name" or "kind name"; the name may hold blanks.
    const std::size_t at = line.find_first_of("ABDRTUVWabdrtuvw", line.size() > 16 && line[0] != ' ' ? 17 : 0);
    if (at == std::string::npos || at + 2 > line.size()) continue;
    names.insert(line.substr(at + 2));
  }
  return names;
}

bool isValueClass(const std::string& name) {
  for (const char* prefix : {"CKel_VL::", "vtable for CKel_VL", "typeinfo for CKel_VL", "typeinfo name for CKel_VL"})
    if (name.rfind(prefix, 0) == 0) return true;
  return false;
}

TEST(ModuleExports, AreTheEntryPointTheVersionAndTheValueClass) {
  const std::set<std::string> names = symbols("--defined-only", kModule);
  EXPECT_TRUE(names.count("gcrxEntryPoint"));
  EXPECT_TRUE(names.count("gcrxGetApiVersion"));
  bool rxInit = false;
  for (const std::string& name : names) {
    rxInit = rxInit || name == "CKel_VL::rxInit()";
    EXPECT_TRUE(name == "gcrxEntryPoint" || name == "gcrxGetApiVersion" || isValueClass(name)) << name;
  }
  EXPECT_TRUE(rxInit);
}

// A sanitized module imports what the sanitizers put in the place of the language's functions.
bool isSanitized() { return outputOf("readelf -d '" + kModule + "'").find("libasan") != std::string::npos; }

TEST(ModuleExports, ImportsComeFromTheHostAndTheLanguageOnly) {
  if (isSanitized()) GTEST_SKIP() << "a sanitized module";
  if (!std::filesystem::exists(std::string(GC_BIN_DIR) + "/gcad")) GTEST_SKIP() << "the program is not built";
  std::set<std::string> host;
  for (const char* library : {"gcad", "libgcdb.so", "libgcbase.so", "libgccore.so"})
    host.merge(symbols("--defined-only", std::string(GC_BIN_DIR) + "/" + library));
  ASSERT_GT(host.size(), 100u);
  for (const std::string& name : symbols("--undefined-only", kModule)) {
    const bool versioned = name.find('@') != std::string::npos;  // of the C and C++ libraries
    const bool weak = name.rfind("__", 0) == 0 || name.rfind("_ITM", 0) == 0;
    EXPECT_TRUE(versioned || weak || host.count(name)) << name << " is in no library of the host";
  }
}

TEST(ModuleExports, NeededLibrariesAreTheHostsAndTheLanguages) {
  if (isSanitized()) GTEST_SKIP() << "a sanitized module";
  std::istringstream lines(outputOf("readelf -d '" + kModule + "'"));
  const std::set<std::string> allowed = {"libgcdb.so",     "libgcbase.so",  "libgccore.so", "gcad",
                                         "libstdc++.so.6", "libgcc_s.so.1", "libc.so.6",    "libm.so.6"};
  std::string line;
  int needed = 0;
  while (std::getline(lines, line)) {
    if (line.find("(NEEDED)") == std::string::npos) continue;
    const std::size_t open = line.find('[');
    const std::string library = line.substr(open + 1, line.find(']') - open - 1);
    EXPECT_TRUE(allowed.count(library)) << library;
    ++needed;
  }
  EXPECT_GT(needed, 2);
}

}  // namespace

#endif
