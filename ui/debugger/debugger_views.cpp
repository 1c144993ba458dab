#include "ui/debugger/debugger_views.h"

#include <algorithm>

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPushButton>
#include <QSplitter>
#include <QTableView>
#include <QTreeView>
#include <QVBoxLayout>

#include "host/widgets/icons.h"
#include "ui/debugger/history_model.h"
#include "ui/debugger/parts_model.h"
#include "ui/debugger/row_variables_model.h"
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

DebuggerViews::DebuggerViews(QWidget* parent)
    : QTabWidget(parent),
      m_variables(new RowVariablesModel(this)),
      m_parts(new PartsModel(this)),
      m_history(new HistoryModel(this)) {
  setDocumentMode(true);
  setAccessibleName(tr("This row and the rows that went by"));
  addTab(makeRowPage(), tr("This Row"));
  addTab(makeHistoryPage(), tr("Last Rows"));
  fitRows();
  connect(m_variables, &RowVariablesModel::edited, this, &DebuggerViews::edited);
}

void DebuggerViews::setHistory(const RowHistory& rows) {
  m_history->setRows(rows);
}

void DebuggerViews::showRow(std::size_t index, std::vector<VariableValue> values,
                            const std::vector<VariableValue>& before) {
  m_variables->setRow(std::move(values), before);
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
  m_parts->clear();
  m_isFitted = false;
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

QWidget* DebuggerViews::makeRowPage() {
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

QWidget* DebuggerViews::makeHistoryPage() {
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

// The first column may take what the others leave, but for half of the width.
void DebuggerViews::fitTree() {
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
void DebuggerViews::fitColumns() {
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
void DebuggerViews::resizeEvent(QResizeEvent* event) {
  QTabWidget::resizeEvent(event);
  const bool isNarrow = width() < fontMetrics().averageCharWidth() * kCharactersSideBySide;
  m_rowPage->setOrientation(isNarrow ? Qt::Vertical : Qt::Horizontal);
}

void DebuggerViews::changeEvent(QEvent* event) {
  QTabWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    fitRows();
  }
}

void DebuggerViews::fitRows() {
  for (QTableView* table : {m_variableTable, m_historyTable}) {
    const int height = fontMetrics().height() + kRowGap;
    table->verticalHeader()->setMinimumSectionSize(height);
    table->verticalHeader()->setDefaultSectionSize(height);
  }
  m_isFitted = false;
}

}  // namespace kelvarin
