// Files that the writers make, as the library reads them.
#include <cmath>
#include <functional>
#include <random>

#include "arrow/array/builder_binary.h"
#include "arrow/array/builder_primitive.h"
#include "base/task_pool.h"
#include "host/tables/arrow/arrow_formats.h"
#include "host/tables/arrow/tests/typed_arrays.h"
#include "host/tables/files/tests/table_folder.h"
#include "parquet/file_reader.h"
#include "parquet/metadata.h"
#include "parquet/page_index.h"
#include "parquet/statistics.h"

namespace kelvarin {

using testing::Format;
using testing::TableFolder;

namespace {

// A column of a batch, and what a file should have of it.
struct Column {
  BatchColumn values;
  std::shared_ptr<arrow::Array> expected;
};

Column numbers(std::size_t count, const std::function<double(std::size_t)>& at) {
  auto values = std::make_shared<std::vector<double>>();
  std::vector<std::optional<double>> expected;
  for (std::size_t row = 0; row < count; ++row) {
    values->push_back(at(row));
    expected.push_back(isNullNumber(at(row)) ? std::nullopt : std::optional(at(row)));
  }
  return {BatchColumn::ofNumbers(values, values->data()),
          testing::array<arrow::DoubleBuilder, double>(expected)};
}

Column keys(std::size_t count, const std::function<std::uint32_t(std::size_t)>& at) {
  auto values = std::make_shared<std::vector<std::uint32_t>>();
  std::vector<std::optional<std::uint32_t>> expected;
  for (std::size_t row = 0; row < count; ++row) {
    values->push_back(at(row));
    expected.push_back(isNullKey(at(row)) ? std::nullopt : std::optional(at(row)));
  }
  return {BatchColumn::ofKeys(values, values->data()),
          testing::array<arrow::UInt32Builder, std::uint32_t>(expected)};
}

// `areShared`: equal texts have one position.
Column texts(std::size_t count, bool areShared,
             const std::function<std::optional<std::string>(std::size_t)>& at) {
  struct Texts {
    std::vector<unsigned char> bytes;
    std::vector<std::uint32_t> positions;
    std::map<std::optional<std::string>, std::uint32_t> known;
  };
  auto made = std::make_shared<Texts>();
  std::vector<std::optional<std::string>> expected;
  for (std::size_t row = 0; row < count; ++row) {
    expected.push_back(at(row));
    const auto position = static_cast<std::uint32_t>(made->bytes.size());
    const auto [known, isNew] = made->known.try_emplace(expected.back(), position);
    made->positions.push_back(areShared ? known->second : position);
    if (areShared && !isNew) {
      continue;
    }
    const std::string text = expected.back().value_or("");
    const std::uint32_t size =
        expected.back() ? static_cast<std::uint32_t>(text.size()) : kNullTextLength;
    const auto* counted = reinterpret_cast<const unsigned char*>(&size);
    made->bytes.insert(made->bytes.end(), counted, counted + 4);
    made->bytes.insert(made->bytes.end(), text.begin(), text.end());
  }
  return {BatchColumn::ofTexts(MetaTypeColumn::text, made, made->bytes.data(),
                               made->positions.data(), made->bytes.size()),
          testing::array<arrow::StringBuilder, std::string>(expected)};
}

// Columns of all kinds that are stored differently.
std::vector<Column> columnsOfEveryKind(std::size_t rows) {
  const auto mixed = [](std::size_t row) { return row * 0x9E3779B97F4A7C15ull >> 32; };
  return {
      numbers(rows, [](std::size_t row) { return 0.1 * static_cast<double>(row); }),
      numbers(rows, [&](std::size_t row) { return static_cast<double>(mixed(row) % 7); }),
      numbers(rows, [](std::size_t row) { return row % 3 == 1 ? kNullNumber : row / 100.0; }),
      numbers(rows, [&](std::size_t row) { return mixed(row) % 2 == 0 ? kNullNumber : 5.0; }),
      numbers(rows, [](std::size_t) { return kNullNumber; }),
      numbers(rows, [](std::size_t row) { return row == 0 ? kNullNumber : -1.0; }),
      keys(rows, [](std::size_t row) { return static_cast<std::uint32_t>(row) * 31; }),
      keys(rows, [](std::size_t row) { return static_cast<std::uint32_t>(row / 1000 % 40); }),
      keys(rows,
           [&](std::size_t row) {
             return mixed(row) % 5 == 0 ? kFirstNullKey
                                        : static_cast<std::uint32_t>(mixed(row) % 300);
           }),
      texts(rows, false,
            [](std::size_t row) { return std::optional("text " + std::to_string(row)); }),
      texts(rows, true,
            [&](std::size_t row) {
              return std::optional("city " + std::to_string(mixed(row) % 50));
            }),
      texts(rows, false,
            [&](std::size_t row) {
              return mixed(row) % 4 == 0 ? std::nullopt
                                         : std::optional(std::string(mixed(row) % 9, 'x'));
            }),
      texts(rows, true,
            [](std::size_t row) {
              return row % 2 == 0 ? std::nullopt : std::optional(std::to_string(row));
            }),
      texts(rows, true, [](std::size_t) { return std::nullopt; }),
  };
}

RowBatchPointer batchOf(const std::vector<Column>& columns) {
  std::vector<BatchColumn> values;
  for (const Column& column : columns) {
    values.push_back(column.values);
  }
  return std::make_shared<RowBatch>(static_cast<std::size_t>(columns[0].expected->length()),
                                    std::move(values));
}

std::shared_ptr<arrow::Table> expectedTable(const std::vector<Column>& columns) {
  arrow::FieldVector fields;
  arrow::ArrayVector arrays;
  for (const Column& column : columns) {
    fields.push_back(arrow::field("c" + std::to_string(fields.size()), column.expected->type()));
    arrays.push_back(column.expected);
  }
  return arrow::Table::Make(arrow::schema(fields), arrays);
}

void write(Format format, const std::string& path, const std::vector<RowBatchPointer>& batches,
           int threads = 0) {
  PinOutMetaData described;
  OneRow columns(&described);
  QVector<QString> names;
  QVector<MetaInfo> metas;
  for (const BatchColumn& column : batches[0]->columns()) {
    names.append(QStringLiteral("c%1").arg(names.size()));
    metas.append(MetaInfo(column.type(), 0));
  }
  columns.setNumberOfColumns(static_cast<int>(metas.size()));
  columns.setColName(names);
  columns.setMetaData(metas);
  const QString name = QString::fromStdString(path);
  TaskPool pool(threads);
  OutputFile file;
  ASSERT_TRUE(file.open(name));
  const auto writer =
      (*ArrowFormats::load())
          ->makeWriter(format == Format::parquet ? ArrowFormat::parquet : ArrowFormat::arrow, file,
                       name, StoredColumns::plain(columns), threads == 0 ? nullptr : &pool);
  ASSERT_TRUE(writer->begin(columns));
  const auto encoder = (*ArrowFormats::load())->makeEncoder();
  for (const RowBatchPointer& batch : batches) {
    ASSERT_TRUE(writer->write(encoder->encode(*batch)));
  }
  ASSERT_TRUE(writer->finish());
  ASSERT_TRUE(file.complete());
  ASSERT_TRUE(file.publish());
}

// The rows of a batch in batches of so many.
std::vector<RowBatchPointer> sliced(const RowBatch& batch, std::size_t size) {
  std::vector<RowBatchPointer> slices;
  for (std::size_t row = 0; row < batch.rowCount(); row += size) {
    slices.push_back(batch.slice(row, std::min(row + size, batch.rowCount())));
  }
  return slices;
}

}  // namespace

TEST(ArrowWriting, everyKindOfColumnReadsBack) {
  const TableFolder folder;
  for (const std::size_t rows : {1u, 7u, 8u, 17u, 4097u, 16384u, 16385u, 131073u}) {
    const auto columns = columnsOfEveryKind(rows);
    for (const Format format : {Format::parquet, Format::ipc}) {
      write(format, folder.path("t"), {batchOf(columns)});
      const auto table = testing::tableOfFile(folder.path("t"), format);
      EXPECT_TRUE(table->Equals(*expectedTable(columns))) << rows << " rows";
    }
  }
}

TEST(ArrowWriting, batchesAndThreadsChangeNoByte) {
  const TableFolder folder;
  const auto batch = batchOf(columnsOfEveryKind(140000));
  for (const Format format : {Format::parquet, Format::ipc}) {
    write(format, folder.path("whole"), {batch});
    const std::string whole = folder.read("whole");
    for (const std::size_t size : {700u, 1000u, 30000u}) {
      for (const int threads : {0, 1, 3, 40}) {
        write(format, folder.path("t"), sliced(*batch, size), threads);
        EXPECT_EQ(folder.read("t"), whole) << "batches of " << size << ", " << threads;
      }
    }
  }
}

// Of few selected rows, texts are copied; of many, only their positions.
TEST(ArrowWriting, selectedRowsAreGathered) {
  const TableFolder folder;
  const std::size_t stored = 30000;
  const auto all = columnsOfEveryKind(stored);
  for (const std::size_t step : {1u, 2u, 50u, 29999u}) {
    const std::size_t count = (stored + step - 1) / step;
    auto selection = std::make_shared<std::uint32_t[]>(count);
    for (std::size_t i = 0; i < count; ++i) {
      selection[i] = static_cast<std::uint32_t>(i * step);
    }
    const RowBatch selected(stored, batchOf(all)->columns(), selection, count);
    for (const Format format : {Format::parquet, Format::ipc}) {
      write(format, folder.path("t"), sliced(selected, 9000));
      const auto table = testing::tableOfFile(folder.path("t"), format);
      ASSERT_EQ(table->num_rows(), static_cast<std::int64_t>(count));
      for (int column = 0; column < table->num_columns(); ++column) {
        const arrow::Array& written = *table->column(column)->chunk(0);
        for (std::int64_t row = 0; row < written.length(); ++row) {
          const auto from = row * static_cast<std::int64_t>(step);
          ASSERT_TRUE(written.RangeEquals(*all[static_cast<std::size_t>(column)].expected, row,
                                          row + 1, from))
              << "column " << column << ", row " << row << " of every " << step;
        }
      }
    }
  }
}

TEST(ArrowWriting, readersKnowTheRangesOfColumnsAndPages) {
  const TableFolder folder;
  const std::string longText(5000, 'l');
  const std::size_t rows = 40000;
  write(Format::parquet, folder.path("t"),
        {batchOf({
            numbers(rows,
                    [](std::size_t row) {
                      const double number = static_cast<double>(row) - 20000.5;
                      return row % 5 == 0 ? kNullNumber : row % 5 == 1 ? kNotANumber : number;
                    }),
            numbers(rows, [](std::size_t row) { return row % 2 == 0 ? 0.0 : kNotANumber; }),
            keys(rows,
                 [](std::size_t row) {
                   return row == 7 ? 4000000000u : static_cast<unsigned>(row) + 5;
                 }),
            texts(rows, false,
                  [](std::size_t row) { return std::optional(std::to_string(row % 3000)); }),
            texts(rows, false,
                  [](std::size_t row) {
                    return row == 9 ? std::nullopt : std::optional("n" + std::to_string(row));
                  }),
            texts(rows, true,
                  [&](std::size_t row) { return std::optional(row == 0 ? longText : "k"); }),
            numbers(rows, [](std::size_t) { return kNullNumber; }),
        })});
  const auto file = parquet::ParquetFileReader::OpenFile(folder.path("t"));
  const auto group = file->metadata()->RowGroup(0);
  const auto statistics = [&](int column) { return group->ColumnChunk(column)->statistics(); };
  const auto firstColumn = statistics(0);
  const auto& first = static_cast<const parquet::DoubleStatistics&>(*firstColumn);
  EXPECT_EQ(first.min(), -19998.5);
  EXPECT_EQ(first.max(), 19998.5);
  EXPECT_EQ(first.null_count(), 8000);
  const auto secondColumn = statistics(1);
  const auto& zeros = static_cast<const parquet::DoubleStatistics&>(*secondColumn);
  EXPECT_TRUE(std::signbit(zeros.min()));
  EXPECT_FALSE(std::signbit(zeros.max()));
  const std::string largestKey = statistics(2)->EncodeMax();
  EXPECT_EQ(*reinterpret_cast<const std::uint32_t*>(largestKey.data()), 4000000000u);
  EXPECT_EQ(statistics(3)->EncodeMin(), "0");
  EXPECT_EQ(statistics(3)->EncodeMax(), "999");
  EXPECT_EQ(statistics(4)->EncodeMax(), "n9999");
  EXPECT_EQ(statistics(4)->null_count(), 1);
  EXPECT_FALSE(statistics(5)->HasMinMax());
  EXPECT_FALSE(statistics(6)->HasMinMax());
  EXPECT_EQ(statistics(6)->null_count(), 40000);

  const auto pages = file->GetPageIndexReader()->RowGroup(0);
  const auto ranges = pages->GetColumnIndex(2);
  const auto offsets = pages->GetOffsetIndex(2);
  ASSERT_EQ(offsets->page_locations().size(), 3u);
  EXPECT_EQ(offsets->page_locations()[2].first_row_index, 32768);
  const std::string leastOfPage = ranges->encoded_min_values()[1];
  EXPECT_EQ(*reinterpret_cast<const std::uint32_t*>(leastOfPage.data()), 16384u + 5);
  EXPECT_TRUE(pages->GetColumnIndex(6)->null_pages()[0]);
}

// A row group ends with the row that makes its texts 64 MiB, wherever a batch does.
TEST(ArrowWriting, longTextsMakeShortGroups) {
  const TableFolder folder;
  const std::string megabyte(1 << 20, 'm');
  const auto batch = batchOf({texts(150, true, [&](std::size_t row) {
    return row % 2 == 0 ? std::optional(megabyte) : std::nullopt;
  })});
  for (const std::size_t size : {150u, 11u}) {
    write(Format::parquet, folder.path("t"), sliced(*batch, size));
    const auto metadata = parquet::ParquetFileReader::OpenFile(folder.path("t"))->metadata();
    ASSERT_EQ(metadata->num_row_groups(), 2);
    EXPECT_EQ(metadata->RowGroup(0)->num_rows(), 127);
  }
}

}  // namespace kelvarin
