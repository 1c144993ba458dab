// The check of a graph without running it, and the columns that reach a pin.
#include <gtest/gtest.h>

#include "host/engine/input_columns.h"
#include "host/engine/tests/made_actions.h"

namespace kelvarin::testing {
namespace {

using RunningState = GlobalParameters::RunningState;
using Calls = std::vector<std::string>;

TEST(CheckGraph, AnnouncesColumnsWithoutRowsAndOpensNoSink) {
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

TEST(CheckGraph, ReportsTheFaultsOfSeveralActions) {
  TestGraph t("<Count name='a' refuse='1'/><Pass name='p'/><Count name='b'/><WithTable name='c'/>",
              "a p, b c");
  EXPECT_EQ(checkGraph(t.graph, t.record).state, RunningState::failed);
  EXPECT_EQ(t.seen.calls["c"], (Calls{"init", "columns n", "close"}));
  EXPECT_EQ(t.seen.calls["a"], (Calls{"init", "close after failure"}));
}

// Logs why it refuses.
class Faulty final : public TestAction {
 public:
  KELVARIN_TEST_ACTION(Faulty, 1, 1)
  char init() override {
    MainUI::addLog(LogLevel::error, QStringLiteral("no such file"));
    return 1;
  }
  bool step() { return true; }
};

PinColumns columnsOfPin(TestGraph& t, const char* action, int pin) {
  const int index = t.graph.indexOf(QString::fromLatin1(action));
  return columnsOfInputPin(t.graph, *t.graph.actions[static_cast<std::size_t>(index)].item, pin);
}

TEST(InputColumns, AreKnownWithoutARun) {
  TestGraph t(
      "<Count name='data' texts='1'/><Count name='table' rows='3'/><WithTable name='c'/>"
      "<Collect name='w'/><Faulty name='beside'/>",
      "data c, table c:1, c w, c beside", prototypesWith<Faulty>());
  const std::vector<PinColumns::Column> expected{{QStringLiteral("n"), MetaTypeColumn::number},
                                                 {QStringLiteral("t"), MetaTypeColumn::text}};
  EXPECT_EQ(columnsOfPin(t, "w", 0).columns, expected);
  EXPECT_EQ(t.seen.values["c"], countedTo(3));  // a table decides on columns
  EXPECT_EQ(columnsOfPin(t, "c", 1).columns, std::vector(expected.begin(), expected.begin() + 1));
  EXPECT_EQ(t.seen.calls.count("w"), 0u);
}

TEST(InputColumns, AreUnknownWithAReasonAndWithoutALineInTheLog) {
  TestGraph t("<Count name='s'/><Faulty name='f'/><Pass name='p'/>", "s f, f p",
              prototypesWith<Faulty>());
  const PinColumns columns = columnsOfPin(t, "p", 0);
  EXPECT_FALSE(columns.isKnown);
  EXPECT_EQ(columns.whyUnknown, QStringLiteral("no such file"));
  EXPECT_FALSE(columnsOfPin(t, "s", 0).isKnown);
  EXPECT_EQ(t.host.log(), Strings{});
}

}  // namespace
}  // namespace kelvarin::testing
