// The window of the graphical host with real widgets: a graph made, run and undone by keys, and
// what anyone may expect of a window.
#include <gtest/gtest.h>
#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QLineEdit>
#include <QMouseEvent>
#include <QSettings>
#include <QTemporaryDir>

#include "gui/palette/quick_add.h"
#include "gui/properties/property_panel.h"
#include "gui/window/tests/host_program.h"
#include "host/widget_testing/widget_walk.h"

namespace kelvarin {
namespace {

constexpr char kGraph[] =
    "<KelvarinGraph version='1.0'>\n"
    "  <!-- kept -->\n"
    "  <Actions>\n"
    "    <ReadCSV name='in' x='0' y='0' file='in.csv'/>\n"
    "    <WriteCSV name='out' x='240' y='0' file='out.csv'/>\n"
    "  </Actions>\n"
    "  <Links>\n"
    "    <Link from='in' to='out'/>\n"
    "  </Links>\n"
    "</KelvarinGraph>\n";

class HostWindowTest : public ::testing::Test {
 protected:
  HostWindowTest() {
    QSettings().clear();
    write("in.csv", "a,b\n1,x\n2,y\n3,z\n");
    write("g.kelvarin", kGraph);
  }

  QString path(const QString& name) const { return m_folder.filePath(name); }
  void write(const QString& name, const QByteArray& content) const {
    QFile file(path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
  }
  QByteArray read(const QString& name) const {
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  void openGraph() {
    program.open(path("g.kelvarin"));
    ASSERT_EQ(graph.actionCount(), 2);
  }
  void select(const QString& name) {
    program.select(name);
    window.canvas().setFocus();
  }
  bool runToEnd() {
    QSignalSpy ended(&window.graphRun(), &GraphRun::ended);
    window.run();
    return QTest::qWaitFor([&ended] { return !ended.isEmpty(); });
  }

  QTemporaryDir m_folder;
  testing::HostProgram program;
  EditedGraph& graph = program.graph;
  GraphCommands& commands = program.commands;
  HostWindow& window = program.window;
};

TEST_F(HostWindowTest, OpensRunsAndSavesAGraphAsItWas) {
  openGraph();
  ASSERT_TRUE(runToEnd());
  EXPECT_EQ(read("out.csv"), "a,b\n1,x\n2,y\n3,z\n");
  const ActionState state = window.graphRun().states().value(graph.idOf("in"));
  EXPECT_EQ(state.kind, ActionState::Kind::done);
  EXPECT_EQ(state.rowsOut, std::vector<long long>{3});

  EXPECT_FALSE(window.isWindowModified());
  window.save();
  ASSERT_TRUE(QTest::qWaitFor([this] { return read("g.kelvarin") == kGraph; }));
}

TEST_F(HostWindowTest, LettersOnTheCanvasAddAnActionBehindTheSelectedOneAndUndoTakesItBack) {
  openGraph();
  select("in");
  QTest::keyClicks(&window.canvas(), "d");
  auto* offer = window.findChild<QuickAdd*>();
  ASSERT_NE(offer, nullptr);
  auto* field = offer->findChild<QLineEdit*>("searchActions");
  QTest::keyClicks(field, "isc");
  QTest::keyClick(field, Qt::Key_Return);
  ASSERT_EQ(graph.actionCount(), 3);
  const ActionId added = graph.idOf("Discard");
  ASSERT_NE(added, kNoId);
  EXPECT_EQ(graph.link(graph.linkInto(added, 0)).from, graph.idOf("in"));
  EXPECT_EQ(window.properties().action(), added);
  EXPECT_TRUE(window.isWindowModified());

  commands.stack().undo();
  EXPECT_EQ(graph.actionCount(), 2);
  EXPECT_EQ(graph.document(), kGraph);
  EXPECT_FALSE(window.isWindowModified());
}

TEST_F(HostWindowTest, WhatIsDeletedWhileTheGraphIsArrangedStaysDeleted) {
  openGraph();
  commands.moveActions({{graph.idOf("out"), QPointF(500, 700)}}, {});
  window.arrange();
  select("in");
  window.canvas().deleteSelection();
  ASSERT_TRUE(QTest::qWaitFor(
      [&] { return graph.position(graph.idOf("out")) != QPointF(500, 700); }, 20'000));
  EXPECT_EQ(graph.actionCount(), 1);
}

TEST_F(HostWindowTest, ARunThatFailsSaysWhereAndKeepsTheOldFile) {
  write("out.csv", "old");
  openGraph();
  QFile::remove(path("in.csv"));
  ASSERT_TRUE(runToEnd());
  EXPECT_EQ(window.graphRun().states().value(graph.idOf("in")).kind, ActionState::Kind::failed);
  EXPECT_EQ(read("out.csv"), "old");
}

// Qt's own way to bring panels back does not expect it.
TEST_F(HostWindowTest, AGraphOpensWhileAPanelIsBeingDragged) {
  openGraph();
  auto& panel = *window.findChild<QDockWidget*>("palette");
  const QPoint title(30, 10);
  for (const QPoint goal : {QPoint(600, 300), QPoint(20, 300), QPoint(1270, 300)}) {
    QTest::mousePress(&panel, Qt::LeftButton, {}, title);
    const QPoint start = panel.mapToGlobal(title);
    const QPoint way = window.mapToGlobal(goal) - start;
    for (int step = 1; step <= 8; ++step) {
      const QPoint at = start + way * step / 8;
      QMouseEvent move(QEvent::MouseMove, panel.mapFromGlobal(at), at, Qt::NoButton, Qt::LeftButton,
                       Qt::NoModifier);
      QApplication::sendEvent(&panel, &move);
      QCoreApplication::processEvents();
    }
    openGraph();
  }
  EXPECT_TRUE(panel.isVisible());
}

TEST_F(HostWindowTest, EverythingHasANameAndAKeyOneOwner) {
  openGraph();
  select("in");
  EXPECT_EQ(testing::controlsWithoutName(window).join(u'\n').toStdString(), "");
  EXPECT_EQ(testing::keysWithTwoOwners(window).join(u'\n').toStdString(), "");
}

}  // namespace
}  // namespace kelvarin
