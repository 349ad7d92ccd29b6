// Answers to prompts from a file or from standard input, line by line.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "host/ed/input/source.h"

namespace cli {

class InputFile final : public ed::InputSource {
 public:
  // "-" is standard input. Null when the file cannot be read, with the reason.
  static std::unique_ptr<InputFile> open(const std::string& path, std::string& reason);
  bool readLine(GcText& line) override;

 private:
  InputFile() = default;
  bool m_standard = false;
  std::string m_bytes;  // of the whole file
  size_t m_at = 0;
};

}  // namespace cli
