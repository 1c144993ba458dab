#include "base/file_lock.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <string>

#include <sys/stat.h>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include "base/unnamed_file.h"

namespace kelvarin {

namespace {

class Files : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = ::testing::TempDir() + "base_filesXXXXXX";
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    m_folder = pattern;
    m_path = m_folder + "/file";
  }
  void TearDown() override {
    ::unlink(m_path.c_str());
    ::rmdir(m_folder.c_str());
  }

  int open(int flags) const { return ::open(m_path.c_str(), flags | O_CREAT | O_CLOEXEC, 0666); }

  std::string m_folder;
  std::string m_path;
};

TEST_F(Files, ALockBelongsToOneOpeningUntilItIsClosed) {
  const int holder = open(O_RDWR);
  const int other = open(O_RDWR);
  const int reader = open(O_RDONLY);
  ASSERT_TRUE(takeFileLock(holder));
  EXPECT_TRUE(takeFileLock(holder));
  EXPECT_FALSE(isFileLockedElsewhere(holder));
  EXPECT_FALSE(takeFileLock(other));
  EXPECT_TRUE(isFileLockedElsewhere(other));
  EXPECT_TRUE(isFileLockedElsewhere(reader));
  ::close(holder);
  EXPECT_FALSE(isFileLockedElsewhere(reader));
  EXPECT_TRUE(takeFileLock(other));
  ::close(other);
  ::close(reader);
}

TEST_F(Files, ALockEndsWithItsProcess) {
  std::array<int, 2> ready = {};
  ASSERT_EQ(::pipe(ready.data()), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    const bool isTaken = takeFileLock(open(O_RDWR));
    (void)!::write(ready[1], isTaken ? "y" : "n", 1);
    ::pause();
  }
  char answer = 0;
  EXPECT_EQ(::read(ready[0], &answer, 1), 1);
  EXPECT_EQ(answer, 'y');
  const int file = open(O_RDWR);
  EXPECT_FALSE(takeFileLock(file));
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  EXPECT_TRUE(takeFileLock(file));
  ::close(file);
  ::close(ready[0]);
  ::close(ready[1]);
}

TEST_F(Files, AnUnnamedFileAppearsWholeAndReplacesNothing) {
  const int file = openUnnamedFile(m_folder.c_str());
  if (file < 0) {
    GTEST_SKIP() << "the file system of " << m_folder << " has no files without names";
  }
  ASSERT_EQ(::write(file, "whole", 5), 5);
  EXPECT_EQ(::rmdir(m_folder.c_str()), 0) << "the folder is not empty";
  EXPECT_FALSE(nameUnnamedFile(file, m_path.c_str())) << "the folder is gone";
  ::close(file);

  ASSERT_EQ(::mkdir(m_folder.c_str(), 0777), 0);
  const int first = openUnnamedFile(m_folder.c_str());
  const int second = openUnnamedFile(m_folder.c_str());
  ASSERT_EQ(::write(first, "whole", 5), 5);
  EXPECT_TRUE(nameUnnamedFile(first, m_path.c_str()));
  EXPECT_FALSE(nameUnnamedFile(second, m_path.c_str()));
  EXPECT_EQ(errno, EEXIST);
  std::array<char, 8> content = {};
  const int named = open(O_RDONLY);
  EXPECT_EQ(::read(named, content.data(), content.size()), 5);
  EXPECT_STREQ(content.data(), "whole");
  for (const int descriptor : {first, second, named}) {
    ::close(descriptor);
  }
}

TEST(UnnamedFile, AFolderThatDoesNotExistIsAFailure) {
  EXPECT_EQ(openUnnamedFile("/no/such/folder"), -1);
  EXPECT_EQ(errno, ENOENT);
}

}  // namespace

}  // namespace kelvarin
