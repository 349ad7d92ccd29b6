// A folder for the files of one test, under a name no other process has (tests run side by side), gone with the object.
#pragma once

#include <filesystem>
#include <random>
#include <string>

#include "host/rx/file/folder.h"

namespace gc::test {

class ScratchFolder {
 public:
  // `label` (UTF-8) is part of the name.
  explicit ScratchFolder(const std::string& label = "test") {
    std::random_device random;
    const std::string name = "gc " + label + " " + std::to_string(random()) + std::to_string(random());
    m_path = std::filesystem::temp_directory_path() / std::filesystem::path(std::u8string(name.begin(), name.end()));
    std::filesystem::create_directories(m_path);
  }
  ~ScratchFolder() { gc::removeTree(m_path); }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

 private:
  std::filesystem::path m_path;
};

}  // namespace gc::test
