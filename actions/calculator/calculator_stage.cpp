#include "actions/calculator/calculator_stage.h"

#include <algorithm>

#include "expression/evaluator/batch_evaluation.h"
#include "expression/evaluator/key_cast.h"

namespace kelvarin {

// A column that is being made.
class CalculatorStage::ResultColumn {
 public:
  ResultColumn(MetaTypeColumn type, const RowBatch& batch) {
    const bool hasGaps = batch.selection() != nullptr;
    if (type == MetaTypeColumn::key) {
      m_keys = columnOf(batch.storedRows(), hasGaps, kNullKey);
    } else {
      m_numbers = columnOf(batch.storedRows(), hasGaps, kNullNumber);
    }
  }

  // Evaluates an output for the rows that are loaded. Returns how many rows there are before one
  // whose number cannot become a key.
  std::size_t store(BatchEvaluation& rows, int output, const KeyCast& keyCast) {
    if (m_keys != nullptr) {
      return storeKeys(rows, output, keyCast);
    }
    if (rows.isContiguous()) {
      rows.evaluateInto(output, m_numbers.get() + rows.storedRow(0));
      return rows.rowCount();
    }
    const double* numbers = rows.numbers(output);
    for (std::size_t i = 0; i < rows.rowCount(); ++i) {
      m_numbers[rows.storedRow(i)] = numbers[i];
    }
    return rows.rowCount();
  }

  BatchColumn take() {
    if (m_keys != nullptr) {
      const std::uint32_t* keys = m_keys.get();
      return BatchColumn::ofKeys(std::move(m_keys), keys);
    }
    const double* numbers = m_numbers.get();
    return BatchColumn::ofNumbers(std::move(m_numbers), numbers);
  }

 private:
  template <typename Value>
  static std::shared_ptr<Value[]> columnOf(std::size_t size, bool hasGaps, Value ofGaps) {
    auto values = std::make_shared_for_overwrite<Value[]>(size);
    if (hasGaps) {
      std::fill_n(values.get(), size, ofGaps);
    }
    return values;
  }

  std::size_t storeKeys(BatchEvaluation& rows, int output, const KeyCast& keyCast) {
    const double* numbers = rows.numbers(output);
    for (std::size_t i = 0; i < rows.rowCount(); ++i) {
      if (!castToKey(numbers[i], keyCast, m_keys[rows.storedRow(i)])) [[unlikely]] {
        return i;
      }
    }
    return rows.rowCount();
  }

  std::shared_ptr<double[]> m_numbers;  // one of both
  std::shared_ptr<std::uint32_t[]> m_keys;
};

std::unique_ptr<const CalculatorStage> CalculatorStage::of(const ExpressionSet& expressions,
                                                           const OutputColumns& columns) {
  std::unique_ptr<const BatchProgram> program = BatchProgram::of(expressions);
  if (program == nullptr) {
    return nullptr;
  }
  std::unique_ptr<CalculatorStage> stage(new CalculatorStage);
  stage->m_program = std::move(program);
  stage->m_keyCast = expressions.options().keyCast;
  for (const int column : columns.columnOfOutput) {
    stage->m_types.push_back(columns.metas[column].type());
    stage->m_columnOfOutput.push_back(static_cast<std::size_t>(column));
  }
  stage->m_mayComputeAnyRow = stage->m_program->mayEvaluateAnyRow() &&
                              std::ranges::count(stage->m_types, MetaTypeColumn::key) == 0;
  return stage;
}

// Where a quarter of the rows is selected, to pick them takes longer than to compute all.
bool CalculatorStage::shouldComputeAllRows(const RowBatch& batch) const {
  return m_mayComputeAnyRow && batch.selection() != nullptr &&
         4 * batch.rowCount() > batch.storedRows();
}

StageResult CalculatorStage::processAllRows(const RowBatch& batch) const {
  StageResult done = process(RowBatch(batch.storedRows(), batch.columns()), 0);
  done.rowsDone = batch.rowCount();
  done.outputs[0] = std::make_shared<RowBatch>(batch.storedRows(), done.outputs[0]->columns(),
                                               batch.sharedSelection(), batch.rowCount());
  return done;
}

StageResult CalculatorStage::process(const RowBatch& batch, long long firstRow) const {
  if (shouldComputeAllRows(batch)) {
    return processAllRows(batch);
  }
  std::vector<ResultColumn> results;
  results.reserve(m_types.size());
  for (const MetaTypeColumn type : m_types) {
    results.emplace_back(type, batch);
  }
  StageResult done;
  done.rowsDone = computeRows(batch, firstRow, results);
  if (done.rowsDone == 0) {
    return done;
  }
  std::vector<BatchColumn> columns;
  columns.reserve(batch.columnCount() + results.size());
  columns = batch.columns();
  for (std::size_t i = 0; i < results.size(); ++i) {
    if (m_columnOfOutput[i] < batch.columnCount()) {
      columns[m_columnOfOutput[i]] = results[i].take();
    } else {
      columns.push_back(results[i].take());
    }
  }
  const bool isWhole = batch.selection() == nullptr;
  done.outputs[0] =
      std::make_shared<RowBatch>(isWhole ? done.rowsDone : batch.storedRows(), std::move(columns),
                                 batch.sharedSelection(), done.rowsDone);
  return done;
}

std::size_t CalculatorStage::computeRows(const RowBatch& batch, long long firstRow,
                                         std::vector<ResultColumn>& results) const {
  const std::size_t end = m_program->rowsBeforeFailure(batch);
  BatchEvaluation rows(*m_program, batch, firstRow);
  std::size_t done = 0;
  while (done < end) {
    rows.load(done, end);
    const std::size_t computed = computeLoadedRows(rows, results);
    done += computed;
    if (computed < rows.rowCount()) {
      break;
    }
  }
  return done;
}

std::size_t CalculatorStage::computeLoadedRows(BatchEvaluation& rows,
                                               std::vector<ResultColumn>& results) const {
  const auto outputs = static_cast<std::size_t>(m_program->outputCount());
  std::size_t computed = rows.rowCount();
  for (std::size_t i = 0; i < results.size(); ++i) {
    if (i > 0 && i % outputs == 0) {
      rows.loadElement(static_cast<int>(i / outputs));
    }
    const int output = static_cast<int>(i % outputs);
    computed = std::min(computed, results[i].store(rows, output, m_keyCast));
  }
  return computed;
}

void CalculatorStage::countValues(const StageResult& result, std::size_t begin, std::size_t end,
                                  std::vector<ValueCounts>& counts) const {
  const RowBatchPointer& batch = result.outputs[0];
  if (batch == nullptr) {
    return;
  }
  for (std::size_t i = 0; i < m_types.size(); ++i) {
    const BatchColumn& column = batch->column(m_columnOfOutput[i]);
    ValueCounts& ofOutput = counts[i % counts.size()];
    if (batch->selection() == nullptr) {
      ofOutput.addAll(m_types[i], column.value(begin), end - begin);
      continue;
    }
    forEachRow(*batch, begin, end, [&](std::size_t, std::size_t storedRow) {
      ofOutput.add(m_types[i], column.value(storedRow));
    });
  }
}

}  // namespace kelvarin
