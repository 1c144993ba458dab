#include "host/engine/running_action.h"

#include <algorithm>
#include <exception>
#include <new>

#include "host/contract/main_ui.h"
#include "host/engine/messages.h"
#include "host/engine/row_links.h"

namespace kelvarin {

RunningAction::RunningAction(ActionItem& item, int index, RunRecord& record,
                             const RunRecord& stopSwitch, ProgressMeter& progress)
    : m_item(item),
      m_index(index),
      m_record(record),
      m_stopSwitch(stopSwitch),
      m_progress(progress),
      m_currentAction(CurrentAction::slot()),
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
  const CurrentAction current(&m_item, m_currentAction);
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
  m_item.setFinished(guarded([this] { return m_item.compute(); }, true));
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

void RunningAction::takeRows(OutputPin& pin, std::size_t count) {
  const CurrentAction current(&m_item, m_currentAction);
  pin.takeRows(&m_item, count);
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
  const CurrentAction current(&m_item, m_currentAction);
  MainUI::addLog(LogLevel::error, text);
  m_item.failRun();
}

}  // namespace kelvarin
