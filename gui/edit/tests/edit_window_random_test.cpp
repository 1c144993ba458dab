// The window of `kelvarin edit` with the graphs of the examples, the plug-in and its editors, and a
// child at the keyboard.
#include <gtest/gtest.h>
#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "gui/edit/edit_window.h"
#include "host/tables/table_actions.h"
#include "host/widget_testing/random_events.h"
#include "host/widgets/theme.h"

namespace kelvarin {
namespace {

constexpr int kRandomEvents = 1000;
constexpr int kEventsForAnAction = 50;

// What is opened stays for the whole process, as the plug-in does.
const ActionCatalogue& catalogue() {
  static const ActionCatalogue catalogue(
      std::move(*PluginLibrary::load(QStringLiteral(KELVARIN_PLUGIN))), makeTableActions());
  return catalogue;
}

void copyFolder(const QString& from, const QString& to) {
  QDirIterator files(from, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString file = files.next();
    const QString target = QDir(to).filePath(QDir(from).relativeFilePath(file));
    ASSERT_TRUE(QDir().mkpath(QFileInfo(target).path()));
    ASSERT_TRUE(QFile::copy(file, target)) << target.toStdString();
  }
}

// The name of a parameter that does not exist can be typed and saved; nothing else that a graph is
// refused for.
std::string otherFaults(const GraphErrors& faults) {
  std::string others;
  for (const GraphError& fault : faults) {
    if (!fault.message.startsWith(QStringLiteral("there is no parameter"))) {
      others += fault.text().toStdString() + '\n';
    }
  }
  return others;
}

class EditedExample : public ::testing::TestWithParam<const char*> {
 protected:
  // Random events save, and write files: all of it in a folder of the test.
  void SetUp() override {
    copyFolder(QStringLiteral(KELVARIN_EXAMPLES), m_folder.path());
    m_workingFolder = QDir::currentPath();
    QDir::setCurrent(m_folder.path());
    QSettings().clear();
    run("columnar/store.kelvarin");
  }
  void TearDown() override { QDir::setCurrent(m_workingFolder); }

  QString file(const char* graph) const { return m_folder.filePath(QLatin1String(graph)); }
  void run(const char* graph) const {
    auto read = readGraph(file(graph), catalogue());
    ASSERT_TRUE(read);
    RunRecord record;
    ASSERT_TRUE(runGraph(*read, record).isOk());
  }

  QTemporaryDir m_folder;
  QString m_workingFolder;
};

TEST_P(EditedExample, SurvivesRandomEvents) {
  EditedGraph graph(catalogue());
  GraphCommands commands(graph);
  EditServices services(graph, catalogue());
  HostSession session(&services);
  const HostSession::Scope scope(&session);
  const QString graphFile = file(GetParam());
  Theme theme;
  EditWindow window(commands, services, session, theme, graphFile, {});
  const QSignalSpy shown(&window, &EditWindow::graphShown);
  window.show();
  ASSERT_TRUE(QTest::qWaitFor([&shown] { return !shown.isEmpty(); }));
  const int actions = graph.actionCount();
  ASSERT_GT(actions, 1);

  testing::sendRandomEvents(window, kRandomEvents, [&](int event) {
    if (event % kEventsForAnAction == 0 && graph.actionCount() > 0) {
      window.show();  // it may have been closed
      window.openAction(graph.actions()[event / kEventsForAnAction % graph.actionCount()]);
    }
  });

  const auto isRead = [&] { return graph.actionCount() == actions; };
  if (!QTest::qWaitFor(isRead)) {
    const auto refused = readGraph(graphFile, catalogue());
    ASSERT_FALSE(refused);
    EXPECT_EQ(otherFaults(refused.error()), "");
    return;
  }
  window.openAction(graph.actions().front());
  const QByteArray document = graph.document();
  const auto again = parseGraph(document, graphFile, catalogue());
  if (!again) {
    EXPECT_EQ(otherFaults(again.error()), "") << document.toStdString();
    return;
  }
  EditedGraph reread(catalogue());
  ASSERT_TRUE(reread.load(document, graphFile));
  EXPECT_EQ(reread.document().toStdString(), document.toStdString());
}

INSTANTIATE_TEST_SUITE_P(All, EditedExample,
                         ::testing::Values("flights/flights.kelvarin", "columnar/store.kelvarin",
                                           "columnar/month.kelvarin", "sensors/sensors.kelvarin"),
                         [](const auto& graph) {
                           return QFileInfo(QLatin1String(graph.param)).baseName().toStdString();
                         });

}  // namespace
}  // namespace kelvarin
