// Outputs whose process is killed at each call of the system that names a file, on file systems
// with and without files that have no name: the old file or the new one, and nothing else after the
// next output.
#include "host/tables/files/output_file.h"

#include <cstdarg>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "host/testing/killed_process.h"

namespace {

bool hasUnnamedFiles = true;

}  // namespace

// Instead of the C library's.
extern "C" int open(const char* path, int flags, ...) {
  std::va_list arguments;
  va_start(arguments, flags);
  const int mode = va_arg(arguments, int);
  va_end(arguments);
  if (!hasUnnamedFiles && (flags & O_TMPFILE) == O_TMPFILE) {
    errno = EOPNOTSUPP;
    return -1;
  }
  return static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

namespace kelvarin {

namespace {

namespace fs = std::filesystem;

void write(const std::string& path, const std::string& text) {
  OutputFile file;
  ASSERT_TRUE(file.open(QString::fromStdString(path)));
  ASSERT_TRUE(file.write(text.data(), text.size()));
  ASSERT_TRUE(file.complete());
  ASSERT_TRUE(file.publish());
}

std::string contentOf(const std::string& path) {
  std::ostringstream out;
  out << std::ifstream(path, std::ios::binary).rdbuf();
  return out.str();
}

std::ptrdiff_t filesIn(const fs::path& folder) {
  return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

}  // namespace

TEST(OutputFile, AKillAtAnyCallLeavesTheOldFileOrTheNewOne) {
  std::string pattern = (fs::temp_directory_path() / "output-XXXXXX").string();
  const fs::path folder = ::mkdtemp(pattern.data());
  const std::string path = (folder / "o.csv").string();
  int leftOver = 0;
  for (const bool hasUnnamed : {true, false}) {
    for (const bool hasOld : {true, false}) {
      hasUnnamedFiles = hasUnnamed;
      bool isKilled = true;
      for (int calls = 0; isKilled; ++calls) {
        fs::remove(path);
        if (hasOld) {
          write(path, "old");
        }
        isKilled = testing::isKilledAfter(calls, [&] { write(path, "new"); });
        const std::string content = contentOf(path);
        EXPECT_TRUE(content == "new" || content == (hasOld ? "old" : "")) << content;
        EXPECT_TRUE(isKilled || content == "new");
        leftOver += filesIn(folder) > 1;
        write(path, "next");
        EXPECT_EQ(contentOf(path), "next");
        EXPECT_EQ(filesIn(folder), 1);
      }
    }
  }
  EXPECT_GT(leftOver, 0);

  // One that is at work is nobody's leftover.
  hasUnnamedFiles = false;
  OutputFile atWork;
  ASSERT_TRUE(atWork.open(QString::fromStdString(path)));
  write(path, "meanwhile");
  EXPECT_EQ(filesIn(folder), 2);
  ASSERT_TRUE(atWork.complete());
  ASSERT_TRUE(atWork.publish());
  EXPECT_EQ(contentOf(path), "");
  fs::remove_all(folder);
}

}  // namespace kelvarin
