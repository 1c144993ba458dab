// The help browser: the prescribed label and tree, the search in place, and what the keys do.
#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>
#include <QTextBrowser>
#include <QTreeWidget>

#include "host/widget_testing/random_events.h"
#include "host/widget_testing/widget_walk.h"
#include "host/widgets/translation.h"
#include "ui/help_browser/interface_math_parser_help.h"

namespace kelvarin {
namespace {

struct Browser {
  Interface_mathParserHelp help;
  QTreeWidget* functions = help.findChild<QTreeWidget*>("twFunctions");
  QTreeWidget* results = help.findChild<QTreeWidget*>("twResults");
  QLineEdit* query = help.findChild<QLineEdit*>("leSearch");
  QLabel* value = help.findChild<QLabel*>("lblTryResult");

  Browser() { help.show(); }
  QString details() const { return help.findChild<QTextBrowser*>("tbDetails")->toPlainText(); }
  bool isSearching() const { return help.findChild<QStackedWidget*>()->currentWidget() == results; }
};

TEST(MathParserHelp, HasTheLabelAndTheTreeOfTheHelp) {
  const Browser browser;
  EXPECT_EQ(browser.help.findChild<QLabel*>("lblParameters")->text(),
            "All Graph-Global-Parameters are also available to use.");
  const QTreeWidget& tree = *browser.functions;
  EXPECT_EQ(tree.columnCount(), 2);
  EXPECT_EQ(tree.headerItem()->text(0), "Functions");
  EXPECT_EQ(tree.headerItem()->text(1), "Comments");
  ASSERT_EQ(tree.topLevelItemCount(), static_cast<int>(helpGroups().size()));
  for (int group = 0; group < tree.topLevelItemCount(); ++group) {
    const HelpGroup& wanted = helpGroups()[static_cast<std::size_t>(group)];
    const QTreeWidgetItem* item = tree.topLevelItem(group);
    EXPECT_EQ(item->text(0), wanted.title);
    ASSERT_EQ(item->childCount(), static_cast<int>(wanted.entries.size()));
    for (int i = 0; i < item->childCount(); ++i) {
      const HelpEntry& entry = wanted.entries[static_cast<std::size_t>(i)];
      EXPECT_EQ(item->child(i)->text(0), QString::fromUtf8(entry.signature));
      EXPECT_EQ(item->child(i)->text(1), QString::fromUtf8(entry.comment));
    }
  }
}

TEST(MathParserHelp, SearchesInsertsAndComesBackByKeysAlone) {
  Browser browser;
  QSignalSpy inserted(&browser.help, &Interface_mathParserHelp::insertWanted);
  QTest::keyClicks(browser.query, "round");
  EXPECT_TRUE(browser.isSearching());
  ASSERT_EQ(browser.results->topLevelItemCount(), 2);  // the second one: what the tree leaves out
  EXPECT_EQ(browser.results->topLevelItem(0)->child(0)->text(0), "round(x)");
  QTest::keyClick(browser.query, Qt::Key_Return);
  QTest::keyClick(browser.query, Qt::Key_Down);
  QTest::keyClick(browser.results, Qt::Key_Return);
  ASSERT_EQ(inserted.size(), 2);
  EXPECT_EQ(inserted[0][0].toString(), "round()");
  EXPECT_EQ(inserted[1][0].toString(), "round2()");
  EXPECT_TRUE(browser.details().startsWith("round2(x,d)"));
  QTest::keyClick(browser.results, Qt::Key_Escape);
  EXPECT_FALSE(browser.isSearching());
}

TEST(MathParserHelp, OpensAndClosesAGroupByEnter) {
  Browser browser;
  browser.functions->setCurrentItem(browser.functions->topLevelItem(3));
  QTest::keyClick(browser.functions, Qt::Key_Return);
  EXPECT_TRUE(browser.functions->topLevelItem(3)->isExpanded());
  QTest::keyClick(browser.functions, Qt::Key_Return);
  EXPECT_FALSE(browser.functions->topLevelItem(3)->isExpanded());
}

TEST(MathParserHelp, ShowsANameWhereItIs) {
  Browser browser;
  browser.help.showName("nvl");
  EXPECT_FALSE(browser.isSearching());
  EXPECT_EQ(browser.functions->currentItem()->text(0), "nvl(x,y)");
  EXPECT_TRUE(browser.functions->currentItem()->parent()->isExpanded());
  browser.help.showName("isMissing");  // left out of the tree
  EXPECT_TRUE(browser.isSearching());
  EXPECT_EQ(browser.results->currentItem()->text(0), "isMissing(x)");
  browser.help.showName("IFNULL");
  EXPECT_EQ(browser.results->currentItem()->text(0), "nvl(x,y)");
  EXPECT_TRUE(browser.help.findChild<QLabel*>("lblRemark")->text().contains("IFNULL"));
}

TEST(MathParserHelp, EvaluatesTheExampleAndWhatIsMadeOfIt) {
  Browser browser;
  browser.help.showName("hdist");
  EXPECT_TRUE(QTest::qWaitFor([&] { return browser.value->text().startsWith("= 264.59 "); }))
      << browser.value->text().toStdString();
  auto* expression = browser.help.findChild<QLineEdit*>("leTry");
  emit browser.help.findChild<QTextBrowser*>("tbDetails")->anchorClicked(QUrl("example1"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return browser.value->text().startsWith("= 20015.09 "); }))
      << browser.value->text().toStdString();
  expression->setText("dateDiffInDay(\"2024-01-01\", \"2024-01-31\")");
  EXPECT_TRUE(QTest::qWaitFor([&] { return browser.value->text().startsWith("= 30 "); }))
      << browser.value->text().toStdString();
  expression->setText("load(\"greeting.txt\")");  // nothing is read here
  EXPECT_TRUE(QTest::qWaitFor([&] { return browser.value->text().contains("'load'"); }))
      << browser.value->text().toStdString();
  expression->setText("flor(2)");
  EXPECT_TRUE(QTest::qWaitFor([&] { return browser.value->text().contains("floor"); }))
      << browser.value->text().toStdString();
}

TEST(MathParserHelp, CanBeUsedByEverybody) {
  const auto joined = [](const QStringList& faults) { return faults.join(u'\n').toStdString(); };
  for (const char* language : {"en", "de"}) {
    const Translation translation({language});
    const testing::LargeFonts large(2.0);
    Browser browser;
    for (const char* query : {"", "round", "IFNULL"}) {
      browser.query->setText(query);
      EXPECT_EQ(joined(testing::controlsWithoutName(browser.help)), "");
      EXPECT_EQ(joined(testing::controlsOutOfTabReach(browser.help)), "");
      EXPECT_EQ(joined(testing::cutTexts(browser.help)), "");
      EXPECT_EQ(joined(testing::keysWithTwoOwners(browser.help)), "");
      EXPECT_EQ(joined(testing::mnemonicsWithTwoOwners(browser.help, language)), "");
    }
  }
}

TEST(MathParserHelp, SurvivesAChildAtTheKeyboard) {
  Browser browser;
  testing::sendRandomEvents(browser.help, 2000);
  browser.help.showName("nvl");
  EXPECT_EQ(browser.functions->currentItem()->text(0), "nvl(x,y)");
}

}  // namespace
}  // namespace kelvarin
