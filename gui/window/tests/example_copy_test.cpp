// Examples are opened as copies: what was installed stays as it is, and a copy runs where it is
// saved.
#include <gtest/gtest.h>
#include <QFile>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "gui/canvas/canvas_view.h"
#include "gui/window/example_copy.h"
#include "gui/window/host_window.h"
#include "gui/window/window_state.h"
#include "host/contract/host_session.h"
#include "host/tables/table_actions.h"
#include "host/widget_testing/widget_walk.h"
#include "host/widgets/theme.h"

namespace kelvarin {
namespace {

constexpr char kExample[] =
    "<KelvarinGraph version='1.0'><Parameters>"
    "<Parameter name='data' value='data/in.csv'/></Parameters><Actions>"
    "<ReadCSV name='in' file='${data}'/><ReadCSV name='other' file='other.csv'/>"
    "<ReadCSV name='far' file='../far.csv'/><WriteCSV name='out' file='out/out.csv'/>"
    "</Actions></KelvarinGraph>";

TEST(ExampleCopy, TakesTheDataThatItReadsAlongAndNothingElse) {
  QTemporaryDir folder;
  const auto path = [&folder](const char* name) { return folder.filePath(QLatin1String(name)); };
  QDir(folder.path()).mkpath("example/data");
  QDir(folder.path()).mkpath("mine");
  for (const char* name : {"example/data/in.csv", "example/other.csv", "example/more.csv",
                           "far.csv", "example/e.kelvarin", "mine/other.csv"}) {
    QFile file(path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(name);
  }
  ActionCatalogue catalogue{nullptr, makeTableActions()};
  EditedGraph graph(catalogue);
  ASSERT_TRUE(graph.load(kExample, path("example/e.kelvarin")));
  ExampleCopy example(graph);
  QSignalSpy taken(&example, &ExampleCopy::filesTaken);
  QSignalSpy failed(&example, &ExampleCopy::failed);

  example.begin(path("example/e.kelvarin"));
  EXPECT_TRUE(example.isOpen());
  example.takeFilesTo(path("mine/e.kelvarin"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return !taken.isEmpty() || !failed.isEmpty(); }));
  EXPECT_EQ(taken.value(0).value(0).toStringList(), QStringList{"data/in.csv"});
  EXPECT_FALSE(example.isOpen());
  QFile kept(path("mine/other.csv"));
  ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
  EXPECT_EQ(kept.readAll(), "mine/other.csv");

  // A file where a folder is needed.
  QFile blocked(path("data"));
  ASSERT_TRUE(blocked.open(QIODevice::WriteOnly));
  example.begin(path("example/e.kelvarin"));
  example.takeFilesTo(path("e.kelvarin"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return !failed.isEmpty(); }));
  EXPECT_TRUE(failed[0][0].toString().contains("in.csv"));
}

TEST(ExampleCopy, TheTourIsOfACopyOfTheExample) {
  QSettings().clear();
  ActionCatalogue catalogue{nullptr, makeTableActions()};
  EditedGraph graph(catalogue);
  EditServices services(graph, catalogue);
  HostSession session(&services);
  const HostSession::Scope scope(&session);
  GraphCommands commands(graph);
  Theme theme;
  HostWindow window(commands, services, theme);
  window.show();
  window.activateWindow();
  window.findChild<QPushButton*>("takeTour")->click();
  QWidget* bubble = nullptr;
  ASSERT_TRUE(QTest::qWaitFor([&window, &bubble] {
    bubble = window.findChild<QWidget*>("tourBubble");
    return bubble != nullptr;
  }));
  EXPECT_TRUE(window.windowTitle().startsWith(u"Copy of flights"));
  EXPECT_TRUE(recentGraphs().isEmpty());
  QSet<QPoint> positions;
  for (int step = 0; step < 5; ++step) {
    ASSERT_TRUE(bubble->isVisible()) << step;
    EXPECT_TRUE(window.rect().contains(bubble->geometry())) << step;
    EXPECT_EQ(testing::cutTexts(*bubble).join(u'\n').toStdString(), "");
    positions.insert(bubble->pos());
    QTest::keyClick(window.focusWidget(), Qt::Key_Space);
  }
  EXPECT_GE(positions.size(), 4);
  EXPECT_FALSE(bubble->isVisible());
  EXPECT_TRUE(window.canvas().hasFocus());
  EXPECT_FALSE(graph.isModified());
}

}  // namespace
}  // namespace kelvarin
