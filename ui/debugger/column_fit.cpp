#include "ui/debugger/column_fit.h"

#include <algorithm>

#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>

namespace kelvarin {

namespace {

constexpr int kGap = 12;
constexpr int kMaxCharacters = 40;
constexpr int kMaxCharactersOfName = 80;

}  // namespace

ColumnFit::ColumnFit(QTableView* table) : QObject(table), m_table(*table) {
  table->horizontalHeader()->setResizeContentsPrecision(0);
  connect(table->horizontalScrollBar(), &QScrollBar::valueChanged, this, &ColumnFit::fit);
}

// The last column takes what the others leave.
void ColumnFit::fit() {
  if (!m_table.isVisible()) {
    return;
  }
  const int columns = m_table.model()->columnCount() - 1;
  m_isFitted.resize(static_cast<std::size_t>(std::max(0, columns)));
  const int right = m_table.viewport()->width();
  for (int column = std::max(0, m_table.columnAt(0));
       column < columns && m_table.columnViewportPosition(column) < right; ++column) {
    fitColumn(column);
  }
}

void ColumnFit::fitColumn(int column) {
  const int character = m_table.fontMetrics().averageCharWidth();
  const int before = m_isFitted[static_cast<std::size_t>(column)] ? m_table.columnWidth(column) : 0;
  m_table.resizeColumnToContents(column);
  const int content = std::min(m_table.columnWidth(column) + kGap, kMaxCharacters * character);
  const int name = std::min(m_table.horizontalHeader()->sectionSizeHint(column),
                            kMaxCharactersOfName * character);
  m_table.setColumnWidth(column, std::max({before, content, name}));
  m_isFitted[static_cast<std::size_t>(column)] = true;
}

}  // namespace kelvarin
