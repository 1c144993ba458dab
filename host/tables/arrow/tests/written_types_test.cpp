// Columns that WriteParquet and WriteArrow store in the types that the user declares.
#include <gtest/gtest.h>

#include "arrow/array/builder_binary.h"
#include "arrow/array/builder_primitive.h"
#include "arrow/table.h"
#include "arrow/type.h"
#include "host/tables/arrow/arrow_actions.h"
#include "host/tables/arrow/iso_time.h"
#include "host/tables/arrow/tests/typed_arrays.h"
#include "host/tables/files/tests/table_folder.h"
#include "host/testing/row_harness.h"

namespace kelvarin {

using testing::array;
using testing::arrayBy;
using testing::Format;
using testing::RowHarness;
using testing::Rows;
using testing::Strings;
using testing::TableFolder;

namespace {

// With attributes and children of the action's element.
RowHarness sink(Format format, const std::string& path, const std::string& columns,
                const std::string& children, const std::string& attributes = {}) {
  const std::string rest = " name='a' file='" + path + "' " + attributes + ">" + children + "</";
  return format == Format::parquet
             ? RowHarness::of<WriteParquet>("<WriteParquet" + rest + "WriteParquet>", columns)
             : RowHarness::of<WriteArrow>("<WriteArrow" + rest + "WriteArrow>", columns);
}

RowHarness source(Format format, const std::string& path, const std::string& children) {
  const std::string rest = " name='a' file='" + path + "'>" + children + "</";
  return format == Format::parquet
             ? RowHarness::of<ReadParquet>("<ReadParquet" + rest + "ReadParquet>")
             : RowHarness::of<ReadArrow>("<ReadArrow" + rest + "ReadArrow>");
}

std::string column(const std::string& name, const std::string& type) {
  return "<Column name='" + name + "' type='" + type + "'/>";
}

struct TypedField {
  std::string name;
  std::string type;  // as it is declared
  std::shared_ptr<arrow::Array> values;
};

std::vector<TypedField> fieldsOfEveryType() {
  using Unit = arrow::TimeUnit;
  constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
  const auto timestamps = [](Unit::type unit, const std::string& zone,
                             const std::vector<std::optional<std::int64_t>>& values) {
    return arrayBy<arrow::TimestampBuilder, std::int64_t>(
        arrow::TimestampBuilder(arrow::timestamp(unit, zone), arrow::default_memory_pool()),
        values);
  };
  return {
      {"large", "int64",
       array<arrow::Int64Builder, std::int64_t>({{kLargest}, {}, {-kLargest - 1}, {-1}})},
      {"small", "int32", array<arrow::Int32Builder, std::int32_t>({{-7}, {2147483647}, {}, {0}})},
      {"unsigned", "uint32",
       array<arrow::UInt32Builder, std::uint32_t>({{0}, {4000000000u}, {}, {1}})},
      {"flag", "boolean", array<arrow::BooleanBuilder, bool>({{true}, {}, {false}, {true}})},
      {"day", "date", array<arrow::Date32Builder, std::int32_t>({{-800000}, {0}, {19753}, {}})},
      {"millis", "timestamp_ms", timestamps(Unit::MILLI, "", {{-1}, {}, {1357017300250}, {0}})},
      {"micros", "timestamp_us", timestamps(Unit::MICRO, "", {{}, {1}, {-62135596800000001}, {5}})},
      {"nanos", "timestamp_ns", timestamps(Unit::NANO, "", {{1}, {-1}, {kLargest}, {}})},
      {"instant", "timestamp_us_utc", timestamps(Unit::MICRO, "UTC", {{7}, {}, {-8}, {9}})},
      {"number", "double", array<arrow::DoubleBuilder, double>({{0.5}, {}, {-1e300}, {3}})},
      {"text", "text", array<arrow::StringBuilder, std::string>({{"a"}, {""}, {}, {"2024-01-31"}})},
  };
}

void expectFailure(RowHarness& writer, const std::string& part) {
  writer.finish();
  EXPECT_TRUE(writer.hasFailed());
  ASSERT_FALSE(writer.log().empty());
  EXPECT_NE(writer.log().back().find(part), std::string::npos) << writer.log().back();
}

}  // namespace

TEST(WrittenTypes, WhatComesInGoesOutInItsTypes) {
  arrow::FieldVector fields;
  arrow::ArrayVector arrays;
  std::string declared;
  for (const TypedField& field : fieldsOfEveryType()) {
    fields.push_back(arrow::field(field.name, field.values->type()));
    arrays.push_back(field.values);
    declared += column(field.name, field.type);
  }
  const auto table = arrow::Table::Make(arrow::schema(fields), arrays);
  for (const Format format : {Format::parquet, Format::ipc}) {
    const TableFolder folder;
    testing::writeFile(folder.path("in"), format, *table);
    auto reader = source(format, folder.path("in"), "<Column name='large' meta='U'/>");
    const Rows rows = reader.rows(0);
    ASSERT_EQ(rows.size(), 4u);
    auto writer = sink(format, folder.path("out"), reader.columns(0), declared);
    writer.push(rows);
    writer.finish();
    EXPECT_EQ(writer.log(), Strings{});
    const auto written = testing::tableOfFile(folder.path("out"), format);
    EXPECT_TRUE(written->schema()->Equals(*table->schema(), false))
        << written->schema()->ToString();
    EXPECT_TRUE(written->Equals(*table)) << written->ToString();
  }
}

// More than a page and a row group, with and without dictionaries and missing values.
TEST(WrittenTypes, LongColumnsReadBack) {
  constexpr std::int64_t kRows = 140'000;
  Rows rows;
  arrow::Int64Builder spread;
  arrow::Int32Builder repeated;
  arrow::BooleanBuilder flags;
  for (std::int64_t row = 0; row < kRows; ++row) {
    const bool isMissing = row % 5 == 3;
    rows.push_back(
        {static_cast<double>(row * 65537), static_cast<double>(row % 9),
         isMissing ? testing::Value(nullptr) : testing::Value(row % 3 == 0 ? 1.0 : 0.0)});
    EXPECT_TRUE(spread.Append(row * 65537).ok());
    EXPECT_TRUE(repeated.Append(static_cast<std::int32_t>(row % 9)).ok());
    EXPECT_TRUE((isMissing ? flags.AppendNull() : flags.Append(row % 3 == 0)).ok());
  }
  const auto expected = arrow::Table::Make(
      arrow::schema({arrow::field("a", arrow::int64()), arrow::field("b", arrow::int32()),
                     arrow::field("c", arrow::boolean())}),
      {*spread.Finish(), *repeated.Finish(), *flags.Finish()});
  for (const Format format : {Format::parquet, Format::ipc}) {
    const TableFolder folder;
    auto writer = sink(format, folder.path("t"), "a:F b:F c:F",
                       column("a", "int64") + column("b", "int32") + column("c", "boolean"));
    writer.push(rows);
    writer.finish();
    EXPECT_TRUE(testing::tableOfFile(folder.path("t"), format)->Equals(*expected));
  }
}

TEST(WrittenTypes, AValueThatDoesNotFitStopsTheRunOrIsNull) {
  struct Case {
    const char* type;
    const char* meta;
    testing::Value good;
    testing::Value bad;
    const char* shown;
  };
  const std::vector<Case> cases{
      {"int64", "F", 9007199254740992.0, 9223372036854775808.0, "'9.223372036854776e+18'"},
      {"int64", "F", -9223372036854775808.0, 1.5, "'1.5'"},
      {"int64", "F", 0.0, std::nan(""), "'nan'"},
      {"int64", "U", "-9223372036854775808", "9223372036854775808", "'9223372036854775808'"},
      {"int32", "F", -2147483648.0, 2147483648.0, "'2147483648'"},
      {"int32", "K", 2147483647u, 2147483648u, "'2147483648'"},
      {"uint32", "F", 4294967295.0, -1.0, "'-1'"},
      {"boolean", "F", 1.0, 2.0, "'2'"},
      {"boolean", "U", "true", "yes", "'yes'"},
      {"double", "U", "1e3", "1e3 ", "'1e3 '"},
      {"date", "U", "2024-02-29", "2023-02-29", "texts like 2024-01-31"},
      {"date", "U", "+10000-01-01", "10000-01-01", "'10000-01-01'"},
      {"timestamp_ms", "U", "2024-01-31T23:59:59", "2024-01-31", "like 2024-01-31T23:59:59.123"},
      {"timestamp_ms", "U", "2024-01-31T23:59:59.1200", "2024-01-31T23:59:59.1234", "59.1234'"},
      {"timestamp_us", "U", "2024-01-31T23:59:59.123456", "2024-01-31T23:59:59Z", "59Z'"},
      {"timestamp_us_utc", "U", "2024-01-31T23:59:59Z", "2024-01-31T24:00:00Z", "24:00:00Z'"},
      {"timestamp_ns", "U", "2262-04-11T23:47:16.854775807", "2262-04-11T23:47:16.854775808",
       "808'"},
  };
  for (const Case& each : cases) {
    const TableFolder folder;
    const std::string columns = std::string("x:F v:") + each.meta;
    const Rows rows{{1, each.good}, {2, nullptr}, {3, each.bad}, {4, each.bad}};
    auto strict = sink(Format::parquet, folder.path("t"), columns, column("v", each.type));
    strict.push(rows);
    expectFailure(strict, "row 3, column 'v': ");
    EXPECT_NE(strict.log().back().find(each.shown), std::string::npos) << strict.log().back();
    EXPECT_EQ(folder.listing(), "");
    auto lenient = sink(Format::parquet, folder.path("t"), columns, column("v", each.type),
                        "onBadValue='null'");
    lenient.push(rows);
    lenient.finish();
    ASSERT_EQ(lenient.log().size(), 1u);
    EXPECT_NE(lenient.log()[0].find("row 3: 2 values of column 'v'"), std::string::npos)
        << lenient.log()[0];
    EXPECT_EQ(testing::tableOfFile(folder.path("t"), Format::parquet)->column(1)->null_count(), 3);
  }
}

TEST(WrittenTypes, AColumnThatCannotHaveTheTypeIsRefused) {
  const TableFolder folder;
  const auto expectRefused = [&](const std::string& declared, const std::string& part) {
    auto writer = sink(Format::ipc, folder.path("t"), "price:F name:U", declared);
    writer.push(Rows{{1, "a"}});
    expectFailure(writer, part);
    EXPECT_EQ(folder.listing(), "");
  };
  expectRefused(column("prise", "int64"), "'price'");
  expectRefused(column("price", "date"), "It can be double, int64, int32, uint32, boolean.");
  expectRefused(column("price", "int"), "declared with the type 'int'");
}

TEST(IsoTime, TextsOfDatesReadBack) {
  for (std::int64_t days = -800'000; days < 3'000'000; days += 97) {
    std::string text;
    appendIsoDate(text, days);
    EXPECT_EQ(daysOfIsoDate(text), days) << text;
  }
  for (const char* text : {"", "2024-1-31", "2024-13-01", "2024-00-10", "2024-04-31", "1900-02-29",
                           "2024-01-31 ", "+2024", "-12345678-01-01", "2024-01-31T"}) {
    EXPECT_EQ(daysOfIsoDate(text), std::nullopt) << text;
  }
  for (const char* text : {"2024-01-31T1:00:00", "2024-01-31 10:00:00", "2024-01-31T10:60:00",
                           "2024-01-31T10:00:60", "2024-01-31T10:00:00.", "2024-01-31T10:00"}) {
    EXPECT_EQ(ticksOfIsoTimestamp(text, 9, false), std::nullopt) << text;
  }
}

}  // namespace kelvarin
