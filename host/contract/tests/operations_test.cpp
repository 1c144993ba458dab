#include <atomic>

#include <gtest/gtest.h>

#include "host/contract/engine_runner.h"
#include "host/contract/pin_out_data_preview.h"
#include "host/contract/text_operations.h"
#include "host/testing/recording_host.h"

using kelvarin::testing::RecordingHost;
using kelvarin::testing::Strings;

namespace {

TEST(Texts, AreTrimmedAndListed) {
  EXPECT_EQ(myTrim(" \ta b\n"), "a b");
  EXPECT_EQ(myTrimLeft(" a "), "a ");
  EXPECT_EQ(myTrimRight(" a "), " a");
  EXPECT_EQ(myTrim(" \n "), "");
  EXPECT_TRUE(myTrim(QString()).isNull());
  EXPECT_EQ(stringFromStringList({"a", "b", "c"}, 0), "a, b, c");
  EXPECT_EQ(stringFromStringList({"a", "b", "c"}, 2), "a, b, ... (3 in all)");
  EXPECT_EQ(totalLengthField(QString::fromUtf8("\xC3\xA9")), 6);
  EXPECT_EQ(copyForWeb("/a b/c.png"), "file:///a%20b/c.png");
  EXPECT_EQ(copyForWeb(":/x.svg"), "qrc:/x.svg");
  const QString shared = "abc";
  EXPECT_EQ(detach(shared), shared);
  EXPECT_NE(detach(shared).constData(), shared.constData());
}

TEST(Texts, SortingMovesTheValuesAlongAndKeepsTheOrderOfEqualKeys) {
  int keys[] = {9, 3, 1, 3, 0};
  int values[] = {0, 1, 2, 3, 4};
  sortIntInt(keys, values, 1, 3);
  EXPECT_EQ((std::vector<int>(values, values + 5)), (std::vector<int>{0, 2, 1, 3, 4}));
  EXPECT_EQ((std::vector<int>(keys, keys + 5)), (std::vector<int>{9, 1, 3, 3, 0}));
}

TEST(Texts, ANameCollidesUnlessItsColumnIsReplaced) {
  RecordingHost host;
  PinOutMetaData columns;
  columns.setColumnCount(2);
  columns.setNames({"a", "b"});
  const OneRow row(&columns);
  EXPECT_FALSE(doCheckNameCollision(&row, true, nullptr, {}, "c"));
  EXPECT_FALSE(doCheckNameCollision(&row, true, nullptr, {1}, "b"));
  EXPECT_EQ(host.log(), Strings{});
  EXPECT_TRUE(doCheckNameCollision(&row, false, nullptr, {0}, "b"));
  ASSERT_EQ(host.lines().size(), 1u);
  EXPECT_EQ(host.lines()[0].level, LogLevel::warning);
}

class RunningHost : public RecordingHost {
 public:
  bool runBranch(EngineRunner& runner, ActionItem&, int pin) override {
    runner.start([this, pin](RunRecord&) { lastPin = pin; });
    return true;
  }
  std::atomic<int> lastPin{-7};
};

class CountingRunner : public EngineRunner {
 public:
  ~CountingRunner() override { wait(); }
  void computationFinished() override { ++finished; }
  std::atomic<int> finished{0};
};

class SomeAction : public ActionItem {
 public:
  SomeAction() : ActionItem(XMLNode(), nullptr) {}
  const char* typeName() const override { return "Some"; }
  void setComputeRoutine() override {}
  ActionItem* createFromXML(XMLNode, GlobalParameters*) override { return new SomeAction; }
};

TEST(EngineRunner, RunsTheBranchBesideItsCallerAndReportsTheEnd) {
  SomeAction action;
  CountingRunner runner;
  {
    RecordingHost unable;
    EXPECT_FALSE(runner.run(-1, &action, 0, false));
    EXPECT_EQ(unable.log().size(), 1u);
  }
  RunningHost host;
  for (int run = 1; run <= 3; ++run) {
    EXPECT_TRUE(runner.run(-1, &action, 0, true));
    EXPECT_EQ(runner.finished, run);
    EXPECT_EQ(host.lastPin, -1);
  }
  EXPECT_FALSE(runner.isRunning());
}

TEST(DataPreview, IsCompleteAtTheLastEntryAndStartsAgainEmpty) {
  PinOutDataPreview preview;
  PinOutMetaData columns;
  columns.setColumnCount(2);
  preview.append({0, 8, 100});
  EXPECT_FALSE(preview.isComplete());
  preview.complete({0, 11, 180});
  EXPECT_TRUE(preview.isComplete());
  EXPECT_EQ(preview.entries().back(), (PinOutDataPreview::Entry{0, 11, 180}));
  preview.start(columns);
  EXPECT_TRUE(preview.entries().empty());
  EXPECT_FALSE(preview.isComplete());
  EXPECT_EQ(preview.columns().columnCount(), 2);
}

}  // namespace
