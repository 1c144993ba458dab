// The window in a world that does not keep still: disks that are full, folders that go or cannot
// be written to, other windows and programs. Nothing that was typed is lost, and the file is as it
// was.
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QPlainTextEdit>
#include <QSettings>
#include <QTemporaryDir>

#include "gui/dialogs/tests/answered_question.h"
#include "gui/window/tests/host_program.h"
#include "gui/window/window_state.h"
#include "host/testing/full_disk.h"
#include "host/widgets/info_line.h"

namespace kelvarin {
namespace {

constexpr char kGraph[] =
    "<KelvarinGraph version='1.0'><Actions>"
    "<InlineTable name='numbers' x='0' y='0'><Column name='a' meta='F'/></InlineTable>"
    "<WriteCSV name='out' x='200' y='0' file='result.csv'/>"
    "</Actions></KelvarinGraph>";

struct Program : testing::HostProgram {
  // Makes a change that is not saved.
  void rename(const QString& from, const QString& to) { commands.rename(graph.idOf(from), to); }
  QMessageBox* question() { return testing::questionOf(window); }
  void answer(QMessageBox::StandardButton button) { testing::answerQuestion(window, button); }
  // Of the lines over the canvas.
  InfoLine* line(const QString& text) {
    InfoLine* found = nullptr;
    (void)QTest::qWaitFor([&] {
      for (InfoLine* each : window.findChildren<InfoLine*>()) {
        found = each->isVisible() && each->text().contains(text) ? each : found;
      }
      return found != nullptr;
    });
    return found;
  }
  bool waitUntilSaved() {
    return QTest::qWaitFor([this] { return !window.isWindowModified(); });
  }
};

class HostWindowFaults : public ::testing::Test {
 protected:
  HostWindowFaults() {
    QSettings().clear();
    QDir(m_folder.path()).mkdir(QStringLiteral("graphs"));
    write(kGraph);
  }

  QString folder() const { return m_folder.filePath(QStringLiteral("graphs")); }
  QString file() const { return folder() + QStringLiteral("/g.kelvarin"); }
  void write(const QByteArray& text) const {
    QFile target(file());
    ASSERT_TRUE(target.open(QIODevice::WriteOnly));
    target.write(text);
  }
  QByteArray onDisk() const {
    QFile source(file());
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
  }
  QByteArray renamed() const { return QByteArray(kGraph).replace("'out'", "'sink'"); }

  QTemporaryDir m_folder;
};

TEST_F(HostWindowFaults, AFullDiskKeepsTheOldFileAndTheChanges) {
  Program program;
  program.open(file());
  program.rename("out", "sink");
  {
    const testing::FullDisk disk(0);
    program.window.save();
    QMessageBox* question = program.question();
    ASSERT_NE(question, nullptr);
    EXPECT_TRUE(question->informativeText().contains(file()))
        << qPrintable(question->informativeText());
    program.answer(QMessageBox::Cancel);
    EXPECT_GT(disk.refusals(), 0);
  }
  EXPECT_EQ(onDisk(), kGraph);
  EXPECT_EQ(QDir(folder()).entryList(QDir::Files), QStringList{"g.kelvarin"});
  EXPECT_TRUE(program.window.isWindowModified());
  program.window.save();
  EXPECT_TRUE(program.waitUntilSaved());
  EXPECT_EQ(onDisk(), renamed());
}

// The window is to be closed when the graph is saved; until then it can be edited.
TEST_F(HostWindowFaults, AChangeWhileTheGraphIsSavedIsNotLostByClosing) {
  Program program;
  program.open(file());
  program.rename("out", "sink");
  program.window.close();
  program.answer(QMessageBox::Save);
  program.rename("sink", "drain");
  program.answer(QMessageBox::Cancel);
  EXPECT_EQ(onDisk(), renamed());
  EXPECT_TRUE(program.window.isVisible());
  EXPECT_TRUE(program.window.isWindowModified());
}

TEST_F(HostWindowFaults, AFullDiskForTheRecoveryFileIsSaidOnceAndEditingGoesOn) {
  Program program;
  program.open(file());
  {
    const testing::FullDisk disk(0);
    program.rename("out", "sink");
    ASSERT_NE(program.line("No recovery file can be written"), nullptr);
    program.rename("sink", "drain");
  }
  program.rename("drain", "sink");
  program.window.save();
  EXPECT_TRUE(program.waitUntilSaved());
  EXPECT_EQ(onDisk(), renamed());
}

TEST_F(HostWindowFaults, AFullDiskForTheSettingsLosesNoOlderOnes) {
  WindowState state;
  state.geometry = "any";
  state.zoom = 2.0;
  keepWindowState(file(), state);
  QSettings().sync();
  {
    const testing::FullDisk disk(0);
    state.zoom = 3.0;
    keepWindowState(file(), state);
    QSettings().sync();
    EXPECT_GT(disk.refusals(), 0);
    QFile settings(QSettings().fileName());
    ASSERT_TRUE(settings.open(QIODevice::ReadOnly));
    EXPECT_TRUE(settings.readAll().contains("zoom=2"));
  }
}

TEST_F(HostWindowFaults, AFolderThatWentIsSaidAndTheGraphIsSavedElsewhere) {
  Program program;
  program.open(file());
  program.rename("out", "sink");
  ASSERT_TRUE(QDir(folder()).removeRecursively());
  program.window.activateWindow();
  program.window.save();
  QMessageBox* question = program.question();
  ASSERT_NE(question, nullptr);
  EXPECT_TRUE(question->informativeText().contains(file()));
  program.answer(QMessageBox::Cancel);
  EXPECT_TRUE(program.window.isWindowModified());
  QDir().mkpath(folder());
  program.window.save();
  EXPECT_TRUE(program.waitUntilSaved());
  EXPECT_EQ(onDisk(), renamed());
}

TEST_F(HostWindowFaults, AFolderThatCannotBeWrittenToKeepsTheOldFileAndTheChanges) {
  if (geteuid() == 0) {
    GTEST_SKIP() << "root may write everywhere";
  }
  Program program;
  program.open(file());
  program.rename("out", "sink");
  ASSERT_EQ(chmod(QFile::encodeName(folder()), 0555), 0);
  program.window.save();
  QMessageBox* question = program.question();
  ASSERT_EQ(chmod(QFile::encodeName(folder()), 0755), 0);
  ASSERT_NE(question, nullptr);
  program.answer(QMessageBox::Cancel);
  EXPECT_EQ(onDisk(), kGraph);
  EXPECT_TRUE(program.window.isWindowModified());
}

TEST_F(HostWindowFaults, WhatAnotherProgramWroteIsComparedLoadedOrReplacedAsTheUserChooses) {
  Program program;
  program.open(file());
  program.rename("out", "sink");
  const QByteArray theirs = QByteArray(kGraph).replace("result", "theirs");
  write(theirs);
  QEvent activation(QEvent::ActivationChange);
  program.window.activateWindow();
  QCoreApplication::sendEvent(&program.window, &activation);
  InfoLine* line = program.line("changed on the disk");
  ASSERT_NE(line, nullptr);
  emit line->linkActivated(QStringLiteral("compare"));
  auto* difference = program.window.findChild<QPlainTextEdit*>();
  ASSERT_NE(difference, nullptr);
  EXPECT_TRUE(difference->toPlainText().contains("theirs.csv"));
  difference->window()->close();

  program.window.save();
  program.answer(QMessageBox::Cancel);
  EXPECT_EQ(onDisk(), theirs);
  program.window.save();
  program.answer(QMessageBox::Save);
  EXPECT_TRUE(program.waitUntilSaved());
  EXPECT_EQ(onDisk(), renamed());

  write(theirs);
  program.rename("sink", "drain");
  program.window.save();
  program.answer(QMessageBox::Reset);
  EXPECT_TRUE(QTest::qWaitFor([&] { return program.graph.document() == theirs; }));
}

TEST_F(HostWindowFaults, WhatIsNoGraphDoesNotReplaceTheOneThatIsOpen) {
  Program program;
  program.open(file());
  program.rename("out", "sink");
  write("no graph at all");
  program.window.save();
  program.answer(QMessageBox::Reset);
  ASSERT_NE(program.line("g.kelvarin"), nullptr);
  EXPECT_NE(program.graph.idOf(QStringLiteral("sink")), kNoId);
  EXPECT_TRUE(program.window.canvas().isVisible());
  EXPECT_TRUE(program.window.isWindowModified());
  program.window.save();
  program.answer(QMessageBox::Save);
  EXPECT_TRUE(program.waitUntilSaved());
  EXPECT_EQ(onDisk(), renamed());
}

TEST_F(HostWindowFaults, TheSecondWindowOnAGraphOpensACopyThatIsNotSavedOverIt) {
  Program first;
  first.open(file());
  Program second;
  second.window.show();
  second.window.open(file());
  const QSignalSpy shown(&second.window, &HostWindow::graphShown);
  second.answer(QMessageBox::Open);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !shown.isEmpty(); }));
  EXPECT_TRUE(second.window.windowTitle().startsWith("Copy of g.kelvarin"));
  first.rename("out", "sink");
  first.window.save();
  EXPECT_TRUE(first.waitUntilSaved());
  EXPECT_EQ(onDisk(), renamed());
}

TEST_F(HostWindowFaults, EachGraphKeepsItsOwnView) {
  Program program;
  program.open(file());
  const QString other = folder() + QStringLiteral("/other.kelvarin");
  ASSERT_TRUE(QFile::copy(file(), other));
  program.window.canvas().setExtract({0.5, {10, 20}});
  program.open(other);
  program.window.canvas().setExtract({2.0, {30, 40}});
  program.open(file());
  EXPECT_DOUBLE_EQ(program.window.canvas().extract().zoom, 0.5);
}

}  // namespace
}  // namespace kelvarin
