// The editor of both calculators with real widgets: outputs, casts, what each control writes, the
// vectors, and the columns that they will make.
#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>
#include <QSpinBox>
#include <QTabBar>
#include <QTableView>

#include "actions/calculator_vectorized/calculator_vectorized.h"
#include "ui/editors/interface_action_math_parser.h"
#include "ui/editors/tests/editor_fixture.h"
#include "ui/widgets/my_table.h"

namespace kelvarin::testing {

namespace {

constexpr char kCalculator[] =
    "<Calculator name='c'><InputVars><InputVar column='x'/></InputVars><OutputVars>"
    "<OutputVar name='a' isInput='1' notes='why'>x + 1</OutputVar>"
    "<OutputVar name='b' meta='U'>\"t\"</OutputVar><OutputVar name='x' update='1'>2</OutputVar>"
    "</OutputVars></Calculator>";

class CalculatorEditorTest : public EditorTest<Interface_actionMathParser, Calculator> {
 protected:
  CalculatorEditorTest() {
    m_rowsOfPin[0] = textRows({QStringLiteral("x")}, {{QStringLiteral("1")}});
  }
  void open(const std::string& xml = kCalculator) {
    EditorTest::open(xml, int{Interface_actionMathParser::kCalculator});
  }
  QTabBar& tabs() { return widget<QTabBar>("outputs"); }
  QStringList names() {
    QStringList names;
    for (const OutputVariable& output : action().outputVariables()) {
      names += output.name;
    }
    return names;
  }
};

TEST_F(CalculatorEditorTest, EachControlWritesItsAttributeAndReportsIt) {
  std::vector<ControlEdit> edits{
      {"castToKey1", " castToKey1='0'", [&] { click("rb4"); }},
      {"castToKey1", " castToKey1='1'", [&] { click("rb5"); }},
      {"castToKey2", " castToKey2='0'", [&] { click("rb7"); }},
      {"castToKey2", " castToKey2='1'", [&] { click("rb8"); }},
      {"castToKey3", " castToKey3='1'", [&] { click("rb11"); }},
      {"castToKey3", " castToKey3='2'", [&] { click("rb12"); }},
      {"addN", " addN='0'", [&] { click("cbAddN"); }},
      {"useJIT", " useJIT='0'", [&] { click("cbUseJIT"); }},
      {"abortWhenError", " abortWhenError='0'",
       [&] { widget<QComboBox>("cmbError").setCurrentIndex(0); }},
      {"name", "name='sum'", [&] { type("leName", QStringLiteral("sum")); }},
      {"notes", "notes='new'", [&] { typeNotes("leNotes", QStringLiteral("new")); }},
      {"meta", "name='a' meta='K'", [&] { click("rb2"); }},
      {"update", "isInput='1' update='1'", [&] { click("cbUpdate"); }},
      {"expression", ">x * 3<", [&] { write(QStringLiteral("x * 3")); }}};
  for (const ControlEdit& edit : edits) {
    open();
    EXPECT_EQ(saved().find(edit.written), std::string::npos) << edit.written;
    edit.edit();
    EXPECT_TRUE(hasSaved(edit.written)) << edit.written << "\n" << saved();
    const bool isErrorPolicy = std::string(edit.attribute) == "abortWhenError";
    EXPECT_EQ(changes() > 0, !isErrorPolicy) << edit.attribute;
    EXPECT_EQ(m_host->modifications, isErrorPolicy ? 1 : 0) << edit.attribute;
  }
}

TEST_F(CalculatorEditorTest, OpeningAndCommittingChangesNothing) {
  open(
      "<Calculator name='c' castToKey1='7' seed='5'><OutputVars><OutputVar name='a&amp;b' "
      "meta='D' isInput='1' notes='n&#10;m'>x +&#10; 1</OutputVar><OutputVar name='b'/>"
      "</OutputVars></Calculator>");
  const std::string before = saved();
  EXPECT_TRUE(m_editor->uncommittedState().isEmpty());
  tabs().setCurrentIndex(1);
  tabs().setCurrentIndex(0);
  m_editor->commit();
  EXPECT_EQ(saved(), before);
  EXPECT_EQ(changes() + m_host->modifications, 0);
}

TEST_F(CalculatorEditorTest, AddsMovesRenamesAndDeletesOutputs) {
  open();
  EXPECT_FALSE(widget<QAbstractButton>("pbLeft").isEnabled());
  click("pbRight");
  EXPECT_EQ(names(), (QStringList{"b", "a", "x"}));
  EXPECT_EQ(tabs().currentIndex(), 1);
  click("pbAdd");
  EXPECT_EQ(names(), (QStringList{"b", "a", "x", "NewVar"}));
  EXPECT_EQ(field().expression(), "1");
  type("leName", QStringLiteral("c & d"));
  EXPECT_EQ(names().back(), "c & d");
  EXPECT_EQ(tabs().tabText(3), "c && d");

  // What was typed before another tab was chosen is kept.
  field().editor()->selectAll();
  field().editor()->insertPlainText(QStringLiteral("x * 5"));
  m_editor->name_outputVar(0);
  EXPECT_EQ(field().expression(), "\"t\"");
  EXPECT_TRUE(hasSaved(">x * 5<"));

  m_editor->delete_outputVar(0);
  EXPECT_EQ(names(), (QStringList{"a", "x", "c & d"}));
  EXPECT_EQ(field().expression(), "x + 1");
  m_editor->delete_outputVar(2);
  m_editor->delete_outputVar(1);
  m_editor->delete_outputVar(0);
  EXPECT_EQ(names(), QStringList{"a"});
  EXPECT_TRUE(hasSaved("isInput='1'"));
}

TEST_F(CalculatorEditorTest, NamesOfManyOutputsCanBeReadInANarrowPanel) {
  open();
  for (const char* name : {"ground_speed", "time_of_day", "made_up_minutes"}) {
    click("pbAdd");
    type("leName", QString::fromLatin1(name));
  }
  m_editor->resize(400, 600);
  const int letters = 8 * tabs().fontMetrics().averageCharWidth();
  for (int i = 3; i < tabs().count(); ++i) {
    EXPECT_GE(tabs().tabRect(i).width(), letters) << i;
  }
  EXPECT_TRUE(tabs().rect().intersects(tabs().tabRect(tabs().currentIndex())));
}

TEST_F(CalculatorEditorTest, ChecksAllOutputsAndLeadsToTheFirstFault) {
  open();
  tabs().setCurrentIndex(1);
  field().editor()->selectAll();
  field().editor()->insertPlainText(QStringLiteral("nowhere + 1"));
  tabs().setCurrentIndex(0);
  settle();
  EXPECT_TRUE(field().editor()->styleSheet().startsWith("background-color: #FFFFFF"));
  EXPECT_TRUE(action().hasFailed());
  m_editor->checkCurrentOutputVars();
  settle();
  EXPECT_EQ(tabs().currentIndex(), 1);
  EXPECT_TRUE(field().editor()->styleSheet().startsWith("background-color: #FFE8E8"));
  EXPECT_TRUE(tabs().tabIcon(0).isNull());
  EXPECT_FALSE(tabs().tabIcon(1).isNull());
  write(QStringLiteral("\"fine\""));
  settle();
  EXPECT_FALSE(action().hasFailed());
  EXPECT_TRUE(tabs().tabIcon(1).isNull());
}

TEST_F(CalculatorEditorTest, KnowsTheVariablesOfTheTable) {
  m_rowsOfPin[1] = textRows({QStringLiteral("alias"), QStringLiteral("column")},
                            {{QStringLiteral("y"), QStringLiteral("x")}});
  open();
  write(QStringLiteral("y + 1"));
  settle();
  EXPECT_FALSE(action().hasFailed());
}

TEST_F(CalculatorEditorTest, TypedTextsComeBack) {
  open();
  auto& table = widget<MyTable>("twVariables");
  table.editCell(0, VariablesModel::kAlias);
  QTest::keyClicks(table.indexWidget(table.currentIndex()), QStringLiteral("alias"));
  field().setExpression(QStringLiteral("x +"));
  widget<QLineEdit>("leName").setText(QStringLiteral("sum"));
  widget<NotesField>("leNotes").setPlainText(QStringLiteral("line\nline"));
  QMap<QString, QString> typed = m_editor->uncommittedState();
  EXPECT_EQ(typed.size(), 4);
  typed["useJIT"] = "0";  // as edited during a debug run
  open();
  m_editor->restoreUncommitted(typed);
  EXPECT_EQ(m_editor->uncommittedState(), typed);
  EXPECT_FALSE(hasSaved("sum"));
  m_editor->commit();
  EXPECT_TRUE(hasSaved("useJIT='0'"));
  EXPECT_TRUE(hasSaved("name='sum'"));
  EXPECT_EQ(variables().variables()[0].name(), "alias");
  EXPECT_TRUE(hasSaved(">alias +<"));
  EXPECT_TRUE(hasSaved("notes='line&#10;line'"));
}

TEST_F(CalculatorEditorTest, ExpressionsFollowTheNewNameOfAVariable) {
  open(
      "<Calculator name='c'><InputVars><InputVar column='x'/></InputVars><OutputVars><OutputVar "
      "name='a'>x + x(1)</OutputVar><OutputVar name='b'>2 * x // \"x\"</OutputVar></OutputVars>"
      "</Calculator>");
  variables().setData(variables().index(0, VariablesModel::kAlias), QStringLiteral("price"),
                      Qt::EditRole);
  EXPECT_TRUE(hasSaved(">price + x(1)<")) << saved();
  EXPECT_TRUE(hasSaved(">2 * price // \"x\"<") || hasSaved(">2 * price // &quot;x&quot;<"));
}

TEST_F(CalculatorEditorTest, LeadsToThePositionThatTheLogNames) {
  open();
  m_editor->showPosition(QStringLiteral("b"), -1);
  EXPECT_EQ(tabs().currentIndex(), 1);
  m_editor->showPosition(QStringLiteral("a"), 4);
  EXPECT_EQ(tabs().currentIndex(), 0);
  EXPECT_EQ(field().editor()->textCursor().selectedText(), "1");
}

using VectorizedTest = EditorTest<Interface_actionMathParser, CalculatorVectorized>;

TEST_F(VectorizedTest, ListsTheColumnsThatItWillCreate) {
  m_rowsOfPin[0] = textRows({QStringLiteral("a1"), QStringLiteral("a2")}, {});
  m_rowsOfPin[1] = textRows(
      {QStringLiteral("AliasName"), QStringLiteral("VarName")},
      {{QStringLiteral("v"), QStringLiteral("a1")}, {QStringLiteral("v"), QStringLiteral("a2")}});
  open("<CalculatorVectorized name='v'/>", int{Interface_actionMathParser::kVectorized});
  auto& columns = widget<QListWidget>("columnsToCreate");
  const auto listed = [&] {
    QStringList names;
    for (int i = 0; i < columns.count(); ++i) {
      names += columns.item(i)->text();
    }
    return names;
  };
  const auto comes = [&](const QStringList& names) {
    return QTest::qWaitFor([&] { return listed() == names; }, 10'000);
  };
  EXPECT_TRUE(comes({"NewVar_0", "NewVar_1"})) << listed().join(u' ').toStdString();
  const QAbstractItemModel& vectors = *widget<QTableView>("vectors").model();
  ASSERT_EQ(vectors.rowCount(), 1);
  EXPECT_EQ(vectors.index(0, 1).data().toInt(), 2);
  EXPECT_EQ(vectors.index(0, 2).data().toString(), "a1, a2");

  EXPECT_EQ(widget<QSpinBox>("sbShownElement").maximum(), 1);

  write(QStringLiteral("v // \"_new\""), "nameExpression");
  EXPECT_TRUE(comes({"a1_new", "a2_new"})) << listed().join(u' ').toStdString();
  EXPECT_TRUE(hasSaved("name='v // &quot;_new&quot;'"));
  write(QStringLiteral("load(\"names\")"), "nameExpression");
  EXPECT_TRUE(comes({})) << "a file is not read while somebody types";
  write(QStringLiteral("1"), "nameExpression");
  EXPECT_TRUE(comes({}));
}

}  // namespace

}  // namespace kelvarin::testing
