#include "columnar/actions/table_summary.h"

#include <numeric>

#include "columnar/actions/opened_table.h"
#include "columnar/actions/system_paths.h"
#include "columnar/reader/chunk_reader.h"
#include "columnar/reader/stored_order.h"

namespace kelvarin {

namespace {

TableSummary headOf(const GelFile& file, const std::vector<std::size_t>& order) {
  TableSummary summary;
  for (const std::size_t index : order) {
    const GelColumn& column = file.column(index);
    summary.columns.push_back({.name = QString::fromStdString(column.name),
                               .type = column.type,
                               .set = column.columnSet});
  }
  summary.order = storedOrder(file, order);
  summary.rowsInBlock = file.rowsInBlock();
  summary.columnSets = file.columnSetCount();
  summary.isComplete = file.isComplete();
  summary.isBeingWritten = !file.isComplete() && file.source().isBeingWritten();
  return summary;
}

void addBlock(TableSummary& summary, ChunkReader* chunks, const BlockInfo& block) {
  ++summary.blocks;
  summary.rows += block.rowCount;
  if (chunks == nullptr) {
    return;
  }
  chunks->locate(block);
  for (std::size_t i = 0; i < summary.columns.size(); ++i) {
    summary.columns[i].storedBytes += chunks->chunkSize(i).value_or(0);
  }
}

void addBlocks(TableSummary& summary, const GelFile& file, ChunkReader* chunks,
               const std::function<bool()>& isStopped) {
  BlockScan scan(file);
  for (BlockInfo block; !isStopped || !isStopped();) {
    switch (scan.next(block)) {
      case BlockScan::Step::block:
        addBlock(summary, chunks, block);
        break;
      case BlockScan::Step::corrupted:
        summary.lostRows += scan.lostLastRow() - scan.lostFirstRow() + 1;
        break;
      case BlockScan::Step::truncated:
        summary.isCut = true;
        return;
      case BlockScan::Step::end:
        return;
    }
  }
}

}  // namespace

std::uint64_t TableSummary::storedBytes() const {
  return std::accumulate(
      columns.begin(), columns.end(), std::uint64_t{0},
      [](std::uint64_t sum, const Column& column) { return sum + column.storedBytes; });
}

Result<TableSummary, QString> summaryOf(const QString& name,
                                        const std::function<bool()>& isStopped) {
  const auto file = openTable(name);
  if (!file) {
    return Failure{file.error()};
  }
  const std::vector<std::size_t> order = (*file)->columnsInRowOrder();
  TableSummary summary = headOf(**file, order);
  summary.file = name;
  const auto chunks = ChunkReader::open(**file, order);
  if (!chunks) {
    summary.missingSideFile = shownPath(chunks.error());
  }
  addBlocks(summary, **file, chunks ? chunks->get() : nullptr, isStopped);
  return summary;
}

}  // namespace kelvarin
