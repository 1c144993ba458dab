// The window with every kind of action, the plug-in and its editors, and a child at the keyboard
// and the mouse.
#include <QTableView>
#include <QTest>

#include "gui/properties/property_panel.h"
#include "gui/tests/all_actions.h"
#include "gui/window/tests/host_program.h"
#include "host/widget_testing/random_events.h"

namespace kelvarin::testing {
namespace {

constexpr int kRandomEvents = 600;
constexpr int kEventsForAnAction = 20;
constexpr int kEventsForARun = 150;
constexpr int kFewActions = 5;

// Keeps the child at work: another action, a run now and then, the graph again where it has gone.
class Game {
 public:
  explicit Game(QString file) : m_file(std::move(file)) {
    QObject::connect(&m_program.window.graphRun(), &GraphRun::ended, &m_program.window,
                     [this] { ++m_runs; });
    QObject::connect(&m_program.commands.stack(), &QUndoStack::indexChanged, &m_program.window,
                     [this] { ++m_commands; });
    m_program.open(m_file);
  }

  void play() {
    sendRandomEvents(m_program.window, kRandomEvents, [this](int event) {
      m_program.window.show();  // it may have been closed
      if (event % kEventsForAnAction == 0) {
        selectAny(event);
      }
      if (event % kEventsForARun == 0) {
        m_program.window.run();
      }
    });
  }

  // A graph that can be written and read again.
  void expectGraph() {
    const QByteArray document = m_program.graph.document();
    EditedGraph again(wholeCatalogue());
    ASSERT_TRUE(again.load(document, m_file)) << document.toStdString();
    EXPECT_EQ(again.document().toStdString(), document.toStdString());
    EXPECT_EQ(again.actionCount(), m_program.graph.actionCount());
  }
  void expectUndo() {
    m_program.window.properties().commit();  // as the window's undo does
    QUndoStack& stack = m_program.commands.stack();
    const int end = stack.index();
    const QByteArray document = m_program.graph.document();
    while (stack.canUndo()) {
      stack.undo();
    }
    while (stack.index() < end) {
      stack.redo();
    }
    EXPECT_EQ(m_program.graph.document().toStdString(), document.toStdString());
  }
  int runs() const { return m_runs; }
  int commands() const { return m_commands; }

 private:
  void selectAny(int event) {
    const EditedGraph& graph = m_program.graph;
    if (graph.actionCount() < kFewActions) {
      m_program.window.open(m_file);
    } else {
      const auto actions = graph.actions();
      m_program.select(graph.name(actions[event / kEventsForAnAction % actions.size()]));
    }
  }

  const QString m_file;
  HostProgram m_program{wholeCatalogue()};
  int m_runs = 0;
  int m_commands = 0;
};

TEST(HostWindowRandom, SurvivesRandomEventsWithAGraphThatIsStillValid) {
  const ExampleFolder folder;
  Game game(folder.graphOfAllTypes());
  game.play();
  EXPECT_GT(game.runs(), 0);
  EXPECT_GT(game.commands(), 0);
  game.expectGraph();
  game.expectUndo();
}

}  // namespace
}  // namespace kelvarin::testing
