// Files of shapes made by tests.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gc::test {

struct TestShape {
  int number;
  std::string name;
  std::vector<uint8_t> codes;
};

inline std::string shapeFile(const std::vector<TestShape>& shapes) {
  const auto word = [](size_t value) {
    return std::string{static_cast<char>(value & 255), static_cast<char>(value >> 8)};
  };
  std::string file = "compiled shapes V1.0\r\n\x1A";
  file += word(static_cast<size_t>(shapes.front().number)) + word(static_cast<size_t>(shapes.back().number));
  file += word(shapes.size());
  for (const TestShape& shape : shapes)
    file += word(static_cast<size_t>(shape.number)) + word(shape.name.size() + 1 + shape.codes.size());
  for (const TestShape& shape : shapes) file += shape.name + '\0' + std::string(shape.codes.begin(), shape.codes.end());
  return file;
}

}  // namespace gc::test
