#include "gui/services/edit_services.h"

#include <utility>

#include "host/engine/branch_run.h"

namespace kelvarin {

namespace {

constexpr std::size_t kMaxWaiting = 10'000;

}  // namespace

EditServices::EditServices(EditedGraph& graph, const ActionCatalogue& catalogue)
    : m_graph(graph), m_catalogue(catalogue), m_requests(catalogue), m_columns(m_requests) {}

void EditServices::log(LogLevel level, const QString& text, const ActionItem* action) {
  logDetailed(level, text, action, {});
}

// Actions of a run are copies, so their names are taken at once. Lines that come close together
// are passed on together.
void EditServices::logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                               const LogDetails& details) {
  const std::lock_guard lock(m_mutex);
  if (m_waiting.size() >= kMaxWaiting) {
    ++m_lostCount;
    return;
  }
  m_waiting.push_back(
      {level, action == nullptr ? QString() : action->name(), text, details, QTime::currentTime()});
  if (m_waiting.size() == 1) {
    m_posted.post([this] { passLog(); });
  }
}

void EditServices::passLog() {
  std::vector<LogEntry> entries;
  {
    const std::lock_guard lock(m_mutex);
    entries = std::exchange(m_waiting, {});
    if (const long long count = std::exchange(m_lostCount, 0); count > 0) {
      entries.push_back(
          {LogLevel::information,
           {},
           tr("%n more line(s) came at once and are not shown.", nullptr, static_cast<int>(count)),
           {},
           QTime::currentTime()});
    }
  }
  emit logged(entries);
}

void EditServices::backendsChosen(const ActionItem& action, const QStringList& labels) {
  m_posted.post([this, name = action.name(), labels] { emit backendsKnown(name, labels); });
}

void EditServices::documentWasModified() {
  emit modified();
}

bool EditServices::runBranch(EngineRunner& runner, ActionItem& action, int pin) {
  return kelvarin::runBranch(m_graph.graph(), m_catalogue, runner, action, pin);
}

void EditServices::openHelp(const QString& helpId, const QString& anchor) {
  emit helpWanted(helpId, anchor);
}

PinColumns EditServices::columnsOfInputPin(const ActionItem& action, int pin) {
  if (m_knownColumns) {
    if (const auto known = m_knownColumns(action, pin)) {
      return *known;
    }
  }
  return m_columns.columns(m_graph.graph(), action, pin, m_graph.version());
}

std::unique_ptr<RowsRequest> EditServices::requestRows(const ActionItem& action, int pin,
                                                       bool isOutput, long long limit,
                                                       std::shared_ptr<RowsReceiver> receiver) {
  return m_requests.start(m_graph.graph(), action, pin, isOutput, limit, std::move(receiver),
                          m_graph.version());
}

}  // namespace kelvarin
