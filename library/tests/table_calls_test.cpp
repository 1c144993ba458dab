// Columnar files through the interface: what is written is read, whole and in parts.
#include <cmath>
#include <filesystem>
#include <random>

#include "arrow/array/builder_binary.h"
#include "arrow/array/builder_primitive.h"
#include "arrow/compare.h"
#include "host/tables/files/tests/table_folder.h"
#include "library/tests/arrow_streams.h"

namespace kelvarin {
namespace {

using testing::Call;
using testing::Pulled;
using testing::TypedColumn;

class TableCallsTest : public ::testing::Test {
 protected:
  // The message of an error, or "rows=N".
  std::string write(ArrowArrayStream stream, const kelvarin_write_options* options = nullptr) {
    Call error;
    std::int64_t rows = -1;
    const kelvarin_status status = kelvarin_write(m_path.c_str(), &stream, options, &rows, &error);
    EXPECT_EQ(stream.release, nullptr);
    EXPECT_EQ(status, kelvarin_error_status(error.get()));
    return status == KELVARIN_OK ? "rows=" + std::to_string(rows) : error.message();
  }
  kelvarin_table open() {
    Call error;
    kelvarin_table table{};
    EXPECT_EQ(kelvarin_table_open(m_path.c_str(), nullptr, &table, &error), KELVARIN_OK)
        << error.message();
    return table;
  }
  Pulled scan(kelvarin_table table, const kelvarin_scan_options* options = nullptr) {
    Call error;
    ArrowArrayStream stream;
    if (kelvarin_table_scan(table, options, &stream, &error) != KELVARIN_OK) {
      return {nullptr, error.message()};
    }
    return testing::pulled(stream);
  }
  Pulled scan(const kelvarin_scan_options& options) {
    const kelvarin_table table = open();
    Pulled result = scan(table, &options);
    EXPECT_EQ(kelvarin_table_close(table), KELVARIN_OK);
    return result;
  }
  std::string roundTrip(const std::vector<TypedColumn>& columns) {
    const std::string written = write(testing::streamOf(columns));
    return written.starts_with("rows=") ? scan(KELVARIN_SCAN_OPTIONS_INIT).text() : written;
  }

  // 1000 rows in blocks of 100: n counts, k is n % 7, t is "text N", null for each tenth row, pair
  // is n / 2.
  void writeThousandRows() {
    std::string numbers;
    std::string keys;
    std::string texts;
    std::string pairs;
    std::string colours;
    for (int i = 0; i < 1000; ++i) {
      const std::string comma = i == 0 ? "" : ",";
      numbers += comma + std::to_string(i);
      keys += comma + std::to_string(i % 7);
      colours += comma + (i % 3 == 0 ? "\"red\"" : i % 3 == 1 ? "\"a longer colour\"" : "null");
      pairs += comma + std::to_string(i / 2);
      texts += comma + (i % 10 == 9 ? "null" : "\"text " + std::to_string(i) + "\"");
    }
    kelvarin_write_options options = KELVARIN_WRITE_OPTIONS_INIT;
    kelvarin_input_options input = KELVARIN_INPUT_OPTIONS_INIT;
    const kelvarin_sort_option sorted[] = {{"pair", KELVARIN_ASCENDING}};
    input.sorted_by = sorted;
    input.sorted_by_count = 1;
    options.input = &input;
    options.rows_in_block = 100;
    ASSERT_EQ(write(testing::streamOf({{"n", arrow::float64(), "[" + numbers + "]"},
                                       {"k", arrow::uint32(), "[" + keys + "]"},
                                       {"t", arrow::utf8(), "[" + texts + "]"},
                                       {"pair", arrow::uint32(), "[" + pairs + "]"},
                                       {"c", arrow::utf8(), "[" + colours + "]"}}),
                    &options),
              "rows=1000");
  }

  testing::TableFolder m_folder;
  std::string m_path = m_folder.path("t.cgel_kelvarin");
};

TEST_F(TableCallsTest, ValuesComeBackAsTheyWereWritten) {
  EXPECT_EQ(roundTrip({{"n", arrow::float64(), "[1.5, null, NaN, -Inf]"},
                       {"k", arrow::uint32(), "[0, 4294967293, null, 7]"},
                       {"t", arrow::utf8(), "[\"\", null, \"short\", \"longer than twelve\"]"}}),
            "n=[1.5,null,nan,-inf] k=[0,4294967293,null,7] "
            "t=[\"\",null,\"short\",\"longerthantwelve\"]");
  EXPECT_EQ(
      roundTrip({{"i", arrow::int64(), "[9007199254740992, null]"},
                 {"h", arrow::int8(), "[-128, 127]"},
                 {"b", arrow::boolean(), "[true, false]"},
                 {"f", arrow::float32(), "[0.5, null]"},
                 {"d", arrow::decimal128(9, 3), "[\"-1.250\", \"0.001\"]"},
                 {"e", arrow::decimal256(60, 2), "[\"99999.99\", null]"},
                 {"v", arrow::utf8_view(), "[\"a view of a text\", null]"},
                 {"l", arrow::large_utf8(), "[null, \"x\"]"},
                 {"day", arrow::date32(), "[19782, -1]"},
                 {"at", arrow::timestamp(arrow::TimeUnit::MILLI, "UTC"),
                  "[\"2024-01-31 23:59:59.250\", null]"},
                 {"dict", arrow::dictionary(arrow::int8(), arrow::utf8()), "[\"one\", \"two\"]"}}),
      "i=[9.007199254740992e+15,null] h=[-128,127] b=[1,0] f=[0.5,null] d=[-1.25,0.001] "
      "e=[99999.99,null] v=[\"aviewofatext\",null] l=[null,\"x\"] "
      "day=[\"2024-02-29\",\"1969-12-31\"] at=[\"2024-01-31T23:59:59.250Z\",null] "
      "dict=[\"one\",\"two\"]");
}

TEST_F(TableCallsTest, ValuesThatAColumnCannotHoldFailOrBecomeNull) {
  const std::vector<TypedColumn> large = {{"i", arrow::int64(), "[1, 9007199254740993]"}};
  EXPECT_EQ(roundTrip(large),
            "stream, row 2, column 'i': 9007199254740993 cannot be held by a number column without "
            "loss. Choose another type for the column 'i', or let such values be null.");
  kelvarin_write_options options = KELVARIN_WRITE_OPTIONS_INIT;
  kelvarin_input_options input = KELVARIN_INPUT_OPTIONS_INIT;
  options.input = &input;
  input.takes_bad_values_as_null = 1;
  EXPECT_EQ(write(testing::streamOf(large), &options), "rows=2");
  EXPECT_EQ(scan(KELVARIN_SCAN_OPTIONS_INIT).text(), "i=[1,null]");
  const kelvarin_column_option asText[] = {{"i", KELVARIN_TEXT}};
  input = {sizeof input, asText, 1, nullptr, 0, 0};
  EXPECT_EQ(write(testing::streamOf(large), &options), "rows=2");
  EXPECT_EQ(scan(KELVARIN_SCAN_OPTIONS_INIT).text(), "i=[\"1\",\"9007199254740993\"]");
  EXPECT_EQ(roundTrip({{"l", arrow::list(arrow::int64()), "[[1]]"}}),
            "The stream cannot be read: column 'l' has the type list<item: int64>. Numbers, "
            "decimals, booleans, texts, dates, timestamps and dictionaries of them are read.");
}

TEST_F(TableCallsTest, ErrorsOfAStreamSayColumnAndRow) {
  const auto columnAndRowOf = [&](const std::vector<TypedColumn>& columns,
                                  const kelvarin_write_options* options = nullptr) {
    ArrowArrayStream stream = testing::streamOf(columns);
    Call error;
    EXPECT_EQ(kelvarin_write(m_path.c_str(), &stream, options, nullptr, &error), KELVARIN_FAILED);
    return testing::columnAndRowOf(error);
  };
  EXPECT_EQ(columnAndRowOf({{"n", arrow::float64(), "[1, 2]"},
                            {"i", arrow::int64(), "[1, 9007199254740993]"}}),
            "i 1");
  EXPECT_EQ(
      columnAndRowOf({{"n", arrow::float64(), "[1]"}, {"l", arrow::list(arrow::int64()), "[[1]]"}}),
      "l -1");
  kelvarin_write_options options = KELVARIN_WRITE_OPTIONS_INIT;
  const kelvarin_sort_option order[] = {{"n", KELVARIN_ASCENDING}};
  kelvarin_input_options input = KELVARIN_INPUT_OPTIONS_INIT;
  input.sorted_by = order;
  input.sorted_by_count = 1;
  options.input = &input;
  EXPECT_EQ(columnAndRowOf({{"n", arrow::float64(), "[1, 3, 2]"}}, &options), "n 2");
}

TEST_F(TableCallsTest, AFailedWriteLeavesTheOldFile) {
  ASSERT_EQ(write(testing::streamOf({{"n", arrow::float64(), "[1]"}})), "rows=1");
  const std::string files = m_folder.listing();
  EXPECT_NE(write(testing::streamOf({{"n", arrow::int64(), "[1, 9007199254740993]"}})), "rows=2");
  EXPECT_EQ(write(testing::streamOf({{"n", arrow::float64(), "[]"}})), "rows=0");
  kelvarin_write_options options = KELVARIN_WRITE_OPTIONS_INIT;
  kelvarin_input_options input = KELVARIN_INPUT_OPTIONS_INIT;
  const kelvarin_sort_option sorted[] = {{"n", KELVARIN_DESCENDING}};
  input.sorted_by = sorted;
  input.sorted_by_count = 1;
  options.input = &input;
  EXPECT_EQ(write(testing::streamOf({{"n", arrow::float64(), "[2, 3]"}}), &options),
            "stream, row 2: the row is out of order in column 'n', which sortedOn declares "
            "descending. Sort the table, or take the column out of sortedOn.");
  EXPECT_EQ(m_folder.listing(), files);
  EXPECT_EQ(scan(KELVARIN_SCAN_OPTIONS_INIT).text(), "n=[1]");
}

TEST_F(TableCallsTest, ATableSaysWhatIsInIt) {
  writeThousandRows();
  const kelvarin_table table = open();
  kelvarin_table_info info{};
  info.size = sizeof info;
  ASSERT_EQ(kelvarin_table_get_info(table, &info, nullptr), KELVARIN_OK);
  EXPECT_EQ(info.rows, 1000);
  EXPECT_EQ(info.blocks, 10);
  EXPECT_EQ(info.columns, 5);
  EXPECT_EQ(info.rows_in_block, 100);
  EXPECT_EQ(info.is_complete, 1);
  std::string columns;
  for (int i = 0; i < info.columns; ++i) {
    kelvarin_column_info column{};
    column.size = sizeof column;
    ASSERT_EQ(kelvarin_table_get_column(table, i, &column, nullptr), KELVARIN_OK);
    columns += std::string(column.name) + ":" + static_cast<char>(column.type) +
               std::to_string(column.order) + std::to_string(column.sort_position) + " ";
  }
  EXPECT_EQ(columns, "n:F0-1 k:K0-1 t:U0-1 pair:K10 c:U0-1 ");
  kelvarin_block_info block{};
  block.size = sizeof block;
  ASSERT_EQ(kelvarin_table_get_block(table, 9, &block, nullptr), KELVARIN_OK);
  EXPECT_EQ(block.first_row, 900);
  EXPECT_EQ(block.rows, 100);
  kelvarin_statistics statistics{};
  statistics.size = sizeof statistics;
  ASSERT_EQ(kelvarin_table_get_statistics(table, 9, 0, &statistics, nullptr), KELVARIN_OK);
  EXPECT_EQ(statistics.min_number, 900);
  EXPECT_EQ(statistics.max_number, 999);
  EXPECT_EQ(statistics.has_nulls, 0);
  ASSERT_EQ(kelvarin_table_get_statistics(table, 9, 2, &statistics, nullptr), KELVARIN_OK);
  EXPECT_EQ(statistics.has_nulls, 1);
  EXPECT_EQ(std::string(statistics.min_text, statistics.min_text_size), "text 900");
  EXPECT_EQ(kelvarin_table_get_block(table, 10, &block, nullptr), KELVARIN_WRONG_ARGUMENT);
  EXPECT_EQ(kelvarin_table_close(table), KELVARIN_OK);
  EXPECT_EQ(kelvarin_table_get_info(table, &info, nullptr), KELVARIN_WRONG_HANDLE);
}

// The same rows for any number of threads and any size of batches.
TEST_F(TableCallsTest, PartsOfATableAreRead) {
  writeThousandRows();
  const char* columns[] = {"k", "n"};
  for (const int threads : {1, 2, 4}) {
    for (const int batchRows : {0, 1, 7}) {
      kelvarin_scan_options options = KELVARIN_SCAN_OPTIONS_INIT;
      options.threads = threads;
      options.batch_rows = batchRows;
      options.columns = columns;
      options.column_count = 2;
      options.row_number_column = "_n";
      options.first_row = 398;
      options.end_row = 402;
      EXPECT_EQ(scan(options).text(), "k=[6,0,1,2] n=[398,399,400,401] _n=[398,399,400,401]");
      options.end_row = 398;
      EXPECT_EQ(scan(options).table->num_rows(), 0);
      options.first_row = 0;
      options.end_row = -1;
      options.first_block = 3;
      options.end_block = 8;
      options.block_filter = "n_max < 450 || n_min > 690";
      const Pulled blocks = scan(options);
      ASSERT_EQ(blocks.failure, "");
      EXPECT_EQ(blocks.table->num_rows(), 200);
      EXPECT_TRUE(blocks.table->column(1)->Equals(blocks.table->column(2)));
      options.first_row = 350;
      options.end_row = 710;
      EXPECT_EQ(scan(options).table->num_rows(), 60);
    }
  }
}

TEST_F(TableCallsTest, TextsLeaveInTheFormThatIsAskedFor) {
  writeThousandRows();
  kelvarin_scan_options options = KELVARIN_SCAN_OPTIONS_INIT;
  const auto views = scan(options).table;
  EXPECT_EQ(views->column(2)->type()->ToString(), "string_view");
  for (const auto& [format, type] :
       {std::pair(KELVARIN_TEXT_UTF8, "string"), std::pair(KELVARIN_TEXT_LARGE, "large_string")}) {
    options.text_format = format;
    const auto texts = scan(options).table;
    EXPECT_EQ(texts->column(2)->type()->ToString(), type);
    for (const int column : {2, 4}) {
      for (std::int64_t row = 0; row < 1000; ++row) {
        const auto expected = *views->column(column)->GetScalar(row);
        const auto given = *texts->column(column)->GetScalar(row);
        ASSERT_EQ(expected->is_valid, given->is_valid);
        ASSERT_EQ(expected->ToString(), given->ToString());
      }
    }
  }
  EXPECT_EQ(views->column(4)->null_count(), 333);
}

// Names are data: nothing in them is taken for a part of a document, a parameter or a path.
TEST_F(TableCallsTest, NamesMayBeAnyText) {
  const std::string wild = "a<b>&'\"${0} ${HOME}";
  ASSERT_EQ(write(testing::streamOf(
                {{wild, arrow::float64(), "[1, 2]"}, {"${1}", arrow::utf8(), "[\"x\", null]"}})),
            "rows=2");
  const char* columns[] = {"${1}", wild.c_str()};
  kelvarin_scan_options options = KELVARIN_SCAN_OPTIONS_INIT;
  options.columns = columns;
  options.column_count = 2;
  const Pulled pulled = scan(options);
  ASSERT_EQ(pulled.failure, "");
  EXPECT_EQ(pulled.table->field(0)->name(), "${1}");
  EXPECT_EQ(pulled.table->field(1)->name(), wild);
  m_path = m_folder.path("with ${x} & 'quotes'.cgel_kelvarin");
  ASSERT_EQ(write(testing::streamOf({{"n", arrow::float64(), "[3]"}})), "rows=1");
  EXPECT_EQ(scan(KELVARIN_SCAN_OPTIONS_INIT).text(), "n=[3]");
}

// Random columns, nulls, blocks and batches come back as they were.
TEST_F(TableCallsTest, RandomTablesComeBack) {
  std::mt19937 random(11);
  for (int table = 0; table < 40; ++table) {
    const int rows = static_cast<int>(random() % 3000) + 1;
    const auto nullShare = random() % 3;
    const auto distinct = random() % 2 == 0 ? 5u : 100'000u;
    arrow::DoubleBuilder numbers;
    arrow::UInt32Builder keys;
    arrow::StringBuilder texts;
    for (int row = 0; row < rows; ++row) {
      const auto value = random() % distinct;
      const bool isNull = random() % 4 < nullShare;
      const double number = value % 17 == 0 ? std::nan("") : static_cast<double>(value) / 8;
      const std::string text(random() % 30, static_cast<char>('a' + value % 26));
      ASSERT_TRUE((isNull ? numbers.AppendNull() : numbers.Append(number)).ok());
      ASSERT_TRUE((isNull ? keys.AppendNull() : keys.Append(value)).ok());
      ASSERT_TRUE((isNull ? texts.AppendNull() : texts.Append(text)).ok());
    }
    const auto schema =
        arrow::schema({arrow::field("n", arrow::float64()), arrow::field("k", arrow::uint32()),
                       arrow::field("t", arrow::utf8())});
    const auto batch = arrow::RecordBatch::Make(
        schema, rows, {*numbers.Finish(), *keys.Finish(), *texts.Finish()});
    const auto cut = static_cast<std::int64_t>(random()) % rows;
    kelvarin_write_options options = KELVARIN_WRITE_OPTIONS_INIT;
    options.rows_in_block = static_cast<std::int32_t>(random() % 1000) + 1;
    options.threads = 1 + static_cast<std::int32_t>(random() % 3);
    ASSERT_EQ(write(testing::streamOf({batch->Slice(0, cut), batch->Slice(cut)}), &options),
              "rows=" + std::to_string(rows));
    kelvarin_scan_options scanning = KELVARIN_SCAN_OPTIONS_INIT;
    scanning.text_format = KELVARIN_TEXT_UTF8;
    scanning.threads = 1 + static_cast<std::int32_t>(random() % 3);
    const Pulled whole = scan(scanning);
    ASSERT_EQ(whole.failure, "");
    const auto expected = *arrow::Table::FromRecordBatches({batch});
    EXPECT_TRUE(whole.table->Equals(*expected, arrow::EqualOptions::Defaults().nans_equal(true)));
    scanning.first_row = static_cast<std::int64_t>(random()) % rows;
    scanning.end_row = scanning.first_row + static_cast<std::int64_t>(random()) % rows;
    const Pulled part = scan(scanning);
    EXPECT_TRUE(part.table->Equals(
        *expected->Slice(scanning.first_row, scanning.end_row - scanning.first_row),
        arrow::EqualOptions::Defaults().nans_equal(true)));
  }
}

TEST_F(TableCallsTest, ATableIsSplitAsItIsAskedFor) {
  const std::vector<TypedColumn> columns = {
      {"n", arrow::float64(), "[1, 2, 3]"},
      {"city", arrow::utf8(), "[\"Rome\", \"Wien\", \"Rome\"]"}};
  kelvarin_write_options options = KELVARIN_WRITE_OPTIONS_INIT;
  options.split = KELVARIN_SPLIT_BY_VALUE;
  EXPECT_EQ(write(testing::streamOf(columns), &options), "The argument 'split_column' is null.");
  options.split_column = "city";
  options.creates_folder = 1;
  m_path = m_folder.path("new/cities.cgel_kelvarin");
  ASSERT_EQ(write(testing::streamOf(columns), &options), "rows=3");
  std::string files;
  for (const auto& entry : std::filesystem::directory_iterator(m_folder.path("new"))) {
    m_path = entry.path().string();
    if (m_path.ends_with(".cgel_kelvarin") && m_path.find("Rome") != std::string::npos) {
      files += scan(KELVARIN_SCAN_OPTIONS_INIT).text();
    }
  }
  EXPECT_EQ(files, "n=[1,3] city=[\"Rome\",\"Rome\"]");
  options = KELVARIN_WRITE_OPTIONS_INIT;
  options.separates_columns = 1;
  m_path = m_folder.path("sets.cgel_kelvarin");
  ASSERT_EQ(write(testing::streamOf(columns), &options), "rows=3");
  const kelvarin_table table = open();
  kelvarin_table_info info{};
  info.size = sizeof info;
  ASSERT_EQ(kelvarin_table_get_info(table, &info, nullptr), KELVARIN_OK);
  EXPECT_EQ(info.column_sets, 2);
  EXPECT_EQ(kelvarin_table_close(table), KELVARIN_OK);
}

TEST_F(TableCallsTest, AStoppedWriteLeavesTheOldFile) {
  ASSERT_EQ(write(testing::streamOf({{"n", arrow::float64(), "[1]"}})), "rows=1");
  kelvarin_write_options options = KELVARIN_WRITE_OPTIONS_INIT;
  ASSERT_EQ(kelvarin_stop_new(&options.stop), KELVARIN_OK);
  ASSERT_EQ(kelvarin_stop_request(options.stop), KELVARIN_OK);
  EXPECT_EQ(write(testing::streamOf({{"n", arrow::float64(), "[2]"}}), &options),
            "The work was stopped.");
  EXPECT_EQ(kelvarin_stop_close(options.stop), KELVARIN_OK);
  EXPECT_EQ(scan(KELVARIN_SCAN_OPTIONS_INIT).text(), "n=[1]");
}

// A file may have any bytes as a text; whoever reads a stream may rely on UTF-8.
TEST_F(TableCallsTest, TextsThatAreNoUtf8AreRepaired) {
  arrow::StringBuilder builder;
  for (const char* text : {"caf\xC3\xA9 au lait", "\xFF", "a longer text \xE9t\xE9", ""}) {
    ASSERT_TRUE(builder.Append(text).ok());
  }
  const auto array = *builder.Finish();
  const auto schema = arrow::schema({arrow::field("t", arrow::utf8())});
  ASSERT_EQ(write(testing::streamOf({arrow::RecordBatch::Make(schema, 4, {array})})), "rows=4");
  for (const int format : {KELVARIN_TEXT_VIEWS, KELVARIN_TEXT_UTF8}) {
    kelvarin_scan_options options = KELVARIN_SCAN_OPTIONS_INIT;
    options.text_format = format;
    EXPECT_EQ(scan(options).text(),
              "t=[\"caf\u00e9aulait\",\"\uFFFD\",\"alongertext\uFFFDt\uFFFD\",\"\"]");
  }
}

TEST_F(TableCallsTest, MistakesAreNamed) {
  writeThousandRows();
  kelvarin_scan_options options = KELVARIN_SCAN_OPTIONS_INIT;
  const char* absent[] = {"nn"};
  options.columns = absent;
  options.column_count = 1;
  EXPECT_EQ(scan(options).failure, "The column 'nn' is not in the file '" + m_path + "'.");
  options = KELVARIN_SCAN_OPTIONS_INIT;
  options.block_filter = "n_max <";
  EXPECT_NE(scan(options).failure, "");
  options.block_filter = nullptr;
  options.row_number_column = "n";
  EXPECT_EQ(scan(options).failure,
            "The table has a column 'n': choose another name for the row numbers.");
  kelvarin_table table{};
  Call error;
  EXPECT_EQ(kelvarin_table_open(m_folder.path("absent").c_str(), nullptr, &table, &error),
            KELVARIN_FAILED);
  EXPECT_NE(error.message().find("absent"), std::string::npos);
  EXPECT_EQ(table.id, 0u);
}

TEST_F(TableCallsTest, DamageFailsOrIsSkipped) {
  writeThousandRows();
  std::string side;
  for (const auto& entry : std::filesystem::directory_iterator(m_folder.path(""))) {
    side = entry.path() == m_path ? side : entry.path().string();
  }
  const std::string name = std::filesystem::path(side).filename();
  std::string bytes = m_folder.read(name);
  bytes[bytes.size() / 2] ^= 0x10;
  m_folder.write(name, bytes);
  kelvarin_scan_options options = KELVARIN_SCAN_OPTIONS_INIT;
  const Pulled failed = scan(options);
  EXPECT_NE(failed.failure.find("corrupted"), std::string::npos) << failed.failure;
  int warnings = 0;
  options.log = {[](void* context, std::int32_t level, const char*, const char*) {
                   *static_cast<int*>(context) += level == KELVARIN_LOG_WARNING ? 1 : 0;
                 },
                 &warnings};
  options.skips_damage = 1;
  EXPECT_EQ(scan(options).table->num_rows(), 900);
  EXPECT_EQ(warnings, 1);
}

TEST_F(TableCallsTest, AStreamOutlivesItsTableAndIsStoppedByAnyone) {
  writeThousandRows();
  const kelvarin_table table = open();
  ArrowArrayStream stream;
  kelvarin_scan_options options = KELVARIN_SCAN_OPTIONS_INIT;
  ASSERT_EQ(kelvarin_stop_new(&options.stop), KELVARIN_OK);
  options.batch_rows = 10;
  options.threads = 2;
  ASSERT_EQ(kelvarin_table_scan(table, &options, &stream, nullptr), KELVARIN_OK);
  EXPECT_EQ(kelvarin_table_close(table), KELVARIN_OK);
  ArrowArray batch;
  ASSERT_EQ(stream.get_next(&stream, &batch), 0);
  EXPECT_EQ(batch.length, 10);
  ASSERT_EQ(kelvarin_stop_request(options.stop), KELVARIN_OK);
  ASSERT_EQ(kelvarin_stop_close(options.stop), KELVARIN_OK);
  int status = 0;
  for (int pulls = 0; pulls < 1000 && status == 0; ++pulls) {
    ArrowArray more;
    status = stream.get_next(&stream, &more);
    if (status == 0 && more.release != nullptr) {
      more.release(&more);
    }
  }
  EXPECT_EQ(status, ECANCELED);
  Call error;
  EXPECT_EQ(kelvarin_stream_error(&stream, &error), KELVARIN_STOPPED);
  EXPECT_EQ(error.message(), "The work was stopped.");
  stream.release(&stream);
  EXPECT_EQ(kelvarin_stream_error(&stream, &error), KELVARIN_WRONG_ARGUMENT);
  batch.release(&batch);  // a batch outlives its stream
}

}  // namespace
}  // namespace kelvarin
