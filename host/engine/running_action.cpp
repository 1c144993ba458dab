#include "host/engine/running_action.h"

#include <algorithm>
#include <exception>
#include <new>

#include "host/contract/main_ui.h"
#include "host/engine/action_chain.h"
#include "host/engine/messages.h"
#include "host/engine/row_links.h"

namespace kelvarin {

namespace {

// Readers of files whose names come with rows are among them.
bool isSource(const ActionItem& item) {
  return item.inputPinCount() == 0 || dynamic_cast<const BatchSource*>(&item) != nullptr;
}

}  // namespace

RunningAction::RunningAction(ActionItem& item, int index, RunRecord& record,
                             const RunRecord& stopSwitch, ProgressMeter& progress,
                             const ExecutionOptions& options)
    : m_item(item),
      m_index(index),
      m_record(record),
      m_stopSwitch(stopSwitch),
      m_progress(progress),
      m_currentAction(&CurrentAction::slot()),
      m_source(dynamic_cast<BatchSource*>(&item)),
      m_transform(dynamic_cast<BatchTransform*>(&item)),
      m_sink(dynamic_cast<BatchSink*>(&item)),
      m_rowsInBatch(options.rowsInBatch),
      m_rowLimit(isSource(item) ? options.rowsOfSource.value_or(0) : 0),
      m_rowsToMake(m_rowLimit > 0 ? std::optional(m_rowLimit) : std::nullopt),
      m_forks(static_cast<std::size_t>(item.outputPinCount())),
      m_published(static_cast<std::size_t>(item.outputPinCount())),
      m_awaitsFirstRow(item.outputPinCount() > 0) {
  m_ports.inputs.resize(static_cast<std::size_t>(item.inputPinCount()));
  for (int i = 0; i < item.outputPinCount(); ++i) {
    m_ports.outputs.push_back(std::make_unique<OutputPin>());
  }
}

RunningAction::~RunningAction() {
  m_item.attach(nullptr, nullptr);
}

template <typename Call>
auto RunningAction::guarded(Call call, decltype(call()) afterException) {
  const CurrentAction current(&m_item, *m_currentAction);
  try {
    return call();
  } catch (const std::bad_alloc&) {
    fail(engine_messages::outOfMemory(m_item.name()));
    return afterException;
  } catch (const std::exception& exception) {
    fail(engine_messages::exceptionOutOfAction(m_item.name(), QString::fromUtf8(exception.what())));
    return afterException;
  }
}

long long RunningAction::rowsPublished() const {
  long long rows = 0;
  for (const auto& pin : m_ports.outputs) {
    rows += pin->rowsPublished;
  }
  return rows;
}

double RunningAction::fractionDone() const {
  const double ofAction = m_item.completion();
  if (!m_rowsToMake) {
    return ofAction;
  }
  const auto made = static_cast<double>(m_rowLimit - *m_rowsToMake);
  return std::max(ofAction, made / static_cast<double>(m_rowLimit));
}

bool RunningAction::open() {
  m_item.attach(&m_record, &m_ports);
  m_item.setOpen(true);
  m_item.setFinished(false);
  const char refusal = guarded([this] { return m_item.init(); }, 1);
  if (refusal != 0) {
    m_item.failRun();
    return false;
  }
  return guarded(
      [this] {
        m_item.setComputeRoutine();
        return true;
      },
      false);
}

bool RunningAction::close() {
  if (!m_item.isOpen()) {
    return true;
  }
  m_item.setOpen(false);
  const char failure = guarded([this] { return m_item.close(); }, 1);
  letRowsGo();
  return failure == 0 && !m_item.hasFailed();
}

void RunningAction::compute() {
  m_hasBegun = true;
  m_isComputing = true;
  m_item.setFinished(guarded([this] { return step(); }, true));
  m_isComputing = false;
  m_progress.reportWhenDue();
  if (m_awaitsFirstRow) {
    noteFirstRow();
  }
  if (isFinished()) {
    m_hasCompleted = m_record.isRunning() && m_stopSwitch.isRunning();
    letRowsGo();
  }
}

// True when the action has finished.
bool RunningAction::step() {
  if (m_pool != nullptr && mayPublishBatches() && workAhead()) {
    return false;
  }
  if (m_source != nullptr && (hasPartOfUnit() || canReadUnits()) && readBatch()) {
    return false;
  }
  if (hasReachedLimit()) {
    return true;
  }
  if (m_transform != nullptr && transformBatch()) {
    return false;
  }
  if (!m_rowsToMake) {
    return m_item.compute();
  }
  const long long before = rowsPublished();
  const bool isFinished = m_item.compute();
  *m_rowsToMake -= rowsPublished() - before;
  return isFinished;
}

// False: it has to go on by itself.
bool RunningAction::workAhead() {
  if (m_chain != nullptr && !m_chain->isIntact()) {
    m_chain->retire();
    if (!m_chain->isAtWork()) {
      m_chain.reset();
    }
  }
  if (m_isCovered) {
    return false;
  }
  // Where rows come one by one there is none, and looking for it at each would cost too much.
  constexpr int kCallsBetweenLooks = 64;
  if (m_chain == nullptr && --m_callsToLook < 0) {
    m_chain = ActionChain::endingWith(*this, *m_pool);
    m_callsToLook = m_callsAtFirst > 0 ? 0 : kCallsBetweenLooks;
    m_callsAtFirst -= m_callsAtFirst > 0 ? 1 : 0;
  }
  return m_chain != nullptr && m_chain->isDrained() && m_chain->advance();
}

// The rows before a failure: those that are encoded already, and those of a queue below which
// somebody has asked for them.
bool RunningAction::mustTakePending() const {
  if (m_input == nullptr || isFinished() || m_item.hasFailed() ||
      m_stopSwitch.status == GlobalParameters::RunningState::stoppedByUser) {
    return false;
  }
  bool hasRows = m_input->hasPending();
  for (const RowLink* link = m_input; !hasRows && link != nullptr;
       link = link->producer().input()) {
    hasRows = link->hasRowsReady() && endsWithFailure();
    if (link->isQueue()) {
      break;
    }
  }
  return hasRows;
}

// The queue from which its rows come, if any.
bool RunningAction::endsWithFailure() const {
  const RowLink* link = m_input;
  while (link != nullptr && !link->isQueue()) {
    link = link->producer().input();
  }
  return link != nullptr && link->endsWithFailure();
}

void RunningAction::stopWorkingAhead() {
  if (m_source != nullptr) {
    m_item.wakeAll();
  }
  m_chain.reset();
}

RowBatchPointer RunningAction::accept(BatchUnit& unit) {
  if (hasReachedLimit()) {
    return nullptr;
  }
  RowBatchPointer batch = guarded([&] { return m_source->accept(unit); }, RowBatchPointer());
  if (batch == nullptr || !m_rowsToMake) {
    return batch;
  }
  const std::size_t count = std::min(batch->rowCount(), static_cast<std::size_t>(*m_rowsToMake));
  *m_rowsToMake -= static_cast<long long>(count);
  return count == batch->rowCount() ? batch : batch->slice(0, count);
}

void RunningAction::failWith(const std::exception_ptr& exception) {
  (void)guarded([&]() -> bool { std::rethrow_exception(exception); }, false);
}

// False: the source has no more units.
bool RunningAction::readBatch() {
  if (m_unitRows.rowsLeft() == 0 && !startUnit()) {
    return m_source->readOn();
  }
  if (m_unitRows.rowsLeft() > 0) {
    publishUnit();
  }
  return true;
}

// What a chain has begun comes first. False: there is none.
bool RunningAction::startUnit() {
  if (m_unitHolder != nullptr && m_unitHolder->isAtWork()) {
    m_unitRows.start(m_unitHolder->takeBack().batch);
    return true;
  }
  if (m_rowsInBatch == 0) {
    allowLateTexts();
  }
  const std::unique_ptr<BatchUnit> unit = m_source->readUnit();
  if (unit == nullptr) {
    return false;
  }
  unit->parse();
  m_unitRows.start(accept(*unit));
  return true;
}

// Where all its rows go to an action alone that gains by them.
void RunningAction::allowLateTexts() {
  if (m_reader == nullptr || output(0).receiver != nullptr ||
      m_reader->consumer().input() != m_reader) {
    return;
  }
  const BatchTransform* transform = m_reader->consumer().transform();
  const BatchStage* stage = transform == nullptr ? nullptr : transform->stage();
  if (stage != nullptr && stage->takesLateTexts()) {
    m_source->allowLateTexts();
  }
}

void RunningAction::publishUnit() {
  const std::size_t begin = m_unitRows.rowsTaken();
  const std::size_t most =
      m_rowsInBatch > 0 ? static_cast<std::size_t>(m_rowsInBatch) : m_unitRows.rowsLeft();
  const std::size_t count = std::min(most, m_unitRows.rowsLeft());
  RowBatchPointer batch = m_unitRows.batch();
  if (count < batch->rowCount()) {
    batch = batch->slice(begin, begin + count);
  }
  m_unitRows.skip(count);
  if (m_unitRows.rowsLeft() == 0) {
    m_unitRows.clear();
  }
  publish(0, {std::move(batch), std::make_shared<BatchTrail>(&output(0)), nullptr});
}

// False: a single row comes next, or none.
bool RunningAction::transformBatch() {
  const BatchStage* stage = m_transform->stage();
  if (stage == nullptr || m_input == nullptr) {
    return false;
  }
  RowBatchPointer batch = m_input->batchAtWork();
  if (batch == nullptr) {
    return false;
  }
  if (batch->rowCount() > m_input->rowLimit()) {
    batch = batch->slice(0, std::max<std::size_t>(1, m_input->rowLimit()));
  }
  BatchTrail::Origin origin{
      .maker = m_transform,
      .result = stage->process(*batch, m_record.firstRow + m_input->rowsTaken()),
      .parent = m_input->trail(),
      .firstInParent = m_input->rowsTakenOfBatch()};
  if (origin.result.rowsDone == 0) {
    return false;
  }
  m_input->pass(origin.result.rowsDone);
  m_transform->passRows(origin.result.rowsDone);
  publish(std::move(origin));
  return true;
}

void RunningAction::publish(BatchTrail::Origin origin, std::unique_ptr<EncodedBatch> encoded) {
  int pinsRead = 0;
  int lastRead = -1;
  for (int pin = 0; pin < m_item.outputPinCount(); ++pin) {
    output(pin).isAnnounced = true;
    if (output(pin).isRead) {
      ++pinsRead;
      lastRead = pin;
    }
  }
  const StageResult& result = origin.result;
  const auto rowsOf = [&result](int pin) {
    const auto index = static_cast<std::size_t>(pin);
    return index < StageResult::kMaxPins && result.outputs[index] != nullptr &&
                   result.outputs[index]->rowCount() > 0
               ? result.outputs[index]
               : RowBatchPointer();
  };
  if (pinsRead == 1 && rowsOf(lastRead) != nullptr) {
    RowBatchPointer batch = rowsOf(lastRead);
    auto trail = std::make_shared<BatchTrail>(&output(lastRead), lastRead, std::move(origin));
    publish(lastRead, {std::move(batch), std::move(trail), std::move(encoded)});
    return;
  }
  // Rows for several pins wait in queues, whoever takes them first.
  settleInput(origin);
  for (int pin = 0; pin < m_item.outputPinCount(); ++pin) {
    RowBatchPointer batch = output(pin).isRead ? rowsOf(pin) : nullptr;
    if (batch != nullptr) {
      output(pin).rowsPublished += static_cast<long long>(batch->rowCount());
      publish(pin, {std::move(batch), nullptr, nullptr});
    }
  }
}

void RunningAction::publish(int pin, PublishedBatch published) {
  OutputPin& to = output(pin);
  to.isAnnounced = true;
  if (Fork* fork = m_forks[static_cast<std::size_t>(pin)]) {
    fork->receive(published);
  } else if (to.receiver != nullptr) {
    if (published.trail != nullptr) {
      published.trail->settle(published.batch->rowCount());
      published.trail->settleRest();
    }
    to.receiver->receive(published.batch);
  } else if (to.isRead) {
    m_published[static_cast<std::size_t>(pin)] = std::move(published);
  } else if (published.trail != nullptr) {
    published.trail->settle(published.batch->rowCount());
    published.trail->settleRest();
  }
}

ActionPhase RunningAction::phase() const {
  if (m_item.hasFailed()) {
    return ActionPhase::failed;
  }
  if (m_hasCompleted) {
    return ActionPhase::finished;
  }
  return m_hasBegun ? ActionPhase::running : ActionPhase::waiting;
}

// An action that has published a row without ever asking a pin does not read that pin.
void RunningAction::noteFirstRow() {
  m_awaitsFirstRow = std::none_of(m_ports.outputs.begin(), m_ports.outputs.end(),
                                  [](const auto& pin) { return pin->rowsPublished > 0; });
  if (!m_awaitsFirstRow) {
    for (QueueLink* queue : m_queues) {
      if (!queue->wasAsked()) {
        queue->letGo();
      }
    }
  }
}

void RunningAction::letRowsGo() {
  for (QueueLink* queue : m_queues) {
    queue->letGo();
  }
}

// Asked for a row after its end: the one before, which may show values of its queues, is done with.
void RunningAction::releaseRows() {
  if (isFinished()) {
    for (QueueLink* queue : m_queues) {
      queue->release();
    }
  }
}

void RunningAction::fail(const QString& text) {
  const CurrentAction current(&m_item, *m_currentAction);
  MainUI::addLog(LogLevel::error, text);
  m_item.failRun();
}

}  // namespace kelvarin
