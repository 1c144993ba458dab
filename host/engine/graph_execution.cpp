#include "host/engine/graph_execution.h"

#include <algorithm>

#include "base/usable_processors.h"

namespace kelvarin {

namespace {

constexpr std::size_t at(int index) {
  return static_cast<std::size_t>(index);
}

// Null: everything is done on the engine thread, which is one of the threads in any case.
std::unique_ptr<TaskPool> poolFor(const Graph& graph, const ExecutionOptions& options,
                                  std::function<void()> begin) {
  const int threads = graph.settings == nullptr ? 1 : graph.settings->threadCount();
  if (threads < 2) {
    return nullptr;
  }
  const int maxAtWork = options.isOversubscribed ? threads : std::max(1, usableProcessors() - 1);
  return std::make_unique<TaskPool>(threads - 1, std::move(begin), maxAtWork);
}

}  // namespace

GraphExecution::GraphExecution(const Graph& graph, std::vector<RunRecord*> records,
                               RunRecord& stopSwitch, const ExecutionOptions& options)
    : m_graph(graph),
      m_records(std::move(records)),
      m_stopSwitch(stopSwitch),
      m_options(options),
      m_progress([this] {
        if (m_options.progress) {
          m_options.progress(progress());
        }
      }),
      m_pool(poolFor(graph, options,
                     [this] {
                       if (m_sampler != nullptr) {
                         m_sampler->watchThisThread();
                       }
                     })),
      m_links(graph),
      m_order(m_links.order()),
      m_schedule(m_links, m_order, m_actions) {
  for (int i = 0; i < static_cast<int>(graph.actions.size()); ++i) {
    m_linkOfPin.emplace_back(at(graph.actions[at(i)].item->inputPinCount()));
    makeAction(i);
  }
  for (const GraphLink& link : graph.links) {
    if (takesPart(link)) {
      makeLink(link);
    }
  }
  for (const auto& running : m_actions) {
    if (running != nullptr) {
      findReadPins(*running);
    }
  }
  m_stopSwitch.setWaker([this] { wakeAll(); });
  if (m_options.progress || m_options.reportsActions) {
    startSampler();
  }
}

void GraphExecution::startSampler() {
  std::vector<const ActionItem*> items;
  items.reserve(m_actions.size());
  for (const auto& running : m_actions) {
    items.push_back(running == nullptr ? nullptr : &running->item());
  }
  m_sampler = std::make_unique<ActivitySampler>(items, m_progress);
}

GraphExecution::~GraphExecution() {
  m_stopSwitch.setWaker(nullptr);
  close();
  if (m_sampler != nullptr) {
    m_sampler->stop();
  }
  for (RunRecord* record : m_records) {
    if (record != nullptr) {
      record->tasks = nullptr;
    }
  }
}

void GraphExecution::makeAction(int index) {
  if (m_records[at(index)] == nullptr) {
    m_actions.push_back(nullptr);
    return;
  }
  const GraphAction& action = m_graph.actions[at(index)];
  ActionItem* item = action.item.get();
  if (action.isDisabled) {
    m_disabledActions.push_back(std::make_unique<DisabledAction>(*item));
    item = m_disabledActions.back().get();
  }
  m_actions.push_back(std::make_unique<RunningAction>(*item, index, *m_records[at(index)],
                                                      m_stopSwitch, m_progress, m_options));
  if (m_records[at(index)]->mustComputeFull) {
    m_actions.back()->setPool(m_pool.get());
    m_records[at(index)]->tasks = m_pool.get();
  }
}

bool GraphExecution::takesPart(const GraphLink& link) const {
  return m_records[at(link.from)] != nullptr && m_records[at(link.to)] != nullptr;
}

void GraphExecution::makeLink(const GraphLink& link) {
  RunningAction& to = *action(link.to);
  std::unique_ptr<RowLink> made = newLink(link, *action(link.from), to);
  m_linkOfPin[at(link.to)][at(link.toPin)] = made.get();
  if (made->isStraight()) {
    action(link.from)->setReader(made.get());
  }
  if (link.toPin == 0) {
    to.setInput(made.get());
  }
  to.ports().inputs[at(link.toPin)] = std::move(made);
}

std::unique_ptr<RowLink> GraphExecution::newLink(const GraphLink& link, RunningAction& from,
                                                 RunningAction& to) {
  if (from.record().mustComputeFull && !to.record().mustComputeFull && link.toPin == 0) {
    return std::make_unique<ColumnsLink>(from, link.fromPin, to, m_options);
  }
  if (isForked(link.from)) {
    Fork& fork = forkOf(from, link.fromPin);
    auto made = std::make_unique<QueueLink>(from, link.fromPin, to, fork, m_options);
    fork.addReader(made.get());
    to.addQueue(made.get());
    return made;
  }
  return std::make_unique<StraightLink>(from, link.fromPin, to, m_options);
}

// The action's rows go to several readers, of one of its pins or of several.
bool GraphExecution::isForked(int action) const {
  int readers = 0;
  for (const GraphLink& link : m_links.from(action)) {
    readers += takesPart(link) ? 1 : 0;
    if (readers > 1) {
      return true;
    }
  }
  return false;
}

Fork& GraphExecution::forkOf(RunningAction& producer, int pin) {
  OutputPin& output = producer.output(pin);
  if (output.receiver == nullptr) {
    const auto& links = m_links.from(producer.index());
    const bool isOnly = std::all_of(links.begin(), links.end(), [&](const GraphLink& link) {
      return !takesPart(link) || link.fromPin == pin;
    });
    m_forks.push_back(std::make_unique<Fork>(producer, output, isOnly, m_options, m_schedule));
    output.receiver = m_forks.back().get();
    producer.setFork(pin, m_forks.back().get());
  }
  return static_cast<Fork&>(*output.receiver);
}

void GraphExecution::findReadPins(RunningAction& action) const {
  for (const auto& output : action.ports().outputs) {
    output->isRead = false;
  }
  for (const GraphLink& link : m_links.from(action.index())) {
    if (takesPart(link)) {
      action.output(link.fromPin).isRead = true;
    }
  }
}

void GraphExecution::enterThread() const {
  for (const auto& running : m_actions) {
    if (running != nullptr) {
      running->enterThread();
    }
  }
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

void GraphExecution::close() {
  for (const auto& running : m_actions) {
    if (running != nullptr) {
      running->stopWorkingAhead();
    }
  }
  for (const auto& links : m_linkOfPin) {
    for (RowLink* link : links) {
      if (link != nullptr) {
        link->stopEncoding();
        link->settleAtEnd();
      }
    }
  }
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

// On the thread that stops the run.
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

ActionProgress GraphExecution::progressOf(int index) const {
  ActionProgress progress;
  const RunningAction* running = action(index);
  progress.rowsIn = rowsIn(index);
  progress.rowsOut = rowsOut(index);
  if (running == nullptr) {
    return progress;
  }
  progress.phase = running->phase();
  progress.fractionDone = running->hasBegun() ? running->fractionDone() : 0.0;
  progress.seconds = m_sampler == nullptr ? -1.0 : m_sampler->seconds(index);
  return progress;
}

RunProgress GraphExecution::progress() const {
  RunProgress progress;
  for (int i = 0; m_options.reportsActions && i < static_cast<int>(m_actions.size()); ++i) {
    progress.actions.push_back(progressOf(i));
  }
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
    const double fraction = m_actions[i]->fractionDone();
    progress.fractionDone =
        progress.fractionDone < 0 ? fraction : std::min(progress.fractionDone, fraction);
  }
  return progress;
}

}  // namespace kelvarin
