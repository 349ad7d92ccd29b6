// What one DXF file holds that another does not: objects matched by handle, header variables and classes by name, and
// records without a handle by their place. Values are compared by what they mean (numbers as numbers, text decoded,
// binary data without regard to how it is cut, names without regard to letter case), so that ASCII and binary files and files of different encodings compare.
// Numbers that follow from the rest are not compared: how many records a table and how many objects a class has.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace gc::dxfdiff {

enum class What {
  Lost,     // the first file has it, the second does not
  Changed,  // both have it with different values
  Added,    // only the second has it
  Moved,    // the same groups of a record in another order
  Implied,  // the second has not written a value that every reader takes when it is not there
};

struct Difference {
  What what;
  std::string where;   // "ENTITIES LINE 2F", "HEADER $LTSCALE"
  std::string detail;  // "40: 1.0 -> 2.0"; empty when the whole record is meant
};

// One line for people.
[[nodiscard]] std::string describe(const Difference& difference);

struct Options {
  std::vector<std::string> ignoredVariables;  // header variables that are not compared ("$TDUPDATE")
};

// Both views hold whole files. A file that is damaged is compared as far as its records can be told apart, and the
// damage is a difference (Lost, "line N").
[[nodiscard]] std::vector<Difference> compare(std::string_view first, std::string_view second,
                                              const Options& options = {});

[[nodiscard]] bool hasLosses(const std::vector<Difference>& differences);  // anything Lost or Changed

}  // namespace gc::dxfdiff
