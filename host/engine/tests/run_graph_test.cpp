// How rows travel through graphs, and how a run begins and ends.
#include <chrono>

#include <gtest/gtest.h>

#include "host/engine/tests/made_actions.h"

namespace kelvarin::testing {
namespace {

using RunningState = GlobalParameters::RunningState;
using Calls = std::vector<std::string>;
using Counts = std::vector<long long>;

TEST(RunGraph, CountsTheRowsOfEveryPin) {
  TestGraph t(
      "<Count name='s' rows='10'/><EveryNth name='f' n='4'/><Collect name='a'/><Collect name='b'/>",
      "s f, f a, f:1 b");
  const RunResult result = t.run();
  EXPECT_TRUE(result.isOk());
  EXPECT_EQ(t.of(result, "s").rowsOut, Counts{10});
  EXPECT_EQ(t.of(result, "f").rowsIn, (Counts{10, 0}));
  EXPECT_EQ(t.of(result, "f").rowsOut, (Counts{3, 7}));
  EXPECT_EQ(t.of(result, "b").rowsIn, Counts{7});
  EXPECT_EQ(t.seen.values["a"], (std::vector<double>{0, 4, 8}));
  EXPECT_EQ(t.seen.values["b"], (std::vector<double>{1, 2, 3, 5, 6, 7, 9}));
  EXPECT_TRUE(result.log.empty());
}

TEST(RunGraph, GivesEveryReaderEveryRowInOrder) {
  TestGraph t(
      "<Count name='s' rows='20000' texts='1'/><EveryNth name='few' n='1000'/>"
      "<Collect name='a'/><Collect name='b'/><Collect name='c'/><Collect name='d'/>",
      "s a, s b, s few, few c, few:1 d");
  EXPECT_TRUE(t.run().isOk());
  EXPECT_EQ(t.seen.values["a"], countedTo(20000));
  EXPECT_EQ(t.seen.values["b"], countedTo(20000));
  EXPECT_EQ(t.seen.values["c"].size(), 20u);
  EXPECT_EQ(t.seen.values["d"].size(), 19980u);
  for (const auto& [name, calls] : t.seen.calls) {
    EXPECT_EQ(calls, (Calls{"init", "close"})) << name;
  }
}

// Rows wait here for the reader of pin 1, which has its own turn only when the first row has come
// through the filter.
TEST(RunGraph, ReadsAHeldRowUnchangedWhileThePinBesideItIsRead) {
  for (const long long memory : {64LL << 20, 0LL}) {
    TestGraph t(
        "<Count name='s' rows='50000' texts='1'/><EveryNth name='f' n='5000'/><WithTable "
        "name='c'/><Collect name='w'/>",
        "s c, s f, f c:1, c w");
    t.options.queueMemoryBytes = memory;
    EXPECT_TRUE(t.run().isOk());
    EXPECT_EQ(t.seen.values["c"].size(), 10u);
    EXPECT_EQ(t.seen.values["w"], countedTo(50000));
    EXPECT_EQ(t.seen.calls["w"], (Calls{"init", "close"}));
  }
}

TEST(RunGraph, HoldsRowsOverStepsWhileOthersPullTheSource) {
  TestGraph t(
      "<Count name='s' rows='3000'/><Pass name='p'/><AddPairs name='j'/><Collect "
      "name='w'/><Collect name='x'/>",
      "s p, p j, s j:1, j w, s x");
  EXPECT_TRUE(t.run().isOk());
  EXPECT_EQ(t.seen.calls["j"], (Calls{"init", "close"}));
  ASSERT_EQ(t.seen.values["w"].size(), 3000u);
  EXPECT_EQ(t.seen.values["w"][2999], 2.0 * 2999);
  EXPECT_EQ(t.seen.values["x"], countedTo(3000));
}

// The last row of a reader that finishes as it publishes it is read after the reader's end, while
// the others go on and the queue of the fork moves and goes to disk.
TEST(RunGraph, ARowOutlivesTheEndOfTheReaderThatPublishedIt) {
  for (const long long memory : {64LL << 20, 0LL}) {
    TestGraph t(
        "<Count name='s' rows='30000' texts='1'/>"
        "<Pass name='one' stops='1'/><Pass name='below'/><Collect name='a'/>"
        "<Pass name='late' stops='20000'/><EveryNth name='f' n='19999'/><Collect name='b'/>"
        "<Pass name='twice'/><Pass name='few' stops='7'/><Collect name='c'/><Collect name='d'/>"
        "<Collect name='all'/>",
        "s one, one below, below a, s late, late f, f b, s twice, twice few, few c, "
        "twice d, s all");
    t.options.queueMemoryBytes = memory;
    EXPECT_TRUE(t.run().isOk());
    EXPECT_EQ(t.seen.values["a"], countedTo(1));
    EXPECT_EQ(t.seen.values["b"], (std::vector<double>{0, 19999}));
    EXPECT_EQ(t.seen.values["c"], countedTo(7));
    EXPECT_EQ(t.seen.values["d"], countedTo(30000));
    EXPECT_EQ(t.seen.values["all"], countedTo(30000));
    for (const auto& [name, calls] : t.seen.calls) {
      EXPECT_EQ(calls, (Calls{"init", "close"})) << name;  // no wrong text
    }
  }
}

// With the last reader the queue's batches go, but not the one that its last row lies in.
TEST(RunGraph, ARowOutlivesTheEndOfAllReaders) {
  TestGraph t(
      "<Count name='s' rows='3000' texts='1'/><Pass name='p' stops='1'/><Collect name='a'/>"
      "<Pass name='q' stops='3000'/><Collect name='b'/>",
      "s p, p a, s q, q b");
  EXPECT_TRUE(t.run().isOk());
  EXPECT_EQ(t.seen.values["b"], countedTo(3000));
  EXPECT_EQ(t.seen.calls["b"], (Calls{"init", "close"}));
}

// What lies between a fork and a reader that has finished asks for nothing more: rows kept for it
// would fill the disk.
TEST(RunGraph, KeepsNoRowsForABranchWhoseSinksHaveFinished) {
  TestGraph t(
      "<Count name='s' rows='300000' texts='1'/><Pass name='p'/><Pass name='q'/>"
      "<Pass name='few' stops='3'/><Collect name='a'/><Collect name='b' quiet='1'/>",
      "s p, p q, q few, few a, s b");
  t.options.queueMemoryBytes = 1 << 20;
  t.options.temporaryFolder = QStringLiteral("/nonexistent");  // any row on disk would fail the run
  EXPECT_TRUE(t.run().isOk());
  EXPECT_EQ(t.seen.values["a"], countedTo(3));
}

TEST(RunGraph, DropsRowsThatNobodyReads) {
  // Pin 1 of `f` is linked and never read: from a fork it must not pile up, and a branch for it
  // alone does not run.
  TestGraph t(
      "<Count name='s' rows='300000' texts='1'/><Count name='alone'/><EveryNth name='f'/><EveryNth "
      "name='g'/>"
      "<Collect name='w' quiet='1'/>",
      "s f, s f:1, f g, alone g:1, g w");
  t.options.queueMemoryBytes = 0;
  t.options.temporaryFolder = QStringLiteral("/nonexistent");  // any row on disk would fail the run
  const RunResult result = t.run();
  EXPECT_TRUE(result.isOk());
  EXPECT_EQ(t.of(result, "f").rowsIn, (Counts{300000, 0}));
  EXPECT_EQ(t.of(result, "f").rowsOut, (Counts{150000, 150000}));
  EXPECT_EQ(t.seen.steps["alone"], 0);
}

TEST(RunGraph, EmptiesQueuesOfReadersThatCanRunDuringALongPull) {
  TestGraph t(
      "<Count name='s' rows='400000' texts='1'/><EveryNth name='f' n='1000000'/><Collect "
      "name='a'/><Collect name='b'/>",
      "s f, f a, f:1 b");
  t.options.queueMemoryBytes = 1 << 20;
  t.options.temporaryFolder = QStringLiteral("/nonexistent");
  EXPECT_TRUE(t.run().isOk());
  EXPECT_EQ(t.seen.values["a"].size(), 1u);
  EXPECT_EQ(t.seen.values["b"].size(), 399999u);
  EXPECT_EQ(t.seen.calls["b"], (Calls{"init", "close"}));
}

TEST(RunGraph, FailsWithAMessageWhenRowsCannotBeSpilled) {
  TestGraph t(
      "<Count name='s' rows='200000'/><EveryNth name='f' n='1000000'/><WithTable "
      "name='c'/><Collect name='w'/>",
      "s c, s f, f c:1, c w");
  t.options.queueMemoryBytes = 0;
  t.options.temporaryFolder = QStringLiteral("/nonexistent");
  const RunResult result = t.run();
  EXPECT_EQ(result.state, RunningState::failed);
  ASSERT_EQ(result.log.size(), 1u);
  EXPECT_EQ(result.log[0].action, QStringLiteral("s"));
  EXPECT_TRUE(result.log[0].text.startsWith(
      QStringLiteral("Cannot make a temporary file in /nonexistent: No such file or directory.")));
  EXPECT_EQ(t.seen.calls["w"], (Calls{"init", "close after failure"}));
}

TEST(RunGraph, StopsReadingWhenAReaderIsSatisfied) {
  TestGraph t("<Count name='s' rows='1000000'/><Pass name='p' stops='5'/><Collect name='w'/>",
              "s p, p w");
  EXPECT_TRUE(t.run().isOk());
  EXPECT_EQ(t.seen.values["w"], countedTo(5));
  EXPECT_EQ(t.seen.steps["s"], 5);
}

TEST(RunGraph, StopsAtTheNextRowEvenInsideALongPull) {
  TestGraph t("<Count name='s' rows='1000000'/><EveryNth name='f' n='1000000'/><Collect name='w'/>",
              "s f, f w");
  t.seen.onSourceRow = [&t](long long row) {
    if (row == 1000) {
      t.record.status = RunningState::stoppedByUser;
    }
  };
  EXPECT_EQ(t.run().state, RunningState::stoppedByUser);
  EXPECT_EQ(t.seen.steps["s"], 1001);
  EXPECT_EQ(t.seen.calls["w"], (Calls{"init", "close after failure"}));
}

TEST(RunGraph, RunsNothingWhenAnActionRefusesAndClosesAll) {
  TestGraph t("<Count name='s'/><Pass name='p' refuse='1'/><Collect name='w'/>", "s p, p w");
  EXPECT_EQ(t.run().state, RunningState::failed);
  EXPECT_EQ(t.seen.steps["s"], 0);
  for (const auto& [name, calls] : t.seen.calls) {
    EXPECT_EQ(calls, (Calls{"init", "close after failure"})) << name;
  }
}

TEST(RunGraph, FailsWhenAnActionFailsToClose) {
  TestGraph t("<Count name='s' failClose='1'/><Collect name='w'/>", "s w");
  EXPECT_EQ(t.run().state, RunningState::failed);
  EXPECT_EQ(t.seen.calls["w"].back(),
            "close after failure");  // so that no output gets its name
}

TEST(RunGraph, NamesTheActionThatThrows) {
  TestGraph t("<Count name='s' throwAt='7'/><Pass name='p'/><Collect name='w'/>", "s p, p w");
  const RunResult result = t.run();
  EXPECT_EQ(result.state, RunningState::failed);
  ASSERT_EQ(result.log.size(), 1u);
  EXPECT_EQ(result.log[0].action, QStringLiteral("s"));
  EXPECT_EQ(result.log[0].text,
            QStringLiteral("Internal error in action 's': out of luck. The run is stopped."));
  EXPECT_EQ(t.seen.values["w"], countedTo(7));
}

TEST(RunGraph, WarnsOfAnActionWithoutRows) {
  TestGraph t("<Collect name='w'/>", "");
  EXPECT_TRUE(t.run().isOk());
  EXPECT_EQ(t.host.log(),
            (Strings{"warning: Nothing is linked to input pin 0 of 'w': it gets no rows."}));
}

TEST(RunGraph, SaysThatThereIsNothingToRun) {
  for (const auto work : {&runGraph, &checkGraph}) {
    TestGraph t("", "");
    EXPECT_EQ(work(t.graph, t.record, t.options).state, RunningState::failed);
    EXPECT_EQ(t.host.log(), (Strings{"error: /tests/graph.kelvarin: the graph has no actions, so "
                                     "there is nothing to run. Put actions inside <Actions>."}));
  }
}

// Each action is called from within the next one. The time limit is that of a graph whose set-up
// takes time in proportion to its size, many times over.
TEST(RunGraph, RunsThousandsOfActionsOneBehindTheOtherAndSideBySide) {
  constexpr int kActions = 5000;
  std::string chain = "<Count name='p0' rows='300'/>";
  std::string star;
  std::string links;
  for (int i = 1; i <= kActions; ++i) {
    const std::string number = std::to_string(i);
    chain += "<Pass name='p" + number + "'/>";
    star += "<Collect name='x" + number + "' quiet='1'/>";
    links += "p" + std::to_string(i - 1) + " p" + number + ", p0 x" + number + ", ";
  }
  const auto start = std::chrono::steady_clock::now();
  TestGraph t(chain + star + "<Collect name='w'/>", links + "p" + std::to_string(kActions) + " w");
  const RunResult result = t.run();
  EXPECT_TRUE(result.isOk());
  EXPECT_EQ(t.seen.values["w"], countedTo(300));
  EXPECT_EQ(t.of(result, "x5000").rowsIn, Counts{300});
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

TEST(RunGraph, RunsTheSameGraphAgain) {
  TestGraph t("<Count name='s'/><Collect name='w'/>", "s w");
  t.seen.onSourceRow = [&t](long long) { t.record.status = RunningState::stoppedByUser; };
  t.run();
  t.seen.onSourceRow = nullptr;
  t.record.status = RunningState::running;
  const RunResult result = t.run();
  EXPECT_TRUE(result.isOk());
  EXPECT_EQ(t.of(result, "s").rowsOut, Counts{10});
}

}  // namespace
}  // namespace kelvarin::testing
