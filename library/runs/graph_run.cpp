#include "library/runs/graph_run.h"

#include <chrono>
#include <numeric>
#include <utility>

#include "host/contract/nearest_names.h"
#include "host/engine/messages.h"
#include "host/reports/run_json.h"
#include "library/runs/graph_text.h"
#include "library/runs/installation.h"
#include "library/runs/messages.h"

namespace kelvarin {

namespace {

using State = GlobalParameters::RunningState;

const char* phaseWord(ActionPhase phase) {
  switch (phase) {
    case ActionPhase::waiting:
      return "waiting";
    case ActionPhase::running:
      return "running";
    case ActionPhase::finished:
      return "finished";
    default:
      return "failed";
  }
}

// Where a run stands that has ended.
RunProgress progressAtEnd(const RunResult& result) {
  RunProgress progress;
  progress.fractionDone = result.isOk() ? 1.0 : -1.0;
  for (const ActionResult& action : result.actions) {
    ActionProgress& ended = progress.actions.emplace_back();
    ended.phase = action.phase;
    ended.rowsIn = action.rowsIn;
    ended.rowsOut = action.rowsOut;
    ended.fractionDone = action.phase == ActionPhase::finished ? 1.0 : -1.0;
    if (action.rowsIn.empty()) {
      progress.rowsRead += std::accumulate(action.rowsOut.begin(), action.rowsOut.end(), 0LL);
    }
  }
  return progress;
}

std::optional<ErrorDetails> errorOf(const RunResult& result) {
  return result.isOk() ? std::nullopt : std::optional(errorOfLog(result.log, result.state));
}

}  // namespace

Outcome<std::shared_ptr<GraphRun>> GraphRun::open(const std::optional<QByteArray>& document,
                                                  const QString& path, GraphRunSettings settings) {
  const auto catalogue = installedActions();
  if (!catalogue) {
    return Failure{catalogue.error()};
  }
  auto graph = document ? parseGraph(*document, path, **catalogue, settings.parameters)
                        : readGraph(path, **catalogue, settings.parameters);
  if (!graph) {
    return Failure{kelvarin::errorOf(graph.error())};
  }
  return std::shared_ptr<GraphRun>(new GraphRun(std::move(*graph), std::move(settings)));
}

GraphRun::GraphRun(Graph graph, GraphRunSettings settings)
    : m_graph(std::move(graph)), m_settings(std::move(settings)) {
  for (const GraphAction& action : m_graph.actions) {
    m_actions.push_back({action.name.toStdString(), action.item->typeName(),
                         action.item->inputPinCount(), action.item->outputPinCount()});
  }
  m_stopOfProgram.emplace(std::exchange(m_settings.work.stop, m_stop.get_token()),
                          [this] { m_stop.request_stop(); });
}

GraphRun::~GraphRun() {
  m_stopOfProgram.reset();
  stop();
  if (m_thread.joinable()) {
    m_thread.join();
    return;
  }
  for (const auto& queue : m_queues) {
    queue->beginRun();
    queue->endRun(errorOfLog({}, State::stoppedByUser));
  }
}

Outcome<int> GraphRun::indexBeforeStart(const QString& action) const {
  if (m_hasStarted) {
    return Failure{kelvarin::errorOf(KELVARIN_WRONG_ARGUMENT, library_messages::alreadyStarted())};
  }
  const int index = m_graph.indexOf(action);
  if (index < 0) {
    QStringList names;
    for (const GraphAction& known : m_graph.actions) {
      names += known.name;
    }
    return Failure{
        kelvarin::errorOf(KELVARIN_WRONG_ARGUMENT,
                          engine_messages::absentAction(action, nearestNames(action, names)))};
  }
  return index;
}

Outcome<Done> GraphRun::bindInput(const QString& action, InputStream stream,
                                  InputSettings settings) {
  const std::lock_guard lock(m_mutex);
  const auto index = indexBeforeStart(action);
  if (!index) {
    return Failure{index.error()};
  }
  return kelvarin::bindInput(m_graph, *index, std::move(stream), std::move(settings));
}

Outcome<std::unique_ptr<BatchSupply>> GraphRun::bindOutput(const QString& action,
                                                           const BatchForm& form) {
  const std::lock_guard lock(m_mutex);
  const auto index = indexBeforeStart(action);
  if (!index) {
    return Failure{index.error()};
  }
  auto queue = std::make_shared<StreamQueue>();
  if (const auto bound = kelvarin::bindOutput(m_graph, *index, queue, form); !bound) {
    return Failure{bound.error()};
  }
  m_queues.push_back(queue);
  return std::unique_ptr<BatchSupply>(std::make_unique<QueuedStream>(std::move(queue)));
}

Outcome<Done> GraphRun::start() {
  const std::lock_guard lock(m_mutex);
  if (m_hasStarted) {
    return Failure{kelvarin::errorOf(KELVARIN_WRONG_ARGUMENT, library_messages::alreadyStarted())};
  }
  m_hasStarted = true;
  for (const auto& queue : m_queues) {
    queue->beginRun();
  }
  m_thread = std::thread([this] { work(); });
  return Done{};
}

// The thread's. The queues do not change any more.
void GraphRun::work() {
  const std::stop_callback stopWaiting(m_stop.get_token(), [this] {
    for (const auto& queue : m_queues) {
      queue->stop();
    }
  });
  ExecutionOptions options;
  options.reportsActions = true;
  options.progress = [this](const RunProgress& progress) { noteProgress(progress); };
  RunResult result;
  try {
    result = runWhole(m_graph, m_settings.work, std::move(options));
  } catch (const std::exception& exception) {
    LogLine line;
    line.level = LogLevel::error;
    line.text = QString::fromUtf8(exception.what());
    result.log.push_back(std::move(line));
  }
  const std::optional<ErrorDetails> error = errorOf(result);
  {
    const std::lock_guard lock(m_mutex);
    m_progress = progressAtEnd(result);
    m_result = std::move(result);
    m_changed.notify_all();
  }
  for (const auto& queue : m_queues) {
    queue->endRun(error);
  }
}

void GraphRun::noteProgress(const RunProgress& progress) {
  {
    const std::lock_guard lock(m_mutex);
    m_progress = progress;
  }
  if (m_settings.progress.function != nullptr) {
    m_settings.progress.function(m_settings.progress.context, progress.rowsRead,
                                 progress.fractionDone);
  }
}

Outcome<Done> GraphRun::wait(std::int64_t milliseconds) {
  std::unique_lock lock(m_mutex);
  if (!m_hasStarted) {
    return Failure{kelvarin::errorOf(KELVARIN_WRONG_ARGUMENT, library_messages::notStarted())};
  }
  const auto isOver = [this] { return m_result.has_value(); };
  if (milliseconds < 0) {
    m_changed.wait(lock, isOver);
  } else if (!m_changed.wait_for(lock, std::chrono::milliseconds(milliseconds), isOver)) {
    return Failure{kelvarin::errorOf(KELVARIN_NOT_FINISHED, library_messages::goesOn())};
  }
  if (auto error = errorOf(*m_result)) {
    return Failure{std::move(*error)};
  }
  return Done{};
}

Outcome<std::string> GraphRun::result() {
  const std::lock_guard lock(m_mutex);
  if (!m_result) {
    return Failure{
        m_hasStarted ? kelvarin::errorOf(KELVARIN_NOT_FINISHED, library_messages::goesOn())
                     : kelvarin::errorOf(KELVARIN_WRONG_ARGUMENT, library_messages::notStarted())};
  }
  return printed(jsonOf(*m_result));
}

std::string GraphRun::progress() {
  const std::lock_guard lock(m_mutex);
  Json actions = Json::array();
  for (std::size_t i = 0; i < m_progress.actions.size(); ++i) {
    const ActionProgress& action = m_progress.actions[i];
    actions.push_back({{"name", m_actions[i].name},
                       {"phase", phaseWord(action.phase)},
                       {"rowsIn", action.rowsIn},
                       {"rowsOut", action.rowsOut},
                       {"fraction", action.fractionDone}});
  }
  return printed({{"rowsRead", m_progress.rowsRead},
                  {"fraction", m_progress.fractionDone},
                  {"actions", actions}});
}

}  // namespace kelvarin
