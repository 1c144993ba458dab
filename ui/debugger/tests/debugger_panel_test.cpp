// The step debugger's panel by its keys and buttons, over an action that really runs.
#include "ui/debugger/debugger_panel.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QTest>
#include <QTreeView>

#include "actions/calculator_vectorized/calculator_vectorized.h"
#include "actions/filter_rows/filter_rows.h"
#include "host/widget_testing/widget_walk.h"
#include "host/widgets/info_line.h"
#include "host/widgets/translation.h"
#include "ui/debugger/tests/debugged_branch.h"
#include "ui/widgets/expression_field.h"

namespace kelvarin::testing {
namespace {

const DebuggerTexts kTexts = {"Debug Start", "Debug STOP", "Debug - Next (F10)"};

class DebuggerPanelTest : public ::testing::Test {
 protected:
  DebuggerPanelTest() {
    branch.rows = [](FakeInputPin& pin) {
      pin.push({12.5, 4});
      pin.push({12.5, nullptr});
      for (int row = 2; row < 100; ++row) {
        pin.push({row, 0.5});
      }
    };
    QObject::connect(&panel, &DebuggerPanel::rowShown,
                     [this](const std::vector<VariableValue>& values) { shown = values; });
    panel.resize(900, 480);
    panel.show();
    panel.activateWindow();
    (void)QTest::qWaitForWindowActive(&panel);
  }

  Formula formula() {
    Formula made;
    made.output.expression = expression;
    made.use = ResultUse::truth;
    made.variables = branch.action().inputVariables();
    made.options = branch.action().options();
    return made;
  }
  template <typename Widget>
  Widget* find(const char* name) {
    return panel.findChild<Widget*>(QLatin1String(name));
  }
  QString status() { return find<InfoLine>("debuggerStatus")->text(); }
  QString notes() { return find<InfoLine>("debuggerNotes")->text(); }
  QString cell(const char* view, int row, int column, const QModelIndex& parent = {}) {
    const auto* model = find<QAbstractItemView>(view)->model();
    return model->index(row, column, parent).data().toString();
  }
  bool waitFor(const QString& text) {
    return QTest::qWaitFor([&] { return status().startsWith(text); });
  }
  bool waitForPart(const QString& value) {
    return QTest::qWaitFor([&] { return cell("partsOfExpression", 0, 1) == value; });
  }
  void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    auto* table = find<QTableView>("variablesOfRow");
    table->setFocus();
    QTest::keyClick(table, Qt::Key(key), modifiers);
  }

  QString expression = "price * quantity > 20";
  std::vector<VariableValue> shown;
  DebuggedBranch branch{
      makeAction<FilterRows>("<FilterRows Expression='price * quantity &gt; 20'><InputVars>"
                             "<InputVar column='price'/><InputVar column='quantity'/>"
                             "</InputVars></FilterRows>"),
      "price:F quantity:F"};
  DebugSession session{branch.action()};
  DebuggerPanel panel{session, kTexts, [this] { return formula(); }};
};

TEST_F(DebuggerPanelTest, KeysStartStepGoBackAndStop) {
  auto* startStop = find<QPushButton>("pbStartStop");
  EXPECT_EQ(startStop->text(), "Debug Start");
  EXPECT_FALSE(find<QPushButton>("pbNext")->isEnabled());
  int commits = 0;
  QObject::connect(&panel, &DebuggerPanel::aboutToStart, [&] { ++commits; });
  press(Qt::Key_F5);
  EXPECT_EQ(commits, 1);
  EXPECT_EQ(startStop->text(), "Debug STOP");
  ASSERT_TRUE(waitFor("Row 0."));
  ASSERT_GE(shown.size(), 2u);
  EXPECT_EQ(shown[0].value.number, 12.5);
  ASSERT_TRUE(waitForPart("true"));

  press(Qt::Key_F10);
  ASSERT_TRUE(waitFor("Row 1."));
  EXPECT_EQ(cell("variablesOfRow", 1, 1), "null");
  EXPECT_EQ(cell("variablesOfRow", 1, 2), "4");  // it was, in the row before
  EXPECT_EQ(cell("variablesOfRow", 0, 2), "");   // not changed
  press(Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_EQ(status(), "Row 0. The newest row is 1.");
  EXPECT_EQ(shown[1].value.number, 4);
  EXPECT_EQ(session.state().rowCount, 2);  // nothing ran again
  press(Qt::Key_F10, Qt::ShiftModifier | Qt::ControlModifier);
  EXPECT_EQ(status(), "Row 1.");

  press(Qt::Key_F5, Qt::ShiftModifier);
  ASSERT_TRUE(waitFor("The run has ended after 2 rows."));
  EXPECT_EQ(startStop->text(), "Debug Start");
  EXPECT_EQ(shown.size(), 3u);  // the last row stays in sight
}

TEST_F(DebuggerPanelTest, RunsToARowOfAPreviewAlsoBackwards) {
  panel.runToRow(50);
  ASSERT_TRUE(waitFor("Row 50,"));
  EXPECT_EQ(shown[0].value.number, 50);
  panel.runToRow(7);  // which the run has passed
  ASSERT_TRUE(waitFor("Row 7,"));
  EXPECT_EQ(shown[0].value.number, 7);
}

TEST_F(DebuggerPanelTest, ResultsStandBesideTheRowAndTheirChangesAreMarked) {
  const auto isBold = [this] {
    const auto* model = find<QTableView>("resultsOfRow")->model();
    return model->index(0, 1).data(Qt::FontRole).value<QFont>().bold();
  };
  press(Qt::Key_F5);
  ASSERT_TRUE(waitFor("Row 0."));
  EXPECT_EQ(cell("resultsOfRow", 0, 0), "FilterRows");
  EXPECT_EQ(cell("resultsOfRow", 0, 1), "true");
  EXPECT_FALSE(isBold());
  press(Qt::Key_F10);
  ASSERT_TRUE(waitFor("Row 1."));
  EXPECT_EQ(cell("resultsOfRow", 0, 1), "false");
  EXPECT_EQ(cell("resultsOfRow", 0, 2), "true");
  EXPECT_TRUE(isBold());
  const auto* model = find<QTableView>("resultsOfRow")->model();
  EXPECT_FALSE(model->flags(model->index(0, 1)).testFlag(Qt::ItemIsEditable));
}

TEST_F(DebuggerPanelTest, TheTreeSaysWhereANullArises) {
  press(Qt::Key_F5);
  ASSERT_TRUE(waitFor("Row 0."));
  press(Qt::Key_F10);
  ASSERT_TRUE(waitFor("Row 1."));
  auto* tree = find<QTreeView>("partsOfExpression");
  const auto product = [&] { return tree->model()->index(0, 0, tree->model()->index(0, 0)); };
  ASSERT_TRUE(QTest::qWaitFor([&] {
    return cell("partsOfExpression", 0, 1, product()) == "12.5" &&
           cell("partsOfExpression", 1, 1, product()) == "null";
  }));
  EXPECT_EQ(cell("partsOfExpression", 0, 0), expression);
  EXPECT_EQ(cell("partsOfExpression", 1, 0, product()), "quantity");
  EXPECT_EQ(cell("partsOfExpression", 1, 2, product()), "null because `quantity` is null");
  QString chosen;
  QObject::connect(&panel, &DebuggerPanel::partChosen, [&](qsizetype start, qsizetype size) {
    chosen = expression.sliced(start, size);
  });
  tree->setCurrentIndex(product());
  EXPECT_EQ(chosen, "price * quantity");
}

TEST_F(DebuggerPanelTest, AnEditedValueIsEvaluatedAndTheRunIsLeftAlone) {
  press(Qt::Key_F5);
  ASSERT_TRUE(waitFor("Row 0."));
  ASSERT_TRUE(waitForPart("true"));
  auto* model = find<QTableView>("variablesOfRow")->model();
  EXPECT_FALSE(model->setData(model->index(1, 1), "four"));
  ASSERT_TRUE(model->setData(model->index(1, 1), "1"));
  ASSERT_TRUE(waitForPart("false"));
  EXPECT_EQ(cell("variablesOfRow", 1, 2), "4");
  EXPECT_TRUE(notes().contains("edited"));
  EXPECT_EQ(session.state().rows.newest()->row.variables[1].number, 4);
  emit find<InfoLine>("debuggerNotes")->linkActivated("undo");
  ASSERT_TRUE(waitForPart("true"));
  EXPECT_EQ(notes(), "");
}

// What each key does while nothing runs, at a row, and while rows go by.
TEST_F(DebuggerPanelTest, KeysActInEveryState) {
  branch.rows = [](FakeInputPin& pin) { pin.push({2, 0.5}, 100'000'000); };
  press(Qt::Key_F5, Qt::ShiftModifier);
  press(Qt::Key_F10);
  press(Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_FALSE(session.isRunning());
  press(Qt::Key_F9);  // no condition yet: leads to its field
  EXPECT_TRUE(find<QPlainTextEdit>("leBreakpoint")->hasFocus());
  press(Qt::Key_F5);
  ASSERT_TRUE(waitFor("Row 0."));
  press(Qt::Key_F10, Qt::ControlModifier);  // on to a breakpoint that there is not
  ASSERT_TRUE(waitFor("Running: "));
  press(Qt::Key_F5);  // goes on
  press(Qt::Key_F10);
  ASSERT_TRUE(waitFor("Row "));
  const QString paused = status();
  press(Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_TRUE(status().contains("The newest row is"));
  press(Qt::Key_F10, Qt::ShiftModifier | Qt::ControlModifier);
  EXPECT_EQ(status(), paused);
  press(Qt::Key_F5);
  ASSERT_TRUE(waitFor("Running: "));
  press(Qt::Key_F5, Qt::ShiftModifier);
  EXPECT_TRUE(status().startsWith("Stopping: "));
  ASSERT_TRUE(waitFor("The run has ended after "));
  find<QComboBox>("cbRunTo")->setCurrentIndex(1);
  find<QSpinBox>("sbRunToRow")->setValue(3);
  press(Qt::Key_F10, Qt::ControlModifier);  // starts, and obeys at once
  ASSERT_TRUE(waitFor("Row 3, the one that was asked for."));
}

TEST_F(DebuggerPanelTest, RunsToABreakpointARowAndTheNextNull) {
  find<QPlainTextEdit>("leBreakpoint")->setFocus();
  QTest::keyClicks(find<QPlainTextEdit>("leBreakpoint"), "price == 40");
  EXPECT_TRUE(find<QCheckBox>("cbBreakpoint")->isChecked());
  press(Qt::Key_F10, Qt::ControlModifier);
  ASSERT_TRUE(waitFor("Row 40, stopped at a breakpoint."));
  press(Qt::Key_F9);
  EXPECT_FALSE(find<QCheckBox>("cbBreakpoint")->isChecked());
  find<QComboBox>("cbRunTo")->setCurrentIndex(1);
  find<QSpinBox>("sbRunToRow")->setValue(60);
  find<QPushButton>("pbRunTo")->click();
  ASSERT_TRUE(waitFor("Row 60, the one that was asked for."));
  find<QComboBox>("cbRunTo")->setCurrentIndex(4);
  find<QPushButton>("pbRunTo")->click();
  ASSERT_TRUE(waitFor("The run has ended after 100 rows."));

  find<QPushButton>("pbCopyRows")->click();
  const QStringList lines = QGuiApplication::clipboard()->text().split('\n');
  ASSERT_EQ(lines.size(), 102);
  EXPECT_TRUE(lines[0].startsWith("\"Row\",\"Stopped\",\"price\",\"quantity\""));
  EXPECT_TRUE(lines[2].startsWith("1,\"\",12.5,,"));
  EXPECT_TRUE(lines[41].startsWith("40,\"breakpoint\",40,0.5,"));
}

// It knows the results, too, and a row under way is not judged by half of a condition.
TEST_F(DebuggerPanelTest, TheConditionIsCheckedWhileItIsTyped) {
  auto* field = find<QPlainTextEdit>("leBreakpoint");
  const auto verdict = [&] {
    const auto* owner = qobject_cast<ExpressionField*>(field->parentWidget());
    return qobject_cast<const InfoLine*>(owner->verdict());
  };
  press(Qt::Key_F5);
  ASSERT_TRUE(waitFor("Row 0."));
  field->setFocus();
  QTest::keyClicks(field, "FilterRows == 1 and pricy > 3");
  EXPECT_TRUE(QTest::qWaitFor([&] { return verdict()->text().contains("pricy"); }));
  EXPECT_TRUE(verdict()->isVisible());
  EXPECT_EQ(session.rules().condition, "");
  QTest::keyClick(field, Qt::Key_Return, Qt::AltModifier);  // the nearest name
  EXPECT_TRUE(QTest::qWaitFor([&] { return verdict()->text().isEmpty(); }));
  EXPECT_EQ(field->toPlainText(), "FilterRows == 1 and price > 3");
  QTest::keyClick(field, Qt::Key_Escape);
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(session.rules().condition, "FilterRows == 1 and price > 3");
  press(Qt::Key_F5);
  EXPECT_TRUE(waitFor("Row 41, stopped at a breakpoint.")) << status().toStdString();
}

TEST_F(DebuggerPanelTest, SaysBeforeStartWhatTheStringParserRefuses) {
  expression = "isNuLL(price)";
  QuickFix fix;
  QObject::connect(&panel, &DebuggerPanel::fixWanted,
                   [&](const QuickFix& wanted) { fix = wanted; });
  press(Qt::Key_F5);
  EXPECT_FALSE(session.isRunning());
  EXPECT_TRUE(status().contains("'isNuLL'")) << status().toStdString();
  EXPECT_TRUE(status().contains("'isNull'"));
  emit find<InfoLine>("debuggerStatus")->linkActivated("fix");
  EXPECT_EQ(fix.replacement, "isNull");
  EXPECT_EQ(fix.size, 6);
}

TEST_F(DebuggerPanelTest, WorksInTheExpertModeOnly) {
  panel.setExpertMode(false);
  press(Qt::Key_F5);
  EXPECT_FALSE(session.isRunning());
  for (const char* name : {"pbStartStop", "pbNext"}) {
    EXPECT_FALSE(find<QPushButton>(name)->isEnabled());
    EXPECT_EQ(find<QPushButton>(name)->toolTip(), "Switch To Expert Mode to Activate");
  }
}

TEST_F(DebuggerPanelTest, TheEditorsCheckButtonIsTheFirstInSightAndForTab) {
  auto* check = new QPushButton(QStringLiteral("? (F7)"));
  panel.addCheckButton(check);
  panel.layout()->activate();
  auto* start = find<QPushButton>("pbStartStop");
  EXPECT_EQ(check->nextInFocusChain(), start);
  EXPECT_TRUE(QTest::qWaitFor([&] { return check->isVisible() && check->x() < start->x(); }));
  EXPECT_EQ(check->y(), start->y());
}

TEST_F(DebuggerPanelTest, NamesTheVariablesOfATableThatIsNotRead) {
  bool isWanted = false;
  QObject::connect(&panel, &DebuggerPanel::lackingVariablesWanted, [&] { isWanted = true; });
  panel.setLackingVariables({"rate", "limit"});
  EXPECT_TRUE(notes().contains("rate, limit"));
  emit find<InfoLine>("debuggerNotes")->linkActivated("table");
  EXPECT_TRUE(isWanted);
}

TEST_F(DebuggerPanelTest, SaysThatSamplingOnlyCounts) {
  DebuggedBranch sampled(makeAction<FilterRows>("<FilterRows Expression='_n &lt; 2' addN='1'/>"),
                         "price:F");
  sampled.rows = [](FakeInputPin& pin) { pin.push(Values{1}, 5); };
  DebugSession other(sampled.action());
  DebuggerPanel counting(other, kTexts, [this] { return formula(); });
  counting.findChild<QPushButton*>("pbStartStop")->click();
  const auto* status = counting.findChild<InfoLine*>("debuggerStatus");
  EXPECT_TRUE(QTest::qWaitFor([&] { return status->text().contains("counted and not evaluated"); }))
      << status->text().toStdString();
}

// The run stops once a row; the breakpoint and the variables are those of the chosen element.
TEST(DebuggerPanelOfVectors, ShowsTheChosenElement) {
  DebuggedBranch branch(
      makeAction<CalculatorVectorized>(
          "<CalculatorVectorized abortWhenError='0'><OutputVars><OutputVar name='\"o\"//_n'>x*2"
          "</OutputVar><OutputVar name='\"p\"//_n'>(x &gt; 15 ? \"t\" : 1) + 1</OutputVar>"
          "</OutputVars></CalculatorVectorized>"),
      "a1:F a2:F");
  branch.rows = [](FakeInputPin& pin) {
    pin.push({1, 10});
    pin.push({2, 20});
  };
  branch.columnsOfTable = "alias:U column:U";
  branch.table = [](FakeInputPin& pin) {
    pin.push({"x", "a1"});
    pin.push({"x", "a2"});
  };
  DebugSession session(branch.action());
  Formula formula;
  formula.output.expression = QStringLiteral("x*2");
  formula.variables.emplace_back();
  formula.variables.back().label = QStringLiteral("x");
  DebuggerPanel panel(session, kTexts, [&] { return formula; });
  panel.show();
  auto* element = panel.findChild<QSpinBox*>("sbElement");
  EXPECT_FALSE(element->isVisible());
  QTest::keyClicks(panel.findChild<QPlainTextEdit*>("leBreakpoint"), "x == 20 and o1 == 40");
  panel.findChild<QPushButton*>("pbStartStop")->click();
  const auto value = [&] {
    const auto* model = panel.findChild<QTableView*>("variablesOfRow")->model();
    return model->index(0, 1).data().toString();
  };
  const auto whole = [&] {
    return panel.findChild<QTreeView*>("partsOfExpression")->model()->index(0, 1).data().toString();
  };
  ASSERT_TRUE(QTest::qWaitFor([&] { return value() == "1" && whole() == "2"; }));
  EXPECT_TRUE(element->isVisible());
  const auto result = [&](int output, int column) {
    return panel.findChild<QTableView*>("resultsOfRow")->model()->index(output, column).data();
  };
  EXPECT_EQ(result(0, 0), "o0");
  EXPECT_EQ(result(0, 1), "2");
  std::vector<VariableValue> shown;
  QObject::connect(&panel, &DebuggerPanel::rowShown,
                   [&](const std::vector<VariableValue>& values) { shown = values; });
  int chosen = -1;
  QObject::connect(&panel, &DebuggerPanel::elementChosen, [&](int number) { chosen = number; });
  element->setValue(1);
  EXPECT_EQ(chosen, 1);
  EXPECT_EQ(value(), "10");
  EXPECT_EQ(result(0, 0), "o1");
  EXPECT_EQ(result(0, 1), "20");
  EXPECT_EQ(result(1, 0), "p1");
  ASSERT_EQ(shown.size(), 2u);  // x of this element, and _n
  EXPECT_EQ(shown[0].value.number, 10);
  EXPECT_TRUE(QTest::qWaitFor([&] { return whole() == "20"; }));
  panel.findChild<QPushButton*>("pbRunTo")->click();
  const auto* status = panel.findChild<InfoLine*>("debuggerStatus");
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return status->text().startsWith("Row 1, stopped at a breakpoint."); }));
  // What failed for one element is marked there alone.
  const auto failure = [&] {
    const auto* model = panel.findChild<QTableView*>("resultsOfRow")->model();
    return model->index(1, 1).data(Qt::ToolTipRole).toString().contains("p1");
  };
  EXPECT_EQ(result(1, 1), "null");
  EXPECT_TRUE(failure());
  panel.setElement(0);
  EXPECT_EQ(result(1, 1), "2");
  EXPECT_FALSE(failure());
}

TEST_F(DebuggerPanelTest, CanBeUsedByEveryone) {
  press(Qt::Key_F5);
  ASSERT_TRUE(waitFor("Row 0."));
  const auto expectNone = [](const QStringList& faults) {
    EXPECT_EQ(faults.join('\n').toStdString(), "");
  };
  for (const char* language : {"en", "de"}) {
    const Translation translation({QLatin1String(language)});
    const LargeFonts large(2);
    DebuggerPanel another(session, kTexts, [this] { return formula(); });
    another.updateOutputVars();
    another.show();
    onEveryPage(another, [&] {
      expectNone(controlsWithoutName(another));
      expectNone(controlsOutOfTabReach(another));
      expectNone(keysWithTwoOwners(another));
      expectNone(cutTexts(another));
    });
  }
}

}  // namespace
}  // namespace kelvarin::testing
