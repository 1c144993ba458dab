#include "library/tables/columnar_table.h"

#include <algorithm>
#include <utility>

#include <QFile>

#include "columnar/reader/block_scan.h"
#include "columnar/reader/stored_order.h"

namespace kelvarin {

namespace {

std::string systemPathOf(const QString& path) {
  return QFile::encodeName(path).toStdString();
}

MetaTypeColumn typeOf(GelType type) {
  switch (type) {
    case GelType::number:
      return MetaTypeColumn::number;
    case GelType::key:
      return MetaTypeColumn::key;
    default:
      return MetaTypeColumn::text;
  }
}

template <typename Kind>
std::optional<Kind> loaded(const GelFile& file, const unsigned char* descriptor,
                           std::size_t column) {
  Kind statistics;
  const bool isRead = file.descriptorLayout().readStatistics(descriptor, column, statistics);
  return isRead ? std::optional(std::move(statistics)) : std::nullopt;
}

}  // namespace

ColumnarTable::ColumnarTable(const QString& path, bool acceptsIncomplete,
                             std::unique_ptr<GelFile> file)
    : m_path(path), m_acceptsIncomplete(acceptsIncomplete), m_file(std::move(file)) {}

Outcome<std::shared_ptr<ColumnarTable>> ColumnarTable::open(const QString& path,
                                                            bool acceptsIncomplete) {
  auto file = GelFile::open(systemPathOf(path),
                            acceptsIncomplete ? IncompleteFiles::accept : IncompleteFiles::refuse);
  if (!file) {
    // The action that reads it says why, and what to do.
    auto stream = ColumnarTable(path, acceptsIncomplete, nullptr).scan({});
    if (!stream) {
      return Failure{stream.error()};
    }
    const auto columns = (*stream)->columns();
    return Failure{columns ? errorOfLog({}, GlobalParameters::RunningState::failed)
                           : columns.error()};
  }
  std::shared_ptr<ColumnarTable> table(
      new ColumnarTable(path, acceptsIncomplete, std::move(*file)));
  table->readColumns();
  table->readBlocks();
  return table;
}

void ColumnarTable::readColumns() {
  const std::vector<std::size_t> order = m_file->columnsInRowOrder();
  for (const std::size_t index : order) {
    const GelColumn& column = m_file->column(index);
    m_columns.push_back({.name = column.name,
                         .type = typeOf(column.type),
                         .columnSet = column.columnSet,
                         .index = index});
  }
  int position = 0;
  for (const SortInfos& sorted : storedOrder(*m_file, order)) {
    Column& column = m_columns[static_cast<std::size_t>(sorted.column())];
    column.sortPosition = position++;
    column.isDescending = sorted.isDescending();
  }
}

void ColumnarTable::readBlocks() {
  BlockScan scan(*m_file);
  for (BlockInfo block;;) {
    const BlockScan::Step step = scan.next(block);
    if (step == BlockScan::Step::block) {
      m_blocks.push_back({block.firstRow, block.rowCount, false});
    } else if (step == BlockScan::Step::corrupted && !scan.isRowCountWrong()) {
      addLostBlocks(scan.lostFirstRow(), scan.lostLastRow());
    } else if (step != BlockScan::Step::corrupted) {
      break;
    }
  }
  m_rowCount = m_blocks.empty() ? 0 : m_blocks.back().firstRow + m_blocks.back().rows;
  m_rowCount = m_file->isComplete() ? m_file->rowCount() : m_rowCount;
}

void ColumnarTable::addLostBlocks(std::uint64_t firstRow, std::uint64_t lastRow) {
  for (std::uint64_t row = firstRow; row <= lastRow; row += m_file->rowsInBlock()) {
    const std::uint64_t rows = std::min<std::uint64_t>(m_file->rowsInBlock(), lastRow + 1 - row);
    m_blocks.push_back({row, rows, true});
  }
}

// Those of all blocks take much memory where there are many columns, and few ask for them.
void ColumnarTable::keepDescriptors() {
  if (!m_descriptors.empty()) {
    return;
  }
  m_descriptors.resize(m_blocks.size());
  BlockScan scan(*m_file);
  for (BlockInfo block;;) {
    const BlockScan::Step step = scan.next(block);
    if (step == BlockScan::Step::block && block.index < m_descriptors.size()) {
      m_descriptors[block.index].assign(block.descriptor,
                                        block.descriptor + m_file->descriptorLayout().width());
    } else if (step != BlockScan::Step::corrupted && step != BlockScan::Step::block) {
      return;
    }
  }
}

const ColumnarTable::Statistics* ColumnarTable::statistics(std::size_t block, std::size_t column) {
  const std::lock_guard lock(m_mutex);
  keepDescriptors();
  if (m_descriptors[block].empty()) {
    return nullptr;
  }
  auto [entry, isNew] = m_statistics.try_emplace({block, column});
  if (isNew) {
    entry->second = readStatistics(m_descriptors[block].data(), m_columns[column].index);
  }
  return &entry->second;
}

ColumnarTable::Statistics ColumnarTable::readStatistics(const unsigned char* descriptor,
                                                        std::size_t column) const {
  Statistics made;
  switch (m_file->column(column).type) {
    case GelType::key:
      if (const auto keys = loaded<KeyStatistics>(*m_file, descriptor, column)) {
        made.hasNulls = keys->hasNull;
        made.hasBounds = keys->hasValues();
        made.low = made.hasBounds ? keys->low : 0.0;
        made.high = made.hasBounds ? keys->high : 0.0;
      }
      break;
    case GelType::number:
      if (const auto numbers = loaded<NumberStatistics>(*m_file, descriptor, column)) {
        made.hasNulls = numbers->hasNull;
        made.hasBounds = numbers->hasValues;
        made.hasNotANumber = numbers->hasNotANumber;
        made.low = numbers->low;
        made.high = numbers->high;
      }
      break;
    case GelType::text:
      if (const auto texts = loaded<TextStatistics>(*m_file, descriptor, column)) {
        const auto low = texts->lowerBound();
        const auto high = texts->upperBound();
        made.hasNulls = texts->hasNull;
        made.hasBounds = low && high;
        made.lowText = low.value_or("");
        made.highText = high.value_or("");
      }
      break;
  }
  return made;
}

}  // namespace kelvarin
