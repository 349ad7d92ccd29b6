#include "host/rx/file/folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "host/rx/file/atomic_file.h"
#include "host/rx/file/file_view.h"
#include "host/rx/text/utf.h"
#include "tests/scratch.h"

namespace {

namespace fs = std::filesystem;
using Kind = gc::PathFacts::Kind;

std::string utf8Of(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

void put(const fs::path& path, const std::string& content) {
  const gc::FileStatus status = gc::writeFileAtomically(utf8Of(path), content.data(), content.size());
  ASSERT_TRUE(status.ok()) << status.message();
}

// Each with files in a folder of a name as users have them: with letters beyond ASCII, and longer than Windows' limit.
class FolderTest : public testing::TestWithParam<int> {
 protected:
  void SetUp() override {
    folder = scratch.path();
    for (int depth = 0; depth < GetParam(); ++depth) folder /= fs::path(u8"zażółć gęślą jaźń, folder jak u ludzi 日本");
    ASSERT_TRUE(gc::makeFolders(folder));
  }
  std::vector<std::string> listed() const {
    std::vector<gc::FolderEntry> entries;
    EXPECT_TRUE(gc::listFolder(folder, entries));
    std::vector<std::string> names;
    for (const gc::FolderEntry& entry : entries)
      names.push_back(utf8Of(entry.name) + (entry.isFolder ? "/" : entry.isFile ? "" : "?"));
    std::sort(names.begin(), names.end());
    return names;
  }

  gc::test::ScratchFolder scratch{"folder"};
  fs::path folder;
};

TEST_P(FolderTest, FactsAreTheFilesOwn) {
  const auto nanosecondsNow = [] {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
  };
  constexpr int64_t kClockStep = 2000000000;  // coarsest time stamp of the file systems in use: 2 s
  const int64_t before = nanosecondsNow();
  put(folder / "a.txt", "12345");
  const gc::PathFacts facts = gc::pathFacts(folder / "a.txt");
  EXPECT_EQ(facts.kind, Kind::File);
  EXPECT_EQ(facts.size, 5);
  EXPECT_GE(facts.modifiedNs, before - kClockStep);
  EXPECT_LE(facts.modifiedNs, nanosecondsNow() + kClockStep);
  EXPECT_EQ(gc::pathFacts(folder).kind, Kind::Folder);
  EXPECT_EQ(gc::pathFacts(folder / "b.txt").kind, Kind::None);
  EXPECT_EQ(gc::pathFacts(folder / "a.txt" / "b").kind, Kind::None);
}

TEST_P(FolderTest, ListsFilesAndFolders) {
  EXPECT_TRUE(listed().empty());
  put(folder / u8"ćma.dxf", "x");
  put(folder / "b.dxf", "x");
  ASSERT_TRUE(gc::makeFolder(folder / "sub"));
  EXPECT_EQ(listed(), (std::vector<std::string>{"b.dxf", "sub/", utf8Of(fs::path(u8"ćma.dxf"))}));
  std::vector<gc::FolderEntry> entries;
  EXPECT_FALSE(gc::listFolder(folder / "none", entries));
  EXPECT_TRUE(entries.empty());
}

TEST_P(FolderTest, FoldersAreMadeOnce) {
  EXPECT_FALSE(gc::makeFolder(folder));
  EXPECT_FALSE(gc::makeFolder(folder / "x" / "y"));
  EXPECT_TRUE(gc::makeFolders(folder / "x" / "y"));
  EXPECT_TRUE(gc::makeFolders(folder / "x" / "y"));
  put(folder / "file", "x");
  EXPECT_FALSE(gc::makeFolders(folder / "file"));
  EXPECT_FALSE(gc::makeFolders(folder / "file" / "y"));
}

TEST_P(FolderTest, FilesAreRenamedAndRemovedButNeverReplaced) {
  put(folder / "a", "1");
  put(folder / "b", "22");
  EXPECT_FALSE(gc::renamePath(folder / "a", folder / "b"));
  EXPECT_EQ(gc::pathFacts(folder / "b").size, 2);
  EXPECT_TRUE(gc::renamePath(folder / "a", folder / u8"ź"));
  EXPECT_FALSE(gc::renamePath(folder / "a", folder / "c"));
  EXPECT_EQ(listed(), (std::vector<std::string>{"b", utf8Of(fs::path(u8"ź"))}));
  EXPECT_TRUE(gc::removeFile(folder / "b"));
  EXPECT_FALSE(gc::removeFile(folder / "b"));
  EXPECT_FALSE(gc::removeFile(folder));
}

TEST_P(FolderTest, TheSameFileByAnotherPath) {
  put(folder / "a", "1");
  put(folder / "b", "1");
  ASSERT_TRUE(gc::makeFolder(folder / "sub"));
  EXPECT_TRUE(gc::isSameFile(folder / "a", folder / "sub" / ".." / "a"));
  EXPECT_FALSE(gc::isSameFile(folder / "a", folder / "b"));
  EXPECT_FALSE(gc::isSameFile(folder / "a", folder / "c"));
}

// The last one is beyond 260 characters on its own, the one before comes near it with what is put into it.
INSTANTIATE_TEST_SUITE_P(Depths, FolderTest, testing::Values(0, 1, 4, 5, 12));

}  // namespace
