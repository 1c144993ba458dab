#include <cmath>

#include <gtest/gtest.h>
#include <QFile>
#include <QTemporaryDir>

#include "host/testing/full_disk.h"
#include "host/testing/row_harness.h"

using kelvarin::testing::FullDisk;
using kelvarin::testing::RowHarness;
using kelvarin::testing::Rows;
using kelvarin::testing::Strings;
using kelvarin::testing::Value;
using kelvarin::testing::Values;

namespace {

// Hands rows on, every other one to pin 1, and logs at its end. What it does besides depends on its
// attribute.
class Splitter : public ActionItem {
 public:
  Splitter(XMLNode node, GlobalParameters* parameters) : ActionItem(node, parameters) {
    m_outputPinCount = 2;
    m_mode = kelvarin::qString(node.getAttribute(kelvarin::utf16(u"mode")));
  }
  const char* typeName() const override { return "Splitter"; }
  char init() override { return m_mode == u"refuse" ? 1 : ActionItem::init(); }
  void setComputeRoutine() override {
    computeRoutine = [](ActionItem* action) {
      return static_cast<Splitter*>(action)->computeRow();
    };
  }
  char close() override {
    MainUI::addLog(LogLevel::information, QStringLiteral("closed"));
    return 0;
  }
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override {
    return new Splitter(node, parameters);
  }
  const unsigned char* firstValue = nullptr;

 private:
  bool computeRow() {
    const OneRow* row = getNextRowFromInPin(0);
    if (row == nullptr) {
      return true;
    }
    firstValue = firstValue == nullptr ? row->getAllColForRead()[0] : firstValue;
    const int pin = m_count++ % 2;
    OneRow* out = getOutputRowForOutputPin(pin);
    if (out->sz() != row->sz()) {
      out->copyFrom(row);
    }
    out->showValuesOf(row);
    setRowReadyForOutput(pin);
    if (m_mode == u"fail") {
      failRun();
    }
    return m_mode == u"fail";
  }

  QString m_mode;
  int m_count = 0;
};

TEST(RowHarness, RowsGoThroughAndTheActionIsClosedAtTheEnd) {
  auto h = RowHarness::of<Splitter>("<Splitter name='s'/>", "a:F k:K t:U");
  h.push(Rows{{1.5, 7, "x"}, {nullptr, nullptr, nullptr}, {2, 0, ""}});
  EXPECT_EQ(h.pull(1), (Values{nullptr, nullptr, nullptr}));
  EXPECT_EQ(h.log(), Strings{});
  EXPECT_EQ(h.rows(0), (Rows{{1.5, 7, "x"}, {2, 0, ""}}));
  EXPECT_EQ(h.pull(1), std::nullopt);
  EXPECT_EQ(h.columns(0), "a:F k:K t:U");
  EXPECT_EQ(h.log(), Strings{"info: closed"});
  EXPECT_EQ(h.host().lines()[0].action, &h.action());
  EXPECT_EQ(h.state(), GlobalParameters::RunningState::endedNormally);
}

TEST(RowHarness, BytesHeldBeyondTheNextPullAreSpoilt) {
  auto h = RowHarness::of<Splitter>("<Splitter/>", "t:U");
  h.push(Rows{{"first"}, {"second"}});
  (void)h.pull(0);
  const unsigned char* held = h.actionAs<Splitter>().firstValue;
  EXPECT_EQ(kelvarin::textFromBytes(held), "first");
  (void)h.pull(1);
  EXPECT_NE(std::string(reinterpret_cast<const char*>(held) + 4, 5), "first");
}

// Whatever its shape, a batch has the rows that next() would have shown. Rows and batches of one
// pin may take turns.
TEST(FakeInputPin, BatchesHaveTheRowsThatWereTyped) {
  for (const std::size_t strayRows : {0, 1, 5}) {
    kelvarin::testing::FakeInputPin pin(kelvarin::testing::columnsFromText("a:F t:U"));
    pin.setBatchShape({.rows = 2, .strayRows = strayRows});
    pin.push({1, "x"});
    pin.push({2, nullptr}, 4);
    ASSERT_NE(pin.next(), nullptr);
    EXPECT_EQ(pin.restOfBatch()->rowCount(), 2u);
    pin.passRows(1);
    EXPECT_EQ(pin.restOfBatch()->rowCount(), 1u);
    ASSERT_NE(pin.next(), nullptr);
    const kelvarin::RowBatchPointer batch = pin.nextBatch().batch;
    ASSERT_EQ(batch->rowCount(), 2u);
    EXPECT_EQ(batch->column(0).numbers()[batch->storedRow(1)], 2.0);
    EXPECT_TRUE(kelvarin::isNullText(batch->column(1).value(batch->storedRow(0))));
    EXPECT_EQ(pin.rowsPulled(), 5);
    EXPECT_EQ(pin.nextBatch().batch, nullptr);
    EXPECT_EQ(pin.next(), nullptr);
  }
}

TEST(RowHarness, RefusalsAndFailuresEndTheRun) {
  auto refused = RowHarness::of<Splitter>("<Splitter mode='refuse'/>", "a:F");
  refused.push({1});
  EXPECT_EQ(refused.pull(0), std::nullopt);
  EXPECT_TRUE(refused.hasFailed());
  EXPECT_EQ(refused.log(), Strings{"info: closed"});

  auto failing = RowHarness::of<Splitter>("<Splitter mode='fail'/>", "a:F");
  failing.pushRepeated({1}, 10);
  EXPECT_EQ(failing.rows(0).size(), 1u);
  EXPECT_TRUE(failing.hasFailed());
  EXPECT_EQ(failing.input(0).rowsPulled(), 1);
}

TEST(RowHarness, CountsWithoutReading) {
  auto h = RowHarness::of<Splitter>("<Splitter/>", "a:F");
  h.pushRepeated({1}, 1000);
  EXPECT_EQ(h.runWithoutReading(), 1000);
}

TEST(RowHarness, AWrongTestIsFoundOut) {
  auto h = RowHarness::of<Splitter>("<Splitter/>", "a:F k:K t:U");
  EXPECT_THROW(h.push({"x", 1, "x"}), std::invalid_argument);
  EXPECT_THROW(h.push({1, 1.5, "x"}), std::invalid_argument);
  EXPECT_THROW(h.push({1, 1, 1}), std::invalid_argument);
  EXPECT_THROW(h.push({1, 1}), std::invalid_argument);
  EXPECT_THROW(RowHarness::of<Splitter>("<Splitter"), std::invalid_argument);
}

TEST(Value, NumbersAgreeBitByBit) {
  EXPECT_EQ(Value(1), Value(1.0));
  EXPECT_FALSE(Value(0.0) == Value(-0.0));
  EXPECT_EQ(Value(std::nan("1")), Value(-std::nan("2")));
  EXPECT_EQ(Value(kelvarin::kNullNumber), Value(nullptr));
  EXPECT_FALSE(Value("") == Value(nullptr));
}

TEST(FullDisk, TakesWhatFitsAndThenNothing) {
  const QTemporaryDir folder;
  QFile file(folder.filePath("a"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
  {
    FullDisk disk(10);
    EXPECT_EQ(file.write("1234567"), 7);
    EXPECT_EQ(file.write("89012345"), 3);
    EXPECT_EQ(file.write("4"), -1);
    EXPECT_GE(disk.refusals(), 1);
    EXPECT_EQ(file.error(), QFile::ResourceError);
    disk.freeBytes(5);
    EXPECT_EQ(file.write("abcde"), 5);
  }
  EXPECT_EQ(file.write("free again"), 10);
}

}  // namespace
