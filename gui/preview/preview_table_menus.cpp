#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include <QClipboard>
#include <QGuiApplication>
#include <QLocale>
#include <QMenu>
#include <QSaveFile>

#include "gui/preview/preview_header.h"
#include "gui/preview/preview_table.h"
#include "gui/preview/preview_view.h"
#include "host/contract/column_bytes.h"
#include "host/widgets/icons.h"

namespace kelvarin {

namespace {

constexpr qsizetype kClipboardCapacity = qsizetype{64} << 20;
// A longer condition is nothing that a user could read.
constexpr qsizetype kChosenCells = 100;

qsizetype cellCount(const QItemSelection& selection) {
  qsizetype count = 0;
  for (const QItemSelectionRange& range : selection) {
    count += qsizetype{range.width()} * range.height();
  }
  return count;
}

}  // namespace

void PreviewTable::showCellMenu(const QPoint& position) {
  const QModelIndex index = m_view->indexAt(position);
  if (!index.isValid()) {
    return;
  }
  // What was selected stays so only where the click is in it.
  if (!m_view->selectionModel()->isSelected(index)) {
    m_view->setCurrentIndex(index);
  }
  auto* menu = new QMenu(this);
  menu->setObjectName(QStringLiteral("previewCellMenu"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const long long row = m_model->sourceRow(index.row());
  const QString column = m_model->nameOf(index.column());
  menu->addAction(tr("&Step to this row"), [this, row] { emit stepToRowWanted(row); });
  QAction* keep =
      menu->addAction(tr("&Keep rows like this"), this, &PreviewTable::keepRowsLikeChosen);
  keep->setEnabled(cellCount(m_view->selectionModel()->selection()) <= kChosenCells);
  menu->addAction(tr("&New column from this"), [this, at = index.column()] { wantNewColumn(at); });
  menu->addAction(tr("&Rename column \u2026"), [this, column] { emit renameColumnWanted(column); });
  menu->addSeparator();
  menu->addAction(tr("Show the &whole value\tEnter"), [this] { showWholeValue(); });
  menu->addAction(icon(IconName::copy), tr("&Copy\tCtrl+C"), [this] { copy(false); });
  menu->addAction(tr("Copy with &headers\tCtrl+Shift+C"), [this] { copy(true); });
  menu->popup(m_view->viewport()->mapToGlobal(position));
}

void PreviewTable::showHeaderMenu(const QPoint& position) {
  const int column = m_header->logicalIndexAt(position);
  if (column < 0) {
    return;
  }
  setCurrentColumn(column);
  auto* menu = new QMenu(this);
  menu->setObjectName(QStringLiteral("previewColumnMenu"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  addSortActions(*menu, column);
  menu->addAction(icon(IconName::search), tr("&Filter \u2026\tCtrl+F"), [this] { editFilter(); });
  menu->addSeparator();
  const QString name = m_model->nameOf(column);
  menu->addAction(tr("&New column from this"), [this, column] { wantNewColumn(column); });
  menu->addAction(tr("&Rename column \u2026"), [this, name] { emit renameColumnWanted(name); });
  menu->addSeparator();
  menu->addAction(tr("Copy the na&me"), [name] { QGuiApplication::clipboard()->setText(name); });
  menu->addAction(icon(IconName::copy), tr("&Copy the column"), [this, column] {
    copyTexts({TextFormat::tabs, true, {column}, 0, m_model->rowCount(), m_model->order()});
  });
  menu->popup(m_header->viewport()->mapToGlobal(position));
}

void PreviewTable::addSortActions(QMenu& menu, int column) {
  const auto add = [&](const QString& label, int sortColumn, bool isDescending) {
    QAction* action = menu.addAction(
        label, [this, sortColumn, isDescending] { sortBy(sortColumn, isDescending); });
    action->setCheckable(true);
    action->setChecked(m_sortColumn == sortColumn &&
                       (sortColumn < 0 || m_isDescending == isDescending));
  };
  add(tr("Sort &ascending"), column, false);
  add(tr("Sort &descending"), column, true);
  add(tr("&Unsorted"), -1, false);
}

void PreviewTable::wantNewColumn(int column) {
  const PreviewRows::Columns& columns = m_model->rows()->columns();
  const PinColumns::Column& source = columns[static_cast<std::size_t>(column)];
  const QString stem = QStringLiteral("new_%1").arg(source.name);
  QString name = stem;
  for (int number = 2; std::ranges::count(columns, name, &PinColumns::Column::name) > 0; ++number) {
    name = QStringLiteral("%1_%2").arg(stem).arg(number);
  }
  emit newColumnWanted(source, name);
}

// The columns and rows that have a chosen cell.
RowTextRequest PreviewTable::selectedTexts() const {
  RowTextRequest request;
  const QItemSelection selection = m_view->selectionModel()->selection();
  std::set<int> columns;
  for (const QItemSelectionRange& range : selection) {
    for (int column = range.left(); column <= range.right(); ++column) {
      columns.insert(column);
    }
  }
  request.columns.assign(columns.begin(), columns.end());
  if (selection.size() == 1) {
    request.first = selection.front().top();
    request.end = selection.front().bottom() + 1;
    request.order = m_model->order();
    return request;
  }
  std::vector<std::pair<int, int>> ranges;
  for (const QItemSelectionRange& range : selection) {
    ranges.emplace_back(range.top(), range.bottom());
  }
  std::sort(ranges.begin(), ranges.end());
  RowNumbers rows;
  int next = 0;
  for (const auto& [top, bottom] : ranges) {
    for (next = std::max(next, top); next <= bottom; ++next) {
      rows.push_back(static_cast<std::uint32_t>(m_model->sourceRow(next)));
    }
  }
  request.end = static_cast<long long>(rows.size());
  request.order = std::make_shared<const RowNumbers>(std::move(rows));
  return request;
}

void PreviewTable::copy(bool withHeader) {
  RowTextRequest request = selectedTexts();
  request.hasHeader = withHeader;
  if (!request.columns.empty()) {
    copyTexts(std::move(request));
  }
}

void PreviewTable::copyTexts(RowTextRequest request) {
  stop(m_copying);
  const auto work = [this, request = std::move(request),
                     rows = m_model->rows()](const StopFlag& isStopped) -> BackgroundQueue::Report {
    QByteArray text;
    bool isTooLong = false;
    const bool isWritten = writeRowTexts(*rows, request, isStopped, [&](const QByteArray& piece) {
      isTooLong = text.size() + piece.size() > kClipboardCapacity;
      if (!isTooLong) {
        text += piece;
      }
      return !isTooLong;
    });
    // One value goes into a field of a form without a line end.
    if (request.end - request.first == 1 && !request.hasHeader && text.endsWith('\n')) {
      text.chop(1);
    }
    const long long count = request.end - request.first;
    return [this, isWritten, isTooLong, count, text = QString::fromUtf8(text)] {
      if (isWritten) {
        QGuiApplication::clipboard()->setText(text);
        emit reported(true, tr("Rows copied: %1").arg(QLocale().toString(count)));
      } else if (isTooLong) {
        emit reported(false, tr("This is more than a clipboard holds well (64 MiB). Export the "
                                "rows as CSV, or choose fewer of them."));
      } else {
        emit reported(false, tr("Nothing was copied: the rows cannot be read back from the "
                                "temporary file. Reload them."));
      }
    };
  };
  m_copying = m_queue.add(work, true);
}

void PreviewTable::exportTo(const QString& file) {
  RowTextRequest request{TextFormat::csv, true, {}, 0, m_model->rowCount(), m_model->order()};
  for (int column = 0; column < m_model->columnCount(); ++column) {
    request.columns.push_back(column);
  }
  const auto work = [this, request, file,
                     rows = m_model->rows()](const StopFlag& isStopped) -> BackgroundQueue::Report {
    QSaveFile target(file);
    // A buffer would hide from commit() that the disk is full.
    const bool isWritten = target.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
                           writeRowTexts(*rows, request, isStopped,
                                         [&target](const QByteArray& piece) {
                                           return target.write(piece) == piece.size();
                                         }) &&
                           target.commit();
    const QString count = QLocale().toString(request.end);
    return [this, isWritten, file, count, reason = target.errorString()] {
      emit reported(isWritten, isWritten ? tr("%1 rows were written to %2.").arg(count, file)
                                         : tr("%1 was not written: %2. Choose another file, or "
                                              "free some space on the disk.")
                                               .arg(file, reason));
    };
  };
  m_exports.push_back(m_queue.add(work));
}

// In each column that has a chosen cell, one of the values of its chosen cells. They may have to be
// read from the disk.
void PreviewTable::keepRowsLikeChosen() {
  std::map<int, RowNumbers> cells;
  for (const QModelIndex& index : m_view->selectionModel()->selectedIndexes()) {
    cells[index.column()].push_back(static_cast<std::uint32_t>(m_model->sourceRow(index.row())));
  }
  stop(m_choosing);
  m_choosing = m_queue.add(
      [this, cells, rows = m_model->rows()](const StopFlag&) -> BackgroundQueue::Report {
        std::vector<ChosenValues> chosen;
        for (const auto& [column, numbers] : cells) {
          chosen.push_back({rows->columns()[static_cast<std::size_t>(column)], {}});
          ChosenValues& values = chosen.back();
          const auto keep = [&values](long long, const unsigned char* bytes) {
            const std::size_t size = bytes == nullptr ? 0 : sizeOfValue(values.column.meta, bytes);
            values.values.emplace_back(bytes, bytes + size);
            return true;
          };
          if (!rows->visit(column, numbers, keep)) {
            return nullptr;
          }
        }
        return [this, condition = conditionFor(chosen)] { emit keepRowsWanted(condition); };
      },
      true);
}

}  // namespace kelvarin
