// Sessions: whom the statics of the contract reach, and whose files are whose.
#include <thread>

#include <gtest/gtest.h>
#include <QTemporaryDir>

#include "host/contract/claimed_names.h"
#include "host/testing/recording_host.h"

namespace kelvarin::testing {
namespace {

class Writer final : public ActionItem {
 public:
  explicit Writer(const char* xml = "<Writer/>", GlobalParameters* graph = nullptr)
      : ActionItem(*parseXml(xml), graph) {}
  const char* typeName() const override { return "Writer"; }
  void setComputeRoutine() override {}
  ActionItem* createFromXML(XMLNode, GlobalParameters*) override { return new Writer; }
};

TEST(HostSession, AThreadReachesTheHostInWhoseSessionItWorks) {
  RecordingHost outer;
  const Writer action;
  const CurrentAction current(&action);
  {
    RecordingHost inner;
    MainUI::addLog(LogLevel::warning, "inner");
    ASSERT_EQ(inner.lines().size(), 1u);
    EXPECT_EQ(inner.lines()[0].action, nullptr);  // the one of the session outside
    std::thread([&outer] {
      EXPECT_EQ(hostServices(), nullptr);
      const HostSession::Scope scope(&outer.session());
      MainUI::addLog(LogLevel::error, "worker");
    }).join();
  }
  MainUI::addLog(LogLevel::information, "outer");
  EXPECT_EQ(outer.log(), (Strings{"error: worker", "info: outer"}));
  EXPECT_EQ(outer.lines()[1].action, &action);
}

class Claims : public ::testing::Test {
 protected:
  UsedFile file(const char* name, FileUse use = FileUse::writes) const {
    return {.path = m_folder.filePath(name), .use = use, .companions = {}};
  }
  // Claims are held until the end of the test.
  bool canClaim(const Writer& action, const UsedFile& used) {
    m_hindrance = m_names.emplace_back(std::make_unique<ClaimedNames>())->claim(action, used);
    return !m_hindrance;
  }

  QTemporaryDir m_folder;
  RecordingHost m_host;
  std::vector<std::unique_ptr<ClaimedNames>> m_names;
  std::optional<QString> m_hindrance;
  Writer m_one{"<Writer name='one'/>"};
  Writer m_two{"<Writer name='two'/>"};
};

TEST_F(Claims, InOneGraphNobodyWritesWhatAnotherReadsOrWrites) {
  EXPECT_TRUE(canClaim(m_one, file("read", FileUse::reads)));
  EXPECT_TRUE(canClaim(m_two, file("read", FileUse::reads)));
  EXPECT_FALSE(canClaim(m_two, file("read")));
  EXPECT_TRUE(canClaim(m_one, file("written")));
  EXPECT_TRUE(canClaim(m_one, file("written", FileUse::reads)));
  EXPECT_FALSE(canClaim(m_two, file("written", FileUse::reads)));
  m_names.clear();
  EXPECT_TRUE(canClaim(m_two, file("written")));
}

TEST_F(Claims, TwoGraphsMayReadButNotWriteTheSameFile) {
  GlobalParameters graph;
  graph.setGraphFile("/g.kelvarin");
  const Writer first("<Writer name='first'/>", &graph);
  EXPECT_TRUE(canClaim(first, file("written")));
  EXPECT_TRUE(canClaim(first, file("read", FileUse::reads)));
  EXPECT_TRUE(canClaim(first, {.path = "-", .use = FileUse::writes, .companions = {}}));
  RecordingHost other;
  EXPECT_TRUE(canClaim(m_two, file("read")));
  EXPECT_FALSE(canClaim(m_one, file("written")));
  EXPECT_EQ(*m_hindrance, "The action 'one' cannot write its file: '" + file("written").path +
                              "' is being written by the action 'first' of the graph "
                              "'/g.kelvarin', which runs at the same time. Wait for its end, or "
                              "write to another file.");
  EXPECT_FALSE(canClaim(m_one, {.path = "/dev/stdout", .use = FileUse::writes, .companions = {}}));
  EXPECT_EQ(*m_hindrance,
            "The action 'one' cannot write to standard output: the action 'first' of the graph "
            "'/g.kelvarin', which runs at the same time, writes there, and their rows would mix. "
            "Wait for its end, or write to a file.");
  EXPECT_TRUE(canClaim(m_two, file("written", FileUse::reads)));
}

TEST_F(Claims, ReadsAreAwaitedInTheirGraphOnly) {
  ClaimedNames reader;
  reader.awaitReads();
  EXPECT_TRUE(ClaimedNames::areReadsAwaited());
  {
    RecordingHost other;
    EXPECT_FALSE(ClaimedNames::areReadsAwaited());
  }
  reader.giveBack();
  EXPECT_FALSE(ClaimedNames::areReadsAwaited());
}

}  // namespace
}  // namespace kelvarin::testing
