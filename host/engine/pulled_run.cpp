#include "host/engine/pulled_run.h"

#include <utility>

#include "host/engine/file_check.h"

namespace kelvarin {

// While it lives, the calling thread is the engine thread of the run.
class PulledRun::Turn {
 public:
  explicit Turn(PulledRun& run) : m_scope(&run.m_session) { run.m_execution->enterThread(); }

 private:
  HostSession::Scope m_scope;
};

PulledRun::PulledRun(Graph graph, HostServices* services, long long firstRow)
    : m_graph(std::move(graph)), m_services(services) {
  m_record.firstRow = firstRow;
  const HostSession::Scope scope(&m_session);
  m_execution = std::make_unique<GraphExecution>(
      m_graph, std::vector<RunRecord*>(m_graph.actions.size(), &m_record), m_record,
      ExecutionOptions());
  m_sink = m_execution->action(sink());
}

PulledRun::~PulledRun() {
  const Turn turn(*this);
  m_record.stop();
  m_execution.reset();
}

// The action that has no output pins.
int PulledRun::sink() const {
  int index = 0;
  while (item(index).outputPinCount() > 0) {
    ++index;
  }
  return index;
}

bool PulledRun::open() {
  const Turn turn(*this);
  reportWarnings(m_graph);
  const bool isOpen = checkUsedFiles(m_graph) && m_execution->open();
  if (!isOpen) {
    m_record.fail();
  }
  return isOpen;
}

const OneRow* PulledRun::columnsOfOutput(int action) {
  const Turn turn(*this);
  RunningAction& running = *m_execution->action(action);
  const OutputPin& output = running.output(0);
  while (!output.isAnnounced && running.advance()) {
  }
  return output.isAnnounced ? &output.row : nullptr;
}

bool PulledRun::advance() {
  const Turn turn(*this);
  return m_sink->advance() && !m_sink->isFinished();
}

const BatchStage* PulledRun::stageOf(int action) const {
  const BatchTransform* transform = m_execution->action(action)->transform();
  return transform == nullptr ? nullptr : transform->stage();
}

void PulledRun::close() {
  const Turn turn(*this);
  m_record.endNormally();
  m_execution->close();
}

}  // namespace kelvarin
