#include "library/runs/pulled_stream.h"

#include <iterator>
#include <utility>

namespace kelvarin {

using State = GlobalParameters::RunningState;

bool PulledStream::Waiting::take(std::vector<OwnedArray> taken) {
  std::move(taken.begin(), taken.end(), std::back_inserter(arrays));
  return true;
}

PulledStream::PulledStream(Graph graph, const WorkSettings& settings,
                           std::shared_ptr<Waiting> waiting, long long firstRow)
    : m_waiting(std::move(waiting)),
      m_services(settings),
      m_run(std::move(graph), &m_services, firstRow),
      m_stopCallback(std::in_place, settings.stop, [this] { m_run.stop(); }) {}

Outcome<std::unique_ptr<PulledStream>> PulledStream::open(Graph graph, const WorkSettings& settings,
                                                          const BatchForm& form, long long firstRow,
                                                          std::shared_ptr<WholeColumns> whole) {
  auto waiting = std::make_shared<Waiting>();
  const int sink = static_cast<int>(graph.actions.size()) - 1;
  if (const auto bound = bindOutput(graph, sink, waiting, form, std::move(whole)); !bound) {
    return Failure{bound.error()};
  }
  graph.settings->setThreadCount(settings.threads);
  std::unique_ptr<PulledStream> stream(
      new PulledStream(std::move(graph), settings, std::move(waiting), firstRow));
  if (!stream->m_run.open()) {
    return Failure{stream->end()};
  }
  return stream;
}

Outcome<TableColumns> PulledStream::columnsOfSource() {
  const OneRow* columns = m_run.columnsOfOutput(0);
  if (columns == nullptr) {
    return Failure{end()};
  }
  return tableColumnsOf(*columns);
}

Outcome<OwnedArray> PulledStream::next() {
  while (m_waiting->arrays.empty() && m_run.advance()) {
  }
  if (!m_waiting->arrays.empty()) {
    OwnedArray next = std::move(m_waiting->arrays.front());
    m_waiting->arrays.pop_front();
    return next;
  }
  ErrorDetails error = end();
  if (m_run.state() != State::endedNormally) {
    return Failure{std::move(error)};
  }
  return OwnedArray();
}

// Of a run that has ended well, nobody asks what it returns.
ErrorDetails PulledStream::end() {
  m_run.close();
  return errorOfLog(m_run.takeLog(), m_run.state());
}

}  // namespace kelvarin
