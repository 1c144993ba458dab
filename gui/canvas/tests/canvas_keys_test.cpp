// The keyboard on the canvas, and what screen readers find there.
#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>

#include "gui/canvas/tests/canvas_fixture.h"

namespace kelvarin {
namespace {

using testing::Canvas;

TEST(CanvasKeys, ArrowsWalkAlongLinksAndAmongSiblings) {
  Canvas canvas;
  canvas.select("a");
  canvas.key(Qt::Key_Right);
  EXPECT_EQ(canvas.view.currentAction(), canvas.id("b"));
  canvas.key(Qt::Key_Down);
  EXPECT_EQ(canvas.view.currentAction(), canvas.id("alone"));
  canvas.key(Qt::Key_Up);
  canvas.key(Qt::Key_Left);
  EXPECT_EQ(canvas.view.currentAction(), canvas.id("a"));
  canvas.key(Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(canvas.view.selection().actions, (QSet<ActionId>{canvas.id("a"), canvas.id("b")}));
}

TEST(CanvasKeys, LinksAreReachedAndDeletedWithoutAMouse) {
  Canvas canvas;
  canvas.select("b");
  canvas.key(Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(canvas.view.selection().links, QSet<LinkId>{canvas.link("b", "c")});
  canvas.key(Qt::Key_Delete);
  EXPECT_EQ(canvas.link("b", "c"), kNoId);
  EXPECT_NE(canvas.id("b"), kNoId);
}

TEST(CanvasKeys, ALinkIsDrawnWithoutAMouse) {
  Canvas canvas;
  canvas.select("a");
  QSignalSpy hints(&canvas.view, &CanvasView::hint);
  canvas.key(Qt::Key_K, Qt::ControlModifier);
  EXPECT_TRUE(hints.last()[0].toString().contains(QStringLiteral("'alone'")));
  canvas.key(Qt::Key_Tab);
  canvas.key(Qt::Key_Left);
  canvas.key(Qt::Key_Return);
  EXPECT_NE(canvas.link("a", "alone"), kNoId);
  canvas.key(Qt::Key_K, Qt::ControlModifier);
  canvas.key(Qt::Key_Escape);
  EXPECT_FALSE(canvas.scene().pinFilter());
  canvas.select("c");
  canvas.key(Qt::Key_K, Qt::ControlModifier);
  EXPECT_FALSE(hints.last()[0].toString().isEmpty());
  EXPECT_EQ(canvas.graph.links().size(), 3);

  canvas.select("a");
  canvas.key(Qt::Key_K, Qt::ControlModifier);
  ASSERT_TRUE(canvas.scene().pinFilter());
  canvas.commands.remove({{canvas.id("a")}, {}, {}});
  EXPECT_FALSE(canvas.scene().pinFilter()) << "the action at its beginning is gone";
  canvas.key(Qt::Key_Tab);
}

TEST(CanvasKeys, TabReadsRowByRowAndLeavesAtTheEnd) {
  Canvas canvas;
  QStringList names;
  canvas.select("a");
  for (int i = 0; i < 4; ++i) {
    names.append(canvas.graph.name(canvas.view.currentAction()));
    canvas.key(Qt::Key_Tab);
  }
  EXPECT_EQ(names.join(u' '), QStringLiteral("a b c alone"));
  EXPECT_EQ(canvas.view.selection().notes.size(), 1);
  canvas.key(Qt::Key_Tab);
  EXPECT_EQ(canvas.view.selection().notes.size(), 1);
  canvas.key(Qt::Key_Backtab);
  EXPECT_EQ(canvas.view.currentAction(), canvas.id("alone"));
}

TEST(CanvasKeys, LettersAskForAnActionBehindTheCurrentOne) {
  Canvas canvas;
  canvas.select("b");
  QSignalSpy wanted(&canvas.view, &CanvasView::quickAddWanted);
  canvas.key(Qt::Key_F);
  ASSERT_EQ(wanted.size(), 1);
  EXPECT_EQ(wanted[0][0].value<PinRef>(), (PinRef{canvas.id("b"), 0, true}));
  EXPECT_EQ(wanted[0][3].toString(), QStringLiteral("f"));
}

TEST(CanvasKeys, RenamesOnTheBoxAndRefusesANameThatIsTaken) {
  Canvas canvas;
  canvas.select("b");
  canvas.key(Qt::Key_F2);
  auto* field = canvas.view.findChild<QLineEdit*>(QStringLiteral("canvasName"));
  ASSERT_NE(field, nullptr);
  QSignalSpy hints(&canvas.view, &CanvasView::hint);
  QTest::keyClicks(field, QStringLiteral("a"));
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_TRUE(hints.last()[0].toString().contains(QStringLiteral("'a'")));
  EXPECT_TRUE(field->isVisible());
  QTest::keyClicks(field, QStringLiteral("bc"));
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_NE(canvas.id("abc"), kNoId);
  EXPECT_FALSE(field->isVisible());

  canvas.key(Qt::Key_F2);
  field = canvas.view.viewport()->findChildren<QLineEdit*>().last();
  QTest::keyClicks(field, QStringLiteral("dropped"));
  QTest::keyClick(field, Qt::Key_Escape);
  EXPECT_NE(canvas.id("abc"), kNoId);
  canvas.commands.stack().undo();
  EXPECT_NE(canvas.id("b"), kNoId);
}

TEST(CanvasKeys, DeletesClosesGapsDuplicatesAndSwitchesOff) {
  Canvas canvas;
  canvas.select("b");
  canvas.key(Qt::Key_Delete, Qt::ControlModifier);
  EXPECT_NE(canvas.link("a", "c"), kNoId);
  canvas.commands.stack().undo();

  canvas.select("b");
  canvas.key(Qt::Key_E, Qt::ControlModifier);
  EXPECT_TRUE(canvas.graph.isDisabled(canvas.id("b")));
  canvas.key(Qt::Key_E, Qt::ControlModifier);
  EXPECT_FALSE(canvas.graph.isDisabled(canvas.id("b")));

  canvas.key(Qt::Key_A, Qt::ControlModifier);
  canvas.key(Qt::Key_D, Qt::ControlModifier);
  EXPECT_EQ(canvas.graph.actionCount(), 8);
  EXPECT_EQ(canvas.view.selection().actions.size(), 4);
  canvas.key(Qt::Key_Delete);
  EXPECT_EQ(canvas.graph.actionCount(), 4);
}

TEST(CanvasKeys, TheClipboardHasTheGraphAsText) {
  Canvas canvas;
  canvas.view.setSelection({{canvas.id("a"), canvas.id("b")}, {}, {}});
  canvas.key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(QStringLiteral("<Source")));
  canvas.key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(canvas.graph.actionCount(), 6);
  EXPECT_EQ(canvas.graph.links().size(), 3);
  QGuiApplication::clipboard()->setText(QStringLiteral("no graph"));
  QSignalSpy hints(&canvas.view, &CanvasView::hint);
  canvas.key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_FALSE(hints.last()[0].toString().isEmpty());
  EXPECT_EQ(canvas.graph.actionCount(), 6);
}

TEST(CanvasKeys, CtrlAndArrowsMoveInOneStepOfUndo) {
  Canvas canvas;
  canvas.select("alone");
  const int steps = canvas.commands.stack().index();
  for (int i = 0; i < 3; ++i) {
    canvas.key(Qt::Key_Right, Qt::ControlModifier);
  }
  EXPECT_EQ(canvas.position("alone"), QPointF(240 + 3 * kGridStep, 200));
  EXPECT_EQ(canvas.commands.stack().index(), steps + 1);
}

TEST(CanvasKeys, ScreenReadersFindEveryActionWithStateAndLinks) {
  Canvas canvas;
  ActionState done;
  done.kind = ActionState::Kind::done;
  done.rowsOut = {19811};
  canvas.view.setStates({{canvas.id("b"), done}});
  QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&canvas.view);
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->childCount(), 5);
  EXPECT_EQ(list->child(4)->text(QAccessible::Name), QStringLiteral("Note: about the data"));
  QAccessibleInterface* action = list->child(1);
  const QString rows = QLocale().toString(19811);
  EXPECT_EQ(action->text(QAccessible::Name),
            QStringLiteral("b, Step, done, %1 rows, reads from a, feeds c").arg(rows));
  EXPECT_EQ(list->indexOfChild(action), 1);
  EXPECT_TRUE(action->rect().contains(canvas.view.viewport()->mapToGlobal(canvas.at("b"))));
  QSignalSpy opened(&canvas.view, &CanvasView::openWanted);
  action->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(canvas.view.currentAction(), canvas.id("b"));
  EXPECT_EQ(opened.size(), 1);
  canvas.select("b");
  canvas.key(Qt::Key_Delete);
  EXPECT_EQ(list->childCount(), 4);
  EXPECT_FALSE(action->isValid());
}

}  // namespace
}  // namespace kelvarin
