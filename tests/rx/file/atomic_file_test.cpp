#include "host/rx/file/atomic_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "host/rx/file/file_view.h"
#include "host/rx/text/utf.h"
#include "tests/scratch.h"

#ifdef _WIN32
#include <windows.h>

#include <memory>
#include <thread>
#else
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>
#include <random>
#endif

namespace {

namespace fs = std::filesystem;

fs::path pathOf(const std::string& utf8) { return fs::path(gc::fromUtf8(utf8)); }

std::string contentOf(const std::string& path) {
  gc::FileView view;
  const gc::FileStatus status = view.open(path);
  EXPECT_TRUE(status.ok()) << status.message();
  return std::string(view.bytes());
}

void put(const std::string& path, const std::string& content) {
  const gc::FileStatus status = gc::writeFileAtomically(path, content.data(), content.size());
  ASSERT_TRUE(status.ok()) << status.message();
}

class AtomicFileTest : public testing::Test {
 protected:
  std::string path(const std::string& name) const {
    const auto text = (m_folder / pathOf(name)).u8string();
    return {text.begin(), text.end()};
  }
  int files() const {
    int count = 0;
    for (const auto& entry : fs::directory_iterator(m_folder)) count += entry.exists();
    return count;
  }

  gc::test::ScratchFolder m_scratch{"żółw"};
  const fs::path& m_folder = m_scratch.path();
};

TEST_F(AtomicFileTest, WritesANewFileAndLeavesNothingElse) {
  const std::string target = path("rysunek ąę.dxf"), content(3'000'000, 'x');
  put(target, content);
  EXPECT_EQ(contentOf(target), content);
  EXPECT_EQ(files(), 1);
}

TEST_F(AtomicFileTest, TheOldFileStaysUntilTheCommit) {
  const std::string target = path("a.dxf");
  put(target, "old");
  gc::AtomicFile file;
  ASSERT_TRUE(file.open(target).ok());
  ASSERT_TRUE(file.write("new", 3).ok());
  EXPECT_EQ(contentOf(target), "old");
  ASSERT_TRUE(file.commit().ok());
  EXPECT_EQ(contentOf(target), "new");
  EXPECT_FALSE(file.isOpen());
  EXPECT_FALSE(file.commit().ok());
}

TEST_F(AtomicFileTest, WithoutACommitNothingHappens) {
  const std::string target = path("a.dxf");
  put(target, "old");
  {
    gc::AtomicFile file;
    ASSERT_TRUE(file.open(target).ok());
    ASSERT_TRUE(file.write("new", 3).ok());
    EXPECT_EQ(files(), 2);
  }
  EXPECT_EQ(contentOf(target), "old");
  EXPECT_EQ(files(), 1);
}

TEST_F(AtomicFileTest, TheBackupHoldsTheOldFile) {
  const std::string target = path("a.b.dxf");
  for (const char* content : {"first", "second", "third"}) {
    ASSERT_TRUE(gc::writeFileAtomically(target, content, std::string(content).size(), gc::Backup::Keep).ok());
  }
  EXPECT_EQ(contentOf(target), "third");
  EXPECT_EQ(contentOf(path("a.b.bak")), "second");
  EXPECT_EQ(files(), 2);
}

#ifdef _WIN32
// A file that another program has open; `share` says what that program lets others do meanwhile.
class Held {
 public:
  Held(const std::string& path, DWORD access, DWORD share)
      : m_file(CreateFileW(pathOf(path).c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr)) {
    EXPECT_NE(m_file, INVALID_HANDLE_VALUE);
  }
  ~Held() { CloseHandle(m_file); }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;

 private:
  HANDLE m_file;
};

TEST_F(AtomicFileTest, AFileHeldByAnotherProgramIsSaidToBeAndStays) {
  put(path("a.dxf"), "old");
  put(path("a.bak"), "older");
  {
    const Held held(path("a.dxf"), GENERIC_READ | GENERIC_WRITE, 0);
    gc::FileView view;
    const gc::FileStatus read = view.open(path("a.dxf"));
    EXPECT_EQ(read.error(), gc::FileError::Denied);
    EXPECT_NE(read.message().find("open in another program"), std::string::npos) << read.message();
    const gc::FileStatus written = gc::writeFileAtomically(path("a.dxf"), "new", 3, gc::Backup::Keep);
    EXPECT_EQ(written.error(), gc::FileError::Denied) << written.message();
    EXPECT_NE(written.message().find("open in another program"), std::string::npos) << written.message();
  }
  EXPECT_EQ(contentOf(path("a.dxf")), "old");
  EXPECT_EQ(contentOf(path("a.bak")), "older");
  EXPECT_EQ(files(), 2);
}

TEST_F(AtomicFileTest, AFileHeldForMomentsIsWaitedFor) {
  put(path("a.dxf"), "old");
  auto held = std::make_unique<Held>(path("a.dxf"), GENERIC_READ, FILE_SHARE_READ);
  std::thread scanner([&held] {
    Sleep(200);
    held.reset();
  });
  put(path("a.dxf"), "new");
  scanner.join();
  EXPECT_EQ(contentOf(path("a.dxf")), "new");
}

TEST_F(AtomicFileTest, WhatAnotherProgramWritesCanBeReadWhereItAllowsThat) {
  put(path("a.dxf"), "old");
  const Held held(path("a.dxf"), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ);
  EXPECT_EQ(contentOf(path("a.dxf")), "old");
}
#endif

TEST(BackupPath, ReplacesTheExtension) {
  EXPECT_EQ(gc::backupPath("/a/b.dxf"), "/a/b.bak");
  EXPECT_EQ(gc::backupPath("b"), "b.bak");
  EXPECT_EQ(gc::backupPath("/a.b/c"), "/a.b/c.bak");
  EXPECT_EQ(gc::backupPath("/a/.dxf"), "/a/.dxf.bak");
  EXPECT_EQ(gc::backupPath("b.bak"), "b.bak.bak");
}

TEST_F(AtomicFileTest, FailuresNameThePathAndTheReason) {
  gc::FileView view;
  const gc::FileStatus missing = view.open(path("none.dxf"));
  EXPECT_EQ(missing.error(), gc::FileError::NotFound);
  EXPECT_NE(missing.message().find(path("none.dxf")), std::string::npos);
  gc::AtomicFile file;
  const gc::FileStatus noFolder = file.open(path("no/such/folder.dxf"));
  EXPECT_EQ(noFolder.error(), gc::FileError::NotFound);
  EXPECT_FALSE(file.isOpen());
  EXPECT_FALSE(file.write("x", 1).ok());
  // A folder in the target's place cannot be replaced by a file; it and its content stay.
  put(path("inside.txt"), "x");
  const gc::FileStatus folder = gc::writeFileAtomically(path("."), "x", 1);
  EXPECT_FALSE(folder.ok());
  EXPECT_EQ(files(), 1);
}

TEST_F(AtomicFileTest, SmallAndMappedFilesAreSeenWhole) {
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{65536}, std::size_t{70001},
                                 (std::size_t{1} << 20) - 1, std::size_t{1} << 20, (std::size_t{1} << 20) + 4097}) {
    std::string content(size, '\0');
    for (std::size_t i = 0; i < size; ++i) content[i] = static_cast<char>(i * 7 >> 3);
    put(path("a.bin"), content);
    gc::FileView view;
    ASSERT_TRUE(view.open(path("a.bin")).ok());
    ASSERT_TRUE(view.bytes() == content) << size;
    gc::FileView moved = std::move(view);
    ASSERT_TRUE(moved.bytes() == content) << size;
  }
}

#ifndef _WIN32

TEST_F(AtomicFileTest, PermissionsAndLinksStay) {
  const std::string target = path("a.dxf"), link = path("link.dxf");
  put(target, "old");
  ASSERT_EQ(::chmod(target.c_str(), 0640), 0);
  ASSERT_EQ(::symlink(target.c_str(), link.c_str()), 0);
  put(link, "new");
  EXPECT_EQ(contentOf(target), "new");
  struct stat info;
  ASSERT_EQ(::lstat(link.c_str(), &info), 0);
  EXPECT_TRUE(S_ISLNK(info.st_mode));
  ASSERT_EQ(::stat(target.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777, 0640u);
}

std::string wholeContent(char letter) { return std::string(400'000, letter) + "end"; }

// Saves again and again until killed.
[[noreturn]] void saveForever(const std::string& target) {
  for (char letter = 'a';; letter = letter == 'z' ? 'a' : static_cast<char>(letter + 1)) {
    const std::string content = wholeContent(letter);
    gc::AtomicFile file;
    if (!file.open(target, gc::Backup::Keep).ok()) ::_exit(2);
    for (std::size_t at = 0; at < content.size(); at += 10'000) {
      if (!file.write(content.data() + at, std::min<std::size_t>(10'000, content.size() - at)).ok()) ::_exit(2);
    }
    if (!file.commit().ok()) ::_exit(2);
  }
}

TEST_F(AtomicFileTest, AKillAtAnyMomentLeavesAWholeFile) {
  const std::string target = path("a.dxf");
  put(target, wholeContent('a'));
  std::mt19937 random(std::random_device{}());
  for (int round = 0; round < 60; ++round) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) saveForever(target);
    ::usleep(random() % 20'000);
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the child ended by itself";
    for (const std::string& name : {target, gc::backupPath(target)}) {
      if (!fs::exists(name)) continue;
      const std::string content = contentOf(name);
      ASSERT_FALSE(content.empty());
      ASSERT_TRUE(content == wholeContent(content.front())) << name << ' ' << content.size();
    }
    ASSERT_TRUE(fs::exists(target));
  }
}

TEST_F(AtomicFileTest, ALostTemporaryFileIsAFailureAndLeavesTheTarget) {
  const std::string target = path("a.dxf");
  put(target, "old");
  gc::AtomicFile file;
  ASSERT_TRUE(file.open(target).ok());
  ASSERT_TRUE(file.write("new", 3).ok());
  ASSERT_EQ(::unlink(file.temporaryPath().c_str()), 0);
  EXPECT_FALSE(file.commit().ok());
  EXPECT_EQ(contentOf(target), "old");
}

// No room for the whole file: the limit on a file's size stands in for a full disk.
TEST_F(AtomicFileTest, NoRoomIsAFailureAndLeavesTheTarget) {
  const std::string target = path("a.dxf");
  put(target, "old");
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{100'000, 100'000};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) ::_exit(2);
    const std::string content = wholeContent('b');
    const gc::FileStatus status = gc::writeFileAtomically(target, content.data(), content.size());
    ::_exit(status.error() == gc::FileError::TooLarge ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(contentOf(target), "old");
  EXPECT_EQ(files(), 1);
}

#endif

}  // namespace
