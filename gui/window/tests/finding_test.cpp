// Finding in the window with real keys: the panel comes, steps and goes, and F8 leads from problem
// to problem.
#include <gtest/gtest.h>
#include <QDockWidget>
#include <QLineEdit>
#include <QMenu>
#include <QSettings>
#include <QStatusBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

#include "gui/canvas/canvas_view.h"
#include "gui/properties/property_panel.h"
#include "gui/window/host_window.h"
#include "host/contract/host_session.h"
#include "host/tables/table_actions.h"
#include "host/widget_testing/widget_walk.h"
#include "host/widgets/key_list.h"
#include "host/widgets/theme.h"

namespace kelvarin {
namespace {

constexpr char kGraph[] =
    "<KelvarinGraph version='1.0'><Actions>"
    "<ReadCSV name='in' x='0' y='0' file='absent.csv'/>"
    "<Vanished name='gone' x='200' y='0'/>"
    "<WriteCSV name='out' x='400' y='0' file='out.csv'/>"
    "</Actions><Links><Link from='in' to='out'/><Link from='nobody' to='out' toPin='3'/></Links>"
    "<Notes><Note x='0' y='90' w='90' h='40' color='#d0ebff'>all about it</Note></Notes>"
    "</KelvarinGraph>";

class FindingTest : public ::testing::Test {
 protected:
  void SetUp() override {
    QSettings().clear();
    const QString path = m_folder.filePath("g.kelvarin");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(kGraph);
    file.close();
    window.show();
    window.activateWindow();
    window.open(path);
    ASSERT_TRUE(QTest::qWaitFor([this] { return graph.actionCount() == 3; }));
    window.canvas().setFocus();
  }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(window.focusWidget(), key, modifiers);
  }
  QString current() { return graph.name(window.canvas().currentAction()); }
  template <typename Widget>
  Widget& child(const char* name) {
    return *window.findChild<Widget*>(QLatin1String(name));
  }

  QTemporaryDir m_folder;
  ActionCatalogue catalogue{nullptr, makeTableActions()};
  EditedGraph graph{catalogue};
  EditServices services{graph, catalogue};
  HostSession session{&services};
  HostSession::Scope scope{&session};
  GraphCommands commands{graph};
  Theme theme;
  HostWindow window{commands, services, theme};
};

TEST_F(FindingTest, ThePanelComesStepsAndGivesTheFocusBack) {
  key(Qt::Key_F, Qt::ControlModifier);
  auto& dock = child<QDockWidget>("findDock");
  ASSERT_TRUE(dock.isVisible());
  auto& field = child<QLineEdit>("findText");
  ASSERT_TRUE(field.hasFocus());
  QTest::keyClicks(&field, "out");
  ASSERT_TRUE(
      QTest::qWaitFor([this] { return child<QTableView>("foundTexts").model()->rowCount() == 3; }));
  key(Qt::Key_Return);
  EXPECT_EQ(current(), u"out");
  EXPECT_TRUE(field.hasFocus());
  // "all about it", in the note.
  key(Qt::Key_F3);
  key(Qt::Key_F3);
  EXPECT_EQ(window.canvas().selection().notes.size(), 1);
  key(Qt::Key_F3, Qt::ShiftModifier);
  EXPECT_EQ(window.properties().action(), graph.idOf("out"));
  key(Qt::Key_Escape);
  EXPECT_FALSE(dock.isVisible());
  EXPECT_TRUE(window.canvas().hasFocus());
  EXPECT_EQ(testing::keysWithTwoOwners(window).join(u'\n').toStdString(), "");
}

TEST_F(FindingTest, F8WalksTheProblemsOfCanvasAndLog) {
  // The check while drawing finds the absent file.
  const auto status = [this](Qt::KeyboardModifiers modifiers = {}) {
    key(Qt::Key_F8, modifiers);
    return window.statusBar()->currentMessage();
  };
  ASSERT_TRUE(QTest::qWaitFor([&] { return status().contains(u" of 3: in: "); }));
  EXPECT_EQ(current(), u"in");
  EXPECT_TRUE(status().startsWith(u"Problem 2 of 3: gone: ")) << status().toStdString();
  EXPECT_EQ(current(), u"gone");
  EXPECT_TRUE(status().startsWith(u"Problem 3 of 3: ")) << status().toStdString();
  EXPECT_EQ(window.canvas().selection().links.size(), 1);
  EXPECT_TRUE(status(Qt::ShiftModifier).startsWith(u"Problem 2 of 3: "));

  window.run();
  ASSERT_TRUE(QTest::qWaitFor([this] { return !window.graphRun().isRunning(); }));
  EXPECT_FALSE(status().contains(u"no problems"));
}

TEST_F(FindingTest, KeysOfTheCanvasAreInTheMenusAndInTheirList) {
  QStringList keys;
  for (const KeyMeaning& key : keysOf(window)) {
    keys += key.keys.split(QStringLiteral(", "));
    EXPECT_TRUE(key.keys != u"Ctrl+E" || key.where == u"Canvas");
  }
  for (const char* key :
       {"F1",       "F2",          "F3",     "Shift+F3", "F5",     "Shift+F5",     "F8",
        "Shift+F8", "Ctrl+Return", "Ctrl+F", "Ctrl+H",   "Ctrl+Z", "Ctrl+Shift+Z", "Del",
        "Ctrl+Del", "Ctrl+D",      "Ctrl+E", "Ctrl+K",   "Ctrl+L", "Ctrl+A",       "Ctrl+0",
        "Ctrl+9",   "Return",      "Esc",    "Tab",      "Right"}) {
    EXPECT_TRUE(keys.contains(QLatin1String(key))) << key;
  }
}

}  // namespace
}  // namespace kelvarin
