// The editor of ReadCSV: what it finds in a file, and what a user makes of it.
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QTableView>
#include <QTabWidget>

#include "gui/host_editors/csv_raw_lines.h"
#include "gui/host_editors/table_columns_model.h"
#include "gui/host_editors/tests/editor_fixture.h"
#include "host/widgets/info_line.h"

namespace kelvarin {
namespace {

class ReadCsvEditorTest : public testing::HostEditorTest {
 protected:
  void openFile(const QByteArray& bytes, const QByteArray& settings = {},
                const QByteArray& children = {}) {
    write("a.csv", bytes);
    open("<ReadCSV name='a' file='a.csv' " + settings + ">" + children + "</ReadCSV>");
  }
  QString cell(const char* table, int row, int column) {
    return widget<QTableView>(table).model()->index(row, column).data().toString();
  }
  void setCell(const char* table, int row, int column, const QString& value) {
    QAbstractItemModel& model = *widget<QTableView>(table).model();
    EXPECT_TRUE(model.setData(model.index(row, column), value));
    QCoreApplication::processEvents();
    settle();
  }
  QString state() { return widget<InfoLine>("state").text(); }
  QString found() { return widget<InfoLine>("found").text(); }
};

TEST_F(ReadCsvEditorTest, ShowsColumnsTypesRowsAndTheFileAsItStands) {
  openFile("id,name\r\n1,\"a, b\"\r\n2,\r\n");
  EXPECT_EQ(state(), QStringLiteral("Columns: 2"));
  EXPECT_EQ(cell("columns", 0, TableColumnsModel::kType), QStringLiteral("Number (found)"));
  EXPECT_EQ(cell("columns", 1, TableColumnsModel::kValues), QStringLiteral("a, b, null"));
  EXPECT_EQ(cell("rows", 0, 1), QStringLiteral("a, b"));
  EXPECT_EQ(widget<QPlainTextEdit>("raw").toPlainText(),
            QStringLiteral("id,name\u2003[CR LF]\n1,\"a, b\"\u2003[CR LF]\n2,\u2003[CR LF]"));
  EXPECT_TRUE(found().contains(QStringLiteral("CR LF"))) << found().toStdString();
}

TEST_F(ReadCsvEditorTest, ProposesSettingsThatFitAndTakesThemAtOneClick) {
  openFile("id;price;note\n1;1,5;\n2;NA;\n3;4;\x80\n");
  EXPECT_TRUE(found().contains(QStringLiteral("separator ';'"))) << found().toStdString();
  EXPECT_TRUE(found().contains(QStringLiteral("decimal comma")));
  emit widget<InfoLine>("found").linkActivated(QStringLiteral("take"));
  settle();
  ASSERT_EQ(m_committed.size(), 1);
  const EditedElement element = EditedElement::of(*parseXml(m_committed[0]));
  EXPECT_EQ(element.attribute(QStringLiteral("separator")), QStringLiteral(";"));
  EXPECT_EQ(element.attribute(QStringLiteral("nullText")), QStringLiteral("NA"));
  EXPECT_EQ(element.attribute(QStringLiteral("decimal")), QStringLiteral(","));
  EXPECT_EQ(element.attribute(QStringLiteral("encoding")), QStringLiteral("windows-1252"));
  EXPECT_TRUE(element.attribute(QStringLiteral("header")).isNull());
  EXPECT_EQ(cell("rows", 1, 1), QStringLiteral("null"));
  EXPECT_EQ(cell("rows", 2, 2), QStringLiteral("\u20AC"));
  EXPECT_FALSE(widget<InfoLine>("found").text().contains(QStringLiteral("Use these")));
}

TEST_F(ReadCsvEditorTest, WhatIsLeftToTheFileIsShownAsTheReaderTakesIt) {
  openFile("'a';'b;c'\n1;2\n", "separator='auto' quote='auto' encoding='auto'");
  EXPECT_TRUE(state().contains(QStringLiteral("separator ';'"))) << state().toStdString();
  EXPECT_EQ(cell("columns", 1, TableColumnsModel::kName), QStringLiteral("b;c"));
}

TEST_F(ReadCsvEditorTest, TheTabOfRareSettingsTellsHowManyAreSet) {
  openFile("id;name\n1;one\n", "separator=';' nullTexts='NA'");
  auto& pages = widget<QTabWidget>("pages");
  const QString one = pages.tabText(pages.count() - 1);
  EXPECT_TRUE(one.endsWith(QStringLiteral("(1)"))) << one.toStdString();
  m_editor->restoreUncommitted({{QStringLiteral("decimal"), QStringLiteral(",")}});
  m_editor->commit();
  const QString two = pages.tabText(pages.count() - 1);
  EXPECT_TRUE(two.endsWith(QStringLiteral("(2)"))) << two.toStdString();
}

TEST_F(ReadCsvEditorTest, OnlyTheColumnsThatAreReadAreShown) {
  openFile("id,name,price\n1,one,2\n", "columns='price|id'", "<Column name='id' meta='K'/>");
  EXPECT_EQ(state(), QStringLiteral("Columns: 2"));
  EXPECT_EQ(cell("columns", 0, TableColumnsModel::kName), QStringLiteral("price"));
  EXPECT_EQ(cell("columns", 1, TableColumnsModel::kType), QStringLiteral("Key"));
  EXPECT_EQ(cell("rows", 0, 0), QStringLiteral("2"));
}

TEST_F(ReadCsvEditorTest, ATypeIsFixedAndLeftToTheFileAgain) {
  openFile("id,name\n1,one\n");
  setCell("columns", 0, TableColumnsModel::kType, QStringLiteral("K"));
  ASSERT_EQ(m_committed.size(), 1);
  EXPECT_TRUE(m_committed[0].contains("<Column name='id' meta='K'/>")) << m_committed[0].data();
  EXPECT_EQ(cell("columns", 0, TableColumnsModel::kType), QStringLiteral("Key"));
  setCell("columns", 0, TableColumnsModel::kType, QString());
  ASSERT_EQ(m_committed.size(), 2);
  EXPECT_FALSE(m_committed[1].contains("<Column")) << m_committed[1].data();
  EXPECT_EQ(cell("columns", 0, TableColumnsModel::kType), QStringLiteral("Number (found)"));
}

TEST_F(ReadCsvEditorTest, AValueThatDoesNotFitIsNamedAndTheRowsAreShownAllTheSame) {
  openFile("id,name\n1,one\nx,two\n", {}, "<Column name='id' meta='F'/>");
  EXPECT_TRUE(state().contains(QStringLiteral("line 3"))) << state().toStdString();
  EXPECT_EQ(cell("rows", 1, 0), QStringLiteral("null"));
  EXPECT_EQ(cell("rows", 1, 1), QStringLiteral("two"));
}

TEST_F(ReadCsvEditorTest, ColumnsOfAFileWithoutHeaderAreNamed) {
  openFile("1,one\n2,two\n", "header='0'");
  setCell("columns", 1, TableColumnsModel::kName, QStringLiteral("name"));
  ASSERT_EQ(m_committed.size(), 1);
  EXPECT_TRUE(
      m_committed[0].contains("<Column name='col1' meta='F'/><Column name='name' meta='U'/>"))
      << m_committed[0].data();
  EXPECT_EQ(cell("columns", 1, TableColumnsModel::kName), QStringLiteral("name"));
  setCell("columns", 0, TableColumnsModel::kType, QStringLiteral("U"));
  EXPECT_TRUE(m_committed.last().contains("<Column name='col1' meta='U'/>"));
  setCell("columns", 0, TableColumnsModel::kType, QString());
  EXPECT_TRUE(m_committed.last().contains("<Column name='col1' meta='F'/>"))
      << "an element in the midst names its column, and stays";
}

TEST_F(ReadCsvEditorTest, ADeclaredColumnThatTheFileLacksStaysAndCanBeTakenOut) {
  openFile("id\n1\n", {}, "<Column name='gone' meta='F'/>");
  EXPECT_TRUE(state().contains(QStringLiteral("gone")));
  EXPECT_EQ(cell("columns", 1, TableColumnsModel::kName), QStringLiteral("gone"));
  setCell("columns", 1, TableColumnsModel::kType, QString());
  ASSERT_EQ(m_committed.size(), 1);
  EXPECT_FALSE(m_committed[0].contains("gone"));
}

TEST_F(ReadCsvEditorTest, SaysWhatIsWrongWithAFileAndWhatToDo) {
  const std::vector<std::pair<QByteArray, const char*>> files{
      {"", "is empty"},
      {QByteArray("\xFF\xFEi\0d\0", 6), "encoding='auto'"},
      {QByteArray("a,b\0\n", 5), "zero bytes"},
      {"na\xEFve,b\n1,2\n", "not UTF-8"},
      {"PAR1\x15 and more", "ReadParquet"},
      {"a,b\n1,2,3\n", "line 2"}};
  for (const auto& [bytes, text] : files) {
    openFile(bytes);
    EXPECT_TRUE(state().contains(QLatin1String(text))) << text << ": " << state().toStdString();
  }
  open("<ReadCSV name='a' file='none.csv'/>");
  EXPECT_TRUE(state().contains(QStringLiteral("no file"))) << state().toStdString();
  open("<ReadCSV name='a' file='/'/>");
  EXPECT_TRUE(state().contains(QStringLiteral("folder"))) << state().toStdString();
  open("<ReadCSV name='a' file='/dev/stdin'/>");
  EXPECT_FALSE(state().isEmpty());
  open("<ReadCSV name='a'/>");
  EXPECT_TRUE(state().contains(QStringLiteral("Choose"))) << state().toStdString();
  write("a.csv", "a,b\n1,2\n");
  open("<ReadParquet name='a' file='a.csv'/>");
  EXPECT_TRUE(state().contains(QStringLiteral("ReadCSV"))) << state().toStdString();
}

TEST_F(ReadCsvEditorTest, AFileThatHasChangedIsLookedIntoAgainWhenItsUserComesBack) {
  const QString file = write("a.csv", "a,b\n1,2\n");
  open("<ReadCSV name='r' file='a.csv'/>");
  const auto columnCount = [this] { return widget<QTableView>("columns").model()->rowCount(); };
  ASSERT_EQ(columnCount(), 2);
  m_editor->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(m_editor.get()));
  QEvent comesBack(QEvent::ActivationChange);
  write("a.csv", "a,b,c\n1,2,3\n");
  QCoreApplication::sendEvent(m_editor.get(), &comesBack);
  EXPECT_TRUE(QTest::qWaitFor([&] { return columnCount() == 3; }));
  QFile::remove(file);
  QCoreApplication::sendEvent(m_editor.get(), &comesBack);
  EXPECT_TRUE(QTest::qWaitFor([&] { return columnCount() == 0; }));
}

TEST_F(ReadCsvEditorTest, AHugeFileIsSeenAtOnce) {
  QByteArray rows = "a,b\n";
  for (int i = 0; i < 200'000; ++i) {
    rows += "1,some text\n";
  }
  QFile file(write("huge.csv", rows));
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  ASSERT_TRUE(file.resize(qint64(3) << 30));  // with a hole
  QElapsedTimer timer;
  timer.start();
  open("<ReadCSV name='r' file='huge.csv'/>");
  EXPECT_EQ(widget<QTableView>("columns").model()->rowCount(), 2);
  EXPECT_LT(timer.elapsed(), 4000);
}

TEST(CsvRawLines, SeparatorsInQuotesAreNone) {
  const std::vector<CsvRawLine> lines =
      csvRawLines("\xC3\xA4,\"x,\"\"y\"\nb,\"two\r\nlines\"\n1,2,3\n", {}, true);
  ASSERT_EQ(lines.size(), 4U);
  std::vector<int> separators;
  int quotes = 0;
  for (const CsvRawLine::Mark& mark : lines[0].marks) {
    quotes += mark.isQuote ? 1 : 0;
    if (!mark.isQuote) {
      separators.push_back(mark.position);
    }
  }
  EXPECT_EQ(separators, std::vector<int>{1});
  EXPECT_EQ(quotes, 4);
  EXPECT_EQ(lines[1].lineEnd, QStringLiteral("CR LF"));
  EXPECT_EQ(lines[2].marks.size(), 1U);
  EXPECT_TRUE(lines[3].marks.empty()) << "not a record of this table";
}

}  // namespace
}  // namespace kelvarin
