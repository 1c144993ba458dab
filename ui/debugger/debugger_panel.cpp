#include "ui/debugger/debugger_panel.h"

#include <algorithm>

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QTableView>
#include <QTabWidget>
#include <QTreeView>
#include <QVBoxLayout>

#include "expression/errors/backend_kind.h"
#include "expression/functions/called_functions.h"
#include "host/widgets/icons.h"
#include "host/widgets/info_line.h"
#include "ui/debugger/debugger_texts.h"
#include "ui/debugger/history_model.h"
#include "ui/debugger/parts_model.h"
#include "ui/debugger/row_values.h"
#include "ui/debugger/row_variables_model.h"
#include "ui/language/messages.h"
#include "ui/language/shown_value.h"
#include "ui/widgets/enhanced_table_delegate.h"

namespace kelvarin {

namespace {

// Deeper parts are opened by the user, or where a missing value arises in them.
constexpr int kOpenedDepth = 4;
constexpr int kColumnGap = 12;
constexpr int kRowGap = 4;
constexpr int kMaxCharacters = 40;
constexpr int kFittedColumns = 50;
constexpr int kCharactersSideBySide = 90;

void setUp(QAbstractItemView* view, QAbstractItemModel* model, const QString& name) {
  view->setModel(model);
  view->setItemDelegate(new EnhancedTableDelegate(view));
  view->setAccessibleName(name);
  view->setTabKeyNavigation(false);
  view->setAlternatingRowColors(true);
}

void setUp(QTableView* table) {
  table->setShowGrid(false);
  table->setWordWrap(false);
  table->verticalHeader()->hide();
  table->horizontalHeader()->setHighlightSections(false);
  table->horizontalHeader()->setResizeContentsPrecision(0);
  table->horizontalHeader()->setStretchLastSection(true);
  table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

}  // namespace

DebuggerPanel::DebuggerPanel(DebugSession& session, const DebuggerTexts& texts,
                             std::function<Formula()> formula, QWidget* parent)
    : QWidget(parent),
      m_session(session),
      m_formula(std::move(formula)),
      m_controls(new DebuggerControls(texts, this)),
      m_status(new InfoLine(this)),
      m_notes(new InfoLine(this)),
      m_variables(new RowVariablesModel(this)),
      m_parts(new PartsModel(this)),
      m_history(new HistoryModel(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  layout->addWidget(m_controls);
  layout->addWidget(m_status);
  layout->addWidget(m_notes);
  auto* tabs = new QTabWidget(this);
  tabs->setDocumentMode(true);
  tabs->setAccessibleName(tr("This row and the rows that went by"));
  tabs->addTab(makeRowPage(), tr("This Row"));
  tabs->addTab(makeHistoryPage(), tr("Last Rows"));
  layout->addWidget(tabs, 1);
  m_status->setObjectName(QStringLiteral("debuggerStatus"));
  m_notes->setObjectName(QStringLiteral("debuggerNotes"));
  m_status->setReservedLines(1);
  connectControls();
  addKey(Qt::Key_F5, [this] { startOrGoOn(); });
  addKey(Qt::SHIFT | Qt::Key_F5, [this] { stop(); });
  addKey(Qt::Key_F10, [this] { next(); });
  addKey(Qt::SHIFT | Qt::Key_F10, [this] { moveBy(-1); });
  addKey(Qt::CTRL | Qt::SHIFT | Qt::Key_F10, [this] { moveBy(1); });
  addKey(Qt::CTRL | Qt::Key_F10, [this] { runTo(); });
  addKey(Qt::Key_F9, [this] { m_controls->toggleBreakpoint(); });
  connect(&m_session, &DebugSession::rowDataUpdated, this, &DebuggerPanel::updateOutputVars,
          Qt::QueuedConnection);
  connect(&m_session, &DebugSession::computationFinished, this, &DebuggerPanel::finishComputations,
          Qt::QueuedConnection);
  connect(&m_service, &FormulaService::partsAnswered, this, &DebuggerPanel::showParts);
  fitRows();
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
  connect(m_variables, &RowVariablesModel::edited, this, [this] {
    showNotes();
    askForParts();
  });
  connect(m_status, &InfoLine::linkActivated, this, [this] { emit fixWanted(m_fix); });
  connect(m_notes, &InfoLine::linkActivated, this, [this](const QString& id) {
    if (id == QStringLiteral("undo")) {
      m_variables->undoEdits();
    } else if (id == QStringLiteral("table")) {
      emit lackingVariablesWanted();
    }
  });
}

QWidget* DebuggerPanel::makeRowPage() {
  m_rowPage = new QSplitter(Qt::Horizontal, this);
  m_rowPage->setChildrenCollapsible(false);
  m_variableTable = new QTableView(m_rowPage);
  m_variableTable->setObjectName(QStringLiteral("variablesOfRow"));
  setUp(m_variableTable, m_variables, tr("Variables of the row; a value can be edited"));
  setUp(m_variableTable);
  m_tree = new QTreeView(m_rowPage);
  m_tree->setObjectName(QStringLiteral("partsOfExpression"));
  setUp(m_tree, m_parts, tr("Parts of the expression with their values"));
  m_tree->setUniformRowHeights(true);
  m_rowPage->setStretchFactor(0, 2);
  m_rowPage->setStretchFactor(1, 3);
  connect(m_tree->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& index) {
            if (index.isValid()) {
              const ExpressionPart& part = m_parts->values().tree[PartsModel::partOf(index)];
              emit partChosen(part.start, part.size);
            }
          });
  return m_rowPage;
}

QWidget* DebuggerPanel::makeHistoryPage() {
  auto* page = new QWidget(this);
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  m_historyTable = new QTableView(page);
  m_historyTable->setObjectName(QStringLiteral("lastRows"));
  setUp(m_historyTable, m_history, tr("The last rows, up to %1").arg(RowHistory::kMaxRows));
  setUp(m_historyTable);
  m_historyTable->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_historyTable->setSelectionMode(QAbstractItemView::SingleSelection);
  auto* copy = new QPushButton(icon(IconName::copy), tr("&Copy as CSV"), page);
  copy->setObjectName(QStringLiteral("pbCopyRows"));
  layout->addWidget(m_historyTable, 1);
  layout->addWidget(copy, 0, Qt::AlignLeft);
  connect(copy, &QPushButton::clicked, this, &DebuggerPanel::copyHistory);
  connect(m_historyTable->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          &DebuggerPanel::chooseHistoryRow);
  return page;
}

void DebuggerPanel::addKey(const QKeySequence& key, const std::function<void()>& act) {
  auto* shortcut = new QShortcut(key, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
  connect(shortcut, &QShortcut::activated, this, [this, act] {
    if (m_isExpert) {
      act();
    }
  });
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

void DebuggerPanel::formulaChanged() {
  askForParts();
  showNotes();
}

void DebuggerPanel::startOrStop() {
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
  if (!(rules ? m_session.start(*rules) : m_session.startOrStop())) {
    m_status->setMessage(Severity::error, tr("This action cannot be run here. The log says why."));
  } else {
    showStatus();
  }
  showControls();
}

void DebuggerPanel::stop() {
  if (m_session.isRunning()) {
    m_session.startOrStop();
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

void DebuggerPanel::next() {
  if (m_session.isRunning()) {
    m_session.step();
  }
}

void DebuggerPanel::updateOutputVars() {
  m_state = m_session.state();
  m_history->setRows(m_state.rows);
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
}

void DebuggerPanel::showControls() {
  m_controls->setPossible({.isExpert = m_isExpert,
                           .isRunning = m_session.isRunning(),
                           .isWaiting = m_state.isWaiting,
                           .hasEarlierRow = m_shown > 0,
                           .hasLaterRow = m_shown + 1 < m_state.rows.size()});
}

void DebuggerPanel::showStatus() {
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
  std::vector<VariableValue> before;
  if (index > 0) {
    before = valuesOfElement(m_state.rows.at(index - 1)->row, shownElement());
  }
  m_variables->setRow(valuesOfElement(row, shownElement()), before);
  m_historyTable->setCurrentIndex(m_history->index(static_cast<int>(index), 0));
  emit rowShown(variableValues(row));
  showStatus();
  showControls();
  showNotes();
  if (!m_session.isRunning() || m_state.isWaiting) {
    fitColumns();
    askForParts();
  }
}

void DebuggerPanel::showNoRow() {
  m_state = {};
  m_shown = 0;
  m_history->setRows({});
  m_variables->setRow({}, {});
  m_parts->clear();
  m_asked = 0;
  m_isFitted = false;
  emit rowShown({});
}

void DebuggerPanel::moveBy(int rows) {
  const auto shown = static_cast<long long>(m_shown) + rows;
  if (shown >= 0) {
    showRow(static_cast<std::size_t>(shown));
  }
}

void DebuggerPanel::chooseHistoryRow() {
  const QModelIndex current = m_historyTable->currentIndex();
  if (current.isValid() && current.row() != static_cast<int>(m_shown)) {
    showRow(static_cast<std::size_t>(current.row()));
  }
}

void DebuggerPanel::copyHistory() {
  QGuiApplication::clipboard()->setText(m_history->csv());
}

void DebuggerPanel::askForParts() {
  if (m_shown >= m_state.rows.size()) {
    return;
  }
  Formula formula = m_formula();
  formula.current = m_variables->values();
  m_asked = m_service.askParts(formula);
}

void DebuggerPanel::showParts(const PartValues& values) {
  if (values.version != m_asked) {
    return;
  }
  if (m_parts->setValues(values)) {
    m_tree->expandToDepth(kOpenedDepth);
  }
  for (const QModelIndex& origin : m_parts->origins()) {
    for (QModelIndex at = origin.parent(); at.isValid(); at = at.parent()) {
      m_tree->expand(at);
    }
  }
  fitTree();
  showNotes();
}

// The first column may take what the others leave, but for half of the width.
void DebuggerPanel::fitTree() {
  m_tree->resizeColumnToContents(PartsModel::partColumn);
  m_tree->resizeColumnToContents(PartsModel::valueColumn);
  const int most = m_tree->viewport()->width() / 2;
  m_tree->setColumnWidth(PartsModel::partColumn,
                         std::min(m_tree->columnWidth(PartsModel::partColumn) + kColumnGap, most));
  m_tree->setColumnWidth(
      PartsModel::valueColumn,
      std::min(m_tree->columnWidth(PartsModel::valueColumn) + kColumnGap, most / 2));
}

// Columns become wider, never smaller, so that nothing jumps from row to row. Of many columns the
// first ones are looked at, and of many rows those in sight.
void DebuggerPanel::fitColumns() {
  for (QTableView* table : {m_variableTable, m_historyTable}) {
    const int columns = std::min(table->model()->columnCount() - 1, kFittedColumns);
    const int widest = table->fontMetrics().averageCharWidth() * kMaxCharacters;
    for (int column = 0; column < columns; ++column) {
      const int before = m_isFitted ? table->columnWidth(column) : 0;
      table->resizeColumnToContents(column);
      const int content = std::min(table->columnWidth(column) + kColumnGap, widest);
      table->setColumnWidth(column, std::max(before, content));
    }
  }
  m_isFitted = true;
}

// A narrow panel shows the variables above the parts.
void DebuggerPanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  const bool isNarrow = width() < fontMetrics().averageCharWidth() * kCharactersSideBySide;
  m_rowPage->setOrientation(isNarrow ? Qt::Vertical : Qt::Horizontal);
}

void DebuggerPanel::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    fitRows();
  }
}

void DebuggerPanel::fitRows() {
  for (QTableView* table : {m_variableTable, m_historyTable}) {
    const int height = fontMetrics().height() + kRowGap;
    table->verticalHeader()->setMinimumSectionSize(height);
    table->verticalHeader()->setDefaultSectionSize(height);
  }
  m_isFitted = false;
}

QString DebuggerPanel::engineNote() const {
  const auto& ofRun = m_parts->values().ofRun;
  if (!ofRun || !ofRun->differs) {
    return {};
  }
  const PartValue& whole = m_parts->values().values.back();
  return tr("A run without the debugger gives another value: %1 by the %2, %3 by the String Parser "
            "that is shown here.")
      .arg(ofRun->failure.isEmpty() ? shownValue(ofRun->value).text : ofRun->failure,
           QLatin1String(backendLabel(ofRun->engine)),
           whole.hasValue() ? shownValue(whole.value).text : whole.failure);
}

void DebuggerPanel::showNotes() {
  QStringList notes;
  std::vector<InfoLink> links;
  if (m_variables->isEdited()) {
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
