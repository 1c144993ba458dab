#include "host/engine/graph_execution.h"

#include <algorithm>

namespace kelvarin {

namespace {

// Calls of one sink before the others get their turn.
constexpr int kCallsInATurn = 256;

constexpr std::size_t at(int index) {
  return static_cast<std::size_t>(index);
}

}  // namespace

GraphExecution::GraphExecution(const Graph& graph, std::vector<RunRecord*> records,
                               const RunRecord& stopSwitch, const ExecutionOptions& options)
    : m_graph(graph),
      m_records(std::move(records)),
      m_stopSwitch(stopSwitch),
      m_options(options),
      m_progress(options.progress
                     ? std::function<void()>([this] { m_options.progress(progress()); })
                     : nullptr),
      m_order(actionsInOrder(graph)),
      m_isFork(graph.actions.size()) {
  std::vector<int> readers(graph.actions.size());
  for (int i = 0; i < static_cast<int>(graph.actions.size()); ++i) {
    m_upstream.push_back(actionsUpstreamOf(graph, i));
    m_linkOfPin.emplace_back(at(graph.actions[at(i)].item->inputPinCount()));
    m_actions.push_back(m_records[at(i)] == nullptr
                            ? nullptr
                            : std::make_unique<RunningAction>(*graph.actions[at(i)].item,
                                                              *m_records[at(i)], stopSwitch,
                                                              m_progress));
  }
  for (const GraphLink& link : graph.links) {
    readers[at(link.from)] += takesPart(link) ? 1 : 0;
  }
  std::transform(readers.begin(), readers.end(), m_isFork.begin(),
                 [](int count) { return count > 1; });
  for (const GraphLink& link : graph.links) {
    if (takesPart(link)) {
      makeLink(link);
    }
  }
  findSinks();
}

GraphExecution::~GraphExecution() {
  close();
}

bool GraphExecution::takesPart(const GraphLink& link) const {
  return m_records[at(link.from)] != nullptr && m_records[at(link.to)] != nullptr;
}

void GraphExecution::makeLink(const GraphLink& link) {
  RunningAction& to = *action(link.to);
  std::unique_ptr<RowLink> made = newLink(link, *action(link.from), to);
  m_linkOfPin[at(link.to)][at(link.toPin)] = made.get();
  to.ports().inputs[at(link.toPin)] = std::move(made);
}

std::unique_ptr<RowLink> GraphExecution::newLink(const GraphLink& link, RunningAction& from,
                                                 RunningAction& to) {
  OutputPin& pin = from.output(link.fromPin);
  if (from.record().mustComputeFull && !to.record().mustComputeFull && link.toPin == 0) {
    return std::make_unique<ColumnsLink>(from, pin, m_options);
  }
  if (m_isFork[at(link.from)]) {
    auto made = std::make_unique<QueueLink>(from, pin, to, m_options, *this);
    addReader(link, made.get());
    keepBelowForks(link, made->heldRow());
    to.addQueue(made.get());
    return made;
  }
  const std::vector<bool>& upstream = m_upstream[at(link.from)];
  for (std::size_t i = 0; i < upstream.size(); ++i) {
    if (upstream[i] && m_isFork[i]) {
      auto made = std::make_unique<HoldingLink>(from, pin, m_options);
      keepBelowForks(link, made->heldRow());
      return made;
    }
  }
  return std::make_unique<StraightLink>(from, pin, m_options);
}

void GraphExecution::addReader(const GraphLink& link, QueueLink* reader) {
  OutputPin& pin = action(link.from)->output(link.fromPin);
  if (pin.receiver == nullptr) {
    m_forks.push_back(std::make_unique<Fork>());
    pin.receiver = m_forks.back().get();
  }
  static_cast<Fork*>(pin.receiver)->addReader(reader);
}

// The row shows values of every action upstream of it; those that others can make go on must wait
// for its copy.
void GraphExecution::keepBelowForks(const GraphLink& link, HeldRow& row) {
  for (std::size_t i = 0; i < m_isFork.size(); ++i) {
    const bool isAbove = static_cast<int>(i) == link.from || m_upstream[at(link.from)][i];
    if (isAbove && m_isFork[i] && m_actions[i] != nullptr) {
      m_actions[i]->addRowToKeep(&row);
    }
  }
}

void GraphExecution::findSinks() {
  for (const int index : m_order) {
    const bool isRead = std::any_of(
        m_graph.links.begin(), m_graph.links.end(),
        [this, index](const GraphLink& link) { return link.from == index && takesPart(link); });
    if (action(index) == nullptr || isRead) {
      continue;
    }
    Sink sink{action(index), {}, {}};
    for (std::size_t i = 0; i < m_actions.size(); ++i) {
      const bool isAbove = static_cast<int>(i) == index || m_upstream[at(index)][i];
      if (!isAbove || m_actions[i] == nullptr) {
        continue;
      }
      sink.upstream.push_back(m_actions[i].get());
      for (const RowLink* link : m_linkOfPin[i]) {
        if (const auto* queue = dynamic_cast<const QueueLink*>(link)) {
          sink.queues.push_back(queue);
        }
      }
    }
    m_sinks.push_back(std::move(sink));
  }
}

long long GraphExecution::Sink::bytesWaiting() const {
  long long bytes = 0;
  for (const QueueLink* queue : queues) {
    bytes += queue->bytesWaiting();
  }
  return bytes;
}

long long GraphExecution::Sink::rowsWaiting() const {
  long long rows = 0;
  for (const QueueLink* queue : queues) {
    rows += queue->rowsWaiting();
  }
  return rows;
}

bool GraphExecution::Sink::canRunNow() const {
  return action->canGoOn() && std::none_of(upstream.begin(), upstream.end(),
                                           [](const auto* other) { return other->isComputing(); });
}

bool GraphExecution::open() {
  bool isOpen = true;
  for (const int index : m_order) {
    RunningAction* opened = action(index);
    if (opened != nullptr && m_stopSwitch.status != GlobalParameters::RunningState::stoppedByUser) {
      isOpen = opened->open() && isOpen;
    }
  }
  return isOpen;
}

void GraphExecution::drive() {
  while (Sink* sink = nextSink()) {
    for (int i = 0; i < kCallsInATurn && sink->action->advance(); ++i) {
    }
  }
}

GraphExecution::Sink* GraphExecution::nextSink() {
  Sink* next = nullptr;
  long long mostBytes = -1;
  for (std::size_t i = 1; i <= m_sinks.size(); ++i) {
    Sink& sink = m_sinks[(m_lastSink + i) % m_sinks.size()];
    if (!sink.action->canGoOn()) {
      continue;
    }
    const long long bytes = sink.bytesWaiting();
    if (bytes > mostBytes) {
      mostBytes = bytes;
      next = &sink;
    }
  }
  if (next != nullptr) {
    m_lastSink = static_cast<std::size_t>(next - m_sinks.data());
  }
  return next;
}

// A long pull of one sink has filled queues of others: those that do not need the actions at work
// may empty them.
void GraphExecution::relieve() {
  if (m_isRelieving) {
    return;
  }
  m_isRelieving = true;
  for (Sink& sink : m_sinks) {
    for (long long calls = sink.canRunNow() ? sink.rowsWaiting() : 0;
         calls > 0 && sink.rowsWaiting() > 0 && sink.action->advance(); --calls) {
    }
  }
  m_isRelieving = false;
}

void GraphExecution::close() {
  for (const int index : m_order) {
    if (action(index) != nullptr && action(index)->item().outputPinCount() > 0) {
      closeAction(index);
    }
  }
  for (const int index : m_order) {
    if (action(index) != nullptr && action(index)->item().outputPinCount() == 0) {
      closeAction(index);
    }
  }
}

void GraphExecution::closeAction(int index) {
  if (!action(index)->close() &&
      m_records[at(index)]->status != GlobalParameters::RunningState::stoppedByUser) {
    m_records[at(index)]->status = GlobalParameters::RunningState::failed;
  }
}

void GraphExecution::wakeAll() {
  for (const auto& running : m_actions) {
    if (running != nullptr) {
      running->item().wakeAll();
    }
  }
}

std::vector<long long> GraphExecution::rowsIn(int index) const {
  std::vector<long long> rows;
  for (const RowLink* link : m_linkOfPin[at(index)]) {
    rows.push_back(link == nullptr ? 0 : link->rowsRead());
  }
  return rows;
}

std::vector<long long> GraphExecution::rowsOut(int index) const {
  std::vector<long long> rows;
  if (action(index) == nullptr) {
    rows.resize(at(m_graph.actions[at(index)].item->outputPinCount()));
    return rows;
  }
  for (const auto& pin : action(index)->ports().outputs) {
    rows.push_back(pin->rowsPublished);
  }
  return rows;
}

RunProgress GraphExecution::progress() const {
  RunProgress progress;
  for (std::size_t i = 0; i < m_actions.size(); ++i) {
    const bool isSource = std::none_of(m_linkOfPin[i].begin(), m_linkOfPin[i].end(),
                                       [](const RowLink* link) { return link != nullptr; });
    if (m_actions[i] == nullptr || !isSource || !m_actions[i]->hasBegun()) {
      continue;
    }
    for (const auto& pin : m_actions[i]->ports().outputs) {
      progress.rowsRead += pin->rowsPublished;
    }
    if (m_actions[i]->isFinished()) {
      continue;
    }
    const double fraction = m_actions[i]->item().completion();
    progress.fractionDone =
        progress.fractionDone < 0 ? fraction : std::min(progress.fractionDone, fraction);
  }
  return progress;
}

}  // namespace kelvarin
