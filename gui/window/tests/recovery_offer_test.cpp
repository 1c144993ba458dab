// The window after a program that was killed: what it offers, and what restoring brings back.
#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "gui/properties/property_panel.h"
#include "gui/recovery/recovery_offer.h"
#include "gui/window/tests/host_program.h"
#include "host/widgets/user_interface.h"

namespace kelvarin {
namespace {

constexpr char kGraph[] =
    "<KelvarinGraph version='1.0'><Actions>"
    "<InlineTable name='numbers' x='0' y='0'><Column name='a' meta='F'/></InlineTable>"
    "<WriteCSV name='out' x='200' y='0' file='result.csv'/>"
    "</Actions></KelvarinGraph>";

struct Program : testing::HostProgram {
  RecoveryOffer& offer() {
    window.offerRecovery();
    auto& line = *window.findChild<RecoveryOffer*>();
    (void)QTest::qWaitFor([&line] { return line.isVisible(); }, 1000);
    return line;
  }
  QLineEdit& field(const char* name) {
    return *window.properties().editor()->findChild<QLineEdit*>(QLatin1String(name));
  }
};

class RecoveryOfferTest : public ::testing::Test {
 protected:
  RecoveryOfferTest() {
    QStandardPaths::setTestModeEnabled(true);
    QDir(recoveryFolder()).removeRecursively();
    QFile target(file());
    EXPECT_TRUE(target.open(QIODevice::WriteOnly));
    target.write(kGraph);
  }
  ~RecoveryOfferTest() override { QDir(recoveryFolder()).removeRecursively(); }

  QString file() const { return m_folder.filePath(QStringLiteral("g.kelvarin")); }
  static QStringList recoveryFiles() {
    return QDir(recoveryFolder()).entryList({QStringLiteral("*.recovery")});
  }
  // Renames an action, types into a field, and leaves both unsaved on the disk.
  void leaveUnsavedWork() {
    Program program;
    program.open(file());
    program.commands.rename(program.graph.idOf(QStringLiteral("out")), QStringLiteral("sink"));
    ASSERT_TRUE(QTest::qWaitFor([] { return recoveryFiles().size() == 1; }));
    program.window.properties().showAction(program.graph.idOf(QStringLiteral("sink")));
    program.field("file").setFocus();
    program.field("file").selectAll();
    QTest::keyClicks(&program.field("file"), QStringLiteral("later.csv"));
    QTest::qWait(2500);
  }

  QTemporaryDir m_folder;
};

TEST_F(RecoveryOfferTest, RestoringBringsBackCommandsAndWhatWasBeingTyped) {
  leaveUnsavedWork();
  Program program;
  RecoveryOffer& offer = program.offer();
  ASSERT_TRUE(offer.text().contains(u"g.kelvarin")) << qPrintable(offer.text());
  emit offer.linkActivated(QStringLiteral("restore"));
  EXPECT_FALSE(offer.isVisible());
  EXPECT_TRUE(program.window.isWindowModified());
  ASSERT_NE(program.graph.idOf(QStringLiteral("sink")), kNoId);
  EXPECT_TRUE(program.field("file").text() == u"later.csv");
  EXPECT_TRUE(program.graph.document().contains("result.csv")) << "typed, not committed";

  program.window.save();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !program.window.isWindowModified(); }));
  QFile saved(file());
  ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
  EXPECT_EQ(saved.readAll(),
            QByteArray(kGraph).replace("'out'", "'sink'").replace("result", "later"));
  program.window.close();
  EXPECT_TRUE(recoveryFiles().isEmpty());
}

TEST_F(RecoveryOfferTest, AFileThatWasWrittenMeanwhileIsNotReplacedUnasked) {
  leaveUnsavedWork();
  {
    QFile other(file());
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    other.write("<KelvarinGraph version='1.0'/>");
  }
  Program program;
  emit program.offer().linkActivated(QStringLiteral("restore"));
  program.window.save();
  QMessageBox* question = nullptr;
  ASSERT_TRUE(QTest::qWaitFor([&] {
    question = program.window.findChild<QMessageBox*>();
    return question != nullptr;
  }));
  EXPECT_TRUE(question->text().contains(u"changed on the disk"));
}

TEST_F(RecoveryOfferTest, WhatIsDiscardedOrClosedIsNotOfferedAgain) {
  leaveUnsavedWork();
  {
    Program program;
    emit program.offer().linkActivated(QStringLiteral("discard"));
    auto* question = program.window.findChild<QMessageBox*>();
    ASSERT_NE(question, nullptr);
    question->button(QMessageBox::Discard)->click();
    EXPECT_TRUE(QTest::qWaitFor([] { return recoveryFiles().isEmpty(); }));
  }
  Program program;
  EXPECT_FALSE(program.offer().isVisible());
}

}  // namespace
}  // namespace kelvarin
