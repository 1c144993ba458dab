// The two columnar dialogs with real widgets: what each control writes, what they show of files,
// and that nothing is deleted or overwritten unasked.
#include <chrono>
#include <fstream>
#include <functional>
#include <iterator>

#include <gtest/gtest.h>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

#include "columnar/actions/read_columnar_gel.h"
#include "columnar/actions/write_columnar_gel.h"
#include "columnar/reader/tests/made_file.h"
#include "host/widget_testing/edited_action.h"
#include "host/widget_testing/random_events.h"
#include "host/widget_testing/widget_walk.h"
#include "host/widgets/info_line.h"
#include "host/widgets/translation.h"
#include "ui/columnar/block_variables_model.h"
#include "ui/columnar/columns_to_read_model.h"
#include "ui/columnar/interface_read_columnar_gel.h"
#include "ui/columnar/interface_write_columnar_gel.h"
#include "ui/columnar/table_work_dialog.h"
#include "ui/error_dialog/interface_math_parser_check.h"
#include "ui/help_browser/interface_math_parser_help.h"
#include "ui/widgets/expression_field.h"
#include "ui/widgets/k_plain_text_edit.h"

namespace kelvarin::testing {

namespace {

std::string savedAction(const std::string& name) {
  std::ifstream file(KELVARIN_SAVED_ACTIONS "/" + name + ".xml");
  return {std::istreambuf_iterator<char>(file), {}};
}

const std::vector<MadeColumn> kColumns{
    {"id", 'K', 0, StorageCode::ascendingKey}, {"price", 'F'}, {"name", 'U'}};

std::vector<Values> someRows(int count) {
  std::vector<Values> rows;
  for (int i = 0; i < count; ++i) {
    rows.push_back({i, i / 4.0, std::string(20, static_cast<char>('a' + i % 26))});
  }
  return rows;
}

constexpr int kRandomEvents = 1000;

const char kFullReader[] =
    "<ReadColumnarGel name='r' fileName='made.cgel_kelvarin' filterRows='1' readAllColumns='0'>"
    "<CFilterRows><Expression>id_max &gt;= 8</Expression><InputVars><CInputVar column='id'/>"
    "</InputVars></CFilterRows><ColumnsToRead><SL><S>price</S></SL></ColumnsToRead>"
    "</ReadColumnarGel>";
const char kFullWriter[] =
    "<writeColumnarGel name='w' file='a&quot;+SplitVal+&quot;.gel' split='2' splitVar='shop' "
    "advancedNaming='1' columnStrategy='1'><ColumnStrategy><C n='shop' s='1'/></ColumnStrategy>"
    "</writeColumnarGel>";

// One dialog over one action, which finds its files in a folder of the test.
template <typename Editor, typename Action>
class DialogTest : public EditedActionTest<Editor, Action> {
 protected:
  using EditedActionTest<Editor, Action>::m_editor;

  void open(const std::string& xml) {
    this->makeAction(xml);
    this->m_harness->parameters().setWorkingDir(m_folder.path());
    m_editor = std::make_unique<Editor>(nullptr, this->action());
    m_editor->resize(500, 700);
    m_editor->show();
    m_editor->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(m_editor.get()));
    this->settle();
  }
  // What is typed meanwhile is saved at the commit, and the file as it is opened again.
  void shake(const std::string& xml) {
    open(xml);
    sendRandomEvents(*m_editor, kRandomEvents);
    m_editor->commit();
    EXPECT_TRUE(m_editor->uncommittedState().isEmpty());
    const std::string after = this->saved();
    open(after);
    m_editor->commit();
    EXPECT_EQ(this->saved(), after);
  }
  QString shown(const char* name) { return this->template widget<InfoLine>(name).text(); }
  void save(const MemoryFiles& files) const { files.saveTo(m_folder.path().toStdString()); }
  QStringList files() const { return QDir(m_folder.path()).entryList(QDir::Files); }

  QTemporaryDir m_folder;
};

using ReadDialogTest = DialogTest<Interface_readColumnarGel, ReadColumnarGel>;
using WriteDialogTest = DialogTest<Interface_writeColumnarGel, WriteColumnarGel>;

TEST_F(ReadDialogTest, EachControlWritesItsAttribute) {
  const auto reopen = [&] { open("<ReadColumnarGel name='r'/>"); };
  const std::vector<ControlEdit> edits{
      {"fileName", " fileName='a.gel'", [&] { type("leFileName", QStringLiteral("a.gel")); }},
      {"fileNameFromPin", " fileNameFromPin='1'", [&] { click("rbFileNameFromPin"); }},
      {"abortIfMissing", " abortIfMissing='0'", [&] { click("rbSkipMissing"); }},
      {"accurateProgressBar", " accurateProgressBar='0'", [&] { click("cbAccurateProgressBar"); }},
      {"readIncompleteFile", " readIncompleteFile='1'", [&] { click("cbReadIncompleteFile"); }},
      {"skipCorruptedBlocks", " skipCorruptedBlocks='1'", [&] { click("cbSkipCorruptedBlocks"); }},
      {"filterRows", " filterRows='1'", [&] { click("cbFilterRows"); }},
      {"nBlockForward", " nBlockForward='7'",
       [&] { widget<QSpinBox>("sbBlocksAhead").setValue(7); }},
      {"columnSelection", " columnSelection='2'", [&] { click("rbColumnsFromPin"); }},
      {"timeOut", " timeOut='30'", [&] { widget<QSpinBox>("sbTimeOut").setValue(30); }},
      {"readAllColumns", " columnSelection='1'", [&] { click("rbListedColumns"); }}};
  expectEdits(edits, {}, ReadColumnarGel::catalogue(), reopen, [&] { return saved(); });
  reopen();
  click("cbAddN");
  EXPECT_TRUE(hasSaved("<CFilterRows addN='0'"));
  click("cbAddNowDate");
  EXPECT_TRUE(hasSaved(" addNowS='1'"));
}

TEST_F(WriteDialogTest, EachControlWritesItsAttribute) {
  const auto reopen = [&] { open("<writeColumnarGel name='w' file='a.gel' split='2'/>"); };
  const std::vector<ControlEdit> edits{
      {"file", " file='b.gel'", [&] { type("leFile", QStringLiteral("b.gel")); }},
      {"split", " split='1'", [&] { click("rbSplitBySize"); }},
      {"segmentSize", " segmentSize='7'",
       [&] {
         click("rbSplitBySize");
         widget<QSpinBox>("sbSegmentSize").setValue(7);
       }},
      {"splitVar", " splitVar='shop'", [&] { type("leSplitVar", QStringLiteral("shop")); }},
      {"advancedNaming", " file='a&quot;+SplitVal+&quot;.gel'", [&] { click("cbAdvancedNaming"); }},
      {"nThread", " nThread='3'", [&] { widget<QSpinBox>("sbThreads").setValue(3); }},
      {"nRowsInBlock", " nRowsInBlock='9'", [&] { widget<QSpinBox>("sbRowsInBlock").setValue(9); }},
      {"columnStrategy", " columnStrategy='2'", [&] { click("rbSetForEach"); }},
      {"testCol", " testCol='c'",
       [&] {
         click("cbTestRows");
         type("leTestCol", QStringLiteral("c"));
       }},
      {"testValue", " testValue='v'",
       [&] {
         click("cbTestRows");
         type("leTestValue", QStringLiteral("v"));
       }},
      {"writeAllRows", " writeAllRows='0'", [&] { click("cbTestRows"); }},
      {"deleteTimeOut", " deleteTimeOut='5'",
       [&] { widget<QSpinBox>("sbDeleteTimeOut").setValue(5); }},
      {"checkNameCollision", " checkNameCollision='0'", [&] { click("cbCheckNameCollision"); }},
      {"alwaysDelete", " alwaysDelete='1'", [&] { click("cbAlwaysDelete"); }},
      {"createDir", " createDir='1'", [&] { click("cbCreateDir"); }},
      {"replaceAtEnd", " replaceAtEnd='1'", [&] { click("cbReplaceAtEnd"); }}};
  expectEdits(edits, {}, WriteColumnarGel::catalogue(), reopen, [&] { return saved(); });
  // Switched off again, the default expression goes.
  reopen();
  click("cbAdvancedNaming");
  click("cbAdvancedNaming");
  EXPECT_TRUE(hasSaved(" file='a.gel'"));
}

TEST_F(ReadDialogTest, OpeningAndCommittingChangesNothing) {
  for (const char* xml : {"ReadColumnarGel_all", "ReadColumnarGel_bare"}) {
    open(savedAction(xml));
    const std::string before = saved();
    EXPECT_TRUE(m_editor->uncommittedState().isEmpty());
    m_editor->commit();
    EXPECT_EQ(saved(), before);
  }
  open("<ReadColumnarGel name='r' timeOut='-7' nBlockForward='5000'/>");
  m_editor->commit();
  EXPECT_TRUE(hasSaved(" timeOut='-7'"));
  EXPECT_TRUE(hasSaved(" nBlockForward='5000'"));
}

TEST_F(WriteDialogTest, OpeningAndCommittingChangesNothing) {
  for (const char* xml : {"writeColumnarGel_all", "writeColumnarGel_bare"}) {
    open(savedAction(xml));
    const std::string before = saved();
    EXPECT_TRUE(m_editor->uncommittedState().isEmpty());
    m_editor->commit();
    EXPECT_EQ(saved(), before);
  }
}

TEST_F(ReadDialogTest, WhatIsTypedIsUncommittedUntilTheEndOfEditing) {
  open("<ReadColumnarGel name='r'/>");
  auto& field = widget<QLineEdit>("leFileName");
  field.setFocus();
  QTest::keyClicks(&field, QStringLiteral("new.gel"));
  EXPECT_EQ(m_editor->uncommittedState(),
            (QMap<QString, QString>{{QStringLiteral("leFileName"), QStringLiteral("new.gel")}}));
  EXPECT_FALSE(hasSaved("new.gel"));
  const QMap<QString, QString> typed = m_editor->uncommittedState();
  open("<ReadColumnarGel name='r'/>");
  m_editor->restoreUncommitted(typed);
  EXPECT_EQ(m_editor->uncommittedState(), typed);
  m_editor->commit();
  EXPECT_TRUE(hasSaved(" fileName='new.gel'"));
  EXPECT_TRUE(m_editor->uncommittedState().isEmpty());
}

TEST_F(ReadDialogTest, ShowsWhatIsInAFile) {
  save(makeFile(kColumns, someRows(10)));
  open("<ReadColumnarGel name='r' fileName='made.cgel_kelvarin'/>");
  EXPECT_EQ(shown("state"), QStringLiteral("Complete"));
  const QString contents =
      widget<QLabel>("contents").text().replace(QChar(QChar::Nbsp), QLatin1Char(' '));
  EXPECT_TRUE(contents.startsWith("10 rows")) << contents.toStdString();
  EXPECT_TRUE(contents.contains("3 blocks"));
  EXPECT_TRUE(contents.contains("Sorted on 'id'"));
  click("rbListedColumns");
  auto& model = *m_editor->findChild<ColumnsToReadModel*>();
  EXPECT_TRUE(model.setData(model.index(2, 0), Qt::Checked, Qt::CheckStateRole));
  EXPECT_TRUE(hasSaved("<S>name</S>"));
  EXPECT_TRUE(widget<QLabel>("extentOfColumns").text().startsWith("1 of 3 columns"));

  save(makeFile(kColumns, someRows(10), kKilledWriter));
  click("pbLookAgain");
  settle();
  EXPECT_TRUE(shown("state").startsWith("Incomplete"));

  MemoryFiles damaged = makeFile(kColumns, someRows(10), {.blocksInRecord = 1});
  damaged["made.cgel_kelvarin"][firstRecord(damaged.at("made.cgel_kelvarin")) + 12] ^= 1;
  save(damaged);
  click("pbLookAgain");
  settle();
  EXPECT_TRUE(shown("state").startsWith("Damaged: 4 rows"));
  EXPECT_TRUE(widget<QPushButton>("pbSalvage").isEnabled());

  type("leFileName", QStringLiteral("other.cgel_kelvarin"));
  settle();
  EXPECT_TRUE(shown("state").contains("there is no such file"));
  EXPECT_FALSE(widget<QPushButton>("pbVerify").isEnabled());
  EXPECT_TRUE(hasSaved("<S>name</S>"));
}

TEST_F(ReadDialogTest, TriesTheFilterOnTheFile) {
  save(makeFile(kColumns, someRows(10)));
  open(
      "<ReadColumnarGel name='r' fileName='made.cgel_kelvarin' filterRows='1'><CFilterRows>"
      "<Expression>id_max &gt;= 8</Expression><InputVars><CInputVar column='id'/></InputVars>"
      "</CFilterRows></ReadColumnarGel>");
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return shown("trial").startsWith("skips 2 of 3 blocks of this file"); }, 10'000))
      << shown("trial").toStdString();
  QPlainTextEdit* editor = widget<ExpressionField>("expression").editor();
  editor->setFocus();
  editor->selectAll();
  QTest::keyClicks(editor, QStringLiteral("id_max >= 4 "));
  EXPECT_TRUE(QTest::qWaitFor([&] { return shown("trial").startsWith("skips 1 of 3"); }, 10'000))
      << shown("trial").toStdString();
  EXPECT_TRUE(hasSaved("id_max >= 8"));
  const QAbstractItemModel& blocks = *widget<QTableView>("blockValues").model();
  EXPECT_FALSE(widget<QTableView>("blockValues").isHidden());
  ASSERT_EQ(blocks.columnCount(), 3);
  EXPECT_EQ(blocks.index(0, 1).data().toString(), "skipped");
  EXPECT_EQ(blocks.index(0, 2).data().toString(), "3");
  EXPECT_EQ(blocks.index(2, 2).data().toString(), "9");
  // Nothing is read for a trial but the file itself.
  editor->setPlainText(QStringLiteral("load(\"/dev/zero\") == \"a\""));
  EXPECT_TRUE(QTest::qWaitFor([&] { return shown("trial").contains("reads a file"); }, 10'000))
      << shown("trial").toStdString();
  editor->selectAll();
  QTest::keyClicks(editor, QStringLiteral("id_max >= 4 "));
  m_editor->commit();
  EXPECT_TRUE(hasSaved("id_max >= 4"));
}

TEST_F(ReadDialogTest, AddsVariablesOfTheFilesColumns) {
  save(makeFile(kColumns, someRows(10)));
  open("<ReadColumnarGel name='r' fileName='made.cgel_kelvarin'/>");
  auto& columns = widget<QComboBox>("cmbNewVariable");
  ASSERT_EQ(columns.count(), 3);
  columns.setCurrentIndex(2);
  click("pbAddInput");
  EXPECT_TRUE(hasSaved("<CInputVar column='name' isNumber='0'/>"));
  auto& model = *m_editor->findChild<BlockVariablesModel*>();
  const QSignalSpy resets(&model, &BlockVariablesModel::modelReset);
  model.setData(model.index(0, BlockVariablesModel::kMinimum), QStringLiteral("first"),
                Qt::EditRole);
  EXPECT_TRUE(hasSaved("<CInputVar column='name' varNameMin='first' isNumber='0'/>"));
  EXPECT_TRUE(resets.isEmpty()) << "a view that commits a cell holds indexes of the model";
}

TEST_F(ReadDialogTest, VerifiesAndSalvages) {
  MemoryFiles damaged = makeFile(kColumns, someRows(10), {.blocksInRecord = 1});
  std::string& side = damaged["made.000.cs_kelvarin"];
  side[side.size() - 10] ^= 4;
  save(damaged);
  open("<ReadColumnarGel name='r' fileName='made.cgel_kelvarin'/>");
  const auto finishedDialog = [&]() -> TableWorkDialog* {
    auto* dialog = m_editor->findChild<TableWorkDialog*>();
    EXPECT_NE(dialog, nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog->isBusy(); }, 10'000));
    return dialog;
  };
  click("pbVerify");
  TableWorkDialog* dialog = finishedDialog();
  EXPECT_TRUE(dialog->findChild<QPlainTextEdit*>(QStringLiteral("damages"))
                  ->toPlainText()
                  .contains("column 'name'"));
  EXPECT_TRUE(dialog->findChild<InfoLine*>()->text().contains("1 damaged position"));
  dialog->close();
  EXPECT_TRUE(QTest::qWaitFor([&] { return m_editor->findChild<TableWorkDialog*>() == nullptr; }));

  QString proposal;
  m_editor->setAskForNewFile([&](const QString& proposed, const auto& chosen) {
    proposal = proposed;
    chosen(m_folder.filePath(QStringLiteral("new.cgel_kelvarin")));
  });
  click("pbSalvage");
  EXPECT_TRUE(proposal.endsWith("made_salvaged.cgel_kelvarin"));
  dialog = finishedDialog();
  EXPECT_TRUE(dialog->findChild<InfoLine*>()->text().startsWith("8 rows in 2 blocks"));
  EXPECT_TRUE(files().contains("new.cgel_kelvarin"));
}

TEST_F(WriteDialogTest, DeletesOnlyAfterItWasAllowedTo) {
  save(makeFile(kColumns, someRows(10)));
  open("<writeColumnarGel name='w' file='made.cgel_kelvarin'/>");
  const auto answer = [&](bool isAllowed) {
    click("pbDelete");
    settle();
    auto* box = m_editor->findChild<QMessageBox*>();
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->informativeText().contains("made.000.cs_kelvarin"));
    EXPECT_NE(box->defaultButton()->objectName(), QStringLiteral("pbConfirmDelete"));
    if (isAllowed) {
      box->findChild<QPushButton*>(QStringLiteral("pbConfirmDelete"))->click();
    } else {
      QTest::keyClick(box, Qt::Key_Escape);
    }
    settle();
    EXPECT_TRUE(QTest::qWaitFor([&] { return m_editor->findChild<QMessageBox*>() == nullptr; }));
  };
  answer(false);
  EXPECT_EQ(files().size(), 2);
  EXPECT_TRUE(shown("oldFile").startsWith("There is a table: 10"));
  answer(true);
  EXPECT_EQ(files().size(), 0);
  EXPECT_TRUE(shown("oldFile").startsWith("There is no such file"));
  EXPECT_TRUE(shown("deletion").startsWith("SUCCESS: File '"));
  ASSERT_EQ(m_harness->log().size(), 2u);
  EXPECT_TRUE(m_harness->log()[0].starts_with("info: SUCCESS: File '"));
  click("pbDelete");
  settle();
  EXPECT_TRUE(shown("deletion").contains("nothing was deleted"));
}

TEST_F(WriteDialogTest, ShowsTheNamesOfTheFiles) {
  open("<writeColumnarGel name='w' file='s.gel'/>");
  EXPECT_EQ(widget<QLabel>("examples").text(), QStringLiteral("s.gel"));
  click("rbSplitBySize");
  settle();
  EXPECT_TRUE(widget<QLabel>("examples").text().startsWith("s_000.gel\ns_001.gel"));
  click("rbSplitByValue");
  settle();
  EXPECT_EQ(widget<QLabel>("examples").text(), QStringLiteral("sA.gel\nsB.gel"));
  EXPECT_FALSE(shown("exampleNote").isEmpty());
  click("cbAdvancedNaming");
  QPlainTextEdit* naming = widget<ExpressionField>("naming").editor();
  EXPECT_EQ(naming->toPlainText(), QStringLiteral("SplitVal"));
  naming->setFocus();
  naming->selectAll();
  QTest::keyClicks(naming, QStringLiteral("tolower(SplitVal)"));
  const auto showsLowerNames = [&] {
    return widget<QLabel>("examples").text() == QStringLiteral("sa.gel\nsb.gel");
  };
  EXPECT_TRUE(QTest::qWaitFor(showsLowerNames, 10'000));  // while it is typed
  EXPECT_FALSE(hasSaved("tolower"));
  widget<QLineEdit>("leFile").setFocus();
  EXPECT_TRUE(hasSaved(" file='s&quot;+tolower(SplitVal)+&quot;.gel'"));
  EXPECT_TRUE(QTest::qWaitFor(showsLowerNames, 10'000));
}

TEST_F(WriteDialogTest, ChecksTheNamingExpression) {
  open(kFullWriter);
  auto& field = widget<ExpressionField>("naming");
  const auto write = [&](const char* expression) {
    field.editor()->setFocus();
    field.editor()->setPlainText(QString::fromLatin1(expression));
  };
  // What would be read as another expression stays typed, and the name as it was.
  write("replace(SplitVal, \"+\", \"\")");
  m_editor->commit();
  widget<QLineEdit>("leFile").setFocus();
  EXPECT_TRUE(hasSaved("a&quot;+SplitVal+&quot;.gel"));
  EXPECT_TRUE(field.expression().startsWith("replace"));

  write("tolower(SplitVa)");
  QTest::keyClick(field.editor(), Qt::Key_F7);
  const auto report = [&] { return m_editor->findChild<Interface_MathParserCheck*>(); };
  ASSERT_TRUE(QTest::qWaitFor([&] { return report() != nullptr; }, 10'000));
  emit report() -> nameChosen(QStringLiteral("SplitVal"));
  EXPECT_EQ(field.expression(), QStringLiteral("tolower(SplitVal)"));
  m_editor->commit();
  EXPECT_TRUE(hasSaved("a&quot;+tolower(SplitVal)+&quot;.gel"));

  QTest::keyClick(field.editor(), Qt::Key_F1);
  auto* help = m_editor->findChild<Interface_mathParserHelp*>();
  ASSERT_NE(help, nullptr);
  EXPECT_TRUE(QTest::qWaitFor([&] { return help->isVisible(); }));
  emit help->insertWanted(QStringLiteral("toupper()"));
  EXPECT_TRUE(field.expression().contains("toupper()"));
  EXPECT_TRUE(field.isVisible());
}

// What anyone may expect of a window, on each tab.
void expectGood(QWidget& editor, const QString& language = QStringLiteral("en")) {
  onEveryPage(editor, [&] {
    QTest::qWait(50);  // the layouts take their turn
    EXPECT_EQ(controlsWithoutName(editor).join(u'\n').toStdString(), "");
    EXPECT_EQ(controlsOutOfTabReach(editor).join(u'\n').toStdString(), "");
    EXPECT_EQ(cutTexts(editor).join(u'\n').toStdString(), "");
    EXPECT_EQ(keysWithTwoOwners(editor).join(u'\n').toStdString(), "");
    EXPECT_EQ(mnemonicsWithTwoOwners(editor, language).join(u'\n').toStdString(), "");
  });
}

TEST_F(ReadDialogTest, IsWithinReachAndCutsNothing) {
  save(makeFile(kColumns, someRows(10)));
  open(kFullReader);
  expectGood(*m_editor);
  const LargeFonts fonts(2.0);
  const Translation translation({"de"});
  open(kFullReader);
  expectGood(*m_editor, QStringLiteral("de"));
}

TEST_F(WriteDialogTest, IsWithinReachAndCutsNothing) {
  open(kFullWriter);
  expectGood(*m_editor);
  const LargeFonts fonts(2.0);
  const Translation translation({"de"});
  open(kFullWriter);
  expectGood(*m_editor, QStringLiteral("de"));
}

TEST_F(ReadDialogTest, SurvivesRandomEvents) {
  save(makeFile(kColumns, someRows(10)));
  shake(kFullReader);
  shake("<ReadColumnarGel name='r'/>");
}

TEST_F(WriteDialogTest, SurvivesRandomEvents) {
  save(makeFile(kColumns, someRows(10), {.name = "a"}));
  shake(kFullWriter);
  shake("<writeColumnarGel name='w' file='a.cgel_kelvarin'/>");
  shake("<writeColumnarGel name='w'/>");
}

TEST_F(ReadDialogTest, ReportsAFaultOnceAndNotWhileTyping) {
  open(kFullReader);
  const auto reports = [&] { return m_editor->findChildren<Interface_MathParserCheck*>().size(); };
  auto& field = widget<ExpressionField>("expression");
  QPlainTextEdit* editor = field.editor();
  click("pbSkipBlocks");
  editor->setFocus();
  editor->selectAll();
  QTest::keyClicks(editor, QStringLiteral("id_maxx + "));
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return field.answer().check.kind == ExpressionCheck::Kind::error; }, 10'000));
  EXPECT_EQ(reports(), 0);
  m_editor->commit();
  EXPECT_TRUE(hasSaved("id_maxx"));
  QTest::keyClick(editor, Qt::Key_F7);
  EXPECT_TRUE(QTest::qWaitFor([&] { return reports() == 1; }, 10'000));
}

}  // namespace

}  // namespace kelvarin::testing
