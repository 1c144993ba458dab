// The mouse on the canvas: links, moving, selecting, notes, dropping, zooming.
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

#include "gui/canvas/tests/canvas_fixture.h"
#include "gui/document/action_type_mime.h"

namespace kelvarin {
namespace {

using testing::Canvas;

void drop(Canvas& canvas, QMimeData& data, QPoint point) {
  QWidget* viewport = canvas.view.viewport();
  QDragEnterEvent enter(point, Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(viewport, &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDragMoveEvent move(point, Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(viewport, &move);
  QDropEvent drop(point, Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(viewport, &drop);
}

TEST(CanvasMouse, DrawsALinkFromPinToPinInBothDirectionsAndUndoesIt) {
  Canvas canvas;
  canvas.drag(canvas.pin("a", 0, true), canvas.pin("alone", 0, false));
  EXPECT_NE(canvas.link("a", "alone"), kNoId);
  canvas.commands.stack().undo();
  EXPECT_EQ(canvas.link("a", "alone"), kNoId);
  EXPECT_EQ(canvas.scene().items().size(), canvas.graph.links().size() + 4 + 1);

  canvas.drag(canvas.pin("alone", 0, false), canvas.pin("b", 0, true));
  EXPECT_NE(canvas.link("b", "alone"), kNoId);
}

TEST(CanvasMouse, LinksToTheFirstFreePinOfTheBoxOnWhichItIsDropped) {
  Canvas canvas;
  const ActionId join = canvas.commands.addAction(QStringLiteral("Join"), {480, 200});
  const QByteArray name = canvas.graph.name(join).toUtf8();
  canvas.drag(canvas.pin("a", 0, true), canvas.at(name));
  canvas.drag(canvas.pin("b", 0, true), canvas.at(name));
  EXPECT_EQ(canvas.graph.link(canvas.graph.linkInto(join, 0)).from, canvas.id("a"));
  EXPECT_EQ(canvas.graph.link(canvas.graph.linkInto(join, 1)).from, canvas.id("b"));
}

TEST(CanvasMouse, MakesNoCycleAndSaysWhy) {
  Canvas canvas;
  canvas.drag(canvas.pin("b", 0, true), canvas.pin("alone", 0, false));
  const qsizetype count = canvas.graph.links().size();
  QSignalSpy hints(&canvas.view, &CanvasView::hint);
  canvas.press(canvas.pin("alone", 0, true));
  canvas.move(canvas.at("alone") + QPoint(60, 60));
  // The input of `b` is dimmed, that of an action below is not.
  EXPECT_FALSE(canvas.scene().pinFilter()({canvas.id("b"), 0, false}));
  EXPECT_TRUE(canvas.scene().pinFilter()({canvas.id("c"), 0, false}));
  for (const ActionId id : canvas.graph.actions()) {
    if (canvas.graph.pinCount(id, false) > 0) {
      EXPECT_EQ(canvas.scene().pinFilter()({id, 0, false}),
                canvas.graph.refusal(canvas.id("alone"), 0, id, 0).isEmpty());
    }
  }
  canvas.move(canvas.pin("b", 0, false));
  const QString reason = canvas.graph.refusal(canvas.id("alone"), 0, canvas.id("b"), 0);
  EXPECT_FALSE(reason.isEmpty());
  EXPECT_EQ(hints.last()[0].toString(), reason);
  canvas.release(canvas.pin("b", 0, false));
  EXPECT_EQ(canvas.graph.links().size(), count);
  EXPECT_EQ(hints.last()[0].toString(), reason);
  EXPECT_FALSE(canvas.scene().pinFilter());
}

TEST(CanvasMouse, ALinkDroppedOnNothingAsksForAnAction) {
  Canvas canvas;
  QSignalSpy wanted(&canvas.view, &CanvasView::quickAddWanted);
  const QPoint target = canvas.at("alone") + QPoint(200, 100);
  canvas.drag(canvas.pin("a", 0, true), target);
  ASSERT_EQ(wanted.size(), 1);
  EXPECT_EQ(wanted[0][0].value<PinRef>(), (PinRef{canvas.id("a"), 0, true}));
  EXPECT_EQ(canvas.onView(wanted[0][1].toPointF()), target);
}

TEST(CanvasMouse, TheEndOfALinkIsMovedFromItsInputPin) {
  Canvas canvas;
  canvas.drag(canvas.pin("b", 0, false), canvas.pin("alone", 0, false));
  EXPECT_EQ(canvas.link("a", "b"), kNoId);
  EXPECT_NE(canvas.link("a", "alone"), kNoId);
  canvas.commands.stack().undo();
  EXPECT_NE(canvas.link("a", "b"), kNoId);
  EXPECT_EQ(canvas.link("a", "alone"), kNoId);
}

TEST(CanvasMouse, MovesWhatIsSelectedInOneStepAndEscapeCancels) {
  Canvas canvas;
  canvas.click(canvas.at("b"));
  canvas.click(canvas.at("alone"), Qt::ControlModifier);
  const QPointF before = canvas.position("b");
  canvas.drag(canvas.at("b"), canvas.at("b") + QPoint(80, 121));
  const QPointF way = canvas.position("b") - before;
  EXPECT_EQ(way.x(), 80.0);
  EXPECT_EQ(canvas.position("alone"), QPointF(240, 200) + way);
  EXPECT_EQ(canvas.scene().box(canvas.id("b"))->pos(), canvas.position("b"));
  canvas.commands.stack().undo();
  EXPECT_EQ(canvas.position("b"), before);
  EXPECT_EQ(canvas.scene().box(canvas.id("b"))->pos(), before);

  const int steps = canvas.commands.stack().index();
  canvas.press(canvas.at("c"));
  canvas.move(canvas.at("c") + QPoint(0, 150));
  EXPECT_NE(canvas.scene().box(canvas.id("c"))->pos(), canvas.position("c"));
  canvas.key(Qt::Key_Escape);
  EXPECT_EQ(canvas.scene().box(canvas.id("c"))->pos(), canvas.position("c"));
  EXPECT_EQ(canvas.commands.stack().index(), steps);
}

TEST(CanvasMouse, AnActionWithoutLinksGoesIntoTheLinkOnWhichItIsDropped) {
  Canvas canvas;
  const QPoint middle = (canvas.pin("b", 0, true) + canvas.pin("c", 0, false)) / 2;
  canvas.drag(canvas.at("alone"), middle);
  EXPECT_NE(canvas.link("b", "alone"), kNoId);
  EXPECT_NE(canvas.link("alone", "c"), kNoId);
  EXPECT_EQ(canvas.link("b", "c"), kNoId);
  canvas.commands.stack().undo();
  EXPECT_NE(canvas.link("b", "c"), kNoId);
  EXPECT_EQ(canvas.position("alone"), QPointF(240, 200));
}

TEST(CanvasMouse, TypesFromThePaletteGoOntoTheCanvasAndIntoLinks) {
  Canvas canvas;
  QMimeData step;
  step.setData(QLatin1String(kActionTypeMime), "Step");
  drop(canvas, step, (canvas.pin("b", 0, true) + canvas.pin("c", 0, false)) / 2);
  const ActionId added = canvas.view.currentAction();
  ASSERT_NE(added, kNoId);
  EXPECT_EQ(canvas.graph.link(canvas.graph.linkInto(canvas.id("c"), 0)).from, added);

  drop(canvas, step, canvas.at("alone") + QPoint(200, 100));
  EXPECT_TRUE(canvas.graph.linksOf(canvas.view.currentAction()).isEmpty());

  QSignalSpy dropped(&canvas.view, &CanvasView::filesDropped);
  QMimeData files;
  files.setUrls({QUrl::fromLocalFile(QStringLiteral("/data/flights.csv"))});
  drop(canvas, files, canvas.at("alone"));
  ASSERT_EQ(dropped.size(), 1);
  EXPECT_EQ(dropped[0][0].toStringList(), QStringList(QStringLiteral("/data/flights.csv")));
}

TEST(CanvasMouse, TheRubberBandSelectsWhatItTouches) {
  Canvas canvas;
  canvas.drag(canvas.at("a") - QPoint(120, 80), canvas.at("b"));
  EXPECT_EQ(canvas.view.selection().actions, (QSet<ActionId>{canvas.id("a"), canvas.id("b")}));
  EXPECT_TRUE(canvas.view.selection().notes.isEmpty());
  canvas.click(canvas.at("alone") + QPoint(200, 100));
  EXPECT_TRUE(canvas.view.selection().isEmpty());
  // On a link.
  canvas.click((canvas.pin("a", 0, true) + canvas.pin("b", 0, false)) / 2);
  EXPECT_EQ(canvas.view.selection().links, QSet<LinkId>{canvas.link("a", "b")});
}

TEST(CanvasMouse, NotesAreResizedAndEditedWhereTheyStand) {
  Canvas canvas;
  const NoteId note = canvas.graph.notes().front();
  const NoteBox* box = canvas.scene().note(note);
  const QPoint corner = canvas.onView(box->corner().center());
  canvas.drag(corner, corner + QPoint(40, 24));
  EXPECT_EQ(canvas.graph.note(note).rectangle.topLeft(), QPointF(-200, 160));
  EXPECT_GT(canvas.graph.note(note).rectangle.width(), 180);

  const QPoint middle = canvas.onView(box->body().center());
  QTest::mouseDClick(canvas.view.viewport(), Qt::LeftButton, {}, middle);
  auto* field = canvas.view.findChild<QWidget*>(QStringLiteral("canvasNote"));
  ASSERT_NE(field, nullptr);
  QTest::keyClicks(field, QStringLiteral(", and more"));
  QTest::keyClick(field, Qt::Key_Escape);
  EXPECT_EQ(canvas.graph.note(note).text, QStringLiteral("about the data, and more"));
}

TEST(CanvasMouse, ZoomsAboutThePointerWithinItsLimits) {
  Canvas canvas;
  const QPoint pointer = canvas.at("a");
  const QPointF below = canvas.view.mapToScene(pointer);
  const auto wheel = [&canvas, pointer](int delta, Qt::KeyboardModifiers modifiers) {
    QWheelEvent event(pointer, canvas.view.viewport()->mapToGlobal(pointer), {}, {0, delta},
                      Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(canvas.view.viewport(), &event);
  };
  wheel(120, Qt::ControlModifier);
  EXPECT_DOUBLE_EQ(canvas.view.extract().zoom, 1.25);
  EXPECT_LT((canvas.view.mapToScene(pointer) - below).manhattanLength(), 2.0);
  for (int i = 0; i < 30; ++i) {
    wheel(120, Qt::ControlModifier);
  }
  EXPECT_EQ(canvas.view.extract().zoom, kMaximumZoom);
  for (int i = 0; i < 60; ++i) {
    wheel(-120, Qt::ControlModifier);
  }
  EXPECT_EQ(canvas.view.extract().zoom, kMinimumZoom);
  canvas.view.setExtract({1.0, {0, 0}});
  const QPointF before = canvas.view.extract().centre;
  wheel(-120, {});
  EXPECT_GT(canvas.view.extract().centre.y(), before.y());
  EXPECT_EQ(canvas.view.extract().zoom, 1.0);
}

TEST(CanvasMouse, WhatIsInTheMiddleStaysThereWhenPanelsTakeAndGiveBackTheirPart) {
  Canvas canvas;
  canvas.view.setExtract({1.5, {200, 30}});
  const QSize size = canvas.view.size();
  for (const QSize next : {QSize(size.width() / 2, size.height() - 31), size}) {
    canvas.view.resize(next);
    const QPointF moved = canvas.view.extract().centre - QPointF(200, 30);
    EXPECT_LT(moved.manhattanLength(), 2.0) << moved.x() << ' ' << moved.y();
  }
}

TEST(CanvasMouse, PansWithTheMiddleButtonAndWithSpace) {
  Canvas canvas;
  const QPointF before = canvas.view.extract().centre;
  QTest::mousePress(canvas.view.viewport(), Qt::MiddleButton, {}, {300, 300});
  canvas.move({250, 280});
  QTest::mouseRelease(canvas.view.viewport(), Qt::MiddleButton, {}, {250, 280});
  EXPECT_EQ(canvas.view.extract().centre - before, QPointF(50, 20));
  QTest::keyPress(&canvas.view, Qt::Key_Space);
  canvas.press(canvas.at("a"));
  canvas.move(canvas.at("a") + QPoint(50, 20));
  canvas.release(canvas.at("a"));
  QTest::keyRelease(&canvas.view, Qt::Key_Space);
  EXPECT_EQ(canvas.view.extract().centre, before);
  EXPECT_EQ(canvas.position("a"), QPointF(0, 0));
}

}  // namespace
}  // namespace kelvarin
