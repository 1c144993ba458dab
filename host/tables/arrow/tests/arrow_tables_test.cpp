#include <gtest/gtest.h>

#include "arrow/array/array_dict.h"
#include "arrow/array/builder_binary.h"
#include "arrow/array/builder_decimal.h"
#include "arrow/array/builder_nested.h"
#include "arrow/array/builder_primitive.h"
#include "arrow/table.h"
#include "arrow/type.h"
#include "arrow/util/decimal.h"
#include "host/tables/arrow/arrow_actions.h"
#include "host/tables/arrow/tests/typed_arrays.h"
#include "host/tables/files/tests/table_folder.h"
#include "host/testing/full_disk.h"
#include "host/testing/row_harness.h"

namespace kelvarin {

using testing::array;
using testing::arrayBy;
using testing::Format;
using testing::FullDisk;
using testing::RowHarness;
using testing::Rows;
using testing::Strings;
using testing::TableFolder;

namespace {

std::string xml(const char* action, const std::string& path) {
  return std::string("<") + action + " name='a' file='" + path + "'/>";
}

// With the settings of columns, if any: attributes and children of the action's element.
RowHarness source(Format format, const std::string& path, const std::string& attributes = {},
                  const std::string& children = {}) {
  const std::string rest = " name='a' file='" + path + "' " + attributes + ">" + children + "</";
  return format == Format::parquet
             ? RowHarness::of<ReadParquet>("<ReadParquet" + rest + "ReadParquet>")
             : RowHarness::of<ReadArrow>("<ReadArrow" + rest + "ReadArrow>");
}

RowHarness sink(Format format, const std::string& path, const std::string& columns) {
  return format == Format::parquet
             ? RowHarness::of<WriteParquet>(xml("WriteParquet", path), columns)
             : RowHarness::of<WriteArrow>(xml("WriteArrow", path), columns);
}

std::string writeColumn(const TableFolder& folder, Format format,
                        const std::shared_ptr<arrow::Array>& values) {
  const std::string path = folder.path("t");
  const auto table =
      arrow::Table::Make(arrow::schema({arrow::field("x", values->type())}), {values});
  testing::writeFile(path, format, *table);
  return path;
}

void expectRead(const std::shared_ptr<arrow::Array>& values, const std::string& columns,
                const Rows& rows) {
  for (const Format format : {Format::parquet, Format::ipc, Format::stream}) {
    const TableFolder folder;
    auto reader = source(format, writeColumn(folder, format, values));
    EXPECT_EQ(reader.rows(0), rows) << values->type()->ToString();
    EXPECT_EQ(reader.columns(0), columns);
    EXPECT_EQ(reader.log(), Strings{});
  }
}

void expectRefused(const std::shared_ptr<arrow::Array>& values, const std::string& part,
                   const std::vector<Format>& formats = {Format::parquet, Format::ipc}) {
  for (const Format format : formats) {
    const TableFolder folder;
    auto reader = source(format, writeColumn(folder, format, values));
    reader.rows(0);
    EXPECT_TRUE(reader.hasFailed());
    ASSERT_EQ(reader.log().size(), 1u);
    EXPECT_NE(reader.log()[0].find(part), std::string::npos) << reader.log()[0];
  }
}

void expectReadsBack(const Rows& rows) {
  for (const Format format : {Format::parquet, Format::ipc}) {
    const TableFolder folder;
    auto writer = sink(format, folder.path("t"), "n:F k:K t:U");
    writer.push(rows);
    writer.finish();
    EXPECT_EQ(writer.log(), Strings{});
    EXPECT_EQ(folder.listing(), "t");
    auto reader = source(format, folder.path("t"));
    EXPECT_EQ(reader.rows(0), rows);
    EXPECT_EQ(reader.columns(0), "n:F k:K t:U");
  }
}

}  // namespace

TEST(ArrowTables, whatIsWrittenReadsBack) {
  Rows rows{{1.5, 7, "x"},
            {nullptr, nullptr, nullptr},
            {-0.0, 4294967293u, ""},
            {std::nan(""), 0, "Krak\xC3\xB3w"}};
  for (int i = 0; i < 150000; ++i) {
    rows.push_back({i, i, std::to_string(i)});
  }
  expectReadsBack(rows);
}

TEST(ArrowTables, columnsWithoutValuesReadBack) {
  expectReadsBack({{nullptr, nullptr, nullptr}, {nullptr, nullptr, nullptr}});
}

TEST(ArrowTables, withoutRowsThereAreTheColumns) {
  for (const Format format : {Format::parquet, Format::ipc}) {
    const TableFolder folder;
    auto writer = sink(format, folder.path("t"), "n:F k:K t:U");
    writer.finish();
    auto reader = source(format, folder.path("t"));
    reader.checkOnly();
    EXPECT_TRUE(reader.rows(0).empty());
    EXPECT_EQ(reader.columns(0), "n:F k:K t:U");
    EXPECT_FALSE(reader.hasFailed());
  }
}

TEST(ArrowTables, numbers) {
  expectRead(array<arrow::Int64Builder, std::int64_t>({{-9007199254740992}, {}, {INT64_MIN}}),
             "x:F", {{-9007199254740992.0}, {nullptr}, {-0x1p63}});
  expectRead(array<arrow::UInt64Builder, std::uint64_t>({{1ull << 63}}), "x:F", {{0x1p63}});
  expectRead(array<arrow::Int8Builder, std::int8_t>({{-5}}), "x:F", {{-5}});
  expectRead(array<arrow::FloatBuilder, float>({{0.5f}, {}}), "x:F", {{0.5}, {nullptr}});
  expectRead(array<arrow::BooleanBuilder, bool>({{true}, {}, {false}}), "x:F",
             {{1}, {nullptr}, {0}});
  expectRead(array<arrow::DoubleBuilder, double>({{kNullNumber}}), "x:F", {{std::nan("")}});
  expectRead(
      arrayBy<arrow::Decimal128Builder, arrow::Decimal128>(
          arrow::Decimal128Builder(arrow::decimal128(20, 2)), {{arrow::Decimal128(-12345)}, {}}),
      "x:F", {{-123.45}, {nullptr}});
}

TEST(ArrowTables, datesAndTimestamps) {
  expectRead(array<arrow::Date32Builder, std::int32_t>({{0}, {-1}, {}, {11016}, {-719528}}), "x:U",
             {{"1970-01-01"}, {"1969-12-31"}, {nullptr}, {"2000-02-29"}, {"0000-01-01"}});
}

// One form in each column, which the type alone decides.
TEST(ArrowTables, timestamps) {
  using Unit = arrow::TimeUnit;
  const auto expectTexts = [](Unit::type unit, const std::string& zone,
                              const std::vector<std::optional<std::int64_t>>& values,
                              const Rows& rows, const std::string& note,
                              const Strings& warnings = {}) {
    const auto array = arrayBy<arrow::TimestampBuilder, std::int64_t>(
        arrow::TimestampBuilder(arrow::timestamp(unit, zone), arrow::default_memory_pool()),
        values);
    const TableFolder folder;
    auto reader = source(Format::ipc, writeColumn(folder, Format::ipc, array));
    EXPECT_EQ(reader.rows(0), rows);
    reader.close();
    Strings log = reader.log();
    ASSERT_EQ(log.size(), 1 + warnings.size());
    const std::string form = "the timestamps of x are texts like " + note;
    EXPECT_NE(log[0].find(form), std::string::npos) << log[0];
    for (std::size_t i = 0; i < warnings.size(); ++i) {
      EXPECT_NE(log[i + 1].find(warnings[i]), std::string::npos) << log[i + 1];
    }
  };
  expectTexts(Unit::SECOND, "", {{1357017300}, {-1}, {}, {253402300799}, {-62135596800}},
              {{"2013-01-01T05:15:00"},
               {"1969-12-31T23:59:59"},
               {nullptr},
               {"9999-12-31T23:59:59"},
               {"0001-01-01T00:00:00"}},
              "2024-01-31T23:59:59; dates are read from them with "
              "dateFormat='yyyy-MM-ddThh:mm:ss'.");
  expectTexts(Unit::MILLI, "", {{1357017300000}, {-1}},
              {{"2013-01-01T05:15:00.000"}, {"1969-12-31T23:59:59.999"}},
              "2024-01-31T23:59:59.123; dates are read from them with "
              "dateFormat='yyyy-MM-ddThh:mm:ss.zzz'.");
  expectTexts(Unit::MICRO, "UTC", {{1357017300000000}, {}, {-1}, {-1000}},
              {{"2013-01-01T05:15:00.000000Z"},
               {nullptr},
               {"1969-12-31T23:59:59.999999Z"},
               {"1969-12-31T23:59:59.999000Z"}},
              "2024-01-31T23:59:59.123456Z; dates are read from them with "
              "dateFormat='yyyy-MM-ddThh:mm:ss.zzzZ' and isUTC='1', the default.",
              {"row 3: timestamps of column 'x' have digits below the millisecond (1 in all, this "
               "is the first)."});
  expectTexts(Unit::NANO, "Europe/Paris", {{1500000000000000001}, {1500000000001000000}},
              {{"2017-07-14T02:40:00.000000001Z"}, {"2017-07-14T02:40:00.001000000Z"}},
              "2024-01-31T23:59:59.123456789Z; ", {"row 1: timestamps of column 'x'"});
}

TEST(ArrowTables, dictionariesGiveTheirValues) {
  const auto codes = array<arrow::Int8Builder, std::int8_t>({{1}, {}, {0}, {1}});
  const auto words = array<arrow::StringBuilder, std::string>({{"zero"}, {"one"}});
  const auto type = arrow::dictionary(arrow::int8(), arrow::utf8());
  expectRead(*arrow::DictionaryArray::FromArrays(type, codes, words), "x:U",
             {{"one"}, {nullptr}, {"zero"}, {"one"}});
}

TEST(ArrowTables, valuesThatCannotBeHeld) {
  expectRefused(array<arrow::Int64Builder, std::int64_t>({{1}, {9007199254740993}}),
                "row 2, column 'x': 9007199254740993 cannot be held");
  expectRefused(array<arrow::Int64Builder, std::int64_t>({{INT64_MAX}}), "row 1, column 'x'");
  expectRefused(array<arrow::UInt32Builder, std::uint32_t>({{0}, {4294967294u}}),
                "row 2, column 'x': 4294967294 is not a key");
  expectRefused(arrayBy<arrow::Decimal128Builder, arrow::Decimal128>(
                    arrow::Decimal128Builder(arrow::decimal128(20, 0)),
                    {{arrow::Decimal128(9007199254740993)}}),
                "9007199254740993 cannot be held");
  expectRefused(array<arrow::BinaryBuilder, std::string>({{"b"}}),
                "column 'x' has the type binary");
  arrow::ListBuilder lists(arrow::default_memory_pool(), std::make_shared<arrow::Int32Builder>());
  ASSERT_TRUE(lists.AppendNull().ok());
  expectRefused(*lists.Finish(), "column 'x' has the type list");
  expectRefused(array<arrow::StringBuilder, std::string>({{"ok"}, {"\xFF"}}), "column 'x'",
                {Format::ipc});
}

TEST(ArrowTables, declaredColumns) {
  const auto expectAs = [](const std::shared_ptr<arrow::Array>& values, char meta,
                           const Rows& rows) {
    for (const Format format : {Format::parquet, Format::ipc}) {
      const TableFolder folder;
      const std::string type(1, meta);
      auto reader = source(format, writeColumn(folder, format, values), "",
                           "<Column name='x' meta='" + type + "'/>");
      EXPECT_EQ(reader.rows(0), rows) << values->type()->ToString();
      EXPECT_EQ(reader.columns(0), "x:" + type);
      EXPECT_EQ(reader.log(), Strings{});
    }
  };
  const auto longs =
      array<arrow::Int64Builder, std::int64_t>({{INT64_MIN}, {}, {9007199254740993}, {0}});
  expectAs(longs, 'U', {{"-9223372036854775808"}, {nullptr}, {"9007199254740993"}, {"0"}});
  expectAs(array<arrow::UInt64Builder, std::uint64_t>({{UINT64_MAX}}), 'U',
           {{"18446744073709551615"}});
  expectAs(array<arrow::UInt32Builder, std::uint32_t>({{4294967295u}, {7}}), 'U',
           {{"4294967295"}, {"7"}});
  expectAs(array<arrow::UInt32Builder, std::uint32_t>({{4294967295u}, {7}}), 'F',
           {{4294967295.0}, {7}});
  expectAs(array<arrow::Int64Builder, std::int64_t>({{4294967293}, {0}, {}}), 'K',
           {{4294967293u}, {0}, {nullptr}});
  const auto decimals = [](int precision, int scale, const std::vector<std::string>& values) {
    std::vector<std::optional<arrow::Decimal128>> parsed;
    for (const std::string& value : values) {
      parsed.emplace_back(arrow::Decimal128(value));
    }
    return arrayBy<arrow::Decimal128Builder, arrow::Decimal128>(
        arrow::Decimal128Builder(arrow::decimal128(precision, scale)), parsed);
  };
  expectAs(
      decimals(38, 9, {"1", "-1", "0", "-12345678901234567890123456789"}), 'U',
      {{"0.000000001"}, {"-0.000000001"}, {"0.000000000"}, {"-12345678901234567890.123456789"}});
  expectAs(decimals(38, 18, {"333333333333333333", "9007199254740992000000000000000000"}), 'F',
           {{1.0 / 3}, {9007199254740992.0}});
  // The whole part of a decimal is not rounded.
  expectRefused(decimals(38, 2, {"1234567890123456789"}),
                "row 1, column 'x': 12345678901234567.89 cannot be held by a number column without "
                "loss. Declare the column as text, <Column name='x' meta='U'/>, or set "
                "onBadValue='null'.");

  for (const Format format : {Format::parquet, Format::ipc}) {
    const TableFolder folder;
    const std::string path = writeColumn(folder, format, longs);
    auto tolerant = source(format, path, "onBadValue='null'");
    EXPECT_EQ(tolerant.rows(0), (Rows{{-0x1p63}, {nullptr}, {nullptr}, {0}}));
    tolerant.close();
    EXPECT_EQ(tolerant.log(),
              Strings{"warning: file '" + path +
                      "', row 3: this value of column 'x' does not fit its type and was read as "
                      "null."});
    const auto expectFault = [&](const std::string& child, const std::string& part) {
      auto reader = source(format, path, "", child);
      reader.rows(0);
      EXPECT_TRUE(reader.hasFailed());
      EXPECT_NE(reader.log().at(0).find(part), std::string::npos) << reader.log().at(0);
    };
    expectFault("<Column name='y' meta='U'/>",
                "has no column 'y', which is declared. Its columns are: x.");
    expectFault("<Column name='x' meta='K'/>",
                "row 1, column 'x': -9223372036854775808 is not a key");
    writeColumn(folder, format, array<arrow::StringBuilder, std::string>({{"1"}}));
    expectFault("<Column name='x' meta='F'/>",
                "column 'x' has the type string and is declared with meta 'F'. It can be U.");
  }
}

TEST(ArrowTables, savesWhatDiffersFromTheDefaults) {
  for (const std::string rest : {" file='f'/>\n",
                                 " file='f' onBadValue='null'>\n<Column name='x' "
                                 "meta='U'/>\n</ReadArrow>\n"}) {
    const std::string text = "<ReadArrow name='a' version='1'" + rest;
    EXPECT_EQ(RowHarness::of<ReadArrow>(text).saved(), text);
  }
}

TEST(ArrowTables, damagedFilesGiveAnErrorOrTheirRows) {
  for (const Format format : {Format::parquet, Format::ipc}) {
    const TableFolder folder;
    const auto values = array<arrow::StringBuilder, std::string>({{"one"}, {"two"}, {}, {"three"}});
    const std::string path = writeColumn(folder, format, values);
    const std::string good = folder.read("t");
    for (std::size_t size = 0; size < good.size(); size += 7) {
      folder.write("t", good.substr(0, size));
      auto reader = source(format, path);
      reader.rows(0);
      EXPECT_TRUE(reader.hasFailed()) << "cut at " << size;
    }
    for (std::size_t at = 0; at < good.size(); ++at) {
      std::string bad = good;
      bad[at] = static_cast<char>(bad[at] ^ 0xFF);
      folder.write("t", bad);
      auto reader = source(format, path);
      reader.rows(0);
      EXPECT_EQ(reader.hasFailed(), !reader.log().empty()) << "flipped at " << at;
    }
  }
  auto absent = source(Format::parquet, "/no/such/file");
  absent.rows(0);
  EXPECT_NE(absent.log().at(0).find("'/no/such/file' cannot be read: No such file"),
            std::string::npos);
}

TEST(ArrowTables, aFullDiskLeavesTheOldFile) {
  for (const Format format : {Format::parquet, Format::ipc}) {
    const TableFolder folder;
    folder.write("t", "old");
    const FullDisk disk(1000);
    auto writer = sink(format, folder.path("t"), "t:U");
    writer.host().retryFullDisk(1);
    for (int i = 0; i < 3000; ++i) {
      writer.push({std::to_string(i * 7919.0)});
    }
    writer.finish();
    EXPECT_TRUE(writer.hasFailed());
    EXPECT_EQ(writer.host().fullDiskFiles(), Strings(2, folder.path("t")));
    EXPECT_EQ(folder.read("t"), "old");
    EXPECT_EQ(folder.listing(), "t");
  }
}

}  // namespace kelvarin
