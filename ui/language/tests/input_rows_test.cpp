#include "ui/language/input_rows.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QSettings>

#include "ui/language/expression_history.h"
#include "ui/language/tests/formula_fixture.h"

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
  const ExpressionHistory again(QStringLiteral("Filter"));
  EXPECT_EQ(again.entries(), history.entries());
  ASSERT_EQ(again.entries().size(), ExpressionHistory::kMaxEntries + 1);
  EXPECT_EQ(again.entries()[0].expression.toStdString(), "x + 20");
  EXPECT_EQ(again.entries()[1].expression.toStdString(), "x + 59");
  EXPECT_EQ(again.entries().back(), (ExpressionHistory::Entry{QStringLiteral("x + 3"), true}));
  EXPECT_EQ(again.nameCounts().value(QStringLiteral("x")), 51);
  EXPECT_TRUE(ExpressionHistory(QStringLiteral("Other")).entries().empty());

  history.setStarred(QStringLiteral("x + 3"), false);
  EXPECT_EQ(history.entries().size(), ExpressionHistory::kMaxEntries);
}

}  // namespace
}  // namespace kelvarin
