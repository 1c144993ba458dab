#include "ui/debugger/debugger_panel.h"

#include <utility>

#include <QSet>
#include <QShortcut>

#include "expression/errors/backend_kind.h"
#include "expression/functions/called_functions.h"
#include "host/widgets/info_line.h"
#include "ui/debugger/debugger_texts.h"
#include "ui/debugger/debugger_views.h"
#include "ui/debugger/row_values.h"
#include "ui/language/messages.h"
#include "ui/language/shown_value.h"
#include "ui/widgets/shrinking_column.h"

namespace kelvarin {

DebuggerPanel::DebuggerPanel(DebugSession& session, const DebuggerTexts& texts,
                             std::function<Formula()> formula, QWidget* parent)
    : QWidget(parent),
      m_session(session),
      m_formula(std::move(formula)),
      m_controls(new DebuggerControls(texts, this)),
      m_status(new InfoLine(this)),
      m_notes(new InfoLine(this)),
      m_views(new DebuggerViews(this)) {
  auto* layout = new ShrinkingColumn(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  layout->addWidget(m_controls);
  layout->addWidget(m_status);
  layout->addWidget(m_notes);
  layout->addWidget(m_views, 1);
  m_status->setObjectName(QStringLiteral("debuggerStatus"));
  m_notes->setObjectName(QStringLiteral("debuggerNotes"));
  m_status->setReservedLines(1);
  m_views->hide();
  connectControls();
  addKey(Qt::Key_F5, tr("Debug: start, or go on"), [this] { startOrGoOn(); });
  addKey(Qt::SHIFT | Qt::Key_F5, tr("Debug: stop"), [this] { stop(); });
  addKey(Qt::Key_F10, tr("Debug: next row"), [this] { next(); });
  addKey(Qt::SHIFT | Qt::Key_F10, tr("Debug: back in the last rows"), [this] { moveBy(-1); });
  addKey(Qt::CTRL | Qt::SHIFT | Qt::Key_F10, tr("Debug: forth in the last rows"),
         [this] { moveBy(1); });
  addKey(Qt::CTRL | Qt::Key_F10, tr("Debug: run to a row, an error or a null"),
         [this] { runTo(); });
  addKey(Qt::Key_F9, tr("Debug: breakpoint"), [this] { m_controls->toggleBreakpoint(); });
  connect(&m_session, &DebugSession::rowDataUpdated, this, &DebuggerPanel::updateOutputVars,
          Qt::QueuedConnection);
  connect(&m_session, &DebugSession::computationFinished, this, &DebuggerPanel::finishComputations,
          Qt::QueuedConnection);
  connect(&m_service, &FormulaService::partsAnswered, this, &DebuggerPanel::showParts);
  showControls();
  showStatus();
  showNotes();
}

DebuggerPanel::~DebuggerPanel() = default;

void DebuggerPanel::connectControls() {
  connect(m_controls, &DebuggerControls::startOrStopWanted, this, &DebuggerPanel::startOrStop);
  connect(m_controls, &DebuggerControls::nextWanted, this, &DebuggerPanel::next);
  connect(m_controls, &DebuggerControls::runToWanted, this, &DebuggerPanel::runTo);
  connect(m_controls, &DebuggerControls::pauseWanted, this, [this] { m_session.pause(); });
  connect(m_controls, &DebuggerControls::backWanted, this, [this] { moveBy(-1); });
  connect(m_controls, &DebuggerControls::forwardWanted, this, [this] { moveBy(1); });
  connect(m_controls, &DebuggerControls::conditionChanged, this,
          [this] { m_session.setCondition(m_controls->condition(), m_controls->element()); });
  connect(m_controls, &DebuggerControls::elementChanged, this, [this] {
    m_session.setCondition(m_controls->condition(), m_controls->element());
    showRow(m_shown);
  });
  connect(m_controls, &DebuggerControls::elementChanged, this, &DebuggerPanel::elementChosen);
  connect(m_views, &DebuggerViews::edited, this, [this] {
    showNotes();
    askForParts();
  });
  connect(m_views, &DebuggerViews::partChosen, this, &DebuggerPanel::partChosen);
  connect(m_views, &DebuggerViews::rowChosen, this, [this](std::size_t index) {
    if (index != m_shown) {
      showRow(index);
    }
  });
  connect(m_status, &InfoLine::linkActivated, this, [this] { emit fixWanted(m_fix); });
  connect(m_notes, &InfoLine::linkActivated, this, [this](const QString& id) {
    if (id == QStringLiteral("undo")) {
      m_views->undoEdits();
    } else if (id == QStringLiteral("table")) {
      emit lackingVariablesWanted();
    }
  });
}

void DebuggerPanel::addKey(const QKeySequence& key, const QString& what,
                           const std::function<void()>& act) {
  auto* shortcut = new QShortcut(key, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
  connect(shortcut, &QShortcut::activated, this, [this, act] {
    if (m_isExpert) {
      act();
    }
  });
  shortcut->setWhatsThis(what);
  m_keys.push_back(shortcut);
}

void DebuggerPanel::setKeyOwner(QWidget* owner) {
  for (QShortcut* key : m_keys) {
    key->setParent(owner);
  }
}

void DebuggerPanel::setExpertMode(bool isExpert) {
  m_isExpert = isExpert;
  if (!isExpert) {
    stop();  // nobody could do so any more
  }
  showControls();
}

void DebuggerPanel::setLackingVariables(const QStringList& names) {
  m_lacking = names;
  showNotes();
}

void DebuggerPanel::setOutputs(const std::vector<OutputVariable>& outputs) {
  m_outputs = outputs;
  m_views->setExpectedResults(static_cast<int>(outputs.size()));
  showConditionNames();
}

void DebuggerPanel::formulaChanged() {
  askForParts();
  showNotes();
  showConditionNames();
}

// Of the row that is shown; before the first one without values.
std::vector<VariableValue> DebuggerPanel::knownResults() const {
  if (m_shown < m_state.rows.size()) {
    return valuesToShow(m_state.rows.at(m_shown)->row, shownElement()).results;
  }
  std::vector<VariableValue> results;
  for (const OutputVariable& output : m_outputs) {
    VariableValue result;
    result.name = output.name;
    result.value = output.meta == MetaTypeColumn::text ? ExpressionValue::ofText("")
                                                       : ExpressionValue::ofNumber(0);
    results.push_back(std::move(result));
  }
  return results;
}

// A condition sees variables and results, but no columns that are none of them; of two with one
// name the variable.
void DebuggerPanel::showConditionNames() {
  Formula formula = m_formula();
  formula.output = {};
  formula.use = ResultUse::truth;
  formula.columns = {};
  formula.rows = nullptr;
  formula.current = m_views->values();
  QSet<QString> names;
  for (const InputVariable& variable : formula.variables) {
    names += variable.name();
  }
  for (VariableValue& result : knownResults()) {
    if (names.contains(result.name)) {
      continue;
    }
    InputVariable variable;
    variable.label = result.name;
    variable.isNumber = result.value.type != ExpressionValue::Type::text;
    formula.variables.push_back(std::move(variable));
    formula.current.push_back(std::move(result));
  }
  m_controls->setConditionFormula(formula);
}

void DebuggerPanel::startOrStop() {
  m_rowAfterStop = -1;
  if (m_session.isRunning()) {
    stop();
  } else {
    start(std::nullopt);
  }
}

void DebuggerPanel::start(const std::optional<DebugRules>& rules) {
  emit aboutToStart();
  if (!canBeDebugged()) {
    return;
  }
  m_session.setCondition(m_controls->condition(), m_controls->element());
  showNoRow();
  m_hasEnded = false;
  m_isStopping = false;
  if (!(rules ? m_session.start(*rules) : m_session.startOrStop())) {
    m_status->setMessage(Severity::error, tr("This action cannot be run here. The log says why."));
  } else {
    showStatus();
  }
  showControls();
}

void DebuggerPanel::stop() {
  if (m_session.isRunning()) {
    m_isStopping = true;
    m_session.startOrStop();
    showStatus();
  }
}

// A run would fail before its first row.
bool DebuggerPanel::canBeDebugged() {
  const QString expression = m_formula().output.expression;
  const auto call = undebuggableCall(expression);
  if (!call) {
    return true;
  }
  const QString name =
      expression.sliced(static_cast<qsizetype>(call->start), static_cast<qsizetype>(call->size));
  QString said = language_messages::unknownToDebugger(name);
  std::vector<InfoLink> links;
  if (const QString spelling = debuggableSpelling(name); !spelling.isEmpty()) {
    said += language_messages::sameForBoth(spelling);
    m_fix = {language_messages::replaceBy(spelling),
             static_cast<qsizetype>(call->start),
             static_cast<qsizetype>(call->size),
             spelling,
             {}};
    links.push_back({QStringLiteral("fix"), m_fix.label});
  }
  m_status->setMessage(Severity::warning, said, links);
  return false;
}

void DebuggerPanel::startOrGoOn() {
  if (!m_session.isRunning()) {
    start(std::nullopt);
    return;
  }
  m_session.goOn(m_controls->breakpointRules());
  updateOutputVars();
}

void DebuggerPanel::runTo() {
  if (!m_session.isRunning()) {
    start(m_controls->rules());
    return;
  }
  m_session.goOn(m_controls->rules());
  updateOutputVars();
}

void DebuggerPanel::runToRow(long long row) {
  if (m_session.isRunning()) {
    m_rowAfterStop = row;
    stop();
    return;
  }
  DebugRules rules;
  rules.everyRow = false;
  rules.row = row;
  start(rules);
}

void DebuggerPanel::next() {
  if (m_session.isRunning()) {
    m_session.step();
  }
}

void DebuggerPanel::updateOutputVars() {
  m_state = m_session.state();
  m_views->setHistory(m_state.rows);
  if (!m_state.rows.isEmpty()) {
    showRow(m_state.rows.size() - 1);
  } else {
    showStatus();
    showControls();
  }
}

void DebuggerPanel::finishComputations() {
  m_session.finish();
  if (m_session.isRunning()) {
    return;  // the end of an earlier run
  }
  m_hasEnded = true;
  updateOutputVars();
  if (const long long row = std::exchange(m_rowAfterStop, -1); row >= 0) {
    runToRow(row);
  }
}

// Before the first run the tables are empty, and only take the height from what is below them.
void DebuggerPanel::showControls() {
  if (m_session.isRunning() && m_views->isHidden()) {
    m_views->show();
    emit tablesShown();
  }
  m_controls->setPossible({.isExpert = m_isExpert,
                           .isRunning = m_session.isRunning(),
                           .isWaiting = m_state.isWaiting,
                           .hasEarlierRow = m_shown > 0,
                           .hasLaterRow = m_shown + 1 < m_state.rows.size()});
}

void DebuggerPanel::showStatus() {
  if (m_session.isRunning() && m_isStopping) {
    m_status->setMessage(Severity::information,
                         tr("Stopping: the run ends as soon as its source answers."));
    return;
  }
  if (m_session.isRunning() && !m_state.isWaiting) {
    m_status->setMessage(Severity::information, debugger_texts::running(m_state));
    return;
  }
  if (!m_session.isRunning() && !m_hasEnded) {
    m_status->setMessage(Severity::information,
                         tr("Start shows the first row of the input, and stops there."));
    return;
  }
  QString said = m_session.isRunning() ? QString() : debugger_texts::ended(m_state);
  Severity severity = Severity::information;
  if (m_shown < m_state.rows.size()) {
    const DebuggedRow& row = *m_state.rows.at(m_shown);
    said += (said.isEmpty() ? QString() : QStringLiteral(" ")) +
            debugger_texts::rowShown(m_state, m_shown);
    severity = !row.row.failures.empty() ? Severity::error
               : !row.note.isEmpty()     ? Severity::warning
                                         : severity;
  }
  m_status->setMessage(severity, said);
}

void DebuggerPanel::showRow(std::size_t index) {
  if (index >= m_state.rows.size()) {
    return;
  }
  m_shown = index;
  const ObservedRow& row = m_state.rows.at(index)->row;
  m_elementCount = elementCount(row);
  m_controls->setElementCount(m_elementCount);
  const RowValues before =
      index > 0 ? valuesToShow(m_state.rows.at(index - 1)->row, shownElement()) : RowValues();
  const RowValues values = valuesToShow(row, shownElement());
  m_views->showRow(index, values, before);
  emit rowShown(values.variables);
  showStatus();
  showControls();
  showNotes();
  if (!m_session.isRunning() || m_state.isWaiting) {
    m_views->fitColumns();
    askForParts();
    showConditionNames();
  }
}

void DebuggerPanel::showNoRow() {
  m_state = {};
  m_shown = 0;
  m_views->clear();
  m_asked = 0;
  emit rowShown({});
}

void DebuggerPanel::moveBy(int rows) {
  const auto shown = static_cast<long long>(m_shown) + rows;
  if (shown >= 0) {
    showRow(static_cast<std::size_t>(shown));
  }
}

void DebuggerPanel::askForParts() {
  if (m_shown >= m_state.rows.size()) {
    return;
  }
  Formula formula = m_formula();
  formula.current = m_views->values();
  m_asked = m_service.askParts(formula);
}

void DebuggerPanel::showParts(const PartValues& values) {
  if (values.version != m_asked) {
    return;
  }
  m_views->showParts(values);
  showNotes();
}

QString DebuggerPanel::engineNote() const {
  const auto& ofRun = m_views->parts().ofRun;
  if (!ofRun || !ofRun->differs) {
    return {};
  }
  const PartValue& whole = m_views->parts().values.back();
  return tr("A run without the debugger gives another value: %1 by the %2, %3 by the String Parser "
            "that is shown here.")
      .arg(ofRun->failure.isEmpty() ? shownValue(ofRun->value).text : ofRun->failure,
           QLatin1String(backendLabel(ofRun->engine)),
           whole.hasValue() ? shownValue(whole.value).text : whole.failure);
}

void DebuggerPanel::showNotes() {
  QStringList notes;
  std::vector<InfoLink> links;
  if (m_views->isEdited()) {
    notes += tr("The parts are shown with the edited values. The data stay as they are.");
    links.push_back({QStringLiteral("undo"), tr("Use the row's own values")});
  }
  if (const QString note = engineNote(); !note.isEmpty()) {
    notes += note;
  }
  if (!m_lacking.isEmpty()) {
    notes += tr("A debug run does not read the table of variables, so these are missing: %1.")
                 .arg(m_lacking.join(QStringLiteral(", ")));
    links.push_back(
        {QStringLiteral("table"), tr("Read the table once and take its variables over")});
  }
  if (notes.isEmpty()) {
    m_notes->clear();
    return;
  }
  m_notes->setMessage(Severity::warning, notes.join(u'\n'), links);
}

}  // namespace kelvarin
