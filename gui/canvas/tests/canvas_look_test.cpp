// What the canvas shows: marks of states, exports, the overview, alignment.
#include <QPainter>
#include <QSvgRenderer>

#include "gui/canvas/alignment_guides.h"
#include "gui/canvas/heat_legend.h"
#include "gui/canvas/minimap.h"
#include "gui/canvas/state_text.h"
#include "gui/canvas/tests/canvas_fixture.h"
#include "gui/canvas/text_lines.h"

namespace kelvarin {
namespace {

using testing::Canvas;

TEST(CanvasLook, StatesDifferWithoutTheirColours) {
  QList<QImage> marks;
  for (const StateMark mark :
       {StateMark::waiting, StateMark::running, StateMark::done, StateMark::failed,
        StateMark::stopped, StateMark::changed, StateMark::off, StateMark::warning}) {
    QImage image(16, 16, QImage::Format_Grayscale8);
    image.fill(Qt::white);
    QPainter painter(&image);
    drawStateMark(painter, QRectF(0, 0, 16, 16), mark, Qt::black, 0.5);
    painter.end();
    EXPECT_FALSE(marks.contains(image)) << static_cast<int>(mark);
    marks.append(image);
  }
}

TEST(CanvasLook, ABoxSaysInWordsWhatItsStateIs) {
  Canvas canvas;
  const ActionId id = canvas.id("b");
  const auto line = [&canvas, id](const ActionState& state, const QString& problem = {}) {
    return statusLine(canvas.graph, id, state, problem);
  };
  ActionState state;
  EXPECT_EQ(line(state).mark, StateMark::none);
  state.kind = ActionState::Kind::running;
  state.fractionDone = 0.45;
  EXPECT_EQ(line(state).text, QStringLiteral("45 %"));
  state.kind = ActionState::Kind::done;
  state.rowsOut = {3015, 16796};
  EXPECT_EQ(line(state).text, groupedCount(3015) + QStringLiteral(" + ") + groupedCount(16796));
  state.isStale = true;
  EXPECT_EQ(line(state).mark, StateMark::changed);
  EXPECT_EQ(line(state, QStringLiteral("unknown column 'x'")).mark, StateMark::failed);
  canvas.commands.setDisabled({id}, true);
  EXPECT_EQ(line(state).text, QStringLiteral("switched off"));
}

TEST(CanvasLook, CountsAppearOnLinksAndGoWithTheirRun) {
  Canvas canvas;
  ActionState done;
  done.kind = ActionState::Kind::done;
  done.rowsOut = {1234567};
  const QImage before = canvas.view.grab().toImage();
  canvas.view.setStates({{canvas.id("a"), done}});
  EXPECT_EQ(canvas.scene().rowsAt({canvas.id("a"), 0, true}), 1234567);
  EXPECT_EQ(canvas.scene().rowsAt({canvas.id("b"), 0, true}), -1);
  const QImage counted = canvas.view.grab().toImage();
  EXPECT_NE(counted, before);
  canvas.view.setStates({});
  EXPECT_EQ(canvas.view.grab().toImage(), before);
}

TEST(CanvasLook, TheHeatMapSaysItsFiguresInWords) {
  Canvas canvas;
  HeatLegend legend(canvas.view);
  EXPECT_TRUE(legend.isHidden());
  canvas.view.setHeatMap(HeatMap::time);
  EXPECT_TRUE(legend.isVisible());
  EXPECT_TRUE(legend.accessibleName().contains(u"Run the graph"));
  const QImage without = canvas.view.grab().toImage();
  ActionState source;
  source.kind = ActionState::Kind::done;
  source.rowsOut = {4000};
  source.seconds = 0.25;
  ActionState sink = source;
  sink.rowsOut = {};
  sink.rowsIn = {1000};
  sink.seconds = 0.75;
  canvas.view.setStates({{canvas.id("a"), source}, {canvas.id("c"), sink}});
  EXPECT_EQ(canvas.scene().heatScale().of(source), (ActionHeat{0.25 / 0.75, "0.25 s, 25 %"}));
  EXPECT_NE(canvas.view.grab().toImage(), without);
  canvas.view.setHeatMap(HeatMap::rows);
  EXPECT_EQ(canvas.scene().heatScale().of(sink), (ActionHeat{0.25, "1,000, 25 %"}));
  EXPECT_EQ(canvas.scene().heatScale().largestText(), u"4,000 rows");
  canvas.view.setHeatMap(HeatMap::off);
  EXPECT_TRUE(legend.isHidden());
}

TEST(CanvasLook, ExportsAreWholeAndReadable) {
  Canvas canvas;
  canvas.select("b");
  canvas.view.zoomBy(0.2);
  const QByteArray svg = canvas.view.asSvg();
  QSvgRenderer renderer(svg);
  EXPECT_TRUE(renderer.isValid());
  EXPECT_GT(renderer.defaultSize().width(), 700);
  for (const char* text : {">alone<", ">Source<", ">about the data<"}) {
    EXPECT_TRUE(svg.contains(text)) << text;
  }
  const QImage image = canvas.view.asImage(2.0);
  EXPECT_NEAR(image.width() / static_cast<double>(image.height()),
              renderer.viewBoxF().width() / renderer.viewBoxF().height(), 0.01);
  // Neither is marked as selected, and the selection stays.
  const QRgb accent = canvas.scene().colors().accent.rgb();
  for (int x = 0; x < image.width(); ++x) {
    EXPECT_NE(image.pixel(x, image.height() / 3), accent);
  }
  EXPECT_EQ(canvas.view.currentAction(), canvas.id("b"));
}

TEST(CanvasLook, TheOverviewIsThereForManyActionsAndMovesTheCanvas) {
  Canvas canvas;
  auto* map = new Minimap(canvas.view);
  EXPECT_TRUE(map->isHidden());
  canvas.commands.together(QStringLiteral("many"), [&canvas] {
    for (int i = 0; i < 60; ++i) {
      canvas.commands.addAction(QStringLiteral("Step"), {240.0 * i, 400.0});
    }
  });
  EXPECT_TRUE(QTest::qWaitFor([map] { return map->isVisible(); }));
  QTest::mouseClick(map, Qt::LeftButton, {}, {map->width() - 8, map->height() / 2});
  EXPECT_GT(canvas.view.extract().centre.x(), 12'000.0);
}

TEST(CanvasLook, BoxesComeToRestInLineWithOthers) {
  const QRectF moved(0, 0, 100, 50);
  const SnappedMove near = snappedMove(moved, {203, 101}, {{200, 300, 100, 50}}, 6);
  EXPECT_EQ(near.offset, QPointF(200, 104));
  ASSERT_EQ(near.guides.size(), 1);
  EXPECT_EQ(near.guides[0].x1(), near.guides[0].x2());
  const SnappedMove far = snappedMove(moved, {203, 101}, {{900, 900, 100, 50}}, 6);
  EXPECT_EQ(far.offset, QPointF(200, 104));
  EXPECT_TRUE(far.guides.isEmpty());
}

TEST(CanvasLook, LongNamesAreCutInTheirSecondLineOnly) {
  const QStringList lines =
      wrappedLines(QStringLiteral("rows of all airports that were closed"), QFont(), 100, 2);
  ASSERT_EQ(lines.size(), 2);
  EXPECT_TRUE(lines[0].startsWith(QStringLiteral("rows")));
  EXPECT_TRUE(lines[1].endsWith(QChar(0x2026)));
  EXPECT_EQ(wrappedLines(QStringLiteral("late?"), QFont(), 100, 2).size(), 1);
}

}  // namespace
}  // namespace kelvarin
