#include "actions/filter_rows/filter_stage.h"

#include <algorithm>

#include "expression/evaluator/batch_evaluation.h"
#include "expression/evaluator/result_writer.h"
#include "host/contract/late_texts.h"

namespace kelvarin {

namespace {

constexpr std::uint32_t kNoRow = 0xFFFFFFFF;
constexpr std::size_t kGroup = 8;  // rows whose truths are looked up together

// Of each set of rows of a group, those in it, and behind them anything.
struct RowsOfSet {
  std::uint8_t rows[kGroup] = {};
  std::uint8_t count = 0;
};

constexpr std::array<RowsOfSet, 1u << kGroup> rowsOfSets() {
  std::array<RowsOfSet, 1u << kGroup> sets{};
  for (unsigned set = 0; set < sets.size(); ++set) {
    for (unsigned row = 0; row < kGroup; ++row) {
      if ((set >> row & 1u) != 0) {
        sets[set].rows[sets[set].count++] = static_cast<std::uint8_t>(row);
      }
    }
  }
  return sets;
}

constexpr std::array<RowsOfSet, 1u << kGroup> kRowsOfSets = rowsOfSets();

unsigned setOfTrueRows(const double* numbers, std::size_t size) {
  unsigned set = 0;
  for (std::size_t i = 0; i < size; ++i) {
    set |= static_cast<unsigned>(isTrueNumber(numbers[i])) << i;
  }
  return set;
}

// Rows of a batch, in their order.
struct ChosenRows {
  std::shared_ptr<std::uint32_t[]> rows;  // null where nobody wants them
  std::size_t count = 0;

  // Whole groups are written, and a row that is none behind the last.
  void reserve(std::size_t size) {
    rows = std::make_shared_for_overwrite<std::uint32_t[]>(size + kGroup);
  }

  // Without a branch, which would be guessed wrong at every other row.
  void append(std::size_t first, unsigned set) {
    const RowsOfSet& ofSet = kRowsOfSets[set];
    std::uint32_t* next = rows.get() + count;
    for (std::size_t i = 0; i < kGroup; ++i) {
      next[i] = static_cast<std::uint32_t>(first) + ofSet.rows[i];
    }
    count += ofSet.count;
  }
};

// `numbers` are the results of the rows from `first` on.
void choose(const double* numbers, std::size_t first, std::size_t size, ChosenRows (&ofPins)[2]) {
  for (std::size_t i = 0; i < size; i += kGroup) {
    const std::size_t rows = std::min(kGroup, size - i);
    const unsigned trueRows = setOfTrueRows(numbers + i, rows);
    if (ofPins[0].rows != nullptr) {
      ofPins[0].append(first + i, trueRows);
    }
    if (ofPins[1].rows != nullptr) {
      ofPins[1].append(first + i, trueRows ^ ((1u << rows) - 1u));
    }
  }
}

RowSelection storedRowsOf(const RowBatch& batch, const ChosenRows& chosen) {
  if (batch.selection() == nullptr) {
    return chosen.rows;
  }
  auto stored = std::make_shared_for_overwrite<std::uint32_t[]>(chosen.count);
  for (std::size_t i = 0; i < chosen.count; ++i) {
    stored[i] = batch.selection()[chosen.rows[i]];
  }
  return stored;
}

RowBatchPointer firstRowsOf(const RowBatch& batch, std::size_t count) {
  if (count == 0) {
    return nullptr;
  }
  return withTexts(count == batch.rowCount() ? std::make_shared<RowBatch>(batch)
                                             : batch.slice(0, count));
}

void publish(StageResult& result, std::size_t pin, const RowBatch& batch,
             const ChosenRows& chosen) {
  if (chosen.count == 0 || chosen.count == result.rowsDone) {
    result.outputs[pin] = firstRowsOf(batch, chosen.count);
    return;
  }
  RowSelection rows = storedRowsOf(batch, chosen);
  std::vector<BatchColumn> columns =
      columnsWithTexts(batch.columns(), batch.storedRows(), rows.get(), chosen.count);
  result.outputs[pin] = std::make_shared<RowBatch>(batch.storedRows(), std::move(columns),
                                                   std::move(rows), chosen.count);
  result.inputRows[pin] = chosen.rows;
}

}  // namespace

std::unique_ptr<const FilterStage> FilterStage::of(const ExpressionSet& expressions,
                                                   ReadPins isRead, bool truncates,
                                                   const RunRecord* run) {
  std::unique_ptr<const BatchProgram> program = BatchProgram::of(expressions, run);
  if (program == nullptr) {
    return nullptr;
  }
  std::unique_ptr<FilterStage> stage(new FilterStage);
  stage->m_program = std::move(program);
  stage->m_isRead = isRead;
  stage->m_truncates = truncates;
  return stage;
}

StageResult FilterStage::process(const RowBatch& given, long long firstRow) const {
  const RowBatchPointer made = m_program->withNeededTexts(given);
  const RowBatch& batch = made == nullptr ? given : *made;
  BatchEvaluation rows(*m_program, batch, firstRow);
  const std::size_t end = m_program->rowsBeforeFailure(batch);
  return m_truncates ? keepFirstRows(batch, rows, end) : splitRows(batch, rows, end);
}

StageResult FilterStage::keepFirstRows(const RowBatch& batch, BatchEvaluation& rows,
                                       std::size_t end) const {
  StageResult result;
  while (result.rowsDone < end && rows.load(result.rowsDone, end)) {
    const double* numbers = rows.truths(0);
    if (rows.rowCount() == 0) {
      break;
    }
    const double* firstFalse = std::find_if_not(numbers, numbers + rows.rowCount(), isTrueNumber);
    const auto kept = static_cast<std::size_t>(firstFalse - numbers);
    result.rowsDone += kept;
    if (kept < rows.rowCount()) {
      break;
    }
  }
  if (m_isRead[0]) {
    result.outputs[0] = firstRowsOf(batch, result.rowsDone);
  }
  return result;
}

StageResult FilterStage::splitRows(const RowBatch& batch, BatchEvaluation& rows,
                                   std::size_t end) const {
  ChosenRows chosen[2];
  for (std::size_t pin = 0; pin < 2; ++pin) {
    if (m_isRead[pin] || pin == knownPin()) {
      chosen[pin].reserve(end);
    }
  }
  StageResult result;
  while (result.rowsDone < end && rows.load(result.rowsDone, end)) {
    const double* numbers = rows.truths(0);
    if (rows.rowCount() == 0) {
      break;
    }
    choose(numbers, result.rowsDone, rows.rowCount(), chosen);
    result.rowsDone += rows.rowCount();
  }
  for (std::size_t pin = 0; pin < 2; ++pin) {
    if (m_isRead[pin]) {
      publish(result, pin, batch, chosen[pin]);
    } else if (chosen[pin].rows != nullptr) {
      chosen[pin].rows[chosen[pin].count] = kNoRow;
      result.inputRows[pin] = chosen[pin].rows;
    }
  }
  return result;
}

std::array<std::size_t, 2> FilterStage::unreadRows(const StageResult& result, std::size_t begin,
                                                   std::size_t end) const {
  if (m_isRead[0] && m_isRead[1]) {
    return {0, 0};
  }
  std::array<std::size_t, 2> rows{end - begin, 0};
  if (!m_truncates) {
    rows[knownPin()] = rowsOfKnownPin(result, begin, end);
    rows[1 - knownPin()] = end - begin - rows[knownPin()];
  }
  for (std::size_t pin = 0; pin < 2; ++pin) {
    rows[pin] = m_isRead[pin] ? 0 : rows[pin];
  }
  return rows;
}

std::size_t FilterStage::rowsOfKnownPin(const StageResult& result, std::size_t begin,
                                        std::size_t end) const {
  const std::size_t pin = knownPin();
  const std::uint32_t* rows = result.inputRows[pin].get();
  if (!m_isRead[pin]) {
    const std::uint32_t* next = rows;
    while (*next < begin) {
      ++next;
    }
    const std::uint32_t* first = next;
    while (*next < end) {
      ++next;
    }
    return static_cast<std::size_t>(next - first);
  }
  if (rows == nullptr) {
    return result.outputs[pin] == nullptr ? 0 : end - begin;
  }
  const std::uint32_t* pastLast = rows + result.outputs[pin]->rowCount();
  return static_cast<std::size_t>(std::lower_bound(rows, pastLast, end) -
                                  std::lower_bound(rows, pastLast, begin));
}

}  // namespace kelvarin
