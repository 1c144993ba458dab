// Runs of the graph that is open: what is shown while they go on and after, and how they are
// stopped.
#include <random>
#include <thread>

#include <QElapsedTimer>

#include "gui/run/disk_question_line.h"
#include "gui/run/graph_run.h"
#include "gui/run/stale_actions.h"
#include "gui/run/tests/open_graph.h"

namespace kelvarin::testing {
namespace {

using Kind = ActionState::Kind;
using Counts = std::vector<long long>;

constexpr char kEndless[] = "1000000000";

// Asks about a full disk before its first row, as an action that writes does.
class NeedsDisk final : public TestAction {
 public:
  KELVARIN_TEST_ACTION(NeedsDisk, 1, 0)
  bool step() {
    while (MainUI::displayOutOfDiskSpace(QStringLiteral("/data/big.gel"), 4096, true)) {
      if (++m_tries == 2) {
        return true;
      }
    }
    failRun();
    return true;
  }

 private:
  int m_tries = 0;
};

// Says that it waits, and does so until the run is stopped.
class Waits final : public TestAction {
 public:
  KELVARIN_TEST_ACTION(Waits, 0, 1)
  bool step() {
    MainUI::addLog(LogLevel::warning, QStringLiteral("Waiting for the file..."));
    while (run()->isRunning()) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    MainUI::addLog(LogLevel::error, QStringLiteral("The file never came."));
    return true;
  }
};

struct RunOf : OpenGraph {
  using OpenGraph::OpenGraph;
  bool finish() {
    return QTest::qWaitFor([this] { return !run.isRunning(); }, 30'000);
  }
  const ActionState state(const char* name) const { return run.states().value(id(name)); }

  GraphRun run{graph, services};
};

TEST(GraphRun, ReportsWhatBecameOfEveryAction) {
  RunOf t("<Count name='s' rows='5000'/><EveryNth name='f' n='5'/><Collect name='w'/>", "s f, f w");
  QSignalSpy started(&t.run, &GraphRun::started);
  QSignalSpy ended(&t.run, &GraphRun::ended);
  EXPECT_EQ(t.run.result(), nullptr);
  ASSERT_TRUE(t.run.start());
  EXPECT_FALSE(t.run.start());
  EXPECT_EQ(t.state("w").kind, Kind::waiting);
  ASSERT_TRUE(t.finish());
  EXPECT_EQ(started.size() + ended.size(), 2);
  EXPECT_TRUE(t.run.result()->isOk());
  EXPECT_EQ(t.state("f").kind, Kind::done);
  EXPECT_EQ(t.state("f").rowsIn, (Counts{5000, 0}));
  EXPECT_EQ(t.state("f").rowsOut, (Counts{1000, 4000}));
  EXPECT_EQ(t.seen.values["w"].size(), 1000u);
}

TEST(GraphRun, CountsRowsAndTimesActionsWhileItGoesOn) {
  RunOf t(std::string("<Count name='s' rows='") + kEndless + "'/><Collect name='w' quiet='1'/>",
          "s w");
  t.seen.onSourceRow = [](long long) {
    volatile double work = 1.0;
    for (int i = 0; i < 2000; ++i) {
      work = work * 1.5;
    }
  };
  ASSERT_TRUE(t.run.start());
  ASSERT_TRUE(QTest::qWaitFor([&t] { return t.state("s").seconds > 0.2; }, 30'000));
  EXPECT_EQ(t.state("s").kind, Kind::running);
  EXPECT_GT(t.state("s").rowsOut.at(0), 0);
  EXPECT_GT(t.state("s").seconds, 2 * t.state("w").seconds);
  QSignalSpy changes(&t.run, &GraphRun::statesChanged);
  QTest::qWait(1000);
  EXPECT_GE(changes.size(), 1);
  EXPECT_LE(changes.size(), 11);  // ten a second, and one that was due
  QElapsedTimer clock;
  clock.start();
  t.run.stop();
  ASSERT_TRUE(t.finish());
  EXPECT_LT(clock.elapsed(), 400);
  EXPECT_EQ(t.state("s").kind, Kind::stopped);
  EXPECT_EQ(t.state("s").rowsOut, t.state("w").rowsIn);
}

TEST(GraphRun, ToAnActionOpensNoSinkButThatOne) {
  RunOf t(
      "<Count name='s' rows='10'/><Pass name='p'/><Collect name='w'/><Collect name='beside'/>"
      "<Count name='table' rows='3'/><WithTable name='c'/>",
      "s p, p w, s beside, s c, table c:1");
  ASSERT_TRUE(t.run.startTo(t.id("c")));
  ASSERT_TRUE(t.finish());
  EXPECT_EQ(t.seen.values["c"], countedTo(3));
  EXPECT_EQ(t.state("c").rowsOut, Counts{10});
  EXPECT_FALSE(t.run.states().contains(t.id("w")));
  EXPECT_EQ(t.seen.calls.count("w") + t.seen.calls.count("p") + t.seen.calls.count("beside"), 0u);
  ASSERT_TRUE(t.run.startTo(t.id("w")));
  ASSERT_TRUE(t.finish());
  EXPECT_EQ(t.seen.values["w"], countedTo(10));
  EXPECT_EQ(t.seen.calls.count("beside"), 0u);
}

TEST(GraphRun, ShowsTheActionThatFailedAndWhy) {
  RunOf t("<Count name='s' rows='10' throwAt='4'/><Collect name='w'/>", "s w");
  QSignalSpy logged(&t.services, &EditServices::logged);
  ASSERT_TRUE(t.run.start());
  ASSERT_TRUE(t.finish());
  EXPECT_EQ(t.state("s").kind, Kind::failed);
  EXPECT_TRUE(t.state("s").message.contains(QStringLiteral("out of luck")));
  EXPECT_EQ(t.state("w").kind, Kind::stopped);
  EXPECT_EQ(logged.size(), 1);
}

TEST(GraphRun, ShowsThatAnActionWaitsWhileItWaits) {
  RunOf t("<Waits name='s'/><Collect name='w'/>", "s w", prototypesWith<Waits>());
  QSignalSpy logged(&t.services, &EditServices::logged);
  ASSERT_TRUE(t.run.start());
  ASSERT_TRUE(QTest::qWaitFor([&] { return t.state("s").hasWarning && !logged.isEmpty(); }));
  EXPECT_TRUE(t.run.isRunning());
  EXPECT_EQ(t.state("s").kind, Kind::running);
  EXPECT_EQ(t.state("s").message, QStringLiteral("Waiting for the file..."));
  EXPECT_EQ(t.state("w").message, QString());
  t.run.stop();
  ASSERT_TRUE(t.finish());
  EXPECT_EQ(t.state("s").kind, Kind::stopped);
}

TEST(GraphRun, AsksWhereADiskIsFullAndGoesOnOrStops) {
  RunOf t("<Count name='s'/><NeedsDisk name='w'/>", "s w", prototypesWith<NeedsDisk>());
  DiskQuestionLine line(t.run);
  const auto awaitLine = [&line](const char* text) {
    return QTest::qWaitFor([&] { return line.text().contains(QLatin1String(text)); });
  };
  ASSERT_TRUE(t.run.start());
  ASSERT_TRUE(awaitLine("The disk is full"));
  EXPECT_TRUE(line.text().contains(QStringLiteral("/data/big.gel"))) << line.text().toStdString();
  EXPECT_TRUE(t.state("w").hasWarning);
  emit line.linkActivated(QStringLiteral("again"));
  ASSERT_TRUE(awaitLine("The disk is still full"));
  emit line.linkActivated(QStringLiteral("again"));
  ASSERT_TRUE(t.finish());
  EXPECT_TRUE(t.run.result()->isOk());
  EXPECT_EQ(line.text(), QString());

  ASSERT_TRUE(t.run.start());
  ASSERT_TRUE(awaitLine("The disk is full"));
  emit line.linkActivated(QStringLiteral("stop"));
  ASSERT_TRUE(t.finish());
  EXPECT_EQ(t.run.result()->state, GlobalParameters::RunningState::stoppedByUser);
  EXPECT_EQ(line.text(), QString());

  ASSERT_TRUE(t.run.start());  // ends with its graph although nobody answers
  ASSERT_TRUE(awaitLine("The disk is full"));
}

TEST(GraphRun, LogsWhyAGraphCannotBeRun) {
  RunOf t("<Count name='s'/><Absent name='x'/>", "s x");
  QSignalSpy logged(&t.services, &EditServices::logged);
  ASSERT_TRUE(t.run.start());
  ASSERT_TRUE(t.finish());
  EXPECT_FALSE(t.run.result()->isOk());
  EXPECT_TRUE(t.run.states().isEmpty());
  ASSERT_TRUE(QTest::qWaitFor([&logged] { return logged.size() > 0; }));
  EXPECT_TRUE(t.run.result()->log.at(0).text.contains(QStringLiteral("<Absent>")));
}

// What is undone is as it was run.
TEST(GraphRun, MarksWhatIsBelowAChangeAsStale) {
  RunOf t("<Count name='s'/><Pass name='p'/><Collect name='w'/><Collect name='v'/>",
          "s p, p w, s v");
  ASSERT_TRUE(t.run.start());
  ASSERT_TRUE(t.finish());
  const auto stale = [&t] {
    std::string names;
    for (const char* name : {"s", "p", "w", "v"}) {
      names += t.state(name).isStale ? name : "";
    }
    return names;
  };
  t.commands.moveActions({{t.id("s"), QPointF(100, 50)}}, {});
  EXPECT_EQ(stale(), "");
  ASSERT_TRUE(t.commands.setElement(t.id("p"), "<Pass name='p' stops='3'/>"));
  EXPECT_EQ(stale(), "pw");
  t.commands.stack().undo();
  EXPECT_EQ(stale(), "");
  t.commands.remove({{}, {t.graph.linkInto(t.id("v"), 0)}, {}});
  EXPECT_EQ(stale(), "v");
  t.commands.stack().undo();
  EXPECT_EQ(stale(), "");
  t.commands.setDisabled({t.id("s")}, true);
  EXPECT_EQ(stale(), "spwv");
  t.commands.stack().undo();
  t.commands.setParameters({{QStringLiteral("p"), QStringLiteral("2")}});
  EXPECT_EQ(stale(), "spwv");
}

TEST(GraphRun, SettingsLeaveOutNameAndPosition) {
  EXPECT_EQ(settingsOf("<A name='x > y' version='1' x='3' y=\"4\"><V name='v' x='1'/></A>"),
            "<A version='1'><V name='v' x='1'/></A>");
}

TEST(GraphRun, KnowsItsCommandLine) {
  RunOf t("<Count name='s'/>", "");
  EXPECT_EQ(t.run.commandLine(), QStringLiteral("kelvarin run '/tests/it'\\''s a graph.kelvarin'"));
  t.load("<Count name='s'/>", "", {{QStringLiteral("p"), QStringLiteral("a b")}});
  const QString whole =
      QStringLiteral("kelvarin run '/tests/it'\\''s a graph.kelvarin' --set 'p=a b'");
  EXPECT_EQ(t.run.commandLine(), whole);
  EXPECT_EQ(t.run.commandLine(t.id("s")), whole + QStringLiteral(" --to 's'"));
}

TEST(GraphRun, EndsWithTheGraphThatIsReplacedAndWithItself) {
  auto t = std::make_unique<RunOf>(
      std::string("<Count name='s' rows='") + kEndless + "'/><Collect name='w' quiet='1'/>", "s w");
  ASSERT_TRUE(t->run.start());
  t->load("<Count name='s' rows='3'/>", "");
  ASSERT_TRUE(t->finish());
  EXPECT_EQ(t->run.result(), nullptr);
  t->load(std::string("<Count name='s' rows='") + kEndless + "'/>", "");
  ASSERT_TRUE(t->run.start());
  t.reset();
}

// KELVARIN_RUNS says how many; a release is tried with 1,000 under the thread sanitizer.
TEST(GraphRun, CanBeStoppedAtAnyMoment) {
  const int runs = qEnvironmentVariableIsSet("KELVARIN_RUNS")
                       ? qEnvironmentVariableIntValue("KELVARIN_RUNS")
                       : 100;
  RunOf t(
      "<Count name='s' rows='40000' texts='1'/><EveryNth name='f' n='3'/><WithTable name='c'/>"
      "<Collect name='w' quiet='1'/><Collect name='v' quiet='1'/>",
      "s f, s c, f c:1, c w, f:1 v");
  std::mt19937 random(7);
  int stopped = 0;
  for (int i = 0; i < runs; ++i) {
    ASSERT_TRUE(t.run.start());
    const int moment = static_cast<int>(random() % 30);
    QTest::qWait(moment / 2);
    t.run.stop();
    if (moment % 3 == 0) {
      t.commands.setDisabled({t.id("v")}, moment % 2 == 0);
    }
    ASSERT_TRUE(t.finish());
    stopped += t.run.result()->isOk() ? 0 : 1;
    ASSERT_NE(t.run.result()->state, GlobalParameters::RunningState::failed);
  }
  EXPECT_GT(stopped, 0);
}

}  // namespace
}  // namespace kelvarin::testing
