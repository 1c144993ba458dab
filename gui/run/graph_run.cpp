#include "gui/run/graph_run.h"

#include <mutex>
#include <utility>

#include "gui/run/action_states.h"
#include "gui/run/run_thread.h"
#include "gui/run/stale_actions.h"
#include "gui/threads/posted_calls.h"
#include "host/contract/host_session.h"
#include "host/contract/log_details.h"
#include "host/engine/branch_copy.h"
#include "host/engine/graph_links.h"
#include "host/engine/graph_writer.h"

namespace kelvarin {

namespace {

// As a shell takes it for one word.
QString shellWord(const QString& text) {
  return u'\'' + QString(text).replace(u'\'', QLatin1String("'\\''")) + u'\'';
}

// A graph that cannot be read has no actions in its result, and every reason in its log.
RunResult refusedRun(const GraphErrors& faults, bool hasPositions) {
  RunResult result;
  for (const GraphError& fault : faults) {
    LogDetails details;
    if (hasPositions) {
      details.elementPosition = fault.position;
    }
    logWithDetails(LogLevel::error, fault.message, details);
    result.log.push_back({LogLevel::error, {}, fault.message, details});
  }
  return result;
}

RunResult runSnapshot(const GraphSnapshot& snapshot, bool isWhole, const ActionCatalogue& catalogue,
                      RunRecord& record, const ExecutionOptions& options) {
  auto graph = snapshot.makeCopy(catalogue);
  if (!graph) {
    record.fail();
    return refusedRun(graph.error(), isWhole);
  }
  return runGraph(*graph, record, options);
}

}  // namespace

class GraphRun::Parts {
 public:
  Parts(GraphRun& owner, EditedGraph& ofGraph, EditServices& ofServices)
      : m_owner(owner), graph(ofGraph), services(ofServices), m_stale(ofGraph) {}
  ~Parts() { stop(); }

  void follow();
  bool start(std::vector<ActionId> ids, const QByteArray& document, bool isWhole);
  void stop();
  bool isRunning() const { return m_thread != nullptr; }

 private:
  void report(const RunProgress& progress);
  void postNews();
  void takeNews();
  void end(const RunResult& ended);
  void setStates(std::vector<ActionState> ofActions);
  void updateStaleness();
  void noteLink(LinkId id);
  void forget();

  GraphRun& m_owner;

 public:
  EditedGraph& graph;
  EditServices& services;
  QHash<ActionId, ActionState> states;
  std::unique_ptr<RunResult> result;
  std::unique_ptr<RunServices> runServices;  // of the run that goes on, or of the last one

 private:
  StaleActions m_stale;
  QHash<LinkId, ActionId> m_readerOfLink;  // of links that were there since the run began
  std::vector<ActionId> m_ids;             // in the order of the copy that runs
  QStringList m_names;                     // as they were when the run began
  int m_diskQuestion = 0;                  // its number; 0 while nothing is asked
  std::mutex m_mutex;                      // guards the two below
  RunProgress m_progress;
  bool m_areNewsPosted = false;
  PostedCalls m_posted;
  std::unique_ptr<RunThread> m_thread;  // uses all of the above; null while nothing runs
};

void GraphRun::Parts::follow() {
  connect(&graph, &EditedGraph::loaded, &m_owner, [this] { forget(); });
  connect(&graph, &EditedGraph::actionChanged, &m_owner,
          [this](ActionId id) { m_stale.noteChange(id); });
  connect(&graph, &EditedGraph::actionAdded, &m_owner,
          [this](ActionId id) { m_stale.noteChange(id); });
  connect(&graph, &EditedGraph::actionRemoved, &m_owner, [this](ActionId id) {
    states.remove(id);
    m_stale.noteChange(id);
  });
  connect(&graph, &EditedGraph::linkAdded, &m_owner, [this](LinkId id) { noteLink(id); });
  connect(&graph, &EditedGraph::linkChanged, &m_owner, [this](LinkId id) { noteLink(id); });
  connect(&graph, &EditedGraph::linkRemoved, &m_owner, [this](LinkId id) { noteLink(id); });
  connect(&graph, &EditedGraph::parametersChanged, &m_owner, [this] { m_stale.noteParameters(); });
  connect(&graph, &EditedGraph::rowsMayDiffer, &m_owner, [this] { updateStaleness(); });
}

void GraphRun::Parts::noteLink(LinkId id) {
  if (graph.hasLink(id)) {
    m_readerOfLink.insert(id, graph.link(id).to);
  }
  const auto reader = m_readerOfLink.constFind(id);
  if (reader != m_readerOfLink.constEnd()) {
    m_stale.noteChange(*reader);
  }
}

void GraphRun::Parts::forget() {
  stop();
  states.clear();
  result.reset();
  m_ids.clear();
  emit m_owner.statesChanged();
}

bool GraphRun::Parts::start(std::vector<ActionId> ids, const QByteArray& document, bool isWhole) {
  if (isRunning() || ids.empty()) {
    return false;
  }
  m_ids = std::move(ids);
  m_stale.takeSnapshot();
  m_readerOfLink.clear();
  for (const LinkId id : graph.links()) {
    m_readerOfLink.insert(id, graph.link(id).to);
  }
  states.clear();
  m_names.clear();
  for (const ActionId id : m_ids) {
    m_names += graph.name(id);
    states[id].kind = ActionState::Kind::waiting;
  }
  m_progress = {};
  m_progress.actions.resize(m_ids.size());
  runServices = std::make_unique<RunServices>(&services, [this] { postNews(); });
  ExecutionOptions options;
  options.reportsActions = true;
  options.countsValues = true;
  options.progress = [this](const RunProgress& progress) { report(progress); };
  m_thread = std::make_unique<RunThread>(
      runServices.get(), [this, isWhole, options, snapshot = GraphSnapshot(graph.graph(), document),
                          catalogue = &graph.catalogue()](RunRecord& record) {
        RunResult ended = runSnapshot(snapshot, isWhole, *catalogue, record, options);
        ended.state = record.status;
        m_posted.post([this, ended = std::move(ended)] { end(ended); });
      });
  emit m_owner.started();
  emit m_owner.statesChanged();
  return true;
}

void GraphRun::Parts::stop() {
  if (isRunning()) {
    m_thread->stop();
    runServices->stopAsking();
  }
}

// On the run's thread.
void GraphRun::Parts::report(const RunProgress& progress) {
  {
    const std::lock_guard lock(m_mutex);
    m_progress = progress;
  }
  postNews();
}

// On any thread of the run. The window takes the newest state of things when it has time.
void GraphRun::Parts::postNews() {
  const std::lock_guard lock(m_mutex);
  if (!std::exchange(m_areNewsPosted, true)) {
    m_posted.post([this] { takeNews(); });
  }
}

void GraphRun::Parts::takeNews() {
  RunProgress progress;
  {
    const std::lock_guard lock(m_mutex);
    progress = m_progress;
    m_areNewsPosted = false;
  }
  if (!isRunning()) {
    return;
  }
  setStates(statesOf(progress, m_names, runServices->messages()));
  const auto question = runServices->question();
  const int number = question ? question->number : 0;
  if (std::exchange(m_diskQuestion, number) != number) {
    emit m_owner.diskQuestionChanged();
  }
}

void GraphRun::Parts::end(const RunResult& ended) {
  m_thread.reset();  // its work is done
  m_diskQuestion = 0;
  if (ended.actions.empty()) {
    states.clear();  // it was refused and has run nothing
  }
  if (!m_ids.empty()) {  // else another graph has been loaded meanwhile
    setStates(statesOf(ended));
    result = std::make_unique<RunResult>(ended);
  }
  emit m_owner.statesChanged();
  emit m_owner.ended();
}

void GraphRun::Parts::setStates(std::vector<ActionState> ofActions) {
  const QSet<ActionId> stale = m_stale.withThoseBelow();
  for (std::size_t i = 0; i < ofActions.size() && i < m_ids.size(); ++i) {
    if (graph.hasAction(m_ids[i])) {
      ofActions[i].isStale = stale.contains(m_ids[i]);
      states[m_ids[i]] = std::move(ofActions[i]);
    }
  }
  emit m_owner.statesChanged();
}

void GraphRun::Parts::updateStaleness() {
  const QSet<ActionId> stale = m_stale.withThoseBelow();
  bool isOther = false;
  for (auto state = states.begin(); state != states.end(); ++state) {
    isOther = isOther || state->isStale != stale.contains(state.key());
    state->isStale = stale.contains(state.key());
  }
  if (isOther) {
    emit m_owner.statesChanged();
  }
}

GraphRun::GraphRun(EditedGraph& graph, EditServices& services, QObject* parent)
    : QObject(parent), m_parts(std::make_unique<Parts>(*this, graph, services)) {
  m_parts->follow();
}

GraphRun::~GraphRun() = default;

bool GraphRun::start() {
  const QList<ActionId> all = m_parts->graph.actions();
  return m_parts->start({all.begin(), all.end()}, m_parts->graph.document(), true);
}

bool GraphRun::startTo(ActionId action) {
  const EditedGraph& edited = m_parts->graph;
  const int index = edited.hasAction(action) ? edited.indexOf(action) : -1;
  if (index < 0) {
    return false;
  }
  const std::vector<char> isWanted = GraphLinks(edited.graph()).withUpstream({index});
  std::vector<ActionId> ids;
  for (const ActionId id : edited.actions()) {
    if (isWanted[static_cast<std::size_t>(edited.indexOf(id))] != 0) {
      ids.push_back(id);
    }
  }
  return m_parts->start(std::move(ids), graphDocument(edited.graph(), isWanted), false);
}

void GraphRun::stop() {
  m_parts->stop();
}

bool GraphRun::isRunning() const {
  return m_parts->isRunning();
}

std::optional<DiskQuestion> GraphRun::diskQuestion() const {
  return isRunning() ? m_parts->runServices->question() : std::nullopt;
}

void GraphRun::tryDiskAgain() {
  if (isRunning()) {
    m_parts->runServices->answer(true);
  }
}

const QHash<ActionId, ActionState>& GraphRun::states() const {
  return m_parts->states;
}

const RunResult* GraphRun::result() const {
  return m_parts->result.get();
}

QString GraphRun::commandLine(ActionId action) const {
  const Graph& graph = m_parts->graph.graph();
  if (graph.file.isEmpty()) {
    return {};
  }
  QString line = QStringLiteral("kelvarin run ") + shellWord(graph.file);
  for (const GraphParameter& parameter : graph.parameters) {
    const QString value = graph.settings->values().value(parameter.name);
    if (value != graph.settings->expandString2(parameter.value)) {
      line += QStringLiteral(" --set ") + shellWord(parameter.name + u'=' + value);
    }
  }
  if (action != kNoId) {
    line += QStringLiteral(" --to ") + shellWord(m_parts->graph.name(action));
  }
  return line;
}

}  // namespace kelvarin
