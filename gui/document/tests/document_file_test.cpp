// The file of a graph in a world that does not keep still: other windows, other programs, folders
// that go, disks that are full.
#include <csignal>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "gui/document/document_file.h"

namespace kelvarin {
namespace {

using OpenMode = DocumentFile::OpenMode;
using SaveMode = DocumentFile::SaveMode;

// A window as far as its file goes.
struct Window {
  DocumentFile file;
  QSignalSpy opened{&file, &DocumentFile::opened};
  QSignalSpy failed{&file, &DocumentFile::openFailed};
  QSignalSpy locked{&file, &DocumentFile::foundLock};
  QSignalSpy saved{&file, &DocumentFile::saved};
  QSignalSpy notSaved{&file, &DocumentFile::saveFailed};
  QSignalSpy other{&file, &DocumentFile::saveFoundOtherFile};
  QSignalSpy changed{&file, &DocumentFile::changedOnDisk};
  QSignalSpy gone{&file, &DocumentFile::goneFromDisk};

  bool open(const QString& path, OpenMode mode = OpenMode::alone) {
    return reported(opened, [&] { file.open(path, mode); });
  }
  bool save(const QByteArray& text, const QString& path, SaveMode mode) {
    return reported(saved, [&] { file.save(text, path, mode); });
  }

  // Whether what was asked for ended with this signal.
  template <typename Request>
  bool reported(QSignalSpy& signal, const Request& request) {
    const auto before = signal.size();
    const auto all = count();
    request();
    EXPECT_TRUE(QTest::qWaitFor([&] { return count() > all; }));
    return signal.size() > before;
  }
  qsizetype count() const {
    return opened.size() + failed.size() + locked.size() + saved.size() + notSaved.size() +
           other.size() + changed.size() + gone.size();
  }
};

class DocumentFileTest : public ::testing::Test {
 protected:
  DocumentFileTest() { write("<old/>"); }

  QString path() const { return m_folder.filePath(QStringLiteral("g.kelvarin")); }
  void write(const QByteArray& text) const {
    QFile target(path());
    ASSERT_TRUE(target.open(QIODevice::WriteOnly));
    target.write(text);
  }
  QByteArray onDisk() const {
    QFile source(path());
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
  }

  QTemporaryDir m_folder;
};

TEST_F(DocumentFileTest, AGraphThatIsOpenElsewhereIsOpenedByChoiceOnly) {
  Window second;
  {
    Window first;
    ASSERT_TRUE(first.open(path()));
    const QString link = m_folder.filePath(QStringLiteral("link.kelvarin"));
    ASSERT_TRUE(QFile::link(path(), link));
    EXPECT_FALSE(second.open(link));
    ASSERT_EQ(second.locked.size(), 1);
    const QString holder = second.locked[0][1].toString();
    EXPECT_TRUE(holder.contains(QString::number(getpid()))) << qPrintable(holder);
    EXPECT_TRUE(second.file.path().isEmpty());

    EXPECT_TRUE(second.open(path(), OpenMode::copy));
    EXPECT_TRUE(second.file.path().isEmpty()) << "it is saved under another name";
    EXPECT_FALSE(second.save("<mine/>", path(), SaveMode::always)) << "not over the open one";
    EXPECT_EQ(onDisk(), "<old/>");
    EXPECT_TRUE(second.open(path(), OpenMode::shared));
    EXPECT_TRUE(second.save("<mine/>", path(), SaveMode::ifUnchangedOnDisk));
    EXPECT_TRUE(first.open(path())) << "its own lock is no obstacle";
  }
  EXPECT_TRUE(second.open(path()));
  EXPECT_TRUE(QFile::exists(m_folder.filePath(QStringLiteral(".g.kelvarin.lock"))));
  second.file.forget();
  EXPECT_TRUE(QTest::qWaitFor(
      [this] { return !QFile::exists(m_folder.filePath(QStringLiteral(".g.kelvarin.lock"))); }));
}

TEST_F(DocumentFileTest, TheLockOfAProgramThatDiedIsNoObstacle) {
  const pid_t child = fork();
  if (child == 0) {
    const auto outcome = GraphLock::take(path());
    const auto* lock = std::get_if<std::unique_ptr<GraphLock>>(&outcome);
    _exit(lock != nullptr && *lock != nullptr ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_EQ(status, 0);
  ASSERT_TRUE(QFile::exists(m_folder.filePath(QStringLiteral(".g.kelvarin.lock"))));
  EXPECT_TRUE(Window().open(path()));
}

TEST_F(DocumentFileTest, WhatOthersWriteIsReportedOnceAndNotReplacedUnasked) {
  Window window;
  ASSERT_TRUE(window.open(path()));
  write("<their text/>");
  EXPECT_TRUE(window.reported(window.changed, [&] { window.file.compareWithDisk(); }));
  EXPECT_EQ(window.changed[0][0].toByteArray(), "<their text/>");
  EXPECT_FALSE(window.save("<mine/>", path(), SaveMode::ifUnchangedOnDisk));
  EXPECT_EQ(window.other.size(), 1);
  EXPECT_EQ(onDisk(), "<their text/>");
  EXPECT_EQ(window.changed.size(), 1);

  window.file.acceptDisk();
  EXPECT_TRUE(window.save("<mine/>", path(), SaveMode::ifUnchangedOnDisk));
  EXPECT_EQ(onDisk(), "<mine/>");
}

TEST_F(DocumentFileTest, AFileThatWentIsReportedByItselfAndWrittenAnew) {
  Window window;
  ASSERT_TRUE(window.open(path()));
  ASSERT_TRUE(QFile::remove(path()));
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.gone.size() == 1; }, 8000));
  EXPECT_TRUE(window.save("<mine/>", path(), SaveMode::ifUnchangedOnDisk));
  ASSERT_TRUE(QDir(m_folder.path()).removeRecursively());
  EXPECT_FALSE(window.save("<mine/>", path(), SaveMode::ifUnchangedOnDisk));
  ASSERT_EQ(window.notSaved.size(), 1);
  EXPECT_TRUE(window.notSaved[0][1].toString().contains(path()));
}

// The limit of a file's size stands for a disk that is full: a write ends in the middle.
TEST_F(DocumentFileTest, AFullDiskLeavesTheOldFileAsItWas) {
  Window window;
  ASSERT_TRUE(window.open(path()));
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const rlimit full{4096, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
  EXPECT_FALSE(window.save(QByteArray(100'000, ' '), path(), SaveMode::ifUnchangedOnDisk));
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  EXPECT_EQ(window.notSaved.size(), 1);
  EXPECT_EQ(onDisk(), "<old/>");
  EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files), QStringList{"g.kelvarin"});
  EXPECT_TRUE(window.save("<new/>", path(), SaveMode::ifUnchangedOnDisk));
  EXPECT_EQ(onDisk(), "<new/>");
}

}  // namespace
}  // namespace kelvarin
