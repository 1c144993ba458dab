#include "ui/language/input_rows.h"

#include <cstddef>
#include <thread>

#include <gtest/gtest.h>

#include <QCoreApplication>

#include "host/contract/host_services.h"
#include "host/testing/recording_host.h"
#include "ui/language/shown_value.h"
#include "ui/language/tests/formula_fixture.h"
#include "ui/language/tests/wait_for.h"

namespace kelvarin {
namespace {

// A host whose answers the test sends, each from a thread of its own.
class RowsHost : public testing::RecordingHost {
 public:
  class Request : public RowsRequest {
   public:
    explicit Request(int& cancelled) : m_cancelled(cancelled) {}
    void cancel() override { ++m_cancelled; }

   private:
    int& m_cancelled;
  };

  std::unique_ptr<RowsRequest> requestRows(const ActionItem&, int, bool, long long,
                                           std::shared_ptr<RowsReceiver> receiver) override {
    m_receivers.push_back(std::move(receiver));
    return m_isAble ? std::make_unique<Request>(m_cancelled) : nullptr;
  }
  PinColumns columnsOfInputPin(const ActionItem&, int) override {
    PinColumns columns;
    columns.whyUnknown = QStringLiteral("nothing is linked");
    return columns;
  }

  void send(std::size_t request, RowsReceiver::End end, int batches) {
    std::thread([&] {
      RowsReceiver& receiver = *m_receivers[request];
      receiver.columnsArrived(threeRows()->columns());
      for (int i = 0; i < batches; ++i) {
        receiver.rowsArrived(threeRows());
      }
      receiver.rowsEnded(end, QStringLiteral("the file is gone"));
    }).join();
  }

  bool m_isAble = true;
  int m_cancelled = 0;
  std::vector<std::shared_ptr<RowsReceiver>> m_receivers;
};

// The host above asks nothing of the action.
const ActionItem& anyAction() {
  alignas(std::max_align_t) static const std::byte memory{};
  return reinterpret_cast<const ActionItem&>(memory);
}

TEST(InputRows, TakesTheNewestAnswerOnly) {
  RowsHost host;
  auto rows = std::make_unique<InputRows>(anyAction(), 0);
  EXPECT_TRUE(rows->isBusy());
  host.send(0, RowsReceiver::End::complete, 2);
  ASSERT_TRUE(waitFor([&] { return !rows->isBusy(); }));
  ASSERT_NE(rows->rows(), nullptr);
  EXPECT_EQ(rows->rows()->rowCount(), 6U);
  EXPECT_EQ(shownValue(*rows->rows(), 5, 1).whole.toStdString(), " three ");

  rows->refresh();
  EXPECT_EQ(host.m_cancelled, 1);
  host.send(0, RowsReceiver::End::complete, 1);  // of the request before
  host.send(1, RowsReceiver::End::failed, 0);
  EXPECT_EQ(rows->rows()->rowCount(), 6U);  // until the new ones come
  ASSERT_TRUE(waitFor([&] { return !rows->isBusy(); }));
  EXPECT_EQ(rows->rows(), nullptr);
  EXPECT_EQ(rows->columns().whyUnknown.toStdString(), "the file is gone");

  rows->refresh();
  host.send(2, RowsReceiver::End::complete, 1);
  rows.reset();
  host.send(2, RowsReceiver::End::complete, 1);
  QCoreApplication::processEvents();  // nothing is called any more
  EXPECT_EQ(host.m_cancelled, 3);
}

TEST(InputRows, SaysWhyNothingIsKnown) {
  RowsHost host;
  host.m_isAble = false;
  const InputRows rows(anyAction(), 0);
  EXPECT_FALSE(rows.isBusy());
  EXPECT_FALSE(rows.columns().isKnown);
  EXPECT_EQ(rows.columns().whyUnknown.toStdString(), "nothing is linked");
}

}  // namespace
}  // namespace kelvarin
