// What anyone expects of the editors as a whole: they can be used without a mouse, cut nothing,
// survive whatever is done to them, and debug the action while it is edited.
#include <QCheckBox>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

#include "actions/calculator_vectorized/calculator_vectorized.h"
#include "host/widget_testing/random_events.h"
#include "host/widget_testing/widget_walk.h"
#include "host/widgets/info_line.h"
#include "host/widgets/translation.h"
#include "ui/debugger/tests/debugged_branch.h"
#include "ui/editors/interface_action_filter_rows.h"
#include "ui/editors/interface_action_math_parser.h"
#include "ui/editors/tests/editor_fixture.h"

namespace kelvarin::testing {

namespace {

constexpr char kFilter[] =
    "<FilterRows name='f'><Expression>x &gt; 1</Expression><InputVars><InputVar column='x'/>"
    "</InputVars></FilterRows>";
constexpr char kOutputs[] =
    " name='c'><InputVars><InputVar column='x'/></InputVars><OutputVars><OutputVar name='\"a\"'>"
    "x + 1</OutputVar><OutputVar name='\"b\"' meta='U'>\"t\"</OutputVar></OutputVars>";
const std::string kCalculator = "<Calculator" + std::string(kOutputs) + "</Calculator>";
const std::string kVectorized =
    "<CalculatorVectorized" + std::string(kOutputs) + "</CalculatorVectorized>";

constexpr int kNarrow = 380;
constexpr QSize kInWindow(1020, 574);  // of 1280 x 800
constexpr int kRandomEvents = 2000;

template <typename Editor, typename Action>
class WalkTest : public EditorTest<Editor, Action> {
 protected:
  WalkTest() {
    this->m_rowsOfPin[0] = textRows({QStringLiteral("x")}, {{QStringLiteral("1")}});
    this->m_rowsOfPin[1] = textRows({QStringLiteral("AliasName"), QStringLiteral("VarName")},
                                    {{QStringLiteral("v"), QStringLiteral("x")}});
  }

  void expectNone(const QStringList& faults) {
    EXPECT_TRUE(faults.isEmpty()) << faults.join(u'\n').toStdString();
  }
  // Of the page of the expression.
  int scrolledHeight() {
    for (const QScrollArea* area : this->m_editor->template findChildren<QScrollArea*>()) {
      if (area->isAncestorOf(&this->field())) {
        return area->verticalScrollBar()->maximum();
      }
    }
    return -1;
  }
  template <typename... Arguments>
  void walk(const std::string& xml, Arguments... arguments) {
    this->open(xml, arguments...);
    QWidget& editor = *this->m_editor;
    editor.resize(kInWindow);
    QCoreApplication::processEvents();
    EXPECT_TRUE(QTest::qWaitFor([&] { return scrolledHeight() == 0; })) << scrolledHeight();
    onEveryPage(editor, [&] {
      expectNone(controlsWithoutName(editor));
      expectNone(controlsOutOfTabReach(editor));
      expectNone(keysWithTwoOwners(editor));
      expectNone(mnemonicsWithTwoOwners(editor));
      expectNone(cutTexts(editor));
    });
    EXPECT_LE(editor.minimumSizeHint().width(), kNarrow);
    editor.resize(kNarrow, 900);
    QCoreApplication::processEvents();
    onEveryPage(editor, [&] { expectNone(cutTexts(editor)); });

    const LargeFonts fonts(2.0);
    const Translation translation({"de"});
    this->open(xml, arguments...);
    onEveryPage(*this->m_editor, [&] {
      expectNone(cutTexts(*this->m_editor));
      expectNone(mnemonicsWithTwoOwners(*this->m_editor, QStringLiteral("de")));
    });
  }
  template <typename... Arguments>
  void shake(const std::string& xml, Arguments... arguments) {
    this->open(xml, arguments...);
    sendRandomEvents(*this->m_editor, kRandomEvents);
    this->m_editor->commit();
    const std::string after = this->saved();
    this->open(after, arguments...);
    EXPECT_EQ(this->saved(), after);
  }
};

using FilterWalk = WalkTest<Interface_actionFilterRows, FilterRows>;
using CalculatorWalk = WalkTest<Interface_actionMathParser, Calculator>;
using VectorizedWalk = WalkTest<Interface_actionMathParser, CalculatorVectorized>;

TEST_F(FilterWalk, IsWithinReachAndCutsNothing) {
  walk(kFilter);
}
TEST_F(CalculatorWalk, IsWithinReachAndCutsNothing) {
  walk(kCalculator, int{Interface_actionMathParser::kCalculator});
}
TEST_F(VectorizedWalk, IsWithinReachAndCutsNothing) {
  walk(kVectorized, int{Interface_actionMathParser::kVectorized});
}
TEST_F(FilterWalk, SurvivesRandomEvents) {
  shake(kFilter);
}
TEST_F(CalculatorWalk, SurvivesRandomEvents) {
  shake(kCalculator, int{Interface_actionMathParser::kCalculator});
}
TEST_F(VectorizedWalk, SurvivesRandomEvents) {
  shake(kVectorized, int{Interface_actionMathParser::kVectorized});
}

class DebugRunTest : public ::testing::Test {
 protected:
  DebugRunTest() {
    branch.rows = [](FakeInputPin& pin) { pin.push({5}, 1000); };
    editor.show();
    editor.activateWindow();
  }
  QPushButton& button(const char* name) {
    return *editor.findChild<QPushButton*>(QLatin1String(name));
  }
  QString shownValue() {
    const auto& variables = *editor.findChild<VariablesModel*>();
    return variables.index(0, VariablesModel::kDebugValue).data().toString();
  }
  FilterRows& action() { return static_cast<FilterRows&>(branch.action()); }

  DebuggedBranch branch{makeAction<FilterRows>(kFilter), "x:F"};
  Interface_actionFilterRows editor{nullptr, action()};
};

TEST_F(DebugRunTest, ShowsValuesAndCommitsEditsAtTheEnd) {
  EXPECT_EQ(button("pbStartStop").text(), "Start");
  EXPECT_EQ(button("pbNext").text(), "Eval Next");
  auto& field = *editor.findChild<ExpressionField*>(QStringLiteral("expression"));
  field.editor()->setPlainText(QStringLiteral("x > 2"));
  button("pbStartStop").click();
  EXPECT_EQ(action().settings().expression, "x > 2");
  EXPECT_EQ(button("pbStartStop").text(), "STOP");
  EXPECT_TRUE(QTest::qWaitFor([&] { return shownValue() == "5"; }));

  field.editor()->setPlainText(QStringLiteral("x > 3"));
  editor.findChild<QCheckBox*>(QStringLiteral("cbUseJIT"))->click();
  editor.commit();
  EXPECT_EQ(action().settings().expression, "x > 2");
  EXPECT_EQ(editor.uncommittedState(),
            (QMap<QString, QString>{{"expression", "x > 3"}, {"useJIT", "0"}}));
  bool isMarked = false;
  for (const InfoLine* line : editor.findChildren<InfoLine*>()) {
    isMarked = isMarked || line->text().contains("takes effect at the next Start");
  }
  EXPECT_TRUE(isMarked);
  editor.on_pbNext_clicked();
  editor.on_pbStartStop_clicked();
  EXPECT_TRUE(QTest::qWaitFor([&] { return action().settings().expression == "x > 3"; }));
  EXPECT_EQ(button("pbStartStop").text(), "Start");
  EXPECT_TRUE(editor.uncommittedState().isEmpty());
}

TEST_F(DebugRunTest, NeedsTheExpertMode) {
  branch.mode = GlobalUserMode::simple;
  editor.hide();
  editor.show();
  for (const char* name : {"pbStartStop", "pbNext"}) {
    EXPECT_FALSE(button(name).isEnabled());
    EXPECT_EQ(button(name).toolTip(), "Switch To Expert Mode to Activate");
  }
}

TEST_F(DebugRunTest, CanBeClosedInTheMiddle) {
  auto other = std::make_unique<Interface_actionFilterRows>(nullptr, action());
  other->show();
  other->on_pbStartStop_clicked();
  other.reset();
  EXPECT_EQ(action().settings().expression, "x > 1");
}

}  // namespace

}  // namespace kelvarin::testing
