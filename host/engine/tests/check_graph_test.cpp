// The check of a graph without running it, and the run of one branch.
#include <gtest/gtest.h>

#include "host/engine/branch_run.h"
#include "host/engine/tests/test_actions.h"

namespace kelvarin::testing {
namespace {

using RunningState = GlobalParameters::RunningState;
using Calls = std::vector<std::string>;

TEST(CheckGraph, GivesColumnsWithoutRowsAndOpensNoSink) {
  TestGraph t("<Count name='s'/><WithTable name='c'/><Collect name='w'/>", "s c, c w");
  const RunResult result = checkGraph(t.graph, t.record);
  EXPECT_TRUE(result.isOk());
  EXPECT_EQ(t.of(result, "s").rowsOut, std::vector<long long>{0});
  EXPECT_EQ(t.seen.calls["c"], (Calls{"init", "columns n", "close"}));
  EXPECT_EQ(t.seen.calls.count("w"), 0u);
}

TEST(CheckGraph, ReadsTheBranchOfATableAndNothingElse) {
  TestGraph t(
      "<Count name='data' rows='1000'/><Count name='s' rows='6'/><EveryNth name='f' "
      "n='2'/><WithTable name='c'/>"
      "<Collect name='w'/>",
      "data c, s f, f c:1, c w");
  EXPECT_TRUE(checkGraph(t.graph, t.record).isOk());
  EXPECT_EQ(t.seen.values["c"], (std::vector<double>{0, 2, 4}));
  EXPECT_EQ(t.seen.steps["data"], 1);
}

TEST(CheckGraph, ReadsASourceThatFeedsBothPinsForTheTableOnly) {
  TestGraph t(
      "<Count name='s' rows='6'/><EveryNth name='f' n='2'/><WithTable name='c'/><Collect "
      "name='w'/>",
      "s c, s f, f c:1, c w");
  const RunResult result = checkGraph(t.graph, t.record);
  EXPECT_TRUE(result.isOk());
  EXPECT_EQ(t.seen.values["c"], (std::vector<double>{0, 2, 4}));
  EXPECT_EQ(t.seen.calls["c"], (Calls{"init", "columns n", "close"}));
  EXPECT_EQ(t.of(result, "c").rowsIn, (std::vector<long long>{0, 3}));
}

TEST(CheckGraph, ChecksABranchWhoseTableNobodyReadsWithoutRows) {
  TestGraph t(
      "<Count name='s'/><Count name='table' rows='1000'/><EveryNth name='f'/><Collect name='w'/>",
      "s f, table f:1, f w");
  EXPECT_TRUE(checkGraph(t.graph, t.record).isOk());
  EXPECT_EQ(t.seen.steps["table"], 1);
}

TEST(CheckGraph, TellsTheFaultsOfSeveralActions) {
  TestGraph t("<Count name='a' refuse='1'/><Pass name='p'/><Count name='b'/><WithTable name='c'/>",
              "a p, b c");
  EXPECT_EQ(checkGraph(t.graph, t.record).state, RunningState::failed);
  EXPECT_EQ(t.seen.calls["c"], (Calls{"init", "columns n", "close"}));
  EXPECT_EQ(t.seen.calls["a"], (Calls{"init", "close after failure"}));
}

class Runner final : public EngineRunner {
 public:
  ~Runner() override { wait(); }
};

TEST(BranchRun, RunsWhatLiesUpstreamAndNoSink) {
  TestGraph t("<Count name='s' rows='5'/><Pass name='p'/><Collect name='w'/><Count name='other'/>",
              "s p, p w");
  Runner runner;
  const ActionItem& action = *t.graph.actions[1].item;
  ASSERT_TRUE(runBranch(t.graph, runner, action, -1, t.record));
  runner.wait();
  EXPECT_EQ(t.record.status, RunningState::endedNormally);
  EXPECT_EQ(t.seen.steps["s"], 6);
  EXPECT_EQ(t.seen.calls["p"], (Calls{"init", "close"}));
  EXPECT_EQ(t.seen.calls.count("w") + t.seen.calls.count("other"), 0u);
  EXPECT_FALSE(runBranch(t.graph, runner, action, 1, t.record));
}

}  // namespace
}  // namespace kelvarin::testing
