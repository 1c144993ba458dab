#include "ui/debugger/debug_session.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>

#include <QTimer>

#include "host/contract/engine_runner.h"
#include "ui/debugger/breakpoint_condition.h"
#include "ui/debugger/step_gate.h"

namespace kelvarin {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kBetweenUpdates{100};
// For a row to come and end the run by itself.
constexpr std::chrono::milliseconds kBeforeHardStop{20};

ConditionSettings settingsOf(const ExpressionAction& action) {
  ConditionSettings settings;
  settings.options = action.options();
  settings.options.abortWhenError = true;  // a condition that fails stops, and says so
  TimeParameters& time = settings.options.time;
  time.referenceTime = action.expandString(time.referenceTime);
  time.dateFormat = action.expandString(time.dateFormat);
  if (const GlobalParameters* parameters = action.globalParameters()) {
    settings.parameters = *parameters;
  }
  return settings;
}

}  // namespace

class DebugSession::Runner final : public EngineRunner {
 public:
  explicit Runner(DebugSession& session) : m_session(session) {}
  ~Runner() override { wait(); }
  void computationFinished() override { emit m_session.computationFinished(); }

 private:
  DebugSession& m_session;
};

// What both threads share. The operations of RowObserver are the engine's.
class DebugSession::Observer final : public RowObserver {
 public:
  explicit Observer(DebugSession& session) : m_session(session) {}

  // Of the user-interface thread.
  void prepareRun(ConditionSettings settings, const DebugRules& rules);
  void requestStop() {
    m_isStopRequested = true;
    m_gate.release();
  }
  void step();
  void goOn(const DebugRules& rules);
  void pause();
  void setCondition(const QString& condition, int element);
  DebugRules rules() const;
  DebugState state();

  void backendsChosen(const QStringList& labels) override;
  void rowEvaluated(const ObservedRow& row) override;
  bool waitForStep() override;

 private:
  void resume();
  std::pair<StopReason, QString> judge(const ObservedRow& row);
  void takeRules();
  bool add(const std::shared_ptr<DebuggedRow>& row);
  void announce();

  DebugSession& m_session;
  StepGate m_gate;
  std::atomic<bool> m_isStopRequested{false};
  std::atomic<bool> m_isUpdateSeen{true};

  mutable std::mutex m_mutex;  // guards all that follows up to the engine's own
  DebugRules m_rules;
  RowHistory m_rows;
  long long m_rowCount = 0;
  bool m_isWaiting = false;
  QStringList m_backends;
  Clock::time_point m_resumedAt;
  long long m_rowsAtResume = 0;

  // The engine's thread alone uses these while the action runs.
  ConditionSettings m_settings;
  DebugRules m_knownRules;
  std::unique_ptr<BreakpointCondition> m_condition;
  bool m_isStopping = false;  // at the row that was evaluated last
  Clock::time_point m_updatedAt;
};

void DebugSession::Observer::prepareRun(ConditionSettings settings, const DebugRules& rules) {
  m_gate.drain();
  m_isStopRequested = false;
  m_isUpdateSeen = true;
  m_condition.reset();
  m_knownRules = {};
  m_settings = std::move(settings);
  m_updatedAt = {};
  const std::lock_guard lock(m_mutex);
  m_rules = rules;
  m_rows.clear();
  m_rowCount = 0;
  m_isWaiting = false;
  m_backends.clear();
  resume();
}

// Under the lock.
void DebugSession::Observer::resume() {
  m_resumedAt = Clock::now();
  m_rowsAtResume = m_rowCount;
}

void DebugSession::Observer::step() {
  const std::lock_guard lock(m_mutex);
  const bool wasEveryRow = m_rules.everyRow;
  m_rules.everyRow = true;
  if (wasEveryRow || m_isWaiting) {
    m_isWaiting = false;
    m_gate.release();
  }
}

void DebugSession::Observer::goOn(const DebugRules& rules) {
  const std::lock_guard lock(m_mutex);
  m_rules = rules;
  resume();
  if (m_isWaiting) {
    m_isWaiting = false;
    m_gate.release();
  }
}

void DebugSession::Observer::pause() {
  const std::lock_guard lock(m_mutex);
  m_rules.everyRow = true;
}

void DebugSession::Observer::setCondition(const QString& condition, int element) {
  const std::lock_guard lock(m_mutex);
  m_rules.condition = condition;
  m_rules.element = element;
}

DebugRules DebugSession::Observer::rules() const {
  const std::lock_guard lock(m_mutex);
  return m_rules;
}

DebugState DebugSession::Observer::state() {
  m_isUpdateSeen = true;
  const std::lock_guard lock(m_mutex);
  const std::chrono::duration<double> elapsed = Clock::now() - m_resumedAt;
  const double rows = static_cast<double>(m_rowCount - m_rowsAtResume);
  return {m_rows, m_rowCount, m_isWaiting, rows / std::max(elapsed.count(), 1e-3), m_backends};
}

void DebugSession::Observer::backendsChosen(const QStringList& labels) {
  const std::lock_guard lock(m_mutex);
  m_backends = labels;
}

// The condition may take long, so it is evaluated without the lock.
std::pair<StopReason, QString> DebugSession::Observer::judge(const ObservedRow& row) {
  const StopReason reason = stopReason(m_knownRules, row);
  if (m_condition == nullptr || row.isLast) {
    return {reason, {}};
  }
  const Result<bool, QString> holds = m_condition->holdsAt(row);
  if (!holds) {
    return {StopReason::condition, holds.error()};
  }
  return {holds.value() ? StopReason::breakpoint : reason, {}};
}

void DebugSession::Observer::takeRules() {
  DebugRules rules = this->rules();
  if (rules.condition.isEmpty()) {
    m_condition.reset();
  } else if (m_condition == nullptr || rules.condition != m_knownRules.condition ||
             rules.element != m_knownRules.element) {
    m_condition = std::make_unique<BreakpointCondition>(rules.condition, rules.element, m_settings);
  }
  m_knownRules = std::move(rules);
}

// The user may change the rules while the row is judged by those of before.
void DebugSession::Observer::rowEvaluated(const ObservedRow& row) {
  auto shown = std::make_shared<DebuggedRow>();
  shown->row = row;
  std::tie(shown->reason, shown->note) = judge(row);
  while (!add(shown)) {
    takeRules();
    std::tie(shown->reason, shown->note) = judge(row);
  }
  if (row.isLast) {
    announce();
  }
}

// False where the row was judged by rules that have changed. A run that has passed rows by drops
// the steps that the user made too many when it stops, but no request to end.
bool DebugSession::Observer::add(const std::shared_ptr<DebuggedRow>& row) {
  const std::lock_guard lock(m_mutex);
  if (m_rules != m_knownRules) {
    return false;
  }
  m_isStopping = row->reason != StopReason::none && !row->row.isLast;
  m_isWaiting = m_isStopping;
  m_rows.add(row);
  ++m_rowCount;
  if (m_isStopping && !m_knownRules.everyRow) {
    m_rules.everyRow = true;
    m_gate.drain();
    if (m_isStopRequested) {
      m_gate.release();
    }
  }
  return true;
}

void DebugSession::Observer::announce() {
  m_isUpdateSeen = false;
  m_updatedAt = Clock::now();
  emit m_session.rowDataUpdated();
}

bool DebugSession::Observer::waitForStep() {
  if (m_isStopping) {
    announce();
  } else {
    if (m_isUpdateSeen && Clock::now() - m_updatedAt >= kBetweenUpdates) {
      announce();
    }
    m_gate.release();
  }
  m_gate.acquire();
  if (m_isStopping) {
    const std::lock_guard lock(m_mutex);
    m_isWaiting = false;
  }
  return !m_isStopRequested;
}

DebugSession::DebugSession(ExpressionAction& action, QObject* parent)
    : QObject(parent), m_action(action), m_observer(std::make_unique<Observer>(*this)) {}

DebugSession::~DebugSession() {
  end();
}

bool DebugSession::isRunning() const {
  return m_runner != nullptr;
}

bool DebugSession::startOrStop() {
  if (m_runner == nullptr) {
    DebugRules steps;
    steps.condition = rules().condition;
    steps.element = rules().element;
    return start(steps);
  }
  requestStop();
  return true;
}

bool DebugSession::start(const DebugRules& rules) {
  if (m_runner != nullptr) {
    return false;
  }
  m_observer->prepareRun(settingsOf(m_action), rules);
  m_action.setObserver(m_observer.get());
  m_runner = std::make_unique<Runner>(*this);
  ++m_runsStarted;
  if (m_runner->run(-1, &m_action, 0, false)) {
    return true;
  }
  m_runner.reset();
  m_action.setObserver(nullptr);
  return false;
}

void DebugSession::requestStop() {
  m_observer->requestStop();
  QTimer::singleShot(kBeforeHardStop, this, [this, run = m_runsStarted] {
    if (m_runner != nullptr && run == m_runsStarted) {
      m_runner->stop();
    }
  });
}

void DebugSession::end() {
  if (m_runner == nullptr) {
    return;
  }
  m_observer->requestStop();
  m_runner->stop();
  m_runner->wait();
  finish();
}

void DebugSession::finish() {
  if (m_runner == nullptr || m_runner->isRunning()) {
    return;
  }
  m_runner.reset();
  m_action.setObserver(nullptr);
}

void DebugSession::step() {
  m_observer->step();
}

void DebugSession::goOn(const DebugRules& rules) {
  m_observer->goOn(rules);
}

void DebugSession::pause() {
  m_observer->pause();
}

void DebugSession::setCondition(const QString& condition, int element) {
  m_observer->setCondition(condition, element);
}

DebugRules DebugSession::rules() const {
  return m_observer->rules();
}

DebugState DebugSession::state() {
  return m_observer->state();
}

}  // namespace kelvarin
