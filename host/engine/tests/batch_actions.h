// Small actions that work on batches, for graphs of made_actions.h.
#pragma once

#include <atomic>
#include <chrono>
#include <thread>

#include "host/contract/batch_rows.h"
#include "host/engine/tests/made_actions.h"

namespace kelvarin::testing {

// A batch of the numbers from `first` to before `end`.
inline RowBatchPointer batchOfNumbers(long long first, long long end) {
  const auto count = static_cast<std::size_t>(end - first);
  auto numbers = std::make_shared<double[]>(count);
  for (std::size_t i = 0; i < count; ++i) {
    numbers[i] = static_cast<double>(first + static_cast<long long>(i));
  }
  const double* values = numbers.get();
  return std::make_shared<RowBatch>(
      count, std::vector<BatchColumn>{BatchColumn::ofNumbers(std::move(numbers), values)});
}

// rows='N' numbers counted from 0 in units of unit='K'; failsAt='R' ends the input with an error
// after R rows. waits='W': it may wait before units whose first row is a multiple of W, and a unit
// takes a millisecond to parse.
class CountUnits final : public TestAction, public BatchSource {
 public:
  KELVARIN_TEST_ACTION(CountUnits, 0, 1)

  bool step() {
    if (!m_isOpen) {
      m_isOpen = true;
      OneRow* row = getOutputRowForOutputPin(0);
      row->setNumberOfColumns(1);
      row->setColName(0, QStringLiteral("n"));
      row->setMetaType(0, MetaInfo(MetaTypeColumn::number, 0));
      announceColumnsOfOutputPin(0);
      m_rows = number("rows", 10);
      m_unit = number("unit", 100);
      m_failsAt = number("failsAt", -1);
      m_waits = number("waits", 0);
      return !mustComputeFull();
    }
    if (m_hasFailure) {
      MainUI::addLog(LogLevel::error, QStringLiteral("the input is broken"));
      failRun();
    }
    return true;
  }
  bool canReadUnits() const override { return m_isOpen && !m_hasFailure && !m_isAtEnd; }
  std::unique_ptr<BatchUnit> readUnit() override {
    if (m_next == m_rows || m_isBroken) {
      return nullptr;
    }
    const long long end = std::min(m_rows, m_next + m_unit);
    auto unit = std::make_unique<Unit>();
    unit->first = std::exchange(m_next, end);
    unit->isBroken = m_failsAt >= unit->first && m_failsAt < end;
    unit->end = unit->isBroken ? m_failsAt : end;
    unit->isSlow = m_waits > 0;
    m_isBroken = unit->isBroken;
    return unit;
  }
  RowBatchPointer accept(BatchUnit& unit) override {
    m_hasFailure = static_cast<Unit&>(unit).isBroken;
    if (static_cast<Unit&>(unit).parser == std::this_thread::get_id()) {
      note("parsed on the engine thread");
    }
    return unit.batch();
  }
  bool mayWait() const override { return m_waits > 0; }
  bool hasUnitReady() const override { return m_waits == 0 || m_next % m_waits != 0; }
  bool readOn() override {
    m_isAtEnd = true;
    return false;
  }

 private:
  struct Unit final : BatchUnit {
    void parse() override {
      m_batch = batchOfNumbers(first, end);
      parser = std::this_thread::get_id();
      if (isSlow) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
      }
    }
    std::size_t byteCount() const override { return static_cast<std::size_t>(end - first) * 8; }
    long long first = 0;
    long long end = 0;
    bool isBroken = false;
    bool isSlow = false;
    std::thread::id parser;
  };

  bool m_isOpen = false;
  bool m_isAtEnd = false;
  bool m_hasFailure = false;
  bool m_isBroken = false;  // as the tasks see it
  long long m_next = 0;
  long long m_rows = 0;
  long long m_unit = 1;
  long long m_failsAt = -1;
  long long m_waits = 0;
};

// Rows whose number (of the row, with byRow='1', else their value) is a multiple of n go to pin 0,
// the others to pin 1. every='M': rows that are a multiple of M go through the row routine, which
// logs them; stops='V': the value V ends the run with an error; ends='V': it is the last one.
class SplitBatches final : public TestAction, public BatchTransform {
 public:
  KELVARIN_TEST_ACTION(SplitBatches, 1, 2)

  bool step() {
    const OneRow* row = getNextRowFromInPin(0);
    if (row == nullptr) {
      return true;
    }
    if (!m_stage.isReady) {
      copyColumns(0, *row);
      copyColumns(1, *row);
      m_stage.n = number("n", 2);
      m_stage.every = number("every", 0);
      m_stage.stops = number("stops", -1);
      m_stage.ends = number("ends", -1);
      m_stage.byRow = has("byRow");
      m_stage.isReady = true;
    }
    const auto value = static_cast<long long>(row->colAsDouble(0, nullptr));
    if (value == m_stage.stops) {
      MainUI::addLog(LogLevel::error, QStringLiteral("stopped at %1").arg(value));
      failRun();
      return true;
    }
    if (m_stage.every > 0 && value % m_stage.every == 0) {
      MainUI::addLog(LogLevel::warning, QStringLiteral("row %1 at %2").arg(value).arg(m_rowNumber));
    }
    const int pin = (m_stage.byRow ? m_rowNumber : value) % m_stage.n == 0 ? 0 : 1;
    ++m_rowNumber;
    getOutputRowForOutputPin(pin)->showValuesOf(row);
    setRowReadyForOutput(pin);
    return value == m_stage.ends;
  }
  const BatchStage* stage() const override { return m_stage.isReady ? &m_stage : nullptr; }
  void passRows(std::size_t count) override { m_rowNumber += static_cast<long long>(count); }
  void countRows(const StageResult& result, std::size_t begin, std::size_t end) override {
    for (int pin = 0; pin < 2; ++pin) {
      const auto index = static_cast<std::size_t>(pin);
      for (std::size_t i = 0; !isOutputPinRead(pin) && result.outputs[index] != nullptr &&
                              i < result.outputs[index]->rowCount();
           ++i) {
        const std::uint32_t inputRow = result.inputRows[index][i];
        countRowsOfOutputPin(pin, inputRow >= begin && inputRow < end ? 1 : 0);
      }
    }
  }

 private:
  struct Stage final : BatchStage {
    StageResult process(const RowBatch& batch, long long firstRow) const override {
      EXPECT_TRUE(firstRow >= 0 || !byRow);
      StageResult result;
      std::shared_ptr<std::uint32_t[]> stored[2];
      std::shared_ptr<std::uint32_t[]> input[2];
      std::size_t counts[2] = {};
      for (int pin = 0; pin < 2; ++pin) {
        stored[pin] = std::make_shared<std::uint32_t[]>(batch.rowCount());
        input[pin] = std::make_shared<std::uint32_t[]>(batch.rowCount());
      }
      std::size_t row = 0;
      for (; row < batch.rowCount(); ++row) {
        const std::size_t from = batch.storedRow(row);
        const auto value = static_cast<long long>(batch.column(0).numbers()[from]);
        if ((every > 0 && value % every == 0) || value == stops || value == ends) {
          break;
        }
        const long long decisive = byRow ? firstRow + static_cast<long long>(row) : value;
        const int pin = decisive % n == 0 ? 0 : 1;
        stored[pin][counts[pin]] = static_cast<std::uint32_t>(from);
        input[pin][counts[pin]++] = static_cast<std::uint32_t>(row);
      }
      result.rowsDone = row;
      for (std::size_t pin = 0; pin < 2; ++pin) {
        result.outputs[pin] = std::make_shared<RowBatch>(batch.storedRows(), batch.columns(),
                                                         stored[pin], counts[pin]);
        result.inputRows[pin] = input[pin];
      }
      return result;
    }
    bool needsRowNumbers() const override { return byRow; }

    long long n = 2;
    long long every = 0;
    long long stops = -1;
    long long ends = -1;
    bool byRow = false;
    bool isReady = false;
  };

  Stage m_stage;
  long long m_rowNumber = 0;
};

// A sink of batches; encoded='1': tasks add up each batch, and the sums must be right.
class TakeBatches final : public TestAction, public BatchSink, public BatchEncoder {
 public:
  KELVARIN_TEST_ACTION(TakeBatches, 1, 0)

  bool step() {
    const TakenBatch taken = getNextBatchFromInPin(0);
    m_hasBegun = true;
    if (taken.batch == nullptr) {
      return true;
    }
    std::vector<double>& seen = witness->values[key()];
    double sum = 0;
    forEachRow(*taken.batch, 0, taken.batch->rowCount(), [&](std::size_t, std::size_t stored) {
      seen.push_back(taken.batch->column(0).numbers()[stored]);
      sum += seen.back();
    });
    if (taken.encoded != nullptr) {
      EXPECT_EQ(static_cast<const Sum&>(*taken.encoded).sum, sum);
      note("encoded");
    }
    return false;
  }
  const BatchEncoder* encoder() const override {
    return m_hasBegun && has("encoded") ? this : nullptr;
  }
  std::unique_ptr<EncodedBatch> encode(const RowBatch& batch) const override {
    auto encoded = std::make_unique<Sum>();
    forEachRow(batch, 0, batch.rowCount(), [&](std::size_t, std::size_t stored) {
      encoded->sum += batch.column(0).numbers()[stored];
    });
    return encoded;
  }

 private:
  struct Sum final : EncodedBatch {
    double sum = 0;
  };
  bool m_hasBegun = false;
};

inline ActionCatalogue::Prototypes batchPrototypes() {
  ActionCatalogue::Prototypes all = testPrototypes();
  all.push_back(std::make_unique<CountUnits>(XMLNode::emptyNode(), nullptr));
  all.push_back(std::make_unique<SplitBatches>(XMLNode::emptyNode(), nullptr));
  all.push_back(std::make_unique<TakeBatches>(XMLNode::emptyNode(), nullptr));
  return all;
}

}  // namespace kelvarin::testing
