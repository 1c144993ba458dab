// Steps from a cell of the preview, by its menu: to the debugger, to a filter, to a new column; and
// what the window says of a run, its log and its command line.
#include <QAbstractItemView>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QMenu>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "gui/document/tests/loaded_catalogue.h"
#include "gui/preview/preview_table.h"
#include "gui/preview/preview_view.h"
#include "gui/properties/property_panel.h"
#include "gui/window/tests/host_program.h"

namespace kelvarin {
namespace {

// Values that an expression or the XML around it could take for something else.
constexpr char kGraph[] =
    "<KelvarinGraph version='1.0'>\n"
    "  <Parameters><Parameter name='folder' value='.'/></Parameters>\n"
    "  <Actions>\n"
    "    <InlineTable name='in' x='0' y='0'>"
    "<Column name='my town' meta='U'/><Column name='a&lt;b' meta='F'/>"
    "<Column name='id' meta='K'/><Column name='new_id' meta='K'/>"
    "<Row><V>say \"no\"; a\\b &amp; c</V><V>1.5</V><V>7</V><V>0</V></Row>"
    "<Row><V null='1'/><V null='1'/><V null='1'/><V>0</V></Row>"
    "<Row><V> Lyon </V><V>nan</V><V>8</V><V>0</V></Row>"
    "<Row><V></V><V>-0.1</V><V>4294967293</V><V>0</V></Row>"
    "<Row><V>2024-01-02</V><V>1e300</V><V>9</V><V>0</V></Row>"
    "</InlineTable>\n"
    "    <Calculator name='twice' x='240' y='0'><InputVars><InputVar column='id'/></InputVars>"
    "<OutputVars><OutputVar name='twice'>id * 2</OutputVar></OutputVars></Calculator>\n"
    "    <WriteCSV name='out' x='480' y='0' file='out.csv'/>\n"
    "  </Actions>\n"
    "  <Links>\n"
    "    <Link from='in' to='twice'/>\n"
    "    <Link from='twice' to='out'/>\n"
    "  </Links>\n"
    "</KelvarinGraph>\n";

class PreviewStepsTest : public ::testing::Test, protected testing::HostProgram {
 protected:
  PreviewStepsTest() : HostProgram(loadedCatalogue()) {}
  void SetUp() override {
    QSettings().clear();
    QFile file(path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(kGraph);
    file.close();
    open(path());
  }
  QString path() const { return m_folder.filePath("g.kelvarin"); }
  ActionId id(const char* name) const { return graph.idOf(QString::fromLatin1(name)); }
  PreviewTable& table() { return *window.findChild<PreviewTable*>(); }

  void preview(const char* action) {
    select(action);
    ASSERT_TRUE(QTest::qWaitFor([this] { return table().model().rowCount() == 5; }, 20'000));
  }
  // The menu of a cell by the right button, an entry of it by its letter.
  void choose(int row, int column, Qt::Key letter) {
    PreviewView& view = table().view();
    const QPoint position = view.visualRect(table().model().index(row, column)).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, position,
                            view.viewport()->mapToGlobal(position));
    QApplication::sendEvent(view.viewport(), &event);
    auto* menu = window.findChild<QMenu*>("previewCellMenu");
    ASSERT_NE(menu, nullptr);
    QTest::keyClick(menu, letter);
  }
  // Of the action that comes into the graph.
  ActionId added(int actionsBefore) {
    EXPECT_TRUE(QTest::qWaitFor([&] { return graph.actionCount() > actionsBefore; }));
    const ActionId action = window.properties().action();
    EXPECT_NE(action, kNoId);
    return action;
  }
  void run() {
    QSignalSpy ended(&window.graphRun(), &GraphRun::ended);
    window.run();
    ASSERT_TRUE(QTest::qWaitFor([&ended] { return !ended.isEmpty(); }, 20'000));
    ASSERT_TRUE(window.graphRun().result()->isOk())
        << window.graphRun().result()->log.front().text.toStdString();
  }

  QTemporaryDir m_folder;
};

TEST_F(PreviewStepsTest, KeepRowsLikeThisFindsTheRowOfEveryValue) {
  for (int column = 0; column < 3; ++column) {
    for (int row = 0; row < 5; ++row) {
      SCOPED_TRACE("column " + std::to_string(column) + ", row " + std::to_string(row));
      preview("in");
      choose(row, column, Qt::Key_K);
      const ActionId filter = added(3);
      EXPECT_EQ(graph.typeName(filter), QStringLiteral("FilterRows"));
      EXPECT_EQ(graph.link(graph.linkInto(filter, 0)).from, id("in"));
      run();
      EXPECT_EQ(window.graphRun().states().value(filter).rowsOut, (std::vector<long long>{1, 4}));
      commands.stack().undo();
      EXPECT_EQ(graph.document(), kGraph);
    }
  }
}

TEST_F(PreviewStepsTest, NewColumnFromThisCopiesTheColumnUnderAFreeName) {
  for (int column = 0; column < 3; ++column) {
    preview("in");
    choose(1, column, Qt::Key_N);
    const ActionId calculator = added(3);
    EXPECT_EQ(graph.typeName(calculator), QStringLiteral("Calculator"));
    run();
    const auto& actions = window.graphRun().result()->actions;
    const auto& columns =
        actions.at(static_cast<std::size_t>(graph.indexOf(calculator))).pins.at(0).columns;
    ASSERT_EQ(columns.size(), 5u);
    EXPECT_EQ(columns.back().meta, columns.at(static_cast<std::size_t>(column)).meta);
    const char* names[] = {"new_my town", "new_a<b", "new_id_2"};
    EXPECT_EQ(columns.back().name, QString::fromLatin1(names[column]));
    commands.stack().undo();
    EXPECT_EQ(graph.document(), kGraph);
  }
}

// Of a sink the preview has what comes in; the filter goes in before it.
TEST_F(PreviewStepsTest, AStepFromTheInputOfASinkGoesIntoItsLink) {
  preview("out");
  choose(2, 0, Qt::Key_K);
  const ActionId filter = added(3);
  EXPECT_EQ(graph.link(graph.linkInto(filter, 0)).from, id("twice"));
  EXPECT_EQ(graph.link(graph.linkInto(id("out"), 0)).from, filter);
  run();
  QFile written(m_folder.filePath("out.csv"));
  ASSERT_TRUE(written.open(QIODevice::ReadOnly));
  EXPECT_EQ(written.readAll().split('\n').size(), 3);
  commands.stack().undo();
  EXPECT_EQ(graph.document(), kGraph);
}

// The rows of the calculator, of what feeds it, and of what it feeds are all its own.
TEST_F(PreviewStepsTest, StepToThisRowStopsTheDebuggerThere) {
  for (const char* action : {"in", "twice", "out"}) {
    SCOPED_TRACE(action);
    preview(action);
    choose(3, 2, Qt::Key_S);
    EXPECT_EQ(window.properties().action(), id("twice"));
    const auto variables = [this] {
      return window.findChild<QAbstractItemView*>("variablesOfRow");
    };
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
          if (variables() == nullptr || variables()->model()->rowCount() == 0) {
            return false;
          }
          for (int column = 0; column < variables()->model()->columnCount(); ++column) {
            const QModelIndex cell = variables()->model()->index(0, column);
            if (cell.data().toString().contains(QStringLiteral("4294967293"))) {
              return true;
            }
          }
          return false;
        },
        20'000));
    window.properties().showAction(kNoId);
  }
}

TEST_F(PreviewStepsTest, ARunThatWaitsForAFileSaysSoAndStopsAtOnce) {
  const ActionId reader =
      commands.addAction(QStringLiteral("ReadColumnarGel"), {0, 200}, QStringLiteral("later"),
                         "<ReadColumnarGel fileName='later.cgel_kelvarin' timeOut='600'/>");
  window.run();
  const auto state = [&] { return window.graphRun().states().value(reader); };
  ASSERT_TRUE(QTest::qWaitFor([&] { return state().hasWarning; }, 20'000));
  EXPECT_EQ(state().kind, ActionState::Kind::running);
  EXPECT_TRUE(state().message.contains(QStringLiteral("Waiting for the file")))
      << state().message.toStdString();
  QElapsedTimer clock;
  clock.start();
  QTest::keyClick(&window, Qt::Key_F5, Qt::ShiftModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !window.graphRun().isRunning(); }, 20'000));
  EXPECT_LT(clock.elapsed(), 1500);
  EXPECT_EQ(state().kind, ActionState::Kind::stopped);
}

TEST_F(PreviewStepsTest, TheLogCountsInItsTitleWhatWentWrong) {
  ASSERT_TRUE(commands.setElement(
      id("twice"),
      "<Calculator name='twice'><InputVars><InputVar column='gone'/></InputVars>"
      "<OutputVars><OutputVar name='twice'>gone * 2</OutputVar></OutputVars></Calculator>"));
  auto* dock = window.findChild<QDockWidget*>("log");
  EXPECT_EQ(dock->windowTitle(), QStringLiteral("Log"));
  window.run();
  EXPECT_TRUE(QTest::qWaitFor([dock] { return dock->windowTitle() == "Log (errors: 1)"; }))
      << dock->windowTitle().toStdString();
}

TEST_F(PreviewStepsTest, TheCommandLineIsThatOfTheFile) {
  const auto trigger = [this](const char* label) {
    for (QAction* action : window.findChildren<QAction*>()) {
      if (QString(action->text()).remove(u'&') == QLatin1String(label)) {
        action->trigger();
      }
    }
    return QGuiApplication::clipboard()->text();
  };
  preview("twice");
  const QString whole = QStringLiteral("kelvarin run '%1'").arg(path());
  EXPECT_EQ(trigger("Copy as command line"), whole);
  EXPECT_EQ(trigger("Copy run to here as command line"), whole + QStringLiteral(" --to 'twice'"));
  window.newGraph();
  QGuiApplication::clipboard()->clear();
  EXPECT_EQ(trigger("Copy as command line"), QString());
}

}  // namespace
}  // namespace kelvarin
