#include <algorithm>
#include <stdexcept>

#include <arrow/array.h>
#include <arrow/csv/api.h>
#include <arrow/io/api.h>
#include <arrow/table.h>

#include "benchmarks/gel/arrow_outcome.h"
#include "benchmarks/gel/made_tables.h"

namespace kelvarin {

namespace {

constexpr const char* kNumbers[] = {
    "year",           "month",     "day",    "dep_time", "sched_dep_time", "dep_delay", "arr_time",
    "sched_arr_time", "arr_delay", "flight", "air_time", "distance",       "hour",      "minute"};

std::shared_ptr<arrow::Table> readCsv(const std::string& csvFile) {
  auto convert = arrow::csv::ConvertOptions::Defaults();
  for (const char* number : kNumbers) {
    convert.column_types[number] = arrow::float64();
  }
  for (const char* text : {"carrier", "tailnum", "origin", "dest", "time_hour"}) {
    convert.column_types[text] = arrow::utf8();
  }
  convert.strings_can_be_null = true;
  const auto file = valueOf(arrow::io::ReadableFile::Open(csvFile));
  const auto reader = valueOf(arrow::csv::TableReader::Make(
      arrow::io::default_io_context(), file, arrow::csv::ReadOptions::Defaults(),
      arrow::csv::ParseOptions::Defaults(), convert));
  return valueOf(valueOf(reader->Read())->CombineChunks());
}

template <typename Array>
const Array& arrayOf(const arrow::Table& table, const std::string& name) {
  const auto column = table.GetColumnByName(name);
  if (column == nullptr || column->num_chunks() != 1) {
    throw std::runtime_error("the flights have no column '" + name + "'");
  }
  return static_cast<const Array&>(*column->chunk(0));
}

// yyyymmdd
std::vector<std::uint32_t> datesOf(const arrow::Table& table) {
  const auto& years = arrayOf<arrow::DoubleArray>(table, "year");
  const auto& months = arrayOf<arrow::DoubleArray>(table, "month");
  const auto& days = arrayOf<arrow::DoubleArray>(table, "day");
  std::vector<std::uint32_t> dates;
  for (std::int64_t row = 0; row < table.num_rows(); ++row) {
    dates.push_back(static_cast<std::uint32_t>(years.Value(row) * 10000 + months.Value(row) * 100 +
                                               days.Value(row)));
  }
  return dates;
}

void addColumn(SampleTable& flights, const arrow::Table& table, const std::string& name,
               const std::vector<std::int64_t>& order) {
  const bool isNumber = table.GetColumnByName(name)->type()->id() == arrow::Type::DOUBLE;
  SampleColumn& column =
      flights.add(name, isNumber ? MetaTypeColumn::number : MetaTypeColumn::text);
  for (const std::int64_t row : order) {
    if (arrayOf<arrow::Array>(table, name).IsNull(row)) {
      column.addMissing();
    } else if (isNumber) {
      column.addNumber(arrayOf<arrow::DoubleArray>(table, name).Value(row));
    } else {
      column.addText(arrayOf<arrow::StringArray>(table, name).GetView(row));
    }
  }
}

}  // namespace

SampleTable readFlights(const std::string& csvFile) {
  const auto table = readCsv(csvFile);
  const std::vector<std::uint32_t> dates = datesOf(*table);
  std::vector<std::int64_t> order(dates.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    order[i] = static_cast<std::int64_t>(i);
  }
  std::stable_sort(order.begin(), order.end(), [&](std::int64_t left, std::int64_t right) {
    return dates[static_cast<std::size_t>(left)] < dates[static_cast<std::size_t>(right)];
  });
  SampleTable flights{
      .name = "flights", .rows = dates.size(), .threeColumns = {"date", "carrier", "dep_delay"}};
  SampleColumn& date = flights.add("date", MetaTypeColumn::key);
  for (const std::int64_t row : order) {
    date.addKey(dates[static_cast<std::size_t>(row)]);
  }
  for (const std::string& name : table->ColumnNames()) {
    addColumn(flights, *table, name, order);
  }
  return flights;
}

}  // namespace kelvarin
