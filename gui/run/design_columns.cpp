#include "gui/run/design_columns.h"

#include <optional>

#include <QTimer>

#include "gui/run/downstream.h"
#include "gui/run/run_thread.h"
#include "gui/threads/posted_calls.h"
#include "host/engine/branch_copy.h"

namespace kelvarin {

namespace {

constexpr int kDelayMs = 200;
// Tables of variables are read whole, and may be large.
constexpr int kLongestCheckMs = 2000;

struct Checked {
  quint64 version = 0;
  bool isComplete = false;  // false: it was stopped
  RunResult result;
};

RunResult checkSnapshot(const GraphSnapshot& snapshot, const ActionCatalogue& catalogue,
                        RunRecord& record) {
  auto opened = snapshot.open(catalogue);
  return opened ? checkGraph(opened->graph, record) : RunResult();
}

}  // namespace

class DesignColumns::Parts {
 public:
  Parts(DesignColumns& owner, EditedGraph& ofGraph, EditServices& ofServices);
  ~Parts() { services.setKnownColumns(nullptr); }

  PinColumns columns(const PinRef& pin) const;

  EditedGraph& graph;
  EditServices& services;
  QHash<ActionId, QString> problems;
  QHash<ActionId, LogDetails> details;  // of those that a check found

 private:
  void startCheck();
  void giveUp();
  void take(const Checked& checked);
  void noteUnchecked();
  std::optional<PinColumns> columnsOfInput(const ActionItem& action, int pin) const;

  DesignColumns& m_owner;
  QTimer m_delay;
  QTimer m_limit;
  quint64 m_version = 0;  // of what is known
  QHash<ActionId, std::vector<PinColumns>> m_columns;
  std::vector<ActionId> m_ids;  // in the order of the copy that is checked
  bool m_isOutdated = false;    // the graph has changed since its check began
  PostedCalls m_posted;
  std::unique_ptr<RunThread> m_thread;
};

DesignColumns::Parts::Parts(DesignColumns& owner, EditedGraph& ofGraph, EditServices& ofServices)
    : graph(ofGraph), services(ofServices), m_owner(owner) {
  m_delay.setSingleShot(true);
  m_delay.setInterval(kDelayMs);
  m_limit.setSingleShot(true);
  m_limit.setInterval(kLongestCheckMs);
  connect(&m_delay, &QTimer::timeout, &m_owner, [this] { startCheck(); });
  connect(&m_limit, &QTimer::timeout, &m_owner, [this] { giveUp(); });
  const auto changed = [this] {
    m_isOutdated = true;
    giveUp();
    m_delay.start();
  };
  connect(&graph, &EditedGraph::rowsMayDiffer, &m_owner, changed);
  connect(&graph, &EditedGraph::loaded, &m_owner, changed);
  services.setKnownColumns(
      [this](const ActionItem& action, int pin) { return columnsOfInput(action, pin); });
  m_delay.start();
}

void DesignColumns::Parts::giveUp() {
  if (m_thread != nullptr) {
    m_thread->stop();
  }
}

// One check at a time; the next one begins when a stopped one has come to its end.
void DesignColumns::Parts::startCheck() {
  if (m_thread != nullptr) {
    return;
  }
  m_isOutdated = false;
  const QList<ActionId> ids = graph.actions();
  m_ids = {ids.begin(), ids.end()};
  m_limit.start();
  m_thread = std::make_unique<RunThread>(
      nullptr,
      [this, version = graph.version(), snapshot = GraphSnapshot(graph.graph(), graph.document()),
       catalogue = &graph.catalogue()](RunRecord& record) {
        Checked checked{version, false, checkSnapshot(snapshot, *catalogue, record)};
        checked.isComplete = record.status.load() != GlobalParameters::RunningState::stoppedByUser;
        m_posted.post([this, checked = std::move(checked)] { take(checked); });
      });
}

void DesignColumns::Parts::take(const Checked& checked) {
  m_thread.reset();  // its work is done
  m_limit.stop();
  if (m_isOutdated) {
    m_delay.start();
    return;
  }
  m_version = checked.version;
  m_columns.clear();
  problems.clear();
  details.clear();
  QHash<QString, ActionId> idsOfNames;
  const auto& actions = checked.result.actions;
  for (std::size_t i = 0; i < actions.size() && i < m_ids.size(); ++i) {
    m_columns.insert(m_ids[i], actions[i].pins);
    idsOfNames.insert(actions[i].name, m_ids[i]);
  }
  if (!checked.isComplete) {
    noteUnchecked();
  }
  for (const LogLine& line : checked.result.log) {
    const auto id = idsOfNames.constFind(line.action);
    if (line.level == LogLevel::error && id != idsOfNames.constEnd() && !problems.contains(*id)) {
      problems.insert(*id, line.text);
      details.insert(*id, line.details);
    }
  }
  emit m_owner.changed();
}

// The columns behind a table of variables depend on its rows, and not all of these were read.
void DesignColumns::Parts::noteUnchecked() {
  QSet<ActionId> unchecked;
  for (const LinkId id : graph.links()) {
    const DrawnLink& link = graph.link(id);
    if (link.toPin > 0 && link.whyBroken.isEmpty()) {
      unchecked.insert(link.to);
    }
  }
  for (const ActionId action : withDownstream(graph, unchecked)) {
    m_columns.remove(action);
    problems.insert(action, tr("Not checked: reading the table of variables that it depends on "
                               "takes too long. Run the graph to see its columns."));
  }
}

PinColumns DesignColumns::Parts::columns(const PinRef& pin) const {
  PinRef source = pin;
  if (!pin.isOutput) {
    const LinkId id = graph.hasAction(pin.action) ? graph.linkInto(pin.action, pin.pin) : kNoId;
    if (id == kNoId) {
      return {};
    }
    source = {graph.link(id).from, graph.link(id).fromPin, true};
  }
  const auto pins = m_columns.constFind(source.action);
  PinColumns columns;
  if (pins != m_columns.constEnd() && source.pin >= 0 &&
      static_cast<std::size_t>(source.pin) < pins->size()) {
    columns = (*pins)[static_cast<std::size_t>(source.pin)];
  }
  columns.version = m_version;
  columns.isBeingComputed = m_version != graph.version();
  if (!columns.isKnown) {
    columns.whyUnknown = problems.value(source.action);
  }
  return columns;
}

// Nothing where a request of its own may know more than the check.
std::optional<PinColumns> DesignColumns::Parts::columnsOfInput(const ActionItem& action,
                                                               int pin) const {
  const ActionId id = graph.idOf(action);
  if (id == kNoId || m_version != graph.version()) {
    return std::nullopt;
  }
  const PinColumns known = columns({id, pin, false});
  return known.isKnown ? std::optional(known) : std::nullopt;
}

DesignColumns::DesignColumns(EditedGraph& graph, EditServices& services, QObject* parent)
    : QObject(parent), m_parts(std::make_unique<Parts>(*this, graph, services)) {}

DesignColumns::~DesignColumns() = default;

PinColumns DesignColumns::columns(const PinRef& pin) const {
  return m_parts->columns(pin);
}

const QHash<ActionId, QString>& DesignColumns::problems() const {
  return m_parts->problems;
}

LogDetails DesignColumns::problemDetails(ActionId action) const {
  return m_parts->details.value(action);
}

}  // namespace kelvarin
