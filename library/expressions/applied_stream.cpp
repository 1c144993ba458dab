#include "library/expressions/applied_stream.h"

#include <iterator>
#include <utility>

namespace kelvarin {

namespace {

// With more rows than these, tasks on several threads are worth their start.
constexpr long long kFewRows = 64 * 1024;

ErrorDetails errorOfStream(const ReadFault& fault) {
  ErrorDetails error = errorOfRead(fault);
  error.action = "stream";
  return error;
}

// Results lie in memory of the heap.
ApplySettings withCopiedResults(ApplySettings settings, const CompiledExpressions& expressions) {
  settings.form.copied = expressions.computedColumns();
  return settings;
}

ReadFault faultOf(const TableUnit& unit) {
  return {unit.failure(), unit.failureLocation()};
}

// Rows that have been read already, and what comes after them: the failure of reading on, or more
// rows.
class Rest final : public BatchSupply {
 public:
  Rest(TableColumns columns, RowBatchPointer pending, ReadFault failure,
       std::unique_ptr<StreamReader> reader)
      : m_columns(std::move(columns)), m_reader(std::move(reader)), m_failure(std::move(failure)) {
    add(*pending);
  }

  Outcome<TableColumns> columns() override { return m_columns; }
  Outcome<OwnedArray> next() override {
    while (m_arrays.empty() && m_failure.text.isEmpty()) {
      const std::unique_ptr<TableUnit> unit = m_reader->readUnit();
      if (unit == nullptr) {
        return OwnedArray();
      }
      unit->parse();
      if (unit->batch() != nullptr) {
        add(*unit->batch());
      }
      m_failure = faultOf(*unit);
    }
    if (m_arrays.empty()) {
      return Failure{errorOfStream(m_failure)};
    }
    OwnedArray next = std::move(m_arrays.front());
    m_arrays.pop_front();
    return next;
  }

 private:
  void add(const RowBatch& batch) {
    std::vector<OwnedArray> arrays = exportedBatch(batch, {}, m_memory);
    std::move(arrays.begin(), arrays.end(), std::back_inserter(m_arrays));
  }

  const TableColumns m_columns;
  const std::unique_ptr<StreamReader> m_reader;
  ArrayMemory m_memory;
  std::deque<OwnedArray> m_arrays;
  ReadFault m_failure;
};

}  // namespace

AppliedStream::AppliedStream(std::shared_ptr<CompiledExpressions> expressions, InputStream stream,
                             ApplySettings settings)
    : m_expressions(std::move(expressions)),
      m_settings(withCopiedResults(std::move(settings), *m_expressions)),
      m_stream(std::move(stream)),
      m_nextRow(m_settings.firstRow) {}

Outcome<OwnedArray> AppliedStream::next() {
  while (m_run == nullptr && m_arrays.empty() && !m_isOver) {
    if (m_settings.work.stop.stop_requested()) {
      return Failure{errorOfLog({}, GlobalParameters::RunningState::stoppedByUser)};
    }
    if (const auto advanced = advance(); !advanced) {
      return Failure{advanced.error()};
    }
  }
  if (!m_arrays.empty()) {
    OwnedArray next = std::move(m_arrays.front());
    m_arrays.pop_front();
    return next;
  }
  return m_run == nullptr ? OwnedArray() : m_run->next();
}

Outcome<Done> AppliedStream::advance() {
  if (m_stream) {
    InputStream stream = std::move(*m_stream);
    m_stream.reset();
    return begin(std::move(stream));
  }
  const bool areMany = m_nextRow - m_settings.firstRow >= kFewRows;
  if (m_settings.work.threads != 1 && areMany && m_reader->isBetweenBatches()) {
    return runWith(m_reader->takeRest());
  }
  const auto step = takeUnit();
  if (!step) {
    return Failure{step.error()};
  }
  m_isOver = *step == Step::end;
  return Done{};
}

// A first batch of many rows is work for several threads.
Outcome<Done> AppliedStream::begin(InputStream stream) {
  if (m_settings.work.threads != 1) {
    ArrowArray first;
    const auto isThere = stream.next(first);
    if (!isThere) {
      return Failure{errorOfStream(isThere.error())};
    }
    if (*isThere) {
      const bool isLarge = first.length >= kFewRows;
      stream.putBack(first);
      if (isLarge) {
        return runWith(std::move(stream));
      }
    }
  }
  InputSettings input = m_expressions->inputSettings();
  input.firstRow = m_settings.firstRow;
  m_reader = std::make_unique<StreamReader>(std::move(stream), std::move(input));
  const auto columns = m_reader->open([] { return false; });
  if (!columns) {
    return Failure{errorOfStream({columns.error(), m_reader->locationOfFailure()})};
  }
  return Done{};
}

Outcome<AppliedStream::Step> AppliedStream::takeUnit() {
  const std::unique_ptr<TableUnit> unit = m_reader->readUnit();
  if (unit == nullptr) {
    return Step::end;
  }
  unit->parse();
  if (unit->batch() != nullptr) {
    const auto step = process(*unit);
    if (!step || *step == Step::runsFromHere) {
      return step;
    }
  }
  if (!unit->failure().isEmpty()) {
    return Failure{errorOfStream(faultOf(*unit))};
  }
  return Step::more;
}

Outcome<AppliedStream::Step> AppliedStream::process(const TableUnit& unit) {
  const RowBatchPointer& batch = unit.batch();
  const auto stages = m_expressions->stages(batch);
  std::size_t done = 0;
  if (stages != nullptr) {
    const CompiledStages::Rows rows = stages->process(batch, m_nextRow);
    for (const RowBatchPointer& result : rows.batches) {
      std::vector<OwnedArray> arrays = exportedBatch(*result, m_settings.form, m_memory);
      std::move(arrays.begin(), arrays.end(), std::back_inserter(m_arrays));
    }
    done = rows.rowsDone;
    m_nextRow += static_cast<long long>(done);
  }
  if (done == batch->rowCount()) {
    return Step::more;
  }
  RowBatchPointer pending = done == 0 ? batch : batch->slice(done, batch->rowCount());
  if (const auto begun = runFrom(std::move(pending), faultOf(unit)); !begun) {
    return Failure{begun.error()};
  }
  return Step::runsFromHere;
}

Outcome<Done> AppliedStream::runWith(InputStream stream) {
  auto run = m_expressions->run(std::move(stream), m_settings.work, m_settings.form, m_nextRow);
  if (!run) {
    return Failure{run.error()};
  }
  m_reader.reset();
  m_run = std::move(*run);
  return Done{};
}

Outcome<Done> AppliedStream::runFrom(RowBatchPointer pending, ReadFault failure) {
  ArrowArrayStream rest;
  exportStream(std::make_unique<Rest>(m_expressions->inputColumns(), std::move(pending),
                                      std::move(failure), std::move(m_reader)),
               TextFormat::views, rest);
  return runWith(InputStream(rest));
}

}  // namespace kelvarin
