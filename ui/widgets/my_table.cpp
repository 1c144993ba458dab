#include "ui/widgets/my_table.h"

#include <algorithm>
#include <numeric>

#include <QCollator>
#include <QDrag>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMetaProperty>
#include <QMimeData>
#include <QResizeEvent>
#include <QScopedValueRollback>
#include <QSortFilterProxyModel>

#include "ui/widgets/enhanced_table_delegate.h"

namespace kelvarin {

namespace {

constexpr int kMaxColumnCharacters = 32;
constexpr int kMinColumnCharacters = 8;

// Takes width from the widest ones that have more than the least, until their sum fits.
void narrow(std::vector<int>& widths, const std::vector<int>& least, int sum) {
  int excess = std::accumulate(widths.begin(), widths.end(), -sum);
  while (excess-- > 0) {
    std::size_t widest = widths.size();
    for (std::size_t i = 0; i < widths.size(); ++i) {
      if (widths[i] > least[i] && (widest == widths.size() || widths[i] > widths[widest])) {
        widest = i;
      }
    }
    if (widest == widths.size()) {
      return;
    }
    --widths[widest];
  }
}

// Numbers inside texts count as numbers, so that "x10" comes after "x9".
class SortedRows : public QSortFilterProxyModel {
 public:
  explicit SortedRows(QObject* parent) : QSortFilterProxyModel(parent), m_collator(language()) {
    m_collator.setNumericMode(true);
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    // A cell that is being edited stays where it is.
    setDynamicSortFilter(false);
  }

 protected:
  bool lessThan(const QModelIndex& left, const QModelIndex& right) const override {
    bool isLeftNumber = false;
    bool isRightNumber = false;
    const QString leftText = left.data().toString();
    const QString rightText = right.data().toString();
    const double leftNumber = leftText.toDouble(&isLeftNumber);
    const double rightNumber = rightText.toDouble(&isRightNumber);
    if (isLeftNumber && isRightNumber) {
      return leftNumber < rightNumber;
    }
    return m_collator.compare(leftText, rightText) < 0;
  }

 private:
  // The C locale compares character by character, numbers too.
  static QLocale language() {
    const QLocale locale;
    return locale.language() == QLocale::C ? QLocale(QLocale::English) : locale;
  }

  QCollator m_collator;
};

}  // namespace

QModelIndex sourceIndexOf(const QModelIndex& index) {
  QModelIndex result = index;
  while (const auto* proxy = qobject_cast<const QAbstractProxyModel*>(result.model())) {
    result = proxy->mapToSource(result);
  }
  return result;
}

MyTable::MyTable(QWidget* parent) : QTableView(parent), m_proxy(new SortedRows(this)) {
  setSelectionBehavior(SelectRows);
  setEditTriggers(EditKeyPressed | AnyKeyPressed);
  setTabKeyNavigation(false);
  setAlternatingRowColors(true);
  setShowGrid(false);
  setWordWrap(false);
  verticalHeader()->hide();
  horizontalHeader()->setSectionsClickable(true);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setStretchLastSection(true);
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  QTableView::setModel(m_proxy);
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this, &MyTable::columnClicked);
  connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column) {
    const bool isStretched = column == horizontalHeader()->count() - 1;
    m_hasUserWidths = m_hasUserWidths || (!m_isFitting && !isStretched && isVisible());
  });
  connect(this, &QAbstractItemView::doubleClicked, this, &MyTable::isDoubleClicked);
}

void MyTable::setModel(QAbstractItemModel* model) {
  m_proxy->setSourceModel(model);
  showUnsorted();
  fitColumns();
}

// Where they need more width than there is, the widest ones are cut first: what they hold is in
// their tool tips.
void MyTable::fitColumns() {
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
  if (m_hasUserWidths) {
    return;
  }
  const int character = fontMetrics().averageCharWidth();
  std::vector<int> widths;
  std::vector<int> least;
  for (int column = 0; column < m_proxy->columnCount(); ++column) {
    const int ofHeader = horizontalHeader()->sectionSizeHint(column);
    const int wanted = qMax(sizeHintForColumn(column) + character, ofHeader);
    widths.push_back(qMin(wanted, kMaxColumnCharacters * character));
    least.push_back(qMax(ofHeader, qMin(wanted, kMinColumnCharacters * character)));
  }
  narrow(widths, least, viewport()->width());
  const QScopedValueRollback fitting(m_isFitting, true);
  for (std::size_t column = 0; column < widths.size(); ++column) {
    setColumnWidth(static_cast<int>(column), widths[column]);
  }
}

void MyTable::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  if (event->size().width() != event->oldSize().width()) {
    fitColumns();
  }
}

bool MyTable::isSorted() const {
  return m_sortedColumn >= 0;
}

void MyTable::showUnsorted() {
  m_sortedColumn = -1;
  m_sortOrder = false;
  m_proxy->sort(-1);
  horizontalHeader()->setSortIndicatorShown(false);
  emit sortingChanged();
}

void MyTable::columnClicked(int column) {
  if (!m_sortingEnabled) {
    return;
  }
  if (column == m_sortedColumn && m_sortOrder) {
    showUnsorted();
    return;
  }
  m_sortOrder = column == m_sortedColumn;
  m_sortedColumn = column;
  const Qt::SortOrder order = m_sortOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
  m_proxy->sort(column, order);
  horizontalHeader()->setSortIndicator(column, order);
  horizontalHeader()->setSortIndicatorShown(true);
  emit sortingChanged();
}

void MyTable::isDoubleClicked(const QModelIndex& index) {
  if (index.flags() & Qt::ItemIsEditable) {
    edit(index);
  }
}

void MyTable::setRowsDraggable() {
  setDragDropOverwriteMode(false);
  setDropIndicatorShown(true);
  setDefaultDropAction(Qt::MoveAction);
  const auto followSorting = [this] { setDragDropMode(isSorted() ? DragOnly : DragDrop); };
  connect(this, &MyTable::sortingChanged, this, followSorting);
  followSorting();
}

// The base class would remove the rows that were dropped elsewhere.
void MyTable::startDrag(Qt::DropActions supportedActions) {
  QMimeData* dragged = m_proxy->mimeData(selectionModel()->selectedRows());
  if (dragged == nullptr) {
    return;
  }
  auto* drag = new QDrag(this);
  drag->setMimeData(dragged);
  drag->exec(supportedActions, Qt::MoveAction);
}

int MyTable::currentRow() const {
  return sourceIndexOf(currentIndex()).row();
}

void MyTable::setCurrentCell(int row, int column) {
  setCurrentIndex(shownIndexOf(row, column));
}

void MyTable::editCell(int row, int column) {
  const QModelIndex index = shownIndexOf(row, column);
  setCurrentIndex(index);
  isDoubleClicked(index);
}

std::vector<int> MyTable::selectedRows() const {
  std::vector<int> rows;
  for (const QModelIndex& index : selectionModel()->selectedRows()) {
    rows.push_back(sourceIndexOf(index).row());
  }
  std::sort(rows.begin(), rows.end());
  return rows;
}

QWidget* MyTable::openEditor() const {
  return state() == EditingState ? indexWidget(currentIndex()) : nullptr;
}

std::optional<MyTable::OpenCell> MyTable::openCell() const {
  const QWidget* editor = openEditor();
  if (editor == nullptr) {
    return std::nullopt;
  }
  const QModelIndex index = sourceIndexOf(currentIndex());
  const QMetaProperty text = editor->metaObject()->userProperty();
  return OpenCell{index.row(), index.column(), text.read(editor).toString()};
}

void MyTable::reopen(const OpenCell& cell) {
  editCell(cell.row, cell.column);
  if (QWidget* editor = openEditor()) {
    editor->metaObject()->userProperty().write(editor, cell.text);
  }
}

void MyTable::commitOpenCell() {
  if (QWidget* editor = openEditor()) {
    commitData(editor);
    closeEditor(editor, QAbstractItemDelegate::NoHint);
  }
}

void MyTable::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange) {
    fitColumns();
  }
}

QSize MyTable::sizeHint() const {
  constexpr int kRows = 6;
  const int height = horizontalHeader()->sizeHint().height() +
                     kRows * verticalHeader()->defaultSectionSize() + 2 * frameWidth();
  return {QTableView::sizeHint().width(), height};
}

void MyTable::keyPressEvent(QKeyEvent* event) {
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  auto* delegate = qobject_cast<EnhancedTableDelegate*>(itemDelegate());
  if (isReturn && event->modifiers() & Qt::ControlModifier && delegate != nullptr &&
      currentRow() >= 0) {
    emit delegate->rightClickPressed(currentRow());
    return;
  }
  if (isReturn && state() != EditingState) {
    isDoubleClicked(currentIndex());
    return;
  }
  QTableView::keyPressEvent(event);
}

QModelIndex MyTable::shownIndexOf(int row, int column) const {
  const QAbstractItemModel* source = m_proxy->sourceModel();
  return source == nullptr ? QModelIndex() : m_proxy->mapFromSource(source->index(row, column));
}

}  // namespace kelvarin
