// The log of a window: what is shown of it, copied, and walked.
#include <gtest/gtest.h>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include "gui/log/log_panel.h"
#include "host/widget_testing/widget_walk.h"

namespace kelvarin::testing {
namespace {

LogEntry line(LogLevel level, const char* action, const char* text) {
  return {level, QString::fromLatin1(action), QString::fromLatin1(text), {}, QTime(12, 30, 5)};
}

class LogPanelTest : public ::testing::Test {
 protected:
  LogPanelTest() {
    panel.resize(640, 200);
    panel.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&panel));
    panel.append({line(LogLevel::information, "in", "10 rows"),
                  line(LogLevel::warning, "calc", "3 values are missing"),
                  line(LogLevel::information, "out", "written"),
                  line(LogLevel::error, "calc", "unknown name 'x'")});
  }
  QStringList shown() const {
    QStringList texts;
    for (int row = 0; row < table->model()->rowCount(); ++row) {
      texts += table->model()->index(row, LogModel::text).data().toString();
    }
    return texts;
  }
  void chooseLevel(int index) {
    panel.findChild<QComboBox*>(QStringLiteral("logLevel"))->setCurrentIndex(index);
  }

  LogPanel panel;
  QTableView* table = panel.findChild<QTableView*>(QStringLiteral("log"));
};

TEST_F(LogPanelTest, ShowsWhatTheFilterAsksFor) {
  EXPECT_EQ(shown().size(), 4);
  EXPECT_EQ(table->model()->index(0, LogModel::time).data().toString(), QStringLiteral("12:30:05"));
  chooseLevel(1);
  EXPECT_EQ(shown(), (QStringList{"3 values are missing", "unknown name 'x'"}));
  chooseLevel(2);
  EXPECT_EQ(shown(), QStringList{"unknown name 'x'"});
  chooseLevel(0);
  auto* search = panel.findChild<QLineEdit*>(QStringLiteral("logSearch"));
  QTest::keyClicks(search, QStringLiteral("CALC"));
  QTest::keyClick(search, Qt::Key_Return);
  EXPECT_EQ(shown().size(), 2);
  table->setFocus();
  QTest::keySequence(table, QKeySequence::Copy);
  EXPECT_EQ(QGuiApplication::clipboard()->text(),
            QStringLiteral("warning: 3 values are missing\nerror: unknown name 'x'"));
}

TEST_F(LogPanelTest, LeadsToALineThatTheFilterShows) {
  panel.showLine(3);
  EXPECT_EQ(table->currentIndex().row(), 3);
  chooseLevel(2);
  panel.showLine(3);
  EXPECT_EQ(table->currentIndex().row(), 0);
  panel.showLine(1);
  EXPECT_EQ(table->currentIndex().row(), 0);
}

TEST_F(LogPanelTest, StaysWhereItIsReadWhenLinesAreAdded) {
  const std::vector<LogEntry> many(200, line(LogLevel::information, "in", "one more"));
  panel.append(many);
  QScrollBar* bar = table->verticalScrollBar();
  EXPECT_EQ(bar->value(), bar->maximum());
  bar->setValue(3);
  panel.append(many);
  EXPECT_EQ(bar->value(), 3);
}

TEST_F(LogPanelTest, IsForEveryone) {
  EXPECT_EQ(controlsWithoutName(panel), QStringList());
  EXPECT_EQ(controlsOutOfTabReach(panel), QStringList());
  EXPECT_EQ(cutTexts(panel), QStringList());
  const LargeFonts large(2.0);
  EXPECT_EQ(cutTexts(panel), QStringList());
}

}  // namespace
}  // namespace kelvarin::testing
