// The editor of InlineTable: cells, rows, columns, and what spreadsheets put on the clipboard.
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTableView>
#include <QToolButton>

#include "gui/host_editors/inline_table_model.h"
#include "gui/host_editors/pasted_table.h"
#include "gui/host_editors/tests/editor_fixture.h"
#include "host/widgets/info_line.h"

namespace kelvarin {
namespace {

constexpr char kTable[] =
    "<InlineTable name='a'><Column name='id' meta='K'/><Column name='text'/>"
    "<Row><V>1</V><V> one </V></Row><Row><V>2</V><V null='1'/></Row><Row><V>3</V><V></V></Row>"
    "</InlineTable>";

class InlineTableEditorTest : public testing::HostEditorTest {
 protected:
  QTableView& table() { return widget<QTableView>("table"); }
  InlineTableModel& model() { return static_cast<InlineTableModel&>(*table().model()); }
  void select(int row, int column) { table().setCurrentIndex(model().index(row, column)); }
  // As it stands in the current cell, not committed.
  QLineEdit& typeInto(const QString& text) {
    m_editor->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(m_editor.get()));
    table().setFocus();
    QTest::keyClick(&table(), Qt::Key_F2);
    auto* cell = table().viewport()->findChild<QLineEdit*>();
    EXPECT_NE(cell, nullptr);
    cell->selectAll();
    QTest::keyClicks(cell, text);
    return *cell;
  }
  void press(const char* name) { widget<QToolButton>(name).click(); }
  QByteArray committed() {
    m_editor->commit();
    return m_committed.isEmpty() ? QByteArray() : m_committed.last();
  }
  void paste(const QString& text) {
    QApplication::clipboard()->setText(text);
    for (QAction* action : table().actions()) {
      if (action->shortcut() == QKeySequence(QKeySequence::Paste)) {
        action->trigger();
      }
    }
  }
  QString state() { return widget<InfoLine>("state").text(); }
};

TEST_F(InlineTableEditorTest, WhatIsNotEditedStaysAsItIs) {
  open(kTable);
  EXPECT_EQ(committed(), QByteArray());
  open(
      "<InlineTable name='a' sortedOn='id 0'><Column name='id' meta='Q'/><Row><V>1</V><V>2</V>"
      "</Row><Row/></InlineTable>");
  EXPECT_EQ(committed(), QByteArray());
  EXPECT_TRUE(state().contains(QStringLiteral("Row 0"))) << state().toStdString();
}

TEST_F(InlineTableEditorTest, ACellIsTypedMadeNullAndCommittedAfterARest) {
  open(kTable);
  select(0, 1);
  QTest::keyClick(&typeInto(QStringLiteral("two")), Qt::Key_Return);
  QCoreApplication::processEvents();
  EXPECT_EQ(model().index(0, 1).data(Qt::EditRole).toString(), u"two");
  EXPECT_TRUE(m_committed.isEmpty());
  EXPECT_FALSE(m_editor->uncommittedState().isEmpty());
  EXPECT_TRUE(QTest::qWaitFor([&] { return m_committed.size() == 1; }, 5'000));
  EXPECT_TRUE(m_committed.last().contains("<V>two</V>"));
  EXPECT_TRUE(m_editor->uncommittedState().isEmpty());

  select(0, 1);
  QTest::keyClick(&table(), Qt::Key_Delete);
  EXPECT_TRUE(committed().contains("<Row><V>1</V><V null='1'/></Row>"));
  EXPECT_EQ(model().index(0, 1).data().toString(), u"null");
  EXPECT_EQ(model().index(2, 1).data().toString(), u"(empty)");
}

TEST_F(InlineTableEditorTest, ACellThatIsStillBeingTypedIsCommittedToo) {
  open(kTable);
  select(0, 0);
  typeInto(QStringLiteral("77"));
  EXPECT_TRUE(committed().contains("<V>77</V>"));
}

TEST_F(InlineTableEditorTest, WhatIsNotCommittedComesBack) {
  open(kTable);
  model().setData(model().index(1, 1), QStringLiteral("new"), Qt::EditRole);
  const QMap<QString, QString> state = m_editor->uncommittedState();
  open(kTable);
  m_editor->restoreUncommitted(state);
  EXPECT_TRUE(committed().contains("<V>new</V>"));
}

TEST_F(InlineTableEditorTest, RowsAndColumnsAreAddedMovedAndRemoved) {
  open(kTable);
  select(0, 0);
  press("addRow");
  press("rowUp");
  EXPECT_TRUE(committed().contains("<Row><V null='1'/><V null='1'/></Row><Row><V>1</V>"));
  press("removeRows");
  EXPECT_EQ(model().rowCount(), 3);
  select(0, 1);
  press("columnLeft");
  EXPECT_TRUE(committed().contains("<Row><V> one </V><V>1</V></Row>")) << committed().data();
  press("addColumn");
  auto& name = widget<QLineEdit>("columnName");
  name.setText(QStringLiteral("more"));
  QTest::keyClick(&name, Qt::Key_Return);
  auto& type = widget<QComboBox>("columnType");
  type.setCurrentIndex(0);
  emit type.activated(0);
  EXPECT_TRUE(committed().contains("<Column name='more' meta='F'/>")) << committed().data();
  press("removeColumn");
  EXPECT_EQ(model().columnCount(), 2);
  EXPECT_FALSE(committed().contains("more"));
}

TEST_F(InlineTableEditorTest, AValueThatIsNoneOfItsColumnIsMarked) {
  open(kTable);
  model().setData(model().index(1, 0), QStringLiteral("-5"), Qt::EditRole);
  m_editor->commit();
  EXPECT_TRUE(state().contains(QStringLiteral("-5"))) << state().toStdString();
  EXPECT_TRUE(
      model().index(1, 0).data(Qt::ToolTipRole).toString().contains(QStringLiteral("not a key")));
  EXPECT_TRUE(m_committed.last().contains("<V>-5</V>")) << "a run says it, nothing is dropped";
}

TEST_F(InlineTableEditorTest, ASpreadsheetIsPastedIntoAnEmptyTable) {
  open("<InlineTable name='a'/>");
  paste(QStringLiteral("id\tname\tprice\n1\t\"two\nlines\"\t1,5\n2\t\t1.234,25\n"));
  EXPECT_EQ(model().rowCount(), 2);
  const QByteArray before = committed();
  EXPECT_TRUE(
      before.contains("<Column name='id' meta='F'/><Column name='name'/>"
                      "<Column name='price'/>"))
      << before.data();
  EXPECT_TRUE(before.contains("<V>1,5</V>"));
  auto& question = widget<InfoLine>("question");
  ASSERT_TRUE(question.text().contains(QStringLiteral("decimal comma")));
  emit question.linkActivated(QStringLiteral("numbers"));
  const QByteArray after = committed();
  EXPECT_TRUE(after.contains("<Column name='price' meta='F'/>")) << after.data();
  EXPECT_TRUE(after.contains("<V>1.5</V>") && after.contains("<V>1234.25</V>")) << after.data();
  EXPECT_TRUE(after.contains("<V>two\nlines</V>")) << after.data();
  EXPECT_TRUE(after.contains("<Row><V>2</V><V null='1'/>")) << after.data();
}

TEST_F(InlineTableEditorTest, PastingGoesOverTheEdgesAndTheNamesCanBecomeARow) {
  open(kTable);
  select(2, 1);
  paste(QStringLiteral("x\ty\r\nz\tw\r\n"));
  EXPECT_EQ(model().rowCount(), 4);
  EXPECT_EQ(model().columnCount(), 3);
  EXPECT_TRUE(committed().contains("<Row><V null='1'/><V>z</V><V>w</V></Row>"));
  EXPECT_TRUE(state().isEmpty()) << state().toStdString();

  open("<InlineTable name='a'/>");
  paste(QStringLiteral("a\tb\nc\td\n"));
  EXPECT_EQ(model().rowCount(), 1);
  emit widget<InfoLine>("question").linkActivated(QStringLiteral("row"));
  EXPECT_EQ(model().rowCount(), 2);
  EXPECT_TRUE(committed().contains("<Column name='col1'/>"));
}

TEST_F(InlineTableEditorTest, WhatIsCopiedIsPastedAsItWas) {
  const std::vector<std::vector<QString>> cells{
      {QStringLiteral("a\tb"), QString()},
      {QStringLiteral("say \"x\""), QStringLiteral("two\nlines")}};
  EXPECT_EQ(pastedCells(copiedCells(cells)), cells);
}

TEST_F(InlineTableEditorTest, TenThousandRowsStayQuick) {
  QByteArray rows;
  for (int i = 0; i < 10'000; ++i) {
    rows += "<Row><V>" + QByteArray::number(i) + "</V><V>text</V><V>1.5</V></Row>";
  }
  open(
      "<InlineTable name='a'><Column name='id' meta='K'/><Column name='text'/>"
      "<Column name='x' meta='F'/>" +
      rows + "</InlineTable>");
  QElapsedTimer timer;
  timer.start();
  for (int i = 0; i < 100; ++i) {
    model().setData(model().index(i * 90, 1), QStringLiteral("typed"), Qt::EditRole);
  }
  QCoreApplication::processEvents();
  RecordProperty("millisecondsFor100Cells", static_cast<int>(timer.elapsed()));
  EXPECT_LT(timer.elapsed(), 400) << "4 ms a cell";
  timer.restart();
  m_editor->commit();
  RecordProperty("millisecondsForACommit", static_cast<int>(timer.elapsed()));
  EXPECT_EQ(m_committed.size(), 1);
  EXPECT_LT(timer.elapsed(), 2'000);
}

}  // namespace
}  // namespace kelvarin
