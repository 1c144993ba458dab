// The filter's editor with real widgets: what each control writes and reports, how an expression is
// committed and validated, and that nothing is written unasked.
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QTabWidget>

#include "host/widgets/info_line.h"
#include "ui/editors/interface_action_filter_rows.h"
#include "ui/editors/tests/editor_fixture.h"
#include "ui/error_dialog/interface_math_parser_check.h"

namespace kelvarin::testing {

namespace {

constexpr char kFilter[] =
    "<FilterRows name='f'><Expression>x &gt; 1</Expression><InputVars><InputVar column='x'/>"
    "</InputVars></FilterRows>";

class FilterEditorTest : public EditorTest<Interface_actionFilterRows, FilterRows> {
 protected:
  FilterEditorTest() {
    m_rowsOfPin[0] = textRows({QStringLiteral("x"), QStringLiteral("unit price")},
                              {{QStringLiteral("1"), QStringLiteral("2")}});
  }

  QList<Interface_MathParserCheck*> dialogs() {
    return m_editor->findChildren<Interface_MathParserCheck*>();
  }
  QMessageBox* question() { return m_editor->findChild<QMessageBox*>(); }
  void answer(QMessageBox::StandardButton button) {
    ASSERT_NE(question(), nullptr);
    question()->button(button)->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
};

TEST_F(FilterEditorTest, EachControlWritesItsAttributeAndReportsIt) {
  const auto choose = [&](const char* name, int index) {
    widget<QComboBox>(name).setCurrentIndex(index);
  };
  const std::vector<ControlEdit> edits{
      {"truncate", " truncate='1'", [&] { click("cbTruncate"); }},
      {"addN", " addN='0'", [&] { click("cbAddN"); }},
      {"useJIT", " useJIT='0'", [&] { click("cbUseJIT"); }},
      {"abortWhenError", " abortWhenError='0'", [&] { choose("cmbError", 0); }},
      {"comments", " comments='why'", [&] { typeNotes("leComments", QStringLiteral("why")); }},
      {"addNow", " addNow='1'", [&] { click("cbAddNow"); }},
      {"addNowS", " addNowS='1'", [&] { click("cbAddNowDate"); }},
      {"seed", " seed='7'", [&] { widget<QSpinBox>("sbSeed").setValue(7); }},
      {"elapsedTimeUnit", " elapsedTimeUnit='0'", [&] { choose("cbETUnit", 0); }},
      {"dateFormatType", " dateFormatType='1'", [&] { choose("cbDateFormat", 1); }},
      {"isUTC", " isUTC='0'", [&] { click("cbUTC2"); }},
      {"emptyETToNull", " emptyETToNull='0'", [&] { click("cbEmptyETToNull"); }},
      {"referenceTime", " referenceTime='2001'",
       [&] { type("leRefTime", QStringLiteral("2001")); }},
      {"dateFormat", " dateFormat='yyyy'", [&] { type("leDateFormat", QStringLiteral("yyyy")); }},
      {"castToET1", " castToET1='1'", [&] { click("rbETToRefTime"); }},
      {"castToET2", " castToET2='1'", [&] { click("rbETToRefTime2"); }}};
  const QStringList ofOlderFiles{QStringLiteral("Expression")};
  expectEdits(
      edits, ofOlderFiles, FilterRows::catalogue(), [&] { open(kFilter); },
      [&] { return saved(); });
  for (const ControlEdit& edit : edits) {
    open(kFilter);
    edit.edit();
    const bool isErrorPolicy = std::string(edit.attribute) == "abortWhenError";
    EXPECT_EQ(changes() > 0, !isErrorPolicy) << edit.attribute;
    EXPECT_EQ(m_host->modifications, isErrorPolicy ? 1 : 0) << edit.attribute;
  }
}

TEST_F(FilterEditorTest, OpeningAndCommittingChangesNothing) {
  open(
      "<FilterRows name='f' truncate='1' comments='a&#10;b' seed='-9' etUnit='9' castToET1='4'>"
      "<Expression> x  &lt; 1&#10;</Expression><InputVars><InputVar label='l' label2='m'><SL>"
      "<S>a</S><S>x</S></SL></InputVar></InputVars></FilterRows>");
  const std::string before = saved();
  EXPECT_TRUE(m_editor->uncommittedState().isEmpty());
  m_editor->commit();
  EXPECT_EQ(saved(), before);
  EXPECT_EQ(changes() + m_host->modifications, 0);
}

TEST_F(FilterEditorTest, CommitsAnExpressionAtTheEndOfEditing) {
  open(kFilter);
  field().editor()->setFocus();
  field().editor()->selectAll();
  QTest::keyClicks(field().editor(), QStringLiteral("x + 1"));
  EXPECT_TRUE(hasSaved("x > 1"));
  EXPECT_EQ(m_editor->uncommittedState().value(QStringLiteral("expression")),
            QStringLiteral("x + 1"));
  leave();
  EXPECT_TRUE(hasSaved("<Expression>x + 1<"));
  EXPECT_EQ(changes(), 1);
  leave();
  EXPECT_EQ(changes(), 1);
  write(QStringLiteral("  \n "));
  EXPECT_EQ(field().expression(), QStringLiteral("1"));
  EXPECT_TRUE(hasSaved("<Expression>1<"));
}

TEST_F(FilterEditorTest, ValidatesACommittedExpression) {
  open(kFilter);
  const auto style = [&] { return field().editor()->styleSheet(); };
  field().editor()->setFocus();
  field().editor()->selectAll();
  QTest::keyClicks(field().editor(), QStringLiteral("flor(x)"));
  ASSERT_TRUE(QTest::qWaitFor(
      [&] { return field().answer().check.kind == ExpressionCheck::Kind::error; }, 10'000));
  EXPECT_TRUE(style().startsWith("background-color: #FFFFFF"));
  EXPECT_TRUE(dialogs().isEmpty());

  leave();
  settle();
  EXPECT_EQ(style(),
            "background-color: #FFE8E8; background-image: url(:/KelvarinMathParser/"
            "errorExplanation.png);background-repeat:no-repeat;background-position:"
            "center bottom;");
  EXPECT_TRUE(action().hasFailed());
  ASSERT_EQ(dialogs().size(), 1);
  EXPECT_FALSE(dialogs().front()->isModal());
  delete dialogs().front();

  // Once for a text, but for F7.
  write(QStringLiteral("x"));
  settle();
  EXPECT_EQ(style(), "background-color: #FFFFFF; background-image: none;");
  EXPECT_FALSE(action().hasFailed());
  write(QStringLiteral("flor(x)"));
  settle();
  EXPECT_TRUE(dialogs().isEmpty());
  QApplication::setActiveWindow(m_editor.get());
  field().editor()->setFocus();
  QTest::keyClick(field().editor(), Qt::Key_F7);
  settle();
  EXPECT_EQ(dialogs().size(), 1);
}

TEST_F(FilterEditorTest, LeavesTheHelpOpenThatAWrongExpressionNeeds) {
  open(kFilter);
  auto& tabs = widget<QTabWidget>("tabs");
  QApplication::setActiveWindow(m_editor.get());
  field().editor()->setFocus();
  field().editor()->selectAll();
  QTest::keyClicks(field().editor(), QStringLiteral("round"));
  QTest::keyClick(field().editor(), Qt::Key_Escape);
  QTest::keyClick(field().editor(), Qt::Key_F1);
  const int help = tabs.currentIndex();
  EXPECT_NE(help, 0);
  settle();
  EXPECT_EQ(tabs.currentIndex(), help);
  EXPECT_TRUE(action().hasFailed());
  EXPECT_TRUE(dialogs().isEmpty());
  QTest::keyClick(&tabs, Qt::Key_F7);
  settle();
  EXPECT_EQ(tabs.currentIndex(), 0);
  EXPECT_EQ(dialogs().size(), 1);
}

TEST_F(FilterEditorTest, AsksAboutSamplingOnceForAnEditor) {
  open(kFilter);
  write(QStringLiteral("_n < 100"));
  ASSERT_NE(question(), nullptr);
  EXPECT_EQ(question()->windowTitle(), "\"Filter Rows\" Action");
  EXPECT_EQ(question()->text(),
            "The expression '_n < 100' seems to be a sampling expression.\nDo you want to truncate "
            "at the first failed row?");
  EXPECT_EQ(question()->standardButton(question()->defaultButton()), QMessageBox::Ok);
  answer(QMessageBox::Cancel);
  EXPECT_FALSE(action().settings().truncate);
  write(QStringLiteral("_n < 200"));
  EXPECT_EQ(question(), nullptr);

  open(kFilter);
  write(QStringLiteral("_n<0"));
  EXPECT_EQ(question(), nullptr);
  write(QStringLiteral("_n < 100"));
  answer(QMessageBox::Ok);
  EXPECT_TRUE(action().settings().truncate);
  EXPECT_TRUE(widget<QCheckBox>("cbTruncate").isChecked());
  EXPECT_EQ(changes(), 3);
}

TEST_F(FilterEditorTest, EditsTheVariables) {
  open(kFilter);
  EXPECT_EQ(variables().inputColumnNames().size(), 2);
  click("pbAddInput");
  EXPECT_EQ(variables().rowCount(), 2);
  EXPECT_TRUE(variables().setData(variables().index(1, VariablesModel::kColumn),
                                  QStringLiteral("unit price"), Qt::EditRole));
  EXPECT_TRUE(hasSaved("<InputVar column='unit price' label='unit_price' isNumber='0'/>"));
  EXPECT_TRUE(variables().setData(variables().index(0, VariablesModel::kColumn),
                                  QStringLiteral("gone"), Qt::EditRole));
  EXPECT_TRUE(variables().fault(0).contains("no column 'gone'"));
  EXPECT_TRUE(hasSaved("column='gone'"));
  click("pbGetColumnNames");
  EXPECT_EQ(QApplication::clipboard()->text(), "x\nunit price");
  m_editor->on_insertVar(1);
  EXPECT_EQ(field().expression(), " unit_price gone > 1") << "as the variable is called now";
  write(QStringLiteral("1"));
  m_editor->on_insertVar(1);
  EXPECT_EQ(field().expression(), "unit_price");

  write(QStringLiteral("x"));
  click("pbAddNamed");
  EXPECT_TRUE(hasSaved("<InputVar column='x'"));
}

TEST_F(FilterEditorTest, GoesAwayWhileACellOrASettingIsEdited) {
  for (const bool isCell : {true, false}) {
    open(kFilter);
    QApplication::setActiveWindow(m_editor.get());
    if (isCell) {
      auto& table = widget<QTableView>("twVariables");
      table.setFocus();
      table.edit(table.model()->index(0, VariablesModel::kAlias));
    } else {
      widget<QTabWidget>("tabs").setCurrentIndex(1);
      widget<QSpinBox>("sbSeed").setFocus();
      widget<QSpinBox>("sbSeed").selectAll();
    }
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("7"));
    m_editor.reset();
    EXPECT_TRUE(hasSaved("<InputVar column='x'"));
  }
}

TEST_F(FilterEditorTest, WorksWithoutAnInput) {
  m_rowsOfPin.clear();
  open(kFilter);
  EXPECT_TRUE(variables().fault(0).isEmpty());
  bool isExplained = false;
  for (const InfoLine* line : m_editor->findChildren<InfoLine*>()) {
    isExplained = isExplained || line->text().contains("not known");
  }
  EXPECT_TRUE(isExplained);
  EXPECT_TRUE(variables().setData(variables().index(0, VariablesModel::kColumn),
                                  QStringLiteral("typed"), Qt::EditRole));
  EXPECT_TRUE(hasSaved("column='typed'"));
}

}  // namespace

}  // namespace kelvarin::testing
