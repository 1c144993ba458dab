#include "actions/calculator/calculator_stage.h"

#include <algorithm>

#include "actions/calculator/result_column.h"
#include "expression/evaluator/batch_evaluation.h"

namespace kelvarin {

namespace {

// Of the columns that are made for one batch. What would take more comes in smaller pieces.
constexpr std::size_t kMaxResultBytes = std::size_t{16} << 20;
constexpr std::size_t kBytesOfPiece = std::size_t{1} << 20;
constexpr std::size_t kBytesOfShortText = 32;

std::size_t bytesOfRow(const std::vector<MetaTypeColumn>& types) {
  std::size_t bytesInRow = 0;
  for (const MetaTypeColumn type : types) {
    const std::size_t fixed = fixedSizeOf(type);
    bytesInRow += fixed != 0 ? fixed : kBytesOfShortText;
  }
  return std::max<std::size_t>(1, bytesInRow);
}

}  // namespace

struct CalculatorStage::Counts final : StageCounts {
  std::vector<ValueCounts> ofOutputs;
};

std::unique_ptr<const CalculatorStage> CalculatorStage::of(const ExpressionSet& expressions,
                                                           const OutputColumns& columns,
                                                           const RunRecord* run) {
  std::unique_ptr<const BatchProgram> program = BatchProgram::of(expressions, run);
  if (program == nullptr) {
    return nullptr;
  }
  std::unique_ptr<CalculatorStage> stage(new CalculatorStage);
  stage->m_program = std::move(program);
  stage->m_countsValues = run != nullptr && run->countsValues;
  stage->m_keyCast = expressions.options().keyCast;
  for (const int column : columns.columnOfOutput) {
    stage->m_types.push_back(columns.metas[column].type());
    stage->m_columnOfOutput.push_back(static_cast<std::size_t>(column));
  }
  stage->m_bytesOfRow = bytesOfRow(stage->m_types);
  stage->m_mayComputeAnyRow = stage->m_program->mayEvaluateAnyRow() &&
                              std::ranges::count(stage->m_types, MetaTypeColumn::key) == 0;
  return stage;
}

bool CalculatorStage::processesWhole(const RowBatch& batch) const {
  return batch.storedRows() <= std::max<std::size_t>(1, kMaxResultBytes / m_bytesOfRow);
}

// Null: all rows. A wide result of many rows would take more memory than a task may.
RowBatchPointer CalculatorStage::rowsAtOnce(const RowBatch& batch) const {
  if (processesWhole(batch)) {
    return nullptr;
  }
  const std::size_t storedRows = std::max<std::size_t>(1, kBytesOfPiece / m_bytesOfRow);
  if (batch.selection() == nullptr) {
    return batch.slice(0, storedRows);
  }
  const std::uint32_t* selection = batch.selection();
  const std::uint32_t* end =
      std::lower_bound(selection, selection + batch.rowCount(), *selection + storedRows);
  return batch.narrowSlice(0, static_cast<std::size_t>(end - selection));
}

// Where a quarter of the rows is selected, to pick them takes longer than to compute all. No rows
// are done where not all of the stored ones could be.
bool CalculatorStage::shouldComputeAllRows(const RowBatch& batch) const {
  return m_mayComputeAnyRow && batch.selection() != nullptr &&
         4 * batch.rowCount() > batch.storedRows();
}

StageResult CalculatorStage::computeAllRows(const RowBatch& batch) const {
  StageResult done = compute(RowBatch(batch.storedRows(), batch.columns()), 0);
  if (done.rowsDone < batch.storedRows()) {
    return {};
  }
  done.rowsDone = batch.rowCount();
  done.outputs[0] = std::make_shared<RowBatch>(batch.storedRows(), done.outputs[0]->columns(),
                                               batch.sharedSelection(), batch.rowCount());
  return done;
}

StageResult CalculatorStage::process(const RowBatch& all, long long firstRow) const {
  const RowBatchPointer atOnce = rowsAtOnce(all);
  const RowBatch& batch = atOnce == nullptr ? all : *atOnce;
  StageResult done = shouldComputeAllRows(batch) ? computeAllRows(batch) : StageResult();
  if (done.rowsDone == 0) {
    done = compute(batch, firstRow);
  }
  if (m_countsValues && done.rowsDone > 0) {
    auto counts = std::make_shared<Counts>();
    counts->ofOutputs.resize(static_cast<std::size_t>(m_program->outputCount()));
    addCounts(*done.outputs[0], 0, done.rowsDone, counts->ofOutputs);
    done.counts = std::move(counts);
  }
  return done;
}

StageResult CalculatorStage::compute(const RowBatch& batch, long long firstRow) const {
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
  std::size_t textBytes = 0;
  while (done < end && textBytes < kMaxResultBytes && rows.load(done, end)) {
    textBytes = computeLoadedRows(rows, results);
    if (rows.rowCount() == 0) {
      break;
    }
    done += rows.rowCount();
  }
  return done;
}

// Where an output leaves fewer rows than there were, those behind are computed once more, or by the
// routine for single rows. Returns the bytes of the texts so far. Where these become too many in
// the midst of a row's columns, as many rows are left as would have stayed within them.
std::size_t CalculatorStage::computeLoadedRows(BatchEvaluation& rows,
                                               std::vector<ResultColumn>& results) const {
  const auto outputs = static_cast<std::size_t>(m_program->outputCount());
  const std::size_t loaded = rows.rowCount();
  std::size_t stored = 0;
  std::size_t textBytes = 0;
  bool isFull = false;
  for (; stored < results.size(); ++stored) {
    if (stored > 0 && stored % outputs == 0) {
      rows.loadElement(static_cast<int>(stored / outputs));
    }
    if (rows.rowCount() == 0) {
      break;
    }
    results[stored].store(rows, static_cast<int>(stored % outputs), m_keyCast);
    textBytes += results[stored].textBytes();
    if (!isFull && textBytes >= kMaxResultBytes) [[unlikely]] {
      isFull = true;
      rows.keepFirst(std::max<std::size_t>(1, rows.rowCount() * (stored + 1) / results.size()));
    }
  }
  if (rows.rowCount() < loaded) {
    for (std::size_t i = 0; i < stored; ++i) {
      results[i].dropRowsBehind(rows);
    }
  }
  return textBytes;
}

void CalculatorStage::countValues(const StageResult& result, std::size_t begin, std::size_t end,
                                  std::vector<ValueCounts>& counts) const {
  if (result.outputs[0] == nullptr) {
    return;
  }
  if (result.counts == nullptr || end - begin < result.rowsDone) {
    addCounts(*result.outputs[0], begin, end, counts);
    return;
  }
  const auto& counted = static_cast<const Counts&>(*result.counts);
  for (std::size_t i = 0; i < counts.size(); ++i) {
    counts[i].add(counted.ofOutputs[i]);
  }
}

void CalculatorStage::addCounts(const RowBatch& result, std::size_t begin, std::size_t end,
                                std::vector<ValueCounts>& counts) const {
  for (std::size_t i = 0; i < m_types.size(); ++i) {
    const BatchColumn& column = result.column(m_columnOfOutput[i]);
    ValueCounts& ofOutput = counts[i % counts.size()];
    if (result.selection() == nullptr && fixedSizeOf(m_types[i]) != 0) {
      ofOutput.addAll(m_types[i], column.value(begin), end - begin);
      continue;
    }
    forEachRow(result, begin, end, [&](std::size_t, std::size_t storedRow) {
      ofOutput.add(m_types[i], column.value(storedRow));
    });
  }
}

}  // namespace kelvarin
