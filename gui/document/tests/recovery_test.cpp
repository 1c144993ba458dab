// Recovery files: what they keep, whose they are, and what happens where they cannot be written.
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "gui/document/recovery_journal.h"

namespace kelvarin {
namespace {

RecoveryRecord record(const QByteArray& document = "<KelvarinGraph/>") {
  return {.graphFile = QStringLiteral("/data/Übersicht 1.kelvarin"),
          .savedDigest = contentDigest("before"),
          .time = QDateTime::fromMSecsSinceEpoch(1700000000123, Qt::UTC),
          .document = document,
          .action = QStringLiteral("late?"),
          .typed = {{QStringLiteral("expression"), QStringLiteral("a <\n\"b\"")}}};
}

class RecoveryTest : public ::testing::Test {
 protected:
  QString folder() const { return m_folder.filePath(QStringLiteral("recovery")); }
  QStringList files() const { return QDir(folder()).entryList(QDir::Files | QDir::Hidden); }

  QTemporaryDir m_folder;
};

TEST_F(RecoveryTest, ARecordReadsBackAsItWasAndADamagedOneNotAtAll) {
  const RecoveryRecord written = record("\xEF\xBB\xBF<a>\r\n\n\xFF</a>\n");
  const QByteArray text = recoveryText(written);
  EXPECT_EQ(readRecovery(text), written);
  EXPECT_TRUE(text.endsWith(written.document));
  for (qsizetype size = 0; size < text.size(); ++size) {
    EXPECT_FALSE(readRecovery(text.first(size))) << size;
  }
  EXPECT_FALSE(readRecovery(text + ' '));
}

TEST_F(RecoveryTest, WhatWasNotRemovedIsFoundOnceAndGoesOnInTheNextJournal) {
  {
    RecoveryJournal journal(folder());
    journal.write(record("<first/>"));
    journal.write(record("<second/>"));
    journal.waitForDisk();
    EXPECT_TRUE(RecoveryFile::takeAbandoned(folder()).empty()) << "its program still runs";
  }
  auto found = RecoveryFile::takeAbandoned(folder());
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0]->found(), record("<second/>"));
  EXPECT_TRUE(RecoveryFile::takeAbandoned(folder()).empty()) << "another window offers it";

  RecoveryJournal next(folder());
  next.adopt(std::move(found[0]));
  next.waitForDisk();
  EXPECT_EQ(files().filter(QRegularExpression(QStringLiteral("recovery$"))).size(), 1);
  next.write(record("<third/>"));
  next.remove();
  next.waitForDisk();
  EXPECT_TRUE(files().isEmpty()) << qPrintable(files().join(u' '));
}

// The child ends as a killed program does: with its lock, and half a write beside its file.
TEST_F(RecoveryTest, AFileOfAProgramThatDiedIsFoundAndItsHalfWriteRemoved) {
  const pid_t child = fork();
  if (child == 0) {
    auto file = RecoveryFile::create(folder());
    const bool isWritten = file && (*file)->write(record());
    QFile half(isWritten ? (*file)->path() + QStringLiteral(".aBcDeF") : QString());
    _exit(isWritten && half.open(QIODevice::WriteOnly) ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_EQ(status, 0);
  ASSERT_EQ(files().size(), 3);
  const auto found = RecoveryFile::takeAbandoned(folder());
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0]->found(), record());
  EXPECT_EQ(files().size(), 2) << "the file and our lock";
}

TEST_F(RecoveryTest, AFolderThatCannotBeWrittenIsReportedOnceUntilItCan) {
  QFile obstacle(folder());
  ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
  RecoveryJournal journal(folder());
  QSignalSpy failed(&journal, &RecoveryJournal::failed);
  const auto write = [&journal] {
    journal.write(record());
    journal.waitForDisk();
    QCoreApplication::processEvents();
  };
  write();
  write();
  ASSERT_EQ(failed.size(), 1);
  EXPECT_TRUE(failed[0][0].toString().contains(folder()));
  obstacle.remove();
  write();
  EXPECT_EQ(files().size(), 2);
  ASSERT_TRUE(QDir(folder()).removeRecursively());
  write();
  EXPECT_EQ(files().size(), 2) << "a folder that was removed is made anew";
  EXPECT_EQ(failed.size(), 1);
}

}  // namespace
}  // namespace kelvarin
