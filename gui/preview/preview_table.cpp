#include "gui/preview/preview_table.h"

#include <algorithm>
#include <utility>

#include <QEvent>
#include <QScrollBar>
#include <QVBoxLayout>

#include "gui/preview/preview_cells.h"
#include "gui/preview/preview_header.h"
#include "gui/preview/preview_view.h"
#include "gui/preview/value_window.h"

namespace kelvarin {

namespace {

constexpr int kMeasuredRows = 40;
constexpr int kNarrowest = 18;  // characters of a column; a profile needs them
constexpr int kWidest = 40;

}  // namespace

PreviewTable::PreviewTable(BackgroundQueue& queue, QWidget* parent)
    : QWidget(parent),
      m_queue(queue),
      m_model(new PreviewModel(this)),
      m_view(new PreviewView(this)),
      m_header(new PreviewHeader(m_view)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_view);
  m_view->setObjectName(QStringLiteral("previewRows"));
  m_view->setAccessibleName(tr("Rows of the preview"));
  m_view->setHorizontalHeader(m_header);
  m_view->setModel(m_model);
  m_view->setItemDelegate(new PreviewCells(*m_model, this));
  m_view->setContextMenuPolicy(Qt::CustomContextMenu);
  m_view->verticalHeader()->setToolTip(tr("The number of the row at this pin, counted from 0"));
  layOut();
  connect(m_model, &PreviewModel::valuesCame, m_view->viewport(), qOverload<>(&QWidget::update));
  connect(m_view, &PreviewView::openWanted, this, &PreviewTable::showWholeValue);
  connect(m_view, &PreviewView::filterWanted, this, &PreviewTable::editFilter);
  connect(m_view, &PreviewView::copyWanted, this, &PreviewTable::copy);
  connect(m_view, &QTableView::doubleClicked, this, &PreviewTable::showWholeValue);
  connect(m_view, &QWidget::customContextMenuRequested, this, &PreviewTable::showCellMenu);
  connect(m_view->selectionModel(), &QItemSelectionModel::currentColumnChanged, this,
          [this](const QModelIndex& now) { setCurrentColumn(now.column()); });
  connectHeader();
}

PreviewTable::~PreviewTable() {
  stop(m_ordering);
  stop(m_copying);
  stop(m_choosing);
  for (auto& work : m_exports) {
    stop(work);
  }
}

// A click sorts; a column is chosen in its menu.
void PreviewTable::connectHeader() {
  disconnect(m_header, SIGNAL(sectionPressed(int)), m_view, SLOT(selectColumn(int)));
  disconnect(m_header, SIGNAL(sectionEntered(int)), m_view, SLOT(_q_selectColumn(int)));
  m_header->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(m_header, &QHeaderView::sectionClicked, this, &PreviewTable::cycleSorting);
  connect(m_header, &QHeaderView::sectionDoubleClicked, this, [this](int column) {
    if (column < 0) {
      return;  // beside the last one
    }
    std::tie(m_sortColumn, m_isDescending) = m_sortBeforeClick;
    applyOrder();
    emit renameColumnWanted(m_model->nameOf(column));
  });
  connect(m_header, &QWidget::customContextMenuRequested, this, &PreviewTable::showHeaderMenu);
  connect(m_header, &PreviewHeader::filtersChanged, this, &PreviewTable::applyOrder);
  connect(m_header, &PreviewHeader::leaveWanted, this, [this](int column) {
    m_view->setFocus(Qt::OtherFocusReason);
    if (m_model->rowCount() > 0) {
      m_view->setCurrentIndex(m_model->index(0, column));
    }
  });
}

void PreviewTable::setPreview(PinPreview* preview, long long maximumRows) {
  m_preview = preview;
  m_maximumRows = maximumRows;
  m_header->setProfiles(preview == nullptr ? nullptr : &preview->profiles());
  if (preview == nullptr || preview->rows() == nullptr) {
    setRows(nullptr);
    return;
  }
  refresh();
}

void PreviewTable::refresh() {
  if (m_preview == nullptr || m_preview->rows() == nullptr) {
    return;
  }
  const long long count = std::min(m_preview->rowCount(), m_maximumRows);
  if (m_model->rows() != m_preview->rows()) {
    setRows(m_preview->rows());
  }
  m_model->setSourceRowCount(count);
  fitRowNumbers();
  if (!m_areColumnsFitted && count > 0) {
    fitColumns();
  }
  const bool isEnded = m_preview->state() != PinPreview::State::computing;
  const bool isOrderWanted = m_sortColumn >= 0 || !m_header->filters().isEmpty();
  if (isOrderWanted && count != m_orderedRows && (isEnded || count >= 2 * m_orderedRows)) {
    applyOrder();
  }
}

// The same columns come again when the branch was computed anew: whoever has filtered and scrolled
// goes on there.
void PreviewTable::setRows(std::shared_ptr<PreviewRows> rows) {
  const bool isSame = rows != nullptr && m_model->rows() != nullptr &&
                      rows->columns() == m_model->rows()->columns();
  const QModelIndex current = m_view->currentIndex();
  const QPoint position(m_view->horizontalScrollBar()->value(),
                        m_view->verticalScrollBar()->value());
  const QPoint cell(current.column(), current.row());
  stop(m_ordering);
  m_orderedRows = 0;
  m_model->setRows(rows, rows == nullptr ? 0 : std::min(rows->rowCount(), m_maximumRows));
  if (!isSame) {
    m_header->clearFilters();
    m_sortColumn = -1;
    m_header->setSortIndicatorShown(false);
    m_areColumnsFitted = false;
    setCurrentColumn(-1);
    emit orderChanged();
    return;
  }
  m_view->horizontalScrollBar()->setValue(position.x());
  m_view->verticalScrollBar()->setValue(position.y());
  if (cell.y() >= 0 && cell.y() < m_model->rowCount()) {
    m_view->selectionModel()->setCurrentIndex(m_model->index(cell.y(), cell.x()),
                                              QItemSelectionModel::ClearAndSelect);
  }
  emit orderChanged();
}

void PreviewTable::stop(std::shared_ptr<StopFlag>& work) {
  if (work != nullptr) {
    *work = true;
    work.reset();
  }
}

// Filters that cannot be understood are marked, and leave out nothing.
RowOrder PreviewTable::wantedOrder() {
  RowOrder order;
  order.sortColumn = m_sortColumn;
  order.isDescending = m_isDescending;
  const QHash<int, QString> filters = m_header->filters();
  for (auto filter = filters.begin(); filter != filters.end(); ++filter) {
    const auto parsed = CellFilter::parse(filter.value(), m_model->typeOf(filter.key()));
    m_header->setFault(filter.key(), parsed ? QString() : parsed.error());
    if (parsed) {
      order.filters.push_back({filter.key(), *parsed});
    }
  }
  return order;
}

void PreviewTable::applyOrder() {
  stop(m_ordering);
  if (m_model->rows() == nullptr) {
    return;
  }
  const RowOrder order = wantedOrder();
  m_header->setSortIndicatorShown(m_sortColumn >= 0);
  m_header->setSortIndicator(m_sortColumn,
                             m_isDescending ? Qt::DescendingOrder : Qt::AscendingOrder);
  m_orderedRows = m_model->sourceRowCount();
  if (order.isPlain()) {
    if (m_model->order() != nullptr) {
      m_model->setOrder(nullptr);
    }
    emit orderChanged();
    return;
  }
  const auto work = [this, order, rows = m_model->rows(),
                     count = m_orderedRows](const StopFlag& isStopped) -> BackgroundQueue::Report {
    auto numbers = rowsInOrder(*rows, count, order, isStopped);
    auto result = numbers ? std::make_shared<const RowNumbers>(std::move(*numbers)) : nullptr;
    return [this, result] { takeOrder(result); };
  };
  m_ordering = m_queue.add(work, true);
  emit orderChanged();
}

void PreviewTable::takeOrder(std::shared_ptr<const RowNumbers> order) {
  m_ordering.reset();
  if (order == nullptr) {
    emit reported(false, tr("The rows cannot be read back from the temporary file. Reload them."));
  } else {
    const QModelIndex current = m_view->currentIndex();
    const int column = std::max(0, current.column());
    m_model->setOrder(std::move(order));
    if (m_model->rowCount() > 0) {
      m_view->selectionModel()->setCurrentIndex(m_model->index(0, column),
                                                QItemSelectionModel::NoUpdate);
    }
  }
  emit orderChanged();
}

void PreviewTable::sortBy(int column, bool isDescending) {
  m_sortColumn = column;
  m_isDescending = isDescending;
  applyOrder();
}

// Ascending, descending, as they came.
void PreviewTable::cycleSorting(int column) {
  m_sortBeforeClick = {m_sortColumn, m_isDescending};
  setCurrentColumn(column);
  if (column != m_sortColumn) {
    sortBy(column, false);
  } else {
    sortBy(m_isDescending ? -1 : column, !m_isDescending);
  }
}

void PreviewTable::setCurrentColumn(int column) {
  if (column != m_currentColumn) {
    m_currentColumn = column;
    emit currentColumnChanged(column);
  }
}

void PreviewTable::editFilter() {
  if (m_model->columnCount() == 0) {
    return;
  }
  m_header->setShowsFilters(true);
  m_header->editFilter(std::max(0, m_currentColumn));
}

void PreviewTable::clearFilters() {
  m_header->clearFilters();
  applyOrder();
}

void PreviewTable::showWholeValue() {
  const QModelIndex current = m_view->currentIndex();
  if (!current.isValid()) {
    return;
  }
  const PreviewModel::Cell cell = m_model->wholeCell(current.row(), current.column());
  if (cell.isThere) {
    const QString title = tr("%1, row %2")
                              .arg(m_model->nameOf(current.column()))
                              .arg(m_model->sourceRow(current.row()));
    showValueWindow(title, cell.value.isMarked() ? cell.value.text : cell.value.whole, this);
  }
}

void PreviewTable::layOut() {
  const int row = fontMetrics().height() + 6;
  m_view->verticalHeader()->setMinimumSectionSize(row);
  m_view->verticalHeader()->setDefaultSectionSize(row);
  m_header->setMinimumSectionSize(3 * fontMetrics().height());
  m_header->setDefaultSectionSize(kNarrowest * fontMetrics().averageCharWidth() +
                                  2 * PreviewCells::kMargin);
  fitRowNumbers();
}

// By the characters of the first rows: a table may have thousands of columns.
void PreviewTable::fitColumns() {
  m_areColumnsFitted = true;
  const int rows = std::min(kMeasuredRows, m_model->rowCount());
  const int letter = fontMetrics().averageCharWidth();
  const int digit = fontMetrics().horizontalAdvance(u'0');
  for (int column = 0; column < m_model->columnCount(); ++column) {
    qsizetype longest = m_model->nameOf(column).size() + 2;
    for (int row = 0; row < rows; ++row) {
      longest = std::max(longest, m_model->cell(row, column).value.text.size());
    }
    const int characters = std::clamp(static_cast<int>(longest) + 1, kNarrowest, kWidest);
    const int unit = fixedSizeOf(m_model->typeOf(column)) != 0 ? digit : letter;
    m_header->resizeSection(column, characters * unit + 2 * PreviewCells::kMargin);
  }
}

void PreviewTable::fitRowNumbers() {
  const auto digits = QString::number(std::max(99LL, m_model->sourceRowCount())).size();
  m_view->verticalHeader()->setFixedWidth(static_cast<int>(digits + 2) *
                                          fontMetrics().horizontalAdvance(u'0'));
}

void PreviewTable::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    layOut();
    if (m_areColumnsFitted) {
      fitColumns();
    }
  }
}

}  // namespace kelvarin
