// This product's side of the benchmark: rows go to the writer one by one; blocks come from the
// reader as a reading action gets them.
#include <algorithm>
#include <stdexcept>

#include "benchmarks/gel/digest.h"
#include "benchmarks/gel/table_format.h"
#include "columnar/codecs/byte_buffer.h"
#include "columnar/reader/block_reader.h"
#include "columnar/reader/blocks_ahead.h"
#include "columnar/writer/columnar_hd_writer.h"

namespace kelvarin {

namespace {

constexpr int kRowsInBlock = 5000;

std::string pathOf(const SampleTable& table, const std::string& folder) {
  return folder + "/" + table.name + ".cgel_kelvarin";
}

// A table in memory, row by row: the numbers and keys of a row, then its texts.
class StoredRows {
 public:
  void fill(const SampleTable& table) {
    m_fixed.clear();
    m_texts.clear();
    m_fixedSize = 0;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      const std::size_t size = table.columns[i].step();
      if (size == 0) {
        m_texts.push_back(i);
      } else {
        m_fixed.push_back({i, m_fixedSize});
        m_fixedSize += size;
      }
    }
    m_bytes.clear();
    for (std::size_t row = 0; row < table.rows; ++row) {
      for (const Fixed& fixed : m_fixed) {
        const SampleColumn& column = table.columns[fixed.column];
        m_bytes.append(Bytes(column.value(row), column.step()));
      }
      for (const std::size_t text : m_texts) {
        const unsigned char* value = table.columns[text].value(row);
        m_bytes.append(Bytes(value, sizeof(std::uint32_t) + textFromBytes(value).size()));
      }
    }
  }

  const unsigned char* begin() const { return m_bytes.data(); }
  // Points `values` at the values of the row that begins there; returns its end.
  const unsigned char* point(const unsigned char* row, unsigned char** values) const {
    for (const Fixed& fixed : m_fixed) {
      values[fixed.column] = const_cast<unsigned char*>(row) + fixed.offset;
    }
    row += m_fixedSize;
    for (const std::size_t text : m_texts) {
      values[text] = const_cast<unsigned char*>(row);
      row += sizeof(std::uint32_t) + textFromBytes(row).size();
    }
    return row;
  }

 private:
  struct Fixed {
    std::size_t column;
    std::size_t offset;
  };

  std::vector<Fixed> m_fixed;
  std::size_t m_fixedSize = 0;
  std::vector<std::size_t> m_texts;  // columns
  ByteBuffer m_bytes;
};

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
  const QString sorted = QString::fromStdString(table.threeColumns[0]);
  row.setSortInfos({{row.getIndexOfColumn(sorted), SortType::numberAscending}});
}

// The numbers from `low` to below `high` of a block's key column choose the rows.
void addRange(DecodedBlock& block, std::uint32_t low, std::uint32_t high, Found& found) {
  const unsigned char* keys = block.column(0).values.data();
  const unsigned char* numbers = block.column(2).values.data();
  for (std::uint64_t row = 0; row < block.rowCount(); ++row) {
    const auto key = loadPacked<std::uint32_t>(keys + row * sizeof(std::uint32_t));
    if (key < low || key >= high) {
      continue;
    }
    const auto number = loadPacked<double>(numbers + row * sizeof(double));
    ++found.rows;
    found.sum += isNullNumber(number) ? 0.0 : number;
  }
}

std::uint64_t sumOfColumn(GelType type, const DecodedColumn& column, std::size_t rows) {
  switch (type) {
    case GelType::number:
      return sumOf<std::uint64_t>(column.values.data(), rows);
    case GelType::key:
      return sumOf<std::uint32_t>(column.values.data(), rows);
    case GelType::text:
      break;
  }
  std::uint64_t sum = 0;
  for (const std::uint32_t offset : column.texts.offsets) {
    sum += loadPacked<std::uint32_t>(column.texts.bytes.data() + offset);
  }
  return sum;
}

class GelFormat : public TableFormat {
 public:
  explicit GelFormat(int threads) : m_threads(threads) {}

  std::string name() const override { return "gel"; }
  void prepare(const SampleTable& table) override { m_rows.fill(table); }

  void write(const SampleTable& table, const std::string& folder) override {
    GlobalParameters parameters;
    ColumnarHDWriter writer;
    bool isWritten = writer.openHD(QString::fromStdString(pathOf(table, folder)), kRowsInBlock, {},
                                   &parameters, m_threads);
    PinOutMetaData columns;
    OneRow row(&columns);
    describeColumns(table, row);
    const unsigned char* next = m_rows.begin();
    for (std::size_t count = 0; isWritten && count < table.rows; ++count) {
      next = m_rows.point(next, row.getAllColForWrite());
      isWritten = writer.writeToHD(&row);
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
    forEachBlock(*file, indices, {}, [&](DecodedBlock& block) {
      found.rows += block.rowCount();
      if (values == Values::digested) {
        addDigest(*file, indices, block, found);
      } else {
        addValues(*file, indices, block, found);
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
    forEachBlock(*file, indices, mayHaveRows,
                 [&](DecodedBlock& block) { addRange(block, low, high, found); });
    return found;
  }

 private:
  static std::unique_ptr<GelFile> open(const SampleTable& table, const std::string& folder) {
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

  static void addDigest(const GelFile& file, const std::vector<std::size_t>& indices,
                        DecodedBlock& block, Found& found) {
    std::vector<unsigned char*> row(indices.size());
    while (block.takeRow(row.data())) {
      for (std::size_t i = 0; i < row.size(); ++i) {
        found.digest += digestOf(file.meta(indices[i]).type(), row[i]) * (i + 1);
      }
    }
  }

  static void addValues(const GelFile& file, const std::vector<std::size_t>& indices,
                        DecodedBlock& block, Found& found) {
    for (std::size_t i = 0; i < indices.size(); ++i) {
      found.added += sumOfColumn(file.column(indices[i]).type, block.column(i), block.rowCount());
    }
  }

  template <typename Use>
  void forEachBlock(const GelFile& file, const std::vector<std::size_t>& indices,
                    BlockReader::WantsBlock wantsBlock, Use use) const {
    auto reader = BlockReader::open(file, indices, std::move(wantsBlock));
    if (!reader) {
      throw std::runtime_error("cannot open " + reader.error());
    }
    constexpr int kBlocksAhead = 2;
    BlocksAhead blocks([&](auto spare) { return (*reader)->next(std::move(spare)); },
                       m_threads > 1 ? kBlocksAhead : 0);
    for (ReadEvent event = blocks.next(); event.kind != ReadEvent::Kind::end;
         event = blocks.next()) {
      if (event.kind != ReadEvent::Kind::block) {
        throw std::runtime_error(file.path() + " is damaged");
      }
      use(*event.block);
      blocks.recycle(std::move(event.block));
    }
  }

  const int m_threads;
  StoredRows m_rows;
};

}  // namespace

std::unique_ptr<TableFormat> makeGelFormat(int threads) {
  return std::make_unique<GelFormat>(threads);
}

}  // namespace kelvarin
