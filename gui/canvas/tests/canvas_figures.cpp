#include "gui/canvas/tests/canvas_figures.h"

#include <algorithm>
#include <ctime>
#include <functional>
#include <random>

#include <QApplication>
#include <QScrollBar>

#include "gui/canvas/minimap.h"
#include "gui/canvas/tests/canvas_fixture.h"

namespace kelvarin::testing {

namespace {

constexpr int kActions = 1'000;
constexpr int kLinks = 1'500;
constexpr int kRows = 25;  // of boxes
constexpr int kFrames = 100;
constexpr double kFrame = 16.0;
constexpr int kSettled = 200;  // milliseconds until the overview is drawn

// In layers; links reach some rows up or down, as in a graph that was arranged.
QByteArray largeGraph() {
  std::minstd_rand random(20);
  QByteArray actions;
  QByteArray links;
  for (int i = 0; i < kActions; ++i) {
    actions += "<Join name='step " + QByteArray::number(i) + "' x='" +
               QByteArray::number(i / kRows * 240) + "' y='" + QByteArray::number(i % kRows * 112) +
               "'/>";
  }
  int count = 0;
  for (int i = kRows; i < kActions && count < kLinks; ++i) {
    for (int pin = 0; pin < 2 && count < kLinks; ++pin, ++count) {
      const int row = i % kRows + static_cast<int>(random() % 13) - 6;
      const int from = (i / kRows - 1) * kRows + std::clamp(row, 0, kRows - 1);
      links += "<Link from='step " + QByteArray::number(from) + "' to='step " +
               QByteArray::number(i) + "' toPin='" + QByteArray::number(pin) + "'/>";
    }
  }
  return "<KelvarinGraph version='1.0'><Actions>" + actions + "</Actions><Links>" + links +
         "</Links></KelvarinGraph>";
}

// Of this thread on the processor: nothing here waits, and what else the machine does is not meant.
double processorMilliseconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double millisecondsOf(const std::function<void()>& work) {
  const double start = processorMilliseconds();
  work();
  // The scene collects what changed in one round of events, and the view draws in the next one.
  for (int i = 0; i < 3; ++i) {
    QApplication::processEvents();
  }
  return processorMilliseconds() - start;
}

// The 99th percentile.
double slowFrame(const std::function<void(int)>& frame) {
  std::vector<double> times;
  for (int i = 0; i < kFrames; ++i) {
    times.push_back(millisecondsOf([&frame, i] { frame(i); }));
  }
  std::sort(times.begin(), times.end());
  return times[times.size() * 99 / 100 - 1];
}

double panFrame(Canvas& canvas, double zoom) {
  canvas.view.setExtract({zoom, canvas.scene().contentArea().center()});
  QApplication::processEvents();
  return slowFrame([&canvas](int i) {
    const int way = i / 50 % 2 == 0 ? 1 : -1;
    QScrollBar* x = canvas.view.horizontalScrollBar();
    QScrollBar* y = canvas.view.verticalScrollBar();
    x->setValue(x->value() + 17 * way);
    y->setValue(y->value() + 7 * way);
  });
}

double zoomFrame(Canvas& canvas) {
  canvas.view.zoomToAll();
  QTest::qWait(kSettled);
  return slowFrame([&canvas](int i) { canvas.view.zoomBy(i / 40 % 2 == 0 ? 1.06 : 1 / 1.06); });
}

// The mean of a move: what several moves have changed may be drawn together.
double dragMove(Canvas& canvas) {
  canvas.view.showAction(canvas.id("step 510"));
  canvas.view.setExtract({1.0, canvas.position("step 510")});
  const QPoint start = canvas.at("step 510");
  canvas.press(start);
  canvas.move(start + QPoint(20, 20));
  QTest::qWait(kSettled);
  const double time = millisecondsOf([&canvas, start] {
    for (int i = 0; i < kFrames; ++i) {
      const int way = i < kFrames / 2 ? i : kFrames - i;
      canvas.move(start + QPoint(3 * way, 2 * way));
      QApplication::processEvents();
    }
  });
  canvas.key(Qt::Key_Escape);
  canvas.release(start);
  return time / kFrames;
}

double stateUpdate(Canvas& canvas) {
  canvas.view.setExtract({0.3, canvas.scene().contentArea().center()});
  return slowFrame([&canvas](int i) {
    QHash<ActionId, ActionState> states;
    for (const ActionId id : canvas.graph.actions()) {
      ActionState state;
      state.kind = ActionState::Kind::running;
      state.rowsOut = {1000LL * i + id};
      states.insert(id, state);
    }
    canvas.view.setStates(states);
  });
}

}  // namespace

std::vector<CanvasFigure> measureCanvas() {
  std::unique_ptr<Canvas> canvas;
  const QByteArray document = largeGraph();
  std::vector<CanvasFigure> figures;
  figures.push_back({QStringLiteral("open and draw"), millisecondsOf([&canvas, &document] {
                       canvas = std::make_unique<Canvas>(document, QSize(1280, 800));
                       new Minimap(canvas->view);
                     }),
                     1'000.0});
  EXPECT_EQ(canvas->graph.actionCount(), kActions);
  EXPECT_EQ(canvas->graph.links().size(), kLinks);
  for (const double zoom : {0.12, 0.25, 0.41, 0.6, 1.0}) {
    figures.push_back({QStringLiteral("pan at %1").arg(zoom), panFrame(*canvas, zoom), kFrame});
  }
  figures.push_back({QStringLiteral("zoom"), zoomFrame(*canvas), kFrame});
  figures.push_back({QStringLiteral("drag an action"), dragMove(*canvas), 4.0});
  figures.push_back({QStringLiteral("states of all in a run"), stateUpdate(*canvas), 20.0});
  figures.push_back({QStringLiteral("delete all"), millisecondsOf([&canvas] {
                       canvas->view.selectAll();
                       canvas->view.deleteSelection();
                     }),
                     100.0});
  figures.push_back({QStringLiteral("undo deleting all"),
                     millisecondsOf([&canvas] { canvas->commands.stack().undo(); }), 100.0});
  return figures;
}

}  // namespace kelvarin::testing
