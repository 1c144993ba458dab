#include "benchmarks/gel/made_tables.h"

#include <algorithm>
#include <cmath>
#include <random>

#include <fmt/format.h>

namespace kelvarin {

namespace {

constexpr std::uint64_t kSeed = 20130101;

// The library's distributions differ from one standard library to the next; this does not.
class Chance {
 public:
  explicit Chance(std::uint64_t seed) : m_engine(seed) {}

  std::uint64_t below(std::uint64_t limit) { return m_engine() % limit; }
  double fraction() { return static_cast<double>(m_engine() >> 11) * 0x1p-53; }

 private:
  std::mt19937_64 m_engine;
};

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

}  // namespace

SampleTable makeWide(std::size_t rows) {
  SampleTable table{.name = "wide",
                    .rows = rows,
                    .columns = {},
                    .threeColumns = {"sorted_2", "price_3", "integer_4"}};
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
  SampleTable table{
      .name = "sales", .rows = rows, .columns = {}, .threeColumns = {"id", "city", "price"}};
  constexpr std::size_t kCities = 1000;
  const std::vector<std::string> cities = madeCities(kCities);
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
    // Half of the rows have one of 32 cities, a quarter one of 125.
    const double rank = std::pow(chance.fraction(), 5.0);
    table.columns[1].addText(cities[static_cast<std::size_t>(rank * kCities)]);
    table.columns[2].addNumber(static_cast<double>(50 + chance.below(50'000)) / 100);
    table.columns[3].addNumber(static_cast<double>(1 + chance.below(20)));
    table.columns[4].addText(fmt::format("{}-{:02}-{:02}", 2023 + chance.below(2),
                                         1 + chance.below(12), 1 + chance.below(28)));
  }
  return table;
}

}  // namespace kelvarin
