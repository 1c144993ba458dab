// Which columns of a Parquet or Arrow file are read, and what becomes of types that have no other
// reading.
#include <algorithm>
#include <map>

#include "arrow/array/array_dict.h"
#include "arrow/array/array_nested.h"
#include "arrow/array/util.h"
#include "arrow/json/from_string.h"
#include "host/tables/arrow/arrow_actions.h"
#include "host/tables/arrow/tests/typed_arrays.h"
#include "host/tables/files/tests/table_folder.h"
#include "host/testing/row_harness.h"
#include "parquet/file_reader.h"
#include "parquet/metadata.h"

namespace kelvarin {

using testing::Format;
using testing::RowHarness;
using testing::Rows;
using testing::Strings;
using testing::TableFolder;

namespace {

using Columns = std::vector<std::pair<std::string, std::shared_ptr<arrow::Array>>>;

constexpr Format kFormats[] = {Format::parquet, Format::ipc, Format::stream};

std::shared_ptr<arrow::Array> arrayOf(const std::shared_ptr<arrow::DataType>& type,
                                      const std::string& values) {
  auto made = arrow::json::ArrayFromJSONString(type, values);
  EXPECT_TRUE(made.ok()) << made.status().ToString();
  return *made;
}

std::shared_ptr<arrow::Table> tableOf(const Columns& columns) {
  arrow::FieldVector fields;
  arrow::ArrayVector arrays;
  for (const auto& [name, values] : columns) {
    fields.push_back(arrow::field(name, values->type()));
    arrays.push_back(values);
  }
  return arrow::Table::Make(arrow::schema(fields), arrays);
}

class Reading {
 public:
  Reading(Format format, const arrow::Table& table, const std::string& attributes,
          const std::string& children = {}, const testing::FileForm& form = {}) {
    testing::writeFile(m_folder.path("t"), format, table, form);
    run(format, attributes, children);
  }
  // Of a file whose bytes are changed after it was written.
  template <typename Change>
  Reading(Format format, const arrow::Table& table, const testing::FileForm& form,
          const std::string& attributes, Change change) {
    testing::writeFile(m_folder.path("t"), format, table, form);
    std::string bytes = m_folder.read("t");
    change(bytes, m_folder.path("t"));
    m_folder.write("t", bytes);
    run(format, attributes, {});
  }

  Rows rows;
  std::string columns;
  Strings log;
  bool hasFailed = false;

 private:
  void run(Format format, const std::string& attributes, const std::string& children) {
    const std::string path = m_folder.path("t");
    const std::string rest = " name='a' file='" + path + "' " + attributes + ">" + children + "</";
    auto harness = format == Format::parquet
                       ? RowHarness::of<ReadParquet>("<ReadParquet" + rest + "ReadParquet>")
                       : RowHarness::of<ReadArrow>("<ReadArrow" + rest + "ReadArrow>");
    rows = harness.rows(0);
    columns = harness.columns(0);
    hasFailed = harness.hasFailed();
    for (std::string line : harness.log()) {
      if (const std::size_t at = line.find(path); at != std::string::npos) {
        line.replace(at, path.size(), "T");
      }
      log.push_back(line);
    }
  }

  TableFolder m_folder;
};

Columns stock() {
  return {{"id", arrayOf(arrow::int64(), "[1, 2, 3]")},
          {"price", arrayOf(arrow::float64(), "[0.5, null, 2]")},
          {"item", arrayOf(arrow::utf8(), R"(["cup", "pot", null])")},
          {"big", arrayOf(arrow::int64(), "[9007199254740993, 1, 2]")}};
}

}  // namespace

TEST(ArrowColumns, TheChosenOnesComeInTheirOrderAndNothingElseIsRead) {
  for (const Format format : kFormats) {
    const Reading read(format, *tableOf(stock()), "columns='item|id'");
    EXPECT_EQ(read.columns, "item:U id:F");
    EXPECT_EQ(read.rows, (Rows{{"cup", 1}, {"pot", 2}, {nullptr, 3}}));
    EXPECT_EQ(read.log, Strings{});
    // A declaration of a column that is not read stands there without effect.
    const Reading declared(format, *tableOf(stock()), "columns='id'",
                           "<Column name='id' meta='K'/><Column name='big' meta='U'/>");
    EXPECT_EQ(declared.columns, "id:K");
    EXPECT_FALSE(declared.hasFailed);
  }
  Columns odd = stock();
  odd[0].first = "a|b";
  const Reading escaped(Format::ipc, *tableOf(odd), "columns='a\\|b'");
  EXPECT_EQ(escaped.columns, "a|b:F");
}

TEST(ArrowColumns, NamesThatAreNotThere) {
  for (const Format format : kFormats) {
    const auto expectError = [format](const std::string& columns, const std::string& error) {
      const Reading read(format, *tableOf(stock()), "columns='" + columns + "'");
      EXPECT_TRUE(read.hasFailed);
      EXPECT_EQ(read.log, Strings{"error: " + error});
    };
    expectError("id|prise",
                "The file 'T' has no column 'prise', which is to be read. Did you mean price?");
    expectError("quantity",
                "The file 'T' has no column 'quantity', which is to be read. Its columns are: id, "
                "price, item, big.");
    expectError("id|id", "The column 'id' stands twice among the columns to read.");
    Columns twice = stock();
    twice[3].first = "price";
    EXPECT_TRUE(Reading(format, *tableOf(twice), "columns='price'").hasFailed);
    EXPECT_EQ(Reading(format, *tableOf(twice), "columns='item|id'").columns, "item:U id:F");
  }
}

// The bytes of the other columns are damaged, which nobody notices who does not read them.
TEST(ArrowColumns, OfParquetOnlyTheirBytesAreRead) {
  const auto damageOthers = [](std::string& bytes, const std::string& path) {
    const auto metadata = parquet::ParquetFileReader::OpenFile(path)->metadata();
    for (const int column : {0, 1, 3}) {
      const auto chunk = metadata->RowGroup(0)->ColumnChunk(column);
      const auto begin =
          static_cast<std::size_t>(chunk->has_dictionary_page() ? chunk->dictionary_page_offset()
                                                                : chunk->data_page_offset());
      std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(begin),
                  chunk->total_compressed_size(), '\xEE');
    }
  };
  const Reading read(Format::parquet, *tableOf(stock()), testing::FileForm(), "columns='item'",
                     damageOthers);
  EXPECT_EQ(read.rows, (Rows{{"cup"}, {"pot"}, {nullptr}}));
  EXPECT_FALSE(read.hasFailed);
  const Reading all(Format::parquet, *tableOf(stock()), testing::FileForm(), "", damageOthers);
  EXPECT_TRUE(all.hasFailed);
}

// The struct stands before the others, so that the columns of the file are not numbered as its
// fields are.
TEST(ArrowColumns, UnreadableOnesAreAnErrorJsonOrLeftOut) {
  const auto point = arrow::struct_(
      {arrow::field("x", arrow::int32()), arrow::field("tags", arrow::list(arrow::utf8()))});
  Columns columns = stock();
  columns.pop_back();
  columns.insert(columns.begin(), {"at", arrayOf(point, R"([{"x": 1, "tags": ["a", null]}, null,
                                           {"x": null, "tags": null}])")});
  columns.push_back({"bytes", arrayOf(arrow::binary(), R"(["hi", "", null])")});
  for (const Format format : kFormats) {
    const auto table = tableOf(columns);
    const Reading refused(format, *table, "");
    EXPECT_TRUE(refused.hasFailed);
    EXPECT_NE(refused.log.at(0).find("column 'at' has the type struct<"), std::string::npos);
    EXPECT_EQ(Reading(format, *table, "columns='item|id'").columns, "item:U id:F");

    const Reading left(format, *table, "unreadable='skip'");
    EXPECT_EQ(left.columns, "id:F price:F item:U");
    EXPECT_EQ(left.rows, (Rows{{1, 0.5, "cup"}, {2, nullptr, "pot"}, {3, 2, nullptr}}));
    EXPECT_EQ(left.log, Strings{"info: file 'T': columns are left out, since their types are not "
                                "read: at, bytes."});
    EXPECT_TRUE(Reading(format, *table, "unreadable='skip' columns='at'").hasFailed);

    const Reading text(format, *table, "unreadable='text' columns='id|at|bytes'",
                       "<Column name='at' meta='U'/>");
    EXPECT_EQ(text.columns, "id:F at:U bytes:U");
    EXPECT_EQ(text.rows, (Rows{{1, R"({"x":1,"tags":["a",null]})", R"("aGk=")"},
                               {2, nullptr, R"("")"},
                               {3, R"({"x":null,"tags":null})", nullptr}}));
    EXPECT_EQ(text.log, Strings{});
    const Reading number(format, *table, "unreadable='text'", "<Column name='at' meta='F'/>");
    EXPECT_NE(number.log.at(0).find("It can be U."), std::string::npos) << number.log.at(0);
  }
}

TEST(ArrowColumns, EveryTypeHasItsJson) {
  using arrow::TimeUnit;
  const auto expectJson = [](const std::shared_ptr<arrow::Array>& values,
                             const std::vector<std::optional<std::string>>& texts,
                             const std::vector<Format>& formats = {Format::ipc}) {
    Rows rows;
    for (const auto& text : texts) {
      rows.push_back(text ? testing::Values{*text} : testing::Values{nullptr});
    }
    for (const Format format : formats) {
      const Reading read(format, *tableOf({{"x", values}}), "unreadable='text'");
      EXPECT_EQ(read.rows, rows) << values->type()->ToString();
      EXPECT_EQ(read.log, Strings{});
    }
  };
  // Within a list, since most of them have a reading of their own.
  const auto expectListed = [&](const std::shared_ptr<arrow::DataType>& type,
                                const std::string& values, const std::string& text) {
    expectJson(arrayOf(arrow::list(type), "[[" + values + ", null], [], null]"),
               {"[" + text + ",null]", "[]", std::nullopt});
  };
  expectListed(arrow::boolean(), "true, false", "true,false");
  expectListed(arrow::int64(), "9007199254740993, -1", "9007199254740993,-1");
  expectListed(arrow::uint64(), "18446744073709551615", "18446744073709551615");
  expectListed(arrow::float64(), "0.1, -2, 1e300, NaN, Inf, -Inf",
               R"(0.1,-2,1e+300,"NaN","Infinity","-Infinity")");
  expectListed(arrow::float32(), "0.1", "0.1");
  expectListed(arrow::float16(), "1.5", "1.5");
  expectListed(arrow::decimal128(20, 2), R"("-123.40", "0.05")", "-123.40,0.05");
  expectListed(arrow::utf8(), R"("a\"b\\c\n\u0001\u00e9", "")",
               "\"a\\\"b\\\\c\\u000a\\u0001\u00E9\",\"\"");
  expectListed(arrow::date32(), "0, -1", R"("1970-01-01","1969-12-31")");
  expectListed(arrow::timestamp(TimeUnit::MILLI, "UTC"), "-1", R"("1969-12-31T23:59:59.999Z")");
  expectListed(arrow::time32(TimeUnit::SECOND), "3661, 59", R"("01:01:01","00:00:59")");
  expectListed(arrow::time64(TimeUnit::MICRO), "86399000001", R"("23:59:59.000001")");
  expectListed(arrow::duration(TimeUnit::MILLI), "-1500, 0", R"("PT-1.500S","PT0.000S")");
  expectListed(arrow::fixed_size_binary(3), R"("abc")", R"("YWJj")");
  expectListed(arrow::month_interval(), "-3", R"("P-3M")");
  expectListed(arrow::month_day_nano_interval(), "[1, -2, 3]", R"("P1M-2DT0.000000003S")");

  const std::vector<Format> all(std::begin(kFormats), std::end(kFormats));
  expectJson(arrayOf(arrow::map(arrow::utf8(), arrow::int32()),
                     R"([[["a", 1], ["b\"", null]], [], null])"),
             {R"({"a":1,"b\"":null})", "{}", std::nullopt}, all);
  expectJson(arrayOf(arrow::map(arrow::int32(), arrow::utf8()), R"([[[7, "x"]]])"),
             {R"({"7":"x"})"}, all);
  expectJson(arrayOf(arrow::list(arrow::list(arrow::int8())), "[[[1], null, []], null]"),
             {"[[1],null,[]]", std::nullopt}, all);
  expectJson(arrayOf(arrow::fixed_size_list(arrow::int8(), 2), "[[1, 2], null]"),
             {"[1,2]", std::nullopt});
  expectJson(arrayOf(arrow::large_list(arrow::int8()), "[[1, 2]]"), {"[1,2]"});
  expectJson(arrayOf(arrow::null(), "[null, null]"), {std::nullopt, std::nullopt}, all);
  const auto dictionary = arrow::dictionary(arrow::int8(), arrow::binary());
  expectJson(*arrow::DictionaryArray::FromArrays(dictionary, arrayOf(arrow::int8(), "[1, 0, null]"),
                                                 arrayOf(arrow::binary(), R"([null, "hi"])")),
             {R"("aGk=")", std::nullopt, std::nullopt});
  expectJson(*arrow::DenseUnionArray::Make(
                 *arrayOf(arrow::int8(), "[0, 1, 0]"), *arrayOf(arrow::int32(), "[0, 0, 1]"),
                 {arrayOf(arrow::int8(), "[5, null]"), arrayOf(arrow::utf8(), R"(["x"])")}),
             {"5", R"("x")", std::nullopt});
}

// Of several units, batches and row groups, and a part of a larger array.
TEST(ArrowColumns, JsonOfManyRows) {
  constexpr int kRows = 50'000;
  std::string values = "[[-1]";
  Rows rows;
  for (int row = 0; row < kRows; ++row) {
    values += row % 7 == 0 ? ",null" : ",[" + std::to_string(row) + "]";
    rows.push_back(row % 7 == 0 ? testing::Values{nullptr}
                                : testing::Values{"[" + std::to_string(row) + "]"});
  }
  const auto lists = arrayOf(arrow::list(arrow::int32()), values + "]")->Slice(1);
  for (const Format format : kFormats) {
    const Reading read(format, *tableOf({{"x", lists}}), "unreadable='text'", {}, {20'000});
    EXPECT_EQ(read.rows, rows);
  }
}

// The last rows are in the last batch, and those before it are not looked at.
TEST(ArrowColumns, BatchesOfAnArrowFileAreSkippedUnread) {
  const TableFolder folder;
  testing::writeFile(folder.path("t"), Format::ipc,
                     *tableOf({{"x", arrayOf(arrow::utf8(), R"(["aa", "bb", "cc", "dd", "ee"])")}}),
                     {2});
  std::string bytes = folder.read("t");
  bytes[bytes.find("bb")] = '\xFF';  // no UTF-8
  folder.write("t", bytes);
  const auto readerOf = [&] {
    auto reader =
        (*ArrowFormats::load())
            ->makeReader(ArrowFormat::arrow, QString::fromStdString(folder.path("t")), {});
    EXPECT_TRUE(reader->open([] { return false; }));
    EXPECT_EQ(reader->rowCount(), 5);
    return reader;
  };
  const auto whole = readerOf();
  const auto damaged = whole->readUnit();
  damaged->parse();
  EXPECT_FALSE(damaged->failure().isEmpty());
  const auto end = readerOf();
  EXPECT_EQ(end->skipRows(3), 2);
  const auto unit = end->readUnit();
  unit->parse();
  EXPECT_EQ(unit->failure(), QString());
  ASSERT_NE(unit->batch(), nullptr);
  EXPECT_EQ(unit->batch()->rowCount(), 2u);
}

}  // namespace kelvarin
