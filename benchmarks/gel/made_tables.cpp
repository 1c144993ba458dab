#include "benchmarks/gel/made_tables.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "base/null_number.h"
#include "benchmarks/gel/chance.h"
#include "benchmarks/gel/date_text.h"
#include "benchmarks/gel/number_columns.h"
#include "benchmarks/gel/shapeless_texts.h"
#include "benchmarks/gel/text_columns.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t kSeed = 20130101;

template <typename Make>
void addNumbers(SampleTable& table, const std::string& name, Make make) {
  Chance chance(kSeed + table.columns.size());
  SampleColumn& column = table.add(name, MetaTypeColumn::number);
  for (std::size_t row = 0; row < table.rows; ++row) {
    column.addNumber(make(chance));
  }
}

void addKeys(SampleTable& table, const std::string& name, std::uint64_t range, bool isSorted) {
  Chance chance(kSeed + table.columns.size());
  std::vector<std::uint32_t> keys(table.rows);
  for (std::uint32_t& key : keys) {
    key = static_cast<std::uint32_t>(chance.below(range));
  }
  if (isSorted) {
    std::sort(keys.begin(), keys.end());
  }
  SampleColumn& column = table.add(name, MetaTypeColumn::key);
  for (const std::uint32_t key : keys) {
    column.addKey(key);
  }
}

std::vector<std::string> madeCities(std::size_t count) {
  constexpr const char* kBeginnings[] = {"Saint-", "Port ", "Bad ",   "New ",  "Villa",
                                         "Ober",   "",      "Nieder", "Lake ", "El "};
  constexpr const char* kMiddles[] = {"mar", "lon", "ber", "ka", "tor",
                                      "vel", "ras", "min", "du", "sal"};
  constexpr const char* kEndings[] = {"stadt",   "ville", "burg", "ia",   "ton",
                                      "minster", "ö",     "grad", "ford", "pur"};
  std::vector<std::string> cities;
  for (std::size_t i = 0; i < count; ++i) {
    cities.push_back(fmt::format("{}{}{}", kBeginnings[i % 10], kMiddles[i / 10 % 10],
                                 kEndings[(i / 100 + i) % 10]));
    cities.back()[0] = static_cast<char>(std::toupper(cities.back()[0]));
  }
  return cities;
}

// Half of the rows have one of 32 cities, a quarter one of 125.
WeightedChoice frequenciesOfCities(std::size_t count) {
  const auto rowsUpTo = [&](std::size_t city) {
    return std::pow(static_cast<double>(city) / static_cast<double>(count), 0.2);
  };
  std::vector<double> weights;
  for (std::size_t city = 0; city < count; ++city) {
    weights.push_back(rowsUpTo(city + 1) - rowsUpTo(city));
  }
  return WeightedChoice(std::move(weights));
}

// A table of each column and at last one of all.
std::vector<SampleTable> tablesOf(const std::string& name, const std::vector<TextColumn>& columns,
                                  std::size_t rows) {
  std::vector<SampleTable> tables;
  SampleTable all{.name = name, .rows = rows};
  for (const TextColumn& made : columns) {
    SampleTable one{.name = name + "." + made.name, .rows = rows};
    for (SampleTable* table : {&one, &all}) {
      SampleColumn& column = table->add(made.name, MetaTypeColumn::text);
      for (const std::string& value : made.values) {
        column.addText(value);
      }
      table->leastBytes += made.bitsPerValue * static_cast<double>(rows) / 8;
    }
    tables.push_back(std::move(one));
  }
  tables.push_back(std::move(all));
  return tables;
}

}  // namespace

SampleTable makeWide(std::size_t rows) {
  SampleTable table{
      .name = "wide", .rows = rows, .threeColumns = {"sorted_2", "price_3", "integer_4"}};
  for (int i = 0; i < 20; ++i) {
    addNumbers(table, fmt::format("random_{}", i),
               [](Chance& chance) { return chance.fraction(); });
  }
  for (int i = 0; i < 15; ++i) {
    addNumbers(table, fmt::format("price_{}", i),
               [](Chance& chance) { return static_cast<double>(chance.below(100'000)) / 100; });
  }
  for (int i = 0; i < 10; ++i) {
    const auto limit = static_cast<std::uint64_t>(std::pow(10.0, 1 + i % 5));
    addNumbers(table, fmt::format("integer_{}", i),
               [=](Chance& chance) { return static_cast<double>(chance.below(limit)); });
  }
  for (int i = 0; i < 5; ++i) {
    addNumbers(table, fmt::format("mostly_zero_{}", i), [](Chance& chance) {
      return chance.below(10) > 0 ? 0.0 : static_cast<double>(1 + chance.below(1000));
    });
  }
  constexpr std::uint64_t kAllKeys = kFirstNullKey;
  constexpr std::uint64_t kSortedRanges[] = {1'000, 1'000'000, kAllKeys};
  for (int i = 0; i < 3; ++i) {
    addKeys(table, fmt::format("sorted_{}", i), kSortedRanges[i], true);
  }
  constexpr std::uint64_t kRanges[] = {10, 100, 1'000, 10'000, 100'000, 10'000'000, kAllKeys};
  for (int i = 0; i < 7; ++i) {
    addKeys(table, fmt::format("key_{}", i), kRanges[i], false);
  }
  return table;
}

SampleTable makeSales(std::size_t rows) {
  SampleTable table{.name = "sales", .rows = rows, .threeColumns = {"id", "city", "price"}};
  constexpr std::size_t kCities = 1000;
  constexpr std::uint64_t kDaysOfSales = 3650;
  const std::vector<std::string> cities = madeCities(kCities);
  const WeightedChoice frequencies = frequenciesOfCities(kCities);
  Chance chance(kSeed);
  for (const char* key : {"id"}) {
    table.add(key, MetaTypeColumn::key);
  }
  table.add("city", MetaTypeColumn::text);
  table.add("price", MetaTypeColumn::number);
  table.add("quantity", MetaTypeColumn::number);
  table.add("date", MetaTypeColumn::text);
  for (std::size_t row = 0; row < rows; ++row) {
    table.columns[0].addKey(static_cast<std::uint32_t>(row));
    table.columns[1].addText(cities[frequencies.draw(chance)]);
    table.columns[2].addNumber(static_cast<double>(50 + chance.below(50'000)) / 100);
    table.columns[3].addNumber(static_cast<double>(1 + chance.below(20)));
    table.columns[4].addText(
        dateText(firstDayOf(2015) + std::chrono::days(chance.below(kDaysOfSales))));
  }
  table.leastBytes = chance.bits() / 8;
  return table;
}

std::vector<SampleTable> makeTexts(std::size_t rows) {
  return tablesOf("texts", makeTextColumns(rows), rows);
}

std::vector<SampleTable> makeShapeless(std::size_t rows) {
  return tablesOf("shapeless", makeShapelessColumns(rows), rows);
}

std::vector<SampleTable> makeNumbers(std::size_t rows) {
  std::vector<SampleTable> tables;
  SampleTable all{.name = "numbers", .rows = rows};
  for (const NumberColumn& made : makeNumberColumns(rows)) {
    SampleTable one{.name = "numbers." + made.name, .rows = rows};
    one.leastBytes = made.bitsPerValue * static_cast<double>(rows) / 8;
    for (SampleTable* table : {&one, &all}) {
      SampleColumn& column = table->add(made.name, MetaTypeColumn::number);
      for (const double value : made.values) {
        if (isNullNumber(value)) {
          column.addMissing();
        } else {
          column.addNumber(value);
        }
      }
    }
    tables.push_back(std::move(one));
  }
  tables.push_back(std::move(all));
  return tables;
}

SampleTable makeTextsById(std::size_t rows) {
  SampleTable table = std::move(makeTexts(rows).back());
  table.name = "texts_by_id";
  table.threeColumns = {"id", "name", "timestamp"};
  SampleColumn& id = table.add("id", MetaTypeColumn::key);
  for (std::size_t row = 0; row < rows; ++row) {
    id.addKey(static_cast<std::uint32_t>(row));
  }
  return table;
}

}  // namespace kelvarin
