#include "cli/reports/rejected_rows.h"

#include <gtest/gtest.h>

#include "cli/reports/progress_objects.h"
#include "host/contract/host_session.h"

namespace kelvarin {
namespace {

class Nothing final : public ActionItem {
 public:
  Nothing() : ActionItem(XMLNode(), nullptr) {}
  const char* typeName() const override { return "Nothing"; }
  void setComputeRoutine() override {}
  ActionItem* createFromXML(XMLNode, GlobalParameters*) override { return new Nothing; }
};

class RejectedRowsTest : public testing::Test {
 protected:
  RejectedRowsTest() {
    for (int i = 0; i < 2; ++i) {
      m_graph.actions.emplace_back();
      m_graph.actions.back().item = std::make_unique<Nothing>();
    }
    m_input.setNumberOfColumns(1);
    m_input.setColName(0, QStringLiteral("text"));
    m_input.setMetaType(0, MetaInfo(MetaTypeColumn::text, 0));
  }

  void reject(RejectedRows& rows, int action, long long number, const char* output = "y") {
    RowBuffer bytes(64);
    m_input.getAllColForWrite()[0] = bytesFromUtf8(&bytes, m_text);
    RejectedRow row;
    row.number = number;
    row.output = QString::fromLatin1(output);
    row.message = QStringLiteral("wrong");
    row.input = &m_input;
    rows.rowRejected(*m_graph.actions[static_cast<std::size_t>(action)].item, row);
  }

  // The numbers of the rows in the file's order.
  static std::vector<double> numbersIn(RejectedRows& rows) {
    std::vector<double> numbers;
    while (const RowBatchPointer batch = rows.next()) {
      numbers.insert(numbers.end(), batch->column(0).numbers(),
                     batch->column(0).numbers() + batch->rowCount());
    }
    EXPECT_EQ(rows.failure(), QString());
    return numbers;
  }

  Graph m_graph;
  RunRecord m_record;
  PinOutMetaData m_columns;
  OneRow m_input{&m_columns};
  std::string m_text = "one";
};

TEST_F(RejectedRowsTest, ComeActionByActionInTheOrderOfTheGraph) {
  RejectedRows rows(nullptr, m_graph, m_record, {});
  reject(rows, 1, 4);
  reject(rows, 0, 7);
  reject(rows, 1, 5);
  reject(rows, 1, 5, "z");
  reject(rows, 0, 9);
  EXPECT_EQ(rows.rowCount(), 4);
  EXPECT_EQ(numbersIn(rows), (std::vector<double>{7, 9, 4, 5, 5}));
}

TEST_F(RejectedRowsTest, AreAllThereWhereMemoryDoesNotHoldThem) {
  RejectedRows rows(nullptr, m_graph, m_record, {});
  m_text.assign(1000, 'x');
  std::vector<double> expected;
  for (int number = 0; number < 20'000; ++number) {
    reject(rows, 0, number);
    expected.push_back(number);
  }
  EXPECT_EQ(numbersIn(rows), expected);
}

TEST_F(RejectedRowsTest, EndTheRunAtTheLastOneThatIsAllowed) {
  RejectedRows rows(nullptr, m_graph, m_record, {.keepsRows = true, .maxRows = 2});
  HostSession session(&rows);
  const HostSession::Scope scope(&session);
  reject(rows, 0, 3);
  EXPECT_TRUE(m_record.isRunning());
  reject(rows, 1, 8);
  EXPECT_FALSE(m_record.isRunning());
  reject(rows, 1, 8, "z");
  reject(rows, 1, 9);
  EXPECT_EQ(rows.rowCount(), 2);
  EXPECT_EQ(numbersIn(rows), (std::vector<double>{3, 8, 8}));
}

TEST(RemainingSeconds, NeedSomethingToJudgeBy) {
  EXPECT_DOUBLE_EQ(remainingSeconds(0.25, 2.0), 6.0);
  EXPECT_DOUBLE_EQ(remainingSeconds(1.0, 2.0), 0.0);
  EXPECT_LT(remainingSeconds(0.001, 20.0), 0.0);
  EXPECT_LT(remainingSeconds(0.5, 0.1), 0.0);
  EXPECT_LT(remainingSeconds(-1.0, 20.0), 0.0);
}

}  // namespace
}  // namespace kelvarin
