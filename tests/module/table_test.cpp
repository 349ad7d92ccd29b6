// The list of LISP functions: names and codes that LISP programs rely on, and the pages made from it.
#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "tests/module/output.h"

namespace {

struct Row {
  std::string name;
  std::string body;
};

const std::vector<Row> kRows = {
#define LISP_FUNCTION(name, body, ...) {name, #body},
#include "module/app/functions.inc"
#undef LISP_FUNCTION
};

TEST(FunctionTable, CodesAreThoseThatProgramsKnow) {
  std::ifstream in(std::string(GC_SOURCE_DIR) + "/tests/module/function_codes.txt");
  std::vector<std::string> names;
  int code = 0;
  std::string name;
  while (in >> code >> name) {
    EXPECT_EQ(code, static_cast<int>(names.size()));
    names.push_back(name);
  }
  ASSERT_EQ(names.size(), 119u);
  ASSERT_EQ(kRows.size(), names.size());
  for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(kRows[i].name, names[i]) << "code " << i;
}

TEST(FunctionTable, SixNamesAreReserved) {
  std::vector<std::string> reserved;
  for (const Row& row : kRows)
    if (row.body == "placeholder") reserved.push_back(row.name);
  EXPECT_EQ(reserved, (std::vector<std::string>{"kel_getvariable", "kel_setvariable", "kel_getcollection",
                                                "kel_addentity", "kel_adddimentity", "kel_getattributes"}));
}

// Prints the list; every other test of the module holds for the functions that are built.
TEST(FunctionTable, ListsWhatIsNotBuilt) {
  int count = 0;
  for (const Row& row : kRows) {
    if (row.body != "notBuilt") continue;
    if (count++ == 0) std::cout << "Functions that answer nil because they are not built yet:\n";
    std::cout << "  " << row.name << "\n";
  }
  std::cout << (count == 0 ? "All functions are built.\n" : "");
  RecordProperty("notBuilt", count);
}

#ifndef _WIN32
std::string textOf(const std::string& file) {
  std::ifstream in(std::string(GC_SOURCE_DIR) + "/" + file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string made(const char* what) { return outputOf(std::string(GC_TOOLS_DIR) + "/functiondoc " + what); }

TEST(FunctionTable, ReferencePagesAreCurrent) {
  EXPECT_EQ(made("en"), textOf("docs/functions.md")) << "tools/functiondoc: build/tools-bin/functiondoc en";
  EXPECT_EQ(made("pl"), textOf("docs/functions.pl.md")) << "build/tools-bin/functiondoc pl";
}
#endif

}  // namespace
