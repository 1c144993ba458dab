// Rows that are taken together: only along straight links, and counted as if they had come one by
// one.
#include <gtest/gtest.h>

#include <numeric>

#include "host/contract/columns_in_hand.h"
#include "host/engine/tests/made_actions.h"

namespace kelvarin::testing {
namespace {

// Numbers counted from 0, which may be taken together ten at a time.
class Tens final : public TestAction, public RowsInHand {
 public:
  KELVARIN_TEST_ACTION(Tens, 0, 1)

  bool step() {
    ++witness->steps[key()];
    OneRow* row = getOutputRowForOutputPin(0);
    if (m_next == 0) {
      row->setNumberOfColumns(1);
      row->setColName(0, QStringLiteral("n"));
      row->setMetaType(0, MetaInfo(MetaTypeColumn::number, 0));
    }
    if (m_next == number("rows", 35)) {
      return true;
    }
    if (m_next % 10 == 0) {
      std::iota(m_values, m_values + 10, static_cast<double>(m_next));
      offerRowsOnOutputPin(0, *this, 10, [](ActionItem* action, std::size_t count) {
        static_cast<Tens*>(action)->m_next += static_cast<long long>(count);
      });
    }
    row->getAllColForWrite()[0] = reinterpret_cast<unsigned char*>(&m_values[m_next++ % 10]);
    setRowReadyForOutput(0);
    return false;
  }

  const double* numbers(int, std::size_t first, std::size_t, double*) const override {
    return has("hides") ? nullptr : m_values + first;
  }
  const std::uint32_t* keys(int, std::size_t, std::size_t, std::uint32_t*) const override {
    return nullptr;
  }

 private:
  long long m_next = 0;
  double m_values[10] = {};
};

// A sink that takes what it can get together.
class TakeAll final : public TestAction {
 public:
  KELVARIN_TEST_ACTION(TakeAll, 1, 0)

  bool step() {
    const OneRow* row = getNextRowFromInPin(0);
    if (row == nullptr) {
      return true;
    }
    std::vector<double>& seen = witness->values[key()];
    const std::size_t count = m_rows.takeRows(*this, 0);
    if (count == 0) {
      seen.push_back(row->colAsDouble(0, nullptr));
    } else {
      const double* numbers = m_rows.columns()[0].numbers;
      seen.insert(seen.end(), numbers, numbers + count);
      note("took " + std::to_string(count));
    }
    return false;
  }

 private:
  ColumnsInHand m_rows{{MetaTypeColumn::number}};
};

ActionCatalogue::Prototypes prototypes() {
  ActionCatalogue::Prototypes all = testPrototypes();
  all.push_back(std::make_unique<Tens>(XMLNode::emptyNode(), nullptr));
  all.push_back(std::make_unique<TakeAll>(XMLNode::emptyNode(), nullptr));
  return all;
}

std::vector<std::string> takesOf(const TestGraph& t, const char* name) {
  std::vector<std::string> takes = t.seen.calls.at(name);
  std::erase_if(takes, [](const std::string& call) { return !call.starts_with("took"); });
  return takes;
}

TEST(TakenRows, CountAsIfTheyHadComeOneByOne) {
  TestGraph t("<Tens name='s' rows='60'/><TakeAll name='w'/>", "s w", prototypes());
  const RunResult result = t.run();
  EXPECT_EQ(t.seen.values["w"], countedTo(60));
  EXPECT_EQ(takesOf(t, "w"), std::vector<std::string>(6, "took 10"));
  EXPECT_EQ(t.seen.steps["s"], 7);
  EXPECT_EQ(t.of(result, "s").rowsOut, std::vector<long long>{60});
  EXPECT_EQ(t.of(result, "w").rowsIn, std::vector<long long>{60});
}

TEST(TakenRows, GoTogetherThroughADisabledAction) {
  TestGraph t("<Tens name='s' rows='40'/><Pass name='p' disabled='1'/><TakeAll name='w'/>",
              "s p, p w", prototypes());
  EXPECT_TRUE(t.run().isOk());
  EXPECT_EQ(t.seen.values["w"], countedTo(40));
  EXPECT_EQ(takesOf(t, "w"), std::vector<std::string>(4, "took 10"));
}

// Behind an action that takes rows one by one, where the values are hidden, where other readers
// wait for the same rows, below such a point, and where nobody is to look ahead.
TEST(TakenRows, ComeOneByOneElsewhere) {
  const std::pair<const char*, const char*> graphs[] = {
      {"<Tens name='s' rows='50'/><Pass name='p'/><TakeAll name='w'/>", "s p, p w"},
      {"<Tens name='s' rows='50' hides='1'/><TakeAll name='w'/>", "s w"},
      {"<Tens name='s' rows='50'/><TakeAll name='w'/><Collect name='v'/>", "s w, s v"},
      {"<Tens name='s' rows='50'/><TakeAll name='w'/>", "s w"}};
  for (const auto& [actions, links] : graphs) {
    TestGraph t(actions, links, prototypes());
    t.options.looksAhead = &actions != &graphs[3].first;
    EXPECT_TRUE(t.run().isOk());
    EXPECT_EQ(t.seen.values["w"], countedTo(50)) << links;
    EXPECT_EQ(takesOf(t, "w"), std::vector<std::string>()) << links;
  }
}

}  // namespace
}  // namespace kelvarin::testing
