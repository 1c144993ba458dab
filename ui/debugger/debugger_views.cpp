#include "ui/debugger/debugger_views.h"

#include <algorithm>

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

#include "host/widgets/icons.h"
#include "ui/debugger/column_fit.h"
#include "ui/debugger/history_model.h"
#include "ui/debugger/parts_model.h"
#include "ui/debugger/row_values_model.h"
#include "ui/widgets/enhanced_table_delegate.h"

namespace kelvarin {

namespace {

// Deeper parts are opened by the user, or where a missing value arises in them.
constexpr int kOpenedDepth = 4;
constexpr int kColumnGap = 12;
constexpr int kMaxResultsInSight = 4;
constexpr int kMinResultsInSight = 3;
constexpr int kCharactersSideBySide = 90;

void setUp(QAbstractItemView* view, QAbstractItemModel* model, const QString& name) {
  view->setModel(model);
  view->setItemDelegate(new EnhancedTableDelegate(view));
  view->setAccessibleName(name);
  view->setTabKeyNavigation(false);
  view->setAlternatingRowColors(true);
}

}  // namespace

DebuggerViews::DebuggerViews(QWidget* parent)
    : QTabWidget(parent),
      m_variables(new RowValuesModel(RowValuesModel::Kind::variables, this)),
      m_results(new RowValuesModel(RowValuesModel::Kind::results, this)),
      m_parts(new PartsModel(this)),
      m_history(new HistoryModel(this)) {
  setDocumentMode(true);
  setAccessibleName(tr("This row and the rows that went by"));
  addTab(makeRowPage(), tr("This Row"));
  addTab(makeHistoryPage(), tr("Last Rows"));
  fitRows();
  connect(m_variables, &RowValuesModel::edited, this, &DebuggerViews::edited);
  connect(this, &QTabWidget::currentChanged, this, &DebuggerViews::fitColumns);
}

void DebuggerViews::setHistory(const RowHistory& rows) {
  m_history->setRows(rows);
}

void DebuggerViews::showRow(std::size_t index, const RowValues& values, const RowValues& before) {
  m_variables->setRow(values.variables, before.variables);
  m_results->setRow(values.results, before.results, values.faults);
  fitResults();
  m_historyTable->setCurrentIndex(m_history->index(static_cast<int>(index), 0));
}

void DebuggerViews::showParts(const PartValues& values) {
  if (m_parts->setValues(values)) {
    m_tree->expandToDepth(kOpenedDepth);
  }
  for (const QModelIndex& origin : m_parts->origins()) {
    for (QModelIndex at = origin.parent(); at.isValid(); at = at.parent()) {
      m_tree->expand(at);
    }
  }
  fitTree();
}

void DebuggerViews::clear() {
  m_history->setRows({});
  m_variables->setRow({}, {});
  m_results->setRow({}, {});
  m_parts->clear();
  for (ColumnFit* columns : m_columnFits) {
    columns->restart();
  }
}

const std::vector<VariableValue>& DebuggerViews::values() const {
  return m_variables->values();
}

const PartValues& DebuggerViews::parts() const {
  return m_parts->values();
}

bool DebuggerViews::isEdited() const {
  return m_variables->isEdited();
}

void DebuggerViews::undoEdits() {
  m_variables->undoEdits();
}

SizedView<QTableView>* DebuggerViews::makeTable(QWidget* parent, QAbstractItemModel* model,
                                                const QString& name) {
  auto* table = new SizedView<QTableView>(parent);
  setUp(table, model, name);
  table->setShowGrid(false);
  table->setWordWrap(false);
  table->verticalHeader()->hide();
  table->horizontalHeader()->setHighlightSections(false);
  table->horizontalHeader()->setStretchLastSection(true);
  table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  m_tables.push_back(table);
  m_columnFits.push_back(new ColumnFit(table));
  return table;
}

// The results stand above the parts that they come from.
QWidget* DebuggerViews::makeRowPage() {
  m_rowPage = new QSplitter(Qt::Horizontal, this);
  m_rowPage->setChildrenCollapsible(false);
  m_variableTable =
      makeTable(m_rowPage, m_variables, tr("Variables of the row; a value can be edited"));
  m_variableTable->setObjectName(QStringLiteral("variablesOfRow"));
  auto* computed = new QWidget(m_rowPage);
  auto* layout = new QVBoxLayout(computed);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  m_resultTable = makeTable(computed, m_results, tr("Results of the row"));
  m_resultTable->setObjectName(QStringLiteral("resultsOfRow"));
  m_tree = new SizedView<QTreeView>(computed);
  m_tree->setWantedRows(4, 2);  // beside the results
  layout->addWidget(m_resultTable);
  layout->addWidget(m_tree, 1);
  m_tree->setObjectName(QStringLiteral("partsOfExpression"));
  setUp(m_tree, m_parts, tr("Parts of the expression with their values"));
  m_tree->setUniformRowHeights(true);
  m_tree->installEventFilter(this);
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

QWidget* DebuggerViews::makeHistoryPage() {
  auto* page = new QWidget(this);
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  m_historyTable =
      makeTable(page, m_history, tr("The last rows, up to %1").arg(RowHistory::kMaxRows));
  m_historyTable->setObjectName(QStringLiteral("lastRows"));
  m_historyTable->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_historyTable->setSelectionMode(QAbstractItemView::SingleSelection);
  auto* copy = new QPushButton(icon(IconName::copy), tr("&Copy as CSV"), page);
  copy->setObjectName(QStringLiteral("pbCopyRows"));
  layout->addWidget(m_historyTable, 1);
  layout->addWidget(copy, 0, Qt::AlignLeft);
  connect(copy, &QPushButton::clicked, this,
          [this] { QGuiApplication::clipboard()->setText(m_history->csv()); });
  connect(m_historyTable->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& index) {
            if (index.isValid()) {
              emit rowChosen(static_cast<std::size_t>(index.row()));
            }
          });
  return page;
}

// The first column has half of the width before the first row, too, so that nothing moves then.
void DebuggerViews::fitTree() {
  const int half = m_tree->viewport()->width() / 2;
  if (m_parts->isEmpty()) {
    m_tree->setColumnWidth(PartsModel::partColumn, half);
    return;
  }
  m_tree->resizeColumnToContents(PartsModel::valueColumn);
  m_tree->setColumnWidth(
      PartsModel::valueColumn,
      std::min(m_tree->columnWidth(PartsModel::valueColumn) + kColumnGap, half / 2));
}

void DebuggerViews::fitColumns() {
  for (ColumnFit* columns : m_columnFits) {
    columns->fit();
  }
}

// A narrow panel shows the variables above the parts.
void DebuggerViews::resizeEvent(QResizeEvent* event) {
  QTabWidget::resizeEvent(event);
  const bool isNarrow = width() < fontMetrics().averageCharWidth() * kCharactersSideBySide;
  m_rowPage->setOrientation(isNarrow ? Qt::Vertical : Qt::Horizontal);
}

bool DebuggerViews::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_tree && event->type() == QEvent::Resize && m_parts->isEmpty()) {
    fitTree();
  }
  return QTabWidget::eventFilter(watched, event);
}

void DebuggerViews::changeEvent(QEvent* event) {
  QTabWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    fitRows();
  }
}

void DebuggerViews::fitRows() {
  for (std::size_t i = 0; i < m_tables.size(); ++i) {
    m_tables[i]->verticalHeader()->setMinimumSectionSize(m_tables[i]->rowHeight());
    m_tables[i]->verticalHeader()->setDefaultSectionSize(m_tables[i]->rowHeight());
    m_columnFits[i]->restart();
  }
  fitResults();
}

void DebuggerViews::setExpectedResults(int count) {
  m_expectedResults = count;
  fitResults();
}

// As high as its rows, before the first ones come, too; of many results some are scrolled to.
void DebuggerViews::fitResults() {
  const int results = std::max(m_results->rowCount(), m_expectedResults);
  const int rows = std::clamp(results, 1, kMaxResultsInSight);
  m_resultTable->setWantedRows(rows, std::min(rows, kMinResultsInSight));
  m_resultTable->setMaximumHeight(m_resultTable->heightOfRows(rows));
}

}  // namespace kelvarin
