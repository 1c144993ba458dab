// The field of an expression with real keys; the service's answers are those of the test where they
// must come at a certain moment.
#include <algorithm>

#include <gtest/gtest.h>
#include <QApplication>
#include <QClipboard>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QToolTip>
#include <QVBoxLayout>

#include "host/widget_testing/key_times.h"
#include "host/widgets/icon_button.h"
#include "host/widgets/info_line.h"
#include "ui/language/formula_service.h"
#include "ui/widgets/call_tip_window.h"
#include "ui/widgets/completion_popup.h"
#include "ui/widgets/expression_colors.h"
#include "ui/widgets/expression_field.h"
#include "ui/widgets/k_plain_text_edit.h"
#include "ui/widgets/variable_drag.h"

namespace kelvarin {
namespace {

InputVariable variable(const QString& name) {
  InputVariable result;
  result.columns = {name};
  result.meta = MetaTypeColumn::number;
  return result;
}

Formula formulaOf(int extraColumns = 0) {
  Formula formula;
  formula.output.name = QStringLiteral("total");
  formula.output.meta = MetaTypeColumn::number;
  formula.variables = {variable(QStringLiteral("price")), variable(QStringLiteral("quantity"))};
  formula.columns.isKnown = true;
  for (const char* name : {"price", "quantity", "discount"}) {
    formula.columns.columns.push_back({QString::fromLatin1(name), MetaTypeColumn::number});
  }
  for (int i = 0; i < extraColumns; ++i) {
    const QString name = QStringLiteral("column_%1").arg(i);
    formula.columns.columns.push_back({name, MetaTypeColumn::number});
    formula.variables.push_back(variable(name));
  }
  return formula;
}

class ExpressionFieldTest : public ::testing::Test {
 protected:
  ExpressionFieldTest() : m_field(&m_window), m_other(&m_window) {
    QSettings().clear();
    auto* layout = new QVBoxLayout(&m_window);
    layout->addWidget(&m_field);
    layout->addWidget(&m_other);
    m_field.setFormula(formulaOf());
    m_window.resize(640, 400);
    m_window.show();
    m_window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
    m_field.setFocus();
  }

  QPlainTextEdit* editor() { return m_field.editor(); }
  CompletionPopup& popup() { return *m_field.findChild<CompletionPopup*>(); }
  CallTipWindow& callTip() { return *m_field.findChild<CallTipWindow*>(); }
  FormulaService& service() { return *m_field.findChild<FormulaService*>(); }

  void type(const char* text) { QTest::keyClicks(editor(), QString::fromLatin1(text)); }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(editor(), key, modifiers);
  }
  std::string text() const { return m_field.expression().toStdString(); }

  // The answer to the field's next question, in whatever way the service answers it as well.
  FormulaAnswer faultAnswer(quint64 version) {
    FormulaAnswer answer;
    answer.version = version;
    answer.check = ExpressionCheck::failure(QStringLiteral("unknown"));
    answer.message = QStringLiteral("unknown name 'prise'");
    answer.faultStart = 4;
    answer.faultSize = 5;
    answer.fixes = {{QStringLiteral("Replace by 'price'"), 4, 5, QStringLiteral("price"), {}}};
    return answer;
  }
  // Of the question that is open: the service counts them.
  quint64 nextVersion() { return service().ask(formulaOf()) + 1; }

  void answerNow(const FormulaAnswer& answer) {
    m_field.setFormula(formulaOf());
    QTest::qWait(1);
    emit service().answered(answer);
  }

  std::vector<QTextCursor> squiggles() {
    std::vector<QTextCursor> result;
    for (const QTextEdit::ExtraSelection& mark : editor()->extraSelections()) {
      if (mark.format.underlineStyle() == QTextCharFormat::WaveUnderline) {
        result.push_back(mark.cursor);
      }
    }
    return result;
  }

  QWidget m_window;
  ExpressionField m_field;
  QLineEdit m_other;
};

TEST_F(ExpressionFieldTest, VariablesReplaceTheDefaultAndElseStandBetweenBlanksAtTheCursor) {
  m_field.setExpression(QStringLiteral("1"));
  m_field.insertVariable(QStringLiteral("price"));
  EXPECT_EQ(text(), "price");
  m_field.setExpression(QStringLiteral("a+b"));
  press(Qt::Key_Right);
  press(Qt::Key_Right);
  m_other.setFocus();
  m_field.insertVariable(QStringLiteral("price"));
  EXPECT_EQ(text(), "a+ price b");
  EXPECT_TRUE(editor()->hasFocus());
}

TEST_F(ExpressionFieldTest, VariablesAreDroppedWhereThePointerIs) {
  m_field.setExpression(QStringLiteral("a+b"));
  QMimeData names;
  names.setData(kVariableNamesFormat, "price");
  names.setText(QStringLiteral("as text"));
  QTextCursor cursor = editor()->textCursor();
  cursor.setPosition(1);
  const QPointF position = editor()->cursorRect(cursor).center();
  QDragEnterEvent enter(position.toPoint(), Qt::MoveAction, &names, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(editor()->viewport(), &enter);
  QDropEvent drop(position, Qt::MoveAction, &names, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(editor()->viewport(), &drop);
  EXPECT_EQ(text(), "a price +b");
}

TEST_F(ExpressionFieldTest, TabLeavesEnterMakesALine) {
  type("1 +");
  press(Qt::Key_Return);
  press(Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(text(), "1 +\n\n");
  EXPECT_EQ(editor()->document()->blockCount(), 3);
  QSignalSpy finished(&m_field, &ExpressionField::editingFinished);
  press(Qt::Key_Tab);
  EXPECT_FALSE(editor()->hasFocus());
  EXPECT_EQ(finished.count(), 1);
}

TEST_F(ExpressionFieldTest, OneLineFinishesOnEnterAndSpeaksOnlyOfWhatIsWrong) {
  ExpressionField line(&m_window, ExpressionField::Form::line);
  m_window.layout()->addWidget(&line);
  line.setFormula(formulaOf());
  QTest::qWait(1);
  const int height = line.height();
  EXPECT_LT(height, 2 * m_other.height());
  QApplication::clipboard()->setText(QStringLiteral("price\n> 1"));
  line.editor()->setFocus();
  line.editor()->paste();
  EXPECT_EQ(line.expression().toStdString(), "price > 1");
  QSignalSpy finished(&line, &ExpressionField::editingFinished);
  QSignalSpy returned(&line, &ExpressionField::returnPressed);
  QTest::keyClick(line.editor(), Qt::Key_Return);
  EXPECT_EQ(finished.count(), 1);
  EXPECT_EQ(returned.count(), 1);
  EXPECT_EQ(line.expression().toStdString(), "price > 1");
  QTRY_VERIFY(line.answer().check.isCompiled());
  EXPECT_FALSE(line.verdict()->isVisible());
  line.setExpression(QStringLiteral("prise > 1"));
  QTRY_VERIFY(line.verdict()->isVisible());
  QTRY_VERIFY(line.height() > height);
  line.setExpression({});
  QTRY_VERIFY(!line.verdict()->isVisible());
  QTest::qWait(1);
  EXPECT_EQ(line.height(), height);
}

TEST_F(ExpressionFieldTest, CompletionOpensAfterTwoLettersAndEnterTakesTheLine) {
  type("p");
  EXPECT_FALSE(popup().isVisible());
  type("r");
  ASSERT_TRUE(popup().isVisible());
  EXPECT_TRUE(editor()->hasFocus());
  press(Qt::Key_Return);
  EXPECT_FALSE(popup().isVisible());
  EXPECT_EQ(text(), "price");
  type(" + pri");
  ASSERT_TRUE(popup().isVisible());
  type("ce");
  EXPECT_FALSE(popup().isVisible()) << "nothing is left to complete";
}

TEST_F(ExpressionFieldTest, EscClosesTheListForTheWordAndCtrlSpaceOpensIt) {
  type("pr");
  press(Qt::Key_Escape);
  EXPECT_FALSE(popup().isVisible());
  type("i");
  EXPECT_FALSE(popup().isVisible());
  press(Qt::Key_Space, Qt::ControlModifier);
  EXPECT_TRUE(popup().isVisible());
  m_other.setFocus();
  EXPECT_FALSE(popup().isVisible());
}

TEST_F(ExpressionFieldTest, ChoosingAColumnAsksForItsVariable) {
  QSignalSpy wanted(&m_field, &ExpressionField::columnWanted);
  type("disc");
  ASSERT_TRUE(popup().isVisible());
  press(Qt::Key_Tab);
  EXPECT_EQ(text(), "discount");
  ASSERT_EQ(wanted.count(), 1);
  EXPECT_EQ(wanted[0][0].toString(), QStringLiteral("discount"));
}

TEST_F(ExpressionFieldTest, AFunctionComesWithBracketsAndItsCallTip) {
  type("nvl");
  ASSERT_TRUE(popup().isVisible());
  press(Qt::Key_Return);
  EXPECT_EQ(text(), "nvl()");
  EXPECT_EQ(editor()->textCursor().position(), 4);
  EXPECT_TRUE(callTip().isVisible());
  const QString first = callTip().text();
  type("1,");
  EXPECT_TRUE(callTip().isVisible());
  EXPECT_NE(callTip().text(), first) << "the second argument is marked";
  type("2)");
  EXPECT_EQ(text(), "nvl(1,2)");
  EXPECT_FALSE(callTip().isVisible());
  press(Qt::Key_Left);
  press(Qt::Key_Space, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_TRUE(callTip().isVisible());
  press(Qt::Key_Escape);
  EXPECT_FALSE(callTip().isVisible());
}

TEST_F(ExpressionFieldTest, ALateAnswerIsThrownAway) {
  type("1 + prise");
  press(Qt::Key_Escape);
  const quint64 old = nextVersion() - 1;
  QSignalSpy answered(&m_field, &ExpressionField::answered);
  emit service().answered(faultAnswer(old));
  EXPECT_EQ(answered.count(), 0);
  EXPECT_TRUE(squiggles().empty());
}

TEST_F(ExpressionFieldTest, AltEnterMakesTheChangeAsSoonAsItIsKnown) {
  type("1 + prise");
  press(Qt::Key_Escape);
  const quint64 version = nextVersion();
  press(Qt::Key_Return, Qt::AltModifier);
  emit service().answered(faultAnswer(version));
  EXPECT_EQ(text(), "1 + price");
  editor()->undo();
  EXPECT_EQ(text(), "1 + prise");
}

TEST_F(ExpressionFieldTest, AFaultIsMarkedAndSaidInWords) {
  type("1 + prise");
  press(Qt::Key_Escape);
  answerNow(faultAnswer(nextVersion()));
  ASSERT_EQ(squiggles().size(), 1u);
  EXPECT_EQ(squiggles()[0].selectedText(), QStringLiteral("prise"));
  EXPECT_TRUE(m_field.findChild<InfoLine*>()->text().contains(QStringLiteral("unknown name")));
  editor()->moveCursor(QTextCursor::Start);
  type("2 * ");
  EXPECT_EQ(squiggles()[0].selectedText(), QStringLiteral("prise")) << "it moves with the text";
}

TEST_F(ExpressionFieldTest, AMisspeltColumnIsFoundAndBoundByAltEnter) {
  QSignalSpy wanted(&m_field, &ExpressionField::columnWanted);
  type("1 - discout");
  press(Qt::Key_Escape);
  QSignalSpy answered(&m_field, &ExpressionField::answered);
  ASSERT_TRUE(answered.wait(5000));
  EXPECT_FALSE(m_field.answer().message.isEmpty());
  press(Qt::Key_Return, Qt::AltModifier);
  EXPECT_EQ(text(), "1 - discount");
  ASSERT_EQ(wanted.count(), 1);
  EXPECT_EQ(wanted[0][0].toString(), QStringLiteral("discount"));
}

TEST_F(ExpressionFieldTest, PointingAtASignShowsTheValueOfItsPart) {
  Formula formula = formulaOf();
  formula.variables[0].number = 24.9;
  m_field.setFormula(formula);
  m_field.setExpression(QStringLiteral("1 + price * 2"));
  QTextCursor cursor = editor()->textCursor();
  cursor.setPosition(10);
  const QRect sign = editor()->cursorRect(cursor);
  const QPoint middle(sign.left() + editor()->fontMetrics().averageCharWidth() / 3,
                      sign.center().y());
  QHelpEvent rest(QEvent::ToolTip, middle, editor()->viewport()->mapToGlobal(middle));
  QApplication::sendEvent(editor()->viewport(), &rest);
  ASSERT_TRUE(QTest::qWaitFor([] { return !QToolTip::text().isEmpty(); }, 5000));
  EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("price * 2 = 49.8")))
      << QToolTip::text().toStdString();
  type("0");
  EXPECT_TRUE(QTest::qWaitFor([] { return QToolTip::text().isEmpty(); }, 5000));
}

TEST_F(ExpressionFieldTest, OnlyWhatAUserSelectsShowsItsValue) {
  m_field.setExpression(QStringLiteral("price * 2"));
  m_field.showPart(0, 5);
  EXPECT_FALSE(QTest::qWaitFor([] { return !QToolTip::text().isEmpty(); }, 600));
  press(Qt::Key_End);
  press(Qt::Key_Home, Qt::ShiftModifier);
  EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::text().isEmpty(); }, 5000));
}

TEST_F(ExpressionFieldTest, F1AsksAboutTheWordAtTheCursor) {
  QSignalSpy wanted(&m_field, &ExpressionField::helpWanted);
  type("1 + nvl(");
  press(Qt::Key_Left);
  press(Qt::Key_F1);
  ASSERT_EQ(wanted.count(), 1);
  EXPECT_EQ(wanted[0][0].toString(), QStringLiteral("nvl"));
}

TEST_F(ExpressionFieldTest, WhatIsMissingAtTheEndIsMarkedUnderTheLastCharacter) {
  type("1 +");
  FormulaAnswer answer = faultAnswer(nextVersion());
  answer.faultStart = 3;
  answer.faultSize = 0;
  answerNow(answer);
  ASSERT_EQ(squiggles().size(), 1u);
  EXPECT_EQ(squiggles()[0].selectedText(), QStringLiteral("+"));
}

TEST_F(ExpressionFieldTest, TheHistoryGoesBackAndReturnsToWhatWasTyped) {
  m_field.setHistoryKey(QStringLiteral("expression_field_test"));
  for (const char* expression : {"1 + 1", "2 + 2"}) {
    m_field.setExpression(QString::fromLatin1(expression));
    m_field.setFocus();
    m_other.setFocus();
  }
  m_field.setFocus();
  editor()->selectAll();
  type("3");
  press(Qt::Key_Up, Qt::AltModifier);
  EXPECT_EQ(text(), "2 + 2");
  press(Qt::Key_Up, Qt::AltModifier);
  EXPECT_EQ(text(), "1 + 1");
  press(Qt::Key_Down, Qt::AltModifier);
  press(Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(text(), "3");
  editor()->undo();
  EXPECT_EQ(text(), "2 + 2") << "each step is one for undo";
}

TEST_F(ExpressionFieldTest, TheMenuOfTheHistoryStarsTheExpression) {
  m_field.setHistoryKey(QStringLiteral("expression_field_test_stars"));
  m_field.setExpression(QStringLiteral("price && 1"));
  auto* button = m_field.findChild<IconButton*>();
  const auto filled = [&] {
    emit button->menu()->aboutToShow();
    return button->menu()->actions();
  };
  const QString offered = filled().front()->text();
  filled().front()->trigger();
  EXPECT_NE(filled().front()->text(), offered) << "now the star can be removed";
  EXPECT_EQ(filled().back()->text(), QStringLiteral("price &&&& 1")) << "no mnemonic";
  filled().front()->trigger();
  EXPECT_EQ(filled().front()->text(), offered);
}

TEST_F(ExpressionFieldTest, AMenuOfTheFieldIsNoEndOfEditing) {
  QSignalSpy finished(&m_field, &ExpressionField::editingFinished);
  QMenu own(&m_field);
  own.addAction(QStringLiteral("own"));
  own.popup(m_field.mapToGlobal(QPoint()));
  own.close();
  EXPECT_EQ(finished.count(), 0);
  QMenu foreign(&m_window);
  foreign.addAction(QStringLiteral("foreign"));
  foreign.popup(m_field.mapToGlobal(QPoint()));
  foreign.close();
  EXPECT_EQ(finished.count(), 1);
}

TEST_F(ExpressionFieldTest, EachControlHasANameAndIsReachedByTab) {
  answerNow(faultAnswer(nextVersion()));
  int count = 0;
  for (QWidget* widget = m_field.nextInFocusChain(); widget != &m_field;
       widget = widget->nextInFocusChain()) {
    if (!m_field.isAncestorOf(widget) || !widget->isVisible() ||
        !(widget->focusPolicy() & Qt::TabFocus)) {
      continue;
    }
    ++count;
    EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->metaObject()->className();
  }
  EXPECT_GE(count, 3) << "the editor, the links of the verdict, the history";
}

TEST_F(ExpressionFieldTest, TheStyleSheetsAreExactAndKeepTheZoom) {
  const QString normal = QStringLiteral("background-color: #FFFFFF; background-image: none;");
  EXPECT_EQ(editor()->styleSheet(), normal);
  press(Qt::Key_Plus, Qt::ControlModifier);
  const int size = editor()->document()->defaultFont().pointSize();
  m_field.setRefused(true);
  EXPECT_EQ(editor()->styleSheet(),
            QStringLiteral("background-color: #FFE8E8; background-image: "
                           "url(:/KelvarinMathParser/errorExplanation.png);"
                           "background-repeat:no-repeat;background-position:center bottom;"));
  EXPECT_EQ(editor()->document()->defaultFont().pointSize(), size);
  m_field.setRefused(false);
  EXPECT_EQ(editor()->styleSheet(), normal);
}

TEST_F(ExpressionFieldTest, LaterLinesAreColoredAnewWhenAnEarlierOneChanges) {
  m_field.setExpression(QStringLiteral("1 +\nprice"));
  const auto colorOfSecondLine = [this] {
    const auto formats = editor()->document()->findBlockByNumber(1).layout()->formats();
    return formats.isEmpty() ? QColor() : formats.first().format.foreground().color();
  };
  EXPECT_EQ(colorOfSecondLine(), expression_colors::kVariable);
  editor()->moveCursor(QTextCursor::Start);
  press(Qt::Key_Space);
  m_field.editor()->insertPlainText(QStringLiteral("\""));
  EXPECT_NE(colorOfSecondLine(), expression_colors::kVariable);
}

TEST_F(ExpressionFieldTest, NoKeyBlocksInALongExpressionOverManyColumns) {
  m_field.setFormula(formulaOf(1000));
  QString expression;
  for (int i = 0; expression.size() < 10000; ++i) {
    expression += QStringLiteral("column_%1 * 2.5 + ").arg(i % 1000);
  }
  m_field.setExpression(expression + QStringLiteral("price"));
  QTextCursor cursor = editor()->textCursor();
  cursor.setPosition(5000);
  editor()->setTextCursor(cursor);
  QTest::qWait(300);  // until the first answer is there, and all colours are known
  const testing::KeyTimes times =
      testing::timeOfKeys(*editor(), QStringLiteral(" colu nvl(12.5,\"a\")"), 1000);
  std::printf("a key takes %.1f ms, 99.9th percentile %.1f ms\n", times.median,
              times.percentile999);
  EXPECT_LT(times.percentile999, 20.0);
}

}  // namespace
}  // namespace kelvarin
