// Files are read in units, which are parsed on any thread.
#include <random>
#include <thread>

#include "arrow/array/builder_binary.h"
#include "arrow/array/builder_primitive.h"
#include "host/tables/arrow/arrow_formats.h"
#include "host/tables/arrow/tests/typed_arrays.h"
#include "host/tables/files/tests/table_folder.h"
#include "host/testing/value.h"

namespace kelvarin {

using testing::FileForm;
using testing::Format;
using testing::TableFolder;
using testing::Values;

namespace {

std::unique_ptr<BatchReader> readerOf(Format format, const std::string& path,
                                      const ColumnRules& rules = {}) {
  auto reader =
      (*ArrowFormats::load())
          ->makeReader(format == Format::parquet ? ArrowFormat::parquet : ArrowFormat::arrow,
                       QString::fromStdString(path), {rules});
  EXPECT_TRUE(reader->open([] { return false; }));
  return reader;
}

std::vector<std::unique_ptr<TableUnit>> unitsOf(BatchReader& reader) {
  std::vector<std::unique_ptr<TableUnit>> units;
  while (auto unit = reader.readUnit()) {
    units.push_back(std::move(unit));
  }
  return units;
}

void addRows(const TableUnit& unit, std::vector<Values>& rows) {
  if (unit.batch() == nullptr) {
    return;
  }
  const RowBatch& batch = *unit.batch();
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t, std::size_t storedRow) {
    Values& values = rows.emplace_back();
    for (const BatchColumn& column : batch.columns()) {
      values.push_back(testing::valueFromBytes(column.value(storedRow), column.type()));
    }
  });
}

std::vector<Values> rowsOf(const std::vector<std::unique_ptr<TableUnit>>& units) {
  std::vector<Values> rows;
  for (const auto& unit : units) {
    EXPECT_EQ(unit->failure(), QString());
    addRows(*unit, rows);
  }
  return rows;
}

// Doubles, integers, keys and texts that repeat, each without nulls and with; and the rows that
// they are.
struct Sample {
  std::shared_ptr<arrow::Table> table;
  std::vector<Values> rows;
};

Sample sample(std::size_t count) {
  std::vector<std::optional<double>> doubles[2];
  std::vector<std::optional<std::int64_t>> integers[2];
  std::vector<std::optional<std::uint32_t>> keys[2];
  std::vector<std::optional<std::string>> texts[2];
  Sample made;
  std::mt19937 random(5);
  for (std::size_t row = 0; row < count; ++row) {
    Values& values = made.rows.emplace_back();
    for (const bool hasNulls : {false, true}) {
      const auto number = static_cast<std::int64_t>(row) - 500;
      const bool isNull = hasNulls && random() % 3 == 0;
      const std::string text = "text " + std::to_string(random() % 300);
      doubles[hasNulls].push_back(isNull ? std::nullopt : std::optional(number / 8.0));
      integers[hasNulls].push_back(isNull ? std::nullopt : std::optional(number));
      keys[hasNulls].push_back(isNull ? std::nullopt
                                      : std::optional(static_cast<std::uint32_t>(row)));
      texts[hasNulls].push_back(isNull ? std::nullopt : std::optional(text));
      const Values present{number / 8.0, static_cast<double>(number), static_cast<unsigned>(row),
                           text};
      const Values absent{nullptr, nullptr, nullptr, nullptr};
      const Values& added = isNull ? absent : present;
      values.insert(values.end(), added.begin(), added.end());
    }
  }
  arrow::FieldVector fields;
  arrow::ArrayVector arrays;
  for (const bool hasNulls : {false, true}) {
    arrays.push_back(testing::array<arrow::DoubleBuilder, double>(doubles[hasNulls]));
    arrays.push_back(testing::array<arrow::Int64Builder, std::int64_t>(integers[hasNulls]));
    arrays.push_back(testing::array<arrow::UInt32Builder, std::uint32_t>(keys[hasNulls]));
    arrays.push_back(testing::array<arrow::StringBuilder, std::string>(texts[hasNulls]));
  }
  for (const auto& array : arrays) {
    fields.push_back(arrow::field("c" + std::to_string(fields.size()), array->type()));
  }
  made.table = arrow::Table::Make(arrow::schema(fields), arrays);
  return made;
}

}  // namespace

TEST(ArrowUnits, rowGroupsOfAnySizeHaveTheSameRows) {
  const TableFolder folder;
  const Sample small = sample(90);
  const Sample large = sample(40000);
  for (const Format format : {Format::parquet, Format::ipc}) {
    // Dictionaries for all texts, for the first ones, and for none.
    for (const std::int64_t dictionaryBytes : {1 << 20, 1500, 0}) {
      for (const std::int64_t rowsInGroup : {1, 2, 7, 1000}) {
        testing::writeFile(folder.path("t"), format, *small.table, {rowsInGroup, dictionaryBytes});
        const auto reader = readerOf(format, folder.path("t"));
        const auto units = unitsOf(*reader);
        for (const auto& unit : units) {
          unit->parse();
        }
        EXPECT_EQ(rowsOf(units), small.rows) << rowsInGroup;
      }
      for (const std::int64_t rowsInGroup : {5000, 16384, 40000}) {
        testing::writeFile(folder.path("t"), format, *large.table, {rowsInGroup, dictionaryBytes});
        const auto reader = readerOf(format, folder.path("t"));
        auto units = unitsOf(*reader);
        for (const auto& unit : units) {
          unit->parse();
        }
        EXPECT_EQ(rowsOf(units), large.rows) << rowsInGroup;
      }
    }
  }
}

TEST(ArrowUnits, areParsedInAnyOrderAndAtTheSameTime) {
  const TableFolder folder;
  const Sample large = sample(150000);
  for (const Format format : {Format::parquet, Format::ipc}) {
    testing::writeFile(folder.path("t"), format, *large.table, {70000});
    const auto backwards = readerOf(format, folder.path("t"));
    auto units = unitsOf(*backwards);
    for (auto unit = units.rbegin(); unit != units.rend(); ++unit) {
      (*unit)->parse();
    }
    EXPECT_EQ(rowsOf(units), large.rows);

    const auto together = readerOf(format, folder.path("t"));
    units = unitsOf(*together);
    std::atomic<std::size_t> next{0};
    {
      std::vector<std::jthread> threads;
      for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
          for (std::size_t unit = next++; unit < units.size(); unit = next++) {
            units[unit]->parse();
          }
        });
      }
    }
    EXPECT_EQ(rowsOf(units), large.rows);

    // Units that nobody wants are not parsed, and the reader may be gone.
    auto reader = readerOf(format, folder.path("t"));
    units = unitsOf(*reader);
    reader.reset();
    units[0].reset();
    units[3]->parse();
    std::vector<Values> rows;
    addRows(*units[3], rows);
    EXPECT_EQ(rows[0], large.rows[3 * 16384]);
  }
}

// Of several columns with bad values, the first row counts.
TEST(ArrowUnits, rowsBeforeABadValueAreThere) {
  const TableFolder folder;
  constexpr std::int64_t kNoDouble = 9007199254740993;
  const auto table = [&](std::size_t badRow, std::size_t otherBadRow) {
    std::vector<std::optional<std::int64_t>> columns[2];
    for (std::size_t row = 0; row < 20000; ++row) {
      columns[0].push_back(row == badRow ? kNoDouble : static_cast<std::int64_t>(row));
      columns[1].push_back(row == otherBadRow ? kNoDouble + 2 : 1);
    }
    return arrow::Table::Make(
        arrow::schema({arrow::field("a", arrow::int64()), arrow::field("b", arrow::int64())}),
        {testing::array<arrow::Int64Builder, std::int64_t>(columns[0]),
         testing::array<arrow::Int64Builder, std::int64_t>(columns[1])});
  };
  for (const Format format : {Format::parquet, Format::ipc}) {
    testing::writeFile(folder.path("t"), format, *table(17010, 17003), {8000});
    const auto reader = readerOf(format, folder.path("t"));
    std::size_t rows = 0;
    QString failure;
    for (const auto& unit : unitsOf(*reader)) {
      unit->parse();
      reader->accept(*unit);
      rows += unit->batch() == nullptr ? 0 : unit->batch()->rowCount();
      failure = unit->failure();
    }
    EXPECT_EQ(rows, 17003u);
    EXPECT_TRUE(failure.contains("row 17004, column 'b': 9007199254740995 cannot be held"))
        << failure.toStdString();

    const auto tolerant = readerOf(format, folder.path("t"), {true, {}});
    for (const auto& unit : unitsOf(*tolerant)) {
      unit->parse();
      tolerant->accept(*unit);
      EXPECT_EQ(unit->failure(), QString());
    }
    ASSERT_EQ(tolerant->warnings().size(), 2);
    EXPECT_TRUE(tolerant->warnings()[0].contains("row 17011: this value of column 'a'"));
  }
}

}  // namespace kelvarin
