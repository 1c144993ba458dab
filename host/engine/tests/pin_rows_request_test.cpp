// Rows of a pin beside the graph that is edited.
#include <chrono>
#include <condition_variable>
#include <semaphore>

#include <gtest/gtest.h>

#include "host/engine/input_columns_cache.h"
#include "host/engine/pin_rows_request.h"
#include "host/engine/tests/made_actions.h"

namespace kelvarin::testing {
namespace {

using End = RowsReceiver::End;

class Receiver final : public RowsReceiver {
 public:
  void columnsArrived(const PinColumns& given) override {
    EXPECT_TRUE(batches.empty());
    ++columnsCalls;
    columns = given;
  }
  void rowsArrived(std::shared_ptr<const PinRows> rows) override {
    EXPECT_EQ(columnsCalls, 1);
    EXPECT_EQ(rows->firstRow(), rowCount);
    EXPECT_LE(rows->rowCount(), 1000u);
    rowCount += static_cast<long long>(rows->rowCount());
    batches.push_back(std::move(rows));
  }
  void rowsEnded(End reason, const QString& text) override {
    const std::lock_guard lock(m_mutex);
    ++m_ends;
    end = reason;
    message = text.toStdString();
    m_ended.notify_all();
  }
  void actionFailed(const QString& name) override { failedAction = name.toStdString(); }
  // The answer is complete then.
  End await() {
    std::unique_lock lock(m_mutex);
    EXPECT_TRUE(m_ended.wait_for(lock, std::chrono::seconds(30), [this] { return m_ends > 0; }));
    EXPECT_EQ(m_ends, 1);
    return end;
  }
  double number(std::size_t batch, std::size_t row) const {
    double value = 0;
    std::memcpy(&value, batches[batch]->value(row, 0), sizeof value);
    return value;
  }

  PinColumns columns;
  int columnsCalls = 0;
  std::vector<std::shared_ptr<const PinRows>> batches;
  long long rowCount = 0;
  End end = End::complete;
  std::string message;
  std::string failedAction;

 private:
  std::mutex m_mutex;
  std::condition_variable m_ended;
  int m_ends = 0;
};

struct Asked {
  std::shared_ptr<Receiver> receiver = std::make_shared<Receiver>();
  std::unique_ptr<RowsRequest> request;
};

class PinRowsTest : public ::testing::Test {
 protected:
  Asked ask(TestGraph& t, const char* action, int pin, bool isOutput, long long limit) {
    if (m_requests == nullptr) {
      m_requests = std::make_unique<PinRowsRequests>(t.catalogue());
    }
    Asked asked;
    const auto index = static_cast<std::size_t>(t.graph.indexOf(QString::fromLatin1(action)));
    asked.request = m_requests->start(t.graph, *t.graph.actions[index].item, pin, isOutput, limit,
                                      asked.receiver, 7);
    return asked;
  }

  std::unique_ptr<PinRowsRequests> m_requests;
};

TEST_F(PinRowsTest, ComeInBatchesUpToTheLimitAndOpenNoSink) {
  TestGraph t("<Count name='s' rows='2500' texts='1'/><Pass name='p'/><Collect name='w'/>",
              "s p, p w");
  const Asked all = ask(t, "w", 0, false, 100000);
  EXPECT_EQ(all.receiver->await(), End::complete);
  EXPECT_EQ(all.receiver->rowCount, 2500);
  EXPECT_EQ(all.receiver->batches[0]->rowCount(), 100u);  // do not wait for the others
  EXPECT_EQ(all.receiver->number(3, 399), 2499);
  EXPECT_EQ(all.receiver->batches[0]->value(2, 1), nullptr);
  EXPECT_NE(all.receiver->batches[0]->value(3, 1), nullptr);
  EXPECT_EQ(all.receiver->columns.version, 7u);
  const Asked some = ask(t, "p", 0, true, 1001);
  EXPECT_EQ(some.receiver->await(), End::limit);
  EXPECT_EQ(some.receiver->rowCount, 1001);
  EXPECT_EQ(t.seen.calls.count("w"), 0u);
  EXPECT_EQ(t.host.log(), Strings{});
}

TEST_F(PinRowsTest, WithoutRowsThereAreTheColumns) {
  TestGraph t("<Count name='s' rows='3'/><Pass name='p'/><Count name='none' rows='0'/>", "s p");
  const Asked columns = ask(t, "p", 0, false, 0);
  EXPECT_EQ(columns.receiver->await(), End::limit);
  EXPECT_TRUE(columns.receiver->columns.isKnown);
  EXPECT_EQ(columns.receiver->columns.columns[0].name, QStringLiteral("n"));
  const Asked none = ask(t, "none", 0, true, 10);
  EXPECT_EQ(none.receiver->await(), End::complete);
  EXPECT_TRUE(none.receiver->columns.isKnown);
  EXPECT_EQ(none.receiver->rowCount, 0);
}

TEST_F(PinRowsTest, ThereIsNoneOfAPinThatIsNotLinkedOrAbsent) {
  TestGraph t("<Count name='s'/><WithTable name='c'/><Collect name='w'/>", "s c, c w");
  EXPECT_EQ(ask(t, "c", 1, false, 10).request, nullptr);
  EXPECT_EQ(ask(t, "w", 0, true, 10).request, nullptr);
  EXPECT_EQ(ask(t, "c", 1, true, 10).request, nullptr);
}

TEST_F(PinRowsTest, AFailureComesWithItsRowsAndItsReason) {
  TestGraph t("<Count name='s' rows='9' throwAt='4'/><Pass name='p'/>", "s p");
  const Asked asked = ask(t, "p", 0, false, 100);
  EXPECT_EQ(asked.receiver->await(), End::failed);
  EXPECT_EQ(asked.receiver->rowCount, 4);
  EXPECT_NE(asked.receiver->message.find("out of luck"), std::string::npos);
  EXPECT_EQ(asked.receiver->failedAction, "s");
  EXPECT_EQ(t.host.log(), Strings{});

  TestGraph refused("<Count name='s' rows='9' refuse='1'/><Pass name='p'/>", "s p");
  m_requests.reset();
  const Asked unknown = ask(refused, "p", 0, false, 100);
  EXPECT_EQ(unknown.receiver->await(), End::failed);
  EXPECT_EQ(unknown.receiver->columnsCalls, 1);
  EXPECT_FALSE(unknown.receiver->columns.isKnown);
}

TEST_F(PinRowsTest, CancellingEndsALongBranchWithinATenthOfASecond) {
  TestGraph t("<Count name='s' rows='1000000000'/><EveryNth name='f' n='900000000'/>", "s f");
  std::binary_semaphore isAtWork{0};
  t.seen.onSourceRow = [&isAtWork](long long row) {
    if (row == 10000) {
      isAtWork.release();
    }
  };
  Asked asked = ask(t, "f", 0, true, 1000);
  isAtWork.acquire();
  const auto start = std::chrono::steady_clock::now();
  asked.request->cancel();
  EXPECT_EQ(asked.receiver->await(), End::cancelled);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(100));

  Asked dropped = ask(t, "f", 0, true, 1000);
  isAtWork.acquire();
  dropped.request.reset();
  EXPECT_EQ(dropped.receiver->await(), End::cancelled);

  Asked abandoned = ask(t, "f", 0, true, 1000);
  isAtWork.acquire();
  m_requests.reset();
  EXPECT_EQ(abandoned.receiver->await(), End::cancelled);
}

TEST_F(PinRowsTest, RequestsRunSideBySideWhileTheGraphIsEdited) {
  TestGraph t("<Count name='s' rows='30000'/><Pass name='p'/><EveryNth name='f' n='3'/>",
              "s p, p f");
  std::vector<Asked> asked;
  for (int i = 0; i < 8; ++i) {
    asked.push_back(ask(t, i % 2 == 0 ? "p" : "f", 0, true, 1000000));
  }
  t.graph.links.clear();
  t.graph.actions.clear();
  for (std::size_t i = 0; i < asked.size(); ++i) {
    EXPECT_EQ(asked[i].receiver->await(), End::complete);
    EXPECT_EQ(asked[i].receiver->rowCount, i % 2 == 0 ? 30000 : 10000);
  }
}

TEST_F(PinRowsTest, ColumnsAreAnsweredAtOnceAndComputedAnewForAnotherVersion) {
  TestGraph t("<Count name='s'/><Pass name='p'/><Pass name='alone'/>", "s p");
  PinRowsRequests requests(t.catalogue());
  InputColumnsCache cache(requests);
  const ActionItem& action = *t.graph.actions[1].item;
  const auto awaited = [&](quint64 version) {
    PinColumns columns = cache.columns(t.graph, action, 0, version);
    while (columns.isBeingComputed) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
      columns = cache.columns(t.graph, action, 0, version);
    }
    return columns;
  };
  // What the actions of the branch note about themselves waits for the lock, and so do the columns.
  const auto atOnce = [&](quint64 version) {
    const std::lock_guard held(witness->mutex);
    return cache.columns(t.graph, action, 0, version);
  };
  EXPECT_TRUE(atOnce(1).isBeingComputed);
  EXPECT_EQ(awaited(1).columns.size(), 1u);
  t.graph.actions[0].item.reset(t.graph.actions[0].item->createFromXML(
      *parseXml("<Count name='s' texts='1'/>"), t.graph.settings.get()));
  const PinColumns old = atOnce(2);
  EXPECT_TRUE(old.isKnown);
  EXPECT_EQ(old.version, 1u);
  const PinColumns now = awaited(2);
  EXPECT_EQ(now.columns.size(), 2u);
  EXPECT_EQ(now.version, 2u);
  const PinColumns none = cache.columns(t.graph, *t.graph.actions[2].item, 0, 2);
  EXPECT_FALSE(none.isKnown || none.isBeingComputed);
}

}  // namespace
}  // namespace kelvarin::testing
