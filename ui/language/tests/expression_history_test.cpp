#include "ui/language/expression_history.h"

#include <gtest/gtest.h>

#include <QSettings>
#include <QThreadPool>

namespace kelvarin {
namespace {

TEST(ExpressionHistory, KeepsTheLatestAndTheStarred) {
  QSettings().clear();
  ExpressionHistory history(QStringLiteral("Filter"));
  for (int i = 0; i < 60; ++i) {
    history.add(QStringLiteral("x + ") + QString::number(i));
    history.setStarred(QStringLiteral("x + 3"), true);
  }
  history.add(QStringLiteral("x + 20"));
  history.add(QStringLiteral("  "));
  history.add(QStringLiteral("1"));
  const std::vector<ExpressionHistory::Entry>& entries =
      ExpressionHistory(QStringLiteral("Filter")).entries();
  EXPECT_EQ(entries, history.entries());
  ASSERT_EQ(entries.size(), ExpressionHistory::kMaxEntries + 1);
  EXPECT_EQ(entries[0].expression.toStdString(), "x + 20");
  EXPECT_EQ(entries[1].expression.toStdString(), "x + 59");
  EXPECT_EQ(entries.back(), (ExpressionHistory::Entry{QStringLiteral("x + 3"), true}));
  EXPECT_EQ(history.nameCounts().value(QStringLiteral("x")), 51);
  EXPECT_TRUE(ExpressionHistory(QStringLiteral("Other")).entries().empty());

  history.setStarred(QStringLiteral("x + 3"), false);
  EXPECT_EQ(history.entries().size(), ExpressionHistory::kMaxEntries);
}

// The settings as an earlier session left them, or as a later one finds them.
TEST(ExpressionHistory, OutlivesTheProgram) {
  ExpressionHistory written(QStringLiteral("Written"));
  written.add(QStringLiteral("s // \"a\nb\""));
  written.add(QStringLiteral("x"));
  written.setStarred(QStringLiteral("x"), true);
  QThreadPool::globalInstance()->waitForDone();
  QSettings settings;
  const QString array = QStringLiteral("expressionHistory/");
  for (const QString& key : settings.allKeys()) {
    if (key.startsWith(array + QStringLiteral("Written/"))) {
      settings.setValue(QString(key).replace(QStringLiteral("Written"), QStringLiteral("Found")),
                        settings.value(key));
    }
  }
  EXPECT_EQ(ExpressionHistory(QStringLiteral("Found")).entries(), written.entries());
}

}  // namespace
}  // namespace kelvarin
