// Random tables through the writer and back: every bit of every value, whatever the columns, the
// sort order, the sets, the blocks, the number of threads, and the batches that rows come in.
//
// A failure names the table's number, which is all that it depends on; with
// KELVARIN_ROUND_TRIPS=N there are N tables.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <QTemporaryDir>

#include "columnar/format/file_names.h"
#include "columnar/reader/block_reader.h"
#include "columnar/reader/verification.h"
#include "columnar/writer/columnar_hd_writer.h"
#include "host/contract/batch_collector.h"
#include "host/contract/batch_rows.h"
#include "host/contract/column_bytes.h"

namespace kelvarin {

namespace {

using Random = std::mt19937_64;

// The bytes of one value, as a row points to them.
using Cell = std::string;
using Column = std::vector<Cell>;

template <typename T>
Cell cellOf(T value) {
  return {reinterpret_cast<const char*>(&value), sizeof value};
}

Cell cellOf(const std::string& text) {
  return cellOf(static_cast<std::uint32_t>(text.size())) + text;
}

struct Table {
  std::vector<MetaInfo> metas;
  std::vector<Column> columns;
  QVector<SortInfos> order;
  QHash<QString, int> sets;  // empty, or without the columns that are left out
  std::size_t rows = 0;
  int rowsInBlock = 1;

  // The columns that are written, in their order.
  std::vector<std::size_t> written() const {
    std::vector<std::size_t> numbers;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (sets.isEmpty() || sets.value(nameOf(i), -1) >= 0) {
        numbers.push_back(i);
      }
    }
    return numbers;
  }
  static QString nameOf(std::size_t column) { return QStringLiteral("c%1").arg(column); }
};

// Makes a random table.
class TableMaker {
 public:
  explicit TableMaker(unsigned seed) : m_random(seed) {}

  Table make() {
    Table table;
    constexpr int kRowsInBlock[] = {1, 4, 127, 128, 129, 300, 1000};
    table.rowsInBlock = kRowsInBlock[below(std::size(kRowsInBlock))];
    // From one row to three blocks and a row, close to where a block ends.
    const auto block = static_cast<std::size_t>(table.rowsInBlock);
    table.rows = std::max<std::size_t>(1, below(4) * block + below(3));
    for (std::size_t i = 0, count = 1 + below(7); i < count; ++i) {
      constexpr MetaTypeColumn kTypes[] = {MetaTypeColumn::number, MetaTypeColumn::key,
                                           MetaTypeColumn::text};
      const MetaTypeColumn type = kTypes[below(3)];
      table.metas.emplace_back(type, static_cast<int>(below(1000)));
      table.columns.push_back(columnOf(type, table.rows));
    }
    sortOne(table);
    chooseSets(table);
    return table;
  }

 private:
  std::size_t below(std::size_t limit) { return m_random() % limit; }

  Column columnOf(MetaTypeColumn type, std::size_t rows) {
    const auto cells = type == MetaTypeColumn::number ? numbers()
                       : type == MetaTypeColumn::key  ? keys()
                                                      : texts();
    Column column(rows);
    std::generate(column.begin(), column.end(), cells);
    return column;
  }

  std::function<Cell()> numbers() {
    const double power = std::pow(10.0, static_cast<double>(below(6)));
    const std::size_t range = std::size_t{1} << below(40);
    const std::size_t rarity = 2 + below(60);  // of what is not ordinary
    return [this, kind = below(7), power, range, rarity, sum = 0.0]() mutable {
      sum += static_cast<double>(below(range)) - static_cast<double>(range / 3);
      if (below(rarity) == 0) {
        return cellOf(special());
      }
      switch (kind) {
        case 0:
          return cellOf(m_random());
        case 1:
          return cellOf(static_cast<double>(below(range)) / power);
        case 2:
          return cellOf(sum / power);
        case 3:
          return cellOf(std::sqrt(static_cast<double>(below(40))));
        case 4:
          return cellOf(below(9) == 0 ? static_cast<double>(below(range)) : -0.0);
        case 5:
          return cellOf(1.0 + static_cast<double>(below(1 << 30)) * 0x1p-40);
        default:
          return cellOf(special());
      }
    };
  }

  // Missing, NaNs with a sign, a payload or a quiet bit of their own, zeros, ends of the range.
  std::uint64_t special() {
    constexpr std::uint64_t kPatterns[] = {kNullNumberBits,
                                           0x7FF8000000000000ull,
                                           0xFFF8000000000000ull,
                                           0x7FF0000000000001ull,
                                           0xFFFFFFFFFFFFFFFEull,
                                           0x7FF8DEADBEEF0001ull,
                                           0x8000000000000000ull,
                                           0ull,
                                           0x7FF0000000000000ull,
                                           0xFFF0000000000000ull,
                                           1ull,
                                           0x7FEFFFFFFFFFFFFFull,
                                           0x4310000000000000ull,
                                           0xC310000000000001ull};
    return kPatterns[below(std::size(kPatterns))];
  }

  std::function<Cell()> keys() {
    const int bits = static_cast<int>(below(32));
    const std::size_t rarity = 2 + below(60);
    return [this, bits, rarity] {
      if (below(rarity) != 0) {
        return cellOf(static_cast<std::uint32_t>(m_random() & ((1ull << bits) - 1)));
      }
      constexpr std::uint32_t kSpecial[] = {kNullKey, kFirstNullKey, kFirstNullKey - 1, 0};
      return cellOf(kSpecial[below(std::size(kSpecial))]);
    };
  }

  std::function<Cell()> texts() {
    // Null, empty, beyond the basic plane, with a zero byte, no UTF-8 at all, longer than a bound.
    const std::string words[] = {"",
                                 "\U0001F600",
                                 "a\U0010FFFF\U00010000",
                                 std::string(3, '\0'),
                                 "\xED\xA0\x80\xFF",
                                 std::string(80, 'z') + "\U0001F600",
                                 "Zürich"};
    const std::string beginning(below(600), 'b');
    const std::size_t many = std::size_t{1} << below(12);
    const std::size_t rarity = 2 + below(60);
    std::vector<Cell> special{cellOf(kNullTextLength)};
    std::transform(std::begin(words), std::end(words), std::back_inserter(special),
                   [](const std::string& word) { return cellOf(word); });
    return [this, beginning, many, rarity, special] {
      return below(rarity) == 0 ? special[below(special.size())]
                                : cellOf(beginning + std::to_string(below(many)));
    };
  }

  // A sorted key with its missing values where they belong; now and then the order is not kept.
  void sortOne(Table& table) {
    for (std::size_t i = 0; i < table.columns.size() && below(4) != 0; ++i) {
      if (table.metas[i].type() != MetaTypeColumn::key) {
        continue;
      }
      const bool isDescending = below(2) == 0;
      table.order = {SortInfos(static_cast<int>(i), isDescending ? SortType::numberDescending
                                                                 : SortType::numberAscending)};
      if (below(4) == 0) {
        return;
      }
      const auto rank = [](const Cell& cell) {
        const auto key = keyFromBytes(reinterpret_cast<const unsigned char*>(cell.data()));
        return isNullKey(key) ? -1 : std::int64_t{key};
      };
      Column& column = table.columns[i];
      std::sort(column.begin(), column.end(), [&](const Cell& left, const Cell& right) {
        return isDescending ? rank(left) > rank(right) : rank(left) < rank(right);
      });
      return;
    }
  }

  void chooseSets(Table& table) {
    if (below(2) == 0) {
      return;
    }
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      // Sets without columns, and columns without a set.
      table.sets[Table::nameOf(i)] = i == 0 ? 2 : static_cast<int>(below(5)) - 1;
    }
  }

  Random m_random;
};

class RoundTrip : public ::testing::Test {
 protected:
  // Row by row; with `random` in batches, some of whose stored rows are not selected.
  std::string write(const Table& table, int threads, Random* random = nullptr) {
    const QString path = m_folder.filePath(QStringLiteral("%1.cgel_kelvarin").arg(m_files++));
    PinOutMetaData described = descriptionOf(table);
    OneRow row(&described);
    GlobalParameters parameters;
    ColumnarHDWriter writer;
    EXPECT_TRUE(writer.openHD(path, table.rowsInBlock, table.sets, &parameters, threads));
    if (random != nullptr) {
      EXPECT_TRUE(writer.layOut(&row));
      writeBatches(table, writer, row, *random);
    } else {
      for (std::size_t number = 0; number < table.rows; ++number) {
        point(row, table, number);
        EXPECT_TRUE(writer.writeToHD(&row));
      }
    }
    EXPECT_TRUE(writer.closeHD(GlobalParameters::RunningState::endedNormally));
    return path.toStdString();
  }

  static void point(OneRow& row, const Table& table, std::size_t number) {
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      row.getAllColForWrite()[i] =
          reinterpret_cast<unsigned char*>(const_cast<char*>(table.columns[i][number].data()));
    }
  }

  static void writeBatches(const Table& table, ColumnarHDWriter& writer, OneRow& row,
                           Random& random) {
    BatchCollector collector(typesOf(row), {.rows = 1 << 20, .bytes = 1 << 30});
    for (std::size_t next = 0; next < table.rows;) {
      const std::size_t end = std::min(table.rows, next + 1 + random() % 700);
      const bool hasOthers = random() % 2 == 0;
      const std::shared_ptr<std::uint32_t[]> selection(new std::uint32_t[end - next]);
      for (std::size_t i = 0; i < end - next; ++i) {
        while (hasOthers && random() % 3 == 0) {
          point(row, table, random() % table.rows);
          collector.append(row);
        }
        selection[i] = static_cast<std::uint32_t>(collector.rowCount());
        point(row, table, next + i);
        collector.append(row);
      }
      RowBatchPointer batch = collector.take();
      if (hasOthers) {
        batch = std::make_shared<RowBatch>(batch->storedRows(), batch->columns(), selection,
                                           end - next);
      }
      const std::size_t middle = random() % (end - next + 1);
      EXPECT_TRUE(writer.writeToHD(*batch, 0, middle));
      EXPECT_TRUE(writer.writeToHD(*batch, middle, end - next));
      next = end;
    }
  }

  // The table at `path` once more, from the batches that it is read in: there, rows share texts.
  std::string copy(const Table& table, const GelFile& file) {
    const QString path = m_folder.filePath(QStringLiteral("%1.cgel_kelvarin").arg(m_files++));
    PinOutMetaData described = descriptionOf(table);
    const OneRow columns(&described);
    GlobalParameters parameters;
    ColumnarHDWriter writer;
    EXPECT_TRUE(writer.openHD(path, table.rowsInBlock, table.sets, &parameters, 2));
    EXPECT_TRUE(writer.layOut(&columns));
    auto reader = BlockReader::open(file, file.columnsInRowOrder());
    for (ReadEvent event = (*reader)->next(); event.batch; event = (*reader)->next()) {
      EXPECT_TRUE(writer.writeToHD(*event.batch, 0, event.batch->rowCount()));
    }
    EXPECT_TRUE(writer.closeHD(GlobalParameters::RunningState::endedNormally));
    return path.toStdString();
  }

  static PinOutMetaData descriptionOf(const Table& table) {
    PinOutMetaData described;
    described.setColumnCount(static_cast<int>(table.columns.size()));
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      described.setName(static_cast<int>(i), Table::nameOf(i));
      described.setMeta(static_cast<int>(i), table.metas[i]);
    }
    described.setSortOrder(table.order);
    return described;
  }

  static std::vector<std::string> contents(const std::string& main) {
    std::vector<std::string> contents;
    for (int set = -1; set < 5; ++set) {
      std::ifstream file(set < 0 ? main : sideFileName(main, set), std::ios::binary);
      contents.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    return contents;
  }

  // `chosen` counts in the list of written columns.
  static void expectRead(const Table& table, const GelFile& file,
                         const std::vector<std::size_t>& chosen) {
    const std::vector<std::size_t> written = table.written();
    const std::vector<std::size_t> inFile = file.columnsInRowOrder();
    ASSERT_EQ(inFile.size(), written.size());
    std::vector<std::size_t> columns;
    for (const std::size_t column : chosen) {
      columns.push_back(inFile[column]);
    }
    auto reader = BlockReader::open(file, columns);
    ASSERT_TRUE(static_cast<bool>(reader));
    std::size_t row = 0;
    std::vector<unsigned char*> values(columns.size());
    for (BatchRows rows;;) {
      const ReadEvent event = (*reader)->next();
      ASSERT_TRUE(event.kind == ReadEvent::Kind::rows || event.kind == ReadEvent::Kind::end);
      for (rows.start(event.batch); rows.rowsLeft() > 0; ++row) {
        rows.take(values.data());
        ASSERT_LT(row, table.rows);
        for (std::size_t i = 0; i < columns.size(); ++i) {
          const MetaTypeColumn type = file.meta(columns[i]).type();
          const Cell got(reinterpret_cast<const char*>(values[i]), sizeOfValue(type, values[i]));
          ASSERT_EQ(got, table.columns[written[chosen[i]]][row]) << "row " << row;
        }
      }
      if (event.isLast()) {
        break;
      }
    }
    EXPECT_EQ(row, table.rows);
  }

  static void expectWhole(const Table& table, const GelFile& file) {
    const std::vector<std::size_t> written = table.written();
    const std::vector<std::size_t> inFile = file.columnsInRowOrder();
    for (std::size_t i = 0; i < inFile.size(); ++i) {
      EXPECT_EQ(file.meta(inFile[i]).type(), table.metas[written[i]].type());
      EXPECT_EQ(file.meta(inFile[i]).argument(), table.metas[written[i]].argument());
      EXPECT_EQ(file.column(inFile[i]).name, Table::nameOf(written[i]).toStdString());
    }
    const GelVerification result = verifyGelFile(file, [](const GelDamage& damage) {
      ADD_FAILURE() << "damage of kind " << static_cast<int>(damage.kind) << " in block "
                    << damage.block << ", column " << damage.column;
    });
    EXPECT_EQ(result.rows, table.rows);
  }

  QTemporaryDir m_folder;
  int m_files = 0;
};

TEST_F(RoundTrip, ARandomTableComesBackBitByBit) {
  const char* wanted = std::getenv("KELVARIN_ROUND_TRIPS");
  const unsigned count = wanted == nullptr ? 100 : static_cast<unsigned>(std::atoi(wanted));
  for (unsigned seed = 0; seed < count && !HasFailure(); ++seed) {
    SCOPED_TRACE("table " + std::to_string(seed));
    const Table table = TableMaker(seed).make();
    const std::string path = write(table, 1);
    EXPECT_EQ(contents(write(table, 2 + static_cast<int>(seed % 7))), contents(path));
    Random random(seed);
    EXPECT_EQ(contents(write(table, 2, &random)), contents(path));
    const auto file = GelFile::open(path, IncompleteFiles::refuse);
    ASSERT_TRUE(static_cast<bool>(file));
    expectWhole(table, **file);
    if (table.written().size() == table.columns.size()) {
      EXPECT_EQ(contents(copy(table, **file)), contents(path));
    }
    std::vector<std::size_t> columns(table.written().size());
    std::iota(columns.begin(), columns.end(), std::size_t{0});
    expectRead(table, **file, columns);
    std::shuffle(columns.begin(), columns.end(), Random(seed));
    columns.resize((columns.size() + 1) / 2);
    expectRead(table, **file, columns);
  }
}

}  // namespace

}  // namespace kelvarin
