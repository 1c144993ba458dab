#include "cli/gel/table_contents.h"

#include <algorithm>
#include <span>

#include "base/null_number.h"
#include "cli/gel/gel_command.h"
#include "cli/gel/messages.h"
#include "columnar/reader/chunk_reader.h"
#include "host/contract/one_row.h"

namespace kelvarin {

namespace {

// Damage beside damage is one.
void addLostRows(TableContents& contents, const BlockScan& scan) {
  std::vector<TableContents::Rows>& lost = contents.lostRows;
  if (!lost.empty() && lost.back().last + 1 == scan.lostFirstRow()) {
    lost.back().last = scan.lostLastRow();
  } else {
    lost.push_back({scan.lostFirstRow(), scan.lostLastRow()});
  }
}

Json jsonOfBound(double bound) {
  if (isFiniteNumber(bound)) {
    return bound;
  }
  return shortestText(bound).toStdString();
}

template <typename Statistics>
std::optional<Statistics> statisticsOf(const GelFile& file, const BlockInfo& block,
                                       std::size_t column) {
  Statistics statistics;
  const bool isRead = file.descriptorLayout().readStatistics(block.descriptor, column, statistics);
  return isRead ? std::optional(statistics) : std::nullopt;
}

ColumnDescription describe(const GelFile& file, const BlockInfo& block, std::size_t column) {
  ColumnDescription described;
  switch (file.column(column).type) {
    case GelType::key:
      if (const auto keys = statisticsOf<KeyStatistics>(file, block, column)) {
        described.hasNull = keys->hasNull;
        described.low = keys->hasValues() ? Json(keys->low) : Json();
        described.high = keys->hasValues() ? Json(keys->high) : Json();
      }
      break;
    case GelType::number:
      if (const auto numbers = statisticsOf<NumberStatistics>(file, block, column)) {
        described.hasNull = numbers->hasNull;
        described.low = numbers->hasValues ? jsonOfBound(numbers->low) : Json();
        described.high = numbers->hasValues ? jsonOfBound(numbers->high) : Json();
      }
      break;
    case GelType::text:
      if (const auto texts = statisticsOf<TextStatistics>(file, block, column)) {
        const auto low = texts->lowerBound();
        const auto high = texts->upperBound();
        described.hasNull = texts->hasNull;
        described.low = low ? Json(*low) : Json();
        described.high = high ? Json(*high) : Json();
      }
      break;
  }
  return described;
}

BlockDescription describe(const GelFile& file, const BlockInfo& info, ChunkReader& chunks,
                          const std::vector<std::size_t>& order) {
  BlockDescription block{.row = info.firstRow, .rows = info.rowCount, .columns = {}};
  chunks.locate(info);
  for (std::size_t i = 0; i < order.size(); ++i) {
    ColumnDescription column = describe(file, info, order[i]);
    if (const auto size = chunks.chunkSize(i)) {
      column.size = *size;
    }
    block.columns.push_back(std::move(column));
  }
  return block;
}

}  // namespace

Result<TableContents, std::string> contentsOf(const GelFile& file, bool withBlocks) {
  const std::vector<std::size_t> order = file.columnsInRowOrder();
  std::unique_ptr<ChunkReader> chunks;
  if (withBlocks) {
    auto opened = ChunkReader::open(file, order);
    if (!opened) {
      return Failure{opened.error()};
    }
    chunks = std::move(*opened);
  }
  TableContents contents;
  BlockScan scan(file);
  for (BlockInfo info;;) {
    switch (scan.next(info)) {
      case BlockScan::Step::block:
        ++contents.blockCount;
        contents.rows += info.rowCount;
        if (chunks) {
          contents.blocks.push_back(describe(file, info, *chunks, order));
        }
        break;
      case BlockScan::Step::corrupted:
        addLostRows(contents, scan);
        break;
      case BlockScan::Step::truncated:
        contents.cutAtRow = scan.lostFirstRow();
        return contents;
      case BlockScan::Step::end:
        return contents;
    }
  }
}

void reportDamage(const GelFile& file, const TableContents& contents, Console& console) {
  const QString name = QString::fromStdString(file.path());
  const std::size_t listed = std::min(contents.lostRows.size(), kMaxLines);
  for (const TableContents::Rows& rows : std::span(contents.lostRows).first(listed)) {
    console.writeLog(LogLevel::error, gel_messages::rowsLost(name, rows.first, rows.last));
  }
  if (contents.lostRows.size() > listed) {
    console.writeLog(LogLevel::error,
                     gel_messages::moreLost(name, contents.lostRows.size() - listed));
  }
  if (contents.cutAtRow) {
    console.writeLog(LogLevel::error, gel_messages::fileCut(name, *contents.cutAtRow));
  }
}

const char* storageWord(StorageCode code) {
  switch (code) {
    case StorageCode::raw:
      return "raw";
    case StorageCode::key:
      return "key";
    case StorageCode::ascendingKey:
      return "key, sorted ascending";
    case StorageCode::descendingKey:
      break;
  }
  return "key, sorted descending";
}

}  // namespace kelvarin
