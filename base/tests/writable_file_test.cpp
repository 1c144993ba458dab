// Files that take all bytes, although calls of the system are interrupted, take a part only, or
// find the disk full.
#include "base/writable_file.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <deque>
#include <span>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

// What the next calls do: fail with this error, or, below zero, take so many bytes.
std::deque<long> outcomes;

template <typename Write>
ssize_t faulty(std::size_t size, Write write) {
  if (outcomes.empty()) {
    return write(size);
  }
  const long outcome = outcomes.front();
  outcomes.pop_front();
  if (outcome > 0) {
    errno = static_cast<int>(outcome);
    return -1;
  }
  return outcome == 0 ? 0 : write(std::min(size, static_cast<std::size_t>(-outcome)));
}

}  // namespace

// Instead of the C library's.
extern "C" ssize_t write(int descriptor, const void* bytes, std::size_t size) {
  return faulty(size, [=](std::size_t taken) {
    return static_cast<ssize_t>(::syscall(SYS_write, descriptor, bytes, taken));
  });
}

extern "C" ssize_t writev(int descriptor, const iovec* parts, int count) {
  std::string bytes;
  for (const iovec& part : std::span(parts, static_cast<std::size_t>(count))) {
    bytes.append(static_cast<const char*>(part.iov_base), part.iov_len);
  }
  return write(descriptor, bytes.data(), bytes.size());
}

extern "C" ssize_t pwrite(int descriptor, const void* bytes, std::size_t size, off_t offset) {
  return faulty(size, [=](std::size_t taken) {
    return static_cast<ssize_t>(::syscall(SYS_pwrite64, descriptor, bytes, taken, offset));
  });
}

namespace kelvarin {

namespace {

class WritableFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    outcomes.clear();
    m_file.open(::open(::testing::TempDir().c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
    ASSERT_TRUE(m_file.isOpen());
  }
  std::string content() const {
    char bytes[64];
    const ssize_t size = ::pread(m_file.descriptor(), bytes, sizeof bytes, 0);
    return std::string(bytes, static_cast<std::size_t>(size));
  }

  bool m_answer = true;
  std::vector<std::size_t> m_asked;
  WritableFile m_file{[this](std::size_t missingBytes) {
    m_asked.push_back(missingBytes);
    return m_answer;
  }};
};

TEST_F(WritableFileTest, GoesOnAfterInterruptionsAndPartialWrites) {
  outcomes = {EINTR, -3, EINTR, -1};
  EXPECT_EQ(m_file.write("0123456789", 10), 0);
  outcomes = {-2, EINTR};
  EXPECT_EQ(m_file.writeAt(2, "abcde", 5), 0);
  EXPECT_EQ(m_file.write("!", 1), 0);
  EXPECT_EQ(content(), "01abcde789!");
  EXPECT_EQ(m_file.sync(), 0);
  EXPECT_TRUE(m_asked.empty());
}

TEST_F(WritableFileTest, WritesPiecesAsOne) {
  const std::vector<std::string_view> pieces{"0", "", "1234", "567", "89"};
  outcomes = {-3, EINTR, -2, ENOSPC, -4};
  EXPECT_EQ(m_file.write(pieces), 0);
  EXPECT_EQ(m_asked, std::vector<std::size_t>{5});
  EXPECT_EQ(m_file.write(std::vector<std::string_view>(40, "x")), 0);
  EXPECT_EQ(content(), "0123456789" + std::string(40, 'x'));
}

TEST_F(WritableFileTest, AsksAboutTheRestThatFoundNoSpace) {
  outcomes = {-4, ENOSPC, 0, EDQUOT};
  EXPECT_EQ(m_file.write("0123456789", 10), 0);
  EXPECT_EQ(m_asked, (std::vector<std::size_t>{6, 6, 6}));
  EXPECT_EQ(content(), "0123456789");
  m_answer = false;
  outcomes = {ENOSPC};
  EXPECT_EQ(m_file.writeAt(0, "abc", 3), ENOSPC);
  outcomes = {EIO};
  EXPECT_EQ(m_file.write("abc", 3), EIO);
  EXPECT_EQ(m_asked.size(), 4u);
}

TEST_F(WritableFileTest, ReportsStreamsThatTakeNoMore) {
  m_file.open(::open("/dev/full", O_WRONLY | O_CLOEXEC), WritableFile::Kind::stream);
  EXPECT_EQ(m_file.write("a", 1), ENOSPC);
  EXPECT_TRUE(m_asked.empty()) << "no space can be made on a device";

  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  ::close(ends[0]);
  std::signal(SIGPIPE, SIG_DFL);
  m_file.open(ends[1], WritableFile::Kind::stream);
  EXPECT_EQ(m_file.write("a", 1), EPIPE);
}

}  // namespace

}  // namespace kelvarin
