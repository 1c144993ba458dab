// The run of one branch, for an editor that steps through its rows.
#include <semaphore>

#include <gtest/gtest.h>

#include "host/engine/branch_run.h"
#include "host/engine/tests/made_actions.h"

namespace kelvarin::testing {
namespace {

using RunningState = GlobalParameters::RunningState;
using Calls = std::vector<std::string>;

class Runner final : public EngineRunner {
 public:
  ~Runner() override { wait(); }
};

TEST(BranchRun, RunsWhatLiesUpstreamAndNoSink) {
  TestGraph t("<Count name='s' rows='5'/><Pass name='p'/><Collect name='w'/><Count name='other'/>",
              "s p, p w");
  Runner runner;
  ActionItem& action = *t.graph.actions[1].item;
  ASSERT_TRUE(runBranch(t.graph, t.catalogue(), runner, action, -1));
  runner.wait();
  EXPECT_EQ(runner.state(), RunningState::endedNormally);
  EXPECT_EQ(t.seen.steps["s"], 6);
  EXPECT_EQ(t.seen.calls["p"], (Calls{"init", "close"}));
  EXPECT_EQ(t.seen.calls.count("w") + t.seen.calls.count("other"), 0u);
  EXPECT_FALSE(runBranch(t.graph, t.catalogue(), runner, action, 1));
}

TEST(BranchRun, LogsToTheHostOfItsStarter) {
  TestGraph t("<Count name='s' throwAt='2'/><Pass name='p'/>", "s p");
  Runner runner;
  ASSERT_TRUE(runBranch(t.graph, t.catalogue(), runner, *t.graph.actions[1].item, -1));
  runner.wait();
  EXPECT_EQ(runner.state(), RunningState::failed);
  ASSERT_EQ(t.host.lines().size(), 1u);
  EXPECT_EQ(t.host.log()[0].find("error: "), 0u);
}

TEST(BranchRun, IsStoppedAtItsNextRowAndCanBeRunAgain) {
  TestGraph t("<Count name='s' rows='1000000000'/><Pass name='p'/>", "s p");
  std::binary_semaphore hasBegun{0};
  t.seen.onSourceRow = [&hasBegun](long long row) {
    if (row == 1) {
      hasBegun.release();
    }
  };
  Runner runner;
  for (int run = 0; run < 2; ++run) {
    ASSERT_TRUE(runBranch(t.graph, t.catalogue(), runner, *t.graph.actions[1].item, -1));
    hasBegun.acquire();
    EXPECT_TRUE(runner.isRunning());
    runner.stop();
    runner.wait();
    EXPECT_FALSE(runner.isRunning());
    EXPECT_EQ(runner.state(), RunningState::stoppedByUser);
  }
  runner.stop();
  EXPECT_EQ(runner.state(), RunningState::stoppedByUser);
}

// The engine's thread stands in a row while the test changes the graph above the action.
TEST(BranchRun, GoesOnWithItsCopyWhileTheGraphIsEdited) {
  TestGraph t("<Count name='s' rows='50'/><Pass name='p'/><Pass name='q'/>", "s p, p q");
  std::binary_semaphore hasBegun{0};
  std::binary_semaphore isEdited{0};
  t.seen.onSourceRow = [&](long long row) {
    if (row == 1) {
      hasBegun.release();
      isEdited.acquire();
    }
  };
  Runner runner;
  ActionItem* edited = t.graph.actions[2].item.get();
  ASSERT_TRUE(runBranch(t.graph, t.catalogue(), runner, *edited, -1));
  hasBegun.acquire();
  EXPECT_NE(edited->run(), nullptr);
  t.graph.actions.erase(t.graph.actions.begin());
  t.graph.links.clear();
  isEdited.release();
  runner.wait();
  EXPECT_EQ(runner.state(), RunningState::endedNormally);
  EXPECT_EQ(t.seen.steps["s"], 51);
  EXPECT_EQ(edited->run(), nullptr);
  EXPECT_EQ(t.graph.actions[1].item.get(), edited);
}

TEST(BranchRun, EndsWithItsRunner) {
  TestGraph t("<Count name='s' rows='1000000000'/><Pass name='p'/>", "s p");
  {
    EngineRunner runner;
    ASSERT_TRUE(runBranch(t.graph, t.catalogue(), runner, *t.graph.actions[1].item, -1));
  }
  EXPECT_LT(t.seen.steps["s"], 1000000000);
}

// Waits for something that never happens.
class Waiting final : public TestAction {
 public:
  KELVARIN_TEST_ACTION(Waiting, 0, 1)
  void wakeAll() override { m_wakeUp.release(); }
  bool step() {
    witness->onSourceRow(0);
    m_wakeUp.acquire();
    return false;
  }

 private:
  std::counting_semaphore<> m_wakeUp{0};
};

TEST(BranchRun, StoppingWakesActionsThatWait) {
  TestGraph t("<Waiting name='s'/><Pass name='p'/>", "s p", prototypesWith<Waiting>());
  std::binary_semaphore isWaiting{0};
  t.seen.onSourceRow = [&isWaiting](long long) { isWaiting.release(); };
  Runner runner;
  ASSERT_TRUE(runBranch(t.graph, t.catalogue(), runner, *t.graph.actions[1].item, -1));
  isWaiting.acquire();
  runner.stop();
  runner.wait();
  EXPECT_EQ(runner.state(), RunningState::stoppedByUser);
}

}  // namespace
}  // namespace kelvarin::testing
