#include "host/engine/sink_schedule.h"

#include <algorithm>
#include <utility>

namespace kelvarin {

namespace {

// Rows that one sink takes before the others get their turn.
constexpr std::size_t kRowsInATurn = 64 * 1024;
// The same for one that takes no rows from its first pin.
constexpr std::size_t kCallsInATurn = 256;

constexpr std::size_t at(int index) {
  return static_cast<std::size_t>(index);
}

}  // namespace

void SinkSchedule::drive() {
  findSinks();
  m_isDriving = true;
  std::vector<int> unfinished = m_sinks;
  while (!unfinished.empty()) {
    const bool isAlone = unfinished.size() == 1;
    std::erase_if(unfinished, [&](int sink) { return !takeTurn(sink, isAlone); });
  }
  m_isDriving = false;
}

void SinkSchedule::findSinks() {
  m_sinks.clear();
  m_readersLeft.assign(m_actions.size(), 0);
  m_isDismissed.assign(m_actions.size(), 0);
  for (const int index : m_order) {
    const auto& links = m_links.from(index);
    m_readersLeft[at(index)] = static_cast<int>(std::count_if(
        links.begin(), links.end(), [this](const GraphLink& link) { return isInRun(link); }));
    if (action(index) != nullptr && m_readersLeft[at(index)] == 0) {
      m_sinks.push_back(index);
    }
  }
}

// False when it was the last one.
bool SinkSchedule::takeTurn(int sink, bool isAlone) {
  RunningAction& running = *action(sink);
  relieveWhenAsked();
  if (RowLink* input = running.input()) {
    input->setRowLimit(isAlone ? RowLink::kNoLimit : kRowsInATurn);
    while (input->rowLimit() > 0 && running.advance()) {
    }
    input->setRowLimit(RowLink::kNoLimit);
  } else {
    for (std::size_t i = 0; i < kCallsInATurn && running.advance(); ++i) {
    }
  }
  if (running.canGoOn()) {
    return true;
  }
  dismiss(sink);
  return false;
}

// Actions that no other sink needs get no more rows: kept for them, these would fill the disk.
void SinkSchedule::dismiss(int sink) {
  if (std::exchange(m_isDismissed[at(sink)], 1) != 0) {
    return;
  }
  std::vector<int> dismissed{sink};
  while (!dismissed.empty()) {
    const int index = dismissed.back();
    dismissed.pop_back();
    action(index)->letRowsGo();
    for (const GraphLink& link : m_links.to(index)) {
      if (isInRun(link) && --m_readersLeft[at(link.from)] == 0) {
        dismissed.push_back(link.from);
      }
    }
  }
}

void SinkSchedule::relieve() {
  if (m_isRelieving) {
    return;
  }
  m_isRelieving = true;
  findSinksThatCanRun();
  while (!m_congested.empty()) {
    Fork& fork = *m_congested.back();
    m_congested.pop_back();
    for (const QueueLink* reader : fork.readers()) {
      help(*reader);
    }
    fork.noteRelief();
  }
  m_isRelieving = false;
}

// Of the actions at work, and of all that need them, none can.
void SinkSchedule::findSinksThatCanRun() {
  m_sinkBelow.assign(m_actions.size(), nullptr);
  if (!m_isDriving) {
    return;
  }
  std::vector<char> isBlocked(m_actions.size());
  for (const int index : m_order) {
    if (action(index) == nullptr) {
      continue;
    }
    if (action(index)->isComputing()) {
      isBlocked[at(index)] = 1;
    }
    for (const GraphLink& link : m_links.from(index)) {
      isBlocked[at(link.to)] |= isBlocked[at(index)];
    }
  }
  for (const int sink : m_sinks) {
    m_sinkBelow[at(sink)] = action(sink);
  }
  for (auto index = m_order.rbegin(); index != m_order.rend(); ++index) {
    RunningAction*& below = m_sinkBelow[at(*index)];
    for (const GraphLink& link : m_links.from(*index)) {
      below = below == nullptr ? m_sinkBelow[at(link.to)] : below;
    }
    if (below != nullptr && (isBlocked[at(*index)] != 0 || !below->canGoOn())) {
      below = nullptr;
    }
  }
}

void SinkSchedule::help(const QueueLink& reader) {
  RunningAction* sink = m_sinkBelow[at(reader.consumer().index())];
  if (sink == nullptr) {
    return;
  }
  for (long long calls = reader.rowsWaiting();
       calls > 0 && reader.rowsWaiting() > 0 && sink->advance(); --calls) {
  }
  if (sink->isFinished()) {
    dismiss(sink->index());
  }
}

}  // namespace kelvarin
