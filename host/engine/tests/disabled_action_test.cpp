// Actions that are switched off, in runs, checks and debug runs.
#include <gtest/gtest.h>

#include "host/contract/file_user.h"
#include "host/engine/branch_run.h"
#include "host/engine/graph_writer.h"
#include "host/engine/tests/made_actions.h"

namespace kelvarin::testing {
namespace {

using Counts = std::vector<long long>;

TEST(DisabledAction, LetsTheRowsOfItsFirstPinThroughToItsFirstPinOnly) {
  TestGraph t(
      "<Count name='s' rows='10'/><EveryNth name='f' n='4' disabled='1'/><Pass name='p'/>"
      "<Collect name='a'/><Collect name='b'/>",
      "s f, f a, f:1 p, p b");
  const RunResult result = t.run();
  EXPECT_TRUE(result.isOk());
  EXPECT_EQ(t.seen.values["a"], countedTo(10));
  EXPECT_TRUE(t.seen.values["b"].empty());
  EXPECT_EQ(t.of(result, "f").typeName, QStringLiteral("EveryNth"));
  EXPECT_EQ(t.of(result, "f").rowsIn, (Counts{10, 0}));
  EXPECT_EQ(t.of(result, "f").rowsOut, (Counts{10, 0}));
  EXPECT_EQ(t.of(result, "f").pins[1].columns.size(), 1u);
  EXPECT_EQ(t.seen.calls.count("f"), 0u);
}

TEST(DisabledAction, HasNoRowsAsASourceAndWritesNothingAsASink) {
  TestGraph t(
      "<Count name='off' disabled='1' refuse='1'/><Count name='s' rows='7'/><Collect name='a'/>"
      "<Collect name='quiet' disabled='1' refuse='1'/><Collect name='alone' disabled='1'/>",
      "off a, s quiet");
  const RunResult result = t.run();
  EXPECT_TRUE(result.isOk());
  EXPECT_TRUE(result.log.empty());
  EXPECT_EQ(t.seen.calls["a"], (std::vector<std::string>{"init", "close"}));
  EXPECT_EQ(t.of(result, "a").rowsIn, Counts{0});
  EXPECT_EQ(t.of(result, "quiet").rowsIn, Counts{7});
  EXPECT_EQ(t.seen.calls.count("quiet") + t.seen.calls.count("off"), 0u);
}

// On both sides of a fork, and in the branch of a table of variables.
TEST(DisabledAction, StandsInForksAndAboveTables) {
  TestGraph t(
      "<Count name='s' rows='20000' texts='1'/><Pass name='before' stops='3' disabled='1'/>"
      "<EveryNth name='f' n='5000'/><Pass name='t' stops='1' disabled='1'/><WithTable name='c'/>"
      "<Collect name='a'/><Collect name='b'/>",
      "s before, before f, before c, before a, f t, t c:1, c b");
  EXPECT_TRUE(t.run().isOk());
  EXPECT_EQ(t.seen.values["a"], countedTo(20000));
  EXPECT_EQ(t.seen.values["b"], countedTo(20000));
  EXPECT_EQ(t.seen.values["c"], (std::vector<double>{0, 5000, 10000, 15000}));
  EXPECT_EQ(t.seen.calls["b"], (std::vector<std::string>{"init", "close"}));
}

TEST(DisabledAction, PassesColumnsOnInACheck) {
  TestGraph t(
      "<Count name='s'/><Pass name='p' disabled='1' refuse='1'/><Count name='table' rows='3'/>"
      "<Pass name='t' disabled='1'/><WithTable name='c'/><Collect name='w' disabled='1'/>",
      "s p, p c, table t, t c:1, c w");
  EXPECT_TRUE(checkGraph(t.graph, t.record).isOk());
  EXPECT_EQ(t.seen.values["c"], (std::vector<double>{0, 1, 2}));
  EXPECT_EQ(t.seen.calls["c"], (std::vector<std::string>{"init", "columns n", "close"}));
}

TEST(DisabledAction, IsSavedAsOneAndMayFollowAParameter) {
  TestGraph t("<Count name='s' disabled='1'/><Pass name='p' disabled='0'/>", "s p");
  EXPECT_TRUE(t.graph.actions[0].isDisabled);
  EXPECT_FALSE(t.graph.actions[1].isDisabled);
  const QByteArray saved = graphDocument(t.graph);
  EXPECT_EQ(saved.count("disabled='1'"), 1);
  EXPECT_EQ(saved.count("disabled"), 1);
  const auto again = parseGraph(
      "<KelvarinGraph><Parameters><Parameter name='off' value='1'/></Parameters>"
      "<Actions><Count name='s' disabled='${off}'/></Actions></KelvarinGraph>",
      QStringLiteral("g"), t.catalogue());
  ASSERT_TRUE(again);
  EXPECT_TRUE(again.value().actions[0].isDisabled);
}

TEST(DisabledAction, IsAtWorkWhileItIsDebugged) {
  TestGraph t("<Count name='s' rows='8'/><EveryNth name='f' disabled='1'/>", "s f");
  const HostSession::Scope scope(nullptr);
  EngineRunner runner;
  ASSERT_TRUE(runBranch(t.graph, t.catalogue(), runner, *t.graph.actions[1].item, -1));
  runner.wait();
  EXPECT_EQ(t.seen.calls["f"], (std::vector<std::string>{"init", "close"}));
}

// A source that writes what another one reads would be refused.
class Overwriting final : public TestAction, public FileUser {
 public:
  KELVARIN_TEST_ACTION(Overwriting, 1, 1)
  bool step() { return getNextRowFromInPin(0) == nullptr; }
  QList<UsedFile> usedFiles() const override {
    return {{QStringLiteral("/tests/same.csv"), FileUse::writes, {}}};
  }
};

TEST(DisabledAction, ClaimsNoFiles) {
  const std::string first = "<Count name='s'/><Overwriting name='a'/><Overwriting name='b' ";
  TestGraph both(first + "/>", "s a, a b", prototypesWith<Overwriting>());
  EXPECT_FALSE(both.run().isOk());
  TestGraph one(first + "disabled='1'/>", "s a, a b", prototypesWith<Overwriting>());
  EXPECT_TRUE(one.run().isOk());
}

}  // namespace
}  // namespace kelvarin::testing
