#include "ui/widgets/my_table.h"

#include <algorithm>

#include <QCollator>
#include <QHeaderView>
#include <QKeyEvent>
#include <QSortFilterProxyModel>

#include "ui/widgets/enhanced_table_delegate.h"

namespace kelvarin {

namespace {

constexpr int kMaxColumnCharacters = 32;

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
  connect(this, &QAbstractItemView::doubleClicked, this, &MyTable::isDoubleClicked);
}

void MyTable::setModel(QAbstractItemModel* model) {
  m_proxy->setSourceModel(model);
  showUnsorted();
  fitColumns();
}

void MyTable::fitColumns() {
  const int character = fontMetrics().averageCharWidth();
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
  for (int column = 0; column < m_proxy->columnCount(); ++column) {
    const int wanted = qMax(sizeHintForColumn(column), horizontalHeader()->sectionSizeHint(column));
    setColumnWidth(column, qMin(wanted + 2 * character, kMaxColumnCharacters * character));
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
