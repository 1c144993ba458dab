// This product's side of the benchmark: batches go to the writer and come from the reader as the
// actions pass them on.
#include <algorithm>
#include <deque>
#include <future>
#include <stdexcept>

#include "benchmarks/gel/digest.h"
#include "benchmarks/gel/table_format.h"
#include "columnar/reader/block_units.h"
#include "columnar/writer/columnar_hd_writer.h"
#include "host/contract/batch_collector.h"
#include "host/contract/batch_rows.h"

namespace kelvarin {

namespace {

std::vector<RowBatchPointer> batchesOf(const SampleTable& table) {
  std::vector<MetaTypeColumn> types;
  for (const SampleColumn& column : table.columns) {
    types.push_back(column.type());
  }
  std::vector<RowBatchPointer> batches;
  std::vector<const unsigned char*> values(types.size());
  BatchCollector collector(types, BatchSize{});
  for (std::size_t row = 0; row < table.rows; ++row) {
    for (std::size_t i = 0; i < values.size(); ++i) {
      values[i] = table.columns[i].value(row);
    }
    collector.append(values.data());
    if (collector.isFull()) {
      batches.push_back(collector.take());
    }
  }
  if (!collector.isEmpty()) {
    batches.push_back(collector.take());
  }
  return batches;
}

// The columns of a table's rows, sorted by the first of the three.
void describeColumns(const SampleTable& table, OneRow& row) {
  QVector<QString> names;
  QVector<MetaInfo> metas;
  for (const SampleColumn& column : table.columns) {
    names.push_back(QString::fromStdString(column.name()));
    metas.push_back({column.type(), 0});
  }
  row.setNumberOfColumns(static_cast<int>(names.size()));
  row.setColName(names);
  row.setMetaData(metas);
  if (table.threeColumns.empty()) {
    return;
  }
  const QString sorted = QString::fromStdString(table.threeColumns[0]);
  row.setSortInfos({{row.getIndexOfColumn(sorted), SortType::numberAscending}});
}

double addendOf(const BatchColumn& column, std::size_t row) {
  if (column.type() == MetaTypeColumn::text) {
    return lengthFromBytes(column.text(row));
  }
  const double number = column.numbers()[row];
  return isNullNumber(number) ? 0.0 : number;
}

// The keys from `low` to below `high` of a batch's first column choose the rows.
void addRange(const RowBatch& batch, std::uint32_t low, std::uint32_t high, Found& found) {
  const std::uint32_t* keys = batch.column(0).keys();
  const BatchColumn& added = batch.column(2);
  for (std::size_t row = 0; row < batch.rowCount(); ++row) {
    if (keys[row] >= low && keys[row] < high) {
      ++found.rows;
      found.sum += addendOf(added, row);
    }
  }
}

void addDigest(const RowBatchPointer& batch, Found& found) {
  std::vector<unsigned char*> row(batch->columnCount());
  BatchRows rows;
  for (rows.start(batch); rows.rowsLeft() > 0;) {
    rows.take(row.data());
    for (std::size_t i = 0; i < row.size(); ++i) {
      found.digest += digestOf(batch->column(i).type(), row[i]) * (i + 1);
    }
  }
}

std::uint64_t sumOfColumn(const BatchColumn& column, std::size_t rows) {
  switch (column.type()) {
    case MetaTypeColumn::number:
      return sumOf<std::uint64_t>(column.value(0), rows);
    case MetaTypeColumn::key:
      return sumOf<std::uint32_t>(column.value(0), rows);
    default:
      break;
  }
  std::uint64_t sum = 0;
  for (std::size_t row = 0; row < rows; ++row) {
    sum += lengthFromBytes(column.text(row));
  }
  return sum;
}

void addValues(const RowBatch& batch, Found& found) {
  for (const BatchColumn& column : batch.columns()) {
    found.added += sumOfColumn(column, batch.rowCount());
  }
}

class GelFormat : public TableFormat {
 public:
  GelFormat(int rowsInBlock, int threads) : m_rowsInBlock(rowsInBlock), m_threads(threads) {}

  std::string name() const override { return "gel"; }
  std::string pathOf(const SampleTable& table, const std::string& folder) const override {
    return folder + "/" + table.name + ".cgel_kelvarin";
  }
  void prepare(const SampleTable& table) override { m_batches = batchesOf(table); }

  void write(const SampleTable& table, const std::string& folder) override {
    GlobalParameters parameters;
    ColumnarHDWriter writer;
    bool isWritten = writer.openHD(QString::fromStdString(pathOf(table, folder)), m_rowsInBlock, {},
                                   &parameters, m_threads);
    PinOutMetaData columns;
    OneRow row(&columns);
    describeColumns(table, row);
    isWritten = isWritten && writer.layOut(&row);
    for (const RowBatchPointer& batch : m_batches) {
      isWritten = isWritten && writer.writeToHD(*batch, 0, batch->rowCount());
    }
    if (!writer.closeHD(GlobalParameters::RunningState::endedNormally) || !isWritten) {
      throw std::runtime_error("cannot write " + pathOf(table, folder));
    }
  }

  Found scan(const SampleTable& table, const std::string& folder,
             const std::vector<std::string>& columns, Values values) override {
    const auto file = open(table, folder);
    const std::vector<std::size_t> indices = columnIndices(*file, columns);
    Found found;
    forEachBatch(*file, indices, {}, [&](const RowBatchPointer& batch) {
      found.rows += batch->rowCount();
      if (values == Values::digested) {
        addDigest(batch, found);
      } else {
        addValues(*batch, found);
      }
    });
    return found;
  }

  Found range(const SampleTable& table, const std::string& folder) override {
    const auto file = open(table, folder);
    const std::vector<std::size_t> indices = columnIndices(*file, table.threeColumns);
    const std::uint32_t low = table.rangeBegin();
    const std::uint32_t high = table.rangeEnd();
    const auto mayHaveRows = [&](const GelFile& opened, const BlockInfo& block) {
      KeyStatistics statistics;
      return !opened.descriptorLayout().readStatistics(block.descriptor, indices[0], statistics) ||
             (statistics.high >= low && statistics.low < high);
    };
    Found found;
    forEachBatch(*file, indices, mayHaveRows,
                 [&](const RowBatchPointer& batch) { addRange(*batch, low, high, found); });
    return found;
  }

 private:
  std::unique_ptr<GelFile> open(const SampleTable& table, const std::string& folder) const {
    auto file = GelFile::open(pathOf(table, folder), IncompleteFiles::refuse);
    if (!file) {
      throw std::runtime_error("cannot open " + pathOf(table, folder));
    }
    return std::move(*file);
  }

  static std::vector<std::size_t> columnIndices(const GelFile& file,
                                                const std::vector<std::string>& columns) {
    if (columns.empty()) {
      return file.columnsInRowOrder();
    }
    std::vector<std::size_t> indices;
    for (const std::string& name : columns) {
      const auto& all = file.columns();
      const auto found = std::find_if(all.begin(), all.end(),
                                      [&](const GelColumn& column) { return column.name == name; });
      indices.push_back(static_cast<std::size_t>(found - all.begin()));
    }
    return indices;
  }

  // Units are decoded on as many threads.
  template <typename Use>
  void forEachBatch(const GelFile& file, const std::vector<std::size_t>& indices,
                    BlockUnits::WantsBlock wantsBlock, Use use) const {
    auto units = BlockUnits::open(file, indices, std::move(wantsBlock));
    if (!units) {
      throw std::runtime_error("cannot open " + units.error());
    }
    const auto launch = m_threads > 1 ? std::launch::async : std::launch::deferred;
    std::deque<std::future<std::vector<ReadEvent>>> decoded;
    const auto readAhead = [&] {
      std::unique_ptr<BlockUnit> unit;
      while (decoded.size() < static_cast<std::size_t>(m_threads) &&
             (unit = (*units)->next()) != nullptr) {
        decoded.push_back(std::async(launch, [read = std::move(unit)] {
          read->parse();
          return std::move(read->events());
        }));
      }
    };
    for (readAhead(); !decoded.empty(); readAhead()) {
      for (const ReadEvent& event : decoded.front().get()) {
        if (event.kind != ReadEvent::Kind::rows) {
          throw std::runtime_error(file.path() + " is damaged");
        }
        use(event.batch);
      }
      decoded.pop_front();
    }
    if ((*units)->end().kind != ReadEvent::Kind::end) {
      throw std::runtime_error(file.path() + " is damaged");
    }
  }

  const int m_rowsInBlock;
  const int m_threads;
  std::vector<RowBatchPointer> m_batches;
};

}  // namespace

std::unique_ptr<TableFormat> makeGelFormat(int rowsInBlock, int threads) {
  return std::make_unique<GelFormat>(rowsInBlock, threads);
}

}  // namespace kelvarin
