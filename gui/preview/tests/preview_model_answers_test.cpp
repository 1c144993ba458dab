// Orders and profiles of made-up columns, compared with what a few plain lines say of the same
// values; most of the values lie in the temporary file.
#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <set>

#include <gtest/gtest.h>
#include <QCoreApplication>

#include "gui/preview/column_profile.h"
#include "gui/preview/row_order.h"
#include "gui/preview/row_store.h"
#include "gui/preview/tests/made_rows.h"

namespace kelvarin::testing {
namespace {

using Numbers = RowNumbers;

constexpr std::size_t kLittleMemory = 2000;
const StopFlag kGoOn{false};

class PreviewAnswersTest : public ::testing::Test {
 protected:
  std::shared_ptr<RowStore> columnOf(MetaTypeColumn type, const Values& values) {
    const PreviewRows::Columns columns{{QStringLiteral("c"), type}};
    auto made =
        std::make_shared<RowStore>(columns, std::make_shared<PreviewMemory>(kLittleMemory), queue);
    for (std::size_t first = 0; first < values.size();) {
      std::vector<Values> rows;
      for (std::size_t size = 1 + random() % 50; rows.size() < size && first < values.size();) {
        rows.push_back({values[first++]});
      }
      EXPECT_TRUE(
          made->append(*madeRows(columns, static_cast<long long>(first - rows.size()), rows)));
    }
    return made;
  }
  Values drawnFrom(const Values& pool, std::size_t count) {
    Values values;
    while (values.size() < count) {
      values.push_back(pool[random() % pool.size()]);
    }
    return values;
  }
  ColumnProfile profile(MetaTypeColumn type, const Values& values) {
    const auto rows = columnOf(type, values);
    return profileOf(*rows, 0, rows->rowCount(), kGoOn).value();
  }

  BackgroundQueue queue;
  std::mt19937 random{20240607};
};

// Where a value stands in an ascending order: missing ones, numbers and texts, NaN.
std::pair<int, double> rank(const Value& value) {
  if (value.isNull()) {
    return {0, 0.0};
  }
  if (value.text() != nullptr) {
    return {1, 0.0};
  }
  return std::isnan(*value.number()) ? std::pair(2, 0.0) : std::pair(1, *value.number());
}

bool precedes(const Value& a, const Value& b) {
  if (a.text() != nullptr && b.text() != nullptr) {
    return *a.text() < *b.text();
  }
  if (a.text() != nullptr || b.text() != nullptr) {
    return a.isNull() && !b.isNull();
  }
  return rank(a) < rank(b);
}

using Accepts = std::function<bool(const Value&)>;

// Descending, NaNs still come after the numbers.
Numbers modelOrder(const Values& values, const Accepts& accepts, bool isSorted, bool isDescending) {
  Numbers rows;
  for (std::uint32_t row = 0; row < values.size(); ++row) {
    if (accepts(values[row])) {
      rows.push_back(row);
    }
  }
  if (isSorted) {
    std::ranges::stable_sort(rows, [&](std::uint32_t a, std::uint32_t b) {
      const bool isOneNaN = rank(values[a]).first + rank(values[b]).first == 3;  // and one number
      return isDescending && !isOneNaN ? precedes(values[b], values[a])
                                       : precedes(values[a], values[b]);
    });
  }
  return rows;
}

TEST_F(PreviewAnswersTest, OrdersAreThoseOfAPlainSortOfPlainlyFilteredRows) {
  const Values numbers{nullptr, kNotANumber, -kNotANumber, kInfinity, -kInfinity, 0.0,    -0.0,
                       1,       -1,          0.1,          1e300,     -1e300,     5e-324, 2};
  const Values keys{nullptr, 0, 1, 2, 4294967293u, 77};
  const Values texts{nullptr,
                     "",
                     " ",
                     "a",
                     "A",
                     "null",
                     std::string(3000, 'x'),
                     "ab",
                     "\xC3\xA9",
                     std::string("a\0b", 3),
                     "<b>&amp;"};
  const std::pair<const char*, Accepts> numberFilters[] = {
      {"", [](const Value&) { return true; }},
      {"> 0", [](const Value& v) { return !v.isNull() && *v.number() > 0; }},
      {"!= 1", [](const Value& v) { return !v.isNull() && *v.number() != 1; }},
      {"-1..2",
       [](const Value& v) { return !v.isNull() && *v.number() >= -1 && *v.number() <= 2; }},
      {"!null", [](const Value& v) { return !v.isNull(); }}};
  const std::pair<const char*, Accepts> textFilters[] = {
      {"", [](const Value&) { return true; }},
      {"null", [](const Value& v) { return v.isNull(); }},
      {"empty", [](const Value& v) { return !v.isNull() && v.text()->empty(); }},
      {">= a", [](const Value& v) { return !v.isNull() && *v.text() >= "a"; }},
      {"\"a\"", [](const Value& v) {
         return !v.isNull() && v.text()->find_first_of("aA") != std::string::npos;
       }}};
  for (int round = 0; round < 60; ++round) {
    const auto type =
        std::array{MetaTypeColumn::number, MetaTypeColumn::key, MetaTypeColumn::text}[random() % 3];
    const bool isText = type == MetaTypeColumn::text;
    const Values& pool = isText ? texts : type == MetaTypeColumn::key ? keys : numbers;
    const Values values = drawnFrom(pool, random() % 600);
    const auto* filters = isText ? &textFilters : &numberFilters;
    const auto& [filter, accepts] = (*filters)[random() % 5];
    RowOrder order{{}, random() % 3 == 0 ? -1 : 0, random() % 2 == 0};
    if (*filter != 0) {
      order.filters.push_back({0, *CellFilter::parse(QString::fromUtf8(filter), type)});
    }
    const auto rows = columnOf(type, values);
    EXPECT_EQ(rowsInOrder(*rows, rows->rowCount(), order, kGoOn).value(),
              modelOrder(values, accepts, order.sortColumn == 0, order.isDescending))
        << "round " << round << ", filter " << filter;
  }
}

TEST_F(PreviewAnswersTest, ProfilesCountEveryValueOnce) {
  const Values pool{nullptr, kNotANumber, -kNotANumber, kInfinity, -kInfinity, 0.0,
                    -0.0,    1,           -2.5,         100,       7};
  for (int round = 0; round < 30; ++round) {
    const Values values = drawnFrom(pool, 1 + random() % 400);
    const ColumnProfile found = profile(MetaTypeColumn::number, values);
    std::map<std::pair<int, double>, long long> counts;
    long long finite = 0;
    for (const Value& value : values) {
      ++counts[rank(value)];
      finite += !value.isNull() && std::isfinite(*value.number()) ? 1 : 0;
    }
    EXPECT_EQ(found.distinctCount,
              static_cast<long long>(counts.size() - counts.count(std::pair(0, 0.0))));
    const long long nulls = counts[std::pair(0, 0.0)];
    EXPECT_EQ(found.nullCount, nulls);
    EXPECT_EQ(found.notANumberCount, counts[std::pair(2, 0.0)]);
    long long inBins = 0;
    for (const ColumnProfile::Bin& bin : found.bins) {
      EXPECT_LE(bin.first, bin.end);
      inBins += bin.count;
    }
    EXPECT_EQ(inBins, finite) << "round " << round;
    long long frequent = 0;
    for (const ColumnProfile::Frequent& value : found.frequent) {
      frequent += value.count;
    }
    EXPECT_EQ(frequent + nulls, static_cast<long long>(values.size()));
  }
}

TEST_F(PreviewAnswersTest, ProfilesOfColumnsWithNothingToCompareAreEmpty) {
  const ColumnProfile none = profile(MetaTypeColumn::number, {});
  EXPECT_EQ(none.distinctCount + none.nullCount, 0);
  EXPECT_FALSE(none.hasRange);
  const ColumnProfile missing = profile(MetaTypeColumn::key, Values(300, nullptr));
  EXPECT_EQ(missing.nullCount, 300);
  EXPECT_EQ(missing.distinctCount, 0);
  EXPECT_FALSE(missing.hasRange || !missing.bins.empty() || !missing.frequent.empty());
  const ColumnProfile absent = profile(MetaTypeColumn::text, Values(3, nullptr));
  EXPECT_FALSE(absent.hasRange);
  const ColumnProfile endless = profile(MetaTypeColumn::number, {kInfinity, -kInfinity, kInfinity});
  EXPECT_TRUE(endless.hasRange && endless.bins.empty());
  EXPECT_EQ(endless.maximum, QStringLiteral("inf"));
  EXPECT_EQ(endless.distinctCount, 2);
}

TEST_F(PreviewAnswersTest, ProfilesOfOneValueAndOfTheLargestOnes) {
  const ColumnProfile one = profile(MetaTypeColumn::number, Values(50, 3.25));
  ASSERT_EQ(one.bins.size(), 1u);
  EXPECT_EQ(one.bins[0].count, 50);
  EXPECT_EQ(one.mean, 3.25);
  EXPECT_EQ(one.minimum, one.maximum);
  const double largest = std::numeric_limits<double>::max();
  const ColumnProfile wide = profile(MetaTypeColumn::number, {-largest, largest, 0.0, largest});
  EXPECT_TRUE(std::isfinite(wide.mean));
  ASSERT_FALSE(wide.bins.empty());
  EXPECT_EQ(wide.bins.front().count, 1);
  EXPECT_EQ(wide.bins.back().count, 2);
  const ColumnProfile dates =
      profile(MetaTypeColumn::text, {"2024-02-01", "2023-12-31", "2024-02-01", nullptr});
  EXPECT_EQ(dates.minimum, QStringLiteral("2023-12-31"));
  EXPECT_EQ(dates.maximum, QStringLiteral("2024-02-01"));
  EXPECT_EQ(dates.distinctCount, 2);
}

}  // namespace
}  // namespace kelvarin::testing
